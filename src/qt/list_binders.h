#pragma once
// Binders of the list controls: ComboBox <-> QComboBox (editable for the combo styles, a
// drop-down list for Style 2) and ListBox <-> QListWidget.
#include <QComboBox>
#include <QListWidget>

#include "platform/ui/controls.h"
#include "qt/control_binder.h"
#include "qt/line_edit_link.h"

namespace vellumar::qt {

class ComboBoxBinder : public ControlBinder {
 public:
  ComboBoxBinder(ui::ComboBox& combo, QComboBox* widget);

 protected:
  void Show(ui::Property property) override;
  QWidget* InputWidget() const override;

 private:
  void ShowStyle();
  void ShowList();
  void ShowListIndex();
  ui::ComboBox& combo_;
  LineEditLink* link_ = nullptr;  // for the editable styles; child of the line edit
};

class ListBoxBinder : public ControlBinder {
 public:
  ListBoxBinder(ui::ListBox& list, QListWidget* widget);

 protected:
  void Show(ui::Property property) override;

 private:
  ui::ListBox& list_;
};

}  // namespace vellumar::qt
