#pragma once
// Binders of the controls that map one to one onto a Qt widget.
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

#include "platform/ui/controls.h"
#include "qt/control_binder.h"
#include "qt/line_edit_link.h"

namespace vellumar::qt {

// TextBox <-> QLineEdit.
class TextBoxBinder : public ControlBinder {
 public:
  TextBoxBinder(ui::TextBox& box, QLineEdit* edit);

 protected:
  void Show(ui::Property property) override;

 private:
  LineEditLink* link_;  // child of the widget
};

// Label <-> QLabel. "&" marks no mnemonic here.
class LabelBinder : public ControlBinder {
 public:
  LabelBinder(ui::Label& label, QLabel* widget);

 protected:
  void Show(ui::Property property) override;

 private:
  ui::Label& label_;
};

// A read-only multi-line TextBox <-> QPlainTextEdit, scrolled to its last line when it changes.
class ReadOnlyTextBinder : public ControlBinder {
 public:
  ReadOnlyTextBinder(ui::TextBox& box, QPlainTextEdit* widget);

 protected:
  void Show(ui::Property property) override;

 private:
  ui::TextBox& box_;
};

// Frame <-> QGroupBox; its ForeColor colours the caption alone, as the runtime's frame does.
class FrameBinder : public ControlBinder {
 public:
  FrameBinder(ui::Frame& frame, QGroupBox* box);

 protected:
  void Show(ui::Property property) override;

 private:
  ui::Frame& frame_;
};

// CommandButton <-> QPushButton: a click (mouse, Space, mnemonic) is UserClick.
class CommandButtonBinder : public ControlBinder {
 public:
  CommandButtonBinder(ui::CommandButton& button, QPushButton* widget);

 protected:
  void Show(ui::Property property) override;

 private:
  ui::CommandButton& button_;
};

// CheckBox <-> QCheckBox: a click is UserToggle; Value 2 is the grayed state.
class CheckBoxBinder : public ControlBinder {
 public:
  CheckBoxBinder(ui::CheckBox& box, QCheckBox* widget);

 protected:
  void Show(ui::Property property) override;

 private:
  ui::CheckBox& box_;
};

// OptionButton <-> QRadioButton. The model's group does the excluding, so the widgets are not
// exclusive among themselves.
class OptionButtonBinder : public ControlBinder {
 public:
  OptionButtonBinder(ui::OptionButton& button, QRadioButton* widget);

 protected:
  void Show(ui::Property property) override;

 private:
  ui::OptionButton& button_;
};

// ProgressBar <-> QProgressBar, in thousandths of the range from Min to Max.
class ProgressBarBinder : public ControlBinder {
 public:
  static constexpr int kSteps = 1000;
  ProgressBarBinder(ui::ProgressBar& bar, QProgressBar* widget);

 protected:
  void Show(ui::Property property) override;

 private:
  ui::ProgressBar& bar_;
};

}  // namespace vellumar::qt
