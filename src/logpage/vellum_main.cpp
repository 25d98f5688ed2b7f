#include "logpage/vellum_main.h"

#include <algorithm>
#include <string>

#include "adif/adif_import.h"
#include "config/vellum_setup.h"
#include "config/window_placement.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logstore/field_table.h"
#include "platform/vb/convert.h"
#include "platform/vb/error.h"
#include "station/station_services.h"

namespace vellumar {
namespace {

constexpr ui::Color kBlue = 0xFF0000;  // the runtime's 0xBBGGRR
constexpr ui::Color kRed = 255;

// Reads a whole number from a setting's text; the default when it doesn't read.
int SettingNumber(const std::string& text, int defaultValue) {
  const auto n = vb::ParseNumber(text);
  return n ? static_cast<int>(*n) : defaultValue;
}

}  // namespace

VellumMain::VellumMain(LogPage& page)
    : ui::Form("VellumMain"),
      InitTimer(page.loop, 250, ui::TimerMode::kPeriodic, [this] { InitTimer_Timer(); }),
      ErrorTimer(page.loop, 250, ui::TimerMode::kPeriodic, [this] { ErrorTimer_Timer(); }),
      ServerRetryTimer(page.loop, 5000, ui::TimerMode::kPeriodic,
                       [this] { ServerRetryTimer_Timer(); }),
      AtlasineNewlogTimer(page.loop, 1000, ui::TimerMode::kPeriodic,
                          [this] { AtlasineNewlogTimer_Timer(); }),
      ClustrineNewlogTimer(page.loop, 1000, ui::TimerMode::kPeriodic,
                           [this] { ClustrineNewlogTimer_Timer(); }),
      ShutdownTimer(page.loop, 5000, ui::TimerMode::kPeriodic, [this] { ShutdownTimer_Timer(); }),
      page_(page) {
  SetBorderStyle(2);
  // The design size: wide enough for the panel and the default layout's columns side by side.
  Move(0, 0, 15600, 9600);
  QSOFrame.Move(0, 0, 15400, 1800);
  static const char* kLogFrameCaptions[] = {"Aux", "QSL", "Awards", "Contest"};
  for (int i = 0; i < 4; ++i) {
    LogFrame(i).SetCaption(kLogFrameCaptions[i]);
    LogFrameSelect(i).SetCaption(kLogFrameCaptions[i]);
  }
  for (int i = 0; i < kFieldCount; ++i) {
    const logstore::FieldSlot& slot = logstore::kFieldSlots[i];
    FieldLabel(i).SetCaption(slot.label);
    FieldLabel(i).SetToolTipText(slot.toolTip);
    Fieldbox(i).SetToolTipText(slot.toolTip);
  }
  FilterFrame.SetCaption("Filter: None");
  SortFrame.SetCaption("Sort");
  ApplyCommandTexts();
  VerifyCmd.SetEnabled(false);  // follows QSL_Rcvd: only a card received ("Y") can be verified
  WireControls();
  WireAdif();
  WireFields();
  WireFilters();
  WireProgress();
  WireQSL();
  WireQTHs();
}

void VellumMain::WireControls() {
  for (ui::Control* c : std::initializer_list<ui::Control*>{&TabbedDialog,
                                                            &QSOFrame,
                                                            &LogGrid,
                                                            &SortFrame,
                                                            &FilterFrame,
                                                            &FilterField,
                                                            &LogPosition,
                                                            &NewCmd,
                                                            &SaveCmd,
                                                            &RevertCmd,
                                                            &DeleteCmd,
                                                            &ConfirmCmd,
                                                            &VerifyCmd,
                                                            &LogFirstCmd,
                                                            &LogPrevCmd,
                                                            &LogNextCmd,
                                                            &LogLastCmd,
                                                            &RACcmd,
                                                            &PlotLogCmd,
                                                            &ReportLogCmd,
                                                            &CaptureCmd,
                                                            &ConfigLogCmd,
                                                            &HelpLogCmd,
                                                            &StopAddCmd,
                                                            &QSLPosition,
                                                            &QSLGrid,
                                                            &GenerateRequestedCmd,
                                                            &ProcessPrintedCmd,
                                                            &HelpQSLCmd,
                                                            &ProgressPosition,
                                                            &ProgressGrid,
                                                            &SummaryCmd,
                                                            &ReComputeCmd,
                                                            &HelpProgressCmd,
                                                            &QTHPosition,
                                                            &QTHGrid,
                                                            &HelpQTHCmd,
                                                            &ImportCmd,
                                                            &ExportCmd,
                                                            &HelpImportCmd,
                                                            &HelpExportCmd,
                                                            &LoggerImportButton,
                                                            &MMTTYImportButton,
                                                            &DXBaseExportButton,
                                                            &DefaultCallsignCheckbox,
                                                            &SaveImportErrorsCheck,
                                                            &ImportDuplicateCheckbox,
                                                            &AbortImportCmd,
                                                            &AbortExportCmd,
                                                            &ConfigImportCmd,
                                                            &ConfigExportCmd,
                                                            &Option1,
                                                            &Option2,
                                                            &ImportProgressFrame,
                                                            &ExportProgressFrame,
                                                            &ImportRecordsProcessed,
                                                            &ImportDuplicatesIgnored,
                                                            &ImportTruncatedFields,
                                                            &ImportIllegalsIgnored,
                                                            &ImportRecordsImported,
                                                            &ImportStartTime,
                                                            &ImportCompleteTime,
                                                            &ExportRecordsProcessed,
                                                            &ExportRecordsExported,
                                                            &ExportStartTime,
                                                            &ExportCompleteTime,
                                                            &ImportReport,
                                                            &ExportQSONotes,
                                                            &ImportBytesRead})
    Adopt(*c);
  for (auto& f : LogFrame) Adopt(*f);
  for (auto& f : LogFrameSelect) Adopt(*f);
  for (auto& f : Fieldbox) Adopt(*f);
  for (auto& f : FieldLabel) Adopt(*f);

  Form_Load = [this] { VellumMain_Load(); };
  Form_QueryUnload = [this](int& cancel, int mode) { VellumMain_QueryUnload(cancel, mode); };
  Form_Unload = [this](int& cancel) { VellumMain_Unload(cancel); };
  Form_Resize = [this] { VellumMain_Resize(); };
  TabbedDialog.TabClick = [this](int previous) { TabbedDialog_Click(previous); };
  LogFrameSelect.On(&ui::CheckBox::Click, [this](int i) { LogFrameSelect_Click(i); });
  ConfigLogCmd.Click = [this] { page_.setup().ShowPage(kLogPage); };
  HelpLogCmd.Click = [this] { page_.common.InvokeHelp("Log.htm"); };
  HelpQSLCmd.Click = [this] { page_.common.InvokeHelp("QSL.htm"); };
  HelpQTHCmd.Click = [this] { page_.common.InvokeHelp("MultipleQTHs.htm"); };
  HelpImportCmd.Click = [this] { page_.common.InvokeHelp("Import.htm"); };
  HelpExportCmd.Click = [this] { page_.common.InvokeHelp("Export.htm"); };
  HelpProgressCmd.Click = [this] { page_.common.InvokeHelp("Progress.htm"); };
  CaptureCmd.Click = [this] { page_.capture.Show(); };

  // The QSO commands. The right button of New, Save and Delete raises no Click: its release
  // runs the command with the button remembered, and the button is forgotten afterwards so
  // that a later Alt key runs the left button's command.
  auto withButton = [this](ui::CommandButton& button, int16_t& remembered,
                           void (VellumMain::*run)()) {
    button.Click = [this, run] { (this->*run)(); };
    button.MouseDown = [&remembered](int b, int, float, float) {
      remembered = static_cast<int16_t>(b);
    };
    button.MouseUp = [this, &remembered, run, &button](int b, int, float, float) {
      if (b != ui::vbRightButton || !button.Enabled()) return;
      remembered = ui::vbRightButton;
      (this->*run)();
      remembered = 0;
    };
  };
  withButton(NewCmd, NewButton, &VellumMain::NewCmd_Click);
  withButton(SaveCmd, SaveButton, &VellumMain::SaveCmd_Click);
  withButton(DeleteCmd, DeleteButton, &VellumMain::DeleteCmd_click);
  RevertCmd.Click = [this] { RevertCmd_click(); };
  ConfirmCmd.Click = [this] { ConfirmCmd_Click(); };
  VerifyCmd.Click = [this] { VerifyCmd_Click(); };
  LogFirstCmd.Click = [this] { LogFirstCmd_Click(); };
  LogPrevCmd.Click = [this] { LogPrevCmd_Click(); };
  LogNextCmd.Click = [this] { LogNextCmd_Click(); };
  LogLastCmd.Click = [this] { LogLastCmd_Click(); };
  LogGrid.RowColChange = [this](const db::BookmarkValue& lastRow, int lastCol) {
    LogGrid_RowColChange(lastRow, lastCol);
  };
  // The Log Page Display: the rows of LogPosition, in the layout's columns, whose widths are
  // kept as the user sizes or moves them.
  LogGrid.SetDataSource(&LogPosition);
  LogGrid.ColMove = [this](int, int) { page_.module.SaveLogGridColumnWidths(); };
  LogGrid.ColResize = [this](int) { page_.module.SaveLogGridColumnWidths(); };
  LogGrid.FormatError = [this](int colIndex, const std::string& text) {
    page_.module.LogGridFormatError(colIndex, text);
  };
  // A cell of the display is edited in place: the field's rule decides, the grid writes the
  // row through the record layer, and the panel shows the row as written.
  LogGrid.SetAllowUpdate(true);
  LogGrid.BeforeColUpdate = [this](int colIndex, const std::string&, int& cancel) {
    LogGrid_BeforeColUpdate(colIndex, LogGrid.EditText(), cancel);
  };
  LogGrid.AfterUpdate = [this] { LogGrid_AfterUpdate(); };
  LogGrid.UpdateError = [this](int number, const std::string&) {
    page_.common.ReportError(number, "VellumMain.LogGrid_BeforeUpdate");
  };
  page_.qslQueue.DisableQSLCommands = [this] { DisableQSLCommands(); };
  // The panel shows the row moved to: whatever was typed into the one left is dropped.
  LogPosition.Reposition = [this] { page_.module.SetModified(false); };
}

// The program's start-up, steps 0 to 22. A failure ends the load at its step, reported with
// the step's number; the window stays up with what was set up so far.
void VellumMain::BeginStep(int step) {
  LoadStep = step;
  if (OnLoadStep) OnLoadStep(step);
}

void VellumMain::VellumMain_Load() {
  LoadStep = 0;
  try {
    BeginStep(0);
    ShutdownTimer.SetEnabled(false);
    SetMousePointer(ui::vbHourglass);
    StopAddCmd.SetVisible(false);
    IgnoreResize = IgnoreTabClick = IgnoreFrameSelectFlag = CommandBusy = false;
    QSOFrameHeight = static_cast<int16_t>(QSOFrame.Height() < 0 ? 50 : QSOFrame.Height());

    BeginStep(1);
    page_.common.Initialize();

    BeginStep(2);
    SetWindowState(ui::vbNormal);
    const Common& c = page_.common;
    SetLeft(c.ReasonableLeft(SettingNumber(
        page_.GetWindowSetting(setting::kWindow.left, std::to_string(Left())), Left())));
    SetTop(c.ReasonableTop(
        SettingNumber(page_.GetWindowSetting(setting::kWindow.top, std::to_string(Top())), Top())));
    IgnoreResize = true;
    SetWidth(SettingNumber(page_.GetWindowSetting(setting::kWindow.width, std::to_string(Width())),
                           Width()));
    page_.loop.Yield();
    IgnoreResize = false;
    SetHeight(SettingNumber(
        page_.GetWindowSetting(setting::kWindow.height, std::to_string(Height())), Height()));
    SetWindowState(SettingNumber(
        page_.GetWindowSetting(setting::kWindow.stateRead, std::to_string(WindowState())),
        WindowState()));
    LastWidth = Width();

    BeginStep(3);
    SelectTab(0);
    page_.loop.Yield();
    page_.capture.Load();

    BeginStep(4);
    page_.module.Initialize();

    BeginStep(5);
    DXCCDynaset = page_.dxcc.GetDXCCDynaset();

    BeginStep(6);
    RACcmd.SetEnabled(false);
    page_.setup().Load();

    BeginStep(7);
    for (int i = 0; i < LogGridFieldCount(); ++i) {
      SetFieldError(i, false);
      FieldInError[i] = false;
      FieldChanged[i] = false;
    }

    BeginStep(8);
    ClearFieldErrors();

    BeginStep(9);
    page_.qslQueue.OpenQSLQueue(page_.DatabasesFolder() + "/QSL.vdb", QSLPosition);

    BeginStep(10);
    const std::string pathname = page_.config.LogPathname();
    page_.module.OpenLog(pathname, false);
    if (page_.module.LogOpen()) {
      page_.module.SetModified(false);
    } else {
      page_.desktop.MsgBox("unable to open log database: " + pathname, ui::vbOKOnly,
                           kApplicationTitle);
      UpdateCaption();
    }

    BeginStep(11);  // the ADIF module keeps no state until imports exist

    BeginStep(12);
    page_.cardPage.Load();

    BeginStep(13);
    AtlasineNewlogTimer.SetEnabled(false);
    ClustrineNewlogTimer.SetEnabled(false);
    ErrorTimer.SetEnabled(true);

    BeginStep(14);
    page_.siblings.InitializeClient();

    BeginStep(15);
    page_.siblings.InitializeServer();

    BeginStep(16);
    if (page_.module.LogOpen()) {
      page_.siblings.client.AtlasineNewLog(page_.config.LogPathname());
      page_.siblings.client.ClustrineNewLog(page_.config.LogPathname());
    }

    BeginStep(17);
    page_.module.EnableLogActions(page_.module.LogOpen());
    SetMousePointer(ui::vbDefault);

    BeginStep(18);
    page_.capture.Show();

    BeginStep(19);
    page_.advancedFilter.Load();

    BeginStep(20);
    if (!page_.setup().Tooltips.InitializeTooltips()) page_.setup().TooltipsCheckbox.SetValue(0);

    BeginStep(21);
    page_.addressEditor.Load();

    BeginStep(22);
    InitTimer.SetInterval(250);
    InitTimer.SetEnabled(true);
  } catch (const ProgramTermination&) {
    throw;
  } catch (const vb::VbError& e) {
    page_.common.ReportError(e.number(), "VellumMain.Form_Load: " + std::to_string(LoadStep));
  } catch (const std::exception&) {
    page_.common.ReportError(51, "VellumMain.Form_Load: " + std::to_string(LoadStep));
  }
}

void VellumMain::InitTimer_Timer() {
  InitTimer.SetEnabled(false);
  IgnoringErrors([&] {
    LogPosition.MoveFirst();
    LogPosition.MoveLast();
  });
  SetWindowState(SettingNumber(
      page_.GetWindowSetting(setting::kWindow.stateRead, std::to_string(WindowState())),
      WindowState()));
  page_.loop.Yield();
  // Only now: no route query may reach a half-built window.
  page_.siblings.client.AllowTrailmarkQueries();
}

void VellumMain::ErrorTimer_Timer() {
  bool anyError = false;
  for (int i = 0; i < LogGridFieldCount(); ++i) {
    if (FieldInError[i]) {
      anyError = true;
      FieldLabel(i).SetVisible(BlinkPhase);
    } else {
      FieldLabel(i).SetVisible(true);
    }
  }
  BlinkPhase = !BlinkPhase;
  if (!anyError) ErrorTimer.SetEnabled(false);
}

void VellumMain::ShutdownTimer_Timer() {
  // A shut-down asked for by a sibling: the unload order without QueryUnload.
  ShutdownTimer.SetEnabled(false);
  int cancel = 0;
  VellumMain_Unload(cancel);
}


void VellumMain::VellumMain_QueryUnload(int& cancel, int unloadMode) {
  // Only a running import refuses the unload.
  (void)unloadMode;
  if (ImportInProgress()) {
    page_.desktop.MsgBox("Abort the import operation before terminating", ui::vbOKOnly,
                         kApplicationTitle);
    cancel = 1;
  }
}

void VellumMain::VellumMain_Unload(int& cancel) {
  (void)cancel;
  auto ignoring = [](auto&& step) { IgnoringErrors(step); };
  ignoring([&] { page_.cardPage.Unload(); });
  page_.siblings.server.Terminate();
  page_.siblings.client.Terminate();
  if (page_.module.RecordModified()) {
    ignoring([&] { LogPosition.UpdateControls(); });
    page_.module.SetModified(false);
  }
  page_.qslQueue.CloseQSLQueue(QSLPosition);
  ignoring([&] { page_.addressEditor.Unload(); });
  ignoring([&] { page_.setup().Unload(ui::vbFormCode); });
  ignoring([&] { page_.dxccSummary.Unload(); });
  ignoring([&] { page_.cardPage.Unload(); });
  ignoring([&] { page_.capture.Unload(); });
  ignoring([&] { page_.advancedFilter.Unload(); });
  page_.module.Terminate();
  SelectTab(0);
  IgnoreResize = true;
  SaveWindowPosition(*this, page_.common, page_.settings);
  page_.common.Terminate();
  page_.EndProcess(0);
}

void VellumMain::SelectTab(int index) {
  const int keptState = WindowState();
  SetWindowState(ui::vbNormal);
  IgnoreTabClick = true;
  TabbedDialog.SetTab(index);
  page_.loop.Yield();
  IgnoreTabClick = false;
  const auto askFilterRemoval = [&](const char* purpose) {
    if (page_.module.GetLogFilter().empty()) return;
    const std::string text = std::string(
                                 "the log is currently filtered; do you wish this filter "
                                 "removed so that all QSOs are available for ") +
                             purpose + "?";
    if (page_.desktop.MsgBox(text, ui::vbYesNo, kApplicationTitle) == ui::vbYes) FilterClear();
  };
  switch (index) {
    case 0:
      SetQSLTabvisibility(false);
      SetLogTabVisibility(true);
      SetHeight(SettingNumber(
          page_.GetWindowSetting(setting::kWindow.height, std::to_string(Height())), Height()));
      break;
    case 1:
      SetLogTabVisibility(false);
      SetQSLTabvisibility(true);
      askFilterRemoval("QSL operations");
      break;
    case 2:
    case 4:
      SetLogTabVisibility(false);
      SetQSLTabvisibility(false);
      break;
    case 5:
      SetLogTabVisibility(false);
      SetQSLTabvisibility(false);
      askFilterRemoval("export");
      break;
    default:
      break;
  }
  SetWindowState(keptState);
}

void VellumMain::TabbedDialog_Click(int previousTab) {
  if (IgnoreTabClick) {
    IgnoreTabClick = false;
    return;
  }
  if (CommandBusy) {
    IgnoreTabClick = true;
    TabbedDialog.SetTab(previousTab);
    return;
  }
  if (previousTab == 0) page_.SaveWindowSetting(setting::kWindow.height, std::to_string(Height()));
  SelectTab(TabbedDialog.Tab());
  VellumMain_Resize();
}

void VellumMain::VellumMain_Resize() {
  if (IgnoreResize) return;
  if (WindowState() == ui::vbMinimized || WindowState() == ui::vbMaximized) return;
  const int tab = TabbedDialog.Tab();
  if (tab < 0 || tab > 5) return;
  if (tab != 0) return;  // the other tabs' grids take what is left; the view lays them out
  // The view gives LogGrid the height between the QSO panel and the foot row; the rows that
  // fit below the header become LogGridRows.
  const int rowHeight = LogGrid.RowHeight();
  if (rowHeight <= 0 || LogGrid.Height() <= 0) return;
  const int rows = (LogGrid.Height() - rowHeight) / rowHeight;
  if (rows > 0) SetVisibleLogGridRows(rows);
}

void VellumMain::SetVisibleLogGridRows(int rows) {
  page_.module.LogGridRows = static_cast<int16_t>(rows);
  LogGrid.SetVisibleRows(rows);
  page_.SaveSetting(setting::kLogGridRows, std::to_string(rows));
}

void VellumMain::SetLogTabVisibility(bool visible) {
  for (ui::Control* c : std::initializer_list<ui::Control*>{
           &LogGrid, &SortFrame, &FilterFrame, &PlotLogCmd, &ReportLogCmd, &LogFirstCmd,
           &LogPrevCmd, &LogNextCmd, &LogLastCmd})
    c->SetVisible(visible);
}

void VellumMain::SetQSLTabvisibility(bool visible) { QSLGrid.SetVisible(visible); }

void VellumMain::DisableQSLCommands() {
  // The queue's commands on the QSL tab; printing joins them with its button.
  GenerateRequestedCmd.SetEnabled(false);
  ProcessPrintedCmd.SetEnabled(false);
  GenerateNeededCmd.SetEnabled(false);
  ClearQSLDatabaseCmd.SetEnabled(false);
}

void VellumMain::LogFrameSelect_Click(int index) {
  if (IgnoreFrameSelectFlag) {
    IgnoreFrameSelectFlag = false;
    return;
  }
  page_.setup().LogFrameVisible(index).SetValue(LogFrameSelect(index).Value());
}

void VellumMain::UpdateCaption() {
  const std::string head =
      std::string(kApplicationTitle) + " " + Common::Version() + page_.module.GetInteropCaption();
  if (!page_.module.LogOpen()) {
    SetCaption(head + " (no log open)");
    return;
  }
  const long qsos = CountRows(LogPosition.Recordset());
  const std::string count = qsos == 0   ? "no QSOs"
                            : qsos == 1 ? "1 QSO"
                                        : std::to_string(qsos) + " QSOs";
  const long queued = CountRows(QSLPosition.Recordset());
  const std::string queue = queued == 0   ? ""
                            : queued == 1 ? " [QSL queue: 1 QSL]"
                                          : " [QSL queue: " + std::to_string(queued) + " QSLs]";
  const ui::Color frameColor = page_.module.RecordModified() ? kBlue : 0;
  QSOFrame.SetForeColor(frameColor);
  for (auto& f : LogFrame) f->SetForeColor(frameColor);
  if (page_.common.errorLog().ErrorLogPresent()) {
    SetCaption(head + " - see error log in " + page_.common.ApplicationDirectory() +
               "/ErrorLog.txt");
  } else {
    const std::string name = Common::SimpleName(page_.config.LogPathname());
    SetCaption(head + " - " + name + (page_.module.LogFiltered() ? " (filtered): " : " : ") +
               count + queue);
  }
}

void VellumMain::SetFieldError(int index, bool inError) {
  FieldInError[index] = inError;
  FieldLabel(index).SetForeColor(inError ? kRed : 0);
  if (inError) ErrorTimer.SetEnabled(true);
}

// The error table is walked by the grid's columns, not by the slots: a layout of fewer columns
// leaves the higher slots' flags and labels as they are.
int VellumMain::LogGridFieldCount() const {
  return std::min(static_cast<int>(LogGrid.Columns().size()), kFieldCount);
}

void VellumMain::ClearFieldErrors() {
  for (int i = 0; i < LogGridFieldCount(); ++i) SetFieldError(i, false);
}

void VellumMain::SetFieldEnable(bool enable) {
  fieldsEnabled_ = enable;
  for (int i = 0; i < kFieldCount; ++i) {
    if (page_.module.FieldIsCombo(i)) {
      Fieldcombo(i).SetEnabled(enable);
    } else {
      Fieldbox(i).SetEnabled(enable);
    }
    if (DateBox.Exists(i)) DateBox(i).SetEnabled(enable);
    FieldLabel(i).SetEnabled(enable);
  }
  DeleteCmd.SetEnabled(enable);
  ConfirmCmd.SetEnabled(enable);
}

}  // namespace vellumar
