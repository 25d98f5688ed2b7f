#include "platform/services/clock.h"

#include <ctime>

namespace vellumar::ui {
namespace {

constexpr std::int64_t kMsPerDay = 86400000;

// Days since 1970-01-01 of a proleptic Gregorian date, and back (H. Hinnant's algorithms).
std::int64_t DaysFromCivil(std::int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

void CivilFromDays(std::int64_t z, int& year, int& month, int& day) {
  z += 719468;
  const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const std::int64_t y = static_cast<std::int64_t>(yoe) + era * 400;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  year = static_cast<int>(y + (month <= 2));
}

}  // namespace

std::int64_t EpochMsFromUtc(const UtcTime& t) {
  const std::int64_t days =
      DaysFromCivil(t.year, static_cast<unsigned>(t.month), static_cast<unsigned>(t.day));
  return days * kMsPerDay + ((t.hour * 60LL + t.minute) * 60LL + t.second) * 1000LL + t.millisecond;
}

UtcTime UtcFromEpochMs(std::int64_t epochMs) {
  std::int64_t days = epochMs / kMsPerDay;
  std::int64_t rest = epochMs % kMsPerDay;
  if (rest < 0) {  // before 1970: the day counts back, the time of day forward
    rest += kMsPerDay;
    days -= 1;
  }
  UtcTime t;
  CivilFromDays(days, t.year, t.month, t.day);
  t.millisecond = static_cast<int>(rest % 1000);
  rest /= 1000;
  t.second = static_cast<int>(rest % 60);
  rest /= 60;
  t.minute = static_cast<int>(rest % 60);
  t.hour = static_cast<int>(rest / 60);
  return t;
}

UtcTime SystemClock::NowUtc() const {
  timespec ts{};
  clock_gettime(CLOCK_REALTIME, &ts);
  return UtcFromEpochMs(static_cast<std::int64_t>(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000);
}

}  // namespace vellumar::ui
