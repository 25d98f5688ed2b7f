// "Update Log" and "Clear": the two ways a row leaves the queue, and the address editor's
// corrections carried into the log and the queue.
#include <string>

#include "awards/progress_columns.h"
#include "logstore/field_table.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "qsl/qsl_module.h"

namespace vellumar::qsl {
namespace f = logstore::field;

namespace {

std::string Text(const db::Recordset& rs, int index) {
  return rs.Fields(index).Value().ToStringOrEmpty();
}
std::string Text(const db::Recordset& rs, const char* name) {
  return rs.Fields(name).Value().ToStringOrEmpty();
}

bool IsEmptyRecordset(const db::Recordset& rs) { return rs.BOF() && rs.EOF_(); }

std::string Trim(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The dynaset on QSOs that the completion searches, counted.
db::Recordset OpenQSOs(db::Database& log) {
  db::Recordset qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  if (!IsEmptyRecordset(qsos)) {
    qsos.MoveLast();
    qsos.MoveFirst();
  }
  return qsos;
}

// Moves the QSO's mode and band columns of its Progress row from `from` to `to`, in one edit,
// when it has a row; other letters stay.
void MoveProgressLetters(db::Recordset& qso, db::Recordset& progress, const char* from,
                         const char* to) {
  const vb::Variant id = qso.Fields(f::DXCCID).Value();
  if (id.IsNull() || id.ToStringOrEmpty().empty()) return;
  progress.FindFirst("CountryCode = '" + id.ToStringOrEmpty() + "'");
  if (progress.NoMatch()) return;
  const int modeColumn = ModeProgressField(Text(qso, f::Mode));
  const int bandColumn = BandProgressField(Text(qso, f::Band));
  const bool mode = modeColumn >= 0 && Text(progress, modeColumn) == from;
  const bool band = bandColumn >= 0 && Text(progress, bandColumn) == from;
  if (!mode && !band) return;
  progress.Edit();
  if (mode) progress.Fields(modeColumn).SetValue(to);
  if (band) progress.Fields(bandColumn).SetValue(to);
  progress.Update();
}

}  // namespace

std::string VellumQSLModule::LogRowFilter(const std::string& call, const vb::Variant& begin) {
  return "Call = '" + call + "' AND QSO_Begin = #" + begin.ToStringOrEmpty() + "#";
}

void VellumQSLModule::ProcessPrintedQSLs(db::Database& log, db::Recordset& progress) {
  const char* kWhere = "VellumQSLModule.ProcessPrintedQSLs";
  try {
    // 1
    if (IsEmptyRecordset(queue_)) return;
    db::Recordset qsos = OpenQSOs(log);
    if (IsEmptyRecordset(qsos)) {
      qsos.Close();
      return;
    }
    // 2
    if (services_.waitCursor) services_.waitCursor(true);
    queue_.MoveFirst();
    // 3: the QSO and its Progress row are written (each committed) before the row goes, so a
    // stop between them leaves the row queued and a second "Update Log" finishes it.
    while (!queue_.EOF_()) {
      Yield();
      if (Ended()) return;
      const vb::Variant done = queue_.Fields("QSL_DATE").Value();
      if (done.IsNull() || done.ToStringOrEmpty().empty()) {
        queue_.MoveNext();
        continue;
      }
      const std::string filter = LogRowFilter(Text(queue_, "CALL"), queue_.Fields("QSO_BEGIN").Value());
      qsos.FindFirst(filter);
      if (qsos.NoMatch()) {
        services_.MsgBox("Log query for printed QSL failed: " + filter);
        queue_.MoveNext();
        continue;
      }
      MoveProgressLetters(qsos, progress, "Q", "R");
      qsos.Edit();
      qsos.Fields(f::QSLSDATE).SetValue(done.ToStringOrEmpty());
      qsos.Fields(f::QSL_Sent).SetValue("Y");
      const std::string rcvd = Text(qsos, f::QSL_Rcvd);
      if (rcvd != "Y" && rcvd != "V") qsos.Fields(f::QSL_Rcvd).SetValue("R");
      qsos.Update();
      queue_.Delete();
      queue_.MoveNext();
      if (services_.updateCaption) services_.updateCaption();
    }
    // 4
    qsos.Close();
    if (services_.refreshLogGrid) services_.refreshLogGrid();
    if (services_.waitCursor) services_.waitCursor(false);
    if (services_.updateCaption) services_.updateCaption();
  } catch (const vb::VbError& e) {
    services_.Report(e.number(), kWhere);
  }
}

void VellumQSLModule::ClearQSLDatabase(db::Database& log, db::Recordset& progress) {
  try {
    // 1: an empty log can't clear the queue, and asks nothing.
    db::Recordset qsos = OpenQSOs(log);
    if (IsEmptyRecordset(qsos)) {
      qsos.Close();
      return;
    }
    // 2
    if (services_.MsgBox("delete all entries in the QSL queue?", ui::vbYesNo) != ui::vbYes) {
      qsos.Close();
      if (services_.queueGridRedraw) services_.queueGridRedraw();
      if (services_.updateCaption) services_.updateCaption();
      return;
    }
    // 3
    if (services_.waitCursor) services_.waitCursor(true);
    if (!IsEmptyRecordset(queue_)) queue_.MoveFirst();
    // 4
    while (!IsEmptyRecordset(queue_) && !queue_.EOF_()) {
      Yield();
      if (Ended()) return;
      bool found = false;
      try {
        qsos.FindFirst(LogRowFilter(Text(queue_, "CALL"), queue_.Fields("QSO_BEGIN").Value()));
        found = !qsos.NoMatch();
      } catch (const vb::VbError&) {
        // A row whose filter can't be evaluated counts as not found.
      }
      if (found) {
        MoveProgressLetters(qsos, progress, "Q", "W");
        if (Text(qsos, f::QSL_Sent).empty()) {
          qsos.Edit();
          qsos.Fields(f::QSL_Rcvd).SetValue("");
          qsos.Update();
        }
      }
      queue_.Delete();
      queue_.MoveNext();
      if (services_.updateCaption) services_.updateCaption();
    }
    // 5
    if (services_.queueGridRedraw) services_.queueGridRedraw();
    qsos.Close();
    if (services_.waitCursor) services_.waitCursor(false);
    if (services_.updateCaption) services_.updateCaption();
  } catch (const vb::VbError& e) {
    services_.Report(e.number(), "VellumQSLModule.ClearQSLDatabase");
  }
}

void VellumQSLModule::UpdateLogQSLInfo(db::Database& log, bool displayHasRows, double date,
                                       const std::string& call, const std::string& address,
                                       const std::string& via) {
  try {
    const std::string where = "Unable to update QSO information for " + call + " @ " +
                              vb::FormatDate(date, "dd-mmm-yyyy hh:nn");
    if (!displayHasRows) {
      services_.MsgBox(where + " - log contains no unfiltered entried");
      return;
    }
    db::Recordset qsos = OpenQSOs(log);
    if (IsEmptyRecordset(qsos)) {
      services_.MsgBox(where + " - log contains no unfiltered entried");
      qsos.Close();
      return;
    }
    qsos.FindFirst(LogRowFilter(call, vb::Variant::FromDate(date)));
    if (qsos.NoMatch()) {
      services_.MsgBox(where + " - can't find QSO in log");
      qsos.Close();
      return;
    }
    qsos.Edit();
    qsos.Fields(f::ADDRESS).SetValue(Trim(address));
    qsos.Fields(f::QSL_Via).SetValue(Trim(via));
    qsos.Update();
    qsos.Close();
    if (services_.refreshLogGrid) services_.refreshLogGrid();
    if (services_.updateCaption) services_.updateCaption();
  } catch (const vb::VbError& e) {
    services_.Report(e.number(), "VellumQSLModule.UpdateLogQSLInfo");
  }
}

void VellumQSLModule::UpdateQSLInfo(db::Database& log, bool displayHasRows,
                                    const db::BookmarkValue& bookmark, const std::string& address,
                                    const std::string& via) {
  const std::string gone =
      "Unable to update QSL information -- the QSL queue entry no longer exists";
  try {
    queue_.SetBookmark(bookmark);
  } catch (const vb::VbError&) {
    services_.MsgBox(gone);
    return;
  }
  try {
    const std::string call = Text(queue_, "CALL");
    const double begin = queue_.Fields("QSO_BEGIN").Value().ToDate();
    queue_.Edit();
    queue_.Fields("ADDRESS").SetValue(Trim(address));
    queue_.Fields("VIA").SetValue(Trim(via));
    queue_.Update();
    UpdateLogQSLInfo(log, displayHasRows, begin, call, address, via);
    const long incidence = std::atol(Text(queue_, "INCIDENCE").c_str());
    int answer = ui::vbNo;
    if (incidence == 2) {
      answer = services_.MsgBox("there is one other QSO with " + call +
                                    " in the QSL queue; update its QSO information?",
                                ui::vbYesNo);
    } else if (incidence > 2) {
      answer = services_.MsgBox("there are " + std::to_string(incidence - 1) +
                                    " other QSOs with " + call +
                                    " in the QSL queue; update their QSO information?",
                                ui::vbYesNo);
    }
    if (answer == ui::vbYes) {
      queue_.MoveFirst();
      while (!queue_.EOF_()) {
        Yield();
        if (Ended()) return;
        const double rowBegin = queue_.Fields("QSO_BEGIN").Value().ToDate();
        if (rowBegin != begin && Text(queue_, "CALL") == call) {
          queue_.Edit();
          queue_.Fields("ADDRESS").SetValue(Trim(address));
          queue_.Fields("VIA").SetValue(Trim(via));
          queue_.Update();
          UpdateLogQSLInfo(log, displayHasRows, rowBegin, call, address, via);
        }
        queue_.MoveNext();
      }
    }
    queue_.SetBookmark(bookmark);
  } catch (const vb::VbError&) {
    services_.MsgBox(gone);
  }
}

void VellumQSLModule::UpdateLogRowQSLInfo(db::Recordset& logView,
                                          const db::BookmarkValue& bookmark,
                                          const std::string& address, const std::string& via) {
  try {
    logView.SetBookmark(bookmark);
    logView.Edit();
    logView.Fields(f::ADDRESS).SetValue(address);
    logView.Fields(f::QSL_Via).SetValue(via);
    logView.Update();
  } catch (const vb::VbError&) {
    services_.MsgBox("Unable to update QSL information -- the QSL queue entry no longer exists");
  }
}

}  // namespace vellumar::qsl
