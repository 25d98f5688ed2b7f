#include "qt/side_form_views.h"

#include <QVBoxLayout>

namespace vellumar::qt {

ListedFormView::ListedFormView(ui::Form& form, std::initializer_list<ui::Control*> first)
    : FormView(form, std::make_unique<QWidget>()) {
  auto* layout = new QVBoxLayout(window());
  for (ui::Control* control : first)
    if (QWidget* w = Widget(*control, window())) layout->addWidget(w);
  PlaceRemaining(window(), layout);
  layout->addStretch(1);
  window()->setMinimumWidth(320);
  Finish();
}

}  // namespace vellumar::qt
