#pragma once
// The checks the record fuzzer makes on any bytes, shared with the test that replays its seeds:
// ParseRecord and GetToken never crash or hang, keep at most a hundred tokens, report a bound
// error for any position outside 1..100, take each value from the text itself, and hand over
// values that are well-formed UTF-8 whenever the text was.
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "interop/dde_common.h"

namespace vellumar::fuzzcheck {

inline bool WellFormedUtf8(std::string_view s) {
  std::size_t i = 0;
  while (i < s.size()) {
    const auto c = static_cast<unsigned char>(s[i]);
    std::size_t more;  // continuation bytes that must follow
    if (c < 0x80) {
      more = 0;
    } else if (c >= 0xc2 && c <= 0xdf) {
      more = 1;
    } else if (c >= 0xe0 && c <= 0xef) {
      more = 2;
    } else if (c >= 0xf0 && c <= 0xf4) {
      more = 3;
    } else {
      return false;
    }
    if (i + more >= s.size() && more > 0) return false;
    for (std::size_t k = 1; k <= more; ++k) {
      const auto d = static_cast<unsigned char>(s[i + k]);
      if ((d & 0xc0) != 0x80) return false;
      if (k == 1) {
        if (c == 0xe0 && d < 0xa0) return false;  // overlong
        if (c == 0xed && d > 0x9f) return false;  // surrogate
        if (c == 0xf0 && d < 0x90) return false;  // overlong
        if (c == 0xf4 && d > 0x8f) return false;  // above U+10FFFF
      }
    }
    i += more + 1;
  }
  return true;
}

// "" when every check holds, else what failed.
inline std::string CheckRecord(const std::string& text) {
  std::vector<std::pair<int, std::string>> reports;
  interop::DDECommon common(
      [&](int number, const std::string& where) { reports.emplace_back(number, where); });
  // An older record first, so that its slots stand behind the new one.
  common.ParseRecord("<a:3>old<b:3>old<c:3>old");
  common.ParseRecord(text);
  const int count = common.DDETokenCount();
  if (count < 0 || count > interop::DDECommon::kTokenSlots + 1) return "the count is out of range";
  bool boundReported = false;
  for (const auto& [number, where] : reports) {
    if (number != 9 || where != "DDECommon.ParseRecord") return "an unexpected report: " + where;
    boundReported = true;
  }
  if (boundReported != (count == interop::DDECommon::kTokenSlots + 1))
    return "the 101st token and its report disagree";
  const bool utf8 = WellFormedUtf8(text);
  for (int position = 1; position <= interop::DDECommon::kTokenSlots; ++position) {
    const interop::DDEToken token = common.GetToken(position);
    if (position <= count && position <= interop::DDECommon::kTokenSlots) {
      if (token.Value.size() > text.size()) return "a value longer than the text";
      if (text.find(token.Value) == std::string::npos) return "a value not in the text";
      if (text.find("<" + token.Tag + ":") == std::string::npos) return "a tag not in the text";
      if (utf8 && !WellFormedUtf8(token.Value)) return "a value is not well-formed UTF-8";
    }
  }
  reports.clear();
  common.GetToken(0);
  common.GetToken(interop::DDECommon::kTokenSlots + 1);
  if (reports.size() != 2) return "a position outside 1..100 was not reported";
  for (const auto& [number, where] : reports)
    if (number != 9 || where != "DDECommon.GetToken") return "GetToken reported " + where;
  return {};
}

}  // namespace vellumar::fuzzcheck
