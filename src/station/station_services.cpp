#include "station/station_services.h"

#include "frame/common.h"
#include "frame/settings_store.h"

namespace vellumar {

StationServices MakeStationServices(Common& common, const SettingsStore& settings,
                                    ui::Desktop& desktop) {
  StationServices s;
  s.programFolder = common.ApplicationDirectory();
  s.GetSetting = [&settings](const std::string& application, const std::string& section,
                             const std::string& key, const std::string& defaultValue) {
    return settings.GetSetting(application, section, key, defaultValue);
  };
  s.WriteErrorLog = [&common](const std::string& text) { common.WriteErrorLog(text); };
  s.ReportError = [&common](int number, const std::string& where) {
    common.ReportError(number, where);
  };
  s.desktop = &desktop;
  return s;
}

}  // namespace vellumar
