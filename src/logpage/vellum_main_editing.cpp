// The life of the QSO in hand on the Log page: a new row, the defaults of a callsign, save,
// revert, delete, the QSL commands and the moves through the Log Page Display.
//
// The current row is displayed (not modified), being edited (the recordset in Edit), or
// empty-new: NewCmd writes an empty row at once, so a QSO has its row from its first moment.
#include <string>

#include "awards/progress_columns.h"
#include "awards/progress_update.h"
#include "config/vellum_setup.h"
#include "frame/error_log.h"
#include "frame/version.h"
#include "logpage/log_page_helpers.h"
#include "logpage/vellum_main.h"
#include "platform/vb/ascii.h"
#include "platform/vb/convert.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "program/application.h"

namespace vellumar {
namespace {

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

std::string VellumMain::DateTimeFormat() const { return app_.setup().GetDateTimeFormat(); }

void VellumMain::FocusCallsign() {
  if (Visible()) Fieldbox(1).SetFocus();
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
  WithFailureTail(app_.common.errorLog(), std::string("VellumMain.") + procedure,
                  std::forward<Body>(body));
  EndCommand();
}

void VellumMain::BeginEdit() {
  if (Log().EditMode() == db::dbEditNone && LogHasRows()) Log().Edit();
}

void VellumMain::ClearFieldsForNewQSO(bool checkListSize) {
  for (int i = 0; i < kFieldCount; ++i) {
    if (!app_.module.FieldIsCombo(i)) {
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
  // The siblings hear of a counted QSO once links to them exist; until then nobody listens.
  UpdateProgress(
      Log(), progress, true, ProgressNotifications{},
      [this](int number, const std::string& where) { app_.common.ReportError(number, where); });
  ProgressPosition.Repositioned();
}

bool VellumMain::PendingEndTimeAndValidation() {
  if (!LogHasRows()) return true;
  if (Fieldbox(20).Text().empty()) {
    if (app_.setup().AutoSetDateTimeCheck.Value() == 1) {
      SetQSOEndTime();
    } else {
      DefaultQSOEndTime();
    }
  }
  return ValidFields();
}

// ---- Time stamps ----

void VellumMain::SetQSOStartTime() {
  app_.module.QSOStartTime = app_.common.utc().CurrentTime();
  Fieldbox(19).SetText(vb::FormatDate(app_.module.QSOStartTime, kQSODateTimeFormat));
  app_.module.SetModified(true);
}

void VellumMain::SetQSOEndTime() {
  Fieldbox(20).SetText(vb::FormatDate(app_.common.utc().CurrentTime(), kQSODateTimeFormat));
  app_.module.SetModified(true);
}

void VellumMain::DefaultQSOEndTime() {
  Fieldbox(20).SetText(Fieldbox(19).Text());
  app_.module.SetModified(true);
}

// ---- Commands ----

void VellumMain::NewCmd_Click() {
  RunCommand("NewCmd_Click", [&] {
    if (LogHasRows()) {
      if (!PendingEndTimeAndValidation()) return;
      db::Recordset& rs = Log();
      if (app_.module.RecordModified()) {
        if (rs.EditMode() == db::dbEditNone) rs.Edit();
        UpdateLogRow();
        CountIntoProgress();
      } else if (rs.EditMode() != db::dbEditNone) {
        rs.CancelUpdate();
      }
    }
    // A filtered display would not show the new row. Filters come with the filter commands;
    // until then a display is never filtered.
    BeginNewRow(true);
    UpdateCaption();
    FocusCallsign();
    app_.module.EnableLogActions(true);
  });
}

void VellumMain::SaveCmd_Click() {
  RunCommand("SaveCmd_Click", [&] {
    if (!PendingEndTimeAndValidation()) return;
    db::Recordset& rs = Log();
    if (app_.module.RecordModified()) {
      if (rs.EditMode() == db::dbEditNone) rs.Edit();
      LogPosition.UpdateRecord();
      // Saving a QSO by hand repairs it; the count below marks it again if it still can't be
      // counted.
      if (vb::UpperAscii(Fieldbox(32).Text()) == "Y") rs.Fields("BROKEN").SetValue(vb::Variant(""));
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
      app_.module.EnableLogActions(true);
    }
    FocusCallsign();
  });
}

void VellumMain::RevertCmd_click() {
  RunCommand("RevertCmd_click", [&] {
    LogPosition.UpdateControls();
    app_.module.SetModified(false);
    Fieldbox(1).SetFocus();
  });
}

void VellumMain::DeleteCmd_click() {
  VellumModule& module = app_.module;
  RunCommand("DeleteCmd_click", [&] {
    db::Recordset& rs = Log();
    if (DeleteButton == ui::vbRightButton) {
      // The right button: the whole Log Page Display.
      if (!LogHasRows()) return;
      const long rows = CountRows(rs);
      const int answer = app_.desktop.MsgBox("Delete " + std::to_string(rows) + " Log Page QSOs?",
                                             ui::vbYesNo, kApplicationTitle);
      if (answer != ui::vbYes) return;
      if (rs.EditMode() != db::dbEditNone) rs.CancelUpdate();
      rs.MoveFirst();
      while (!rs.EOF_()) {
        rs.Delete();
        rs.MoveNext();
      }
      module.CloseLog();
      module.OpenLog(app_.setup().LogPathname.Text(), false);
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
    if (app_.setup().ConfirmDeleteCheck.Value() == 1) {
      if (app_.desktop.MsgBox("Delete current QSO?", ui::vbYesNo, kApplicationTitle) == ui::vbYes)
        rs.Delete();
    } else {
      rs.Delete();
    }
    if (CountRows(rs) == 0) {
      module.CloseLog();
      module.OpenLog(app_.setup().LogPathname.Text(), false);
    } else {
      LogPosition.RowsChanged();
      if (wasFirst) {
        LogPosition.MoveFirst();
      } else {
        LogPosition.GoTo(previous);
      }
      Log().Edit();
      SetFieldEnable(true);
      Fieldbox(1).SetFocus();
    }
    ClearFieldErrors();
    module.SetModified(false);
    module.EnableLogActions(true);
    // A reopened log would lose the display's filter; the filter commands that restore it come
    // with the log filters.
  });
  UpdateCaption();
}

void VellumMain::ConfirmCmd_Click() {
  if (CommandBusy) return;
  const std::string received = vb::UpperAscii(Fieldbox(8).Text());
  if (received != "Y" && received != "V" && VerificationNeeded())
    app_.desktop.MsgBox("Send this QSL card to the DXCC desk!", ui::vbOKOnly, kApplicationTitle);
  Fieldbox(8).SetText("Y");
  if (vb::UpperAscii(Fieldbox(9).Text()) != "Y") Fieldbox(9).SetText("R");
  app_.module.SetModified(true);
  Fieldbox(17).SetText(vb::FormatDate(app_.common.utc().CurrentTime(), "mm/dd/yy"));
  CommandBusy = false;
  SaveCmd_Click();
  FilterField.SetFocus();
}

void VellumMain::VerifyCmd_Click() {
  if (CommandBusy) return;
  Fieldbox(8).SetText("V");
  app_.module.SetModified(true);
  CommandBusy = false;
  SaveCmd_Click();
  FilterField.SetFocus();
}

// ---- Moves. None asks about a pending edit: the panel shows the row moved to. ----

void VellumMain::LogFirstCmd_Click() {
  if (CommandBusy || !LogHasRows()) return;
  WithFailureTail(app_.common.errorLog(), "VellumMain.LogFirstCmd_Click",
                  [&] { LogPosition.MoveFirst(); });
}

void VellumMain::LogLastCmd_Click() {
  if (CommandBusy || !LogHasRows()) return;
  WithFailureTail(app_.common.errorLog(), "VellumMain.LogLastCmd_Click",
                  [&] { LogPosition.MoveLast(); });
}

void VellumMain::LogPrevCmd_Click() {
  if (CommandBusy) return;
  WithFailureTail(app_.common.errorLog(), "VellumMain.LogPrevCmd_Click", [&] {
    if (!Log() || Log().BOF()) return;
    Log().MovePrevious();
    if (Log().BOF()) {
      LogPosition.MoveFirst();
    } else {
      LogPosition.Repositioned();
    }
  });
}

void VellumMain::LogNextCmd_Click() {
  if (CommandBusy) return;
  WithFailureTail(app_.common.errorLog(), "VellumMain.LogNextCmd_Click", [&] {
    if (!Log() || Log().EOF_()) return;
    Log().MoveNext();
    if (Log().EOF_()) {
      LogPosition.MoveLast();
    } else {
      LogPosition.Repositioned();
    }
  });
}

void VellumMain::LogGrid_RowColChange(const db::BookmarkValue& lastRow, int lastCol) {
  (void)lastCol;
  if (app_.dxcc.SuppressLookup()) return;
  db::BookmarkValue current;
  IgnoringErrors([&] { current = Log().Bookmark(); });
  if (current == lastRow) return;
  const std::string call = Fieldbox(1).Text();
  // The map program follows the cursor through the log once it is linked; the local lookup
  // fills the lookup slots in its place.
  if (!call.empty()) app_.dxcc.Lookup(call);
}

void VellumMain::LogGrid_AfterUpdate() { app_.module.SetModified(false); }

// ---- The defaults of a new QSO, when its callsign is entered ----

void VellumMain::InitializeQSO() {
  VellumModule& module = app_.module;
  VellumSetup& setup = app_.setup();
  for (int i = 0; i < kFieldCount; ++i) {
    if (!Fieldbox(i).Text().empty() || !module.PrevFields.PrevFieldPersistent(i)) continue;
    // The transceiver program's frequency and mode take the place of the remembered ones once
    // it is linked; until then the remembered values serve.
    if (module.PrevFields.PrevFieldPresent(i)) Fieldbox(i).SetText(module.GetPrevFieldValue(i));
    // The band follows a frequency; without one, a band the operator picked stays.
    if (i == 4 && !Fieldbox(4).Text().empty()) {
      IgnoringErrors(
          [&] { Fieldbox(0).SetText(app_.bands.GetBandNameForFreq(vb::Val(Fieldbox(4).Text()))); });
    }
  }
  module.InitializeField(7, setup.MyCallsign.Text());
  module.InitializeField(18, setup.TransmitPower.Text());
  module.InitializeField(21, setup.QSLMsg.Text());
  if (setup.AutoSetDateTimeCheck.Value() == 1) SetQSOStartTime();
  // The callbook is asked once it is installed; the map program answers the lookup once it is
  // linked. Until then the local lookup fills the slots.
  LookupSlots& slots = app_.lookupSlots;
  slots.ClearLookup();
  app_.dxcc.Lookup(Fieldbox(1).Text());
  module.InitializeField(3, slots.DXCCID);
  module.InitializeField(2, slots.DXCCPrefix);
  module.InitializeField(22, slots.Cont);
  module.InitializeField(24, slots.CQ);
  module.InitializeField(23, slots.ITU);
  if (!Fieldbox(27).Text().empty()) {
    // A serial that isn't a number stays as it is: the increment's error is passed over.
    const std::string sent = Fieldbox(30).Text();
    if (sent.empty()) {
      Fieldbox(30).SetText("1");
    } else {
      IgnoringErrors([&] {
        Fieldbox(30).SetText(std::to_string(vb::CInt(vb::Variant(sent).ToDouble()) + 1));
      });
    }
    module.SetPrevFieldValue(30, Fieldbox(30).Text());
  }
  if (setup.RunCheck.Value() == 1) {
    const char* report = IsPhoneMode(Fieldbox(5).Text()) ? "59" : "599";
    Fieldbox(14).SetText(report);
    Fieldbox(13).SetText(report);
  }
}

// ---- Whether a card is worth verifying ----

bool VellumMain::VerificationNeeded() {
  const std::string code = Fieldbox(3).Text();
  if (code.empty()) return false;
  db::Recordset& progress = ProgressPosition.Recordset();
  if (!progress) return false;
  progress.FindFirst("CountryCode = '" + code + "'");
  if (progress.NoMatch()) {
    std::string when = Fieldbox(19).Text();
    IgnoringErrors([&] { when = vb::FormatDate(vb::CDate(Fieldbox(19).Text()), "ddddd hh:nn"); });
    app_.desktop.MsgBox(
        "can't find DXCC code " + code + " for " + Fieldbox(1).Text() + " @ " + when, ui::vbOKOnly,
        kApplicationTitle);
    return false;
  }
  ProgressPosition.Repositioned();
  auto needed = [&](int column) {
    if (column == -1) return false;
    return app_.setup().AwardCheck(column).Value() == 1 && ARRLVerified(column) &&
           progress.Fields(column).Value().ToStringOrEmpty() != "V";
  };
  const bool modeNeeded = needed(ModeProgressField(Fieldbox(5).Text()));
  const bool bandNeeded = needed(BandProgressField(Fieldbox(0).Text()));
  return modeNeeded || bandNeeded;
}

}  // namespace vellumar
