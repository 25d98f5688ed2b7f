#pragma once
// Conversions of the runtime: CDate/IsDate, Val, CInt/CLng narrowing.
#include <cstdint>
#include <optional>
#include <string>

namespace vellumar::vb {

// A date value from text: every form the program writes (storage text, "dd-mmm-yyyy hh:nn:ss",
// the locale's short date with or without time, "YYYYMMDD"), ISO dates and times, and the common
// written forms ("15-Jan-2002 12:00", "01/15/2002", "2002-01-15", a time alone).
// nullopt when the text isn't a date.
std::optional<double> ParseDate(const std::string& text);
double CDate(const std::string& text);  // raises 13 when the text isn't a date
bool IsDate(const std::string& text);

// Val: the number at the start of the text, blanks ignored, 0 when there is none.
double Val(const std::string& text);

// Numeric text as CDbl reads it; nullopt when it isn't a number.
std::optional<double> ParseNumber(const std::string& text);

// Rounding half to even, then narrowing; out of range raises 6.
int16_t CInt(double value);
int32_t CLng(double value);
// Narrowing of a whole number to 16 bits; out of range raises 6.
int16_t NarrowTo16(int64_t value);

// CStr of a date value: the locale's short date, then " hh:nn:ss" unless the time is midnight;
// a value with no whole-day part is the time alone.
std::string DateToString(double date);

}  // namespace vellumar::vb
