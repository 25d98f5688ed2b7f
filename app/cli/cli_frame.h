#pragma once
// The frame a command of vellumar-cli runs in: the data folder with the installed files copied
// in where missing, the error log, the settings, and message boxes on the console.
#include <cstdio>
#include <string>

#include "frame/common.h"
#include "frame/data_folder.h"
#include "frame/settings_store.h"
#include "platform/services/clock.h"
#include "platform/services/desktop.h"
#include "platform/vb/error.h"
#include "station/installed_files.h"
#include "station/station_services.h"

namespace vellumar::cli {

// Message boxes of a console program: the text on stderr, the default answer.
class ConsoleDesktop final : public ui::Desktop {
 public:
  int MsgBox(const std::string& prompt, int buttons, const std::string& title) override {
    std::fprintf(stderr, "%s: %s\n", title.c_str(), prompt.c_str());
    return (buttons & ui::kMsgBoxButtonsMask) == ui::vbYesNo ? ui::vbNo : ui::vbOK;
  }
  std::string InputBox(const std::string&, const std::string&, const std::string& d) override {
    return d;
  }
  std::string OpenFileDialog(const ui::FileDialogRequest&) override {
    throw vb::VbError(vb::kCancelSelected);
  }
  std::string SaveFileDialog(const ui::FileDialogRequest&) override {
    throw vb::VbError(vb::kCancelSelected);
  }
  int ShellExecute(const std::string&, const std::string&, const std::string&, const std::string&,
                   int) override {
    return ui::kShellNoAssociation;
  }
  void OpenWith(const std::string&) override {}
  ui::ScreenSize Screen() const override { return {}; }
};

// The frame a command runs in.
struct Frame {
  Frame()
      : common(CommonContext{DataFolder::FromEnvironment(), clock, desktop}),
        settings(SettingsStore::DefaultRoot()) {
    common.Initialize();
    CopyInstalledFilesWhenMissing(InstalledDataFolder(), common.ApplicationDirectory(),
                                  StationInstalledFiles());
    services = MakeStationServices(common, settings, desktop);
  }
  ~Frame() { common.Terminate(); }

  ui::SystemClock clock;
  ConsoleDesktop desktop;
  Common common;
  SettingsStore settings;
  StationServices services;
};

}  // namespace vellumar::cli
