// The configuration window's printer page, the widths of its grids, and the handlers of the
// options that take effect (and are written) the moment they change.
#include <string>

#include "config/paper_sizes.h"
#include "config/set_combo.h"
#include "config/setting_keys.h"
#include "config/vellum_setup.h"
#include "frame/common.h"
#include "platform/services/desktop.h"
#include "platform/vb/error.h"
#include "platform/vb/variant.h"

namespace vellumar {
namespace {

constexpr int kMaxCallbookFolder = 80;  // characters the callbook library takes

// The folder of the callbook program as its library wants it: trimmed, ending in a separator.
std::string CallbookFolder(const std::string& pathname) {
  const size_t slash = pathname.find_last_of("/\\");
  const char separator = slash == std::string::npos ? '/' : pathname[slash];
  std::string folder = slash == std::string::npos ? "" : pathname.substr(0, slash);
  const size_t first = folder.find_first_not_of(' ');
  folder = first == std::string::npos
               ? ""
               : folder.substr(first, folder.find_last_not_of(' ') + 1 - first);
  if (folder.empty() || (folder.back() != '/' && folder.back() != '\\')) folder += separator;
  return folder;
}

}  // namespace

// ---- The printer ----

void VellumSetup::InitializePrinter() {
  Tail("InitializePrinter", [&] {
    PrinterName.Clear();
    if (PrinterDeviceNames) {
      for (const std::string& device : PrinterDeviceNames()) PrinterName.AddItem(device);
    }
    SetCombo(PrinterName, GetSetting(setting::kPrinterName, ""));

    PaperSizeCombo.Clear();
    for (const PaperSize& paper : StandardPaperSizes()) {
      PaperSizeCombo.AddItem(paper.name);
      PaperSizeCombo.SetItemData(PaperSizeCombo.NewIndex(), paper.number);
    }
    const long stored =
        vb::Variant(GetSetting(setting::kPrinterPaperSize, std::to_string(DefaultPaperSize)))
            .ToLong();
    for (int i = 0; i < PaperSizeCombo.ListCount(); ++i) {
      if (PaperSizeCombo.ItemData(i) == stored) {
        PaperSizeCombo.SetListIndex(i);
        break;
      }
    }
  });
}

// ---- Grid column widths ----

void VellumSetup::SaveLogGridColumnWidths() {
  Notify([](ConfigObserver& o) { o.SaveLogGridColumnWidths(); });
}
void VellumSetup::SaveQTHGridColumnWidths() {}

void VellumSetup::SaveLogLayoutGridColumnWidths() {
  Tail("SaveLogLayoutGridColumnWidths", [&] {
    const auto& columns = LogLayout.Columns();
    for (size_t i = 0; i < columns.size(); ++i) {
      SaveSetting(setting::kLogLayoutColumnWidth.section,
                  setting::kLogLayoutColumnWidth.Key(static_cast<int>(i)),
                  std::to_string(columns[i].Width));
    }
  });
}

// ---- Option handlers ----

void VellumSetup::MyCallsign_Change() {
  Tail("MyCallsign_Change", [&] {
    const std::string& callsign = MyCallsign.Text();
    Notify([&](ConfigObserver& o) { o.MyCallsignChanged(callsign); });
  });
}

void VellumSetup::DisplaySecondsCheckbox_Click() {
  DateTimeFormat =
      DisplaySecondsCheckbox.Value() == 1 ? kDateTimeFormatSeconds : kDateTimeFormatMinutes;
}

void VellumSetup::TooltipsCheckbox_Click() {
  Tail("TooltipsCheckbox_Click", [&] {
    const bool show = TooltipsCheckbox.Value() == 1;
    if (show) {
      Tooltips.RestoreTooltips();
    } else {
      Tooltips.ClearTooltips();
    }
    Tooltips.SaveTooltipSetting(show);
  });
}

void VellumSetup::BrowserPathname_Change() {
  Tail("BrowserPathname_Change", [&] {
    SaveSetting(setting::kBrowserPathname, BrowserPathname.Text());
    services_.common.SetBrowserPathname(BrowserPathname.Text());
  });
}

void VellumSetup::RACEnabled_Click() {
  Tail("RACEnabled_Click", [&] {
    if (RACEnabled.Value() == 1 && !(CallbookInstalled && CallbookInstalled())) {
      ShowMessage("the callbook DLL is not installed, so callbook lookup is disabled");
      RACEnabled.SetValue(0);
    }
    Notify([&](ConfigObserver& o) { o.CallbookEnabledChanged(RACEnabled.Value() == 1); });
    SaveSetting(setting::kRACEnabled, std::to_string(RACEnabled.Value()));
  });
}

void VellumSetup::RACPathname_Change() {
  Tail("RACPathname_Change", [&] {
    const std::string folder = CallbookFolder(RACPathname.Text());
    if (static_cast<int>(folder.size()) > kMaxCallbookFolder) {
      ShowMessage(
          "The length of the pathname of the folder containing Callbook.exe cannot exceed 80 "
          "characters");
      return;
    }
    ui::Raise(SetCallbookPathname, folder);
    SaveSetting(setting::kCallbookPathname, RACPathname.Text());
  });
}

void VellumSetup::RACBrowseCmd_Click() {
  Tail("RACBrowseCmd_Click", [&] {
    ui::FileDialogRequest request;
    request.title = "Callbook program";
    request.filter = "Callbook program (*.exe)|*.exe|All files (*)|*";
    request.initialFile = RACPathname.Text();
    try {
      RACPathname.SetText(services_.desktop.OpenFileDialog(request));
    } catch (const vb::VbError& e) {
      if (e.number() != vb::kCancelSelected) throw;
    }
  });
}

void VellumSetup::HelpCmd_Click(int) {
  Tail("HelpCmd_Click", [&] { services_.common.InvokeHelp("Configuration.htm"); });
}

// Digits pass; so does one "." where the box takes a decimal, and the backspace that edits.
void VellumSetup::NumericBox_KeyPress(const ui::TextBox& box, bool decimal, int& keyAscii) {
  if (keyAscii >= '0' && keyAscii <= '9') return;
  if (keyAscii == ui::vbKeyBack) return;
  if (decimal && keyAscii == '.' && box.Text().find('.') == std::string::npos) return;
  keyAscii = 0;
}

void VellumSetup::NumericBox_Change(const ui::TextBox& box, const std::string& key) {
  Tail((box.Name() + "_Change").c_str(),
       [&] { SaveSetting(setting::kQSLSection, key, box.Text().empty() ? "0" : box.Text()); });
}

}  // namespace vellumar
