#include "platform/db/advisory_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/vb/error.h"

namespace vellumar::db::detail {

// One per file (device and inode) open in this process.
struct AdvisoryLock::Entry {
  std::pair<dev_t, ino_t> key;
  int fd = -1;             // O_RDONLY descriptor that carries the flock
  int holders = 0;         // Databases of this process holding the file open
  int exclusiveDepth = 0;  // nested schema changes in progress
};

namespace {

// The process's table of locked files. A process-wide table is the nature of the thing: the
// lock and its descriptor belong to the process (see the header).
std::mutex& TableMutex() {
  static std::mutex m;
  return m;
}
std::map<std::pair<dev_t, ino_t>, AdvisoryLock::Entry*>& Table() {
  static std::map<std::pair<dev_t, ino_t>, AdvisoryLock::Entry*> t;
  return t;
}

// Takes the shared lock, retrying while another process holds it exclusive.
bool TakeShared(int fd) {
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  for (;;) {
    if (flock(fd, LOCK_SH | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK && errno != EINTR) return false;
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

}  // namespace

AdvisoryLock::AdvisoryLock(const std::string& path) : path_(path) {
  int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    throw vb::VbError(3051, "The database engine could not open the file '" + path +
                                "': " + std::strerror(errno));
  }
  struct stat st {};
  fstat(fd, &st);
  std::lock_guard<std::mutex> guard(TableMutex());
  auto key = std::make_pair(st.st_dev, st.st_ino);
  auto it = Table().find(key);
  if (it != Table().end()) {
    close(fd);  // the file is already open here; SQLite has no POSIX locks through this fd
    entry_ = it->second;
    ++entry_->holders;
    return;
  }
  if (!TakeShared(fd)) {
    close(fd);
    throw vb::VbError(3051, "The database engine could not open the file '" + path +
                                "'. It is already opened exclusively by another process.");
  }
  entry_ = new Entry{key, fd, 1, 0};
  Table().emplace(key, entry_);
}

AdvisoryLock::~AdvisoryLock() {
  std::lock_guard<std::mutex> guard(TableMutex());
  if (--entry_->holders == 0) {
    // The owner closed its SQLite connection first, so no POSIX lock of SQLite's is lost here.
    flock(entry_->fd, LOCK_UN);
    close(entry_->fd);
    Table().erase(entry_->key);
    delete entry_;
  }
}

AdvisoryLock::Exclusive AdvisoryLock::TakeExclusive(const std::string& what) {
  std::lock_guard<std::mutex> guard(TableMutex());
  if (entry_->exclusiveDepth == 0) {
    if (flock(entry_->fd, LOCK_EX | LOCK_NB) != 0) {
      // Linux drops the shared lock when a conversion fails: take it again.
      TakeShared(entry_->fd);
      throw vb::VbError(3211, "The database engine could not lock table '" + what +
                                  "' because it is already in use by another person or "
                                  "process (" +
                                  path_ + " is open elsewhere).");
    }
  }
  ++entry_->exclusiveDepth;
  return Exclusive(*this);
}

AdvisoryLock::Exclusive::~Exclusive() {
  std::lock_guard<std::mutex> guard(TableMutex());
  if (--lock_.entry_->exclusiveDepth == 0) flock(lock_.entry_->fd, LOCK_SH);
}

}  // namespace vellumar::db::detail
