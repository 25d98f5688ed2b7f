#pragma once
// The common services every window uses: start-up and shut-down of the frame, the error log,
// the host's identity, window-placement filters, help and shell launching, and the small text,
// number and date helpers. One instance per running program, owned by the application object.
#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "frame/data_folder.h"
#include "frame/error_log.h"
#include "frame/locale_info.h"
#include "frame/os_info.h"
#include "frame/utc.h"
#include "platform/services/clock.h"
#include "platform/services/desktop.h"

namespace vellumar {

// The unit of window geometry is the twip; a screen pixel is 15 of them.
inline constexpr int kTwipsPerPixel = 15;

// What Common needs from around it. The application object gives the real ones; a test gives
// a temporary folder, a virtual clock, a scripted desktop and fixed host facts.
struct CommonContext {
  DataFolder dataFolder;   // the application directory
  const ui::Clock& clock;  // UTC time of day
  ui::Desktop& desktop;    // message boxes, shell launches, the screen
  std::function<OSVersionInfo()> readOSVersion = [] { return ReadOSVersion(); };
  LocaleSource locale = LocaleSource::FromEnvironment();
  std::string executableName = ExecutableName();  // for the error log's banner
};

class Common {
 public:
  explicit Common(CommonContext context);
  Common(const Common&) = delete;
  Common& operator=(const Common&) = delete;

  // In this order: no banner written yet; OSName "Unknown"; ErrorLogPathname; StartTime;
  // GetOSVersion; the screen's size; BrowserPathname empty; the month names. The data folder
  // is made first where it is missing, so that the error log has a place.
  void Initialize();
  // The shutdown line, if this run wrote to the error log.
  void Terminate();

  // The error log and its reporters.
  ErrorLog& errorLog() { return errorLog_; }
  void WriteErrorLog(const std::string& text) { errorLog_.WriteErrorLog(text); }
  void ReportError(std::int64_t code, const std::string& where) {
    errorLog_.ReportError(code, where);
  }
  const std::string& ErrorLogPathname() const { return errorLog_.ErrorLogPathname(); }
  bool ErrorLogStarted() const { return errorLog_.ErrorLogStarted(); }
  double StartTime() const { return errorLog_.StartTime(); }

  LocaleInfo& localeInfo() { return localeInfo_; }
  const UTC& utc() const { return utc_; }
  const DataFolder& dataFolder() const { return context_.dataFolder; }
  const std::string& ApplicationDirectory() const { return context_.dataFolder.path(); }

  // The host.
  void GetOSVersion();
  const std::string& GetOSName() const { return osName_; }
  const std::string& GetOSBuild() const { return osBuild_; }
  int OSPlatform() const { return osPlatform_; }
  int OSMajor() const { return osMajor_; }
  int OSMinor() const { return osMinor_; }

  // Window placement: the screen's extent and the filters for stored positions and sizes.
  int ScreenWidth() const { return screenWidth_; }
  int ScreenHeight() const { return screenHeight_; }
  void SetScreenSize(int width, int height);
  // The value, or 0 if it is negative or beyond the screen's extent.
  std::int32_t ReasonableLeft(std::int32_t value) const;
  std::int32_t ReasonableTop(std::int32_t value) const;
  // The value, or half the screen's extent if it is negative or above 1.1 times the extent.
  std::int32_t ReasonableWidth(std::int32_t value) const;
  std::int32_t ReasonableHeight(std::int32_t value) const;

  // Launching.
  const std::string& BrowserPathname() const { return browserPathname_; }
  void SetBrowserPathname(const std::string& path) { browserPathname_ = path; }
  // Asks the desktop to perform the operation; a file with no associated program goes to the
  // desktop's "open with" chooser instead.
  void RunShellExecute(const std::string& operation, const std::string& file,
                       const std::string& parameters, const std::string& directory, int show);
  // Opens application directory + "/Help/" + topic in the browser set, or in the desktop's
  // viewer; a missing file gives a message and no launch.
  void InvokeHelp(const std::string& topic);

  // The twelve month names "Jan" to "Dec".
  const std::array<std::string, 12>& Months() const { return months_; }

  // Text, name and number helpers.
  static std::string SafeFilename(const std::string& text);
  // The path up to its last "/", without it; the root keeps its "/". A path without "/" gives
  // "" and an entry in the error log.
  std::string ContainingDirectory(const std::string& path);
  static std::string SimpleName(const std::string& path);
  static std::string Version();
  static std::int32_t Max(std::int32_t a, std::int32_t b) { return a > b ? a : b; }
  static std::int32_t Min(std::int32_t a, std::int32_t b) { return a < b ? a : b; }
  static bool IsDate(const std::string& text);
  // Whether the text, left blanks cut, is a 16-bit whole number written with digits, "+" and
  // "-"; a single such character counts. Text made of those characters that doesn't convert
  // ("1-2") goes through the failure tail and gives false.
  bool IsInteger(const std::string& text);
  // "yyyy-mm-dd hh:nn:ss" with the year unpadded.
  static std::string ISODateTime(double date);

 private:
  void InitializeMonths();

  CommonContext context_;
  UTC utc_;
  LocaleInfo localeInfo_;
  ErrorLog errorLog_;
  std::string osName_ = "Unknown";      // OSName: the host's name for the banner
  std::string osBuild_;                 // OSBuild: kernel release
  int osPlatform_ = 0;                  // OSPlatform: kOSPlatform...
  int osMajor_ = 0;                     // OSMajor: kernel major version
  int osMinor_ = 0;                     // OSMinor: kernel minor version
  int screenWidth_ = 1920 * 15;         // ScreenWidth, twips
  int screenHeight_ = 1080 * 15;        // ScreenHeight, twips
  std::string browserPathname_;         // BrowserPathname: program that shows help pages
  std::array<std::string, 12> months_;  // "Jan".."Dec"
};

}  // namespace vellumar
