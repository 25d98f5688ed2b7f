#include "config/set_combo.h"

#include <gtest/gtest.h>

namespace vellumar {
namespace {

TEST(SetCombo, FindsTheItemWithoutRegardToCaseAndSelectsIt) {
  ui::ComboBox combo("PrinterName");
  combo.AddItem("Print to PDF file");
  combo.AddItem("HP_LaserJet_4");
  int clicks = 0;
  combo.Click = [&] { ++clicks; };
  EXPECT_TRUE(SetCombo(combo, "hp_laserjet_4"));
  EXPECT_EQ(combo.ListIndex(), 1);
  EXPECT_EQ(combo.Text(), "HP_LaserJet_4");
  EXPECT_EQ(clicks, 1);
}

TEST(SetCombo, WithoutAMatchLeavesTheComboAlone) {
  ui::ComboBox combo("PrinterName");
  combo.AddItem("Print to PDF file");
  combo.SetListIndex(0);
  int clicks = 0;
  combo.Click = [&] { ++clicks; };
  EXPECT_FALSE(SetCombo(combo, "Print to PDF"));
  EXPECT_FALSE(SetCombo(combo, ""));
  EXPECT_EQ(combo.ListIndex(), 0);
  EXPECT_EQ(clicks, 0);
}

TEST(SetCombo, TakesTheFirstOfEqualItems) {
  ui::ComboBox combo("State");
  combo.AddItem("MA");
  combo.AddItem("ma");
  EXPECT_TRUE(SetCombo(combo, "Ma"));
  EXPECT_EQ(combo.ListIndex(), 0);
}

TEST(SetCombo, AnEmptyListMatchesNothing) {
  ui::ComboBox combo("Empty");
  EXPECT_FALSE(SetCombo(combo, "x"));
  EXPECT_EQ(combo.ListIndex(), -1);
}

}  // namespace
}  // namespace vellumar
