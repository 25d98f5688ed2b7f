#pragma once
// A whole program in memory: a temporary data folder and settings folder, a virtual clock and
// event loop, a scripted desktop, and a folder of installed files (a DXCC database and the band
// table) that the program copies into its data folder at start.
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "config/vellum_setup.h"
#include "platform/link/in_process_bus.h"
#include "platform/services/virtual_clock_loop.h"
#include "program/application.h"
#include "support/frame_harness.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

namespace vellumar::test {

inline constexpr const char* kFirstRunPrompt = "Welcome to Vellum - please specify your callsign: ";
inline constexpr const char* kCallbookMissing =
    "the callbook DLL is not installed, so callbook lookup is disabled";

class ProgramHarness {
 public:
  enum class DXCC {
    kSmall,  // three entities (K, G, VP2E), made here: a quick start
    // The three, and a fourth prefix (4U1X) whose entity has no code: its list item's data is 0.
    kSmallWithUncoded,
    kBuilt,  // the database the build generated from the country files
    kNone,   // no DXCC database installed at all
  };
  explicit ProgramHarness(DXCC dxcc = DXCC::kSmall);

  // Builds the program; call after seeding settings or files.
  Application& Build();
  // Builds it (unless built) and runs the start-up.
  Application& Start();
  // The settings of a program that has run before: a callsign, and the callbook switched off
  // (it was switched off on the first run, the library being absent).
  void SeedReturningOperator(const std::string& callsign = "K1ABC");

  VellumSetup& setup() { return app->setup(); }
  std::string DataPath() const { return dir.Join("data"); }
  std::string LogPath(const std::string& name) const { return DataPath() + "/Databases/" + name; }
  std::string ErrorLogText() const { return ReadFileText(DataPath() + "/ErrorLog.txt"); }
  // A setting of this program, "<missing>" when it isn't stored.
  std::string Setting(const std::string& section, const std::string& key) const {
    return settings.GetSetting("Vellumar", section, key, "<missing>");
  }
  void Seed(const std::string& section, const std::string& key, const std::string& value) {
    settings.SaveSetting("Vellumar", section, key, value);
  }

  TempDir dir;
  ui::VirtualClock clock{ui::UtcTime{2024, 3, 15, 8, 30, 0, 0}};
  ui::VirtualClockLoop loop;
  ScriptedDesktop desktop;
  vb::ScopedDateLocale dateLocale{vb::DateLocale{}};
  SettingsStore settings;  // the same files the program reads
  std::optional<int> exitCode;
  // The bus the program and the tests' siblings meet on; its notices of closed links arrive as
  // events of the loop. The program's place on it outlives the program.
  link::InProcessBus bus{[this](std::function<void()> work) { loop.Post(std::move(work)); }};
  std::unique_ptr<link::LinkEndpoint> programEndpoint = bus.Join();
  std::optional<Application> app;

 private:
  std::string installed_;  // the folder of installed files
};

}  // namespace vellumar::test
