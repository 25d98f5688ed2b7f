#pragma once
// Makes the widget of a control model, of the kind its type calls for, and the binder that
// keeps the two together. The widget's objectName is the control's name, with the index for a
// control of an array: "Fieldbox(1)".
#include <QString>
#include <memory>

#include "qt/control_binder.h"

namespace vellumar::qt {

QString ObjectNameOf(const ui::Control& control);

// The widget (parented to `parent`) and its binder; nullptr for a control that has no widget
// of its own (a data control: the grids and commands over it are its face).
std::unique_ptr<ControlBinder> MakeBinder(ui::Control& control, QWidget* parent);

}  // namespace vellumar::qt
