// The main window: its caption, its tabs and the rows of the Log Page Display.
#include <gtest/gtest.h>

#include <string>

#include "config/vellum_setup.h"
#include "support/program_harness.h"

namespace vellumar {
namespace {

using test::ProgramHarness;

class WindowTest : public ::testing::Test {
 protected:
  WindowTest() {
    h.SeedReturningOperator();
    app = &h.Start();
  }
  void AddQSOs(int n) {
    db::Recordset& view = app->main.LogPosition.Recordset();
    for (int i = 0; i < n; ++i) {
      view.AddNew();
      view.Fields("Call").SetValue(vb::Variant("K" + std::to_string(i) + "XYZ"));
      view.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(40000.5 + i));
      view.Update();
    }
  }
  const std::string head = "Vellumar " + Common::Version();
  ProgramHarness h;
  Application* app = nullptr;
};

TEST_F(WindowTest, TheCaptionCountsQSOs) {
  EXPECT_EQ(app->main.Caption(), head + " - K1ABC.vdb : no QSOs");
  AddQSOs(1);
  app->main.UpdateCaption();
  EXPECT_EQ(app->main.Caption(), head + " - K1ABC.vdb : 1 QSO");
  AddQSOs(2);
  app->main.UpdateCaption();
  EXPECT_EQ(app->main.Caption(), head + " - K1ABC.vdb : 3 QSOs");
}

TEST_F(WindowTest, TheCaptionCarriesTheInteroperationText) {
  app->module.SetInteropCaption("Atlasine");
  app->main.UpdateCaption();
  EXPECT_EQ(app->main.Caption(), head + " [Atlasine] - K1ABC.vdb : no QSOs");
  app->module.SetInteropCaption("");
  app->main.UpdateCaption();
  EXPECT_EQ(app->main.Caption(), head + " - K1ABC.vdb : no QSOs");
}

TEST_F(WindowTest, WithAnErrorLogTheCaptionHidesTheLogsName) {
  app->common.ReportError(6, "VellumMain.Form_Resize");
  EXPECT_EQ(app->main.Caption(),
            head + " - see error log in " + h.DataPath() + "/ErrorLog.txt");
}

TEST_F(WindowTest, AModifiedQSOTurnsTheFramesBlue) {
  app->module.SetModified(true);
  EXPECT_EQ(app->main.QSOFrame.ForeColor(), 0xFF0000u);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(app->main.LogFrame(i).ForeColor(), 0xFF0000u);
  EXPECT_TRUE(app->main.SaveCmd.Enabled());
  EXPECT_TRUE(app->main.RevertCmd.Enabled());
  app->module.SetModified(false);
  EXPECT_EQ(app->main.QSOFrame.ForeColor(), 0u);
  EXPECT_FALSE(app->main.SaveCmd.Enabled());
}

TEST_F(WindowTest, AClickOnATabDuringACommandReturnsToTheTabShown) {
  app->main.CommandBusy = true;
  app->main.TabbedDialog.UserSelectTab(2);
  EXPECT_EQ(app->main.TabbedDialog.Tab(), 0);
  EXPECT_FALSE(app->main.IgnoreTabClick);
  app->main.CommandBusy = false;
  app->main.TabbedDialog.UserSelectTab(2);
  EXPECT_EQ(app->main.TabbedDialog.Tab(), 2);
  EXPECT_FALSE(app->main.LogGrid.Visible());
}

TEST_F(WindowTest, TheLogTabKeepsAHeightOfItsOwn) {
  app->main.SetHeight(9000);
  app->main.TabbedDialog.UserSelectTab(2);  // leaving the Log tab records its height
  EXPECT_EQ(h.Setting("Windows", "VellumMainHeight"), "9000");
  app->main.SetHeight(6000);  // the other tabs keep the height they find
  app->main.TabbedDialog.UserSelectTab(3);
  EXPECT_EQ(app->main.Height(), 6000);
  app->main.TabbedDialog.UserSelectTab(0);  // coming back restores it
  EXPECT_EQ(app->main.Height(), 9000);
  EXPECT_TRUE(app->main.LogGrid.Visible());
}

TEST_F(WindowTest, TheGridsHeightGivesLogGridRowsButNotWhenMaximised) {
  app->main.LogGrid.SetRowHeight(240);
  app->main.LogGrid.Move(0, 0, 9000, 240 * 7 + 100);  // a header and six rows
  app->main.VellumMain_Resize();
  EXPECT_EQ(app->module.LogGridRows, 6);
  EXPECT_EQ(h.Setting("Configuration", "LogGridRows"), "6");
  app->main.SetWindowState(ui::vbMaximized);
  app->main.LogGrid.Move(0, 0, 9000, 240 * 20);
  app->main.VellumMain_Resize();
  EXPECT_EQ(app->module.LogGridRows, 6);
}

TEST_F(WindowTest, TheErrorTimerBlinksLabelsAndStopsWhenNoneIsLeft) {
  app->main.SetFieldError(4, true);
  EXPECT_EQ(app->main.FieldLabel(4).ForeColor(), 255u);
  ASSERT_TRUE(app->main.ErrorTimer.Enabled());
  const bool phase = app->main.BlinkPhase;
  h.loop.Advance(250);
  EXPECT_EQ(app->main.FieldLabel(4).Visible(), phase);
  h.loop.Advance(250);
  EXPECT_EQ(app->main.FieldLabel(4).Visible(), !phase);
  app->main.SetFieldError(4, false);
  h.loop.Advance(250);
  EXPECT_TRUE(app->main.FieldLabel(4).Visible());
  EXPECT_FALSE(app->main.ErrorTimer.Enabled());
}

}  // namespace
}  // namespace vellumar
