// Closing and unloading the configuration window: the general options reach the settings only
// at the end of the run.
#include <gtest/gtest.h>

#include "support/program_harness.h"

namespace vellumar {
namespace {

using test::ProgramHarness;

// Every option of Form_Unload, changed by the operator during the run.
void ChangeEveryOption(VellumSetup& s) {
  s.MyCallsign.UserSetText("W1AW");
  s.TransmitPower.UserSetText("5");
  s.QSLMsg.UserSetText("PSE QSL");
  s.RunCheck.UserToggle();
  s.ConfirmDeleteCheck.UserToggle();
  s.LookupPrevQSOCheck.UserToggle();
  s.AutoSetDateTimeCheck.UserToggle();
  s.DisplaySecondsCheckbox.UserToggle();
  s.SetCaptureQSLRequestCheck.UserToggle();
  s.QSLPrintOpCallsignCheck.UserToggle();
  s.eQSLName.UserSetText("w1aw");
  s.eQSLPassword.UserSetText("hunter2");
  s.PrinterName.UserSelect(0);
  s.PaperSizeCombo.UserSelect(8);  // A4
}

const char* const kUnloadKeys[] = {"Callsign",
                                   "TransmitPower",
                                   "QSLMsg",
                                   "Run",
                                   "ConfirmDelete",
                                   "LookupPrevQSO",
                                   "AutoSetDateTime",
                                   "DateTimeFormat",
                                   "SetCaptureQSLRequest",
                                   "QSLPrintOpCallsign",
                                   "eQSLUser",
                                   "eQSLPassword"};

TEST(VellumSetupUnload, NothingIsSavedBeforeFormUnloadAndEverythingAtIt) {
  ProgramHarness h;
  h.Seed("RAC", "RACEnabled", "0");
  h.desktop.ExpectInputBox("K1ABC");
  Application& app = h.Start();
  ChangeEveryOption(h.setup());
  h.loop.Advance(1000);
  for (const char* key : kUnloadKeys) {
    EXPECT_EQ(h.Setting("Configuration", key), "<missing>") << key;
  }
  EXPECT_EQ(h.Setting("Printer", "PrinterName"), "<missing>");
  EXPECT_EQ(h.Setting("Printer", "PrinterPaperSize"), "<missing>");
  EXPECT_EQ(h.Setting("Windows", "VellumSetupLeft"), "<missing>");
  EXPECT_EQ(h.Setting("Award", "Award160M"), "<missing>");

  EXPECT_TRUE(app.CloseMainWindow(ui::vbFormControlMenu));
  EXPECT_FALSE(h.setup().Loaded());
  EXPECT_EQ(h.Setting("Configuration", "Callsign"), "W1AW");
  EXPECT_EQ(h.Setting("Configuration", "TransmitPower"), "5");
  EXPECT_EQ(h.Setting("Configuration", "QSLMsg"), "PSE QSL");
  EXPECT_EQ(h.Setting("Configuration", "Run"), "1");
  EXPECT_EQ(h.Setting("Configuration", "ConfirmDelete"), "0");
  EXPECT_EQ(h.Setting("Configuration", "LookupPrevQSO"), "0");
  EXPECT_EQ(h.Setting("Configuration", "AutoSetDateTime"), "0");
  EXPECT_EQ(h.Setting("Configuration", "DateTimeFormat"), "ddddd   hh:nn:ss");
  EXPECT_EQ(h.Setting("Configuration", "SetCaptureQSLRequest"), "1");
  EXPECT_EQ(h.Setting("Configuration", "QSLPrintOpCallsign"), "1");
  EXPECT_EQ(h.Setting("Configuration", "eQSLUser"), "w1aw");
  EXPECT_EQ(h.Setting("Configuration", "eQSLPassword"), "hunter2");
  EXPECT_EQ(h.Setting("Printer", "PrinterName"), "Print to PDF file");
  EXPECT_EQ(h.Setting("Printer", "PrinterPaperSize"), "9");
  EXPECT_EQ(h.Setting("Windows", "VellumSetupWindowState"), "0");
  EXPECT_NE(h.Setting("Windows", "VellumSetupLeft"), "<missing>");
  EXPECT_NE(h.Setting("Windows", "VellumSetupWidth"), "<missing>");
  EXPECT_EQ(h.Setting("Award", "Award160M"), "1");
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST(VellumSetupUnload, TheNextRunReadsWhatTheLastOneWrote) {
  ProgramHarness h;
  h.SeedReturningOperator();
  {
    h.Start();
    ChangeEveryOption(h.setup());
    h.app->CloseMainWindow(ui::vbFormControlMenu);
    h.app.reset();
  }
  h.Start();
  VellumSetup& s = h.setup();
  EXPECT_EQ(s.MyCallsign.Text(), "W1AW");
  EXPECT_EQ(s.TransmitPower.Text(), "5");
  EXPECT_EQ(s.RunCheck.Value(), 1);
  EXPECT_EQ(s.ConfirmDeleteCheck.Value(), 0);
  EXPECT_EQ(s.DisplaySecondsCheckbox.Value(), 1);
  EXPECT_EQ(s.GetDateTimeFormat(), "ddddd   hh:nn:ss");
  EXPECT_EQ(s.PrinterName.ListIndex(), 0);
  EXPECT_EQ(s.PaperSizeCombo.ItemData(s.PaperSizeCombo.ListIndex()), 9);
  // The log of the first run is the one reopened, though the callsign changed.
  EXPECT_EQ(s.LogPathname.Text(), h.LogPath("K1ABC.vdb"));
}

TEST(VellumSetupUnload, WithoutASelectedPrinterNeitherPrinterKeyIsWritten) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("Printer", "PrinterName", "No such printer");
  Application& app = h.Start();
  EXPECT_EQ(h.setup().PrinterName.ListIndex(), -1);
  app.CloseMainWindow(ui::vbFormControlMenu);
  EXPECT_EQ(h.Setting("Printer", "PrinterName"), "No such printer");
  EXPECT_EQ(h.Setting("Printer", "PrinterPaperSize"), "<missing>");
  EXPECT_EQ(h.Setting("Configuration", "Callsign"), "K1ABC");
}

TEST(VellumSetupUnload, TheOperatorsCloseOnlyHidesTheWindow) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Start();
  VellumSetup& s = h.setup();
  s.MyCallsign.UserSetText("W1AW");
  s.ShowPage(kPrinterPage);
  EXPECT_TRUE(s.Visible());
  EXPECT_EQ(s.SetupTab.Tab(), kPrinterPage);
  EXPECT_FALSE(s.Unload(ui::vbFormControlMenu));
  EXPECT_TRUE(s.Loaded());
  EXPECT_FALSE(s.Visible());
  EXPECT_EQ(h.Setting("Configuration", "Callsign"), "K1ABC");
  // The program's own unload goes through.
  EXPECT_TRUE(s.Unload(ui::vbFormCode));
  EXPECT_FALSE(s.Loaded());
  EXPECT_EQ(h.Setting("Configuration", "Callsign"), "W1AW");
}

TEST(VellumSetupUnload, UnloadClosesTheLogAndSavesTheAwardsAndTheWindow) {
  ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Start();
  VellumSetup& s = h.setup();
  s.Move(10, 20, 600, 400);
  s.WAZModeCheck(5).SetValue(0);  // SSTV: written at once and again at the end
  ASSERT_TRUE(app.module.LogOpen());
  s.Unload(ui::vbFormCode);
  EXPECT_FALSE(app.module.LogOpen());
  EXPECT_TRUE(s.OpenLogCmd.Enabled());
  EXPECT_FALSE(s.BackupCmd.Enabled());
  EXPECT_EQ(h.Setting("Windows", "VellumSetupLeft"), "10");
  EXPECT_EQ(h.Setting("Windows", "VellumSetupTop"), "20");
  EXPECT_EQ(h.Setting("Windows", "VellumSetupWidth"), "600");
  EXPECT_EQ(h.Setting("Windows", "VellumSetupHeight"), "400");
  EXPECT_EQ(h.Setting("Award", "AwardPSK"), "1");
  EXPECT_EQ(h.Setting("Award", "WAZBandAward6M"), "1");
  EXPECT_EQ(h.Setting("Award", "WAZModeAwardSSTV"), "0");
  EXPECT_EQ(h.Setting("LogGrid", "LogLayoutColumnWidth0"), "1500");
  EXPECT_EQ(h.Setting("LogGrid", "LogLayoutColumnWidth2"), "1000");
}

}  // namespace
}  // namespace vellumar
