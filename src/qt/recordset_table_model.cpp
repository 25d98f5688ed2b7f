#include "qt/recordset_table_model.h"

#include <algorithm>

#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "qt/conversions.h"

namespace vellumar::qt {

void RecordsetTableModel::SetSource(const db::Recordset& recordset,
                                    const std::vector<ui::GridColumn>& columns) {
  beginResetModel();
  source_ = recordset;
  reader_ = Reader();
  columns_.clear();
  gridColumn_.clear();
  for (size_t i = 0; i < columns.size(); ++i) {
    if (!columns[i].Visible) continue;
    columns_.push_back(columns[i]);
    gridColumn_.push_back(static_cast<int>(i));
  }
  cache_.clear();
  rowsFetched_ = 0;
  rowCount_ = CountRows();
  endResetModel();
}

void RecordsetTableModel::Refresh() {
  reader_ = Reader();
  const int count = CountRows();
  cache_.clear();
  if (count != rowCount_) {
    beginResetModel();
    rowCount_ = count;
    endResetModel();
    return;
  }
  if (rowCount_ > 0 && !columns_.empty())
    emit dataChanged(index(0, 0), index(rowCount_ - 1, static_cast<int>(columns_.size()) - 1));
}

void RecordsetTableModel::RefreshRows(std::initializer_list<int> rows) {
  if (CountRows() != rowCount_) return Refresh();  // a row was added or deleted
  for (int row : rows) {
    if (row < 0 || row >= rowCount_) continue;
    cache_.erase(row);
    if (!columns_.empty())
      emit dataChanged(index(row, 0), index(row, static_cast<int>(columns_.size()) - 1));
  }
}

db::Recordset RecordsetTableModel::Reader() const {
  try {
    return source_ ? source_.Clone() : db::Recordset();
  } catch (const vb::VbError&) {
    return {};  // a closed recordset shows no rows
  }
}

int RecordsetTableModel::CountRows() const {
  if (!reader_) return 0;
  try {
    // The key set is known whole; MoveLast makes RecordCount the count of every row in it.
    if (reader_.BOF() && reader_.EOF_()) return 0;
    reader_.MoveLast();
    return static_cast<int>(reader_.RecordCount());
  } catch (const vb::VbError&) {
    return 0;  // an empty or closed recordset
  }
}

int RecordsetTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rowCount_;
}

int RecordsetTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QString RecordsetTableModel::CellText(size_t index) const {
  const ui::GridColumn& column = columns_[index];
  if (column.DataField.empty()) return {};
  try {
    const vb::Variant value = reader_.Fields(column.DataField).Value();
    if (formatter_) return ToQString(formatter_(gridColumn_[index], value));
    if (!column.NumberFormat.empty() && !value.IsNull())
      return ToQString(vb::Format(value, column.NumberFormat));
    return ToQString(value.ToStringOrEmpty());
  } catch (const vb::VbError&) {
    return {};  // a row deleted elsewhere, or a column the table lacks
  }
}

const RecordsetTableModel::Row* RecordsetTableModel::Fetch(int row) const {
  if (row < 0 || row >= rowCount_ || !reader_) return nullptr;
  if (auto it = cache_.find(row); it != cache_.end()) return &it->second;
  if (cache_.size() + kFetchWindow > kCacheLimit) {
    // The rows far from this one go: a view asks about rows near each other.
    for (auto it = cache_.begin(); it != cache_.end();)
      it = std::abs(it->first - row) > kCacheLimit / 4 ? cache_.erase(it) : std::next(it);
  }
  // A window around the row: views ask downwards mostly, and a little upwards when scrolling.
  const int first = std::max(0, row - kFetchWindow / 4);
  const int last = std::min(rowCount_, first + kFetchWindow);
  try {
    reader_.SetAbsolutePosition(first);
    for (int r = first; r < last && !reader_.EOF_(); ++r) {
      if (cache_.count(r) == 0) {
        Row fetched;
        try {
          fetched.bookmark = reader_.Bookmark();
        } catch (const vb::VbError&) {
        }
        fetched.cells.reserve(columns_.size());
        for (size_t c = 0; c < columns_.size(); ++c) fetched.cells.push_back(CellText(c));
        ++rowsFetched_;
        cache_.emplace(r, std::move(fetched));
      }
      reader_.MoveNext();
    }
  } catch (const vb::VbError&) {
    // Fewer rows than counted (deleted meanwhile): what was read stands.
  }
  auto it = cache_.find(row);
  return it == cache_.end() ? nullptr : &it->second;
}

Qt::Alignment AlignmentFlags(int alignment) {
  switch (alignment) {
    case ui::dbgLeft:
      return Qt::AlignLeft | Qt::AlignVCenter;
    case ui::dbgCenter:
      return Qt::AlignHCenter | Qt::AlignVCenter;
    default:
      return Qt::AlignRight | Qt::AlignVCenter;
  }
}

QVariant RecordsetTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::TextAlignmentRole) {
    if (index.column() >= static_cast<int>(columns_.size())) return {};
    return QVariant::fromValue(
        AlignmentFlags(columns_[static_cast<size_t>(index.column())].Alignment));
  }
  if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
  const Row* row = Fetch(index.row());
  if (row == nullptr || index.column() >= static_cast<int>(row->cells.size())) return {};
  return row->cells[static_cast<size_t>(index.column())];
}

QVariant RecordsetTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Vertical) return section + 1;
  if (section < 0 || section >= static_cast<int>(columns_.size())) return {};
  return ToQString(columns_[static_cast<size_t>(section)].Caption);
}

Qt::ItemFlags RecordsetTableModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags f = QAbstractTableModel::flags(index);
  if (index.isValid() && editable_ && editor_) f |= Qt::ItemIsEditable;
  return f;
}

bool RecordsetTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::EditRole || !editable_ || !editor_) return false;
  const int row = index.row();
  if (!editor_(row, GridColumnOf(index.column()), ToStdString(value.toString()))) return false;
  RefreshRows({row});
  return true;
}

db::BookmarkValue RecordsetTableModel::BookmarkAt(int row) const {
  const Row* r = Fetch(row);
  return r ? r->bookmark : db::BookmarkValue{};
}

int RecordsetTableModel::GridColumnOf(int column) const {
  return column >= 0 && column < static_cast<int>(gridColumn_.size())
             ? gridColumn_[static_cast<size_t>(column)]
             : -1;
}

}  // namespace vellumar::qt
