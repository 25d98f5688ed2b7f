// `vellumar-cli recompute` and `summary` run as the user runs them: a process of the built
// program with a data folder and settings of the test's own, over a log the import made.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <map>
#include <sstream>
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

class CliAward : public ::testing::Test {
 protected:
  CliRun Cli(const std::string& arguments) { return test::RunCli(dir, arguments); }
  // A log of the three QSOs, made by the import.
  void MakeLog() {
    vellumar::test::WriteFileText(dir.Join("in.adi"), kThreeQSOs);
    const CliRun in = Cli("import '" + log + "' '" + dir.Join("in.adi") + "'");
    ASSERT_EQ(in.exitCode, 0) << in.output;
  }
  std::string Letter(const std::string& code, const std::string& column) {
    db::Database file = db::DBEngine::Workspaces(0).OpenDatabase(log);
    db::Recordset rs = file.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '" + code + "'");
    const std::string letter =
        rs.NoMatch() ? "<none>" : rs.Fields(column).Value().ToStringOrEmpty();
    file.Close();
    return letter;
  }
  void SetLetter(const std::string& code, const std::string& column, const std::string& letter) {
    db::Database file = db::DBEngine::Workspaces(0).OpenDatabase(log);
    db::Recordset rs = file.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '" + code + "'");
    rs.Edit();
    rs.Fields(column).SetValue(vb::Variant(letter));
    rs.Update();
    file.Close();
  }
  // The rows of one grid of the summary's output: caption -> the three cells, trimmed.
  static std::map<std::string, std::vector<std::string>> Grid(const std::string& output,
                                                              const std::string& title) {
    std::map<std::string, std::vector<std::string>> rows;
    std::istringstream in(output);
    std::string line;
    bool inGrid = false;
    auto trim = [](std::string s) {
      while (!s.empty() && s.back() == ' ') s.pop_back();
      while (!s.empty() && s.front() == ' ') s.erase(0, 1);
      return s;
    };
    while (std::getline(in, line)) {
      if (line == title) {
        inGrid = true;
        continue;
      }
      if (!inGrid) continue;
      if (line.empty()) break;
      line.resize(19 + 3 * 12, ' ');
      rows[trim(line.substr(0, 19))] = {trim(line.substr(19, 12)), trim(line.substr(31, 12)),
                                        trim(line.substr(43, 12))};
    }
    return rows;
  }

  vellumar::test::TempDir dir;
  std::string log = dir.Join("log.vdb");
};

TEST_F(CliAward, RecomputeRebuildsTheTableAndPrintsItsFigures) {
  MakeLog();
  SetLetter("223", "15M", "V");  // no QSO supports it
  const CliRun run = Cli("recompute '" + log + "'");
  EXPECT_EQ(run.exitCode, 0) << run.output;
  EXPECT_EQ(run.output.rfind("walked: 3\nbroken: 0\nms: ", 0), 0u) << run.output;
  EXPECT_EQ(Letter("223", "15M"), "");
  EXPECT_EQ(Letter("223", "40M"), "W");
  EXPECT_EQ(Letter("223", "PHONE"), "W");
  EXPECT_EQ(Letter("230", "20M"), "F");
  EXPECT_EQ(Letter("230", "CW"), "F");
  EXPECT_EQ(Letter("291", "RTTY"), "W");
}

TEST_F(CliAward, SummaryPrintsTheGridsAsAlignedText) {
  MakeLog();
  const CliRun both = Cli("summary '" + log + "'");
  ASSERT_EQ(both.exitCode, 0) << both.output;
  const auto dxcc = Grid(both.output, "DXCC (includes deleted)");
  const auto top = Grid(both.output, "TOP (non-deleted only)");
  ASSERT_EQ(dxcc.size(), 25u) << both.output;
  EXPECT_EQ(dxcc.at(""), (std::vector<std::string>{"Worked", "Confirmed", "Verified"}));
  EXPECT_EQ(dxcc.at("Mixed"), (std::vector<std::string>{"3", "1", ""}));
  EXPECT_EQ(dxcc.at("HR Mixed"), (std::vector<std::string>{"3", "1", ""}));
  EXPECT_EQ(dxcc.at("20M"), (std::vector<std::string>{"1", "1", ""}));
  EXPECT_EQ(dxcc.at("HF BandCountries"), (std::vector<std::string>{"3", "1", "0"}));
  EXPECT_EQ(dxcc.at("HF ModeCountries"), (std::vector<std::string>{"3", "1", "0"}));
  EXPECT_EQ(dxcc.at("HF BandModes"), (std::vector<std::string>{"6", "2", "0"}));
  EXPECT_EQ(dxcc.at("DXCC Challenge"), (std::vector<std::string>{"3", "1", "0"}));
  EXPECT_EQ(dxcc, top);  // three current entities
  // One grid when asked for one.
  const CliRun one = Cli("summary '" + log + "' top");
  EXPECT_EQ(one.exitCode, 0);
  EXPECT_EQ(one.output.find("DXCC (includes deleted)"), std::string::npos);
  EXPECT_EQ(Grid(one.output, "TOP (non-deleted only)"), top);
}

TEST_F(CliAward, BadArgumentsAndAMissingLog) {
  EXPECT_EQ(Cli("recompute").exitCode, 2);
  EXPECT_EQ(Cli("summary '" + log + "' all").exitCode, 2);
  const CliRun missing = Cli("recompute '" + dir.Join("none.vdb") + "'");
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_NE(missing.output.find("unable to open log database"), std::string::npos);
  EXPECT_EQ(Cli("summary '" + dir.Join("none.vdb") + "'").exitCode, 1);
}

}  // namespace
}  // namespace vellumar
