// Editing a cell of the Log Page Display: the field's rule decides, the row is written through
// the record layer, and the panel shows the row as written.
#include <string>

#include "logpage/log_page_fixture.h"
#include "platform/vb/date_value.h"

namespace vellumar {
namespace {

using test::LogPageTest;

// Two QSOs saved, the display standing on the last. The default layout's columns: Call, DXCC,
// Starting UTC, Band, Mode, Sent, Rcvd, Name.
class GridEditTest : public LogPageTest {
 protected:
  static constexpr int kCallColumn = 0, kBeginColumn = 2, kModeColumn = 4, kNameColumn = 7;
  GridEditTest() {
    LogQSO("K2AA");
    LogQSO("K3BB");
  }
  bool EditCell(int column, const std::string& text) {
    return main().LogGrid.UserEditBoundCell(column, text);
  }
};

TEST_F(GridEditTest, ACellEditWritesTheRowAndThePanelFollows) {
  ASSERT_EQ(main().LogGrid.Columns()[kNameColumn].DataField, "Name");
  ASSERT_TRUE(main().LogGrid.AllowUpdate());
  ASSERT_EQ(box(1).Text(), "K3BB");
  EXPECT_TRUE(EditCell(kNameColumn, "Hiram"));
  EXPECT_EQ(FileValue("K3BB", "Name"), "Hiram");
  EXPECT_EQ(FileValue("K2AA", "Name"), "");
  EXPECT_EQ(box(6).Text(), "Hiram");
  EXPECT_FALSE(app->module.RecordModified());
  EXPECT_FALSE(main().SaveCmd.Enabled());
}

TEST_F(GridEditTest, AModeInNoListEditedInTheGridIsKeptAndTheListShowsEmpty) {
  EXPECT_TRUE(EditCell(kModeColumn, "FT8"));
  EXPECT_EQ(FileValue("K3BB", "Mode"), "FT8");
  EXPECT_EQ(box(5).Text(), "FT8");
  EXPECT_EQ(combo(5).ListIndex(), 0);
  EXPECT_TRUE(EditCell(kModeColumn, "CW"));
  EXPECT_EQ(combo(5).Text(), "CW");
}

TEST_F(GridEditTest, AnEditOfAnotherRowWritesThatRow) {
  main().LogPosition.MoveFirst();
  ASSERT_EQ(box(1).Text(), "K2AA");
  EXPECT_TRUE(EditCell(kNameColumn, "Al"));
  EXPECT_EQ(FileValue("K2AA", "Name"), "Al");
  EXPECT_EQ(FileValue("K3BB", "Name"), "");
  EXPECT_EQ(RowsInFile(), 2);
}

TEST_F(GridEditTest, ABrokenRuleBlinksTheLabelAndWritesNothing) {
  EXPECT_FALSE(EditCell(kNameColumn, std::string(21, 'N')));  // Name holds 20
  EXPECT_TRUE(main().FieldInError[6]);
  EXPECT_EQ(main().FieldLabel(6).ForeColor(), 255u);
  EXPECT_TRUE(main().ErrorTimer.Enabled());
  EXPECT_EQ(FileValue("K3BB", "Name"), "");

  EXPECT_FALSE(EditCell(kCallColumn, ""));  // a QSO needs its callsign
  EXPECT_TRUE(main().FieldInError[1]);
  EXPECT_EQ(FileValue("K3BB", "Call"), "K3BB");

  EXPECT_FALSE(EditCell(kBeginColumn, "12/31/1929 10:00"));  // before 1930
  EXPECT_TRUE(main().FieldInError[19]);
  EXPECT_FALSE(EditCell(kBeginColumn, "not a date"));
  EXPECT_EQ(h.ErrorLogText(), "");  // refused by the rule, not by the record layer
}

TEST_F(GridEditTest, AStartTimeEditedInTheGridIsStoredAsADate) {
  EXPECT_TRUE(EditCell(kBeginColumn, "11/20/2026 10:15"));
  db::Recordset rs = app->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
  rs.FindFirst("Call = 'K3BB'");
  ASSERT_FALSE(rs.NoMatch());
  EXPECT_DOUBLE_EQ(rs.Fields("QSO_Begin").Value().ToDate(),
                   vb::DateSerial(2026, 11, 20) + vb::TimeSerial(10, 15, 0));
}

TEST_F(GridEditTest, AColumnTheLogLacksIsReportedAndWritesNothing) {
  // A column whose field the log lacks: the record layer refuses it, and the error is reported.
  main().LogGrid.Columns()[kNameColumn].DataField = "NoSuchField";
  const std::string before = FileValue("K3BB", "Name");
  EXPECT_FALSE(EditCell(kNameColumn, "Hiram"));
  EXPECT_EQ(FileValue("K3BB", "Name"), before);
  EXPECT_NE(h.ErrorLogText().find("LogGrid"), std::string::npos) << h.ErrorLogText();
}

TEST_F(GridEditTest, AGridThatDoesntAllowUpdatesWritesNothing) {
  main().LogGrid.SetAllowUpdate(false);
  EXPECT_FALSE(EditCell(kNameColumn, "Hiram"));
  EXPECT_EQ(FileValue("K3BB", "Name"), "");
}

}  // namespace
}  // namespace vellumar
