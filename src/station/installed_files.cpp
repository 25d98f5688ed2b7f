#include "station/installed_files.h"

#include <algorithm>
#include <filesystem>

// The installed data folder as a path from the folder of the executables (set by the build
// from the install directories; "../share/vellumar" for the usual layout).
#ifndef VELLUMAR_INSTALLED_DATA_FROM_BIN
#define VELLUMAR_INSTALLED_DATA_FROM_BIN "../share/vellumar"
#endif

namespace vellumar {

std::string InstalledDataFolder() {
  std::error_code ec;
  std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  if (ec) return "data";
  return InstalledDataFolderFor(exe.string());
}

std::string InstalledDataFolderFor(const std::string& executable) {
  namespace fs = std::filesystem;
  const fs::path bin = fs::path(executable).parent_path();
  std::error_code ec;
  const fs::path installed = (bin / VELLUMAR_INSTALLED_DATA_FROM_BIN).lexically_normal();
  if (fs::is_directory(installed, ec)) return installed.string();
  return (bin.parent_path() / "data").lexically_normal().string();
}

std::vector<InstalledFile> InstalledFolderFiles(const std::string& installedFolder,
                                                const std::string& folder) {
  namespace fs = std::filesystem;
  std::vector<InstalledFile> files;
  const fs::path root(installedFolder);
  std::error_code ec;
  fs::recursive_directory_iterator it(root / folder, ec), end;
  for (; !ec && it != end; it.increment(ec)) {
    std::error_code fileEc;
    if (!it->is_regular_file(fileEc)) continue;
    const std::string relative = it->path().lexically_relative(root).generic_string();
    if (!relative.empty()) files.push_back({relative, relative});
  }
  std::sort(files.begin(), files.end(),
            [](const InstalledFile& a, const InstalledFile& b) { return a.data < b.data; });
  return files;
}

const std::vector<InstalledFile>& StationInstalledFiles() {
  static const std::vector<InstalledFile> files = {
      {"DXCC.vdb", "Databases/DXCC.vdb"},
      // Its tables' compact form, made at the build: used while the copy has its bytes.
      {"DXCC.vdb.lookup", "Databases/DXCC.vdb.lookup"},
      {"Bands.txt", "Databases/Bands.txt"},
  };
  return files;
}

std::vector<std::string> CopyInstalledFilesWhenMissing(const std::string& installedFolder,
                                                       const std::string& dataFolder,
                                                       const std::vector<InstalledFile>& files) {
  namespace fs = std::filesystem;
  std::vector<std::string> copied;
  for (const InstalledFile& file : files) {
    std::error_code ec;
    fs::path target = fs::path(dataFolder) / file.data;
    fs::path source = fs::path(installedFolder) / file.installed;
    if (fs::exists(target, ec) || !fs::is_regular_file(source, ec)) continue;
    fs::create_directories(target.parent_path(), ec);
    // Copy beside the target, then rename, so that a half-written file is never found.
    fs::path partial = target;
    partial += ".partial";
    if (!fs::copy_file(source, partial, fs::copy_options::overwrite_existing, ec)) continue;
    fs::rename(partial, target, ec);
    if (ec) {
      fs::remove(partial, ec);
      continue;
    }
    copied.push_back(file.data);
  }
  return copied;
}

}  // namespace vellumar
