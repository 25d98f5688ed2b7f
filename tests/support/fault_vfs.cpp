#include "support/fault_vfs.h"

#include <sqlite3.h>

#include <array>
#include <atomic>
#include <cstring>

namespace vellumar::test {
namespace {

// The state of the failing disk; one per process, as SQLite's VFS list is.
struct FaultState {
  std::array<std::atomic<long>, 3> counts{};  // calls per FaultKind since Arm/Disarm
  bool armed = false;
  FaultKind kind = FaultKind::kWrite;
  long nth = 0;          // the call that fails, 1-based
  int code = SQLITE_OK;  // what it returns
  bool persistent = false;
  bool fired = false;
};

FaultState& State() {
  static FaultState state;
  return state;
}

sqlite3_vfs* Base() {
  static sqlite3_vfs* base = sqlite3_vfs_find(nullptr);
  return base;
}

// The result for a call of `kind`: SQLITE_OK to go on to the real file, or the fault.
int Tick(FaultKind kind) {
  FaultState& s = State();
  long n = ++s.counts[static_cast<int>(kind)];
  if (!s.armed || kind != s.kind) return SQLITE_OK;
  if (n == s.nth || (s.persistent && n > s.nth)) {
    s.fired = true;
    return s.code;
  }
  return SQLITE_OK;
}

// A file of the shim: our header, then the default VFS's own file object.
struct FaultFile {
  sqlite3_file base;
  sqlite3_file* real;
};

sqlite3_file* Real(sqlite3_file* f) { return reinterpret_cast<FaultFile*>(f)->real; }

int Close(sqlite3_file* f) {
  sqlite3_file* real = Real(f);
  return real->pMethods ? real->pMethods->xClose(real) : SQLITE_OK;
}
int Read(sqlite3_file* f, void* buffer, int amount, sqlite3_int64 offset) {
  if (int rc = Tick(FaultKind::kRead)) return rc;
  return Real(f)->pMethods->xRead(Real(f), buffer, amount, offset);
}
int Write(sqlite3_file* f, const void* buffer, int amount, sqlite3_int64 offset) {
  if (int rc = Tick(FaultKind::kWrite)) return rc;
  return Real(f)->pMethods->xWrite(Real(f), buffer, amount, offset);
}
int Truncate(sqlite3_file* f, sqlite3_int64 size) {
  return Real(f)->pMethods->xTruncate(Real(f), size);
}
int Sync(sqlite3_file* f, int flags) {
  if (int rc = Tick(FaultKind::kSync)) return rc;
  return Real(f)->pMethods->xSync(Real(f), flags);
}
int FileSize(sqlite3_file* f, sqlite3_int64* size) {
  return Real(f)->pMethods->xFileSize(Real(f), size);
}
int Lock(sqlite3_file* f, int level) { return Real(f)->pMethods->xLock(Real(f), level); }
int Unlock(sqlite3_file* f, int level) { return Real(f)->pMethods->xUnlock(Real(f), level); }
int CheckReservedLock(sqlite3_file* f, int* out) {
  return Real(f)->pMethods->xCheckReservedLock(Real(f), out);
}
int FileControl(sqlite3_file* f, int op, void* arg) {
  return Real(f)->pMethods->xFileControl(Real(f), op, arg);
}
int SectorSize(sqlite3_file* f) { return Real(f)->pMethods->xSectorSize(Real(f)); }
int DeviceCharacteristics(sqlite3_file* f) {
  return Real(f)->pMethods->xDeviceCharacteristics(Real(f));
}
int ShmMap(sqlite3_file* f, int region, int size, int extend, void volatile** out) {
  return Real(f)->pMethods->xShmMap(Real(f), region, size, extend, out);
}
int ShmLock(sqlite3_file* f, int offset, int n, int flags) {
  return Real(f)->pMethods->xShmLock(Real(f), offset, n, flags);
}
void ShmBarrier(sqlite3_file* f) { Real(f)->pMethods->xShmBarrier(Real(f)); }
int ShmUnmap(sqlite3_file* f, int deleteFlag) {
  return Real(f)->pMethods->xShmUnmap(Real(f), deleteFlag);
}
int Fetch(sqlite3_file* f, sqlite3_int64 offset, int amount, void** out) {
  // No memory-mapped reads: every read goes through Read, where it is counted.
  *out = nullptr;
  return SQLITE_OK;
}
int Unfetch(sqlite3_file* f, sqlite3_int64 offset, void* page) { return SQLITE_OK; }

const sqlite3_io_methods kMethods = {
    3,
    Close,
    Read,
    Write,
    Truncate,
    Sync,
    FileSize,
    Lock,
    Unlock,
    CheckReservedLock,
    FileControl,
    SectorSize,
    DeviceCharacteristics,
    ShmMap,
    ShmLock,
    ShmBarrier,
    ShmUnmap,
    Fetch,
    Unfetch,
};

int Open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  auto* f = reinterpret_cast<FaultFile*>(file);
  f->base.pMethods = nullptr;
  f->real = reinterpret_cast<sqlite3_file*>(f + 1);
  std::memset(f->real, 0, static_cast<size_t>(Base()->szOsFile));
  int rc = Base()->xOpen(Base(), name, f->real, flags, outFlags);
  if (rc == SQLITE_OK && f->real->pMethods) f->base.pMethods = &kMethods;
  return rc;
}
int Delete(sqlite3_vfs*, const char* name, int syncDir) {
  return Base()->xDelete(Base(), name, syncDir);
}
int Access(sqlite3_vfs*, const char* name, int flags, int* out) {
  return Base()->xAccess(Base(), name, flags, out);
}
int FullPathname(sqlite3_vfs*, const char* name, int n, char* out) {
  return Base()->xFullPathname(Base(), name, n, out);
}
void* DlOpen(sqlite3_vfs*, const char* name) { return Base()->xDlOpen(Base(), name); }
void DlError(sqlite3_vfs*, int n, char* out) { Base()->xDlError(Base(), n, out); }
void (*DlSym(sqlite3_vfs*, void* handle, const char* symbol))(void) {
  return Base()->xDlSym(Base(), handle, symbol);
}
void DlClose(sqlite3_vfs*, void* handle) { Base()->xDlClose(Base(), handle); }
int Randomness(sqlite3_vfs*, int n, char* out) { return Base()->xRandomness(Base(), n, out); }
int Sleep(sqlite3_vfs*, int micro) { return Base()->xSleep(Base(), micro); }
int CurrentTime(sqlite3_vfs*, double* out) { return Base()->xCurrentTime(Base(), out); }
int GetLastError(sqlite3_vfs*, int n, char* out) {
  return Base()->xGetLastError ? Base()->xGetLastError(Base(), n, out) : 0;
}
int CurrentTimeInt64(sqlite3_vfs*, sqlite3_int64* out) {
  return Base()->xCurrentTimeInt64(Base(), out);
}

}  // namespace

const char* FaultKindName(FaultKind kind) {
  switch (kind) {
    case FaultKind::kRead:
      return "read";
    case FaultKind::kWrite:
      return "write";
    case FaultKind::kSync:
      return "sync";
  }
  return "?";
}

FaultVfs& FaultVfs::Install() {
  static FaultVfs* instance = [] {
    static sqlite3_vfs vfs{};
    sqlite3_initialize();
    sqlite3_vfs* base = Base();
    vfs.iVersion = 2;
    vfs.szOsFile = static_cast<int>(sizeof(FaultFile)) + base->szOsFile;
    vfs.mxPathname = base->mxPathname;
    vfs.zName = "vellumar-fault";
    vfs.xOpen = Open;
    vfs.xDelete = Delete;
    vfs.xAccess = Access;
    vfs.xFullPathname = FullPathname;
    vfs.xDlOpen = DlOpen;
    vfs.xDlError = DlError;
    vfs.xDlSym = DlSym;
    vfs.xDlClose = DlClose;
    vfs.xRandomness = Randomness;
    vfs.xSleep = Sleep;
    vfs.xCurrentTime = CurrentTime;
    vfs.xGetLastError = GetLastError;
    vfs.xCurrentTimeInt64 = CurrentTimeInt64;
    sqlite3_vfs_register(&vfs, 1);
    return new FaultVfs;
  }();
  return *instance;
}

void FaultVfs::Arm(FaultKind kind, long nth, int code, bool persistent) {
  FaultState& s = State();
  for (auto& c : s.counts) c = 0;
  s.kind = kind;
  s.nth = nth;
  s.code = code;
  s.persistent = persistent;
  s.fired = false;
  s.armed = true;
}

void FaultVfs::Disarm() {
  FaultState& s = State();
  s.armed = false;
  for (auto& c : s.counts) c = 0;
}

long FaultVfs::Count(FaultKind kind) const { return State().counts[static_cast<int>(kind)]; }

bool FaultVfs::Fired() const { return State().fired; }

std::string IntegrityCheck(const std::string& path) {
  sqlite3* db = nullptr;
  std::string result;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    result = std::string("cannot open: ") + sqlite3_errmsg(db);
  } else {
    sqlite3_stmt* q = nullptr;
    if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &q, nullptr) != SQLITE_OK) {
      result = std::string("cannot check: ") + sqlite3_errmsg(db);
    }
    while (q && sqlite3_step(q) == SQLITE_ROW) {
      if (!result.empty()) result += "; ";
      result += reinterpret_cast<const char*>(sqlite3_column_text(q, 0));
    }
    sqlite3_finalize(q);
  }
  sqlite3_close(db);
  return result;
}

}  // namespace vellumar::test
