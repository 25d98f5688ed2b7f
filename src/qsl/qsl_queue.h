#pragma once
// The QSL queue: a database of its own ("Databases/QSL.vdb" in the data folder), opened once at
// start-up and closed once at shut-down, whatever log is opened in between.
#include <functional>
#include <string>

#include "platform/bound/data_control.h"
#include "platform/db/database.h"
#include "platform/services/desktop.h"

namespace vellumar {

class ErrorLog;

class QSLQueue {
 public:
  QSLQueue(ui::Desktop& desktop, ErrorLog& errorLog) : desktop_(desktop), errorLog_(errorLog) {}

  // Creates the file when it is missing, upgrades an older table and binds the display
  // recordset to `position`. A failure leaves the queue closed and the QSL commands disabled.
  void OpenQSLQueue(const std::string& pathname, ui::DataControl& position);
  // Closes the display recordset, the master and the database, ignoring every failure.
  void CloseQSLQueue(ui::DataControl& position);
  bool IsOpen() const { return open_; }

  // DisableQSLCommands of the QSL tab.
  std::function<void()> DisableQSLCommands;

 private:
  ui::Desktop& desktop_;
  ErrorLog& errorLog_;
  std::string pathname_;
  db::Database database_;
  db::Recordset master_;   // dynaset on PrintQueue; carries the sort
  db::Recordset display_;  // opened from the master, shown by QSLPosition
  bool open_ = false;
};

}  // namespace vellumar
