// What the operator does, on a failing disk: creating a log, opening it, upgrading an older one,
// saving a QSO with its Progress update, and saving a setting. For every read, write and sync of
// each, that call fails; the command either succeeds or reports the disk's error under its own
// procedure's name, and the file, reopened on a healthy disk, is sound and holds every QSO whose
// save had returned, whole, with Progress never ahead of the QSOs.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "logstore/schema_tables.h"
#include "platform/db/database.h"
#include "platform/vb/error.h"
#include "support/fault_vfs.h"
#include "support/program_harness.h"

namespace vellumar {
namespace {

using test::FaultKind;
using test::FaultVfs;
using test::ProgramHarness;

constexpr const char* kTerminateClustrine =
    "To permit the addition of new log fields, please terminate Clustrine, and then click the OK "
    "button";
constexpr const char* kFieldsAdded =
    "New fields have been successfully added; you may now restart Clustrine";
constexpr const char* kFieldsNotAdded =
    "New fields were not successfully added, so the specified log cannot be opened";

// A program started on its log K1ABC.vdb, which holds one saved QSO.
struct Program {
  Program() {
    h.SeedReturningOperator();
    app = &h.Start();
    h.loop.Advance(300);
    app->main.Show();
    Save("G3AAA");
    path = h.LogPath("K1ABC.vdb");
  }
  void Save(const std::string& call) {
    app->main.NewCmd.UserClick();
    app->main.Fieldbox(1).UserType(call);
    app->main.Fieldbox(1).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn);
    app->main.SaveCmd.UserClick();
  }
  ProgramHarness h;
  Application* app = nullptr;
  std::string path;
};

// The outcome of one command: the error-log lines it added.
struct Outcome {
  std::string newErrors;
  std::string problem;  // what broke the rules, empty when the command kept them
};

// The lines of the error log that name a procedure other than those allowed.
std::string Foreign(const std::string& lines, const std::vector<std::string>& procedures) {
  std::string out;
  size_t start = 0;
  while (start < lines.size()) {
    size_t end = lines.find('\n', start);
    std::string line = lines.substr(start, end == std::string::npos ? end : end - start);
    start = end == std::string::npos ? lines.size() : end + 1;
    if (line.find("program error") == std::string::npos) continue;
    bool named = false;
    for (const std::string& p : procedures)
      named = named || line.find(" " + p) != std::string::npos;
    bool disk = line.find("program error 3043 ") != std::string::npos ||
                line.find("program error 3026 ") != std::string::npos;
    if (!named || !disk) out += line + "\n";
  }
  return out;
}

std::string Letter(db::Database& log, const std::string& countryCode, const std::string& column) {
  db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
  rs.FindFirst("CountryCode = '" + countryCode + "'");
  return rs.NoMatch() ? "<none>" : rs.Fields(column).Value().ToStringOrEmpty();
}

// Checks a log on a healthy disk: sound, the QSO `call` there whole when `mustHold`, and the
// entity's 20M letter never ahead of its QSOs.
std::string CheckLog(const std::string& path, const std::string& call, bool mustHold) {
  std::string check = test::IntegrityCheck(path);
  if (check != "ok") return "integrity: " + check;
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  rs.FindFirst("Call = '" + call + "'");
  bool held = !rs.NoMatch() && rs.Fields("DXCCID").Value().ToStringOrEmpty() == "223";
  if (mustHold && !held) return "the saved QSO " + call + " is missing or incomplete";
  // A QSO of G on 20M is counted "W"; without one there the letter must not be set.
  rs.FindFirst("DXCCID = '223' AND Band = '20M'");
  std::string letter = Letter(log, "223", "20M");
  if (rs.NoMatch() && letter != "") return "Progress is ahead of the log: " + letter;
  return "";
}

struct Operation {
  const char* name;
  std::vector<std::string> procedures;  // where its failures may be reported
  // Sets the stage on a healthy disk.
  std::function<void(Program&)> prepare;
  // Runs the command on a started program; returns what the file must then hold ("" nothing).
  std::function<std::string(Program&)> run;
  std::function<std::string(Program&, bool ok, const std::string& mustHold)> check;
};

std::vector<Operation> Operations() {
  auto logCheck = [](Program& p, bool ok, const std::string& call) {
    return CheckLog(p.path, call.empty() ? "G3AAA" : call, ok || call.empty());
  };
  return {
      {"CreateLog",
       {"VellumModule.CreateLog", "VellumModule.InitializeProgressTableFromDatabase"},
       [](Program&) {},
       [](Program& p) {
         std::string created = p.h.LogPath("G4NEW.vdb");
         return p.app->logSchema.CreateLog(created) ? created : std::string("failed");
       },
       [](Program& p, bool ok, const std::string& created) -> std::string {
         std::string file = p.h.LogPath("G4NEW.vdb");
         if (ok && created == "failed") return "CreateLog returned false with no error logged";
         if (!std::filesystem::exists(file)) return ok ? "the created log is missing" : "";
         std::string check = test::IntegrityCheck(file);
         if (check != "ok") return "integrity: " + check;
         if (!ok) return "";
         db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(file);
         if (log.TableDefs()["QSOs"].Fields().Count() != 35) return "QSOs is incomplete";
         db::Recordset progress = log.OpenRecordset("Progress", db::dbOpenDynaset);
         return progress.EOF_() ? "Progress is empty" : "";
       }},
      {"OpenLog",
       {"VellumModule.OpenLog", "VellumModule.AddMissingFieldDefinitions"},
       [](Program& p) {
         // A failure while counting the fields reads as a log held by the spot program.
         p.h.desktop.Tolerate({kTerminateClustrine, kFieldsAdded, kFieldsNotAdded});
       },
       [](Program& p) {
         p.app->module.CloseLog();
         p.app->module.OpenLog(p.path, false);
         return std::string(p.app->module.LogOpen() ? "open" : "closed");
       },
       [logCheck](Program& p, bool ok, const std::string& state) -> std::string {
         if (ok && state != "open") return "the log did not open and no error was logged";
         p.app->module.CloseLog();
         return logCheck(p, true, "");
       }},
      {"Upgrade 31 fields",
       {"VellumModule.AddMissingFieldDefinitions"},
       [](Program& p) {
         db::Database d = db::DBEngine::Workspaces(0).CreateDatabase(p.h.LogPath("OLD.vdb"));
         db::TableDef t = d.CreateTableDef("QSOs");
         for (int i = 0; i < 31; ++i) {
           const auto& s = logstore::kQSOFields[static_cast<size_t>(i)];
           db::Field f = t.CreateField(s.name, s.type, s.size);
           f.SetAttributes(db::dbUpdatableField);
           t.Fields().Append(f);
         }
         d.TableDefs().Append(t);
         d.Close();
       },
       [](Program& p) {
         std::string result = "failed";
         try {
           db::Database d = db::DBEngine::Workspaces(0).OpenDatabase(p.h.LogPath("OLD.vdb"));
           result = p.app->logSchema.AddMissingFieldDefinitions(d) ? "added" : "refused";
         } catch (const vb::VbError& e) {
           // Opening the file (OpenLog's step before the upgrade) may fail on the disk's error.
           result = "open refused " + std::to_string(e.number());
         }
         return result;
       },
       [](Program& p, bool ok, const std::string& result) -> std::string {
         std::string old = p.h.LogPath("OLD.vdb");
         std::string check = test::IntegrityCheck(old);
         if (check != "ok") return "integrity: " + check;
         db::Database d = db::DBEngine::Workspaces(0).OpenDatabase(old);
         int n = d.TableDefs()["QSOs"].Fields().Count();
         if (n < 31 || n > 35) return "QSOs has " + std::to_string(n) + " fields";
         if (result == "added" && ok && n != 35) return "added, yet " + std::to_string(n);
         if (result.rfind("open refused", 0) == 0 && result != "open refused 3043" &&
             result != "open refused 3026") {
           return "the open failed with " + result;
         }
         return "";
       }},
      {"Save with Progress",
       {"VellumMain.SaveCmd_Click", "VellumMain.NewCmd_Click", "VellumModule.UpdateProgress",
        "VellumMain.Fieldbox_KeyPress"},
       [](Program&) {},
       [](Program& p) {
         p.Save("G3XYZ");
         return std::string("G3XYZ");
       },
       [logCheck](Program& p, bool ok, const std::string& call) -> std::string {
         p.app->module.CloseLog();
         return logCheck(p, ok, call);
       }},
  };
}

struct Fault {
  FaultKind kind;
  int code;
  const char* name;
  bool persistent;
};

const Fault kFaults[] = {
    {FaultKind::kWrite, SQLITE_IOERR_WRITE, "IOERR", false},
    {FaultKind::kWrite, SQLITE_FULL, "FULL", true},
    {FaultKind::kRead, SQLITE_IOERR_READ, "IOERR", false},
};

// Every failure point of one operation, for each kind of fault; prints a line of the table per
// kind and returns the QSOs lost.
void RunOperation(const Operation& op) {
  FaultVfs& vfs = FaultVfs::Install();
  std::printf("%-20s %-6s %-6s %7s %5s %7s %5s\n", "operation", "call", "fault", "points", "ok",
              "errors", "lost");
  int points = 0, lost = 0;
  for (const Fault& f : kFaults) {
    long calls = 0;
    {
      Program p;
      op.prepare(p);
      vfs.Disarm();
      std::string made = op.run(p);
      calls = vfs.Count(f.kind);
      ASSERT_EQ(p.h.ErrorLogText(), "") << op.name;
      ASSERT_EQ(op.check(p, true, made), "") << op.name;
    }
    int ok = 0, failed = 0, opLost = 0;
    for (long n = 1; n <= calls + 1; ++n) {
      Program p;
      op.prepare(p);
      std::string before = p.h.ErrorLogText();
      std::string made;
      {
        test::FaultScope fault(f.kind, n, f.code, f.persistent);
        made = op.run(p);
      }
      std::string added = p.h.ErrorLogText().substr(before.size());
      bool good = added.empty();
      good ? ++ok : ++failed;
      std::string where = std::string(op.name) + ", " + test::FaultKindName(f.kind) + " " + f.name +
                          " at call " + std::to_string(n);
      EXPECT_EQ(Foreign(added, op.procedures), "") << where;
      std::string problem = op.check(p, good, made);
      EXPECT_EQ(problem, "") << where;
      if (problem.find("missing") != std::string::npos) ++opLost;
    }
    std::printf("%-20s %-6s %-6s %7ld %5d %7d %5d\n", op.name, test::FaultKindName(f.kind), f.name,
                calls + 1, ok, failed, opLost);
    points += static_cast<int>(calls + 1);
    lost += opLost;
  }
  std::printf("%s: failure points tried: %d, QSOs lost: %d\n", op.name, points, lost);
  EXPECT_EQ(lost, 0);
}

const Operation& Named(const std::string& name) {
  static const std::vector<Operation> operations = Operations();
  for (const Operation& op : operations)
    if (op.name == name) return op;
  throw std::logic_error("no operation " + name);
}

TEST(FaultSession, CreateLogOnAFailingDisk) { RunOperation(Named("CreateLog")); }
TEST(FaultSession, OpenLogOnAFailingDisk) { RunOperation(Named("OpenLog")); }
TEST(FaultSession, UpgradeOnAFailingDisk) { RunOperation(Named("Upgrade 31 fields")); }
TEST(FaultSession, SaveWithProgressOnAFailingDisk) { RunOperation(Named("Save with Progress")); }

}  // namespace
}  // namespace vellumar
