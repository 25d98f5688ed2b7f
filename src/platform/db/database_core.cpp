#include "platform/db/database_core.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "platform/db/jet_sql.h"
#include "platform/db/recordset_core.h"
#include "platform/vb/error.h"

namespace vellumar::db::detail {

namespace {

constexpr int kApplicationId = 0x56444231;  // "VDB1"
constexpr const char* kFormat = "1";

std::string NotADatabase(const std::string& path, const std::string& why) {
  return "Can't open database '" + path +
         "'. It may not be a database that your application recognizes, or the file may be "
         "corrupt (" +
         why + ").";
}

// Reads the first 100 bytes, SQLite's file header, and checks what a database file must have:
// the magic text, a valid page size, the fixed payload fractions, and a length in whole pages.
void CheckHeader(const std::string& path, off_t size) {
  if (size == 0) throw vb::VbError(3049, NotADatabase(path, "the file is empty"));
  unsigned char h[100] = {};
  std::ifstream in(path, std::ios::binary);
  in.read(reinterpret_cast<char*>(h), sizeof h);
  if (in.gcount() < 100 || std::memcmp(h, "SQLite format 3", 16) != 0) {
    throw vb::VbError(3049, NotADatabase(path, "no database header"));
  }
  unsigned pageSize = (h[16] << 8) | h[17];
  if (pageSize == 1) pageSize = 65536;
  bool powerOfTwo = pageSize >= 512 && pageSize <= 65536 && (pageSize & (pageSize - 1)) == 0;
  if (!powerOfTwo || h[21] != 64 || h[22] != 32 || h[23] != 32 || size % pageSize != 0) {
    throw vb::VbError(3049, NotADatabase(path, "damaged database header"));
  }
}

}  // namespace

DatabaseCore::DatabaseCore(std::string path, bool readOnly)
    : path_(std::move(path)), readOnly_(readOnly) {}

DatabaseCore::~DatabaseCore() { Close(); }

void DatabaseCore::CheckOpen() const {
  if (closed())
    throw vb::VbError(3420, "Object invalid or no longer set (the database is closed).");
}

void DatabaseCore::CheckWritable() const {
  CheckOpen();
  if (readOnly_) {
    throw vb::VbError(3027, "Cannot update. Database or object is read-only ('" + path_ + "').");
  }
}

std::shared_ptr<DatabaseCore> DatabaseCore::Create(const std::string& path,
                                                   const std::string& locale) {
  int fd = open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0666);
  if (fd < 0) {
    if (errno == EEXIST) throw vb::VbError(3204, "Database '" + path + "' already exists.");
    throw vb::VbError(3044, "'" + path + "' is not a valid path: " + std::strerror(errno));
  }
  close(fd);
  std::shared_ptr<DatabaseCore> core(new DatabaseCore(path, false));
  try {
    core->Connect();
    core->Exec("PRAGMA application_id = " + std::to_string(kApplicationId));
    core->EnsureMetadata();
    auto put = core->Prepare("INSERT OR REPLACE INTO vellumar_database(key, value) VALUES(?, ?)");
    put->BindAll({std::string("locale"), locale});
    put->Run();
    put->Reset();
    put->BindAll({std::string("format"), std::string(kFormat)});
    put->Run();
  } catch (...) {
    core->Close();
    unlink(path.c_str());
    throw;
  }
  return core;
}

std::shared_ptr<DatabaseCore> DatabaseCore::Open(const std::string& path, bool readOnly) {
  struct stat st {};
  if (stat(path.c_str(), &st) != 0) {
    throw vb::VbError(3024, "Could not find file '" + path + "'.");
  }
  if (!S_ISREG(st.st_mode)) throw vb::VbError(3049, NotADatabase(path, "not a regular file"));
  CheckHeader(path, st.st_size);
  // Without write permission the file opens read-only; root passes access(), so the mode bits
  // decide as well.
  bool writable = access(path.c_str(), W_OK) == 0 && (st.st_mode & 0222) != 0;
  std::shared_ptr<DatabaseCore> core(new DatabaseCore(path, readOnly || !writable));
  // SQLite may make the log's companion files before it finds the file damaged; a refused file
  // is left as it was found, without them.
  bool hadWal = access((path + "-wal").c_str(), F_OK) == 0;
  bool hadShm = access((path + "-shm").c_str(), F_OK) == 0;
  try {
    core->Connect();
  } catch (const vb::VbError& e) {
    if (e.number() == 3049) {
      if (!hadWal) unlink((path + "-wal").c_str());
      if (!hadShm) unlink((path + "-shm").c_str());
    }
    throw;
  }
  return core;
}

void DatabaseCore::Connect() {
  lock_ = std::make_unique<AdvisoryLock>(path_);
  sqlite3* db = nullptr;
  int flags = (readOnly_ ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) | SQLITE_OPEN_NOMUTEX;
  int rc = sqlite3_open_v2(path_.c_str(), &db, flags, nullptr);
  conn_ = Connection(db);
  if (rc != SQLITE_OK) {
    std::string message = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    Close();
    // A failing disk is the disk's error (3043, 3026), not a file that isn't a database.
    if ((rc & 0xff) == SQLITE_IOERR || (rc & 0xff) == SQLITE_FULL) {
      RaiseSqlite(nullptr, rc, "open " + path_, path_);
    }
    throw vb::VbError(3049, NotADatabase(path_, message));
  }
  sqlite3_extended_result_codes(db, 1);
  sqlite3_busy_timeout(db, 5000);
  jet::RegisterFunctions(db);
  try {
    // Reading the schema is the first touch of the file's pages: a file that isn't a database
    // fails here, before anything is written.
    Exec("SELECT count(*) FROM sqlite_master");
    if (readOnly_) {
      Exec("PRAGMA query_only = 1");
    } else {
      // Every commit is in the write-ahead log before it returns; synchronous = NORMAL syncs
      // the log at checkpoints, which a killed process doesn't need. Checkpoints are made rarer
      // than SQLite's default (1000 pages) because each one syncs the disk, which dominates
      // a walk of one-row commits; the log is cut back to a modest size after each.
      Exec("PRAGMA journal_mode = WAL");
      Exec("PRAGMA synchronous = NORMAL");
      Exec("PRAGMA wal_autocheckpoint = 8192");
      Exec("PRAGMA journal_size_limit = 67108864");
    }
    Exec("PRAGMA foreign_keys = OFF");
  } catch (const vb::VbError& e) {
    Close();
    if (e.number() == 3049 || e.number() == 3000) {
      throw vb::VbError(3049, NotADatabase(path_, e.description()));
    }
    throw;
  }
}

void DatabaseCore::Close() {
  for (auto& weak : recordsets_) {
    if (auto rs = weak.lock()) rs->Detach();
  }
  recordsets_.clear();
  statements_.clear();
  dataVersionStatement_ = Statement();
  walIndex_ = nullptr;  // unmapped when the connection closes
  walIndexSought_ = false;
  criteria_.clear();
  schemas_.clear();
  conn_.Reset();
  lock_.reset();
}

void DatabaseCore::Track(const std::shared_ptr<RecordsetCore>& recordset) {
  std::erase_if(recordsets_, [](const auto& w) { return w.expired(); });
  recordsets_.push_back(recordset);
}

CachedStatement DatabaseCore::Prepare(const std::string& sql) {
  CheckOpen();
  auto it = statements_.find(sql);
  if (it == statements_.end()) {
    it = statements_.emplace(sql, std::make_unique<Statement>(conn_.get(), sql)).first;
  }
  if (it->second->busy()) {
    return CachedStatement(nullptr, std::make_unique<Statement>(conn_.get(), sql));
  }
  return CachedStatement(it->second.get(), nullptr);
}

ReadTransaction::ReadTransaction(DatabaseCore& db) : db_(db) {
  if (!sqlite3_get_autocommit(db_.handle())) return;
  auto begin = db_.Prepare("BEGIN");
  begin->Run();
  began_ = true;
}

ReadTransaction::~ReadTransaction() {
  if (!began_ || db_.closed()) return;
  // Ending a transaction that only read writes nothing and can't fail for want of a lock.
  try {
    auto commit = db_.Prepare("COMMIT");
    commit->Run();
  } catch (const vb::VbError&) {
    sqlite3_exec(db_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
  }
}

int64_t DatabaseCore::FileVersion() {
  CheckOpen();
  // Asked at every move of a walk: its statement is kept apart from the cache's lookup by text.
  if (!dataVersionStatement_.get()) {
    dataVersionStatement_ = Statement(conn_.get(), "PRAGMA data_version");
  }
  StatementReset reset(dataVersionStatement_);
  dataVersionStatement_.Step();
  return dataVersionStatement_.Int(0);
}

const volatile unsigned char* DatabaseCore::WalIndex() {
  if (walIndexSought_) return walIndex_;
  // Sought once a read has opened the log: the index is SQLite's own mapping, reached through the
  // file's shared-memory method, never created or grown here.
  walIndexSought_ = true;
  {
    auto mode = Prepare("PRAGMA journal_mode");
    if (!mode->Step() ||
        sqlite3_stricmp(reinterpret_cast<const char*>(sqlite3_column_text(mode->get(), 0)),
                        "wal") != 0)
      return nullptr;
  }
  sqlite3_file* file = nullptr;
  if (sqlite3_file_control(conn_.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
      !file || !file->pMethods || file->pMethods->iVersion < 2 || !file->pMethods->xShmMap)
    return nullptr;
  void volatile* region = nullptr;
  if (file->pMethods->xShmMap(file, 0, 32768, 0, &region) != SQLITE_OK || !region) return nullptr;
  walIndex_ = static_cast<const volatile unsigned char*>(region);
  return walIndex_;
}

FileStamp DatabaseCore::StampFile(bool headerVouches) {
  CheckOpen();
  FileStamp stamp;
  stamp.taken = true;
  // Inside a transaction of the caller's the rows may come from a snapshot older than the
  // header: the data version of that snapshot is taken instead.
  const volatile uint64_t* index =
      headerVouches ? reinterpret_cast<const volatile uint64_t*>(walIndex_) : nullptr;
  if (index) {
    for (size_t i = 0; i < stamp.header.size(); ++i) stamp.header[i] = index[i];
    stamp.fromHeader = true;
  } else {
    stamp.dataVersion = FileVersion();
  }
  return stamp;
}

bool DatabaseCore::FileChangedSince(const FileStamp& stamp) {
  if (!stamp.taken) return true;
  if (!stamp.fromHeader) return FileVersion() != stamp.dataVersion;
  // A commit rewrites both copies (the second first); a header caught in the middle of a write
  // differs and counts as a change. In a transaction of the caller's the header says nothing
  // of its snapshot: the rows are read again.
  if (!sqlite3_get_autocommit(conn_.get()) || walIndex_ == nullptr) return true;
  const auto* index = reinterpret_cast<const volatile uint64_t*>(walIndex_);
  for (size_t i = 0; i < stamp.header.size(); ++i)
    if (index[i] != stamp.header[i]) return true;
  return false;
}

void DatabaseCore::Exec(const std::string& sql) {
  CheckOpen();
  conn_.Exec(sql);
}

template <typename Body>
void DatabaseCore::InTransaction(Body body) {
  Exec("BEGIN IMMEDIATE");
  // Schema changes count as writes: rows cached by recordsets are read again.
  ++dataVersion_;
  try {
    body();
    Exec("COMMIT");
  } catch (...) {
    sqlite3_exec(conn_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

void DatabaseCore::EnsureMetadata() {
  if (metadataReady_) return;
  {
    auto q = Prepare(
        "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name IN "
        "('vellumar_database', 'vellumar_field', 'vellumar_index')");
    q->Step();
    metadataReady_ = q->Int(0) == 3;
  }
  if (metadataReady_ || readOnly_) return;
  conn_.Exec(
      "CREATE TABLE IF NOT EXISTS vellumar_database("
      "  key TEXT PRIMARY KEY COLLATE NOCASE,"
      "  value TEXT);"
      "CREATE TABLE IF NOT EXISTS vellumar_field("
      "  table_name TEXT NOT NULL COLLATE NOCASE,"
      "  field_name TEXT NOT NULL COLLATE NOCASE,"
      "  attributes INTEGER NOT NULL,"
      "  allow_zero_length BOOLEAN NOT NULL,"
      "  required BOOLEAN NOT NULL,"
      "  PRIMARY KEY(table_name, field_name));"
      "CREATE TABLE IF NOT EXISTS vellumar_index("
      "  table_name TEXT NOT NULL COLLATE NOCASE,"
      "  index_name TEXT NOT NULL COLLATE NOCASE,"
      "  sqlite_name TEXT NOT NULL COLLATE NOCASE,"
      "  is_primary BOOLEAN NOT NULL,"
      "  PRIMARY KEY(table_name, index_name));");
  metadataReady_ = true;
  ++dataVersion_;
}

void DatabaseCore::CheckSchemaVersion() {
  auto q = Prepare("PRAGMA schema_version");
  q->Step();
  int64_t v = q->Int(0);
  if (v != schemaVersion_) {
    schemaVersion_ = v;
    schemas_.clear();
    criteria_.clear();
    metadataReady_ = false;
  }
}

bool DatabaseCore::HasTable(const std::string& table) {
  CheckOpen();
  auto q = Prepare("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE");
  q->Bind(1, table);
  return q->Step();
}

std::vector<std::string> DatabaseCore::TableNames() {
  CheckOpen();
  std::vector<std::string> names;
  auto q = Prepare(
      "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite!_%' "
      "ESCAPE '!' AND name NOT IN ('vellumar_database', 'vellumar_field', 'vellumar_index') "
      "ORDER BY rowid");
  while (q->Step()) names.push_back(std::get<std::string>(q->Column(0)));
  return names;
}

std::shared_ptr<const TableSchema> DatabaseCore::Schema(const std::string& table) {
  CheckOpen();
  CheckSchemaVersion();
  auto key = Lower(table);
  auto it = schemas_.find(key);
  if (it != schemas_.end()) return it->second;
  auto schema = LoadSchema(table);
  schemas_.emplace(key, schema);
  return schema;
}

std::shared_ptr<TableSchema> DatabaseCore::LoadSchema(const std::string& table) {
  auto schema = std::make_shared<TableSchema>();
  {
    auto q =
        Prepare("SELECT name FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE");
    q->Bind(1, table);
    if (!q->Step()) {
      throw vb::VbError(
          3078, "The database engine cannot find the input table or query '" + table + "'.");
    }
    schema->name = std::get<std::string>(q->Column(0));
  }
  {
    auto q = Prepare("SELECT name, type FROM pragma_table_info(?) ORDER BY cid");
    q->Bind(1, schema->name);
    while (q->Step()) {
      ColumnInfo c;
      c.name = std::get<std::string>(q->Column(0));
      auto declared = q->Column(1);
      ParseDeclaredType(IsNull(declared) ? "" : std::get<std::string>(declared), c.type, c.size);
      c.attributes = DefaultAttributes(c.type);
      schema->columns.push_back(c);
    }
  }
  schema->BuildLookup();
  EnsureMetadata();
  if (metadataReady_) {
    auto q = Prepare(
        "SELECT field_name, attributes, allow_zero_length, required FROM vellumar_field "
        "WHERE table_name = ?");
    q->Bind(1, schema->name);
    while (q->Step()) {
      int ordinal = schema->Find(std::get<std::string>(q->Column(0)));
      if (ordinal < 0) continue;
      auto& c = schema->columns[static_cast<size_t>(ordinal)];
      c.attributes = static_cast<long>(q->Int(1));
      c.allowZeroLength = q->Int(2) != 0;
      c.required = q->Int(3) != 0;
    }
  }
  // Indexes in the order they were made.
  std::vector<std::pair<std::string, bool>> sqliteIndexes;
  {
    auto q = Prepare(
        "SELECT m.name, l.\"unique\" FROM sqlite_master m JOIN pragma_index_list(?) l "
        "ON l.name = m.name WHERE m.type = 'index' AND l.origin = 'c' ORDER BY m.rowid");
    q->Bind(1, schema->name);
    while (q->Step()) {
      sqliteIndexes.emplace_back(std::get<std::string>(q->Column(0)), q->Int(1) != 0);
    }
  }
  for (const auto& [sqliteName, unique] : sqliteIndexes) {
    IndexInfo index;
    index.sqliteName = sqliteName;
    index.unique = unique;
    index.name = sqliteName;
    std::string prefix = schema->name + ".";
    if (sqliteName.size() > prefix.size() &&
        EqualsNoCase(sqliteName.substr(0, prefix.size()), prefix)) {
      index.name = sqliteName.substr(prefix.size());
    }
    if (metadataReady_) {
      auto q = Prepare("SELECT index_name, is_primary FROM vellumar_index WHERE sqlite_name = ?");
      q->Bind(1, sqliteName);
      if (q->Step()) {
        index.name = std::get<std::string>(q->Column(0));
        index.primary = q->Int(1) != 0;
      }
    }
    auto q = Prepare("SELECT name FROM pragma_index_info(?) ORDER BY seqno");
    q->Bind(1, sqliteName);
    while (q->Step()) {
      auto name = q->Column(0);
      if (!IsNull(name)) index.fields.push_back(std::get<std::string>(name));
    }
    schema->indexes.push_back(std::move(index));
  }
  return schema;
}

void DatabaseCore::WriteFieldMeta(const std::string& table, const ColumnInfo& column) {
  CheckWritable();
  EnsureMetadata();
  auto q = Prepare(
      "INSERT OR REPLACE INTO vellumar_field(table_name, field_name, attributes, "
      "allow_zero_length, required) VALUES(?, ?, ?, ?, ?)");
  q->BindAll({table, column.name, static_cast<int64_t>(column.attributes),
              static_cast<int64_t>(column.allowZeroLength ? 1 : 0),
              static_cast<int64_t>(column.required ? 1 : 0)});
  q->Run();
  schemas_.erase(Lower(table));
  criteria_.clear();
}

void DatabaseCore::InsertIndex(const std::string& table, const IndexInfo& index) {
  std::string sql =
      std::string(index.unique || index.primary ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
      QuoteName(index.sqliteName) + " ON " + QuoteName(table) + "(";
  for (size_t i = 0; i < index.fields.size(); ++i) {
    if (i) sql += ", ";
    sql += QuoteName(index.fields[i]);
  }
  sql += ")";
  Exec(sql);
  auto q = Prepare(
      "INSERT OR REPLACE INTO vellumar_index(table_name, index_name, sqlite_name, is_primary) "
      "VALUES(?, ?, ?, ?)");
  q->BindAll({table, index.name, index.sqliteName, static_cast<int64_t>(index.primary ? 1 : 0)});
  q->Run();
}

void DatabaseCore::CreateTable(const TableSchema& table) {
  CheckWritable();
  EnsureMetadata();
  InTransaction([&] {
    std::string sql = "CREATE TABLE " + QuoteName(table.name) + "(";
    for (size_t i = 0; i < table.columns.size(); ++i) {
      if (i) sql += ", ";
      sql += QuoteName(table.columns[i].name) + " " + ColumnDeclaration(table.columns[i]);
    }
    sql += ")";
    Exec(sql);
    for (const auto& c : table.columns) WriteFieldMeta(table.name, c);
    for (const auto& index : table.indexes) InsertIndex(table.name, index);
  });
  schemas_.erase(Lower(table.name));
}

void DatabaseCore::AddColumn(const std::string& table, const ColumnInfo& column) {
  CheckWritable();
  EnsureMetadata();
  auto exclusive = lock_->TakeExclusive(table);
  InTransaction([&] {
    Exec("ALTER TABLE " + QuoteName(table) + " ADD COLUMN " + QuoteName(column.name) + " " +
         ColumnDeclaration(column));
    WriteFieldMeta(table, column);
  });
  schemas_.erase(Lower(table));
  criteria_.clear();
}

void DatabaseCore::AddIndex(const std::string& table, const IndexInfo& index) {
  CheckWritable();
  EnsureMetadata();
  auto exclusive = lock_->TakeExclusive(table);
  InTransaction([&] { InsertIndex(table, index); });
  schemas_.erase(Lower(table));
}

void DatabaseCore::DropTable(const std::string& table) {
  CheckWritable();
  EnsureMetadata();
  auto exclusive = lock_->TakeExclusive(table);
  InTransaction([&] {
    Exec("DROP TABLE " + QuoteName(table));
    auto f = Prepare("DELETE FROM vellumar_field WHERE table_name = ?");
    f->Bind(1, table);
    f->Run();
    auto i = Prepare("DELETE FROM vellumar_index WHERE table_name = ?");
    i->Bind(1, table);
    i->Run();
  });
  schemas_.erase(Lower(table));
  criteria_.clear();
}

const jet::SqlCondition& DatabaseCore::Criteria(const TableSchema& table,
                                                const std::string& criteria) {
  std::string key = Lower(table.name) + '\n' + criteria;
  if (const jet::SqlCondition* cached = criteria_.Find(key)) return *cached;
  return criteria_.Add(std::move(key), jet::TranslateCriteria(criteria, table));
}

}  // namespace vellumar::db::detail
