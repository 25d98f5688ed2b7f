// The declared length of an ADIF value and how it measures the text after its tag.
#include <algorithm>
#include <string>

#include "adif/adif_parser.h"
#include "platform/vb/convert.h"
#include "platform/vb/error.h"

namespace vellumar::adif {

int DeclaredLength(std::string_view text) {
  // A 16-bit integer as the runtime converts text; any failure, overflow too, gives 0.
  const auto number = vb::ParseNumber(std::string(text));
  if (!number) return 0;
  try {
    return vb::CInt(*number);
  } catch (const vb::VbError&) {
    return 0;
  }
}

std::size_t CountUnits(std::string_view text, std::size_t limit, TextEncoding unit) {
  if (unit == TextEncoding::kUtf8) return std::min(text.size(), limit);
  std::size_t count = 0;
  for (char c : text) {
    if (IsContinuationByte(c)) continue;
    if (count == limit) break;
    ++count;
  }
  return count;
}

std::size_t ValueBytes(std::string_view text, std::size_t length, TextEncoding unit) {
  std::size_t end = 0;
  if (unit == TextEncoding::kUtf8) {
    end = std::min(length, text.size());
  } else {
    // The byte where character number length + 1 begins.
    std::size_t count = 0;
    while (end < text.size()) {
      if (!IsContinuationByte(text[end]) && count++ == length) break;
      ++end;
    }
  }
  // Never end a value inside a character: its remaining bytes belong to it.
  while (end < text.size() && IsContinuationByte(text[end])) ++end;
  return end;
}

}  // namespace vellumar::adif
