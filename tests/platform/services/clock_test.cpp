#include "platform/services/clock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace vellumar::ui {
namespace {

TEST(Clock, EpochConversionRoundTripsAcrossCalendarEdges) {
  const UtcTime samples[] = {
      {1970, 1, 1, 0, 0, 0, 0},      {1969, 12, 31, 23, 59, 59, 999}, {2000, 2, 29, 12, 0, 0, 1},
      {2000, 12, 31, 23, 59, 59, 0}, {2100, 3, 1, 0, 0, 0, 0},        {2024, 2, 29, 6, 7, 8, 9},
      {1899, 12, 30, 0, 0, 0, 0},    {9999, 12, 31, 23, 59, 59, 999},
  };
  for (const UtcTime& t : samples) {
    EXPECT_EQ(UtcFromEpochMs(EpochMsFromUtc(t)), t) << t.year << "-" << t.month << "-" << t.day;
  }
  EXPECT_EQ(EpochMsFromUtc({1970, 1, 2, 0, 0, 0, 0}), 86400000);
  EXPECT_EQ(EpochMsFromUtc({2000, 1, 1, 0, 0, 0, 0}), 946684800000LL);
}

TEST(Clock, EveryDayOfFourCenturiesAgreesWithTheCLibrary) {
  for (std::int64_t day = -25567; day < 120000; day += 7) {  // 1900 .. 2298
    const time_t seconds = static_cast<time_t>(day * 86400 + 3723);
    tm broken{};
    gmtime_r(&seconds, &broken);
    const UtcTime t = UtcFromEpochMs(static_cast<std::int64_t>(seconds) * 1000);
    ASSERT_EQ(t.year, broken.tm_year + 1900);
    ASSERT_EQ(t.month, broken.tm_mon + 1);
    ASSERT_EQ(t.day, broken.tm_mday);
    ASSERT_EQ(t.hour, 1);
    ASSERT_EQ(t.minute, 2);
    ASSERT_EQ(t.second, 3);
  }
}

TEST(Clock, VirtualClockStandsStillUntilMoved) {
  VirtualClock clock(UtcTime{2023, 6, 30, 23, 59, 59, 0});
  EXPECT_EQ(clock.NowUtc(), (UtcTime{2023, 6, 30, 23, 59, 59, 0}));
  clock.AdvanceMs(1000);
  EXPECT_EQ(clock.NowUtc(), (UtcTime{2023, 7, 1, 0, 0, 0, 0}));
  clock.Set(UtcTime{2001, 1, 1, 0, 0, 0, 0});
  EXPECT_EQ(clock.NowUtc(), (UtcTime{2001, 1, 1, 0, 0, 0, 0}));
}

TEST(Clock, SystemClockAgreesWithTime) {
  SystemClock clock;
  const time_t before = time(nullptr);
  const UtcTime now = clock.NowUtc();
  const time_t after = time(nullptr);
  const std::int64_t seconds = EpochMsFromUtc(now) / 1000;
  EXPECT_GE(seconds, static_cast<std::int64_t>(before));
  EXPECT_LE(seconds, static_cast<std::int64_t>(after));
  EXPECT_GE(now.year, 2020);
}

}  // namespace
}  // namespace vellumar::ui
