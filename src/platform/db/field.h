#pragma once
// Field and the Fields collection. One Field type serves the three places a field appears: a
// column definition of a TableDef (made by CreateField, then appended), a key column of an Index,
// and a column of a Recordset, whose Value is the current row's value.
//
// Field and Fields are references, as the program's objects are: copies refer to the same field.
#include <memory>
#include <string>

#include "platform/vb/variant.h"

namespace vellumar::db {

namespace detail {
struct FieldState;
struct FieldAccess;
class FieldsOwner;
}  // namespace detail

class Field {
 public:
  Field() = default;  // a reference to nothing; any use raises 91

  std::string Name() const;
  int Type() const;              // FieldType
  long Size() const;             // characters for dbText, 0 for dbMemo, bytes for the other types
  long OrdinalPosition() const;  // 0-based column number in a table or recordset

  long Attributes() const;  // FieldAttribute bits
  void SetAttributes(long attributes);
  bool AllowZeroLength() const;  // text and memo only: may hold ""
  void SetAllowZeroLength(bool allow);
  bool Required() const;  // Null is refused by Update
  void SetRequired(bool required);

  // The current row's value (a recordset's field only). Null stays distinct from "".
  // No current row raises 3021, a deleted row 3167.
  vb::Variant Value() const;
  // Sets the value in the edit buffer; needs Edit or AddNew first (else 3020). The value is
  // converted to the field's type at once: a text longer than Size raises 3163 and leaves the
  // buffer as it was; a value that can't be converted raises 3421.
  void SetValue(const vb::Variant& value);

  explicit operator bool() const { return state_ != nullptr; }

 private:
  friend struct detail::FieldAccess;
  explicit Field(std::shared_ptr<detail::FieldState> state) : state_(std::move(state)) {}
  std::shared_ptr<detail::FieldState> state_;
};

// An ordered, case-blind collection of fields: of a TableDef, of an Index or of a Recordset.
class Fields {
 public:
  Fields() = default;

  int Count() const;
  Field Item(int index) const;                // 3265 when out of range
  Field Item(const std::string& name) const;  // case-blind; 3265 when absent
  Field operator[](int index) const { return Item(index); }
  Field operator[](const std::string& name) const { return Item(name); }
  // Appends a field made by CreateField. On a table that is already in the database this adds
  // a column, a schema change: it needs the exclusive lock on the file and raises 3211 while
  // another process holds the database open. A name already present raises 3191.
  void Append(const Field& field);

 private:
  friend class detail::FieldsOwner;
  explicit Fields(std::shared_ptr<detail::FieldsOwner> owner) : owner_(std::move(owner)) {}
  std::shared_ptr<detail::FieldsOwner> owner_;
};

}  // namespace vellumar::db
