// Every written form of a date reads back as the same date, to the resolution of its pattern.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/format.h"
#include "platform/vb/locales.h"

using namespace vellumar::vb;
using namespace vellumar::vb::testing;

namespace {

enum class Resolution { Day, Minute, Second };

// Every day of 1999 to 2001 with a time drawn from a fixed sequence, leap days, the ends of
// many years at the first and last second, dates before 1899-12-30, and the ends of the range.
std::vector<double> SampleDates() {
  std::vector<double> dates;
  uint32_t seed = 12345;
  auto next = [&seed] { return seed = seed * 1103515245u + 12345u; };
  for (double d = DateSerial(1999, 1, 1); d <= DateSerial(2001, 12, 31); d += 1) {
    const uint32_t r = next() >> 8;
    dates.push_back(CombineDateTime(d, TimeSerial(r % 24, (r / 24) % 60, (r / 1440) % 60)));
  }
  for (int year : {1904, 1928, 1932, 1996, 2000, 2004, 2024, 2028, 2096, 2400})
    dates.push_back(MakeDate({year, 2, 29, 13, 14, 15}));
  for (int year : {100, 1850, 1899, 1900, 1929, 1930, 1969, 1970, 1999, 2000, 2029, 2030, 2099,
                   2100, 5000, 9998}) {
    dates.push_back(MakeDate({year, 12, 31, 23, 59, 59}));
    dates.push_back(MakeDate({year + 1, 1, 1, 0, 0, 0}));
    dates.push_back(MakeDate({year, 6, 30, 12, 0, 0}));
  }
  dates.push_back(MakeDate({1899, 12, 29, 6, 0, 0}));
  dates.push_back(MakeDate({1899, 12, 30, 0, 0, 1}));
  dates.push_back(MakeDate({1899, 12, 31, 18, 30, 0}));
  dates.push_back(kMinDate);
  dates.push_back(kMaxDate);
  return dates;
}

double AtResolution(double value, Resolution resolution) {
  DateParts p = SplitDate(value);
  if (resolution != Resolution::Second) p.second = 0;
  if (resolution == Resolution::Day) p.hour = p.minute = 0;
  return MakeDate(p);
}

// The first date that doesn't come back, or "" when all do. `fromYear`..`toYear` limits the
// dates to those the pattern can tell apart (a two-digit year covers 1930 to 2029).
std::string FirstFailure(const std::string& pattern, Resolution resolution, int fromYear = 100,
                         int toYear = 9999) {
  int tried = 0;
  for (double value : SampleDates()) {
    const int year = SplitDate(value).year;
    if (year < fromYear || year > toYear) continue;
    ++tried;
    const std::string text = FormatDate(value, pattern);
    const std::optional<double> back = ParseDate(text);
    const double expected = AtResolution(value, resolution);
    if (!back) return "\"" + text + "\" is no date (" + ToStorageText(value) + ")";
    if (ToStorageText(*back) != ToStorageText(expected) || std::abs(*back - expected) > 1e-7)
      return "\"" + text + "\" read as " + ToStorageText(*back) + ", not " +
             ToStorageText(expected);
  }
  return tried > 1000 || fromYear > 100 ? "" : "too few dates tried";
}

TEST(RoundTrip, FullDatePatternsInEveryLocale) {
  for (const DateLocale& locale :
       {DayFirstLocale(), MonthFirstLocale(), YearFirstLocale(), GermanLocale(), FrenchLocale()}) {
    ScopedDateLocale pin(locale);
    SCOPED_TRACE("locale " + locale.shortDatePattern);
    EXPECT_EQ(FirstFailure("dd-mmm-yyyy hh:nn:ss", Resolution::Second), "");
    EXPECT_EQ(FirstFailure("DD-MMM-YYYY", Resolution::Day), "");
    EXPECT_EQ(FirstFailure("YYYYMMDD", Resolution::Day), "");
    EXPECT_EQ(FirstFailure("ddddd", Resolution::Day), "");
    EXPECT_EQ(FirstFailure("ddddd   hh:nn", Resolution::Minute), "");
    EXPECT_EQ(FirstFailure("ddddd   hh:nn:ss", Resolution::Second), "");
    EXPECT_EQ(FirstFailure("ddddd  hh:nn", Resolution::Minute), "");
    EXPECT_EQ(FirstFailure("ddddd hh:nn", Resolution::Minute), "");
    EXPECT_EQ(FirstFailure("ddddd hh:nn:ss", Resolution::Second), "");
    EXPECT_EQ(FirstFailure("dd-mmm-yy", Resolution::Day, 1930, 2029), "");
    EXPECT_EQ(FirstFailure("yyyy-mm-dd hh:nn:ss", Resolution::Second), "");
    EXPECT_EQ(FirstFailure("", Resolution::Second), "");  // CStr
  }
}

// "mm/dd/yy" names the month first whatever the locale; it reads back in a month-first
// locale, and in a day-first one only where the day is above 12 (below, the locale's order
// wins, as it does in the runtime).
TEST(RoundTrip, MonthDayYearPattern) {
  {
    ScopedDateLocale pin(MonthFirstLocale());
    EXPECT_EQ(FirstFailure("mm/dd/yy", Resolution::Day, 1930, 2029), "");
  }
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(ToStorageText(CDate(FormatDate(DateSerial(2002, 1, 15), "mm/dd/yy"))),
            "2002-01-15 00:00:00");
  EXPECT_EQ(ToStorageText(CDate(FormatDate(DateSerial(2002, 1, 5), "mm/dd/yy"))),
            "2002-05-01 00:00:00");
}

TEST(RoundTrip, StorageTextAndDateToString) {
  ScopedDateLocale pin(DayFirstLocale());
  for (double value : SampleDates()) {
    ASSERT_EQ(ToStorageText(CDate(ToStorageText(value))), ToStorageText(value));
    ASSERT_EQ(ToStorageText(CDate(DateToString(value))), ToStorageText(value)) << value;
  }
}

}  // namespace
