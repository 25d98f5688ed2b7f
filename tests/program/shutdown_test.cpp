// The end of a run: the unload order and the settings written only then.
#include <gtest/gtest.h>

#include <string>

#include "config/vellum_setup.h"
#include "platform/db/database.h"
#include "support/program_harness.h"

namespace vellumar {
namespace {

using test::ProgramHarness;

TEST(Shutdown, ClosingTheMainWindowEndsTheProgramInOrder) {
  ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Start();
  ASSERT_TRUE(app.module.LogOpen());
  ASSERT_TRUE(app.CloseMainWindow(ui::vbFormControlMenu));
  EXPECT_TRUE(app.Ended());
  ASSERT_TRUE(h.exitCode.has_value());
  EXPECT_EQ(*h.exitCode, 0);
  // Every window is gone, the log is closed, and the configuration window went before.
  EXPECT_FALSE(app.setup().Loaded());
  EXPECT_FALSE(app.capture.Loaded());
  EXPECT_FALSE(app.cardPage.Loaded());
  EXPECT_FALSE(app.advancedFilter.Loaded());
  EXPECT_FALSE(app.addressEditor.Loaded());
  EXPECT_FALSE(app.module.LogOpen());
  EXPECT_FALSE(app.qslQueue.IsOpen());
  // The main window's place was stored with the Log tab's size.
  EXPECT_EQ(app.main.TabbedDialog.Tab(), 0);
  EXPECT_NE(h.Setting("Windows", "VellumMainWidth"), "<missing>");
  EXPECT_NE(h.Setting("Windows", "VellumMainWindowState"), "<missing>");
}

TEST(Shutdown, SettingsAreWrittenAtTheEndOfARunAndOnlyThen) {
  ProgramHarness h;
  h.desktop.ExpectInputBox("K1ABC");
  h.desktop.ExpectMsgBox(test::kCallbookMissing);
  Application& app = h.Start();
  app.main.LogGrid.SetFont(ui::Font{"DejaVu Sans", 10, true, true});
  app.setup().TransmitPower.SetText("1500");
  app.main.SaveImportErrorsCheck.SetValue(1);
  // Nothing of the general options has reached the store yet.
  EXPECT_EQ(h.Setting("Configuration", "Callsign"), "<missing>");
  EXPECT_EQ(h.Setting("Configuration", "TransmitPower"), "<missing>");
  EXPECT_EQ(h.Setting("Configuration", "SaveImportErrors"), "<missing>");
  EXPECT_EQ(h.Setting("Configuration", "LogFontName"), "<missing>");
  ASSERT_TRUE(app.CloseMainWindow(ui::vbFormControlMenu));
  EXPECT_EQ(h.Setting("Configuration", "Callsign"), "K1ABC");
  EXPECT_EQ(h.Setting("Configuration", "TransmitPower"), "1500");
  EXPECT_EQ(h.Setting("Configuration", "SaveImportErrors"), "1");
  EXPECT_EQ(h.Setting("Configuration", "DefaultImportCallsign"), "1");
  EXPECT_EQ(h.Setting("Configuration", "DXBaseExport"), "False");
  EXPECT_EQ(h.Setting("Configuration", "LogFontName"), "DejaVu Sans");
  EXPECT_EQ(h.Setting("Configuration", "LogFontSize"), "10");
  EXPECT_EQ(h.Setting("Configuration", "LogFontBold"), "True");
  // The italic keys begin with a blank, and are distinct from keys without it.
  EXPECT_EQ(h.Setting("Configuration", " LogFontItalic"), "True");
  EXPECT_EQ(h.Setting("Configuration", "LogFontItalic"), "<missing>");
  EXPECT_EQ(h.Setting("Configuration", " LogPanelFontItalic"), "False");
  EXPECT_EQ(h.Setting("Configuration", "LogPanelFontName"), "MS Sans Serif");
}

TEST(Shutdown, AnEditedUnsavedQSOIsDroppedWithoutAQuestion) {
  ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Start();
  ASSERT_TRUE(app.module.LogOpen());
  h.loop.Advance(300);  // the start-up's last timer
  app.main.Show();
  // A saved QSO, then an edit of it typed and never saved.
  app.main.NewCmd.UserClick();
  app.main.Fieldbox(1).UserType("K2AA");
  app.main.Fieldbox(1).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn);
  app.main.SaveCmd.UserClick();
  app.main.Fieldbox(6).UserType("Bob");
  ASSERT_TRUE(app.module.RecordModified());
  const std::string path = app.module.LogDatabase.Name();
  ASSERT_TRUE(app.CloseMainWindow(ui::vbFormControlMenu));
  EXPECT_FALSE(app.module.RecordModified());
  EXPECT_TRUE(h.desktop.Calls().empty());
  // The file holds the QSO as saved: the typed name went with the window.
  db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(path);
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  rs.FindFirst("Call = 'K2AA'");
  ASSERT_FALSE(rs.NoMatch());
  EXPECT_EQ(rs.Fields("Name").Value().ToStringOrEmpty(), "");
}

TEST(Shutdown, TheShutdownTimerUnloadsWithoutQueryUnload) {
  ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Start();
  bool asked = false;
  app.main.Form_QueryUnload = [&](int& cancel, int) {
    asked = true;
    cancel = 1;
  };
  app.main.ShutdownTimer.SetEnabled(true);
  h.loop.Advance(4999);
  EXPECT_FALSE(app.Ended());
  h.loop.Advance(1);
  EXPECT_TRUE(app.Ended());
  EXPECT_FALSE(asked);
}

TEST(Shutdown, ARunWithErrorsEndsItsErrorLogWithTheShutdownLine) {
  ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Start();
  app.common.ReportError(5, "VellumMain.Form_Resize");
  ASSERT_TRUE(app.CloseMainWindow(ui::vbFormControlMenu));
  const std::string log = h.ErrorLogText();
  ASSERT_GE(log.size(), 18u);
  EXPECT_EQ(log.substr(log.size() - 18), "Vellumar shutdown\n");
}

}  // namespace
}  // namespace vellumar
