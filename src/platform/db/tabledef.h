#pragma once
// TableDef and the TableDefs collection of a Database: the definition of a table, built with
// CreateField and CreateIndex and made real by TableDefs.Append.
#include <memory>
#include <string>

#include "platform/db/field.h"
#include "platform/db/index.h"

namespace vellumar::db {

namespace detail {
struct TableDefState;
struct TableDefAccess;
class TableDefsOwner;
}  // namespace detail

class TableDef {
 public:
  TableDef() = default;

  std::string Name() const;
  // A column definition; size counts characters for dbText (255 at most, 50 when 0) and is
  // ignored for the other types. Append it to Fields().
  Field CreateField(const std::string& name, int type, long size = 0);
  db::Fields Fields() const;
  Index CreateIndex(const std::string& name);
  db::Indexes Indexes() const;

  explicit operator bool() const { return state_ != nullptr; }

 private:
  friend struct detail::TableDefAccess;
  explicit TableDef(std::shared_ptr<detail::TableDefState> state) : state_(std::move(state)) {}
  std::shared_ptr<detail::TableDefState> state_;
};

class TableDefs {
 public:
  TableDefs() = default;

  int Count() const;  // the program's tables; the file's own bookkeeping tables are not listed
  TableDef Item(int index) const;                // 3265 when out of range
  TableDef Item(const std::string& name) const;  // case-blind; 3265 when absent
  TableDef operator[](int index) const { return Item(index); }
  TableDef operator[](const std::string& name) const { return Item(name); }
  // Creates the table with its fields and indexes; a table of that name raises 3010, a table
  // without fields 3264.
  void Append(const TableDef& table);
  // Drops a table: a schema change that raises 3211 while another process holds the database
  // open; an unknown name raises 3265.
  void Delete(const std::string& name);
  void Refresh();  // re-reads the list from the file (another process may have changed it)

 private:
  friend class detail::TableDefsOwner;
  explicit TableDefs(std::shared_ptr<detail::TableDefsOwner> owner) : owner_(std::move(owner)) {}
  std::shared_ptr<detail::TableDefsOwner> owner_;
};

}  // namespace vellumar::db
