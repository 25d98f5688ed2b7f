#include "platform/vb/convert.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/vb/error.h"

using namespace vellumar::vb;

namespace {

int ErrorOf(void (*f)()) {
  try {
    f();
  } catch (const VbError& e) {
    return e.number();
  }
  return 0;
}

TEST(Val, ReadsTheNumberAtTheStart) {
  EXPECT_DOUBLE_EQ(Val("14.025.3"), 14.025);
  EXPECT_DOUBLE_EQ(Val("12abc"), 12);
  EXPECT_DOUBLE_EQ(Val("abc"), 0);
  EXPECT_DOUBLE_EQ(Val(""), 0);
  EXPECT_DOUBLE_EQ(Val("1,000"), 1);
  EXPECT_DOUBLE_EQ(Val(".5"), 0.5);
  EXPECT_DOUBLE_EQ(Val("-5"), -5);
  EXPECT_DOUBLE_EQ(Val("+3.5"), 3.5);
  EXPECT_DOUBLE_EQ(Val("-"), 0);
  EXPECT_DOUBLE_EQ(Val("--5"), 0);
  EXPECT_DOUBLE_EQ(Val("14.2 MHz"), 14.2);
}

TEST(Val, SkipsBlanksTabsAndLineFeedsAnywhere) {
  EXPECT_DOUBLE_EQ(Val("  1 2 3"), 123);
  EXPECT_DOUBLE_EQ(Val("\t7\n8"), 78);
  EXPECT_DOUBLE_EQ(Val("- 5"), -5);
  EXPECT_DOUBLE_EQ(Val("1 . 5"), 1.5);
  EXPECT_DOUBLE_EQ(Val(" 1 E 2"), 100);
}

TEST(Val, Exponents) {
  EXPECT_DOUBLE_EQ(Val("1E3"), 1000);
  EXPECT_DOUBLE_EQ(Val("1e-2"), 0.01);
  EXPECT_DOUBLE_EQ(Val("1D2"), 100);
  EXPECT_DOUBLE_EQ(Val("1e"), 1);
  EXPECT_DOUBLE_EQ(Val("1E+"), 1);
  EXPECT_DOUBLE_EQ(Val("2.5E1x"), 25);
  EXPECT_EQ(ErrorOf([] { Val("1E400"); }), 6);
  EXPECT_DOUBLE_EQ(Val("1E-400"), 0);
}

TEST(Val, HexadecimalAndOctal) {
  EXPECT_DOUBLE_EQ(Val("&HFF"), 255);
  EXPECT_DOUBLE_EQ(Val("&hff"), 255);
  EXPECT_DOUBLE_EQ(Val("&HFFFF"), -1);  // 16 bits: an Integer
  EXPECT_DOUBLE_EQ(Val("&H7FFF"), 32767);
  EXPECT_DOUBLE_EQ(Val("&H10000"), 65536);
  EXPECT_DOUBLE_EQ(Val("&HFFFFFFFF"), -1);  // 32 bits: a Long
  EXPECT_DOUBLE_EQ(Val("&O17"), 15);
  EXPECT_DOUBLE_EQ(Val("&O177777"), -1);
  EXPECT_DOUBLE_EQ(Val("&HZZ"), 0);
  EXPECT_DOUBLE_EQ(Val("&H1FG"), 31);
  EXPECT_DOUBLE_EQ(Val("&X1"), 0);
  EXPECT_EQ(ErrorOf([] { Val("&H123456789"); }), 6);
}

TEST(ParseNumber, WholeTextMustBeTheNumber) {
  EXPECT_DOUBLE_EQ(*ParseNumber("14.2"), 14.2);
  EXPECT_DOUBLE_EQ(*ParseNumber(" 14.2 "), 14.2);
  EXPECT_DOUBLE_EQ(*ParseNumber("-3"), -3);
  EXPECT_DOUBLE_EQ(*ParseNumber("+3"), 3);
  EXPECT_DOUBLE_EQ(*ParseNumber("1e3"), 1000);
  EXPECT_DOUBLE_EQ(*ParseNumber("1.5D2"), 150);
  EXPECT_DOUBLE_EQ(*ParseNumber("5."), 5);
  EXPECT_DOUBLE_EQ(*ParseNumber(".5"), 0.5);
  EXPECT_DOUBLE_EQ(*ParseNumber("&H1F"), 31);
  EXPECT_DOUBLE_EQ(*ParseNumber("&HFFFF"), -1);
  EXPECT_DOUBLE_EQ(*ParseNumber("&o10"), 8);
  EXPECT_DOUBLE_EQ(*ParseNumber("32767"), 32767);
  EXPECT_DOUBLE_EQ(*ParseNumber("1e-400"), 0);  // too small to tell from zero
  EXPECT_DOUBLE_EQ(*ParseNumber("-1.5e-3"), -0.0015);
  for (const char* text :
       {"",      " ",     "abc", "1-2",  "1 2",   ".",     "1e",  "1e+", "--1",  "+-1",
        "1.2.3", "12abc", "&H",  "&HFG", "1e400", "1,000", "nan", "inf", "0x10", "- 5"})
    EXPECT_FALSE(ParseNumber(text).has_value()) << '"' << text << '"';
}

TEST(CInt, RoundsHalfToEven) {
  EXPECT_EQ(CInt(2.5), 2);
  EXPECT_EQ(CInt(3.5), 4);
  EXPECT_EQ(CInt(-2.5), -2);
  EXPECT_EQ(CInt(-3.5), -4);
  EXPECT_EQ(CInt(0.5), 0);
  EXPECT_EQ(CInt(1.5), 2);
  EXPECT_EQ(CInt(1.4), 1);
  EXPECT_EQ(CInt(1.6), 2);
  EXPECT_EQ(CInt(-1.6), -2);
  EXPECT_EQ(CInt(32767), 32767);
  EXPECT_EQ(CInt(-32768), -32768);
  EXPECT_EQ(CInt(32767.4), 32767);
  EXPECT_EQ(CInt(-32768.5), -32768);  // rounds to the even -32768, in range
}

TEST(CInt, OutOfRangeRaises6) {
  EXPECT_EQ(ErrorOf([] { CInt(32767.5); }), 6);
  EXPECT_EQ(ErrorOf([] { CInt(32768); }), 6);
  EXPECT_EQ(ErrorOf([] { CInt(-32768.6); }), 6);
  EXPECT_EQ(ErrorOf([] { CInt(40000); }), 6);
  EXPECT_EQ(ErrorOf([] { CInt(std::numeric_limits<double>::quiet_NaN()); }), 6);
  try {
    CInt(1e6);
  } catch (const VbError& e) {
    EXPECT_EQ(e.description(), "Overflow");
  }
}

TEST(CLng, RoundsHalfToEvenAndRaises6) {
  EXPECT_EQ(CLng(2.5), 2);
  EXPECT_EQ(CLng(3.5), 4);
  EXPECT_EQ(CLng(-2.5), -2);
  EXPECT_EQ(CLng(100000.5), 100000);
  EXPECT_EQ(CLng(2147483647.4), 2147483647);
  EXPECT_EQ(CLng(-2147483648.0), -2147483647 - 1);
  EXPECT_EQ(ErrorOf([] { CLng(2147483647.5); }), 6);
  EXPECT_EQ(ErrorOf([] { CLng(-2147483649.0); }), 6);
  EXPECT_EQ(ErrorOf([] { CLng(1e300); }), 6);
}

TEST(NarrowTo16, KeepsSixteenBits) {
  EXPECT_EQ(NarrowTo16(32767), 32767);
  EXPECT_EQ(NarrowTo16(-32768), -32768);
  EXPECT_EQ(ErrorOf([] { NarrowTo16(32768); }), 6);
  EXPECT_EQ(ErrorOf([] { NarrowTo16(-32769); }), 6);
}

TEST(NumberToString, FifteenSignificantDigitsAtMost) {
  EXPECT_EQ(NumberToString(0.1), "0.1");
  EXPECT_EQ(NumberToString(14.025), "14.025");
  EXPECT_EQ(NumberToString(100), "100");
  EXPECT_EQ(NumberToString(-2.5), "-2.5");
  EXPECT_EQ(NumberToString(0), "0");
  EXPECT_EQ(NumberToString(-0.0), "0");
  EXPECT_EQ(NumberToString(1.0 / 3), "0.333333333333333");
  EXPECT_EQ(NumberToString(2.0 / 3), "0.666666666666667");
  EXPECT_EQ(NumberToString(0.1 + 0.2), "0.3");
  EXPECT_EQ(NumberToString(123456789012345.0), "123456789012345");
  EXPECT_EQ(NumberToString(36526.5), "36526.5");
}

TEST(NumberToString, ScientificForLargeAndSmall) {
  EXPECT_EQ(NumberToString(1e20), "1E+20");
  EXPECT_EQ(NumberToString(1e15), "1E+15");
  EXPECT_EQ(NumberToString(1e14), "100000000000000");
  EXPECT_EQ(NumberToString(1.5e-7), "1.5E-07");
  EXPECT_EQ(NumberToString(0.0001), "0.0001");
  EXPECT_EQ(NumberToString(0.00001), "1E-05");
  EXPECT_EQ(NumberToString(-1.25e100), "-1.25E+100");
}

}  // namespace
