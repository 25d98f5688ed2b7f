#include "interop/dde_common.h"

#include <algorithm>
#include <cctype>

#include "platform/vb/convert.h"
#include "platform/vb/error.h"

namespace vellumar::interop {
namespace {

bool IsContinuationByte(char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; }

std::string Lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

}  // namespace

std::string DDECommon::EncodeField(const std::string& tag, const std::string& value) {
  if (tag.empty()) return {};
  return "<" + tag + ":" + std::to_string(value.size()) + ">" + value;
}

int DDECommon::DeclaredLength(const std::string& text) {
  // A failed conversion is ignored and leaves the length at 0.
  try {
    const auto number = vb::ParseNumber(text);
    if (!number) return 0;
    const int16_t length = vb::CInt(*number);
    return length < 0 ? 0 : length;
  } catch (const vb::VbError&) {
    return 0;
  }
}

void DDECommon::ParseRecord(const std::string& text) {
  DDETokenCount_ = 0;
  std::string::size_type at = 0;  // the rest of the text starts here
  try {
    while (at < text.size()) {
      const auto open = text.find('<', at);
      if (open == std::string::npos) return;
      if (Lowered(text.substr(open, 5)) == "<eor>") return;
      const auto close = text.find('>', open + 1);
      if (close == std::string::npos) return;
      const std::string inside = text.substr(open + 1, close - open - 1);
      const auto colon = inside.find(':');
      if (colon == std::string::npos) return;
      DDEToken token;
      token.Tag = inside.substr(0, colon);
      const int length = DeclaredLength(inside.substr(colon + 1));
      // Lengths count bytes; a count that ends inside a character stops before it.
      std::string::size_type end = close + 1 + std::min<std::string::size_type>(
                                                   length, text.size() - close - 1);
      while (end > close + 1 && end < text.size() && IsContinuationByte(text[end])) --end;
      token.Value = text.substr(close + 1, end - close - 1);
      at = end;
      // The count goes up first, so a 101st token leaves it at 101 with the hundred slots full.
      ++DDETokenCount_;
      if (DDETokenCount_ > kTokenSlots) vb::Raise(vb::kSubscriptOutOfRange);
      DDETokens[static_cast<std::size_t>(DDETokenCount_ - 1)] = std::move(token);
    }
  } catch (const vb::VbError& e) {
    // The 101st token: the first hundred stay.
    if (reportError_) reportError_(e.number(), "DDECommon.ParseRecord");
  }
}

DDEToken DDECommon::GetToken(int position) const {
  if (position < 1 || position > kTokenSlots) {
    if (reportError_) reportError_(vb::kSubscriptOutOfRange, "DDECommon.GetToken");
    return {};
  }
  return DDETokens[static_cast<std::size_t>(position - 1)];
}

std::string DDECommon::ServerNickName(int number) {
  static const char* const kNickNames[kServerCount] = {"RS", "VL", "TM", "AT", "CL", "GX", "SG"};
  if (number < 0 || number >= kServerCount) return {};
  return kNickNames[number];
}

}  // namespace vellumar::interop
