#include "platform/services/virtual_clock_loop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vellumar::ui {
namespace {

TEST(VirtualClockLoop, OneShotFiresOnceAtItsTime) {
  VirtualClockLoop loop;
  std::vector<std::int64_t> fired;
  Timer timer(loop, 250, TimerMode::kOneShot, [&] { fired.push_back(loop.NowMs()); });
  timer.Start();
  loop.Advance(249);
  EXPECT_TRUE(fired.empty());
  loop.Advance(1);
  EXPECT_EQ(fired, (std::vector<std::int64_t>{250}));
  EXPECT_FALSE(timer.Enabled());
  loop.Advance(10000);
  EXPECT_EQ(fired.size(), 1u);
}

TEST(VirtualClockLoop, PeriodicTimerReArms) {
  VirtualClockLoop loop;
  std::vector<std::int64_t> fired;
  Timer timer(loop, 250, TimerMode::kPeriodic, [&] { fired.push_back(loop.NowMs()); });
  timer.Start();
  loop.Advance(1000);
  EXPECT_EQ(fired, (std::vector<std::int64_t>{250, 500, 750, 1000}));
  EXPECT_TRUE(timer.Enabled());
  EXPECT_EQ(loop.NowMs(), 1000);
}

TEST(VirtualClockLoop, TimersFireInDueOrderAndTiesInStartOrder) {
  VirtualClockLoop loop;
  std::vector<std::string> order;
  Timer slow(loop, 1000, TimerMode::kOneShot, [&] { order.push_back("slow"); });
  Timer fast(loop, 1, TimerMode::kOneShot, [&] { order.push_back("fast"); });
  Timer tieA(loop, 500, TimerMode::kOneShot, [&] { order.push_back("tieA"); });
  Timer tieB(loop, 500, TimerMode::kOneShot, [&] { order.push_back("tieB"); });
  slow.Start();
  tieA.Start();
  tieB.Start();
  fast.Start();
  loop.Advance(5000);
  EXPECT_EQ(order, (std::vector<std::string>{"fast", "tieA", "tieB", "slow"}));
}

TEST(VirtualClockLoop, PeriodicTimerStoppedInsideItsCallbackStops) {
  VirtualClockLoop loop;
  int count = 0;
  TimerId id = 0;
  id = loop.CreateTimer(250, TimerMode::kPeriodic, [&] {
    if (++count == 3) loop.StopTimer(id);
  });
  loop.StartTimer(id);
  loop.Advance(5000);
  EXPECT_EQ(count, 3);
  EXPECT_FALSE(loop.TimerRunning(id));
  loop.DestroyTimer(id);
}

TEST(VirtualClockLoop, TimerMayDestroyItselfInItsCallback) {
  VirtualClockLoop loop;
  int count = 0;
  TimerId id = 0;
  id = loop.CreateTimer(10, TimerMode::kPeriodic, [&] {
    ++count;
    loop.DestroyTimer(id);
  });
  loop.StartTimer(id);
  loop.Advance(100);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(loop.RunningTimers(), 0u);
}

TEST(VirtualClockLoop, StoppedTimerDoesNotFireAndRestartCountsFromNow) {
  VirtualClockLoop loop;
  std::vector<std::int64_t> fired;
  Timer timer(loop, 100, TimerMode::kOneShot, [&] { fired.push_back(loop.NowMs()); });
  timer.Start();
  loop.Advance(50);
  timer.Stop();
  loop.Advance(100);
  EXPECT_TRUE(fired.empty());
  timer.Start();  // at 150
  loop.Advance(99);
  EXPECT_TRUE(fired.empty());
  loop.Advance(1);
  EXPECT_EQ(fired, (std::vector<std::int64_t>{250}));
}

TEST(VirtualClockLoop, ChangingIntervalOfRunningTimerRestartsIt) {
  VirtualClockLoop loop;
  std::vector<std::int64_t> fired;
  Timer timer(loop, 1000, TimerMode::kPeriodic, [&] { fired.push_back(loop.NowMs()); });
  timer.Start();
  loop.Advance(900);
  timer.SetInterval(250);  // at 900
  loop.Advance(600);
  EXPECT_EQ(fired, (std::vector<std::int64_t>{1150, 1400}));
  EXPECT_EQ(timer.Interval(), 250);
}

TEST(VirtualClockLoop, EnablingARunningTimerKeepsItsCount) {
  VirtualClockLoop loop;
  std::vector<std::int64_t> fired;
  Timer timer(loop, 100, TimerMode::kPeriodic, [&] { fired.push_back(loop.NowMs()); });
  timer.SetEnabled(true);
  loop.Advance(60);
  timer.SetEnabled(true);
  loop.Advance(40);
  EXPECT_EQ(fired, (std::vector<std::int64_t>{100}));
  timer.SetEnabled(false);
  loop.Advance(1000);
  EXPECT_EQ(fired.size(), 1u);
}

TEST(VirtualClockLoop, ZeroIntervalNeverFires) {
  VirtualClockLoop loop;
  int count = 0;
  Timer timer(loop, 0, TimerMode::kPeriodic, [&] { ++count; });
  timer.Start();
  loop.Advance(10000);
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(loop.RunUntilIdle());
}

TEST(VirtualClockLoop, PostRunsInOrderOnNextTurn) {
  VirtualClockLoop loop;
  std::vector<int> order;
  loop.Post([&] { order.push_back(1); });
  loop.Post([&] { order.push_back(2); });
  EXPECT_TRUE(order.empty());
  loop.Yield();
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST(VirtualClockLoop, YieldRunsWhatIsDueButNotWhatItSchedules) {
  VirtualClockLoop loop;
  std::vector<std::string> order;
  Timer due(loop, 10, TimerMode::kPeriodic, [&] { order.push_back("timer"); });
  due.Start();
  loop.Post([&] {
    order.push_back("post1");
    loop.Post([&] { order.push_back("post2"); });
  });
  loop.Advance(0);  // runs post1 at time 0; post2 was posted during the run and runs too
  EXPECT_EQ(order, (std::vector<std::string>{"post1", "post2"}));
  order.clear();

  loop.Post([&] {
    order.push_back("post3");
    loop.Post([&] { order.push_back("post4"); });
  });
  loop.Yield();  // post4 waits for the next turn
  EXPECT_EQ(order, (std::vector<std::string>{"post3"}));
  loop.Yield();
  EXPECT_EQ(order, (std::vector<std::string>{"post3", "post4"}));
}

TEST(VirtualClockLoop, YieldInsideLongOperationLetsTimersThrough) {
  VirtualClockLoop loop;
  int ticks = 0;
  Timer clockTimer(loop, 1000, TimerMode::kPeriodic, [&] { ++ticks; });
  clockTimer.Start();
  bool abortPressed = false;
  Timer abortButton(loop, 2500, TimerMode::kOneShot, [&] { abortPressed = true; });
  abortButton.Start();
  // A walk that takes 10 ms per record and yields once per record.
  int records = 0;
  while (!abortPressed && records < 100000) {
    ++records;
    loop.Elapse(10);
    EXPECT_EQ(ticks, (records * 10) / 1000 - (records % 100 == 0 ? 1 : 0));
    loop.Yield();
  }
  EXPECT_TRUE(abortPressed);
  EXPECT_EQ(records, 250);
  EXPECT_EQ(ticks, 2);
}

TEST(VirtualClockLoop, NothingRunsWhileTheProgramIsBusy) {
  VirtualClockLoop loop;
  int count = 0;
  Timer timer(loop, 100, TimerMode::kOneShot, [&] { ++count; });
  timer.Start();
  loop.Elapse(1000);
  EXPECT_EQ(count, 0);
  loop.Yield();
  EXPECT_EQ(count, 1);
}

TEST(VirtualClockLoop, TimerCallbackIsNotReenteredByItsOwnYield) {
  VirtualClockLoop loop;
  int depth = 0;
  int maxDepth = 0;
  int count = 0;
  Timer timer(loop, 10, TimerMode::kPeriodic, [&] {
    ++depth;
    maxDepth = std::max(maxDepth, depth);
    ++count;
    if (count == 1) {  // a long handler that yields on the way
      loop.Elapse(50);
      loop.Yield();
    }
    --depth;
  });
  timer.Start();
  loop.Advance(10);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(maxDepth, 1);
  loop.Yield();  // fell behind while busy: fires once, not once per missed interval
  EXPECT_EQ(count, 2);
  loop.Yield();
  EXPECT_EQ(count, 2);
}

TEST(VirtualClockLoop, RunUntilIdleRunsOneShotsAndPostsButNotForeverPeriodics) {
  VirtualClockLoop loop;
  std::vector<std::string> order;
  Timer periodic(loop, 300, TimerMode::kPeriodic, [&] { order.push_back("tick"); });
  Timer init(loop, 1000, TimerMode::kOneShot, [&] {
    order.push_back("init");
    loop.Post([&] { order.push_back("after-init"); });
  });
  periodic.Start();
  init.Start();
  EXPECT_TRUE(loop.RunUntilIdle());
  EXPECT_EQ(order, (std::vector<std::string>{"tick", "tick", "tick", "init", "after-init"}));
  EXPECT_EQ(loop.NowMs(), 1000);
  EXPECT_TRUE(periodic.Enabled());
}

TEST(VirtualClockLoop, RunUntilIdleGivesUpPastItsLimit) {
  VirtualClockLoop loop;
  int count = 0;
  Timer late(loop, 10000, TimerMode::kOneShot, [&] { ++count; });
  late.Start();
  EXPECT_FALSE(loop.RunUntilIdle(5000));
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(loop.RunUntilIdle(20000));
  EXPECT_EQ(count, 1);
}

TEST(VirtualClockLoop, WallClockMovesWithTheLoop) {
  VirtualClock wall(UtcTime{2024, 12, 31, 23, 59, 59, 500});
  VirtualClockLoop loop(&wall);
  std::vector<UtcTime> seen;
  Timer timer(loop, 250, TimerMode::kPeriodic, [&] { seen.push_back(wall.NowUtc()); });
  timer.Start();
  loop.Advance(500);
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0], (UtcTime{2024, 12, 31, 23, 59, 59, 750}));
  EXPECT_EQ(seen[1], (UtcTime{2025, 1, 1, 0, 0, 0, 0}));
}

TEST(VirtualClockLoop, ExceptionInTimerCallbackLeavesTimerUsable) {
  VirtualClockLoop loop;
  int count = 0;
  Timer timer(loop, 10, TimerMode::kPeriodic, [&] {
    ++count;
    if (count == 1) throw std::runtime_error("boom");
  });
  timer.Start();
  EXPECT_THROW(loop.Advance(10), std::runtime_error);
  loop.Advance(10);
  EXPECT_EQ(count, 2);
}

}  // namespace
}  // namespace vellumar::ui
