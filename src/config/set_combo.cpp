#include "config/set_combo.h"

#include "platform/vb/ascii.h"

namespace vellumar {

bool SetCombo(ui::ComboBox& combo, const std::string& text) {
  for (int i = 0; i < combo.ListCount(); ++i) {
    if (vb::EqualsIgnoreCase(combo.List(i), text)) {
      combo.SetListIndex(i);
      return true;
    }
  }
  return false;
}

}  // namespace vellumar
