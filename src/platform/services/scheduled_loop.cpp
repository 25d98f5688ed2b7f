#include "platform/services/scheduled_loop.h"

#include <utility>

namespace vellumar::ui {

TimerId ScheduledLoop::CreateTimer(int intervalMs, TimerMode mode, std::function<void()> callback) {
  const TimerId id = nextTimerId_++;
  TimerState& timer = timers_[id];
  timer.intervalMs = intervalMs;
  timer.mode = mode;
  timer.callback = std::make_shared<std::function<void()>>(std::move(callback));
  return id;
}

void ScheduledLoop::DestroyTimer(TimerId id) { timers_.erase(id); }

void ScheduledLoop::Arm(TimerState& timer) {
  timer.running = true;
  timer.due = NowMs() + timer.intervalMs;
  timer.sequence = nextSequence_++;
}

void ScheduledLoop::StartTimer(TimerId id) {
  if (TimerState* timer = Find(id)) Arm(*timer);
}

void ScheduledLoop::StopTimer(TimerId id) {
  if (TimerState* timer = Find(id)) timer->running = false;
}

void ScheduledLoop::SetTimerInterval(TimerId id, int intervalMs) {
  if (TimerState* timer = Find(id)) {
    timer->intervalMs = intervalMs;
    if (timer->running) Arm(*timer);
  }
}

bool ScheduledLoop::TimerRunning(TimerId id) const {
  const TimerState* timer = Find(id);
  return timer != nullptr && timer->running;
}

int ScheduledLoop::TimerInterval(TimerId id) const {
  const TimerState* timer = Find(id);
  return timer == nullptr ? 0 : timer->intervalMs;
}

void ScheduledLoop::Post(std::function<void()> callback) {
  posted_.push_back(Posted{std::move(callback), NowMs(), nextSequence_++});
}

void ScheduledLoop::Yield() {
  const std::uint64_t limit = nextSequence_;
  while (RunNext(NowMs(), limit)) {
  }
}

std::size_t ScheduledLoop::PendingOneTimeEvents() const {
  std::size_t count = posted_.size();
  for (const auto& [id, timer] : timers_) {
    if (timer.running && timer.mode == TimerMode::kOneShot && timer.intervalMs > 0) ++count;
  }
  return count;
}

std::size_t ScheduledLoop::RunningTimers() const {
  std::size_t count = 0;
  for (const auto& [id, timer] : timers_) count += timer.running ? 1 : 0;
  return count;
}

std::optional<std::int64_t> ScheduledLoop::NextDue() const {
  std::optional<std::int64_t> next;
  if (!posted_.empty()) next = posted_.front().due;
  for (const auto& [id, timer] : timers_) {
    if (!timer.running || timer.inCallback || timer.intervalMs <= 0) continue;
    if (!next || timer.due < *next) next = timer.due;
  }
  return next;
}

bool ScheduledLoop::RunNext(std::int64_t dueLimit, std::uint64_t sequenceLimit,
                            const std::function<void(std::int64_t)>& onDue) {
  // The earliest eligible timer, ties broken by sequence.
  TimerId best = 0;
  const TimerState* bestTimer = nullptr;
  for (const auto& [id, timer] : timers_) {
    if (!timer.running || timer.inCallback || timer.intervalMs <= 0) continue;
    if (timer.due > dueLimit || timer.sequence >= sequenceLimit) continue;
    if (bestTimer == nullptr || timer.due < bestTimer->due ||
        (timer.due == bestTimer->due && timer.sequence < bestTimer->sequence)) {
      best = id;
      bestTimer = &timer;
    }
  }
  const bool postEligible = !posted_.empty() && posted_.front().due <= dueLimit &&
                            posted_.front().sequence < sequenceLimit;
  const bool postFirst =
      postEligible &&
      (bestTimer == nullptr || posted_.front().due < bestTimer->due ||
       (posted_.front().due == bestTimer->due && posted_.front().sequence < bestTimer->sequence));

  if (postFirst) {
    Posted event = std::move(posted_.front());
    posted_.pop_front();
    if (onDue) onDue(event.due);
    event.callback();
    return true;
  }
  if (bestTimer == nullptr) return false;

  TimerState& timer = timers_.at(best);
  if (onDue) onDue(timer.due);
  // Re-arm before the callback, so that a Stop or Start inside it has the last word.
  if (timer.mode == TimerMode::kOneShot) {
    timer.running = false;
  } else {
    std::int64_t next = timer.due + timer.intervalMs;
    if (next <= NowMs()) next = NowMs() + timer.intervalMs;  // fallen behind: no burst
    timer.due = next;
    timer.sequence = nextSequence_++;
  }
  timer.inCallback = true;
  const auto callback = timer.callback;
  struct ClearInCallback {  // also when the callback throws
    ScheduledLoop& loop;
    TimerId id;
    ~ClearInCallback() {
      if (TimerState* t = loop.Find(id)) t->inCallback = false;
    }
  } guard{*this, best};
  (*callback)();
  return true;
}

ScheduledLoop::TimerState* ScheduledLoop::Find(TimerId id) {
  const auto it = timers_.find(id);
  return it == timers_.end() ? nullptr : &it->second;
}

const ScheduledLoop::TimerState* ScheduledLoop::Find(TimerId id) const {
  const auto it = timers_.find(id);
  return it == timers_.end() ? nullptr : &it->second;
}

}  // namespace vellumar::ui
