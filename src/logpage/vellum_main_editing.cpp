// The life of the QSO in hand on the Log page: a new row, the defaults of a callsign, save,
// revert, delete, the QSL commands and the moves through the Log Page Display.
//
// The current row is displayed (not modified), being edited (the recordset in Edit), or
// empty-new: NewCmd writes an empty row at once, so a QSO has its row from its first moment.
#include <string>
#include <vector>

#include "awards/progress_columns.h"
#include "awards/progress_update.h"
#include "config/vellum_setup.h"
#include "frame/error_log.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logpage/vellum_main.h"
#include "logstore/schema_tables.h"
#include "platform/vb/ascii.h"
#include "platform/vb/convert.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "platform/vb/text.h"

namespace vellumar {

namespace field = logstore::field;
namespace {

// One row back or on. A step past either end goes back to the first or last row, so that the
// panel keeps showing a QSO.
void StepLog(ui::DataControl& position, bool forward) {
  db::Recordset& log = position.Recordset();
  const auto atEnd = [&] { return forward ? log.EOF_() : log.BOF(); };
  if (!log || atEnd()) return;
  if (forward) {
    log.MoveNext();
  } else {
    log.MovePrevious();
  }
  if (!atEnd()) {
    position.Repositioned();
  } else if (forward) {
    position.MoveLast();
  } else {
    position.MoveFirst();
  }
}

constexpr const char* kQSODateTimeFormat = "ddddd hh:nn:ss";  // what the time stamps write

}  // namespace

// ---- Helpers shared by the commands ----

bool VellumMain::LogHasRows() {
  try {
    const db::Recordset& rs = Log();
    return rs && !(rs.BOF() && rs.EOF_());
  } catch (const vb::VbError&) {
    return false;
  }
}

void VellumMain::UpdateLogRow() {
  LogPosition.UpdateRecord();
  Log().Update();
}

std::string VellumMain::DateTimeFormat() const { return page_.config.DateTimeFormat(); }

void VellumMain::FocusCallsign() {
  if (Visible()) Fieldbox(field::Call).SetFocus();
}

void VellumMain::EndCommand() {
  SetMousePointer(ui::vbDefault);
  CommandBusy = false;
}

template <class Body>
void VellumMain::RunCommand(const char* procedure, Body&& body) {
  if (CommandBusy) return;
  CommandBusy = true;
  SetMousePointer(ui::vbHourglass);
  WithFailureTail(page_.common.errorLog(), std::string("VellumMain.") + procedure,
                  std::forward<Body>(body));
  EndCommand();
}

void VellumMain::BeginEdit() {
  if (Log().EditMode() == db::dbEditNone && LogHasRows()) Log().Edit();
}

void VellumMain::ClearFieldsForNewQSO(bool checkListSize) {
  for (int i = 0; i < kFieldCount; ++i) {
    if (!page_.module.FieldIsCombo(i)) {
      Fieldbox(i).SetText("");
      continue;
    }
    // The program empties the combo for the new QSO: that is no choice of the operator's, so
    // it neither marks the QSO modified nor becomes the value the next QSO inherits.
    ui::ComboBox& combo = Fieldcombo(i);
    if (checkListSize && combo.ListCount() < 1) continue;
    Fieldbox(i).SetText("");
    MoveComboQuietly(i, 0);
  }
}

void VellumMain::BeginNewRow(bool checkListSize) {
  db::Recordset& rs = Log();
  rs.AddNew();
  SetFieldEnable(true);
  ClearFieldsForNewQSO(checkListSize);
  UpdateLogRow();  // the empty row is in the file from now on
  LogPosition.RowsChanged();
  LogPosition.GoTo(rs.LastModified());
  rs.Edit();
}

void VellumMain::CountIntoProgress() {
  db::Recordset& progress = ProgressPosition.Recordset();
  if (!progress) return;
  // The linked siblings hear of the counted QSO.
  interop::DDEClientModule& client = page_.siblings.client;
  ProgressNotifications notifications{
      .atlasineUpdateProgress = [&](const std::string& text) { client.AtlasineUpdateProgress(text); },
      .clustrineUpdateProgress =
          [&](const std::string& callsign, const std::string& band, const std::string& mode,
              const std::string& dxcc, const std::string& progressText) {
            client.ClustrineUpdateProgress(callsign, band, mode, dxcc, progressText);
          },
  };
  UpdateProgress(
      Log(), progress, true, notifications,
      [this](int number, const std::string& where) { page_.common.ReportError(number, where); });
  ProgressPosition.Repositioned();
}

bool VellumMain::PendingEndTimeAndValidation() {
  if (!LogHasRows()) return true;
  if (Fieldbox(field::QSO_End).Text().empty()) {
    if (page_.config.AutoSetDateTime()) {
      SetQSOEndTime();
    } else {
      DefaultQSOEndTime();
    }
  }
  return ValidFields();
}

// ---- Time stamps ----

void VellumMain::SetQSOStartTime() {
  page_.module.QSOStartTime = page_.common.utc().CurrentTime();
  Fieldbox(field::QSO_Begin).SetText(vb::FormatDate(page_.module.QSOStartTime, kQSODateTimeFormat));
  page_.module.SetModified(true);
}

void VellumMain::SetQSOEndTime() {
  Fieldbox(field::QSO_End)
      .SetText(vb::FormatDate(page_.common.utc().CurrentTime(), kQSODateTimeFormat));
  page_.module.SetModified(true);
}

void VellumMain::DefaultQSOEndTime() {
  Fieldbox(field::QSO_End).SetText(Fieldbox(field::QSO_Begin).Text());
  page_.module.SetModified(true);
}

// ---- Commands ----

void VellumMain::NewCmd_Click() {
  RunCommand("NewCmd_Click", [&] {
    if (LogHasRows()) {
      if (!PendingEndTimeAndValidation()) return;
      db::Recordset& rs = Log();
      if (page_.module.RecordModified()) {
        if (rs.EditMode() == db::dbEditNone) rs.Edit();
        UpdateLogRow();
        CountIntoProgress();
      } else if (rs.EditMode() != db::dbEditNone) {
        rs.CancelUpdate();
      }
    }
    // A filtered display would not show the new row.
    if (page_.module.LogFiltered()) FilterClear();
    BeginNewRow(true);
    UpdateCaption();
    FocusCallsign();
    page_.module.EnableLogActions(true);
  });
}

void VellumMain::SaveCmd_Click() {
  RunCommand("SaveCmd_Click", [&] {
    if (!PendingEndTimeAndValidation()) return;
    db::Recordset& rs = Log();
    if (page_.module.RecordModified()) {
      if (rs.EditMode() == db::dbEditNone) rs.Edit();
      LogPosition.UpdateRecord();
      // Saving a QSO by hand repairs it; the count below marks it again if it still can't be
      // counted.
      if (vb::UpperAscii(Fieldbox(field::BROKEN).Text()) == "Y")
        rs.Fields("BROKEN").SetValue(vb::Variant(""));
      rs.Update();
      CountIntoProgress();
    }
    if (SaveButton != ui::vbRightButton) {
      if (LogHasRows()) {
        LogPosition.GoTo(rs.LastModified());
        rs.Edit();
      }
    } else {
      // The right button: save, and begin the next QSO.
      SaveButton = 0;
      BeginNewRow(false);
      UpdateCaption();
      page_.module.EnableLogActions(true);
    }
    FocusCallsign();
  });
}

void VellumMain::RevertCmd_click() {
  RunCommand("RevertCmd_click", [&] {
    LogPosition.UpdateControls();
    page_.module.SetModified(false);
    Fieldbox(field::Call).SetFocus();
  });
}

void VellumMain::DeleteCmd_click() {
  VellumModule& module = page_.module;
  bool reopened = false;  // the last QSO of the display went, and the log was opened again
  RunCommand("DeleteCmd_click", [&] {
    db::Recordset& rs = Log();
    if (DeleteButton == ui::vbRightButton) {
      // The right button: the whole Log Page Display.
      if (!LogHasRows()) return;
      const long rows = CountRows(rs);
      const int answer = page_.desktop.MsgBox("Delete " + std::to_string(rows) + " Log Page QSOs?",
                                              ui::vbYesNo, kApplicationTitle);
      if (answer != ui::vbYes) return;
      if (rs.EditMode() != db::dbEditNone) rs.CancelUpdate();
      rs.MoveFirst();
      while (!rs.EOF_()) {
        rs.Delete();
        rs.MoveNext();
      }
      module.CloseLog();
      module.OpenLog(page_.config.LogPathname(), false);
      ClearFieldErrors();
      module.SetModified(false);
      module.EnableLogActions(true);
      return;
    }

    // The current QSO. The row to land on afterwards is the one before it, or the new first.
    if (rs.EditMode() != db::dbEditNone) rs.CancelUpdate();
    bool wasFirst = false;
    db::BookmarkValue previous;
    if (!rs.BOF()) rs.MovePrevious();
    if (rs.BOF()) {
      rs.MoveFirst();
      wasFirst = true;
    } else {
      previous = rs.Bookmark();
      rs.MoveNext();
    }
    if (page_.config.ConfirmDelete()) {
      if (page_.desktop.MsgBox("Delete current QSO?", ui::vbYesNo, kApplicationTitle) == ui::vbYes)
        rs.Delete();
    } else {
      rs.Delete();
    }
    if (CountRows(rs) == 0) {
      module.CloseLog();
      module.OpenLog(page_.config.LogPathname(), false);
      reopened = true;
    } else {
      LogPosition.RowsChanged();
      if (wasFirst) {
        LogPosition.MoveFirst();
      } else {
        LogPosition.GoTo(previous);
      }
      Log().Edit();
      SetFieldEnable(true);
      Fieldbox(field::Call).SetFocus();
    }
    ClearFieldErrors();
    module.SetModified(false);
    module.EnableLogActions(true);
  });
  // A reopened log has lost the display's filter: the page's own filter is applied again
  // through its command, once this one is no longer busy.
  if (reopened && LogFiltered()) RepeatLastFilter();
  UpdateCaption();
}

void VellumMain::ConfirmCmd_Click() {
  if (CommandBusy) return;
  const std::string received = vb::UpperAscii(Fieldbox(field::QSL_Rcvd).Text());
  if (received != "Y" && received != "V" && VerificationNeeded())
    page_.desktop.MsgBox("Send this QSL card to the DXCC desk!", ui::vbOKOnly, kApplicationTitle);
  Fieldbox(field::QSL_Rcvd).SetText("Y");
  if (vb::UpperAscii(Fieldbox(field::QSL_Sent).Text()) != "Y")
    Fieldbox(field::QSL_Sent).SetText("R");
  page_.module.SetModified(true);
  Fieldbox(field::QSLRDATE).SetText(vb::FormatDate(page_.common.utc().CurrentTime(), "mm/dd/yy"));
  CommandBusy = false;
  SaveCmd_Click();
  FilterField.SetFocus();
}

void VellumMain::VerifyCmd_Click() {
  if (CommandBusy) return;
  Fieldbox(field::QSL_Rcvd).SetText("V");
  page_.module.SetModified(true);
  CommandBusy = false;
  SaveCmd_Click();
  FilterField.SetFocus();
}

// ---- Moves. None asks about a pending edit: the panel shows the row moved to. ----

void VellumMain::LogFirstCmd_Click() {
  if (CommandBusy || !LogHasRows()) return;
  WithFailureTail(page_.common.errorLog(), "VellumMain.LogFirstCmd_Click",
                  [&] { LogPosition.MoveFirst(); });
}

void VellumMain::LogLastCmd_Click() {
  if (CommandBusy || !LogHasRows()) return;
  WithFailureTail(page_.common.errorLog(), "VellumMain.LogLastCmd_Click",
                  [&] { LogPosition.MoveLast(); });
}

void VellumMain::LogPrevCmd_Click() {
  if (CommandBusy) return;
  WithFailureTail(page_.common.errorLog(), "VellumMain.LogPrevCmd_Click",
                  [&] { StepLog(LogPosition, false); });
}

void VellumMain::LogNextCmd_Click() {
  if (CommandBusy) return;
  WithFailureTail(page_.common.errorLog(), "VellumMain.LogNextCmd_Click",
                  [&] { StepLog(LogPosition, true); });
}

void VellumMain::LogGrid_RowColChange(const db::BookmarkValue& lastRow, int lastCol) {
  (void)lastCol;
  if (page_.dxcc.SuppressLookup()) return;
  db::BookmarkValue current;
  IgnoringErrors([&] { current = Log().Bookmark(); });
  if (current == lastRow) return;
  const std::string call = Fieldbox(field::Call).Text();
  // The map program follows the cursor through the log; unlinked, the local lookup fills the
  // lookup slots in its place.
  if (!call.empty()) {
    page_.siblings.client.AtlasineLookup(call);
    page_.trailmark.GetQSLInfo(call);
  }
}

void VellumMain::LogGrid_AfterUpdate() { page_.module.SetModified(false); }

void VellumMain::LogGrid_BeforeColUpdate(int colIndex, const std::string& newText, int& cancel) {
  const std::vector<ui::GridColumn>& columns = LogGrid.Columns();
  if (colIndex < 0 || colIndex >= static_cast<int>(columns.size())) return;
  const std::string& column = columns[static_cast<size_t>(colIndex)].DataField;
  for (int i = 0; i < kFieldCount; ++i) {
    if (!vb::EqualsIgnoreCase(logstore::kQSOFields[static_cast<size_t>(i)].name, column)) continue;
    // The panel's rule holds in the grid too: a broken one blinks the label, nothing is written.
    const FieldVerdict verdict = CheckField(i, newText);
    if (!verdict.valid) {
      SetFieldError(i, true);
      cancel = 1;
    }
    return;
  }
}

// ---- The defaults of a new QSO, when its callsign is entered ----

void VellumMain::InitializeQSO() {
  VellumModule& module = page_.module;
  const Configuration& config = page_.config;
  for (int i = 0; i < kFieldCount; ++i) {
    if (!Fieldbox(i).Text().empty() || !module.PrevFields.PrevFieldPersistent(i)) continue;
    // The transceiver program's frequency and mode take the place of the remembered ones once
    // it is linked; until then the remembered values serve.
    if (module.PrevFields.PrevFieldPresent(i)) Fieldbox(i).SetText(module.GetPrevFieldValue(i));
    // The band is the frequency's: empty when there is no frequency or no band holds it, even
    // where the operator had picked one.
    if (i == field::Freq) {
      std::string band;
      IgnoringErrors(
          [&] { band = page_.bands.GetBandNameForFreq(vb::Val(Fieldbox(field::Freq).Text())); });
      Fieldbox(field::Band).SetText(band);
    }
  }
  module.InitializeField(field::Operator, config.MyCallsign());
  module.InitializeField(field::TX_Power, config.TransmitPower());
  module.InitializeField(field::QSLMsg, config.QSLMessage());
  if (config.AutoSetDateTime()) SetQSOStartTime();
  // The callbook is asked once it is installed. The map program answers the lookup when it is
  // linked, its answer in the slots before the command returns; else the local lookup fills them.
  LookupSlots& slots = page_.lookupSlots;
  slots.ClearLookup();
  page_.siblings.client.AtlasineLookup(Fieldbox(field::Call).Text());
  page_.trailmark.GetQSLInfo(Fieldbox(field::Call).Text());
  module.InitializeField(field::DXCCID, slots.DXCCID);
  module.InitializeField(field::DXCCPrefix, slots.DXCCPrefix);
  module.InitializeField(field::CONT, slots.Cont);
  module.InitializeField(field::CQZ, slots.CQ);
  module.InitializeField(field::ITUZ, slots.ITU);
  if (!Fieldbox(field::CONTEST_ID).Text().empty()) {
    // A serial that isn't a number stays as it is: the increment's error is passed over.
    const std::string sent = Fieldbox(field::STX).Text();
    if (sent.empty()) {
      Fieldbox(field::STX).SetText("1");
    } else {
      IgnoringErrors([&] {
        Fieldbox(field::STX).SetText(std::to_string(vb::CInt(vb::Variant(sent).ToDouble()) + 1));
      });
    }
    module.SetPrevFieldValue(field::STX, Fieldbox(field::STX).Text());
  }
  if (config.RunMode()) {
    const char* report = IsPhoneMode(Fieldbox(field::Mode).Text()) ? "59" : "599";
    Fieldbox(field::RST_Sent).SetText(report);
    Fieldbox(field::RST_Rcvd).SetText(report);
  }
}

// ---- Whether a card is worth verifying ----

bool VellumMain::VerificationNeeded() {
  const std::string code = Fieldbox(field::DXCCID).Text();
  if (code.empty()) return false;
  db::Recordset& progress = ProgressPosition.Recordset();
  if (!progress) return false;
  progress.FindFirst("CountryCode = '" + code + "'");
  if (progress.NoMatch()) {
    std::string when = Fieldbox(field::QSO_Begin).Text();
    IgnoringErrors([&] {
      when = vb::FormatDate(vb::CDate(Fieldbox(field::QSO_Begin).Text()), "ddddd hh:nn");
    });
    page_.desktop.MsgBox(
        "can't find DXCC code " + code + " for " + Fieldbox(field::Call).Text() + " @ " + when,
        ui::vbOKOnly, kApplicationTitle);
    return false;
  }
  ProgressPosition.Repositioned();
  auto needed = [&](int column) {
    if (column == -1) return false;
    return page_.config.AwardTracked(column) && ARRLVerified(column) &&
           progress.Fields(column).Value().ToStringOrEmpty() != "V";
  };
  const bool modeNeeded = needed(ModeProgressField(Fieldbox(field::Mode).Text()));
  const bool bandNeeded = needed(BandProgressField(Fieldbox(field::Band).Text()));
  return modeNeeded || bandNeeded;
}

}  // namespace vellumar
