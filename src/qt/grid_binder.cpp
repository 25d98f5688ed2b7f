#include "qt/grid_binder.h"

#include <QApplication>
#include <QEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <algorithm>
#include <numeric>
#include <vector>

#include "platform/vb/error.h"
#include "qt/conversions.h"

namespace vellumar::qt {

GridBinder::GridBinder(ui::Grid& grid, QTableView* view)
    : ControlBinder(grid, view), grid_(grid), model_(new RecordsetTableModel(this)) {
  view->setModel(model_);
  view->setSelectionBehavior(QAbstractItemView::SelectRows);
  view->setSelectionMode(QAbstractItemView::SingleSelection);
  view->setEditTriggers(QAbstractItemView::NoEditTriggers);
  view->setAlternatingRowColors(true);
  view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
  view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view->horizontalHeader()->setSectionsMovable(true);
  view->horizontalHeader()->setHighlightSections(false);
  connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &GridBinder::UserMovedTo);
  connect(view->horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int section, int, int newSize) {
            if (Updating()) return;
            const int column = model_->GridColumnOf(section);
            if (column < 0) return;
            Forward([this, column, newSize] {
              grid_.Columns()[static_cast<size_t>(column)].Width = TwipsFromPixels(newSize);
            });
            // A drag of the header resizes many times; the program hears once, at the end.
            resizing_.insert(column);
            if (!(QApplication::mouseButtons() & Qt::LeftButton)) EndColumnResize();
          });
  view->horizontalHeader()->viewport()->installEventFilter(this);
  connect(view->horizontalHeader(), &QHeaderView::sectionMoved, this,
          [this, view](int logical, int, int newVisual) {
            if (Updating()) return;
            const int column = model_->GridColumnOf(logical);
            if (column < 0) return;
            Forward([this, view, column, newVisual] {
              // Every shown column takes its new place, as the header shows it.
              QHeaderView* header = view->horizontalHeader();
              for (int section = 0; section < model_->columnCount(); ++section) {
                const int c = model_->GridColumnOf(section);
                if (c >= 0)
                  grid_.Columns()[static_cast<size_t>(c)].Order = header->visualIndex(section);
              }
              ui::Raise(grid_.ColMove, column, newVisual);
            });
          });
  model_->SetFormatter([this](int column, const vb::Variant& value) {
    // The grid formats, so that a value its format can't take reaches the program.
    return ControlAlive() ? grid_.FormatCell(column, value) : value.ToStringOrEmpty();
  });
  model_->SetEditor([this](int row, int column, const std::string& text) {
    bool written = false;
    Forward([&] {
      // The edited cell's row is the current one; a view that edits another moves there first.
      const db::BookmarkValue target = model_->BookmarkAt(row);
      if (target && row != static_cast<int>(SourcePosition())) source_->GoTo(target);
      written = grid_.UserEditBoundCell(column, text);
    });
    return written;
  });
  grid.SetRowHeight(TwipsFromPixels(view->verticalHeader()->defaultSectionSize()));
  ForwardMouse(false);
  ShowAll();
}

GridBinder::~GridBinder() {
  if (source_) source_->RemoveObserver(&sourceObserver_);
}

QWidget* GridBinder::InputWidget() const { return static_cast<QTableView*>(widget())->viewport(); }

void GridBinder::EndColumnResize() {
  const std::set<int> columns = std::move(resizing_);
  resizing_.clear();
  for (int column : columns) Forward([this, column] { ui::Raise(grid_.ColResize, column); });
}

bool GridBinder::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
    TellGeometry();
  auto* view = static_cast<QTableView*>(widget());
  if (view != nullptr && watched == view->horizontalHeader()->viewport() &&
      event->type() == QEvent::MouseButtonRelease && !resizing_.empty())
    EndColumnResize();
  return ControlBinder::eventFilter(watched, event);
}

void GridBinder::TellGeometry() {
  // The form's Resize counts the rows that fit from the grid's height: the layout's, here.
  QWidget* w = widget();
  if (w == nullptr) return;
  const QPoint at = w->mapTo(w->window(), QPoint(0, 0));
  grid_.Move(TwipsFromPixels(at.x()), TwipsFromPixels(at.y()), TwipsFromPixels(w->width()),
             TwipsFromPixels(w->height()));
}

void GridBinder::Attach() {
  if (source_ == grid_.DataSource()) return;
  if (source_) source_->RemoveObserver(&sourceObserver_);
  source_ = grid_.DataSource();
  if (source_) source_->AddObserver(&sourceObserver_);
}

void GridBinder::ShowColumns() {
  Attach();
  model_->SetSource(source_ ? source_->Recordset() : db::Recordset(), grid_.Columns());
  auto* view = static_cast<QTableView*>(widget());
  for (int c = 0; c < model_->columnCount(); ++c) {
    const int width = grid_.Columns()[static_cast<size_t>(model_->GridColumnOf(c))].Width;
    if (width > 0) view->setColumnWidth(c, PixelsFromTwips(width));
  }
  // A grid that lets the user update edits a cell on a double click, F2 or typing.
  model_->SetEditable(grid_.AllowUpdate() && source_ != nullptr);
  view->setEditTriggers(grid_.AllowUpdate() ? QAbstractItemView::DoubleClicked |
                                                  QAbstractItemView::EditKeyPressed |
                                                  QAbstractItemView::AnyKeyPressed
                                            : QAbstractItemView::NoEditTriggers);
  QHeaderView* header = view->horizontalHeader();
  header->setSectionsMovable(grid_.AllowColMove());
  header->setSectionResizeMode(grid_.AllowColResize() ? QHeaderView::Interactive
                                                      : QHeaderView::Fixed);
  // The columns in their places: by Order, the index breaking ties.
  std::vector<int> sections(static_cast<size_t>(model_->columnCount()));
  std::iota(sections.begin(), sections.end(), 0);
  std::stable_sort(sections.begin(), sections.end(), [this](int a, int b) {
    return ui::DisplayOrder(grid_.Columns(), model_->GridColumnOf(a)) <
           ui::DisplayOrder(grid_.Columns(), model_->GridColumnOf(b));
  });
  for (int place = 0; place < static_cast<int>(sections.size()); ++place)
    header->moveSection(header->visualIndex(sections[static_cast<size_t>(place)]), place);
  ShowCurrentRow();
}

long GridBinder::SourcePosition() const {
  if (source_ == nullptr) return -1;
  try {
    const db::Recordset& rs = source_->Recordset();
    if (rs && !rs.BOF() && !rs.EOF_()) return rs.AbsolutePosition();
  } catch (const vb::VbError&) {
  }
  return -1;  // no current row, or a closed recordset
}

void GridBinder::ShowCurrentRow() {
  if (!source_ || !widget()) return;
  auto* view = static_cast<QTableView*>(widget());
  const long position = SourcePosition();
  currentRow_ = static_cast<int>(position);
  if (position < 0 || position >= model_->rowCount()) {
    currentRow_ = -1;
    view->selectionModel()->clearSelection();
    return;
  }
  const int column = std::max(0, view->currentIndex().column());
  const QModelIndex index = model_->index(static_cast<int>(position), column);
  view->selectionModel()->setCurrentIndex(
      index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  view->scrollTo(index);
}

void GridBinder::Show(ui::Property property) {
  switch (property) {
    case ui::Property::List:
      ShowColumns();
      break;
    default:
      ControlBinder::Show(property);
  }
}

void GridBinder::SourceObserver::PropertyChanged(ui::Control&, ui::Property property) {
  if (!b_.widget()) return;
  WidgetUpdate update(b_);
  if (property == ui::Property::List) {
    b_.ShowColumns();
  } else if (property == ui::Property::Value) {
    // A move: a walk over the rows makes one per row, so only the two rows concerned are
    // read again, not the rows in sight.
    b_.model_->RefreshRows({b_.currentRow_, static_cast<int>(b_.SourcePosition())});
    b_.ShowCurrentRow();
  }
}

void GridBinder::UserMovedTo(const QModelIndex& current, const QModelIndex& previous) {
  if (Updating() || !current.isValid() || source_ == nullptr) return;
  const int column = model_->GridColumnOf(current.column());
  if (previous.isValid() && previous.row() == current.row()) {
    if (column == grid_.Col()) return;
    const db::BookmarkValue lastRow = model_->BookmarkAt(current.row());
    const int lastCol = grid_.Col();
    Forward([&] {
      grid_.SetCol(column);
      ui::Raise(grid_.RowColChange, lastRow, lastCol);
    });
    return;
  }
  const db::BookmarkValue target = model_->BookmarkAt(current.row());
  if (!target) return;
  Forward([&] {
    db::BookmarkValue lastRow;
    try {
      const db::Recordset& rs = source_->Recordset();
      if (rs && !rs.BOF() && !rs.EOF_()) lastRow = rs.Bookmark();
    } catch (const vb::VbError&) {
    }
    const int lastCol = grid_.Col();
    source_->GoTo(target);
    if (column >= 0) grid_.SetCol(column);
    ui::Raise(grid_.RowColChange, lastRow, lastCol);
  });
}

}  // namespace vellumar::qt
