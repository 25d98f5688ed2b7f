#pragma once
// Form <-> a top-level window. The window shows the form's Caption, Visible, WindowState,
// geometry (twips, 15 to a pixel) and hourglass; the user's moves and resizes become the form's
// geometry (so that Form_Resize runs), and a close by the window manager asks the form to
// unload, which its QueryUnload and Unload may refuse: the window never closes by itself, it
// hides when the form has gone.
#include <QWidget>
#include <functional>

#include "platform/ui/form.h"
#include "qt/control_binder.h"

namespace vellumar::qt {

class FormBinder : public ControlBinder {
 public:
  FormBinder(ui::Form& form, QWidget* window);
  ~FormBinder() override;

  // The window manager's close; by default the form's Unload(unloadMode).
  std::function<void(int unloadMode)> CloseRequested;

 protected:
  void Show(ui::Property property) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowGeometry();
  void ShowWindowState();
  void ShowMousePointer();
  void TellGeometry();
  void PostGeometry();  // TellGeometry from the event loop, once however often asked
  ui::Form& form_;
  bool hourglass_ = false;           // this form holds the application's wait cursor
  bool geometrySyncPosted_ = false;  // the window's real geometry goes to the model soon
  int tellingGeometry_ = 0;          // the model is being told the window's geometry
};

}  // namespace vellumar::qt
