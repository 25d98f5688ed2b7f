#include "platform/vb/date_value.h"

#include <gtest/gtest.h>

using namespace vellumar::vb;

// Day 36525 is 1999-12-31: the clock's count starts there and adds the day of the month, so
// 2000-01-01 is 36526, as the runtime's own date values have it.
TEST(DateValue, DayNumbersOfTheRuntime) {
  EXPECT_DOUBLE_EQ(DateSerial(1999, 12, 31), 36525.0);
  EXPECT_DOUBLE_EQ(DateSerial(2000, 1, 1), 36526.0);
  EXPECT_DOUBLE_EQ(DateSerial(1899, 12, 30), 0.0);
  EXPECT_DOUBLE_EQ(DateSerial(1900, 1, 1), 2.0);
}

TEST(DateValue, MonthAndDayRollOver) {
  EXPECT_DOUBLE_EQ(DateSerial(2001, 13, 1), DateSerial(2002, 1, 1));
  EXPECT_DOUBLE_EQ(DateSerial(2002, 3, 0), DateSerial(2002, 2, 28));
  EXPECT_DOUBLE_EQ(DateSerial(2002, 0, 1), DateSerial(2001, 12, 1));
}

TEST(DateValue, SplitRoundsToTheSecond) {
  const double v = MakeDate({2002, 1, 15, 12, 30, 59});
  const DateParts p = SplitDate(v + 0.4 / 86400.0);
  EXPECT_EQ(p.year, 2002);
  EXPECT_EQ(p.month, 1);
  EXPECT_EQ(p.day, 15);
  EXPECT_EQ(p.hour, 12);
  EXPECT_EQ(p.minute, 30);
  EXPECT_EQ(p.second, 59);
  const DateParts q = SplitDate(MakeDate({2002, 1, 15, 23, 59, 59}) + 0.9 / 86400.0);
  EXPECT_EQ(q.day, 16);
  EXPECT_EQ(q.hour, 0);
}

TEST(DateValue, BeforeTheEpochTheFractionCountsForward) {
  const DateParts p = SplitDate(-1.25);
  EXPECT_EQ(p.year, 1899);
  EXPECT_EQ(p.month, 12);
  EXPECT_EQ(p.day, 29);
  EXPECT_EQ(p.hour, 6);
  EXPECT_DOUBLE_EQ(MakeDate({1899, 12, 29, 6, 0, 0}), -1.25);
}

TEST(DateValue, StorageTextRoundTripsAndSorts) {
  const double v = MakeDate({1985, 7, 4, 3, 4, 5});
  EXPECT_EQ(ToStorageText(v), "1985-07-04 03:04:05");
  EXPECT_DOUBLE_EQ(*FromStorageText("1985-07-04 03:04:05"), v);
  EXPECT_DOUBLE_EQ(*FromStorageText("1985-07-04"), DateSerial(1985, 7, 4));
  EXPECT_FALSE(FromStorageText("1985-02-30").has_value());
  EXPECT_FALSE(FromStorageText("hello").has_value());
  EXPECT_LT(ToStorageText(DateSerial(1999, 12, 31)), ToStorageText(DateSerial(2000, 1, 1)));
}
