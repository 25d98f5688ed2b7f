// The Import and Export tabs of the main window: the file dialog through the desktop, the
// import and export of src/adif run over the Log Page Display, and what they show on the tabs
// (counters, report box, bytes read, times) while the window keeps answering.
#include <filesystem>
#include <optional>
#include <string>

#include "adif/adif_export.h"
#include "adif/adif_import.h"
#include "config/setting_keys.h"
#include "frame/error_log.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/vellum_main.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"

namespace vellumar {
namespace {

constexpr const char* kAdifFilter = "ADIF (*.adi)|*.adi";
constexpr int kImportDialogFlags = 4104;  // the file must exist; the working folder is kept
// The tabs repaint when the window gets its turn: at most about 30 times a second.
constexpr std::int64_t kRepaintIntervalMs = 33;

// "ddddd hh:nn Z" of the present UTC.
std::string StampNow(LogPage& page) {
  return vb::FormatDate(page.common.utc().CurrentTime(), "ddddd hh:nn") + " Z";
}

// A tab's progress frame as a run begins: what it works on, the start stamped, no end yet.
void BeginRun(LogPage& page, ui::Frame& frame, const std::string& caption, ui::Label& started,
              ui::Label& completed) {
  frame.SetCaption(caption);
  started.SetCaption(StampNow(page));
  completed.SetCaption("");
}

// The end of a run in its frame; a program error is told there instead of the time. An error
// opening the file is told in a message box. Returns whether the run went to its end.
bool EndRun(LogPage& page, ui::Label& completed, bool programError, bool unopened,
            const std::string& openError) {
  if (unopened) {
    page.desktop.MsgBox(openError, ui::vbOKOnly, kApplicationTitle);
    return false;
  }
  completed.SetCaption(programError ? "program error" : StampNow(page));
  return !programError;
}

std::string FolderOf(const std::string& pathname) {
  return std::filesystem::path(pathname).parent_path().string();
}

// Gives the window its turn now and then: the first pass, and then at most every 33 ms.
class Turns {
 public:
  explicit Turns(ui::EventLoop& loop) : loop_(loop) {}
  void Take() {
    const std::int64_t now = loop_.NowMs();
    if (taken_ && now - last_ < kRepaintIntervalMs) return;
    taken_ = true;
    last_ = now;
    loop_.Yield();
  }

 private:
  ui::EventLoop& loop_;
  bool taken_ = false;
  std::int64_t last_ = 0;
};

// The import as the Import tab shows it.
class TabImportView final : public adif::ImportView {
 public:
  TabImportView(VellumMain& main, ui::EventLoop& loop) : main_(main), turns_(loop) {}
  void CountersChanged(const adif::ImportCounters& c) override {
    main_.ImportRecordsProcessed.SetCaption(std::to_string(c.processed));
    main_.ImportDuplicatesIgnored.SetCaption(std::to_string(c.duplicates));
    main_.ImportTruncatedFields.SetCaption(std::to_string(c.truncated));
    main_.ImportIllegalsIgnored.SetCaption(std::to_string(c.illegals));
    main_.ImportRecordsImported.SetCaption(std::to_string(c.imported));
  }
  void ReportChanged(const std::string& text) override { main_.ImportReport.SetText(text); }
  bool Continue() override {
    turns_.Take();
    return main_.AbortImportCmd.Enabled();
  }
  void BytesRead(std::uint64_t read, std::uint64_t total) override {
    main_.ImportBytesRead.Max = static_cast<double>(total);
    main_.ImportBytesRead.SetValue(static_cast<double>(read));
  }

 private:
  VellumMain& main_;
  Turns turns_;
};

// The export as the Export tab shows it; the question about an existing file in a message box.
class TabExportView final : public adif::ExportView {
 public:
  TabExportView(VellumMain& main, LogPage& page) : main_(main), page_(page), turns_(page.loop) {}
  bool ClearExistingFile(const std::string& prompt) override {
    return page_.desktop.MsgBox(prompt, ui::vbYesNo, kApplicationTitle) == ui::vbYes;
  }
  bool Continue() override {
    turns_.Take();
    return main_.AbortExportCmd.Enabled();
  }
  void CountChanged(long count) override {
    main_.ExportRecordsProcessed.SetCaption(std::to_string(count));
    main_.ExportRecordsExported.SetCaption(std::to_string(count));
  }

 private:
  VellumMain& main_;
  LogPage& page_;
  Turns turns_;
};

// Asks for an ADIF file in the folder of the last one, and keeps the folder chosen. Nothing when
// the operator cancels.
std::optional<std::string> AskForADIFFile(LogPage& page, bool forSaving, const char* title,
                                          const SettingKey& folder, int flags) {
  ui::FileDialogRequest request;
  request.title = title;
  request.filter = kAdifFilter;
  request.initialDir = page.GetSetting(folder, page.common.ApplicationDirectory());
  request.defaultExt = ".adi";
  request.flags = flags;
  std::string pathname;
  try {
    pathname = forSaving ? page.desktop.SaveFileDialog(request)
                         : page.desktop.OpenFileDialog(request);
  } catch (const vb::VbError& e) {
    if (e.number() != vb::kCancelSelected) throw;
    return std::nullopt;  // cancelled: silent
  }
  page.SaveSetting(folder, FolderOf(pathname));
  return pathname;
}

}  // namespace

VellumMain::~VellumMain() = default;

void VellumMain::WireAdif() {
  ImportKind.Add(LoggerImportButton);
  ImportKind.Add(Option2);
  ImportKind.Add(MMTTYImportButton);
  ExportKind.Add(DXBaseExportButton);
  ExportKind.Add(Option1);
  struct Text {
    ui::InputControl* control;
    const char* toolTip;
  };
  auto caption = [](auto& control, const char* text) { control.SetCaption(text); };
  caption(LoggerImportButton, "Import from Logger");
  caption(Option2, "Import standard ADIF");
  caption(MMTTYImportButton, "Import from MMTTY");
  caption(DXBaseExportButton, "Export for DXBase");
  caption(Option1, "Export standard ADIF");
  caption(ImportDuplicateCheckbox, "check duplicates on import");
  caption(SaveImportErrorsCheck, "Record import errors in .err file");
  // Until the configuration names the operator (MyCallsignChanged).
  caption(DefaultCallsignCheckbox, "Substitute  for missing operator callsigns");
  ImportProgressFrame.SetCaption("Progress");
  ExportProgressFrame.SetCaption("Progress");
  for (const Text& t : std::initializer_list<Text>{
           {&LoggerImportButton, "import QSOs whose name and QTH are encoded in the ADIF NAME field"},
           {&Option2, "import QSOs from an ADIF-compliant format"},
           {&MMTTYImportButton,
            "import QSOs whose tx and rx contest sequence numbers are appended to the RST Sent "
            "and Rcvd fields respectively"},
           {&DXBaseExportButton, "export QSOs using the DXBase representation of frequencies"},
           {&Option1, "export QSOs in ADIF-compliant format"},
           {&ImportDuplicateCheckbox, "if checked, no duplicate QSOs will be imported"},
           {&SaveImportErrorsCheck,
            "check to write import errors to a file, the name of which is the name of the file "
            "being imported with a .err extension appended"},
           {&ImportRecordsProcessed, "count of QSOs in the import file"},
           {&ImportDuplicatesIgnored, "count of duplicate QSOs in the import file"},
           {&ImportTruncatedFields,
            "count of QSOs with fields that were truncated by the import operation"},
           {&ImportIllegalsIgnored, "count of QSOs whose ADIF was malformed, preventing import"},
           {&ImportRecordsImported,
            "count of QSOs successfully imported (includes QSOs with truncated fields)"},
           {&ImportReport, "ADIF header from the imported file and import error messages"},
           {&ImportStartTime, "time at which the last Import operation began"},
           {&ImportCompleteTime, "time at which the last Import operation finished"},
           {&ExportRecordsProcessed, "count of Vellum QSOs exported"},
           {&ExportRecordsExported, "count of QSOs successfully exported"},
           {&ExportStartTime, "time at which the last Export operation began"},
           {&ExportCompleteTime, "time at which the last Export operation finished"},
           {&ExportQSONotes, "text to be appended to the Notes field of each exported QSO"},
       })
    t.control->SetToolTipText(t.toolTip);
  // The report box is read-only: its key presses are dropped.
  ImportReport.SetLocked(true);
  ImportReport.MultiLine = true;
  // ADIF.Initialize: nothing runs yet.
  ImportProgressFrame.SetEnabled(false);
  ExportProgressFrame.SetEnabled(false);
  AbortImportCmd.SetEnabled(false);
  AbortExportCmd.SetEnabled(false);

  ImportCmd.Click = [this] { ImportCmd_Click(); };
  ExportCmd.Click = [this] { ExportCmd_Click(); };
  // A click on Abort only disables the button: the running loop sees it at its next pass.
  AbortImportCmd.Click = [this] { AbortImportCmd.SetEnabled(false); };
  AbortExportCmd.Click = [this] { AbortExportCmd.SetEnabled(false); };
  ConfigImportCmd.Click = [this] { page_.setup().ShowPage(kGeneralPage); };
  ConfigExportCmd.Click = [this] { page_.setup().ShowPage(kGeneralPage); };
}

bool VellumMain::ImportInProgress() const { return import_ && import_->ImportInProgress(); }

void VellumMain::ImportCmd_Click() {
  if (CommandBusy || ImportInProgress()) return;
  CommandBusy = true;
  WithFailureTail(page_.common.errorLog(), "ADIF.ImportQSOs", [&] {
    // The QSO in hand first: a faulty one is shown on the Log QSOs tab, and nothing opens.
    if (!PendingEndTimeAndValidation()) {
      SelectTab(0);
      return;
    }
    SetMousePointer(ui::vbHourglass);
    db::Recordset& rs = Log();
    if (page_.module.RecordModified()) {
      if (rs.EditMode() == db::dbEditNone) rs.Edit();
      LogPosition.UpdateRecord();
      rs.Update();
      CountIntoProgress();
    } else if (rs && rs.EditMode() != db::dbEditNone) {
      rs.CancelUpdate();
    }
    const std::optional<std::string> chosen = AskForADIFFile(
        page_, false, "ADIF Import", setting::kImportDirectory, kImportDialogFlags);
    if (!chosen) return;
    const std::string& pathname = *chosen;

    adif::ImportSettings settings;
    settings.checkDuplicates = ImportDuplicateCheckbox.Value() != 0;
    settings.defaultCallsign = DefaultCallsignCheckbox.Value() != 0;
    settings.saveImportErrors = SaveImportErrorsCheck.Value() != 0;
    settings.loggerImport = LoggerImportButton.Value();
    settings.mmttyImport = MMTTYImportButton.Value();
    settings.myCallsign = page_.config.MyCallsign();
    import_ = std::make_unique<adif::AdifImport>(
        adif::ImportServices{page_.module.LogDatabase, ProgressPosition.Recordset(), &page_.dxcc,
                             &page_.lookupSlots, &page_.bands, &page_.common.errorLog()},
        settings);
    TabImportView view(*this, page_.loop);
    import_->SetView(&view);

    ImportProgressFrame.SetEnabled(false);
    BeginRun(page_, ImportProgressFrame, "Importing from " + pathname, ImportStartTime,
             ImportCompleteTime);
    view.CountersChanged(adif::ImportCounters{});
    ImportBytesRead.SetValue(0);
    AbortImportCmd.SetEnabled(true);
    ImportProgressFrame.SetEnabled(true);
    std::string openError;
    const adif::ImportOutcome outcome = import_->ImportFile(pathname, Log(), &openError);
    import_->SetView(nullptr);
    AbortImportCmd.SetEnabled(false);
    if (EndRun(page_, ImportCompleteTime, outcome == adif::ImportOutcome::kProgramError,
               outcome == adif::ImportOutcome::kUnreadable, openError))
      FinishImport();
  });
  AbortImportCmd.SetEnabled(false);
  EndCommand();
  page_.module.EnableLogActions(true);
}

void VellumMain::FinishImport() {
  // The Log Page's data source is read again and shown in the order the sort buttons choose:
  // by call, or by start time on the newest QSO; the Progress tab shows what it counted.
  Log().Requery();
  if (LogHasRows()) SetFieldEnable(true);
  UpdateCaption();
  page_.module.UpdateAtlasineProgress();  // the map program's entity, as it now stands
  page_.module.FormatLogGrid();
  page_.module.SortDisplay(SortCallButton.Value() ? "Call" : "QSO_Begin");
  ProgressPosition.RowsChanged();
}

void VellumMain::ExportCmd_Click() {
  if (CommandBusy) return;
  CommandBusy = true;
  WithFailureTail(page_.common.errorLog(), "ADIF.ExportQSOs", [&] {
    if (!LogHasRows()) {
      page_.desktop.MsgBox("no records to export", ui::vbOKOnly, kApplicationTitle);
      return;
    }
    SetMousePointer(ui::vbHourglass);
    const std::optional<std::string> chosen =
        AskForADIFFile(page_, true, "ADIF Export", setting::kExportDirectory, 0);
    if (!chosen) return;
    const std::string& pathname = *chosen;

    TabExportView view(*this, page_);
    BeginRun(page_, ExportProgressFrame, "Exporting to " + pathname, ExportStartTime,
             ExportCompleteTime);
    view.CountChanged(0);
    ExportProgressFrame.SetEnabled(true);
    AbortExportCmd.SetEnabled(true);
    adif::AdifExport exporter(page_.common.errorLog(),
                              {DXBaseExportButton.Value(), ExportQSONotes.Text()});
    std::string openError;
    const adif::ExportOutcome outcome = exporter.ExportFile(
        pathname, Log(), page_.common.utc().CurrentTime(), view, &openError);
    AbortExportCmd.SetEnabled(false);
    if (outcome == adif::ExportOutcome::kNoRecords) {
      page_.desktop.MsgBox("no records to export", ui::vbOKOnly, kApplicationTitle);
      return;
    }
    EndRun(page_, ExportCompleteTime, outcome == adif::ExportOutcome::kProgramError,
           outcome == adif::ExportOutcome::kUnopenable, openError);
  });
  AbortExportCmd.SetEnabled(false);
  EndCommand();
}

}  // namespace vellumar
