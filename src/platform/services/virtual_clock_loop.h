#pragma once
// An event loop on virtual time, for tests: time moves only when the test says so, and then
// every event falls due at exactly its own millisecond, in order.
#include <cstdint>

#include "platform/services/clock.h"
#include "platform/services/scheduled_loop.h"

namespace vellumar::ui {

class VirtualClockLoop final : public ScheduledLoop {
 public:
  // With a wall clock given, the wall clock moves with the loop's time, so that an event sees
  // the UTC time of the moment it fires.
  explicit VirtualClockLoop(VirtualClock* wallClock = nullptr) : wallClock_(wallClock) {}

  std::int64_t NowMs() const override { return nowMs_; }

  // Moves time forward by `ms`, running every event that falls due on the way, each at its own
  // time; events that those events schedule within the span run too.
  void Advance(std::int64_t ms);
  // Time passes while the program is busy: nothing runs until it yields or the test advances.
  void Elapse(std::int64_t ms) { MoveTo(nowMs_ + (ms > 0 ? ms : 0)); }
  // Runs posted work and one-shot timers, moving time to each in turn, until none is left;
  // periodic timers fire on the way. False if more than `limitMs` would have to pass.
  bool RunUntilIdle(std::int64_t limitMs = 24LL * 3600 * 1000);

 private:
  void MoveTo(std::int64_t ms);

  std::int64_t nowMs_ = 0;             // virtual ms since the loop was made
  VirtualClock* wallClock_ = nullptr;  // moved along with nowMs_, if given
};

}  // namespace vellumar::ui
