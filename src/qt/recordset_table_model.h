#pragma once
// The rows of a recordset as a Qt table model. It reads through a clone of the recordset, so
// the program's current row stays where the program put it, and fetches only the rows a view
// asks for, a small window at a time, keeping a bounded cache: a log of 100,000 QSOs costs the
// rows in sight, never a widget or a read per row.
#include <QAbstractTableModel>
#include <QString>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <vector>

#include "platform/bound/grid.h"
#include "platform/db/recordset.h"

namespace vellumar::qt {

// Qt's alignment of a cell for a column's ui::ColumnAlignment.
Qt::Alignment AlignmentFlags(int alignment);

class RecordsetTableModel : public QAbstractTableModel {
 public:
  static constexpr int kFetchWindow = 64;  // rows read at once around the one asked for
  static constexpr int kCacheLimit = 512;  // rows kept; beyond it the cache starts afresh

  explicit RecordsetTableModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  // The text of a cell from its value, by the column's index in the grid's Columns(); a model
  // without one formats with the column's NumberFormat.
  using CellFormatter = std::function<std::string(int gridColumn, const vb::Variant& value)>;
  void SetFormatter(CellFormatter formatter) { formatter_ = std::move(formatter); }
  // Writes a cell the user edited (row, column's index in the grid's Columns(), text); true
  // when the row was written. Without one, or with it off, the cells are read-only.
  using CellEditor = std::function<bool(int row, int gridColumn, const std::string& text)>;
  void SetEditor(CellEditor editor) { editor_ = std::move(editor); }
  void SetEditable(bool editable) { editable_ = editable; }

  // Shows the rows of `recordset` (not moved: a clone is read) in the given columns; the hidden
  // columns are left out.
  void SetSource(const db::Recordset& recordset, const std::vector<ui::GridColumn>& columns);
  // The rows may have changed (an edit, a new row, a requery): the cache goes, the count is
  // taken again from a fresh clone, and the view redraws what it shows.
  void Refresh();
  // The program moved from one row to another, maybe having written the one it left (a save):
  // those rows are read again. A change of the row count refreshes everything.
  void RefreshRows(std::initializer_list<int> rows);

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

  // The row's bookmark (a default one for a row that can't be read).
  db::BookmarkValue BookmarkAt(int row) const;
  // The visible column's index in the grid's Columns().
  int GridColumnOf(int column) const;

  // Rows read from the recordset since the source was set (for tests and the curious).
  std::int64_t RowsFetched() const { return rowsFetched_; }

 private:
  struct Row {
    db::BookmarkValue bookmark;  // the row's identity in the recordset
    std::vector<QString> cells;  // the visible columns' texts
  };
  const Row* Fetch(int row) const;
  db::Recordset Reader() const;
  int CountRows() const;
  QString CellText(size_t column) const;

  db::Recordset source_;                 // the shown recordset; never moved here
  mutable db::Recordset reader_;         // a clone of it, moved to read rows
  std::vector<ui::GridColumn> columns_;  // the visible columns
  std::vector<int> gridColumn_;          // index in the grid's Columns() of each visible one
  int rowCount_ = 0;
  mutable std::map<int, Row> cache_;  // by row number
  mutable std::int64_t rowsFetched_ = 0;
  CellFormatter formatter_;
  CellEditor editor_;
  bool editable_ = false;
};

}  // namespace vellumar::qt
