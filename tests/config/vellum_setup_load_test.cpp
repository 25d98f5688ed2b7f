// Loading the configuration window: the first run, and each option from its setting.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/program_harness.h"

namespace vellumar {
namespace {

using test::ProgramHarness;

bool IsFile(const std::string& path) { return std::filesystem::is_regular_file(path); }

TEST(VellumSetupLoad, FirstRunAsksTheCallsignWhichNamesTheLogCreatedBeforeItIsOpened) {
  ProgramHarness h;
  Application& app = h.Build();
  h.desktop.ExpectInputBox("K1ABC")
      .WithPrompt(test::kFirstRunPrompt)
      .WithTitle("Vellumar initialization");
  h.desktop.ExpectMsgBox(test::kCallbookMissing).WithTitle("Vellumar");
  bool createdBeforeOpen = false;
  app.main.OnLoadStep = [&](int step) {
    if (step == 10) createdBeforeOpen = IsFile(h.LogPath("K1ABC.vdb")) && !app.module.LogOpen();
  };
  h.Start();
  EXPECT_TRUE(createdBeforeOpen);
  EXPECT_EQ(h.setup().MyCallsign.Text(), "K1ABC");
  EXPECT_EQ(h.setup().LogPathname.Text(), h.LogPath("K1ABC.vdb"));
  EXPECT_TRUE(app.module.LogOpen());
  // Opening the log made its pathname the setting; the callsign waits for the end of the run.
  EXPECT_EQ(h.Setting("Configuration", "LogPathname"), h.LogPath("K1ABC.vdb"));
  EXPECT_EQ(h.Setting("Configuration", "Callsign"), "<missing>");
  // The callbook library is absent: the switch was cleared and that was written at once.
  EXPECT_EQ(h.setup().RACEnabled.Value(), 0);
  EXPECT_EQ(h.Setting("RAC", "RACEnabled"), "0");
  EXPECT_FALSE(app.main.RACcmd.Enabled());
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST(VellumSetupLoad, ACallsignWithASlashGivesALogNameWithADash) {
  ProgramHarness h;
  h.Seed("RAC", "RACEnabled", "0");
  h.desktop.ExpectInputBox("VP2E/K1ABC");
  Application& app = h.Start();
  EXPECT_EQ(h.setup().LogPathname.Text(), h.LogPath("VP2E-K1ABC.vdb"));
  EXPECT_TRUE(IsFile(h.LogPath("VP2E-K1ABC.vdb")));
  EXPECT_TRUE(app.module.LogOpen());
  EXPECT_EQ(h.setup().DefaultLogPathname("a\\b/c"), h.LogPath("a-b-c.vdb"));
}

TEST(VellumSetupLoad, AStoredCallsignIsNotAskedFor) {
  ProgramHarness h;
  h.SeedReturningOperator("G4XYZ");
  Application& app = h.Start();
  EXPECT_EQ(h.setup().MyCallsign.Text(), "G4XYZ");
  EXPECT_EQ(h.setup().LogPathname.Text(), h.LogPath("G4XYZ.vdb"));
  EXPECT_TRUE(app.module.LogOpen());
  EXPECT_TRUE(h.desktop.Calls().empty());
}

TEST(VellumSetupLoad, AStoredFormatWithADashIsReplacedAtLoad) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("Configuration", "DateTimeFormat", "dd-mmm-yyyy hh:nn");
  h.Start();
  EXPECT_EQ(h.setup().GetDateTimeFormat(), "ddddd   hh:nn");
  EXPECT_EQ(h.setup().DisplaySecondsCheckbox.Value(), 0);
}

TEST(VellumSetupLoad, TheSecondsFormatChecksItsBox) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("Configuration", "DateTimeFormat", "ddddd   hh:nn:ss");
  h.Start();
  EXPECT_EQ(h.setup().GetDateTimeFormat(), "ddddd   hh:nn:ss");
  EXPECT_EQ(h.setup().DisplaySecondsCheckbox.Value(), 1);
}

TEST(VellumSetupLoad, AnotherFormatWithoutADashIsKept) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("Configuration", "DateTimeFormat", "yyyy/mm/dd hh:nn");
  h.Start();
  EXPECT_EQ(h.setup().GetDateTimeFormat(), "yyyy/mm/dd hh:nn");
  EXPECT_EQ(h.setup().DisplaySecondsCheckbox.Value(), 0);
}

TEST(VellumSetupLoad, OptionsWithoutSettingsTakeTheirDefaults) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Start();
  VellumSetup& s = h.setup();
  EXPECT_EQ(s.Caption(), "Vellumar Configuration");
  EXPECT_FALSE(s.Visible());
  EXPECT_EQ(s.TransmitPower.Text(), "100");
  EXPECT_EQ(s.QSLMsg.Text(), "");
  EXPECT_EQ(s.RunCheck.Value(), 0);
  EXPECT_EQ(s.ConfirmDeleteCheck.Value(), 1);
  EXPECT_EQ(s.LookupPrevQSOCheck.Value(), 1);
  EXPECT_EQ(s.AutoSetDateTimeCheck.Value(), 1);
  EXPECT_EQ(s.GetDateTimeFormat(), "ddddd   hh:nn");
  EXPECT_EQ(s.DisplaySecondsCheckbox.Value(), 0);
  EXPECT_EQ(s.SetCaptureQSLRequestCheck.Value(), 0);
  EXPECT_EQ(s.QSLPrintOpCallsignCheck.Value(), 0);
  EXPECT_EQ(s.RACPathname.Text(), "D:\\callbook.exe");
  EXPECT_EQ(s.BackupDirectory.Text(), h.DataPath() + "/Backups");
  EXPECT_EQ(s.eQSLName.Text(), "");
  EXPECT_EQ(s.eQSLPassword.Text(), "");
  EXPECT_EQ(s.BrowserPathname.Text(), "");
  EXPECT_EQ(s.TooltipsCheckbox.Value(), 1);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(s.LogFrameVisible(i).Value(), 1) << i;
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST(VellumSetupLoad, OptionsComeFromTheirKeys) {
  ProgramHarness h;
  h.SeedReturningOperator("W1AW");
  h.Seed("Configuration", "TransmitPower", "1500");
  h.Seed("Configuration", "QSLMsg", "TNX QSO");
  h.Seed("Configuration", "Run", "1");
  h.Seed("Configuration", "ConfirmDelete", "0");
  h.Seed("Configuration", "LookupPrevQSO", "0");
  h.Seed("Configuration", "AutoSetDateTime", "0");
  h.Seed("Configuration", "SetCaptureQSLRequest", "1");
  h.Seed("Configuration", "QSLPrintOpCallsign", "1");
  h.Seed("Configuration", "BackupDirectory", "/srv/backups");
  h.Seed("Configuration", "eQSLUser", "w1aw");
  h.Seed("Configuration", "eQSLPassword", "secret");
  h.Seed("Configuration", "BrowserPathname", "/usr/bin/firefox");
  h.Seed("RAC", "Pathname", "/opt/callbook/Callbook.exe");
  const std::string log = h.dir.Join("logs/Contest.vdb");
  std::filesystem::create_directories(h.dir.Join("logs"));
  h.Seed("Configuration", "LogPathname", log);
  Application& app = h.Start();
  VellumSetup& s = h.setup();
  EXPECT_EQ(s.MyCallsign.Text(), "W1AW");
  EXPECT_EQ(s.TransmitPower.Text(), "1500");
  EXPECT_EQ(s.QSLMsg.Text(), "TNX QSO");
  EXPECT_EQ(s.RunCheck.Value(), 1);
  EXPECT_EQ(s.ConfirmDeleteCheck.Value(), 0);
  EXPECT_EQ(s.LookupPrevQSOCheck.Value(), 0);
  EXPECT_EQ(s.AutoSetDateTimeCheck.Value(), 0);
  EXPECT_EQ(s.SetCaptureQSLRequestCheck.Value(), 1);
  EXPECT_EQ(s.QSLPrintOpCallsignCheck.Value(), 1);
  EXPECT_EQ(s.BackupDirectory.Text(), "/srv/backups");
  EXPECT_EQ(s.eQSLName.Text(), "w1aw");
  EXPECT_EQ(s.eQSLPassword.Text(), "secret");
  EXPECT_EQ(s.BrowserPathname.Text(), "/usr/bin/firefox");
  EXPECT_EQ(app.common.BrowserPathname(), "/usr/bin/firefox");
  EXPECT_EQ(s.RACPathname.Text(), "/opt/callbook/Callbook.exe");
  EXPECT_EQ(s.RACEnabled.Value(), 0);
  // A stored log that is missing is created where the setting says.
  EXPECT_EQ(s.LogPathname.Text(), log);
  EXPECT_TRUE(IsFile(log));
  EXPECT_TRUE(app.module.LogOpen());
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST(VellumSetupLoad, TheCallbookDefaultIsTheRouteProgramsSetting) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.settings.SaveSetting("Trailmark", "RAC", "Pathname", "/opt/trailmark/callbook.exe");
  h.Start();
  EXPECT_EQ(h.setup().RACPathname.Text(), "/opt/trailmark/callbook.exe");
  // Loading the box is a change of it, which is written to the own section.
  EXPECT_EQ(h.Setting("RAC", "Pathname"), "/opt/trailmark/callbook.exe");
}

TEST(VellumSetupLoad, AnEmptyLogPathnameSettingGivesTheDefaultLog) {
  ProgramHarness h;
  h.SeedReturningOperator("K1ABC");
  h.Seed("Configuration", "LogPathname", "");
  Application& app = h.Start();
  EXPECT_EQ(h.setup().LogPathname.Text(), h.LogPath("K1ABC.vdb"));
  EXPECT_TRUE(app.module.LogOpen());
}

TEST(VellumSetupLoad, ALogThatCannotBeCreatedIsReportedAndLeftUnopened) {
  ProgramHarness h;
  h.SeedReturningOperator();
  const std::string missing = h.dir.Join("no-such-folder/K1ABC.vdb");
  h.Seed("Configuration", "LogPathname", missing);
  h.desktop.ExpectMsgBox("unable to create log database").WithTitle("Vellumar");
  h.desktop.ExpectMsgBox("unable to open log database: " + missing);
  Application& app = h.Start();
  EXPECT_FALSE(app.module.LogOpen());
  EXPECT_EQ(h.setup().OpenLogCmd.Caption(), "Create");
  EXPECT_TRUE(h.setup().OpenLogCmd.Enabled());
  EXPECT_FALSE(h.setup().BackupCmd.Enabled());
}

TEST(VellumSetupLoad, TheOpenCommandIsReadyForALogNotYetOpen) {
  ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Build();
  std::string caption;
  bool openEnabled = false, backupEnabled = true;
  app.main.OnLoadStep = [&](int step) {
    if (step != 7) return;  // just after the configuration window's load
    caption = h.setup().OpenLogCmd.Caption();
    openEnabled = h.setup().OpenLogCmd.Enabled();
    backupEnabled = h.setup().BackupCmd.Enabled();
  };
  h.Start();
  EXPECT_EQ(caption, "Open");
  EXPECT_TRUE(openEnabled);
  EXPECT_FALSE(backupEnabled);
  // Once the log is open, the other way round.
  EXPECT_FALSE(h.setup().OpenLogCmd.Enabled());
  EXPECT_TRUE(h.setup().BackupCmd.Enabled());
}

TEST(VellumSetupLoad, TheCallsignIsEchoedOnTheImportPage) {
  ProgramHarness h;
  h.SeedReturningOperator("DL1XYZ");
  Application& app = h.Start();
  EXPECT_EQ(app.main.DefaultCallsignCheckbox.Caption(),
            "Substitute DL1XYZ for missing operator callsigns");
  EXPECT_EQ(app.main.DefaultCallsignCheckbox.ToolTipText(),
            "If checked, DL1XYZ will be substituted for missing operator callsigns in imported "
            "records");
}

TEST(VellumSetupLoad, AHiddenFieldPanelIsHiddenInTheMainWindow) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("Configuration", "LogFrameVisible2", "0");
  Application& app = h.Build();
  app.main.LogFrame(2).Move(0, 0, 5000, 800);
  const int height = app.main.Height();
  h.Start();
  EXPECT_EQ(h.setup().LogFrameVisible(2).Value(), 0);
  EXPECT_EQ(app.main.LogFrameSelect(2).Value(), 0);
  EXPECT_FALSE(app.main.LogFrame(2).Visible());
  EXPECT_TRUE(app.main.LogFrame(1).Visible());
  EXPECT_FALSE(app.main.IgnoreFrameSelectFlag);
  EXPECT_EQ(app.main.Height(), height - 800);
  // SaveLogFrameVisibility brought all four to the main window's boxes and the settings.
  for (int i : {0, 1, 3}) EXPECT_EQ(app.main.LogFrameSelect(i).Value(), 1) << i;
  EXPECT_EQ(h.Setting("Configuration", "LogFrameVisible0"), "1");
  EXPECT_EQ(h.Setting("Configuration", "LogFrameVisible1"), "1");
  EXPECT_EQ(h.Setting("Configuration", "LogFrameVisible2"), "0");
  EXPECT_EQ(h.Setting("Configuration", "LogFrameVisible3"), "1");
}

TEST(VellumSetupLoad, TheWindowTakesItsStoredPlace) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("Windows", "VellumSetupLeft", "120");
  h.Seed("Windows", "VellumSetupTop", "17000");  // beyond the screen of 1080 * 15 twips
  h.Seed("Windows", "VellumSetupWidth", "640");
  h.Seed("Windows", "VellumSetupHeight", "480");
  h.Start();
  EXPECT_EQ(h.setup().Left(), 120);
  EXPECT_EQ(h.setup().Top(), 0);
  EXPECT_EQ(h.setup().Width(), 640);
  EXPECT_EQ(h.setup().Height(), 480);
}

}  // namespace
}  // namespace vellumar
