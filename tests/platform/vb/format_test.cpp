#include "platform/vb/format.h"

#include <gtest/gtest.h>

#include "platform/vb/date_value.h"
#include "platform/vb/locales.h"

using namespace vellumar::vb;
using namespace vellumar::vb::testing;

namespace {

TEST(Format, DatesByTheDateFormatter) {
  ScopedDateLocale pin(DayFirstLocale());
  const Variant d = Variant::FromDate(MakeDate({2002, 1, 15, 12, 30, 0}));
  EXPECT_EQ(Format(d, "dd-mmm-yyyy hh:nn:ss"), "15-Jan-2002 12:30:00");
  EXPECT_EQ(Format(d, "ddddd"), "15/01/2002");
  EXPECT_EQ(Format(d, "HHNNSS"), "123000");
  EXPECT_EQ(Format(d, "Short Date"), "15/01/2002");
  EXPECT_EQ(Format(d, "Long Time"), "12:30:00");
  EXPECT_EQ(Format(d, "Short Time"), "12:30");
  EXPECT_EQ(Format(d, "Medium Date"), "15-Jan-02");
  EXPECT_EQ(Format(d, "General Date"), "15/01/2002 12:30:00");
}

TEST(Format, NumbersWithADatePatternAreDayValues) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(Format(Variant(36526.0), "dd-mmm-yyyy"), "01-Jan-2000");
  EXPECT_EQ(Format(Variant(36526), "YYYYMMDD"), "20000101");
  EXPECT_EQ(Format(Variant(0.5), "hh:nn"), "12:00");
}

TEST(Format, TextsThatAreDatesOrNumbers) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(Format(Variant("2002-01-15"), "dd-mmm-yyyy"), "15-Jan-2002");
  EXPECT_EQ(Format(Variant("14.2"), "0.00"), "14.20");
  EXPECT_EQ(Format(Variant(" 7 "), "000"), "007");
  EXPECT_EQ(Format(Variant("hello"), "0.00"), "hello");
  EXPECT_EQ(Format(Variant("hello"), "dd-mmm-yyyy"), "hello");
}

TEST(Format, NumbersByTheNumberFormatter) {
  EXPECT_EQ(Format(Variant(int16_t{7}), "000"), "007");
  EXPECT_EQ(Format(Variant(14.025), "  0.000"), "  14.025");
  EXPECT_EQ(Format(Variant(1234567L), "#,##0"), "1,234,567");
  EXPECT_EQ(Format(Variant::FromDate(36526.5), "0.00"), "36526.50");
  EXPECT_EQ(Format(Variant(), "0"), "0");  // Empty is zero
}

TEST(Format, EmptyPatternIsThePlainConversion) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_EQ(Format(Variant(14.025), ""), "14.025");
  EXPECT_EQ(Format(Variant(true), ""), "True");
  EXPECT_EQ(Format(Variant("abc"), ""), "abc");
  EXPECT_EQ(Format(Variant::FromDate(DateSerial(2002, 1, 15)), ""), "15/01/2002");
  EXPECT_EQ(Format(Variant(), ""), "");
}

TEST(Format, NullGivesEmptyText) {
  EXPECT_EQ(Format(Variant::Null(), "0.000"), "");
  EXPECT_EQ(Format(Variant::Null(), "dd-mmm-yyyy"), "");
  EXPECT_EQ(Format(Variant::Null(), ""), "");
}

TEST(Format, NamedNumberFormats) {
  EXPECT_EQ(Format(Variant(5), "Fixed"), "5.00");
  EXPECT_EQ(Format(Variant(1234.5), "Standard"), "1,234.50");
  EXPECT_EQ(Format(Variant(0.5), "Percent"), "50.00%");
  EXPECT_EQ(Format(Variant(12345), "Scientific"), "1.23E+04");
  EXPECT_EQ(Format(Variant(-5), "Currency"), "($5.00)");
  EXPECT_EQ(Format(Variant(2.5), "General Number"), "2.5");
  EXPECT_EQ(Format(Variant(5), "Yes/No"), "Yes");
  EXPECT_EQ(Format(Variant(0), "yes/no"), "No");
  EXPECT_EQ(Format(Variant(true), "True/False"), "True");
  EXPECT_EQ(Format(Variant(0), "On/Off"), "Off");
}

}  // namespace
