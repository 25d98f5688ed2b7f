#pragma once
// Index and the Indexes collection of a TableDef. Index names are per table, as the program
// knows them ("PrimaryKey", "Timestamp", "Callsign"), whatever the file calls them underneath.
#include <memory>
#include <string>

#include "platform/db/field.h"

namespace vellumar::db {

namespace detail {
struct IndexState;
struct IndexAccess;
class IndexesOwner;
}  // namespace detail

class Index {
 public:
  Index() = default;

  std::string Name() const;
  bool Primary() const;  // a primary index is unique and its fields refuse Null
  void SetPrimary(bool primary);
  bool Unique() const;
  void SetUnique(bool unique);

  // A key field, by the name of a column of the table; append it to Fields().
  Field CreateField(const std::string& name);
  db::Fields Fields() const;

  explicit operator bool() const { return state_ != nullptr; }

 private:
  friend struct detail::IndexAccess;
  explicit Index(std::shared_ptr<detail::IndexState> state) : state_(std::move(state)) {}
  std::shared_ptr<detail::IndexState> state_;
};

class Indexes {
 public:
  Indexes() = default;

  int Count() const;
  Index Item(int index) const;                // 3265 when out of range
  Index Item(const std::string& name) const;  // case-blind; 3265 when absent
  Index operator[](int index) const { return Item(index); }
  Index operator[](const std::string& name) const { return Item(name); }
  // On a table already in the database this builds the index: a schema change that raises 3211
  // while another process holds the database open, and 3022 when the rows already hold
  // duplicates for a unique index.
  void Append(const Index& index);

 private:
  friend class detail::IndexesOwner;
  explicit Indexes(std::shared_ptr<detail::IndexesOwner> owner) : owner_(std::move(owner)) {}
  std::shared_ptr<detail::IndexesOwner> owner_;
};

}  // namespace vellumar::db
