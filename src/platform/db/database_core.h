#pragma once
// The shared state behind a Database handle: the SQLite connection, the advisory lock, the
// statement cache and the schema cache.
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/db/advisory_lock.h"
#include "platform/db/jet_sql.h"
#include "platform/db/schema.h"
#include "platform/db/sqlite_handle.h"

namespace vellumar::db::detail {

class RecordsetCore;

// A statement from the cache for one use: reset, with its bindings cleared, when it goes out of
// scope. When the cached statement is in use further up the stack a fresh one is prepared.
class CachedStatement {
 public:
  CachedStatement(Statement* cached, std::unique_ptr<Statement> owned)
      : stmt_(owned ? owned.get() : cached), owned_(std::move(owned)) {}
  CachedStatement(const CachedStatement&) = delete;
  CachedStatement& operator=(const CachedStatement&) = delete;
  ~CachedStatement() { stmt_->Reset(); }
  Statement& operator*() { return *stmt_; }
  Statement* operator->() { return stmt_; }

 private:
  Statement* stmt_;
  std::unique_ptr<Statement> owned_;
};

// Translated criteria by "table\ncriteria", in two generations: when the newer one is full it
// becomes the older and the oldest goes, and a hit in the older moves back into the newer. So
// criteria asked for again and again (a find per QSO over a few hundred entities) outlive a
// stream of one-off ones (a duplicate search per QSO).
class CriteriaCache {
 public:
  static constexpr size_t kGeneration = 512;
  const jet::SqlCondition* Find(const std::string& key) {
    if (auto it = current_.find(key); it != current_.end()) return &it->second;
    auto node = previous_.extract(key);
    if (node.empty()) return nullptr;
    Rotate();
    return &current_.insert(std::move(node)).position->second;
  }
  const jet::SqlCondition& Add(std::string key, jet::SqlCondition condition) {
    Rotate();
    return current_.insert_or_assign(std::move(key), std::move(condition)).first->second;
  }
  void clear() {
    current_.clear();
    previous_.clear();
  }

 private:
  void Rotate() {
    if (current_.size() < kGeneration) return;
    previous_ = std::move(current_);
    current_.clear();
  }
  std::unordered_map<std::string, jet::SqlCondition> current_, previous_;
};

class DatabaseCore;

// What tells whether another connection has committed to the file since a moment: the two
// copies of the write-ahead log's index header as they stood (every commit rewrites them, and a
// read of them costs no system call), or, where the file has no such index or a transaction
// was open, PRAGMA data_version.
struct FileStamp {
  bool taken = false;       // false: no moment recorded; the file counts as changed
  bool fromHeader = false;  // header holds the index header; else dataVersion counts
  int64_t dataVersion = -1;
  // The 96 bytes read as words: the index is mapped at a page boundary, and a walk checks it
  // at every move.
  std::array<uint64_t, 12> header{};
};

// A read transaction around the few statements of one call, so that they see one state of the
// file and lock it once; it ends with the scope and is never held beyond the call. Nothing is
// done when a transaction is already open on the connection.
class ReadTransaction {
 public:
  explicit ReadTransaction(DatabaseCore& db);
  ReadTransaction(const ReadTransaction&) = delete;
  ReadTransaction& operator=(const ReadTransaction&) = delete;
  ~ReadTransaction();

 private:
  DatabaseCore& db_;
  bool began_ = false;
};

class DatabaseCore : public std::enable_shared_from_this<DatabaseCore> {
 public:
  static std::shared_ptr<DatabaseCore> Create(const std::string& path, const std::string& locale);
  static std::shared_ptr<DatabaseCore> Open(const std::string& path, bool readOnly);
  DatabaseCore(const DatabaseCore&) = delete;
  DatabaseCore& operator=(const DatabaseCore&) = delete;
  ~DatabaseCore();

  const std::string& path() const { return path_; }
  bool readOnly() const { return readOnly_; }
  bool closed() const { return !conn_.get(); }
  void CheckOpen() const;      // 3420 once closed
  void CheckWritable() const;  // 3027 on a read-only database
  sqlite3* handle() const { return conn_.get(); }

  CachedStatement Prepare(const std::string& sql);
  void Exec(const std::string& sql);

  // Tables. Schema() raises 3078 for an unknown table; it re-reads the file's schema when another
  // connection has changed it.
  std::shared_ptr<const TableSchema> Schema(const std::string& table);
  bool HasTable(const std::string& table);
  std::vector<std::string> TableNames();
  void CreateTable(const TableSchema& table);
  void AddColumn(const std::string& table, const ColumnInfo& column);  // exclusive lock
  void AddIndex(const std::string& table, const IndexInfo& index);     // exclusive lock
  void DropTable(const std::string& table);                            // exclusive lock
  void WriteFieldMeta(const std::string& table, const ColumnInfo& column);

  // Criteria translated for a table, cached by their text.
  const jet::SqlCondition& Criteria(const TableSchema& table, const std::string& criteria);

  // Rises with every write made through this database, so that row caches know to re-read.
  uint64_t dataVersion() const { return dataVersion_; }
  void DataChanged() { ++dataVersion_; }

  // The highest rowid of a table that a key set of this database has held or a row added here
  // has taken. A new row takes one above it: SQLite would give a deleted last row's rowid to the
  // next row, and a key set still holding the old one would take the new row for it.
  int64_t RowidHighWater(const std::string& table) const {
    auto it = rowidHighWater_.find(table);
    return it == rowidHighWater_.end() ? 0 : it->second;
  }
  void RaiseRowidHighWater(const std::string& table, int64_t rowid) {
    int64_t& high = rowidHighWater_[table];
    if (rowid > high) high = rowid;
  }
  // The file's version as this connection sees it (PRAGMA data_version): it moves when another
  // connection, in this process or another, commits a change, and not for this connection's own
  // writes, which dataVersion() counts. Reading it takes one read transaction.
  int64_t FileVersion();
  // The file as it stands, to be taken before the rows it vouches for are read (in the read
  // transaction that reads them, before its first read), and whether another connection may
  // have committed since. A commit by this connection may also count as a change.
  // headerVouches: the header may stand for the rows, true only when no transaction was open
  // before the one that reads them began (see WalIndexReady).
  FileStamp StampFile(bool headerVouches);
  // Whether the file has a write-ahead log index to stamp by; looked for at the first call,
  // which must come outside a transaction.
  bool WalIndexReady() { return WalIndex() != nullptr; }
  bool FileChangedSince(const FileStamp& stamp);

  void Track(const std::shared_ptr<RecordsetCore>& recordset);
  void Close();

 private:
  DatabaseCore(std::string path, bool readOnly);
  void Connect();
  void EnsureMetadata();
  void CheckSchemaVersion();
  std::shared_ptr<TableSchema> LoadSchema(const std::string& table);
  void InsertIndex(const std::string& table, const IndexInfo& index);
  // Runs body inside BEGIN IMMEDIATE ... COMMIT, rolling back when it throws.
  template <typename Body>
  void InTransaction(Body body);

  std::string path_;
  bool readOnly_ = false;
  std::unique_ptr<AdvisoryLock> lock_;
  std::unordered_map<std::string, std::unique_ptr<Statement>> statements_;  // before conn_ dies
  Statement dataVersionStatement_;  // PRAGMA data_version, prepared at its first use
  // The write-ahead log's index as SQLite maps it for this connection (its first region, which
  // begins with the two header copies); null until looked for, or where there is none.
  const volatile unsigned char* walIndex_ = nullptr;
  std::unordered_map<std::string, int64_t> rowidHighWater_;  // by table name as the schema has it
  bool walIndexSought_ = false;
  const volatile unsigned char* WalIndex();
  Connection conn_;
  bool metadataReady_ = false;
  int64_t schemaVersion_ = -1;
  std::unordered_map<std::string, std::shared_ptr<TableSchema>> schemas_;  // by lower-case name
  CriteriaCache criteria_;  // "table\ncriteria" -> SQL
  uint64_t dataVersion_ = 0;
  std::vector<std::weak_ptr<RecordsetCore>> recordsets_;
};

}  // namespace vellumar::db::detail
