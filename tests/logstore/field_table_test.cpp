#include "logstore/field_table.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "logstore/schema_tables.h"
#include "platform/vb/error.h"

namespace vellumar::logstore {
namespace {

TEST(FieldTable, TheNineComboSlots) {
  std::vector<int> combos;
  for (int i = 0; i < kQSOFieldCount; ++i)
    if (kFieldSlots[i].combo) combos.push_back(i);
  EXPECT_EQ(combos, (std::vector<int>{0, 2, 5, 8, 9, 15, 22, 31, 33}));
}

TEST(FieldTable, SlotsFollowTheFieldOrderOfQSOs) {
  EXPECT_STREQ(kFieldSlots[1].label, "call");
  EXPECT_STREQ(kFieldSlots[3].label, "");
  EXPECT_STREQ(kFieldSlots[19].toolTip,
               "UTC time at which QSO started (double-click for current time)");
  EXPECT_STREQ(kFieldSlots[32].toolTip, "");
  EXPECT_STREQ(kFieldSlots[34].label, "addr");
  EXPECT_EQ(kFieldSlots.size(), kQSOFields.size());
}

TEST(FieldTable, ComboListsInTheirOrder) {
  ASSERT_EQ(ComboItems(0).size(), 15u);
  EXPECT_STREQ(ComboItems(0).front(), "160M");
  EXPECT_STREQ(ComboItems(0).back(), "3CM");
  ASSERT_EQ(ComboItems(5).size(), 17u);
  EXPECT_STREQ(ComboItems(5)[7], "Hell");
  EXPECT_STREQ(ComboItems(5).back(), "TOR");
  EXPECT_EQ(ComboItems(8).size(), 5u);
  EXPECT_EQ(ComboItems(9).size(), 2u);
  EXPECT_EQ(ComboItems(15).size(), 50u);
  EXPECT_STREQ(ComboItems(22).back(), "AN");
  EXPECT_STREQ(ComboItems(31).back(), "LB");
  // The DXCC prefixes and the myQTH IDs come from the databases; other slots have no list.
  EXPECT_TRUE(ComboItems(2).empty());
  EXPECT_TRUE(ComboItems(33).empty());
  EXPECT_TRUE(ComboItems(1).empty());
}

TEST(PrevFieldValues, OnlyTheFiveRememberedFieldsReachTheSettings) {
  std::map<std::string, std::string> store = {{"PrevFieldValue4", "14.025"},
                                              {"PrevFieldValue5", "CW"}};
  PrevFieldValues prev;
  prev.InitializePrevFieldValues([&](const std::string& key) { return store[key]; });
  EXPECT_EQ(prev.GetPrevFieldValue(4), "14.025");
  EXPECT_TRUE(prev.PrevFieldPresent(5));
  prev.SetPrevFieldValue(11, "a note");  // kept in memory only
  EXPECT_EQ(prev.GetPrevFieldValue(11), "a note");
  prev.SetPrevFieldValue(27, "CQ-WW-CW");
  std::map<std::string, std::string> saved;
  prev.SavePrevFieldValues([&](const std::string& key, const std::string& value) {
    saved[key] = value;
  });
  EXPECT_EQ(saved, (std::map<std::string, std::string>{{"PrevFieldValue4", "14.025"},
                                                       {"PrevFieldValue5", "CW"},
                                                       {"PrevFieldValue27", "CQ-WW-CW"},
                                                       {"PrevFieldValue30", ""},
                                                       {"PrevFieldValue33", ""}}));
}

TEST(PrevFieldValues, AnEmptySavedValueRestoresAsNotPresent) {
  PrevFieldValues prev;
  prev.InitializePrevFieldValues([](const std::string&) { return std::string(); });
  EXPECT_FALSE(prev.PrevFieldPresent(30));
  EXPECT_TRUE(prev.PrevFieldPersistent(30));
  EXPECT_EQ(prev.GetPrevFieldValue(30), "");
  EXPECT_FALSE(prev.PrevFieldPersistent(1));
  EXPECT_EQ(prev.GetPrevFieldValue(1), "");
}

TEST(PrevFieldValues, AnIndexOutsideTheSlotsIsABoundsError) {
  PrevFieldValues prev;
  for (int bad : {-1, 35}) {
    try {
      prev.SetPrevFieldValue(bad, "x");
      FAIL() << bad;
    } catch (const vb::VbError& e) {
      EXPECT_EQ(e.number(), 9);
    }
    EXPECT_THROW(prev.GetPrevFieldValue(bad), vb::VbError);
  }
}

}  // namespace
}  // namespace vellumar::logstore
