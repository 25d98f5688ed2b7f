#include "platform/vb/variant.h"

#include "platform/vb/ascii.h"
#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "platform/vb/number_reader.h"

namespace vellumar::vb {
namespace {

double ReadText(const std::string& text) {
  double value = 0;
  switch (ReadNumber(text, value)) {
    case NumberRead::kOk:
      return value;
    case NumberRead::kOverflow:
      Raise(kOverflow);
    case NumberRead::kNotNumber:
      break;
  }
  Raise(kTypeMismatch);
}

std::string Trimmed(const std::string& text) {
  const size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

}  // namespace

Variant Variant::Null() {
  Variant v;
  v.type_ = Type::Null;
  return v;
}

Variant Variant::FromDate(double date) {
  Variant v(date);
  v.type_ = Type::Date;
  return v;
}

bool Variant::IsNumeric() const {
  switch (type_) {
    case Type::Empty:  // IsNumeric(Empty) is True in the runtime
    case Type::Boolean:
    case Type::Integer:
    case Type::Long:
    case Type::Double:
      return true;
    case Type::String:
      return ParseNumber(std::get<std::string>(v_)).has_value();
    case Type::Null:
    case Type::Date:
      return false;
  }
  return false;
}

std::string Variant::ToString() const {
  switch (type_) {
    case Type::Empty:
      return "";
    case Type::Null:
      Raise(kInvalidUseOfNull);
    case Type::Boolean:
      return std::get<int64_t>(v_) != 0 ? "True" : "False";
    case Type::Integer:
    case Type::Long:
      return std::to_string(std::get<int64_t>(v_));
    case Type::Double:
      return NumberToString(std::get<double>(v_));
    case Type::Date:
      return DateToString(std::get<double>(v_));
    case Type::String:
      return std::get<std::string>(v_);
  }
  return "";
}

std::string Variant::ToStringOrEmpty() const { return IsNull() ? std::string() : ToString(); }

double Variant::ToDouble() const {
  switch (type_) {
    case Type::Empty:
      return 0;
    case Type::Null:
      Raise(kInvalidUseOfNull);
    case Type::Boolean:
    case Type::Integer:
    case Type::Long:
      return static_cast<double>(std::get<int64_t>(v_));
    case Type::Double:
    case Type::Date:
      return std::get<double>(v_);
    case Type::String:
      return ReadText(std::get<std::string>(v_));
  }
  return 0;
}

int32_t Variant::ToLong() const {
  if (type_ == Type::Boolean || type_ == Type::Integer || type_ == Type::Long) {
    const int64_t v = std::get<int64_t>(v_);
    if (v < INT32_MIN || v > INT32_MAX) Raise(kOverflow);
    return static_cast<int32_t>(v);
  }
  return CLng(ToDouble());
}

int16_t Variant::ToInteger() const {
  if (type_ == Type::Boolean || type_ == Type::Integer || type_ == Type::Long)
    return NarrowTo16(std::get<int64_t>(v_));
  return CInt(ToDouble());
}

bool Variant::ToBool() const {
  if (type_ == Type::String) {
    const std::string text = Trimmed(std::get<std::string>(v_));
    if (EqualsIgnoreCase(text, "true")) return true;
    if (EqualsIgnoreCase(text, "false")) return false;
    return ReadText(text) != 0;
  }
  return ToDouble() != 0;
}

double Variant::ToDate() const {
  switch (type_) {
    case Type::Null:
      Raise(kInvalidUseOfNull);
    case Type::String:
      return CDate(std::get<std::string>(v_));
    case Type::Date:
      return std::get<double>(v_);
    default: {
      const double v = ToDouble();
      // Numbers are day values; beyond years 100..9999 there is no date.
      if (!InDateRange(v)) Raise(kOverflow);
      return v;
    }
  }
}

}  // namespace vellumar::vb
