#include "qt/array_grid_binder.h"

#include <QComboBox>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>

#include "qt/conversions.h"
#include "qt/recordset_table_model.h"

namespace vellumar::qt {
namespace {

const std::vector<std::string>& ValueItemsOf(const ui::Grid& grid, int column) {
  static const std::vector<std::string> kNone;
  if (column < 0 || column >= static_cast<int>(grid.Columns().size())) return kNone;
  return grid.Columns()[static_cast<size_t>(column)].ValueItems;
}

}  // namespace

// ---- The model ----

ArrayTableModel::ArrayTableModel(ui::Grid& grid, ArrayGridBinder& binder)
    : QAbstractTableModel(&binder),
      grid_(grid),
      binder_(binder),
      rows_(grid.ArrayRowCount()),
      columns_(static_cast<int>(grid.Columns().size())) {}

void ArrayTableModel::Reload() {
  if (grid_.ArrayRowCount() != rows_) {
    beginResetModel();
    rows_ = grid_.ArrayRowCount();
    endResetModel();
    return;
  }
  if (rows_ > 0 && columns_ > 0) emit dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
}

void ArrayTableModel::ColumnsChanged() {
  const int count = static_cast<int>(grid_.Columns().size());
  if (count != columns_) {
    beginResetModel();
    columns_ = count;
    rows_ = grid_.ArrayRowCount();
    endResetModel();
    return;
  }
  if (columns_ > 0) emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
}

int ArrayTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int ArrayTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant ArrayTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::DisplayRole || role == Qt::EditRole)
    return ToQString(grid_.ArrayCell(index.row(), index.column()));
  if (role == Qt::TextAlignmentRole && index.column() < static_cast<int>(grid_.Columns().size()))
    return QVariant::fromValue(
        AlignmentFlags(grid_.Columns()[static_cast<size_t>(index.column())].Alignment));
  return {};
}

QVariant ArrayTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Vertical) return section + 1;
  if (section < 0 || section >= static_cast<int>(grid_.Columns().size())) return {};
  return ToQString(grid_.Columns()[static_cast<size_t>(section)].Caption);
}

Qt::ItemFlags ArrayTableModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
}

bool ArrayTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::EditRole) return false;
  binder_.UserEdit(index.row(), index.column(), ToStdString(value.toString()));
  return true;
}

// ---- The drop-down of value items ----

ValueItemsDelegate::ValueItemsDelegate(ui::Grid& grid, ArrayGridBinder& binder, QObject* parent)
    : QStyledItemDelegate(parent), grid_(grid), binder_(binder) {}

QWidget* ValueItemsDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                          const QModelIndex& index) const {
  const auto& items = ValueItemsOf(grid_, index.column());
  if (items.empty()) return QStyledItemDelegate::createEditor(parent, option, index);
  auto* combo = new QComboBox(parent);
  combo->setObjectName(QStringLiteral("ValueItems"));
  for (const std::string& item : items) combo->addItem(ToQString(item));
  auto* self = const_cast<ValueItemsDelegate*>(this);
  const int row = index.row(), column = index.column();
  connect(combo, &QComboBox::activated, self, [self, combo, row, column](int item) {
    // A pick takes effect at once, and ends the edit.
    self->binder_.UserPick(row, column, item);
    emit self->commitData(combo);
    emit self->closeEditor(combo);
  });
  return combo;
}

void ValueItemsDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  if (auto* combo = qobject_cast<QComboBox*>(editor)) {
    combo->setCurrentIndex(combo->findText(index.data(Qt::EditRole).toString()));
    return;
  }
  QStyledItemDelegate::setEditorData(editor, index);
}

void ValueItemsDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                      const QModelIndex& index) const {
  if (auto* combo = qobject_cast<QComboBox*>(editor)) {
    if (combo->currentIndex() >= 0) model->setData(index, combo->currentText(), Qt::EditRole);
    return;
  }
  QStyledItemDelegate::setModelData(editor, model, index);
}

// ---- The binder ----

ArrayGridBinder::ArrayGridBinder(ui::Grid& grid, QTableView* view)
    : ControlBinder(grid, view), grid_(grid), model_(new ArrayTableModel(grid, *this)) {
  view->setModel(model_);
  view->setItemDelegate(new ValueItemsDelegate(grid, *this, view));
  view->setSelectionBehavior(QAbstractItemView::SelectItems);
  view->setSelectionMode(QAbstractItemView::SingleSelection);
  view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                        QAbstractItemView::AnyKeyPressed | QAbstractItemView::SelectedClicked);
  view->setContextMenuPolicy(Qt::CustomContextMenu);
  view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 8);
  view->setToolTip(QStringLiteral("Insert adds a row, Delete removes the current one"));
  connect(view, &QWidget::customContextMenuRequested, this, &ArrayGridBinder::ShowContextMenu);
  connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current, const QModelIndex&) {
            if (Updating() || !current.isValid()) return;
            Forward([&] { grid_.UserSelectCell(current.row(), current.column()); });
            PropertyChanged(grid_, ui::Property::Selection);  // where the model put the cursor
          });
  connect(view->horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int section, int, int newSize) {
            if (Updating() || section >= static_cast<int>(grid_.Columns().size())) return;
            Forward([this, section, newSize] {
              grid_.Columns()[static_cast<size_t>(section)].Width = TwipsFromPixels(newSize);
              ui::Raise(grid_.ColResize, section);
            });
          });
  InputWidget()->installEventFilter(this);
  ShowAll();
}

QWidget* ArrayGridBinder::InputWidget() const { return view()->viewport(); }

void ArrayGridBinder::UserEdit(int row, int col, const std::string& text) {
  Forward([&] { grid_.UserEditCell(row, col, text); });
}

void ArrayGridBinder::UserPick(int row, int col, int item) {
  Forward([&] { grid_.UserSelectComboItem(row, col, item); });
}

void ArrayGridBinder::UserInsertRow() {
  Forward([&] { grid_.UserInsertRow(); });
}

void ArrayGridBinder::UserDeleteRow() {
  const QModelIndex current = view()->currentIndex();
  if (!current.isValid()) return;
  const int row = current.row();
  Forward([&] { grid_.UserDeleteRow(row); });
}

bool ArrayGridBinder::eventFilter(QObject* watched, QEvent* event) {
  // Keys reach the view itself only while no cell editor has the focus.
  if (ControlAlive() && (watched == widget() || watched == InputWidget()) &&
      event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Delete) {
      UserDeleteRow();
      return true;
    }
    if (key == Qt::Key_Insert) {
      UserInsertRow();
      return true;
    }
  }
  return ControlBinder::eventFilter(watched, event);
}

void ArrayGridBinder::ShowContextMenu(const QPoint& at) {
  if (!grid_.Enabled()) return;
  QMenu menu(view());
  QAction* add = menu.addAction(QStringLiteral("Add row"));
  QAction* remove = menu.addAction(QStringLiteral("Delete row"));
  const QModelIndex under = view()->indexAt(at);
  if (under.isValid()) view()->setCurrentIndex(under);
  remove->setEnabled(view()->currentIndex().isValid());
  QAction* chosen = menu.exec(view()->viewport()->mapToGlobal(at));
  if (chosen == add) UserInsertRow();
  if (chosen == remove) UserDeleteRow();
}

void ArrayGridBinder::ShowColumns() {
  model_->ColumnsChanged();
  for (int c = 0; c < model_->columnCount(); ++c) {
    const int width = grid_.Columns()[static_cast<size_t>(c)].Width;
    if (width > 0) view()->setColumnWidth(c, PixelsFromTwips(width));
  }
}

void ArrayGridBinder::ShowCurrentCell() {
  const QModelIndex index = model_->index(grid_.Row(), grid_.Col());
  if (!index.isValid() || index == view()->currentIndex()) return;
  view()->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

void ArrayGridBinder::Show(ui::Property property) {
  switch (property) {
    case ui::Property::List:
      ShowColumns();
      break;
    case ui::Property::Text:
      model_->Reload();
      ShowCurrentCell();
      break;
    case ui::Property::Selection:
      ShowCurrentCell();
      break;
    default:
      ControlBinder::Show(property);
  }
}

}  // namespace vellumar::qt
