#pragma once
// The date value: days since 1899-12-30 as a double, the time of day as the fraction, so that
// 2000-01-01 00:00 is 36526.0. Before 1899-12-30 the whole part counts back and the fraction
// still counts forward from midnight (-1.25 is 1899-12-29 06:00), as the runtime has it.
#include <optional>
#include <string>

namespace vellumar::vb {

struct DateParts {
  int year = 1899;   // Gregorian year
  int month = 12;    // 1..12
  int day = 30;      // 1..31
  int hour = 0;      // 0..23
  int minute = 0;    // 0..59
  int second = 0;    // 0..59
};

bool IsLeapYear(int year);
int DaysInMonth(int year, int month);

// Whole days since 1899-12-30 for a calendar date; months and days outside their range roll
// over as DateSerial does (month 13 is January of the next year, day 0 the last of the month before).
long DaysFromCivil(int year, int month, int day);

double DateSerial(int year, int month, int day);
double TimeSerial(int hour, int minute, int second);
// Combines a whole-day value and a time fraction with the encoding above.
double CombineDateTime(double date, double time);
double MakeDate(const DateParts& parts);

// Splits a date value, rounded to the nearest second.
DateParts SplitDate(double value);

// Storage text of a date value: "YYYY-MM-DD HH:MM:SS". SQL ordering of this text is date ordering.
std::string ToStorageText(double value);
// Reads the storage text (also a bare "YYYY-MM-DD"); nullopt when it isn't one.
std::optional<double> FromStorageText(const std::string& text);

// Range of date values the runtime accepts: years 100 to 9999.
constexpr double kMinDate = -657434.0;            // 0100-01-01
constexpr double kMaxDate = 2958465.99998842592;  // 9999-12-31 23:59:59

// Whether a value is a date of that range: from any time on 0100-01-01 up to what rounds to
// 9999-12-31 23:59:59.
inline bool InDateRange(double value) {
  return value > kMinDate - 1.0 && value < kMaxDate + 0.5 / 86400.0;
}

}  // namespace vellumar::vb
