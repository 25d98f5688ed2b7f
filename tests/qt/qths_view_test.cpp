// The my QTHs tab in Qt on the offscreen platform: an operator creates three QTHs by typing and
// Enter, deletes the middle one with the confirmation on, and sets the last one's ID into the
// QSOs of a filtered Log Page Display. The tab's picture is saved as my_qths_tab.png in the
// build's test-output folder.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <filesystem>
#include <string>
#include <vector>

#include "qt/qt_program_test.h"
#include "support/program_harness.h"

namespace vellumar::qt {
namespace {

class QTHsViewTest : public test::QtProgramTest {
 protected:
  QTHsViewTest() {
    SeedReturningOperator();
    StartProgram();
    for (int i = 0; i < 100 && app_->main.InitTimer.Enabled(); ++i) QTest::qWait(20);
  }
  QWidget* window() { return views_->main.window(); }
  template <typename W>
  W* Find(const std::string& name) {
    W* w = window()->findChild<W*>(QString::fromStdString(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
  }
  void Click(const std::string& name) { Find<QPushButton>(name)->click(); }
  void TypeInto(const std::string& box, const std::string& text) {
    QLineEdit* edit = Find<QLineEdit>(box);
    edit->setFocus();
    QTest::keyClicks(edit, QString::fromStdString(text));
  }
  // New, the ID and Enter, the city (where Enter took the cursor), Save.
  void CreateQTH(const std::string& id, const std::string& city) {
    Click("NewQTHCmd");
    TypeInto("QTHFieldBox(0)", id);
    QTest::keyClick(Find<QLineEdit>("QTHFieldBox(0)"), Qt::Key_Return);
    EXPECT_TRUE(app_->main.QTHFieldBox(1).HasFocus());
    QTest::keyClicks(Find<QLineEdit>("QTHFieldBox(1)"), QString::fromStdString(city));
    Click("SaveQTHCmd");
  }
  static std::vector<std::string> Items(ui::ComboBox& combo) {
    std::vector<std::string> items;
    for (int i = 0; i < combo.ListCount(); ++i) items.push_back(combo.List(i));
    return items;
  }
  std::string QSOQTH(const std::string& call) {
    db::Recordset rs = app_->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.FindFirst("Call = '" + call + "'");
    return rs.NoMatch() ? "<none>" : rs.Fields("MYQTHID").Value().ToStringOrEmpty();
  }
  void LogQSO(const std::string& call) {
    VellumMain& m = app_->main;
    m.NewCmd.UserClick();
    m.Fieldbox(1).UserType(call);
    m.Fieldbox(1).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn);
    m.SaveCmd.UserClick();
  }
};

TEST_F(QTHsViewTest, ThreeQTHsTypedOneDeletedAndAnIDSetOnAFilteredDisplay) {
  window()->show();
  Find<QTabWidget>("TabbedDialog")->setCurrentIndex(3);
  QCoreApplication::processEvents();
  CreateQTH("home", "Springfield");
  CreateQTH("park", "Greenfield");
  CreateQTH("club", "Westfield");
  EXPECT_EQ(Items(app_->main.Fieldcombo(33)),
            (std::vector<std::string>{"", "home", "park", "club"}));

  // The middle one, after a question.
  app_->setup().ConfirmDeleteCheck.SetValue(1);
  Click("QTHFirstCmd");
  Click("QTHNextCmd");
  ASSERT_EQ(app_->main.QTHFieldBox(0).Text(), "park");
  desktop_.ExpectMsgBox("Delete current QTH?", ui::vbYes);
  Click("DeleteQTHCmd");
  EXPECT_EQ(Items(app_->main.Fieldcombo(33)), (std::vector<std::string>{"", "home", "club"}));
  EXPECT_EQ(Items(app_->capture.MyQTH), (std::vector<std::string>{"", "home", "club"}));

  // "club" into the QSOs of the display filtered on K1*.
  LogQSO("K1ABC");
  LogQSO("G3XYZ");
  app_->main.FilterField.SetText("K1*");
  app_->main.FilterCallCmd.UserClick();
  Find<QTabWidget>("TabbedDialog")->setCurrentIndex(3);
  Click("QTHLastCmd");
  ASSERT_EQ(app_->main.QTHFieldBox(0).Text(), "club");
  desktop_.ExpectMsgBox("Set the myQTH ID in every QSO in the Log Page Display to club ?",
                        ui::vbYes);
  Click("SetLogCmd");
  EXPECT_EQ(QSOQTH("K1ABC"), "club");
  EXPECT_EQ(QSOQTH("G3XYZ"), "");

  QCoreApplication::processEvents();
  const std::filesystem::path folder = std::filesystem::path(VELLUMAR_BINARY_DIR) / "test-output";
  std::filesystem::create_directories(folder);
  const std::string picture = (folder / "my_qths_tab.png").string();
  EXPECT_TRUE(window()->grab().save(QString::fromStdString(picture)));
  EXPECT_TRUE(std::filesystem::file_size(picture) > 1000);
}

}  // namespace
}  // namespace vellumar::qt
