#include "frame/common.h"

#include <cmath>
#include <cstdio>
#include <filesystem>

#include "frame/version.h"
#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"

namespace vellumar {
namespace {

// Half an extent, rounded as the runtime assigns a fraction to a whole number (half to even).
std::int32_t HalfOf(int extent) { return static_cast<std::int32_t>(std::nearbyint(extent / 2.0)); }

}  // namespace

Common::Common(CommonContext context)
    : context_(std::move(context)),
      utc_(context_.clock),
      localeInfo_(context_.locale),
      errorLog_(context_.clock, [this] {
        return ErrorLogBanner{ApplicationDirectory(),
                              context_.executableName,
                              GetOSName(),
                              GetOSBuild(),
                              localeInfo_.GetLocaleCountry(),
                              localeInfo_.GetLocaleLanguage()};
      }) {
  InitializeMonths();
}

void Common::Initialize() {
  context_.dataFolder.EnsureCreated();  // a folder that can't be made only costs error entries
  osName_ = "Unknown";
  // No banner yet in this run; the log's place and the start time that dates the banner.
  errorLog_.BeginRun(context_.dataFolder.Join("ErrorLog.txt"), utc_.CurrentTime());
  GetOSVersion();
  // Windows are placed in twips, so the screen is measured in them too.
  const ui::ScreenSize screen = context_.desktop.Screen();
  SetScreenSize(screen.width * kTwipsPerPixel, screen.height * kTwipsPerPixel);
  browserPathname_.clear();
  InitializeMonths();
}

void Common::Terminate() {
  if (errorLog_.ErrorLogStarted()) {
    errorLog_.WriteErrorLog(std::string(kApplicationTitle) + " shutdown");
  }
}

void Common::InitializeMonths() {
  months_ = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
}

void Common::GetOSVersion() {
  if (!context_.readOSVersion) return;
  const OSVersionInfo info = context_.readOSVersion();
  osPlatform_ = info.platform;
  osMajor_ = info.major;
  osMinor_ = info.minor;
  osBuild_ = info.build;
  if (auto windows = WindowsOSName(info.platform, info.major, info.minor)) {
    osName_ = *windows;
  } else if (!info.name.empty()) {
    osName_ = info.name;
  }
}

void Common::SetScreenSize(int width, int height) {
  screenWidth_ = width;
  screenHeight_ = height;
}

std::int32_t Common::ReasonableLeft(std::int32_t value) const {
  return value < 0 || value > screenWidth_ ? 0 : value;
}

std::int32_t Common::ReasonableTop(std::int32_t value) const {
  return value < 0 || value > screenHeight_ ? 0 : value;
}

std::int32_t Common::ReasonableWidth(std::int32_t value) const {
  return value < 0 || value > 1.1 * screenWidth_ ? HalfOf(screenWidth_) : value;
}

std::int32_t Common::ReasonableHeight(std::int32_t value) const {
  return value < 0 || value > 1.1 * screenHeight_ ? HalfOf(screenHeight_) : value;
}

void Common::RunShellExecute(const std::string& operation, const std::string& file,
                             const std::string& parameters, const std::string& directory,
                             int show) {
  const int result = context_.desktop.ShellExecute(operation, file, parameters, directory, show);
  if (result == ui::kShellNoAssociation) context_.desktop.OpenWith(file);
}

void Common::InvokeHelp(const std::string& topic) {
  const std::string path = ApplicationDirectory() + "/Help/" + topic;
  std::error_code ec;
  if (!std::filesystem::exists(path, ec)) {
    context_.desktop.MsgBox("missing help file: " + path, ui::vbOKOnly, kApplicationTitle);
    return;
  }
  if (!browserPathname_.empty()) {
    RunShellExecute("Open", browserPathname_, path, "", ui::kShowNormal);
  } else {
    RunShellExecute("Open", path, "", "", ui::kShowNormal);
  }
}

std::string Common::SafeFilename(const std::string& text) {
  std::string out = text;
  for (char& c : out) {
    if (c == '\\' || c == '/') c = '-';
  }
  return out;
}

std::string Common::ContainingDirectory(const std::string& path) {
  std::string result;
  WithFailureTail(errorLog_, "Common.ContainingDirectory", [&] {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) throw vb::VbError(vb::kInvalidProcedureCall);
    result = slash == 0 ? "/" : path.substr(0, slash);  // the root keeps its separator
  });
  return result;
}

std::string Common::SimpleName(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string Common::Version() { return VersionText(); }

bool Common::IsDate(const std::string& text) { return vb::IsDate(text); }

bool Common::IsInteger(const std::string& text) {
  bool result = false;
  WithFailureTail(errorLog_, "Common.IsInteger", [&] {
    const auto start = text.find_first_not_of(' ');
    if (start == std::string::npos) return;
    const std::string trimmed = text.substr(start);
    for (char c : trimmed) {
      if (!(c >= '0' && c <= '9') && c != '+' && c != '-') return;
    }
    if (trimmed.size() == 1) {
      result = true;
      return;
    }
    const auto number = vb::ParseNumber(trimmed);
    if (!number) throw vb::VbError(vb::kTypeMismatch);
    result = *number >= -32768 && *number <= 32767;
  });
  return result;
}

std::string Common::ISODateTime(double date) {
  const vb::DateParts p = vb::SplitDate(date);
  char text[64];
  std::snprintf(text, sizeof text, "%d-%02d-%02d %02d:%02d:%02d", p.year, p.month, p.day, p.hour,
                p.minute, p.second);
  return text;
}

}  // namespace vellumar
