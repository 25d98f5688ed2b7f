// The field slots as the central module serves them: the lists, the columns' sizes and names,
// filling empty slots, and the remembered values.
#include <string>

#include "frame/error_log.h"
#include "logpage/log_page_fixture.h"
#include "logstore/schema_tables.h"
#include "platform/vb/error.h"

namespace vellumar {
namespace {

using test::LogPageTest;

TEST_F(LogPageTest, NineSlotsHaveLists) {
  for (int i = 0; i < kFieldCount; ++i) {
    const bool listed =
        i == 0 || i == 2 || i == 5 || i == 8 || i == 9 || i == 15 || i == 22 || i == 31 || i == 33;
    EXPECT_EQ(app->module.FieldIsCombo(i), listed) << i;
    EXPECT_EQ(main().Fieldcombo.Exists(i), listed) << i;
  }
}

TEST_F(LogPageTest, EveryListStartsWithAnEmptyItem) {
  for (auto& c : main().Fieldcombo) {
    ASSERT_GT(c->ListCount(), 0) << c->Index();
    EXPECT_EQ(c->List(0), "") << c->Index();
  }
  EXPECT_EQ(combo(0).List(1), "160M");
  EXPECT_EQ(combo(0).List(15), "3CM");
  EXPECT_EQ(combo(5).ListCount(), 18);
  EXPECT_EQ(combo(8).List(5), "X");
  EXPECT_EQ(combo(9).ListCount(), 3);
  EXPECT_EQ(combo(15).ListCount(), 51);
  EXPECT_EQ(combo(22).List(7), "AN");
  EXPECT_EQ(combo(31).List(14), "LB");
  // The prefixes of the DXCC database, with their codes as item data.
  ASSERT_EQ(combo(2).ListCount(), 4);
  int g = -1;
  for (int i = 1; i < 4; ++i)
    if (combo(2).List(i) == "G") g = i;
  ASSERT_GT(g, 0);
  EXPECT_EQ(combo(2).ItemData(g), 223);
}

TEST_F(LogPageTest, WidthsAndNamesComeFromTheOpenLog) {
  EXPECT_EQ(app->module.FieldWidth(1), 13);
  EXPECT_EQ(app->module.FieldWidth(33), 4);
  EXPECT_EQ(app->module.FieldName(19), "QSO_Begin");
  EXPECT_EQ(app->module.FieldName(34), "ADDRESS");
}

TEST_F(LogPageTest, AnIndexOutsideTheSlotsIsABoundsError) {
  for (int bad : {-1, 35}) {
    try {
      app->module.FieldWidth(bad);
      ADD_FAILURE() << "no error for " << bad;
    } catch (const vb::VbError& e) {
      EXPECT_EQ(e.number(), 9);
    }
    EXPECT_THROW(app->module.SetPrevFieldValue(bad, "x"), vb::VbError);
    EXPECT_THROW(app->module.GetPrevFieldValue(bad), vb::VbError);
    EXPECT_THROW(main().Fieldbox(bad), vb::VbError);
  }
  // Through a procedure's tail, the error reaches the error log.
  WithFailureTail(app->common.errorLog(), "VellumModule.InitializeField",
                  [&] { app->module.InitializeField(35, "x"); });
  EXPECT_NE(h.ErrorLogText().find("VellumModule.InitializeField"), std::string::npos);
  EXPECT_NE(h.ErrorLogText().find("Subscript out of range"), std::string::npos) << h.ErrorLogText();
}

TEST_F(LogPageTest, InitializeFieldNeverOverwritesAndCutsToTheField) {
  main().NewCmd.UserClick();
  app->module.InitializeField(6, "Hiram Percy Maxim of Hartford");
  EXPECT_EQ(box(6).Text(), "Hiram Percy Maxim of");  // the first 20 characters
  app->module.InitializeField(6, "Bob");
  EXPECT_EQ(box(6).Text(), "Hiram Percy Maxim of");  // the first default wins
  app->module.InitializeField(34, std::string(2000, 'a'));
  EXPECT_EQ(box(34).Text().size(), 1024u);
  app->module.InitializeField(12, "Zürich, Schweiz, a long way off");  // counted in characters
  EXPECT_EQ(box(12).Text(), "Zürich, Schweiz, a long way of");
}

TEST_F(LogPageTest, OnlyTheFiveRememberedFieldsReachTheSettings) {
  app->module.SetPrevFieldValue(6, "Bob");
  app->module.SetPrevFieldValue(5, "CW");
  EXPECT_EQ(app->module.GetPrevFieldValue(6), "Bob");
  app->module.CloseLog();
  EXPECT_EQ(h.Setting("Configuration", "PrevFieldValue6"), "<missing>");
  EXPECT_EQ(h.Setting("Configuration", "PrevFieldValue5"), "CW");
  EXPECT_EQ(h.Setting("Configuration", "PrevFieldValue4"), "");
  EXPECT_EQ(h.Setting("Configuration", "PrevFieldValue33"), "");
}

TEST_F(LogPageTest, AnEmptySavedValueRestoresAsNotPresent) {
  h.Seed("Configuration", "PrevFieldValue5", "");
  h.Seed("Configuration", "PrevFieldValue4", "14.2");
  app->module.OpenLog(h.setup().LogPathname.Text(), false);
  EXPECT_FALSE(app->module.PrevFields.PrevFieldPresent(5));
  EXPECT_EQ(app->module.GetPrevFieldValue(5), "");
  EXPECT_FALSE(app->module.PrevFields.PrevFieldPresent(27));  // never saved
  EXPECT_EQ(app->module.GetPrevFieldValue(27), "");
  EXPECT_TRUE(app->module.PrevFields.PrevFieldPresent(4));
  EXPECT_EQ(app->module.GetPrevFieldValue(4), "14.2");
  EXPECT_TRUE(app->module.PrevFields.PrevFieldPersistent(30));
  EXPECT_FALSE(app->module.PrevFields.PrevFieldPersistent(6));
}

TEST_F(LogPageTest, FieldValueReadsNullAndMissingAsEmpty) {
  main().NewCmd.UserClick();
  EXPECT_EQ(VellumModule::FieldValue(log(), 6), "");
  EXPECT_EQ(VellumModule::FieldValue(log(), 99), "");
  Type(1, "K2AA");
  Enter(1);
  main().SaveCmd.UserClick();
  EXPECT_EQ(VellumModule::FieldValue(log(), 1), "K2AA");
}

TEST_F(LogPageTest, SetFieldEnableCoversListsDateBoxesAndTheRowCommands) {
  main().NewCmd.UserClick();
  main().SetFieldEnable(false);
  EXPECT_FALSE(main().FieldsEnabled());
  EXPECT_FALSE(combo(5).Enabled());
  EXPECT_FALSE(main().DateBox(16).Enabled());
  EXPECT_FALSE(box(6).Enabled());
  EXPECT_FALSE(main().FieldLabel(6).Enabled());
  EXPECT_FALSE(main().DeleteCmd.Enabled());
  EXPECT_FALSE(main().ConfirmCmd.Enabled());
  main().SetFieldEnable(true);
  EXPECT_TRUE(combo(5).Enabled());
  EXPECT_TRUE(main().DeleteCmd.Enabled());
}

}  // namespace
}  // namespace vellumar
