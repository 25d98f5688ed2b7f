#include "frame/common.h"

#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <regex>

#include "frame/version.h"
#include "platform/vb/date_value.h"
#include "support/frame_harness.h"

namespace vellumar {
namespace {

using test::FrameHarness;

TEST(Common, InitializeSetsTheRunState) {
  FrameHarness h({2031, 7, 4, 12, 0, 30, 250});
  h.desktop.SetScreen({2560, 1440});
  h.common.SetBrowserPathname("/usr/bin/firefox");
  h.common.Initialize();

  EXPECT_EQ(h.common.ErrorLogPathname(), h.DataPath() + "/ErrorLog.txt");
  EXPECT_FALSE(h.common.ErrorLogStarted());
  EXPECT_EQ(h.common.StartTime(), vb::MakeDate({2031, 7, 4, 12, 0, 30}));
  EXPECT_EQ(h.common.GetOSName(), "Debian GNU/Linux 12 (bookworm)");
  EXPECT_EQ(h.common.GetOSBuild(), "6.1.0-21-amd64");
  EXPECT_EQ(h.common.OSPlatform(), kOSPlatformLinux);
  EXPECT_EQ(h.common.OSMajor(), 6);
  EXPECT_EQ(h.common.OSMinor(), 1);
  EXPECT_EQ(h.common.ScreenWidth(), 2560 * 15);  // twips
  EXPECT_EQ(h.common.ScreenHeight(), 1440 * 15);
  EXPECT_EQ(h.common.BrowserPathname(), "");
  EXPECT_EQ(h.common.Months(),
            (std::array<std::string, 12>{"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug",
                                         "Sep", "Oct", "Nov", "Dec"}));
  for (const char* sub : {"Databases", "Reports", "Backups", "Help"}) {
    EXPECT_TRUE(std::filesystem::is_directory(h.DataPath() + "/" + sub)) << sub;
  }
}

TEST(Common, OSNameStaysUnknownWhenTheHostTellsNone) {
  test::TempDir dir;
  ui::VirtualClock clock;
  test::ScriptedDesktop desktop;
  CommonContext context = test::HarnessContext(dir.Join("data"), clock, desktop);
  context.readOSVersion = [] { return OSVersionInfo{kOSPlatformLinux, 6, 1, "6.1.0", ""}; };
  Common common(std::move(context));
  common.Initialize();
  EXPECT_EQ(common.GetOSName(), "Unknown");
  EXPECT_EQ(common.GetOSBuild(), "6.1.0");
}

TEST(Common, WindowsVersionsAreNamedFromTheTable) {
  test::TempDir dir;
  ui::VirtualClock clock;
  test::ScriptedDesktop desktop;
  CommonContext context = test::HarnessContext(dir.Join("data"), clock, desktop);
  context.readOSVersion = [] { return OSVersionInfo{kOSPlatformWindowsNT, 5, 1, "2600", ""}; };
  Common common(std::move(context));
  common.Initialize();
  EXPECT_EQ(common.GetOSName(), "Windows XP");
  EXPECT_EQ(common.GetOSBuild(), "2600");
}

TEST(Common, SafeFilenameReplacesBothSlashes) {
  EXPECT_EQ(Common::SafeFilename("W1AW/P"), "W1AW-P");
  EXPECT_EQ(Common::SafeFilename("VE3\\W1AW/MM"), "VE3-W1AW-MM");
  EXPECT_EQ(Common::SafeFilename("K1ABC"), "K1ABC");
  EXPECT_EQ(Common::SafeFilename(""), "");
}

TEST(Common, ContainingDirectory) {
  FrameHarness h;
  h.common.Initialize();
  EXPECT_EQ(h.common.ContainingDirectory("/a/b/c.vdb"), "/a/b");
  EXPECT_EQ(h.common.ContainingDirectory("/c.vdb"), "/");
  EXPECT_EQ(h.common.ContainingDirectory("/a/b/"), "/a/b");
  EXPECT_EQ(h.common.ContainingDirectory("relative/c.vdb"), "relative");
  EXPECT_FALSE(std::filesystem::exists(h.ErrorLogPath()));

  EXPECT_EQ(h.common.ContainingDirectory("c.vdb"), "");
  const std::string log = test::ReadFileText(h.ErrorLogPath());
  EXPECT_NE(log.find("15-Mar-2024 08:30:00 > program error 5 in module "
                     "Common.ContainingDirectory: Invalid procedure call or argument\n"),
            std::string::npos)
      << log;
}

TEST(Common, SimpleName) {
  EXPECT_EQ(Common::SimpleName("/a/b/c.vdb"), "c.vdb");
  EXPECT_EQ(Common::SimpleName("c.vdb"), "c.vdb");
  EXPECT_EQ(Common::SimpleName("/a/b/"), "");
  EXPECT_EQ(Common::SimpleName(""), "");
}

TEST(Common, VersionIsMajorMinorRevision) {
  EXPECT_EQ(Common::Version(), std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) +
                                   "." + std::to_string(kVersionRevision));
  EXPECT_TRUE(std::regex_match(Common::Version(), std::regex("[0-9]+\\.[0-9]+\\.[0-9]+")));
}

TEST(Common, MaxAndMinOf32BitIntegers) {
  EXPECT_EQ(Common::Max(3, -7), 3);
  EXPECT_EQ(Common::Min(3, -7), -7);
  EXPECT_EQ(Common::Max(INT32_MIN, INT32_MAX), INT32_MAX);
  EXPECT_EQ(Common::Min(INT32_MIN, INT32_MAX), INT32_MIN);
  EXPECT_EQ(Common::Max(5, 5), 5);
}

TEST(Common, IsDateFollowsTheRuntime) {
  vb::ScopedDateLocale english{vb::DateLocale{}};
  EXPECT_TRUE(Common::IsDate("15-Jan-2002"));
  EXPECT_TRUE(Common::IsDate("2002-01-15 12:00:00"));
  EXPECT_FALSE(Common::IsDate("hello"));
  EXPECT_FALSE(Common::IsDate(""));
}

TEST(Common, IsIntegerEdgeCases) {
  FrameHarness h;
  h.common.Initialize();
  EXPECT_TRUE(h.common.IsInteger("-"));
  EXPECT_TRUE(h.common.IsInteger("+"));
  EXPECT_FALSE(h.common.IsInteger("33000"));
  EXPECT_TRUE(h.common.IsInteger("  7"));
  EXPECT_TRUE(h.common.IsInteger("7"));
  EXPECT_TRUE(h.common.IsInteger("+5"));
  EXPECT_TRUE(h.common.IsInteger("-32768"));
  EXPECT_TRUE(h.common.IsInteger("32767"));
  EXPECT_FALSE(h.common.IsInteger("32768"));
  EXPECT_FALSE(h.common.IsInteger("-32769"));
  EXPECT_TRUE(h.common.IsInteger("00042"));
  EXPECT_FALSE(h.common.IsInteger(""));
  EXPECT_FALSE(h.common.IsInteger("   "));
  EXPECT_FALSE(h.common.IsInteger("12a"));
  EXPECT_FALSE(h.common.IsInteger("7 "));   // only the left blanks are cut
  EXPECT_FALSE(h.common.IsInteger("\t7"));  // and only blanks
  EXPECT_FALSE(h.common.IsInteger("1.5"));
  EXPECT_FALSE(std::filesystem::exists(h.ErrorLogPath())) << "none of these is a failure";

  h.clock.AdvanceMs(5000);
  EXPECT_FALSE(h.common.IsInteger("1-2"));
  const std::string log = test::ReadFileText(h.ErrorLogPath());
  EXPECT_NE(log.find("15-Mar-2024 08:30:05 > program error 13 in module Common.IsInteger: "
                     "Type mismatch\n"),
            std::string::npos)
      << log;
}

TEST(Common, ISODateTimePadsAllButTheYear) {
  EXPECT_EQ(Common::ISODateTime(vb::MakeDate({2024, 3, 5, 7, 8, 9})), "2024-03-05 07:08:09");
  EXPECT_EQ(Common::ISODateTime(vb::MakeDate({1999, 12, 31, 23, 59, 59})), "1999-12-31 23:59:59");
  EXPECT_EQ(Common::ISODateTime(vb::MakeDate({999, 1, 2, 0, 0, 0})), "999-01-02 00:00:00");
  EXPECT_EQ(Common::ISODateTime(36526.0), "2000-01-01 00:00:00");
}

TEST(Common, ReasonablePositionsOnTheScreen) {
  FrameHarness h;
  h.common.Initialize();
  h.common.SetScreenSize(1920, 1080);  // twips
  EXPECT_EQ(h.common.ReasonableLeft(500), 500);
  EXPECT_EQ(h.common.ReasonableLeft(0), 0);
  EXPECT_EQ(h.common.ReasonableLeft(1920), 1920);
  EXPECT_EQ(h.common.ReasonableLeft(1921), 0);  // saved on a monitor that is gone
  EXPECT_EQ(h.common.ReasonableLeft(3500), 0);
  EXPECT_EQ(h.common.ReasonableLeft(-1), 0);
  EXPECT_EQ(h.common.ReasonableTop(1080), 1080);
  EXPECT_EQ(h.common.ReasonableTop(1081), 0);
  EXPECT_EQ(h.common.ReasonableTop(-200), 0);
  EXPECT_EQ(h.common.ReasonableTop(300), 300);
}

TEST(Common, ReasonableSizesOnTheScreen) {
  FrameHarness h;
  h.common.Initialize();
  h.common.SetScreenSize(1920, 1080);  // twips
  EXPECT_EQ(h.common.ReasonableWidth(800), 800);
  EXPECT_EQ(h.common.ReasonableWidth(2112), 2112);  // exactly 1.1 screens is still allowed
  EXPECT_EQ(h.common.ReasonableWidth(2113), 960);   // larger falls to half a screen
  EXPECT_EQ(h.common.ReasonableWidth(-1), 960);
  EXPECT_EQ(h.common.ReasonableWidth(0), 0);
  EXPECT_EQ(h.common.ReasonableHeight(1188), 1188);
  EXPECT_EQ(h.common.ReasonableHeight(1189), 540);
  EXPECT_EQ(h.common.ReasonableHeight(-7), 540);

  h.common.SetScreenSize(1365, 767);  // halves round half to even
  EXPECT_EQ(h.common.ReasonableWidth(5000), 682);
  EXPECT_EQ(h.common.ReasonableHeight(5000), 384);
}

TEST(Common, MissingHelpFileGivesMessageAndNoLaunch) {
  FrameHarness h;
  h.common.Initialize();
  const std::string path = h.DataPath() + "/Help/Log.htm";
  h.desktop.ExpectMsgBox("missing help file: " + path)
      .WithTitle("Vellumar")
      .WithButtons(ui::vbOKOnly);
  h.common.InvokeHelp("Log.htm");
  EXPECT_EQ(h.desktop.Calls().size(), 1u);  // a launch would have failed the test too
}

TEST(Common, HelpOpensInTheDesktopViewer) {
  FrameHarness h;
  h.common.Initialize();
  const std::string path = h.DataPath() + "/Help/Configuration.htm";
  ASSERT_TRUE(test::WriteFileText(path, "<html></html>"));
  h.desktop.ExpectShell("Open", path, "").WithShow(1);
  h.common.InvokeHelp("Configuration.htm");
}

TEST(Common, HelpOpensInTheBrowserWhenOneIsSet) {
  FrameHarness h;
  h.common.Initialize();
  const std::string path = h.DataPath() + "/Help/QSL.htm";
  ASSERT_TRUE(test::WriteFileText(path, "<html></html>"));
  h.common.SetBrowserPathname("/usr/bin/firefox");
  h.desktop.ExpectShell("Open", "/usr/bin/firefox", path).WithShow(1);
  h.common.InvokeHelp("QSL.htm");
}

TEST(Common, FileWithoutAssociationGoesToOpenWith) {
  FrameHarness h;
  h.common.Initialize();
  h.desktop.ExpectShell("Open", "/r/report.xyz", "", ui::kShellNoAssociation)
      .WithDirectory("/r")
      .WithShow(ui::kShowNormal);
  h.desktop.ExpectOpenWith("/r/report.xyz");
  h.common.RunShellExecute("Open", "/r/report.xyz", "", "/r", ui::kShowNormal);
}

TEST(Common, OtherShellResultsAreLeftAlone) {
  FrameHarness h;
  h.common.Initialize();
  h.desktop.ExpectShell("Open", "/r/missing.txt", "", ui::kShellFileNotFound);
  h.desktop.ExpectShell("Open", "/r/report.txt", "", 42);
  h.common.RunShellExecute("Open", "/r/missing.txt", "", "", ui::kShowNormal);
  h.common.RunShellExecute("Open", "/r/report.txt", "", "", ui::kShowNormal);
}

TEST(Common, InitializeStartsAFreshRun) {
  FrameHarness h;
  h.common.Initialize();
  h.common.ReportError(5, "A.B");
  EXPECT_TRUE(h.common.ErrorLogStarted());
  h.clock.AdvanceMs(3600 * 1000);
  h.common.Initialize();
  EXPECT_FALSE(h.common.ErrorLogStarted());
  EXPECT_EQ(h.common.StartTime(), vb::MakeDate({2024, 3, 15, 9, 30, 0}));
}

}  // namespace
}  // namespace vellumar
