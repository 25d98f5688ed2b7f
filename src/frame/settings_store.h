#pragma once
// The per-user settings store: application, section, key and a text value. Each application
// has its own file "<application>.ini" in the store's folder, so the program's settings are
// "Vellumar.ini" and a sibling's are its own ("Atlasine.ini"), read under the sibling's name.
// Sections and keys compare without regard to case; keys keep their leading blanks. Every save
// replaces the file atomically, so a crash leaves the old or the new settings, never a mixture.
#include <string>

namespace vellumar {

class SettingsStore {
 public:
  // `root` is the folder of the files; made when the first setting is saved.
  explicit SettingsStore(std::string root) : root_(std::move(root)) {}
  // $XDG_CONFIG_HOME/vellumar, else ~/.config/vellumar.
  static std::string DefaultRoot();

  // The key's value, or `defaultValue` when the file, the section or the key is missing.
  std::string GetSetting(const std::string& application, const std::string& section,
                         const std::string& key, const std::string& defaultValue) const;
  // Raises vb::VbError(75) when the file can't be written; the old settings then stand.
  void SaveSetting(const std::string& application, const std::string& section,
                   const std::string& key, const std::string& value);

  // The file that holds an application's settings.
  std::string FilePath(const std::string& application) const;
  const std::string& root() const { return root_; }

 private:
  std::string root_;  // folder of the "<application>.ini" files, without a trailing "/"
};

}  // namespace vellumar
