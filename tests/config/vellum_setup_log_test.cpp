// The Log page of the configuration window: naming, creating, opening and choosing a log.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/vb/error.h"
#include "support/program_harness.h"

namespace vellumar {
namespace {

using test::ProgramHarness;

bool Exists(const std::string& path) { return std::filesystem::exists(path); }

class VellumSetupLog : public ::testing::Test {
 protected:
  void SetUp() override {
    h.SeedReturningOperator("K1ABC");
    app = &h.Start();
    s = &h.setup();
    ASSERT_TRUE(app->module.LogOpen());
  }
  ProgramHarness h;
  Application* app = nullptr;
  VellumSetup* s = nullptr;
};

TEST_F(VellumSetupLog, TheCommandSaysOpenForAnExistingFileAndCreateOtherwise) {
  EXPECT_EQ(s->OpenLogCmd.Caption(), "Open");
  EXPECT_EQ(s->OpenLogCmd.ToolTipText(), "click to open the specified log file");
  EXPECT_FALSE(s->OpenLogCmd.Enabled());  // the log named is open
  s->LogPathname.UserSetText(h.LogPath("New.vdb"));
  EXPECT_EQ(s->OpenLogCmd.Caption(), "Create");
  EXPECT_EQ(s->OpenLogCmd.ToolTipText(), "click to create a log file at the specified pathname");
  EXPECT_TRUE(s->OpenLogCmd.Enabled());
  s->LogPathname.UserSetText(h.LogPath("K1ABC.vdb"));
  EXPECT_EQ(s->OpenLogCmd.Caption(), "Open");
  EXPECT_TRUE(s->OpenLogCmd.Enabled());  // any change enables it
  // A folder is no log file.
  s->LogPathname.UserSetText(h.DataPath() + "/Databases");
  EXPECT_EQ(s->OpenLogCmd.Caption(), "Create");
}

TEST_F(VellumSetupLog, ALogInAFolderThatDoesNotExistGivesTheFolderMessageAndOpensNothing) {
  const std::string folder = h.dir.Join("nowhere");
  s->LogPathname.UserSetText(folder + "/Field Day.vdb");
  h.desktop.ExpectMsgBox("folder does not exist: " + folder).WithTitle("Vellumar");
  s->OpenLogCmd.UserClick();
  EXPECT_FALSE(Exists(folder));
  // The log that was open stays open; nothing else was opened or saved.
  EXPECT_TRUE(app->module.LogOpen());
  EXPECT_EQ(app->main.LogPosition.DatabaseName, h.LogPath("K1ABC.vdb"));
  EXPECT_EQ(h.Setting("Configuration", "LogPathname"), h.LogPath("K1ABC.vdb"));
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(VellumSetupLog, CreateMakesTheLogAndOpensIt) {
  const std::string path = h.LogPath("Field Day.vdb");
  s->LogPathname.UserSetText(path);
  s->OpenLogCmd.UserClick();
  EXPECT_TRUE(std::filesystem::is_regular_file(path));
  EXPECT_TRUE(app->module.LogOpen());
  EXPECT_EQ(app->main.LogPosition.DatabaseName, path);
  EXPECT_EQ(h.Setting("Configuration", "LogPathname"), path);
  EXPECT_FALSE(s->OpenLogCmd.Enabled());
  EXPECT_TRUE(s->BackupCmd.Enabled());
  EXPECT_NE(app->main.Caption().find("Field Day.vdb : no QSOs"), std::string::npos);
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(VellumSetupLog, OpenSwitchesToAnotherExistingLog) {
  const std::string other = h.LogPath("Other.vdb");
  ASSERT_TRUE(app->logSchema.CreateLog(other));
  s->LogPathname.UserSetText(other);
  EXPECT_EQ(s->OpenLogCmd.Caption(), "Open");
  s->OpenLogCmd.UserClick();
  EXPECT_TRUE(app->module.LogOpen());
  EXPECT_EQ(app->main.LogPosition.DatabaseName, other);
  EXPECT_EQ(h.Setting("Configuration", "LogPathname"), other);
}

TEST_F(VellumSetupLog, AFileThatIsNoLogCannotBeOpened) {
  const std::string bogus = h.LogPath("Bogus.vdb");
  ASSERT_TRUE(test::WriteFileText(bogus, "this is not a database\n"));
  s->LogPathname.UserSetText(bogus);
  h.desktop.ExpectMsgBox("unable to open log database: " + bogus).WithTitle("Vellumar");
  s->OpenLogCmd.UserClick();
  EXPECT_FALSE(app->module.LogOpen());
  EXPECT_TRUE(s->OpenLogCmd.Enabled());
  EXPECT_EQ(app->main.Caption().find("Bogus"), std::string::npos);
  EXPECT_EQ(h.Setting("Configuration", "LogPathname"), h.LogPath("K1ABC.vdb"));
}

TEST_F(VellumSetupLog, ALogThatCannotBeCreatedIsReportedAndTheOpenLogStays) {
  // A folder in the place of the file: the folder above exists, the file can't be made.
  const std::string path = h.LogPath("Taken.vdb");
  std::filesystem::create_directories(path);
  s->LogPathname.UserSetText(path);
  ASSERT_EQ(s->OpenLogCmd.Caption(), "Create");
  h.desktop.ExpectMsgBox("unable to create log database: " + path).WithTitle("Vellumar");
  s->OpenLogCmd.UserClick();
  EXPECT_TRUE(app->module.LogOpen());
  EXPECT_EQ(app->main.LogPosition.DatabaseName, h.LogPath("K1ABC.vdb"));
  EXPECT_NE(h.ErrorLogText().find("VellumModule.CreateLog"), std::string::npos);
}

TEST_F(VellumSetupLog, SelectOffersTheLogFolderAndTakesTheChoice) {
  const std::string chosen = h.dir.Join("elsewhere/2023.vdb");
  h.desktop.ExpectOpenFile(chosen);
  s->LogSelectCmd.UserClick();
  const test::DesktopCall& call = h.desktop.Calls().back();
  EXPECT_EQ(call.dialog.filter, "Log (*.vdb)|*.vdb");
  EXPECT_EQ(call.dialog.defaultExt, ".vdb");
  EXPECT_EQ(call.dialog.initialDir, h.DataPath() + "/Databases");
  EXPECT_EQ(s->LogPathname.Text(), chosen);
  EXPECT_EQ(s->OpenLogCmd.Caption(), "Create");
  EXPECT_TRUE(s->OpenLogCmd.Enabled());
  EXPECT_EQ(h.Setting("Configuration", "LogDirectory"), h.dir.Join("elsewhere"));
  // The log stays as it was until the operator opens the choice.
  EXPECT_EQ(app->main.LogPosition.DatabaseName, h.LogPath("K1ABC.vdb"));

  // The next dialog starts in the folder of the last choice.
  h.desktop.ExpectOpenFile(h.dir.Join("elsewhere/2024.vdb"));
  s->LogSelectCmd.UserClick();
  EXPECT_EQ(h.desktop.Calls().back().dialog.initialDir, h.dir.Join("elsewhere"));
}

TEST_F(VellumSetupLog, CancellingTheSelectionDoesNothing) {
  h.desktop.ExpectOpenFileCancel();
  s->LogSelectCmd.UserClick();
  EXPECT_EQ(s->LogPathname.Text(), h.LogPath("K1ABC.vdb"));
  EXPECT_EQ(h.Setting("Configuration", "LogDirectory"), "<missing>");
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(VellumSetupLog, SaveLogPathnameWritesTheBox) {
  s->LogPathname.UserSetText("/tmp/whatever.vdb");
  EXPECT_EQ(h.Setting("Configuration", "LogPathname"), h.LogPath("K1ABC.vdb"));
  s->SaveLogPathname();
  EXPECT_EQ(h.Setting("Configuration", "LogPathname"), "/tmp/whatever.vdb");
}

TEST_F(VellumSetupLog, SaveBackupDirectoryWritesTheBox) {
  s->BackupDirectory.UserSetText("/srv/backups");
  EXPECT_EQ(h.Setting("Configuration", "BackupDirectory"), "<missing>");
  s->SaveBackupDirectory();
  EXPECT_EQ(h.Setting("Configuration", "BackupDirectory"), "/srv/backups");
}

}  // namespace
}  // namespace vellumar
