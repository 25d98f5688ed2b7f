#pragma once
// Maidenhead locators: the check of a locator's form and the conversion of a position in degrees
// and minutes into a six-character locator. The conversion walks stepped loops with single
// precision intermediates exactly as the locators already stored in logs were computed, so it
// must not be "improved" into the textbook formula.
#include <cstdint>
#include <string>

namespace vellumar {

// A position as the callbook hands it over: six 16-bit integers, booleans as the runtime's -1.
struct GridPosition {
  int16_t LatDegrees = 0;   // whole degrees of latitude, not negative
  int16_t LatMinutes = 0;   // minutes of latitude (60 carries into the degree)
  int16_t LatNorth = -1;    // -1 north, any other value south
  int16_t LongDegrees = 0;  // whole degrees of longitude, not negative
  int16_t LongMinutes = 0;  // minutes of longitude
  int16_t LongWest = -1;    // -1 west, any other value east
};

class DXGridModule {
 public:
  // True for exactly one character "0".."9".
  static bool IsDigit(const std::string& text);
  // True for exactly one character whose upper-case form is "A".."S" (a field letter).
  static bool IsPrimaryGridChar(const std::string& text);
  // True for exactly one character whose upper-case form is "A".."X" (a subsquare letter).
  static bool IsSecondaryGridChar(const std::string& text);
  // A four- or six-character locator, any case.
  static bool IsGridSquare(const std::string& text);
  // Six characters (e.g. "EN55aa"), or "undefined" when the position is out of range.
  static std::string GetGridSquare(const GridPosition& position);
};

// The latitude subsquare's letter for A minutes into the degree: the loop steps by 2 while the
// letter divides by 2.5, both rounded half to even. Exposed for its table to be checked whole.
char LatitudeSubsquareLetter(float a);

// Signed decimal degrees (north and east positive) as a GridPosition, minutes rounded to the
// nearest whole minute.
GridPosition GridPositionFromDegrees(double latitude, double longitude);

}  // namespace vellumar
