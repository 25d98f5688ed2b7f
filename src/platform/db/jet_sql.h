#pragma once
// Translation of Jet criteria and sorts to SQLite SQL over one table. Every literal becomes a
// bound parameter; field names are checked against the table and quoted.
#include <string>
#include <vector>

#include "platform/db/schema.h"
#include "platform/db/sqlite_handle.h"

namespace vellumar::db::jet {

struct SqlCondition {
  std::string sql;                       // a boolean SQL expression with ? parameters
  std::vector<detail::SqlValue> params;  // in the order of the ?s
  bool empty() const { return sql.empty(); }
};

// Criteria to an SQL condition. Unknown fields, syntax errors, bad dates and patterns raise 3075
// with a description naming the place. Booleans are -1 and 0 as stored; a date literal compared
// with a date field binds the stored text form.
SqlCondition TranslateCriteria(const std::string& criteria, const detail::TableSchema& table);

// A sort to an ORDER BY list without the keyword ("\"Call\" DESC, \"QSO_Begin\""); empty for an
// empty sort. Unknown fields raise 3075.
std::string TranslateSort(const std::string& sort, const detail::TableSchema& table);

// Registers the functions the translation calls (vellumar_like, vellumar_concat) on a connection.
void RegisterFunctions(sqlite3* db);

// Both together: "(a) AND (b)" of two conditions, either of which may be empty.
SqlCondition Conjoin(const SqlCondition& a, const SqlCondition& b);

}  // namespace vellumar::db::jet
