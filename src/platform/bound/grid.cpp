#include "platform/bound/grid.h"

#include <algorithm>

#include "platform/vb/error.h"
#include "platform/vb/format.h"

namespace vellumar::ui {

std::string Grid::FormatCell(int colIndex, const vb::Variant& value) {
  if (colIndex < 0 || colIndex >= static_cast<int>(columns_.size())) return value.ToStringOrEmpty();
  const std::string& pattern = columns_[static_cast<size_t>(colIndex)].NumberFormat;
  if (pattern.empty() || value.IsNull()) return value.ToStringOrEmpty();
  try {
    return vb::Format(value, pattern);
  } catch (const vb::VbError& e) {
    Raise(FormatError, colIndex, e.description());
    try {
      return value.ToStringOrEmpty();
    } catch (const vb::VbError&) {
      return {};
    }
  }
}

bool Grid::UserEditBoundCell(int col, const std::string& text) {
  if (!Enabled() || !allowUpdate_ || dataMode_ != kBound || dataSource_ == nullptr) return false;
  if (col < 0 || col >= static_cast<int>(columns_.size())) return false;
  const std::string& field = columns_[static_cast<size_t>(col)].DataField;
  db::Recordset& rs = dataSource_->Recordset();
  if (field.empty() || !rs || rs.BOF() || rs.EOF_()) return false;
  std::string oldValue;
  try {
    oldValue = rs.Fields(field).Value().ToStringOrEmpty();
  } catch (const vb::VbError& e) {
    Raise(UpdateError, e.number(), e.description());
    return false;
  }
  col_ = col;
  editText_ = text;
  int cancel = 0;
  Raise(BeforeColUpdate, col, oldValue, cancel);
  if (cancel != 0) {
    editText_ = oldValue;
    Notify(Property::Selection);
    return false;
  }
  db::BookmarkValue written;
  try {
    if (rs.EditMode() == db::dbEditNone) rs.Edit();
    dataSource_->UpdateRecord();
    rs.Fields(field).SetValue(editText_.empty() ? vb::Variant::Null() : vb::Variant(editText_));
    rs.Update();
    written = rs.LastModified();
  } catch (const vb::VbError& e) {
    // Nothing of the edit is kept: the row stays as it was in the file.
    try {
      if (rs.EditMode() != db::dbEditNone) rs.CancelUpdate();
    } catch (const vb::VbError&) {
    }
    editText_ = oldValue;
    Notify(Property::Selection);
    Raise(UpdateError, e.number(), e.description());
    return false;
  }
  dataSource_->GoTo(written);
  Raise(AfterColUpdate, col);
  Raise(AfterUpdate);
  return true;
}

void Grid::SetArray(std::vector<ArrayRow> rows) {
  editActive_ = false;
  array_ = std::move(rows);
  const int count = ArrayRowCount();
  if (row_ >= count) row_ = count - 1;
  editText_ = ArrayCell(row_, col_);
  ArrayChanged();
}

std::string Grid::ArrayCell(int row, int col) const {
  if (row < 0 || row >= ArrayRowCount() || col < 0) return {};
  const ArrayRow& r = array_[static_cast<size_t>(row)];
  return col < static_cast<int>(r.size()) ? r[static_cast<size_t>(col)] : std::string();
}

void Grid::SetArrayCell(int row, int col, const std::string& text) {
  if (row < 0 || col < 0) vb::Raise(vb::kSubscriptOutOfRange);
  const size_t width = std::max(columns_.size(), static_cast<size_t>(col) + 1);
  if (static_cast<size_t>(row) >= array_.size())
    array_.resize(static_cast<size_t>(row) + 1, ArrayRow(width));
  ArrayRow& r = array_[static_cast<size_t>(row)];
  if (r.size() < width) r.resize(width);
  if (r[static_cast<size_t>(col)] == text) return;
  r[static_cast<size_t>(col)] = text;
  ArrayChanged();
}

void Grid::SetEditActive(bool active) {
  if (active == editActive_) return;
  if (active) {
    editActive_ = true;
    editText_ = ArrayCell(row_, col_);
    Notify(Property::Selection);
    return;
  }
  // The edit ends: the program may refuse the new text in BeforeColUpdate.
  editActive_ = false;
  const int row = row_, col = col_;
  const std::string oldValue = ArrayCell(row, col);
  int cancel = 0;
  Raise(BeforeColUpdate, col, oldValue, cancel);
  if (cancel != 0) {
    editText_ = oldValue;
    Notify(Property::Selection);
    return;
  }
  SetArrayCell(row, col, editText_);
  Raise(AfterColUpdate, col);
}

void Grid::UserSelectCell(int row, int col) {
  if (!Enabled()) return;
  if (row == row_ && col == col_) return;
  int cancel = 0;
  Raise(SelChange, cancel);
  if (cancel != 0) return;
  if (editActive_) SetEditActive(false);
  row_ = row;
  col_ = col;
  editText_ = ArrayCell(row, col);
  Notify(Property::Selection);
}

void Grid::UserType(int row, int col, const std::string& text) {
  if (!Enabled()) return;
  if (row != row_ || col != col_) UserSelectCell(row, col);
  if (row != row_ || col != col_) return;  // the program kept the cursor where it was
  if (!editActive_) SetEditActive(true);
  editText_ = text;
}

void Grid::UserSelectComboItem(int row, int col, int item) {
  if (!Enabled()) return;
  if (col < 0 || col >= static_cast<int>(columns_.size())) return;
  const auto& items = columns_[static_cast<size_t>(col)].ValueItems;
  if (item < 0 || item >= static_cast<int>(items.size())) return;
  UserType(row, col, items[static_cast<size_t>(item)]);
  if (row == row_ && col == col_ && editActive_) Raise(ComboSelect, col);
}

void Grid::UserCancelEdit() {
  if (!editActive_) return;
  editActive_ = false;
  editText_ = ArrayCell(row_, col_);
  Notify(Property::Selection);
}

void Grid::UserEditCell(int row, int col, const std::string& text) {
  UserType(row, col, text);
  if (editActive_ && row == row_ && col == col_) UserCommitEdit();
}

void Grid::UserKey(int keyCode, int shift) {
  if (!Enabled()) return;
  Raise(KeyDown, keyCode, shift);
  Raise(KeyUp, keyCode, shift);
}

void Grid::UserDeleteRow(int row) {
  if (!Enabled() || row < 0 || row >= ArrayRowCount()) return;
  if (editActive_) UserCancelEdit();
  row_ = row;
  int cancel = 0;
  Raise(BeforeDelete, cancel);
  if (cancel != 0 || row >= ArrayRowCount()) return;
  array_.erase(array_.begin() + row);
  if (row_ >= ArrayRowCount()) row_ = ArrayRowCount() - 1;
  editText_ = ArrayCell(row_, col_);
  ArrayChanged();
  Raise(AfterDelete);
}

void Grid::UserInsertRow() {
  if (!Enabled()) return;
  int cancel = 0;
  Raise(BeforeInsert, cancel);
  if (cancel != 0) return;
  array_.emplace_back(columns_.size());
  row_ = ArrayRowCount() - 1;
  editText_.clear();
  ArrayChanged();
  Notify(Property::Selection);
  Raise(AfterInsert);
}

void Grid::UserMoveColumn(int colIndex, int newPosition) {
  const int count = static_cast<int>(columns_.size());
  if (!Enabled() || !allowColMove_ || colIndex < 0 || colIndex >= count) return;
  // The visible columns in the order shown; the moved one goes to its new place among them.
  std::vector<int> shown;
  for (int i = 0; i < count; ++i)
    if (columns_[static_cast<size_t>(i)].Visible) shown.push_back(i);
  std::stable_sort(shown.begin(), shown.end(), [&](int a, int b) {
    return DisplayOrder(columns_, a) < DisplayOrder(columns_, b);
  });
  const auto at = std::find(shown.begin(), shown.end(), colIndex);
  if (at == shown.end()) return;
  shown.erase(at);
  newPosition = std::clamp(newPosition, 0, static_cast<int>(shown.size()));
  shown.insert(shown.begin() + newPosition, colIndex);
  for (size_t place = 0; place < shown.size(); ++place)
    columns_[static_cast<size_t>(shown[place])].Order = static_cast<int>(place);
  Notify(Property::List);
  Raise(ColMove, colIndex, newPosition);
}

void Grid::UserResizeColumn(int colIndex, int width) {
  if (!Enabled() || !allowColResize_ || colIndex < 0 ||
      colIndex >= static_cast<int>(columns_.size()))
    return;
  columns_[static_cast<size_t>(colIndex)].Width = width;
  Notify(Property::List);
  Raise(ColResize, colIndex);
}

}  // namespace vellumar::ui
