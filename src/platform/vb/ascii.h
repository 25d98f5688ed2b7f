#pragma once
// Case folding of ASCII letters only: texts are UTF-8, and the runtime's case-blind comparisons
// the program relies on concern English words and month names.
#include <string>

namespace vellumar::vb {

inline char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

inline std::string LowerAscii(const std::string& text) {
  std::string out = text;
  for (char& c : out) c = LowerAscii(c);
  return out;
}

inline char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

inline std::string UpperAscii(const std::string& text) {
  std::string out = text;
  for (char& c : out) c = UpperAscii(c);
  return out;
}

inline bool EqualsIgnoreCase(const std::string& a, const std::string& b) {
  return LowerAscii(a) == LowerAscii(b);
}

}  // namespace vellumar::vb
