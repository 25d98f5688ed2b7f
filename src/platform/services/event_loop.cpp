#include "platform/services/event_loop.h"

#include <utility>

namespace vellumar::ui {

Timer::Timer(EventLoop& loop, int intervalMs, TimerMode mode, std::function<void()> callback)
    : loop_(loop), id_(loop.CreateTimer(intervalMs, mode, std::move(callback))) {}

Timer::~Timer() { loop_.DestroyTimer(id_); }

void Timer::SetEnabled(bool enabled) {
  if (!enabled) {
    loop_.StopTimer(id_);
  } else if (!loop_.TimerRunning(id_)) {
    loop_.StartTimer(id_);
  }
}

}  // namespace vellumar::ui
