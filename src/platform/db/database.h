#pragma once
// The record layer: Workspace, Database, and through them TableDefs and Recordsets, over an
// SQLite 3 file.
//
// File format. A database is an ordinary SQLite 3 file (WAL journal, application_id 0x56444231
// "VDB1"), readable by any SQLite tool:
// - Each table is an SQLite table of the same name whose columns are the fields in field order.
//   The declared type carries the field's type and size:
//     dbText     VARCHAR(n) COLLATE NOCASE     dbMemo    TEXT COLLATE NOCASE
//     dbBoolean  BOOLEAN  (-1 true, 0 false)   dbByte    TINYINT
//     dbInteger  SMALLINT                      dbLong    INTEGER
//     dbSingle   REAL                          dbDouble  DOUBLE
//     dbDate     DATETIME, stored as the text "YYYY-MM-DD HH:MM:SS", so that SQL's order of the
//                text is the order of the dates
//   Text compares and sorts without regard to case (SQLite's NOCASE: ASCII letters).
// - Each index is an SQLite index named "<table>.<index>" with the same columns; a primary index
//   is a unique index marked primary in the metadata below.
// - What SQLite doesn't hold lives in three tables of the layer's own, hidden from TableDefs:
//     vellumar_database(key PRIMARY KEY, value)          "locale", "format"
//     vellumar_field(table_name, field_name, attributes, allow_zero_length, required)
//     vellumar_index(table_name, index_name, sqlite_name, is_primary)
//   A field or index without a metadata row reads with defaults (attributes by type,
//   AllowZeroLength false, not required, not primary), so files made by other tools open too.
//
// Every Update, AddNew's Update, Delete and schema change is committed before it returns: it is
// in the write-ahead log, which survives the process being killed (synchronous = NORMAL syncs
// the disk at checkpoints, every 8192 pages of log).
//
// Concurrency. Every open Database holds a shared advisory lock (flock) on the file; schema
// changes on existing tables (adding a field or an index, deleting a table) take it exclusive
// for their duration and fail with 3211 while another process holds the file open. The lock
// belongs to the process: two Databases of one process on one file share it.
#include <memory>
#include <string>

#include "platform/db/dao_constants.h"
#include "platform/db/recordset.h"
#include "platform/db/tabledef.h"

namespace vellumar::db {

namespace detail {
class DatabaseCore;
}

class Database {
 public:
  Database() = default;  // a reference to nothing; any use raises 91

  std::string Name() const;  // the pathname it was opened with
  bool Updatable() const;    // false when opened read-only
  TableDef CreateTableDef(const std::string& name);
  db::TableDefs TableDefs() const;
  // A recordset of a table: dbOpenTable or dbOpenDynaset (3251 for other types, 3078 for an
  // unknown table).
  Recordset OpenRecordset(const std::string& name, int type = dbOpenTable);
  // Grouped writes, for long walks. Between BeginTrans and CommitTrans the writes of every
  // recordset of this database reach the file together at CommitTrans (a failing Update inside
  // still fails alone and leaves the others standing); Rollback drops them, after which the
  // recordsets that added rows must be requeried. BeginTrans while one is open raises 3033,
  // CommitTrans or Rollback with none open 3034. A refused commit raises the disk's error and
  // leaves the transaction open for Rollback. Close with a transaction open rolls it back.
  void BeginTrans();
  void CommitTrans();
  void Rollback();
  bool InTransaction() const;
  // Rows changed through this database since it was opened: a long walk tells by it whether
  // another event wrote while it yielded.
  long long TotalChanges() const;
  // Closes the recordsets opened from it, the file and the lock. Later use raises 3420.
  void Close();

  explicit operator bool() const { return core_ != nullptr; }

 private:
  friend class Workspace;
  explicit Database(std::shared_ptr<detail::DatabaseCore> core) : core_(std::move(core)) {}
  detail::DatabaseCore& core() const;
  std::shared_ptr<detail::DatabaseCore> core_;
};

class Workspace {
 public:
  // Creates a new, empty database file; 3204 when the file exists. The locale is kept in the
  // file; text always compares without regard to case.
  Database CreateDatabase(const std::string& name, const std::string& locale = dbLangGeneral);
  // Opens a database shared. A missing file raises 3024; a file that isn't a database (or is
  // corrupt) raises 3049 naming the path and is left untouched. A file that can't be written
  // (no write permission) opens read-only, as does readOnly; writes then raise 3027.
  Database OpenDatabase(const std::string& name, bool readOnly = false);
};

// DBEngine.Workspaces(0): the default workspace. Workspaces hold no state of their own.
struct DBEngine {
  static Workspace Workspaces(int index = 0);
};

}  // namespace vellumar::db
