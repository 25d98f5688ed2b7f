#include "platform/db/keyset.h"

#include <algorithm>

namespace vellumar::db::detail {

KeySet::KeySet(std::vector<int64_t> rowids) : rowids_(std::move(rowids)) {
  queried_ = rowids_.size();
  ascending_ = std::is_sorted(rowids_.begin(), rowids_.end());
}

size_t KeySet::HolesBefore(size_t end) const {
  if (holeCount_ == 0) return 0;
  size_t sum = 0;
  for (size_t i = end; i > 0; i -= i & (~i + 1)) sum += fenwick_[i];
  return sum;
}

size_t KeySet::LiveBefore(size_t end) const {
  end = std::min(end, rowids_.size());
  return end - HolesBefore(end);
}

void KeySet::MarkDeleted(size_t i) {
  if (holes_.empty()) {
    holes_.assign(rowids_.size(), 0);
    fenwick_.assign(rowids_.size() + 1, 0);
  }
  if (holes_[i]) return;
  holes_[i] = 1;
  ++holeCount_;
  for (size_t j = i + 1; j < fenwick_.size(); j += j & (~j + 1)) ++fenwick_[j];
}

size_t KeySet::Append(int64_t rowid) {
  size_t pos = rowids_.size();
  if (!rowids_.empty() && rowid <= rowids_.back()) ascending_ = false;
  rowids_.push_back(rowid);
  if (!holes_.empty()) {
    holes_.push_back(0);
    // Node n covers (n - lowbit(n), n]: its sum is that of the holes in that range.
    size_t n = pos + 1;
    size_t low = n & (~n + 1);
    fenwick_.push_back(static_cast<uint32_t>(HolesBefore(n - 1) - HolesBefore(n - low)));
  }
  if (indexValid_) {
    if (index_.empty() || rowid > index_.back().first) {
      index_.emplace_back(rowid, static_cast<uint32_t>(pos));
    } else {
      indexValid_ = false;
    }
  }
  return pos;
}

std::optional<size_t> KeySet::NextLive(size_t from) const {
  for (size_t i = from; i < rowids_.size(); ++i) {
    if (!deleted(i)) return i;
  }
  return std::nullopt;
}

std::optional<size_t> KeySet::PrevLive(size_t from) const {
  if (rowids_.empty()) return std::nullopt;
  for (size_t i = std::min(from, rowids_.size() - 1) + 1; i-- > 0;) {
    if (!deleted(i)) return i;
  }
  return std::nullopt;
}

std::optional<size_t> KeySet::NthLive(size_t n) const {
  if (n >= live()) return std::nullopt;
  if (holeCount_ == 0) return n;
  // Binary search on the position: the smallest p with LiveBefore(p + 1) == n + 1.
  size_t lo = n, hi = rowids_.size() - 1;
  while (lo < hi) {
    size_t mid = lo + (hi - lo) / 2;
    if (LiveBefore(mid + 1) >= n + 1)
      hi = mid;
    else
      lo = mid + 1;
  }
  return lo;
}

void KeySet::BuildIndex() const {
  index_.clear();
  index_.reserve(rowids_.size());
  for (size_t i = 0; i < rowids_.size(); ++i) index_.emplace_back(rowids_[i], i);
  std::sort(index_.begin(), index_.end());
  indexValid_ = true;
}

std::optional<size_t> KeySet::Find(int64_t rowid) const {
  if (ascending_) {
    auto it = std::lower_bound(rowids_.begin(), rowids_.end(), rowid);
    if (it == rowids_.end() || *it != rowid) return std::nullopt;
    return static_cast<size_t>(it - rowids_.begin());
  }
  if (!indexValid_) BuildIndex();
  auto it = std::lower_bound(index_.begin(), index_.end(), std::make_pair(rowid, uint32_t{0}));
  if (it == index_.end() || it->first != rowid) return std::nullopt;
  // A rowid another program gave again after a delete may stand twice: the live one is meant.
  for (auto live = it; live != index_.end() && live->first == rowid; ++live)
    if (!deleted(live->second)) return live->second;
  return it->second;
}

}  // namespace vellumar::db::detail
