#pragma once
// What the station modules need from the program around them, handed in by the application
// object so that a test can build the modules with fakes.
#include <functional>
#include <stdexcept>
#include <string>

namespace vellumar {

namespace ui {
class Desktop;
}

struct StationServices {
  // The per-user data folder (no trailing "/"): Databases/ lives below it.
  std::string programFolder;
  // GetSetting(application, section, key, default) of the settings store.
  std::function<std::string(const std::string& application, const std::string& section,
                            const std::string& key, const std::string& defaultValue)>
      GetSetting;
  // Plain notes to the error log.
  std::function<void(const std::string& text)> WriteErrorLog;
  // The failure tail's reporter: error number and "Module.Procedure".
  std::function<void(int number, const std::string& where)> ReportError;
  // Message boxes.
  ui::Desktop* desktop = nullptr;
};

// Raised where the program must end at once, without the orderly shut-down (a missing DXCC
// database). The application object turns it into the end of the process; tests observe it.
class ProgramTermination : public std::runtime_error {
 public:
  explicit ProgramTermination(const std::string& why) : std::runtime_error(why) {}
};

}  // namespace vellumar

namespace vellumar {

class Common;
class SettingsStore;

// The services as the running program has them: the data folder, error log and reporters of
// Common, the settings store, the desktop.
StationServices MakeStationServices(Common& common, const SettingsStore& settings,
                                    ui::Desktop& desktop);

}  // namespace vellumar
