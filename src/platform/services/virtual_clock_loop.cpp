#include "platform/services/virtual_clock_loop.h"

#include <limits>

namespace vellumar::ui {

void VirtualClockLoop::MoveTo(std::int64_t ms) {
  if (ms <= nowMs_) return;
  if (wallClock_ != nullptr) wallClock_->AdvanceMs(ms - nowMs_);
  nowMs_ = ms;
}

void VirtualClockLoop::Advance(std::int64_t ms) {
  const std::int64_t target = nowMs_ + (ms > 0 ? ms : 0);
  const auto moveTo = [this](std::int64_t due) { MoveTo(due); };
  while (RunNext(target, std::numeric_limits<std::uint64_t>::max(), moveTo)) {
  }
  MoveTo(target);
}

bool VirtualClockLoop::RunUntilIdle(std::int64_t limitMs) {
  const std::int64_t limit = nowMs_ + limitMs;
  const auto moveTo = [this](std::int64_t due) { MoveTo(due); };
  while (PendingOneTimeEvents() > 0) {
    const auto next = NextDue();
    if (!next || *next > limit) return false;
    RunNext(*next, std::numeric_limits<std::uint64_t>::max(), moveTo);
  }
  return true;
}

}  // namespace vellumar::ui
