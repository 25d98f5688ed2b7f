#include "qt/advanced_filter_view.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace vellumar::qt {
namespace {

// Boxes in columns of `rows`, each box followed by its label.
template <class Form>
void CheckGrid(QGridLayout* grid, int first, int last, int rows,
               ui::ControlArray<ui::CheckBox>& boxes, ui::ControlArray<ui::Label>& labels,
               Form&& widget) {
  for (int i = first; i <= last; ++i) {
    const int row = (i - first) % rows;
    const int column = 2 * ((i - first) / rows);
    grid->addWidget(widget(boxes(i)), row, column);
    grid->addWidget(widget(labels(i)), row, column + 1);
  }
}

}  // namespace

AdvancedFilterView::AdvancedFilterView(AdvancedFilter& form)
    : FormView(form, std::make_unique<QWidget>()), form_(form) {
  auto* layout = new QVBoxLayout(window());
  QHBoxLayout* top = Row(layout);
  top->addWidget(ModeFrame(window()));
  top->addWidget(BandFrame(window()));
  layout->addWidget(SortFrame(window()));
  layout->addWidget(SQLFrame(window()));
  layout->addWidget(UTCFrame(window()));
  PlaceRemaining(window(), layout);  // none, unless the form grows
  layout->addStretch(1);
  Finish();
}

QWidget* AdvancedFilterView::ModeFrame(QWidget* parent) {
  auto* box = WidgetAs<QGroupBox>(form_.ModeFrame, parent);
  auto* outer = new QVBoxLayout(box);
  auto* grid = new QGridLayout;
  CheckGrid(grid, 1, 14, 7, form_.ModeCheck, form_.ModeLabel,
            [&](ui::Control& c) { return Widget(c, box); });
  outer->addLayout(grid);
  outer->addWidget(Widget(form_.ModeFilterCmd, box));
  return box;
}

QWidget* AdvancedFilterView::BandFrame(QWidget* parent) {
  auto* box = WidgetAs<QGroupBox>(form_.BandFrame, parent);
  auto* outer = new QVBoxLayout(box);
  auto* grid = new QGridLayout;
  CheckGrid(grid, 1, 15, 5, form_.BandCheck, form_.BandLabel,
            [&](ui::Control& c) { return Widget(c, box); });
  outer->addLayout(grid);
  outer->addWidget(Widget(form_.BandFilterCmd, box));
  return box;
}

QWidget* AdvancedFilterView::SortFrame(QWidget* parent) {
  auto* box = WidgetAs<QGroupBox>(form_.AdvancedSortFrame, parent);
  auto* outer = new QVBoxLayout(box);
  auto* sorts = new QGridLayout;
  for (int i = 0; i < 4; ++i) {
    sorts->addWidget(Widget(form_.AdvancedSortSelect(i), box), i, 0);
    sorts->addWidget(Widget(form_.AdvancedSort(i), box), i, 1);
  }
  sorts->setColumnStretch(1, 1);
  outer->addLayout(sorts);
  QHBoxLayout* fields = Row(outer);
  for (int i = 0; i < 3; ++i) {
    auto* frame = WidgetAs<QGroupBox>(form_.SortFieldFrame(i), box);
    auto* inner = new QVBoxLayout(frame);
    inner->addWidget(Widget(form_.SortField(i), frame));
    QHBoxLayout* direction = Row(inner);
    direction->addWidget(Widget(form_.SortAscendingButton(i), frame));
    direction->addWidget(Widget(form_.SortDescendingButton(i), frame));
    inner->addWidget(Widget(form_.SortFieldClearCmd(i), frame));
    fields->addWidget(frame, 1);
  }
  QHBoxLayout* names = Row(outer);
  names->addWidget(Widget(form_.FieldNameLabel, box));
  names->addWidget(Widget(form_.FieldNameCombo, box), 1);
  return box;
}

QWidget* AdvancedFilterView::SQLFrame(QWidget* parent) {
  auto* box = WidgetAs<QGroupBox>(form_.SQLFrame, parent);
  auto* grid = new QGridLayout(box);
  for (int i = 0; i < 4; ++i) {
    grid->addWidget(Widget(form_.SQLquery(i), box), i, 0);
    grid->addWidget(Widget(form_.SQLFilterCmd(i), box), i, 1);
  }
  grid->addWidget(Widget(form_.SQLHelpCmd, box), 4, 1);
  grid->setColumnStretch(0, 1);
  return box;
}

QWidget* AdvancedFilterView::UTCFrame(QWidget* parent) {
  auto* box = WidgetAs<QGroupBox>(form_.UTCFrame, parent);
  auto* grid = new QGridLayout(box);
  grid->addWidget(Widget(form_.DateFilterKind(0), box), 0, 0);
  grid->addWidget(Widget(form_.DateFilterTolerance, box), 0, 1);
  grid->addWidget(Widget(form_.ToleranceLabel, box), 0, 2);
  grid->addWidget(Widget(form_.DateFilterKind(1), box), 1, 0);
  grid->addWidget(Widget(form_.UpperBoundLabel, box), 1, 1);
  grid->addWidget(Widget(form_.DateFilterUpperBound, box), 1, 2);
  grid->addWidget(Widget(form_.AdvancedUTCFilterCmd, box), 2, 0);
  grid->setColumnStretch(2, 1);
  return box;
}

}  // namespace vellumar::qt
