// Field, Index and TableDef with their collections: definitions while they are being built,
// views of the file's schema once they are part of it.
#include "platform/db/database.h"
#include "platform/db/database_core.h"
#include "platform/db/recordset_core.h"
#include "platform/vb/error.h"

namespace vellumar::db {

namespace detail {

namespace {

[[noreturn]] void NotSet() {
  throw vb::VbError(91, "Object variable or With block variable not set");
}

[[noreturn]] void NotFound(const std::string& what) {
  throw vb::VbError(3265, "Item not found in this collection (" + what + ").");
}

}  // namespace

struct FieldState {
  ColumnInfo def;
  int ordinal = -1;  // position in its table, index or recordset once appended
  // A column of a table in the file: property changes go to the file's metadata.
  std::shared_ptr<DatabaseCore> db;
  std::string table;
  bool appended = false;
  // A column of a recordset: Value reads and writes the recordset's row.
  std::weak_ptr<RecordsetCore> rs;
  bool inRecordset = false;

  RecordsetCore* core = nullptr;  // rs while it lives: a row's reads take no reference count
  // The recordset; on the one thread the program runs, it can't die between this check and the
  // call that follows.
  RecordsetCore* Recordset() const {
    if (rs.expired()) {
      throw vb::VbError(3420, "Object invalid or no longer set (the recordset is closed).");
    }
    return core;
  }
  void CheckChangeable(const char* property) const {
    if (inRecordset) {
      throw vb::VbError(3251, std::string("Operation is not supported for this type of object (") +
                                  property + " of a recordset's field).");
    }
  }
  void Save() {
    if (db) db->WriteFieldMeta(table, def);
  }
};

struct FieldAccess {
  static Field Make(std::shared_ptr<FieldState> s) { return Field(std::move(s)); }
  static const std::shared_ptr<FieldState>& Of(const Field& f) {
    if (!f.state_) NotSet();
    return f.state_;
  }
};

struct IndexState {
  IndexInfo def;
  std::vector<Field> fields;
  bool appended = false;  // part of a table in the file: read-only
  void CheckChangeable() const {
    if (appended) {
      throw vb::VbError(3251, "Operation is not supported for this type of object (index '" +
                                  def.name + "' is already part of a table).");
    }
  }
};

struct IndexAccess {
  static Index Make(std::shared_ptr<IndexState> s) { return Index(std::move(s)); }
  static const std::shared_ptr<IndexState>& Of(const Index& i) {
    if (!i.state_) NotSet();
    return i.state_;
  }
};

struct TableDefState {
  std::string name;
  std::shared_ptr<DatabaseCore> db;  // set once the table is in the file
  std::vector<Field> fields;
  std::vector<Index> indexes;
};

struct TableDefAccess {
  static TableDef Make(std::shared_ptr<TableDefState> s) { return TableDef(std::move(s)); }
  static const std::shared_ptr<TableDefState>& Of(const TableDef& t) {
    if (!t.state_) NotSet();
    return t.state_;
  }
};

class FieldsOwner {
 public:
  virtual ~FieldsOwner() = default;
  virtual int Count() const = 0;
  virtual Field Item(int index) const = 0;
  virtual Field Item(const std::string& name) const = 0;
  virtual void Append(const Field& field) = 0;
  static db::Fields Make(std::shared_ptr<FieldsOwner> owner) {
    return db::Fields(std::move(owner));
  }
};

namespace {

Field FindField(const std::vector<Field>& fields, const std::string& name,
                const std::string& where) {
  for (const auto& f : fields) {
    if (EqualsNoCase(FieldAccess::Of(f)->def.name, name)) return f;
  }
  NotFound("no field '" + name + "' in " + where);
}

Field FieldAt(const std::vector<Field>& fields, int index, const std::string& where) {
  if (index < 0 || index >= static_cast<int>(fields.size())) {
    NotFound("field " + std::to_string(index) + " of " + where);
  }
  return fields[static_cast<size_t>(index)];
}

void CheckNewField(const std::vector<Field>& fields, const FieldState& state) {
  if (state.appended || state.inRecordset) {
    throw vb::VbError(3367,
                      "Cannot append. An object with that name is already in a "
                      "collection (field '" +
                          state.def.name + "').");
  }
  for (const auto& f : fields) {
    if (EqualsNoCase(FieldAccess::Of(f)->def.name, state.def.name)) {
      throw vb::VbError(3191, "Cannot define field '" + state.def.name + "' more than once.");
    }
  }
}

// The fields of a TableDef: appending to a table already in the file adds a column.
class TableFields : public FieldsOwner {
 public:
  explicit TableFields(std::shared_ptr<TableDefState> table) : t_(std::move(table)) {}
  int Count() const override { return static_cast<int>(t_->fields.size()); }
  Field Item(int index) const override {
    return FieldAt(t_->fields, index, "table '" + t_->name + "'");
  }
  Field Item(const std::string& name) const override {
    return FindField(t_->fields, name, "table '" + t_->name + "'");
  }
  void Append(const Field& field) override {
    auto state = FieldAccess::Of(field);
    CheckNewField(t_->fields, *state);
    if (t_->db) {
      t_->db->AddColumn(t_->name, state->def);
      state->db = t_->db;
      state->table = t_->name;
    }
    state->appended = true;
    state->ordinal = static_cast<int>(t_->fields.size());
    t_->fields.push_back(field);
  }

 private:
  std::shared_ptr<TableDefState> t_;
};

// The key fields of an Index.
class IndexFields : public FieldsOwner {
 public:
  explicit IndexFields(std::shared_ptr<IndexState> index) : i_(std::move(index)) {}
  int Count() const override { return static_cast<int>(i_->fields.size()); }
  Field Item(int index) const override {
    return FieldAt(i_->fields, index, "index '" + i_->def.name + "'");
  }
  Field Item(const std::string& name) const override {
    return FindField(i_->fields, name, "index '" + i_->def.name + "'");
  }
  void Append(const Field& field) override {
    i_->CheckChangeable();
    auto state = FieldAccess::Of(field);
    CheckNewField(i_->fields, *state);
    state->appended = true;
    state->ordinal = static_cast<int>(i_->fields.size());
    i_->fields.push_back(field);
  }

 private:
  std::shared_ptr<IndexState> i_;
};

// The fields of a recordset.
class RecordsetFields : public FieldsOwner {
 public:
  explicit RecordsetFields(std::shared_ptr<RecordsetCore> rs) : rs_(std::move(rs)) {}
  int Count() const override { return rs_->FieldCount(); }
  Field Item(int index) const override { return rs_->FieldAt(index); }
  Field Item(const std::string& name) const override { return rs_->FieldNamed(name); }
  void Append(const Field&) override {
    throw vb::VbError(3251,
                      "Operation is not supported for this type of object (appending a "
                      "field to a recordset).");
  }

 private:
  std::shared_ptr<RecordsetCore> rs_;
};

IndexInfo ResolveIndex(const IndexState& index, const TableSchema& table) {
  IndexInfo info = index.def;
  info.fields.clear();
  if (index.fields.empty()) {
    throw vb::VbError(3264, "No field defined--cannot append Index '" + index.def.name + "'.");
  }
  for (const auto& f : index.fields) {
    const auto& name = FieldAccess::Of(f)->def.name;
    int ordinal = table.Find(name);
    if (ordinal < 0)
      NotFound("index '" + index.def.name + "' names no field '" + name + "' of '" + table.name +
               "'");
    info.fields.push_back(table.columns[static_cast<size_t>(ordinal)].name);
  }
  if (info.primary) info.unique = true;
  info.sqliteName = table.name + "." + info.name;
  for (const auto& other : table.indexes) {
    if (EqualsNoCase(other.name, info.name)) {
      throw vb::VbError(3284, "Index '" + info.name + "' already exists.");
    }
    if (other.primary && info.primary) {
      throw vb::VbError(3283, "Primary key already exists (index '" + other.name + "').");
    }
  }
  return info;
}

}  // namespace

class IndexesOwner {
 public:
  explicit IndexesOwner(std::shared_ptr<TableDefState> table) : t_(std::move(table)) {}
  static db::Indexes Make(std::shared_ptr<IndexesOwner> owner) {
    return db::Indexes(std::move(owner));
  }
  int Count() const { return static_cast<int>(t_->indexes.size()); }
  Index Item(int index) const {
    if (index < 0 || index >= Count())
      NotFound("index " + std::to_string(index) + " of table '" + t_->name + "'");
    return t_->indexes[static_cast<size_t>(index)];
  }
  Index Item(const std::string& name) const {
    for (const auto& i : t_->indexes) {
      if (EqualsNoCase(IndexAccess::Of(i)->def.name, name)) return i;
    }
    NotFound("no index '" + name + "' in table '" + t_->name + "'");
  }
  void Append(const Index& index) {
    auto state = IndexAccess::Of(index);
    if (state->appended) {
      throw vb::VbError(3367, "Cannot append. Index '" + state->def.name +
                                  "' is already in a "
                                  "collection.");
    }
    if (t_->db) {
      auto schema = t_->db->Schema(t_->name);
      IndexInfo info = ResolveIndex(*state, *schema);
      t_->db->AddIndex(t_->name, info);
      state->def = info;
    } else {
      for (const auto& i : t_->indexes) {
        if (EqualsNoCase(IndexAccess::Of(i)->def.name, state->def.name)) {
          throw vb::VbError(3284, "Index '" + state->def.name + "' already exists.");
        }
      }
    }
    state->appended = t_->db != nullptr;
    t_->indexes.push_back(index);
  }

 private:
  std::shared_ptr<TableDefState> t_;
};

// A TableDef of a table in the file, with its fields and indexes as they are there.
std::shared_ptr<TableDefState> AttachedTableDef(const std::shared_ptr<DatabaseCore>& db,
                                                const TableSchema& schema) {
  auto t = std::make_shared<TableDefState>();
  t->name = schema.name;
  t->db = db;
  for (size_t i = 0; i < schema.columns.size(); ++i) {
    auto f = std::make_shared<FieldState>();
    f->def = schema.columns[i];
    f->ordinal = static_cast<int>(i);
    f->db = db;
    f->table = schema.name;
    f->appended = true;
    t->fields.push_back(FieldAccess::Make(f));
  }
  for (const auto& info : schema.indexes) {
    auto s = std::make_shared<IndexState>();
    s->def = info;
    s->appended = true;
    for (size_t k = 0; k < info.fields.size(); ++k) {
      auto f = std::make_shared<FieldState>();
      f->def.name = info.fields[k];
      int ordinal = schema.Find(info.fields[k]);
      if (ordinal >= 0) {
        f->def.type = schema.columns[static_cast<size_t>(ordinal)].type;
        f->def.size = schema.columns[static_cast<size_t>(ordinal)].size;
      }
      f->ordinal = static_cast<int>(k);
      f->appended = true;
      s->fields.push_back(FieldAccess::Make(f));
    }
    t->indexes.push_back(IndexAccess::Make(s));
  }
  return t;
}

class TableDefsOwner {
 public:
  explicit TableDefsOwner(std::shared_ptr<DatabaseCore> db) : db_(std::move(db)) {}
  static db::TableDefs Make(std::shared_ptr<TableDefsOwner> owner) {
    return db::TableDefs(std::move(owner));
  }
  int Count() const { return static_cast<int>(db_->TableNames().size()); }
  TableDef Item(int index) const {
    auto names = db_->TableNames();
    if (index < 0 || index >= static_cast<int>(names.size())) {
      NotFound("table " + std::to_string(index));
    }
    return Item(names[static_cast<size_t>(index)]);
  }
  TableDef Item(const std::string& name) const {
    db_->CheckOpen();
    if (!db_->HasTable(name) || IsOwnTable(name)) NotFound("no table '" + name + "'");
    return TableDefAccess::Make(AttachedTableDef(db_, *db_->Schema(name)));
  }
  void Append(const TableDef& table) {
    auto t = TableDefAccess::Of(table);
    if (t->db) {
      throw vb::VbError(3367, "Cannot append. Table '" + t->name +
                                  "' is already in a "
                                  "collection.");
    }
    db_->CheckWritable();
    if (db_->HasTable(t->name)) throw vb::VbError(3010, "Table '" + t->name + "' already exists.");
    if (t->fields.empty()) {
      throw vb::VbError(3264, "No field defined--cannot append TableDef '" + t->name + "'.");
    }
    TableSchema schema;
    schema.name = t->name;
    for (const auto& f : t->fields) schema.columns.push_back(FieldAccess::Of(f)->def);
    schema.BuildLookup();
    for (const auto& i : t->indexes) {
      IndexInfo info = ResolveIndex(*IndexAccess::Of(i), schema);
      schema.indexes.push_back(info);
    }
    db_->CreateTable(schema);
    t->db = db_;
    for (const auto& f : t->fields) {
      auto s = FieldAccess::Of(f);
      s->db = db_;
      s->table = t->name;
    }
    for (size_t k = 0; k < t->indexes.size(); ++k) {
      auto s = IndexAccess::Of(t->indexes[k]);
      s->def = schema.indexes[k];
      s->appended = true;
    }
  }
  void Delete(const std::string& name) {
    db_->CheckWritable();
    if (!db_->HasTable(name) || IsOwnTable(name)) NotFound("no table '" + name + "'");
    db_->DropTable(name);
  }

 private:
  static bool IsOwnTable(const std::string& name) {
    return EqualsNoCase(name, "vellumar_database") || EqualsNoCase(name, "vellumar_field") ||
           EqualsNoCase(name, "vellumar_index");
  }
  std::shared_ptr<DatabaseCore> db_;
};

Field MakeRecordsetField(const std::shared_ptr<RecordsetCore>& rs, const ColumnInfo& column,
                         int ordinal) {
  auto s = std::make_shared<FieldState>();
  s->def = column;
  s->rs = rs;
  s->core = rs.get();
  s->ordinal = ordinal;
  s->inRecordset = true;
  return FieldAccess::Make(std::move(s));
}

db::Fields MakeRecordsetFields(const std::shared_ptr<RecordsetCore>& rs) {
  return FieldsOwner::Make(std::make_shared<RecordsetFields>(rs));
}

TableDef MakeTableDef(const std::string& name) {
  auto t = std::make_shared<TableDefState>();
  t->name = name;
  return TableDefAccess::Make(t);
}

db::TableDefs MakeTableDefs(const std::shared_ptr<DatabaseCore>& db) {
  return TableDefsOwner::Make(std::make_shared<TableDefsOwner>(db));
}

}  // namespace detail

using detail::FieldAccess;
using detail::IndexAccess;
using detail::TableDefAccess;

// ---- Field

std::string Field::Name() const { return FieldAccess::Of(*this)->def.name; }
int Field::Type() const { return FieldAccess::Of(*this)->def.type; }
long Field::Size() const { return FieldAccess::Of(*this)->def.size; }
long Field::OrdinalPosition() const { return FieldAccess::Of(*this)->ordinal; }
long Field::Attributes() const { return FieldAccess::Of(*this)->def.attributes; }
void Field::SetAttributes(long attributes) {
  auto s = FieldAccess::Of(*this);
  s->CheckChangeable("Attributes");
  s->def.attributes = attributes;
  s->Save();
}
bool Field::AllowZeroLength() const { return FieldAccess::Of(*this)->def.allowZeroLength; }
void Field::SetAllowZeroLength(bool allow) {
  auto s = FieldAccess::Of(*this);
  s->CheckChangeable("AllowZeroLength");
  // Only text can be zero-length; for the other types the property stays false.
  s->def.allowZeroLength = allow && detail::IsTextType(s->def.type);
  s->Save();
}
bool Field::Required() const { return FieldAccess::Of(*this)->def.required; }
void Field::SetRequired(bool required) {
  auto s = FieldAccess::Of(*this);
  s->CheckChangeable("Required");
  s->def.required = required;
  s->Save();
}
vb::Variant Field::Value() const {
  const auto& s = FieldAccess::Of(*this);
  if (!s->inRecordset) {
    throw vb::VbError(3219, "Invalid operation (the field '" + s->def.name +
                                "' is a definition, not a recordset's field).");
  }
  return s->Recordset()->Value(s->ordinal);
}
void Field::SetValue(const vb::Variant& value) {
  const auto& s = FieldAccess::Of(*this);
  if (!s->inRecordset) {
    throw vb::VbError(3219, "Invalid operation (the field '" + s->def.name +
                                "' is a definition, not a recordset's field).");
  }
  s->Recordset()->SetValue(s->ordinal, value);
}

// ---- Fields

int Fields::Count() const {
  if (!owner_) detail::NotSet();
  return owner_->Count();
}
Field Fields::Item(int index) const {
  if (!owner_) detail::NotSet();
  return owner_->Item(index);
}
Field Fields::Item(const std::string& name) const {
  if (!owner_) detail::NotSet();
  return owner_->Item(name);
}
void Fields::Append(const Field& field) {
  if (!owner_) detail::NotSet();
  owner_->Append(field);
}

// ---- Index

std::string Index::Name() const { return IndexAccess::Of(*this)->def.name; }
bool Index::Primary() const { return IndexAccess::Of(*this)->def.primary; }
void Index::SetPrimary(bool primary) {
  auto s = IndexAccess::Of(*this);
  s->CheckChangeable();
  s->def.primary = primary;
}
bool Index::Unique() const {
  const auto& d = IndexAccess::Of(*this)->def;
  return d.unique || d.primary;
}
void Index::SetUnique(bool unique) {
  auto s = IndexAccess::Of(*this);
  s->CheckChangeable();
  s->def.unique = unique;
}
Field Index::CreateField(const std::string& name) {
  IndexAccess::Of(*this);
  auto f = std::make_shared<detail::FieldState>();
  f->def.name = name;
  return FieldAccess::Make(f);
}
db::Fields Index::Fields() const {
  return detail::FieldsOwner::Make(std::make_shared<detail::IndexFields>(IndexAccess::Of(*this)));
}

// ---- Indexes

int Indexes::Count() const {
  if (!owner_) detail::NotSet();
  return owner_->Count();
}
Index Indexes::Item(int index) const {
  if (!owner_) detail::NotSet();
  return owner_->Item(index);
}
Index Indexes::Item(const std::string& name) const {
  if (!owner_) detail::NotSet();
  return owner_->Item(name);
}
void Indexes::Append(const Index& index) {
  if (!owner_) detail::NotSet();
  owner_->Append(index);
}

// ---- TableDef

std::string TableDef::Name() const { return TableDefAccess::Of(*this)->name; }
Field TableDef::CreateField(const std::string& name, int type, long size) {
  TableDefAccess::Of(*this);
  if (!detail::IsKnownType(type)) {
    throw vb::VbError(
        3259, "Invalid field data type (" + std::to_string(type) + " for field '" + name + "').");
  }
  if (type == dbText && (size < 0 || size > 255)) {
    throw vb::VbError(3001, "Invalid argument (text field '" + name + "' of size " +
                                std::to_string(size) + "; 1 to 255).");
  }
  auto f = std::make_shared<detail::FieldState>();
  f->def.name = name;
  f->def.type = type;
  f->def.size = type == dbText ? (size > 0 ? size : 50) : detail::DefaultSize(type);
  f->def.attributes = detail::DefaultAttributes(type);
  return FieldAccess::Make(f);
}
db::Fields TableDef::Fields() const {
  return detail::FieldsOwner::Make(
      std::make_shared<detail::TableFields>(TableDefAccess::Of(*this)));
}
Index TableDef::CreateIndex(const std::string& name) {
  TableDefAccess::Of(*this);
  auto s = std::make_shared<detail::IndexState>();
  s->def.name = name;
  return IndexAccess::Make(s);
}
db::Indexes TableDef::Indexes() const {
  return detail::IndexesOwner::Make(
      std::make_shared<detail::IndexesOwner>(TableDefAccess::Of(*this)));
}

// ---- TableDefs

int TableDefs::Count() const {
  if (!owner_) detail::NotSet();
  return owner_->Count();
}
TableDef TableDefs::Item(int index) const {
  if (!owner_) detail::NotSet();
  return owner_->Item(index);
}
TableDef TableDefs::Item(const std::string& name) const {
  if (!owner_) detail::NotSet();
  return owner_->Item(name);
}
void TableDefs::Append(const TableDef& table) {
  if (!owner_) detail::NotSet();
  owner_->Append(table);
}
void TableDefs::Delete(const std::string& name) {
  if (!owner_) detail::NotSet();
  owner_->Delete(name);
}
void TableDefs::Refresh() {
  if (!owner_) detail::NotSet();
}

}  // namespace vellumar::db
