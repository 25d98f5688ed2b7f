// Recordset and the state behind it.
//
// Edit mode, the state machine of a recordset's edit buffer:
//
//   dbEditNone ---- Edit ------------> dbEditInProgress   buffer = copy of the current row
//                                                          (read when a field is first read)
//   dbEditNone ---- AddNew ----------> dbEditAdd          buffer = all Null
//   dbEditInProgress -- Update ------> dbEditNone         changed fields written, committed;
//                                                          LastModified = the row
//   dbEditAdd ------ Update ---------> dbEditNone         row inserted and committed, appended
//                                                          to the key set; LastModified = it;
//                                                          the position is where it was
//   either --------- CancelUpdate ---> dbEditNone         buffer dropped
//   either --------- any move, Requery, Close, Delete --> dbEditNone, buffer dropped silently
//   either --------- Edit / AddNew --> the new state, the old buffer dropped
//
// A refused Update (3315, 3314, 3058, 3022, 3167) writes nothing and leaves the state and the
// buffer as they were, so the caller can correct a field and try again or cancel.
// While an edit is open, Value reads the buffer; otherwise it reads the current row.
#include "platform/db/recordset.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "platform/db/recordset_core.h"
#include "platform/db/value_convert.h"
#include "platform/vb/error.h"

namespace vellumar::db {

namespace detail {

// Field and Fields of a recordset (defined in collections.cpp).
Field MakeRecordsetField(const std::shared_ptr<RecordsetCore>& rs, const ColumnInfo& column,
                         int ordinal);
db::Fields MakeRecordsetFields(const std::shared_ptr<RecordsetCore>& rs);

namespace {
[[noreturn]] void NoCurrentRecord() { throw vb::VbError(3021, "No current record."); }
[[noreturn]] void RecordDeleted() { throw vb::VbError(3167, "Record is deleted."); }
}  // namespace

Recordset RecordsetCore::Open(std::shared_ptr<DatabaseCore> db,
                              std::shared_ptr<const TableSchema> schema, int type,
                              jet::SqlCondition filter, std::string order) {
  std::shared_ptr<RecordsetCore> core(new RecordsetCore());
  core->db_ = std::move(db);
  core->schema_ = std::move(schema);
  core->type_ = type;
  core->filter_ = std::move(filter);
  core->order_ = std::move(order);
  core->BuildFields();
  core->keys_ = std::make_shared<KeySet>(core->LoadKeys());
  core->fullyCounted_ = type == dbOpenTable;  // a table's count is always exact
  if (core->keys_->live() > 0) core->MoveTo(0);
  core->db_->Track(core);
  return Recordset(core);
}

void RecordsetCore::BuildFields() {
  selectRowSql_ = "SELECT ";
  keyColumn_.assign(schema_->columns.size(), false);
  for (const auto& index : schema_->indexes) {
    if (!index.primary) continue;
    for (const auto& f : index.fields) {
      int ordinal = schema_->Find(f);
      if (ordinal >= 0) keyColumn_[static_cast<size_t>(ordinal)] = true;
    }
  }
  fields_.clear();
  findColumns_.clear();
  for (size_t i = 0; i < schema_->columns.size(); ++i) {
    if (i) selectRowSql_ += ", ";
    selectRowSql_ += QuoteName(schema_->columns[i].name);
    findColumns_ += ", " + QuoteName(schema_->columns[i].name);
    fields_.push_back(
        MakeRecordsetField(shared_from_this(), schema_->columns[i], static_cast<int>(i)));
  }
  if (schema_->columns.empty()) selectRowSql_ += "NULL";
  selectRowSql_ += " FROM " + QuoteName(schema_->name) + " WHERE rowid = ?";
}

std::string RecordsetCore::EffectiveOrder() const {
  if (type_ != dbOpenTable) return order_;
  if (!indexInfo_) return {};
  std::string order;
  for (const auto& f : indexInfo_->fields) {
    if (!order.empty()) order += ", ";
    order += QuoteName(f);
  }
  return order;
}

std::vector<int64_t> RecordsetCore::LoadKeys() const {
  std::string sql = "SELECT rowid FROM " + QuoteName(schema_->name);
  if (!filter_.empty()) sql += " WHERE " + filter_.sql;
  std::string order = EffectiveOrder();
  // Without a sort the order is the rowid's; sorting the rowids here lets SQLite read them from
  // its smallest index instead of walking every row of the table.
  if (!order.empty()) sql += " ORDER BY " + order + ", rowid";
  auto q = db_->Prepare(sql);
  q->BindAll(filter_.params);
  std::vector<int64_t> keys;
  int64_t highest = 0;
  while (q->Step()) {
    keys.push_back(q->Int(0));
    highest = std::max(highest, keys.back());
  }
  db_->RaiseRowidHighWater(schema_->name, highest);
  if (order.empty() && !std::is_sorted(keys.begin(), keys.end())) {
    std::sort(keys.begin(), keys.end());
  }
  return keys;
}

void RecordsetCore::Detach() {
  closed_ = true;
  editMode_ = dbEditNone;
  ForgetRow();
  row_.clear();
  DropReadAhead();
}

void RecordsetCore::CheckOpen() const {
  if (closed_ || db_->closed()) {
    throw vb::VbError(3420, "Object invalid or no longer set (the recordset is closed).");
  }
}

void RecordsetCore::CheckDynaset(const char* what) const {
  CheckOpen();
  if (type_ == dbOpenTable) {
    throw vb::VbError(3251, std::string("Operation is not supported for this type of object (") +
                                what + " on a table-type recordset).");
  }
}

void RecordsetCore::CheckTable(const char* what) const {
  CheckOpen();
  if (type_ != dbOpenTable) {
    throw vb::VbError(3251, std::string("Operation is not supported for this type of object (") +
                                what + " needs a table-type recordset).");
  }
}

bool RecordsetCore::updatable() const { return !db_->readOnly(); }

void RecordsetCore::SetSort(const std::string& sort) {
  CheckDynaset("Sort");
  sortProperty_ = sort;
}

void RecordsetCore::SetFilter(const std::string& filter) {
  CheckDynaset("Filter");
  filterProperty_ = filter;
}

Recordset RecordsetCore::OpenChild(int type) {
  CheckOpen();
  if (type != dbOpenDynaset) {
    throw vb::VbError(3251,
                      "Operation is not supported for this type of object (a view opened "
                      "from a recordset is a dynaset).");
  }
  auto schema = db_->Schema(schema_->name);
  jet::SqlCondition filter = filter_;
  if (!filterProperty_.empty()) {
    filter = jet::Conjoin(filter_, jet::TranslateCriteria(filterProperty_, *schema));
  }
  std::string order =
      sortProperty_.empty() ? EffectiveOrder() : jet::TranslateSort(sortProperty_, *schema);
  return Open(db_, schema, dbOpenDynaset, std::move(filter), std::move(order));
}

Recordset RecordsetCore::Clone() {
  CheckOpen();
  std::shared_ptr<RecordsetCore> c(new RecordsetCore());
  c->db_ = db_;
  c->schema_ = schema_;
  c->type_ = type_;
  c->filter_ = filter_;
  c->order_ = order_;
  c->indexInfo_ = indexInfo_;
  c->indexName_ = indexName_;
  c->sortProperty_ = sortProperty_;
  c->filterProperty_ = filterProperty_;
  c->keys_ = keys_;
  c->highWater_ = highWater_;
  c->fullyCounted_ = fullyCounted_;
  c->BuildFields();
  db_->Track(c);
  return Recordset(c);
}

void RecordsetCore::Requery() {
  CheckOpen();
  Discard();
  keys_ = std::make_shared<KeySet>(LoadKeys());
  where_ = Where::Before;
  highWater_ = 0;
  fullyCounted_ = type_ == dbOpenTable;
  DropReadAhead();
  if (keys_->live() > 0) MoveTo(0);
}

void RecordsetCore::Close() {
  if (closed_) return;
  Detach();
}

Field RecordsetCore::FieldAt(int ordinal) const {
  CheckOpen();
  if (ordinal < 0 || ordinal >= FieldCount()) {
    throw vb::VbError(3265, "Item not found in this collection (field " + std::to_string(ordinal) +
                                " of " + std::to_string(FieldCount()) + ").");
  }
  return fields_[static_cast<size_t>(ordinal)];
}

Field RecordsetCore::FieldNamed(const std::string& name) const {
  CheckOpen();
  int ordinal = schema_->Find(name);
  if (ordinal < 0) {
    throw vb::VbError(3265, "Item not found in this collection (no field '" + name + "' in '" +
                                schema_->name + "').");
  }
  return fields_[static_cast<size_t>(ordinal)];
}

size_t RecordsetCore::CurrentPosition() const {
  if (where_ != Where::On) NoCurrentRecord();
  if (keys_->deleted(position_)) RecordDeleted();
  return position_;
}

namespace {
constexpr size_t kMaxReadAheadLog2 = 6;  // at most 64 rows a block
// Slots of a read-ahead block that hold no row in its values.
constexpr int32_t kGone = -1;   // the row is no longer in the table
constexpr int32_t kInRow = -2;  // the row was read straight into the row cache

// A column of the current result row into out, reusing out's text buffer.
void ReadColumn(sqlite3_stmt* stmt, int column, SqlValue& out) {
  switch (sqlite3_column_type(stmt, column)) {
    case SQLITE_NULL:
      out = std::monostate{};
      break;
    case SQLITE_INTEGER:
      out = static_cast<int64_t>(sqlite3_column_int64(stmt, column));
      break;
    case SQLITE_FLOAT:
      out = sqlite3_column_double(stmt, column);
      break;
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
      auto n = static_cast<size_t>(sqlite3_column_bytes(stmt, column));
      if (auto* s = std::get_if<std::string>(&out)) {
        s->assign(text ? text : "", n);
      } else {
        out = std::string(text ? text : "", n);
      }
    }
  }
}
}  // namespace

const SqlValue* RecordsetCore::CurrentRow() {
  size_t pos = CurrentPosition();
  int64_t rowid = keys_->rowid(pos);
  if (rowData_ && rowRowid_ == rowid && rowVersion_ == db_->dataVersion()) return rowData_;
  // Onto another row. It is served from the read-ahead block when the block holds it and nothing
  // has been committed to the file since the block was read; otherwise the block is read anew
  // from here.
  bool held = ahead_.stamp.taken && ahead_.version == db_->dataVersion() && ahead_.Holds(pos) &&
              ahead_.rowids[pos - ahead_.start] == rowid;
  if (held && db_->FileChangedSince(ahead_.stamp)) held = false;
  if (!held) ReadAhead(pos);
  ++ahead_.served;
  lastRead_ = pos;
  int32_t slot = ahead_.slots[pos - ahead_.start];
  if (slot == kGone) RecordDeleted();  // deleted by another view or process
  if (slot == kInRow) {
    rowData_ = row_.data();
  } else {
    // The row is read where the block holds it; the block stays until the next read.
    rowData_ = &ahead_.values[static_cast<size_t>(slot) * schema_->columns.size()];
  }
  rowRowid_ = rowid;
  rowVersion_ = db_->dataVersion();
  return rowData_;
}

void RecordsetCore::ForgetRow() {
  rowData_ = nullptr;
  rowRowid_ = 0;
}

void RecordsetCore::ReadAhead(size_t position) {
  // The block's size: a walk that ran through the whole of the last block with nothing written
  // through this database meanwhile gets one twice as large; otherwise (a jump, a write, a walk
  // cut short) one as large as the last one served, down to the single row, so that random
  // access and an edit walk read no more than the row they are on.
  size_t end = ahead_.start + ahead_.rowids.size();
  bool pastEnd = ahead_.filled && position >= end && position < end + aheadWindow_;
  bool beforeStart =
      ahead_.filled && position < ahead_.start && position + aheadWindow_ >= ahead_.start;
  bool backward = beforeStart || (lastRead_ != SIZE_MAX && position < lastRead_);
  size_t want = (pastEnd || beforeStart) && ahead_.version == db_->dataVersion()
                    ? aheadWindow_ * 2
                    : std::max<size_t>(ahead_.served, 1);
  size_t log2 = 0;
  while ((size_t{1} << log2) < want && log2 < kMaxReadAheadLog2) ++log2;
  aheadWindow_ = size_t{1} << log2;

  size_t size = keys_->size();
  size_t first = backward ? position + 1 - std::min(position + 1, aheadWindow_) : position;
  size_t last = std::min(size, first + aheadWindow_);  // one past
  ForgetRow();  // it may lie in the block about to be overwritten
  ahead_.filled = false;
  ahead_.stamp = FileStamp();
  ahead_.start = first;
  ahead_.rowids.assign(last - first, 0);
  ahead_.slots.assign(last - first, kGone);
  ahead_.served = 0;

  if (aheadWindow_ == 1) {
    // The current row alone, straight into the row cache. It isn't served to a later move (the
    // block has no file version), so it needs none.
    ahead_.rowids[0] = keys_->rowid(position);
    auto q = db_->Prepare(selectRowSql_);
    q->Bind(1, ahead_.rowids[0]);
    if (q->Step()) {
      row_.resize(schema_->columns.size());
      for (size_t i = 0; i < row_.size(); ++i) ReadColumn(q->get(), static_cast<int>(i), row_[i]);
      ahead_.slots[0] = kInRow;
    }
    ahead_.filled = true;
    ahead_.version = db_->dataVersion();
    return;
  }
  // A block is served to later moves, which must know whether the file has changed since: the
  // file is stamped with the rows, in one read transaction, so that the stamp is no newer than
  // the rows (and the file is locked once).
  // The header of the log's index stands for the rows only when it is read before their
  // snapshot begins, which is at the first read of a transaction begun here.
  bool headerVouches = sqlite3_get_autocommit(db_->handle()) && db_->WalIndexReady();
  ReadTransaction transaction(*db_);
  FileStamp stamp = db_->StampFile(headerVouches);
  // The rowids of the block sorted, to place the rows SQLite returns (in rowid order).
  auto& order = readAheadOrder_;
  order.clear();
  for (size_t p = first; p < last; ++p) {
    int64_t rowid = keys_->rowid(p);
    ahead_.rowids[p - first] = rowid;
    if (keys_->deleted(p)) continue;  // deleted here: never read
    order.emplace_back(rowid, static_cast<int32_t>(p - first));
  }
  std::sort(order.begin(), order.end());
  // Rowids lying close together (a table in its own order, a log sorted by time as it was
  // logged) are read as a range, a plain scan of the table; scattered ones by their list. Rows
  // of the range outside the block are stepped over, at most as many as the block holds.
  bool dense = !order.empty() &&
               static_cast<uint64_t>(order.back().first - order.front().first) < 2 * order.size();
  const std::string* sql = &readRangeSql_;
  if (dense && readRangeSql_.empty()) {
    readRangeSql_ = "SELECT rowid";
    for (const auto& column : schema_->columns) readRangeSql_ += ", " + QuoteName(column.name);
    readRangeSql_ += " FROM " + QuoteName(schema_->name) + " WHERE rowid BETWEEN ? AND ?";
  }
  if (!dense) {
    if (readAheadSql_.size() <= log2) readAheadSql_.resize(log2 + 1);
    std::string& list = readAheadSql_[log2];
    if (list.empty()) {
      list = "SELECT rowid";
      for (const auto& column : schema_->columns) list += ", " + QuoteName(column.name);
      list += " FROM " + QuoteName(schema_->name) + " WHERE rowid IN (";
      for (size_t i = 0; i < aheadWindow_; ++i) list += i ? ", ?" : "?";
      list += ")";
    }
    sql = &list;
  }
  auto q = db_->Prepare(*sql);
  if (dense) {
    q->Bind(1, order.front().first);
    q->Bind(2, order.back().first);
  } else {
    // Unused parameters stay Null, which matches no rowid.
    for (size_t i = 0; i < order.size(); ++i) q->Bind(static_cast<int>(i) + 1, order[i].first);
  }
  size_t columns = schema_->columns.size();
  if (ahead_.values.size() < order.size() * columns) ahead_.values.resize(order.size() * columns);
  int32_t rows = 0;
  sqlite3_stmt* stmt = q->get();
  while (q->Step()) {
    int64_t rowid = q->Int(0);
    auto it = std::lower_bound(order.begin(), order.end(), std::pair<int64_t, int32_t>(rowid, 0));
    if (it == order.end() || it->first != rowid) continue;
    SqlValue* out = &ahead_.values[static_cast<size_t>(rows) * columns];
    for (size_t i = 0; i < columns; ++i) ReadColumn(stmt, static_cast<int>(i) + 1, out[i]);
    ahead_.slots[static_cast<size_t>(it->second)] = rows++;
    if (static_cast<size_t>(rows) == order.size()) break;  // all found: no step to the end
  }
  ahead_.filled = true;
  ahead_.version = db_->dataVersion();
  ahead_.stamp = stamp;
}

void RecordsetCore::DropReadAhead() {
  if (rowData_ != row_.data()) ForgetRow();  // it lay in the block
  ahead_ = ReadAheadBlock();
  aheadWindow_ = 1;
  lastRead_ = SIZE_MAX;
}

vb::Variant RecordsetCore::Value(int ordinal) {
  CheckOpen();
  const auto& column = schema_->columns[static_cast<size_t>(ordinal)];
  if (editMode_ != dbEditNone) {
    if (editMode_ == dbEditInProgress && !bufferLoaded_ && !dirty_[static_cast<size_t>(ordinal)]) {
      LoadBuffer();
    }
    return ToVariant(buffer_[static_cast<size_t>(ordinal)], column);
  }
  return ToVariant(CurrentRow()[ordinal], column);
}

void RecordsetCore::SetValue(int ordinal, const vb::Variant& value) {
  CheckOpen();
  if (editMode_ == dbEditNone) {
    throw vb::VbError(3020, "Update or CancelUpdate without AddNew or Edit.");
  }
  auto i = static_cast<size_t>(ordinal);
  buffer_[i] = ToStored(value, schema_->columns[i], schema_->name);
  dirty_[i] = true;
}

long RecordsetCore::RecordCount() const {
  CheckOpen();
  if (fullyCounted_) return static_cast<long>(keys_->live());
  // Rows visited so far, plus rows added here that lie beyond them.
  size_t size = keys_->size();
  size_t seen = std::min(highWater_, size);
  size_t count = keys_->LiveBefore(seen);
  size_t addedFrom = std::max(seen, keys_->queriedSize());
  if (size > addedFrom) count += keys_->LiveBefore(size) - keys_->LiveBefore(addedFrom);
  return static_cast<long>(count);
}

bool RecordsetCore::BOF() const {
  CheckOpen();
  return where_ == Where::Before || (where_ == Where::After && keys_->live() == 0);
}

bool RecordsetCore::EOF_() const {
  CheckOpen();
  return where_ == Where::After || (where_ == Where::Before && keys_->live() == 0);
}

void RecordsetCore::Discard() {
  editMode_ = dbEditNone;
  buffer_.clear();
  dirty_.clear();
}

void RecordsetCore::MoveTo(size_t position) {
  Discard();
  where_ = Where::On;
  position_ = position;
  highWater_ = std::max(highWater_, position + 1);
}

void RecordsetCore::MoveFirst() {
  CheckOpen();
  auto p = keys_->NextLive(0);
  if (!p) NoCurrentRecord();
  MoveTo(*p);
}

void RecordsetCore::MoveLast() {
  CheckOpen();
  auto p = keys_->size() ? keys_->PrevLive(keys_->size() - 1) : std::nullopt;
  if (!p) NoCurrentRecord();
  MoveTo(*p);
  fullyCounted_ = true;
}

void RecordsetCore::MoveNext() {
  CheckOpen();
  if (EOF_()) NoCurrentRecord();
  auto p = keys_->NextLive(where_ == Where::Before ? 0 : position_ + 1);
  if (p) {
    MoveTo(*p);
  } else {
    Discard();
    where_ = Where::After;
    highWater_ = keys_->size();
  }
}

void RecordsetCore::MovePrevious() {
  CheckOpen();
  if (BOF()) NoCurrentRecord();
  std::optional<size_t> p;
  if (where_ == Where::After) {
    if (keys_->size()) p = keys_->PrevLive(keys_->size() - 1);
  } else if (position_ > 0) {
    p = keys_->PrevLive(position_ - 1);
  }
  if (p) {
    MoveTo(*p);
  } else {
    Discard();
    where_ = Where::Before;
  }
}

long RecordsetCore::AbsolutePosition() const {
  CheckOpen();
  if (where_ != Where::On || keys_->deleted(position_)) return -1;
  return static_cast<long>(keys_->LiveBefore(position_));
}

void RecordsetCore::SetAbsolutePosition(long position) {
  CheckOpen();
  auto p = position < 0 ? std::nullopt : keys_->NthLive(static_cast<size_t>(position));
  if (!p) {
    throw vb::VbError(3001, "Invalid argument (AbsolutePosition " + std::to_string(position) +
                                " of " + std::to_string(keys_->live()) + " rows).");
  }
  MoveTo(*p);
}

BookmarkValue RecordsetCore::Bookmark() const {
  CheckOpen();
  return BookmarkValue{keys_->rowid(CurrentPosition())};
}

void RecordsetCore::SetBookmark(const BookmarkValue& bookmark) {
  CheckOpen();
  auto p = bookmark.rowid ? keys_->Find(bookmark.rowid) : std::nullopt;
  if (!p || keys_->deleted(*p)) throw vb::VbError(3159, "Not a valid bookmark.");
  MoveTo(*p);
}

void RecordsetCore::AddNew() {
  CheckOpen();
  db_->CheckWritable();
  Discard();
  buffer_.assign(schema_->columns.size(), std::monostate{});
  dirty_.assign(schema_->columns.size(), false);
  editMode_ = dbEditAdd;
}

void RecordsetCore::Edit() {
  CheckOpen();
  db_->CheckWritable();
  if (editMode_ == dbEditAdd) Discard();
  size_t pos = CurrentPosition();
  editRowid_ = keys_->rowid(pos);
  buffer_.assign(schema_->columns.size(), std::monostate{});
  dirty_.assign(schema_->columns.size(), false);
  // The row is copied into the buffer when a field is first read; a walk that only sets fields
  // never reads it. Update finds out then if the row has gone meanwhile.
  bufferLoaded_ = false;
  if (rowData_ && rowRowid_ == editRowid_ && rowVersion_ == db_->dataVersion()) {
    buffer_.assign(rowData_, rowData_ + schema_->columns.size());
    bufferLoaded_ = true;
  }
  editMode_ = dbEditInProgress;
}

void RecordsetCore::LoadBuffer() {
  auto q = db_->Prepare(selectRowSql_);
  q->Bind(1, editRowid_);
  if (!q->Step()) RecordDeleted();
  for (size_t i = 0; i < buffer_.size(); ++i) {
    if (!dirty_[i]) buffer_[i] = q->Column(static_cast<int>(i));
  }
  bufferLoaded_ = true;
}

void RecordsetCore::Update() {
  CheckOpen();
  if (editMode_ == dbEditNone) {
    throw vb::VbError(3020, "Update or CancelUpdate without AddNew or Edit.");
  }
  db_->CheckWritable();
  const std::string& table = schema_->name;
  for (size_t i = 0; i < buffer_.size(); ++i) {
    const auto& column = schema_->columns[i];
    bool considered = dirty_[i] || editMode_ == dbEditAdd;
    if (!considered) continue;
    if (IsNull(buffer_[i])) {
      if (keyColumn_[i]) {
        throw vb::VbError(3058, "Index or primary key cannot contain a Null value (field '" +
                                    table + "." + column.name + "').");
      }
      if (column.required) {
        throw vb::VbError(3314, "The field '" + table + "." + column.name +
                                    "' cannot contain a Null value because the Required "
                                    "property for this field is set to True.");
      }
    } else if (dirty_[i] && IsTextType(column.type) && !column.allowZeroLength) {
      if (auto* s = std::get_if<std::string>(&buffer_[i]); s && s->empty()) {
        throw vb::VbError(
            3315, "Field '" + table + "." + column.name + "' cannot be a zero-length string.");
      }
    }
  }
  // The text of the write is built only when the columns written differ from the last one's.
  const int mode = editMode_ == dbEditInProgress ? dbEditInProgress : dbEditAdd;
  if (mode != writeMode_ || dirty_ != writeColumns_) {
    std::string sql;
    if (mode == dbEditInProgress) {
      for (size_t i = 0; i < buffer_.size(); ++i) {
        if (!dirty_[i]) continue;
        sql += sql.empty() ? "UPDATE " + QuoteName(table) + " SET " : ", ";
        sql += QuoteName(schema_->columns[i].name) + " = ?";
      }
      if (!sql.empty()) sql += " WHERE rowid = ?";
    } else {
      // The rowid: above the table's highest and above any this database has held (bound
      // first), so that a deleted row's rowid is never given again while a key set may hold it.
      std::string columns = "rowid",
                  values = "max(?, coalesce((SELECT max(rowid) FROM " + QuoteName(table) +
                           "), 0)) + 1";
      for (size_t i = 0; i < buffer_.size(); ++i) {
        if (!dirty_[i]) continue;
        columns += ", " + QuoteName(schema_->columns[i].name);
        values += ", ?";
      }
      sql = "INSERT INTO " + QuoteName(table) + "(" + columns + ") VALUES(" + values + ")";
    }
    writeSql_ = std::move(sql);
    writeColumns_ = dirty_;
    writeMode_ = mode;
  }
  // The values are bound where they stand in the buffer, which outlives the statement's run;
  // the statement is reset before the buffer goes.
  auto bindBuffer = [this](Statement& q, int index) {
    for (size_t i = 0; i < buffer_.size(); ++i)
      if (dirty_[i]) q.BindInPlace(++index, buffer_[i]);
    return index;
  };
  if (mode == dbEditInProgress) {
    if (!writeSql_.empty()) {
      {
        auto q = db_->Prepare(writeSql_);
        q->Bind(bindBuffer(*q, 0) + 1, SqlValue{editRowid_});
        q->Run();
      }
      if (sqlite3_changes(db_->handle()) == 0) RecordDeleted();
      db_->DataChanged();
      if (bufferLoaded_) KeepRow(editRowid_, std::move(buffer_));
    }
    lastModified_ = BookmarkValue{editRowid_};
  } else {
    {
      auto q = db_->Prepare(writeSql_);
      q->Bind(1, SqlValue{db_->RowidHighWater(schema_->name)});
      bindBuffer(*q, 1);
      q->Run();
    }
    int64_t rowid = sqlite3_last_insert_rowid(db_->handle());
    db_->RaiseRowidHighWater(schema_->name, rowid);
    db_->DataChanged();
    keys_->Append(rowid);
    lastModified_ = BookmarkValue{rowid};
    KeepRow(rowid, std::move(buffer_));  // what was written is the row, Null where unset
  }
  Discard();
}

void RecordsetCore::KeepRow(int64_t rowid, std::vector<SqlValue> values) {
  row_ = std::move(values);
  rowData_ = row_.data();
  rowRowid_ = rowid;
  rowVersion_ = db_->dataVersion();
}

void RecordsetCore::CancelUpdate() {
  CheckOpen();
  if (editMode_ == dbEditNone) {
    throw vb::VbError(3020, "Update or CancelUpdate without AddNew or Edit.");
  }
  Discard();
}

void RecordsetCore::Delete() {
  CheckOpen();
  db_->CheckWritable();
  size_t pos = CurrentPosition();
  Discard();
  auto q = db_->Prepare("DELETE FROM " + QuoteName(schema_->name) + " WHERE rowid = ?");
  q->Bind(1, keys_->rowid(pos));
  q->Run();
  bool gone = sqlite3_changes(db_->handle()) == 0;
  db_->DataChanged();
  keys_->MarkDeleted(pos);
  if (gone) RecordDeleted();  // someone else deleted it first
}

void RecordsetCore::Find(const std::string& criteria, FindFrom from) {
  CheckDynaset("FindFirst");
  const jet::SqlCondition& condition = db_->Criteria(*schema_, criteria);
  // The row found is read with its key: the reads that follow a find are served without
  // another query.
  const size_t width = schema_->columns.size();
  std::string sql = "SELECT rowid" + findColumns_ + " FROM " + QuoteName(schema_->name) +
                    " WHERE " + condition.sql;
  auto q = db_->Prepare(sql);
  q->BindAll(condition.params);
  std::vector<SqlValue> bestRow;
  // The bounds of the search in key set positions: (after, before).
  constexpr size_t kNone = std::numeric_limits<size_t>::max();
  size_t current = where_ == Where::On ? position_ : where_ == Where::Before ? kNone : kNone - 1;
  bool forward = from == FindFrom::First || from == FindFrom::Next;
  size_t best = kNone;
  while (q->Step()) {
    auto p = keys_->Find(q->Int(0));
    if (!p || keys_->deleted(*p)) continue;
    size_t pos = *p;
    switch (from) {
      case FindFrom::Next:
        if (where_ == Where::After) continue;
        if (where_ == Where::On && pos <= current) continue;
        break;
      case FindFrom::Previous:
        if (where_ == Where::Before) continue;
        if (where_ == Where::On && pos >= current) continue;
        break;
      default:
        break;
    }
    if (best == kNone || (forward ? pos < best : pos > best)) {
      best = pos;
      bestRow.resize(width);
      for (size_t i = 0; i < width; ++i) bestRow[i] = q->Column(static_cast<int>(i) + 1);
    }
  }
  noMatch_ = best == kNone;
  if (!noMatch_) {
    MoveTo(best);
    KeepRow(keys_->rowid(best), std::move(bestRow));
  }
}

std::string RecordsetCore::index() const {
  CheckTable("Index");
  return indexName_;
}

void RecordsetCore::SetIndex(const std::string& name) {
  CheckTable("Index");
  const IndexInfo* info = nullptr;
  if (!name.empty()) {
    info = schema_->FindIndex(name);
    if (!info) {
      throw vb::VbError(3800, "'" + name + "' is not an index in table '" + schema_->name + "'.");
    }
  }
  Discard();
  indexInfo_ = info;
  indexName_ = info ? info->name : std::string();
  keys_ = std::make_shared<KeySet>(LoadKeys());
  DropReadAhead();
  where_ = Where::Before;
  highWater_ = 0;
  if (keys_->live() > 0) MoveTo(0);
}

void RecordsetCore::Seek(const std::string& comparison, const std::vector<vb::Variant>& keys) {
  CheckTable("Seek");
  if (!indexInfo_) throw vb::VbError(3019, "Operation invalid without a current index.");
  static const char* kOps[] = {"=", ">=", ">", "<=", "<"};
  std::string op;
  for (const char* o : kOps) {
    if (comparison == o) op = o;
  }
  if (op.empty() || keys.empty() || keys.size() > indexInfo_->fields.size()) {
    throw vb::VbError(3001, "Invalid argument (Seek \"" + comparison + "\" with " +
                                std::to_string(keys.size()) + " key values on index '" +
                                indexName_ + "').");
  }
  std::string cols, marks, order;
  std::vector<SqlValue> params;
  bool backward = op[0] == '<';
  for (size_t i = 0; i < keys.size(); ++i) {
    const auto& name = indexInfo_->fields[i];
    int ordinal = schema_->Find(name);
    const auto& column = schema_->columns[static_cast<size_t>(ordinal)];
    params.push_back(ToKey(keys[i], column));
    if (i) {
      cols += ", ";
      marks += ", ";
    }
    cols += QuoteName(name);
    marks += "?";
  }
  for (const auto& name : indexInfo_->fields) {
    order += QuoteName(name) + (backward ? " DESC, " : ", ");
  }
  order += backward ? "rowid DESC" : "rowid";
  std::string where = keys.size() == 1 ? cols + " " + op + " " + marks
                                       : "(" + cols + ") " + op + " (" + marks + ")";
  std::string sql = "SELECT rowid FROM " + QuoteName(schema_->name) + " WHERE " + where +
                    " ORDER BY " + order + " LIMIT 1";
  int64_t rowid = 0;
  {
    auto q = db_->Prepare(sql);
    q->BindAll(params);
    if (q->Step()) rowid = q->Int(0);
  }
  noMatch_ = rowid == 0;
  if (noMatch_) return;
  auto p = keys_->Find(rowid);
  if (!p) {  // added by another view or process since the key set was read
    Discard();
    keys_ = std::make_shared<KeySet>(LoadKeys());
    DropReadAhead();
    where_ = Where::Before;
    p = keys_->Find(rowid);
  }
  noMatch_ = !p;
  if (p) MoveTo(*p);
}

}  // namespace detail

// The handle: every call goes to the core, which raises 3420 once the recordset is closed.

detail::RecordsetCore& Recordset::core() const {
  if (!core_) throw vb::VbError(91, "Object variable or With block variable not set");
  return *core_;
}

std::string Recordset::Name() const { return core().schema().name; }
int Recordset::Type() const { return core().type(); }
bool Recordset::Updatable() const { return core().updatable(); }
std::string Recordset::Sort() const { return core().sort(); }
void Recordset::SetSort(const std::string& sort) { core().SetSort(sort); }
std::string Recordset::Filter() const { return core().filter(); }
void Recordset::SetFilter(const std::string& filter) { core().SetFilter(filter); }
Recordset Recordset::OpenRecordset(int type) const { return core().OpenChild(type); }
Recordset Recordset::Clone() const { return core().Clone(); }
void Recordset::Requery() { core().Requery(); }
void Recordset::Close() { core().Close(); }
db::Fields Recordset::Fields() const {
  core();
  return detail::MakeRecordsetFields(core_);
}
Field Recordset::Fields(int index) const { return core().FieldAt(index); }
Field Recordset::Fields(const std::string& name) const { return core().FieldNamed(name); }
long Recordset::RecordCount() const { return core().RecordCount(); }
bool Recordset::BOF() const { return core().BOF(); }
bool Recordset::EOF_() const { return core().EOF_(); }
void Recordset::MoveFirst() { core().MoveFirst(); }
void Recordset::MoveLast() { core().MoveLast(); }
void Recordset::MoveNext() { core().MoveNext(); }
void Recordset::MovePrevious() { core().MovePrevious(); }
long Recordset::AbsolutePosition() const { return core().AbsolutePosition(); }
void Recordset::SetAbsolutePosition(long position) { core().SetAbsolutePosition(position); }
BookmarkValue Recordset::Bookmark() const { return core().Bookmark(); }
void Recordset::SetBookmark(const BookmarkValue& bookmark) { core().SetBookmark(bookmark); }
BookmarkValue Recordset::LastModified() const { return core().LastModified(); }
int Recordset::EditMode() const { return core().EditMode(); }
void Recordset::AddNew() { core().AddNew(); }
void Recordset::Edit() { core().Edit(); }
void Recordset::Update() { core().Update(); }
void Recordset::CancelUpdate() { core().CancelUpdate(); }
void Recordset::Delete() { core().Delete(); }
void Recordset::FindFirst(const std::string& c) {
  core().Find(c, detail::RecordsetCore::FindFrom::First);
}
void Recordset::FindNext(const std::string& c) {
  core().Find(c, detail::RecordsetCore::FindFrom::Next);
}
void Recordset::FindLast(const std::string& c) {
  core().Find(c, detail::RecordsetCore::FindFrom::Last);
}
void Recordset::FindPrevious(const std::string& c) {
  core().Find(c, detail::RecordsetCore::FindFrom::Previous);
}
bool Recordset::NoMatch() const { return core().NoMatch(); }
std::string Recordset::Index() const { return core().index(); }
void Recordset::SetIndex(const std::string& name) { core().SetIndex(name); }
void Recordset::Seek(const std::string& comparison, const std::vector<vb::Variant>& keys) {
  core().Seek(comparison, keys);
}

}  // namespace vellumar::db
