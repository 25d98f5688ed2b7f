#pragma once
// The windows of the forms the main window loads beside itself. Their controls are laid out
// in the forms' own order until their pages are designed control by control.
#include <initializer_list>

#include "logpage/side_forms.h"
#include "qt/advanced_filter_view.h"
#include "qt/form_view.h"

namespace vellumar::qt {

// A plain window holding every control of its form: first those named (controls the form has
// and may not list among its Controls()), then the form's own in its order.
class ListedFormView : public FormView {
 public:
  explicit ListedFormView(ui::Form& form, std::initializer_list<ui::Control*> first = {});
};

class CaptureView : public ListedFormView {
 public:
  explicit CaptureView(Capture& form) : ListedFormView(form, {&form.DXCC}) {}
};

class CardPageView : public ListedFormView {
 public:
  explicit CardPageView(CardPage& form) : ListedFormView(form) {}
};

class AddressEditorView : public ListedFormView {
 public:
  explicit AddressEditorView(AddressEditor& form) : ListedFormView(form) {}
};

}  // namespace vellumar::qt
