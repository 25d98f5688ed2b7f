#pragma once
// A form's window: the widgets of its controls, each kept by a binder, in Qt layouts. A view
// places the controls it knows in the order of the form's panels; the ones it doesn't (a form
// grows with the features it serves) are laid out after them in the form's own order, so that
// every control has a widget.
#include <QBoxLayout>
#include <QWidget>
#include <map>
#include <memory>
#include <string>

#include "platform/ui/form.h"
#include "qt/control_binder.h"
#include "qt/form_binder.h"

namespace vellumar::qt {

class FormView {
 public:
  FormView(ui::Form& form, std::unique_ptr<QWidget> window);
  virtual ~FormView();
  FormView(const FormView&) = delete;
  FormView& operator=(const FormView&) = delete;

  QWidget* window() const { return window_.get(); }
  ui::Form& form() const { return form_; }
  FormBinder& formBinder() const { return *formBinder_; }
  // The widget of a control of this view; nullptr if it has none.
  QWidget* WidgetOf(const ui::Control& control) const;
  ControlBinder* BinderOf(const ui::Control& control) const;

 protected:
  // The control's widget, made with its binder on first use and parented to `parent`.
  QWidget* Widget(ui::Control& control, QWidget* parent);
  template <typename W>
  W* WidgetAs(ui::Control& control, QWidget* parent) {
    return static_cast<W*>(Widget(control, parent));
  }
  // Lays out the form's controls that have no widget yet, in the form's order: a label before
  // a text box or combo shares its row, a run of command buttons makes one row, and a frame
  // holds the controls after it up to the next frame.
  void PlaceRemaining(QWidget* parent, QBoxLayout* layout);
  bool HasWidget(const ui::Control& control) const { return binders_.count(&control) > 0; }
  // Keeps a binder the view made itself, for a control shown by a widget of its own kind.
  QWidget* Bind(ui::Control& control, std::unique_ptr<ControlBinder> binder);
  // Ends the construction: the form's design size comes from the layout if the form has none,
  // and the window starts following the form.
  void Finish();

 private:
  std::unique_ptr<QWidget> window_;  // destroyed after the binders
  ui::Form& form_;
  std::map<const ui::Control*, std::unique_ptr<ControlBinder>> binders_;
  std::unique_ptr<FormBinder> formBinder_;
};

// A new row of widgets at the end of `into`, which the views' pages are built of.
QHBoxLayout* Row(QBoxLayout* into);

// A caption for the model when its designer left it empty; what the model sets stands.
template <typename C>
void DesignCaption(C& control, const std::string& caption) {
  if (control.Caption().empty()) control.SetCaption(caption);
}

}  // namespace vellumar::qt
