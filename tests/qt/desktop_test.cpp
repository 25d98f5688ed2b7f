// The Qt desktop's translations: the common dialog's filters, the message box's button sets
// and answers, and the launch of files by their type.
#include "platform/services/desktop.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "platform/vb/error.h"
#include "qt/file_filter.h"
#include "qt/qt_desktop.h"
#include "support/temp_dir.h"

namespace vellumar::qt {
namespace {

TEST(FileFilterTest, PairsBecomeQtEntries) {
  EXPECT_EQ(QtFileFilter("ADIF (*.adi)|*.adi"), QStringLiteral("ADIF (*.adi)"));
  EXPECT_EQ(QtFileFilter("Log (*.vdb)|*.vdb|All files (*.*)|*.*"),
            QStringLiteral("Log (*.vdb);;All files (*)"));
}

TEST(FileFilterTest, DescriptionWithoutPatternsGetsThem) {
  EXPECT_EQ(QtFileFilter("ADIF files|*.adi;*.adif"), QStringLiteral("ADIF files (*.adi *.adif)"));
}

TEST(FileFilterTest, OwnPatternListIsReplacedButOtherParenthesesStay) {
  EXPECT_EQ(QtFileFilter("Text (old)|*.txt"), QStringLiteral("Text (old) (*.txt)"));
  EXPECT_EQ(QtFileFilter("Reports (*.htm;*.txt)|*.htm;*.txt"),
            QStringLiteral("Reports (*.htm *.txt)"));
}

TEST(FileFilterTest, EmptyFilterAndMissingPattern) {
  EXPECT_EQ(QtFileFilter(""), QString());
  EXPECT_EQ(QtFileFilter("Anything"), QStringLiteral("Anything (*)"));
}

TEST(MsgBoxTest, ButtonSetsInTheRuntimesOrder) {
  using B = QMessageBox;
  const auto yesNoCancel = MsgBoxButtons(ui::vbYesNoCancel | ui::vbQuestion);
  ASSERT_EQ(yesNoCancel.size(), 3u);
  EXPECT_EQ(yesNoCancel[0].button, B::Yes);
  EXPECT_EQ(yesNoCancel[1].button, B::No);
  EXPECT_EQ(yesNoCancel[2].button, B::Cancel);
  EXPECT_EQ(MsgBoxButtons(ui::vbOKOnly).size(), 1u);
  EXPECT_EQ(MsgBoxButtons(ui::vbAbortRetryIgnore)[1].result, ui::vbRetry);
  EXPECT_EQ(MsgBoxButtons(ui::vbRetryCancel)[0].button, B::Retry);
  EXPECT_EQ(MsgBoxButtons(ui::vbOKCancel + ui::vbDefaultButton2)[1].result, ui::vbCancel);
}

TEST(MsgBoxTest, AnswersMapBack) {
  EXPECT_EQ(MsgBoxResultFor(ui::vbYesNo, QMessageBox::Yes), ui::vbYes);
  EXPECT_EQ(MsgBoxResultFor(ui::vbYesNo, QMessageBox::No), ui::vbNo);
  EXPECT_EQ(MsgBoxResultFor(ui::vbOKCancel, QMessageBox::Ok), ui::vbOK);
  EXPECT_EQ(MsgBoxResultFor(ui::vbAbortRetryIgnore, QMessageBox::Ignore), ui::vbIgnore);
  // Closed by Escape or the title bar.
  EXPECT_EQ(MsgBoxResultFor(ui::vbOKOnly, QMessageBox::NoButton), ui::vbOK);
  EXPECT_EQ(MsgBoxResultFor(ui::vbYesNoCancel, QMessageBox::NoButton), ui::vbCancel);
}

TEST(MsgBoxTest, IconsFollowTheStyle) {
  EXPECT_EQ(MsgBoxIcon(ui::vbYesNo | ui::vbCritical), QMessageBox::Critical);
  EXPECT_EQ(MsgBoxIcon(ui::vbQuestion), QMessageBox::Question);
  EXPECT_EQ(MsgBoxIcon(ui::vbExclamation), QMessageBox::Warning);
  EXPECT_EQ(MsgBoxIcon(ui::vbInformation), QMessageBox::Information);
  EXPECT_EQ(MsgBoxIcon(ui::vbOKOnly), QMessageBox::NoIcon);
}

// Presses a button of the next modal box as soon as it is up.
void AnswerNextBox(QMessageBox::StandardButton button, QString* seenTitle, QString* seenText) {
  QTimer::singleShot(0, [=] {
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (auto* box = qobject_cast<QMessageBox*>(w); box && box->isVisible()) {
        *seenTitle = box->windowTitle();
        *seenText = box->text();
        box->button(button)->click();
        return;
      }
    }
    ADD_FAILURE() << "no message box came up";
  });
}

TEST(MsgBoxTest, ShowsTitleAndPromptAndAnswersThePressedButton) {
  QtDesktop desktop;
  QString title, text;
  AnswerNextBox(QMessageBox::No, &title, &text);
  EXPECT_EQ(desktop.MsgBox("remove the filter?", ui::vbYesNo | ui::vbQuestion, "Vellumar"),
            ui::vbNo);
  EXPECT_EQ(title, QStringLiteral("Vellumar"));
  EXPECT_EQ(text, QStringLiteral("remove the filter?"));
}

TEST(FileDialogTest, CancelRaises32755) {
  QtDesktop desktop;
  QTimer::singleShot(0, [] {
    if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
  });
  try {
    ui::FileDialogRequest request;
    request.title = "Import";
    request.filter = "ADIF (*.adi)|*.adi";
    desktop.OpenFileDialog(request);
    FAIL() << "a cancelled dialog returned";
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), 32755);
  }
}

TEST(ShellExecuteTest, MissingFileAndUnassociatedType) {
  test::TempDir dir;
  QtDesktop desktop;
  desktop.DefaultApplicationFor = [](const std::string&) { return std::string(); };
  EXPECT_EQ(desktop.ShellExecute("Open", dir.Join("absent.htm"), "", "", ui::kShowNormal),
            ui::kShellFileNotFound);
  ASSERT_TRUE(test::WriteFileText(dir.Join("report.xyz"), "text"));
  EXPECT_EQ(desktop.ShellExecute("Open", dir.Join("report.xyz"), "", "", ui::kShowNormal),
            ui::kShellNoAssociation);
}

TEST(ShellExecuteTest, ProgramWithParametersIsStarted) {
  test::TempDir dir;
  QtDesktop desktop;
  const std::string marker = dir.Join("started");
  // Parameters are quoted as on a command line of the runtime's platform: with double quotes.
  const int result = desktop.ShellExecute("Open", "/bin/sh", "-c \"echo x > " + marker + "\"", "",
                                          ui::kShowNormal);
  EXPECT_GT(result, 32);
  for (int i = 0; i < 100 && !QFile::exists(QString::fromStdString(marker)); ++i) QTest::qWait(20);
  EXPECT_TRUE(QFile::exists(QString::fromStdString(marker)));
}

}  // namespace
}  // namespace vellumar::qt
