#pragma once
// Grid <-> QTableView over a RecordsetTableModel of the grid's data control. The view follows
// the data control's current row; a row the user picks moves the data control there and raises
// the grid's RowColChange, as the runtime's bound grid does. The columns show with their
// alignment, place (Order), width and format. Column sizes and moves by the user go to the
// grid's Columns() and its ColResize (once, when a drag of the header ends) and ColMove.
#include <QTableView>
#include <set>

#include "platform/bound/grid.h"
#include "qt/control_binder.h"
#include "qt/recordset_table_model.h"

namespace vellumar::qt {

class GridBinder : public ControlBinder {
 public:
  GridBinder(ui::Grid& grid, QTableView* view);
  ~GridBinder() override;

  RecordsetTableModel& model() { return *model_; }

 protected:
  void Show(ui::Property property) override;
  QWidget* InputWidget() const override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Hears the data control: new rows (List) and moves (Value).
  class SourceObserver : public ui::ControlObserver {
   public:
    explicit SourceObserver(GridBinder& b) : b_(b) {}
    void PropertyChanged(ui::Control& control, ui::Property property) override;

   private:
    GridBinder& b_;
  };

  void Attach();
  void TellGeometry();
  void ShowColumns();
  void ShowCurrentRow();
  long SourcePosition() const;  // the data control's current row, -1 for none
  void UserMovedTo(const QModelIndex& current, const QModelIndex& previous);
  // Raises ColResize for the columns the user resized since the last time.
  void EndColumnResize();
  ui::Grid& grid_;
  RecordsetTableModel* model_;  // child of the binder
  SourceObserver sourceObserver_{*this};
  ui::DataControl* source_ = nullptr;  // the data control observed
  int currentRow_ = -1;                // the data control's row as last shown
  std::set<int> resizing_;             // columns resized in a drag not yet ended
};

}  // namespace vellumar::qt
