#include "qt/binder_factory.h"

#include <QTabWidget>
#include <QTableView>

#include "platform/bound/data_control.h"
#include "platform/bound/grid.h"
#include "qt/array_grid_binder.h"
#include "qt/conversions.h"
#include "qt/grid_binder.h"
#include "qt/list_binders.h"
#include "qt/simple_binders.h"
#include "qt/tab_strip_binder.h"

namespace vellumar::qt {
namespace {

template <typename W>
W* Named(W* widget, const ui::Control& control) {
  widget->setObjectName(ObjectNameOf(control));
  return widget;
}

}  // namespace

QString ObjectNameOf(const ui::Control& control) {
  QString name = ToQString(control.Name());
  if (control.Index() >= 0) name += QStringLiteral("(%1)").arg(control.Index());
  return name;
}

std::unique_ptr<ControlBinder> MakeBinder(ui::Control& control, QWidget* parent) {
  // Most derived first: a list box is a combo, a combo is a text box.
  if (dynamic_cast<ui::DataControl*>(&control)) return nullptr;
  if (auto* c = dynamic_cast<ui::ListBox*>(&control))
    return std::make_unique<ListBoxBinder>(*c, Named(new QListWidget(parent), control));
  if (auto* c = dynamic_cast<ui::ComboBox*>(&control))
    return std::make_unique<ComboBoxBinder>(*c, Named(new QComboBox(parent), control));
  if (auto* c = dynamic_cast<ui::TextBox*>(&control); c && c->MultiLine && c->Locked())
    return std::make_unique<ReadOnlyTextBinder>(*c, Named(new QPlainTextEdit(parent), control));
  if (auto* c = dynamic_cast<ui::TextBox*>(&control))
    return std::make_unique<TextBoxBinder>(*c, Named(new QLineEdit(parent), control));
  if (auto* c = dynamic_cast<ui::Grid*>(&control)) {
    if (c->DataMode() == ui::Grid::kArrayData)
      return std::make_unique<ArrayGridBinder>(*c, Named(new QTableView(parent), control));
    return std::make_unique<GridBinder>(*c, Named(new QTableView(parent), control));
  }
  if (auto* c = dynamic_cast<ui::TabStrip*>(&control)) {
    auto* tabs = Named(new QTabWidget(parent), control);
    tabs->setUsesScrollButtons(false);  // every tab in sight: the window is as wide as they need
    for (int i = 0; i < c->Tabs(); ++i)
      tabs->addTab(new QWidget(tabs), ToQString(c->TabCaption(i)));
    return std::make_unique<TabStripBinder>(*c, tabs);
  }
  if (auto* c = dynamic_cast<ui::CommandButton*>(&control))
    return std::make_unique<CommandButtonBinder>(*c, Named(new QPushButton(parent), control));
  if (auto* c = dynamic_cast<ui::CheckBox*>(&control))
    return std::make_unique<CheckBoxBinder>(*c, Named(new QCheckBox(parent), control));
  if (auto* c = dynamic_cast<ui::OptionButton*>(&control))
    return std::make_unique<OptionButtonBinder>(*c, Named(new QRadioButton(parent), control));
  if (auto* c = dynamic_cast<ui::Label*>(&control))
    return std::make_unique<LabelBinder>(*c, Named(new QLabel(parent), control));
  if (auto* c = dynamic_cast<ui::Frame*>(&control))
    return std::make_unique<FrameBinder>(*c, Named(new QGroupBox(parent), control));
  if (auto* c = dynamic_cast<ui::ProgressBar*>(&control))
    return std::make_unique<ProgressBarBinder>(*c, Named(new QProgressBar(parent), control));
  return nullptr;
}

}  // namespace vellumar::qt
