#include "frame/error_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "frame/version.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "support/frame_harness.h"

namespace vellumar {
namespace {

using test::FrameHarness;
using test::ReadFileText;

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) lines.push_back(line);
  return lines;
}

std::vector<std::string> LogLines(const FrameHarness& h) {
  return Lines(ReadFileText(h.ErrorLogPath()));
}

std::vector<std::string> ExpectedBanner(const FrameHarness& h, const std::string& date) {
  return {
      date + " > Vellumar version " + VersionText(),
      date + " > App.Path        : " + h.DataPath(),
      date + " > App.exe         : vellumar",
      date + " > Operating System: Debian GNU/Linux 12 (bookworm) build 6.1.0-21-amd64",
      date + " > Country         : United States",
      date + " > Language        : English",
  };
}

TEST(ErrorLog, LineIsDateBlankGreaterBlankText) {
  vb::ScopedDateLocale english{vb::DateLocale{}};
  const double date = vb::MakeDate({2024, 3, 5, 7, 8, 9});
  EXPECT_EQ(ErrorLog::FormatEntry(date, "a note"), "05-Mar-2024 07:08:09 > a note");
  EXPECT_EQ(ErrorLog::FormatEntry(vb::MakeDate({2001, 12, 31, 23, 59, 59}), ""),
            "31-Dec-2001 23:59:59 > ");
}

TEST(ErrorLog, BannerLinesCarryStartTimeAndEntryItsOwnTime) {
  FrameHarness h;
  h.common.Initialize();
  h.clock.AdvanceMs(((1 * 60 + 2) * 60 + 3) * 1000 + 999);  // 1 h 2 min 3.999 s later
  h.common.ReportError(53, "VellumModule.OpenLog");

  std::vector<std::string> expected = ExpectedBanner(h, "15-Mar-2024 08:30:00");
  expected.push_back(
      "15-Mar-2024 09:32:03 > program error 53 in module VellumModule.OpenLog: File not found");
  EXPECT_EQ(LogLines(h), expected);
}

TEST(ErrorLog, BannerIsWrittenOncePerRunEvenWithManyErrors) {
  FrameHarness h;
  int captionUpdates = 0;
  h.common.errorLog().SetUpdateCaption([&] { ++captionUpdates; });
  h.common.Initialize();
  for (int i = 0; i < 25; ++i) {
    h.clock.AdvanceMs(1000);
    h.common.ReportError(3021, "VellumMain.Form_Resize");
  }
  const auto lines = LogLines(h);
  ASSERT_EQ(lines.size(), 6u + 25u);
  int banners = 0;
  for (const auto& line : lines) banners += line.find("Vellumar version") != std::string::npos;
  EXPECT_EQ(banners, 1);
  EXPECT_EQ(lines[6],
            "15-Mar-2024 08:30:01 > program error 3021 in module "
            "VellumMain.Form_Resize: No current record.");
  EXPECT_EQ(lines[30],
            "15-Mar-2024 08:30:25 > program error 3021 in module "
            "VellumMain.Form_Resize: No current record.");
  EXPECT_EQ(captionUpdates, 1);
  EXPECT_TRUE(h.common.ErrorLogStarted());
}

TEST(ErrorLog, RunWithOnlyABandTableNoteEndsWithShutdownLine) {
  FrameHarness h;
  h.common.Initialize();
  h.clock.AdvanceMs(2000);
  h.common.WriteErrorLog("Bands.txt: line 3 is not a band definition");
  h.clock.AdvanceMs(60000);
  h.common.Terminate();

  std::vector<std::string> expected = ExpectedBanner(h, "15-Mar-2024 08:30:00");
  expected.push_back("15-Mar-2024 08:30:02 > Bands.txt: line 3 is not a band definition");
  expected.push_back("15-Mar-2024 08:31:02 > Vellumar shutdown");
  EXPECT_EQ(LogLines(h), expected);
}

TEST(ErrorLog, RunWithoutErrorsLeavesNoTrace) {
  FrameHarness h;
  h.common.Initialize();
  h.common.Terminate();
  EXPECT_FALSE(std::filesystem::exists(h.ErrorLogPath()));
  EXPECT_FALSE(h.common.errorLog().ErrorLogPresent());
}

TEST(ErrorLog, ExistingContentStaysAndCaptionWarnsOnlyAboutThisRun) {
  FrameHarness h;
  std::filesystem::create_directories(h.DataPath());
  const std::string earlier = "01-Jan-2024 00:00:00 > program error 5 in module X.Y: old\n";
  ASSERT_TRUE(test::WriteFileText(h.ErrorLogPath(), earlier));

  int captionUpdates = 0;
  h.common.errorLog().SetUpdateCaption([&] { ++captionUpdates; });
  h.common.Initialize();
  EXPECT_FALSE(h.common.errorLog().ErrorLogPresent());  // an old file is no warning
  EXPECT_EQ(captionUpdates, 0);

  h.common.ReportError(13, "Common.IsInteger");
  EXPECT_TRUE(h.common.errorLog().ErrorLogPresent());
  EXPECT_EQ(captionUpdates, 1);
  const std::string text = ReadFileText(h.ErrorLogPath());
  EXPECT_EQ(text.substr(0, earlier.size()), earlier);
  const auto lines = Lines(text);
  ASSERT_EQ(lines.size(), 1u + 6u + 1u);
  EXPECT_EQ(lines[1], "15-Mar-2024 08:30:00 > Vellumar version " + VersionText());
  EXPECT_EQ(lines[7],
            "15-Mar-2024 08:30:00 > program error 13 in module Common.IsInteger: Type mismatch");
}

TEST(ErrorLog, EachRunWritesItsOwnBanner) {
  FrameHarness h;
  h.common.Initialize();
  h.common.ReportError(5, "A.B");
  h.common.Terminate();

  // A second run of the program over the same folder, two days later.
  h.clock.AdvanceMs(2LL * 86400 * 1000);
  Common second(test::HarnessContext(h.DataPath(), h.clock, h.desktop));
  second.Initialize();
  EXPECT_FALSE(second.ErrorLogStarted());
  second.ReportError(6, "C.D");
  second.Terminate();

  const auto lines = LogLines(h);
  ASSERT_EQ(lines.size(), 8u + 8u);
  EXPECT_EQ(lines[0], "15-Mar-2024 08:30:00 > Vellumar version " + VersionText());
  EXPECT_EQ(lines[7], "15-Mar-2024 08:30:00 > Vellumar shutdown");
  EXPECT_EQ(lines[8], "17-Mar-2024 08:30:00 > Vellumar version " + VersionText());
  EXPECT_EQ(lines[14], "17-Mar-2024 08:30:00 > program error 6 in module C.D: Overflow");
  EXPECT_EQ(lines[15], "17-Mar-2024 08:30:00 > Vellumar shutdown");
}

TEST(ErrorLog, LinesEndWithTheLineFeedAlone) {
  FrameHarness h;
  h.common.Initialize();
  h.common.WriteErrorLog("note");
  const std::string text = ReadFileText(h.ErrorLogPath());
  EXPECT_EQ(text.find('\r'), std::string::npos);
  EXPECT_EQ(text.back(), '\n');
  EXPECT_EQ(static_cast<int>(std::count(text.begin(), text.end(), '\n')), 7);
}

TEST(ErrorLog, ErrorNumberIsNarrowedTo16Bits) {
  FrameHarness h;
  h.common.Initialize();
  h.common.ReportError(70000, "A.Outside");  // fails within the tail: nothing at all
  h.common.ReportError(-32769, "A.Outside");
  h.common.ReportError(32768, "A.Outside");
  EXPECT_FALSE(std::filesystem::exists(h.ErrorLogPath()));
  EXPECT_FALSE(h.common.ErrorLogStarted());

  h.common.ReportError(32767, "A.Edge");
  h.common.ReportError(-32768, "A.Edge");
  const auto lines = LogLines(h);
  ASSERT_EQ(lines.size(), 8u);
  EXPECT_EQ(lines[6],
            "15-Mar-2024 08:30:00 > program error 32767 in module A.Edge: "
            "Application-defined or object-defined error");
  EXPECT_EQ(lines[7],
            "15-Mar-2024 08:30:00 > program error -32768 in module A.Edge: "
            "Application-defined or object-defined error");
}

TEST(ErrorLog, CaseOfTheProcedureNameIsKept) {
  FrameHarness h;
  h.common.Initialize();
  h.common.ReportError(3021, "vellummain.ClrLogCmd_Click");
  const auto lines = LogLines(h);
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_NE(lines[6].find("in module vellummain.ClrLogCmd_Click: "), std::string::npos);
}

TEST(ErrorLog, WriterIgnoresAFileThatCannotBeOpened) {
  ui::VirtualClock clock({2024, 1, 2, 3, 4, 5, 0});
  vb::ScopedDateLocale english{vb::DateLocale{}};
  test::TempDir dir;
  int captionUpdates = 0;
  ErrorLog log(clock, [] { return ErrorLogBanner{}; });
  log.SetUpdateCaption([&] { ++captionUpdates; });
  const std::string path = dir.Join("no-such-folder/ErrorLog.txt");
  log.BeginRun(path, 36526.0);
  EXPECT_NO_THROW(log.WriteErrorLog("lost"));
  EXPECT_NO_THROW(log.ReportError(53, "A.B"));
  EXPECT_FALSE(std::filesystem::exists(path));
  // The steps after the failed open still ran: the run counts its banner as written.
  EXPECT_TRUE(log.ErrorLogStarted());
  EXPECT_EQ(captionUpdates, 1);
}

TEST(ErrorLog, FailingCaptionHookCostsNothing) {
  FrameHarness h;
  h.common.errorLog().SetUpdateCaption([] { throw vb::VbError(91); });
  h.common.Initialize();
  EXPECT_NO_THROW(h.common.WriteErrorLog("still written"));
  const auto lines = LogLines(h);
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_EQ(lines[6], "15-Mar-2024 08:30:00 > still written");
}

TEST(ErrorLog, FailureTailReportsTheErrorInFlight) {
  FrameHarness h;
  h.common.Initialize();
  ErrorLog& log = h.common.errorLog();
  EXPECT_FALSE(WithFailureTail(log, "VellumModule.OpenLog", [] { vb::Raise(3049); }));
  EXPECT_FALSE(WithFailureTail(log, "ADIF.Parse", [] {
    throw vb::VbError(13, "ADIF record 214: QSO_DATE 20241345 is not a date");
  }));
  EXPECT_FALSE(WithFailureTail(log, "X.Y", [] { throw std::runtime_error("odd"); }));
  int ran = 0;
  EXPECT_TRUE(WithFailureTail(log, "X.Z", [&] { ++ran; }));
  EXPECT_EQ(ran, 1);

  const auto lines = LogLines(h);
  ASSERT_EQ(lines.size(), 9u);
  EXPECT_EQ(lines[6], "15-Mar-2024 08:30:00 > program error 3049 in module VellumModule.OpenLog: " +
                          vb::ErrorDescription(3049));
  EXPECT_EQ(lines[7],
            "15-Mar-2024 08:30:00 > program error 13 in module ADIF.Parse: ADIF "
            "record 214: QSO_DATE 20241345 is not a date");
  EXPECT_EQ(lines[8], "15-Mar-2024 08:30:00 > program error 51 in module X.Y: odd");
}

TEST(ErrorLog, PathnameIsTheDataFolderFile) {
  FrameHarness h;
  h.common.Initialize();
  EXPECT_EQ(h.common.ErrorLogPathname(), h.DataPath() + "/ErrorLog.txt");
}

}  // namespace
}  // namespace vellumar
