#pragma once
// A grid of columns over rows. Bound (the default), its rows are those of a data control and its
// columns name the fields shown; the view draws only the rows in sight, fetching them through
// the data control's recordset. In array mode its rows are texts held by the grid itself, which
// the user edits cell by cell, adds to and deletes from.
//
// Editing a cell of an array grid:
//   not editing --UserType/UserSelectComboItem--> editing (EditActive, EditText holds the text)
//   editing --SetEditActive(false)/UserCommitEdit--> BeforeColUpdate (may cancel)
//           --> the cell takes EditText --> AfterColUpdate --> not editing
//   editing --UserCancelEdit--> not editing, the cell unchanged
#include <functional>
#include <string>
#include <vector>

#include "platform/bound/data_control.h"
#include "platform/ui/controls.h"
#include "platform/vb/variant.h"

namespace vellumar::ui {

// A column's alignment, numbered as the runtime's grid numbers it.
enum ColumnAlignment : int { dbgLeft = 0, dbgRight = 1, dbgCenter = 2 };

struct GridColumn {
  std::string Caption;       // header text
  std::string DataField;     // column of the recordset shown
  int Width = 1000;          // twips
  std::string NumberFormat;  // Format pattern of the values, empty for their plain text
  bool Visible = true;
  int Alignment = dbgLeft;  // ColumnAlignment of the cells
  int Order = -1;           // place among the columns as shown, after moves; -1: its index
  // An array grid offers these texts in a drop-down when the user edits the column's cells;
  // empty for a column edited as free text.
  std::vector<std::string> ValueItems;
};

// The place a column is shown at: its Order, or its index when it has none.
inline int DisplayOrder(const std::vector<GridColumn>& columns, int index) {
  const int order = columns[static_cast<size_t>(index)].Order;
  return order < 0 ? index : order;
}

class Grid : public InputControl {
 public:
  enum GridDataMode : int { kBound = 0, kArrayData = 1 };
  using ArrayRow = std::vector<std::string>;  // one text per column

  using InputControl::InputControl;

  DataControl* DataSource() const { return dataSource_; }
  void SetDataSource(DataControl* d) {
    dataSource_ = d;
    Notify(Property::List);
  }
  // Set at design time, before a view is made for the grid.
  int DataMode() const { return dataMode_; }
  void SetDataMode(int mode) { dataMode_ = mode; }

  std::vector<GridColumn>& Columns() { return columns_; }
  const std::vector<GridColumn>& Columns() const { return columns_; }
  // Announces a change of the columns (captions, widths, order, alignment) to the view.
  void ColumnsChanged() { Notify(Property::List); }
  // Whether the user may move columns and change their widths.
  bool AllowColMove() const { return allowColMove_; }
  void SetAllowColMove(bool v) { Set(allowColMove_, v, Property::List); }
  bool AllowColResize() const { return allowColResize_; }
  void SetAllowColResize(bool v) { Set(allowColResize_, v, Property::List); }

  // Whether the user may edit the cells of a bound grid; an edit writes the row itself.
  bool AllowUpdate() const { return allowUpdate_; }
  void SetAllowUpdate(bool v) { Set(allowUpdate_, v, Property::List); }

  int Col() const { return col_; }
  void SetCol(int c) { Set(col_, c, Property::Selection); }
  int VisibleRows() const { return visibleRows_; }  // rows the view shows at once
  void SetVisibleRows(int n) { Set(visibleRows_, n, Property::Geometry); }
  int RowHeight() const { return rowHeight_; }  // twips
  void SetRowHeight(int h) { rowHeight_ = h; }

  // A cell's text as the column shows it: the value through the column's NumberFormat. A value
  // the format can't take is shown plain, and FormatError tells the program why.
  std::string FormatCell(int colIndex, const vb::Variant& value);

  // ---- Array data ----
  const std::vector<ArrayRow>& Array() const { return array_; }
  void SetArray(std::vector<ArrayRow> rows);
  int ArrayRowCount() const { return static_cast<int>(array_.size()); }
  // "" outside the array.
  std::string ArrayCell(int row, int col) const;
  // Sets one text; the array grows to hold the row.
  void SetArrayCell(int row, int col, const std::string& text);
  int Row() const { return row_; }  // the current row of an array grid, -1 for none
  void SetRow(int r) { Set(row_, r, Property::Selection); }
  bool EditActive() const { return editActive_; }
  // true begins an edit of the current cell with its text; false ends the edit in hand,
  // storing its text as the user's edit is stored.
  void SetEditActive(bool active);
  // The text in the current cell's editor; the cell's text when none is open.
  const std::string& EditText() const { return editText_; }

  // ---- What the user does (the view forwards here; tests call these directly) ----
  // Moves the current cell; an edit in hand ends first. Raises SelChange, which may cancel.
  void UserSelectCell(int row, int col);
  // Types into a cell: it becomes the current cell and its editor holds `text`.
  void UserType(int row, int col, const std::string& text);
  // Picks an item of the column's drop-down: the editor holds it; then ComboSelect.
  void UserSelectComboItem(int row, int col, int item);
  void UserCommitEdit() { SetEditActive(false); }
  void UserCancelEdit();
  // Types a whole new text into a cell and leaves it.
  void UserEditCell(int row, int col, const std::string& text);
  // Strikes a key on the grid: KeyDown, then KeyUp.
  void UserKey(int keyCode, int shift = 0);
  // Deletes a row of an array grid: BeforeDelete (may cancel), the row goes, AfterDelete.
  void UserDeleteRow(int row);
  // Adds an empty row at the end of an array grid: BeforeInsert (may cancel), the row,
  // AfterInsert. The new row becomes the current one.
  void UserInsertRow();
  // Edits a cell of a bound grid's current row, as the user's edit of the cell ends. The new
  // text is EditText while BeforeColUpdate decides (it may cancel). Then the row is written
  // through the data control's recordset: Edit, the bound boxes' own edits, the cell's value,
  // Update; the bound boxes show the row as written, and AfterColUpdate and AfterUpdate follow.
  // A write the recordset refuses is cancelled whole and reaches UpdateError. Returns whether
  // the row was written.
  bool UserEditBoundCell(int col, const std::string& text);
  // Moves or resizes a column as a drag of its header does (the view forwards these too).
  void UserMoveColumn(int colIndex, int newPosition);
  void UserResizeColumn(int colIndex, int width);

  // The user puts the cursor on another row or column; the row is the data control's current
  // row. Raises RowColChange with the previous row's bookmark and the previous column.
  std::function<void(const db::BookmarkValue& lastRow, int lastCol)> RowColChange;
  std::function<void(int colIndex)> ColResize;
  // After the user moved a column: every column's Order holds its new place.
  std::function<void(int colIndex, int newPosition)> ColMove;
  std::function<void(int colIndex, const std::string& errorText)> FormatError;
  // Array grids.
  std::function<void(int& cancel)> BeforeDelete;
  std::function<void()> AfterDelete;
  std::function<void(int& cancel)> BeforeInsert;
  std::function<void()> AfterInsert;
  std::function<void(int colIndex, const std::string& oldValue, int& cancel)> BeforeColUpdate;
  std::function<void(int colIndex)> AfterColUpdate;
  // Bound grids: the row was written by a cell's edit; the write failed (error number, text).
  std::function<void()> AfterUpdate;
  std::function<void(int number, const std::string& description)> UpdateError;
  std::function<void(int colIndex)> ComboSelect;
  std::function<void(int& cancel)> SelChange;

 private:
  void ArrayChanged() { Notify(Property::Text); }
  DataControl* dataSource_ = nullptr;
  int dataMode_ = kBound;
  std::vector<GridColumn> columns_;
  bool allowColMove_ = true;
  bool allowColResize_ = true;
  bool allowUpdate_ = false;
  int col_ = 0;
  int visibleRows_ = 4;
  int rowHeight_ = 240;
  std::vector<ArrayRow> array_;  // the rows of an array grid
  int row_ = -1;
  bool editActive_ = false;
  std::string editText_;
};

}  // namespace vellumar::ui
