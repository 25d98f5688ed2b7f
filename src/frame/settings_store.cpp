#include "frame/settings_store.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

#include "frame/atomic_file.h"
#include "frame/data_folder.h"
#include "frame/settings_document.h"
#include "platform/vb/error.h"

namespace vellumar {
namespace {

// The file's content; "" when there is no file; nullopt when there is one that can't be read.
std::optional<std::string> ReadWhole(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    std::error_code ec;
    if (std::filesystem::exists(path, ec) || ec) return std::nullopt;
    return std::string();
  }
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

}  // namespace

std::string SettingsStore::DefaultRoot() {
  const char* xdg = getenv("XDG_CONFIG_HOME");
  std::string base = xdg != nullptr && xdg[0] == '/' ? xdg : HomeFolder() + "/.config";
  while (base.size() > 1 && base.back() == '/') base.pop_back();
  return (base == "/" ? "" : base) + "/vellumar";
}

std::string SettingsStore::FilePath(const std::string& application) const {
  std::string name = application;
  for (char& c : name) {
    if (c == '/' || c == '\0') c = '-';  // one file per name, always inside the folder
  }
  return root_ + "/" + name + ".ini";
}

std::string SettingsStore::GetSetting(const std::string& application, const std::string& section,
                                      const std::string& key,
                                      const std::string& defaultValue) const {
  const auto text = ReadWhole(FilePath(application));
  const auto value = SettingsDocument::Parse(text.value_or("")).Get(section, key);
  return value ? *value : defaultValue;
}

void SettingsStore::SaveSetting(const std::string& application, const std::string& section,
                                const std::string& key, const std::string& value) {
  std::error_code ec;
  std::filesystem::create_directories(root_, ec);
  const std::string path = FilePath(application);
  // Settings that can't be read must not be replaced by the one key being saved.
  const auto text = ReadWhole(path);
  if (!text) throw vb::VbError(vb::kPathFileAccessError, "Path/File access error: " + path);
  SettingsDocument doc = SettingsDocument::Parse(*text);
  doc.Set(section, key, value);
  RemoveStaleTemporaries(path);
  WriteFileAtomically(path, doc.Serialize());
}

}  // namespace vellumar
