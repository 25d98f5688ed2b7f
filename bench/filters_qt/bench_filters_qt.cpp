// The Log page's filters and sorts in the real window on the offscreen platform, on a log of
// 100,000 QSOs: from the click to the grid's first paint of the new view, then Ctrl+End and
// Page Down in the grid, each to its paint. Medians of several runs.
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <cstdio>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "bench_util.h"
#include "filters/filter_log.h"
#include "frame/settings_store.h"
#include "platform/vb/date_locale.h"
#include "platform/vb/date_value.h"
#include "program/application.h"
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

namespace {

constexpr int kLogSize = 100000;
constexpr int kRuns = 7;

// Counts the paints of a widget.
class PaintCounter : public QObject {
 public:
  int paints = 0;
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints;
    return false;
  }
};

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication qapp(argc, argv);
  test::TempDir dir;
  ui::VirtualClock clock{ui::UtcTime{2024, 3, 15, 8, 30, 0, 0}};
  qt::QtEventLoop loop;
  test::ScriptedDesktop desktop;
  vb::ScopedDateLocale locale{vb::DateLocale{}};
  SettingsStore settings(dir.Join("config"));
  settings.SaveSetting("Vellumar", "Configuration", "Callsign", "K1ABC");
  settings.SaveSetting("Vellumar", "RAC", "RACEnabled", "0");
  std::optional<Application> app;
  app.emplace(ApplicationPlatform{
      .common = test::HarnessContext(dir.Join("data"), clock, desktop),
      .loop = loop,
      .settingsRoot = dir.Join("config"),
      .installedData = std::string(VELLUMAR_BINARY_DIR) + "/data",
      .exitProcess = [](int) {},
  });
  std::optional<qt::ProgramViews> views;
  views.emplace(*app);
  app->Start();
  for (int i = 0; i < 50; ++i) QCoreApplication::processEvents();
  bench::FillFilterLog(app->module.LogDatabase, kLogSize);
  app->module.OpenLog(app->logPage.config.LogPathname(), false);
  QWidget* window = views->main.window();
  window->resize(1200, 800);
  window->show();
  auto* grid = window->findChild<QTableView*>(QStringLiteral("LogGrid"));
  PaintCounter counter;
  grid->viewport()->installEventFilter(&counter);
  QCoreApplication::processEvents();

  // Runs the action, then the event loop until the grid has painted; the time to that paint.
  auto toPaint = [&](const std::function<void()>& action) {
    QCoreApplication::processEvents();
    const int before = counter.paints;
    const auto begin = Clock::now();
    action();
    for (int i = 0; i < 1000 && counter.paints == before; ++i) {
      grid->viewport()->update();
      QCoreApplication::processEvents();
    }
    return Ms(begin);
  };
  auto key = [&](int k, Qt::KeyboardModifiers mods) {
    grid->setFocus();
    QKeyEvent press(QEvent::KeyPress, k, mods);
    QApplication::sendEvent(grid, &press);
    QKeyEvent release(QEvent::KeyRelease, k, mods);
    QApplication::sendEvent(grid, &release);
  };
  auto measure = [&](const std::string& name, const std::function<void()>& prepare,
                     const std::function<void()>& click) {
    std::vector<double> clicks, ends, pages;
    for (int run = 0; run <= kRuns; ++run) {
      prepare();
      const double c = toPaint(click);
      const double e = toPaint([&] { key(Qt::Key_End, Qt::ControlModifier); });
      const double p = toPaint([&] { key(Qt::Key_PageDown, Qt::NoModifier); });
      if (run == 0) continue;  // caches warm
      clicks.push_back(c);
      ends.push_back(e);
      pages.push_back(p);
    }
    std::fprintf(stderr, "# %-16s %6d rows in the grid\n", name.c_str(), grid->model()->rowCount());
    Report(("filters_qt_" + name + "_ms").c_str(), Median(clicks), "ms");
    Report(("filters_qt_" + name + "_ctrl_end_ms").c_str(), Median(ends), "ms");
    Report(("filters_qt_" + name + "_page_down_ms").c_str(), Median(pages), "ms");
  };
  auto button = [&](const char* name) {
    return window->findChild<QPushButton*>(QString::fromUtf8(name));
  };
  auto filterText = [&](const char* text) {
    return [&, text] { app->main.FilterField.SetText(text); };
  };
  measure("call_K1", filterText("K1*"), [&] { button("FilterCallCmd")->click(); });
  measure("dxcc_DL", filterText("DL"), [&] { button("FilterDXCCCmd")->click(); });
  AdvancedFilter& advanced = app->advancedFilter;
  measure("date_within", [&] {
    advanced.DateFilterKind(0).SetValue(true);
    advanced.DateFilterTolerance.SetText("1440");
    app->main.FilterField.SetText("2006-06-01 12:00");
  }, [&] { button("FilterDateCmd")->click(); });
  measure("date_to_bound", [&] {
    advanced.DateFilterKind(1).SetValue(true);
    advanced.DateFilterUpperBound.SetText("01-Jan-2007 00:00:00");
    app->main.FilterField.SetText("2006-01-01 00:00");
  }, [&] { button("FilterDateCmd")->click(); });
  measure("broken", [] {}, [&] { button("FilterBrokenCmd")->click(); });
  {
    // One QTH of my own: the broken filter then also shows the QSOs that name none.
    db::Recordset q = app->module.LogDatabase.OpenRecordset("QTHs", db::dbOpenDynaset);
    q.AddNew();
    q.Fields("MYQTHID").SetValue(vb::Variant("HOME"));
    q.Update();
    app->module.OpenLog(app->logPage.config.LogPathname(), false);
  }
  measure("broken_with_qths", [] {}, [&] { button("FilterBrokenCmd")->click(); });
  // The Advanced window's filters through its buttons' models, which its view is bound to.
  auto clearChecks = [&] {
    for (int i = 1; i <= 15; ++i) advanced.BandCheck(i).SetValue(0);
    for (int i = 1; i <= 14; ++i) advanced.ModeCheck(i).SetValue(0);
  };
  measure("three_bands", [&] {
    clearChecks();
    for (int i : {2, 5, 9}) advanced.BandCheck(i).SetValue(1);
  }, [&] { advanced.BandFilterCmd.UserClick(); });
  measure("all_bands", [&] {
    for (int i = 1; i <= 15; ++i) advanced.BandCheck(i).SetValue(1);
  }, [&] { advanced.BandFilterCmd.UserClick(); });
  measure("two_modes", [&] {
    clearChecks();
    advanced.ModeCheck(2).SetValue(1);
    advanced.ModeCheck(8).SetValue(1);
  }, [&] { advanced.ModeFilterCmd.UserClick(); });
  const char* queries[] = {
      "Band = '20M' AND Mode = 'CW'",
      "Call LIKE 'K#A1*' OR DXCCPrefix IN ('JA', 'VK')",
      "QSO_Begin BETWEEN #2006-01-01# AND #2006-12-31 23:59# AND QSLSdate IS NULL",
      "NOT (Band IS NULL) AND (Mode <> 'SSB') AND Call LIKE '*A99'",
  };
  for (int i = 0; i < 4; ++i) {
    advanced.SQLquery(i).SetText(queries[i]);
    measure("sql_" + std::to_string(i), [] {}, [&, i] { advanced.SQLFilterCmd(i).UserClick(); });
  }
  measure("clear", [] {}, [&] { button("FilterClearCmd")->click(); });
  auto radio = [&](const char* name) {
    return window->findChild<QRadioButton*>(QString::fromUtf8(name));
  };
  auto unselect = [&] {
    app->main.SortKind.Cleared(app->main.SortCallButton);
    app->main.SortCallButton.SetValue(false);
  };
  measure("sort_call", unselect, [&] { radio("SortCallButton")->click(); });
  measure("sort_utc", unselect, [&] { radio("SortUTCButton")->click(); });
  app->advancedFilter.AdvancedSort(1).SetText("Call DESC, QSO_Begin");
  app->advancedFilter.AdvancedSortSelect(1).SetValue(true);
  measure("sort_call_desc_utc", unselect, [&] { radio("SortAdvancedButton")->click(); });
  app->advancedFilter.AdvancedSort(0).SetText("DXCCPrefix, Band DESC, Call, QSLSdate");
  app->advancedFilter.AdvancedSortSelect(0).SetValue(true);
  measure("sort_four_fields", unselect, [&] { radio("SortAdvancedButton")->click(); });
  window->hide();
  views.reset();
  app.reset();
  return 0;
}
