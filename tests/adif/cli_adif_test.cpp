// `vellumar-cli import` and `export` run as the user runs them: a process of the built program
// with a data folder and settings of the test's own, its exit code and its output checked.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "support/cli_run.h"
#include "support/temp_dir.h"

namespace vellumar::adif {
namespace {

using vellumar::test::CliRun;

class CliAdif : public ::testing::Test {
 protected:
  // Runs vellumar-cli with `arguments` (already quoted) in the test's own folders.
  CliRun Cli(const std::string& arguments) { return vellumar::test::RunCli(dir, arguments); }
  std::string Quoted(const std::string& path) const { return "'" + path + "'"; }
  static std::string Sample(const std::string& name) {
    return "'" + std::string(VELLUMAR_SOURCE_DIR) + "/tests/adif/data/" + name + "'";
  }
  static std::string Counters(long processed, long duplicates, long truncated, long illegals,
                              long imported) {
    return "processed: " + std::to_string(processed) + "\nduplicates: " +
           std::to_string(duplicates) + "\ntruncated: " + std::to_string(truncated) +
           "\nillegals: " + std::to_string(illegals) + "\nimported: " + std::to_string(imported) +
           "\n";
  }

  vellumar::test::TempDir dir;
};

TEST_F(CliAdif, ImportCreatesTheLogAndCountsThenFindsEveryQSOAgain) {
  const std::string log = dir.Join("new.vdb");
  ASSERT_FALSE(std::filesystem::exists(log));
  // 34 QSOs, each with call, date, start and a DXCC code the database knows; nothing too long.
  const CliRun first = Cli("import " + Quoted(log) + " " + Sample("cloudlog_1.7_export.adi"));
  EXPECT_EQ(first.exitCode, 0) << first.output;
  EXPECT_EQ(first.output, Counters(34, 0, 0, 0, 34));
  EXPECT_TRUE(std::filesystem::exists(log));
  // Duplicates are checked by default: the second run adds nothing.
  const CliRun second = Cli("import " + Quoted(log) + " " + Sample("cloudlog_1.7_export.adi"));
  EXPECT_EQ(second.exitCode, 0) << second.output;
  EXPECT_EQ(second.output, Counters(34, 34, 0, 0, 0));
  // Unless they are not.
  const CliRun third = Cli("import " + Quoted(log) + " " + Sample("cloudlog_1.7_export.adi") +
                        " --ImportDuplicate=0");
  EXPECT_EQ(third.exitCode, 0) << third.output;
  EXPECT_EQ(third.output, Counters(34, 0, 0, 0, 34));
}

TEST_F(CliAdif, ExportWritesAFileThatImportsBackToTheSameCount) {
  const std::string log = dir.Join("log.vdb");
  // 13 QSOs of a contest log.
  const CliRun in = Cli("import " + Quoted(log) + " " + Sample("cqrlog_2.0.4_naqp_201701.adi"));
  ASSERT_EQ(in.exitCode, 0) << in.output;
  ASSERT_EQ(in.output, Counters(13, 0, 0, 0, 13));
  const std::string adi = dir.Join("out.adi");
  const CliRun out = Cli("export " + Quoted(log) + " " + Quoted(adi));
  EXPECT_EQ(out.exitCode, 0) << out.output;
  EXPECT_EQ(out.output, "exported: 13\n");
  ASSERT_TRUE(std::filesystem::exists(adi));
  const CliRun back = Cli("import " + Quoted(dir.Join("copy.vdb")) + " " + Quoted(adi));
  EXPECT_EQ(back.exitCode, 0) << back.output;
  EXPECT_EQ(back.output, Counters(13, 0, 0, 0, 13));
}

TEST_F(CliAdif, AMissingInputFileExitsWithOne) {
  const CliRun run = Cli("import " + Quoted(dir.Join("log.vdb")) + " " +
                      Quoted(dir.Join("missing.adi")));
  EXPECT_EQ(run.exitCode, 1) << run.output;
  EXPECT_NE(run.output.find("Unable to open file " + dir.Join("missing.adi")), std::string::npos)
      << run.output;
  EXPECT_EQ(run.output.find("imported:"), std::string::npos);
}

TEST_F(CliAdif, ExportOfAMissingLogExitsWithOne) {
  const CliRun run = Cli("export " + Quoted(dir.Join("none.vdb")) + " " + Quoted(dir.Join("o.adi")));
  EXPECT_EQ(run.exitCode, 1) << run.output;
  EXPECT_FALSE(std::filesystem::exists(dir.Join("o.adi")));
}

}  // namespace
}  // namespace vellumar::adif
