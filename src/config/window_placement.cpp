#include "config/window_placement.h"

#include <string>

#include "frame/version.h"
#include "platform/vb/variant.h"

namespace vellumar {
namespace {

constexpr const char* kWindowsSection = "Windows";

bool Sizable(const ui::Form& form) { return form.BorderStyle() == 2 || form.BorderStyle() == 5; }

// The stored number under form name + word, the current value when none is stored.
std::int32_t Stored(const SettingsStore& settings, const ui::Form& form, const char* word,
                    std::int32_t current) {
  const std::string text = settings.GetSetting(kApplicationTitle, kWindowsSection,
                                               form.Name() + word, std::to_string(current));
  return vb::Variant(text).ToLong();
}

void Store(SettingsStore& settings, const ui::Form& form, const char* word, std::int32_t value) {
  settings.SaveSetting(kApplicationTitle, kWindowsSection, form.Name() + word,
                       std::to_string(value));
}

}  // namespace

void RestoreWindowPosition(ui::Form& form, Common& common, const SettingsStore& settings) {
  WithFailureTail(common.errorLog(), "Common.RestoreWindowPosition", [&] {
    form.SetWindowState(ui::vbNormal);
    form.SetLeft(common.ReasonableLeft(Stored(settings, form, "Left", form.Left())));
    form.SetTop(common.ReasonableTop(Stored(settings, form, "Top", form.Top())));
    if (Sizable(form)) {
      form.SetWidth(common.ReasonableWidth(Stored(settings, form, "Width", form.Width())));
      form.SetHeight(common.ReasonableHeight(Stored(settings, form, "Height", form.Height())));
    }
    form.SetWindowState(Stored(settings, form, "Windowstate", form.WindowState()));
  });
}

void SaveWindowPosition(ui::Form& form, Common& common, SettingsStore& settings) {
  WithFailureTail(common.errorLog(), "Common.SaveWindowPosition", [&] {
    const int state = form.WindowState();
    Store(settings, form, "WindowState", state);
    if (state == ui::vbMinimized) form.SetWindowState(ui::vbNormal);
    Store(settings, form, "Left", form.Left());
    Store(settings, form, "Top", form.Top());
    Store(settings, form, "Height", form.Height());
    Store(settings, form, "Width", form.Width());
  });
}

}  // namespace vellumar
