#include "qt/form_binder.h"

#include <QApplication>
#include <QCloseEvent>
#include <QTimer>

#include "qt/conversions.h"

namespace vellumar::qt {
namespace {

int VbWindowState(Qt::WindowStates states) {
  if (states & Qt::WindowMinimized) return ui::vbMinimized;
  if (states & Qt::WindowMaximized) return ui::vbMaximized;
  return ui::vbNormal;
}

}  // namespace

FormBinder::FormBinder(ui::Form& form, QWidget* window) : ControlBinder(form, window), form_(form) {
  CloseRequested = [this](int unloadMode) { form_.Unload(unloadMode); };
  ShowAll();
}

FormBinder::~FormBinder() {
  if (hourglass_) QApplication::restoreOverrideCursor();
}

void FormBinder::Show(ui::Property property) {
  QWidget* w = widget();
  switch (property) {
    case ui::Property::Caption:
      w->setWindowTitle(ToQString(form_.Caption()));
      break;
    case ui::Property::Visible:
      if (form_.Visible()) {
        w->show();
        w->raise();
      } else {
        w->hide();
      }
      break;
    case ui::Property::WindowState:
      ShowWindowState();
      break;
    case ui::Property::MousePointer:
      ShowMousePointer();
      break;
    case ui::Property::Geometry:
      ShowGeometry();
      break;
    case ui::Property::Enabled:
      w->setEnabled(form_.Enabled());
      break;
    default:
      break;  // a form's font and colours are its controls' defaults, nothing more
  }
}

void FormBinder::ShowGeometry() {
  if (tellingGeometry_) return;
  if (form_.Width() <= 0 || form_.Height() <= 0) return;  // no size given: the layout's own
  QWidget* w = widget();
  if (w->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized)) return;
  w->move(PixelsFromTwips(form_.Left()), PixelsFromTwips(form_.Top()));
  w->resize(PixelsFromTwips(form_.Width()), PixelsFromTwips(form_.Height()));
  // A size below the layout's minimum was not taken: the model learns the real one, after the
  // change it is making has run to its end.
  if (w->width() != PixelsFromTwips(form_.Width()) ||
      w->height() != PixelsFromTwips(form_.Height())) {
    PostGeometry();
  }
}

void FormBinder::PostGeometry() {
  if (geometrySyncPosted_) return;
  geometrySyncPosted_ = true;
  QTimer::singleShot(0, this, [this] {
    geometrySyncPosted_ = false;
    TellGeometry();
  });
}

void FormBinder::ShowWindowState() {
  QWidget* w = widget();
  Qt::WindowStates states = w->windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
  if (form_.WindowState() == ui::vbMinimized) states |= Qt::WindowMinimized;
  if (form_.WindowState() == ui::vbMaximized) states |= Qt::WindowMaximized;
  if (states != w->windowState()) w->setWindowState(states);
}

void FormBinder::ShowMousePointer() {
  const bool wait = form_.MousePointer() == ui::vbHourglass;
  if (wait == hourglass_) return;
  hourglass_ = wait;
  if (wait) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void FormBinder::TellGeometry() {
  QWidget* w = widget();
  if (w == nullptr || (w->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized))) return;
  const QRect frame = w->frameGeometry();
  const int left = TwipsFromPixels(frame.x()), top = TwipsFromPixels(frame.y());
  const int width = TwipsFromPixels(w->width()), height = TwipsFromPixels(w->height());
  // The model hears the four values one by one; the window must not be put back to the half
  // told geometry in between.
  ++tellingGeometry_;
  Forward([&] {
    form_.SetLeft(left);
    form_.SetTop(top);
    form_.SetWidth(width);
    form_.SetHeight(height);
  });
  --tellingGeometry_;
}

bool FormBinder::eventFilter(QObject* watched, QEvent* event) {
  if (watched != widget()) return false;
  switch (event->type()) {
    case QEvent::Close:
      // The model decides; the window hides when the form's Visible says so.
      event->ignore();
      Forward([this] { CloseRequested(ui::vbFormControlMenu); });
      return true;
    case QEvent::Resize:
    case QEvent::Move:
      // Told once the layout has placed the controls (it runs after this filter), so that the
      // form's Resize reads their new geometry.
      if (!Updating() && widget()->isVisible()) PostGeometry();
      break;
    case QEvent::WindowStateChange: {
      const int state = VbWindowState(widget()->windowState());
      Forward([this, state] { form_.SetWindowState(state); });
      break;
    }
    default:
      break;
  }
  return ControlBinder::eventFilter(watched, event);
}

}  // namespace vellumar::qt
