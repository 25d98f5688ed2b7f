#pragma once
// An array grid <-> an editable QTableView. The cells show the grid's array; a column with
// value items is edited with a drop-down of them, the others as free text. The user's edits,
// picks, row additions (Insert key, context menu) and deletions (Delete key, context menu) go to
// the grid's User... operations, whose events decide what is stored; the view then shows the
// array as the program left it.
#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <QTableView>

#include "platform/bound/grid.h"
#include "qt/control_binder.h"

namespace vellumar::qt {

class ArrayGridBinder;

// The array of a grid as a Qt table model; edits are handed to the binder.
class ArrayTableModel : public QAbstractTableModel {
 public:
  ArrayTableModel(ui::Grid& grid, ArrayGridBinder& binder);

  // The array changed: rows added or removed reset the model, else the cells are redrawn.
  void Reload();
  void ColumnsChanged();

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

 private:
  ui::Grid& grid_;
  ArrayGridBinder& binder_;
  int rows_ = 0;     // rows as last shown
  int columns_ = 0;  // columns as last shown
};

// Edits a column with value items in a drop-down list of them.
class ValueItemsDelegate : public QStyledItemDelegate {
 public:
  ValueItemsDelegate(ui::Grid& grid, ArrayGridBinder& binder, QObject* parent);
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;

 private:
  ui::Grid& grid_;
  ArrayGridBinder& binder_;
};

class ArrayGridBinder : public ControlBinder {
 public:
  ArrayGridBinder(ui::Grid& grid, QTableView* view);

  ArrayTableModel& model() { return *model_; }
  // The user's input on the view, forwarded to the grid.
  void UserEdit(int row, int col, const std::string& text);
  void UserPick(int row, int col, int item);
  void UserInsertRow();
  void UserDeleteRow();

 protected:
  void Show(ui::Property property) override;
  QWidget* InputWidget() const override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTableView* view() const { return static_cast<QTableView*>(widget()); }
  void ShowColumns();
  void ShowCurrentCell();
  void ShowContextMenu(const QPoint& at);
  ui::Grid& grid_;
  ArrayTableModel* model_;  // child of the binder
};

}  // namespace vellumar::qt
