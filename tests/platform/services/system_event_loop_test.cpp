#include "platform/services/system_event_loop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace vellumar::ui {
namespace {

TEST(SystemEventLoop, RunsTimersInOrderUntilQuit) {
  SystemEventLoop loop;
  std::vector<int> order;
  int ticks = 0;
  Timer periodic(loop, 5, TimerMode::kPeriodic, [&] { ++ticks; });
  Timer second(loop, 40, TimerMode::kOneShot, [&] { order.push_back(2); });
  Timer first(loop, 20, TimerMode::kOneShot, [&] { order.push_back(1); });
  Timer quit(loop, 60, TimerMode::kOneShot, [&] {
    order.push_back(3);
    loop.Quit();
  });
  periodic.Start();
  second.Start();
  first.Start();
  quit.Start();
  const auto start = std::chrono::steady_clock::now();
  loop.Run();
  const auto elapsed = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
  EXPECT_GE(elapsed, std::chrono::milliseconds(60));
  EXPECT_LT(elapsed, std::chrono::seconds(5));
  EXPECT_GE(ticks, 1);  // at least once, however loaded the machine
}

TEST(SystemEventLoop, RunReturnsWhenNothingIsLeft) {
  SystemEventLoop loop;
  int count = 0;
  Timer once(loop, 5, TimerMode::kOneShot, [&] { ++count; });
  once.Start();
  loop.Post([&] { ++count; });
  loop.Run();
  EXPECT_EQ(count, 2);
}

TEST(SystemEventLoop, YieldRunsOnlyWhatIsDue) {
  SystemEventLoop loop;
  int posted = 0;
  int timed = 0;
  Timer later(loop, 10000, TimerMode::kOneShot, [&] { ++timed; });
  later.Start();
  loop.Post([&] { ++posted; });
  loop.Yield();
  EXPECT_EQ(posted, 1);
  EXPECT_EQ(timed, 0);
  EXPECT_TRUE(later.Enabled());
}

}  // namespace
}  // namespace vellumar::ui
