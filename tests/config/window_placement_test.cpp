#include "config/window_placement.h"

#include <gtest/gtest.h>

#include "support/frame_harness.h"

namespace vellumar {
namespace {

using test::FrameHarness;

// A program frame with a screen of 1920 x 1080 twips (128 x 72 pixels) and one window, "AdvancedFilter", placed at
// 100, 50 with a size of 800 x 600.
class WindowPlacement : public ::testing::Test {
 protected:
  void SetUp() override {
    h.desktop.SetScreen({1920 / kTwipsPerPixel, 1080 / kTwipsPerPixel});
    h.common.Initialize();
    form.Move(100, 50, 800, 600);
  }
  std::string Stored(const std::string& key) const {
    return h.settings.GetSetting("Vellumar", "Windows", key, "<missing>");
  }
  void Store(const std::string& key, const std::string& value) {
    h.settings.SaveSetting("Vellumar", "Windows", key, value);
  }

  FrameHarness h;
  ui::Form form{"AdvancedFilter"};
};

TEST_F(WindowPlacement, RestoresTheStoredPlaceSizeAndState) {
  Store("AdvancedFilterLeft", "300");
  Store("AdvancedFilterTop", "200");
  Store("AdvancedFilterWidth", "1000");
  Store("AdvancedFilterHeight", "700");
  Store("AdvancedFilterWindowState", "2");
  form.SetWindowState(ui::vbMinimized);
  RestoreWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(form.Left(), 300);
  EXPECT_EQ(form.Top(), 200);
  EXPECT_EQ(form.Width(), 1000);
  EXPECT_EQ(form.Height(), 700);
  EXPECT_EQ(form.WindowState(), ui::vbMaximized);
}

TEST_F(WindowPlacement, WithNothingStoredTheFormKeepsItsOwnValuesInNormalState) {
  form.SetWindowState(ui::vbMaximized);
  RestoreWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(form.Left(), 100);
  EXPECT_EQ(form.Top(), 50);
  EXPECT_EQ(form.Width(), 800);
  EXPECT_EQ(form.Height(), 600);
  EXPECT_EQ(form.WindowState(), ui::vbNormal);
  EXPECT_EQ(h.ErrorLogPath(), h.common.ErrorLogPathname());
  EXPECT_EQ(test::ReadFileText(h.ErrorLogPath()), "");
}

TEST_F(WindowPlacement, AWindowSavedOnAMonitorThatIsGoneReturnsToZero) {
  Store("AdvancedFilterLeft", "2500");  // a second monitor to the right
  Store("AdvancedFilterTop", "-400");   // or above
  RestoreWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(form.Left(), 0);
  EXPECT_EQ(form.Top(), 0);
  // The screen's own edge still counts as on the screen.
  Store("AdvancedFilterLeft", "1920");
  Store("AdvancedFilterTop", "1080");
  RestoreWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(form.Left(), 1920);
  EXPECT_EQ(form.Top(), 1080);
}

TEST_F(WindowPlacement, ASizeBeyondATenthMoreThanTheScreenFallsToHalfAScreen) {
  Store("AdvancedFilterWidth", "2113");   // 1.1 * 1920 = 2112
  Store("AdvancedFilterHeight", "1189");  // 1.1 * 1080 = 1188
  RestoreWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(form.Width(), 960);
  EXPECT_EQ(form.Height(), 540);
  Store("AdvancedFilterWidth", "2112");
  Store("AdvancedFilterHeight", "1188");
  RestoreWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(form.Width(), 2112);
  EXPECT_EQ(form.Height(), 1188);
  Store("AdvancedFilterWidth", "-5");
  RestoreWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(form.Width(), 960);
}

TEST_F(WindowPlacement, OnlyTheSizableBorderStylesGetTheirSizeBack) {
  Store("AdvancedFilterWidth", "1000");
  Store("AdvancedFilterHeight", "700");
  for (int style : {0, 1, 3, 4}) {
    form.Move(100, 50, 800, 600);
    form.SetBorderStyle(style);
    RestoreWindowPosition(form, h.common, h.settings);
    EXPECT_EQ(form.Width(), 800) << style;
    EXPECT_EQ(form.Height(), 600) << style;
  }
  for (int style : {2, 5}) {
    form.Move(100, 50, 800, 600);
    form.SetBorderStyle(style);
    RestoreWindowPosition(form, h.common, h.settings);
    EXPECT_EQ(form.Width(), 1000) << style;
    EXPECT_EQ(form.Height(), 700) << style;
  }
}

TEST_F(WindowPlacement, SavesStatePlaceAndSizeUnderTheFormsName) {
  form.SetWindowState(ui::vbMaximized);
  SaveWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(Stored("AdvancedFilterWindowState"), "2");
  EXPECT_EQ(Stored("AdvancedFilterLeft"), "100");
  EXPECT_EQ(Stored("AdvancedFilterTop"), "50");
  EXPECT_EQ(Stored("AdvancedFilterHeight"), "600");
  EXPECT_EQ(Stored("AdvancedFilterWidth"), "800");
  // A maximised window stays so.
  EXPECT_EQ(form.WindowState(), ui::vbMaximized);
}

TEST_F(WindowPlacement, AMinimisedWindowComesBackMinimisedWithItsRealSize) {
  form.SetWindowState(ui::vbMinimized);
  SaveWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(Stored("AdvancedFilterWindowState"), "1");
  EXPECT_EQ(form.WindowState(), ui::vbNormal);  // made normal before its sizes were taken
  EXPECT_EQ(Stored("AdvancedFilterWidth"), "800");
  EXPECT_EQ(Stored("AdvancedFilterHeight"), "600");

  ui::Form again{"AdvancedFilter"};
  again.Move(0, 0, 300, 200);
  RestoreWindowPosition(again, h.common, h.settings);
  EXPECT_EQ(again.WindowState(), ui::vbMinimized);
  EXPECT_EQ(again.Width(), 800);
  EXPECT_EQ(again.Height(), 600);
  EXPECT_EQ(again.Left(), 100);
  EXPECT_EQ(again.Top(), 50);
}

TEST_F(WindowPlacement, WindowStateWrittenAndWindowstateReadAreOneKey) {
  form.SetWindowState(ui::vbMaximized);
  SaveWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(Stored("AdvancedFilterWindowstate"), "2");
  EXPECT_NE(test::ReadFileText(h.settings.FilePath("Vellumar")).find("AdvancedFilterWindowState"),
            std::string::npos);
  Store("AdvancedFilterWindowstate", "0");  // the same entry, replaced
  EXPECT_EQ(Stored("AdvancedFilterWindowState"), "0");
  form.SetWindowState(ui::vbMinimized);
  RestoreWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(form.WindowState(), ui::vbNormal);
}

TEST_F(WindowPlacement, AStoredTextThatIsNoNumberGoesToTheErrorLog) {
  Store("AdvancedFilterLeft", "left");
  RestoreWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(form.Left(), 100);
  EXPECT_NE(test::ReadFileText(h.ErrorLogPath())
                .find("program error 13 in module Common.RestoreWindowPosition"),
            std::string::npos);
}

TEST_F(WindowPlacement, EachFormHasItsOwnKeys) {
  ui::Form other{"AddressEditor"};
  other.Move(5, 6, 700, 500);
  SaveWindowPosition(other, h.common, h.settings);
  SaveWindowPosition(form, h.common, h.settings);
  EXPECT_EQ(Stored("AddressEditorLeft"), "5");
  EXPECT_EQ(Stored("AdvancedFilterLeft"), "100");
}

}  // namespace
}  // namespace vellumar
