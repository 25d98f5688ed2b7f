#pragma once
// The key set of a dynaset: the rowids of its rows in the recordset's order. A recordset and its
// clones share one. Deleted rows stay as holes so that positions (and other clones' positions)
// keep their meaning; a Fenwick tree over the holes gives positions among the rows left.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace vellumar::db::detail {

class KeySet {
 public:
  explicit KeySet(std::vector<int64_t> rowids);

  size_t size() const { return rowids_.size(); }
  size_t queriedSize() const { return queried_; }  // entries from the query; the rest were added
  int64_t rowid(size_t i) const { return rowids_[i]; }
  bool deleted(size_t i) const { return !holes_.empty() && holes_[i]; }
  size_t live() const { return rowids_.size() - holeCount_; }
  // Live entries in [0, end).
  size_t LiveBefore(size_t end) const;

  void MarkDeleted(size_t i);
  size_t Append(int64_t rowid);  // a row added through the recordset; returns its position

  std::optional<size_t> NextLive(size_t from) const;  // first live position >= from
  std::optional<size_t> PrevLive(size_t from) const;  // last live position <= from
  std::optional<size_t> NthLive(size_t n) const;      // the live entry with n live ones before it
  // The position of a rowid, deleted or not.
  std::optional<size_t> Find(int64_t rowid) const;

 private:
  void BuildIndex() const;
  size_t HolesBefore(size_t end) const;  // Fenwick prefix sum

  std::vector<int64_t> rowids_;    // position -> rowid
  size_t queried_ = 0;             // entries that came from the query
  std::vector<uint8_t> holes_;     // position -> 1 when deleted; empty while nothing is deleted
  std::vector<uint32_t> fenwick_;  // Fenwick tree over holes_, 1-based
  size_t holeCount_ = 0;
  bool ascending_ = true;  // rowids_ ascending: Find is a binary search on it
  mutable std::vector<std::pair<int64_t, uint32_t>> index_;  // rowid -> position, sorted
  mutable bool indexValid_ = false;
};

}  // namespace vellumar::db::detail
