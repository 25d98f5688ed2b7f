// The Log Page Display and its layout in Qt windows: the whole program on the offscreen
// platform over a log of 100,000 QSOs shows the layout's columns, reading only the rows in
// sight, and the LogLayout grid of the configuration window edits the layout.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTableView>
#include <QTest>
#include <optional>
#include <string>
#include <vector>

#include "config/vellum_setup.h"
#include "frame/settings_store.h"
#include "platform/vb/date_locale.h"
#include "platform/vb/format.h"
#include "program/application.h"
#include "qt/conversions.h"
#include "qt/program_views.h"
#include "qt/qt_event_loop.h"
#include "qt/qt_program_test.h"
#include "qt/recordset_table_model.h"
#include "support/frame_harness.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

namespace vellumar::qt {
namespace {

constexpr int kQSOs = 100000;
constexpr double kFirstDay = 45292.25;  // 1 January 2024 06:00 UTC

const std::vector<QString> kDefaultCaptions = {
    QStringLiteral("Call"), QStringLiteral("DXCC"), QStringLiteral("Starting UTC"),
    QStringLiteral("Band"), QStringLiteral("Mode"), QStringLiteral("Sent"),
    QStringLiteral("Rcvd"), QStringLiteral("Name")};

std::string CallOf(int i) { return "K" + std::to_string(i) + "Q"; }
double BeginOf(int i) { return kFirstDay + i / 1440.0; }  // one QSO a minute

// Fills the log's QSOs in one transaction straight through SQLite, dates as day values.
void FillLog(const std::string& path) {
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &raw), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(raw, "BEGIN", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_stmt* insert = nullptr;
  ASSERT_EQ(sqlite3_prepare_v2(raw,
                               "INSERT INTO QSOs (Call, Band, Mode, Freq, QSO_Begin, QSO_End) "
                               "VALUES (?, '20M', 'CW', '14.025', ?, ?)",
                               -1, &insert, nullptr),
            SQLITE_OK);
  for (int i = 0; i < kQSOs; ++i) {
    const std::string call = CallOf(i);
    sqlite3_bind_text(insert, 1, call.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(insert, 2, BeginOf(i));
    sqlite3_bind_double(insert, 3, BeginOf(i));
    ASSERT_EQ(sqlite3_step(insert), SQLITE_DONE);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  ASSERT_EQ(sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(raw);
}

class LogLayoutViewTest : public test::QtProgramTest {
 protected:
  void SetUp() override {
    SeedReturningOperator();
    StartProgram();
    ASSERT_TRUE(app_->module.LogOpen());
  }

  std::string LogPath() const { return dir_.Join("data") + "/Databases/K1ABC.vdb"; }
  std::string Setting(const std::string& key) const {
    return settings_.GetSetting("Vellumar", "LogGrid", key, "<missing>");
  }
  QTableView* LogGridView() {
    return views_->main.window()->findChild<QTableView*>(QStringLiteral("LogGrid"));
  }
  RecordsetTableModel* LogGridModel() {
    return dynamic_cast<RecordsetTableModel*>(LogGridView()->model());
  }
  QTableView* LayoutView() {
    return views_->setup.window()->findChild<QTableView*>(QStringLiteral("LogLayout"));
  }
  ui::Grid& grid() { return app_->main.LogGrid; }
  ui::Grid& layout() { return app_->setup().LogLayout; }
  // Opens the cell's editor in the LogLayout view, as a double click does; the editor is the
  // drop-down of a column with a list, else a line edit.
  QWidget* OpenEditor(int row, int column) {
    QTableView* view = LayoutView();
    Settle();  // the editor of an earlier edit is gone
    const QModelIndex index = view->model()->index(row, column);
    view->setCurrentIndex(index);
    view->edit(index);
    if (auto* combo = view->viewport()->findChild<QComboBox*>(QStringLiteral("ValueItems")))
      return combo;
    const auto edits = view->viewport()->findChildren<QLineEdit*>();
    return edits.isEmpty() ? nullptr : edits.back();
  }
  // The view commits an editor's text and deletes a closed editor from posted events.
  static void Settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  QStringList Headers() {
    QStringList out;
    QAbstractItemModel* model = LogGridView()->model();
    for (int c = 0; c < model->columnCount(); ++c)
      out << model->headerData(c, Qt::Horizontal).toString();
    return out;
  }
};

TEST_F(LogLayoutViewTest, TheGridOverAHundredThousandQSOsShowsTheLayoutAndReadsOnlyTheRowsInSight) {
  app_->module.CloseLog();
  FillLog(LogPath());
  app_->module.OpenLog(LogPath(), false);
  ASSERT_TRUE(app_->module.LogOpen());
  QTableView* view = LogGridView();
  ASSERT_NE(view, nullptr);
  ASSERT_TRUE(view->isVisible());
  view->grab();  // painted once, as the screen would have it

  RecordsetTableModel* model = LogGridModel();
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(model->rowCount(), kQSOs);
  ASSERT_EQ(model->columnCount(), 8);
  for (int c = 0; c < 8; ++c)
    EXPECT_EQ(model->headerData(c, Qt::Horizontal).toString(), kDefaultCaptions[c]) << c;
  EXPECT_GT(model->RowsFetched(), 0);
  EXPECT_LE(model->RowsFetched(), 4 * RecordsetTableModel::kFetchWindow);

  // The newest QSO is the current one, in sight, in the layout's formats and alignment.
  const int last = kQSOs - 1;
  EXPECT_EQ(view->currentIndex().row(), last);
  EXPECT_EQ(model->data(model->index(last, 0)).toString(), ToQString(CallOf(last)));
  EXPECT_EQ(model->data(model->index(last, 2)).toString(),
            ToQString(vb::FormatDate(BeginOf(last), app_->setup().GetDateTimeFormat())));
  EXPECT_EQ(model->data(model->index(last, 2), Qt::TextAlignmentRole).value<Qt::Alignment>() &
                Qt::AlignHorizontal_Mask,
            Qt::AlignRight);
  for (int c = 0; c < 8; ++c)
    EXPECT_EQ(view->columnWidth(c),
              PixelsFromTwips(grid().Columns()[static_cast<size_t>(c)].Width));
  EXPECT_LE(model->RowsFetched(), 4 * RecordsetTableModel::kFetchWindow);

  // A new alignment of the layout aligns the cells.
  const auto alignment = [&](int column) {
    return model->data(model->index(last, column), Qt::TextAlignmentRole).value<Qt::Alignment>() &
           Qt::AlignHorizontal_Mask;
  };
  app_->module.UpdateLayout(0, 2, "Left");
  EXPECT_EQ(alignment(0), Qt::AlignLeft);
  app_->module.UpdateLayout(0, 2, "Center");
  EXPECT_EQ(alignment(0), Qt::AlignHCenter);
  EXPECT_EQ(alignment(1), Qt::AlignRight);
}

TEST_F(LogLayoutViewTest, TheColumnsStandInTheirOrderAndAMoveByTheUserIsKept) {
  grid().Columns()[0].Order = 2;
  grid().Columns()[1].Order = 0;
  grid().Columns()[2].Order = 1;
  grid().ColumnsChanged();
  QHeaderView* header = LogGridView()->horizontalHeader();
  EXPECT_EQ(header->visualIndex(0), 2);
  EXPECT_EQ(header->visualIndex(1), 0);
  EXPECT_EQ(header->visualIndex(2), 1);
  EXPECT_TRUE(header->sectionsMovable());

  // A drag of the header: the model takes the new places, and the widths are saved.
  header->moveSection(header->visualIndex(7), 0);  // Name first
  EXPECT_EQ(grid().Columns()[7].Order, 0);
  EXPECT_EQ(grid().Columns()[1].Order, 1);
  EXPECT_EQ(grid().Columns()[0].Order, 3);
  EXPECT_EQ(Setting("LogColumnWidth7"), std::to_string(grid().Columns()[7].Width));
  app_->module.CloseLog();
  EXPECT_EQ(Setting("FieldOrder7"), "0");
  EXPECT_EQ(Setting("FieldOrder0"), "3");
}

TEST_F(LogLayoutViewTest, ADragOfAColumnsEdgeSavesItsWidthOnceAtTheEnd) {
  QTableView* view = LogGridView();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(view->window()));
  int resizes = 0;
  const auto save = grid().ColResize;
  grid().ColResize = [&](int column) {
    ++resizes;
    save(column);
  };
  QHeaderView* header = view->horizontalHeader();
  QWidget* edges = header->viewport();
  const int before = header->sectionSize(0);
  const QPoint edge(header->sectionViewportPosition(0) + before - 1, header->height() / 2);
  QTest::mousePress(edges, Qt::LeftButton, {}, edge);
  for (int step = 1; step <= 4; ++step) {
    QMouseEvent move(QEvent::MouseMove, edge + QPoint(10 * step, 0),
                     edges->mapToGlobal(edge + QPoint(10 * step, 0)), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(edges, &move);
  }
  EXPECT_GT(header->sectionSize(0), before);
  EXPECT_EQ(resizes, 0);  // not while the drag goes on
  QTest::mouseRelease(edges, Qt::LeftButton, {}, edge + QPoint(40, 0));
  EXPECT_EQ(resizes, 1);
  EXPECT_EQ(grid().Columns()[0].Width, TwipsFromPixels(header->sectionSize(0)));
  EXPECT_EQ(Setting("LogColumnWidth0"), std::to_string(grid().Columns()[0].Width));
}

TEST_F(LogLayoutViewTest, ALayoutCaptionEditedInTheConfigurationWindowRenamesTheColumn) {
  app_->setup().ShowPage(kLogPage);
  QTableView* view = LayoutView();
  ASSERT_NE(view, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(view->window()));
  ASSERT_EQ(view->model()->rowCount(), 8);
  ASSERT_EQ(view->model()->columnCount(), 3);
  EXPECT_EQ(view->model()->headerData(2, Qt::Horizontal).toString(), QStringLiteral("Alignment"));
  EXPECT_EQ(view->model()->data(view->model()->index(2, 0)).toString(),
            QStringLiteral("QSO_Begin"));

  auto* editor = qobject_cast<QLineEdit*>(OpenEditor(0, 1));
  ASSERT_NE(editor, nullptr);
  editor->setText(QStringLiteral("Callsign"));
  QTest::keyClick(editor, Qt::Key_Return);
  Settle();
  EXPECT_EQ(layout().ArrayCell(0, 1), "Callsign");
  EXPECT_EQ(Setting("FieldCaption0"), "Callsign");
  EXPECT_EQ(view->model()->data(view->model()->index(0, 1)).toString(), QStringLiteral("Callsign"));
  EXPECT_EQ(Headers().at(0), QStringLiteral("Callsign"));
}

TEST_F(LogLayoutViewTest, PicksFromTheLayoutsListsChangeFieldAndAlignment) {
  app_->setup().ShowPage(kLogPage);
  QTableView* view = LayoutView();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(view->window()));

  auto* fields = qobject_cast<QComboBox*>(OpenEditor(1, 0));
  ASSERT_NE(fields, nullptr);
  EXPECT_EQ(fields->count(), 35);
  EXPECT_EQ(fields->currentText(), QStringLiteral("DXCCPrefix"));
  const int freq = fields->findText(QStringLiteral("Freq"));
  ASSERT_GE(freq, 0);
  fields->setCurrentIndex(freq);
  emit fields->activated(freq);  // as a pick from its list does
  EXPECT_EQ(grid().Columns()[1].DataField, "Freq");
  EXPECT_EQ(grid().Columns()[1].NumberFormat, "  0.000");
  EXPECT_EQ(Setting("FieldName1"), "Freq");
  EXPECT_EQ(view->model()->data(view->model()->index(1, 0)).toString(), QStringLiteral("Freq"));

  auto* alignments = qobject_cast<QComboBox*>(OpenEditor(3, 2));
  ASSERT_NE(alignments, nullptr);
  EXPECT_EQ(alignments->count(), 3);
  const int left = alignments->findText(QStringLiteral("Left"));
  alignments->setCurrentIndex(left);
  emit alignments->activated(left);
  EXPECT_EQ(grid().Columns()[3].Alignment, ui::dbgLeft);
  EXPECT_EQ(Setting("FieldAlignment3"), "Left");
  EXPECT_EQ(LogGridModel()->headerData(3, Qt::Horizontal).toString(), QStringLiteral("Band"));
}

TEST_F(LogLayoutViewTest, InsertAndDeleteKeysAddAndRemoveLayoutRows) {
  app_->setup().ShowPage(kLogPage);
  QTableView* view = LayoutView();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(view->window()));
  view->setFocus();
  view->setCurrentIndex(view->model()->index(2, 0));
  QTest::keyClick(view, Qt::Key_Delete);
  EXPECT_EQ(view->model()->rowCount(), 7);
  EXPECT_EQ(layout().ArrayRowCount(), 7);
  EXPECT_EQ(Setting("FieldName2"), "Band");
  EXPECT_EQ(Setting("FieldName7"), "");
  // The deleted field's column is hidden now, and gone at the next format.
  EXPECT_FALSE(Headers().contains(QStringLiteral("Starting UTC")));
  app_->module.FormatLogGrid();
  EXPECT_EQ(grid().Columns().size(), 7u);

  QTest::keyClick(view, Qt::Key_Insert);
  EXPECT_EQ(view->model()->rowCount(), 8);
  auto* fields = qobject_cast<QComboBox*>(OpenEditor(7, 0));
  ASSERT_NE(fields, nullptr);
  const int locator = fields->findText(QStringLiteral("GRIDSQUARE"));
  fields->setCurrentIndex(locator);
  emit fields->activated(locator);
  auto* caption = qobject_cast<QLineEdit*>(OpenEditor(7, 1));
  ASSERT_NE(caption, nullptr);
  caption->setText(QStringLiteral("Locator"));
  QTest::keyClick(caption, Qt::Key_Return);
  Settle();
  EXPECT_EQ(Setting("FieldName7"), "GRIDSQUARE");
  EXPECT_EQ(Setting("FieldCaption7"), "Locator");
  EXPECT_EQ(Headers().back(), QStringLiteral("Locator"));
}

}  // namespace
}  // namespace vellumar::qt
