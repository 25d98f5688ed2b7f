#pragma once
// What the program asks about the operating system for the error log's banner.
#include <optional>
#include <string>

namespace vellumar {

// Platform numbers: the two Windows families as the system reports them, and this one.
inline constexpr int kOSPlatformWindows9x = 1;
inline constexpr int kOSPlatformWindowsNT = 2;
inline constexpr int kOSPlatformLinux = 3;

struct OSVersionInfo {
  int platform = 0;   // kOSPlatform...
  int major = 0;      // kernel version, major
  int minor = 0;      // kernel version, minor
  std::string build;  // the kernel release, e.g. "6.1.0-18-amd64"
  std::string name;   // the distribution's name; empty when the host tells none
};

// The running host: name from /etc/os-release (PRETTY_NAME), else the kernel's name; major,
// minor and build from the kernel release.
OSVersionInfo ReadOSVersion(const std::string& osReleasePath = "/etc/os-release");

// PRETTY_NAME of an os-release text, unquoted; "" when there is none.
std::string PrettyNameFromOsRelease(const std::string& content);

// The name of a Windows version by platform, major and minor, as the program has always named
// them; nullopt for one it doesn't know.
std::optional<std::string> WindowsOSName(int platform, int major, int minor);

// The running executable's file name, without its folder.
std::string ExecutableName();

}  // namespace vellumar
