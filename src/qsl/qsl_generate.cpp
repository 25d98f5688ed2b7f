// "Add Needed" and "Add Requested": the walks that fill the queue from the log, last QSO first,
// one yield per record, ending early at StopAdd.
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

bool IsEmptyRecordset(const db::Recordset& rs) { return rs.BOF() && rs.EOF_(); }

// A Progress column's letter; the caller has checked the column is one (0..17).
std::string Letter(const db::Recordset& progress, int column) { return Text(progress, column); }

bool Valid(int column) { return column >= 0; }

bool Checked(const AwardChecks& checks, int column) {
  return column >= 0 && column < static_cast<int>(checks.size()) &&
         checks[static_cast<size_t>(column)];
}

}  // namespace

// What the walks share around their passes: the caption kept, the buttons, the cursor.
struct VellumQSLModule::WalkFrame {
  VellumQSLModule& module;
  std::string savedCaption;
  std::string shownCaption;
  explicit WalkFrame(VellumQSLModule& m) : module(m) {
    const QSLServices& s = module.services_;
    if (s.waitCursor) s.waitCursor(true);
    if (s.queueFrameCaption) savedCaption = s.queueFrameCaption();
    module.stop_ = false;
    module.walking_ = true;
    module.indexed_ = false;
    if (s.walkButtons) s.walkButtons(true);
  }
  ~WalkFrame() {
    module.walking_ = false;
    module.indexed_ = false;
    module.callRows_.clear();
  }
  // The caption changes only when the date shown (or the pass) does.
  void Show(const std::string& words, double begin) {
    const std::string caption = words + vb::FormatDate(begin, "ddddd");
    if (caption == shownCaption) return;
    shownCaption = caption;
    if (module.services_.setQueueFrameCaption) module.services_.setQueueFrameCaption(caption);
  }
  void Finish() {
    module.walking_ = false;
    const QSLServices& s = module.services_;
    if (s.sortQSL) s.sortQSL("OPERATOR, CALL, QSO_BEGIN");
    if (!IsEmptyRecordset(module.queue_)) module.queue_.MoveFirst();
    if (s.setQueueFrameCaption) s.setQueueFrameCaption(savedCaption);
    if (s.walkButtons) s.walkButtons(false);
    if (s.refreshLogGrid) s.refreshLogGrid();
    if (s.waitCursor) s.waitCursor(false);
    if (s.updateCaption) s.updateCaption();
  }
};

void VellumQSLModule::Yield() const {
  if (services_.yield) services_.yield();
}

bool VellumQSLModule::Ended() const { return services_.ended && services_.ended(); }

bool VellumQSLModule::FindProgressRow(db::Recordset& qso, db::Recordset& progress,
                                      bool& missing) {
  missing = false;
  const vb::Variant id = qso.Fields(f::DXCCID).Value();
  if (id.IsNull() || id.ToStringOrEmpty().empty()) return false;
  progress.FindFirst("CountryCode = '" + id.ToStringOrEmpty() + "'");
  missing = progress.NoMatch();
  return !missing;
}

void VellumQSLModule::ConfirmWithCompanions(db::Recordset& clone, db::Recordset& progress,
                                            const AwardChecks& checks) {
  // 1, 2, 3
  const long chosenAt = clone.AbsolutePosition();
  AddToQSL(clone, true);
  clone.Edit();
  clone.Fields(f::QSL_Rcvd).SetValue("R");
  clone.Update();
  // 4, 5: the QSOs with the station that stand before the chosen one go on the same card. The
  // Progress row is still the chosen QSO's, whatever entity a companion names.
  const db::BookmarkValue chosen = clone.Bookmark();
  const std::string filter = "Call = '" + Text(clone, f::Call) + "'";
  clone.FindFirst(filter);
  while (!clone.NoMatch()) {
    const std::string rcvd = Text(clone, f::QSL_Rcvd);
    if (rcvd != "V" && rcvd != "Y" && rcvd != "R" && clone.AbsolutePosition() < chosenAt) {
      clone.Edit();
      clone.Fields(f::QSL_Rcvd).SetValue("R");
      clone.Update();
      const int modeColumn = ModeProgressField(Text(clone, f::Mode));
      const int bandColumn = BandProgressField(Text(clone, f::Band));
      // A verified mode column still counts as needed here: only "F" is tested.
      const bool modeNeeded = Valid(modeColumn) && Checked(checks, modeColumn) &&
                              Letter(progress, modeColumn) != "F" &&
                              Letter(progress, modeColumn) != "F";
      const bool bandNeeded = Valid(bandColumn) && Checked(checks, bandColumn) &&
                              Letter(progress, bandColumn) != "F" &&
                              Letter(progress, bandColumn) != "V";
      AddToQSL(clone, modeNeeded || bandNeeded);
    }
    clone.FindNext(filter);
  }
  // 6
  clone.SetBookmark(chosen);
}

void VellumQSLModule::NeededPass(WalkFrame& frame, db::Recordset& clone, db::Recordset& progress,
                                 const AwardChecks& checks, bool bandsAndModes) {
  clone.MoveLast();
  while (!clone.BOF() && !stop_) {
    Yield();
    if (Ended()) return;
    const double begin = clone.Fields(f::QSO_Begin).Value().IsNull()
                             ? 0
                             : clone.Fields(f::QSO_Begin).Value().ToDate();
    frame.Show(bandsAndModes ? "checking needed bands and modes on "
                               : "checking needed countries on ",
                 begin);
    const std::string rcvd = Text(clone, f::QSL_Rcvd);
    bool missing = false;
    if (rcvd != "I" && rcvd != "X" && FindProgressRow(clone, progress, missing)) {
      const int modeColumn = ModeProgressField(Text(clone, f::Mode));
      const int bandColumn = BandProgressField(Text(clone, f::Band));
      if (bandsAndModes) {
        bool modeNeeded = false;
        if (Valid(modeColumn)) {
          if (Checked(checks, modeColumn)) modeNeeded = Letter(progress, modeColumn) == "W";
          if (!modeNeeded && Checked(checks, kProgressRTTY) && ModeCountsAsRTTY(Text(clone, f::Mode)))
            modeNeeded = Letter(progress, kProgressRTTY) == "W";
        }
        const bool bandNeeded = Valid(bandColumn) && Checked(checks, bandColumn) &&
                                Letter(progress, bandColumn) == "W";
        if (modeNeeded || bandNeeded) {
          // A mode needed through the RTTY column marks the mode's own column.
          progress.Edit();
          if (modeNeeded) progress.Fields(modeColumn).SetValue("Q");
          if (bandNeeded) progress.Fields(bandColumn).SetValue("Q");
          progress.Update();
          ConfirmWithCompanions(clone, progress, checks);
        }
      } else {
        bool onTheWay = false;
        for (int column = kProgressFirstBand; column <= kProgressLastBand; ++column) {
          const std::string letter = Letter(progress, column);
          if (letter == "Q" || letter == "F" || letter == "V") onTheWay = true;
        }
        if (!onTheWay) {
          if (Valid(bandColumn)) {
            progress.Edit();
            progress.Fields(bandColumn).SetValue("Q");
            progress.Update();
          }
          ConfirmWithCompanions(clone, progress, checks);
        }
      }
    } else if (missing && bandsAndModes) {
      services_.MsgBox("can't find DXCC code " + Text(clone, f::DXCCID) + " for " +
                       Text(clone, f::Call) + " @ " + vb::FormatDate(begin, "ddddd hh:nn"));
    }
    clone.MovePrevious();
  }
}

void VellumQSLModule::GenerateNeededQSLs(db::Recordset& log, db::Recordset& progress,
                                         const AwardChecks& checks) {
  if (IsEmptyRecordset(log)) return;
  db::Recordset clone = log.Clone();
  WalkFrame frame(*this);
  try {
    // The log's next opening is in start order; the clone keeps the order on the screen.
    if (services_.sortLogForNextOpening) services_.sortLogForNextOpening();
    bool anyChecked = false, anyClear = false;
    for (int column = 3; column <= 17; ++column) {
      (checks[static_cast<size_t>(column)] ? anyChecked : anyClear) = true;
    }
    if (anyChecked) NeededPass(frame, clone, progress, checks, true);
    if (Ended()) return;
    if (anyClear) NeededPass(frame, clone, progress, checks, false);
    if (Ended()) return;
  } catch (const vb::VbError& e) {
    services_.Report(e.number(), "VellumQSLModule.GenerateNeededQSLs");
  }
  clone.Close();
  frame.Finish();
}

void VellumQSLModule::GenerateRequestedQSLs(db::Recordset& log, db::Recordset& progress,
                                            const AwardChecks& checks) {
  if (IsEmptyRecordset(log)) return;
  db::Recordset clone = log.Clone();
  WalkFrame frame(*this);
  try {
    clone.MoveLast();
    while (!clone.BOF() && !stop_) {
      Yield();
      if (Ended()) return;
      const vb::Variant beginValue = clone.Fields(f::QSO_Begin).Value();
      const double begin = beginValue.IsNull() ? 0 : beginValue.ToDate();
      frame.Show("checking ", begin);
      if (Text(clone, f::QSL_Sent) == "R") {
        bool missing = false;
        if (FindProgressRow(clone, progress, missing)) {
          const int modeColumn = ModeProgressField(Text(clone, f::Mode));
          const int bandColumn = BandProgressField(Text(clone, f::Band));
          const bool modeNeeded = Valid(modeColumn) && Checked(checks, modeColumn) &&
                                  Letter(progress, modeColumn) == "W";
          const bool bandNeeded = Valid(bandColumn) && Checked(checks, bandColumn) &&
                                  Letter(progress, bandColumn) == "W";
          if (modeNeeded || bandNeeded) {
            progress.Edit();
            if (modeNeeded) progress.Fields(modeColumn).SetValue("Q");
            if (bandNeeded) progress.Fields(bandColumn).SetValue("Q");
            progress.Update();
          }
        } else if (missing) {
          services_.MsgBox("can't find DXCC code " + Text(clone, f::DXCCID) + " for " +
                           Text(clone, f::Call) + " @ " + vb::FormatDate(begin, "ddddd hh:nn"));
        }
        AddToQSL(clone, false);
      }
      clone.MovePrevious();
    }
  } catch (const vb::VbError& e) {
    services_.Report(e.number(), "VellumQSLModule.GenerateRequestedQSLs");
  }
  clone.Close();
  frame.Finish();
}

}  // namespace vellumar::qsl
