#include <gtest/gtest.h>

#include "platform/vb/format.h"

using namespace vellumar::vb;

namespace {

TEST(FormatNumber, ZeroPlaceholdersForceDigits) {
  EXPECT_EQ(FormatNumber(5, "0"), "5");
  EXPECT_EQ(FormatNumber(5, "00"), "05");
  EXPECT_EQ(FormatNumber(123, "00"), "123");
  EXPECT_EQ(FormatNumber(7, "000"), "007");
  EXPECT_EQ(FormatNumber(42, "0000"), "0042");
  EXPECT_EQ(FormatNumber(0, "0000"), "0000");
  EXPECT_EQ(FormatNumber(0.4, "0"), "0");
}

TEST(FormatNumber, RoundsHalfAwayFromZero) {
  EXPECT_EQ(FormatNumber(2.5, "0"), "3");
  EXPECT_EQ(FormatNumber(3.5, "0"), "4");
  EXPECT_EQ(FormatNumber(-2.5, "0"), "-3");
  EXPECT_EQ(FormatNumber(2.25, "0.0"), "2.3");
  EXPECT_EQ(FormatNumber(0.125, "0.00"), "0.13");
  EXPECT_EQ(FormatNumber(999.5, "0"), "1000");
  EXPECT_EQ(FormatNumber(9.96, "0.0"), "10.0");
}

// The value is rounded on its 15 significant digits, not on its binary expansion: 2.675 is
// stored a little below 2.675 but shows as 2.68.
TEST(FormatNumber, RoundsOnTheDecimalDigitsShown) {
  EXPECT_EQ(FormatNumber(2.675, "0.00"), "2.68");
  EXPECT_EQ(FormatNumber(1.005, "0.00"), "1.01");
  EXPECT_EQ(FormatNumber(14.0255, " 0.000"), " 14.026");
}

TEST(FormatNumber, LeadingBlanksAreKept) {
  EXPECT_EQ(FormatNumber(14.025, " 0.000"), " 14.025");
  EXPECT_EQ(FormatNumber(7, " 0.000"), " 7.000");
  EXPECT_EQ(FormatNumber(3.5, "  0.000"), "  3.500");
  EXPECT_EQ(FormatNumber(0.5, "  0.000"), "  0.500");
  EXPECT_EQ(FormatNumber(144.3, "  0.000"), "  144.300");
}

// The point is written whenever the pattern has one, also with no digit after it, as the
// runtime's Format does: Format(14, "###.#####") is "14.".
TEST(FormatNumber, OptionalDigitsAndThePoint) {
  EXPECT_EQ(FormatNumber(14.2, "###.#####"), "14.2");
  EXPECT_EQ(FormatNumber(14, "###.#####"), "14.");
  EXPECT_EQ(FormatNumber(123.456789, "###.#####"), "123.45679");
  EXPECT_EQ(FormatNumber(1234.5, "###.#####"), "1234.5");
  EXPECT_EQ(FormatNumber(0.5, "###.#####"), ".5");
  EXPECT_EQ(FormatNumber(0, "#.##"), ".");
  EXPECT_EQ(FormatNumber(14.2, "0."), "14.");
  EXPECT_EQ(FormatNumber(12.5, ".00"), "12.50");
}

TEST(FormatNumber, HashAlone) {
  EXPECT_EQ(FormatNumber(0, "#"), "");
  EXPECT_EQ(FormatNumber(0.5, "#"), "1");
  EXPECT_EQ(FormatNumber(12, "#"), "12");
  EXPECT_EQ(FormatNumber(1234, "##"), "1234");
}

TEST(FormatNumber, ThousandsAndScaling) {
  EXPECT_EQ(FormatNumber(1234567, "#,##0"), "1,234,567");
  EXPECT_EQ(FormatNumber(0, "#,##0"), "0");
  EXPECT_EQ(FormatNumber(999.5, "#,##0"), "1,000");
  EXPECT_EQ(FormatNumber(-1234, "#,##0"), "-1,234");
  EXPECT_EQ(FormatNumber(123, "#,##0"), "123");
  EXPECT_EQ(FormatNumber(1234.5, "#,##0.00"), "1,234.50");
  EXPECT_EQ(FormatNumber(12345, "0,"), "12");
  EXPECT_EQ(FormatNumber(123456789, "#,##0,,"), "123");
}

TEST(FormatNumber, PercentAndScientific) {
  EXPECT_EQ(FormatNumber(0.125, "0.00%"), "12.50%");
  EXPECT_EQ(FormatNumber(0.5, "0%"), "50%");
  EXPECT_EQ(FormatNumber(12345, "0.00E+00"), "1.23E+04");
  EXPECT_EQ(FormatNumber(0.00012345, "0.00E+00"), "1.23E-04");
  EXPECT_EQ(FormatNumber(0, "0.00E+00"), "0.00E+00");
  EXPECT_EQ(FormatNumber(12345, "0.0E-0"), "1.2E4");
  EXPECT_EQ(FormatNumber(9.999, "0.00E+00"), "1.00E+01");
  EXPECT_EQ(FormatNumber(12345, "00.00E+00"), "12.35E+03");
}

TEST(FormatNumber, Literals) {
  EXPECT_EQ(FormatNumber(5551234567.0, "(000) 000-0000"), "(555) 123-4567");
  EXPECT_EQ(FormatNumber(5, "\\#0"), "#5");
  EXPECT_EQ(FormatNumber(5, "0 \"kHz\""), "5 kHz");
  EXPECT_EQ(FormatNumber(5, "Z"), "Z");
}

TEST(FormatNumber, NegativeNumbers) {
  EXPECT_EQ(FormatNumber(-5, "0"), "-5");
  EXPECT_EQ(FormatNumber(-14.025, " 0.000"), "- 14.025");
  EXPECT_EQ(FormatNumber(-0.5, "0.0"), "-0.5");
  // A negative number that rounds to zero keeps its sign, as the runtime shows it.
  EXPECT_EQ(FormatNumber(-0.001, "0.00"), "-0.00");
}

TEST(FormatNumber, Sections) {
  EXPECT_EQ(FormatNumber(5, "0;(0);\\Z\\e\\r\\o"), "5");
  EXPECT_EQ(FormatNumber(-5, "0;(0);\\Z\\e\\r\\o"), "(5)");
  EXPECT_EQ(FormatNumber(0, "0;(0);\\Z\\e\\r\\o"), "Zero");
  EXPECT_EQ(FormatNumber(0, "0;(0)"), "0");
  EXPECT_EQ(FormatNumber(-5, "0;;\\Z"), "-5");   // an empty section takes the first
  EXPECT_EQ(FormatNumber(5, "0\";\";x"), "5;");  // a quoted ";" is text
}

TEST(FormatNumber, EmptyPatternIsCStr) {
  EXPECT_EQ(FormatNumber(14.025, ""), "14.025");
  EXPECT_EQ(FormatNumber(-3, ""), "-3");
  EXPECT_EQ(FormatNumber(1e20, ""), "1E+20");
}

}  // namespace
