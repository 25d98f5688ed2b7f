#include "logpage/side_forms.h"

namespace vellumar {

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
