// Format of a Variant: which formatter a pattern calls for, and the runtime's named formats.
#include "platform/vb/format.h"

#include <string_view>

#include "platform/vb/ascii.h"
#include "platform/vb/convert.h"
#include "platform/vb/number_reader.h"

namespace vellumar::vb {
namespace {

enum class PatternKind { Date, Number };

// A pattern with a digit placeholder is a number pattern; else one with a date field letter is
// a date pattern; else (literals only) it is written as a number pattern would be.
PatternKind KindOf(const std::string& pattern) {
  bool dateLetter = false;
  for (size_t i = 0; i < pattern.size(); ++i) {
    const char c = pattern[i];
    if (c == '\\') {
      ++i;
    } else if (c == '"') {
      const size_t close = pattern.find('"', i + 1);
      i = close == std::string::npos ? pattern.size() : close;
    } else if (c == '0' || c == '#') {
      return PatternKind::Number;
    } else if (std::string_view("dmyhnswqctDMYHNSWQCT").find(c) != std::string_view::npos) {
      dateLetter = true;
    }
  }
  return dateLetter ? PatternKind::Date : PatternKind::Number;
}

struct Named {
  std::string_view name;
  const char* pattern;  // nullptr: handled in code
};

const Named kNamed[] = {
    {"general number", nullptr},
    {"currency", "$#,##0.00;($#,##0.00)"},
    {"fixed", "0.00"},
    {"standard", "#,##0.00"},
    {"percent", "0.00%"},
    {"scientific", "0.00E+00"},
    {"yes/no", nullptr},
    {"true/false", nullptr},
    {"on/off", nullptr},
    {"general date", nullptr},
    {"long date", "dddddd"},
    {"medium date", "dd-mmm-yy"},
    {"short date", "ddddd"},
    {"long time", "hh:nn:ss"},
    {"medium time", "hh:nn AM/PM"},
    {"short time", "hh:nn"},
};

// The number a Variant stands for in a number pattern; nullopt for a text that is no number.
std::optional<double> AsNumber(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::Empty:
      return 0.0;
    case Variant::Type::String: {
      double n = 0;
      if (ReadNumber(value.ToString(), n) == NumberRead::kOk) return n;
      return std::nullopt;
    }
    default:
      return value.ToDouble();
  }
}

// The date value a Variant stands for in a date pattern; nullopt for a text that is neither.
std::optional<double> AsDate(const Variant& value) {
  if (value.type() == Variant::Type::String) {
    if (auto date = ParseDate(value.ToString())) return date;
    return AsNumber(value);
  }
  if (value.type() == Variant::Type::Empty) return 0.0;
  return value.ToDouble();
}

}  // namespace

std::string Format(const Variant& value, const std::string& pattern) {
  if (value.IsNull()) return "";
  if (pattern.empty()) return value.ToString();
  const std::string named = LowerAscii(pattern);
  for (const Named& n : kNamed) {
    if (std::string_view(named) != n.name) continue;
    if (n.pattern != nullptr) return Format(value, n.pattern);
    if (named == "general date") {
      const auto date = AsDate(value);
      return date ? DateToString(*date) : value.ToString();
    }
    const auto number = AsNumber(value);
    if (!number) return value.ToString();
    if (named == "general number") return NumberToString(*number);
    const bool on = *number != 0;
    if (named == "yes/no") return on ? "Yes" : "No";
    if (named == "true/false") return on ? "True" : "False";
    return on ? "On" : "Off";
  }
  if (KindOf(pattern) == PatternKind::Date) {
    const auto date = AsDate(value);
    return date ? FormatDate(*date, pattern) : value.ToString();
  }
  const auto number = AsNumber(value);
  return number ? FormatNumber(*number, pattern) : value.ToString();
}

}  // namespace vellumar::vb
