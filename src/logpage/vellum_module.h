#pragma once
// VellumModule: the central module. It owns the open log for as long as it is open (the
// database, its dynasets and views), and the state every window reads: whether a log is open,
// whether the QSO in hand is modified, the caption's interoperation text.
//
// States of the log:
//   no log --OpenLog--> open (LogIsOpen) --CloseLog--> no log
// OpenLog on an open log first closes the old recordsets. A failure inside OpenLog is
// reported with its state number and ends in CloseLog, so no half-bound view is left.
#include <cstdint>
#include <string>

#include "platform/db/database.h"

namespace vellumar {

class Application;

class VellumModule {
 public:
  explicit VellumModule(Application& app) : app_(app) {}

  void Initialize();
  void Terminate();

  // Opens a log and binds the windows to it; LogOpen() tells the outcome.
  void OpenLog(const std::string& pathname, bool beginNewQSO);
  void CloseLog();
  bool LogOpen() const { return LogIsOpen; }
  db::Database GetLogDatabase() const { return LogDatabase; }
  void EnableLogActions(bool enable);

  void SetModified(bool modified);
  bool RecordModified() const { return RecordIsModified; }
  void SetInteropCaption(const std::string& text);
  const std::string& GetInteropCaption() const { return InteropCaption; }
  bool RecomputeInProgress() const { return RecomputeRunning; }
  std::string GetLogFilter() const;
  bool LogFiltered() const { return LogFilteredFlag; }

  // The state, as other windows and modules read it.
  bool LogIsOpen = false;          // a log database is open
  bool RecordIsModified = false;   // the QSO on the Log page differs from its row
  bool RecomputeRunning = false;   // a progress recompute is under way
  bool LogFilteredFlag = false;    // the Log Page Display is filtered
  std::string InteropCaption;      // " [" + name + "]" or empty
  int16_t LogGridRows = 4;         // rows of the Log Page Display
  db::Database LogDatabase;        // the open log
  db::Workspace LogWorkspace;      // the default workspace
  db::Recordset ProgressRecordset;  // table Progress as a dynaset
  db::Recordset ProgressView;      // sorted view of it, shown by ProgressPosition
  db::Recordset LogRecordset;      // table QSOs as a dynaset; Filter and Sort are set on it
  db::Recordset LogView;           // the sorted, filtered view shown by LogPosition
  db::Recordset QTHRecordset;      // table QTHs, shown by QTHPosition

 private:
  bool AddMissingFieldDefinitions();
  Application& app_;
  bool started_ = false;  // Initialize has run
};

}  // namespace vellumar
