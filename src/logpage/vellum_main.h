#pragma once
// VellumMain: the main window as a control model. Its Form_Load is the program's start-up and
// its Form_Unload the shut-down, in a fixed order; between them everything is an event on the
// one thread.
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/bound/data_control.h"
#include "platform/bound/grid.h"
#include "platform/db/recordset.h"
#include "platform/services/event_loop.h"
#include "platform/ui/control_array.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace vellumar {

class LogPage;
namespace adif {
class AdifImport;
}
namespace qsl {
class VellumQSLModule;
struct QSLServices;
}

inline constexpr int kFieldCount = 35;  // QSO field slots 0..34

class VellumMain : public ui::Form {
 public:
  explicit VellumMain(LogPage& page);
  ~VellumMain() override;

  // Tabs: 0 "Log QSOs", 1 "QSL", 2 "Check Progress", 3 "my QTHs", 4 "Import", 5 "Export".
  ui::TabStrip TabbedDialog{"TabbedDialog",
                            {"Log QSOs", "QSL", "Check Progress", "my QTHs", "Import", "Export"}};

  // The Log page: the QSO panel, its four optional panels, the grid and the foot row.
  ui::Frame QSOFrame{"QSOFrame"};
  ui::ControlArray<ui::Frame> LogFrame{"LogFrame", 4};  // "Aux", "QSL", "Awards", "Contest"
  ui::ControlArray<ui::CheckBox> LogFrameSelect{"LogFrameSelect", 4};
  // The QSO panel. Every slot has a Fieldbox bound to its column of the current row; a slot
  // with a list shows a Fieldcombo instead and a date slot a DateBox, and the Fieldbox behind
  // them holds the value.
  ui::ControlArray<ui::TextBox> Fieldbox{"Fieldbox", kFieldCount};
  ui::ControlArray<ui::ComboBox> Fieldcombo{"Fieldcombo", {0, 2, 5, 8, 9, 15, 22, 31, 33}};
  ui::ControlArray<ui::TextBox> DateBox{"DateBox", {16, 17, 19, 20}};
  ui::ControlArray<ui::Label> FieldLabel{"FieldLabel", kFieldCount};
  ui::Grid LogGrid{"LogGrid"};
  ui::Frame SortFrame{"SortFrame"};
  ui::Frame FilterFrame{"FilterFrame"};
  ui::TextBox FilterField{"FilterField"};
  ui::DataControl LogPosition{"LogPosition"};
  ui::CommandButton NewCmd{"NewCmd"}, SaveCmd{"SaveCmd"}, RevertCmd{"RevertCmd"},
      DeleteCmd{"DeleteCmd"}, ConfirmCmd{"ConfirmCmd"}, VerifyCmd{"VerifyCmd"},
      LogFirstCmd{"LogFirstCmd"}, LogPrevCmd{"LogPrevCmd"}, LogNextCmd{"LogNextCmd"},
      LogLastCmd{"LogLastCmd"}, RACcmd{"RACcmd"}, PlotLogCmd{"PlotLogCmd"},
      ReportLogCmd{"ReportLogCmd"}, CaptureCmd{"CaptureCmd"}, ConfigLogCmd{"ConfigLogCmd"},
      HelpLogCmd{"HelpLogCmd"}, StopAddCmd{"StopAddCmd"};

  // The Log page's filter and sort commands (vellum_main_filters.cpp).
  ui::CommandButton FilterCallCmd{"FilterCallCmd"}, FilterDXCCCmd{"FilterDXCCCmd"},
      FilterDateCmd{"FilterDateCmd"}, FilterBrokenCmd{"FilterBrokenCmd"},
      FilterClearCmd{"FilterClearCmd"}, AdvancedFilterCmd{"AdvancedFilterCmd"};
  ui::OptionButton SortCallButton{"SortCallButton"}, SortUTCButton{"SortUTCButton"},
      SortAdvancedButton{"SortAdvancedButton"};
  ui::OptionGroup SortKind;

  // The QSL page.
  ui::DataControl QSLPosition{"QSLPosition"};
  ui::Grid QSLGrid{"QSLGrid"};
  ui::CommandButton GenerateRequestedCmd{"GenerateRequestedCmd"},
      ProcessPrintedCmd{"ProcessPrintedCmd"}, HelpQSLCmd{"HelpQSLCmd"};
  // The queue's fill, stop and clear commands, the frame whose caption shows a walk's progress,
  // and how QSLs and addresses go out (vellum_main_qsl.cpp).
  ui::CommandButton GenerateNeededCmd{"GenerateNeededCmd"},
      ClearQSLDatabaseCmd{"ClearQSLDatabaseCmd"};
  ui::Frame PrintQueueFrame{"PrintQueueFrame"};
  ui::ControlArray<ui::OptionButton> QSLMode{"QSLMode", 6};
  ui::ControlArray<ui::OptionButton> AddressMode{"AddressMode", 3};
  ui::OptionGroup QSLModeGroup, AddressModeGroup;
  ui::CheckBox QSLPrintPreviewCheck{"QSLPrintPreviewCheck"};

  // The Check Progress page.
  ui::DataControl ProgressPosition{"ProgressPosition"};
  ui::Grid ProgressGrid{"ProgressGrid"};
  ui::CommandButton SummaryCmd{"SummaryCmd"}, ReComputeCmd{"ReComputeCmd"},
      HelpProgressCmd{"HelpProgressCmd"}, ConfigProgressCmd{"ConfigProgressCmd"};
  ui::ProgressBar RecomputeProgress{"RecomputeProgress"};  // a recompute's QSOs counted
  bool RecomputeCmdBusy = false;  // RecomputeCmd_Click is running
  bool SummaryCmdBusy = false;    // SummaryCmd_Click is running

  // The my QTHs page (vellum_main_qths.cpp): QTHFieldBox(i) shows field i of QTHs (0 the ID).
  ui::DataControl QTHPosition{"QTHPosition"};
  ui::Grid QTHGrid{"QTHGrid"};
  ui::CommandButton HelpQTHCmd{"HelpQTHCmd"};
  ui::ControlArray<ui::TextBox> QTHFieldBox{"QTHFieldBox", 11};
  ui::ControlArray<ui::Label> QTHFieldLabel{"QTHFieldLabel", 11};
  ui::CommandButton NewQTHCmd{"NewQTHCmd"}, SaveQTHCmd{"SaveQTHCmd"},
      DeleteQTHCmd{"DeleteQTHCmd"}, SetLogCmd{"SetLogCmd"}, ClrLogCmd{"ClrLogCmd"},
      QTHListCmd{"QTHListCmd"}, QTHFirstCmd{"QTHFirstCmd"}, QTHPrevCmd{"QTHPrevCmd"},
      QTHNextCmd{"QTHNextCmd"}, QTHLastCmd{"QTHLastCmd"};
  static constexpr int kMaxQTHs = 1024;
  bool QTHIsModified = false;
  std::vector<std::string> MyQTHIDs = std::vector<std::string>(kMaxQTHs);  // IDs by row

  // The Import and Export pages.
  ui::CommandButton ImportCmd{"ImportCmd"}, ExportCmd{"ExportCmd"}, HelpImportCmd{"HelpImportCmd"},
      HelpExportCmd{"HelpExportCmd"}, AbortImportCmd{"AbortImportCmd"},
      AbortExportCmd{"AbortExportCmd"}, ConfigImportCmd{"ConfigImportCmd"},
      ConfigExportCmd{"ConfigExportCmd"};
  // The import's kind: Logger, standard (Option2) or MMTTY; the export's: DXBase or standard
  // (Option1).
  ui::OptionButton LoggerImportButton{"LoggerImportButton"}, Option2{"Option2"},
      MMTTYImportButton{"MMTTYImportButton"}, DXBaseExportButton{"DXBaseExportButton"},
      Option1{"Option1"};
  ui::OptionGroup ImportKind, ExportKind;
  ui::CheckBox DefaultCallsignCheckbox{"DefaultCallsignCheckbox"},
      SaveImportErrorsCheck{"SaveImportErrorsCheck"},
      ImportDuplicateCheckbox{"ImportDuplicateCheckbox"};
  ui::Frame ImportProgressFrame{"ImportProgressFrame"}, ExportProgressFrame{"ExportProgressFrame"};
  // The counters' values; the captions beside them ("processed:"...) are the view's.
  ui::Label ImportRecordsProcessed{"ImportRecordsProcessed"},
      ImportDuplicatesIgnored{"ImportDuplicatesIgnored"},
      ImportTruncatedFields{"ImportTruncatedFields"}, ImportIllegalsIgnored{"ImportIllegalsIgnored"},
      ImportRecordsImported{"ImportRecordsImported"}, ImportStartTime{"ImportStartTime"},
      ImportCompleteTime{"ImportCompleteTime"}, ExportRecordsProcessed{"ExportRecordsProcessed"},
      ExportRecordsExported{"ExportRecordsExported"}, ExportStartTime{"ExportStartTime"},
      ExportCompleteTime{"ExportCompleteTime"};
  ui::TextBox ImportReport{"ImportReport"};  // the header and the messages; read-only
  ui::TextBox ExportQSONotes{"ExportQSONotes"};
  ui::ProgressBar ImportBytesRead{"ImportBytesRead"};  // bytes of the input read

  // Timers, each an event of the loop; the ones that run once disable themselves.
  ui::Timer InitTimer;             // 250 ms: finishes start-up after the first paint
  ui::Timer ErrorTimer;            // 250 ms: blinks the labels of fields in error
  ui::Timer ServerRetryTimer;      // 5000 ms: retries siblings that went away
  ui::Timer AtlasineNewlogTimer;   // 1000 ms: tells the map program the log's pathname
  ui::Timer ClustrineNewlogTimer;  // 1000 ms: tells the spot program the log's pathname
  ui::Timer ShutdownTimer;         // 5000 ms: a shut-down asked for by a sibling

  // Form state.
  bool IgnoreResize = false;                     // Form_Resize does nothing while set
  bool IgnoreTabClick = false;                   // the next TabbedDialog click is the program's own
  bool IgnoreFrameSelectFlag = false;            // the next LogFrameSelect click is an echo
  bool CommandBusy = false;                      // a command is running; others do nothing
  int16_t QSOFrameHeight = 0;                    // design height of QSOFrame, twips
  int32_t LastWidth = 0;                         // the width restored at load, twips
  std::array<bool, kFieldCount> FieldInError{};  // the field's label blinks
  // The user changed the value through its combo or date box: the echo of that change in
  // Fieldbox_Change is ignored once.
  std::array<bool, kFieldCount> FieldChanged{};
  // The program moved the combo itself: the Fieldcombo_Click that results is ignored once.
  std::array<bool, kFieldCount> ComboEchoIgnored{};
  // The mouse button of the last MouseDown on NewCmd, SaveCmd and DeleteCmd (2: the right).
  int16_t NewButton = 0, SaveButton = 0, DeleteButton = 0;
  bool BlinkPhase = false;    // phase of the ErrorTimer blink
  db::Recordset DXCCDynaset;  // the form's reference to the DXCC dynaset
  int LoadStep = -1;          // the start-up step reached (reported on a failure)
  // Called as each start-up step begins; diagnostics and tests use it to watch the order.
  std::function<void(int step)> OnLoadStep;

  // Start-up and shut-down.
  void VellumMain_Load();
  void VellumMain_QueryUnload(int& cancel, int unloadMode);
  void VellumMain_Unload(int& cancel);
  void InitTimer_Timer();
  void ErrorTimer_Timer();
  void ShutdownTimer_Timer();
  void AtlasineNewlogTimer_Timer();
  void ClustrineNewlogTimer_Timer();
  void ServerRetryTimer_Timer();

  // The window and its tabs.
  void SelectTab(int index);
  void TabbedDialog_Click(int previousTab);
  void VellumMain_Resize();
  void SetLogTabVisibility(bool visible);
  void SetQSLTabvisibility(bool visible);
  void SetVisibleLogGridRows(int rows);
  void IgnoreFrameSelect() { IgnoreFrameSelectFlag = true; }
  void obeyFrameSelect() { IgnoreFrameSelectFlag = false; }
  void LogFrameSelect_Click(int index);
  void UpdateCaption();

  // The field slots' error marks.
  void SetFieldError(int index, bool inError);
  void ClearFieldErrors();
  // The slots whose error marks are walked: one per column of LogGrid, at most the 35 slots.
  int LogGridFieldCount() const;
  void SetFieldEnable(bool enable);
  bool FieldsEnabled() const { return fieldsEnabled_; }

  // The filters and sorts of the Log Page Display (vellum_main_filters.cpp). LastFilterKind
  // is the filter the page's own buttons put in force: 0 none (or a band, mode or SQL filter),
  // 1 call, 2 date, 3 DXCC, 4 broken; Enter in FilterField repeats kinds 1 to 3.
  int16_t LastFilterKind = 0;
  int16_t LastFilterMouseButton = 0;  // the button of the last MouseDown on FilterDateCmd
  bool LogFiltered() const { return LastFilterKind != 0; }
  void FilterCall();
  void FilterBand();
  void FilterMode();
  void FilterSQL(int index);
  void FilterClear();
  void FilterCallCmd_Click();
  void FilterDXCCCmd_Click();
  void FilterDateCmd_Click();
  void FilterBrokenCmd_Click();
  void FilterClearCmd_Click();
  void FilterBandCmd_Click();
  void FilterModeCmd_Click();
  void FilterSQLCmd_Click(int index);
  void FilterField_KeyPress(int& keyAscii);
  // The call, date or DXCC filter last applied, through its button, again; nothing for the
  // broken filter or none.
  void RepeatLastFilter();
  void AdvancedFilterCmd_Click();
  void SortCallButton_Click();
  void SortUTCButton_Click();
  void SortAdvancedButton_Click();
  void AdvancedFilter_Load();
  void AdvancedFilter_Unload();
  // Wires the advanced window's events to these commands, once the window exists.
  void WireAdvancedFilter();

  // A sibling's `log` command: its ADIF text added to the open log (vellum_main_siblings.cpp).
  void ProcessSiblingLog(const std::string& text);

  // The Import and Export tabs (vellum_main_adif.cpp).
  void ImportCmd_Click();
  void ExportCmd_Click();
  // True while a file import runs: the window refuses to close meanwhile.
  bool ImportInProgress() const;

  // The Check Progress tab (vellum_main_progress.cpp): Recompute asks first; Summary computes
  // the DXCC Summary's grids, bringing its window up.
  void RecomputeCmd_Click();
  void SummaryCmd_Click();

  // The life of the QSO in hand: new, save, revert, delete, confirm, verify, moves.
  void SetQSOStartTime();
  void SetQSOEndTime();
  void DefaultQSOEndTime();
  void InitializeQSO();
  void NewCmd_Click();
  void SaveCmd_Click();
  void RevertCmd_click();
  void DeleteCmd_click();
  void ConfirmCmd_Click();
  void VerifyCmd_Click();
  void LogFirstCmd_Click();
  void LogPrevCmd_Click();
  void LogNextCmd_Click();
  void LogLastCmd_Click();
  void LogGrid_RowColChange(const db::BookmarkValue& lastRow, int lastCol);
  void LogGrid_AfterUpdate();
  // The grid's edit of a cell, before it is written: the field's rule decides, and a broken
  // rule blinks the field's label and writes nothing.
  void LogGrid_BeforeColUpdate(int colIndex, const std::string& newText, int& cancel);
  // The queue's commands, when the QSL queue can't be opened or made.
  void DisableQSLCommands();
  // The QSL tab's queue commands (vellum_main_qsl.cpp), each under the busy guard but Stop.
  void GenerateNeededCmd_Click();
  void GenerateRequestedCmd_Click();
  void StopAddCmd_Click();
  void ProcessPrintedCmd_Click();
  void ClearQSLDatabaseCmd_Click();
  // Section "QSL" of the settings into the controls of this window and of the configuration
  // window, and back.
  void InitializeQSLInfo();
  void SaveQSLInfo();
  // What the queue's operations are given of this window and the program.
  qsl::QSLServices QSLWalkServices();
  // The my QTHs page.
  void OpenQTHRecordset(const std::string& pathname);
  void CloseQTHRecordset();
  void SetQTHModified(bool value);
  bool QTHModified() const { return QTHIsModified; }
  void SetQTHFieldEnable(bool value);
  void InitializeQTHList();
  void UpdateQTHList(const std::string& id);
  void DisplayQTHList();
  void SyncMyQTHCombo();
  bool FindMyQTH(const std::string& id);
  std::string QTHFieldValue(int index);
  void FormatQTHGrid();
  void SaveQTHGridColumnWidths();
  void SaveQTHOrder();
  void NewQTHCmd_Click();
  void SaveQTHCmd_Click();
  void DeleteQTHCmd_Click();
  void SetLogCmd_Click();
  void ClrLogCmd_Click();
  void QTHFieldBox_KeyPress(int index, int& keyAscii);
  void QTHFieldBox_KeyUp(int index);
  // Whether a card just received is worth sending to the DXCC desk for verification.
  bool VerificationNeeded();

  // How the slots react to the operator, and what makes a QSO valid.
  bool FieldErrors() const;
  bool ValidField(int index);
  // The rule of a slot for a text: whether the text may be stored, and whether the slot shows
  // an error for it (an empty QSL date is valid and no error; a too-long text is neither).
  struct FieldVerdict {
    bool valid;
    bool error;
  };
  FieldVerdict CheckField(int index, const std::string& text) const;
  bool ValidFields();
  void Fieldbox_KeyDown(int index, int& keyCode, int shift);
  void Fieldbox_KeyPress(int index, int& keyAscii);
  void CallsignEntered();  // Enter in the callsign box
  void Fieldbox_KeyUp(int index, int& keyCode, int shift);
  void Fieldbox_Change(int index);
  void Fieldcombo_Click(int index);
  void fieldbox_DblClick(int index);
  // Something dropped on a slot: `text` is the data's text, null when it has none. `effect`
  // tells the source what happened: 1 copied, 0 refused.
  void Fieldbox_OLEDragDrop(int index, const std::string* text, int& effect);
  void DateBox_KeyDown(int index, int& keyCode, int shift);
  void DateBox_KeyUp(int index, int& keyCode, int shift);
  void DateBox_Change(int index);
  void DateBox_DblClick(int index);

 private:
  void WireControls();
  // The command buttons' captions and tool tips, from their table.
  void ApplyCommandTexts();
  void WireFields();
  void WireFilters();
  void TidyAfterFilter();
  bool ClearedForEmptyPattern();

  // Captions, tool tips, option groups and events of the Import and Export tabs.
  void WireAdif();
  // The Check Progress tab's commands and bar.
  void WireProgress();
  // The QSL tab's queue commands, options and frame.
  void WireQSL();
  // The my QTHs page's boxes, commands and grid.
  void WireQTHs();
  long QTHCount() const;
  // SetLogCmd and ClrLogCmd: `id` into every QSO of the Log Page Display after the question.
  void SetLogQTH(const std::string& id, const std::string& question);
  // Runs a queue command over a module on the queue's display: nothing while another command
  // runs. The module of a running walk is the one Stop reaches.
  template <class Body>
  void RunQSLCommand(Body&& body);
  void FinishImport();
  void BeginStep(int step);
  // The recordset of the Log Page Display, and whether it has rows.
  db::Recordset& Log() { return LogPosition.Recordset(); }
  bool LogHasRows();
  // The panel written into the row (Edit or AddNew open), then the row stored.
  void UpdateLogRow();
  // Empties every slot for a new QSO; `checkListSize` leaves a combo with no items alone.
  void ClearFieldsForNewQSO(bool checkListSize);
  // Adds the empty row of a new QSO, writes it at once and stands on it in Edit.
  void BeginNewRow(bool checkListSize);
  // Counts the row into the award progress; the Check Progress grid follows its entity.
  void CountIntoProgress();
  // Puts the current row into Edit unless it is already, or there is no row.
  void BeginEdit();
  // The end time when it is missing, then validation; false when the command must stop.
  bool PendingEndTimeAndValidation();
  // Runs a command: nothing while another runs, the hourglass meanwhile, failures reported
  // under the procedure's name, and the form ready for the next command afterwards.
  template <class Body>
  void RunCommand(const char* procedure, Body&& body);
  void EndCommand();
  void FocusCallsign();
  void MoveComboQuietly(int index, int listIndex);
  std::string DateTimeFormat() const;
  LogPage& page_;
  bool fieldsEnabled_ = false;
  std::unique_ptr<adif::AdifImport> import_;  // the running file import, or the last one
  qsl::VellumQSLModule* runningQSLCommand_ = nullptr;  // the queue command under way, if any
};

}  // namespace vellumar
