#pragma once
// A program frame in memory for tests: a temporary data folder and settings folder, a virtual
// UTC clock, a scripted desktop, English date conventions, fixed host facts, and a Common made
// of them. Link vellumar_frame and vellumar_test_support to use it.
#include <string>

#include "frame/common.h"
#include "frame/settings_store.h"
#include "platform/services/clock.h"
#include "platform/vb/date_locale.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

namespace vellumar::test {

// The host facts a harness reports, so that banners can be compared exactly.
inline constexpr const char* kHarnessOSName = "Debian GNU/Linux 12 (bookworm)";
inline constexpr const char* kHarnessOSBuild = "6.1.0-21-amd64";
inline constexpr const char* kHarnessLanguage = "English";
inline constexpr const char* kHarnessCountry = "United States";
inline constexpr const char* kHarnessExecutable = "vellumar";

inline CommonContext HarnessContext(const std::string& dataFolder, const ui::Clock& clock,
                                    ui::Desktop& desktop) {
  return CommonContext{
      .dataFolder = DataFolder(dataFolder),
      .clock = clock,
      .desktop = desktop,
      .readOSVersion =
          [] {
            return OSVersionInfo{kOSPlatformLinux, 6, 1, kHarnessOSBuild, kHarnessOSName};
          },
      .locale = LocaleSource{[] { return vb::DateLocale{}; },
                             [] { return std::string(kHarnessLanguage); },
                             [] { return std::string(kHarnessCountry); }},
      .executableName = kHarnessExecutable,
  };
}

class FrameHarness {
 public:
  // 2024-03-15 08:30:00 UTC unless told otherwise.
  explicit FrameHarness(const ui::UtcTime& start = {2024, 3, 15, 8, 30, 0, 0})
      : clock(start),
        settings(dir.Join("config")),
        common(HarnessContext(dir.Join("data"), clock, desktop)) {}

  std::string DataPath() const { return dir.Join("data"); }
  std::string ErrorLogPath() const { return dir.Join("data") + "/ErrorLog.txt"; }

  TempDir dir;                                        // everything the test writes
  ui::VirtualClock clock;                             // UTC, moved by the test
  ScriptedDesktop desktop;                            // answers from the test's script
  vb::ScopedDateLocale dateLocale{vb::DateLocale{}};  // English month names
  SettingsStore settings;                             // files in dir/config
  Common common;                                      // data folder dir/data
};

}  // namespace vellumar::test
