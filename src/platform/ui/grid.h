#pragma once
// A grid over the rows of a data control: its columns name the fields shown. The view draws
// only the rows in sight, fetching them through the data control's recordset.
#include <functional>
#include <string>
#include <vector>

#include "platform/ui/controls.h"
#include "platform/ui/data_control.h"

namespace vellumar::ui {

struct GridColumn {
  std::string Caption;       // header text
  std::string DataField;     // column of the recordset shown
  int Width = 1000;          // twips
  std::string NumberFormat;  // Format pattern of the values, empty for their plain text
  bool Visible = true;
};

class Grid : public InputControl {
 public:
  using InputControl::InputControl;

  DataControl* DataSource() const { return dataSource_; }
  void SetDataSource(DataControl* d) { dataSource_ = d; Notify(Property::List); }

  std::vector<GridColumn>& Columns() { return columns_; }
  const std::vector<GridColumn>& Columns() const { return columns_; }
  // Announces a change of the columns (captions, widths, order) to the view.
  void ColumnsChanged() { Notify(Property::List); }

  int Col() const { return col_; }
  void SetCol(int c) { Set(col_, c, Property::Selection); }
  int VisibleRows() const { return visibleRows_; }  // rows the view shows at once
  void SetVisibleRows(int n) { Set(visibleRows_, n, Property::Geometry); }
  int RowHeight() const { return rowHeight_; }  // twips
  void SetRowHeight(int h) { rowHeight_ = h; }

  // The user puts the cursor on another row or column; the row is the data control's current
  // row. Raises RowColChange with the previous row's bookmark and the previous column.
  std::function<void(const db::BookmarkValue& lastRow, int lastCol)> RowColChange;
  std::function<void(int colIndex)> ColResize;
  std::function<void(int colIndex, int newPosition)> ColMove;

 private:
  DataControl* dataSource_ = nullptr;
  std::vector<GridColumn> columns_;
  int col_ = 0;
  int visibleRows_ = 4;
  int rowHeight_ = 240;
};

}  // namespace vellumar::ui
