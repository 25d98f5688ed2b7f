// The Log page's filters, worked as the operator works them: FilterField and the filter
// buttons, on a log of known QSOs, on the virtual clock with the scripted desktop.
#include <string>
#include <vector>

#include "frame/common.h"
#include "logpage/filter_fixture.h"

namespace vellumar {
namespace {

using test::FilterTest;
using V = std::vector<std::string>;

class LogFilters : public FilterTest {
 protected:
  LogFilters() { SeedStandardLog(); }
};

TEST_F(LogFilters, StartsWithNoFilterAndEnterDoesNothingBeforeAFilterButton) {
  EXPECT_EQ(main().LastFilterKind, 0);
  EXPECT_EQ(FilterCaption(), "Filter: None");
  main().FilterField.SetText("K1*");
  EnterInFilterField();
  EXPECT_EQ(Filter(), "");
  EXPECT_EQ(FilterCaption(), "Filter: None");
  EXPECT_EQ(ShownCount(), 5);
}

TEST_F(LogFilters, CallK1StarShowsTheK1CallsAndTheCaptionUpperCases) {
  FilterBy(main().FilterCallCmd, "k1*");
  EXPECT_EQ(Shown(), (V{"K1ABC", "K1XYZ"}));
  EXPECT_EQ(FilterCaption(), "Filter: Call=K1*");
  EXPECT_EQ(Filter(), "Call LIKE 'k1*'");
  EXPECT_EQ(main().LastFilterKind, 1);
  EXPECT_TRUE(main().LogFiltered());
  EXPECT_TRUE(app->module.LogFilteredFlag);
  EXPECT_NE(main().Caption().find("(filtered)"), std::string::npos) << main().Caption();
  // The tidying: FilterField has its whole text selected, and the hourglass is gone.
  EXPECT_EQ(main().FilterField.SelStart(), 0);
  EXPECT_EQ(main().FilterField.SelLength(), 3);
  EXPECT_EQ(main().MousePointer(), ui::vbDefault);
  EXPECT_FALSE(main().CommandBusy);
}

TEST_F(LogFilters, JetWildcardsWorkInThePattern) {
  FilterBy(main().FilterCallCmd, "K#*");
  EXPECT_EQ(Shown(), (V{"K1ABC", "K1XYZ", "K2AA"}));
  FilterBy(main().FilterCallCmd, "K1[A-M]*");
  EXPECT_EQ(Shown(), (V{"K1ABC"}));
  FilterBy(main().FilterCallCmd, "?3ABC");
  EXPECT_EQ(Shown(), (V{"G3ABC"}));
  // "%" and "_" are plain characters, as in Jet.
  FilterBy(main().FilterCallCmd, "K1%");
  EXPECT_EQ(ShownCount(), 0);
  FilterBy(main().FilterCallCmd, "K_AA");
  EXPECT_EQ(ShownCount(), 0);
}

TEST_F(LogFilters, APatternWithAnApostropheIsAnInvalidFilterExpression) {
  h.desktop.ExpectMsgBox("Invalid Filter expression").WithTitle(kApplicationTitle);
  FilterBy(main().FilterCallCmd, "O'K");
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  EXPECT_EQ(FilterCaption(), "None");
  EXPECT_EQ(Filter(), "");
  EXPECT_EQ(ShownCount(), 5);
  EXPECT_TRUE(app->module.LogFilteredFlag);  // computed from the string that failed
  EXPECT_TRUE(main().LogFiltered());
}

TEST_F(LogFilters, DXCCFourteenIsALikeOnThePrefix) {
  FilterBy(main().FilterDXCCCmd, "14");
  EXPECT_EQ(Filter(), "DXCCPrefix LIKE '14'");
  EXPECT_EQ(FilterCaption(), "Filter: DXCC=14");
  EXPECT_EQ(main().LastFilterKind, 3);
  FilterBy(main().FilterDXCCCmd, "vp2e");
  EXPECT_EQ(Shown(), (V{"VP2EAA"}));
}

TEST_F(LogFilters, AnEmptyViewDisablesThePanelAndStillSetsTheCaption) {
  FilterBy(main().FilterCallCmd, "ZZ9ZZ");
  EXPECT_EQ(ShownCount(), 0);
  EXPECT_FALSE(main().FieldsEnabled());
  EXPECT_EQ(FilterCaption(), "Filter: Call=ZZ9ZZ");
  FilterBy(main().FilterCallCmd, "K1ABC");
  EXPECT_TRUE(main().FieldsEnabled());
}

TEST_F(LogFilters, ACallNotInTheLogIsAskedOfTheRouteProgram) {
  FilterBy(main().FilterCallCmd, "ZZ9ZZ");
  EXPECT_EQ(app->logPage.trailmark.Questions(), 1);
  EXPECT_EQ(app->logPage.trailmark.LastCallsign(), "ZZ9ZZ");
  // Found in the log, or a pattern: no question.
  FilterBy(main().FilterCallCmd, "K1ABC");
  for (const char* pattern : {"ZZ*", "Z?9ZZ", "ZZ%", "ZZ_ZZ"}) FilterBy(main().FilterCallCmd, pattern);
  EXPECT_EQ(app->logPage.trailmark.Questions(), 1);
  // Nor while lookups are suppressed.
  app->dxcc.SetSuppressLookup(true);
  FilterBy(main().FilterCallCmd, "ZZ8ZZ");
  EXPECT_EQ(app->logPage.trailmark.Questions(), 1);
}

TEST_F(LogFilters, BrokenWithoutMyQTHsIsTheMarkAlone) {
  FilterBy(main().FilterBrokenCmd, "text to be emptied");
  EXPECT_EQ(main().FilterField.Text(), "");
  EXPECT_EQ(Filter(), "BROKEN = 'Y'");
  EXPECT_EQ(FilterCaption(), "Filter: Broken");
  EXPECT_EQ(Shown(), (V{"G3ABC"}));  // the QSOs without myQTHID aren't broken
  EXPECT_EQ(main().LastFilterKind, 4);
  // Enter doesn't repeat the broken filter.
  main().FilterField.SetText("K1*");
  EnterInFilterField();
  EXPECT_EQ(Filter(), "BROKEN = 'Y'");
}

TEST_F(LogFilters, BrokenWithMyQTHsAddsTheQSOsWithoutOne) {
  AddMyQTH("HOME");
  main().FilterBrokenCmd.UserClick();
  EXPECT_EQ(Filter(), "(BROKEN = 'Y') OR (myQTHID='')");
  EXPECT_EQ(Shown(), (V{"K1ABC", "K1XYZ", "K2AA", "G3ABC"}));
}

TEST_F(LogFilters, EnterRepeatsTheCallFilterAndALineFeedIsDropped) {
  FilterBy(main().FilterCallCmd, "K1*");
  main().FilterField.SetText("G*");
  EnterInFilterField();
  EXPECT_EQ(Filter(), "Call LIKE 'G*'");
  int lineFeed = 10;
  main().FilterField.KeyPress(lineFeed);
  EXPECT_EQ(lineFeed, 0);
}

TEST_F(LogFilters, AnEmptyFieldClearsTheFilterForCallDateAndDXCC) {
  for (ui::CommandButton* b : {&main().FilterCallCmd, &main().FilterDateCmd, &main().FilterDXCCCmd}) {
    FilterBy(main().FilterCallCmd, "K1*");
    FilterBy(*b, "");
    EXPECT_EQ(Filter(), "") << b->Name();
    EXPECT_EQ(FilterCaption(), "Filter: None ") << b->Name();
    EXPECT_EQ(main().LastFilterKind, 0) << b->Name();
    EXPECT_FALSE(app->module.LogFilteredFlag);
  }
}

TEST_F(LogFilters, ClearKeepsFilterFieldsText) {
  FilterBy(main().FilterCallCmd, "K1*");
  main().FilterClearCmd.UserClick();
  EXPECT_EQ(main().FilterField.Text(), "K1*");
  EXPECT_EQ(FilterCaption(), "Filter: None ");
  EXPECT_EQ(ShownCount(), 5);
  EXPECT_FALSE(main().LogFiltered());
  EXPECT_FALSE(app->module.LogFilteredFlag);
  EXPECT_EQ(main().Caption().find("(filtered)"), std::string::npos);
}

TEST_F(LogFilters, TheNewestQSOInTimeOrderElseTheFirstRow) {
  FilterBy(main().FilterCallCmd, "K*");
  EXPECT_EQ(Current(), "K2AA");  // sorted by start time: the last row
  main().SortCallButton.UserSelect();
  FilterBy(main().FilterCallCmd, "K*");
  EXPECT_EQ(Current(), "K1ABC");  // sorted by call: the first row
}

TEST_F(LogFilters, ABusyFormRunsNoFilterCommand) {
  main().CommandBusy = true;
  FilterBy(main().FilterCallCmd, "K1*");
  main().FilterBrokenCmd.UserClick();
  main().SortCallButton_Click();
  EXPECT_EQ(Filter(), "");
  EXPECT_EQ(main().FilterField.Text(), "K1*");
  main().CommandBusy = false;
}

// ---- The date filter ----

TEST_F(LogFilters, WithinMinutesOfTheDate) {
  window().DateFilterKind(0).SetValue(true);
  window().DateFilterTolerance.SetText("20");
  FilterBy(main().FilterDateCmd, "2024-03-15 07:20");
  EXPECT_EQ(Filter(), "QSO_Begin between #2024-03-15 07:00:00# and #2024-03-15 07:40:00#");
  EXPECT_EQ(Shown(), (V{"K1ABC", "K1XYZ", "K2AA"}));
  EXPECT_EQ(FilterCaption().rfind("Filter: ", 0), 0u);
  EXPECT_NE(FilterCaption().find("  07:00 to "), std::string::npos) << FilterCaption();
  EXPECT_EQ(main().LastFilterKind, 2);
}

TEST_F(LogFilters, AZeroWideRangeIsOneDateTime) {
  window().DateFilterKind(0).SetValue(true);
  window().DateFilterTolerance.SetText("0");
  FilterBy(main().FilterDateCmd, "2024-03-15 07:15");
  EXPECT_EQ(Filter(), "QSO_Begin between #2024-03-15 07:15:00# and #2024-03-15 07:15:00#");
  EXPECT_EQ(Shown(), (V{"K1XYZ"}));
}

TEST_F(LogFilters, APastedToleranceCountsAsItsNumericValue) {
  window().DateFilterKind(0).SetValue(true);
  window().DateFilterTolerance.UserSetText("15 minutes");
  FilterBy(main().FilterDateCmd, "2024-03-15 07:30");
  EXPECT_EQ(Filter(), "QSO_Begin between #2024-03-15 07:15:00# and #2024-03-15 07:45:00#");
}

TEST_F(LogFilters, FromTheDateToTheUpperBound) {
  window().DateFilterKind(1).SetValue(true);
  window().DateFilterUpperBound.SetText("15-Mar-2024 07:45:00");
  FilterBy(main().FilterDateCmd, "2024-03-15 07:30");
  EXPECT_EQ(Filter(), "QSO_Begin between #2024-03-15 07:30:00# and #2024-03-15 07:45:00#");
  EXPECT_EQ(Shown(), (V{"K2AA", "G3ABC"}));
}

TEST_F(LogFilters, ATextThatIsntADateChangesNothing) {
  FilterBy(main().FilterCallCmd, "K1*");
  h.desktop.ExpectMsgBox("Filter contains illegal date: next tuesday").WithTitle(kApplicationTitle);
  FilterBy(main().FilterDateCmd, "next tuesday");
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  EXPECT_EQ(Filter(), "Call LIKE 'K1*'");
  EXPECT_EQ(FilterCaption(), "Filter: Call=K1*");
  EXPECT_EQ(ShownCount(), 2);
}

TEST_F(LogFilters, AnUpperBoundThatIsntADateChangesNothing) {
  window().DateFilterKind(1).SetValue(true);
  window().DateFilterUpperBound.UserSetText("soon");
  h.desktop.ExpectMsgBox("Filter upper bound setting contains illegal date: soon")
      .WithTitle(kApplicationTitle);
  FilterBy(main().FilterDateCmd, "2024-03-15 07:30");
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  EXPECT_EQ(Filter(), "");
  EXPECT_EQ(FilterCaption(), "Filter: None");
}

TEST_F(LogFilters, AnyOtherFailureOfTheDateFilterClearsItSilently) {
  FilterBy(main().FilterCallCmd, "K1*");
  // A tolerance that carries the range beyond the calendar's end fails in DateAdd.
  window().DateFilterKind(0).SetValue(true);
  window().DateFilterTolerance.UserSetText("99999999999");
  FilterBy(main().FilterDateCmd, "2024-03-15 07:30");
  EXPECT_EQ(Filter(), "");
  EXPECT_EQ(FilterCaption(), "Filter: None ");
  EXPECT_EQ(ShownCount(), 5);
}

// ---- Band and mode filters ----

TEST_F(LogFilters, TwoBandBoxesInBoxOrder) {
  window().BandCheck(9).SetValue(1);  // 10M
  window().BandCheck(5).SetValue(1);  // 20M
  main().LastFilterKind = 1;
  window().BandFilterCmd.UserClick();
  EXPECT_EQ(Filter(), "(Band = '20M') OR (Band = '10M')");
  EXPECT_EQ(FilterCaption(), "Filter: 20M, 10M");
  EXPECT_EQ(Shown(), (V{"K1ABC", "G3ABC", "VP2EAA"}));
  EXPECT_EQ(main().LastFilterKind, 0);
  EXPECT_TRUE(app->module.LogFilteredFlag);
}

TEST_F(LogFilters, AllFifteenBandsShowEveryQSOAlsoWithoutABand) {
  for (int i = 1; i <= 15; ++i) window().BandCheck(i).SetValue(1);
  window().BandFilterCmd.UserClick();
  EXPECT_EQ(Filter(), "TRUE");
  EXPECT_EQ(FilterCaption(), "Filter: all bands");
  EXPECT_EQ(ShownCount(), 5);
}

TEST_F(LogFilters, NoBandBoxShowsNothing) {
  window().BandFilterCmd.UserClick();
  EXPECT_EQ(Filter(), "FALSE");
  EXPECT_EQ(FilterCaption(), "Filter: no bands");
  EXPECT_EQ(ShownCount(), 0);
}

TEST_F(LogFilters, ModesCompareWithoutRegardToCase) {
  window().ModeCheck(2).SetValue(1);  // CW
  window().ModeCheck(8).SetValue(1);  // HELL, which matches "Hell"
  window().ModeFilterCmd.UserClick();
  EXPECT_EQ(Filter(), "(Mode = 'CW') OR (Mode = 'HELL')");
  EXPECT_EQ(FilterCaption(), "Filter: CW, HELL");
  EXPECT_EQ(Shown(), (V{"K1ABC", "K2AA", "VP2EAA"}));
  for (int i = 1; i <= 14; ++i) window().ModeCheck(i).SetValue(1);
  window().ModeFilterCmd.UserClick();
  EXPECT_EQ(FilterCaption(), "Filter: all Modes");
  for (int i = 1; i <= 14; ++i) window().ModeCheck(i).SetValue(0);
  window().ModeFilterCmd.UserClick();
  EXPECT_EQ(FilterCaption(), "Filter: no Modes");
}

TEST_F(LogFilters, TheBoxesStartUncheckedAndCarryTheirLabels) {
  for (int i = 1; i <= 15; ++i) EXPECT_EQ(window().BandCheck(i).Value(), 0) << i;
  for (int i = 1; i <= 14; ++i) EXPECT_EQ(window().ModeCheck(i).Value(), 0) << i;
  EXPECT_EQ(window().BandLabel(12).Caption(), "70CM");
  EXPECT_EQ(window().ModeLabel(14).Caption(), "THROB");
  EXPECT_EQ(window().BandCheck(5).ToolTipText(), "check to show 20m QSOs");
}

// ---- What the rest of the page does with a filter ----

TEST_F(LogFilters, NewClearsTheFilterSoThatTheNewRowShows) {
  FilterBy(main().FilterCallCmd, "G*");
  main().NewCmd.UserClick();
  EXPECT_EQ(Filter(), "");
  EXPECT_EQ(FilterCaption(), "Filter: None ");
  EXPECT_EQ(ShownCount(), 6);
  EXPECT_EQ(RowsInFile(), 6);
}

TEST_F(LogFilters, NewClearsAfterABadFilterTooSinceTheFlagStaysTrue) {
  h.desktop.ExpectMsgBox("Invalid Filter expression");
  FilterBy(main().FilterCallCmd, "O'K");
  main().NewCmd.UserClick();
  EXPECT_EQ(FilterCaption(), "Filter: None ");
  EXPECT_FALSE(app->module.LogFilteredFlag);
}

TEST_F(LogFilters, TheQSLTabOffersToClearTheFilter) {
  FilterBy(main().FilterCallCmd, "K1*");
  h.desktop.ExpectMsgBox(
      "the log is currently filtered; do you wish this filter removed so that all QSOs are "
      "available for QSL operations?",
      ui::vbNo);
  main().SelectTab(1);
  EXPECT_EQ(Filter(), "Call LIKE 'K1*'");
  main().SelectTab(0);
  h.desktop.ExpectMsgBox(
      "the log is currently filtered; do you wish this filter removed so that all QSOs are "
      "available for export?",
      ui::vbYes);
  main().SelectTab(5);
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  EXPECT_EQ(Filter(), "");
  EXPECT_EQ(FilterCaption(), "Filter: None ");
}

TEST_F(LogFilters, DeletingTheLastQSOOfAFilteredDisplayAppliesTheFilterAgain) {
  h.setup().ConfirmDeleteCheck.SetValue(0);
  FilterBy(main().FilterCallCmd, "G3ABC");
  ASSERT_EQ(ShownCount(), 1);
  main().DeleteCmd.UserClick();
  EXPECT_EQ(RowsInFile(), 4);
  EXPECT_EQ(Filter(), "Call LIKE 'G3ABC'");
  EXPECT_EQ(FilterCaption(), "Filter: Call=G3ABC");
  EXPECT_EQ(ShownCount(), 0);
}

TEST_F(LogFilters, DeletingFromABandFilterDoesntReapplyIt) {
  h.setup().ConfirmDeleteCheck.SetValue(0);
  window().BandCheck(9).SetValue(1);  // 10M: VP2EAA alone
  window().BandFilterCmd.UserClick();
  main().DeleteCmd.UserClick();
  EXPECT_EQ(RowsInFile(), 4);
  EXPECT_EQ(Filter(), "");  // the reopened log, unfiltered
  EXPECT_EQ(ShownCount(), 4);
}

TEST_F(LogFilters, DoubleClickingTheCallsignFiltersByIt) {
  FilterBy(main().FilterCallCmd, "K1ABC");
  main().Fieldbox(1).UserDblClick();
  EXPECT_EQ(main().FilterField.Text(), "K1ABC");
  EXPECT_EQ(Filter(), "Call LIKE 'K1ABC'");
  EXPECT_EQ(app->logPage.trailmark.Questions(), 1);
  EXPECT_EQ(app->logPage.trailmark.LastCallsign(), "K1ABC");
}

TEST_F(LogFilters, ACallsignWithAnApostropheMakesTheLocatorFailSilently) {
  FilterBy(main().FilterCallCmd, "K1ABC");
  main().Fieldbox(1).SetText("O'BRIEN");
  FilterBy(main().FilterCallCmd, "K1*");  // no message: the locator's failure is ignored
  EXPECT_EQ(ShownCount(), 2);
  EXPECT_EQ(FilterCaption(), "Filter: Call=K1*");
}

TEST_F(LogFilters, TheHourglassShowsAndTheFormIsBusyWhileAFilterRuns) {
  bool busy = false;
  int pointer = -1;
  h.desktop.ExpectMsgBox("Invalid Filter expression").Then([&] {
    busy = main().CommandBusy;
    pointer = main().MousePointer();
  });
  FilterBy(main().FilterCallCmd, "O'K");
  EXPECT_TRUE(busy);
  EXPECT_EQ(pointer, ui::vbHourglass);
  EXPECT_FALSE(main().CommandBusy);
  EXPECT_EQ(main().MousePointer(), ui::vbDefault);
}

TEST_F(LogFilters, AnEmptyQSOInHandIsGivenItsStartTime) {
  app->module.QSOStartTime = 0;
  main().Fieldbox(19).SetText("");
  h.clock.AdvanceMs(60000);
  FilterBy(main().FilterCallCmd, "K1*");
  EXPECT_DOUBLE_EQ(app->module.QSOStartTime, h.app->common.utc().CurrentTime());
  // The QSO found again is given up: the display stands on the newest of the two.
  EXPECT_EQ(Current(), "K1XYZ");
}

TEST_F(LogFilters, SortLogOrdersWithoutPositioning) {
  FilterBy(main().FilterCallCmd, "K*");
  app->module.SortLog("Call DESC");
  EXPECT_EQ(Shown(), (V{"K2AA", "K1XYZ", "K1ABC"}));
  EXPECT_EQ(Filter(), "Call LIKE 'K*'");
}

TEST_F(LogFilters, RefreshAppliesTheFilterInForceAgain) {
  FilterBy(main().FilterCallCmd, "K1*");
  main().SortCallButton.UserSelect();
  app->module.RefreshLogGrid();
  EXPECT_EQ(Filter(), "Call LIKE 'K1*'");
  EXPECT_EQ(FilterCaption(), "Filter: Call=K1*");
  EXPECT_EQ(Shown(), (V{"K1ABC", "K1XYZ"}));
  EXPECT_EQ(Current(), "K1ABC");
}

}  // namespace
}  // namespace vellumar
