// The DXCC Summary window: made on first use, counted from the Progress table on a recordset of
// its own, the two award programmes, the operator's close that only hides it, and its unload
// with the program.
#include "logpage/dxcc_summary.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "logpage/log_page_fixture.h"

namespace vellumar::test {
namespace {

class DXCCSummaryTest : public LogPageTest {
 protected:
  DXCCSummary& summary() { return app->logPage.dxccSummary; }
  // Sets letters of an entity's row straight in the table.
  void SetLetters(const std::string& code, const std::map<std::string, std::string>& letters,
                  std::optional<bool> valid = std::nullopt) {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '" + code + "'");
    ASSERT_FALSE(rs.NoMatch());
    rs.Edit();
    for (const auto& [column, letter] : letters) rs.Fields(column).SetValue(vb::Variant(letter));
    if (valid) rs.Fields("Valid").SetValue(vb::Variant(*valid));
    rs.Update();
  }
  std::string Cell(ui::Grid& grid, int row, int col) { return grid.ArrayCell(row, col); }
};

TEST_F(DXCCSummaryTest, TheWindowIsMadeOnFirstUseWithItsTexts) {
  EXPECT_FALSE(summary().Loaded());
  LogQSO("K2AA");
  main().SummaryCmd.UserClick();
  EXPECT_TRUE(summary().Loaded());
  EXPECT_TRUE(summary().Visible());
  EXPECT_EQ(summary().Caption(), "DXCC Summary (includes deleted countries)");
  EXPECT_EQ(summary().AwardFrame.Caption(), "Award Program - include deleted countries?");
  EXPECT_EQ(summary().ViewUnDeletedButton.Caption(), "TOP (non-deleted only)");
  EXPECT_EQ(summary().ViewUnDeletedButton.ToolTipText(),
            "click to view results that don't inlclude deleted countries");
  EXPECT_EQ(summary().ViewDeletedButton.Caption(), "DXCC (includes deleted)");
  EXPECT_EQ(summary().ViewDeletedButton.ToolTipText(),
            "click to view results that inlclude deleted countries (Honor Roll totals count only "
            "non-deleted countries)");
  EXPECT_EQ(summary().SummaryProgress.ToolTipText(),
            "Progress of current update or report operation");
  EXPECT_EQ(summary().SummaryFrame.Caption(), "Summary");
  EXPECT_EQ(summary().DisplayProgressCmd.Caption(), "Update");
  EXPECT_EQ(summary().DisplayProgressCmd.ToolTipText(), "Update the above progress summary");
  EXPECT_EQ(summary().ReportFrame.Caption(), "Generate Reports");
  EXPECT_EQ(summary().ReportSubmissionCmd.Caption(), "Submission");
  EXPECT_EQ(summary().ReportSubmissionCmd.ToolTipText(),
            "Generate an ARRL DXCC submission in the Reports subfolder");
  EXPECT_EQ(summary().ReportProgressCmd.Caption(), "Progress");
  EXPECT_EQ(summary().ReportProgressCmd.ToolTipText(),
            "Generate a summary progress report in the Reports subfolder");
  EXPECT_EQ(summary().DeletedGrid.ArrayRowCount(), 25);
  EXPECT_EQ(summary().DeletedGrid.Columns().size(), 4u);
  const ui::Font& font = summary().Font();
  EXPECT_EQ(summary().DeletedGrid.Columns()[0].Width,
            h.desktop.TextWidth(font, "HF BandCountries  "));
  EXPECT_EQ(summary().DeletedGrid.Columns()[2].Width, h.desktop.TextWidth(font, "Confirmed  "));
}

TEST_F(DXCCSummaryTest, AResizeLaysTheGridsOutAndDerivesTheWidthsFromTheLetterA) {
  main().SummaryCmd_Click();
  summary().SetWidth(9000);
  summary().SetHeight(10000);
  const int a = h.desktop.TextWidth(summary().Font(), "A");
  for (ui::Grid* grid : {&summary().DeletedGrid, &summary().UnDeletedGrid}) {
    EXPECT_EQ(grid->Columns()[0].Width, 18 * a);  // "HF BandCountries  "
    EXPECT_EQ(grid->Columns()[3].Width, 11 * a);  // "Confirmed  "
    EXPECT_GT(grid->Height(), 0);
    EXPECT_LT(grid->Height(), 10000);
  }
  // The height of the grids follows the window.
  const int before = summary().DeletedGrid.Height();
  summary().SetHeight(12000);
  EXPECT_EQ(summary().DeletedGrid.Height(), before + 2000);
  // A minimized window keeps its layout.
  summary().SetWindowState(ui::vbMinimized);
  summary().SetHeight(5000);
  EXPECT_EQ(summary().DeletedGrid.Height(), before + 2000);
}

TEST_F(DXCCSummaryTest, CountsComeFromTheProgressTableIntoBothGrids) {
  // K: current, worked on 20 metres CW; VP2E: deleted, confirmed on 15 metres SSB.
  SetLetters("291", {{"20M", "W"}, {"CW", "W"}});
  SetLetters("12", {{"15M", "F"}, {"PHONE", "F"}}, false);
  summary().ComputeSummaryGrids();
  ui::Grid& dxcc = summary().DeletedGrid;
  ui::Grid& top = summary().UnDeletedGrid;
  EXPECT_EQ(Cell(dxcc, 5, 1), " 2");  // Mixed worked: both
  EXPECT_EQ(Cell(dxcc, 5, 2), " 1");
  EXPECT_EQ(Cell(dxcc, 1, 1), " 1");  // HR Mixed: the current one only
  EXPECT_EQ(Cell(dxcc, 1, 2), " ");
  EXPECT_EQ(Cell(dxcc, 16, 2), " 1");  // 15M
  EXPECT_EQ(Cell(top, 5, 1), " 1");
  EXPECT_EQ(Cell(top, 16, 1), " ");
  EXPECT_EQ(Cell(top, 1, 1), " 1");
  EXPECT_EQ(Cell(top, 23, 1), " 2");  // 20M and CW
  EXPECT_EQ(Cell(dxcc, 23, 1), " 4");
  EXPECT_EQ(Cell(dxcc, 9, 3), " ");  // PSK has no Verified count
  EXPECT_FALSE(summary().SummaryProgress.Visible());
  EXPECT_EQ(summary().SummaryProgress.Max, 3);
  EXPECT_EQ(summary().SummaryProgress.Value(), 3);
  EXPECT_EQ(summary().MousePointer(), ui::vbDefault);
  EXPECT_EQ(main().MousePointer(), ui::vbDefault);
}

TEST_F(DXCCSummaryTest, AnEmptyProgressTableLeavesCaptionsAndBlankCellsSumsIncluded) {
  app->module.ClearProgress();
  summary().ComputeSummaryGrids();
  for (ui::Grid* grid : {&summary().DeletedGrid, &summary().UnDeletedGrid}) {
    EXPECT_EQ(grid->ArrayCell(0, 1), "Worked ");
    EXPECT_EQ(grid->ArrayCell(24, 0), "DXCC Challenge ");
    for (int r = 1; r < 25; ++r)
      for (int c = 1; c < 4; ++c) EXPECT_EQ(grid->ArrayCell(r, c), " ") << r << "," << c;
  }
}

TEST_F(DXCCSummaryTest, TheSumsGrowAfterEachEntityAndTheCheckProgressGridKeepsItsRow) {
  SetLetters("223", {{"40M", "V"}, {"CW", "V"}});
  SetLetters("291", {{"20M", "W"}});
  // The Check Progress grid stands on VP2E.
  db::Recordset& view = main().ProgressPosition.Recordset();
  view.FindFirst("CountryCode = '12'");
  // At each yield: the sum of the band-countries after the entities counted so far.
  std::vector<std::string> sums;
  std::function<void()> watch = [&] {
    sums.push_back(summary().DeletedGrid.ArrayCell(21, 1));
    if (summary().Computing()) h.loop.Post(watch);
  };
  h.loop.Post(watch);
  main().SummaryCmd_Click();
  // Before the grids are made; blank before the first entity; then after G, K, VP2E (by prefix).
  EXPECT_EQ(sums, (std::vector<std::string>{"", " ", " 1", " 2"}));
  EXPECT_EQ(summary().DeletedGrid.ArrayCell(21, 1), " 2");
  EXPECT_EQ(view.Fields("CountryCode").Value().ToStringOrEmpty(), "12");
}

TEST_F(DXCCSummaryTest, SwitchingTheProgrammeShowsTheOtherGridWithoutRecounting) {
  SetLetters("291", {{"20M", "W"}});
  main().SummaryCmd_Click();
  EXPECT_TRUE(summary().DeletedGrid.Visible());
  EXPECT_FALSE(summary().UnDeletedGrid.Visible());
  SetLetters("223", {{"20M", "W"}});  // not counted until Update
  summary().ViewUnDeletedButton.UserSelect();
  EXPECT_TRUE(summary().UnDeletedGrid.Visible());
  EXPECT_FALSE(summary().DeletedGrid.Visible());
  EXPECT_EQ(summary().Caption(), "DXCC Summary (exludes deleted countries)");
  EXPECT_EQ(summary().UnDeletedGrid.ArrayCell(14, 1), " 1");
  summary().DisplayProgressCmd.UserClick();
  EXPECT_EQ(summary().UnDeletedGrid.ArrayCell(14, 1), " 2");
  EXPECT_TRUE(summary().UnDeletedGrid.Visible());  // the selected programme stays in view
  summary().ViewDeletedButton.UserSelect();
  EXPECT_EQ(summary().Caption(), "DXCC Summary (includes deleted countries)");
  EXPECT_TRUE(summary().DeletedGrid.Visible());
}

TEST_F(DXCCSummaryTest, TheOperatorsCloseHidesTheWindowAndTheProgramsEndUnloadsIt) {
  SetLetters("291", {{"20M", "W"}});
  main().SummaryCmd_Click();
  summary().Move(1200, 900, 7000, 8000);
  EXPECT_FALSE(summary().Unload(ui::vbFormControlMenu));
  EXPECT_TRUE(summary().Loaded());
  EXPECT_FALSE(summary().Visible());
  EXPECT_EQ(summary().DeletedGrid.ArrayCell(14, 1), " 1");  // the grids survive
  main().SummaryCmd_Click();
  EXPECT_TRUE(summary().Visible());
  app->CloseMainWindow(ui::vbFormControlMenu);
  EXPECT_FALSE(summary().Loaded());
  EXPECT_EQ(h.Setting("Windows", "DXCCSummaryLeft"), "1200");
  EXPECT_EQ(h.Setting("Windows", "DXCCSummaryTop"), "900");
}

TEST_F(DXCCSummaryTest, SummaryIsGuardedAgainstReentry) {
  SetLetters("291", {{"20M", "W"}});
  int clicks = 0;
  h.loop.Post([&] {
    ++clicks;
    main().SummaryCmd_Click();  // during the first computation's yield: nothing
    summary().DisplayProgressCmd.UserClick();
  });
  main().SummaryCmd_Click();
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(summary().DeletedGrid.ArrayCell(14, 1), " 1");
  EXPECT_FALSE(main().SummaryCmdBusy);
}

TEST_F(DXCCSummaryTest, TheReportButtonsDoNothingYet) {
  main().SummaryCmd_Click();
  summary().ReportProgressCmd.UserClick();
  summary().ReportSubmissionCmd.UserClick();
  EXPECT_TRUE(h.desktop.Calls().empty());
}

}  // namespace
}  // namespace vellumar::test
