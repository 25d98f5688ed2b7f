// Format of numbers with digit placeholders. The value is taken as its 15 significant decimal
// digits (as the runtime shows a Double) and rounded on those digits, so 2.675 with "0.00" is
// "2.68" although the binary value lies a little below.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/vb/convert.h"
#include "platform/vb/format.h"
#include "platform/vb/number_reader.h"

namespace vellumar::vb {
namespace {

// value = 0.digits x 10^exponent; digits without trailing zeros, empty for zero.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

Decimal ToDecimal(double magnitude) {
  Decimal d;
  if (magnitude == 0 || !std::isfinite(magnitude)) return d;
  const std::string text = ScientificText(magnitude, 15);
  const size_t e = text.find('e');
  for (size_t i = 0; i < e; ++i)
    if (text[i] != '.') d.digits += text[i];
  while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
  d.exponent = std::atoi(text.c_str() + e + 1) + 1;
  return d;
}

// round(value x 10^places), half away from zero, as a digit string ("0" for zero).
std::string ScaledRound(const Decimal& d, int places) {
  if (d.digits.empty()) return "0";
  const int keep = d.exponent + places;
  if (keep < 0) return "0";
  std::string n = keep == 0 ? "0" : d.digits.substr(0, std::min<size_t>(keep, d.digits.size()));
  if (static_cast<int>(n.size()) < keep && keep > 0) n.append(keep - n.size(), '0');
  if (static_cast<size_t>(keep) < d.digits.size() && d.digits[keep] >= '5') {
    int i = static_cast<int>(n.size()) - 1;
    while (i >= 0 && n[i] == '9') n[i--] = '0';
    if (i < 0)
      n.insert(n.begin(), '1');
    else
      ++n[i];
  }
  const size_t first = n.find_first_not_of('0');
  return first == std::string::npos ? "0" : n.substr(first);
}

enum class Part { Int, Frac, Exp };

struct Element {
  enum Kind { Literal, Digit, Point, Exponent } kind;
  std::string text;  // Literal: text; Digit: "0" or "#"; Exponent: letter and sign ("E+")
  Part part = Part::Int;
};

struct Section {
  std::vector<Element> elements;
  bool thousands = false;
  int divideBy1000 = 0;
  int percent = 0;
  bool scientific = false;
};

std::vector<std::string> SplitSections(const std::string& pattern) {
  std::vector<std::string> sections(1);
  for (size_t i = 0; i < pattern.size(); ++i) {
    const char c = pattern[i];
    if (c == '\\' && i + 1 < pattern.size()) {
      sections.back() += pattern.substr(i, 2);
      ++i;
    } else if (c == '"') {
      const size_t close = pattern.find('"', i + 1);
      const size_t stop = close == std::string::npos ? pattern.size() - 1 : close;
      sections.back() += pattern.substr(i, stop - i + 1);
      i = stop;
    } else if (c == ';') {
      sections.emplace_back();
    } else {
      sections.back() += c;
    }
  }
  return sections;
}

bool IsPlaceholder(char c) { return c == '0' || c == '#'; }

Section ParseSection(const std::string& s) {
  Section section;
  Part part = Part::Int;
  bool seenIntDigit = false;
  auto literal = [&section, &part](const std::string& text) {
    section.elements.push_back({Element::Literal, text, part});
  };
  for (size_t i = 0; i < s.size(); ++i) {
    const char c = s[i];
    if (c == '\\') {
      if (i + 1 < s.size()) literal(s.substr(++i, 1));
    } else if (c == '"') {
      const size_t close = s.find('"', i + 1);
      const size_t stop = close == std::string::npos ? s.size() : close;
      literal(s.substr(i + 1, stop - i - 1));
      i = stop;
    } else if (IsPlaceholder(c)) {
      section.elements.push_back({Element::Digit, std::string(1, c), part});
      if (part == Part::Int) seenIntDigit = true;
    } else if (c == '.' && part == Part::Int) {
      section.elements.push_back({Element::Point, ".", part});
      part = Part::Frac;
    } else if (c == ',' && part == Part::Int && seenIntDigit) {
      size_t run = 1;
      while (i + run < s.size() && s[i + run] == ',') ++run;
      if (i + run < s.size() && IsPlaceholder(s[i + run]))
        section.thousands = true;
      else
        section.divideBy1000 += static_cast<int>(run);
      i += run - 1;
    } else if (c == ',' && part != Part::Exp) {
      // a comma that groups nothing is dropped
    } else if ((c == 'E' || c == 'e') && part != Part::Exp && i + 1 < s.size() &&
               (s[i + 1] == '+' || s[i + 1] == '-')) {
      section.elements.push_back({Element::Exponent, s.substr(i, 2), part});
      section.scientific = true;
      part = Part::Exp;
      ++i;
    } else if (c == '%') {
      ++section.percent;
      literal("%");
    } else {
      literal(std::string(1, c));
    }
  }
  return section;
}

std::string Render(double magnitude, const Section& section) {
  Decimal d = ToDecimal(magnitude);
  if (!d.digits.empty()) d.exponent += 2 * section.percent - 3 * section.divideBy1000;

  std::string intPattern, fracPattern, expPattern;  // the placeholders of each part
  for (const Element& e : section.elements) {
    if (e.kind != Element::Digit) continue;
    (e.part == Part::Int ? intPattern : e.part == Part::Frac ? fracPattern : expPattern) += e.text;
  }
  const int places = static_cast<int>(fracPattern.size());
  int exponent = 0;
  std::string n;
  if (section.scientific) {
    int intPlaces = static_cast<int>(intPattern.size());
    if (intPlaces == 0 && places == 0) intPlaces = 1;
    if (!d.digits.empty()) {
      exponent = d.exponent - intPlaces;
      Decimal mantissa{d.digits, intPlaces};
      n = ScaledRound(mantissa, places);
      if (static_cast<int>(n.size()) > intPlaces + places) {  // 9.99 rounded up to 10.0
        n.pop_back();
        ++exponent;
      }
    } else {
      n = "0";
    }
  } else {
    n = ScaledRound(d, places);
  }
  if (static_cast<int>(n.size()) < places + 1) n.insert(0, places + 1 - n.size(), '0');
  std::string intDigits = n.substr(0, n.size() - places);
  const std::string fracDigits = n.substr(n.size() - places);
  if (intDigits == "0") intDigits.clear();

  // Zeros are forced from the first "0" placeholder of the integer part on.
  const size_t firstZero = intPattern.find('0');
  const size_t forced = firstZero == std::string::npos ? 0 : intPattern.size() - firstZero;
  if (intDigits.size() < forced) intDigits.insert(0, forced - intDigits.size(), '0');
  if (section.thousands) {
    std::string grouped;
    for (size_t i = 0; i < intDigits.size(); ++i) {
      if (i > 0 && (intDigits.size() - i) % 3 == 0) grouped += ',';
      grouped += intDigits[i];
    }
    intDigits = grouped;
  }
  // Trailing "#" places of the fraction show no zeros.
  size_t fracShown = fracPattern.size();
  while (fracShown > 0 && fracPattern[fracShown - 1] == '#' && fracDigits[fracShown - 1] == '0')
    --fracShown;

  std::string expDigits = std::to_string(std::abs(exponent));
  const size_t expForced = std::count(expPattern.begin(), expPattern.end(), '0');
  if (expDigits.size() < expForced) expDigits.insert(0, expForced - expDigits.size(), '0');

  const int intCount = static_cast<int>(intPattern.size());
  const int len = static_cast<int>(intDigits.size());
  int intIndex = 0, fracIndex = 0;
  bool intWritten = false;
  std::string out;
  for (const Element& e : section.elements) {
    switch (e.kind) {
      case Element::Literal:
        out += e.text;
        break;
      case Element::Digit:
        if (e.part == Part::Int) {
          if (section.thousands || intIndex == 0) {
            // the first place takes every digit beyond the places
            if (!intWritten) {
              const int lead = section.thousands ? len : len - intCount + 1;
              if (lead > 0) out += intDigits.substr(0, lead);
              intWritten = true;
            }
          } else {
            const int at = len - intCount + intIndex;
            if (at >= 0) out += intDigits[at];
          }
          ++intIndex;
        } else if (e.part == Part::Frac) {
          if (static_cast<size_t>(fracIndex) < fracShown) out += fracDigits[fracIndex];
          ++fracIndex;
        }
        break;
      case Element::Point:
        if (intCount == 0) out += intDigits;  // ".00" still shows the whole part
        out += '.';
        break;
      case Element::Exponent:
        out += e.text[0];
        if (exponent < 0)
          out += '-';
        else if (e.text[1] == '+')
          out += '+';
        out += expDigits;
        break;
    }
  }
  return out;
}

}  // namespace

std::string FormatNumber(double number, const std::string& pattern) {
  if (pattern.empty()) return NumberToString(number);
  const std::vector<std::string> sections = SplitSections(pattern);
  if (number < 0 && sections.size() >= 2 && !sections[1].empty())
    return Render(-number, ParseSection(sections[1]));
  if (number == 0 && sections.size() >= 3 && !sections[2].empty())
    return Render(0, ParseSection(sections[2]));
  if (sections[0].empty()) return NumberToString(number);
  const std::string text = Render(std::fabs(number), ParseSection(sections[0]));
  return number < 0 ? "-" + text : text;
}

}  // namespace vellumar::vb
