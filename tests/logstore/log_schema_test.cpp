#include "logstore/log_schema.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "logstore/schema_tables.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "support/frame_harness.h"

namespace vellumar::logstore {
namespace {

using test::FrameHarness;

int ProgressFills = 0;

class LogSchemaTest : public ::testing::Test {
 protected:
  LogSchemaTest() : schema(h.common.errorLog(), [](db::Database&) { ++ProgressFills; }) {
    h.common.Initialize();
    ProgressFills = 0;
  }
  std::string Path(const std::string& name) { return h.dir.Join(name); }
  std::string ErrorLogText() { return test::ReadFileText(h.ErrorLogPath()); }

  // A QSOs table of an older log: the first `count` fields of today's table.
  void MakeOldLog(const std::string& path, int count) {
    db::Database log = db::DBEngine::Workspaces(0).CreateDatabase(path);
    db::TableDef t = log.CreateTableDef("QSOs");
    for (int i = 0; i < count; ++i) {
      const FieldSpec& s = kQSOFields[i];
      db::Field f = t.CreateField(s.name, s.type, s.size);
      f.SetAttributes(db::dbUpdatableField);
      t.Fields().Append(f);
    }
    log.TableDefs().Append(t);
    log.Close();
  }

  FrameHarness h;
  LogSchema schema;
};

std::vector<std::string> FieldNames(db::TableDef t) {
  std::vector<std::string> names;
  for (int i = 0; i < t.Fields().Count(); ++i) names.push_back(t.Fields()[i].Name());
  return names;
}

void ExpectFields(db::TableDef t, std::span<const FieldSpec> specs) {
  ASSERT_EQ(t.Fields().Count(), static_cast<int>(specs.size()));
  for (size_t i = 0; i < specs.size(); ++i) {
    db::Field f = t.Fields()[static_cast<int>(i)];
    SCOPED_TRACE(specs[i].name);
    EXPECT_EQ(f.Name(), specs[i].name);
    EXPECT_EQ(f.Type(), specs[i].type);
    if (specs[i].type == kText) {
      EXPECT_EQ(f.Size(), specs[i].size);
    }
    EXPECT_TRUE(f.Attributes() & db::dbUpdatableField);
    if (specs[i].type == kText || specs[i].type == kMemo) {
      EXPECT_EQ(f.AllowZeroLength(), specs[i].allowZeroLength);
    }
  }
}

TEST_F(LogSchemaTest, CreateLogMakesTheThreeTablesInFieldOrder) {
  const std::string path = Path("K1ABC.vdb");
  ASSERT_TRUE(schema.CreateLog(path));
  EXPECT_EQ(ProgressFills, 1);
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  ExpectFields(log.TableDefs()["QSOs"], kQSOFields);
  ExpectFields(log.TableDefs()["Progress"], kProgressFields);
  ExpectFields(log.TableDefs()["QTHs"], kQTHFields);
  EXPECT_EQ(log.TableDefs()["QSOs"].Fields()["MYQTHID"].Size(), 4);
  EXPECT_EQ(log.TableDefs()["QSOs"].Fields()["QSO_Begin"].Type(), db::dbDate);
  EXPECT_EQ(log.TableDefs()["QSOs"].Fields()["ADDRESS"].Type(), db::dbMemo);
  EXPECT_EQ(log.TableDefs()["Progress"].Fields()["Valid"].Type(), db::dbBoolean);
  EXPECT_EQ(log.TableDefs()["QTHs"].Indexes().Count(), 0);
  EXPECT_EQ(ErrorLogText(), "");
}

TEST_F(LogSchemaTest, QSOIndexesAreNeitherPrimaryNorUniqueAndInOrder) {
  const std::string path = Path("K1ABC.vdb");
  ASSERT_TRUE(schema.CreateLog(path));
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  db::Indexes indexes = log.TableDefs()["QSOs"].Indexes();
  ASSERT_EQ(indexes.Count(), 2);
  EXPECT_EQ(indexes[0].Name(), "Timestamp");
  EXPECT_EQ(indexes[0].Fields()[0].Name(), "QSO_Begin");
  EXPECT_EQ(indexes[1].Name(), "Callsign");
  EXPECT_EQ(indexes[1].Fields()[0].Name(), "Call");
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(indexes[i].Primary());
    EXPECT_FALSE(indexes[i].Unique());
  }
  db::Index cc = log.TableDefs()["Progress"].Indexes()["CountryCode"];
  EXPECT_TRUE(cc.Unique());
  EXPECT_FALSE(cc.Primary());
}

TEST_F(LogSchemaTest, TwoQSOsMayShareCallsignAndStartTime) {
  const std::string path = Path("K1ABC.vdb");
  ASSERT_TRUE(schema.CreateLog(path));
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  const double when = vb::MakeDate({2002, 1, 15, 12, 0, 0});
  for (int i = 0; i < 2; ++i) {
    rs.AddNew();
    rs.Fields("Call").SetValue(vb::Variant("K1ABC"));
    rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(when));
    rs.Update();
  }
  db::Recordset again = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  again.MoveLast();
  EXPECT_EQ(again.RecordCount(), 2);
}

TEST_F(LogSchemaTest, ProgressCountryCodeIsUnique) {
  const std::string path = Path("K1ABC.vdb");
  ASSERT_TRUE(schema.CreateLog(path));
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
  rs.AddNew();
  rs.Fields("CountryCode").SetValue(vb::Variant("291"));
  rs.Fields("Valid").SetValue(vb::Variant(true));
  rs.Update();
  rs.AddNew();
  rs.Fields("CountryCode").SetValue(vb::Variant("291"));
  rs.Fields("Valid").SetValue(vb::Variant(true));
  try {
    rs.Update();
    FAIL() << "a second row of one entity must be refused";
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), 3022);
  }
}

TEST_F(LogSchemaTest, CreateLogOnAnExistingFileFailsThroughTheTail) {
  const std::string path = Path("K1ABC.vdb");
  ASSERT_TRUE(test::WriteFileText(path, "not a log"));
  EXPECT_FALSE(schema.CreateLog(path));
  EXPECT_EQ(test::ReadFileText(path), "not a log");
  EXPECT_NE(ErrorLogText().find("in module VellumModule.CreateLog: "), std::string::npos);
}

// The log is built under a temporary name and renamed when whole: nothing else is left in the
// folder, and a half-built one left by a killed process is cleared away by the next creation.
TEST_F(LogSchemaTest, CreateLogLeavesOnlyTheWholeLogAndClearsAKilledOnesLeftovers) {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  ASSERT_GT(child, 0);
  waitpid(child, nullptr, 0);  // a process id that has ended
  const std::string leftover = h.dir.Join(".K1ABC.vdb." + std::to_string(child) + ".tmp");
  ASSERT_TRUE(test::WriteFileText(leftover, "half a log"));
  const std::string path = Path("K1ABC.vdb");
  ASSERT_TRUE(schema.CreateLog(path));
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(h.dir.Join("")))
    if (entry.path().filename().string().find("K1ABC") != std::string::npos)
      names.push_back(entry.path().filename().string());
  EXPECT_EQ(names, std::vector<std::string>{"K1ABC.vdb"});
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  EXPECT_EQ(log.TableDefs()["QSOs"].Fields().Count(), 35);
}

TEST_F(LogSchemaTest, ALogWith31FieldsGetsTheFourNewFieldsInOrder) {
  const std::string path = Path("old31.vdb");
  MakeOldLog(path, 31);
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  ASSERT_TRUE(schema.AddMissingFieldDefinitions(log));
  db::TableDef qsos = log.TableDefs()["QSOs"];
  std::vector<std::string> names = FieldNames(qsos);
  ASSERT_EQ(names.size(), 35u);
  EXPECT_EQ(std::vector<std::string>(names.begin() + 31, names.end()),
            (std::vector<std::string>{"PROVINCE", "BROKEN", "MYQTHID", "ADDRESS"}));
  EXPECT_EQ(qsos.Fields()["PROVINCE"].Size(), 2);
  EXPECT_EQ(qsos.Fields()["BROKEN"].Size(), 1);
  EXPECT_EQ(qsos.Fields()["MYQTHID"].Size(), 20);
  EXPECT_EQ(qsos.Fields()["ADDRESS"].Type(), db::dbMemo);
  for (int i = 31; i < 35; ++i) {
    EXPECT_TRUE(qsos.Fields()[i].AllowZeroLength());
    EXPECT_TRUE(qsos.Fields()[i].Attributes() & db::dbUpdatableField);
  }
}

TEST_F(LogSchemaTest, ALogWith33FieldsGetsAWideMyQTHIDAndTheAddress) {
  const std::string path = Path("old33.vdb");
  MakeOldLog(path, 33);
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  ASSERT_TRUE(schema.AddMissingFieldDefinitions(log));
  db::TableDef qsos = log.TableDefs()["QSOs"];
  ASSERT_EQ(qsos.Fields().Count(), 35);
  EXPECT_EQ(qsos.Fields()[33].Name(), "MYQTHID");
  EXPECT_EQ(qsos.Fields()[33].Size(), 20);
  EXPECT_EQ(qsos.Fields()[34].Name(), "ADDRESS");
}

TEST_F(LogSchemaTest, ANewLogHasANarrowMyQTHIDAndA35FieldLogIsLeftAlone) {
  const std::string path = Path("new.vdb");
  ASSERT_TRUE(schema.CreateLog(path));
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  ASSERT_TRUE(schema.AddMissingFieldDefinitions(log));
  db::TableDef qsos = log.TableDefs()["QSOs"];
  EXPECT_EQ(qsos.Fields().Count(), 35);
  EXPECT_EQ(qsos.Fields()["MYQTHID"].Size(), 4);
}

TEST_F(LogSchemaTest, ALogBelow31FieldsCannotBeUpgraded) {
  const std::string path = Path("old29.vdb");
  MakeOldLog(path, 29);
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  EXPECT_FALSE(schema.AddMissingFieldDefinitions(log));
  EXPECT_EQ(log.TableDefs()["QSOs"].Fields().Count(), 29);
  EXPECT_NE(ErrorLogText().find("VellumModule.AddMissingFieldDefinitions"), std::string::npos);
}

// A second process holds the log open while the upgrade runs, as the spot-collecting sibling does.
TEST_F(LogSchemaTest, AnotherProcessHoldingTheLogMakesTheUpgradeFailQuietly) {
  const std::string path = Path("held.vdb");
  MakeOldLog(path, 31);
  int ready[2], release[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(release), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    db::Database held = db::DBEngine::Workspaces(0).OpenDatabase(path);
    char c = 'r';
    (void)!write(ready[1], &c, 1);
    (void)!read(release[0], &c, 1);
    held.Close();
    _exit(0);
  }
  char c;
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  {
    db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
    EXPECT_FALSE(schema.AddMissingFieldDefinitions(log));
    EXPECT_EQ(log.TableDefs()["QSOs"].Fields().Count(), 31);
    log.Close();
  }
  EXPECT_EQ(ErrorLogText(), "");  // no entry for a refused Append
  ASSERT_EQ(write(release[1], "x", 1), 1);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  // Once the other process has let go, the retry succeeds.
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  EXPECT_TRUE(schema.AddMissingFieldDefinitions(log));
  EXPECT_EQ(log.TableDefs()["QSOs"].Fields().Count(), 35);
}

}  // namespace
}  // namespace vellumar::logstore
