#include "frame/utc.h"

#include "platform/vb/date_value.h"

namespace vellumar {

int UTC::MonthDays(int month, bool isLeap) {
  switch (month) {
    case 1:
      return 0;
    case 2:
    case 4:
    case 6:
    case 8:
    case 9:
    case 11:
      return 31;
    case 3:
      return isLeap ? 29 : 28;
    case 5:
    case 7:
    case 10:
    case 12:
      return 30;
    default:
      return 0;
  }
}

double UTC::DateValueOf(const ui::UtcTime& t) {
  long days = 36525;
  for (int year = 2000; year < t.year; ++year) days += vb::IsLeapYear(year) ? 366 : 365;
  const bool leap = vb::IsLeapYear(t.year);
  for (int month = 1; month <= t.month; ++month) days += MonthDays(month, leap);
  days += t.day;
  return static_cast<double>(days) + (t.hour * 3600.0 + t.minute * 60.0 + t.second) / 86400.0;
}

}  // namespace vellumar
