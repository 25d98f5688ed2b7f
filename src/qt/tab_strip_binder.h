#pragma once
// TabStrip <-> QTabWidget. The pages are the view's; the binder keeps the shown page and the
// tab captions with the model. A tab the user picks is UserSelectTab; when the model puts Tab
// back (a command is running), the widget goes back with it.
#include <QTabWidget>

#include "platform/ui/controls.h"
#include "qt/control_binder.h"

namespace vellumar::qt {

class TabStripBinder : public ControlBinder {
 public:
  TabStripBinder(ui::TabStrip& strip, QTabWidget* widget);

 protected:
  void Show(ui::Property property) override;

 private:
  ui::TabStrip& strip_;
};

}  // namespace vellumar::qt
