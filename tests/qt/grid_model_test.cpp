// The grid over a recordset: a log of 100,000 QSOs shows its count and the cells in sight, reads
// only a window of rows around them, follows the data control's current row, and moves it when
// the user picks a row.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QCoreApplication>
#include <QHeaderView>
#include <QTableView>
#include <QTest>
#include <string>

#include "platform/bound/data_control.h"
#include "platform/bound/grid.h"
#include "platform/db/database.h"
#include "qt/grid_binder.h"
#include "support/temp_dir.h"

namespace vellumar::qt {
namespace {

constexpr int kRows = 100000;

std::string CallOf(int i) { return "K" + std::to_string(i) + "X"; }

// A log table with kRows rows, written in one transaction straight through SQLite (the record
// layer commits every row, which is right for a log and slow for a fixture).
void MakeBigLog(const std::string& path) {
  db::Database created = db::DBEngine::Workspaces(0).CreateDatabase(path);
  db::TableDef table = created.CreateTableDef("QSOs");
  table.Fields().Append(table.CreateField("Call", db::dbText, 13));
  table.Fields().Append(table.CreateField("Freq", db::dbDouble));
  created.TableDefs().Append(table);
  created.Close();

  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &raw), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(raw, "BEGIN", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_stmt* insert = nullptr;
  ASSERT_EQ(
      sqlite3_prepare_v2(raw, "INSERT INTO QSOs (Call, Freq) VALUES (?, ?)", -1, &insert, nullptr),
      SQLITE_OK);
  for (int i = 0; i < kRows; ++i) {
    const std::string call = CallOf(i);
    sqlite3_bind_text(insert, 1, call.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(insert, 2, 14.0 + i / 1000.0);
    ASSERT_EQ(sqlite3_step(insert), SQLITE_DONE);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  ASSERT_EQ(sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(raw);
}

class GridModelTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = new test::TempDir("vellumar-grid");
    MakeBigLog(dir_->Join("big.vdb"));
  }
  static void TearDownTestSuite() {
    delete dir_;
    dir_ = nullptr;
  }

  void SetUp() override {
    database_ = db::DBEngine::Workspaces(0).OpenDatabase(dir_->Join("big.vdb"));
    position_.SetRecordset(database_.OpenRecordset("QSOs", db::dbOpenDynaset));
    grid_.Columns() = {{"Call", "Call", 1500, "", true}, {"Freq", "Freq", 1200, "0.000", true}};
    grid_.SetDataSource(&position_);
    view_ = new QTableView;
    view_->resize(600, 400);
    binder_ = std::make_unique<GridBinder>(grid_, view_);
    view_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view_));
  }
  void TearDown() override {
    binder_.reset();
    delete view_;
    database_.Close();
  }

  QString Cell(int row, int column) {
    return binder_->model().data(binder_->model().index(row, column)).toString();
  }

  static test::TempDir* dir_;
  db::Database database_;
  ui::DataControl position_{"LogPosition"};
  ui::Grid grid_{"LogGrid"};
  QTableView* view_ = nullptr;
  std::unique_ptr<GridBinder> binder_;
};
test::TempDir* GridModelTest::dir_ = nullptr;

TEST_F(GridModelTest, CountsEveryRowButReadsOnlyThoseInSight) {
  const RecordsetTableModel& model = binder_->model();
  EXPECT_EQ(model.rowCount(), kRows);
  EXPECT_EQ(model.columnCount(), 2);
  EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Freq"));
  QTest::qWait(20);  // painted
  EXPECT_EQ(Cell(0, 0), QString::fromStdString(CallOf(0)));
  EXPECT_EQ(Cell(5, 1), QStringLiteral("14.005"));
  EXPECT_GT(model.RowsFetched(), 0);
  EXPECT_LE(model.RowsFetched(), 2 * RecordsetTableModel::kFetchWindow);

  view_->scrollToBottom();
  QTest::qWait(20);
  EXPECT_EQ(Cell(kRows - 1, 0), QString::fromStdString(CallOf(kRows - 1)));
  EXPECT_EQ(Cell(kRows - 1, 1), QStringLiteral("113.999"));
  EXPECT_LE(model.RowsFetched(), 4 * RecordsetTableModel::kFetchWindow);
}

TEST_F(GridModelTest, FollowsTheDataControlsCurrentRow) {
  position_.MoveLast();
  EXPECT_EQ(view_->currentIndex().row(), kRows - 1);
  position_.MoveFirst();
  position_.MoveNext();
  EXPECT_EQ(view_->currentIndex().row(), 1);
  EXPECT_LE(binder_->model().RowsFetched(), 8 * RecordsetTableModel::kFetchWindow);
}

TEST_F(GridModelTest, AWalkOverTheRowsReadsEachRowAFewTimesAtMost) {
  // A report walks the view through the data control, yielding once per row; the grid
  // follows without reading the rows in sight again at every step.
  constexpr int kSteps = 2000;
  position_.MoveFirst();
  QTest::qWait(20);
  const std::int64_t before = binder_->model().RowsFetched();
  for (int i = 0; i < kSteps; ++i) {
    position_.MoveNext();
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(view_->currentIndex().row(), kSteps);
  EXPECT_LT(binder_->model().RowsFetched() - before, 4 * kSteps);
}

TEST_F(GridModelTest, AnEditedRowIsReadAgainWhenTheProgramMovesOn) {
  position_.MoveFirst();
  QTest::qWait(20);
  EXPECT_EQ(Cell(0, 0), QString::fromStdString(CallOf(0)));
  db::Recordset rs = position_.Recordset();
  rs.Edit();
  rs.Fields("Call").SetValue(vb::Variant(std::string("W1AW")));
  rs.Update();
  position_.MoveNext();
  EXPECT_EQ(Cell(0, 0), QStringLiteral("W1AW"));
}

TEST_F(GridModelTest, PickingARowMovesTheDataControlAndRaisesRowColChange) {
  position_.MoveFirst();
  std::vector<db::BookmarkValue> lastRows;
  std::vector<int> lastCols;
  grid_.RowColChange = [&](const db::BookmarkValue& lastRow, int lastCol) {
    lastRows.push_back(lastRow);
    lastCols.push_back(lastCol);
  };
  int repositions = 0;
  position_.Reposition = [&] { ++repositions; };
  const db::BookmarkValue first = position_.Recordset().Bookmark();
  const QRect cell = view_->visualRect(binder_->model().index(3, 1));
  QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, cell.center());
  EXPECT_EQ(position_.Recordset().AbsolutePosition(), 3);
  EXPECT_EQ(position_.Recordset().Fields("Call").Value().ToStringOrEmpty(), CallOf(3));
  EXPECT_EQ(repositions, 1);
  ASSERT_EQ(lastRows.size(), 1u);
  EXPECT_EQ(lastRows[0], first);
  EXPECT_EQ(lastCols[0], 0);
  EXPECT_EQ(grid_.Col(), 1);
}

TEST_F(GridModelTest, ColumnResizeByTheUserReachesTheGrid) {
  std::vector<int> resized;
  grid_.ColResize = [&](int column) { resized.push_back(column); };
  view_->horizontalHeader()->resizeSection(1, 140);  // as a drag of the header does
  EXPECT_EQ(resized, (std::vector<int>{1}));
  EXPECT_EQ(grid_.Columns()[1].Width, 140 * 15);
}

TEST_F(GridModelTest, NewRowsAppearWhenTheDataControlSaysSo) {
  db::Recordset rs = position_.Recordset();
  rs.AddNew();
  rs.Fields("Call").SetValue(vb::Variant(std::string("ZZ9ZZ")));
  rs.Update();
  position_.RowsChanged();
  EXPECT_EQ(binder_->model().rowCount(), kRows + 1);
  EXPECT_EQ(Cell(kRows, 0), QStringLiteral("ZZ9ZZ"));
}

}  // namespace
}  // namespace vellumar::qt
