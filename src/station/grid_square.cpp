#include "station/grid_square.h"

#include <cmath>

namespace vellumar {

namespace {

char Upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

bool OneCharIn(const std::string& text, char first, char last, bool upperCase) {
  if (text.size() != 1) return false;
  char c = upperCase ? Upper(text[0]) : text[0];
  return c >= first && c <= last;
}

// The runtime's CInt: round half to even (the default rounding mode of the FPU).
int RoundHalfEven(double value) { return static_cast<int>(std::nearbyint(value)); }

// "L + 0.001 < i": the single value widened, the tolerance added in double precision.
bool BelowWithTolerance(float value, int bound) {
  return static_cast<double>(value) + 0.001 < bound;
}

// The field letter of a longitude or latitude of `extent` degrees (180 or 90) in fields of `step`
// degrees, counted from 'J' down to the west or south and up to the east or north; `value` is
// left as the degrees into the field. The extent itself is the first or last field.
char FieldLetter(float& value, bool westOrSouth, int step, int extent) {
  if (value == extent) {
    value = 0;
    return westOrSouth ? 'A' : 'S';
  }
  int d = step;
  if (westOrSouth) {
    while (d < extent && !(value <= d)) d += step;
    value = static_cast<float>(d - value);
    return static_cast<char>('J' - d / step);
  }
  while (d < extent && !(value < d)) d += step;
  d -= step;
  value = static_cast<float>(value - d);
  return static_cast<char>('J' + d / step);
}

}  // namespace

bool DXGridModule::IsDigit(const std::string& text) { return OneCharIn(text, '0', '9', false); }

bool DXGridModule::IsPrimaryGridChar(const std::string& text) {
  return OneCharIn(text, 'A', 'S', true);
}

bool DXGridModule::IsSecondaryGridChar(const std::string& text) {
  return OneCharIn(text, 'A', 'X', true);
}

bool DXGridModule::IsGridSquare(const std::string& text) {
  auto at = [&](size_t i) { return text.substr(i, 1); };
  if (text.size() != 4 && text.size() != 6) return false;
  if (!IsPrimaryGridChar(at(0)) || !IsPrimaryGridChar(at(1))) return false;
  if (!IsDigit(at(2)) || !IsDigit(at(3))) return false;
  if (text.size() == 6 && (!IsSecondaryGridChar(at(4)) || !IsSecondaryGridChar(at(5))))
    return false;
  return true;
}

std::string DXGridModule::GetGridSquare(const GridPosition& position) {
  bool north = position.LatNorth == -1;
  bool west = position.LongWest == -1;
  // Degrees plus minutes in double precision, then stored in single precision.
  float a = static_cast<float>(position.LatDegrees + position.LatMinutes / 60.0);
  if (a == 0) north = true;
  float l = static_cast<float>(position.LongDegrees + position.LongMinutes / 60.0);
  if (l == 0) west = false;
  if (!(a >= 0 && a <= 90 && l >= 0 && l <= 180)) return "undefined";

  std::string grid(6, ' ');

  // Longitude field: 20 degrees each.
  grid[0] = FieldLetter(l, west, 20, 180);

  // Longitude square: 2 degrees each; L then counts minutes.
  {
    int i = 2;
    while (i <= 20 && !BelowWithTolerance(l, i)) i += 2;
    int d = i - 2;
    grid[2] = static_cast<char>('0' + d / 2);
    l = static_cast<float>(static_cast<float>(l - d) * 60);
  }

  // Longitude subsquare: 5 minutes each.
  {
    int i = 5;
    while (i <= 120 && !BelowWithTolerance(l, i)) i += 5;
    int d = i - 5;
    grid[4] = static_cast<char>('a' + d / 5);
  }

  // Latitude field: 10 degrees each.
  grid[1] = FieldLetter(a, !north, 10, 90);

  // Latitude square: 1 degree each; A then counts minutes.
  {
    int i = 1;
    while (i <= 10 && !BelowWithTolerance(a, i)) ++i;
    int d = i - 1;
    grid[3] = static_cast<char>('0' + d);
    a = static_cast<float>(static_cast<float>(a - d) * 60);
  }

  grid[5] = LatitudeSubsquareLetter(a);
  return grid;
}

char LatitudeSubsquareLetter(float a) {
  // The loop's start and step of 2.5 land in a 16-bit counter and round to 2, so the steps are
  // 2 minutes wide while the letter divides by 2.5: some letters repeat.
  const int start = RoundHalfEven(2.5), step = RoundHalfEven(2.5);
  int i = start;
  while (i <= 60 && !BelowWithTolerance(a, i)) i += step;
  int d = RoundHalfEven(i - 2.5);
  return static_cast<char>('a' + RoundHalfEven(d / 2.5));
}

GridPosition GridPositionFromDegrees(double latitude, double longitude) {
  GridPosition p;
  auto split = [](double value, int16_t& degrees, int16_t& minutes) {
    long totalMinutes = std::lround(std::fabs(value) * 60.0);
    degrees = static_cast<int16_t>(totalMinutes / 60);
    minutes = static_cast<int16_t>(totalMinutes % 60);
  };
  split(latitude, p.LatDegrees, p.LatMinutes);
  split(longitude, p.LongDegrees, p.LongMinutes);
  p.LatNorth = latitude >= 0 ? -1 : 0;
  p.LongWest = longitude < 0 ? -1 : 0;
  return p;
}

}  // namespace vellumar
