// The record of the sibling programs' commands on any bytes: ParseRecord, then GetToken over
// every position and the two just outside. The checks are those of dde_record_check.h, which
// the test suite also runs over the seeds.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "dde_record_check.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string failure = vellumar::fuzzcheck::CheckRecord(text);
  if (!failure.empty()) {
    std::fprintf(stderr, "%s\n", failure.c_str());
    std::abort();
  }
  return 0;
}
