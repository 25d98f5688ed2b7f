#include "config/window_placement.h"

#include <string>

#include "config/setting_keys.h"
#include "frame/version.h"
#include "platform/vb/variant.h"

namespace vellumar {
namespace {

using setting::kWindowsSection;

bool Sizable(const ui::Form& form) { return form.BorderStyle() == 2 || form.BorderStyle() == 5; }

// The stored number under form name + word, the current value when none is stored.
std::int32_t Stored(const SettingsStore& settings, const ui::Form& form, const char* word,
                    std::int32_t current) {
  const std::string text =
      settings.GetSetting(kApplicationTitle, kWindowsSection, setting::WindowKey(form.Name(), word),
                          std::to_string(current));
  return vb::Variant(text).ToLong();
}

void Store(SettingsStore& settings, const ui::Form& form, const char* word, std::int32_t value) {
  settings.SaveSetting(kApplicationTitle, kWindowsSection, setting::WindowKey(form.Name(), word),
                       std::to_string(value));
}

}  // namespace

void RestoreWindowPosition(ui::Form& form, Common& common, const SettingsStore& settings) {
  WithFailureTail(common.errorLog(), "Common.RestoreWindowPosition", [&] {
    form.SetWindowState(ui::vbNormal);
    form.SetLeft(common.ReasonableLeft(Stored(settings, form, setting::kWindow.left, form.Left())));
    form.SetTop(common.ReasonableTop(Stored(settings, form, setting::kWindow.top, form.Top())));
    if (Sizable(form)) {
      form.SetWidth(
          common.ReasonableWidth(Stored(settings, form, setting::kWindow.width, form.Width())));
      form.SetHeight(
          common.ReasonableHeight(Stored(settings, form, setting::kWindow.height, form.Height())));
    }
    form.SetWindowState(Stored(settings, form, setting::kWindow.stateRead, form.WindowState()));
  });
}

void SaveWindowPosition(ui::Form& form, Common& common, SettingsStore& settings) {
  WithFailureTail(common.errorLog(), "Common.SaveWindowPosition", [&] {
    const int state = form.WindowState();
    Store(settings, form, setting::kWindow.stateWritten, state);
    if (state == ui::vbMinimized) form.SetWindowState(ui::vbNormal);
    Store(settings, form, setting::kWindow.left, form.Left());
    Store(settings, form, setting::kWindow.top, form.Top());
    Store(settings, form, setting::kWindow.height, form.Height());
    Store(settings, form, setting::kWindow.width, form.Width());
  });
}

}  // namespace vellumar
