#include "platform/vb/dateops.h"

#include <gtest/gtest.h>

#include "platform/vb/date_value.h"
#include "platform/vb/error.h"

using namespace vellumar::vb;

namespace {

std::string Add(const std::string& interval, double n, double date) {
  return ToStorageText(DateAdd(interval, n, date));
}

int ErrorOf(void (*f)()) {
  try {
    f();
  } catch (const VbError& e) {
    return e.number();
  }
  return 0;
}

TEST(DateAdd, MonthsClampTheDayToTheMonthsEnd) {
  EXPECT_EQ(Add("m", 1, DateSerial(2002, 1, 31)), "2002-02-28 00:00:00");
  EXPECT_EQ(Add("m", 1, DateSerial(2004, 1, 31)), "2004-02-29 00:00:00");
  EXPECT_EQ(Add("m", -1, DateSerial(2002, 3, 31)), "2002-02-28 00:00:00");
  EXPECT_EQ(Add("m", 2, DateSerial(2002, 1, 31)), "2002-03-31 00:00:00");
  EXPECT_EQ(Add("m", 13, DateSerial(2002, 1, 15)), "2003-02-15 00:00:00");
  EXPECT_EQ(Add("m", -13, DateSerial(2002, 1, 15)), "2000-12-15 00:00:00");
  EXPECT_EQ(Add("yyyy", 1, DateSerial(2004, 2, 29)), "2005-02-28 00:00:00");
  EXPECT_EQ(Add("yyyy", 4, DateSerial(2004, 2, 29)), "2008-02-29 00:00:00");
  EXPECT_EQ(Add("q", 1, DateSerial(2002, 11, 30)), "2003-02-28 00:00:00");
  EXPECT_EQ(Add("M", 1, DateSerial(2002, 1, 31)), "2002-02-28 00:00:00");  // either case
}

TEST(DateAdd, KeepsTheTimeOfDay) {
  EXPECT_EQ(Add("m", 1, MakeDate({2002, 1, 31, 13, 45, 10})), "2002-02-28 13:45:10");
  EXPECT_EQ(Add("d", 1, MakeDate({2002, 12, 31, 13, 45, 10})), "2003-01-01 13:45:10");
  EXPECT_EQ(Add("yyyy", -1, MakeDate({2002, 6, 1, 23, 59, 59})), "2001-06-01 23:59:59");
}

// "y", "d" and "w" all add days, as in the runtime; "ww" adds weeks.
TEST(DateAdd, DaysAndWeeks) {
  const double d = MakeDate({2002, 1, 12, 8, 0, 0});
  EXPECT_EQ(Add("d", 1, d), "2002-01-13 08:00:00");
  EXPECT_EQ(Add("y", 1, d), "2002-01-13 08:00:00");
  EXPECT_EQ(Add("w", 1, d), "2002-01-13 08:00:00");
  EXPECT_EQ(Add("ww", 1, d), "2002-01-19 08:00:00");
  EXPECT_EQ(Add("d", -365, d), "2001-01-12 08:00:00");
  EXPECT_EQ(Add("d", 1.9, d), "2002-01-13 08:00:00");  // the whole part only
  EXPECT_EQ(Add("d", -1.9, d), "2002-01-11 08:00:00");
}

TEST(DateAdd, HoursMinutesSeconds) {
  const double d = MakeDate({2002, 1, 12, 23, 30, 0});
  EXPECT_EQ(Add("h", 1, d), "2002-01-13 00:30:00");
  EXPECT_EQ(Add("h", 25, d), "2002-01-14 00:30:00");
  EXPECT_EQ(Add("n", -90, d), "2002-01-12 22:00:00");
  EXPECT_EQ(Add("n", 30, d), "2002-01-13 00:00:00");
  EXPECT_EQ(Add("s", 3600, d), "2002-01-13 00:30:00");
  EXPECT_EQ(Add("s", -1, DateSerial(2002, 1, 1)), "2001-12-31 23:59:59");
}

TEST(DateAdd, AcrossTheStartOfTheCount) {
  EXPECT_DOUBLE_EQ(DateAdd("h", -6, 0.0), -1.75);  // 1899-12-29 18:00
  EXPECT_DOUBLE_EQ(DateAdd("d", -1, 0.25), -1.25);
  EXPECT_DOUBLE_EQ(DateAdd("h", 12, -1.75), 0.25);
  EXPECT_EQ(Add("n", 1, MakeDate({1850, 3, 1, 23, 59, 0})), "1850-03-02 00:00:00");
}

TEST(DateAdd, Errors) {
  EXPECT_EQ(ErrorOf([] { DateAdd("x", 1, 0); }), 5);
  EXPECT_EQ(ErrorOf([] { DateAdd("", 1, 0); }), 5);
  EXPECT_EQ(ErrorOf([] { DateAdd("yyyy", 10000, DateSerial(2002, 1, 1)); }), 5);
  EXPECT_EQ(ErrorOf([] { DateAdd("d", 1, kMaxDate); }), 5);
  EXPECT_EQ(ErrorOf([] { DateAdd("s", -1, kMinDate); }), 5);
  EXPECT_EQ(ErrorOf([] { DateAdd("d", 0, 1e10); }), 5);
  EXPECT_EQ(ErrorOf([] { DateAdd("d", 1e300, 0); }), 5);
  EXPECT_EQ(ErrorOf([] { DateDiff("d", 0, -1e10); }), 5);
  EXPECT_EQ(ErrorOf([] { Weekday(1e300); }), 5);
}

TEST(DateDiff, WeeksCountSundays) {
  const double sat12 = DateSerial(2002, 1, 12);
  const double sun13 = DateSerial(2002, 1, 13);
  EXPECT_EQ(Weekday(sat12), 7);
  EXPECT_EQ(Weekday(sun13), 1);
  EXPECT_EQ(DateDiff("ww", sat12, sun13), 1);
  EXPECT_EQ(DateDiff("ww", sun13, DateSerial(2002, 1, 19)), 0);  // Sunday to Saturday
  EXPECT_EQ(DateDiff("ww", sun13, DateSerial(2002, 1, 20)), 1);
  EXPECT_EQ(DateDiff("ww", sat12, DateSerial(2002, 1, 26)), 2);
  EXPECT_EQ(DateDiff("ww", DateSerial(2002, 1, 7), DateSerial(2002, 1, 27)), 3);
  EXPECT_EQ(DateDiff("ww", DateSerial(2002, 1, 27), DateSerial(2002, 1, 7)), -3);
  EXPECT_EQ(DateDiff("ww", DateSerial(2001, 12, 29), DateSerial(2002, 3, 2)), 9);
  EXPECT_EQ(DateDiff("ww", MakeDate({2002, 1, 12, 23, 0, 0}), MakeDate({2002, 1, 13, 1, 0, 0})), 1);
}

TEST(DateDiff, WeekdayIntervalCountsWholeSevenDaySpans) {
  const double sat12 = DateSerial(2002, 1, 12);
  EXPECT_EQ(DateDiff("w", sat12, DateSerial(2002, 1, 13)), 0);
  EXPECT_EQ(DateDiff("w", sat12, DateSerial(2002, 1, 18)), 0);
  EXPECT_EQ(DateDiff("w", sat12, DateSerial(2002, 1, 19)), 1);
  EXPECT_EQ(DateDiff("w", sat12, DateSerial(2002, 1, 5)), -1);
  EXPECT_EQ(DateDiff("w", sat12, DateSerial(2002, 1, 6)), 0);
}

TEST(DateDiff, CalendarBoundaries) {
  EXPECT_EQ(DateDiff("d", MakeDate({2002, 1, 12, 23, 59, 0}), MakeDate({2002, 1, 13, 0, 1, 0})), 1);
  EXPECT_EQ(DateDiff("d", MakeDate({2002, 1, 12, 0, 1, 0}), MakeDate({2002, 1, 12, 23, 59, 0})), 0);
  EXPECT_EQ(DateDiff("y", DateSerial(2002, 1, 1), DateSerial(2003, 1, 1)), 365);
  EXPECT_EQ(DateDiff("m", DateSerial(2002, 1, 31), DateSerial(2002, 2, 1)), 1);
  EXPECT_EQ(DateDiff("m", DateSerial(2002, 1, 1), DateSerial(2002, 1, 31)), 0);
  EXPECT_EQ(DateDiff("m", DateSerial(2002, 3, 15), DateSerial(2001, 3, 15)), -12);
  EXPECT_EQ(DateDiff("yyyy", MakeDate({2001, 12, 31, 23, 59, 59}), DateSerial(2002, 1, 1)), 1);
  EXPECT_EQ(DateDiff("yyyy", DateSerial(2002, 1, 1), DateSerial(2002, 12, 31)), 0);
  EXPECT_EQ(DateDiff("q", DateSerial(2002, 3, 31), DateSerial(2002, 4, 1)), 1);
  EXPECT_EQ(DateDiff("q", DateSerial(2002, 1, 1), DateSerial(2002, 3, 31)), 0);
  EXPECT_EQ(DateDiff("q", DateSerial(2002, 1, 1), DateSerial(2001, 12, 31)), -1);
}

TEST(DateDiff, HoursMinutesSecondsCountBoundaries) {
  EXPECT_EQ(DateDiff("h", MakeDate({2002, 1, 1, 10, 59, 0}), MakeDate({2002, 1, 1, 11, 1, 0})), 1);
  EXPECT_EQ(DateDiff("h", MakeDate({2002, 1, 1, 10, 0, 0}), MakeDate({2002, 1, 1, 10, 59, 59})), 0);
  EXPECT_EQ(DateDiff("n", MakeDate({2002, 1, 1, 10, 0, 59}), MakeDate({2002, 1, 1, 10, 1, 0})), 1);
  EXPECT_EQ(DateDiff("s", MakeDate({2002, 1, 1, 10, 0, 59}), MakeDate({2002, 1, 1, 10, 1, 0})), 1);
  EXPECT_EQ(DateDiff("s", DateSerial(2002, 1, 2), DateSerial(2002, 1, 1)), -86400);
  EXPECT_EQ(DateDiff("n", DateSerial(2002, 1, 1), DateSerial(2002, 1, 2)), 1440);
  // Across 1899-12-30: 23:00 on the 29th to 01:00 on the 30th.
  EXPECT_EQ(DateDiff("h", MakeDate({1899, 12, 29, 23, 0, 0}), MakeDate({1899, 12, 30, 1, 0, 0})),
            2);
  EXPECT_EQ(DateDiff("d", -1.75, 0.25), 1);
}

TEST(DateDiff, UnknownIntervalRaises5) {
  EXPECT_EQ(ErrorOf([] { DateDiff("days", 0, 1); }), 5);
  EXPECT_EQ(ErrorOf([] { DateDiff("", 0, 1); }), 5);
}

}  // namespace
