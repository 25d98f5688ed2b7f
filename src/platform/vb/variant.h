#pragma once
// A value as the runtime's Variant holds it: Empty, Null, or a typed value. Database fields read
// as Variants, so Null stays distinct from "".
#include <cstdint>
#include <string>
#include <variant>

namespace vellumar::vb {

class Variant {
 public:
  enum class Type { Empty, Null, Boolean, Integer, Long, Double, Date, String };

  Variant() = default;  // Empty
  static Variant Null();
  static Variant FromDate(double date);
  Variant(bool b) : type_(Type::Boolean), v_(static_cast<int64_t>(b ? -1 : 0)) {}
  Variant(int16_t i) : type_(Type::Integer), v_(static_cast<int64_t>(i)) {}
  Variant(int i) : type_(Type::Long), v_(static_cast<int64_t>(i)) {}
  Variant(long i) : type_(Type::Long), v_(static_cast<int64_t>(i)) {}
  Variant(long long i) : type_(Type::Long), v_(static_cast<int64_t>(i)) {}
  Variant(double d) : type_(Type::Double), v_(d) {}
  Variant(const char* s) : type_(Type::String), v_(std::string(s)) {}
  Variant(std::string s) : type_(Type::String), v_(std::move(s)) {}

  Type type() const { return type_; }
  bool IsNull() const { return type_ == Type::Null; }
  bool IsEmpty() const { return type_ == Type::Empty; }
  bool IsString() const { return type_ == Type::String; }
  // IsNumeric: Empty, Boolean, Integer, Long, Double, or a text that reads as a number
  // (ParseNumber); not Null, not a Date.
  bool IsNumeric() const;

  // Conversions with the runtime's rules. Null raises error 94 (Invalid use of Null); a text that
  // isn't a number or a date raises 13 (Type mismatch); out of range raises 6 (Overflow). Empty
  // is "" as text and 0 as a number.
  // CStr: a Boolean is "True"/"False", a Double NumberToString, a Date DateToString.
  std::string ToString() const;
  std::string ToStringOrEmpty() const;  // as ToString, but Null gives "" (reading "field & """)
  double ToDouble() const;              // CDbl; True is -1, a Date its day value
  int32_t ToLong() const;               // CLng, rounding half to even
  int16_t ToInteger() const;            // CInt, rounding half to even
  bool ToBool() const;                  // CBool; a text "True"/"False" in any case, or a number
  double ToDate() const;                // CDate; a number is a day value, 6 beyond years 100..9999

  bool operator==(const Variant& other) const { return type_ == other.type_ && v_ == other.v_; }

 private:
  Type type_ = Type::Empty;
  std::variant<std::monostate, int64_t, double, std::string> v_;
};

}  // namespace vellumar::vb
