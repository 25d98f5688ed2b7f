// The termination signals arrive as events of the Qt loop with the unload mode that fits them.
#include "qt/termination_signal.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <QElapsedTimer>
#include <QTest>
#include <vector>

#include "platform/ui/form.h"

namespace vellumar::qt {
namespace {

// Raises the signal and runs the loop until the callback has heard one more.
void RaiseAndWait(const std::vector<int>& modes, int signal) {
  const size_t before = modes.size();
  ::raise(signal);
  QElapsedTimer t;
  t.start();
  while (modes.size() == before && t.elapsed() < 3000) QTest::qWait(5);
}

TEST(TerminationSignalTest, TermAndHangUpBecomeUnloadModes) {
  std::vector<int> modes;
  const TerminationSignal termination([&](int mode) { modes.push_back(mode); });
  EXPECT_TRUE(modes.empty());
  RaiseAndWait(modes, SIGTERM);
  RaiseAndWait(modes, SIGHUP);
  RaiseAndWait(modes, SIGINT);
  EXPECT_EQ(modes,
            (std::vector<int>{ui::vbAppTaskManager, ui::vbAppWindows, ui::vbAppTaskManager}));
}

}  // namespace
}  // namespace vellumar::qt
