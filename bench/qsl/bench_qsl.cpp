// The QSL queue's walks on a generated log of 100,000 QSOs (bench/progress's log: 5,000 calls
// over the current entities of the built DXCC database), on the control models: "Add Needed"
// from its button over the whole log after a recompute, and "Update Log" of 5,000 Done rows.
// Baselines in the same run: the record layer's own walk of the log from last to first with a
// FindFirst on Progress per QSO (what Add Needed must do at the least), and 5,000 QSOs edited
// through the record layer (Edit, two fields, Update), each committed on its own as Update Log
// commits them. The QSOs of an unknown entity are given no code first, and the modes too wide
// for the queue a narrower one, so that no message box stops the walk.
#include <cstdio>
#include <string>
#include <vector>

#include "bench_util.h"
#include "config/vellum_setup.h"
#include "progress_log.h"
#include "support/program_harness.h"

using namespace vellumar;
using vellumar::bench::Clock;
using vellumar::bench::Ms;
using vellumar::bench::Report;

namespace {

constexpr int kLogSize = 100000;
constexpr int kDoneRows = 5000;

double BaselineWalk(db::Database& log) {
  db::Recordset qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  qsos.SetSort("QSO_Begin");
  db::Recordset view = qsos.OpenRecordset();
  db::Recordset progress = log.OpenRecordset("Progress", db::dbOpenDynaset);
  const auto begin = Clock::now();
  view.MoveLast();
  long found = 0;
  while (!view.BOF()) {
    progress.FindFirst("CountryCode = '" + view.Fields("DXCCID").Value().ToStringOrEmpty() + "'");
    if (!progress.NoMatch()) ++found;
    view.MovePrevious();
  }
  return Ms(begin);
}

double BaselineEdits(db::Database& log) {
  db::Recordset qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  const auto begin = Clock::now();
  for (int i = 0; i < kDoneRows && !qsos.EOF_(); ++i) {
    qsos.Edit();
    qsos.Fields("Comment").SetValue(vb::Variant("baseline"));
    qsos.Fields("STX").SetValue(vb::Variant(std::to_string(i)));
    qsos.Update();
    qsos.MoveNext();
  }
  return Ms(begin);
}

long QueueRows(db::Recordset& queue) {
  if (queue.BOF() && queue.EOF_()) return 0;
  db::Recordset c = queue.Clone();
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
  const std::vector<std::string> codes = bench::CurrentEntityCodes(app.dxcc.GetDXCCRecordset());
  bench::FillProgressLog(app.module.LogDatabase, codes, kLogSize);
  app.module.OpenLog(path, false);
  VellumMain& main = app.main;
  main.Show();
  h.desktop.ExpectMsgBox(
      "clear the progress table and then rebuild by scanning every QSO in the log?", ui::vbYes);
  main.ReComputeCmd.UserClick();
  // The walk would stop at a message box for each QSO of an unknown entity (code 999) and for
  // each mode too wide for the queue (PSK31): those QSOs get no code and a four-letter mode.
  {
    db::Recordset all = app.module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    app.module.LogDatabase.BeginTrans();
    for (; !all.EOF_(); all.MoveNext()) {
      const bool unknown = all.Fields("DXCCID").Value().ToStringOrEmpty() == "999";
      const bool wide = all.Fields("Mode").Value().ToStringOrEmpty().size() > 4;
      if (!unknown && !wide) continue;
      all.Edit();
      if (unknown) all.Fields("DXCCID").SetValue(vb::Variant(""));
      if (wide) all.Fields("Mode").SetValue(vb::Variant("PSK"));
      all.Update();
    }
    app.module.LogDatabase.CommitTrans();
    main.LogPosition.Recordset().Requery();
  }

  // Add Needed over the whole log, every award box checked (the settings' default).
  const double baselineWalk = BaselineWalk(app.module.LogDatabase);
  auto begin = Clock::now();
  main.GenerateNeededCmd.UserClick();
  const double addNeeded = Ms(begin);
  db::Recordset& queue = main.QSLPosition.Recordset();
  const long added = QueueRows(queue);
  std::fprintf(stderr, "# Add Needed over %d QSOs queued %ld rows\n", kLogSize, added);
  Report("qsl_add_needed_100k_ms", addNeeded, "ms");
  Report("qsl_add_needed_rows", static_cast<double>(added), "rows");
  Report("qsl_baseline_walk_findfirst_100k_ms", baselineWalk, "ms");

  // A log never asked before: every letter the recompute left stands at "W" and no QSO is
  // sought, so that each entity's band and mode columns choose a QSO, each with its companions.
  {
    db::Recordset all = app.module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    app.module.LogDatabase.BeginTrans();
    for (; !all.EOF_(); all.MoveNext()) {
      const std::string rcvd = all.Fields("QSL_Rcvd").Value().ToStringOrEmpty();
      if (rcvd != "R" && rcvd != "Y" && rcvd != "V") continue;
      all.Edit();
      all.Fields("QSL_Rcvd").SetValue(vb::Variant(""));
      all.Update();
    }
    db::Recordset letters = app.module.LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    for (; !letters.EOF_(); letters.MoveNext()) {
      letters.Edit();
      for (int c = 3; c <= 17; ++c)
        if (!letters.Fields(c).Value().ToStringOrEmpty().empty())
          letters.Fields(c).SetValue(vb::Variant("W"));
      letters.Update();
    }
    app.module.LogDatabase.CommitTrans();
    main.LogPosition.Recordset().Requery();
    main.ProgressPosition.Recordset().Requery();
  }
  begin = Clock::now();
  main.GenerateNeededCmd.UserClick();
  const double addNeededFresh = Ms(begin);
  std::fprintf(stderr, "# Add Needed on a log never asked queued %ld rows in all\n",
               QueueRows(queue));
  Report("qsl_add_needed_fresh_100k_ms", addNeededFresh, "ms");
  Report("qsl_add_needed_fresh_rows", static_cast<double>(QueueRows(queue) - added), "rows");

  // Update Log of 5,000 Done rows: the queue emptied, then a row for each of the log's first
  // 5,000 QSOs, printed on a day of its own.
  {
    db::Recordset c = queue.Clone();
    if (!(c.BOF() && c.EOF_())) {
      for (c.MoveFirst(); !c.EOF_(); c.MoveNext()) c.Delete();
    }
  }
  db::Recordset qsos = app.module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
  db::Database queueFile = db::DBEngine::Workspaces(0).OpenDatabase(app.qslQueue.Pathname());
  db::Recordset rows = queueFile.OpenRecordset("PrintQueue", db::dbOpenDynaset);
  queueFile.BeginTrans();
  for (int i = 0; i < kDoneRows; ++i, qsos.MoveNext()) {
    rows.AddNew();
    rows.Fields("CALL").SetValue(qsos.Fields("Call").Value());
    rows.Fields("QSO_BEGIN").SetValue(qsos.Fields("QSO_Begin").Value());
    rows.Fields("MODE").SetValue(vb::Variant(qsos.Fields("Mode").Value().ToStringOrEmpty().substr(0, 4)));
    rows.Fields("BAND").SetValue(vb::Variant(qsos.Fields("Band").Value().ToStringOrEmpty().substr(0, 5)));
    rows.Fields("ENABLED").SetValue(vb::Variant("Y"));
    rows.Fields("QSL_DATE").SetValue(vb::Variant::FromDate(vb::DateSerial(2024, 1, 1) + i % 300));
    rows.Update();
  }
  queueFile.CommitTrans();
  rows.Close();
  queueFile.Close();
  app.qslQueue.SortQSL("OPERATOR, CALL, MYQTHID, QSO_BEGIN");
  std::fprintf(stderr, "# %ld Done rows queued\n", QueueRows(queue));
  begin = Clock::now();
  main.ProcessPrintedCmd.UserClick();
  const double updateLog = Ms(begin);
  const long left = QueueRows(main.QSLPosition.Recordset());
  std::fprintf(stderr, "# Update Log left %ld rows\n", left);
  Report("qsl_update_log_5000_ms", updateLog, "ms");
  Report("qsl_baseline_edit_5000_qsos_ms", BaselineEdits(app.module.LogDatabase), "ms");
  return left == 0 ? 0 : 1;
}
