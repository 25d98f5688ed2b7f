// DateAdd and DateDiff. Both work on a linear count of seconds: the date value's encoding runs
// the fraction forward from midnight even before 1899-12-30, so it can't be added to directly.
#include "platform/vb/dateops.h"

#include <cmath>
#include <cstdint>

#include "platform/vb/ascii.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"

namespace vellumar::vb {
namespace {

constexpr int64_t kDay = 86400;

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval ParseInterval(const std::string& text) {
  const std::string i = LowerAscii(text);
  if (i == "yyyy") return Interval::Year;
  if (i == "q") return Interval::Quarter;
  if (i == "m") return Interval::Month;
  if (i == "y") return Interval::DayOfYear;
  if (i == "d") return Interval::Day;
  if (i == "w") return Interval::Weekday;
  if (i == "ww") return Interval::Week;
  if (i == "h") return Interval::Hour;
  if (i == "n") return Interval::Minute;
  if (i == "s") return Interval::Second;
  Raise(kInvalidProcedureCall);
}

void CheckRange(double date) {
  if (!InDateRange(date)) Raise(kInvalidProcedureCall);
}

int64_t FloorDiv(int64_t a, int64_t b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); }

// Seconds since 1899-12-30 00:00, rounded to the second.
int64_t ToSeconds(double date) {
  const DateParts p = SplitDate(date);
  return static_cast<int64_t>(DaysFromCivil(p.year, p.month, p.day)) * kDay + p.hour * 3600 +
         p.minute * 60 + p.second;
}

double FromSeconds(int64_t seconds) {
  const int64_t days = FloorDiv(seconds, kDay);
  const double time = static_cast<double>(seconds - days * kDay) / kDay;
  const double value = CombineDateTime(static_cast<double>(days), time);
  if (!InDateRange(value)) Raise(kInvalidProcedureCall);
  return value;
}

double AddMonths(double date, int64_t months) {
  const DateParts p = SplitDate(date);
  const int64_t index = static_cast<int64_t>(p.year) * 12 + (p.month - 1) + months;
  const int64_t year = FloorDiv(index, 12);
  if (year < 100 || year > 9999) Raise(kInvalidProcedureCall);
  DateParts q = p;
  q.year = static_cast<int>(year);
  q.month = static_cast<int>(index - year * 12) + 1;
  q.day = std::min(p.day, DaysInMonth(q.year, q.month));
  return MakeDate(q);
}

}  // namespace

int Weekday(double date) {
  CheckRange(date);
  const DateParts p = SplitDate(date);
  const int64_t day = DaysFromCivil(p.year, p.month, p.day);
  return static_cast<int>(((day + 6) % 7 + 7) % 7) + 1;  // day 0, 1899-12-30, was a Saturday
}

double DateAdd(const std::string& interval, double number, double date) {
  const Interval which = ParseInterval(interval);
  CheckRange(date);
  const double whole = std::trunc(number);
  if (!(std::fabs(whole) < 1e12)) Raise(kInvalidProcedureCall);
  const int64_t n = static_cast<int64_t>(whole);
  switch (which) {
    case Interval::Year:
      return AddMonths(date, n * 12);
    case Interval::Quarter:
      return AddMonths(date, n * 3);
    case Interval::Month:
      return AddMonths(date, n);
    case Interval::DayOfYear:
    case Interval::Day:
    case Interval::Weekday:
      return FromSeconds(ToSeconds(date) + n * kDay);
    case Interval::Week:
      return FromSeconds(ToSeconds(date) + n * 7 * kDay);
    case Interval::Hour:
      return FromSeconds(ToSeconds(date) + n * 3600);
    case Interval::Minute:
      return FromSeconds(ToSeconds(date) + n * 60);
    case Interval::Second:
      return FromSeconds(ToSeconds(date) + n);
  }
  return date;
}

long DateDiff(const std::string& interval, double date1, double date2) {
  const Interval which = ParseInterval(interval);
  CheckRange(date1);
  CheckRange(date2);
  const DateParts a = SplitDate(date1);
  const DateParts b = SplitDate(date2);
  const int64_t s1 = ToSeconds(date1);
  const int64_t s2 = ToSeconds(date2);
  const int64_t d1 = FloorDiv(s1, kDay);
  const int64_t d2 = FloorDiv(s2, kDay);
  switch (which) {
    case Interval::Year:
      return b.year - a.year;
    case Interval::Quarter:
      return (b.year * 4 + (b.month - 1) / 3) - (a.year * 4 + (a.month - 1) / 3);
    case Interval::Month:
      return (b.year * 12 + b.month) - (a.year * 12 + a.month);
    case Interval::DayOfYear:
    case Interval::Day:
      return static_cast<long>(d2 - d1);
    case Interval::Weekday:
      return static_cast<long>((d2 - d1) / 7);  // whole 7-day spans
    case Interval::Week: {
      // Weeks start on Sunday: count the Sundays after date1 up to and including date2.
      const int64_t sunday1 = d1 - (Weekday(date1) - 1);
      const int64_t sunday2 = d2 - (Weekday(date2) - 1);
      return static_cast<long>((sunday2 - sunday1) / 7);
    }
    case Interval::Hour:
      return static_cast<long>(FloorDiv(s2, 3600) - FloorDiv(s1, 3600));
    case Interval::Minute:
      return static_cast<long>(FloorDiv(s2, 60) - FloorDiv(s1, 60));
    case Interval::Second:
      return static_cast<long>(s2 - s1);
  }
  return 0;
}

}  // namespace vellumar::vb
