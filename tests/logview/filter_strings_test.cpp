// The filter strings, captions and composed sorts of the Log Page Display, as texts.
#include "logview/filter_strings.h"

#include <gtest/gtest.h>

#include "platform/vb/convert.h"
#include "platform/vb/date_locale.h"

namespace vellumar::logview {
namespace {

TEST(FilterStrings, NoFilterIsEmptyWithTheCaptionsTrailingBlank) {
  EXPECT_EQ(NoFilter().filter, "");
  EXPECT_EQ(NoFilter().caption, "Filter: None ");
  EXPECT_STREQ(kInitialCaption, "Filter: None");
  EXPECT_STREQ(kFailedFilterCaption, "None");
}

TEST(FilterStrings, CallKeepsThePatternAsTypedAndCaptionsItUpperCased) {
  const FilterText f = CallFilter("k1*");
  EXPECT_EQ(f.filter, "Call LIKE 'k1*'");
  EXPECT_EQ(f.caption, "Filter: Call=K1*");
}

TEST(FilterStrings, DXCCFourteenIsALikeOnThePrefix) {
  const FilterText f = DXCCFilter("14");
  EXPECT_EQ(f.filter, "DXCCPrefix LIKE '14'");
  EXPECT_EQ(f.caption, "Filter: DXCC=14");
}

TEST(FilterStrings, AnApostropheGoesIntoTheStringUnchanged) {
  EXPECT_EQ(CallFilter("O'K").filter, "Call LIKE 'O'K'");
}

TEST(FilterStrings, BrokenHasTwoFormsByTheOperatorsQTHs) {
  EXPECT_EQ(BrokenFilter(false).filter, "BROKEN = 'Y'");
  EXPECT_EQ(BrokenFilter(true).filter, "(BROKEN = 'Y') OR (myQTHID='')");
  EXPECT_EQ(BrokenFilter(true).caption, "Filter: Broken");
}

TEST(FilterStrings, DateBoundsAreISOTextsAndTheCaptionHasTwoBlanks) {
  vb::ScopedDateLocale locale{vb::DateLocale{}};
  const double at = vb::CDate("2024-03-15 08:30:00");
  const DateRange range = RangeAround(at, 15);
  const FilterText f = DateFilter(range.lower, range.upper);
  EXPECT_EQ(f.filter, "QSO_Begin between #2024-03-15 08:15:00# and #2024-03-15 08:45:00#");
  EXPECT_NE(f.caption.find("  08:15 to "), std::string::npos) << f.caption;
  EXPECT_EQ(f.caption.substr(f.caption.size() - 7), "  08:45") << f.caption;
  EXPECT_EQ(f.caption.rfind("Filter: ", 0), 0u);
}

TEST(FilterStrings, AZeroWideRangeIsBetweenOneDateTime) {
  const double at = vb::CDate("2024-03-15 08:30:00");
  const DateRange range = RangeAround(at, 0);
  EXPECT_EQ(DateFilter(range.lower, range.upper).filter,
            "QSO_Begin between #2024-03-15 08:30:00# and #2024-03-15 08:30:00#");
}

std::array<std::string, kBandBoxes + 1> BandLabels() {
  std::array<std::string, kBandBoxes + 1> labels;
  for (size_t i = 0; i < labels.size(); ++i) labels[i] = kBandLabels[i];
  return labels;
}

std::array<std::string, kModeBoxes + 1> ModeLabels() {
  std::array<std::string, kModeBoxes + 1> labels;
  for (size_t i = 0; i < labels.size(); ++i) labels[i] = kModeLabels[i];
  return labels;
}

TEST(FilterStrings, BandsInBoxOrderJoinedByOr) {
  std::array<bool, kBandBoxes + 1> checked{};
  checked[9] = true;  // 10M
  checked[2] = true;  // 80M
  const FilterText f = BandFilter(checked, BandLabels());
  EXPECT_EQ(f.filter, "(Band = '80M') OR (Band = '10M')");
  EXPECT_EQ(f.caption, "Filter: 80M, 10M");
}

TEST(FilterStrings, AllBandsIsTrueAndNoBandsIsFalse) {
  std::array<bool, kBandBoxes + 1> checked{};
  EXPECT_EQ(BandFilter(checked, BandLabels()).filter, "FALSE");
  EXPECT_EQ(BandFilter(checked, BandLabels()).caption, "Filter: no bands");
  checked.fill(true);
  EXPECT_EQ(BandFilter(checked, BandLabels()).filter, "TRUE");
  EXPECT_EQ(BandFilter(checked, BandLabels()).caption, "Filter: all bands");
}

TEST(FilterStrings, ModesHaveTheirOwnCaptionsWithACapitalM) {
  std::array<bool, kModeBoxes + 1> checked{};
  EXPECT_EQ(ModeFilter(checked, ModeLabels()).caption, "Filter: no Modes");
  checked[2] = true;
  checked[8] = true;
  EXPECT_EQ(ModeFilter(checked, ModeLabels()).filter, "(Mode = 'CW') OR (Mode = 'HELL')");
  EXPECT_EQ(ModeFilter(checked, ModeLabels()).caption, "Filter: CW, HELL");
  checked.fill(true);
  EXPECT_EQ(ModeFilter(checked, ModeLabels()).filter, "TRUE");
  EXPECT_EQ(ModeFilter(checked, ModeLabels()).caption, "Filter: all Modes");
}

TEST(FilterStrings, TheLabelsByIndex) {
  EXPECT_STREQ(kBandLabels[1], "160M");
  EXPECT_STREQ(kBandLabels[12], "70CM");
  EXPECT_STREQ(kBandLabels[15], "3CM");
  EXPECT_STREQ(kModeLabels[1], "SSB");
  EXPECT_STREQ(kModeLabels[14], "THROB");
}

TEST(FilterStrings, SQLIsTheQueryAsWritten) {
  EXPECT_EQ(SQLFilter("Band = '20M' and mode='CW'").filter, "Band = '20M' and mode='CW'");
  EXPECT_EQ(SQLFilter("x").caption, "Filter: SQL Query");
}

TEST(FilterStrings, TheLocatorNamesCallAndStartTime) {
  EXPECT_EQ(Locator("K1ABC", "3/15/2024 08:30"),
            "(Call = 'K1ABC') and (QSO_Begin = #3/15/2024 08:30#)");
}

TEST(FilterStrings, OnlyAPatternWithoutWildcardsNamesOneStation) {
  EXPECT_TRUE(NamesOneStation("K1ABC"));
  for (const char* p : {"K1*", "K?ABC", "K1%", "K1_A"}) EXPECT_FALSE(NamesOneStation(p)) << p;
}

TEST(ComposeSort, FirstDescendingThenSecond) {
  EXPECT_EQ(ComposeSort({{{"Call", true}, {"QSO_Begin", false}, {"", false}}}),
            "Call DESC, QSO_Begin");
}

TEST(ComposeSort, AllThreeEmptyIsTheEmptyString) {
  EXPECT_EQ(ComposeSort({{{"", false}, {"", false}, {"", false}}}), "");
}

TEST(ComposeSort, AHoleInTheRowLeavesTheCommaOut) {
  EXPECT_EQ(ComposeSort({{{"Call", false}, {"", false}, {"Band", false}}}), "CallBand");
  EXPECT_EQ(ComposeSort({{{"", false}, {"Call", false}, {"Band", true}}}), "Call, Band DESC");
}

TEST(ComposeSort, ThreeFields) {
  EXPECT_EQ(ComposeSort({{{"DXCCPrefix", false}, {"Band", true}, {"Call", false}}}),
            "DXCCPrefix, Band DESC, Call");
}

}  // namespace
}  // namespace vellumar::logview
