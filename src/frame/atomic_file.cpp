#include "frame/atomic_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "platform/vb/error.h"

namespace vellumar {
namespace {

std::string FolderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Closes a descriptor on every path out.
struct FdGuard {
  int fd = -1;
  ~FdGuard() {
    if (fd >= 0) close(fd);
  }
};

void Fail(const std::string& path, const char* what) {
  throw vb::VbError(vb::kPathFileAccessError,
                    std::string("Path/File access error: ") + what + " " + path);
}

}  // namespace

std::string AtomicTemporaryName(const std::string& path, long pid) {
  const std::string folder = FolderOf(path);
  return (folder == "/" ? "" : folder) + "/." + NameOf(path) + "." + std::to_string(pid) + ".tmp";
}

void WriteFileAtomically(const std::string& path, const std::string& content, int mode) {
  const std::string temporary = AtomicTemporaryName(path, static_cast<long>(getpid()));
  {
    FdGuard file{open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode)};
    if (file.fd < 0) Fail(path, "cannot create a temporary file for");
    if (!WriteAll(file.fd, content) || fsync(file.fd) != 0) {
      unlink(temporary.c_str());
      Fail(path, "cannot write");
    }
    if (close(file.fd) != 0) {
      file.fd = -1;
      unlink(temporary.c_str());
      Fail(path, "cannot write");
    }
    file.fd = -1;
  }
  MoveIntoPlace(temporary, path);
}

void MoveIntoPlace(const std::string& temporary, const std::string& path) {
  if (rename(temporary.c_str(), path.c_str()) != 0) {
    unlink(temporary.c_str());
    Fail(path, "cannot replace");
  }
  // The rename itself reaches the disk with the folder's entry.
  FdGuard folder{open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
  if (folder.fd >= 0) fsync(folder.fd);
}

void RemoveStaleTemporaries(const std::string& path) {
  const std::string folder = FolderOf(path);
  const std::string prefix = "." + NameOf(path) + ".";
  DIR* dir = opendir(folder.c_str());
  if (dir == nullptr) return;
  while (const dirent* entry = readdir(dir)) {
    const std::string_view name = entry->d_name;
    if (name.size() <= prefix.size() + 4 || name.substr(0, prefix.size()) != prefix ||
        name.substr(name.size() - 4) != ".tmp") {
      continue;
    }
    const std::string digits(name.substr(prefix.size(), name.size() - prefix.size() - 4));
    char* end = nullptr;
    const long pid = std::strtol(digits.c_str(), &end, 10);
    if (digits.empty() || *end != '\0' || pid <= 0) continue;
    if (kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH) {
      unlink((folder + "/" + std::string(name)).c_str());
    }
  }
  closedir(dir);
}

bool WriteAll(int fd, const std::string& content) {
  std::size_t done = 0;
  while (done < content.size()) {
    const ssize_t n = write(fd, content.data() + done, content.size() - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    done += static_cast<std::size_t>(n);
  }
  return true;
}

}  // namespace vellumar
