#include "platform/vb/convert.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "platform/vb/error.h"
#include "platform/vb/number_reader.h"

namespace vellumar::vb {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

int HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// "&H" / "&O" digits from text[pos] (pos just past the letter). A value that fits 16 bits is
// an Integer, one that fits 32 bits a Long, as the runtime reads such literals.
NumberRead ReadRadix(const std::string& text, size_t& pos, int radix, double& value) {
  uint64_t v = 0;
  size_t digits = 0;
  while (pos < text.size()) {
    const int d = HexDigit(text[pos]);
    if (d < 0 || d >= radix) break;
    v = v * radix + d;
    if (v > 0xFFFFFFFFull) return NumberRead::kOverflow;
    ++digits;
    ++pos;
  }
  if (digits == 0) return NumberRead::kNotNumber;
  if (v <= 0xFFFF)
    value = static_cast<int16_t>(static_cast<uint16_t>(v));
  else
    value = static_cast<int32_t>(static_cast<uint32_t>(v));
  return NumberRead::kOk;
}

// Sign, digits, one point, exponent from text[pos]. Stops where the number stops; `strict`
// requires an exponent letter to be followed by digits (CDbl), else the letter ends the number
// (Val). Returns false when there is no digit in the mantissa.
bool ScanDecimal(const std::string& text, size_t& pos, bool strict, std::string& out) {
  size_t p = pos;
  out.clear();
  if (p < text.size() && (text[p] == '+' || text[p] == '-')) out += text[p++];
  size_t mantissaDigits = 0;
  while (p < text.size() && IsDigit(text[p])) out += text[p++], ++mantissaDigits;
  if (p < text.size() && text[p] == '.') {
    out += text[p++];
    while (p < text.size() && IsDigit(text[p])) out += text[p++], ++mantissaDigits;
  }
  if (mantissaDigits == 0) return false;
  if (p < text.size() && (text[p] == 'E' || text[p] == 'e' || text[p] == 'D' || text[p] == 'd')) {
    size_t q = p + 1;
    std::string exponent = "E";
    if (q < text.size() && (text[q] == '+' || text[q] == '-')) exponent += text[q++];
    size_t expDigits = 0;
    while (q < text.size() && IsDigit(text[q])) exponent += text[q++], ++expDigits;
    if (expDigits > 0) {
      out += exponent;
      p = q;
    } else if (strict) {
      return false;  // a dangling exponent makes the text no number
    }
  }
  pos = p;
  return true;
}

// The decimal text ScanDecimal built, read without the C library's locale.
NumberRead ToDouble(const std::string& decimal, double& value) {
  const char* first = decimal.data();
  const char* last = first + decimal.size();
  const bool negative = *first == '-';
  if (*first == '+' || *first == '-') ++first;
  const std::from_chars_result r = std::from_chars(first, last, value);
  if (r.ec == std::errc::result_out_of_range) {
    // Too small to tell from zero is zero; too large is an overflow.
    if (decimal.find("E-") == std::string::npos) return NumberRead::kOverflow;
    value = 0;
  } else if (r.ec != std::errc() || r.ptr != last || std::isinf(value)) {
    return NumberRead::kOverflow;
  }
  if (negative) value = -value;
  return NumberRead::kOk;
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

NumberRead ReadNumber(const std::string& text, double& value) {
  size_t begin = 0, end = text.size();
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
  const std::string t = text.substr(begin, end - begin);
  if (t.empty()) return NumberRead::kNotNumber;
  size_t pos = 0;
  if (t[0] == '&' && t.size() > 1) {
    const char r = static_cast<char>(t[1] | 0x20);
    if (r != 'h' && r != 'o') return NumberRead::kNotNumber;
    pos = 2;
    const NumberRead read = ReadRadix(t, pos, r == 'h' ? 16 : 8, value);
    if (read == NumberRead::kOk && pos != t.size()) return NumberRead::kNotNumber;
    return read;
  }
  std::string decimal;
  if (!ScanDecimal(t, pos, true, decimal) || pos != t.size()) return NumberRead::kNotNumber;
  return ToDouble(decimal, value);
}

std::optional<double> ParseNumber(const std::string& text) {
  double value = 0;
  if (ReadNumber(text, value) != NumberRead::kOk) return std::nullopt;
  return value;
}

double Val(const std::string& text) {
  std::string t;
  for (char c : text)
    if (c != ' ' && c != '\t' && c != '\n') t += c;
  size_t pos = 0;
  double value = 0;
  if (t.size() > 1 && t[0] == '&') {
    const char r = static_cast<char>(t[1] | 0x20);
    if (r != 'h' && r != 'o') return 0;
    pos = 2;
    const NumberRead read = ReadRadix(t, pos, r == 'h' ? 16 : 8, value);
    if (read == NumberRead::kOverflow) Raise(kOverflow);
    return read == NumberRead::kOk ? value : 0;
  }
  std::string decimal;
  if (!ScanDecimal(t, pos, false, decimal)) return 0;
  if (ToDouble(decimal, value) == NumberRead::kOverflow) Raise(kOverflow);
  return value;
}

int16_t CInt(double value) {
  const double r = std::nearbyint(value);  // the default rounding mode: half to even
  if (!(r >= -32768.0 && r <= 32767.0)) Raise(kOverflow);
  return static_cast<int16_t>(r);
}

int32_t CLng(double value) {
  const double r = std::nearbyint(value);
  if (!(r >= -2147483648.0 && r <= 2147483647.0)) Raise(kOverflow);
  return static_cast<int32_t>(r);
}

int16_t NarrowTo16(int64_t value) {
  if (value < -32768 || value > 32767) Raise(kOverflow);
  return static_cast<int16_t>(value);
}

std::string ScientificText(double value, int significantDigits) {
  char buf[64];
  const std::to_chars_result r = std::to_chars(
      buf, buf + sizeof buf, value, std::chars_format::scientific, significantDigits - 1);
  return std::string(buf, r.ptr);
}

std::string NumberToString(double value) {
  if (std::isnan(value)) return "-1.#IND";
  if (std::isinf(value)) return value > 0 ? "1.#INF" : "-1.#INF";
  if (value == 0) return "0";
  // The shortest of up to 15 significant digits that reads back as the value; 15 when none does.
  std::string text;
  for (int precision = 1; precision <= 15; ++precision) {
    text = ScientificText(value, precision);
    double back = 0;
    const char* first = text.data() + (text[0] == '-');
    std::from_chars(first, text.data() + text.size(), back);
    if (precision == 15 || (text[0] == '-' ? -back : back) == value) break;
  }
  // text is "[-]d.ddde[+-]xx": take the digits and the exponent apart.
  const bool negative = text[0] == '-';
  if (negative) text.erase(0, 1);
  const size_t e = text.find('e');
  const int exponent = std::atoi(text.c_str() + e + 1);
  std::string digits;
  for (size_t i = 0; i < e; ++i)
    if (IsDigit(text[i])) digits += text[i];
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();

  std::string out = negative ? "-" : "";
  if (exponent >= 15 || exponent < -4) {
    out += digits[0];
    if (digits.size() > 1) out += "." + digits.substr(1);
    char exp[16];
    std::snprintf(exp, sizeof exp, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
    return out + exp;
  }
  if (exponent < 0) return out + "0." + std::string(-exponent - 1, '0') + digits;
  if (static_cast<int>(digits.size()) <= exponent + 1)
    return out + digits + std::string(exponent + 1 - digits.size(), '0');
  return out + digits.substr(0, exponent + 1) + "." + digits.substr(exponent + 1);
}

}  // namespace vellumar::vb
