// The table of the Log Page Display's columns: its defaults, reading it back, the changes made
// in the LogLayout grid of the configuration window and what they do to LogGrid.
#include <gtest/gtest.h>

#include "config/log_layout_fixture.h"

namespace vellumar::test {
namespace {

TEST_F(LogLayoutTest, AnEmptyFirstFieldNameGivesTheEightDefaultColumnsAndWritesThem) {
  // A stored row after an empty first one is not part of the table.
  Seed("FieldName0", "");
  SeedRow(1, "Comment", "Notes", "Left");
  Start();
  EXPECT_EQ(LayoutColumn(0), kDefaultFields);
  EXPECT_EQ(LayoutColumn(1), kDefaultCaptions);
  EXPECT_EQ(LayoutColumn(2), std::vector<std::string>(8, "Right"));
  for (int i = 0; i < 8; ++i) {
    const std::string n = std::to_string(i);
    EXPECT_EQ(Setting("FieldName" + n), kDefaultFields[static_cast<size_t>(i)]);
    EXPECT_EQ(Setting("FieldCaption" + n), kDefaultCaptions[static_cast<size_t>(i)]);
    EXPECT_EQ(Setting("FieldAlignment" + n), "Right");
    EXPECT_EQ(column(i).Caption, kDefaultCaptions[static_cast<size_t>(i)]);
    EXPECT_EQ(column(i).Alignment, ui::dbgRight);
    EXPECT_TRUE(column(i).Visible);
  }
  // The stored table ends after the eighth row.
  EXPECT_EQ(Setting("FieldName8"), "");
  EXPECT_EQ(GridFields(), kDefaultFields);
  EXPECT_EQ(app->module.LogLayoutUpperBound(), 7);
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(LogLayoutTest, AFirstRunWritesTheDefaultsToo) {
  Start();
  EXPECT_EQ(Setting("FieldName2"), "QSO_Begin");
  EXPECT_EQ(Setting("FieldCaption2"), "Starting UTC");
  EXPECT_EQ(GridFields(), kDefaultFields);
}

TEST_F(LogLayoutTest, StoredRowsAreReadBackAndNothingIsWritten) {
  SeedRow(0, "Call", "Callsign", "Left");
  SeedRow(1, "Freq", "MHz", "center");
  SeedRow(2, "Comment", "Notes", "Right");
  Start();
  EXPECT_EQ(LayoutColumn(0), (std::vector<std::string>{"Call", "Freq", "Comment"}));
  EXPECT_EQ(LayoutColumn(1), (std::vector<std::string>{"Callsign", "MHz", "Notes"}));
  EXPECT_EQ(LayoutColumn(2), (std::vector<std::string>{"Left", "center", "Right"}));
  EXPECT_EQ(GridFields(), (std::vector<std::string>{"Call", "Freq", "Comment"}));
  EXPECT_EQ(column(0).Caption, "Callsign");
  EXPECT_EQ(column(0).Alignment, ui::dbgLeft);
  EXPECT_EQ(column(1).Alignment, ui::dbgCenter);  // the case of the text doesn't matter
  EXPECT_EQ(column(2).Alignment, ui::dbgRight);
  EXPECT_EQ(Setting("FieldName3"), "<missing>");
  EXPECT_EQ(app->module.LogLayoutUpperBound(), 2);
}

TEST_F(LogLayoutTest, AnAlignmentTextThatIsNoneOfTheThreeGivesRight) {
  SeedRow(0, "Call", "Call", "Middle");
  SeedRow(1, "Band", "Band", "");
  SeedRow(2, "Mode", "Mode", "left");
  Start();
  EXPECT_EQ(column(0).Alignment, ui::dbgRight);
  EXPECT_EQ(column(1).Alignment, ui::dbgRight);
  EXPECT_EQ(column(2).Alignment, ui::dbgLeft);
  app->module.SetColumnAlignment(2, "CENTRE");
  EXPECT_EQ(column(2).Alignment, ui::dbgRight);
  app->module.SetColumnAlignment(2, "Center");
  EXPECT_EQ(column(2).Alignment, ui::dbgCenter);
}

TEST_F(LogLayoutTest, TheLayoutGridOffersTheFieldsAndTheAlignmentsAndKeepsItsWidths) {
  Seed("LogLayoutColumnWidth0", "2100");
  Seed("LogLayoutColumnWidth2", "900");
  Start();
  const auto& columns = layout().Columns();
  ASSERT_EQ(columns.size(), 3u);
  EXPECT_EQ(columns[0].Width, 2100);
  EXPECT_EQ(columns[1].Width, 1500);  // the grid's own
  EXPECT_EQ(columns[2].Width, 900);
  ASSERT_EQ(columns[0].ValueItems.size(), 35u);
  EXPECT_EQ(columns[0].ValueItems.front(), "Band");
  EXPECT_EQ(columns[0].ValueItems[19], "QSO_Begin");
  EXPECT_EQ(columns[0].ValueItems.back(), "ADDRESS");
  EXPECT_TRUE(columns[1].ValueItems.empty());
  EXPECT_EQ(columns[2].ValueItems, (std::vector<std::string>{"Left", "Center", "Right"}));
  EXPECT_TRUE(grid().AllowColMove());
  EXPECT_TRUE(grid().AllowColResize());
  EXPECT_EQ(grid().DataSource(), &app->main.LogPosition);
}

TEST_F(LogLayoutTest, TheFontsComeFromTheConfigurationKeysWithTheirLeadingBlanks) {
  h.Seed("Configuration", "LogFontName", "DejaVu Sans");
  h.Seed("Configuration", "LogFontSize", "10");
  h.Seed("Configuration", "LogFontBold", "True");
  h.Seed("Configuration", " LogFontItalic", "True");
  h.Seed("Configuration", "LogPanelFontName", "DejaVu Serif");
  h.Seed("Configuration", "LogPanelFontSize", "12");
  h.Seed("Configuration", "LogPanelFontItalic", "True");  // not the key: it lacks the blank
  Start();
  EXPECT_EQ(grid().Font(), (ui::Font{"DejaVu Sans", 10, true, true}));
  const ui::Font panel{"DejaVu Serif", 12, false, false};
  for (auto& box : app->main.Fieldbox) EXPECT_EQ(box->Font(), panel) << box->Index();
  for (auto& combo : app->main.Fieldcombo) EXPECT_EQ(combo->Font(), panel) << combo->Index();
}

TEST_F(LogLayoutTest, WithoutFontKeysTheFaceIsTheDefaultOne) {
  Start();
  EXPECT_EQ(grid().Font().Name, "MS Sans Serif");
  EXPECT_EQ(app->main.Fieldbox(1).Font().Name, "MS Sans Serif");
}

// ---- UpdateLayout ----

TEST_F(LogLayoutTest, ANewFieldBindsTheRowsColumnUnderTheRowsCaption) {
  Start();
  grid().Columns()[1].Width = 100;
  app->module.UpdateLayout(1, 0, "Comment");
  EXPECT_EQ(layout().ArrayCell(1, 0), "Comment");
  EXPECT_EQ(Setting("FieldName1"), "Comment");
  EXPECT_EQ(Setting("FieldCaption1"), "DXCC");
  EXPECT_EQ(column(1).DataField, "Comment");
  EXPECT_EQ(column(1).Caption, "DXCC");
  EXPECT_EQ(column(1).Width, std::min(WidthByText("Comment", "DXCC"), Limit()));
  EXPECT_EQ(column(1).Alignment, ui::dbgRight);
}

TEST_F(LogLayoutTest, ANewCaptionRenamesTheColumnAndAppliesTheRowsAlignment) {
  SeedRow(0, "Call", "Call", "Left");
  SeedRow(1, "Name", "Name", "Center");
  Start();
  grid().Columns()[1].Alignment = ui::dbgRight;
  app->module.UpdateLayout(1, 1, "Operator's name");
  EXPECT_EQ(Setting("FieldCaption1"), "Operator's name");
  EXPECT_EQ(column(1).Caption, "Operator's name");
  EXPECT_EQ(column(1).DataField, "Name");
  EXPECT_EQ(column(1).Width, std::min(WidthByText("Name", "Operator's name"), Limit()));
  EXPECT_EQ(column(1).Alignment, ui::dbgCenter);
}

TEST_F(LogLayoutTest, ANewAlignmentAlignsTheColumn) {
  Start();
  app->module.UpdateLayout(3, 2, "Left");
  EXPECT_EQ(Setting("FieldAlignment3"), "Left");
  EXPECT_EQ(column(3).Alignment, ui::dbgLeft);
  app->module.UpdateLayout(3, 2, "");
  EXPECT_EQ(Setting("FieldAlignment3"), "");
  EXPECT_EQ(column(3).Alignment, ui::dbgRight);
}

TEST_F(LogLayoutTest, AnEmptyFieldOrCaptionIsStoredButChangesNothingInTheGrid) {
  Start();
  const std::vector<ui::GridColumn> before = grid().Columns();
  app->module.UpdateLayout(4, 1, "");
  EXPECT_EQ(layout().ArrayCell(4, 1), "");
  EXPECT_EQ(Setting("FieldCaption4"), "");
  EXPECT_EQ(column(4).Caption, "Mode");
  app->module.UpdateLayout(5, 0, "");
  EXPECT_EQ(Setting("FieldName5"), "");
  EXPECT_EQ(column(5).DataField, "RST_Sent");
  EXPECT_TRUE(column(5).Visible);
  EXPECT_EQ(grid().Columns().size(), before.size());
}

TEST_F(LogLayoutTest, ARowBeyondTheGridsColumnsGetsANewColumn) {
  Start();
  app->module.UpdateLayout(8, 1, "MHz");  // a caption first: the row names no field yet
  app->module.UpdateLayout(8, 0, "Freq");
  ASSERT_EQ(grid().Columns().size(), 9u);
  EXPECT_EQ(column(8).DataField, "Freq");
  EXPECT_EQ(column(8).Caption, "MHz");
  EXPECT_EQ(column(8).NumberFormat, "  0.000");
  EXPECT_EQ(Setting("FieldName8"), "Freq");
  EXPECT_EQ(app->module.LogLayoutUpperBound(), 8);
}

// ---- The LogLayout grid, as the operator works it ----

TEST_F(LogLayoutTest, EditingACaptionCellRenamesTheColumn) {
  Start();
  layout().UserEditCell(0, 1, "Callsign");
  EXPECT_EQ(layout().ArrayCell(0, 1), "Callsign");
  EXPECT_EQ(column(0).Caption, "Callsign");
  EXPECT_EQ(Setting("FieldCaption0"), "Callsign");
}

TEST_F(LogLayoutTest, PickingAFieldTakesEffectBeforeTheCellIsLeft) {
  Start();
  layout().UserSelectComboItem(2, 0, Item(0, "QSO_End"));
  EXPECT_TRUE(layout().EditActive());
  EXPECT_EQ(column(2).DataField, "QSO_End");
  EXPECT_EQ(Setting("FieldName2"), "QSO_End");
  layout().UserCommitEdit();
  EXPECT_EQ(layout().ArrayCell(2, 0), "QSO_End");
  EXPECT_EQ(column(2).DataField, "QSO_End");
  EXPECT_EQ(column(2).NumberFormat, app->setup().GetDateTimeFormat());
}

TEST_F(LogLayoutTest, PickingAnAlignmentAlignsTheColumn) {
  Start();
  layout().UserSelectComboItem(6, 2, Item(2, "Center"));
  EXPECT_EQ(column(6).Alignment, ui::dbgCenter);
  layout().UserCommitEdit();
  EXPECT_EQ(Setting("FieldAlignment6"), "Center");
}

TEST_F(LogLayoutTest, EnterEndsTheEditInHand) {
  Start();
  layout().UserType(7, 1, "Op");
  EXPECT_EQ(column(7).Caption, "Name");
  layout().UserKey(ui::vbKeyReturn);
  EXPECT_FALSE(layout().EditActive());
  EXPECT_EQ(column(7).Caption, "Op");
  EXPECT_EQ(Setting("FieldCaption7"), "Op");
}

TEST_F(LogLayoutTest, ANewRowEndsTheEditFirstAndAFieldInItAddsAColumn) {
  Start();
  layout().UserType(0, 1, "Station");
  layout().UserInsertRow();
  EXPECT_EQ(column(0).Caption, "Station");
  EXPECT_EQ(Setting("FieldCaption0"), "Station");
  ASSERT_EQ(layout().ArrayRowCount(), 9);
  EXPECT_EQ(layout().Row(), 8);
  EXPECT_EQ(Setting("FieldName8"), "");  // an empty row still ends the stored table
  EXPECT_EQ(app->module.LogLayoutUpperBound(), 7);

  layout().UserSelectComboItem(8, 0, Item(0, "GRIDSQUARE"));
  layout().UserEditCell(8, 1, "Locator");
  ASSERT_EQ(grid().Columns().size(), 9u);
  EXPECT_EQ(column(8).DataField, "GRIDSQUARE");
  EXPECT_EQ(column(8).Caption, "Locator");
  EXPECT_EQ(Setting("FieldName8"), "GRIDSQUARE");
  EXPECT_EQ(Setting("FieldCaption8"), "Locator");

  // Read back at the next opening.
  Reopen();
  EXPECT_EQ(layout().ArrayRowCount(), 9);
  EXPECT_EQ(column(8).DataField, "GRIDSQUARE");
  EXPECT_EQ(column(0).Caption, "Station");
}

TEST_F(LogLayoutTest, AColumnWhoseFieldWasDeletedDisappearsAtTheNextFormat) {
  Start();
  layout().UserDeleteRow(2);  // QSO_Begin
  // The row is gone from the table and from the settings; the column is hidden.
  EXPECT_EQ(layout().ArrayRowCount(), 7);
  EXPECT_EQ(LayoutColumn(0), (std::vector<std::string>{"Call", "DXCCPrefix", "Band", "Mode",
                                                       "RST_Sent", "RST_Rcvd", "Name"}));
  EXPECT_EQ(Setting("FieldName2"), "Band");
  EXPECT_EQ(Setting("FieldName6"), "Name");
  EXPECT_EQ(Setting("FieldName7"), "");
  ASSERT_EQ(grid().Columns().size(), 8u);
  EXPECT_FALSE(column(2).Visible);

  app->module.FormatLogGrid();
  EXPECT_EQ(GridFields(), LayoutColumn(0));
  for (const ui::GridColumn& c : grid().Columns()) EXPECT_TRUE(c.Visible) << c.DataField;

  Reopen();
  EXPECT_EQ(layout().ArrayRowCount(), 7);
  EXPECT_EQ(GridFields(), LayoutColumn(0));
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(LogLayoutTest, DeletingEveryRowBringsBackTheDefaultsAtTheNextOpening) {
  SeedRow(0, "Call", "Call", "Left");
  Start();
  layout().UserDeleteRow(0);
  EXPECT_EQ(Setting("FieldName0"), "");
  EXPECT_EQ(app->module.LogLayoutUpperBound(), -1);
  app->module.FormatLogGrid();
  EXPECT_TRUE(grid().Columns().empty());
  Reopen();
  EXPECT_EQ(GridFields(), kDefaultFields);
}

TEST_F(LogLayoutTest, TheLayoutGridFollowsTheLog) {
  Start();
  EXPECT_TRUE(layout().Enabled());
  app->module.CloseLog();
  EXPECT_FALSE(layout().Enabled());
}

}  // namespace
}  // namespace vellumar::test
