// Filling a fresh Progress table from a DXCC table recordset.
#include "awards/progress_init.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "awards/progress_columns.h"
#include "logstore/log_schema.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "support/test_dxcc_database.h"
#include "support/frame_harness.h"

namespace vellumar {
namespace {

class ProgressInitTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dxccPath = harness.dir.Join("DXCC.vdb");
    test::CreateTestDXCCDatabase(dxccPath,
                                 {
                                     {"3D2", 176, "Fiji", std::nullopt},
                                     {"3D2-C", 489, "Conway Reef", std::nullopt},
                                     {"VQ9-A", 8, "Aldabra", vb::DateSerial(1976, 6, 28)},
                                     {"A1", 2, "Abu Ail", vb::DateSerial(1991, 3, 30)},
                                 },
                                 {}, {});
    dxcc = db::DBEngine::Workspaces(0).OpenDatabase(dxccPath, true);
    dxccTable = dxcc.OpenRecordset("DXCC", db::dbOpenTable);
    dxccTable.SetIndex("PrimaryKey");
    logPath = harness.dir.Join("LOG.vdb");
  }

  void Report(int number, const std::string& where) {
    reports.push_back(std::to_string(number) + " " + where);
  }

  test::FrameHarness harness;
  std::string dxccPath, logPath;
  db::Database dxcc;
  db::Recordset dxccTable;
  db::Recordset progressRecordset;  // the central module's dynaset
  std::vector<std::string> reports;
};

TEST_F(ProgressInitTest, OneRowPerEntityThroughTheLogSchema) {
  // The log's schema creates Progress and hands the fill to InitializeProgressTableFromDatabase.
  logstore::LogSchema schema(harness.common.errorLog(), [&](db::Database& log) {
    InitializeProgressTableFromDatabase(log, dxccTable, progressRecordset,
                                        [&](int n, const std::string& w) { Report(n, w); });
  });
  ASSERT_TRUE(schema.CreateLog(logPath));
  EXPECT_TRUE(reports.empty());

  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
  db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
  ASSERT_EQ(rs.Fields().Count(), kProgressColumnCount);
  struct Expected {
    const char* code;
    const char* prefix;
    bool valid;
  } expected[] = {
      {"176", "3D2", true}, {"489", "3D2-C", true}, {"2", "A1", false}, {"8", "VQ9-A", false}};
  int n = 0;
  for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext(), ++n) {
    ASSERT_LT(n, 4);
    SCOPED_TRACE(expected[n].prefix);
    EXPECT_EQ(rs.Fields(0).Value().ToString(), expected[n].code);
    EXPECT_EQ(rs.Fields(1).Value().ToString(), expected[n].prefix);
    EXPECT_EQ(rs.Fields(2).Value().ToBool(), expected[n].valid);
    for (int c = 3; c < kProgressColumnCount; ++c) {
      vb::Variant v = rs.Fields(c).Value();
      EXPECT_FALSE(v.IsNull()) << c;
      EXPECT_EQ(v.ToStringOrEmpty(), "") << c;
    }
  }
  EXPECT_EQ(n, 4);
  log.Close();
}

TEST_F(ProgressInitTest, TheRecordsetIsReopenedAndClosedAtTheEnd) {
  logstore::LogSchema schema(harness.common.errorLog(), [](db::Database&) {});
  ASSERT_TRUE(schema.CreateLog(logPath));
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
  db::Recordset before = log.OpenRecordset("Progress", db::dbOpenDynaset);
  progressRecordset = before;
  InitializeProgressTableFromDatabase(log, dxccTable, progressRecordset,
                                      [&](int n, const std::string& w) { Report(n, w); });
  EXPECT_TRUE(reports.empty());
  EXPECT_FALSE(progressRecordset == before);  // a new dynaset
  // Closed: any use raises.
  EXPECT_THROW(progressRecordset.MoveFirst(), vb::VbError);
  db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
  rs.MoveLast();
  EXPECT_EQ(rs.RecordCount(), 4);
  log.Close();
}

TEST_F(ProgressInitTest, AFailureKeepsTheRowsWritten) {
  logstore::LogSchema schema(harness.common.errorLog(), [](db::Database&) {});
  ASSERT_TRUE(schema.CreateLog(logPath));
  // A DXCC code longer than Progress's three characters fails the Update of its row.
  std::string otherPath = harness.dir.Join("DXCC2.vdb");
  test::CreateTestDXCCDatabase(otherPath,
                               {{"A", 1, "One", std::nullopt},
                                {"B", 2, "Two", std::nullopt},
                                {"C", 1234, "Too long", std::nullopt},
                                {"D", 4, "Four", std::nullopt}},
                               {}, {});
  db::Database other = db::DBEngine::Workspaces(0).OpenDatabase(otherPath, true);
  db::Recordset table = other.OpenRecordset("DXCC", db::dbOpenTable);
  table.SetIndex("PrimaryKey");
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
  InitializeProgressTableFromDatabase(log, table, progressRecordset,
                                      [&](int n, const std::string& w) { Report(n, w); });
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0], "3163 VellumModule.InitializeProgressTableFromDatabase");
  db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
  rs.MoveLast();
  EXPECT_EQ(rs.RecordCount(), 2);
  log.Close();
}

TEST_F(ProgressInitTest, AnEmptyDXCCTableIsReported) {
  logstore::LogSchema schema(harness.common.errorLog(), [](db::Database&) {});
  ASSERT_TRUE(schema.CreateLog(logPath));
  std::string emptyPath = harness.dir.Join("Empty.vdb");
  test::CreateTestDXCCDatabase(emptyPath, {}, {}, {});
  db::Database empty = db::DBEngine::Workspaces(0).OpenDatabase(emptyPath, true);
  db::Recordset table = empty.OpenRecordset("DXCC", db::dbOpenTable);
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
  InitializeProgressTableFromDatabase(log, table, progressRecordset,
                                      [&](int n, const std::string& w) { Report(n, w); });
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0], "3021 VellumModule.InitializeProgressTableFromDatabase");
  log.Close();
}

}  // namespace
}  // namespace vellumar
