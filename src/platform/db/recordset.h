#pragma once
// Recordset: a view of one table's rows with a current position and an edit buffer.
//
// A dynaset (dbOpenDynaset) is a key set: the rowids of the rows that passed its filter when it
// was opened or requeried, in the order of its sort (ties in rowid order, so the order is
// stable). A row is read by its rowid when a field is first read after the recordset comes onto
// it (and again after any write through the same database), so edits made elsewhere are seen,
// and a row deleted elsewhere reads as deleted (3167). A table-type recordset (dbOpenTable) is the
// same over the whole table, in the order of its Index (rowid order while none is set).
// Along a walk rows are read ahead, a block of the key set's next rows in one statement; a move
// is served from the block only while nothing has been committed to the file since it was read
// (checked at every move onto another row), so a move reads what reading its row alone would.
//
// Rows added through a recordset are appended at the end of its key set, which its clones
// share; other views see them after Requery. Delete leaves a hole at the position: the position
// stays on it, reading a field raises 3167, and a move leaves it.
//
// RecordCount counts the rows visited so far (the highest position reached, plus rows added
// here), and all rows once MoveLast has run; deleted rows leave the count.
//
// Recordset is a reference, as the program's objects are: copies share one position. Clone()
// makes a second position over the same key set.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/db/dao_constants.h"
#include "platform/db/field.h"
#include "platform/vb/variant.h"

namespace vellumar::db {

namespace detail {
class RecordsetCore;
}

// A Bookmark: a row of a recordset and its clones. Compare them with ==.
struct BookmarkValue {
  int64_t rowid = 0;  // the row's rowid in its table; 0 is no row
  bool operator==(const BookmarkValue&) const = default;
  explicit operator bool() const { return rowid != 0; }
};

class Recordset {
 public:
  Recordset() = default;  // a reference to nothing; any use raises 91

  std::string Name() const;  // the table's name
  int Type() const;          // RecordsetType
  bool Updatable() const;    // false on a read-only database

  // The sort and filter of views opened from this one. Setting them changes nothing here:
  // OpenRecordset() applies them. Sort is "Field [ASC|DESC], ...", Filter a criteria
  // expression; errors in either surface at OpenRecordset as 3075.
  std::string Sort() const;
  void SetSort(const std::string& sort);
  std::string Filter() const;
  void SetFilter(const std::string& filter);
  // A new dynaset over the rows of this one that pass Filter, ordered by Sort (by this
  // recordset's own order when Sort is empty), positioned on its first row.
  Recordset OpenRecordset(int type = dbOpenDynaset) const;
  // A second position over the same key set, at no current row.
  Recordset Clone() const;
  // Builds the key set anew from the table, with the filter and sort this view was opened with,
  // and goes to the first row.
  void Requery();
  void Close();  // discards an open edit; any later use raises 3420

  // Fields of the current row.
  db::Fields Fields() const;
  Field Fields(int index) const;                // 3265 when out of range
  Field Fields(const std::string& name) const;  // case-blind; 3265 when absent

  // Position. BOF is before the first row, EOF after the last; both on an empty set.
  long RecordCount() const;
  bool BOF() const;
  bool EOF_() const;    // EOF is a macro of <cstdio>, hence the underscore
  void MoveFirst();     // 3021 on an empty set
  void MoveLast();      // 3021 on an empty set; makes RecordCount the full count
  void MoveNext();      // 3021 when already at EOF
  void MovePrevious();  // 3021 when already at BOF
  // 0-based position among the rows that are not deleted; -1 with no current row. Setting a
  // position out of range raises 3001.
  long AbsolutePosition() const;
  void SetAbsolutePosition(long position);
  BookmarkValue Bookmark() const;                   // 3021 with no current row
  void SetBookmark(const BookmarkValue& bookmark);  // 3159 when the row isn't in this set
  BookmarkValue LastModified() const;  // the row last added or updated through this recordset

  // Editing; see the state machine in recordset.cpp.
  int EditMode() const;  // EditModeValue
  void AddNew();
  void Edit();
  // Writes the edit buffer and commits it before returning. Refuses, writing nothing: "" in a
  // field without AllowZeroLength (3315), Null in a required field (3314) or a primary key
  // (3058), a duplicate in a unique index (3022). A read-only database raises 3027 already at
  // AddNew, Edit and Delete.
  void Update();
  void CancelUpdate();  // 3020 with no edit open
  void Delete();        // deletes the current row at once; 3021 with no current row

  // Criteria searches in the recordset's order; on no match NoMatch is true and the position
  // stays where it was. A dynaset only (3251 on a table-type recordset).
  void FindFirst(const std::string& criteria);
  void FindNext(const std::string& criteria);  // after the current row
  void FindLast(const std::string& criteria);
  void FindPrevious(const std::string& criteria);  // before the current row
  bool NoMatch() const;

  // Table-type recordsets only (3251 otherwise): the index that orders the rows and that Seek
  // searches; setting it goes to the first row in its order (3265 for an unknown name).
  std::string Index() const;
  void SetIndex(const std::string& name);
  // Seek with "=", ">=", ">", "<=" or "<" and one value per key field, in order (fewer values
  // match on the leading fields). Text compares without regard to case. On no match NoMatch is
  // true and the position stays. 3019 when no Index is set.
  void Seek(const std::string& comparison, const std::vector<vb::Variant>& keys);
  template <typename... Keys>
  void Seek(const std::string& comparison, const Keys&... keys) {
    Seek(comparison, std::vector<vb::Variant>{vb::Variant(keys)...});
  }

  explicit operator bool() const { return core_ != nullptr; }
  bool operator==(const Recordset& other) const { return core_ == other.core_; }

 private:
  friend class detail::RecordsetCore;
  explicit Recordset(std::shared_ptr<detail::RecordsetCore> core) : core_(std::move(core)) {}
  detail::RecordsetCore& core() const;
  std::shared_ptr<detail::RecordsetCore> core_;
};

}  // namespace vellumar::db
