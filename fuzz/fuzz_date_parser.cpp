// CDate and IsDate on any text: they agree (IsDate true exactly when CDate gives a value), and
// CDate refuses with error 13 and nothing else.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/vb/convert.h"
#include "platform/vb/error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const bool isDate = vellumar::vb::IsDate(text);
  bool converted = false;
  try {
    (void)vellumar::vb::CDate(text);
    converted = true;
  } catch (const vellumar::vb::VbError& e) {
    if (e.number() != 13) {
      std::fprintf(stderr, "CDate raised %d, not 13\n", e.number());
      std::abort();
    }
  }
  if (converted != isDate) {
    std::fprintf(stderr, "IsDate says %d, CDate %s\n", isDate, converted ? "converts" : "refuses");
    std::abort();
  }
  return 0;
}
