#include "qt/list_binders.h"

#include <QLineEdit>

#include "qt/conversions.h"

namespace vellumar::qt {
namespace {

// The widget's texts; true if they equal the model's list.
template <typename TextAt>
bool SameItems(const ui::ComboBox& model, int count, TextAt textAt) {
  if (count != model.ListCount()) return false;
  for (int i = 0; i < count; ++i)
    if (textAt(i) != ToQString(model.List(i))) return false;
  return true;
}

template <typename TextAt, typename InsertAt, typename Clear>
void Follow(const ui::ComboBox& model, int count, TextAt textAt, InsertAt insertAt, Clear clear) {
  const int added = model.NewIndex();
  if (model.ListCount() == count + 1 && added >= 0 && added <= count) {
    // One item more, where AddItem said it went: the rest stands if it matches around it.
    const bool before = added == 0 || textAt(added - 1) == ToQString(model.List(added - 1));
    const bool after = added == count || textAt(added) == ToQString(model.List(added + 1));
    if (before && after) {
      insertAt(added, ToQString(model.List(added)));
      return;
    }
  }
  if (SameItems(model, count, textAt)) return;
  clear();
  for (int i = 0; i < model.ListCount(); ++i) insertAt(i, ToQString(model.List(i)));
}

}  // namespace

ComboBoxBinder::ComboBoxBinder(ui::ComboBox& combo, QComboBox* widget)
    : ControlBinder(combo, widget), combo_(combo) {
  widget->setInsertPolicy(QComboBox::NoInsert);
  widget->setMaxVisibleItems(20);
  ShowStyle();
  connect(widget, &QComboBox::activated, this, [this](int index) {
    if (Updating()) return;
    Forward([this, index] { combo_.UserSelect(index); });
    PropertyChanged(combo_, ui::Property::ListIndex);  // the widget shows what the model chose
  });
  ForwardMouse(true);
  ShowAll();
}

QWidget* ComboBoxBinder::InputWidget() const {
  auto* w = static_cast<QComboBox*>(widget());
  return w->lineEdit() ? static_cast<QWidget*>(w->lineEdit()) : w;
}

void ComboBoxBinder::ShowStyle() {
  auto* w = static_cast<QComboBox*>(widget());
  const bool editable = combo_.Style() != ui::ComboBox::kDropDownList;
  if (w->isEditable() == editable) return;
  w->setEditable(editable);
  link_ = nullptr;
  if (editable) {
    w->setCompleter(nullptr);  // the model decides what the text becomes
    link_ = new LineEditLink(combo_, w->lineEdit());
    w->lineEdit()->installEventFilter(this);  // focus and mouse, as on the combo itself
  }
}

void ComboBoxBinder::ShowList() {
  auto* w = static_cast<QComboBox*>(widget());
  ShowStyle();
  Follow(
      combo_, w->count(), [w](int i) { return w->itemText(i); },
      [w](int i, const QString& text) { w->insertItem(i, text); }, [w] { w->clear(); });
  ShowListIndex();
}

void ComboBoxBinder::ShowListIndex() {
  auto* w = static_cast<QComboBox*>(widget());
  if (w->currentIndex() != combo_.ListIndex()) w->setCurrentIndex(combo_.ListIndex());
  if (link_) link_->ShowText();  // the selection wrote the item's text; the model's stands
}

void ComboBoxBinder::Show(ui::Property property) {
  switch (property) {
    case ui::Property::List:
      ShowList();
      break;
    case ui::Property::ListIndex:
      ShowListIndex();
      break;
    case ui::Property::Text:
      if (link_) link_->ShowText();
      break;
    case ui::Property::Selection:
      if (link_) link_->ShowSelection();
      break;
    case ui::Property::Locked:
      if (link_) link_->ShowLocked();
      break;
    default:
      ControlBinder::Show(property);
  }
}

ListBoxBinder::ListBoxBinder(ui::ListBox& list, QListWidget* widget)
    : ControlBinder(list, widget), list_(list) {
  connect(widget, &QListWidget::currentRowChanged, this, [this](int row) {
    if (Updating() || row < 0) return;
    Forward([this, row] { list_.UserSelect(row); });
    PropertyChanged(list_, ui::Property::ListIndex);
  });
  ForwardMouse(false);
  ShowAll();
}

void ListBoxBinder::Show(ui::Property property) {
  auto* w = static_cast<QListWidget*>(widget());
  switch (property) {
    case ui::Property::List:
      Follow(
          list_, w->count(), [w](int i) { return w->item(i)->text(); },
          [w](int i, const QString& text) { w->insertItem(i, text); }, [w] { w->clear(); });
      [[fallthrough]];
    case ui::Property::ListIndex:
      if (w->currentRow() != list_.ListIndex()) w->setCurrentRow(list_.ListIndex());
      break;
    default:
      ControlBinder::Show(property);
  }
}

}  // namespace vellumar::qt
