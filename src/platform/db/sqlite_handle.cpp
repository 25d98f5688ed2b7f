#include "platform/db/sqlite_handle.h"

#include "platform/vb/error.h"

namespace vellumar::db::detail {

void RaiseSqlite(sqlite3* db, int rc, const std::string& what, const std::string& path) {
  // Connections run with extended result codes, so rc is already the extended code.
  std::string message = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
  int extended = rc;
  switch (rc & 0xff) {
    case SQLITE_CONSTRAINT:
      if (extended == SQLITE_CONSTRAINT_UNIQUE || extended == SQLITE_CONSTRAINT_PRIMARYKEY) {
        throw vb::VbError(3022, vb::ErrorDescription(3022) + " (" + message + ")");
      }
      throw vb::VbError(
          3317, "One or more values are prohibited by the validation rule (" + message + ")");
    case SQLITE_READONLY:
      throw vb::VbError(3027, vb::ErrorDescription(3027) + " (" + what + ": " + message + ")");
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      throw vb::VbError(3260, "Couldn't update; currently locked by another process (" + what +
                                  ": " + message + ")");
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      throw vb::VbError(3049, "Can't open database '" + path +
                                  "'. It may not be a database that your application "
                                  "recognizes, or the file may be corrupt. (" +
                                  message + ")");
    case SQLITE_FULL:
      throw vb::VbError(3026, vb::ErrorDescription(3026) + " (" + what + ")");
    case SQLITE_IOERR:
      throw vb::VbError(3043, vb::ErrorDescription(3043) + " (" + what + ": " + message + ")");
    case SQLITE_CANTOPEN:
      throw vb::VbError(
          3051, "The database engine could not open the file '" + path + "' (" + message + ")");
    default:
      throw vb::VbError(3000, "Database engine error in " + what + ": " + message);
  }
}

Connection& Connection::operator=(Connection&& other) noexcept {
  if (this != &other) {
    Reset();
    db_ = other.db_;
    other.db_ = nullptr;
  }
  return *this;
}

void Connection::Reset() {
  if (db_) {
    sqlite3_close_v2(db_);
    db_ = nullptr;
  }
}

void Connection::Exec(const std::string& sql) const {
  char* err = nullptr;
  int rc = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &err);
  if (err) sqlite3_free(err);
  if (rc != SQLITE_OK) RaiseSqlite(db_, rc, sql);
}

Statement::Statement(sqlite3* db, const std::string& sql) : db_(db) {
  int rc = sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &stmt_, nullptr);
  if (rc != SQLITE_OK) {
    sqlite3_finalize(stmt_);
    stmt_ = nullptr;
    RaiseSqlite(db, rc, sql);
  }
}

Statement& Statement::operator=(Statement&& other) noexcept {
  if (this != &other) {
    sqlite3_finalize(stmt_);
    stmt_ = other.stmt_;
    db_ = other.db_;
    other.stmt_ = nullptr;
  }
  return *this;
}

Statement::~Statement() { sqlite3_finalize(stmt_); }

void Statement::Bind(int index, const SqlValue& value) {
  int rc = SQLITE_OK;
  if (std::holds_alternative<std::monostate>(value)) {
    rc = sqlite3_bind_null(stmt_, index);
  } else if (auto* i = std::get_if<int64_t>(&value)) {
    rc = sqlite3_bind_int64(stmt_, index, *i);
  } else if (auto* d = std::get_if<double>(&value)) {
    rc = sqlite3_bind_double(stmt_, index, *d);
  } else {
    const auto& s = std::get<std::string>(value);
    rc = sqlite3_bind_text(stmt_, index, s.data(), static_cast<int>(s.size()), SQLITE_TRANSIENT);
  }
  if (rc != SQLITE_OK) RaiseSqlite(db_, rc, "bind");
}

void Statement::BindInPlace(int index, const SqlValue& value) {
  if (const auto* s = std::get_if<std::string>(&value)) {
    if (sqlite3_bind_text(stmt_, index, s->data(), static_cast<int>(s->size()), SQLITE_STATIC) !=
        SQLITE_OK)
      RaiseSqlite(db_, sqlite3_errcode(db_), "bind");
  } else {
    Bind(index, value);
  }
}

void Statement::BindAll(const std::vector<SqlValue>& values, int first) {
  for (size_t i = 0; i < values.size(); ++i) Bind(first + static_cast<int>(i), values[i]);
}

bool Statement::Step() {
  int rc = sqlite3_step(stmt_);
  if (rc == SQLITE_ROW) return true;
  if (rc == SQLITE_DONE) return false;
  // Reset so the statement can be used again; the error message stays in the connection.
  std::string sql = sqlite3_sql(stmt_) ? sqlite3_sql(stmt_) : "";
  sqlite3_reset(stmt_);
  RaiseSqlite(db_, rc, sql);
}

void Statement::Run() {
  while (Step()) {
  }
}

void Statement::Reset() {
  if (stmt_) {
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
  }
}

SqlValue Statement::Column(int column) const {
  switch (sqlite3_column_type(stmt_, column)) {
    case SQLITE_NULL:
      return std::monostate{};
    case SQLITE_INTEGER:
      return static_cast<int64_t>(sqlite3_column_int64(stmt_, column));
    case SQLITE_FLOAT:
      return sqlite3_column_double(stmt_, column);
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt_, column));
      int n = sqlite3_column_bytes(stmt_, column);
      return std::string(text ? text : "", static_cast<size_t>(n));
    }
  }
}

std::string QuoteName(const std::string& name) {
  std::string out = "\"";
  for (char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
  return out;
}

}  // namespace vellumar::db::detail
