// LogGrid formatted from the layout: widths by the texts, the stored widths and their limit, the
// order of the columns after the user's moves, the formats of frequencies and times, and
// failures reported with the state reached.
#include <gtest/gtest.h>

#include "config/log_layout_fixture.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"

namespace vellumar::test {
namespace {

TEST_F(LogLayoutTest, WidthsComeFromCaptionAndFieldSize) {
  Start();
  for (size_t i = 0; i < kDefaultFields.size(); ++i) {
    EXPECT_EQ(column(static_cast<int>(i)).Width,
              std::min(WidthByText(kDefaultFields[i], kDefaultCaptions[i]), Limit()))
        << kDefaultFields[i];
  }
  // A long caption over a short field is as wide as its caption; a long field over a short
  // caption as wide as its "W"s.
  const ui::Font& font = grid().Font();
  EXPECT_EQ(column(5).Width, app->desktop.TextWidth(font, "  Sent"));              // RST_Sent, 3
  EXPECT_EQ(column(7).Width, app->desktop.TextWidth(font, std::string(20, 'W')));  // Name, 20
}

TEST_F(LogLayoutTest, AStoredWidthStandsAndNoColumnIsWiderThanThreeQuartersOfTheGrid) {
  Seed("LogColumnWidth0", "777");
  Seed("LogColumnWidth1", "99999");
  SeedRow(0, "Call", "Call", "Left");
  SeedRow(1, "Band", "Band", "Left");
  SeedRow(2, "Comment", "Comment", "Left");
  Start();
  EXPECT_EQ(column(0).Width, 777);
  // Not laid out by a view, the grid spans its window.
  EXPECT_EQ(grid().Width(), 0);
  EXPECT_EQ(column(1).Width, static_cast<int>(std::nearbyint(0.75 * app->main.Width())));

  grid().Move(0, 0, 4000, 0);
  app->module.FormatLogGrid();
  EXPECT_EQ(column(0).Width, 777);
  EXPECT_EQ(column(1).Width, 3000);
  ASSERT_GT(WidthByText("Comment", "Comment"), 3000);  // fifty "W"s
  EXPECT_EQ(column(2).Width, 3000);
}

TEST_F(LogLayoutTest, WidthsAreSavedAsTheUserSizesAndMovesAndComeBack) {
  Start();
  grid().UserResizeColumn(2, 2345);
  EXPECT_EQ(Setting("LogColumnWidth2"), "2345");
  EXPECT_EQ(Setting("LogColumnWidth0"), std::to_string(column(0).Width));
  grid().Columns()[3].Width = 1111;  // not saved until a size or a move
  EXPECT_EQ(Setting("LogColumnWidth3"), std::to_string(WidthByText("Band", "Band")));
  grid().UserMoveColumn(0, 1);
  EXPECT_EQ(Setting("LogColumnWidth3"), "1111");
  Reopen();
  EXPECT_EQ(column(2).Width, 2345);
  EXPECT_EQ(column(3).Width, 1111);
}

TEST_F(LogLayoutTest, TheOrderIsSavedWhenTheLogClosesAndRestoredAtTheNextOpening) {
  Start();
  grid().UserMoveColumn(0, 3);  // Call after DXCC, QSO_Begin and Band
  EXPECT_EQ(column(0).Order, 3);
  EXPECT_EQ(column(1).Order, 0);
  EXPECT_EQ(column(3).Order, 2);
  EXPECT_EQ(Setting("FieldOrder0"), "<missing>");  // the order goes to the store at closing
  app->module.CloseLog();
  const std::vector<std::string> orders = {"3", "0", "1", "2", "4", "5", "6", "7"};
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(Setting("FieldOrder" + std::to_string(i)), orders[static_cast<size_t>(i)]);
  app->module.OpenLog(h.LogPath("K1ABC.vdb"), false);
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(column(i).Order, std::stoi(orders[static_cast<size_t>(i)])) << i;
}

TEST_F(LogLayoutTest, TheEndOfTheRunSavesWidthsAndOrder) {
  Start();
  grid().Columns()[4].Width = 1234;
  grid().Columns()[4].Order = 0;
  grid().Columns()[0].Order = 4;
  ASSERT_TRUE(app->CloseMainWindow(ui::vbFormControlMenu));
  EXPECT_EQ(Setting("LogColumnWidth4"), "1234");
  EXPECT_EQ(Setting("FieldOrder4"), "0");
  EXPECT_EQ(Setting("FieldOrder0"), "4");
  EXPECT_EQ(Setting("LogLayoutColumnWidth0"), "1500");
}

TEST_F(LogLayoutTest, FrequenciesShowThreeDecimalsAndTimesTheConfiguredFormat) {
  SeedRow(0, "Freq", "MHz", "Right");
  SeedRow(1, "QSO_Begin", "Start", "Right");
  SeedRow(2, "QSO_End", "End", "Right");
  SeedRow(3, "Call", "Call", "Left");
  Start();
  EXPECT_EQ(column(0).NumberFormat, "  0.000");
  EXPECT_EQ(column(1).NumberFormat, "ddddd   hh:nn");
  EXPECT_EQ(column(2).NumberFormat, "ddddd   hh:nn");
  EXPECT_EQ(column(3).NumberFormat, "");
  EXPECT_EQ(grid().FormatCell(0, vb::Variant(std::string("14.025"))), "  14.025");
  EXPECT_EQ(grid().FormatCell(0, vb::Variant(std::string("7"))), "  7.000");
  EXPECT_EQ(grid().FormatCell(0, vb::Variant(std::string(""))), "");
  const double start = 45366.3541666667;  // 15 March 2024 08:30 UTC
  EXPECT_EQ(grid().FormatCell(1, vb::Variant::FromDate(start)),
            vb::FormatDate(start, "ddddd   hh:nn"));
  EXPECT_EQ(grid().FormatCell(3, vb::Variant(std::string("K1ABC"))), "K1ABC");

  app->setup().DisplaySecondsCheckbox.UserToggle();
  EXPECT_EQ(column(1).NumberFormat, "ddddd   hh:nn");  // until the grid is formatted again
  app->module.FormatLogGrid();
  EXPECT_EQ(column(1).NumberFormat, "ddddd   hh:nn:ss");
  EXPECT_EQ(column(2).NumberFormat, "ddddd   hh:nn:ss");
  EXPECT_EQ(grid().FormatCell(2, vb::Variant::FromDate(start)),
            vb::FormatDate(start, "ddddd   hh:nn:ss"));
}

TEST_F(LogLayoutTest, AValueTheFormatCannotTakeIsLogged) {
  SeedRow(0, "QSO_Begin", "Start", "Right");
  Start();
  // A date beyond the year 9999 has no text at all, formatted or plain.
  EXPECT_EQ(grid().FormatCell(0, vb::Variant::FromDate(1e7)), "");
  EXPECT_NE(h.ErrorLogText().find("VellumModule.FormatLogGrid format error: " +
                                  vb::ErrorDescription(vb::kInvalidProcedureCall)),
            std::string::npos)
      << h.ErrorLogText();
}

TEST_F(LogLayoutTest, AnUnknownFieldFailsTheFormatWithItsState) {
  SeedRow(0, "Call", "Call", "Left");
  SeedRow(1, "NoSuchField", "Nothing", "Left");
  SeedRow(2, "Band", "Band", "Left");
  Start();
  EXPECT_NE(h.ErrorLogText().find("program error 3265 in module VellumModule.FormatLogGrid, "
                                  "State = 3"),
            std::string::npos)
      << h.ErrorLogText();
  // What was applied before the failure stands; the log is open all the same.
  EXPECT_EQ(column(0).Caption, "Call");
  EXPECT_EQ(column(0).Alignment, ui::dbgLeft);
  EXPECT_TRUE(app->module.LogOpen());
}

TEST_F(LogLayoutTest, AnOrderThatIsNoNumberFailsTheFormatWithItsState) {
  Seed("FieldOrder0", "first");
  Start();
  EXPECT_NE(h.ErrorLogText().find("program error 13 in module VellumModule.FormatLogGrid, "
                                  "State = 2"),
            std::string::npos)
      << h.ErrorLogText();
}

TEST_F(LogLayoutTest, AWidthThatIsNoNumberFailsTheFormatWithItsState) {
  Seed("LogColumnWidth0", "wide");
  Start();
  EXPECT_NE(h.ErrorLogText().find("program error 13 in module VellumModule.FormatLogGrid, "
                                  "State = 3"),
            std::string::npos)
      << h.ErrorLogText();
}

TEST_F(LogLayoutTest, AFailureWhileReadingTheLayoutIsReportedWithItsState) {
  Seed("LogLayoutColumnWidth1", "narrow");
  h.Seed("Configuration", "LogFontSize", "big");
  Start();
  const std::string text = h.ErrorLogText();
  EXPECT_NE(text.find("program error 13 in module VellumModule.InitializeLogLayout, State = 3"),
            std::string::npos)
      << text;
  // The failure ended the procedure before the table was made; the log is open all the same.
  EXPECT_EQ(text.find("State = 6"), std::string::npos);
  EXPECT_TRUE(app->module.LogOpen());
}

TEST_F(LogLayoutTest, AFontSizeThatIsNoNumberFailsAtTheFontsState) {
  h.Seed("Configuration", "LogFontSize", "big");
  Start();
  EXPECT_NE(h.ErrorLogText().find(
                "program error 13 in module VellumModule.InitializeLogLayout, State = 6"),
            std::string::npos)
      << h.ErrorLogText();
  EXPECT_EQ(GridFields(), kDefaultFields);  // the table was made before the fonts
}

}  // namespace
}  // namespace vellumar::test
