#include "platform/vb/date_value.h"

#include <cmath>
#include <cstdio>

namespace vellumar::vb {
namespace {

// Days since 1970-01-01 of a proleptic Gregorian date (H. Hinnant's algorithm).
constexpr long DaysSinceUnixEpoch(long y, unsigned m, unsigned d) {
  y -= m <= 2;
  const long era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<long>(doe) - 719468;
}

void CivilFromUnixDays(long z, int& year, int& month, int& day) {
  z += 719468;
  const long era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const long y = static_cast<long>(yoe) + era * 400;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  year = static_cast<int>(y + (month <= 2));
}

// A constant expression, so that date values computed in static initializers elsewhere are right.
constexpr long kEpochOffset = DaysSinceUnixEpoch(1899, 12, 30);

}  // namespace

bool IsLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysInMonth(int year, int month) {
  static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month == 2 && IsLeapYear(year)) return 29;
  return kDays[(month - 1) % 12];
}

long DaysFromCivil(int year, int month, int day) {
  // Roll the month into the year first, then let the day run past the month.
  long m0 = static_cast<long>(month) - 1;
  long y = year + (m0 >= 0 ? m0 / 12 : -((11 - m0) / 12));
  m0 -= (y - year) * 12;
  return DaysSinceUnixEpoch(y, static_cast<unsigned>(m0 + 1), 1) - kEpochOffset + day - 1;
}

double DateSerial(int year, int month, int day) {
  return static_cast<double>(DaysFromCivil(year, month, day));
}

double TimeSerial(int hour, int minute, int second) {
  return (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
}

double CombineDateTime(double date, double time) {
  const double days = std::trunc(date);
  const double frac = std::fabs(time - std::trunc(time));
  const double carry = std::floor(time);  // whole days in the time part roll the date
  const double d = days + carry;
  return d >= 0 ? d + frac : d - frac;
}

double MakeDate(const DateParts& p) {
  return CombineDateTime(DateSerial(p.year, p.month, p.day),
                         TimeSerial(p.hour, p.minute, p.second));
}

DateParts SplitDate(double value) {
  double days = std::trunc(value);
  long seconds = std::lround(std::fabs(value - days) * 86400.0);
  if (seconds >= 86400) {
    seconds -= 86400;
    days += 1;
  }
  DateParts p;
  CivilFromUnixDays(static_cast<long>(days) + kEpochOffset, p.year, p.month, p.day);
  p.hour = static_cast<int>(seconds / 3600);
  p.minute = static_cast<int>(seconds / 60 % 60);
  p.second = static_cast<int>(seconds % 60);
  return p;
}

std::string ToStorageText(double value) {
  const DateParts p = SplitDate(value);
  char buf[32];
  std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", p.year, p.month, p.day, p.hour,
                p.minute, p.second);
  return buf;
}

namespace {

// Reads exactly `width` digits at text[pos], or fails.
bool Digits(const std::string& text, size_t pos, size_t width, int& value) {
  if (pos + width > text.size()) return false;
  value = 0;
  for (size_t i = pos; i < pos + width; ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
    value = value * 10 + (text[i] - '0');
  }
  return true;
}

// The parts of a storage text written as ToStorageText writes it ("yyyy-mm-dd hh:nn:ss") or
// as a date alone; false for any other form. Every date read from a file comes this way, so it
// is read by hand.
bool ReadCanonical(const std::string& text, DateParts& p) {
  if (text.size() != 10 && text.size() != 19) return false;
  if (!Digits(text, 0, 4, p.year) || text[4] != '-' || !Digits(text, 5, 2, p.month) ||
      text[7] != '-' || !Digits(text, 8, 2, p.day))
    return false;
  return text.size() == 10 ||
         (text[10] == ' ' && Digits(text, 11, 2, p.hour) && text[13] == ':' &&
          Digits(text, 14, 2, p.minute) && text[16] == ':' && Digits(text, 17, 2, p.second));
}

// Any other spelling of the same fields (fewer digits, blanks) is read as it always was.
bool ReadLenient(const std::string& text, DateParts& p) {
  int consumed = 0;
  if (std::sscanf(text.c_str(), "%4d-%2d-%2d%n", &p.year, &p.month, &p.day, &consumed) != 3)
    return false;
  if (text.size() > static_cast<size_t>(consumed)) {
    int more = 0;
    if (std::sscanf(text.c_str() + consumed, " %2d:%2d:%2d%n", &p.hour, &p.minute, &p.second,
                    &more) != 3 ||
        static_cast<size_t>(consumed + more) != text.size())
      return false;
  }
  return true;
}

}  // namespace

std::optional<double> FromStorageText(const std::string& text) {
  DateParts p;
  if (!ReadCanonical(text, p)) {
    p = DateParts();
    if (!ReadLenient(text, p)) return std::nullopt;
  }
  if (p.month < 1 || p.month > 12 || p.day < 1 || p.day > DaysInMonth(p.year, p.month) ||
      p.hour > 23 || p.minute > 59 || p.second > 59 || p.hour < 0 || p.minute < 0 || p.second < 0)
    return std::nullopt;
  return MakeDate(p);
}

}  // namespace vellumar::vb
