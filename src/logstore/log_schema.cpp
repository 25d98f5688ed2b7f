#include "logstore/log_schema.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <span>

#include "frame/atomic_file.h"
#include "frame/version.h"
#include "platform/vb/error.h"
#include "logstore/schema_tables.h"

namespace vellumar::logstore {
namespace {

db::Field MakeField(db::TableDef& table, const FieldSpec& spec) {
  db::Field f = table.CreateField(spec.name, spec.type, spec.size);
  f.SetAttributes(db::dbUpdatableField);
  if (spec.type == kText || spec.type == kMemo) f.SetAllowZeroLength(spec.allowZeroLength);
  return f;
}

// Creates a table whose fields are the given ones, in order.
db::TableDef MakeTable(db::Database& database, const char* name, std::span<const FieldSpec> fields) {
  db::TableDef table = database.CreateTableDef(name);
  for (const FieldSpec& spec : fields) table.Fields().Append(MakeField(table, spec));
  return table;
}

void AppendIndex(db::TableDef& table, const char* name, const char* field, bool unique) {
  db::Index index = table.CreateIndex(name);
  index.SetPrimary(false);
  index.SetUnique(unique);
  index.Fields().Append(index.CreateField(field));
  table.Indexes().Append(index);
}

int FieldCount(db::Database& database, const char* table) {
  db::Recordset rs = database.OpenRecordset(table, db::dbOpenDynaset);
  const int n = rs.Fields().Count();
  rs.Close();
  return n;
}

}  // namespace

bool LogSchema::CreateLog(const std::string& pathname) {
  return WithFailureTail(errorLog_, "VellumModule.CreateLog", [&] {
    // An existing file is refused by the engine as always.
    if (access(pathname.c_str(), F_OK) == 0)
      db::DBEngine::Workspaces(0).CreateDatabase(pathname, db::dbLangGeneral);
    // The log is built under a temporary name and renamed into place once whole, so that a
    // program stopped midway never leaves a log without its tables behind.
    RemoveStaleTemporaries(pathname);
    const std::string building = AtomicTemporaryName(pathname, static_cast<long>(getpid()));
    std::remove(building.c_str());
    try {
      db::Database log = db::DBEngine::Workspaces(0).CreateDatabase(building, db::dbLangGeneral);
      db::TableDef qsos = MakeTable(log, "QSOs", kQSOFields);
      AppendIndex(qsos, "Timestamp", "QSO_Begin", false);
      AppendIndex(qsos, "Callsign", "Call", false);
      log.TableDefs().Append(qsos);
      CreateProgressTable(log);
      CreateQTHTable(log);
      log.Close();
      // A close that could not write the tables into the file itself leaves them in the
      // write-ahead log, which would not follow the file's rename: the disk failed.
      struct stat wal;
      if (stat((building + "-wal").c_str(), &wal) == 0 && wal.st_size > 0)
        throw vb::VbError(3043, vb::ErrorDescription(3043) + " (creating " + pathname + ")");
    } catch (...) {
      for (const char* suffix : {"", "-wal", "-shm", "-journal"})
        std::remove((building + suffix).c_str());
      throw;
    }
    // A write-ahead log left without its file belongs to no log: it must not be replayed
    // into this one.
    for (const char* suffix : {"-wal", "-shm"}) std::remove((pathname + suffix).c_str());
    MoveIntoPlace(building, pathname);
  });
}

bool LogSchema::AddMissingFieldDefinitions(db::Database& log) {
  bool result = false;
  WithFailureTail(errorLog_, "VellumModule.AddMissingFieldDefinitions", [&] {
    const int n = FieldCount(log, "QSOs");
    if (n < static_cast<int>(kQSOFields.size())) {
      db::TableDef qsos = log.TableDefs()["QSOs"];
      // Only the last four fields are known to be missing from older logs. An ordinal below them
      // has no field to create: its slot in the scratch table is empty, and using it fails like
      // any other error, so such a log is never upgraded.
      for (int i = n; i < static_cast<int>(kQSOFields.size()); ++i) {
        if (i < kFirstUpgradeField)
          vb::Raise(91, "no field definition for QSOs field " + std::to_string(i));
        db::Field f = MakeField(qsos, kQSOUpgradeFields[i - kFirstUpgradeField]);
        try {
          qsos.Fields().Append(f);
        } catch (const vb::VbError&) {
          return;  // another process holds the log: false, and nothing in the error log
        }
      }
    }
    result = true;
  });
  return result;
}

void LogSchema::CreateProgressTable(db::Database& log) {
  db::TableDef progress = MakeTable(log, "Progress", kProgressFields);
  AppendIndex(progress, "CountryCode", "CountryCode", true);
  log.TableDefs().Append(progress);
  if (fillProgress_) fillProgress_(log);
}

void LogSchema::CreateQTHTable(db::Database& log) {
  log.TableDefs().Append(MakeTable(log, "QTHs", kQTHFields));
}

bool CreateQSLQueue(const std::string& path) {
  db::Database queue = db::DBEngine::Workspaces(0).CreateDatabase(path, db::dbLangGeneral);
  queue.TableDefs().Append(MakeTable(queue, "PrintQueue", kPrintQueueFields));
  queue.Close();
  return true;
}

bool QSLQueueSchema::UpdateQSLDatabaseSchema(db::Database& queue, db::Recordset& master) {
  const int count = master.Fields().Count();
  const int full = static_cast<int>(kPrintQueueFields.size());
  if (count >= full) return true;
  bool known = false;
  for (int c : kPrintQueueUpgradableCounts) known = known || c == count;
  if (!known) {
    desktop_.MsgBox("unknown QSL Queue field count: " + std::to_string(count), ui::vbOKOnly,
                    kApplicationTitle);
    if (disableQSLCommands_) disableQSLCommands_();
    queue.Close();
    return false;
  }
  master.Close();
  db::TableDef table = queue.TableDefs()["PrintQueue"];
  for (int i = count; i < full; ++i) table.Fields().Append(MakeField(table, kPrintQueueFields[i]));
  master = queue.OpenRecordset("PrintQueue", db::dbOpenDynaset);
  if (count == 17) {
    // Rows older than the ENABLED field were all meant to be printed.
    if (!(master.BOF() && master.EOF_())) {
      master.MoveFirst();
      while (!master.EOF_()) {
        master.Edit();
        master.Fields("ENABLED").SetValue(vb::Variant("Y"));
        master.Update();
        master.MoveNext();
      }
      master.MoveFirst();
    }
  }
  return true;
}

}  // namespace vellumar::logstore
