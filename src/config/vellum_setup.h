#pragma once
// VellumSetup: the configuration window. It is loaded hidden at start-up and stays loaded until
// the program ends; its controls are the program's options in memory, which the other windows
// read straight from here. The settings store is only their backing: the general options are
// read at Form_Load and written at Form_Unload, the rest as they change.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "config/configuration.h"
#include "config/setting_keys.h"
#include "config/tooltips.h"
#include "frame/error_log.h"
#include "platform/bound/grid.h"
#include "platform/ui/control_array.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace vellumar {

class Common;
class SettingsStore;
namespace logstore {
class LogSchema;
}
namespace ui {
class Desktop;
class EventLoop;
}  // namespace ui

// What the configuration window uses of the program below it.
struct ConfigServices {
  ui::EventLoop& loop;
  ui::Desktop& desktop;
  SettingsStore& settings;
  Common& common;
  logstore::LogSchema& logSchema;  // creates a log that doesn't exist yet
  // The windows loaded now, in the order the program loads them (for the tool tips).
  std::function<std::vector<ui::Form*>()> loadedForms;
};

// Formats of the QSO date-time fields, with and without seconds.
inline constexpr const char* kDateTimeFormatMinutes = "ddddd   hh:nn";
inline constexpr const char* kDateTimeFormatSeconds = "ddddd   hh:nn:ss";
// The printer that is always there: a PDF file written by the program itself.
inline constexpr const char* kPrintToPdfFile = "Print to PDF file";

// The pages of SetupTab, in order.
enum SetupTabPage : int {
  kGeneralPage = 0,
  kLogPage,
  kAwardsPage,
  kQSLCardsPage,
  kQSLLabelsPage,
  keQSLPage,
  kCallbookPage,
  kPrinterPage,
  kEnvelopesPage,
  kAddressLabelsPage
};

class VellumSetup : public ui::Form {
 public:
  explicit VellumSetup(ConfigServices services);
  ~VellumSetup() override;
  // The options, read through their typed face: what other windows and modules read of this one.
  const Configuration& Options() const { return *options_; }
  // The windows above follow the options through the observer; null leaves them alone.
  void SetObserver(ConfigObserver* observer) { observer_ = observer; }

  ui::TabStrip SetupTab{"SetupTab",
                        {"General", "Log", "Awards", "QSL Cards", "QSL Labels", "eQSL", "Callbook",
                         "Printer", "Envelopes", "Address Labels"}};
  ui::ControlArray<ui::CommandButton> HelpCmd{"HelpCmd", 3};  // each opens "Configuration.htm"

  // General.
  ui::TextBox MyCallsign{"MyCallsign"};        // operator of new QSOs; names the default log
  ui::TextBox TransmitPower{"TransmitPower"};  // TX_Power of new QSOs
  ui::TextBox QSLMsg{"QSLMsg"};                // QSLMsg of new QSOs
  ui::CheckBox RunCheck{"RunCheck"};
  ui::CheckBox ConfirmDeleteCheck{"ConfirmDeleteCheck"};
  ui::CheckBox LookupPrevQSOCheck{"LookupPrevQSOCheck"};
  ui::CheckBox AutoSetDateTimeCheck{"AutoSetDateTimeCheck"};
  ui::CheckBox DisplaySecondsCheckbox{"DisplaySecondsCheckbox"};
  ui::CheckBox SetCaptureQSLRequestCheck{"SetCaptureQSLRequestCheck"};
  ui::TextBox BrowserPathname{"BrowserPathname"};  // program that shows the help pages
  ui::CheckBox TooltipsCheckbox{"TooltipsCheckbox"};

  // Log.
  ui::TextBox LogPathname{"LogPathname"};          // the log to open or create
  ui::TextBox BackupDirectory{"BackupDirectory"};  // where backups are proposed
  ui::Grid LogLayout{"LogLayout"};                 // the Log Page Display's columns
  ui::ControlArray<ui::CheckBox> LogFrameVisible{"LogFrameVisible", 4};
  ui::CommandButton LogGridFontCmd{"LogGridFontCmd"}, LogPanelFontCmd{"LogPanelFontCmd"},
      OpenLogCmd{"OpenLogCmd"}, LogSelectCmd{"LogSelectCmd"}, BackupCmd{"BackupCmd"};

  // Awards: AwardCheck(3..17) are the Progress columns' bands and modes; WAZBandCheck(3..12)
  // the bands and WAZModeCheck(1..6) the modes of the WAZ report.
  ui::ControlArray<ui::CheckBox> AwardCheck{"AwardCheck", 18};
  ui::ControlArray<ui::CheckBox> WAZBandCheck{"WAZBandCheck", 13};
  ui::ControlArray<ui::CheckBox> WAZModeCheck{"WAZModeCheck", 7};

  // QSL Cards.
  ui::ControlArray<ui::TextBox> QSLInfoUpperLeft{"QSLInfoUpperLeft", 4};
  ui::ControlArray<ui::TextBox> QSLInfoUpperRight{"QSLInfoUpperRight", 4};
  ui::TextBox QSLInfoLowerLeft{"QSLInfoLowerLeft"};
  ui::TextBox QSLInfoLowerRight{"QSLInfoLowerRight"};
  ui::CheckBox QSLPrintOpCallsignCheck{"QSLPrintOpCallsignCheck"};
  ui::CommandButton ClearUpperLeftCmd{"ClearUpperLeftCmd"},
      ClearUpperRightCmd{"ClearUpperRightCmd"}, ClearLowerLeftCmd{"ClearLowerLeftCmd"},
      ClearLowerRightCmd{"ClearLowerRightCmd"};

  // QSL Labels: offsets in inches, counts of labels.
  ui::TextBox NarrowTopOffset{"NarrowTopOffset"};
  ui::ControlArray<ui::TextBox> NarrowColumnOffset{"NarrowColumnOffset", 3};
  ui::TextBox NarrowLabelsPerColumn{"NarrowLabelsPerColumn"};
  ui::TextBox WideTopOffset{"WideTopOffset"};
  ui::ControlArray<ui::TextBox> WideColumnOffset{"WideColumnOffset", 2};
  ui::TextBox WideLabelsPerColumn{"WideLabelsPerColumn"};

  // eQSL.
  ui::TextBox eQSLName{"eQSLName"};
  ui::TextBox eQSLPassword{"eQSLPassword"};

  // Callbook.
  ui::TextBox RACPathname{"RACPathname"};  // the callbook program; its folder goes to the library
  ui::CheckBox RACEnabled{"RACEnabled"};
  ui::CommandButton RACBrowseCmd{"RACBrowseCmd"};

  // Printer: PrintQualityButton(1..4) are draft, low, medium and high.
  ui::ComboBox PrinterName{"PrinterName"};
  ui::ComboBox PaperSizeCombo{"PaperSizeCombo"};
  ui::ControlArray<ui::OptionButton> PrintQualityButton{"PrintQualityButton", 5};
  ui::OptionGroup PrintQualityGroup;  // PrintQualityButton(1..4) exclude each other

  // Envelopes: offsets in inches.
  ui::TextBox EnvelopeLeftOffset{"EnvelopeLeftOffset"};
  ui::TextBox EnvelopeTopOffset{"EnvelopeTopOffset"};
  ui::ControlArray<ui::TextBox> ReturnAddress{"ReturnAddress", 5};
  ui::CheckBox AirmailCheck{"AirmailCheck"};

  // Address Labels: the same settings as the QSL labels'.
  ui::TextBox EnvelopeNarrowTopOffset{"EnvelopeNarrowTopOffset"};
  ui::ControlArray<ui::TextBox> EnvelopeNarrowColumnOffset{"EnvelopeNarrowColumnOffset", 3};
  ui::TextBox EnvelopeNarrowLabelsPerColumn{"EnvelopeNarrowLabelsPerColumn"};
  ui::TextBox EnvelopeWideTopOffset{"EnvelopeWideTopOffset"};
  ui::ControlArray<ui::TextBox> EnvelopeWideColumnOffset{"EnvelopeWideColumnOffset", 2};
  ui::TextBox EnvelopeWideLabelsPerColumn{"EnvelopeWideLabelsPerColumn"};

  // What the platform supplies. Set them before the form is loaded.
  std::function<std::vector<std::string>()> PrinterDeviceNames;  // the printers, by device name
  int DefaultPaperSize = 1;                 // paper number when none is stored (Letter)
  std::function<bool()> CallbookInstalled;  // the callbook library answers
  std::function<void(const std::string& folder)> SetCallbookPathname;  // its folder, ending "/"
  std::function<void()> ClustrineNewAwards;  // tells the siblings the awards changed

  // The tool tips of all loaded windows.
  TooltipTable Tooltips;
  // The format of the QSO date-time fields.
  std::string DateTimeFormat = kDateTimeFormatMinutes;

  // Loading and unloading.
  void VellumSetup_Load();
  void VellumSetup_QueryUnload(int& cancel, int unloadMode);
  void VellumSetup_Unload(int& cancel);
  // Shows the window on one of its pages (the Config...Cmd buttons of the main window).
  void ShowPage(int page);

  std::string GetDateTimeFormat() const { return DateTimeFormat; }
  // Data folder + "/Databases/" + the callsign made safe for a file name + ".vdb".
  std::string DefaultLogPathname(const std::string& callsign) const;

  // The log.
  void OpenLogCmd_Click();
  void UpdateOpenLogCmdCaption();
  void LogPathname_Change();
  void SaveLogPathname();
  void SaveBackupDirectory();
  void LogSelectCmd_Click();
  void SaveLogFrameVisibility();
  void LogFrameVisible_Click(int index);

  // Awards.
  void InitializeAwardTracking();
  void SaveAwardTracking();
  void AwardCheck_Click(int index);
  void WAZBandCheck_Click(int index);
  void WAZModeCheck_Click(int index);

  // The printer.
  void InitializePrinter();

  // The LogLayout grid: the table of the Log Page Display's columns (vellum_setup_layout.cpp).
  void LogLayout_BeforeDelete(int& cancel);
  void LogLayout_AfterDelete();
  void LogLayout_BeforeInsert(int& cancel);
  void LogLayout_AfterInsert();
  void LogLayout_BeforeColUpdate(int colIndex, const std::string& oldValue, int& cancel);
  void LogLayout_ComboSelect(int colIndex);
  void LogLayout_KeyUp(int& keyCode, int shift);
  void LogLayout_SelChange(int& cancel);

  // Grid column widths, written at unload.
  void SaveLogGridColumnWidths();
  void SaveQTHGridColumnWidths();
  void SaveLogLayoutGridColumnWidths();

  // Option handlers.
  void MyCallsign_Change();
  void DisplaySecondsCheckbox_Click();
  void TooltipsCheckbox_Click();
  void BrowserPathname_Change();
  void RACEnabled_Click();
  void RACPathname_Change();
  void RACBrowseCmd_Click();
  void HelpCmd_Click(int index);

 private:
  // A box of the label and envelope pages: its setting in section "QSL", and whether it takes
  // a decimal point.
  struct NumericBox {
    ui::TextBox* box;
    std::string key;
    bool decimal;
  };
  std::vector<NumericBox> NumericBoxes();
  void NumericBox_KeyPress(const ui::TextBox& box, bool decimal, int& keyAscii);
  void NumericBox_Change(const ui::TextBox& box, const std::string& key);

  // The options backed by one setting each, and Form_Load's steps after some of them
  // (vellum_setup_options.cpp).
  struct OptionSetting;
  static const std::vector<OptionSetting>& OptionSettings();
  void LoadOption(const OptionSetting& option);
  std::string OptionText(const OptionSetting& option) const;
  void AskCallsignAtFirstRun();
  void ReplaceOldDateTimeFormat();
  void PrepareLog();
  void ApplyBrowserPathname();
  std::string SiblingCallbookPathname() const;
  std::string CallsignLogPathname() const;
  std::string DefaultBackupDirectory() const;

  void ApplyLogFrameVisibility(int index);
  void AdoptControls();
  void SetDesignValues();
  void WireControls();
  void WireLogLayout();
  bool LogPathnameExists() const;
  void ShowMessage(const std::string& text);
  std::string GetSetting(const std::string& section, const std::string& key,
                         const std::string& defaultValue) const;
  void SaveSetting(const std::string& section, const std::string& key, const std::string& value);
  std::string GetSetting(const SettingKey& setting, const std::string& defaultValue) const;
  void SaveSetting(const SettingKey& setting, const std::string& value);
  // The failure tail under "VellumSetup." + procedure.
  template <class Body>
  void Tail(const char* procedure, Body&& body) {
    WithFailureTail(Log(), std::string("VellumSetup.") + procedure, std::forward<Body>(body));
  }
  ErrorLog& Log();
  std::string DatabasesFolder() const;
  // Tells the observer, when there is one.
  template <class F>
  void Notify(F&& f) {
    if (observer_) f(*observer_);
  }

  ConfigServices services_;
  ConfigObserver* observer_ = nullptr;
  std::unique_ptr<Configuration> options_;
};

}  // namespace vellumar
