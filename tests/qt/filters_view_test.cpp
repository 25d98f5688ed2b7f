// The Log page's filters and sorts worked with the real windows on the offscreen platform: the
// filter box and buttons, the Advanced window's boxes, SQL query and composed sort. The grid and
// the captions follow each step.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>

#include "logpage/log_page_helpers.h"
#include "platform/vb/convert.h"
#include "qt/qt_program_test.h"

namespace vellumar::qt {
namespace {

class FiltersViewTest : public test::QtProgramTest {
 protected:
  void SetUp() override {
    SeedReturningOperator();
    StartProgram();
    for (int i = 0; i < 100 && app_->main.InitTimer.Enabled(); ++i) QTest::qWait(20);
    SeedLog();
    main()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(main()));
  }

  void SeedLog() {
    db::Recordset rs = app_->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    if (!(rs.BOF() && rs.EOF_())) {
      rs.MoveFirst();
      while (!rs.EOF_()) {
        rs.Delete();
        rs.MoveNext();
      }
    }
    struct Q {
      const char *call, *begin, *band, *mode;
    };
    for (const Q& q : {Q{"K1ABC", "2024-03-15 07:00", "20M", "CW"},
                       Q{"K1XYZ", "2024-03-15 07:15", "40M", "SSB"},
                       Q{"K2AA", "2024-03-15 07:30", "80M", "CW"},
                       Q{"G3ABC", "2024-03-15 07:45", "20M", "RTTY"},
                       Q{"VP2EAA", "2024-03-15 08:00", "10M", "CW"}}) {
      rs.AddNew();
      rs.Fields("Call").SetValue(vb::Variant(q.call));
      rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(vb::CDate(q.begin)));
      rs.Fields("Band").SetValue(vb::Variant(q.band));
      rs.Fields("Mode").SetValue(vb::Variant(q.mode));
      rs.Update();
    }
    rs.Close();
    app_->module.CloseLog();
    app_->module.OpenLog(app_->logPage.config.LogPathname(), false);
  }

  QWidget* main() { return views_->main.window(); }
  QWidget* advanced() { return views_->advancedFilter.window(); }
  template <typename W>
  W* In(QWidget* window, const std::string& name) {
    W* w = window->findChild<W*>(QString::fromStdString(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
  }
  template <typename W>
  W* Main(const std::string& name) { return In<W>(main(), name); }
  template <typename W>
  W* Adv(const std::string& name) { return In<W>(advanced(), name); }

  int GridRows() {
    QCoreApplication::processEvents();
    return Main<QTableView>("LogGrid")->model()->rowCount();
  }
  std::string GridCall(int row) {
    QAbstractItemModel* model = Main<QTableView>("LogGrid")->model();
    return model->index(row, 0).data().toString().toStdString();
  }
  std::string FilterCaption() { return Main<QGroupBox>("FilterFrame")->title().toStdString(); }
  // The field name typed into the box of names, as the operator may instead of picking it.
  void ChooseName(QComboBox* names, const char* name) {
    QLineEdit* edit = names->lineEdit();
    ASSERT_NE(edit, nullptr);
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, QString::fromUtf8(name));
    ASSERT_EQ(app_->advancedFilter.FieldNameCombo.Text(), name);
  }
  void TypeFilter(const char* text) {
    QLineEdit* box = Main<QLineEdit>("FilterField");
    box->setFocus();
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, QString::fromUtf8(text));
  }
};

TEST_F(FiltersViewTest, TheOperatorFiltersAndSortsWithTheMouseAndTheKeys) {
  ASSERT_EQ(GridRows(), 5);
  EXPECT_EQ(FilterCaption(), "Filter: None");

  // The call filter by its button, then Enter repeats it on another pattern.
  TypeFilter("K1*");
  QTest::mouseClick(Main<QPushButton>("FilterCallCmd"), Qt::LeftButton);
  EXPECT_EQ(GridRows(), 2);
  EXPECT_EQ(FilterCaption(), "Filter: Call=K1*");
  EXPECT_TRUE(main()->windowTitle().contains(QStringLiteral("(filtered)")));
  TypeFilter("g*");
  QTest::keyClick(Main<QLineEdit>("FilterField"), Qt::Key_Return);
  EXPECT_EQ(GridRows(), 1);
  EXPECT_EQ(GridCall(0), "G3ABC");
  EXPECT_EQ(FilterCaption(), "Filter: Call=G*");

  // The right button on the date filter shows the Advanced window.
  QTest::mouseClick(Main<QPushButton>("FilterDateCmd"), Qt::RightButton);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(advanced()));
  EXPECT_EQ(advanced()->windowTitle().toStdString(), "Vellumar Advanced Log Sorts and Filters");
  EXPECT_EQ(FilterCaption(), "Filter: Call=G*");

  // Two band boxes and their Filter button.
  Adv<QCheckBox>("BandCheck(5)")->click();  // 20M
  Adv<QCheckBox>("BandCheck(2)")->click();  // 80M
  QTest::mouseClick(Adv<QPushButton>("BandFilterCmd"), Qt::LeftButton);
  EXPECT_EQ(FilterCaption(), "Filter: 80M, 20M");
  EXPECT_EQ(GridRows(), 3);

  // An SQL query typed, a field name double-clicked into it, and its Filter button.
  QLineEdit* query = Adv<QLineEdit>("SQLquery(0)");
  query->setFocus();
  QTest::keyClicks(query, QStringLiteral("Call LIKE 'K*' AND "));
  QComboBox* names = Adv<QComboBox>("FieldNameCombo");
  ChooseName(names, "Mode");
  QTest::mouseDClick(query, Qt::LeftButton);
  QTest::keyClick(query, Qt::Key_End);  // the double click selected a word
  QTest::keyClicks(query, QStringLiteral(" = 'CW'"));
  EXPECT_EQ(query->text().toStdString(), "Call LIKE 'K*' AND Mode = 'CW'");
  QTest::mouseClick(Adv<QPushButton>("SQLFilterCmd(0)"), Qt::LeftButton);
  EXPECT_EQ(FilterCaption(), "Filter: SQL Query");
  EXPECT_EQ(GridRows(), 2);

  // A sort composed by double clicks: Call descending, then selected and applied.
  ChooseName(names, "Call");
  QTest::mouseDClick(Adv<QLineEdit>("SortField(0)"), Qt::LeftButton);
  Adv<QRadioButton>("SortDescendingButton(0)")->click();
  QTest::mouseDClick(Adv<QLineEdit>("AdvancedSort(1)"), Qt::LeftButton);
  EXPECT_EQ(Adv<QLineEdit>("AdvancedSort(1)")->text().toStdString(), "Call DESC");
  Adv<QRadioButton>("AdvancedSortSelect(1)")->click();
  Main<QRadioButton>("SortAdvancedButton")->click();
  EXPECT_EQ(GridRows(), 2);
  EXPECT_EQ(GridCall(0), "K2AA");
  EXPECT_EQ(GridCall(1), "K1ABC");

  // Closed by its frame, the window hides; Clear shows every QSO in the composed order.
  advanced()->close();
  QCoreApplication::processEvents();
  EXPECT_FALSE(advanced()->isVisible());
  EXPECT_TRUE(app_->advancedFilter.Loaded());
  QTest::mouseClick(Main<QPushButton>("FilterClearCmd"), Qt::LeftButton);
  EXPECT_EQ(FilterCaption(), "Filter: None ");
  EXPECT_EQ(GridRows(), 5);
  EXPECT_EQ(GridCall(0), "VP2EAA");
  EXPECT_FALSE(main()->windowTitle().contains(QStringLiteral("(filtered)")));
}

TEST_F(FiltersViewTest, AFailedSortLeavesTheGridEmptyAndTheUTCSortBringsItBack) {
  app_->advancedFilter.AdvancedSort(0).SetText("Nonesuch");
  app_->advancedFilter.AdvancedSortSelect(0).SetValue(true);
  Main<QRadioButton>("SortAdvancedButton")->click();
  EXPECT_EQ(GridRows(), 0);
  Main<QRadioButton>("SortUTCButton")->click();
  EXPECT_EQ(GridRows(), 5);
  EXPECT_EQ(GridCall(4), "VP2EAA");
}

}  // namespace
}  // namespace vellumar::qt
