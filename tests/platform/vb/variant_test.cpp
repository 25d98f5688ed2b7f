#include "platform/vb/variant.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "platform/vb/locales.h"

using namespace vellumar::vb;
using namespace vellumar::vb::testing;

namespace {

int ErrorOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const VbError& e) {
    return e.number();
  }
  return 0;
}

TEST(Variant, NullIsNotEmptyText) {
  const Variant null = Variant::Null();
  const Variant blank("");
  EXPECT_TRUE(null.IsNull());
  EXPECT_FALSE(blank.IsNull());
  EXPECT_FALSE(null == blank);
  EXPECT_EQ(blank.ToString(), "");
  EXPECT_EQ(null.ToStringOrEmpty(), "");
  EXPECT_EQ(Variant("x").ToStringOrEmpty(), "x");
}

TEST(Variant, NullRaises94) {
  const Variant null = Variant::Null();
  EXPECT_EQ(ErrorOf([&] { null.ToString(); }), 94);
  EXPECT_EQ(ErrorOf([&] { null.ToDouble(); }), 94);
  EXPECT_EQ(ErrorOf([&] { null.ToLong(); }), 94);
  EXPECT_EQ(ErrorOf([&] { null.ToInteger(); }), 94);
  EXPECT_EQ(ErrorOf([&] { null.ToBool(); }), 94);
  EXPECT_EQ(ErrorOf([&] { null.ToDate(); }), 94);
  try {
    null.ToString();
  } catch (const VbError& e) {
    EXPECT_EQ(e.description(), "Invalid use of Null");
  }
  EXPECT_FALSE(null.IsNumeric());
}

TEST(Variant, EmptyIsZeroAndEmptyText) {
  const Variant empty;
  EXPECT_TRUE(empty.IsEmpty());
  EXPECT_EQ(empty.type(), Variant::Type::Empty);
  EXPECT_EQ(empty.ToString(), "");
  EXPECT_DOUBLE_EQ(empty.ToDouble(), 0);
  EXPECT_EQ(empty.ToLong(), 0);
  EXPECT_FALSE(empty.ToBool());
  EXPECT_DOUBLE_EQ(empty.ToDate(), 0);
  EXPECT_TRUE(empty.IsNumeric());
}

TEST(Variant, Booleans) {
  EXPECT_EQ(Variant(true).ToString(), "True");
  EXPECT_EQ(Variant(false).ToString(), "False");
  EXPECT_DOUBLE_EQ(Variant(true).ToDouble(), -1);
  EXPECT_EQ(Variant(true).ToInteger(), -1);
  EXPECT_TRUE(Variant(true).ToBool());
  EXPECT_EQ(Variant(true).type(), Variant::Type::Boolean);
  EXPECT_TRUE(Variant(true).IsNumeric());
}

TEST(Variant, WholeNumbers) {
  EXPECT_EQ(Variant(int16_t{7}).type(), Variant::Type::Integer);
  EXPECT_EQ(Variant(int16_t{-7}).ToString(), "-7");
  EXPECT_EQ(Variant(100000).ToString(), "100000");
  EXPECT_EQ(Variant(100000).ToLong(), 100000);
  EXPECT_EQ(ErrorOf([] { Variant(100000).ToInteger(); }), 6);
  EXPECT_EQ(ErrorOf([] { Variant(5000000000LL).ToLong(); }), 6);
  EXPECT_TRUE(Variant(3).ToBool());
  EXPECT_FALSE(Variant(0).ToBool());
}

TEST(Variant, Doubles) {
  EXPECT_EQ(Variant(0.1).ToString(), "0.1");
  EXPECT_EQ(Variant(1e20).ToString(), "1E+20");
  EXPECT_EQ(Variant(14.025).ToString(), "14.025");
  EXPECT_EQ(Variant(2.5).ToLong(), 2);
  EXPECT_EQ(Variant(3.5).ToInteger(), 4);
  EXPECT_EQ(ErrorOf([] { Variant(40000.0).ToInteger(); }), 6);
  EXPECT_TRUE(Variant(0.1).ToBool());
}

TEST(Variant, TextsReadAsNumbers) {
  EXPECT_DOUBLE_EQ(Variant("14.2").ToDouble(), 14.2);
  EXPECT_DOUBLE_EQ(Variant(" -3 ").ToDouble(), -3);
  EXPECT_EQ(Variant("2.5").ToInteger(), 2);
  EXPECT_EQ(Variant("&H1F").ToLong(), 31);
  EXPECT_EQ(ErrorOf([] { Variant("abc").ToDouble(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant("").ToDouble(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant("1e400").ToDouble(); }), 6);
  EXPECT_EQ(ErrorOf([] { Variant("40000").ToInteger(); }), 6);
  EXPECT_TRUE(Variant("12").IsNumeric());
  EXPECT_FALSE(Variant("12a").IsNumeric());
  EXPECT_FALSE(Variant("").IsNumeric());
}

TEST(Variant, TextsReadAsBooleans) {
  EXPECT_TRUE(Variant("True").ToBool());
  EXPECT_TRUE(Variant("true").ToBool());
  EXPECT_FALSE(Variant("FALSE").ToBool());
  EXPECT_FALSE(Variant("0").ToBool());
  EXPECT_TRUE(Variant("2").ToBool());
  EXPECT_TRUE(Variant("-1").ToBool());
  EXPECT_EQ(ErrorOf([] { Variant("maybe").ToBool(); }), 13);
}

TEST(Variant, Dates) {
  ScopedDateLocale pin(DayFirstLocale());
  const double d = MakeDate({2002, 1, 15, 12, 30, 0});
  const Variant v = Variant::FromDate(d);
  EXPECT_EQ(v.type(), Variant::Type::Date);
  EXPECT_EQ(v.ToString(), "15/01/2002 12:30:00");
  EXPECT_EQ(Variant::FromDate(DateSerial(2002, 1, 15)).ToString(), "15/01/2002");
  EXPECT_EQ(Variant::FromDate(0.5).ToString(), "12:00:00");
  EXPECT_DOUBLE_EQ(v.ToDouble(), d);
  EXPECT_DOUBLE_EQ(v.ToDate(), d);
  EXPECT_EQ(v.ToLong(), 37272);  // 12:30 is past half a day
  EXPECT_FALSE(v.IsNumeric());
  EXPECT_FALSE(v == Variant(d));  // a Date is not a Double of the same value
  ScopedDateLocale us(MonthFirstLocale());
  EXPECT_EQ(v.ToString(), "01/15/2002 12:30:00");
}

TEST(Variant, ToDate) {
  ScopedDateLocale pin(DayFirstLocale());
  EXPECT_DOUBLE_EQ(Variant("2002-01-15").ToDate(), DateSerial(2002, 1, 15));
  EXPECT_DOUBLE_EQ(Variant("15/01/2002 12:00").ToDate(), DateSerial(2002, 1, 15) + 0.5);
  EXPECT_DOUBLE_EQ(Variant(36526.0).ToDate(), 36526);
  EXPECT_DOUBLE_EQ(Variant(36526).ToDate(), 36526);
  EXPECT_EQ(ErrorOf([] { Variant("hello").ToDate(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant(1e10).ToDate(); }), 6);
}

TEST(Variant, Equality) {
  EXPECT_TRUE(Variant("a") == Variant(std::string("a")));
  EXPECT_FALSE(Variant("a") == Variant("A"));
  EXPECT_TRUE(Variant::Null() == Variant::Null());
  EXPECT_TRUE(Variant() == Variant());
  EXPECT_FALSE(Variant() == Variant::Null());
  EXPECT_FALSE(Variant(1) == Variant(1.0));
}

}  // namespace
