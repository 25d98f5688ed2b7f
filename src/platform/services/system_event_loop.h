#pragma once
// The event loop of the running program on the steady clock.
#include <chrono>
#include <cstdint>

#include "platform/services/scheduled_loop.h"

namespace vellumar::ui {

class SystemEventLoop final : public ScheduledLoop {
 public:
  SystemEventLoop() : start_(std::chrono::steady_clock::now()) {}

  std::int64_t NowMs() const override;

  // Runs events as they fall due, sleeping in between, until Quit is called from one of them,
  // or until nothing is left that could ever run (no posted work, no running timer).
  void Run();
  void Quit() { quit_ = true; }

 private:
  std::chrono::steady_clock::time_point start_;  // the loop's time 0
  bool quit_ = false;                            // set by Quit, cleared when Run returns
};

}  // namespace vellumar::ui
