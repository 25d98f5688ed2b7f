#include "adif/text_encoding.h"

#include <array>
#include <cstdint>

namespace vellumar::adif {

void Utf8Validator::Feed(std::string_view bytes) {
  for (char ch : bytes) {
    if (!valid_) return;
    const auto c = static_cast<unsigned char>(ch);
    if (pending_ > 0) {
      if (c < low_ || c > high_) {
        valid_ = false;
        return;
      }
      --pending_;
      low_ = 0x80;
      high_ = 0xbf;
      continue;
    }
    if (c < 0x80) continue;
    // The first byte decides how many follow and, for the forms that could be overlong, a
    // surrogate or beyond U+10FFFF, the range of the second byte.
    if (c >= 0xc2 && c <= 0xdf) {
      pending_ = 1;
    } else if (c == 0xe0) {
      pending_ = 2, low_ = 0xa0;
    } else if ((c >= 0xe1 && c <= 0xec) || c == 0xee || c == 0xef) {
      pending_ = 2;
    } else if (c == 0xed) {
      pending_ = 2, high_ = 0x9f;
    } else if (c == 0xf0) {
      pending_ = 3, low_ = 0x90;
    } else if (c >= 0xf1 && c <= 0xf3) {
      pending_ = 3;
    } else if (c == 0xf4) {
      pending_ = 3, high_ = 0x8f;
    } else {
      valid_ = false;
    }
  }
}

namespace {

// Code points of the bytes 0x80 to 0x9F in Windows-1252; the undefined ones keep their value.
constexpr std::array<std::uint16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendCodePoint(std::string& out, std::uint32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xc0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3f)));
  } else {
    out.push_back(static_cast<char>(0xe0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3f)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3f)));
  }
}

}  // namespace

void AppendWindows1252(std::string& out, std::string_view bytes) {
  for (char ch : bytes) {
    const auto c = static_cast<unsigned char>(ch);
    if (c < 0x80) {
      out.push_back(ch);
    } else if (c < 0xa0) {
      AppendCodePoint(out, kHighControls[c - 0x80]);
    } else {
      AppendCodePoint(out, c);  // Latin-1 above 0x9F
    }
  }
}

}  // namespace vellumar::adif
