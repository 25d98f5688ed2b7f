#include <gtest/gtest.h>

#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "platform/vb/locales.h"

using namespace vellumar::vb;
using namespace vellumar::vb::testing;

namespace {

const double kJan15 = DateSerial(2002, 1, 15);
const double kHalf = TimeSerial(12, 0, 0);

// The text of a parse result, so that a failure names the date.
std::string Read(const std::string& text) {
  const std::optional<double> v = ParseDate(text);
  return v ? ToStorageText(*v) : "(no date)";
}

TEST(ParseDate, IsoForms) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(Read("2002-01-15"), "2002-01-15 00:00:00");
  EXPECT_EQ(Read("2002-01-15 12:00:00"), "2002-01-15 12:00:00");
  EXPECT_EQ(Read("2002-01-15T12:00:00"), "2002-01-15 12:00:00");
  EXPECT_EQ(Read("2002-01-15T12:00"), "2002-01-15 12:00:00");
  EXPECT_EQ(Read("2002-1-5 7:08:09"), "2002-01-05 07:08:09");
  EXPECT_EQ(Read("2002/01/15"), "2002-01-15 00:00:00");
  EXPECT_DOUBLE_EQ(*ParseDate("2002-01-15 12:00:00"), kJan15 + kHalf);
}

TEST(ParseDate, EightDigitsAreYearMonthDay) {
  ScopedDateLocale pin(MonthFirstLocale());
  EXPECT_EQ(Read("20020115"), "2002-01-15 00:00:00");
  EXPECT_EQ(Read("20020115 12:30"), "2002-01-15 12:30:00");
  EXPECT_EQ(Read("20021315"), "(no date)");
  EXPECT_EQ(Read("20020230"), "(no date)");
  EXPECT_EQ(Read("2002011"), "(no date)");  // seven digits are nothing
}

TEST(ParseDate, MonthNamesInAnyCaseAndOrder) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(Read("15-Jan-2002 12:00"), "2002-01-15 12:00:00");
  EXPECT_EQ(Read("15-Jan-2002 12:00:00"), "2002-01-15 12:00:00");
  EXPECT_EQ(Read("15 Jan 2002"), "2002-01-15 00:00:00");
  EXPECT_EQ(Read("Jan 15, 2002"), "2002-01-15 00:00:00");
  EXPECT_EQ(Read("January 15, 2002"), "2002-01-15 00:00:00");
  EXPECT_EQ(Read("15 JANUARY 2002"), "2002-01-15 00:00:00");
  EXPECT_EQ(Read("15-jan-02"), "2002-01-15 00:00:00");
  EXPECT_EQ(Read("2002 Jan 15"), "2002-01-15 00:00:00");
  EXPECT_EQ(Read("Sept 3 2002"), "2002-09-03 00:00:00");
  EXPECT_EQ(Read("3 december 1999 23:59:59"), "1999-12-03 23:59:59");
  EXPECT_EQ(Read("Tue, 15 Jan 2002 12:30:00"), "2002-01-15 12:30:00");
  EXPECT_EQ(Read("Jan 2002"), "2002-01-01 00:00:00");
}

TEST(ParseDate, NumericDatesFollowTheLocaleAndSwapAnImpossibleMonth) {
  {
    ScopedDateLocale pin(MonthFirstLocale());
    EXPECT_EQ(Read("01/15/2002"), "2002-01-15 00:00:00");
    EXPECT_EQ(Read("15/01/2002"), "2002-01-15 00:00:00");
    EXPECT_EQ(Read("01/02/2002"), "2002-01-02 00:00:00");
    EXPECT_EQ(Read("1/15/02"), "2002-01-15 00:00:00");
  }
  {
    ScopedDateLocale pin(DayFirstLocale());
    EXPECT_EQ(Read("01/15/2002"), "2002-01-15 00:00:00");
    EXPECT_EQ(Read("15/01/2002"), "2002-01-15 00:00:00");
    EXPECT_EQ(Read("01/02/2002"), "2002-02-01 00:00:00");
    EXPECT_EQ(Read("1/15/02"), "2002-01-15 00:00:00");
    EXPECT_EQ(Read("15.01.2002"), "2002-01-15 00:00:00");
    EXPECT_EQ(Read("15-01-2002 12:30"), "2002-01-15 12:30:00");
  }
  {
    ScopedDateLocale pin(YearFirstLocale());
    EXPECT_EQ(Read("02/01/15"), "2002-01-15 00:00:00");
    EXPECT_EQ(Read("15/01/2002"), "2002-01-15 00:00:00");
  }
}

TEST(ParseDate, TwoDigitYearsWindow) {
  ScopedDateLocale pin(MonthFirstLocale());
  EXPECT_EQ(Read("1/15/00"), "2000-01-15 00:00:00");
  EXPECT_EQ(Read("1/15/29"), "2029-01-15 00:00:00");
  EXPECT_EQ(Read("1/15/30"), "1930-01-15 00:00:00");
  EXPECT_EQ(Read("1/15/99"), "1999-01-15 00:00:00");
  EXPECT_EQ(Read("15-Jan-45"), "1945-01-15 00:00:00");
  EXPECT_EQ(Read("1/15/5"), "2005-01-15 00:00:00");
}

TEST(ParseDate, LocaleShortDateWithTime) {
  {
    ScopedDateLocale pin(DayFirstLocale());
    EXPECT_EQ(Read("15/01/2002 12:30"), "2002-01-15 12:30:00");
    EXPECT_EQ(Read("15/01/2002   12:30:45"), "2002-01-15 12:30:45");
  }
  {
    ScopedDateLocale pin(GermanLocale());
    EXPECT_EQ(Read("15.01.2002 12.30"), "2002-01-15 12:30:00");
    EXPECT_EQ(Read("15.01.2002 12:30:45"), "2002-01-15 12:30:45");
    EXPECT_EQ(Read("15-Mär-2002"), "2002-03-15 00:00:00");
    EXPECT_EQ(Read("15-mär-2002"), "2002-03-15 00:00:00");
    EXPECT_EQ(Read("1. Dezember 2002"), "2002-12-01 00:00:00");
    EXPECT_EQ(Read("15-Mar-2002"), "2002-03-15 00:00:00");  // English names always read
  }
  {
    ScopedDateLocale pin(FrenchLocale());
    EXPECT_EQ(Read("15-janv.-2002"), "2002-01-15 00:00:00");
    EXPECT_EQ(Read("15 févr. 2002"), "2002-02-15 00:00:00");
    EXPECT_EQ(Read("15-déc.-2002 08:00"), "2002-12-15 08:00:00");
  }
}

TEST(ParseDate, TimeAlone) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_NEAR(*ParseDate("12:30"), 0.5208333333, 1e-9);
  EXPECT_DOUBLE_EQ(*ParseDate("12:30"), TimeSerial(12, 30, 0));
  EXPECT_DOUBLE_EQ(*ParseDate("12:30:15"), TimeSerial(12, 30, 15));
  EXPECT_DOUBLE_EQ(*ParseDate("0:00"), 0.0);
  EXPECT_DOUBLE_EQ(*ParseDate("3:15 PM"), TimeSerial(15, 15, 0));
  EXPECT_DOUBLE_EQ(*ParseDate("3:15pm"), TimeSerial(15, 15, 0));
  EXPECT_DOUBLE_EQ(*ParseDate("12:00 AM"), 0.0);
  EXPECT_DOUBLE_EQ(*ParseDate("12:00 PM"), kHalf);
  EXPECT_DOUBLE_EQ(*ParseDate("3 PM"), TimeSerial(15, 0, 0));
  ScopedDateLocale german(GermanLocale());
  EXPECT_DOUBLE_EQ(*ParseDate("12.30"), TimeSerial(12, 30, 0));
}

TEST(ParseDate, TimeBeforeTheDateAndAmPmWithDate) {
  ScopedDateLocale pin(MonthFirstLocale());
  EXPECT_EQ(Read("12:30 1/15/2002"), "2002-01-15 12:30:00");
  EXPECT_EQ(Read("1/15/2002 3:05:00 PM"), "2002-01-15 15:05:00");
}

TEST(ParseDate, LeapDaysAndTheRangeOfYears) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(Read("2000-02-29"), "2000-02-29 00:00:00");
  EXPECT_EQ(Read("29-Feb-2004"), "2004-02-29 00:00:00");
  EXPECT_EQ(Read("1900-02-29"), "(no date)");
  EXPECT_EQ(Read("2001-02-29"), "(no date)");
  EXPECT_DOUBLE_EQ(*ParseDate("0100-01-01"), kMinDate);
  EXPECT_NEAR(*ParseDate("9999-12-31 23:59:59"), kMaxDate, 1e-9);
  EXPECT_EQ(Read("0099-12-31"), "(no date)");
  EXPECT_EQ(Read("10000-01-01"), "(no date)");
  // Before 1899-12-30 the time still counts forward from midnight.
  EXPECT_DOUBLE_EQ(*ParseDate("1899-12-29 06:00"), -1.25);
}

TEST(ParseDate, RejectsNonsense) {
  ScopedDateLocale pin(DayFirstLocale());
  for (const char* text : {"hello",
                           "2002-13-45",
                           "31/31/2002",
                           "",
                           "   ",
                           "12:61",
                           "25:00",
                           "12:30:60",
                           "15/01",
                           "Jan 15",
                           "2002-01-15 12:",
                           "15-Foo-2002",
                           "1.5",
                           "36526",
                           "15//01/2002",
                           "/15/01/2002",
                           "15/01/2002/",
                           "13 PM",
                           "0:30 PM",
                           "15 Jan Feb 2002",
                           "1/2/3/4",
                           "12:30:15:10",
                           "15/01/2002 12:30 14:00",
                           "15 Jan 2002 X",
                           "1/15/20021",
                           "2002-01-15Z",
                           "1234567890",
                           "2002-001-15",
                           "15 Jan 2002 12:30:5.5",
                           "AM",
                           "-15/01/2002"}) {
    EXPECT_FALSE(ParseDate(text).has_value()) << '"' << text << "\" read as " << Read(text);
    EXPECT_FALSE(IsDate(text)) << text;
  }
}

TEST(CDate, RaisesTypeMismatch) {
  ScopedDateLocale pin(DayFirstLocale());
  try {
    CDate("hello");
    FAIL() << "no error";
  } catch (const VbError& e) {
    EXPECT_EQ(e.number(), 13);
    EXPECT_EQ(e.description(), "Type mismatch");
  }
  EXPECT_DOUBLE_EQ(CDate("2002-01-15"), kJan15);
  EXPECT_TRUE(IsDate("15-Jan-2002"));
}

TEST(ParseDate, AnExplicitLocaleOverridesTheCurrentOne) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(ToStorageText(*ParseDate("01/02/2002", MonthFirstLocale())), "2002-01-02 00:00:00");
  EXPECT_EQ(Read("01/02/2002"), "2002-02-01 00:00:00");
}

}  // namespace
