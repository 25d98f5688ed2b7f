#pragma once
// Lengths and cuts of texts in characters, as the runtime counts them: texts are UTF-8 here, so
// a character may take more than one byte.
#include <cstddef>
#include <string>

namespace vellumar::vb {

// The number of characters of a UTF-8 text.
inline size_t Len(const std::string& text) {
  size_t n = 0;
  for (unsigned char c : text) n += (c & 0xc0) != 0x80;
  return n;
}

// The first `count` characters of a UTF-8 text.
inline std::string Left(const std::string& text, size_t count) {
  size_t seen = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xc0) != 0x80) {
      if (seen == count) return text.substr(0, i);
      ++seen;
    }
  }
  return text;
}

}  // namespace vellumar::vb
