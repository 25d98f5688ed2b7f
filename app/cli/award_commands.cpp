#include "award_commands.h"

#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <cstdio>

#include "adif/write_batch.h"
#include "awards/progress_init.h"
#include "awards/recompute.h"
#include "awards/summary_counts.h"
#include "cli_frame.h"
#include "platform/db/database.h"
#include "platform/vb/ascii.h"
#include "station/dxcc_module.h"

namespace vellumar::cli {

namespace {

volatile std::sig_atomic_t interrupted = 0;
extern "C" void OnAwardInterrupt(int) { interrupted = 1; }

bool FileExists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

// The log's Progress table and its QSOs in start-time order, as the program opens them.
struct AwardSession {
  explicit AwardSession(Frame& frame) : frame(frame), dxcc(frame.services, slots) {}

  bool Open(const std::string& pathname, bool needDXCC) {
    if (!FileExists(pathname)) {
      std::fprintf(stderr, "vellumar-cli: unable to open log database %s\n", pathname.c_str());
      return false;
    }
    if (needDXCC) {
      try {
        dxcc.OpenDXCCDatabase();
      } catch (const ProgramTermination&) {
        return false;
      }
      if (!dxcc.IsOpen()) {
        std::fprintf(stderr,
                     "vellumar-cli: the DXCC database can't be opened (see ErrorLog.txt)\n");
        return false;
      }
    }
    try {
      log = db::DBEngine::Workspaces(0).OpenDatabase(pathname);
      OpenProgress();
      db::Recordset qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
      qsos.SetSort("QSO_Begin");
      logView = qsos.OpenRecordset();
    } catch (const vb::VbError& e) {
      std::fprintf(stderr, "vellumar-cli: unable to open log database %s - %s\n", pathname.c_str(),
                   e.what());
      return false;
    }
    return true;
  }
  void OpenProgress() {
    progress = log.OpenRecordset("Progress", db::dbOpenDynaset);
    progress.SetSort("Prefix");
    progress.SetFilter("");
    progressView = progress.OpenRecordset();
  }
  void Report(int number, const std::string& where) { frame.common.ReportError(number, where); }

  Frame& frame;
  LookupSlots slots;
  DXCCModule dxcc;
  db::Database log;
  db::Recordset progress, progressView, logView;
};

void PrintGrid(const char* title, const SummaryCells& grid) {
  std::printf("%s\n", title);
  for (const auto& row : grid) {
    std::printf("%-19s", row[0].c_str());
    for (int c = 1; c < kSummaryColumns; ++c) std::printf("%-12s", row[c].c_str());
    std::printf("\n");
  }
}

}  // namespace

int Recompute(const std::vector<std::string>& args) {
  if (args.size() != 1) {
    std::fprintf(stderr, "usage: vellumar-cli recompute LOG.vdb\n");
    return 2;
  }
  Frame frame;
  AwardSession session(frame);
  if (!session.Open(args[0], true)) return 1;
  std::signal(SIGINT, OnAwardInterrupt);
  std::signal(SIGTERM, OnAwardInterrupt);
  const auto report = [&session](int n, const std::string& w) { session.Report(n, w); };
  const auto started = std::chrono::steady_clock::now();
  // The writes go to the file in groups; a group never splits one QSO's writes.
  adif::WriteBatch batch;
  long walked = 0;
  try {
    ClearProgress(session.progressView);
    InitializeProgressTableFromDatabase(session.log, session.dxcc.GetDXCCRecordset(),
                                        session.progress, report);
    session.OpenProgress();
    batch.Start(session.log);
    RecomputeWalkHooks hooks;
    hooks.beforeQSO = [&batch] { batch.BeforeRecord(); };
    hooks.afterQSO = [&batch](long) {
      batch.AfterRecord(true);
      return interrupted == 0;
    };
    walked = CountEveryQSO(session.logView, session.progressView, hooks, report);
    batch.Commit();
  } catch (const vb::VbError& e) {
    batch.Abandon();
    session.Report(e.number(), "VellumModule.RecomputeProgress");
    std::fprintf(stderr, "vellumar-cli: recompute failed - %s (see ErrorLog.txt)\n", e.what());
    return 4;
  }
  const double ms =
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
  long broken = 0;
  db::Recordset qsos = session.log.OpenRecordset("QSOs", db::dbOpenDynaset);
  while (!qsos.EOF_()) {
    if (vb::UpperAscii(qsos.Fields("BROKEN").Value().ToStringOrEmpty()) == "Y") ++broken;
    qsos.MoveNext();
  }
  std::printf("walked: %ld\nbroken: %ld\nms: %.1f\n", walked, broken, ms);
  return interrupted ? 3 : 0;
}

int Summary(const std::vector<std::string>& args) {
  const std::string which = args.size() == 2 ? vb::LowerAscii(args[1]) : "";
  if (args.empty() || args.size() > 2 || (args.size() == 2 && which != "dxcc" && which != "top")) {
    std::fprintf(stderr, "usage: vellumar-cli summary LOG.vdb [dxcc|top]\n");
    return 2;
  }
  Frame frame;
  AwardSession session(frame);
  if (!session.Open(args[0], false)) return 1;
  SummaryCells deleted, undeleted;
  try {
    db::Recordset walk = session.progressView.OpenRecordset();
    CountSummaryTable(walk, deleted, undeleted);
  } catch (const vb::VbError& e) {
    session.Report(e.number(), "DXCCSummary.ComputeSummaryGrids");
    std::fprintf(stderr, "vellumar-cli: summary failed - %s\n", e.what());
    return 4;
  }
  if (which != "top") PrintGrid("DXCC (includes deleted)", deleted);
  if (which.empty()) std::printf("\n");
  if (which != "dxcc") PrintGrid("TOP (non-deleted only)", undeleted);
  return 0;
}

}  // namespace vellumar::cli
