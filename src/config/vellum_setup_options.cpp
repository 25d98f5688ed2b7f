// The configuration window's options and their settings: one table says, per option, which key
// backs it, its default and the control (or value) that holds it. Form_Load reads the table from
// top to bottom and Form_Unload writes back the options that are kept until the end of the run,
// in the same order; the others are written the moment they change, by their handlers.
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "config/setting_keys.h"
#include "config/vellum_setup.h"
#include "config/window_placement.h"
#include "frame/common.h"
#include "frame/settings_store.h"
#include "frame/version.h"
#include "logstore/log_schema.h"
#include "platform/services/desktop.h"
#include "platform/vb/variant.h"

namespace vellumar {

// One option: where it is stored and what holds it in memory.
struct VellumSetup::OptionSetting {
  SettingKey setting;
  // A text box holds its text, a check box its value as a number, a plain value its text.
  std::variant<ui::TextBox VellumSetup::*, ui::CheckBox VellumSetup::*, std::string VellumSetup::*>
      holder;
  const char* fallback = "";  // the default when the key is missing ...
  std::string (VellumSetup::*computedDefault)() const = nullptr;  // ... unless computed here
  void (VellumSetup::*afterLoad)() = nullptr;  // what Form_Load does once it is read
  bool savedAtUnload = false;                  // false: its handlers write it as it changes
};

namespace {

// Where the route-search sibling keeps the callbook program, read as our default.
constexpr const char* kTrailmark = "Trailmark";
constexpr const char* kCallbookDefault = "D:\\callbook.exe";

template <class... F>
struct Overloaded : F... {
  using F::operator()...;
};

}  // namespace

// In the order Form_Load reads them: the first-run question needs nothing else, and the default
// log is named after the callsign read first. Columns: the key; what holds the option; its
// default, or what computes it; what Form_Load does next; whether Form_Unload writes it.
const std::vector<VellumSetup::OptionSetting>& VellumSetup::OptionSettings() {
  using namespace setting;
  using S = VellumSetup;
  constexpr bool kAtUnload = true, kAsItChanges = false;
  static const std::vector<OptionSetting> table = {
      {kCallsign, &S::MyCallsign, "", nullptr, &S::AskCallsignAtFirstRun, kAtUnload},
      {kTransmitPower, &S::TransmitPower, "100", nullptr, nullptr, kAtUnload},
      {kQSLMsg, &S::QSLMsg, "", nullptr, nullptr, kAtUnload},
      {kRun, &S::RunCheck, "0", nullptr, nullptr, kAtUnload},
      {kConfirmDelete, &S::ConfirmDeleteCheck, "1", nullptr, nullptr, kAtUnload},
      {kLookupPrevQSO, &S::LookupPrevQSOCheck, "1", nullptr, nullptr, kAtUnload},
      {kAutoSetDateTime, &S::AutoSetDateTimeCheck, "1", nullptr, nullptr, kAtUnload},
      {kDateTimeFormat, &S::DateTimeFormat, kDateTimeFormatMinutes, nullptr,
       &S::ReplaceOldDateTimeFormat, kAtUnload},
      {kSetCaptureQSLRequest, &S::SetCaptureQSLRequestCheck, "0", nullptr, nullptr, kAtUnload},
      {kQSLPrintOpCallsign, &S::QSLPrintOpCallsignCheck, "0", nullptr, nullptr, kAtUnload},
      {kCallbookPathname, &S::RACPathname, "", &S::SiblingCallbookPathname, nullptr, kAsItChanges},
      {kRACEnabled, &S::RACEnabled, "1", nullptr, nullptr, kAsItChanges},
      {kLogPathname, &S::LogPathname, "", &S::CallsignLogPathname, &S::PrepareLog, kAsItChanges},
      {kBackupDirectory, &S::BackupDirectory, "", &S::DefaultBackupDirectory, nullptr,
       kAsItChanges},
      {keQSLUser, &S::eQSLName, "", nullptr, nullptr, kAtUnload},
      {keQSLPassword, &S::eQSLPassword, "", nullptr, nullptr, kAtUnload},
      {kBrowserPathname, &S::BrowserPathname, "", nullptr, &S::ApplyBrowserPathname, kAsItChanges},
  };
  return table;
}

void VellumSetup::LoadOption(const OptionSetting& option) {
  const std::string fallback =
      option.computedDefault ? (this->*option.computedDefault)() : option.fallback;
  const std::string value = GetSetting(option.setting, fallback);
  std::visit(Overloaded{
                 [&](ui::TextBox VellumSetup::*box) { (this->*box).SetText(value); },
                 [&](ui::CheckBox VellumSetup::*check) {
                   (this->*check).SetValue(vb::Variant(value).ToInteger());
                 },
                 [&](std::string VellumSetup::*text) { this->*text = value; },
             },
             option.holder);
  if (option.afterLoad) (this->*option.afterLoad)();
}

std::string VellumSetup::OptionText(const OptionSetting& option) const {
  return std::visit(
      Overloaded{
          [&](ui::TextBox VellumSetup::*box) { return (this->*box).Text(); },
          [&](ui::CheckBox VellumSetup::*check) { return std::to_string((this->*check).Value()); },
          [&](std::string VellumSetup::*text) { return this->*text; },
      },
      option.holder);
}

std::string VellumSetup::GetSetting(const SettingKey& setting,
                                    const std::string& defaultValue) const {
  return GetSetting(setting.section, setting.key, defaultValue);
}

void VellumSetup::SaveSetting(const SettingKey& setting, const std::string& value) {
  SaveSetting(setting.section, setting.key, value);
}

// ---- What Form_Load does after reading an option ----

// The first run: no callsign is stored, so the operator is asked for one.
void VellumSetup::AskCallsignAtFirstRun() {
  if (!MyCallsign.Text().empty()) return;
  MyCallsign.SetText(
      services_.desktop.InputBox("Welcome to Vellum - please specify your callsign: ",
                                 std::string(kApplicationTitle) + " initialization", ""));
}

// A format with "-" is of an older kind, which the date fields no longer read.
void VellumSetup::ReplaceOldDateTimeFormat() {
  if (DateTimeFormat.find('-') != std::string::npos) DateTimeFormat = kDateTimeFormatMinutes;
  DisplaySecondsCheckbox.SetValue(DateTimeFormat == kDateTimeFormatSeconds ? 1 : 0);
}

// The log named is created when it isn't there, and the log buttons are set for a log that is
// not open yet.
void VellumSetup::PrepareLog() {
  if (LogPathname.Text().empty()) LogPathname.SetText(DefaultLogPathname(MyCallsign.Text()));
  if (!LogPathnameExists() && !services_.logSchema.CreateLog(LogPathname.Text())) {
    ShowMessage("unable to create log database");
  }
  UpdateOpenLogCmdCaption();
  OpenLogCmd.SetEnabled(true);
  BackupCmd.SetEnabled(false);
}

void VellumSetup::ApplyBrowserPathname() {
  services_.common.SetBrowserPathname(BrowserPathname.Text());
}

std::string VellumSetup::SiblingCallbookPathname() const {
  return services_.settings.GetSetting(kTrailmark, setting::kCallbookPathname.section,
                                       setting::kCallbookPathname.key, kCallbookDefault);
}

std::string VellumSetup::CallsignLogPathname() const {
  return DefaultLogPathname(MyCallsign.Text());
}

std::string VellumSetup::DefaultBackupDirectory() const {
  return services_.common.ApplicationDirectory() + "/Backups";
}

// ---- Loading and unloading ----

void VellumSetup::VellumSetup_Load() {
  Tail("Form_Load", [&] {
    RestoreWindowPosition(*this, services_.common, services_.settings);

    for (int i = 0; i < LogFrameVisible.Count(); ++i) {
      LogFrameVisible(i).SetValue(vb::Variant(GetSetting(setting::kLogFrameVisible.section,
                                                         setting::kLogFrameVisible.Key(i), "1"))
                                      .ToInteger());
    }
    SaveLogFrameVisibility();

    for (const OptionSetting& option : OptionSettings()) LoadOption(option);

    InitializePrinter();
    InitializeAwardTracking();
  });
}

void VellumSetup::VellumSetup_QueryUnload(int& cancel, int unloadMode) {
  // The operator's close only hides the window; the main window unloads it at the end.
  if (unloadMode == ui::vbFormControlMenu) {
    cancel = 1;
    Hide();
  }
}

void VellumSetup::VellumSetup_Unload(int& cancel) {
  Tail("Form_Unload", [&] {
    SaveAwardTracking();
    SaveLogGridColumnWidths();
    SaveQTHGridColumnWidths();
    SaveLogLayoutGridColumnWidths();
    Notify([](ConfigObserver& o) { o.CloseLog(); });
    SaveWindowPosition(*this, services_.common, services_.settings);

    for (const OptionSetting& option : OptionSettings()) {
      if (option.savedAtUnload) SaveSetting(option.setting, OptionText(option));
    }
    if (PrinterName.ListIndex() >= 0) {
      SaveSetting(setting::kPrinterName, PrinterName.List(PrinterName.ListIndex()));
      if (PaperSizeCombo.ListIndex() >= 0) {
        SaveSetting(setting::kPrinterPaperSize,
                    std::to_string(PaperSizeCombo.ItemData(PaperSizeCombo.ListIndex())));
      }
    }
  });
}

}  // namespace vellumar
