// `vellumar-cli add-needed` run as the user runs it, over a log the import made.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/db/database.h"
#include "support/cli_run.h"
#include "support/temp_dir.h"

namespace vellumar {
namespace {

using test::CliRun;

// DL confirmed on 20 metres CW, G worked on 40 metres SSB, K worked on 15 metres RTTY.
constexpr const char* kThreeQSOs =
    "<call:6>DL1ABC<qso_date:8>20240301<time_on:4>1200<band:3>20M<mode:2>CW<qsl_rcvd:1>Y<eor>\n"
    "<call:5>G4XYZ<qso_date:8>20240302<time_on:4>1300<band:3>40M<mode:3>SSB<eor>\n"
    "<call:5>K1XYZ<qso_date:8>20240303<time_on:4>1400<band:3>15M<mode:4>RTTY<eor>\n";

class CliQSL : public ::testing::Test {
 protected:
  CliRun Cli(const std::string& arguments) { return test::RunCli(dir, arguments); }
  void MakeLog() {
    test::WriteFileText(dir.Join("in.adi"), kThreeQSOs);
    const CliRun in = Cli("import '" + log + "' '" + dir.Join("in.adi") + "'");
    ASSERT_EQ(in.exitCode, 0) << in.output;
  }
  long QueueRows() {
    db::Database q = db::DBEngine::Workspaces(0).OpenDatabase(queue);
    db::Recordset rs = q.OpenRecordset("PrintQueue", db::dbOpenDynaset);
    long n = 0;
    for (; !rs.EOF_(); rs.MoveNext()) ++n;
    q.Close();
    return n;
  }
  std::string Value(const std::string& call, const std::string& field) {
    db::Database file = db::DBEngine::Workspaces(0).OpenDatabase(log);
    db::Recordset rs = file.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.FindFirst("Call = '" + call + "'");
    const std::string value = rs.NoMatch() ? "<none>" : rs.Fields(field).Value().ToStringOrEmpty();
    file.Close();
    return value;
  }
  test::TempDir dir;
  std::string log = dir.Join("K1ABC.vdb");
  std::string queue = dir.Join("home") + "/Databases/QSL.vdb";
};

TEST_F(CliQSL, AddNeededPrintsTheRowsItQueuedThenTheirCount) {
  MakeLog();
  const CliRun run = Cli("add-needed '" + log + "'");
  ASSERT_EQ(run.exitCode, 0) << run.output;
  EXPECT_EQ(run.output,
            "K1XYZ\t2024-03-03T14:00:00Z\t15M\tRTTY\tY\n"
            "G4XYZ\t2024-03-02T13:00:00Z\t40M\tSSB\tY\n"
            "2\n");
  EXPECT_EQ(QueueRows(), 2);
  EXPECT_EQ(Value("G4XYZ", "QSL_Rcvd"), "R");
  EXPECT_EQ(Value("DL1ABC", "QSL_Rcvd"), "Y");
  // A second run straight after adds nothing.
  const CliRun again = Cli("add-needed '" + log + "'");
  ASSERT_EQ(again.exitCode, 0) << again.output;
  EXPECT_EQ(again.output, "0\n");
  EXPECT_EQ(QueueRows(), 2);
}

TEST_F(CliQSL, AMissingLogOrAQueueThatCantBeOpenedEndsWithTwo) {
  const CliRun none = Cli("add-needed '" + dir.Join("none.vdb") + "'");
  EXPECT_EQ(none.exitCode, 2);
  EXPECT_NE(none.output.find("unable to open log database"), std::string::npos) << none.output;
  MakeLog();
  std::filesystem::remove(queue);
  std::filesystem::create_directories(queue);  // a folder where the file should be
  const CliRun blocked = Cli("add-needed '" + log + "'");
  EXPECT_EQ(blocked.exitCode, 2);
  EXPECT_NE(blocked.output.find("Unable to open QSL Queue database: " + queue), std::string::npos)
      << blocked.output;
  EXPECT_EQ(Value("G4XYZ", "QSL_Rcvd"), "");  // nothing was walked
}

TEST_F(CliQSL, UsageErrorsEndWithTwo) {
  EXPECT_EQ(Cli("add-needed").exitCode, 2);
  const CliRun usage = Cli("");
  EXPECT_NE(usage.output.find("add-needed LOG.vdb"), std::string::npos) << usage.output;
}

}  // namespace
}  // namespace vellumar
