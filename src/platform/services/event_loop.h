#pragma once
// The single-threaded event loop: timers, posted work and the yield that long operations make
// once per record. Everything the program does after start-up runs as one of these events on
// the one thread; nothing here is locked.
#include <cstdint>
#include <functional>

namespace vellumar::ui {

using TimerId = std::uint64_t;

enum class TimerMode {
  kPeriodic,  // fires every interval until stopped, as a form's timer does
  kOneShot,   // fires once, then stands stopped until started again
};

class EventLoop {
 public:
  virtual ~EventLoop() = default;

  // A new timer stands stopped. An interval of 0 or less never fires, as a form's timer with
  // Interval 0 doesn't.
  virtual TimerId CreateTimer(int intervalMs, TimerMode mode, std::function<void()> callback) = 0;
  // Safe from within the timer's own callback.
  virtual void DestroyTimer(TimerId id) = 0;
  // Arms the timer for one interval from now, also when it was running already.
  virtual void StartTimer(TimerId id) = 0;
  // A timer stopped inside its own callback stays stopped, periodic or not.
  virtual void StopTimer(TimerId id) = 0;
  // A running timer counts its new interval from now.
  virtual void SetTimerInterval(TimerId id, int intervalMs) = 0;
  virtual bool TimerRunning(TimerId id) const = 0;
  virtual int TimerInterval(TimerId id) const = 0;

  // Runs the callback as an event of its own, after what is already due.
  virtual void Post(std::function<void()> callback) = 0;
  // Runs whatever is due now and returns (DoEvents). What becomes due while it runs, a timer
  // re-armed or work posted by the events themselves, waits for the next turn.
  virtual void Yield() = 0;

  // Milliseconds on the loop's own monotonic time line.
  virtual std::int64_t NowMs() const = 0;
};

// A timer owned by a form or module, destroyed with its owner. Enabled and Interval behave as
// the properties of a form's timer control.
class Timer {
 public:
  Timer(EventLoop& loop, int intervalMs, TimerMode mode, std::function<void()> callback);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  void Start() { loop_.StartTimer(id_); }
  void Stop() { loop_.StopTimer(id_); }
  bool Enabled() const { return loop_.TimerRunning(id_); }
  // Enabling a timer that runs already leaves its count alone.
  void SetEnabled(bool enabled);
  int Interval() const { return loop_.TimerInterval(id_); }
  void SetInterval(int intervalMs) { loop_.SetTimerInterval(id_, intervalMs); }
  TimerId id() const { return id_; }

 private:
  EventLoop& loop_;
  TimerId id_;
};

}  // namespace vellumar::ui
