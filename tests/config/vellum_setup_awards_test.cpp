// The Awards and Printer pages: award tracking with its keys, and the printer and paper lists.
#include <gtest/gtest.h>

#include "support/program_harness.h"

namespace vellumar {
namespace {

using test::ProgramHarness;

TEST(VellumSetupAwards, AwardChecksAreTheProgressBandsAndModes) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Start();
  VellumSetup& s = h.setup();
  const char* names[] = {"160M", "80M", "40M", "30M",   "20M", "17M",  "15M", "12M",
                         "10M",  "6M",  "2M",  "Phone", "CW",  "RTTY", "PSK"};
  for (int i = 3; i <= 17; ++i) {
    const std::string name = names[i - 3];
    EXPECT_EQ(s.AwardCheck(i).Caption(), name);
    EXPECT_EQ(s.AwardCheck(i).ToolTipText(), "check to generate QSLs for " + name + " awards");
    EXPECT_EQ(s.AwardCheck(i).Value(), 1) << name;
    EXPECT_TRUE(s.AwardCheck(i).Visible());
  }
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(s.AwardCheck(i).Visible());
  EXPECT_EQ(s.AwardCheck.Count(), 18);
}

TEST(VellumSetupAwards, WAZChecksHaveTheirBandsModesAndExplanations) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Start();
  VellumSetup& s = h.setup();
  EXPECT_EQ(s.WAZBandCheck.Count(), 13);
  EXPECT_EQ(s.WAZBandCheck(3).ToolTipText(), "check to include the 160M band in the WAZ report");
  EXPECT_EQ(s.WAZBandCheck(7).ToolTipText(), "check to include the 20M band in the WAZ report");
  EXPECT_EQ(s.WAZBandCheck(12).ToolTipText(), "check to include the 6M band in the WAZ report");
  EXPECT_EQ(s.WAZBandCheck(12).Caption(), "6M");
  for (int b = 0; b < 3; ++b) EXPECT_FALSE(s.WAZBandCheck(b).Visible());
  EXPECT_EQ(s.WAZModeCheck.Count(), 7);
  const char* modes[] = {"SSB", "CW", "RTTY", "AM", "SSTV", "Digital"};
  for (int m = 1; m <= 6; ++m) {
    const std::string mode = modes[m - 1];
    EXPECT_EQ(s.WAZModeCheck(m).Caption(), mode);
    EXPECT_EQ(s.WAZModeCheck(m).ToolTipText(),
              "check to include the " + mode + " mode in the WAZ report");
    EXPECT_EQ(s.WAZModeCheck(m).Value(), 1);
  }
  EXPECT_FALSE(s.WAZModeCheck(0).Visible());
}

TEST(VellumSetupAwards, StoredValuesComeFromTheirKeys) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("Award", "Award20M", "0");
  h.Seed("Award", "AwardPhone", "0");
  h.Seed("Award", "WAZBandAward40M", "0");
  h.Seed("Award", "WAZModeAwardDigital", "0");
  int newAwards = 0;
  Application& app = h.Build();
  app.setup().ClustrineNewAwards = [&] { ++newAwards; };
  h.Start();
  VellumSetup& s = h.setup();
  EXPECT_EQ(s.AwardCheck(7).Value(), 0);
  EXPECT_EQ(s.AwardCheck(14).Value(), 0);
  EXPECT_EQ(s.AwardCheck(8).Value(), 1);
  EXPECT_EQ(s.WAZBandCheck(5).Value(), 0);
  EXPECT_EQ(s.WAZModeCheck(6).Value(), 0);
  // Loading a cleared box is a click of it: the siblings hear of each.
  EXPECT_EQ(newAwards, 2);
}

TEST(VellumSetupAwards, AnAwardClickWritesItsKeyYieldsAndTellsTheSiblings) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Start();
  VellumSetup& s = h.setup();
  std::vector<std::string> events;
  s.ClustrineNewAwards = [&] { events.push_back("newawards"); };
  h.loop.Post([&] { events.push_back("posted"); });
  s.AwardCheck(15).UserToggle();  // CW
  EXPECT_EQ(h.Setting("Award", "AwardCW"), "0");
  EXPECT_EQ(events, (std::vector<std::string>{"posted", "newawards"}));
  EXPECT_EQ(h.Setting("Award", "AwardRTTY"), "<missing>");
  s.AwardCheck(15).UserToggle();
  EXPECT_EQ(h.Setting("Award", "AwardCW"), "1");
  EXPECT_EQ(events.size(), 3u);
}

TEST(VellumSetupAwards, WAZClicksWriteTheirKeys) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Start();
  VellumSetup& s = h.setup();
  s.WAZBandCheck(9).UserToggle();  // 15M
  EXPECT_EQ(h.Setting("Award", "WAZBandAward15M"), "0");
  s.WAZModeCheck(3).UserToggle();  // RTTY
  EXPECT_EQ(h.Setting("Award", "WAZModeAwardRTTY"), "0");
  EXPECT_EQ(h.Setting("Award", "WAZModeAwardCW"), "<missing>");
}

TEST(VellumSetupAwards, SaveAwardTrackingWritesEveryKey) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Start();
  VellumSetup& s = h.setup();
  s.AwardCheck(13).SetValue(0);
  s.SaveAwardTracking();
  for (const char* band : {"160M", "80M", "40M", "30M", "20M", "17M", "15M", "12M", "10M", "6M"}) {
    EXPECT_EQ(h.Setting("Award", std::string("Award") + band), "1") << band;
    EXPECT_EQ(h.Setting("Award", std::string("WAZBandAward") + band), "1") << band;
  }
  EXPECT_EQ(h.Setting("Award", "Award2M"), "0");
  EXPECT_EQ(h.Setting("Award", "WAZBandAward2M"), "<missing>");
  for (const char* mode : {"Phone", "CW", "RTTY", "PSK"}) {
    EXPECT_EQ(h.Setting("Award", std::string("Award") + mode), "1") << mode;
  }
  for (const char* mode : {"SSB", "CW", "RTTY", "AM", "SSTV", "Digital"}) {
    EXPECT_EQ(h.Setting("Award", std::string("WAZModeAward") + mode), "1") << mode;
  }
}

TEST(VellumSetupPrinter, ThePlatformsPrintersAndPapersAreListed) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Start();
  VellumSetup& s = h.setup();
  ASSERT_EQ(s.PrinterName.ListCount(), 1);
  EXPECT_EQ(s.PrinterName.List(0), "Print to PDF file");
  EXPECT_EQ(s.PrinterName.ListIndex(), -1);  // none stored
  ASSERT_EQ(s.PaperSizeCombo.ListCount(), 42);
  EXPECT_EQ(s.PaperSizeCombo.List(0), "Letter, 8 1/2 x 11 in");
  EXPECT_EQ(s.PaperSizeCombo.ItemData(0), 1);
  EXPECT_EQ(s.PaperSizeCombo.List(1), "Letter Small, 8 1/2 x 11 in");
  EXPECT_EQ(s.PaperSizeCombo.List(2), "Tabloid, 11 x 17 in");
  EXPECT_EQ(s.PaperSizeCombo.List(40), "German Legal Fanfold, 8 1/2 x 13 in");
  EXPECT_EQ(s.PaperSizeCombo.ItemData(40), 41);
  EXPECT_EQ(s.PaperSizeCombo.List(41), "User-defined");
  EXPECT_EQ(s.PaperSizeCombo.ItemData(41), 256);
  EXPECT_EQ(s.PaperSizeCombo.ListIndex(), 0);  // Letter unless told otherwise
}

TEST(VellumSetupPrinter, TheStoredPrinterAndPaperAreSelected) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("Printer", "PrinterName", "hp_laserjet_4");
  h.Seed("Printer", "PrinterPaperSize", "9");
  Application& app = h.Build();
  app.setup().PrinterDeviceNames = [] {
    return std::vector<std::string>{"HP_LaserJet_4", "Print to PDF file"};
  };
  h.Start();
  VellumSetup& s = h.setup();
  EXPECT_EQ(s.PrinterName.ListIndex(), 0);
  EXPECT_EQ(s.PrinterName.Text(), "HP_LaserJet_4");
  EXPECT_EQ(s.PaperSizeCombo.Text(), "A4, 210 x 297 mm");
  app.CloseMainWindow(ui::vbFormControlMenu);
  EXPECT_EQ(h.Setting("Printer", "PrinterName"), "HP_LaserJet_4");
  EXPECT_EQ(h.Setting("Printer", "PrinterPaperSize"), "9");
}

TEST(VellumSetupPrinter, AUserDefinedPaperIsFoundByItsNumber) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("Printer", "PrinterPaperSize", "256");
  h.Start();
  EXPECT_EQ(h.setup().PaperSizeCombo.ListIndex(), 41);
  EXPECT_EQ(h.setup().PaperSizeCombo.Text(), "User-defined");
}

TEST(VellumSetupPrinter, ThePlatformsDefaultPaperStandsWhenNoneIsStored) {
  ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Build();
  app.setup().DefaultPaperSize = 9;
  h.Start();
  EXPECT_EQ(h.setup().PaperSizeCombo.Text(), "A4, 210 x 297 mm");
}

TEST(VellumSetupPrinter, InitializingAgainReplacesTheLists) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Start();
  VellumSetup& s = h.setup();
  s.PrinterDeviceNames = [] { return std::vector<std::string>{"A", "B", "Print to PDF file"}; };
  s.InitializePrinter();
  EXPECT_EQ(s.PrinterName.ListCount(), 3);
  EXPECT_EQ(s.PaperSizeCombo.ListCount(), 42);
}

}  // namespace
}  // namespace vellumar
