#pragma once
// The bookkeeping shared by the real and the virtual event loop: timers and posted work, each
// with the time it falls due and a sequence number, run strictly in (due, sequence) order. The
// two loops differ only in where "now" comes from and how they wait for it.
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "platform/services/event_loop.h"

namespace vellumar::ui {

class ScheduledLoop : public EventLoop {
 public:
  TimerId CreateTimer(int intervalMs, TimerMode mode, std::function<void()> callback) override;
  void DestroyTimer(TimerId id) override;
  void StartTimer(TimerId id) override;
  void StopTimer(TimerId id) override;
  void SetTimerInterval(TimerId id, int intervalMs) override;
  bool TimerRunning(TimerId id) const override;
  int TimerInterval(TimerId id) const override;
  void Post(std::function<void()> callback) override;
  void Yield() override;

  // Number of posted callbacks and running one-shot timers still waiting.
  std::size_t PendingOneTimeEvents() const;
  std::size_t RunningTimers() const;

 protected:
  // The earliest time at which something could run, if anything is waiting.
  std::optional<std::int64_t> NextDue() const;
  // Runs the first event due at or before `dueLimit` whose sequence number is below
  // `sequenceLimit`; false when there is none. `onDue` is told the event's due time first, so
  // that a virtual loop can move its clock there.
  bool RunNext(std::int64_t dueLimit, std::uint64_t sequenceLimit,
               const std::function<void(std::int64_t)>& onDue = {});
  std::uint64_t NextSequence() const { return nextSequence_; }

 private:
  struct TimerState {
    int intervalMs = 0;                               // ms between firings; <= 0 never fires
    TimerMode mode = TimerMode::kPeriodic;            // re-arms after firing or not
    std::shared_ptr<std::function<void()>> callback;  // shared so the timer may die while it runs
    bool running = false;                             // armed (Enabled)
    bool inCallback = false;                          // its callback is on the stack: no re-entry
    std::int64_t due = 0;                             // loop ms at which it fires next
    std::uint64_t sequence = 0;                       // order among events due at the same ms
  };
  struct Posted {
    std::function<void()> callback;
    std::int64_t due = 0;        // loop ms at which it was posted
    std::uint64_t sequence = 0;  // order of posting
  };

  void Arm(TimerState& timer);
  TimerState* Find(TimerId id);
  const TimerState* Find(TimerId id) const;

  std::map<TimerId, TimerState> timers_;
  std::deque<Posted> posted_;
  TimerId nextTimerId_ = 1;
  std::uint64_t nextSequence_ = 1;
};

}  // namespace vellumar::ui
