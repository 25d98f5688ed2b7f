#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "config/vellum_setup.h"
#include "frame/version.h"
#include "logstore/schema_tables.h"
#include "platform/vb/error.h"
#include "support/program_harness.h"

namespace vellumar {
namespace {

using test::ProgramHarness;

const std::string kTitle = std::string("Vellumar ") + Common::Version();

TEST(Startup, FirstRunAsksTheCallsignCreatesTheLogAndOpensIt) {
  ProgramHarness h(ProgramHarness::DXCC::kBuilt);
  h.desktop.ExpectInputBox("K1ABC").WithPrompt(test::kFirstRunPrompt).WithTitle(
      "Vellumar initialization");
  h.desktop.ExpectMsgBox(test::kCallbookMissing);
  Application& app = h.Start();
  EXPECT_TRUE(app.module.LogOpen());
  EXPECT_EQ(app.setup().LogPathname.Text(), h.LogPath("K1ABC.vdb"));
  EXPECT_EQ(app.main.Caption(), kTitle + " - K1ABC.vdb : no QSOs");
  EXPECT_EQ(app.main.MousePointer(), ui::vbDefault);
  EXPECT_FALSE(h.exitCode.has_value());
  // The new log's Progress holds one row per entity of the DXCC database.
  db::Recordset progress = app.module.ProgressView.Clone();
  progress.MoveLast();
  EXPECT_GT(progress.RecordCount(), 300);
  // An empty log: the entry fields and the row commands stay disabled.
  EXPECT_FALSE(app.main.Fieldbox(1).Enabled());
  EXPECT_TRUE(app.main.NewCmd.Enabled());
  EXPECT_FALSE(app.main.DeleteCmd.Enabled());
  EXPECT_FALSE(app.main.LogLastCmd.Enabled());
  EXPECT_TRUE(app.capture.Visible());
  EXPECT_TRUE(app.main.InitTimer.Enabled());
}

TEST(Startup, AnEnabledCallbookThatIsntInstalledIsSwitchedOffWithAMessage) {
  ProgramHarness h;
  h.Seed("Configuration", "Callsign", "K1ABC");
  h.desktop.ExpectMsgBox(test::kCallbookMissing);
  Application& app = h.Start();
  EXPECT_EQ(app.setup().RACEnabled.Value(), 0);
  EXPECT_EQ(h.Setting("RAC", "RACEnabled"), "0");
  EXPECT_FALSE(app.main.RACcmd.Enabled());
}

TEST(Startup, ACallsignWithASlashNamesItsLogWithADash) {
  ProgramHarness h;
  h.desktop.ExpectInputBox("VP2E/K1ABC");
  h.desktop.ExpectMsgBox(test::kCallbookMissing);
  Application& app = h.Start();
  EXPECT_EQ(app.setup().LogPathname.Text(), h.LogPath("VP2E-K1ABC.vdb"));
  EXPECT_TRUE(app.module.LogOpen());
  EXPECT_EQ(app.main.Caption(), kTitle + " - VP2E-K1ABC.vdb : no QSOs");
}

TEST(Startup, WithNoLogTheWindowComesUpWithoutOne) {
  ProgramHarness h;
  h.SeedReturningOperator();
  const std::string missing = h.dir.Join("no-such-folder/K1ABC.vdb");
  h.Seed("Configuration", "LogPathname", missing);
  h.desktop.ExpectMsgBox("unable to create log database");
  h.desktop.ExpectMsgBox("unable to open log database: " + missing).WithTitle("Vellumar");
  Application& app = h.Start();
  EXPECT_FALSE(app.module.LogOpen());
  EXPECT_EQ(app.main.Caption(), kTitle + " (no log open)");
  EXPECT_FALSE(app.main.NewCmd.Enabled());
  EXPECT_FALSE(app.main.SaveCmd.Enabled());
  EXPECT_TRUE(app.setup().OpenLogCmd.Enabled());
  // Start-up went on to its end without a log.
  EXPECT_TRUE(app.main.InitTimer.Enabled());
  // InitTimer's moves on a missing log fail silently.
  h.loop.Advance(300);
  EXPECT_FALSE(app.main.InitTimer.Enabled());
  // The failed creation went to the error log, and nothing else did.
  const std::string log = h.ErrorLogText();
  EXPECT_NE(log.find("in module VellumModule.CreateLog: "), std::string::npos) << log;
  EXPECT_EQ(log.find("InitTimer"), std::string::npos) << log;
}

TEST(Startup, AFailingStepIsReportedWithItsNumberAndEndsTheLoad) {
  ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Build();
  // Step 12 fails as a missing file would.
  app.main.OnLoadStep = [](int step) {
    if (step == 12) vb::Raise(53);
  };
  app.Start();
  EXPECT_EQ(app.main.LoadStep, 12);
  const std::string log = h.ErrorLogText();
  EXPECT_NE(log.find("program error 53 in module VellumMain.Form_Load: 12: File not found"),
            std::string::npos)
      << log;
  // The later steps did not run: no Capture window, no InitTimer.
  EXPECT_FALSE(app.capture.Visible());
  EXPECT_FALSE(app.main.InitTimer.Enabled());
  EXPECT_EQ(app.main.MousePointer(), ui::vbHourglass);
  // The log was opened at step 10, before the failure.
  EXPECT_TRUE(app.module.LogOpen());
}

TEST(Startup, AMissingDXCCDatabaseIsTheFatalMessageAndNothingElse) {
  ProgramHarness h(ProgramHarness::DXCC::kNone);
  h.SeedReturningOperator();
  const std::string path = h.DataPath() + "/Databases/DXCC.vdb";
  h.desktop.ExpectMsgBoxStartingWith("Terminating: " + path + " is missing! (restore by downloading from ")
      .WithTitle("Vellumar");
  Application& app = h.Start();
  ASSERT_TRUE(h.exitCode.has_value());
  EXPECT_NE(*h.exitCode, 0);
  EXPECT_TRUE(app.Ended());
  // The program ended inside its start-up: no log was opened, no window came up after it.
  EXPECT_FALSE(app.module.LogOpen());
  EXPECT_FALSE(app.setup().Loaded());
  EXPECT_FALSE(app.capture.Visible());
  EXPECT_EQ(h.desktop.Calls().size(), 1u);
}

// The QSL commands as they stand when the log is about to be opened (step 10), right after the
// queue was opened at step 9.
struct QSLCommandsAtStep10 {
  bool generateRequested = false;
  bool processPrinted = false;
};

QSLCommandsAtStep10 StartWatchingQSLCommands(ProgramHarness& h) {
  QSLCommandsAtStep10 seen;
  Application& app = h.Build();
  app.main.OnLoadStep = [&app, &seen](int step) {
    if (step != 10) return;
    seen.generateRequested = app.main.GenerateRequestedCmd.Enabled();
    seen.processPrinted = app.main.ProcessPrintedCmd.Enabled();
  };
  app.Start();
  return seen;
}

TEST(Startup, AQueueThatOpensLeavesTheQSLCommandsEnabled) {
  ProgramHarness h;
  h.SeedReturningOperator();
  const QSLCommandsAtStep10 seen = StartWatchingQSLCommands(h);
  EXPECT_TRUE(h.app->qslQueue.IsOpen());
  EXPECT_TRUE(seen.generateRequested);
  EXPECT_TRUE(seen.processPrinted);
}

TEST(Startup, AQueueThatCantBeOpenedDisablesTheQSLCommands) {
  ProgramHarness h;
  h.SeedReturningOperator();
  // A folder where the queue's file should be: it can't be opened as a database.
  const std::string queue = h.LogPath("QSL.vdb");
  std::filesystem::create_directories(queue);
  h.desktop.ExpectMsgBox("Unable to open QSL Queue database: " + queue);
  const QSLCommandsAtStep10 seen = StartWatchingQSLCommands(h);
  EXPECT_FALSE(h.app->qslQueue.IsOpen());
  EXPECT_FALSE(seen.generateRequested);
  EXPECT_FALSE(seen.processPrinted);
  EXPECT_NE(h.ErrorLogText().find("Unable to open QSLQueue " + queue), std::string::npos)
      << h.ErrorLogText();
  // The rest of the program runs: the log opened.
  EXPECT_TRUE(h.app->module.LogOpen());
}

TEST(Startup, AnEmptyLogsInitTimerMovesFailSilently) {
  ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Start();
  ASSERT_TRUE(app.module.LogOpen());
  h.loop.Advance(250);
  EXPECT_FALSE(app.main.InitTimer.Enabled());
  EXPECT_EQ(h.ErrorLogText(), "");
}

}  // namespace
}  // namespace vellumar
