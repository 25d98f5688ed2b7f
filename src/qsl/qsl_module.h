#pragma once
// VellumQSLModule: what fills the QSL queue and empties it again. AddToQSL is the one door into
// the queue; the walks "Add Needed" and "Add Requested" choose the QSOs from the Progress
// letters and the award choices; "Update Log" carries finished rows back into the log and
// "Clear" throws the rows away and undoes what choosing them did.
//
// The operations work on recordsets handed to them (the queue's display recordset, a clone of
// the Log Page Display, the Progress view), and reach the window and the desktop only through
// QSLServices, so that the Log page, the command-line tool and the tests run the same code.
#include <array>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/db/database.h"
#include "platform/db/recordset.h"
#include "platform/services/desktop.h"

namespace vellumar::qsl {

// The ten fields of a QTHs row that a queue row keeps as a snapshot, in the queue's order:
// CITY, COUNTY, STATE, COUNTRY, GRID, LATITUDE, LONGITUDE, CQZONE, ITUZONE, IOTA.
struct MyQTH {
  std::string id;  // as the QTHs row holds it
  std::array<std::string, 10> fields;
};

// The QTHs row of `id`, compared without regard to case; none for an empty id or no match.
std::optional<MyQTH> LookUpMyQTH(db::Recordset& qths, const std::string& id);

// The modes that count for the RTTY column of the awards, besides RTTY itself.
bool ModeCountsAsRTTY(const std::string& mode);

// The award choices: AwardCheck(3..17) of the configuration, by Progress column.
using AwardChecks = std::array<bool, 18>;

// What the operations need of the program around them. Every member may be left empty.
struct QSLServices {
  ui::Desktop* desktop = nullptr;                                 // message boxes
  std::function<void(int number, const std::string& where)> reportError;  // common reporter
  std::function<void()> yield;                                    // one turn of the event loop
  std::function<bool()> ended;  // true after a yield when the program has ended meanwhile
  std::function<std::string()> queueFrameCaption;                 // PrintQueueFrame's caption
  std::function<void(const std::string&)> setQueueFrameCaption;
  std::function<void(bool walking)> walkButtons;  // Generate* off and StopAdd on while walking
  std::function<void(bool wait)> waitCursor;
  std::function<void()> updateCaption;   // the main window's caption, with the queue's count
  std::function<void()> refreshLogGrid;  // the Log Page Display after the walk's edits
  std::function<void()> queueGridRedraw;  // InitializeQSLGrid after Clear
  std::function<std::optional<MyQTH>(const std::string& id)> findMyQTH;
  // Sets Sort "QSO_Begin" on the log's recordset for its next opening (Add Needed).
  std::function<void()> sortLogForNextOpening;
  // Sorts the queue after a walk ("OPERATOR, CALL, QSO_BEGIN").
  std::function<void(const std::string& order)> sortQSL;

  int MsgBox(const std::string& prompt, int buttons = ui::vbOKOnly) const;
  void Report(int number, const std::string& where) const;
};

// A row added or raised by AddToQSL, as the command-line tool prints it.
struct QueuedRow {
  std::string call;
  double begin = 0;
  std::string band, mode, needed;
};

class VellumQSLModule {
 public:
  // `queue` is the queue's display recordset (QSLPosition's).
  VellumQSLModule(db::Recordset& queue, QSLServices services)
      : queue_(queue), services_(std::move(services)) {}

  // Adds the QSO on which `qso` stands to the queue, or raises NEEDED of its row when it is
  // queued already. Failures of the database are reported as "VellumQSLModule.AddToQSL".
  void AddToQSL(db::Recordset& qso, bool needed);
  // Called with every row AddToQSL added or whose NEEDED it raised.
  std::function<void(const QueuedRow&)> onQueued;

  // The two walks over `log` (a clone is taken of it: the Log Page Display's order and filter),
  // using `progress` (the Progress view) for the letters.
  void GenerateNeededQSLs(db::Recordset& log, db::Recordset& progress, const AwardChecks& checks);
  void GenerateRequestedQSLs(db::Recordset& log, db::Recordset& progress,
                             const AwardChecks& checks);
  // Sets the stop flag that the walks test at each record.
  void StopAdd() { stop_ = true; }
  bool Stopped() const { return stop_; }

  // "Update Log": each Done row (QSL_DATE set) is carried into its QSO of `log` and its
  // Progress row, then deleted; the row goes only after its QSO's write has been committed.
  void ProcessPrintedQSLs(db::Database& log, db::Recordset& progress);
  // "Clear": after a question, every row is deleted and its choice undone in the log.
  void ClearQSLDatabase(db::Database& log, db::Recordset& progress);
  // The address editor's corrections: the QSO of `call` begun at `date`, found in `log` when
  // `displayHasRows` (the Log Page Display has rows).
  void UpdateLogQSLInfo(db::Database& log, bool displayHasRows, double date,
                        const std::string& call, const std::string& address,
                        const std::string& via);
  // The queue row at `bookmark`, and with a Yes the other rows of its call, with their QSOs.
  void UpdateQSLInfo(db::Database& log, bool displayHasRows, const db::BookmarkValue& bookmark,
                     const std::string& address, const std::string& via);
  // The log's namesake: the QSO at `bookmark` of `logView`, untrimmed, no queue row touched.
  void UpdateLogRowQSLInfo(db::Recordset& logView, const db::BookmarkValue& bookmark,
                           const std::string& address, const std::string& via);

  // The filter that finds a queue row's QSO in the log: Call and QSO_Begin to the second.
  static std::string LogRowFilter(const std::string& call, const vb::Variant& begin);

 private:
  struct WalkFrame;
  void NeededPass(WalkFrame& frame, db::Recordset& clone, db::Recordset& progress, const AwardChecks& checks,
                  bool bandsAndModes);
  void ConfirmWithCompanions(db::Recordset& clone, db::Recordset& progress,
                             const AwardChecks& checks);
  // The Progress row of the QSO `qso` stands on; false when its DXCCID is empty or has no row.
  bool FindProgressRow(db::Recordset& qso, db::Recordset& progress, bool& missing);
  void Yield() const;
  bool Ended() const;

  // The queue's rows by call (upper case; the search compares without regard to case), in the
  // display's order: made at a walk's first AddToQSL and kept up to date by it for the walk.
  static std::string CallKey(const std::string& call);
  void IndexQueueByCall();
  std::vector<db::BookmarkValue>& RowsOfCall(const std::string& call);

  db::Recordset& queue_;
  QSLServices services_;
  bool stop_ = false;
  bool walking_ = false;  // a walk is under way: nothing but AddToQSL changes the queue's rows
  bool indexed_ = false;
  std::unordered_map<std::string, std::vector<db::BookmarkValue>> callRows_;
};

}  // namespace vellumar::qsl
