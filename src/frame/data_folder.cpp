#include "frame/data_folder.h"

#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>

namespace vellumar {
namespace {

std::string WithoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

// base + "/" + relative, without doubling the root's "/".
std::string Under(const std::string& base, const std::string& relative) {
  const std::string trimmed = WithoutTrailingSlashes(base);
  return (trimmed == "/" ? std::string() : trimmed) + "/" + relative;
}

}  // namespace

std::string HomeFolder() {
  const char* home = getenv("HOME");
  if (home != nullptr && *home != '\0') return home;
  if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr) {
    return entry->pw_dir;
  }
  return "/";
}

DataFolder DataFolder::FromEnvironment() {
  const char* own = getenv("VELLUMAR_HOME");
  if (own != nullptr && *own != '\0') return DataFolder(WithoutTrailingSlashes(own));
  // The base directory standard ignores a relative XDG_DATA_HOME.
  const char* xdg = getenv("XDG_DATA_HOME");
  if (xdg != nullptr && xdg[0] == '/') {
    return DataFolder(Under(xdg, "vellumar"));
  }
  return DataFolder(Under(HomeFolder(), ".local/share/vellumar"));
}

bool DataFolder::EnsureCreated() const {
  std::error_code ec;
  std::filesystem::create_directories(path_, ec);
  bool ok = std::filesystem::is_directory(path_, ec);
  for (const char* sub : kSubfolders) {
    const std::string folder = Join(sub);
    std::filesystem::create_directories(folder, ec);
    ok = std::filesystem::is_directory(folder, ec) && ok;
  }
  return ok;
}

}  // namespace vellumar
