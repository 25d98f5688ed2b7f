// The award progress on a generated log of 100,000 QSOs over the current entities of the built
// DXCC database, on the control models: the Check Progress tab's whole recompute (question
// answered, bar and a yield per QSO), and the DXCC Summary's ComputeSummaryGrids on the table
// it leaves. Baseline in the same run: the record layer's own walk of the QSOs with one
// Progress update (FindFirst, Edit, Update) per QSO.
#include <cstdio>
#include <string>
#include <vector>

#include "bench_util.h"
#include "config/vellum_setup.h"
#include "progress_log.h"
#include "support/program_harness.h"

using namespace vellumar;
using vellumar::bench::Clock;
using vellumar::bench::Median;
using vellumar::bench::Ms;
using vellumar::bench::Report;

namespace {

constexpr int kLogSize = 100000;

// One Progress update per QSO through the record layer, nothing else.
double BaselineWalk(db::Database& log) {
  db::Recordset qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  qsos.SetSort("QSO_Begin");
  db::Recordset view = qsos.OpenRecordset();
  db::Recordset progress = log.OpenRecordset("Progress", db::dbOpenDynaset);
  const auto begin = Clock::now();
  view.MoveFirst();
  while (!view.EOF_()) {
    const std::string code = view.Fields("DXCCID").Value().ToStringOrEmpty();
    progress.FindFirst("CountryCode = '" + code + "'");
    if (!progress.NoMatch()) {
      progress.Edit();
      progress.Fields("20M").SetValue(vb::Variant("W"));
      progress.Update();
    }
    view.MoveNext();
  }
  return Ms(begin);
}

}  // namespace

int main() {
  test::ProgramHarness h(test::ProgramHarness::DXCC::kBuilt);
  h.SeedReturningOperator();
  Application& app = h.Start();
  h.loop.Advance(300);
  const std::string path = app.setup().LogPathname.Text();
  const std::vector<std::string> codes = bench::CurrentEntityCodes(app.dxcc.GetDXCCRecordset());
  bench::FillProgressLog(app.module.LogDatabase, codes, kLogSize);
  app.module.OpenLog(path, false);
  VellumMain& main = app.main;
  main.Show();
  std::fprintf(stderr, "# %d QSOs over %zu current entities; %s\n", kLogSize, codes.size(),
               main.Caption().c_str());

  std::vector<double> recomputes, baselines, summaries;
  for (int run = 0; run < 3; ++run) {
    h.desktop.ExpectMsgBox(
        "clear the progress table and then rebuild by scanning every QSO in the log?", ui::vbYes);
    const auto begin = Clock::now();
    main.ReComputeCmd.UserClick();
    recomputes.push_back(Ms(begin));
    if (app.module.RecomputeRunning) {
      std::fprintf(stderr, "# the recompute failed: see %s\n", h.ErrorLogText().c_str());
      return 1;
    }
    baselines.push_back(BaselineWalk(app.module.LogDatabase));
  }
  // The summary over the table the last recompute left (the baseline wrote only 20M letters
  // over it, which the summary reads like any other).
  for (int run = 0; run < 9; ++run) {
    const auto begin = Clock::now();
    app.logPage.dxccSummary.ComputeSummaryGrids();
    summaries.push_back(Ms(begin));
  }
  Report("progress_recompute_100k_ms", Median(recomputes), "ms");
  Report("progress_baseline_walk_100k_ms", Median(baselines), "ms");
  Report("progress_recompute_vs_baseline", Median(recomputes) / Median(baselines), "x");
  Report("progress_summary_ms", Median(summaries), "ms");
  return 0;
}
