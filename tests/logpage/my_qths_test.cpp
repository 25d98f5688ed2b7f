// The my QTHs page: creating, saving and deleting the operator's stations, the myQTH lists, and
// the commands that write an ID into the QSOs of the Log Page Display.
#include <gtest/gtest.h>

#include <string>

#include "log_page_fixture.h"

namespace vellumar::test {
namespace {

class MyQTHsTest : public LogPageTest {
 protected:
  ui::TextBox& qth(int index) { return main().QTHFieldBox(index); }
  // New, the ID typed, Enter, the city typed, Save.
  void CreateQTH(const std::string& id, const std::string& city = "") {
    main().NewQTHCmd.UserClick();
    qth(0).UserType(id);
    if (!city.empty()) {
      qth(1).UserType(city);
    }
    main().SaveQTHCmd.UserClick();
  }
  std::vector<std::string> Items(ui::ComboBox& combo) {
    std::vector<std::string> items;
    for (int i = 0; i < combo.ListCount(); ++i) items.push_back(combo.List(i));
    return items;
  }
  long QTHRows() {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("QTHs", db::dbOpenDynaset);
    long n = 0;
    for (; !rs.EOF_(); rs.MoveNext()) ++n;
    return n;
  }
  std::string QSOQTH(const std::string& call) { return FileValue(call, "MYQTHID"); }
};

TEST_F(MyQTHsTest, ANewQTHIsSavedAndReachesBothLists) {
  CreateQTH("home", "Springfield");
  EXPECT_EQ(QTHRows(), 1);
  db::Recordset rs = app->module.LogDatabase.OpenRecordset("QTHs", db::dbOpenDynaset);
  EXPECT_EQ(rs.Fields("MYQTHID").Value().ToString(), "home");
  EXPECT_EQ(rs.Fields("City").Value().ToString(), "Springfield");
  EXPECT_EQ(Items(combo(33)), (std::vector<std::string>{"", "home"}));
  EXPECT_EQ(Items(app->capture.MyQTH), (std::vector<std::string>{"", "home"}));
  EXPECT_EQ(main().MyQTHIDs[0], "home");
  EXPECT_FALSE(main().SaveQTHCmd.Enabled());
}

TEST_F(MyQTHsTest, AnIDLongerThanTheLogsFieldIsRefusedNamingFourInANewLog) {
  main().NewQTHCmd.UserClick();
  qth(0).UserType("cabin");
  h.desktop.ExpectMsgBox("myQTH ID cannot be more than 4 characters in length");
  main().SaveQTHCmd.UserClick();
  db::Recordset rs = app->module.LogDatabase.OpenRecordset("QTHs", db::dbOpenDynaset);
  ASSERT_FALSE(rs.EOF_());
  EXPECT_EQ(rs.Fields("MYQTHID").Value().ToStringOrEmpty(), "");  // nothing saved
  EXPECT_EQ(Items(combo(33)), (std::vector<std::string>{""}));
}

TEST_F(MyQTHsTest, AQTHWithAnEmptyIDCantBeSavedAndStaysARowOfEmptyFields) {
  main().NewQTHCmd.UserClick();
  qth(1).UserType("Nowhere");
  EXPECT_FALSE(main().SaveQTHCmd.Enabled());
  main().SaveQTHCmd.UserClick();  // disabled: nothing happens
  main().SaveQTHCmd_Click();      // and the command itself refuses an empty ID
  db::Recordset rs = app->module.LogDatabase.OpenRecordset("QTHs", db::dbOpenDynaset);
  ASSERT_FALSE(rs.EOF_());
  EXPECT_EQ(rs.Fields("MYQTHID").Value().ToStringOrEmpty(), "");
  EXPECT_EQ(rs.Fields("City").Value().ToStringOrEmpty(), "");
}

TEST_F(MyQTHsTest, EnterWalksTheBoxesInItsOrder) {
  main().NewQTHCmd.UserClick();
  const std::vector<int> chain = {0, 1, 2, 3, 4, 8, 9, 10, 6, 7, 5, 0};
  for (size_t n = 0; n + 1 < chain.size(); ++n) {
    qth(chain[n]).SetFocus();
    qth(chain[n]).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn);
    EXPECT_TRUE(qth(chain[n + 1]).HasFocus()) << "after Enter in box " << chain[n];
  }
}

TEST_F(MyQTHsTest, The1024thQTHCanBeCreatedAndThe1025thCannot) {
  {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("QTHs", db::dbOpenDynaset);
    app->module.LogDatabase.BeginTrans();
    for (int i = 0; i < 1023; ++i) {
      rs.AddNew();
      rs.Fields("MYQTHID").SetValue(vb::Variant("q" + std::to_string(i)));
      rs.Update();
    }
    app->module.LogDatabase.CommitTrans();
  }
  main().OpenQTHRecordset(main().QTHPosition.DatabaseName);
  main().NewQTHCmd.UserClick();  // the 1024th
  EXPECT_EQ(QTHRows(), 1024);
  h.desktop.ExpectMsgBox("you have already created the maximum number of QTHs");
  main().NewQTHCmd.UserClick();
  EXPECT_EQ(QTHRows(), 1024);
}

TEST_F(MyQTHsTest, DeletingAQTHAsksAndLeavesTheQSOsThatNameIt) {
  CreateQTH("home");
  CreateQTH("park");
  LogQSO("K1ABC");
  h.desktop.ExpectMsgBox("Set the myQTH ID in every QSO in the Log Page Display to park ?",
                         ui::vbYes);
  main().SetLogCmd.UserClick();
  ASSERT_EQ(QSOQTH("K1ABC"), "park");
  app->setup().ConfirmDeleteCheck.SetValue(1);
  h.desktop.ExpectMsgBox("Delete current QTH?", ui::vbYes);
  main().DeleteQTHCmd.UserClick();
  EXPECT_EQ(QTHRows(), 1);
  EXPECT_EQ(QSOQTH("K1ABC"), "park");
  EXPECT_EQ(Items(combo(33)), (std::vector<std::string>{"", "home"}));
  EXPECT_EQ(qth(0).Text(), "home");
}

TEST_F(MyQTHsTest, ADeleteAnsweredNoKeepsTheQTH) {
  CreateQTH("home");
  app->setup().ConfirmDeleteCheck.SetValue(1);
  h.desktop.ExpectMsgBox("Delete current QTH?", ui::vbNo);
  main().DeleteQTHCmd.UserClick();
  EXPECT_EQ(QTHRows(), 1);
}

TEST_F(MyQTHsTest, SettingAnIDOnAFilteredDisplayTouchesOnlyItsRows) {
  CreateQTH("home");
  LogQSO("K1ABC");
  LogQSO("G3XYZ");
  main().FilterField.SetText("K1*");
  main().FilterCallCmd.UserClick();
  h.desktop.ExpectMsgBox("Set the myQTH ID in every QSO in the Log Page Display to home ?",
                         ui::vbYes);
  main().SetLogCmd.UserClick();
  EXPECT_EQ(QSOQTH("K1ABC"), "home");
  EXPECT_EQ(QSOQTH("G3XYZ"), "");
  main().FilterClearCmd.UserClick();
  h.desktop.ExpectMsgBox("Clear the myQTH ID in every QSO in the Log Page Display?", ui::vbYes);
  main().ClrLogCmd.UserClick();
  EXPECT_EQ(QSOQTH("K1ABC"), "");
}

TEST_F(MyQTHsTest, SetLogNamesAnEmptyIDAndAnEmptyDisplay) {
  main().NewQTHCmd.UserClick();
  h.desktop.ExpectMsgBox("the current myQTH ID is empty");
  main().SetLogCmd_Click();
  qth(0).UserType("home");
  h.desktop.ExpectMsgBox("the Log Page Display is currently empty");
  main().SetLogCmd_Click();
  h.desktop.ExpectMsgBox("the Log Page Display is currently empty");
  main().ClrLogCmd_Click();
}

TEST_F(MyQTHsTest, FindMyQTHComparesWithoutRegardToCase) {
  CreateQTH("home");
  CreateQTH("park");
  EXPECT_TRUE(main().FindMyQTH("PARK"));
  EXPECT_EQ(main().QTHFieldValue(0), "park");
  EXPECT_FALSE(main().FindMyQTH("par"));
}

TEST_F(MyQTHsTest, TheGridsOrderIsSavedWhenTheLogCloses) {
  main().QTHGrid.Columns()[1].Order = 5;
  app->module.CloseLog();
  EXPECT_EQ(h.Setting("QTH", "QTHFieldOrder1"), "5");
  EXPECT_EQ(h.Setting("QTH", "QTHFieldOrder0"), "0");
}

}  // namespace
}  // namespace vellumar::test
