#pragma once
// The state behind a Recordset handle: its key set, position, edit buffer and row cache.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/db/database_core.h"
#include "platform/db/field.h"
#include "platform/db/jet_sql.h"
#include "platform/db/keyset.h"
#include "platform/db/recordset.h"
#include "platform/db/schema.h"

namespace vellumar::db::detail {

class RecordsetCore : public std::enable_shared_from_this<RecordsetCore> {
 public:
  // Opens a recordset on a table: a dynaset with a condition and an order (an ORDER BY list
  // without the tie-break on rowid; empty for rowid order), or a table-type recordset.
  static Recordset Open(std::shared_ptr<DatabaseCore> db, std::shared_ptr<const TableSchema> schema,
                        int type, jet::SqlCondition filter, std::string order);

  RecordsetCore(const RecordsetCore&) = delete;
  RecordsetCore& operator=(const RecordsetCore&) = delete;

  // Called by the database when it closes.
  void Detach();

  const TableSchema& schema() const { return *schema_; }
  int type() const { return type_; }
  bool updatable() const;

  std::string sort() const { return sortProperty_; }
  void SetSort(const std::string& sort);
  std::string filter() const { return filterProperty_; }
  void SetFilter(const std::string& filter);
  Recordset OpenChild(int type);
  Recordset Clone();
  void Requery();
  void Close();

  int FieldCount() const { return static_cast<int>(fields_.size()); }
  Field FieldAt(int ordinal) const;
  Field FieldNamed(const std::string& name) const;
  vb::Variant Value(int ordinal);
  void SetValue(int ordinal, const vb::Variant& value);

  long RecordCount() const;
  bool BOF() const;
  bool EOF_() const;
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  long AbsolutePosition() const;
  void SetAbsolutePosition(long position);
  BookmarkValue Bookmark() const;
  void SetBookmark(const BookmarkValue& bookmark);
  BookmarkValue LastModified() const { return lastModified_; }

  int EditMode() const { return editMode_; }
  void AddNew();
  void Edit();
  void Update();
  void CancelUpdate();
  void Delete();

  enum class FindFrom { First, Next, Last, Previous };
  void Find(const std::string& criteria, FindFrom from);
  bool NoMatch() const { return noMatch_; }

  std::string index() const;
  void SetIndex(const std::string& name);
  void Seek(const std::string& comparison, const std::vector<vb::Variant>& keys);

 private:
  RecordsetCore() = default;
  void CheckOpen() const;
  void CheckDynaset(const char* what) const;
  void CheckTable(const char* what) const;
  std::vector<int64_t> LoadKeys() const;
  std::string EffectiveOrder() const;
  // The current row's position, or 3021 with none, 3167 when it is deleted.
  size_t CurrentPosition() const;
  // The current row's values, in column order: in the row cache or in the read-ahead block.
  const SqlValue* CurrentRow();
  void ForgetRow();  // the next read of a field reads the row again
  // Reads the rows of the key set around position (the current row's) into ahead_, in one
  // statement.
  void ReadAhead(size_t position);
  void DropReadAhead();
  void MoveTo(size_t position);
  void Discard();  // drops an open edit, as any move does
  void LoadBuffer();
  void KeepRow(int64_t rowid,
               std::vector<SqlValue> values);  // the row as just written  // reads the edited row
                                               // into the fields of the buffer not yet set
  void BuildFields();

  std::shared_ptr<DatabaseCore> db_;
  std::shared_ptr<const TableSchema> schema_;
  int type_ = dbOpenDynaset;
  bool closed_ = false;

  // What this view was opened with, for Requery and for views opened from it.
  jet::SqlCondition filter_;              // rows of this view
  std::string order_;                     // ORDER BY list of a dynaset, without the rowid tie-break
  const IndexInfo* indexInfo_ = nullptr;  // table-type: the current Index, or none
  std::string indexName_;

  // Properties for the views opened from this one.
  std::string sortProperty_;
  std::string filterProperty_;

  // Position. Before the first row, on the row at position_ (which may be deleted), or after the
  // last row.
  enum class Where { Before, On, After };
  std::shared_ptr<KeySet> keys_;
  Where where_ = Where::Before;
  size_t position_ = 0;        // key set position when where_ is On
  size_t highWater_ = 0;       // one past the highest position visited
  bool fullyCounted_ = false;  // MoveLast has run (RecordCount is exact)

  // Edit buffer.
  int editMode_ = dbEditNone;
  std::vector<SqlValue> buffer_;  // the row being edited or added, in column order
  std::vector<bool> dirty_;       // columns set since Edit or AddNew
  int64_t editRowid_ = 0;         // the row Edit copied
  // The statement text of the last write and the columns it named: a walk that writes the same
  // columns row after row builds it once.
  std::string writeSql_;
  std::vector<bool> writeColumns_;
  int writeMode_ = 0;
  bool bufferLoaded_ = false;     // Edit: the row's values are in the buffer
  BookmarkValue lastModified_;
  bool noMatch_ = false;

  // Row cache: the current row as last read, in row_ or in the read-ahead block, where a walk's
  // rows are read without a copy.
  std::vector<SqlValue> row_;          // a row read alone, or as just written
  const SqlValue* rowData_ = nullptr;  // the row's values; nullptr when none is held
  int64_t rowRowid_ = 0;               // rowid of the row held; 0 when none
  uint64_t rowVersion_ = 0;            // the database's data version when it was read

  // Read-ahead: the rows of a run of key set positions, read in one statement when the current
  // row wasn't among them, and served to the moves that follow. A row is served from it only
  // while nothing has been committed to the file since it was read: neither through this
  // database (dataVersion) nor by another connection or process (the file's version, read again
  // at every move onto another row), so that a move reads what a read of the single row would
  // read at that moment.
  struct ReadAheadBlock {
    bool filled = false;           // holds the rows of the positions below
    size_t start = 0;              // key set position of rowids[0]
    std::vector<int64_t> rowids;   // the rowids asked for, position by position
    std::vector<int32_t> slots;    // where each one's row is in values; -1 when the row is gone
    std::vector<SqlValue> values;  // the rows read, one after another, columns in order
    uint64_t version = 0;          // the database's data version when read
    FileStamp stamp;               // the file as it stood when read; not taken: not to be served
    size_t served = 0;             // moves served from it
    bool Holds(size_t position) const {
      return filled && position >= start && position - start < rowids.size();
    }
  };
  ReadAheadBlock ahead_;
  size_t aheadWindow_ = 1;                 // size of the last block read: grows along a walk
  size_t lastRead_ = SIZE_MAX;             // key set position of the row read last
  std::vector<std::string> readAheadSql_;  // by log2 of the block size, built when first needed
  std::string readRangeSql_;  // the block's rows by a range of rowids, built when first needed
  std::vector<std::pair<int64_t, int32_t>> readAheadOrder_;  // (rowid, index) of a block, sorted

  std::string selectRowSql_;  // SELECT <columns> FROM <table> WHERE rowid = ?
  std::string findColumns_;   // ", <column>" for each column, in order
  std::vector<Field> fields_;
  std::vector<bool> keyColumn_;  // columns of a primary index: Null refused
};

}  // namespace vellumar::db::detail
