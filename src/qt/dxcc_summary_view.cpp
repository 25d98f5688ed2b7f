#include "qt/dxcc_summary_view.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <algorithm>

#include "qt/binder_factory.h"
#include "qt/conversions.h"

namespace vellumar::qt {

SummaryGridBinder::SummaryGridBinder(ui::Grid& grid, QTableWidget* table)
    : ControlBinder(grid, table), grid_(grid) {
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionMode(QAbstractItemView::NoSelection);
  table->verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  catchUp_.setSingleShot(true);
  QObject::connect(&catchUp_, &QTimer::timeout, this, [this] {
    if (ControlAlive()) ShowCells();
  });
  ShowAll();
}

void SummaryGridBinder::Show(ui::Property property) {
  switch (property) {
    case ui::Property::Text:
      // The hidden programme's grid catches up when it is shown.
      if (grid_.Visible()) ShowCellsSoon();
      break;
    case ui::Property::Visible:
      if (grid_.Visible()) ShowCells();
      ControlBinder::Show(property);
      break;
    case ui::Property::List:
      ShowWidths();
      ShowCells();
      break;
    default:
      ControlBinder::Show(property);
  }
}

void SummaryGridBinder::ShowCellsSoon() {
  // While the counts change entity by entity, the table is redrawn some thirty times a second
  // at most: each redraw costs more than the counting, and the sums still grow in view.
  constexpr int kFrameMs = 30;
  if (!shown_.isValid() || shown_.elapsed() >= kFrameMs) {
    ShowCells();
    return;
  }
  if (catchUp_.isActive()) return;
  catchUp_.start(kFrameMs - static_cast<int>(shown_.elapsed()));
}

void SummaryGridBinder::ShowCells() {
  catchUp_.stop();
  shown_.start();
  WidgetUpdate update(*this);
  auto* table = static_cast<QTableWidget*>(widget());
  const int rows = std::max(0, grid_.ArrayRowCount() - 1);
  const int columns = std::max(0, static_cast<int>(grid_.Columns().size()) - 1);
  if (table->rowCount() != rows) table->setRowCount(rows);
  if (table->columnCount() != columns) table->setColumnCount(columns);
  // Row 0 and column 0 hold the captions: the headers.
  // The captions are set once per change: the counts change far more often.
  QStringList across, down;
  for (int c = 1; c <= columns; ++c) across << ToQString(grid_.ArrayCell(0, c));
  for (int r = 1; r <= rows; ++r) down << ToQString(grid_.ArrayCell(r, 0));
  if (across != across_) {
    table->setHorizontalHeaderLabels(across);
    across_ = across;
  }
  if (down != down_) {
    table->setVerticalHeaderLabels(down);
    down_ = down;
  }
  for (int r = 1; r <= rows; ++r)
    for (int c = 1; c <= columns; ++c) {
      const QString text = ToQString(grid_.ArrayCell(r, c));
      QTableWidgetItem* item = table->item(r - 1, c - 1);
      if (item == nullptr) {
        item = new QTableWidgetItem(text);
        item->setFlags(Qt::ItemIsEnabled);
        item->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        table->setItem(r - 1, c - 1, item);
      } else if (item->text() != text) {
        item->setText(text);
      }
    }
}

void SummaryGridBinder::ShowWidths() {
  WidgetUpdate update(*this);
  auto* table = static_cast<QTableWidget*>(widget());
  const auto& columns = grid_.Columns();
  if (columns.empty()) return;
  table->verticalHeader()->setFixedWidth(PixelsFromTwips(columns[0].Width));
  for (size_t c = 1; c < columns.size(); ++c)
    table->setColumnWidth(static_cast<int>(c) - 1, PixelsFromTwips(columns[c].Width));
}

DXCCSummaryView::DXCCSummaryView(DXCCSummary& form) : FormView(form, std::make_unique<QWidget>()) {
  auto* layout = new QVBoxLayout(window());
  // The award programme: the two option buttons side by side in their frame.
  auto* award = WidgetAs<QGroupBox>(form.AwardFrame, window());
  auto* options = new QHBoxLayout(award);
  options->addWidget(Widget(form.ViewDeletedButton, award));
  options->addWidget(Widget(form.ViewUnDeletedButton, award));
  layout->addWidget(award);
  // The grids, one shown at a time, in the Summary frame with its Update button.
  auto* summary = WidgetAs<QGroupBox>(form.SummaryFrame, window());
  auto* inSummary = new QVBoxLayout(summary);
  for (ui::Grid* grid : {&form.DeletedGrid, &form.UnDeletedGrid}) {
    auto* table = new QTableWidget(summary);
    table->setObjectName(ObjectNameOf(*grid));
    inSummary->addWidget(Bind(*grid, std::make_unique<SummaryGridBinder>(*grid, table)), 1);
  }
  inSummary->addWidget(Widget(form.SummaryProgress, summary));
  QHBoxLayout* update = Row(inSummary);
  update->addWidget(Widget(form.DisplayProgressCmd, summary));
  update->addStretch(1);
  layout->addWidget(summary, 1);
  // The reports.
  auto* reports = WidgetAs<QGroupBox>(form.ReportFrame, window());
  auto* inReports = new QHBoxLayout(reports);
  inReports->addWidget(Widget(form.ReportSubmissionCmd, reports));
  inReports->addWidget(Widget(form.ReportProgressCmd, reports));
  inReports->addStretch(1);
  layout->addWidget(reports);
  PlaceRemaining(window(), layout);
  Finish();
}

}  // namespace vellumar::qt
