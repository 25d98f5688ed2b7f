#include "station/installed_files.h"

#include <filesystem>

namespace vellumar {

std::string InstalledDataFolder() {
  std::error_code ec;
  std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  if (ec) return "data";
  return (exe.parent_path().parent_path() / "data").lexically_normal().string();
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
