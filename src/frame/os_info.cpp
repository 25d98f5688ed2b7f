#include "frame/os_info.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace vellumar {
namespace {

// The Windows versions by platform, major and minor; -1 matches any.
struct WindowsVersion {
  int platform;      // kOSPlatformWindows9x or kOSPlatformWindowsNT
  int major;         // -1: any
  int minor;         // -1: any
  const char* name;  // as the banner writes it
};
constexpr std::array<WindowsVersion, 7> kWindowsVersions = {{
    {kOSPlatformWindows9x, -1, 0, "Windows 95"},
    {kOSPlatformWindows9x, -1, 10, "Windows 98"},
    {kOSPlatformWindows9x, -1, 90, "Windows Millennium"},
    {kOSPlatformWindowsNT, 3, -1, "Windows NT 3.51"},
    {kOSPlatformWindowsNT, 4, -1, "Windows NT 4.0"},
    {kOSPlatformWindowsNT, 5, 0, "Windows 2000"},
    {kOSPlatformWindowsNT, 5, 1, "Windows XP"},
}};

// A shell-style value: "text" or 'text' with backslash escapes inside double quotes, or bare.
std::string Unquote(const std::string& raw) {
  if (raw.size() >= 2 && raw.front() == '\'' && raw.back() == '\'') {
    return raw.substr(1, raw.size() - 2);
  }
  if (raw.size() >= 2 && raw.front() == '"' && raw.back() == '"') {
    std::string out;
    for (std::size_t i = 1; i + 1 < raw.size(); ++i) {
      if (raw[i] == '\\' && i + 2 < raw.size()) ++i;
      out += raw[i];
    }
    return out;
  }
  return raw;
}

}  // namespace

std::string PrettyNameFromOsRelease(const std::string& content) {
  std::istringstream in(content);
  std::string line;
  std::string name;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.rfind("PRETTY_NAME=", 0) == 0) name = Unquote(line.substr(12));
  }
  return name;
}

std::optional<std::string> WindowsOSName(int platform, int major, int minor) {
  for (const WindowsVersion& v : kWindowsVersions) {
    if (v.platform == platform && (v.major < 0 || v.major == major) &&
        (v.minor < 0 || v.minor == minor)) {
      return v.name;
    }
  }
  return std::nullopt;
}

OSVersionInfo ReadOSVersion(const std::string& osReleasePath) {
  OSVersionInfo info;
  info.platform = kOSPlatformLinux;
  utsname uts{};
  if (uname(&uts) == 0) {
    info.build = uts.release;
    info.name = uts.sysname;
    char* end = nullptr;
    info.major = static_cast<int>(std::strtol(uts.release, &end, 10));
    if (end != nullptr && *end == '.')
      info.minor = static_cast<int>(std::strtol(end + 1, nullptr, 10));
  }
  std::ifstream in(osReleasePath);
  if (in) {
    std::ostringstream text;
    text << in.rdbuf();
    const std::string pretty = PrettyNameFromOsRelease(text.str());
    if (!pretty.empty()) info.name = pretty;
  }
  return info;
}

std::string ExecutableName() {
  char buffer[4096];
  const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
  if (n <= 0) return "vellumar";
  const std::string path(buffer, static_cast<std::size_t>(n));
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace vellumar
