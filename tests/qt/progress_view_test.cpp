// The Check Progress tab and the DXCC Summary window in Qt on the offscreen platform: an operator
// logs QSOs, recomputes with the bar in view, reads the letters in the grid, then opens the
// Summary, switches programme and closes it by its frame, and finds the grids kept.
#include <gtest/gtest.h>

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <string>

#include "qt/qt_program_test.h"
#include "support/program_harness.h"

namespace vellumar::qt {
namespace {

class ProgressViewTest : public test::QtProgramTest {
 protected:
  ProgressViewTest() {
    SeedReturningOperator();
    StartProgram();
    for (int i = 0; i < 100 && app_->main.InitTimer.Enabled(); ++i) QTest::qWait(20);
  }
  QWidget* window() { return views_->main.window(); }
  QWidget* summaryWindow() { return views_->dxccSummary.window(); }
  template <typename W>
  W* Find(QWidget* in, const std::string& name) {
    W* w = in->findChild<W*>(QString::fromStdString(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
  }
  // A QSO logged through the panel's widgets: callsign, Enter, band and mode from the lists.
  void LogQSO(const char* call, const char* band, const char* mode) {
    Find<QPushButton>(window(), "NewCmd")->click();
    QLineEdit* callsign = Find<QLineEdit>(window(), "Fieldbox(1)");
    callsign->setFocus();
    QTest::keyClicks(callsign, QString::fromUtf8(call));
    QTest::keyClick(callsign, Qt::Key_Return);
    app_->main.Fieldcombo(0).UserSelect(IndexOf(app_->main.Fieldcombo(0), band));
    app_->main.Fieldcombo(5).UserSelect(IndexOf(app_->main.Fieldcombo(5), mode));
    Find<QPushButton>(window(), "SaveCmd")->click();
  }
  static int IndexOf(ui::ComboBox& combo, const std::string& item) {
    for (int i = 0; i < combo.ListCount(); ++i)
      if (combo.List(i) == item) return i;
    ADD_FAILURE() << "no item " << item;
    return 0;
  }
  // The text of the Check Progress grid's cell in the row of a prefix, by column caption.
  std::string GridCell(const std::string& prefix, const QString& caption) {
    QAbstractItemModel* model = Find<QTableView>(window(), "ProgressGrid")->model();
    int column = -1, prefixColumn = -1;
    for (int c = 0; c < model->columnCount(); ++c) {
      const QString header = model->headerData(c, Qt::Horizontal).toString();
      if (header == caption) column = c;
      if (header == QStringLiteral("Prefix")) prefixColumn = c;
    }
    EXPECT_GE(column, 0) << caption.toStdString();
    EXPECT_GE(prefixColumn, 0);
    for (int r = 0; r < model->rowCount(); ++r)
      if (model->index(r, prefixColumn).data().toString().toStdString() == prefix)
        return model->index(r, column).data().toString().toStdString();
    return "<no row>";
  }
};

TEST_F(ProgressViewTest, RecomputeWithTheBarThenTheSummaryKeptAcrossItsClose) {
  LogQSO("DL1ABC", "20M", "CW");
  LogQSO("G4XYZ", "40M", "SSB");
  // A status that no QSO supports any more: the recompute takes it away.
  {
    db::Recordset rs = app_->module.LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '223'");
    rs.Edit();
    rs.Fields("15M").SetValue(vb::Variant("F"));
    rs.Update();
  }
  auto* tabs = views_->main.tabs();
  tabs->setCurrentIndex(2);
  QTest::qWait(10);
  ASSERT_EQ(app_->main.TabbedDialog.Tab(), 2);
  auto* bar = Find<QProgressBar>(window(), "RecomputeProgress");
  auto* grid = Find<QTableView>(window(), "ProgressGrid");
  EXPECT_FALSE(bar->isVisible());
  EXPECT_TRUE(grid->isVisible());

  // During the walk the bar shows and the grid doesn't; seen from the walk's first yield.
  bool barSeen = false, gridHidden = false;
  desktop_
      .ExpectMsgBox(
          "clear the progress table and then rebuild by scanning every QSO in the "
          "log?",
          ui::vbYes)
      .Then([&] {
        loop_.Post([&] {
          barSeen = bar->isVisible();
          gridHidden = !grid->isVisible();
        });
      });
  Find<QPushButton>(window(), "ReComputeCmd")->click();
  EXPECT_EQ(desktop_.PendingExpectations(), 0u);
  EXPECT_TRUE(barSeen);
  EXPECT_TRUE(gridHidden);
  EXPECT_FALSE(bar->isVisible());
  EXPECT_TRUE(grid->isVisible());
  // The letters, under the grid's captions.
  EXPECT_EQ(GridCell("DL", QStringLiteral("20M")), "W");
  EXPECT_EQ(GridCell("DL", QStringLiteral("  CW")), "W");
  EXPECT_EQ(GridCell("G", QStringLiteral("40M")), "W");
  EXPECT_EQ(GridCell("G", QStringLiteral("  PH")), "W");
  EXPECT_EQ(GridCell("G", QStringLiteral("15M")), "");
  // The mode columns stand right behind the prefix.
  QHeaderView* header = grid->horizontalHeader();
  QAbstractItemModel* model = grid->model();
  std::vector<std::string> shown;
  for (int visual = 0; visual < header->count(); ++visual) {
    const int logical = header->logicalIndex(visual);
    if (!header->isSectionHidden(logical))
      shown.push_back(model->headerData(logical, Qt::Horizontal).toString().toStdString());
  }
  ASSERT_GE(shown.size(), 6u);
  EXPECT_EQ(shown[0], "Prefix");
  EXPECT_EQ(shown[1], "  PH");
  EXPECT_EQ(shown[4], " PSK");
  EXPECT_EQ(shown[5], "160M");

  // The Summary: DXCC at first, TOP by its button, and back.
  Find<QPushButton>(window(), "SummaryCmd")->click();
  ASSERT_TRUE(summaryWindow()->isVisible());
  auto* dxcc = Find<QTableWidget>(summaryWindow(), "DeletedGrid");
  auto* top = Find<QTableWidget>(summaryWindow(), "UnDeletedGrid");
  EXPECT_TRUE(dxcc->isVisible());
  EXPECT_FALSE(top->isVisible());
  EXPECT_EQ(summaryWindow()->windowTitle(),
            QStringLiteral("DXCC Summary (includes deleted countries)"));
  // The table is redrawn a frame at a time while the counts change: the last frame follows.
  ASSERT_TRUE(QTest::qWaitFor([&] {
    return dxcc->rowCount() == 24 && dxcc->item(22, 0) != nullptr &&
           dxcc->item(22, 0)->text() == QStringLiteral(" 4");
  }));
  EXPECT_EQ(dxcc->rowCount(), 24);
  EXPECT_EQ(dxcc->columnCount(), 3);
  EXPECT_EQ(dxcc->horizontalHeaderItem(1)->text(), QStringLiteral("Confirmed "));
  EXPECT_EQ(dxcc->verticalHeaderItem(4)->text(), QStringLiteral("Mixed "));
  EXPECT_EQ(dxcc->item(4, 0)->text(), QStringLiteral(" 2"));   // Mixed worked
  EXPECT_EQ(dxcc->item(13, 0)->text(), QStringLiteral(" 1"));  // 20M worked
  EXPECT_EQ(dxcc->item(22, 0)->text(), QStringLiteral(" 4"));  // HF BandModes worked
  EXPECT_EQ(dxcc->item(4, 1)->text(), QStringLiteral(" "));
  Find<QRadioButton>(summaryWindow(), "ViewUnDeletedButton")->click();
  EXPECT_TRUE(top->isVisible());
  EXPECT_FALSE(dxcc->isVisible());
  EXPECT_EQ(summaryWindow()->windowTitle(),
            QStringLiteral("DXCC Summary (exludes deleted countries)"));
  EXPECT_EQ(top->item(4, 0)->text(), QStringLiteral(" 2"));
  Find<QRadioButton>(summaryWindow(), "ViewDeletedButton")->click();
  EXPECT_TRUE(dxcc->isVisible());

  // Closed by its frame: hidden, not unloaded; shown again with its grids.
  summaryWindow()->close();
  QTest::qWait(10);
  EXPECT_FALSE(summaryWindow()->isVisible());
  EXPECT_TRUE(app_->logPage.dxccSummary.Loaded());
  app_->logPage.dxccSummary.Show();
  QTest::qWait(10);
  EXPECT_TRUE(summaryWindow()->isVisible());
  EXPECT_EQ(dxcc->item(4, 0)->text(), QStringLiteral(" 2"));
  EXPECT_EQ(dxcc->item(13, 0)->text(), QStringLiteral(" 1"));
}

}  // namespace
}  // namespace vellumar::qt
