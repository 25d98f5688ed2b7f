#pragma once
// The Log page's side of the program: the central module, the main window and the forms it loads
// beside itself, with the services below them that they use. The program builds one over what it
// owns below; the windows here reach each other, and those services, through it. It is also what
// the configuration window tells when an option changes.
#include <functional>
#include <string>
#include <vector>

#include "config/configuration.h"
#include "config/setting_keys.h"
#include "config/vellum_setup.h"
#include "frame/common.h"
#include "frame/settings_store.h"
#include "interop/trailmark_queries.h"
#include "logpage/dxcc_summary.h"
#include "logpage/sibling_links.h"
#include "logpage/side_forms.h"
#include "logpage/vellum_main.h"
#include "logpage/vellum_module.h"
#include "logstore/log_schema.h"
#include "platform/link/endpoint.h"
#include "platform/services/desktop.h"
#include "platform/services/event_loop.h"
#include "qsl/qsl_queue.h"
#include "station/band_table.h"
#include "station/dxcc_module.h"
#include "station/lookup_slots.h"

namespace vellumar {

// What the Log page uses of the program below it.
struct LogPageServices {
  ui::EventLoop& loop;
  ui::Desktop& desktop;
  SettingsStore& settings;
  Common& common;
  LookupSlots& lookupSlots;
  DXCCModule& dxcc;
  BandTable& bands;
  logstore::LogSchema& logSchema;
  QSLQueue& qslQueue;
  VellumSetup& setup;                        // loaded and unloaded by the main window
  std::function<void(int code)> endProcess;  // ends the process: Form_Unload's last step
  // The program's place on the transport to the siblings; null when there is none.
  link::LinkEndpoint* linkEndpoint = nullptr;
};

// The services are its base, so that the windows here read them as page_.loop, page_.dxcc...
class LogPage final : public LogPageServices, public ConfigObserver {
 public:
  explicit LogPage(LogPageServices services);
  ~LogPage() override;
  LogPage(const LogPage&) = delete;
  LogPage& operator=(const LogPage&) = delete;

  const Configuration& config;  // the options, as the configuration window holds them

  VellumModule module;
  VellumMain main;
  Capture capture;
  CardPage cardPage;
  AdvancedFilter advancedFilter;
  AddressEditor addressEditor;
  interop::TrailmarkQueries trailmark;  // questions for the QSL route program
  DXCCSummary dxccSummary;  // loaded on first use
  SiblingLinks siblings;    // the conversations with the sibling programs

  // The configuration window itself, for its load and unload, its pages and its layout table.
  VellumSetup& setup() { return LogPageServices::setup; }
  // The windows loaded now, in the order the program loads them.
  std::vector<ui::Form*> LoadedForms();

  std::string DatabasesFolder() const { return common.ApplicationDirectory() + "/Databases"; }
  // Settings of this program, under its title.
  std::string GetSetting(const std::string& section, const std::string& key,
                         const std::string& defaultValue) const;
  void SaveSetting(const std::string& section, const std::string& key, const std::string& value);
  // The same by the keys' names (config/setting_keys.h); a family's member by its index.
  std::string GetSetting(const SettingKey& setting, const std::string& defaultValue) const {
    return GetSetting(setting.section, setting.key, defaultValue);
  }
  void SaveSetting(const SettingKey& setting, const std::string& value) {
    SaveSetting(setting.section, setting.key, value);
  }
  std::string GetSetting(const IndexedSettingKey& family, int index,
                         const std::string& defaultValue) const {
    return GetSetting(family.section, family.Key(index), defaultValue);
  }
  void SaveSetting(const IndexedSettingKey& family, int index, const std::string& value) {
    SaveSetting(family.section, family.Key(index), value);
  }
  // The main window's placement: its name + the word.
  std::string GetWindowSetting(const char* word, const std::string& defaultValue) const;
  void SaveWindowSetting(const char* word, const std::string& value);
  void EndProcess(int code);
  // The main window's unload has reached its end: a walk that yields leaves at its next turn.
  bool ProcessEnding() const { return processEnding_; }

  // What the configuration window's options do to the Log page.
  bool SwitchLog(const std::string& pathname) override;
  void CloseLog() override;
  void UpdateCaption() override;
  void LogFrameVisibilityChanged(int index, int value) override;
  void CallbookEnabledChanged(bool enabled) override;
  void MyCallsignChanged(const std::string& callsign) override;
  void LayoutRowDeleting(int row) override;
  void LayoutCellChanged(int row, int column) override;
  void LayoutChanged() override;
  void SaveLogGridColumnWidths() override;

 private:
  bool processEnding_ = false;
};

}  // namespace vellumar
