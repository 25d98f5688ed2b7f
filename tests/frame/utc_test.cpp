#include "frame/utc.h"

#include <gtest/gtest.h>

#include "platform/vb/date_value.h"

namespace vellumar {
namespace {

TEST(UTC, MonthDaysIsTheLengthOfTheMonthBefore) {
  const int expected[13] = {0, 0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30};
  for (int month = 1; month <= 12; ++month) {
    EXPECT_EQ(UTC::MonthDays(month, false), expected[month]) << month;
    EXPECT_EQ(UTC::MonthDays(month, true), month == 3 ? 29 : expected[month]) << month;
  }
}

TEST(UTC, StartsAt36526OnNewYearsDay2000) {
  ui::VirtualClock clock({2000, 1, 1, 0, 0, 0, 0});
  UTC utc(clock);
  EXPECT_EQ(utc.CurrentTime(), 36526.0);
  clock.Set({1999 + 1, 1, 1, 12, 0, 0, 0});
  EXPECT_EQ(utc.CurrentTime(), 36526.5);
}

TEST(UTC, MillisecondsDoNotCount) {
  EXPECT_EQ(UTC::DateValueOf({2024, 6, 1, 10, 20, 30, 999}),
            UTC::DateValueOf({2024, 6, 1, 10, 20, 30, 0}));
}

TEST(UTC, CalendarEdges) {
  EXPECT_EQ(UTC::DateValueOf({2000, 2, 29, 0, 0, 0, 0}), vb::DateSerial(2000, 2, 29));
  EXPECT_EQ(UTC::DateValueOf({2000, 3, 1, 0, 0, 0, 0}), vb::DateSerial(2000, 3, 1));
  EXPECT_EQ(UTC::DateValueOf({2100, 2, 28, 0, 0, 0, 0}), vb::DateSerial(2100, 2, 28));
  EXPECT_EQ(UTC::DateValueOf({2100, 3, 1, 0, 0, 0, 0}), vb::DateSerial(2100, 3, 1));
  EXPECT_EQ(UTC::DateValueOf({2024, 12, 31, 23, 59, 59, 0}),
            vb::MakeDate({2024, 12, 31, 23, 59, 59}));
}

// Every day from 2000 to the end of 2199, each at a different time of day: the count from
// 2000 gives exactly the date value of the calendar.
TEST(UTC, AgreesWithTheDateValueOfTheSameTimeEveryDay) {
  int checked = 0;
  for (int year = 2000; year < 2200; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; day <= vb::DaysInMonth(year, month); ++day) {
        const int n = year * 372 + month * 31 + day;
        const ui::UtcTime t{year, month, day, n % 24, (n * 7) % 60, (n * 13) % 60, n % 1000};
        ASSERT_EQ(UTC::DateValueOf(t), vb::MakeDate({year, month, day, t.hour, t.minute, t.second}))
            << year << "-" << month << "-" << day;
        ++checked;
      }
    }
  }
  EXPECT_EQ(checked, 73049);
}

TEST(UTC, CurrentTimeFollowsTheClock) {
  ui::VirtualClock clock({2024, 3, 15, 8, 30, 0, 0});
  UTC utc(clock);
  const double before = utc.CurrentTime();
  clock.AdvanceMs(86400 * 1000);
  EXPECT_EQ(utc.CurrentTime(), before + 1);
  EXPECT_EQ(before, vb::MakeDate({2024, 3, 15, 8, 30, 0}));
}

TEST(UTC, SystemClockGivesThePresent) {
  ui::SystemClock clock;
  UTC utc(clock);
  const double now = utc.CurrentTime();
  EXPECT_GT(now, vb::DateSerial(2020, 1, 1));
  EXPECT_LT(now, vb::DateSerial(2200, 1, 1));
}

}  // namespace
}  // namespace vellumar
