#pragma once
// Where a window stood when it was last closed: section "Windows" of the program's settings,
// keys form name + "Left", "Top", "Width", "Height" and "WindowState". Stored values pass
// through Common's Reasonable filters, so a window saved on a screen that is gone comes back
// on this one.
#include "frame/common.h"
#include "frame/settings_store.h"
#include "platform/ui/form.h"

namespace vellumar {

// Normal state; Left and Top from the settings (the form's own values as defaults); Width and
// Height too, but only for the sizable border styles 2 and 5; last the window state.
void RestoreWindowPosition(ui::Form& form, Common& common, const SettingsStore& settings);
// The window state first; a minimised form is made normal before its sizes are written, so
// that they are its real ones. Then Left, Top, Height and Width.
void SaveWindowPosition(ui::Form& form, Common& common, SettingsStore& settings);

}  // namespace vellumar
