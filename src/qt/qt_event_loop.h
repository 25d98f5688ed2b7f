#pragma once
// The event loop of the running program: the models' timers are QTimers, posted work is a
// queued call, and a yield lets Qt process what is pending (DoEvents).
#include <QObject>
#include <chrono>
#include <functional>
#include <map>
#include <memory>

#include "platform/services/event_loop.h"

class QTimer;

namespace vellumar::qt {

class QtEventLoop final : public ui::EventLoop {
 public:
  QtEventLoop();
  ~QtEventLoop() override;

  ui::TimerId CreateTimer(int intervalMs, ui::TimerMode mode,
                          std::function<void()> callback) override;
  void DestroyTimer(ui::TimerId id) override;
  void StartTimer(ui::TimerId id) override;
  void StopTimer(ui::TimerId id) override;
  void SetTimerInterval(ui::TimerId id, int intervalMs) override;
  bool TimerRunning(ui::TimerId id) const override;
  int TimerInterval(ui::TimerId id) const override;
  void Post(std::function<void()> callback) override;
  void Yield() override;
  std::int64_t NowMs() const override;

 private:
  struct TimerState {
    QTimer* timer = nullptr;                          // owned by context_
    int intervalMs = 0;                               // ms between firings; <= 0 never fires
    ui::TimerMode mode = ui::TimerMode::kPeriodic;    // re-arms after firing or not
    std::shared_ptr<std::function<void()>> callback;  // shared so the timer may die while it runs
    bool inCallback = false;   // its callback is on the stack: a tick during a yield is dropped
    bool enabledIdle = false;  // enabled with an interval of 0 or less: running, never firing
  };
  void Fire(ui::TimerId id);
  void Arm(TimerState& timer);

  std::unique_ptr<QObject> context_;  // parent of the timers and receiver of posted calls
  std::map<ui::TimerId, TimerState> timers_;
  ui::TimerId nextTimerId_ = 1;
  std::chrono::steady_clock::time_point start_;  // the loop's time 0
};

// Runs a piece of the program's work from a Qt event: an exception that escapes the program's
// own failure handling must not unwind through Qt, so it is reported on stderr and dropped.
void RunEvent(const char* where, const std::function<void()>& work);

}  // namespace vellumar::qt
