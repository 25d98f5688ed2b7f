#include "logpage/vellum_module.h"

#include <sys/stat.h>

#include <string>

#include "adif/write_batch.h"
#include "config/vellum_setup.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "platform/vb/convert.h"
#include "platform/vb/error.h"
#include "platform/vb/variant.h"

namespace vellumar {

namespace field = logstore::field;
namespace {

inline constexpr int kProgressFieldCount = 18;

bool FileExists(const std::string& path) {
  struct stat st;
  return !path.empty() && ::stat(path.c_str(), &st) == 0;
}

// A boolean setting as the runtime's CBool reads its text; the default when it doesn't read.
bool SettingBool(const std::string& text, bool defaultValue) {
  try {
    return vb::Variant(text).ToBool();
  } catch (const vb::VbError&) {
    return defaultValue;
  }
}

int SettingInt(const std::string& text, int defaultValue) {
  const auto n = vb::ParseNumber(text);
  return n ? static_cast<int>(*n) : defaultValue;
}

std::string BoolText(bool b) { return b ? "True" : "False"; }

// A font size as the runtime writes a single: "8.25", "10".
std::string SizeText(double size) { return vb::Variant(size).ToString(); }

// The DXCC prefix lists of the windows, as the DXCC module fills them.
class ComboList final : public DXCCComboList {
 public:
  explicit ComboList(ui::ComboBox& combo) : combo_(combo) {}
  void Clear() override { combo_.Clear(); }
  void AddItem(const std::string& text, int16_t itemData) override {
    combo_.AddItem(text);
    combo_.SetItemData(combo_.NewIndex(), itemData);
  }

 private:
  ui::ComboBox& combo_;
};

}  // namespace

void VellumModule::Initialize() {
  started_ = false;
  LogWorkspace = db::DBEngine::Workspaces(0);
  VellumMain& main = page_.main;
  main.DXBaseExportButton.SetValue(
      SettingBool(page_.GetSetting(setting::kDXBaseExport, "false"), false));
  main.LoggerImportButton.SetValue(
      SettingBool(page_.GetSetting(setting::kLoggerImport, "false"), false));
  main.MMTTYImportButton.SetValue(
      SettingBool(page_.GetSetting(setting::kMMTTYImport, "false"), false));
  // Neither special kind: the standard one.
  if (!main.DXBaseExportButton.Value()) main.Option1.SetValue(true);
  if (!main.LoggerImportButton.Value() && !main.MMTTYImportButton.Value())
    main.Option2.SetValue(true);
  main.DefaultCallsignCheckbox.SetValue(
      SettingInt(page_.GetSetting(setting::kDefaultImportCallsign, "1"), 1));
  main.SaveImportErrorsCheck.SetValue(
      SettingInt(page_.GetSetting(setting::kSaveImportErrors, "0"), 0));
  main.ImportDuplicateCheckbox.SetValue(1);
  LogFilteredFlag = false;
  main.FilterFrame.SetCaption("Filter: None");
  page_.bands.InitializeBandArray(page_.DatabasesFolder() + "/Bands.txt");
  LogGridRows =
      static_cast<int16_t>(SettingInt(page_.GetSetting(setting::kLogGridRows, "4"), 4));
  InitializeCombos();
  InitializeFields();
  page_.dxcc.OpenDXCCDatabase();
  InitializeDXCCCombos();
  page_.common.errorLog().SetErrorLogPresent(false);
  page_.dxcc.SetSuppressLookup(false);
  InteropCaption.clear();
  page_.common.localeInfo().Initialize();
  InitializeBandModeFilters();
  InitializeSQLFilters();
}

void VellumModule::InitializeDXCCCombos() {
  ComboList panel(page_.main.Fieldcombo(field::DXCCPrefix));
  ComboList capture(page_.capture.DXCC);
  page_.dxcc.InitializeDXCCCombo({&panel, &capture});
}

void VellumModule::Terminate() {
  VellumMain& main = page_.main;
  auto save = [&](const SettingKey& key, const std::string& value) {
    page_.SaveSetting(key, value);
  };
  save(setting::kDXBaseExport, BoolText(main.DXBaseExportButton.Value()));
  save(setting::kLoggerImport, BoolText(main.LoggerImportButton.Value()));
  save(setting::kMMTTYImport, BoolText(main.MMTTYImportButton.Value()));
  save(setting::kDefaultImportCallsign, std::to_string(main.DefaultCallsignCheckbox.Value()));
  save(setting::kSaveImportErrors, std::to_string(main.SaveImportErrorsCheck.Value()));
  const ui::Font& grid = main.LogGrid.Font();
  save(setting::kLogGridFont.name, grid.Name);
  save(setting::kLogGridFont.size, SizeText(grid.Size));
  save(setting::kLogGridFont.bold, BoolText(grid.Bold));
  save(setting::kLogGridFont.italic, BoolText(grid.Italic));
  const ui::Font& panel = main.Fieldbox(field::Call).Font();
  save(setting::kLogPanelFont.name, panel.Name);
  save(setting::kLogPanelFont.size, SizeText(panel.Size));
  save(setting::kLogPanelFont.bold, BoolText(panel.Bold));
  save(setting::kLogPanelFont.italic, BoolText(panel.Italic));
}

void VellumModule::OpenLog(const std::string& pathname, bool beginNewQSO) {
  if (!FileExists(pathname)) return;
  VellumMain& main = page_.main;
  ui::Desktop& desktop = page_.desktop;
  int state = 0;
  try {
    state = 1;
    IgnoringErrors([&] { ProgressRecordset.Close(); });
    IgnoringErrors([&] { ProgressView.Close(); });
    IgnoringErrors([&] { QTHRecordset.Close(); });
    IgnoringErrors([&] { LogRecordset.Close(); });
    IgnoringErrors([&] { LogView.Close(); });

    state = 2;
    LogIsOpen = false;
    EnableLogActions(false);

    state = 3;
    LogDatabase = LogWorkspace.OpenDatabase(pathname);

    state = 4;
    if (!AddMissingFieldDefinitions()) {
      desktop.MsgBox(
          "To permit the addition of new log fields, please terminate Clustrine, and then click "
          "the OK button",
          ui::vbOKOnly, kApplicationTitle);
      state = 5;
      if (!AddMissingFieldDefinitions()) {
        desktop.MsgBox(
            "New fields were not successfully added, so the specified log cannot be opened",
            ui::vbOKOnly, kApplicationTitle);
        LogDatabase.Close();
        return;
      }
      desktop.MsgBox("New fields have been successfully added; you may now restart Clustrine",
                     ui::vbOKOnly, kApplicationTitle);
    }

    state = 6;
    ProgressRecordset = LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);

    state = 7;
    if (ProgressRecordset.Fields().Count() != kProgressFieldCount) {
      const int answer = desktop.MsgBox("This log's progress table is obsolete -- update it?",
                                        ui::vbYesNo, kApplicationTitle);
      if (answer != ui::vbYes) {
        ProgressRecordset.Close();
        LogDatabase.Close();
        return;
      }
      state = 8;
      ProgressRecordset.Close();
      LogDatabase.TableDefs().Delete("Progress");
      LogDatabase.Close();
      state = 9;
      LogDatabase = LogWorkspace.OpenDatabase(pathname);
      page_.logSchema.CreateProgressTable(LogDatabase);
      ProgressRecordset = LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
      desktop.MsgBox(
          "Progress table has been re-initialized - click the ReCompute button on the "
          "CheckProgress tab to repopulate it",
          ui::vbOKOnly, kApplicationTitle);
    }

    state = 10;
    ProgressRecordset.SetSort("Prefix");
    ProgressRecordset.SetFilter("");
    ProgressView = ProgressRecordset.OpenRecordset();
    main.ProgressPosition.DatabaseName = pathname;
    main.ProgressPosition.RecordSource = "Progress";
    main.ProgressPosition.SetRecordset(ProgressView);

    state = 11;
    main.OpenQTHRecordset(pathname);

    state = 12;
    LogRecordset = LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    LogRecordset.SetSort("QSO_Begin");
    LogRecordset.SetFilter("");
    LogView = LogRecordset.OpenRecordset();

    state = 13;
    LogIsOpen = true;
    page_.setup().OpenLogCmd.SetEnabled(false);
    page_.setup().BackupCmd.SetEnabled(true);

    state = 14;
    main.LogPosition.DatabaseName = pathname;
    main.LogPosition.RecordSource = "QSOs";
    main.LogPosition.SetRecordset(LogView);

    state = 15;
    InitializeLogLayout();
    FormatLogGrid();

    state = 16;
    InitializePrevFieldValues();
    long rows = 0;
    IgnoringErrors([&] { rows = main.LogPosition.Recordset().RecordCount(); });
    if (rows == 0) {
      main.SetFieldEnable(false);
      if (beginNewQSO) main.NewCmd_Click();
    } else {
      main.SetFieldEnable(true);
      IgnoringErrors([&] {
        main.LogPosition.MoveLast();
        main.LogPosition.Recordset().Edit();
      });
      if (main.Visible()) main.Fieldbox(field::Call).SetFocus();
    }

    state = 17;
    ui::ComboBox& names = page_.advancedFilter.FieldNameCombo;
    while (names.ListCount() > 0) names.RemoveItem(0);
    db::Fields fields = main.LogPosition.Recordset().Fields();
    for (int i = 0; i < fields.Count(); ++i) names.AddItem(fields[i].Name());
    names.SetListIndex(0);

    state = 18;
    main.UpdateCaption();
    FormatProgressGrid();
    EnableLogActions(true);

    state = 19;
    NotifySibling(SiblingNotice::kAtlasineNewLog, pathname);
    NotifySibling(SiblingNotice::kClustrineNewLog, pathname);

    state = 20;
    if (page_.setup().Loaded()) page_.setup().SaveLogPathname();
  } catch (const vb::VbError& e) {
    page_.common.ReportError(e.number(), "VellumModule.OpenLog, State = " + std::to_string(state) +
                                             ", Pathname = " + pathname);
    CloseLog();
  }
}

bool VellumModule::AddMissingFieldDefinitions() {
  return page_.logSchema.AddMissingFieldDefinitions(LogDatabase);
}

void VellumModule::CloseLog() {
  VellumMain& main = page_.main;
  if (LogIsOpen) {
    // A recompute's writes so far stay in the file: its open group is committed first.
    if (RecomputeBatch) IgnoringErrors([&] { RecomputeBatch->Commit(); });
    IgnoringErrors([&] { SaveLogOrder(); });
    IgnoringErrors([&] { main.SaveQTHOrder(); });
    IgnoringErrors([&] { SavePrevFieldValues(); });
    IgnoringErrors([&] { main.SetFieldEnable(false); });
    IgnoringErrors([&] { main.LogPosition.Recordset().Close(); });
    IgnoringErrors([&] { LogRecordset.Close(); });
    IgnoringErrors([&] { main.ProgressPosition.Recordset().Close(); });
    IgnoringErrors([&] { ProgressRecordset.Close(); });
    IgnoringErrors([&] { LogDatabase.Close(); });
    IgnoringErrors([&] { main.LogPosition.SetRecordset(db::Recordset()); });
    IgnoringErrors([&] { main.ProgressPosition.SetRecordset(db::Recordset()); });
  }
  LogIsOpen = false;
  IgnoringErrors([&] { EnableLogActions(false); });
  IgnoringErrors([&] {
    page_.setup().OpenLogCmd.SetEnabled(true);
    page_.setup().BackupCmd.SetEnabled(false);
  });
}

void VellumModule::EnableLogActions(bool enable) {
  VellumMain& main = page_.main;
  for (ui::Control* c :
       std::initializer_list<ui::Control*>{&main.NewCmd, &main.ImportCmd, &main.FilterFrame,
                                           &main.SortFrame, &page_.setup().LogLayout})
    c->SetEnabled(enable);
  bool hasQSOs = false;
  if (enable) {
    const db::Recordset& view = main.LogPosition.Recordset();
    try {
      hasQSOs = view && !(view.BOF() && view.EOF_());
    } catch (const vb::VbError&) {
      hasQSOs = false;
    }
  }
  for (ui::Control* c : std::initializer_list<ui::Control*>{
           &main.DeleteCmd, &main.LogFirstCmd, &main.LogNextCmd, &main.LogPrevCmd, &main.LogLastCmd,
           &main.SaveCmd, &main.RevertCmd, &main.SummaryCmd, &main.ReComputeCmd,
           &main.GenerateRequestedCmd, &main.ProcessPrintedCmd, &main.ExportCmd})
    c->SetEnabled(hasQSOs);
}

void VellumModule::SetModified(bool modified) {
  page_.main.SaveCmd.SetEnabled(modified);
  page_.main.RevertCmd.SetEnabled(modified);
  if (modified == RecordIsModified) return;
  RecordIsModified = modified;
  page_.main.UpdateCaption();
}

void VellumModule::SetInteropCaption(const std::string& text) {
  InteropCaption = text.empty() ? "" : " [" + text + "]";
}

std::string VellumModule::GetLogFilter() const {
  try {
    return LogRecordset ? LogRecordset.Filter() : std::string();
  } catch (const vb::VbError&) {
    return {};
  }
}

}  // namespace vellumar
