#include "config/vellum_setup.h"

#include <array>
#include <filesystem>

#include "awards/progress_columns.h"
#include "config/paper_sizes.h"
#include "config/set_combo.h"
#include "config/setting_keys.h"
#include "config/window_placement.h"
#include "frame/common.h"
#include "frame/settings_store.h"
#include "frame/version.h"
#include "logstore/log_schema.h"
#include "platform/services/desktop.h"
#include "platform/services/event_loop.h"
#include "platform/vb/error.h"
#include "platform/vb/variant.h"

namespace vellumar {
namespace {

using setting::kAwardSection;

constexpr int kFirstAwardBand = kProgressFirstBand;  // AwardCheck(3) is 160M
constexpr int kLastAwardMode = kProgressPSK;         // AwardCheck(17) is PSK
constexpr int kFirstWAZBand = kProgressFirstBand;    // WAZBandCheck(3) is 160M
constexpr int kLastWAZBand = 12;                     // WAZBandCheck(12) is 6M

// The modes of the WAZ report, by their index 1..6.
constexpr std::array<const char*, 7> kWAZModeNames = {"",   "SSB",  "CW",     "RTTY",
                                                      "AM", "SSTV", "Digital"};

constexpr std::array<const char*, 4> kLogFrameCaptions = {"Auxillary fields", "QSL fields",
                                                          "Award fields", "Contest fields"};

int CheckValue(const std::string& text) { return vb::Variant(text).ToInteger(); }

std::string AwardName(int index) {
  return (index <= kProgressLastBand ? BandFieldName(index) : ModeFieldName(index)).ToString();
}
std::string AwardKey(int index) { return "Award" + AwardName(index); }
std::string WAZBandKey(int band) { return "WAZBandAward" + BandFieldName(band).ToString(); }
std::string WAZModeKey(int mode) { return std::string("WAZModeAward") + kWAZModeNames.at(mode); }

// The typed face of the window's controls.
class SetupOptions final : public Configuration {
 public:
  explicit SetupOptions(const VellumSetup& setup) : s_(setup) {}
  std::string MyCallsign() const override { return s_.MyCallsign.Text(); }
  std::string TransmitPower() const override { return s_.TransmitPower.Text(); }
  std::string QSLMessage() const override { return s_.QSLMsg.Text(); }
  std::string LogPathname() const override { return s_.LogPathname.Text(); }
  bool RunMode() const override { return s_.RunCheck.Value() == 1; }
  bool ConfirmDelete() const override { return s_.ConfirmDeleteCheck.Value() == 1; }
  bool AutoSetDateTime() const override { return s_.AutoSetDateTimeCheck.Value() == 1; }
  bool AwardTracked(int column) const override { return s_.AwardCheck(column).Value() == 1; }
  std::string DateTimeFormat() const override { return s_.GetDateTimeFormat(); }

 private:
  const VellumSetup& s_;
};

// Every item of each array, array by array in the order given.
template <class... T>
void AdoptArrays(ui::Form& form, ui::ControlArray<T>&... arrays) {
  const auto adopt = [&form](auto& array) {
    for (auto& item : array) form.Adopt(*item);
  };
  (adopt(arrays), ...);
}

}  // namespace

VellumSetup::VellumSetup(ConfigServices services)
    : ui::Form("VellumSetup"),
      Tooltips(services.loadedForms, services.settings, services.common.errorLog()),
      services_(std::move(services)),
      options_(std::make_unique<SetupOptions>(*this)) {
  SetCaption("Vellumar Configuration");
  PrinterDeviceNames = [] { return std::vector<std::string>{kPrintToPdfFile}; };
  CallbookInstalled = [] { return false; };
  AdoptControls();
  SetDesignValues();
  WireControls();
}

VellumSetup::~VellumSetup() = default;

ErrorLog& VellumSetup::Log() { return services_.common.errorLog(); }

std::string VellumSetup::DatabasesFolder() const {
  return services_.common.ApplicationDirectory() + "/Databases";
}

std::string VellumSetup::GetSetting(const std::string& section, const std::string& key,
                                    const std::string& defaultValue) const {
  return services_.settings.GetSetting(kApplicationTitle, section, key, defaultValue);
}

void VellumSetup::SaveSetting(const std::string& section, const std::string& key,
                              const std::string& value) {
  services_.settings.SaveSetting(kApplicationTitle, section, key, value);
}

void VellumSetup::ShowMessage(const std::string& text) {
  services_.desktop.MsgBox(text, ui::vbOKOnly, kApplicationTitle);
}

void VellumSetup::AdoptControls() {
  for (ui::Control* c : std::initializer_list<ui::Control*>{&SetupTab,
                                                            &MyCallsign,
                                                            &TransmitPower,
                                                            &QSLMsg,
                                                            &RunCheck,
                                                            &ConfirmDeleteCheck,
                                                            &LookupPrevQSOCheck,
                                                            &AutoSetDateTimeCheck,
                                                            &DisplaySecondsCheckbox,
                                                            &SetCaptureQSLRequestCheck,
                                                            &BrowserPathname,
                                                            &TooltipsCheckbox,
                                                            &LogPathname,
                                                            &BackupDirectory,
                                                            &LogLayout,
                                                            &LogGridFontCmd,
                                                            &LogPanelFontCmd,
                                                            &OpenLogCmd,
                                                            &LogSelectCmd,
                                                            &BackupCmd,
                                                            &QSLInfoLowerLeft,
                                                            &QSLInfoLowerRight,
                                                            &QSLPrintOpCallsignCheck,
                                                            &ClearUpperLeftCmd,
                                                            &ClearUpperRightCmd,
                                                            &ClearLowerLeftCmd,
                                                            &ClearLowerRightCmd,
                                                            &NarrowTopOffset,
                                                            &NarrowLabelsPerColumn,
                                                            &WideTopOffset,
                                                            &WideLabelsPerColumn,
                                                            &eQSLName,
                                                            &eQSLPassword,
                                                            &RACPathname,
                                                            &RACEnabled,
                                                            &RACBrowseCmd,
                                                            &PrinterName,
                                                            &PaperSizeCombo,
                                                            &EnvelopeLeftOffset,
                                                            &EnvelopeTopOffset,
                                                            &AirmailCheck,
                                                            &EnvelopeNarrowTopOffset,
                                                            &EnvelopeNarrowLabelsPerColumn,
                                                            &EnvelopeWideTopOffset,
                                                            &EnvelopeWideLabelsPerColumn}) {
    Adopt(*c);
  }
  AdoptArrays(*this, HelpCmd, LogFrameVisible, AwardCheck, WAZBandCheck, WAZModeCheck,
              QSLInfoUpperLeft, QSLInfoUpperRight, NarrowColumnOffset, WideColumnOffset,
              PrintQualityButton, ReturnAddress, EnvelopeNarrowColumnOffset,
              EnvelopeWideColumnOffset);
}

// The window as it is designed, before any handler is attached: the check boxes stand at the
// defaults of their settings, so that loading the defaults raises no Click. RACEnabled stands
// cleared, so that loading it checked asks whether the callbook is there and sets RACcmd.
void VellumSetup::SetDesignValues() {
  for (auto& help : HelpCmd) help->SetCaption("Help");
  RunCheck.SetCaption("Run-mode");
  ConfirmDeleteCheck.SetCaption("Confirm QSO deletion");
  ConfirmDeleteCheck.SetValue(1);
  LookupPrevQSOCheck.SetCaption("Display previous QSOs on Lookup");
  LookupPrevQSOCheck.SetValue(1);
  AutoSetDateTimeCheck.SetCaption("Automatically set QSO date && time");
  AutoSetDateTimeCheck.SetValue(1);
  DisplaySecondsCheckbox.SetCaption("Display seconds in date/time fields");
  SetCaptureQSLRequestCheck.SetCaption("Preset 'QSL Requested' checkbox");
  TooltipsCheckbox.SetCaption("show control explanations");
  TooltipsCheckbox.SetValue(1);

  for (const auto& [caption, width] :
       {std::pair{"Field", 1500}, std::pair{"Caption", 1500}, std::pair{"Alignment", 1000}}) {
    ui::GridColumn column;
    column.Caption = caption;
    column.Width = width;
    LogLayout.Columns().push_back(column);
  }
  LogLayout.SetDataMode(ui::Grid::kArrayData);  // its rows are the layout table itself
  for (int i = 0; i < LogFrameVisible.Count(); ++i) {
    LogFrameVisible(i).SetCaption(kLogFrameCaptions.at(static_cast<size_t>(i)));
    LogFrameVisible(i).SetValue(1);
  }
  LogGridFontCmd.SetCaption("Log Grid Font");
  LogPanelFontCmd.SetCaption("Log Panel Font");
  OpenLogCmd.SetCaption("Open");
  LogSelectCmd.SetCaption("Select");
  BackupCmd.SetCaption("Backup");
  BackupCmd.SetEnabled(false);

  for (int i = 0; i < AwardCheck.Count(); ++i) {
    const bool used = i >= kFirstAwardBand && i <= kLastAwardMode;
    AwardCheck(i).SetVisible(used);
    AwardCheck(i).SetValue(used ? 1 : 0);
  }
  for (int b = 0; b < WAZBandCheck.Count(); ++b) {
    const bool used = b >= kFirstWAZBand && b <= kLastWAZBand;
    WAZBandCheck(b).SetVisible(used);
    WAZBandCheck(b).SetValue(used ? 1 : 0);
  }
  for (int m = 0; m < WAZModeCheck.Count(); ++m) {
    WAZModeCheck(m).SetVisible(m > 0);
    WAZModeCheck(m).SetValue(m > 0 ? 1 : 0);
  }

  QSLPrintOpCallsignCheck.SetCaption("Print operator callsign");
  for (ui::CommandButton* clear :
       {&ClearUpperLeftCmd, &ClearUpperRightCmd, &ClearLowerLeftCmd, &ClearLowerRightCmd}) {
    clear->SetCaption("Clear");
  }

  RACEnabled.SetCaption("Fill in fields with callbook data");
  RACBrowseCmd.SetCaption("Browse");

  PrinterName.SetStyle(ui::ComboBox::kDropDownList);
  PaperSizeCombo.SetStyle(ui::ComboBox::kDropDownList);
  PrintQualityButton(0).SetVisible(false);
  constexpr std::array<const char*, 4> kQualities = {"Draft", "Low", "Medium", "High"};
  for (int q = 1; q < PrintQualityButton.Count(); ++q) {
    PrintQualityButton(q).SetCaption(kQualities.at(static_cast<size_t>(q - 1)));
    PrintQualityGroup.Add(PrintQualityButton(q));
  }

  AirmailCheck.SetCaption("Airmail");
  AirmailCheck.SetValue(1);
}

std::vector<VellumSetup::NumericBox> VellumSetup::NumericBoxes() {
  std::vector<NumericBox> boxes = {
      {&NarrowTopOffset, "NarrowTopOffset", true},
      {&NarrowLabelsPerColumn, "NarrowLabelsPerColumn", false},
      {&WideTopOffset, "WideTopOffset", true},
      {&WideLabelsPerColumn, "WideLabelsPerColumn", false},
      {&EnvelopeLeftOffset, "EnvelopeLeftOffset", true},
      {&EnvelopeTopOffset, "EnvelopeTopOffset", true},
      {&EnvelopeNarrowTopOffset, "NarrowTopOffset", true},
      {&EnvelopeNarrowLabelsPerColumn, "NarrowLabelsPerColumn", false},
      {&EnvelopeWideTopOffset, "WideTopOffset", true},
      {&EnvelopeWideLabelsPerColumn, "WideLabelsPerColumn", false},
  };
  // A column offset's key counts its columns from 1.
  for (int i = 0; i < NarrowColumnOffset.Count(); ++i) {
    const std::string key = "NarrowColumnOffset" + std::to_string(i + 1);
    boxes.push_back({&NarrowColumnOffset(i), key, true});
    boxes.push_back({&EnvelopeNarrowColumnOffset(i), key, true});
  }
  for (int i = 0; i < WideColumnOffset.Count(); ++i) {
    const std::string key = "WideColumnOffset" + std::to_string(i + 1);
    boxes.push_back({&WideColumnOffset(i), key, true});
    boxes.push_back({&EnvelopeWideColumnOffset(i), key, true});
  }
  return boxes;
}

void VellumSetup::WireControls() {
  Form_Load = [this] { VellumSetup_Load(); };
  Form_QueryUnload = [this](int& cancel, int mode) { VellumSetup_QueryUnload(cancel, mode); };
  Form_Unload = [this](int& cancel) { VellumSetup_Unload(cancel); };

  HelpCmd.On(&ui::CommandButton::Click, [this](int i) { HelpCmd_Click(i); });
  MyCallsign.Change = [this] { MyCallsign_Change(); };
  DisplaySecondsCheckbox.Click = [this] { DisplaySecondsCheckbox_Click(); };
  TooltipsCheckbox.Click = [this] { TooltipsCheckbox_Click(); };
  BrowserPathname.Change = [this] { BrowserPathname_Change(); };

  LogPathname.Change = [this] { LogPathname_Change(); };
  OpenLogCmd.Click = [this] { OpenLogCmd_Click(); };
  LogSelectCmd.Click = [this] { LogSelectCmd_Click(); };
  LogFrameVisible.On(&ui::CheckBox::Click, [this](int i) { LogFrameVisible_Click(i); });
  WireLogLayout();

  AwardCheck.On(&ui::CheckBox::Click, [this](int i) {
    if (i >= kFirstAwardBand && i <= kLastAwardMode) AwardCheck_Click(i);
  });
  WAZBandCheck.On(&ui::CheckBox::Click, [this](int b) {
    if (b >= kFirstWAZBand && b <= kLastWAZBand) WAZBandCheck_Click(b);
  });
  WAZModeCheck.On(&ui::CheckBox::Click, [this](int m) {
    if (m > 0) WAZModeCheck_Click(m);
  });

  ClearUpperLeftCmd.Click = [this] {
    for (auto& box : QSLInfoUpperLeft) box->SetText("");
  };
  ClearUpperRightCmd.Click = [this] {
    for (auto& box : QSLInfoUpperRight) box->SetText("");
  };
  ClearLowerLeftCmd.Click = [this] { QSLInfoLowerLeft.SetText(""); };
  ClearLowerRightCmd.Click = [this] { QSLInfoLowerRight.SetText(""); };

  for (const NumericBox& n : NumericBoxes()) {
    ui::TextBox* box = n.box;
    const bool decimal = n.decimal;
    const std::string key = n.key;
    box->KeyPress = [this, box, decimal](int& keyAscii) {
      NumericBox_KeyPress(*box, decimal, keyAscii);
    };
    box->Change = [this, box, key] { NumericBox_Change(*box, key); };
  }

  RACEnabled.Click = [this] { RACEnabled_Click(); };
  RACPathname.Change = [this] { RACPathname_Change(); };
  RACBrowseCmd.Click = [this] { RACBrowseCmd_Click(); };
}

void VellumSetup::ShowPage(int page) {
  SetupTab.SetTab(page);
  Show();
}

std::string VellumSetup::DefaultLogPathname(const std::string& callsign) const {
  return DatabasesFolder() + "/" + Common::SafeFilename(callsign) + ".vdb";
}

// ---- The log ----

bool VellumSetup::LogPathnameExists() const {
  std::error_code ec;
  return !LogPathname.Text().empty() && std::filesystem::is_regular_file(LogPathname.Text(), ec);
}

void VellumSetup::UpdateOpenLogCmdCaption() {
  if (LogPathnameExists()) {
    OpenLogCmd.SetCaption("Open");
    OpenLogCmd.SetToolTipText("click to open the specified log file");
  } else {
    OpenLogCmd.SetCaption("Create");
    OpenLogCmd.SetToolTipText("click to create a log file at the specified pathname");
  }
}

void VellumSetup::LogPathname_Change() {
  Tail("LogPathname_Change", [&] {
    UpdateOpenLogCmdCaption();
    OpenLogCmd.SetEnabled(true);
  });
}

void VellumSetup::OpenLogCmd_Click() {
  Tail("OpenLogCmd_Click", [&] {
    const std::string pathname = LogPathname.Text();
    if (OpenLogCmd.Caption() == "Create") {
      const std::string directory = services_.common.ContainingDirectory(pathname);
      std::error_code ec;
      if (!std::filesystem::is_directory(directory, ec)) {
        ShowMessage("folder does not exist: " + directory);
        return;
      }
      if (!services_.logSchema.CreateLog(pathname)) {
        ShowMessage("unable to create log database: " + pathname);
        return;
      }
    }
    const bool opened = observer_ && observer_->SwitchLog(pathname);
    if (!opened) ShowMessage("unable to open log database: " + pathname);
    Notify([](ConfigObserver& o) { o.UpdateCaption(); });
  });
}

void VellumSetup::SaveLogPathname() {
  Tail("SaveLogPathname", [&] { SaveSetting(setting::kLogPathname, LogPathname.Text()); });
}

void VellumSetup::SaveBackupDirectory() {
  Tail("SaveBackupDirectory",
       [&] { SaveSetting(setting::kBackupDirectory, BackupDirectory.Text()); });
}

void VellumSetup::LogSelectCmd_Click() {
  Tail("LogSelectCmd_Click", [&] {
    ui::FileDialogRequest request;
    request.title = "Select log";
    request.filter = "Log (*.vdb)|*.vdb";
    request.defaultExt = ".vdb";
    request.initialDir = GetSetting(setting::kLogDirectory, DatabasesFolder());
    std::string pathname;
    try {
      pathname = services_.desktop.OpenFileDialog(request);
    } catch (const vb::VbError& e) {
      if (e.number() == vb::kCancelSelected) return;
      throw;
    }
    LogPathname.SetText(pathname);
    SaveSetting(setting::kLogDirectory, services_.common.ContainingDirectory(pathname));
  });
}

// The panel's box in the main window, the setting and the panel itself follow the box here.
void VellumSetup::ApplyLogFrameVisibility(int index) {
  const int value = LogFrameVisible(index).Value();
  Notify([&](ConfigObserver& o) { o.LogFrameVisibilityChanged(index, value); });
  SaveSetting(setting::kLogFrameVisible.section, setting::kLogFrameVisible.Key(index),
              std::to_string(value));
}

void VellumSetup::SaveLogFrameVisibility() {
  Tail("SaveLogFrameVisibility", [&] {
    for (int i = 0; i < LogFrameVisible.Count(); ++i) ApplyLogFrameVisibility(i);
  });
}

void VellumSetup::LogFrameVisible_Click(int index) {
  Tail("LogFrameVisible_Click", [&] {
    ApplyLogFrameVisibility(index);
    Notify([](ConfigObserver& o) { o.UpdateCaption(); });
  });
}

// ---- Awards ----

void VellumSetup::InitializeAwardTracking() {
  Tail("InitializeAwardTracking", [&] {
    for (int i = kFirstAwardBand; i <= kLastAwardMode; ++i) {
      const std::string name = AwardName(i);
      AwardCheck(i).SetCaption(name);
      AwardCheck(i).SetToolTipText("check to generate QSLs for " + name + " awards");
      AwardCheck(i).SetValue(CheckValue(GetSetting(kAwardSection, AwardKey(i), "1")));
    }
    for (int b = kFirstWAZBand; b <= kLastWAZBand; ++b) {
      const std::string band = BandFieldName(b).ToString();
      WAZBandCheck(b).SetCaption(band);
      WAZBandCheck(b).SetToolTipText("check to include the " + band + " band in the WAZ report");
      WAZBandCheck(b).SetValue(CheckValue(GetSetting(kAwardSection, WAZBandKey(b), "1")));
    }
    for (int m = 1; m < WAZModeCheck.Count(); ++m) {
      const std::string mode = kWAZModeNames.at(static_cast<size_t>(m));
      WAZModeCheck(m).SetCaption(mode);
      WAZModeCheck(m).SetToolTipText("check to include the " + mode + " mode in the WAZ report");
      WAZModeCheck(m).SetValue(CheckValue(GetSetting(kAwardSection, WAZModeKey(m), "1")));
    }
  });
}

void VellumSetup::SaveAwardTracking() {
  Tail("SaveAwardTracking", [&] {
    for (int i = kFirstAwardBand; i <= kLastAwardMode; ++i) {
      SaveSetting(kAwardSection, AwardKey(i), std::to_string(AwardCheck(i).Value()));
    }
    for (int b = kFirstWAZBand; b <= kLastWAZBand; ++b) {
      SaveSetting(kAwardSection, WAZBandKey(b), std::to_string(WAZBandCheck(b).Value()));
    }
    for (int m = 1; m < WAZModeCheck.Count(); ++m) {
      SaveSetting(kAwardSection, WAZModeKey(m), std::to_string(WAZModeCheck(m).Value()));
    }
  });
}

void VellumSetup::AwardCheck_Click(int index) {
  Tail("AwardCheck_Click", [&] {
    SaveSetting(kAwardSection, AwardKey(index), std::to_string(AwardCheck(index).Value()));
    services_.loop.Yield();
    ui::Raise(ClustrineNewAwards);
  });
}

void VellumSetup::WAZBandCheck_Click(int index) {
  Tail("WAZBandCheck_Click", [&] {
    SaveSetting(kAwardSection, WAZBandKey(index), std::to_string(WAZBandCheck(index).Value()));
  });
}

void VellumSetup::WAZModeCheck_Click(int index) {
  Tail("WAZModeCheck_Click", [&] {
    SaveSetting(kAwardSection, WAZModeKey(index), std::to_string(WAZModeCheck(index).Value()));
  });
}

}  // namespace vellumar
