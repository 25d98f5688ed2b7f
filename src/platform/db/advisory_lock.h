#pragma once
// The advisory lock that stands for "the file is open in another process": every open Database
// holds a shared flock() on its file, and a schema change holds it exclusive.
//
// flock, not fcntl: SQLite keeps its own POSIX (fcntl) locks on the file, which flock locks
// don't touch. Closing any descriptor of a file drops all of a process's POSIX locks on it, so
// the lock's descriptor must not be closed while SQLite still has the file open in this process:
// the descriptor is shared by all Databases of the process on that file and closed with the last.
// The lock is therefore the process's, not one Database's.
#include <string>

namespace vellumar::db::detail {

class AdvisoryLock {
 public:
  // Takes the shared lock, waiting up to a few seconds while another process holds it
  // exclusive (then 3051).
  explicit AdvisoryLock(const std::string& path);
  AdvisoryLock(const AdvisoryLock&) = delete;
  AdvisoryLock& operator=(const AdvisoryLock&) = delete;
  ~AdvisoryLock();

  // Holds the lock exclusive while it lives; 3211 (naming `what`) while another process holds
  // the file open.
  class Exclusive {
   public:
    Exclusive(const Exclusive&) = delete;
    Exclusive& operator=(const Exclusive&) = delete;
    ~Exclusive();

   private:
    friend class AdvisoryLock;
    explicit Exclusive(AdvisoryLock& lock) : lock_(lock) {}
    AdvisoryLock& lock_;
  };
  [[nodiscard]] Exclusive TakeExclusive(const std::string& what);

  struct Entry;  // the process's record of one locked file

 private:
  Entry* entry_ = nullptr;
  std::string path_;
};

}  // namespace vellumar::db::detail
