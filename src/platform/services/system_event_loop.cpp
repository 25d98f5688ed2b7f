#include "platform/services/system_event_loop.h"

#include <limits>
#include <thread>

namespace vellumar::ui {

std::int64_t SystemEventLoop::NowMs() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               start_)
      .count();
}

void SystemEventLoop::Run() {
  while (!quit_) {
    if (RunNext(NowMs(), std::numeric_limits<std::uint64_t>::max())) continue;
    const auto next = NextDue();
    if (!next) break;
    const std::int64_t wait = *next - NowMs();
    if (wait > 0) std::this_thread::sleep_for(std::chrono::milliseconds(wait));
  }
  quit_ = false;
}

}  // namespace vellumar::ui
