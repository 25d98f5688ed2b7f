#pragma once
// A binder keeps one widget showing one control model and forwards the user's input on the
// widget to the model's User... operations, never changing the model otherwise.
//
// Feedback: while a binder writes to its widget (Updating()), the widget's signals are the
// binder's own echo and are not forwarded. The model's answer to forwarded input comes back
// through PropertyChanged like any other change, so the widget ends up showing what the model
// decided (an upper-cased letter, a refused tab change, a swallowed key).
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>

#include "platform/ui/control.h"

namespace vellumar::qt {

class ControlBinder : public QObject, public ui::ControlObserver {
 public:
  ControlBinder(ui::Control& control, QWidget* widget);
  ~ControlBinder() override;
  ControlBinder(const ControlBinder&) = delete;
  ControlBinder& operator=(const ControlBinder&) = delete;

  ui::Control& control() const { return control_; }
  QWidget* widget() const { return widget_; }

  void PropertyChanged(ui::Control& control, ui::Property property) final;
  // A model that goes before its widget: the binder stops forwarding to it.
  void ControlDestroyed(ui::Control& control) final { controlAlive_ = false; }
  // Shows every property of the model; a derived binder calls it at the end of its constructor.
  void ShowAll();

 protected:
  // Shows one property in the widget. The base shows those every control has.
  virtual void Show(ui::Property property);
  bool Updating() const { return updating_ > 0; }
  // The model still exists (it may go before its widget).
  bool ControlAlive() const { return controlAlive_; }
  // Marks a stretch in which the binder writes to the widget.
  class WidgetUpdate {
   public:
    explicit WidgetUpdate(ControlBinder& b) : b_(b) { ++b_.updating_; }
    ~WidgetUpdate() { --b_.updating_; }
    WidgetUpdate(const WidgetUpdate&) = delete;
    WidgetUpdate& operator=(const WidgetUpdate&) = delete;

   private:
    ControlBinder& b_;
  };
  // Runs the forwarding of user input (not while updating), shielding Qt from exceptions.
  void Forward(const std::function<void()>& input);

  // Mouse input of an input control: buttons that the widget doesn't turn into a signal of its
  // own are forwarded as UserMouse; a double click as UserDblClick.
  void ForwardMouse(bool leftButtonBySignal);
  bool eventFilter(QObject* watched, QEvent* event) override;
  // The widget that receives the input events (a combo's line edit, a view's viewport).
  virtual QWidget* InputWidget() const { return widget_; }

 private:
  void ShowColors();
  static constexpr ui::Color kDefaultBackColor = 0xFFFFFF;
  ui::Control& control_;
  QPointer<QWidget> widget_;
  bool controlAlive_ = true;  // the model still exists
  int updating_ = 0;
  bool forwardMouse_ = false;
  bool leftBySignal_ = false;
  bool afterDoubleClick_ = false;  // the next release ends a double click
};

}  // namespace vellumar::qt
