#pragma once
// RAII owners of SQLite handles, the value type the layer binds and reads, and the mapping of
// SQLite result codes to the engine's error numbers.
#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vellumar::db::detail {

// A value as SQLite stores it: NULL, integer, real or text.
using SqlValue = std::variant<std::monostate, int64_t, double, std::string>;

inline bool IsNull(const SqlValue& v) { return std::holds_alternative<std::monostate>(v); }

// Raises the VbError for a failed SQLite call: constraint violations are 3022, a read-only file
// 3027, a locked file 3260, a file that isn't a database or is corrupt 3049 (naming path), a
// full disk 3026 and any other failure of the disk 3043.
[[noreturn]] void RaiseSqlite(sqlite3* db, int rc, const std::string& what,
                              const std::string& path = {});

class Connection {
 public:
  Connection() = default;
  explicit Connection(sqlite3* db) : db_(db) {}
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  Connection(Connection&& other) noexcept : db_(other.db_) { other.db_ = nullptr; }
  Connection& operator=(Connection&& other) noexcept;
  ~Connection() { Reset(); }

  sqlite3* get() const { return db_; }
  void Reset();  // closes the handle (finalize the statements first)
  // Runs statements that return no rows; raises on failure.
  void Exec(const std::string& sql) const;

 private:
  sqlite3* db_ = nullptr;
};

class Statement {
 public:
  Statement() = default;
  Statement(sqlite3* db, const std::string& sql);  // raises on a prepare error
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  Statement(Statement&& other) noexcept : stmt_(other.stmt_), db_(other.db_) {
    other.stmt_ = nullptr;
  }
  Statement& operator=(Statement&& other) noexcept;
  ~Statement();

  sqlite3_stmt* get() const { return stmt_; }
  bool busy() const { return stmt_ && sqlite3_stmt_busy(stmt_); }

  void Bind(int index, const SqlValue& value);  // 1-based
  void BindAll(const std::vector<SqlValue>& values, int first = 1);
  // Binds without copying: the value must stay where it is until the statement is reset.
  void BindInPlace(int index, const SqlValue& value);
  // Steps once: true with a row, false when done; raises on error.
  bool Step();
  // Steps to the end of a statement that returns no rows.
  void Run();
  void Reset();  // reset and clear bindings

  int64_t Int(int column) const { return sqlite3_column_int64(stmt_, column); }
  SqlValue Column(int column) const;

 private:
  sqlite3_stmt* stmt_ = nullptr;
  sqlite3* db_ = nullptr;
};

// Resets a statement (and clears its bindings) when the scope ends, on every path.
class StatementReset {
 public:
  explicit StatementReset(Statement& s) : s_(s) {}
  StatementReset(const StatementReset&) = delete;
  StatementReset& operator=(const StatementReset&) = delete;
  ~StatementReset() { s_.Reset(); }

 private:
  Statement& s_;
};

// "name" quoted as an SQL identifier.
std::string QuoteName(const std::string& name);

}  // namespace vellumar::db::detail
