// An operator logs with the real window on the offscreen platform: keys and clicks go to the
// widgets, and the log file and the award progress show what they did.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMimeData>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <optional>

#include "config/vellum_setup.h"
#include "platform/vb/date_locale.h"
#include "program/application.h"
#include "qt/program_views.h"
#include "qt/qt_event_loop.h"
#include "qt/qt_program_test.h"
#include "support/frame_harness.h"
#include "support/program_harness.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

namespace vellumar::qt {
namespace {

class OperatorTest : public test::QtProgramTest {
 protected:
  OperatorTest() {
    desktop_.ExpectInputBox("K1ABC").WithPrompt(vellumar::test::kFirstRunPrompt);
    desktop_.ExpectMsgBox(vellumar::test::kCallbookMissing);
    StartProgram();
    app_->setup().TransmitPower.SetText("100");
    window()->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window()));
    // The start-up's last timer moves through the log once; the operator begins after it.
    for (int i = 0; i < 100 && app_->main.InitTimer.Enabled(); ++i) QTest::qWait(20);
    EXPECT_FALSE(app_->main.InitTimer.Enabled());
  }

  QWidget* window() { return views_->main.window(); }
  template <typename W>
  W* Find(const std::string& name) {
    W* w = window()->findChild<W*>(QString::fromStdString(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
  }
  QLineEdit* Box(int i) { return Find<QLineEdit>("Fieldbox(" + std::to_string(i) + ")"); }
  std::string Text(int i) { return Box(i)->text().toStdString(); }
  // Keys go where the focus is, as they do for the operator.
  QWidget* Focus() {
    QWidget* w = QApplication::focusWidget();
    EXPECT_NE(w, nullptr);
    return w ? w : window();
  }
  void Keys(const char* text) { QTest::keyClicks(Focus(), QString::fromUtf8(text)); }
  void Key(Qt::Key key, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    QTest::keyClick(Focus(), key, mods);
  }
  // Alt+letter, the mnemonic of a command button: Qt's shortcut map delivers it, and the
  // button clicks once its pressed look has shown.
  void Alt(Qt::Key key) {
    QTest::keyClick(window(), key, Qt::AltModifier);
    QTest::qWait(250);
  }

  long Rows() {
    db::Recordset rs = app_->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    if (rs.BOF() && rs.EOF_()) return 0;
    rs.MoveLast();
    return rs.RecordCount();
  }
  std::string Value(const std::string& call, const std::string& field) {
    db::Recordset rs = app_->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.FindFirst("Call = '" + call + "'");
    return rs.NoMatch() ? "<no QSO>" : rs.Fields(field).Value().ToStringOrEmpty();
  }
  std::string Letter(const std::string& code, const std::string& column) {
    db::Recordset rs = app_->module.LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '" + code + "'");
    return rs.NoMatch() ? "<none>" : rs.Fields(column).Value().ToStringOrEmpty();
  }
};

TEST_F(OperatorTest, LogsTwoQSOsAndDeletesOneFromTheKeyboardAndTheMouse) {
  // An empty log: Alt+N begins the first QSO, the callsign has the focus.
  ASSERT_FALSE(Box(1)->isEnabled());
  Alt(Qt::Key_N);
  ASSERT_TRUE(Box(1)->isEnabled());
  ASSERT_EQ(QApplication::focusWidget(), Box(1));
  Keys("dl1abc");
  EXPECT_EQ(Text(1), "DL1ABC");
  Key(Qt::Key_Return);
  // The panel fills: operator, power, time, entity, zones.
  EXPECT_EQ(Text(7), "K1ABC");
  EXPECT_EQ(Text(18), "100");
  EXPECT_FALSE(Text(19).empty());
  EXPECT_EQ(Text(2), "DL");
  EXPECT_EQ(Find<QComboBox>("Fieldcombo(2)")->currentText(), QStringLiteral("DL"));
  EXPECT_EQ(Text(3), "230");
  EXPECT_EQ(Text(22), "EU");
  EXPECT_EQ(Text(24), "14");
  EXPECT_EQ(Text(23), "28");
  // The report sent has the focus; a frequency gives the band, the list gives the mode.
  ASSERT_EQ(QApplication::focusWidget(), Box(14));
  Keys("579");
  Key(Qt::Key_Return);
  Keys("559");
  Box(4)->setFocus();
  Keys("14.025");
  EXPECT_EQ(Text(0), "20M");
  auto* mode = Find<QComboBox>("Fieldcombo(5)");
  mode->setFocus();
  Keys("CW");
  EXPECT_EQ(mode->currentText(), QStringLiteral("CW"));
  EXPECT_EQ(Text(5), "CW");
  EXPECT_TRUE(window()->windowTitle().contains(QStringLiteral("K1ABC.vdb")));
  Box(6)->setFocus();
  Keys("Karl");
  Key(Qt::Key_S, Qt::ControlModifier);
  // In the file, and counted.
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(Value("DL1ABC", "RST_Sent"), "579");
  EXPECT_EQ(Value("DL1ABC", "RST_Rcvd"), "559");
  EXPECT_EQ(Value("DL1ABC", "Name"), "Karl");
  EXPECT_EQ(Value("DL1ABC", "Band"), "20M");
  EXPECT_EQ(Letter("230", "20M"), "W");
  EXPECT_EQ(Letter("230", "CW"), "W");
  EXPECT_FALSE(Find<QPushButton>("SaveCmd")->isEnabled());

  // The second QSO, saved with the right button of Save: a third, empty one begins.
  Alt(Qt::Key_N);
  ASSERT_EQ(QApplication::focusWidget(), Box(1));
  Keys("g4xyz");
  Key(Qt::Key_Return);
  EXPECT_EQ(Text(4), "14.025");  // the frequency and mode are remembered
  EXPECT_EQ(Text(5), "CW");
  Keys("599");
  QTest::mouseClick(Find<QPushButton>("SaveCmd"), Qt::RightButton);
  EXPECT_EQ(Value("G4XYZ", "DXCCPrefix"), "G");
  EXPECT_EQ(Letter("223", "CW"), "W");
  EXPECT_EQ(Rows(), 3);
  EXPECT_EQ(Text(1), "");
  EXPECT_EQ(QApplication::focusWidget(), Box(1));
  auto* grid = Find<QTableView>("LogGrid");
  EXPECT_EQ(grid->model()->rowCount(), 3);

  // The empty one goes, after its question.
  desktop_.ExpectMsgBox("Delete current QSO?", ui::vbYes).WithButtons(ui::vbYesNo);
  QTest::mouseClick(Find<QPushButton>("DeleteCmd"), Qt::LeftButton);
  EXPECT_EQ(desktop_.PendingExpectations(), 0u);
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(Text(1), "G4XYZ");
  EXPECT_EQ(grid->model()->rowCount(), 2);
  // And the moves have their keys too.
  Alt(Qt::Key_I);
  EXPECT_EQ(Text(1), "DL1ABC");
  Alt(Qt::Key_L);
  EXPECT_EQ(Text(1), "G4XYZ");
}

TEST_F(OperatorTest, TextDroppedOnASlotFillsItAndTheNextKeyMarksTheQSO) {
  Alt(Qt::Key_N);
  Keys("g4xyz");
  Key(Qt::Key_Return);
  Key(Qt::Key_S, Qt::ControlModifier);
  ASSERT_FALSE(app_->module.RecordModified());
  QMimeData data;
  data.setText(QStringLiteral("Nigel"));
  QLineEdit* name = Box(6);
  const QPoint at = name->rect().center();
  QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(name, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(at), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(name, &drop);
  EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
  EXPECT_EQ(Text(6), "Nigel");
  EXPECT_FALSE(app_->module.RecordModified());  // a drop alone marks nothing
  name->setFocus();
  Key(Qt::Key_Right);
  EXPECT_TRUE(app_->module.RecordModified());
  Key(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(Value("G4XYZ", "Name"), "Nigel");
}

TEST_F(OperatorTest, ListFieldsTakeTypedValuesAndTheGridEditsInPlace) {
  Alt(Qt::Key_N);
  Keys("g4xyz");
  Key(Qt::Key_Return);
  // A mode and a band in no list, typed into their boxes.
  auto* mode = Find<QComboBox>("Fieldcombo(5)");
  auto* band = Find<QComboBox>("Fieldcombo(0)");
  ASSERT_TRUE(Box(5)->isVisible());
  ASSERT_TRUE(Box(0)->isVisible());
  // The operator clicks into each box, selects its text and types over it.
  QTest::mouseClick(Box(5), Qt::LeftButton);
  ASSERT_EQ(QApplication::focusWidget(), Box(5));
  Key(Qt::Key_A, Qt::ControlModifier);
  Keys("FT8");
  QTest::mouseClick(Box(0), Qt::LeftButton);
  ASSERT_EQ(QApplication::focusWidget(), Box(0));
  Key(Qt::Key_A, Qt::ControlModifier);
  Keys("60M");
  EXPECT_EQ(mode->currentIndex(), 0);
  EXPECT_EQ(band->currentIndex(), 0);
  Key(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(Value("G4XYZ", "Mode"), "FT8");
  EXPECT_EQ(Value("G4XYZ", "Band"), "60M");
  EXPECT_EQ(Text(5), "FT8");
  EXPECT_EQ(mode->currentIndex(), 0);
  EXPECT_EQ(band->currentIndex(), 0);
  // A listed mode typed in lower case: the list shows it.
  Box(5)->setFocus();
  Box(5)->selectAll();
  Keys("cw");
  EXPECT_EQ(mode->currentText(), QStringLiteral("CW"));
  EXPECT_EQ(Text(5), "cw");
  Key(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(Value("G4XYZ", "Mode"), "cw");

  // The name edited in the grid's cell: the row changes in the file and the panel follows.
  auto* grid = Find<QTableView>("LogGrid");
  int nameColumn = -1;
  for (int c = 0; c < grid->model()->columnCount(); ++c)
    if (grid->model()->headerData(c, Qt::Horizontal).toString() == QStringLiteral("Name"))
      nameColumn = c;
  ASSERT_GE(nameColumn, 0);
  const QModelIndex cell = grid->model()->index(0, nameColumn);
  grid->scrollTo(cell);
  const QPoint middle = grid->visualRect(cell).center();
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, middle);
  QTest::mouseDClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, middle);
  // The cell's editor: the one shown (a closed one may linger until deleted).
  const auto openEditor = [grid]() -> QLineEdit* {
    for (QLineEdit* e : grid->viewport()->findChildren<QLineEdit*>())
      if (e->isVisible()) return e;
    return nullptr;
  };
  QLineEdit* editor = openEditor();
  ASSERT_NE(editor, nullptr) << "no editor opened on the cell";
  editor->selectAll();
  QTest::keyClicks(editor, QStringLiteral("Nigel"));
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::qWait(50);  // the view commits a closed editor's text from its event queue
  EXPECT_EQ(Value("G4XYZ", "Name"), "Nigel");
  EXPECT_EQ(Text(6), "Nigel");
  EXPECT_EQ(grid->model()->data(cell).toString(), QStringLiteral("Nigel"));
  EXPECT_FALSE(app_->module.RecordModified());
  // A name longer than the field: the label turns red, nothing is written.
  QTest::mouseDClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, middle);
  editor = openEditor();
  ASSERT_NE(editor, nullptr);
  editor->selectAll();
  QTest::keyClicks(editor, QStringLiteral("A name longer than twenty"));
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::qWait(50);  // the view commits a closed editor's text from its event queue
  EXPECT_EQ(Value("G4XYZ", "Name"), "Nigel");
  EXPECT_TRUE(app_->main.FieldInError[6]);
}

}  // namespace
}  // namespace vellumar::qt
