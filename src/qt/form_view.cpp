#include "qt/form_view.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>

#include "platform/bound/data_control.h"
#include "platform/ui/controls.h"
#include "qt/binder_factory.h"
#include "qt/conversions.h"

namespace vellumar::qt {

FormView::FormView(ui::Form& form, std::unique_ptr<QWidget> window)
    : window_(std::move(window)), form_(form) {
  window_->setObjectName(ToQString(form.Name()));
  window_->setAttribute(Qt::WA_QuitOnClose, false);  // the program ends through its model
}

FormView::~FormView() = default;

QWidget* FormView::Widget(ui::Control& control, QWidget* parent) {
  if (auto it = binders_.find(&control); it != binders_.end())
    return it->second ? it->second->widget() : nullptr;
  std::unique_ptr<ControlBinder> binder = MakeBinder(control, parent);
  QWidget* widget = binder ? binder->widget() : nullptr;
  binders_.emplace(&control, std::move(binder));
  return widget;
}

QWidget* FormView::Bind(ui::Control& control, std::unique_ptr<ControlBinder> binder) {
  QWidget* widget = binder ? binder->widget() : nullptr;
  binders_[&control] = std::move(binder);
  return widget;
}

QWidget* FormView::WidgetOf(const ui::Control& control) const {
  const ControlBinder* b = BinderOf(control);
  return b ? b->widget() : nullptr;
}

ControlBinder* FormView::BinderOf(const ui::Control& control) const {
  auto it = binders_.find(&control);
  return it == binders_.end() ? nullptr : it->second.get();
}

void FormView::PlaceRemaining(QWidget* parent, QBoxLayout* layout) {
  QWidget* host = parent;       // the widget the next controls go into: a frame, or parent
  QGridLayout* grid = nullptr;  // its rows: label and field, or one wide widget
  QHBoxLayout* buttonRow = nullptr;
  QLabel* pendingLabel = nullptr;
  auto gridHere = [&] {
    if (grid == nullptr) {
      grid = new QGridLayout;
      grid->setColumnStretch(1, 1);
      layout->addLayout(grid);
    }
    return grid;
  };
  const auto controls = form_.Controls();  // a copy: making widgets adopts nothing, but be safe
  for (ui::Control* control : controls) {
    if (HasWidget(*control) || dynamic_cast<ui::DataControl*>(control)) continue;
    if (auto* frame = dynamic_cast<ui::Frame*>(control)) {
      auto* box = WidgetAs<QGroupBox>(*frame, parent);
      layout->addWidget(box);
      host = box;
      grid = new QGridLayout(box);
      grid->setColumnStretch(1, 1);
      buttonRow = nullptr;
      pendingLabel = nullptr;
      continue;
    }
    QWidget* widget = Widget(*control, host);
    if (widget == nullptr) continue;
    QGridLayout* g = gridHere();
    const int row = g->rowCount();
    if (dynamic_cast<ui::CommandButton*>(control)) {
      if (buttonRow == nullptr) {
        buttonRow = new QHBoxLayout;
        g->addLayout(buttonRow, row, 0, 1, 2);
      }
      buttonRow->addWidget(widget);
      pendingLabel = nullptr;
      continue;
    }
    if (buttonRow) {
      buttonRow->addStretch(1);
      buttonRow = nullptr;
    }
    const bool field = dynamic_cast<ui::TextBox*>(control) != nullptr;
    if (auto* label = qobject_cast<QLabel*>(widget)) {
      pendingLabel = label;
      g->addWidget(label, row, 0);
      continue;
    }
    if (field && pendingLabel) {
      g->addWidget(widget, row - 1, 1);
      pendingLabel->setBuddy(widget);
    } else {
      g->addWidget(widget, row, 0, 1, 2);
    }
    pendingLabel = nullptr;
  }
  if (buttonRow) buttonRow->addStretch(1);
}

void FormView::Finish() {
  if (form_.Width() <= 0 || form_.Height() <= 0) {
    // No design size: the layout's, centred on the screen.
    window_->adjustSize();
    const QSize size = window_->size();
    QPoint at(0, 0);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
      at = screen->availableGeometry().center() - QPoint(size.width() / 2, size.height() / 2);
    form_.Move(TwipsFromPixels(at.x()), TwipsFromPixels(at.y()), TwipsFromPixels(size.width()),
               TwipsFromPixels(size.height()));
  }
  formBinder_ = std::make_unique<FormBinder>(form_, window_.get());
}

QHBoxLayout* Row(QBoxLayout* into) {
  auto* row = new QHBoxLayout;
  into->addLayout(row);
  return row;
}

}  // namespace vellumar::qt
