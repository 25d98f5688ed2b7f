#include "platform/db/database.h"

#include "platform/db/database_core.h"
#include "platform/db/recordset_core.h"
#include "platform/vb/error.h"

#include <sqlite3.h>

namespace vellumar::db {

namespace detail {
TableDef MakeTableDef(const std::string& name);
db::TableDefs MakeTableDefs(const std::shared_ptr<DatabaseCore>& db);
}  // namespace detail

detail::DatabaseCore& Database::core() const {
  if (!core_) throw vb::VbError(91, "Object variable or With block variable not set");
  core_->CheckOpen();
  return *core_;
}

std::string Database::Name() const {
  if (!core_) throw vb::VbError(91, "Object variable or With block variable not set");
  return core_->path();
}

bool Database::Updatable() const { return !core().readOnly(); }

TableDef Database::CreateTableDef(const std::string& name) {
  core();
  return detail::MakeTableDef(name);
}

db::TableDefs Database::TableDefs() const {
  core();
  return detail::MakeTableDefs(core_);
}

Recordset Database::OpenRecordset(const std::string& name, int type) {
  auto& c = core();
  if (type != dbOpenTable && type != dbOpenDynaset) {
    throw vb::VbError(3251, "Operation is not supported for this type of object (recordset type " +
                                std::to_string(type) + "; tables and dynasets are supported).");
  }
  auto schema = c.Schema(name);
  return detail::RecordsetCore::Open(core_, schema, type, {}, {});
}

void Database::BeginTrans() {
  auto& c = core();
  c.CheckWritable();
  if (!sqlite3_get_autocommit(c.handle())) {
    throw vb::VbError(3033, "A transaction is already open on this database.");
  }
  c.Exec("BEGIN IMMEDIATE");
}

// Ends the transaction in hand with the statement; 3034 when none was begun.
static void EndTransaction(detail::DatabaseCore& c, const char* statement) {
  if (sqlite3_get_autocommit(c.handle())) {
    throw vb::VbError(3034, "You tried to commit or rollback a transaction without first "
                            "beginning a transaction.");
  }
  c.Exec(statement);
}

void Database::CommitTrans() { EndTransaction(core(), "COMMIT"); }

void Database::Rollback() {
  auto& c = core();
  EndTransaction(c, "ROLLBACK");
  c.DataChanged();  // rows cached by recordsets may be gone
}

bool Database::InTransaction() const { return !sqlite3_get_autocommit(core().handle()); }

long long Database::TotalChanges() const { return sqlite3_total_changes64(core().handle()); }

void Database::Close() {
  if (!core_) throw vb::VbError(91, "Object variable or With block variable not set");
  core_->Close();
}

Database Workspace::CreateDatabase(const std::string& name, const std::string& locale) {
  return Database(detail::DatabaseCore::Create(name, locale));
}

Database Workspace::OpenDatabase(const std::string& name, bool readOnly) {
  return Database(detail::DatabaseCore::Open(name, readOnly));
}

Workspace DBEngine::Workspaces(int index) {
  if (index != 0)
    throw vb::VbError(
        3265, "Item not found in this collection (workspace " + std::to_string(index) + ").");
  return Workspace();
}

}  // namespace vellumar::db
