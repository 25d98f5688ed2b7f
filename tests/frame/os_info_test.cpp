#include "frame/os_info.h"

#include <gtest/gtest.h>
#include <sys/utsname.h>

#include "support/temp_dir.h"

namespace vellumar {
namespace {

TEST(OSInfo, PrettyNameOfAnOsReleaseText) {
  EXPECT_EQ(PrettyNameFromOsRelease("NAME=\"Debian GNU/Linux\"\n"
                                    "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n"
                                    "ID=debian\n"),
            "Debian GNU/Linux 12 (bookworm)");
  EXPECT_EQ(PrettyNameFromOsRelease("PRETTY_NAME='Arch Linux'\n"), "Arch Linux");
  EXPECT_EQ(PrettyNameFromOsRelease("PRETTY_NAME=Gentoo\r\n"), "Gentoo");
  EXPECT_EQ(PrettyNameFromOsRelease("PRETTY_NAME=\"Say \\\"hi\\\"\"\n"), "Say \"hi\"");
  EXPECT_EQ(PrettyNameFromOsRelease("NAME=Foo\n"), "");
  EXPECT_EQ(PrettyNameFromOsRelease(""), "");
}

TEST(OSInfo, ReadsNameFromOsReleaseAndBuildFromTheKernel) {
  test::TempDir dir;
  ASSERT_TRUE(test::WriteFileText(dir.Join("os-release"), "PRETTY_NAME=\"Test OS 1.0\"\n"));
  const OSVersionInfo info = ReadOSVersion(dir.Join("os-release"));
  utsname uts{};
  ASSERT_EQ(uname(&uts), 0);
  EXPECT_EQ(info.platform, kOSPlatformLinux);
  EXPECT_EQ(info.name, "Test OS 1.0");
  EXPECT_EQ(info.build, uts.release);
  EXPECT_EQ(
      std::to_string(info.major) + "." + std::to_string(info.minor),
      std::string(uts.release)
          .substr(0, std::to_string(info.major).size() + 1 + std::to_string(info.minor).size()));
  EXPECT_GT(info.major, 0);
}

TEST(OSInfo, WithoutOsReleaseTheKernelNamesTheSystem) {
  test::TempDir dir;
  const OSVersionInfo info = ReadOSVersion(dir.Join("missing"));
  utsname uts{};
  ASSERT_EQ(uname(&uts), 0);
  EXPECT_EQ(info.name, uts.sysname);
}

TEST(OSInfo, WindowsVersionTable) {
  EXPECT_EQ(WindowsOSName(1, 4, 0), "Windows 95");
  EXPECT_EQ(WindowsOSName(1, 4, 10), "Windows 98");
  EXPECT_EQ(WindowsOSName(1, 4, 90), "Windows Millennium");
  EXPECT_EQ(WindowsOSName(2, 3, 51), "Windows NT 3.51");
  EXPECT_EQ(WindowsOSName(2, 4, 0), "Windows NT 4.0");
  EXPECT_EQ(WindowsOSName(2, 5, 0), "Windows 2000");
  EXPECT_EQ(WindowsOSName(2, 5, 1), "Windows XP");
  EXPECT_EQ(WindowsOSName(2, 6, 0), std::nullopt);
  EXPECT_EQ(WindowsOSName(1, 4, 50), std::nullopt);
  EXPECT_EQ(WindowsOSName(kOSPlatformLinux, 6, 1), std::nullopt);
}

TEST(OSInfo, ExecutableNameIsTheFileName) { EXPECT_EQ(ExecutableName(), "frame_tests"); }

}  // namespace
}  // namespace vellumar
