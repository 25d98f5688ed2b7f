#include "adif/write_batch.h"

namespace vellumar::adif {

void WriteBatch::Start(db::Database log) {
  log_ = std::move(log);
  open_ = false;
  pending_ = 0;
  committed_ = 0;
}

void WriteBatch::BeforeRecord() {
  if (!log_) return;
  if (open_) {
    const auto age = std::chrono::steady_clock::now() - openedAt_;
    if (pending_ < kRows && age < std::chrono::milliseconds(kMillis)) return;
    Commit();
  }
  log_.BeginTrans();
  open_ = true;
  openedAt_ = std::chrono::steady_clock::now();
}

void WriteBatch::AfterRecord(bool wrote) {
  if (wrote) ++pending_;
}

void WriteBatch::Commit() {
  if (!open_) return;
  log_.CommitTrans();
  open_ = false;
  committed_ += pending_;
  pending_ = 0;
}

void WriteBatch::Abandon() {
  if (!open_) return;
  open_ = false;
  pending_ = 0;
  try {
    log_.Rollback();
  } catch (...) {
    // The connection may already have ended the transaction itself.
  }
}

}  // namespace vellumar::adif
