#include "support/scripted_desktop.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "platform/vb/error.h"

namespace vellumar::test {
namespace {

TEST(ScriptedDesktop, AnswersFromTheScriptInOrder) {
  ScriptedDesktop desktop;
  desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes)
      .WithButtons(ui::vbYesNo)
      .WithTitle("Vellumar");
  desktop.ExpectInputBox("K1ABC").WithPrompt("callsign?");
  desktop.ExpectOpenFile("/tmp/in.adi");
  desktop.ExpectSaveFile("/tmp/out.adi");
  desktop.ExpectShell("Open", "/tmp/report.txt", "", 42).WithShow(ui::kShowNormal);
  desktop.ExpectOpenWith("/tmp/report.txt");

  EXPECT_EQ(desktop.MsgBox("Delete current QSO?", ui::vbYesNo, "Vellumar"), ui::vbYes);
  EXPECT_EQ(desktop.InputBox("callsign?", "Vellumar initialization", ""), "K1ABC");
  ui::FileDialogRequest request;
  request.title = "ADIF Import";
  request.filter = "ADIF (*.adi)|*.adi";
  EXPECT_EQ(desktop.OpenFileDialog(request), "/tmp/in.adi");
  EXPECT_EQ(desktop.SaveFileDialog(request), "/tmp/out.adi");
  EXPECT_EQ(desktop.ShellExecute("Open", "/tmp/report.txt", "", "", ui::kShowNormal), 42);
  desktop.OpenWith("/tmp/report.txt");

  EXPECT_EQ(desktop.PendingExpectations(), 0u);
  ASSERT_EQ(desktop.Calls().size(), 6u);
  EXPECT_EQ(desktop.Calls()[1].title, "Vellumar initialization");
  EXPECT_EQ(desktop.Calls()[2].dialog.filter, "ADIF (*.adi)|*.adi");
  EXPECT_EQ(desktop.MessageBoxTexts(), std::vector<std::string>{"Delete current QSO?"});
}

TEST(ScriptedDesktop, CancelledFileDialogRaises32755) {
  ScriptedDesktop desktop;
  desktop.ExpectOpenFileCancel();
  desktop.ExpectSaveFileCancel();
  try {
    desktop.OpenFileDialog({});
    ADD_FAILURE() << "no error raised";
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), 32755);
  }
  try {
    desktop.SaveFileDialog({});
    ADD_FAILURE() << "no error raised";
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), vb::kCancelSelected);
  }
}

TEST(ScriptedDesktop, MatchesByPrefixWhenAsked) {
  ScriptedDesktop desktop;
  desktop.ExpectMsgBoxStartingWith("missing help file: ");
  EXPECT_EQ(desktop.MsgBox("missing help file: /x/Help/Log.htm", ui::vbOKOnly, "Vellumar"),
            ui::vbOK);
}

TEST(ScriptedDesktop, UnexpectedMessageFailsTheTestWithItsText) {
  ScriptedDesktop desktop;
  int answer = 0;
  EXPECT_NONFATAL_FAILURE(
      answer = desktop.MsgBox("unable to open log database: /x.vdb", ui::vbYesNo, "Vellumar"),
      "unable to open log database: /x.vdb");
  EXPECT_EQ(answer, ui::vbNo);  // the safe answer, so the program under test goes on sensibly
  EXPECT_EQ(desktop.Calls().size(), 1u);
}

TEST(ScriptedDesktop, WrongTextFailsTheTestWithBothTexts) {
  ScriptedDesktop desktop;
  desktop.ExpectMsgBox("backup aborted", ui::vbOK);
  EXPECT_NONFATAL_FAILURE(desktop.MsgBox("backup done", ui::vbOKOnly, "Vellumar"),
                          "expected \"backup aborted\", got \"backup done\"");
  EXPECT_EQ(desktop.PendingExpectations(), 0u);
}

TEST(ScriptedDesktop, WrongKindOfCallFails) {
  ScriptedDesktop desktop;
  desktop.ExpectInputBox("x");
  EXPECT_NONFATAL_FAILURE(desktop.MsgBox("hello", ui::vbOKOnly, "Vellumar"),
                          "unexpected message box \"hello\"");
  EXPECT_EQ(desktop.InputBox("p", "t", ""), "x");
}

TEST(ScriptedDesktop, WrongTitleOrButtonsFail) {
  ScriptedDesktop desktop;
  desktop.ExpectMsgBox("q?", ui::vbYes).WithTitle("Vellumar").WithButtons(ui::vbYesNo);
  EXPECT_NONFATAL_FAILURE(desktop.MsgBox("q?", ui::vbYesNo, "Other"), "title");
  desktop.ExpectMsgBox("q?", ui::vbYes).WithButtons(ui::vbYesNo);
  EXPECT_NONFATAL_FAILURE(desktop.MsgBox("q?", ui::vbOKOnly, "Vellumar"), "buttons");
}

TEST(ScriptedDesktop, UnexpectedFileDialogFailsAndCancels) {
  ScriptedDesktop desktop;
  ui::FileDialogRequest request;
  request.title = "ADIF Export";
  EXPECT_NONFATAL_FAILURE(EXPECT_THROW(desktop.SaveFileDialog(request), vb::VbError),
                          "ADIF Export");
}

TEST(ScriptedDesktop, ExpectationsLeftOverFailWhenTheDesktopGoesAway) {
  EXPECT_NONFATAL_FAILURE(
      {
        ScriptedDesktop desktop;
        desktop.ExpectMsgBox("never shown");
      },
      "never shown");
}

TEST(ScriptedDesktop, ScreenSizeIsSettable) {
  ScriptedDesktop desktop;
  EXPECT_EQ(desktop.Screen().width, 1920);
  desktop.SetScreen({1024, 768});
  EXPECT_EQ(desktop.Screen().width, 1024);
  EXPECT_EQ(desktop.Screen().height, 768);
}

}  // namespace
}  // namespace vellumar::test
