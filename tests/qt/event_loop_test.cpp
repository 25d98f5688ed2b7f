// The Qt event loop as the models' EventLoop: timers stand stopped until started, one-shots
// fire once, a timer stopped in its own callback stays stopped, posted work runs in order, and a
// yield runs what is due.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTest>
#include <vector>

#include "qt/qt_event_loop.h"

namespace vellumar::qt {
namespace {

// Runs the Qt loop until `done` or the time is up.
template <typename Done>
bool RunUntil(Done done, int timeoutMs = 3000) {
  QElapsedTimer t;
  t.start();
  while (!done() && t.elapsed() < timeoutMs) QTest::qWait(5);
  return done();
}

TEST(QtEventLoopTest, NewTimerStandsStopped) {
  QtEventLoop loop;
  int fired = 0;
  const ui::TimerId id = loop.CreateTimer(10, ui::TimerMode::kPeriodic, [&] { ++fired; });
  EXPECT_FALSE(loop.TimerRunning(id));
  QTest::qWait(50);
  EXPECT_EQ(fired, 0);
  EXPECT_EQ(loop.TimerInterval(id), 10);
}

TEST(QtEventLoopTest, OneShotFiresOnceThenStandsStopped) {
  QtEventLoop loop;
  int fired = 0;
  const ui::TimerId id = loop.CreateTimer(10, ui::TimerMode::kOneShot, [&] { ++fired; });
  loop.StartTimer(id);
  EXPECT_TRUE(loop.TimerRunning(id));
  ASSERT_TRUE(RunUntil([&] { return fired == 1; }));
  QTest::qWait(50);
  EXPECT_EQ(fired, 1);
  EXPECT_FALSE(loop.TimerRunning(id));
}

TEST(QtEventLoopTest, PeriodicTimerStoppedInItsCallbackStaysStopped) {
  QtEventLoop loop;
  int fired = 0;
  ui::TimerId id = 0;
  id = loop.CreateTimer(5, ui::TimerMode::kPeriodic, [&] {
    if (++fired == 3) loop.StopTimer(id);
  });
  loop.StartTimer(id);
  ASSERT_TRUE(RunUntil([&] { return fired >= 3; }));
  QTest::qWait(60);
  EXPECT_EQ(fired, 3);
  EXPECT_FALSE(loop.TimerRunning(id));
}

TEST(QtEventLoopTest, ZeroIntervalIsEnabledButNeverFires) {
  QtEventLoop loop;
  int fired = 0;
  const ui::TimerId id = loop.CreateTimer(0, ui::TimerMode::kPeriodic, [&] { ++fired; });
  loop.StartTimer(id);
  EXPECT_TRUE(loop.TimerRunning(id));
  QTest::qWait(30);
  EXPECT_EQ(fired, 0);
  loop.SetTimerInterval(id, 5);  // running: counts from now
  ASSERT_TRUE(RunUntil([&] { return fired > 0; }));
}

TEST(QtEventLoopTest, TimerMayDestroyItselfInItsCallback) {
  QtEventLoop loop;
  int fired = 0;
  ui::TimerId id = 0;
  id = loop.CreateTimer(5, ui::TimerMode::kPeriodic, [&] {
    ++fired;
    loop.DestroyTimer(id);
  });
  loop.StartTimer(id);
  ASSERT_TRUE(RunUntil([&] { return fired == 1; }));
  QTest::qWait(40);
  EXPECT_EQ(fired, 1);
  EXPECT_FALSE(loop.TimerRunning(id));
}

TEST(QtEventLoopTest, NoReentryWhileTheCallbackYields) {
  QtEventLoop loop;
  int depth = 0, maxDepth = 0, fired = 0;
  ui::TimerId id = 0;
  id = loop.CreateTimer(2, ui::TimerMode::kPeriodic, [&] {
    maxDepth = std::max(maxDepth, ++depth);
    ++fired;
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 20) loop.Yield();  // a long operation yielding per record
    --depth;
    if (fired == 2) loop.StopTimer(id);
  });
  loop.StartTimer(id);
  ASSERT_TRUE(RunUntil([&] { return fired == 2; }));
  EXPECT_EQ(maxDepth, 1);
}

TEST(QtEventLoopTest, PostedWorkRunsInOrderOnTheLoop) {
  QtEventLoop loop;
  std::vector<int> order;
  loop.Post([&] { order.push_back(1); });
  loop.Post([&] { order.push_back(2); });
  EXPECT_TRUE(order.empty());  // never at once
  loop.Yield();
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST(QtEventLoopTest, AnEscapingErrorDoesNotUnwindThroughQt) {
  QtEventLoop loop;
  bool after = false;
  loop.Post([] { throw std::runtime_error("boom"); });
  loop.Post([&] { after = true; });
  loop.Yield();
  EXPECT_TRUE(after);
}

TEST(QtEventLoopTest, NowMsIsMonotonic) {
  QtEventLoop loop;
  const auto a = loop.NowMs();
  QTest::qWait(20);
  const auto b = loop.NowMs();
  EXPECT_GE(b - a, 15);
}

}  // namespace
}  // namespace vellumar::qt
