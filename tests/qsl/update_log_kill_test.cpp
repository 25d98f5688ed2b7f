// "Update Log" killed with SIGKILL at random moments. A child process carries 500 Done rows of
// the queue into the log; the parent kills it after a random delay within the time a whole run
// takes. Whatever the moment, both files open afterwards, and each row is still queued or its
// QSO has QSL_Sent "Y" and QSLSDATE equal to the row's QSL_DATE (both, if the kill fell between
// the QSO's write and the row's delete); never neither. A second "Update Log" then empties the
// queue. The seeds are printed with every failure.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <thread>

#include "logstore/field_table.h"
#include "logstore/log_schema.h"
#include "platform/bound/data_control.h"
#include "platform/db/database.h"
#include "platform/vb/date_value.h"
#include "qsl/qsl_module.h"
#include "qsl/qsl_queue.h"
#include "support/frame_harness.h"

namespace vellumar::test {
namespace {

namespace qf = logstore::field;

constexpr int kRows = 500;
constexpr int kKills = 50;

std::string CallOf(int i) {
  char text[16];
  std::snprintf(text, sizeof text, "K%04d", i);
  return text;
}
double BeginOf(int i) { return vb::DateSerial(2024, 1, 1) + i / 24.0; }
double DoneOf(int i) { return vb::DateSerial(2024, 6, 1) + i; }

class UpdateLogKill : public ::testing::Test {
 protected:
  UpdateLogKill() : schema(h.common.errorLog(), [](db::Database&) {}) {}

  // A log of kRows QSOs and a queue holding each of them, done on a day of its own.
  void MakeTemplate() {
    ASSERT_TRUE(schema.CreateLog(Template("log")));
    db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(Template("log"));
    db::Recordset qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    log.BeginTrans();
    for (int i = 0; i < kRows; ++i) {
      qsos.AddNew();
      qsos.Fields(qf::Call).SetValue(CallOf(i));
      qsos.Fields(qf::QSO_Begin).SetValue(vb::Variant::FromDate(BeginOf(i)));
      qsos.Fields(qf::Band).SetValue("20M");
      qsos.Fields(qf::Mode).SetValue("CW");
      qsos.Fields(qf::Freq).SetValue("14.025");
      qsos.Fields(qf::QSL_Rcvd).SetValue(i % 3 == 0 ? "Y" : "R");
      qsos.Update();
    }
    log.CommitTrans();
    qsos.Close();
    log.Close();
    ASSERT_TRUE(logstore::CreateQSLQueue(Template("queue")));
    db::Database queue = db::DBEngine::Workspaces(0).OpenDatabase(Template("queue"));
    db::Recordset rows = queue.OpenRecordset("PrintQueue", db::dbOpenDynaset);
    queue.BeginTrans();
    for (int i = 0; i < kRows; ++i) {
      rows.AddNew();
      rows.Fields("CALL").SetValue(CallOf(i));
      rows.Fields("QSO_BEGIN").SetValue(vb::Variant::FromDate(BeginOf(i)));
      rows.Fields("MODE").SetValue("CW");
      rows.Fields("BAND").SetValue("20M");
      rows.Fields("ENABLED").SetValue("Y");
      rows.Fields("QSL_DATE").SetValue(vb::Variant::FromDate(DoneOf(i)));
      rows.Update();
    }
    queue.CommitTrans();
    rows.Close();
    queue.Close();
  }
  std::string Template(const std::string& name) const { return h.dir.Join("template-" + name + ".vdb"); }
  void Copy(const std::string& from, const std::string& to) {
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
    for (const char* suffix : {"-wal", "-shm"}) std::filesystem::remove(to + suffix);
  }

  // "Update Log" over the files, as the QSL tab runs it.
  static void UpdateLog(const std::string& logPath, const std::string& queuePath) {
    db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
    db::Recordset progress = log.OpenRecordset("Progress", db::dbOpenDynaset);
    db::Database queue = db::DBEngine::Workspaces(0).OpenDatabase(queuePath);
    db::Recordset master = queue.OpenRecordset("PrintQueue", db::dbOpenDynaset);
    master.SetSort("OPERATOR, CALL, MYQTHID, QSO_BEGIN");
    db::Recordset display = master.OpenRecordset();
    qsl::VellumQSLModule module(display, qsl::QSLServices{});
    module.ProcessPrintedQSLs(log, progress);
    display.Close();
    master.Close();
    queue.Close();
    progress.Close();
    log.Close();
  }
  pid_t SpawnUpdateLog(const std::string& logPath, const std::string& queuePath) {
    const pid_t pid = fork();
    if (pid == 0) {
      UpdateLog(logPath, queuePath);
      _exit(0);
    }
    return pid;
  }

  // What the files hold: the queued calls, and each QSO's QSL_Sent and QSLSDATE. Throws when a
  // file doesn't open.
  struct State {
    std::map<std::string, double> queued;  // call -> QSL_DATE
    std::map<std::string, std::pair<std::string, std::string>> qsos;  // call -> sent, date
  };
  static State Read(const std::string& logPath, const std::string& queuePath) {
    State s;
    db::Database queue = db::DBEngine::Workspaces(0).OpenDatabase(queuePath);
    db::Recordset rows = queue.OpenRecordset("PrintQueue", db::dbOpenDynaset);
    for (; !rows.EOF_(); rows.MoveNext())
      s.queued[rows.Fields("CALL").Value().ToString()] = rows.Fields("QSL_DATE").Value().ToDate();
    rows.Close();
    queue.Close();
    db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
    db::Recordset qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    for (; !qsos.EOF_(); qsos.MoveNext())
      s.qsos[qsos.Fields(qf::Call).Value().ToString()] = {
          qsos.Fields(qf::QSL_Sent).Value().ToStringOrEmpty(),
          qsos.Fields(qf::QSLSDATE).Value().ToStringOrEmpty()};
    qsos.Close();
    log.Close();
    return s;
  }

  FrameHarness h;
  logstore::LogSchema schema;
};

TEST_F(UpdateLogKill, EveryRowIsStillQueuedOrInItsQSOAndASecondRunFinishes) {
  MakeTemplate();
  // How long a whole run takes: the kills fall within it.
  const std::string logPath = h.dir.Join("log.vdb"), queuePath = h.dir.Join("QSL.vdb");
  Copy(Template("log"), logPath);
  Copy(Template("queue"), queuePath);
  const auto started = std::chrono::steady_clock::now();
  {
    const pid_t pid = SpawnUpdateLog(logPath, queuePath);
    int status = 0;
    waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  const long spanUs = std::max<long>(
      1000, std::chrono::duration_cast<std::chrono::microseconds>(
                std::chrono::steady_clock::now() - started).count());
  {
    const State whole = Read(logPath, queuePath);
    ASSERT_TRUE(whole.queued.empty());
  }

  const unsigned base = static_cast<unsigned>(
      std::chrono::system_clock::now().time_since_epoch().count() % 1000000);
  long processedTotal = 0, bothTotal = 0, untouchedRuns = 0, finishedRuns = 0;
  for (int run = 0; run < kKills; ++run) {
    const unsigned seed = base + static_cast<unsigned>(run);
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    Copy(Template("log"), logPath);
    Copy(Template("queue"), queuePath);
    const pid_t pid = SpawnUpdateLog(logPath, queuePath);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % spanUs));
    kill(pid, SIGKILL);
    int status = 0;
    waitpid(pid, &status, 0);

    State s;
    ASSERT_NO_THROW(s = Read(logPath, queuePath)) << "a file didn't open after the kill";
    ASSERT_EQ(s.qsos.size(), static_cast<size_t>(kRows));
    long processed = 0, both = 0;
    for (int i = 0; i < kRows; ++i) {
      const std::string call = CallOf(i);
      const bool queued = s.queued.count(call) > 0;
      const auto& [sent, date] = s.qsos[call];
      const bool carried =
          sent == "Y" && date == vb::Variant::FromDate(DoneOf(i)).ToString();
      EXPECT_TRUE(queued || carried) << call << " is neither queued nor in its QSO (seed "
                                     << seed << ")";
      // A QSO written only half is never seen: QSL_Sent and its date go together.
      EXPECT_EQ(sent == "Y", !date.empty()) << call << " (seed " << seed << ")";
      if (queued) {
        EXPECT_EQ(s.queued[call], DoneOf(i)) << call;
      }
      if (!queued) ++processed;
      if (queued && carried) ++both;
    }
    processedTotal += processed;
    bothTotal += both;
    if (processed == 0 && both == 0) ++untouchedRuns;
    if (processed == kRows) ++finishedRuns;

    UpdateLog(logPath, queuePath);
    const State after = Read(logPath, queuePath);
    EXPECT_TRUE(after.queued.empty()) << after.queued.size() << " rows left (seed " << seed << ")";
    for (int i = 0; i < kRows; ++i) {
      const auto& [sent, date] = after.qsos.at(CallOf(i));
      EXPECT_EQ(sent, "Y");
      EXPECT_EQ(date, vb::Variant::FromDate(DoneOf(i)).ToString());
    }
    if (HasFailure()) break;
  }
  std::printf("Update Log killed %d times (seeds %u..%u, a run %.1f ms): rows processed before "
              "the kill %ld, rows in both files %ld, runs killed before any row %ld, after the "
              "last %ld\n",
              kKills, base, base + kKills - 1, spanUs / 1000.0, processedTotal, bothTotal,
              untouchedRuns, finishedRuns);
}

}  // namespace
}  // namespace vellumar::test
