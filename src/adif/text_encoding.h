#pragma once
// The text of ADIF files at the program's boundary. Texts are UTF-8 inside the program; an ADIF
// file is either UTF-8 throughout (newer writers) or Windows-1252, one byte one character (the
// older ones). Which of the two is decided for the whole file by one streaming scan before it
// is read, so that a file is never decoded half one way and half the other.
#include <cstddef>
#include <string>
#include <string_view>

namespace vellumar::adif {

// How a file's text came in, and so how a declared length in it counts.
enum class TextEncoding {
  kUtf8,         // lengths count bytes, as UTF-8 writers count them
  kWindows1252,  // lengths count characters, one per source byte
};

// Streaming check that a byte sequence is well-formed UTF-8 (no overlong forms, no surrogates,
// nothing above U+10FFFF), fed in chunks of any size.
class Utf8Validator {
 public:
  void Feed(std::string_view bytes);
  // True when everything fed so far is valid and no character is left unfinished.
  bool Valid() const { return valid_ && pending_ == 0; }

 private:
  bool valid_ = true;
  int pending_ = 0;              // continuation bytes still expected
  unsigned char low_ = 0x80;     // range of the next continuation byte
  unsigned char high_ = 0xbf;
};

// Appends Windows-1252 bytes as UTF-8. The five bytes the code page leaves undefined (0x81,
// 0x8D, 0x8F, 0x90, 0x9D) become the control characters of the same number, as Windows maps
// them, so that no byte is ever lost.
void AppendWindows1252(std::string& out, std::string_view bytes);

// The UTF-8 byte-order mark.
inline constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

// True for a UTF-8 continuation byte (10xxxxxx).
inline bool IsContinuationByte(char c) {
  return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

}  // namespace vellumar::adif
