#pragma once
// The running program: one object that builds and owns every module and window, so that a test
// can build a fresh program in memory on a virtual clock with a scripted desktop, and the desktop
// program builds the same one on the real platform. The windows don't reach through it: each is
// given the services it uses.
#include <functional>
#include <memory>
#include <string>

#include "config/vellum_setup.h"
#include "frame/common.h"
#include "frame/settings_store.h"
#include "logpage/log_page.h"
#include "logstore/log_schema.h"
#include "platform/link/endpoint.h"
#include "platform/services/event_loop.h"
#include "qsl/qsl_queue.h"
#include "station/band_table.h"
#include "station/dxcc_module.h"
#include "station/lookup_slots.h"
#include "station/station_services.h"

namespace vellumar {

// What the program is given by the platform it runs on.
struct ApplicationPlatform {
  CommonContext common;       // data folder, UTC clock, desktop, host facts
  ui::EventLoop& loop;        // timers and yields
  std::string settingsRoot;   // folder of the settings files
  std::string installedData;  // folder of the files installed with the program (DXCC.vdb...)
  // Ends the process at once with the code, without the orderly shut-down.
  std::function<void(int code)> exitProcess;
  // The transport to the sibling programs (the session bus); null to run without one.
  link::LinkEndpoint* link = nullptr;
};

class Application {
 public:
  explicit Application(ApplicationPlatform platform);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // Starts the program: the main window's load, which loads the others.
  void Start();
  // The operator closes the main window (QueryUnload may refuse); true when it is gone.
  bool CloseMainWindow(int unloadMode);
  // The program has ended: the main window's unload has run to its end.
  bool Ended() const { return ended_; }
  void EndProcess(int code);  // Form_Unload's last step

  std::string DatabasesFolder() const { return common.ApplicationDirectory() + "/Databases"; }

  ui::EventLoop& loop;
  ui::Desktop& desktop;
  SettingsStore settings;
  Common common;
  LookupSlots lookupSlots;
  StationServices stationServices;
  DXCCModule dxcc;
  BandTable bands;
  logstore::LogSchema logSchema;
  QSLQueue qslQueue;

  // The windows: the configuration window below the Log page, which it tells of its changes.
  std::unique_ptr<VellumSetup> setupForm;
  VellumSetup& setup() { return *setupForm; }
  LogPage logPage;
  // The Log page's module and windows, by their names.
  VellumModule& module;
  VellumMain& main;
  Capture& capture;
  CardPage& cardPage;
  AdvancedFilter& advancedFilter;
  AddressEditor& addressEditor;

 private:
  std::string installedData_;
  std::function<void(int)> exitProcess_;
  bool ended_ = false;
};

}  // namespace vellumar
