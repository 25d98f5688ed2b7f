// The recompute of a generated log of 100,000 QSOs with the program's windows in Qt on the
// offscreen platform and the Check Progress tab in front, so that every yield runs Qt's events
// (the bar repainted, the hidden grid rebound). The same log as bench_progress.
#include <QApplication>
#include <QTabWidget>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "bench_util.h"
#include "program/application.h"
#include "progress_log.h"
#include "qt/program_views.h"
#include "qt/qt_event_loop.h"
#include "support/frame_harness.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

using namespace vellumar;
using vellumar::bench::Clock;
using vellumar::bench::Median;
using vellumar::bench::Ms;
using vellumar::bench::Report;

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication qapp(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);

  test::TempDir dir;
  ui::VirtualClock clock{ui::UtcTime{2024, 3, 15, 8, 30, 0, 0}};
  qt::QtEventLoop loop;
  test::ScriptedDesktop desktop;
  vb::ScopedDateLocale dateLocale{vb::DateLocale{}};
  SettingsStore settings(dir.Join("config"));
  settings.SaveSetting("Vellumar", "Configuration", "Callsign", "K1ABC");
  settings.SaveSetting("Vellumar", "RAC", "RACEnabled", "0");
  std::optional<int> exitCode;
  Application app(ApplicationPlatform{
      .common = test::HarnessContext(dir.Join("data"), clock, desktop),
      .loop = loop,
      .settingsRoot = dir.Join("config"),
      .installedData = std::string(VELLUMAR_BINARY_DIR) + "/data",
      .exitProcess = [&exitCode](int code) { exitCode = code; },
  });
  qt::ProgramViews views(app);
  app.Start();
  const std::string path = app.setup().LogPathname.Text();
  const std::vector<std::string> codes = bench::CurrentEntityCodes(app.dxcc.GetDXCCRecordset());
  bench::FillProgressLog(app.module.LogDatabase, codes, 100000);
  app.module.OpenLog(path, false);
  views.main.tabs()->setCurrentIndex(2);
  QCoreApplication::processEvents();
  std::fprintf(stderr, "# Qt offscreen, tab %d; %s\n", app.main.TabbedDialog.Tab(),
               app.main.Caption().c_str());

  std::vector<double> recomputes;
  for (int run = 0; run < 3; ++run) {
    desktop.ExpectMsgBox(
        "clear the progress table and then rebuild by scanning every QSO in the log?", ui::vbYes);
    const auto begin = Clock::now();
    app.main.RecomputeCmd_Click();
    recomputes.push_back(Ms(begin));
    if (app.module.RecomputeRunning) return 1;
  }
  std::vector<double> summaries;
  for (int run = 0; run < 5; ++run) {
    const auto begin = Clock::now();
    app.logPage.dxccSummary.ComputeSummaryGrids();
    summaries.push_back(Ms(begin));
  }
  Report("progress_recompute_100k_qt_ms", Median(recomputes), "ms");
  Report("progress_summary_qt_ms", Median(summaries), "ms");
  for (QWidget* w : QApplication::topLevelWidgets()) w->hide();
  return 0;
}
