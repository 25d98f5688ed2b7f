#pragma once
// The wall clock in UTC. The program reads the time of day only through a Clock, so that tests
// can run on a clock they set and advance themselves.
#include <cstdint>

namespace vellumar::ui {

// A moment in UTC, broken down as the system reports it.
struct UtcTime {
  int year = 2000;      // Gregorian year
  int month = 1;        // 1..12
  int day = 1;          // 1..31
  int hour = 0;         // 0..23
  int minute = 0;       // 0..59
  int second = 0;       // 0..59
  int millisecond = 0;  // 0..999

  bool operator==(const UtcTime&) const = default;
};

// Milliseconds since 1970-01-01 00:00 UTC, and back.
std::int64_t EpochMsFromUtc(const UtcTime& time);
UtcTime UtcFromEpochMs(std::int64_t epochMs);

class Clock {
 public:
  virtual ~Clock() = default;
  virtual UtcTime NowUtc() const = 0;
};

// The system's real-time clock.
class SystemClock final : public Clock {
 public:
  UtcTime NowUtc() const override;
};

// A clock that stands still until it is set or advanced.
class VirtualClock final : public Clock {
 public:
  explicit VirtualClock(const UtcTime& start = {}) : epochMs_(EpochMsFromUtc(start)) {}

  UtcTime NowUtc() const override { return UtcFromEpochMs(epochMs_); }
  void Set(const UtcTime& time) { epochMs_ = EpochMsFromUtc(time); }
  void AdvanceMs(std::int64_t ms) { epochMs_ += ms; }
  std::int64_t EpochMs() const { return epochMs_; }

 private:
  std::int64_t epochMs_;  // ms since 1970-01-01 00:00 UTC
};

}  // namespace vellumar::ui
