#pragma once
// The present as a UTC date value (days since 1899-12-30, the time of day as the fraction).
#include "platform/services/clock.h"

namespace vellumar {

class UTC {
 public:
  explicit UTC(const ui::Clock& clock) : clock_(clock) {}

  // The clock's broken-down time as a date value, to the whole second.
  double CurrentTime() const { return DateValueOf(clock_.NowUtc()); }

  // Counted up from 2000-01-01: 36525, plus 365 or 366 for each year from 2000 to the year
  // before, plus MonthDays over the months up to this one, plus the day of the month, plus
  // hours, minutes and seconds as a fraction of 86400. Milliseconds don't count. Meaningful
  // from the year 2000 on.
  static double DateValueOf(const ui::UtcTime& time);

  // The number of days of the month before `month`: 0 for 1; 31 for 2, 4, 6, 8, 9, 11; for 3,
  // 29 in a leap year and otherwise 28; 30 for 5, 7, 10, 12. Summed over 1 to a month, it gives
  // the days of the year before that month.
  static int MonthDays(int month, bool isLeap);

 private:
  const ui::Clock& clock_;
};

}  // namespace vellumar
