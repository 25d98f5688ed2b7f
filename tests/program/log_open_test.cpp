// Opening logs at start-up: upgrades of older logs, a log held by another program, an obsolete
// progress table.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "config/vellum_setup.h"
#include "logstore/schema_tables.h"
#include "support/program_harness.h"

namespace vellumar {
namespace {

using logstore::FieldSpec;
using test::ProgramHarness;

void AppendTable(db::Database& d, const char* name, std::span<const FieldSpec> fields) {
  db::TableDef t = d.CreateTableDef(name);
  for (const FieldSpec& s : fields) {
    db::Field f = t.CreateField(s.name, s.type, s.size);
    f.SetAttributes(db::dbUpdatableField);
    t.Fields().Append(f);
  }
  d.TableDefs().Append(t);
}

// A log of an older format: the first `qsoFields` fields of QSOs, and a Progress table of
// `progressFields` columns.
void MakeLog(const std::string& path, int qsoFields, int progressFields, int qsos = 0) {
  db::Database d = db::DBEngine::Workspaces(0).CreateDatabase(path);
  AppendTable(d, "QSOs", std::span(logstore::kQSOFields).first(qsoFields));
  // A Progress table of more columns than today's has extra status columns at its end.
  std::vector<FieldSpec> progress(logstore::kProgressFields.begin(), logstore::kProgressFields.end());
  progress.resize(static_cast<size_t>(progressFields), FieldSpec{"70CM", logstore::kText, 1, true});
  for (size_t i = logstore::kProgressFields.size(); i < progress.size(); ++i)
    progress[i].name = i == 18 ? "70CM" : "23CM";
  AppendTable(d, "Progress", progress);
  AppendTable(d, "QTHs", logstore::kQTHFields);
  db::Recordset rs = d.OpenRecordset("QSOs", db::dbOpenDynaset);
  for (int i = 0; i < qsos; ++i) {
    rs.AddNew();
    rs.Fields("Call").SetValue(vb::Variant("K" + std::to_string(i) + "XYZ"));
    rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(36526.5 + i));
    rs.Update();
  }
  d.Close();
}

// Another process that holds a file open until told to let go, as the spot program does.
class Holder {
 public:
  explicit Holder(const std::string& path) {
    if (pipe(ready_) != 0 || pipe(release_) != 0) ADD_FAILURE() << "pipe";
    pid_ = fork();
    if (pid_ == 0) {
      db::Database held = db::DBEngine::Workspaces(0).OpenDatabase(path);
      char c = 'r';
      (void)!write(ready_[1], &c, 1);
      (void)!read(release_[0], &c, 1);
      held.Close();
      (void)!write(ready_[1], &c, 1);
      _exit(0);
    }
    char c;
    if (read(ready_[0], &c, 1) != 1) ADD_FAILURE() << "holder did not start";
  }
  void Release() {
    if (released_) return;
    released_ = true;
    char c = 'x';
    (void)!write(release_[1], &c, 1);
    (void)!read(ready_[0], &c, 1);  // the holder has closed the file
  }
  ~Holder() {
    Release();
    int status = 0;
    waitpid(pid_, &status, 0);
  }

 private:
  int ready_[2], release_[2];
  pid_t pid_ = -1;
  bool released_ = false;
};

class LogOpenTest : public ::testing::Test {
 protected:
  LogOpenTest() {
    h.SeedReturningOperator();
    std::filesystem::create_directories(h.DataPath() + "/Databases");
    path = h.LogPath("K1ABC.vdb");
  }
  int QSOFieldCount() {
    db::Database d = db::DBEngine::Workspaces(0).OpenDatabase(path);
    return d.TableDefs()["QSOs"].Fields().Count();
  }
  ProgramHarness h;
  std::string path;
};

TEST_F(LogOpenTest, A31FieldLogIsUpgradedQuietly) {
  MakeLog(path, 31, 18, 2);
  Application& app = h.Start();
  EXPECT_TRUE(app.module.LogOpen());
  EXPECT_EQ(QSOFieldCount(), 35);
  EXPECT_TRUE(h.desktop.Calls().empty());
  EXPECT_EQ(app.main.Caption(), "Vellumar " + Common::Version() + " - K1ABC.vdb : 2 QSOs");
  // A log with QSOs opens on the newest, in edit mode, with the entry fields enabled.
  EXPECT_TRUE(app.main.Fieldbox(1).Enabled());
  EXPECT_EQ(app.module.LogView.EditMode(), db::dbEditInProgress);
  EXPECT_TRUE(app.main.DeleteCmd.Enabled());
  EXPECT_TRUE(app.main.LogLastCmd.Enabled());
}

TEST_F(LogOpenTest, AHeldLogIsNotOpenedWhenTheOtherProgramKeepsIt) {
  MakeLog(path, 31, 18);
  Holder holder(path);
  h.desktop.ExpectMsgBox(
      "To permit the addition of new log fields, please terminate Clustrine, and then click the "
      "OK button");
  h.desktop.ExpectMsgBox(
      "New fields were not successfully added, so the specified log cannot be opened");
  h.desktop.ExpectMsgBox("unable to open log database: " + path);
  Application& app = h.Start();
  EXPECT_FALSE(app.module.LogOpen());
  holder.Release();
  EXPECT_EQ(QSOFieldCount(), 31);
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(LogOpenTest, AHeldLogIsUpgradedOnceTheOtherProgramLetsGo) {
  MakeLog(path, 31, 18);
  Holder holder(path);
  h.desktop
      .ExpectMsgBox(
          "To permit the addition of new log fields, please terminate Clustrine, and then click "
          "the OK button")
      .Then([&] { holder.Release(); });
  h.desktop.ExpectMsgBox("New fields have been successfully added; you may now restart Clustrine");
  Application& app = h.Start();
  EXPECT_TRUE(app.module.LogOpen());
  EXPECT_EQ(QSOFieldCount(), 35);
}

TEST_F(LogOpenTest, AnObsoleteProgressTableAnsweredYesIsMadeAnew) {
  MakeLog(path, 35, 17, 1);
  h.desktop.ExpectMsgBox("This log's progress table is obsolete -- update it?", ui::vbYes)
      .WithButtons(ui::vbYesNo);
  h.desktop.ExpectMsgBox(
      "Progress table has been re-initialized - click the ReCompute button on the CheckProgress "
      "tab to repopulate it");
  Application& app = h.Start();
  ASSERT_TRUE(app.module.LogOpen());
  EXPECT_EQ(app.module.ProgressRecordset.Fields().Count(), 18);
  db::Recordset progress = app.module.ProgressView.Clone();
  progress.MoveFirst();
  EXPECT_EQ(progress.Fields("160M").Value().ToStringOrEmpty(), "");
}

TEST_F(LogOpenTest, AnObsoleteProgressTableAnsweredNoLeavesTheLogClosedAndUntouched) {
  MakeLog(path, 35, 19);
  // The file and its write-ahead log, where a write would land first.
  const auto contents = [&] { return test::ReadFileText(path) + test::ReadFileText(path + "-wal"); };
  const std::string before = contents();
  h.desktop.ExpectMsgBox("This log's progress table is obsolete -- update it?", ui::vbNo);
  h.desktop.ExpectMsgBox("unable to open log database: " + path);
  Application& app = h.Start();
  EXPECT_FALSE(app.module.LogOpen());
  EXPECT_TRUE(contents() == before) << "the log's file was written";
  db::Database d = db::DBEngine::Workspaces(0).OpenDatabase(path);
  EXPECT_EQ(d.TableDefs()["Progress"].Fields().Count(), 19);
  EXPECT_EQ(d.TableDefs()["QSOs"].Fields().Count(), 35);
}

TEST_F(LogOpenTest, AFailureInsideOpenLogIsReportedWithItsStateAndClosesTheLog) {
  // A file that isn't a database fails at the open itself.
  ASSERT_TRUE(test::WriteFileText(path, "this is not a log"));
  h.desktop.ExpectMsgBox("unable to open log database: " + path);
  Application& app = h.Start();
  EXPECT_FALSE(app.module.LogOpen());
  const std::string log = h.ErrorLogText();
  EXPECT_NE(log.find("in module VellumModule.OpenLog, State = 3, Pathname = " + path),
            std::string::npos)
      << log;
  EXPECT_EQ(test::ReadFileText(path), "this is not a log");
  // The caption warns of the error log and hides the log's name.
  EXPECT_EQ(app.main.Caption(), "Vellumar " + Common::Version() + " (no log open)");
}

}  // namespace
}  // namespace vellumar
