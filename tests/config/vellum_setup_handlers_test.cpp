// The option handlers of the configuration window.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/program_harness.h"

namespace vellumar {
namespace {

using test::ProgramHarness;

class VellumSetupHandlers : public ::testing::Test {
 protected:
  void SetUp() override {
    h.SeedReturningOperator("K1ABC");
    app = &h.Build();
    app->main.LogFrame(1).Move(0, 3000, 9000, 700);
    h.Start();
    s = &h.setup();
  }
  ProgramHarness h;
  Application* app = nullptr;
  VellumSetup* s = nullptr;
};

TEST_F(VellumSetupHandlers, AFieldPanelBoxHidesThePanelAndEchoesInTheMainWindow) {
  VellumMain& main = app->main;
  const int height = main.Height();
  s->LogFrameVisible(1).UserToggle();
  EXPECT_EQ(main.LogFrameSelect(1).Value(), 0);
  EXPECT_FALSE(main.IgnoreFrameSelectFlag);
  EXPECT_FALSE(main.LogFrame(1).Visible());
  EXPECT_EQ(main.Height(), height - 700);
  EXPECT_EQ(h.Setting("Configuration", "LogFrameVisible1"), "0");
  EXPECT_EQ(s->LogFrameVisible(1).Value(), 0);
  s->LogFrameVisible(1).UserToggle();
  EXPECT_EQ(main.LogFrameSelect(1).Value(), 1);
  EXPECT_TRUE(main.LogFrame(1).Visible());
  EXPECT_EQ(main.Height(), height);
  EXPECT_EQ(h.Setting("Configuration", "LogFrameVisible1"), "1");
}

TEST_F(VellumSetupHandlers, TheMainWindowsPanelBoxComesHereAndDoesTheSame) {
  VellumMain& main = app->main;
  main.LogFrameSelect(1).UserToggle();
  EXPECT_EQ(s->LogFrameVisible(1).Value(), 0);
  EXPECT_FALSE(main.LogFrame(1).Visible());
  EXPECT_EQ(h.Setting("Configuration", "LogFrameVisible1"), "0");
  EXPECT_FALSE(main.IgnoreFrameSelectFlag);
  // The next click on the main window's box is the operator's again.
  main.LogFrameSelect(1).UserToggle();
  EXPECT_EQ(s->LogFrameVisible(1).Value(), 1);
  EXPECT_TRUE(main.LogFrame(1).Visible());
}

TEST_F(VellumSetupHandlers, TheCallsignIsEchoedAsItIsTyped) {
  s->MyCallsign.UserSetText("");
  s->MyCallsign.UserType("W1AW");
  EXPECT_EQ(app->main.DefaultCallsignCheckbox.Caption(),
            "Substitute W1AW for missing operator callsigns");
  EXPECT_EQ(app->main.DefaultCallsignCheckbox.ToolTipText(),
            "If checked, W1AW will be substituted for missing operator callsigns in imported "
            "records");
}

TEST_F(VellumSetupHandlers, DisplaySecondsSwitchesTheFormat) {
  s->DisplaySecondsCheckbox.UserToggle();
  EXPECT_EQ(s->GetDateTimeFormat(), "ddddd   hh:nn:ss");
  s->DisplaySecondsCheckbox.UserToggle();
  EXPECT_EQ(s->GetDateTimeFormat(), "ddddd   hh:nn");
  EXPECT_EQ(h.Setting("Configuration", "DateTimeFormat"), "<missing>");
}

TEST_F(VellumSetupHandlers, TheTooltipsBoxClearsAndRestoresEveryExplanation) {
  ASSERT_EQ(s->AwardCheck(3).ToolTipText(), "check to generate QSLs for 160M awards");
  ASSERT_FALSE(app->main.DefaultCallsignCheckbox.ToolTipText().empty());
  s->TooltipsCheckbox.UserToggle();
  EXPECT_EQ(s->AwardCheck(3).ToolTipText(), "");
  EXPECT_EQ(s->OpenLogCmd.ToolTipText(), "");
  EXPECT_EQ(app->main.DefaultCallsignCheckbox.ToolTipText(), "");
  EXPECT_EQ(h.Setting("General", "ShowToolTips"), "False");
  s->TooltipsCheckbox.UserToggle();
  EXPECT_EQ(s->AwardCheck(3).ToolTipText(), "check to generate QSLs for 160M awards");
  EXPECT_EQ(s->OpenLogCmd.ToolTipText(), "click to open the specified log file");
  EXPECT_EQ(app->main.DefaultCallsignCheckbox.ToolTipText(),
            "If checked, K1ABC will be substituted for missing operator callsigns in imported "
            "records");
  EXPECT_EQ(h.Setting("General", "ShowToolTips"), "True");
}

TEST(VellumSetupTooltips, HiddenExplanationsStayHiddenAtTheNextStart) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.settings.SaveSetting("Vellumar", "General", "ShowToolTips", "False");
  Application& app = h.Start();
  EXPECT_EQ(h.setup().TooltipsCheckbox.Value(), 0);
  EXPECT_EQ(h.setup().AwardCheck(3).ToolTipText(), "");
  EXPECT_EQ(app.main.DefaultCallsignCheckbox.ToolTipText(), "");
  h.setup().TooltipsCheckbox.UserToggle();
  EXPECT_EQ(h.setup().AwardCheck(3).ToolTipText(), "check to generate QSLs for 160M awards");
}

TEST_F(VellumSetupHandlers, CheckingTheCallbookWithoutItsLibraryIsRefused) {
  h.desktop.ExpectMsgBox(test::kCallbookMissing).WithTitle("Vellumar");
  s->RACEnabled.UserToggle();
  EXPECT_EQ(s->RACEnabled.Value(), 0);
  EXPECT_FALSE(app->main.RACcmd.Enabled());
  EXPECT_EQ(h.Setting("RAC", "RACEnabled"), "0");
}

TEST_F(VellumSetupHandlers, WithTheLibraryTheCallbookCommandFollowsTheBox) {
  s->CallbookInstalled = [] { return true; };
  s->RACEnabled.UserToggle();
  EXPECT_EQ(s->RACEnabled.Value(), 1);
  EXPECT_TRUE(app->main.RACcmd.Enabled());
  EXPECT_EQ(h.Setting("RAC", "RACEnabled"), "1");
  s->RACEnabled.UserToggle();
  EXPECT_FALSE(app->main.RACcmd.Enabled());
  EXPECT_EQ(h.Setting("RAC", "RACEnabled"), "0");
}

TEST(VellumSetupCallbook, AStoredSwitchIsCheckedAgainstTheLibraryAtLoad) {
  ProgramHarness h;
  h.Seed("Configuration", "Callsign", "K1ABC");
  h.Seed("RAC", "RACEnabled", "1");
  Application& app = h.Build();
  app.setup().CallbookInstalled = [] { return true; };
  h.Start();
  EXPECT_EQ(h.setup().RACEnabled.Value(), 1);
  EXPECT_TRUE(app.main.RACcmd.Enabled());
}

TEST_F(VellumSetupHandlers, TheCallbookFolderGoesToTheLibraryUpToEightyCharacters) {
  std::vector<std::string> folders;
  s->SetCallbookPathname = [&](const std::string& f) { folders.push_back(f); };
  // "/" + 78 characters + "/" is a folder of 80.
  const std::string folder80 = "/" + std::string(78, 'c') + "/";
  s->RACPathname.UserSetText(folder80 + "Callbook.exe");
  EXPECT_EQ(folders, std::vector<std::string>{folder80});
  EXPECT_EQ(h.Setting("RAC", "Pathname"), folder80 + "Callbook.exe");

  const std::string folder81 = "/" + std::string(79, 'c') + "/";
  h.desktop.ExpectMsgBox(
      "The length of the pathname of the folder containing Callbook.exe cannot exceed 80 "
      "characters");
  s->RACPathname.UserSetText(folder81 + "Callbook.exe");
  EXPECT_EQ(folders.size(), 1u);
  EXPECT_EQ(h.Setting("RAC", "Pathname"), folder80 + "Callbook.exe");
}

TEST_F(VellumSetupHandlers, TheCallbookFolderIsTrimmedAndEndsInItsSeparator) {
  std::vector<std::string> folders;
  s->SetCallbookPathname = [&](const std::string& f) { folders.push_back(f); };
  s->RACPathname.UserSetText("  /opt/callbook/Callbook.exe");
  s->RACPathname.UserSetText("E:\\Callbook.exe");
  s->RACPathname.UserSetText("Callbook.exe");
  EXPECT_EQ(folders, (std::vector<std::string>{"/opt/callbook/", "E:\\", "/"}));
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(VellumSetupHandlers, BrowsingForTheCallbookTakesTheChoice) {
  h.desktop.ExpectOpenFile("/media/cdrom/Callbook.exe");
  s->RACBrowseCmd.UserClick();
  EXPECT_EQ(s->RACPathname.Text(), "/media/cdrom/Callbook.exe");
  EXPECT_EQ(h.Setting("RAC", "Pathname"), "/media/cdrom/Callbook.exe");
  h.desktop.ExpectOpenFileCancel();
  s->RACBrowseCmd.UserClick();
  EXPECT_EQ(s->RACPathname.Text(), "/media/cdrom/Callbook.exe");
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(VellumSetupHandlers, OffsetsTakeDigitsAndOnePoint) {
  s->NarrowTopOffset.UserSetText("");
  s->NarrowTopOffset.UserType("0.5.7a-");
  EXPECT_EQ(s->NarrowTopOffset.Text(), "0.57");
  EXPECT_EQ(h.Setting("QSL", "NarrowTopOffset"), "0.57");
  s->NarrowTopOffset.UserKey(ui::vbKeyBack, 0, ui::vbKeyBack);
  EXPECT_EQ(s->NarrowTopOffset.Text(), "0.5");
  EXPECT_EQ(h.Setting("QSL", "NarrowTopOffset"), "0.5");
}

TEST_F(VellumSetupHandlers, LabelCountsTakeDigitsOnly) {
  s->NarrowLabelsPerColumn.UserSetText("");
  s->NarrowLabelsPerColumn.UserType("1.2x");
  EXPECT_EQ(s->NarrowLabelsPerColumn.Text(), "12");
  EXPECT_EQ(h.Setting("QSL", "NarrowLabelsPerColumn"), "12");
  s->EnvelopeWideLabelsPerColumn.UserSetText("");
  s->EnvelopeWideLabelsPerColumn.UserType(".8");
  EXPECT_EQ(s->EnvelopeWideLabelsPerColumn.Text(), "8");
  EXPECT_EQ(h.Setting("QSL", "WideLabelsPerColumn"), "8");
}

TEST_F(VellumSetupHandlers, AnEmptyOffsetCountsAsZero) {
  s->WideTopOffset.UserSetText("1.25");
  EXPECT_EQ(h.Setting("QSL", "WideTopOffset"), "1.25");
  s->WideTopOffset.UserSetText("");
  EXPECT_EQ(h.Setting("QSL", "WideTopOffset"), "0");
}

TEST_F(VellumSetupHandlers, EachOffsetWritesItsKey) {
  struct Case {
    ui::TextBox& box;
    const char* key;
  };
  const Case cases[] = {
      {s->NarrowTopOffset, "NarrowTopOffset"},
      {s->NarrowColumnOffset(0), "NarrowColumnOffset1"},
      {s->NarrowColumnOffset(1), "NarrowColumnOffset2"},
      {s->NarrowColumnOffset(2), "NarrowColumnOffset3"},
      {s->NarrowLabelsPerColumn, "NarrowLabelsPerColumn"},
      {s->WideTopOffset, "WideTopOffset"},
      {s->WideColumnOffset(0), "WideColumnOffset1"},
      {s->WideColumnOffset(1), "WideColumnOffset2"},
      {s->WideLabelsPerColumn, "WideLabelsPerColumn"},
      {s->EnvelopeLeftOffset, "EnvelopeLeftOffset"},
      {s->EnvelopeTopOffset, "EnvelopeTopOffset"},
      {s->EnvelopeNarrowTopOffset, "NarrowTopOffset"},
      {s->EnvelopeNarrowColumnOffset(0), "NarrowColumnOffset1"},
      {s->EnvelopeNarrowColumnOffset(2), "NarrowColumnOffset3"},
      {s->EnvelopeNarrowLabelsPerColumn, "NarrowLabelsPerColumn"},
      {s->EnvelopeWideTopOffset, "WideTopOffset"},
      {s->EnvelopeWideColumnOffset(1), "WideColumnOffset2"},
      {s->EnvelopeWideLabelsPerColumn, "WideLabelsPerColumn"},
  };
  int n = 0;
  for (const Case& c : cases) {
    const std::string value = std::to_string(++n);
    c.box.UserSetText(value);
    EXPECT_EQ(h.Setting("QSL", c.key), value) << c.box.Name() << c.box.Index();
  }
}

TEST_F(VellumSetupHandlers, TheBrowserIsWrittenAtEachChange) {
  s->BrowserPathname.UserSetText("/usr/bin/lynx");
  EXPECT_EQ(h.Setting("Configuration", "BrowserPathname"), "/usr/bin/lynx");
  EXPECT_EQ(app->common.BrowserPathname(), "/usr/bin/lynx");
}

TEST_F(VellumSetupHandlers, EachHelpButtonOpensTheConfigurationPage) {
  const std::string page = h.DataPath() + "/Help/Configuration.htm";
  h.desktop.ExpectMsgBox("missing help file: " + page);
  s->HelpCmd(0).UserClick();
  ASSERT_TRUE(test::WriteFileText(page, "<html></html>"));
  h.desktop.ExpectShell("Open", page, "");
  s->HelpCmd(1).UserClick();
  s->BrowserPathname.UserSetText("/usr/bin/lynx");
  h.desktop.ExpectShell("Open", "/usr/bin/lynx", page);
  s->HelpCmd(2).UserClick();
}

TEST_F(VellumSetupHandlers, TheClearButtonsEmptyTheirCorners) {
  for (int i = 0; i < 4; ++i) {
    s->QSLInfoUpperLeft(i).SetText("UL");
    s->QSLInfoUpperRight(i).SetText("UR");
  }
  s->QSLInfoLowerLeft.SetText("LL");
  s->QSLInfoLowerRight.SetText("LR");
  s->ClearUpperLeftCmd.UserClick();
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(s->QSLInfoUpperLeft(i).Text(), "");
    EXPECT_EQ(s->QSLInfoUpperRight(i).Text(), "UR");
  }
  s->ClearUpperRightCmd.UserClick();
  EXPECT_EQ(s->QSLInfoUpperRight(3).Text(), "");
  EXPECT_EQ(s->QSLInfoLowerLeft.Text(), "LL");
  s->ClearLowerLeftCmd.UserClick();
  EXPECT_EQ(s->QSLInfoLowerLeft.Text(), "");
  EXPECT_EQ(s->QSLInfoLowerRight.Text(), "LR");
  s->ClearLowerRightCmd.UserClick();
  EXPECT_EQ(s->QSLInfoLowerRight.Text(), "");
}

TEST_F(VellumSetupHandlers, TheControlsCarryTheirCaptions) {
  EXPECT_EQ(s->SetupTab.Tabs(), 10);
  const char* tabs[] = {"General", "Log",      "Awards",  "QSL Cards", "QSL Labels",
                        "eQSL",    "Callbook", "Printer", "Envelopes", "Address Labels"};
  for (int i = 0; i < 10; ++i) EXPECT_EQ(s->SetupTab.TabCaption(i), tabs[i]);
  EXPECT_EQ(s->RunCheck.Caption(), "Run-mode");
  EXPECT_EQ(s->ConfirmDeleteCheck.Caption(), "Confirm QSO deletion");
  EXPECT_EQ(s->LookupPrevQSOCheck.Caption(), "Display previous QSOs on Lookup");
  EXPECT_EQ(s->AutoSetDateTimeCheck.Caption(), "Automatically set QSO date && time");
  EXPECT_EQ(s->DisplaySecondsCheckbox.Caption(), "Display seconds in date/time fields");
  EXPECT_EQ(s->SetCaptureQSLRequestCheck.Caption(), "Preset 'QSL Requested' checkbox");
  EXPECT_EQ(s->TooltipsCheckbox.Caption(), "show control explanations");
  EXPECT_EQ(s->LogFrameVisible(0).Caption(), "Auxillary fields");
  EXPECT_EQ(s->LogFrameVisible(1).Caption(), "QSL fields");
  EXPECT_EQ(s->LogFrameVisible(2).Caption(), "Award fields");
  EXPECT_EQ(s->LogFrameVisible(3).Caption(), "Contest fields");
  EXPECT_EQ(s->RACEnabled.Caption(), "Fill in fields with callbook data");
  // Every control belongs to the window, so that the tool tips reach it.
  EXPECT_EQ(s->MyCallsign.Parent(), s);
  EXPECT_EQ(s->EnvelopeWideColumnOffset(1).Parent(), s);
  EXPECT_EQ(s->PrintQualityButton(4).Parent(), s);
}

TEST_F(VellumSetupHandlers, PrintQualitiesExcludeEachOther) {
  s->PrintQualityButton(2).UserSelect();
  s->PrintQualityButton(4).UserSelect();
  EXPECT_FALSE(s->PrintQualityButton(2).Value());
  EXPECT_TRUE(s->PrintQualityButton(4).Value());
  EXPECT_EQ(s->PrintQualityGroup.Selected(), 3);
}

}  // namespace
}  // namespace vellumar
