#pragma once
// Grouped writes for a long walk over the log: the writes of several records go to the file in
// one commit, every kRows records or kMillis milliseconds, and on every path that ends the walk.
// A record's writes (a QSO and its Progress count) always fall into one batch, since a batch is
// only ever closed between records.
#include <chrono>

#include "platform/db/database.h"

namespace vellumar::adif {

class WriteBatch {
 public:
  static constexpr long kRows = 500;
  static constexpr long kMillis = 100;

  // A new walk on `log`; nothing is open yet.
  void Start(db::Database log);
  // Before a record's writes: commits the open batch when it is full or old enough, and opens
  // one when none is. A refused commit raises the disk's error; the batch stays open then.
  void BeforeRecord();
  // After a record: `wrote` counts it among the batch's rows.
  void AfterRecord(bool wrote);
  // Commits the open batch, if any. A refused commit raises its error.
  void Commit();
  // Drops the open batch after a refused commit, so that the log is usable again.
  void Abandon();
  bool Open() const { return open_; }
  // Rows of this walk in the file: those of the batches committed.
  long CommittedRows() const { return committed_; }
  long PendingRows() const { return pending_; }

 private:
  db::Database log_;
  bool open_ = false;
  long pending_ = 0;
  long committed_ = 0;
  std::chrono::steady_clock::time_point openedAt_{};
};

}  // namespace vellumar::adif
