// The Log page's filters and sorts on a log of 100,000 QSOs, from the click to the display open
// and positioned: each kind of filter and four sorts, on the control models. Baseline measured
// in the same run: the record layer's own view with the same filter or sort, opened and moved
// to where the display stands. Medians of several runs.
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "bench_util.h"
#include "filters/filter_log.h"
#include "config/vellum_setup.h"
#include "platform/vb/date_value.h"
#include "support/program_harness.h"

using namespace vellumar;
using vellumar::bench::Clock;
using vellumar::bench::Median;
using vellumar::bench::Ms;
using vellumar::bench::Report;

namespace {

constexpr int kLogSize = 100000;
constexpr int kRuns = 7;

// Times `action` kRuns times after one run to warm the caches; the median in ms.
double Time(const std::function<void()>& prepare, const std::function<void()>& action) {
  std::vector<double> times;
  for (int run = 0; run <= kRuns; ++run) {
    prepare();
    const auto begin = Clock::now();
    action();
    if (run > 0) times.push_back(Ms(begin));
  }
  return Median(times);
}

long Count(const db::Recordset& rs) {
  db::Recordset c = rs.Clone();
  if (c.BOF() && c.EOF_()) return 0;
  c.MoveLast();
  return c.RecordCount();
}

}  // namespace

int main() {
  test::ProgramHarness h(test::ProgramHarness::DXCC::kBuilt);
  h.SeedReturningOperator();
  Application& app = h.Start();
  h.loop.Advance(300);
  const std::string path = app.setup().LogPathname.Text();
  bench::FillFilterLog(app.module.LogDatabase, kLogSize);
  app.module.OpenLog(path, false);
  VellumMain& main = app.main;
  AdvancedFilter& window = app.advancedFilter;
  main.Show();
  h.desktop.Tolerate({"Invalid Filter expression"});

  // The record layer alone: a view of the log's dynaset with the filter and sort, positioned.
  auto baseline = [&](const std::string& filter, const std::string& sort) {
    db::Recordset dynaset = app.module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    return Time([] {}, [&] {
      dynaset.SetFilter(filter);
      dynaset.SetSort(sort);
      db::Recordset view = dynaset.OpenRecordset();
      if (!(view.BOF() && view.EOF_())) {
        if (sort == "QSO_Begin") view.MoveLast(); else view.MoveFirst();
      }
      view.Close();
    });
  };
  auto clearAll = [&] {
    for (int i = 1; i <= 15; ++i) window.BandCheck(i).SetValue(0);
    for (int i = 1; i <= 14; ++i) window.ModeCheck(i).SetValue(0);
  };
  auto report = [&](const std::string& name, double ms, double base) {
    std::fprintf(stderr, "# %-22s %6ld rows  filter \"%s\"  caption \"%s\"\n", name.c_str(),
                 Count(main.LogPosition.Recordset()), app.module.GetLogFilter().c_str(),
                 main.FilterFrame.Caption().c_str());
    Report(("filters_" + name + "_ms").c_str(), ms, "ms");
    Report(("filters_" + name + "_raw_ms").c_str(), base, "ms");
  };
  auto clickFilter = [&](const std::string& name, const std::function<void()>& prepare,
                         ui::CommandButton& button) {
    const double ms = Time(prepare, [&] { button.UserClick(); });
    report(name, ms, baseline(app.module.GetLogFilter(), "QSO_Begin"));
  };
  auto text = [&](const std::string& t) { return [&, t] { main.FilterField.SetText(t); }; };

  clickFilter("call_K1", text("K1*"), main.FilterCallCmd);
  clickFilter("dxcc_DL", text("DL"), main.FilterDXCCCmd);
  clickFilter("date_within", [&] {
    window.DateFilterKind(0).SetValue(true);
    window.DateFilterTolerance.SetText("1440");
    main.FilterField.SetText("2006-06-01 12:00");
  }, main.FilterDateCmd);
  clickFilter("date_to_bound", [&] {
    window.DateFilterKind(1).SetValue(true);
    window.DateFilterUpperBound.SetText("01-Jan-2007 00:00:00");
    main.FilterField.SetText("2006-01-01 00:00");
  }, main.FilterDateCmd);
  clickFilter("broken_no_qths", [] {}, main.FilterBrokenCmd);
  {
    db::Recordset q = app.module.LogDatabase.OpenRecordset("QTHs", db::dbOpenDynaset);
    q.AddNew();
    q.Fields("MYQTHID").SetValue(vb::Variant("HOME"));
    q.Update();
    app.module.OpenLog(path, false);
  }
  clickFilter("broken_with_qths", [] {}, main.FilterBrokenCmd);
  clickFilter("three_bands", [&] {
    clearAll();
    for (int i : {2, 5, 9}) window.BandCheck(i).SetValue(1);
  }, window.BandFilterCmd);
  clickFilter("all_bands", [&] {
    for (int i = 1; i <= 15; ++i) window.BandCheck(i).SetValue(1);
  }, window.BandFilterCmd);
  clickFilter("two_modes", [&] {
    clearAll();
    window.ModeCheck(2).SetValue(1);
    window.ModeCheck(8).SetValue(1);
  }, window.ModeFilterCmd);
  const char* queries[] = {
      "Band = '20M' AND Mode = 'CW'",
      "Call LIKE 'K#A1*' OR DXCCPrefix IN ('JA', 'VK')",
      "QSO_Begin BETWEEN #2006-01-01# AND #2006-12-31 23:59# AND QSLSdate IS NULL",
      "NOT (Band IS NULL) AND (Mode <> 'SSB') AND Call LIKE '*A99'",
  };
  for (int i = 0; i < 4; ++i) {
    window.SQLquery(i).SetText(queries[i]);
    clickFilter("sql_" + std::to_string(i), [] {}, window.SQLFilterCmd(i));
  }
  clickFilter("clear", [&] { main.FilterField.SetText("K1*"); main.FilterCallCmd.UserClick(); },
              main.FilterClearCmd);

  // Sorts of the whole log, from the click to the display open and positioned.
  auto sortBy = [&](const std::string& name, const std::string& sort,
                    const std::function<void()>& click) {
    const double ms = Time([&] { main.SortKind.Cleared(main.SortCallButton); main.SortCallButton.SetValue(false); }, click);
    report(name, ms, baseline("", sort));
  };
  sortBy("sort_call", "Call", [&] { main.SortCallButton.UserSelect(); });
  sortBy("sort_utc", "QSO_Begin", [&] { main.SortUTCButton.UserSelect(); });
  window.AdvancedSort(0).SetText("Call DESC, QSO_Begin");
  window.AdvancedSort(1).SetText("DXCCPrefix, Band DESC, Call, QSLSdate");
  window.AdvancedSortSelect(0).SetValue(true);
  sortBy("sort_call_desc_utc", "Call DESC, QSO_Begin", [&] { main.SortAdvancedButton.UserSelect(); });
  window.AdvancedSortSelect(1).SetValue(true);
  sortBy("sort_four_fields", "DXCCPrefix, Band DESC, Call, QSLSdate",
         [&] { main.SortAdvancedButton.UserSelect(); });
  std::fprintf(stderr, "# log of %d QSOs; error log: %s\n", kLogSize,
               h.ErrorLogText().empty() ? "empty" : h.ErrorLogText().c_str());
  return 0;
}
