#pragma once
// Date arithmetic of the runtime. Intervals, in either case: "yyyy" year, "q" quarter,
// "m" month, "y" day of year, "d" day, "w" weekday, "ww" week, "h" hour, "n" minute,
// "s" second. Another interval raises 5.
#include <string>

namespace vellumar::vb {

// DateAdd: the number is cut to its whole part. Months, quarters and years keep the day,
// clamped to the end of the month (a month after 31 January is the last of February), and
// keep the time of day; "y", "d" and "w" add days, "ww" weeks. Results outside years
// 100..9999 raise 5.
double DateAdd(const std::string& interval, double number, double date);

// DateDiff: the number of interval boundaries crossed from date1 to date2, negative when date2
// is earlier. "yyyy", "q", "m" count calendar boundaries; "y" and "d" midnights; "w" whole
// 7-day spans; "ww" Sundays (weeks starting Sunday); "h", "n", "s" the boundaries of hours,
// minutes and seconds.
long DateDiff(const std::string& interval, double date1, double date2);

// Weekday: 1 for Sunday to 7 for Saturday. Dates outside years 100..9999 raise 5 in all three.
int Weekday(double date);

}  // namespace vellumar::vb
