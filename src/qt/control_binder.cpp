#include "qt/control_binder.h"

#include <QFocusEvent>
#include <QMouseEvent>

#include "platform/ui/controls.h"
#include "platform/ui/form.h"
#include "qt/conversions.h"
#include "qt/key_translation.h"
#include "qt/qt_event_loop.h"

namespace vellumar::qt {

ControlBinder::ControlBinder(ui::Control& control, QWidget* widget)
    : control_(control), widget_(widget) {
  control_.AddObserver(this);
  widget->installEventFilter(this);
}

ControlBinder::~ControlBinder() {
  if (controlAlive_) control_.RemoveObserver(this);
}

void ControlBinder::PropertyChanged(ui::Control&, ui::Property property) {
  if (!widget_ || !controlAlive_) return;
  WidgetUpdate update(*this);
  Show(property);
}

void ControlBinder::ShowAll() {
  using P = ui::Property;
  for (P p : {P::Text, P::Caption, P::List, P::ListIndex, P::Value, P::Tab, P::Locked, P::Selection,
              P::ToolTipText, P::ForeColor, P::BackColor, P::Font, P::Enabled, P::Geometry,
              P::WindowState, P::MousePointer, P::Visible})
    PropertyChanged(control_, p);
}

void ControlBinder::Show(ui::Property property) {
  switch (property) {
    case ui::Property::Enabled:
      widget_->setEnabled(control_.Enabled());
      break;
    case ui::Property::Visible:
      widget_->setVisible(control_.Visible());
      break;
    case ui::Property::ToolTipText:
      widget_->setToolTip(ToQString(control_.ToolTipText()));
      break;
    case ui::Property::ForeColor:
    case ui::Property::BackColor:
      ShowColors();
      break;
    case ui::Property::Font:
      // The models' default font stands for the desktop's own.
      widget_->setFont(control_.Font() == ui::Font{} ? QFont()
                                                     : ToQFont(control_.Font(), widget_->font()));
      break;
    case ui::Property::Focus:
      if (control_.HasFocus() && widget_->isVisible())
        InputWidget()->setFocus(Qt::OtherFocusReason);
      break;
    default:
      break;
  }
}

void ControlBinder::ShowColors() {
  // Black text (0) and a white ground (0xFFFFFF), the models' defaults, are the desktop's own
  // colours, so that a dark theme stays readable; only other colours are set.
  QPalette palette;  // only the roles set here override what the widget inherits
  if (control_.ForeColor() != 0) {
    const QColor color = ToQColor(control_.ForeColor());
    palette.setColor(QPalette::WindowText, color);
    palette.setColor(QPalette::Text, color);
    palette.setColor(QPalette::ButtonText, color);
  }
  const bool ground = control_.BackColor() != kDefaultBackColor;
  if (ground) {
    const QColor color = ToQColor(control_.BackColor());
    palette.setColor(QPalette::Base, color);
    palette.setColor(QPalette::Window, color);
    palette.setColor(QPalette::Button, color);
  }
  widget_->setAutoFillBackground(ground);
  widget_->setPalette(palette);
}

void ControlBinder::Forward(const std::function<void()>& input) {
  if (Updating() || !controlAlive_) return;
  RunEvent("a control's event", input);
}

void ControlBinder::ForwardMouse(bool leftButtonBySignal) {
  forwardMouse_ = true;
  leftBySignal_ = leftButtonBySignal;
  if (InputWidget() != widget_) InputWidget()->installEventFilter(this);
}

bool ControlBinder::eventFilter(QObject* watched, QEvent* event) {
  if (!controlAlive_) return false;
  if (watched != widget_ && watched != InputWidget()) return false;
  switch (event->type()) {
    case QEvent::FocusIn:
      // The user (or the window system) put the focus here: the form's active control follows.
      Forward([this] { control_.SetFocus(); });
      break;
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick: {
      if (!forwardMouse_) break;
      auto* input = dynamic_cast<ui::InputControl*>(&control_);
      if (input == nullptr) break;
      auto* mouse = static_cast<QMouseEvent*>(event);
      const int button = VbButtonFromQt(mouse->button());
      const int shift = VbShiftFromModifiers(mouse->modifiers());
      if (event->type() == QEvent::MouseButtonDblClick) {
        afterDoubleClick_ = true;
        if (button == ui::vbLeftButton) Forward([input] { input->UserDblClick(); });
        break;
      }
      if (button == 0 || !InputWidget()->rect().contains(mouse->position().toPoint())) break;
      if (afterDoubleClick_) {
        // The release that ends a double click raises MouseUp alone, as the runtime does.
        afterDoubleClick_ = false;
        Forward([input, button, shift] { ui::Raise(input->MouseUp, button, shift, 0.0f, 0.0f); });
        break;
      }
      if (button == ui::vbLeftButton && leftBySignal_) break;
      Forward([input, button, shift] { input->UserMouse(button, shift); });
      break;
    }
    default:
      break;
  }
  return false;
}

}  // namespace vellumar::qt
