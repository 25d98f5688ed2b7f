#include "station/grid_square.h"

#include <gtest/gtest.h>

namespace vellumar {
namespace {

GridPosition Position(int latDeg, int latMin, bool north, int lonDeg, int lonMin, bool west) {
  GridPosition p;
  p.LatDegrees = static_cast<int16_t>(latDeg);
  p.LatMinutes = static_cast<int16_t>(latMin);
  p.LatNorth = north ? -1 : 0;
  p.LongDegrees = static_cast<int16_t>(lonDeg);
  p.LongMinutes = static_cast<int16_t>(lonMin);
  p.LongWest = west ? -1 : 0;
  return p;
}

TEST(GridCharacters, SingleCharacterChecks) {
  EXPECT_TRUE(DXGridModule::IsDigit("0"));
  EXPECT_TRUE(DXGridModule::IsDigit("9"));
  EXPECT_FALSE(DXGridModule::IsDigit("a"));
  EXPECT_FALSE(DXGridModule::IsDigit("12"));
  EXPECT_FALSE(DXGridModule::IsDigit(""));
  EXPECT_TRUE(DXGridModule::IsPrimaryGridChar("a"));
  EXPECT_TRUE(DXGridModule::IsPrimaryGridChar("S"));
  EXPECT_TRUE(DXGridModule::IsPrimaryGridChar("s"));
  EXPECT_FALSE(DXGridModule::IsPrimaryGridChar("T"));
  EXPECT_FALSE(DXGridModule::IsPrimaryGridChar("AB"));
  EXPECT_TRUE(DXGridModule::IsSecondaryGridChar("x"));
  EXPECT_TRUE(DXGridModule::IsSecondaryGridChar("X"));
  EXPECT_FALSE(DXGridModule::IsSecondaryGridChar("Y"));
  EXPECT_FALSE(DXGridModule::IsSecondaryGridChar("1"));
}

TEST(IsGridSquare, FormsAndCases) {
  EXPECT_TRUE(DXGridModule::IsGridSquare("EN42"));
  EXPECT_TRUE(DXGridModule::IsGridSquare("en42ab"));
  EXPECT_TRUE(DXGridModule::IsGridSquare("AA00aa"));
  EXPECT_TRUE(DXGridModule::IsGridSquare("SS99XX"));
  EXPECT_FALSE(DXGridModule::IsGridSquare("EN4"));
  EXPECT_FALSE(DXGridModule::IsGridSquare("EN42a"));
  EXPECT_FALSE(DXGridModule::IsGridSquare("ET42"));    // T is no field letter
  EXPECT_FALSE(DXGridModule::IsGridSquare("EN42AY"));  // Y is no subsquare letter
  EXPECT_FALSE(DXGridModule::IsGridSquare(""));
  EXPECT_FALSE(DXGridModule::IsGridSquare("EN42ab1"));
  EXPECT_FALSE(DXGridModule::IsGridSquare("E142"));
}

TEST(GetGridSquare, FortyFiveNorthNinetyWestIsEN55aa) {
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(45, 0, true, 90, 0, true)), "EN55aa");
}

TEST(GetGridSquare, KnownStations) {
  // Newington, Connecticut: 41°43'N 72°43'W.
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(41, 43, true, 72, 43, true)), "FN31pr");
  // Greenwich: 51°29'N 0°0' (east by rule).
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(51, 29, true, 0, 0, false)), "JO01al");
  // Sydney: 33°52'S 151°13'E.
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(33, 52, false, 151, 13, false)), "QF56od");
}

TEST(GetGridSquare, ZeroLatitudeCountsAsNorthAndZeroLongitudeAsEast) {
  std::string north = DXGridModule::GetGridSquare(Position(0, 0, true, 10, 0, false));
  std::string south = DXGridModule::GetGridSquare(Position(0, 0, false, 10, 0, false));
  EXPECT_EQ(south, north);
  EXPECT_EQ(north[1], 'J');  // south would walk down to "I"
  std::string east = DXGridModule::GetGridSquare(Position(10, 0, true, 0, 0, false));
  std::string west = DXGridModule::GetGridSquare(Position(10, 0, true, 0, 0, true));
  EXPECT_EQ(west, east);
  EXPECT_EQ(east[0], 'J');  // west would walk down to "I"
  EXPECT_EQ(east, "JK00aa");
}

TEST(GetGridSquare, PolesAndDateLine) {
  std::string n90 = DXGridModule::GetGridSquare(Position(90, 0, true, 10, 0, false));
  EXPECT_EQ(n90[1], 'S');
  EXPECT_EQ(n90[3], '0');
  EXPECT_EQ(n90[5], 'a');
  std::string s90 = DXGridModule::GetGridSquare(Position(90, 0, false, 10, 0, false));
  EXPECT_EQ(s90[1], 'A');
  EXPECT_EQ(s90[3], '0');
  EXPECT_EQ(s90[5], 'a');
  std::string w180 = DXGridModule::GetGridSquare(Position(10, 0, true, 180, 0, true));
  EXPECT_EQ(w180[0], 'A');
  EXPECT_EQ(w180[2], '0');
  EXPECT_EQ(w180[4], 'a');
  std::string e180 = DXGridModule::GetGridSquare(Position(10, 0, true, 180, 0, false));
  EXPECT_EQ(e180[0], 'S');
  EXPECT_EQ(e180[2], '0');
  EXPECT_EQ(e180[4], 'a');
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(90, 0, true, 180, 0, false)), "SS00aa");
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(90, 0, false, 180, 0, true)), "AA00aa");
}

TEST(GetGridSquare, OutOfRangeIsUndefined) {
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(91, 0, true, 0, 0, false)), "undefined");
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(90, 1, true, 0, 0, false)), "undefined");
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(-1, 0, true, 0, 0, false)), "undefined");
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(10, 0, true, -5, 0, false)), "undefined");
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(10, 0, true, 180, 30, true)), "undefined");
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(10, 0, true, 181, 0, false)), "undefined");
}

TEST(GetGridSquare, SixtyMinutesCarryIntoTheDegree) {
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(44, 60, true, 89, 60, true)),
            DXGridModule::GetGridSquare(Position(45, 0, true, 90, 0, true)));
  EXPECT_EQ(DXGridModule::GetGridSquare(Position(44, 60, true, 89, 60, true)), "EN55aa");
}

TEST(GetGridSquare, LatitudeSubsquareWalksInStepsOfTwoMinutes) {
  // Minutes 0, 2, ..., 58 into a degree: the 2-minute loop with a 2.5 divisor repeats letters.
  const std::string expected = "abccdefgghijkklmnoopqrsstuvwwx";
  for (int m = 0; m < 60; m += 2) {
    SCOPED_TRACE(m);
    EXPECT_EQ(LatitudeSubsquareLetter(static_cast<float>(m)), expected[m / 2]);
    std::string grid = DXGridModule::GetGridSquare(Position(45, m, true, 90, 0, true));
    EXPECT_EQ(grid.substr(0, 5), "EN55a");
    EXPECT_EQ(grid[5], expected[m / 2]);
    // The odd minute after it falls into the same step.
    EXPECT_EQ(DXGridModule::GetGridSquare(Position(45, m + 1, true, 90, 0, true))[5],
              expected[m / 2]);
  }
  EXPECT_EQ(LatitudeSubsquareLetter(59.9995f), 'y');
  EXPECT_EQ(LatitudeSubsquareLetter(58.0f), 'x');
}

TEST(GetGridSquare, LongitudeSubsquareTakesFiveMinutesPerLetter) {
  // East of 10°E the minutes count forward from the square's western edge: 5 minutes a letter.
  const std::string letters = "abcdefghijklmnopqrstuvwx";
  for (int k = 0; k < 24; ++k) {
    int minutes = k * 5;
    GridPosition p = Position(45, 0, true, 10 + minutes / 60, minutes % 60, false);
    SCOPED_TRACE(minutes);
    EXPECT_EQ(DXGridModule::GetGridSquare(p)[4], letters[k]);
  }
}

TEST(GridPositionFromDegrees, SignsAndRounding) {
  GridPosition p = GridPositionFromDegrees(-33.8667, 151.2167);
  EXPECT_EQ(p.LatDegrees, 33);
  EXPECT_EQ(p.LatMinutes, 52);
  EXPECT_NE(p.LatNorth, -1);
  EXPECT_EQ(p.LongDegrees, 151);
  EXPECT_EQ(p.LongMinutes, 13);
  EXPECT_NE(p.LongWest, -1);
  GridPosition q = GridPositionFromDegrees(45, -90);
  EXPECT_EQ(DXGridModule::GetGridSquare(q), "EN55aa");
}

}  // namespace
}  // namespace vellumar
