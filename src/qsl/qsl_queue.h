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

  // Orders the display recordset anew: the master takes the order and the display is opened
  // from it again, on its first row. Nothing while the queue is closed.
  void SortQSL(const std::string& order);
  const std::string& Pathname() const { return pathname_; }

  // DisableQSLCommands of the QSL tab.
  std::function<void()> DisableQSLCommands;
  // The section "QSL" of the settings into the windows' controls once the queue is open, and
  // back first thing at the close.
  std::function<void()> InitializeQSLInfo;
  std::function<void()> SaveQSLInfo;

 private:
  ui::Desktop& desktop_;
  ErrorLog& errorLog_;
  std::string pathname_;
  db::Database database_;
  db::Recordset master_;   // dynaset on PrintQueue; carries the sort
  db::Recordset display_;  // opened from the master, shown by QSLPosition
  ui::DataControl* position_ = nullptr;
  bool open_ = false;
};

}  // namespace vellumar
