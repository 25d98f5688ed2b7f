#include "qsl/qsl_queue.h"

#include <sys/stat.h>

#include "frame/error_log.h"
#include "frame/version.h"
#include "logstore/log_schema.h"

namespace vellumar {
namespace {

bool FileExists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

}  // namespace

void QSLQueue::OpenQSLQueue(const std::string& pathname, ui::DataControl& position) {
  pathname_ = pathname;
  open_ = false;
  auto disable = [this] {
    if (DisableQSLCommands) DisableQSLCommands();
  };
  try {
    if (!FileExists(pathname) && !logstore::CreateQSLQueue(pathname)) {
      desktop_.MsgBox("Unable to create QSL Queue database: " + pathname, ui::vbOKOnly,
                      kApplicationTitle);
      disable();
      return;
    }
    database_ = db::DBEngine::Workspaces(0).OpenDatabase(pathname);
    master_ = database_.OpenRecordset("PrintQueue", db::dbOpenDynaset);
    if (master_.Fields().Count() < 31) {
      logstore::QSLQueueSchema schema(desktop_, DisableQSLCommands);
      if (!schema.UpdateQSLDatabaseSchema(database_, master_)) return;
    }
    // The queue tab's own order; the tab re-sorts it when the operator asks.
    master_.SetSort("OPERATOR, CALL, MYQTHID, QSO_BEGIN");
    display_ = master_.OpenRecordset();
    position.DatabaseName = pathname;
    position.RecordSource = "PrintQueue";
    position.SetRecordset(display_);
    position_ = &position;
    if (InitializeQSLInfo) InitializeQSLInfo();
    open_ = true;
  } catch (...) {
    errorLog_.WriteErrorLog("Unable to open QSLQueue " + pathname);
    desktop_.MsgBox("Unable to open QSL Queue database: " + pathname, ui::vbOKOnly,
                    kApplicationTitle);
    open_ = false;
    disable();
  }
}

void QSLQueue::CloseQSLQueue(ui::DataControl& position) {
  auto ignoring = [](auto&& step) {
    try {
      step();
    } catch (...) {
    }
  };
  if (SaveQSLInfo) ignoring([&] { SaveQSLInfo(); });
  ignoring([&] { position.SetRecordset(db::Recordset()); });
  ignoring([&] { if (display_) display_.Close(); });
  ignoring([&] { if (master_) master_.Close(); });
  ignoring([&] { if (database_) database_.Close(); });
  open_ = false;
  position_ = nullptr;
}

void QSLQueue::SortQSL(const std::string& order) {
  if (!open_ || !position_) return;
  master_.SetSort(order);
  db::Recordset sorted = master_.OpenRecordset();
  if (display_) display_.Close();
  display_ = sorted;
  position_->SetRecordset(display_);
}

}  // namespace vellumar
