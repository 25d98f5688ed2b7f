#include "qt/tab_strip_binder.h"

#include "qt/conversions.h"

namespace vellumar::qt {

TabStripBinder::TabStripBinder(ui::TabStrip& strip, QTabWidget* widget)
    : ControlBinder(strip, widget), strip_(strip) {
  connect(widget, &QTabWidget::currentChanged, this, [this](int index) {
    if (Updating() || index < 0) return;
    Forward([this, index] { strip_.UserSelectTab(index); });
    PropertyChanged(strip_, ui::Property::Tab);
  });
  ForwardMouse(true);
  ShowAll();
}

void TabStripBinder::Show(ui::Property property) {
  auto* w = static_cast<QTabWidget*>(widget());
  switch (property) {
    case ui::Property::Caption:
      for (int i = 0; i < std::min(w->count(), strip_.Tabs()); ++i)
        w->setTabText(i, ToQString(strip_.TabCaption(i)));
      break;
    case ui::Property::Tab:
      if (strip_.Tab() < w->count() && w->currentIndex() != strip_.Tab())
        w->setCurrentIndex(strip_.Tab());
      break;
    default:
      ControlBinder::Show(property);
  }
}

}  // namespace vellumar::qt
