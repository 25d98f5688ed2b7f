#include "logpage/side_forms.h"

namespace vellumar {

AdvancedFilter::AdvancedFilter() : ui::Form("AdvancedFilter") {
  SetCaption("Vellumar Advanced Log Sorts and Filters");
  FieldNameCombo.SetToolTipText("Valid field name");
  Adopt(FieldNameCombo);
  // The operator's close hides the window; it is unloaded with the program.
  Form_QueryUnload = [this](int& cancel, int mode) {
    if (mode == ui::vbFormControlMenu) {
      cancel = 1;
      Hide();
    }
  };
}

AddressEditor::AddressEditor() : ui::Form("AddressEditor") {
  SetCaption("Vellumar Address Editor");
  Form_QueryUnload = [this](int& cancel, int mode) {
    if (mode == ui::vbFormControlMenu) {
      cancel = 1;
      Hide();
    }
  };
}

}  // namespace vellumar
