#include "qt/qt_event_loop.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QTimer>
#include <exception>

namespace vellumar::qt {

void RunEvent(const char* where, const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& e) {
    qWarning("vellumar: unhandled error in %s: %s", where, e.what());
  } catch (...) {
    qWarning("vellumar: unhandled error in %s", where);
  }
}

QtEventLoop::QtEventLoop()
    : context_(std::make_unique<QObject>()), start_(std::chrono::steady_clock::now()) {}

QtEventLoop::~QtEventLoop() {
  for (auto& [id, timer] : timers_) timer.timer->stop();
}

ui::TimerId QtEventLoop::CreateTimer(int intervalMs, ui::TimerMode mode,
                                     std::function<void()> callback) {
  const ui::TimerId id = nextTimerId_++;
  TimerState& state = timers_[id];
  state.timer = new QTimer(context_.get());
  state.timer->setTimerType(Qt::PreciseTimer);
  state.timer->setSingleShot(mode == ui::TimerMode::kOneShot);
  state.intervalMs = intervalMs;
  state.mode = mode;
  state.callback = std::make_shared<std::function<void()>>(std::move(callback));
  QObject::connect(state.timer, &QTimer::timeout, context_.get(), [this, id] { Fire(id); });
  return id;
}

void QtEventLoop::DestroyTimer(ui::TimerId id) {
  const auto it = timers_.find(id);
  if (it == timers_.end()) return;
  it->second.timer->stop();
  it->second.timer->deleteLater();  // it may be the sender of the running callback
  timers_.erase(it);
}

void QtEventLoop::Arm(TimerState& timer) {
  timer.enabledIdle = timer.intervalMs <= 0;
  if (timer.enabledIdle) {
    timer.timer->stop();
  } else {
    timer.timer->start(timer.intervalMs);
  }
}

void QtEventLoop::StartTimer(ui::TimerId id) {
  const auto it = timers_.find(id);
  if (it != timers_.end()) Arm(it->second);
}

void QtEventLoop::StopTimer(ui::TimerId id) {
  const auto it = timers_.find(id);
  if (it == timers_.end()) return;
  it->second.timer->stop();
  it->second.enabledIdle = false;
}

void QtEventLoop::SetTimerInterval(ui::TimerId id, int intervalMs) {
  const auto it = timers_.find(id);
  if (it == timers_.end()) return;
  const bool running = TimerRunning(id);
  it->second.intervalMs = intervalMs;
  if (running) Arm(it->second);
}

bool QtEventLoop::TimerRunning(ui::TimerId id) const {
  const auto it = timers_.find(id);
  if (it == timers_.end()) return false;
  return it->second.timer->isActive() || it->second.enabledIdle;
}

int QtEventLoop::TimerInterval(ui::TimerId id) const {
  const auto it = timers_.find(id);
  return it == timers_.end() ? 0 : it->second.intervalMs;
}

void QtEventLoop::Fire(ui::TimerId id) {
  const auto it = timers_.find(id);
  if (it == timers_.end() || it->second.inCallback) return;
  // A one-shot QTimer is stopped already, a periodic one re-armed, before the callback: a Stop
  // or Start inside it has the last word.
  it->second.inCallback = true;
  const auto callback = it->second.callback;
  RunEvent("a timer", *callback);
  const auto after = timers_.find(id);  // the callback may have destroyed the timer
  if (after != timers_.end()) after->second.inCallback = false;
}

void QtEventLoop::Post(std::function<void()> callback) {
  QMetaObject::invokeMethod(
      context_.get(), [callback = std::move(callback)] { RunEvent("posted work", callback); },
      Qt::QueuedConnection);
}

void QtEventLoop::Yield() { QCoreApplication::processEvents(QEventLoop::AllEvents); }

std::int64_t QtEventLoop::NowMs() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               start_)
      .count();
}

}  // namespace vellumar::qt
