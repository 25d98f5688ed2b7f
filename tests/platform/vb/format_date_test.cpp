#include <gtest/gtest.h>

#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "platform/vb/locales.h"

using namespace vellumar::vb;
using namespace vellumar::vb::testing;

namespace {

// Saturday 5 January 2002, 07:08:09.
const double kSat = MakeDate({2002, 1, 5, 7, 8, 9});

TEST(FormatDate, SingleFields) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(FormatDate(kSat, "dd"), "05");
  EXPECT_EQ(FormatDate(kSat, "d"), "5");
  EXPECT_EQ(FormatDate(kSat, "mmm"), "Jan");
  EXPECT_EQ(FormatDate(kSat, "mmmm"), "January");
  EXPECT_EQ(FormatDate(kSat, "mm"), "01");
  EXPECT_EQ(FormatDate(kSat, "m"), "1");
  EXPECT_EQ(FormatDate(kSat, "yyyy"), "2002");
  EXPECT_EQ(FormatDate(kSat, "yy"), "02");
  EXPECT_EQ(FormatDate(kSat, "hh"), "07");
  EXPECT_EQ(FormatDate(kSat, "h"), "7");
  EXPECT_EQ(FormatDate(kSat, "nn"), "08");
  EXPECT_EQ(FormatDate(kSat, "n"), "8");
  EXPECT_EQ(FormatDate(kSat, "ss"), "09");
  EXPECT_EQ(FormatDate(kSat, "s"), "9");
  EXPECT_EQ(FormatDate(kSat, "ddd dddd"), "Sat Saturday");
  EXPECT_EQ(FormatDate(kSat, "q"), "1");
  EXPECT_EQ(FormatDate(kSat, "y"), "5");
  EXPECT_EQ(FormatDate(kSat, "w"), "7");
  EXPECT_EQ(FormatDate(DateSerial(2002, 12, 31), "y"), "365");
  EXPECT_EQ(FormatDate(DateSerial(2002, 11, 30), "q"), "4");
}

TEST(FormatDate, UpperCaseLettersAreTheSameFields) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(FormatDate(kSat, "DD-MMM-YYYY"), "05-Jan-2002");
  EXPECT_EQ(FormatDate(kSat, "YYYYMMDD"), "20020105");
  EXPECT_EQ(FormatDate(kSat, "HHNNSS"), "070809");
  EXPECT_EQ(FormatDate(kSat, "Dd-mMm-yYyY"), "05-Jan-2002");
}

TEST(FormatDate, PatternsOfTheProgram) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(FormatDate(kSat, "dd-mmm-yyyy hh:nn:ss"), "05-Jan-2002 07:08:09");
  EXPECT_EQ(FormatDate(kSat, "dd-mmm-yy"), "05-Jan-02");
  EXPECT_EQ(FormatDate(kSat, "mm/dd/yy"), "01/05/02");
  EXPECT_EQ(FormatDate(kSat, "hhnn"), "0708");
  EXPECT_EQ(FormatDate(kSat, "ddddd"), "05/01/2002");
  EXPECT_EQ(FormatDate(kSat, "ddddd   hh:nn"), "05/01/2002   07:08");
  EXPECT_EQ(FormatDate(kSat, "ddddd   hh:nn:ss"), "05/01/2002   07:08:09");
  EXPECT_EQ(FormatDate(kSat, "ddddd  hh:nn"), "05/01/2002  07:08");
  EXPECT_EQ(FormatDate(kSat, "ddddd hh:nn"), "05/01/2002 07:08");
  EXPECT_EQ(FormatDate(kSat, "ddddd hh:nn:ss"), "05/01/2002 07:08:09");
  EXPECT_EQ(FormatDate(DateSerial(1999, 12, 31), "dd-mmm-yyyy hh:nn:ss"), "31-Dec-1999 00:00:00");
}

TEST(FormatDate, ShortDateFollowsTheLocaleOrder) {
  {
    ScopedDateLocale pin(DayFirstLocale());
    EXPECT_EQ(FormatDate(kSat, "ddddd"), "05/01/2002");
    EXPECT_EQ(FormatDate(DateSerial(2002, 12, 25), "ddddd"), "25/12/2002");
  }
  {
    ScopedDateLocale pin(MonthFirstLocale());
    EXPECT_EQ(FormatDate(kSat, "ddddd"), "01/05/2002");
    EXPECT_EQ(FormatDate(DateSerial(2002, 12, 25), "ddddd"), "12/25/2002");
    EXPECT_EQ(FormatDate(kSat, "ddddd hh:nn"), "01/05/2002 07:08");
  }
  {
    ScopedDateLocale pin(YearFirstLocale());
    EXPECT_EQ(FormatDate(kSat, "ddddd"), "2002-01-05");
  }
}

TEST(FormatDate, SeparatorsAndMonthNamesComeFromTheLocale) {
  ScopedDateLocale pin(GermanLocale());
  EXPECT_EQ(FormatDate(kSat, "ddddd hh:nn"), "05.01.2002 07.08");
  EXPECT_EQ(FormatDate(kSat, "mm/dd/yy"), "01.05.02");
  EXPECT_EQ(FormatDate(DateSerial(2002, 3, 15), "dd-mmm-yyyy"), "15-Mär-2002");
  EXPECT_EQ(FormatDate(DateSerial(2002, 12, 15), "DD-MMM-YYYY"), "15-Dez-2002");
  EXPECT_EQ(FormatDate(DateSerial(2002, 10, 1), "mmmm"), "Oktober");
}

TEST(FormatDate, MonthLettersNextToHoursOrSecondsAreMinutes) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(FormatDate(kSat, "hh:mm"), "07:08");
  EXPECT_EQ(FormatDate(kSat, "h:m:s"), "7:8:9");
  EXPECT_EQ(FormatDate(kSat, "mm:ss"), "08:09");
  EXPECT_EQ(FormatDate(kSat, "dd/mm/yyyy hh:mm"), "05/01/2002 07:08");
  EXPECT_EQ(FormatDate(kSat, "hh mmm"), "07 Jan");  // a month name is never a minute
  EXPECT_EQ(FormatDate(kSat, "mm"), "01");
}

TEST(FormatDate, Literals) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(FormatDate(kSat, "\\Y\\e\\a\\r yyyy"), "Year 2002");
  EXPECT_EQ(FormatDate(kSat, "\"day\" dd"), "day 05");
  EXPECT_EQ(FormatDate(kSat, "yyyy-mm-dd\\Thh:nn"), "2002-01-05T07:08");
  EXPECT_EQ(FormatDate(kSat, "hh:nn Z"), "07:08 Z");
  EXPECT_EQ(FormatDate(kSat, "[dd]"), "[05]");
}

TEST(FormatDate, TwelveHourClock) {
  ScopedDateLocale pin(DayFirstLocale());
  const double afternoon = MakeDate({2002, 1, 5, 13, 5, 0});
  const double night = MakeDate({2002, 1, 5, 0, 30, 0});
  EXPECT_EQ(FormatDate(afternoon, "hh:nn AM/PM"), "01:05 PM");
  EXPECT_EQ(FormatDate(night, "h:nn am/pm"), "12:30 am");
  EXPECT_EQ(FormatDate(afternoon, "h A/P"), "1 P");
  EXPECT_EQ(FormatDate(night, "h a/p"), "12 a");
  EXPECT_EQ(FormatDate(afternoon, "h AMPM"), "1 PM");
  EXPECT_EQ(FormatDate(afternoon, "hh:nn"), "13:05");
}

TEST(FormatDate, WeekOfYearStartsOnSunday) {
  ScopedDateLocale pin(DayFirstLocale());
  // 1 January 2002 is a Tuesday: week 1 runs to Saturday the 5th.
  EXPECT_EQ(FormatDate(DateSerial(2002, 1, 1), "ww"), "1");
  EXPECT_EQ(FormatDate(DateSerial(2002, 1, 5), "ww"), "1");
  EXPECT_EQ(FormatDate(DateSerial(2002, 1, 6), "ww"), "2");
  EXPECT_EQ(FormatDate(DateSerial(2002, 12, 31), "ww"), "53");
}

TEST(FormatDate, EmptyPatternAndGeneralDateAreCStr) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(FormatDate(kSat, ""), "05/01/2002 07:08:09");
  EXPECT_EQ(FormatDate(kSat, "c"), "05/01/2002 07:08:09");
  EXPECT_EQ(FormatDate(kSat, "ttttt"), "07:08:09");
}

TEST(FormatDate, BeforeTheEpochAndAtTheEndsOfTheRange) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(FormatDate(-1.25, "dd-mmm-yyyy hh:nn"), "29-Dec-1899 06:00");
  EXPECT_EQ(FormatDate(kMinDate, "dd-mmm-yyyy"), "01-Jan-0100");
  EXPECT_EQ(FormatDate(kMaxDate, "dd-mmm-yyyy hh:nn:ss"), "31-Dec-9999 23:59:59");
}

TEST(FormatDate, OutsideTheRangeRaises5) {
  try {
    FormatDate(kMaxDate + 1, "dd");
    FAIL() << "no error";
  } catch (const VbError& e) {
    EXPECT_EQ(e.number(), 5);
  }
  EXPECT_THROW(FormatDate(kMinDate - 1, "dd"), VbError);
}

TEST(DateToString, ShortDateThenTimeUnlessMidnight) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(DateToString(kSat), "05/01/2002 07:08:09");
  EXPECT_EQ(DateToString(DateSerial(2002, 1, 5)), "05/01/2002");
  EXPECT_EQ(DateToString(0.5), "12:00:00");
  EXPECT_EQ(DateToString(TimeSerial(0, 0, 1)), "00:00:01");
  EXPECT_EQ(DateToString(0.0), "00:00:00");
  EXPECT_EQ(DateToString(1.0), "31/12/1899");
  ScopedDateLocale us(MonthFirstLocale());
  EXPECT_EQ(DateToString(kSat), "01/05/2002 07:08:09");
}

}  // namespace
