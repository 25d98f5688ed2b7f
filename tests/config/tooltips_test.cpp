#include "config/tooltips.h"

#include <gtest/gtest.h>

#include "platform/ui/controls.h"
#include "support/frame_harness.h"

namespace vellumar {
namespace {

using test::FrameHarness;

// Two loaded windows: one with three controls, one with a single control.
class Tooltips : public ::testing::Test {
 protected:
  void SetUp() override {
    h.common.Initialize();
    for (ui::Control* c : {static_cast<ui::Control*>(&save), static_cast<ui::Control*>(&call),
                           static_cast<ui::Control*>(&note)}) {
      main.Adopt(*c);
    }
    capture.Adopt(clear);
    save.SetToolTipText("save this QSO");
    call.SetToolTipText("the station worked");
    clear.SetToolTipText("clear all fields");
    main.Load();
    capture.Load();
  }
  std::vector<ui::Form*> Loaded() {
    std::vector<ui::Form*> forms;
    for (ui::Form* f : {&main, &capture, &late})
      if (f->Loaded()) forms.push_back(f);
    return forms;
  }

  FrameHarness h;
  ui::Form main{"VellumMain"}, capture{"Capture"}, late{"AddressEditor"};
  ui::CommandButton save{"SaveCmd"}, clear{"ClearCmd"}, late_button{"UpdateCmd"};
  ui::TextBox call{"Call"};
  ui::Label note{"Note"};  // has no explanation
  TooltipTable table{[this] { return Loaded(); }, h.settings, h.common.errorLog()};
};

TEST_F(Tooltips, InitializeSizesTheTableAndTellsTheSettingDefaultingToShown) {
  EXPECT_TRUE(table.InitializeTooltips());
  EXPECT_EQ(table.FormCount(), 2);
  EXPECT_EQ(table.MaxControlCount(), 3);
  h.settings.SaveSetting("Vellumar", "General", "ShowToolTips", "False");
  EXPECT_FALSE(table.InitializeTooltips());
  h.settings.SaveSetting("Vellumar", "General", "ShowToolTips", "True");
  EXPECT_TRUE(table.InitializeTooltips());
}

TEST_F(Tooltips, ClearEmptiesEveryExplanationAndRestorePutsThemBack) {
  table.InitializeTooltips();
  table.ClearTooltips();
  EXPECT_EQ(save.ToolTipText(), "");
  EXPECT_EQ(call.ToolTipText(), "");
  EXPECT_EQ(clear.ToolTipText(), "");
  table.RestoreTooltips();
  EXPECT_EQ(save.ToolTipText(), "save this QSO");
  EXPECT_EQ(call.ToolTipText(), "the station worked");
  EXPECT_EQ(note.ToolTipText(), "");
  EXPECT_EQ(clear.ToolTipText(), "clear all fields");
}

TEST_F(Tooltips, SaveTooltipsTakesTheTextsAsTheyStandNow) {
  table.InitializeTooltips();
  save.SetToolTipText("save the QSO in hand");
  table.SaveTooltips();
  table.ClearTooltips();
  table.RestoreTooltips();
  EXPECT_EQ(save.ToolTipText(), "save the QSO in hand");
}

TEST_F(Tooltips, AWindowLoadedAfterTheTableWasSizedLosesItsTextsToClear) {
  table.InitializeTooltips();
  late.Adopt(late_button);
  late_button.SetToolTipText("carry the address into the log");
  late.Load();
  table.SaveTooltips();  // no place for the late window: passed over
  table.ClearTooltips();
  EXPECT_EQ(late_button.ToolTipText(), "");
  table.RestoreTooltips();
  EXPECT_EQ(late_button.ToolTipText(), "");
  EXPECT_EQ(save.ToolTipText(), "save this QSO");
  EXPECT_EQ(test::ReadFileText(h.ErrorLogPath()), "");
}

TEST_F(Tooltips, RestoreWithoutATableChangesNothing) {
  table.RestoreTooltips();
  EXPECT_EQ(save.ToolTipText(), "save this QSO");
}

TEST_F(Tooltips, TheSettingIsWrittenAsABoolean) {
  table.SaveTooltipSetting(false);
  EXPECT_EQ(h.settings.GetSetting("Vellumar", "General", "ShowToolTips", ""), "False");
  table.SaveTooltipSetting(true);
  EXPECT_EQ(h.settings.GetSetting("Vellumar", "General", "ShowToolTips", ""), "True");
}

TEST_F(Tooltips, AStoredTextThatIsNoBooleanGoesToTheErrorLogAndHidesThem) {
  h.settings.SaveSetting("Vellumar", "General", "ShowToolTips", "perhaps");
  EXPECT_FALSE(table.InitializeTooltips());
  EXPECT_NE(test::ReadFileText(h.ErrorLogPath())
                .find("program error 13 in module Common.InitializeTooltips"),
            std::string::npos);
}

}  // namespace
}  // namespace vellumar
