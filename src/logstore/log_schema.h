#pragma once
// Creating and upgrading the log file and the QSL queue file.
#include <functional>
#include <string>

#include "frame/error_log.h"
#include "platform/db/database.h"
#include "platform/services/desktop.h"

namespace vellumar::logstore {

// Fills a new Progress table with one row per DXCC entity.
using ProgressFiller = std::function<void(db::Database& log)>;

class LogSchema {
 public:
  LogSchema(ErrorLog& errorLog, ProgressFiller fillProgress)
      : errorLog_(errorLog), fillProgress_(std::move(fillProgress)) {}

  // Creates a log with QSOs, Progress and QTHs; the file must not exist. True on success; a
  // failure is reported under "VellumModule.CreateLog".
  bool CreateLog(const std::string& pathname);
  // Adds the fields an older QSOs table lacks, at its end. False when an Append failed (another
  // process holds the log open), without an entry in the error log.
  bool AddMissingFieldDefinitions(db::Database& log);
  // Adds Progress with its unique index CountryCode, then fills it.
  void CreateProgressTable(db::Database& log);
  void CreateQTHTable(db::Database& log);

 private:
  ErrorLog& errorLog_;
  ProgressFiller fillProgress_;
};

// Creates the QSL queue file with its table PrintQueue and closes it. A failure is thrown to
// the caller, whose recovery handles it.
bool CreateQSLQueue(const std::string& path);

// Brings PrintQueue up to its 31 fields from the older formats of 17, 18 or 29 fields; any other
// count below 31 is refused with a message. `master` is the queue's master recordset: it is
// closed for the upgrade and opened again. True when the table has its 31 fields.
class QSLQueueSchema {
 public:
  QSLQueueSchema(ui::Desktop& desktop, std::function<void()> disableQSLCommands)
      : desktop_(desktop), disableQSLCommands_(std::move(disableQSLCommands)) {}
  bool UpdateQSLDatabaseSchema(db::Database& queue, db::Recordset& master);

 private:
  ui::Desktop& desktop_;
  std::function<void()> disableQSLCommands_;  // DisableQSLCommands of the QSL tab
};

}  // namespace vellumar::logstore
