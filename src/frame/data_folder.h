#pragma once
// The program's own folder: the per-user data folder where the logs, reports, backups, help
// pages and ErrorLog.txt live. It is "the application directory" wherever the program speaks
// of one.
#include <array>
#include <string>

namespace vellumar {

class DataFolder {
 public:
  static constexpr std::array<const char*, 4> kSubfolders = {"Databases", "Reports", "Backups",
                                                             "Help"};

  explicit DataFolder(std::string path) : path_(std::move(path)) {}
  // $VELLUMAR_HOME if set, else $XDG_DATA_HOME/vellumar, else ~/.local/share/vellumar.
  static DataFolder FromEnvironment();

  // Without a trailing "/".
  const std::string& path() const { return path_; }
  // path() + "/" + name
  std::string Join(const std::string& name) const { return path_ + "/" + name; }

  // Makes the folder and its subfolders where missing; false if one can't be made.
  bool EnsureCreated() const;

 private:
  std::string path_;  // absolute unless the environment named a relative one
};

// The user's home folder: $HOME, else the password database's entry.
std::string HomeFolder();

}  // namespace vellumar
