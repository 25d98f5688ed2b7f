#include "qt/simple_binders.h"

#include <algorithm>

#include "qt/conversions.h"

namespace vellumar::qt {

TextBoxBinder::TextBoxBinder(ui::TextBox& box, QLineEdit* edit)
    : ControlBinder(box, edit), link_(new LineEditLink(box, edit)) {
  ForwardMouse(false);
  ShowAll();
}

void TextBoxBinder::Show(ui::Property property) {
  switch (property) {
    case ui::Property::Text:
      link_->ShowText();
      break;
    case ui::Property::Selection:
      link_->ShowSelection();
      break;
    case ui::Property::Locked:
      link_->ShowLocked();
      break;
    default:
      ControlBinder::Show(property);
  }
}

LabelBinder::LabelBinder(ui::Label& label, QLabel* widget)
    : ControlBinder(label, widget), label_(label) {
  ForwardMouse(false);
  ShowAll();
}

void LabelBinder::Show(ui::Property property) {
  if (property == ui::Property::Caption) {
    static_cast<QLabel*>(widget())->setText(WithoutMnemonic(label_.Caption()));
  } else {
    ControlBinder::Show(property);
  }
}

ReadOnlyTextBinder::ReadOnlyTextBinder(ui::TextBox& box, QPlainTextEdit* widget)
    : ControlBinder(box, widget), box_(box) {
  widget->setReadOnly(true);
  ShowAll();
}

void ReadOnlyTextBinder::Show(ui::Property property) {
  if (property == ui::Property::Text) {
    auto* edit = static_cast<QPlainTextEdit*>(widget());
    edit->setPlainText(ToQString(box_.Text()));
    edit->moveCursor(QTextCursor::End);
  } else {
    ControlBinder::Show(property);
  }
}

FrameBinder::FrameBinder(ui::Frame& frame, QGroupBox* box)
    : ControlBinder(frame, box), frame_(frame) {
  ShowAll();
}

void FrameBinder::Show(ui::Property property) {
  auto* box = static_cast<QGroupBox*>(widget());
  switch (property) {
    case ui::Property::Caption:
      box->setTitle(ToQString(frame_.Caption()));
      break;
    case ui::Property::ForeColor:
      // A palette would colour every label inside as well; the title alone takes the colour.
      if (frame_.ForeColor() == 0) {
        box->setStyleSheet(QString());
      } else {
        box->setProperty("vellumarName", box->objectName());
        box->setStyleSheet(QStringLiteral("QGroupBox[vellumarName=\"%1\"]::title { color: %2; }")
                               .arg(box->objectName(), ToQColor(frame_.ForeColor()).name()));
      }
      break;
    default:
      ControlBinder::Show(property);
  }
}

CommandButtonBinder::CommandButtonBinder(ui::CommandButton& button, QPushButton* widget)
    : ControlBinder(button, widget), button_(button) {
  widget->setAutoDefault(false);
  connect(widget, &QPushButton::clicked, this,
          [this] { Forward([this] { button_.UserClick(); }); });
  ForwardMouse(true);
  ShowAll();
}

void CommandButtonBinder::Show(ui::Property property) {
  if (property == ui::Property::Caption) {
    static_cast<QPushButton*>(widget())->setText(ToQString(button_.Caption()));
  } else {
    ControlBinder::Show(property);
  }
}

CheckBoxBinder::CheckBoxBinder(ui::CheckBox& box, QCheckBox* widget)
    : ControlBinder(box, widget), box_(box) {
  connect(widget, &QCheckBox::clicked, this, [this] {
    if (Updating()) return;
    Forward([this] { box_.UserToggle(); });
    PropertyChanged(box_, ui::Property::Value);  // Qt toggled by itself; the model decides
  });
  ForwardMouse(true);
  ShowAll();
}

void CheckBoxBinder::Show(ui::Property property) {
  auto* w = static_cast<QCheckBox*>(widget());
  switch (property) {
    case ui::Property::Caption:
      w->setText(ToQString(box_.Caption()));
      break;
    case ui::Property::Value:
      if (box_.Value() == 2) w->setTristate(true);
      w->setCheckState(box_.Value() == 1   ? Qt::Checked
                       : box_.Value() == 2 ? Qt::PartiallyChecked
                                           : Qt::Unchecked);
      break;
    default:
      ControlBinder::Show(property);
  }
}

OptionButtonBinder::OptionButtonBinder(ui::OptionButton& button, QRadioButton* widget)
    : ControlBinder(button, widget), button_(button) {
  widget->setAutoExclusive(false);
  connect(widget, &QRadioButton::clicked, this, [this] {
    if (Updating()) return;
    Forward([this] { button_.UserSelect(); });
    PropertyChanged(button_, ui::Property::Value);
  });
  ForwardMouse(true);
  ShowAll();
}

void OptionButtonBinder::Show(ui::Property property) {
  auto* w = static_cast<QRadioButton*>(widget());
  switch (property) {
    case ui::Property::Caption:
      w->setText(ToQString(button_.Caption()));
      break;
    case ui::Property::Value:
      w->setChecked(button_.Value());
      break;
    default:
      ControlBinder::Show(property);
  }
}

ProgressBarBinder::ProgressBarBinder(ui::ProgressBar& bar, QProgressBar* widget)
    : ControlBinder(bar, widget), bar_(bar) {
  widget->setRange(0, kSteps);
  widget->setTextVisible(false);
  ShowAll();
}

void ProgressBarBinder::Show(ui::Property property) {
  if (property != ui::Property::Value) return ControlBinder::Show(property);
  const double span = bar_.Max - bar_.Min;
  const double fraction = span > 0 ? (bar_.Value() - bar_.Min) / span : 0.0;
  static_cast<QProgressBar*>(widget())->setValue(
      static_cast<int>(std::clamp(fraction, 0.0, 1.0) * kSteps + 0.5));
}

}  // namespace vellumar::qt
