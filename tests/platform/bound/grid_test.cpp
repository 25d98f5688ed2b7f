// The grid's model: editing the cells of an array grid with its events in order, adding and
// deleting rows, column moves and sizes, and cell formats.
#include "platform/bound/grid.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/services/desktop.h"
#include "platform/vb/error.h"

using namespace vellumar;
using namespace vellumar::ui;

namespace {

class ArrayGrid : public ::testing::Test {
 protected:
  ArrayGrid() {
    grid.SetDataMode(Grid::kArrayData);
    grid.Columns() = {{"Field", "", 1500}, {"Caption", "", 1500}, {"Alignment", "", 1000}};
    grid.Columns()[2].ValueItems = {"Left", "Center", "Right"};
    grid.SetArray({{"Call", "Call", "Right"}, {"Band", "Band", "Left"}});
    grid.BeforeColUpdate = [&](int col, const std::string& old, int& cancel) {
      events.push_back("BeforeColUpdate " + std::to_string(col) + " " + old + " -> " +
                       grid.EditText());
      if (refuse) cancel = 1;
    };
    grid.AfterColUpdate = [&](int col) {
      events.push_back("AfterColUpdate " + std::to_string(col));
    };
    grid.ComboSelect = [&](int col) {
      events.push_back("ComboSelect " + std::to_string(col) + " " + grid.EditText());
    };
    grid.SelChange = [&](int&) { events.push_back("SelChange"); };
    grid.BeforeDelete = [&](int& cancel) {
      events.push_back("BeforeDelete " + std::to_string(grid.Row()));
      if (refuse) cancel = 1;
    };
    grid.AfterDelete = [&] { events.push_back("AfterDelete"); };
    grid.BeforeInsert = [&](int& cancel) {
      events.push_back("BeforeInsert");
      if (refuse) cancel = 1;
    };
    grid.AfterInsert = [&] { events.push_back("AfterInsert " + std::to_string(grid.Row())); };
  }
  Grid grid{"LogLayout"};
  std::vector<std::string> events;
  bool refuse = false;
};

TEST_F(ArrayGrid, AnEditIsStoredWhenItEnds) {
  grid.UserType(1, 1, "Bnd");
  EXPECT_TRUE(grid.EditActive());
  EXPECT_EQ(grid.EditText(), "Bnd");
  EXPECT_EQ(grid.ArrayCell(1, 1), "Band");  // not yet
  grid.UserCommitEdit();
  EXPECT_FALSE(grid.EditActive());
  EXPECT_EQ(grid.ArrayCell(1, 1), "Bnd");
  EXPECT_EQ(events, (std::vector<std::string>{"SelChange", "BeforeColUpdate 1 Band -> Bnd",
                                              "AfterColUpdate 1"}));
}

TEST_F(ArrayGrid, ARefusedEditLeavesTheCell) {
  refuse = true;
  grid.UserEditCell(0, 0, "Mode");
  EXPECT_EQ(grid.ArrayCell(0, 0), "Call");
  EXPECT_EQ(grid.EditText(), "Call");
  EXPECT_FALSE(grid.EditActive());
}

TEST_F(ArrayGrid, ACancelledEditRaisesNothing) {
  grid.UserType(0, 1, "X");
  events.clear();
  grid.UserCancelEdit();
  EXPECT_EQ(grid.ArrayCell(0, 1), "Call");
  EXPECT_TRUE(events.empty());
}

TEST_F(ArrayGrid, APickFromTheListRaisesComboSelectWithTheItemInTheEditor) {
  grid.UserSelectComboItem(0, 2, 1);
  EXPECT_EQ(events.back(), "ComboSelect 2 Center");
  EXPECT_TRUE(grid.EditActive());
  grid.UserSelectCell(1, 0);  // leaving the cell ends the edit
  EXPECT_EQ(grid.ArrayCell(0, 2), "Center");
  EXPECT_EQ(grid.Row(), 1);
  EXPECT_EQ(grid.Col(), 0);
  // An item the list hasn't is no pick.
  events.clear();
  grid.UserSelectComboItem(0, 2, 7);
  grid.UserSelectComboItem(0, 1, 0);
  EXPECT_TRUE(events.empty());
}

TEST_F(ArrayGrid, DeletingARowRaisesBeforeAndAfterWithTheRowCurrent) {
  grid.UserDeleteRow(0);
  EXPECT_EQ(events, (std::vector<std::string>{"BeforeDelete 0", "AfterDelete"}));
  ASSERT_EQ(grid.ArrayRowCount(), 1);
  EXPECT_EQ(grid.ArrayCell(0, 0), "Band");
  refuse = true;
  grid.UserDeleteRow(0);
  EXPECT_EQ(grid.ArrayRowCount(), 1);
}

TEST_F(ArrayGrid, InsertingAddsAnEmptyRowAtTheEnd) {
  grid.UserInsertRow();
  EXPECT_EQ(events, (std::vector<std::string>{"BeforeInsert", "AfterInsert 2"}));
  ASSERT_EQ(grid.ArrayRowCount(), 3);
  EXPECT_EQ(grid.Array()[2], (Grid::ArrayRow{"", "", ""}));
  refuse = true;
  grid.UserInsertRow();
  EXPECT_EQ(grid.ArrayRowCount(), 3);
}

TEST_F(ArrayGrid, SettingACellGrowsTheArray) {
  grid.SetArrayCell(4, 1, "Notes");
  ASSERT_EQ(grid.ArrayRowCount(), 5);
  EXPECT_EQ(grid.ArrayCell(4, 1), "Notes");
  EXPECT_EQ(grid.ArrayCell(3, 0), "");
  EXPECT_EQ(grid.ArrayCell(9, 0), "");
  EXPECT_THROW(grid.SetArrayCell(-1, 0, "x"), vb::VbError);
}

TEST_F(ArrayGrid, ADisabledGridTakesNoInput) {
  grid.SetEnabled(false);
  grid.UserEditCell(0, 0, "Mode");
  grid.UserDeleteRow(0);
  grid.UserInsertRow();
  EXPECT_TRUE(events.empty());
  EXPECT_EQ(grid.ArrayRowCount(), 2);
}

TEST(GridColumns, AMoveGivesEveryShownColumnItsPlace) {
  Grid grid("LogGrid");
  grid.Columns() = {{"A", "a"}, {"B", "b"}, {"C", "c"}, {"D", "d"}};
  grid.Columns()[3].Visible = false;
  std::vector<std::pair<int, int>> moves;
  grid.ColMove = [&](int col, int position) { moves.emplace_back(col, position); };
  grid.UserMoveColumn(2, 0);
  EXPECT_EQ(moves, (std::vector<std::pair<int, int>>{{2, 0}}));
  EXPECT_EQ(grid.Columns()[2].Order, 0);
  EXPECT_EQ(grid.Columns()[0].Order, 1);
  EXPECT_EQ(grid.Columns()[1].Order, 2);
  EXPECT_EQ(DisplayOrder(grid.Columns(), 3), 3);  // hidden: keeps its index
  grid.UserMoveColumn(2, 9);                      // beyond the end: last
  EXPECT_EQ(grid.Columns()[2].Order, 2);
  EXPECT_EQ(grid.Columns()[0].Order, 0);
  grid.SetAllowColMove(false);
  grid.UserMoveColumn(0, 2);
  EXPECT_EQ(moves.size(), 2u);
}

TEST(GridColumns, AResizeSetsTheWidthAndRaisesColResize) {
  Grid grid("LogGrid");
  grid.Columns() = {{"A", "a"}, {"B", "b"}};
  std::vector<int> resized;
  grid.ColResize = [&](int col) { resized.push_back(col); };
  grid.UserResizeColumn(1, 2500);
  EXPECT_EQ(grid.Columns()[1].Width, 2500);
  EXPECT_EQ(resized, std::vector<int>{1});
  grid.SetAllowColResize(false);
  grid.UserResizeColumn(0, 10);
  EXPECT_EQ(grid.Columns()[0].Width, 1000);
}

TEST(GridColumns, CellsGoThroughTheColumnsFormat) {
  Grid grid("LogGrid");
  grid.Columns() = {{"Freq", "Freq", 1000, "  0.000"}, {"Call", "Call"}};
  std::vector<std::string> errors;
  grid.FormatError = [&](int col, const std::string& text) {
    errors.push_back(std::to_string(col) + ": " + text);
  };
  EXPECT_EQ(grid.FormatCell(0, vb::Variant(14.0)), "  14.000");
  EXPECT_EQ(grid.FormatCell(0, vb::Variant::Null()), "");
  EXPECT_EQ(grid.FormatCell(1, vb::Variant(std::string("K1ABC"))), "K1ABC");
  grid.Columns()[0].NumberFormat = "dd-mmm-yyyy";
  EXPECT_EQ(grid.FormatCell(0, vb::Variant::FromDate(1e7)), "");  // beyond 9999: no text at all
  EXPECT_EQ(errors,
            std::vector<std::string>{"0: " + vb::ErrorDescription(vb::kInvalidProcedureCall)});
}

TEST(Desktop, TheApproximateWidthsGrowWithTheTextTheSizeAndBold) {
  const Font small{"MS Sans Serif", 8.25, false, false};
  const Font large{"MS Sans Serif", 12, false, false};
  const Font bold{"MS Sans Serif", 8.25, true, false};
  EXPECT_EQ(ApproximateTextWidth(small, ""), 0);
  EXPECT_LT(ApproximateTextWidth(small, "  "), ApproximateTextWidth(small, "ab"));
  EXPECT_LT(ApproximateTextWidth(small, "ab"), ApproximateTextWidth(small, "WW"));
  EXPECT_LT(ApproximateTextWidth(small, "Call"), ApproximateTextWidth(large, "Call"));
  EXPECT_LT(ApproximateTextWidth(small, "Call"), ApproximateTextWidth(bold, "Call"));
  // "W" is 0.9 of an em of 8.25 points, 20 twips a point.
  EXPECT_EQ(ApproximateTextWidth(small, "W"), 149);
}

}  // namespace
