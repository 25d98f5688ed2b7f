#pragma once
// Selecting a combo's item by its text.
#include <string>

#include "platform/ui/controls.h"

namespace vellumar {

// Searches the list for the text without regard to case; on a match sets ListIndex (raising
// Click) and returns true. No match leaves the combo alone.
bool SetCombo(ui::ComboBox& combo, const std::string& text);

}  // namespace vellumar
