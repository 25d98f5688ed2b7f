#pragma once
// A failing disk for the record layer's tests: an SQLite VFS that passes every call to the
// default VFS, counts the reads, writes and syncs of the files it opens, and makes the Nth of
// one kind fail with the result code asked for (SQLITE_IOERR_* or SQLITE_FULL). Installed once
// as SQLite's default VFS, so every database the program opens goes through it; disarmed it
// only counts.
#include <string>

namespace vellumar::test {

enum class FaultKind { kRead, kWrite, kSync };

const char* FaultKindName(FaultKind kind);

class FaultVfs {
 public:
  // Registers the shim as the default VFS (once per process) and returns it.
  static FaultVfs& Install();

  // From now on, the `nth` call of `kind` (1 = the next one) fails with `code`; with
  // `persistent`, every later call of that kind fails as well (a disk that stays full).
  void Arm(FaultKind kind, long nth, int code, bool persistent = false);
  // Back to a healthy disk; the counts start again from zero.
  void Disarm();
  // Calls of `kind` since the last Arm or Disarm.
  long Count(FaultKind kind) const;
  // Whether an armed failure has been given since the last Arm.
  bool Fired() const;
};

// Arms the VFS for a scope and disarms it at the end, on every path.
class FaultScope {
 public:
  FaultScope(FaultKind kind, long nth, int code, bool persistent = false) {
    FaultVfs::Install().Arm(kind, nth, code, persistent);
  }
  FaultScope(const FaultScope&) = delete;
  FaultScope& operator=(const FaultScope&) = delete;
  ~FaultScope() { FaultVfs::Install().Disarm(); }
};

// The result of PRAGMA integrity_check on a file, opened with plain SQLite ("ok" when sound).
std::string IntegrityCheck(const std::string& path);

}  // namespace vellumar::test
