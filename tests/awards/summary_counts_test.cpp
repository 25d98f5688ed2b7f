// The DXCC Summary's counts: which entity counts in which cell of the two grids, the sums, and
// the cells' text form.
#include "awards/summary_counts.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace vellumar {
namespace {

// An entity from its letters by column name.
SummaryEntity Entity(bool valid, const std::map<std::string, std::string>& letters) {
  static const std::map<std::string, int> kColumns = {
      {"160M", 3}, {"80M", 4},    {"40M", 5},  {"30M", 6},   {"20M", 7},
      {"17M", 8},  {"15M", 9},    {"12M", 10}, {"10M", 11},  {"6M", 12},
      {"2M", 13},  {"PHONE", 14}, {"CW", 15},  {"RTTY", 16}, {"PSK", 17}};
  SummaryEntity e;
  e.valid = valid;
  for (const auto& [name, letter] : letters) e.letters[kColumns.at(name)] = letter;
  return e;
}

class SummaryCountsTest : public ::testing::Test {
 protected:
  SummaryCountsTest() {
    InitializeSummaryGrid(deleted);
    InitializeSummaryGrid(undeleted);
  }
  void Count(const SummaryEntity& e) {
    CountSummaryEntity(deleted, undeleted, e);
    TotalSummaryGrid(deleted);
    TotalSummaryGrid(undeleted);
  }
  // The cells of a grid that hold a count other than blank, as "row,col=text".
  static std::map<std::string, std::string> Counted(const SummaryCells& grid) {
    std::map<std::string, std::string> out;
    for (int r = 1; r < kSummaryRows; ++r)
      for (int c = 1; c < kSummaryColumns; ++c)
        if (grid[r][c] != " ") out[SummaryRowCaption(r) + SummaryColumnCaption(c)] = grid[r][c];
    return out;
  }
  SummaryCells deleted, undeleted;
};

TEST(SummaryText, CountsAreWrittenWithABlankForTheSignAndReadWithBlanksAsZero) {
  EXPECT_EQ(SummaryText(1), " 1");
  EXPECT_EQ(SummaryText(0), " 0");
  EXPECT_EQ(SummaryText(340), " 340");
  EXPECT_EQ(SummaryValue(" "), 0);
  EXPECT_EQ(SummaryValue(""), 0);
  EXPECT_EQ(SummaryValue(" 12"), 12);
}

TEST_F(SummaryCountsTest, AFreshGridHasItsCaptionsAndBlankCells) {
  EXPECT_EQ(deleted[0][0], "");
  EXPECT_EQ(deleted[0][1], "Worked ");
  EXPECT_EQ(deleted[0][2], "Confirmed ");
  EXPECT_EQ(deleted[0][3], "Verified ");
  const char* rows[] = {"HR Mixed ",
                        "HR Phone ",
                        "HR CW ",
                        "HR RTTY ",
                        "Mixed ",
                        "Phone ",
                        "CW ",
                        "RTTY ",
                        "PSK ",
                        "160M ",
                        "80M ",
                        "40M ",
                        "30M ",
                        "20M ",
                        "17M ",
                        "15M ",
                        "12M ",
                        "10M ",
                        "6M ",
                        "2M ",
                        "HF BandCountries ",
                        "HF ModeCountries ",
                        "HF BandModes ",
                        "DXCC Challenge "};
  for (int r = 1; r < kSummaryRows; ++r) {
    EXPECT_EQ(deleted[r][0], rows[r - 1]);
    for (int c = 1; c < kSummaryColumns; ++c) EXPECT_EQ(deleted[r][c], " ") << r << "," << c;
  }
  EXPECT_EQ(deleted, undeleted);
}

TEST_F(SummaryCountsTest, IncrementWritesTheNumberAsStrWritesIt) {
  IncrementSummary(deleted, 5, 1);
  EXPECT_EQ(deleted[5][1], " 1");
  IncrementSummary(deleted, 5, 1);
  EXPECT_EQ(deleted[5][1], " 2");
}

TEST_F(SummaryCountsTest, ADeletedEntityWorkedOn20MetresCWCountsInTheDXCCGridOnly) {
  Count(Entity(false, {{"20M", "W"}, {"CW", "W"}}));
  const std::map<std::string, std::string> expected = {
      {"Mixed Worked ", " 1"},
      {"CW Worked ", " 1"},
      {"20M Worked ", " 1"},
      {"HF BandCountries Worked ", " 1"},
      {"HF ModeCountries Worked ", " 1"},
      {"DXCC Challenge Worked ", " 1"},
      {"HF BandModes Worked ", " 2"},
      // The sums are written after every entity, an empty one as " 0".
      {"HF BandCountries Confirmed ", " 0"},
      {"HF BandCountries Verified ", " 0"},
      {"HF ModeCountries Confirmed ", " 0"},
      {"HF ModeCountries Verified ", " 0"},
      {"HF BandModes Confirmed ", " 0"},
      {"HF BandModes Verified ", " 0"},
      {"DXCC Challenge Confirmed ", " 0"},
      {"DXCC Challenge Verified ", " 0"},
  };
  EXPECT_EQ(Counted(deleted), expected);
  // Nothing in the TOP grid but its sums, which are zero.
  for (const auto& [cell, text] : Counted(undeleted)) EXPECT_EQ(text, " 0") << cell;
  // No Honor Roll row counts a deleted entity.
  for (int r = 1; r <= 4; ++r)
    for (int c = 1; c < kSummaryColumns; ++c) EXPECT_EQ(deleted[r][c], " ");
}

TEST_F(SummaryCountsTest, ACurrentEntityConfirmedOn30MetresPSKCountsInRTTYTooButNotInTheChallenge) {
  // A PSK QSO fills RTTY as well.
  Count(Entity(true, {{"30M", "F"}, {"PSK", "F"}, {"RTTY", "F"}}));
  for (const SummaryCells* grid : {&deleted, &undeleted}) {
    const SummaryCells& g = *grid;
    for (int row : {13, 9, 8, 4, 5, 1, 21, 22}) {
      EXPECT_EQ(g[row][1], " 1") << SummaryRowCaption(row);
      EXPECT_EQ(g[row][2], " 1") << SummaryRowCaption(row);
    }
    EXPECT_EQ(g[23][1], " 2");
    EXPECT_EQ(g[23][2], " 2");
    EXPECT_EQ(g[24][1], " 0");  // 30 metres is no Challenge band
    EXPECT_EQ(g[24][2], " 0");
    for (int row : {2, 3, 6, 7, 10, 14, 20}) EXPECT_EQ(g[row][1], " ") << row;
  }
}

TEST_F(SummaryCountsTest, APSKOnlyEntityVerifiedByTheARRLIsVerifiedInRTTYAndMixed) {
  // A verified PSK QSO leaves "F" in PSK and "V" in RTTY.
  Count(Entity(true, {{"PSK", "F"}, {"RTTY", "V"}}));
  EXPECT_EQ(deleted[8][3], " 1");  // RTTY
  EXPECT_EQ(deleted[5][3], " 1");  // Mixed
  EXPECT_EQ(deleted[4][3], " 1");  // HR RTTY
  EXPECT_EQ(deleted[1][3], " 1");  // HR Mixed
  EXPECT_EQ(deleted[9][2], " 1");  // PSK confirmed
  EXPECT_EQ(deleted[9][3], " ");   // PSK has no Verified count
}

TEST_F(SummaryCountsTest, PSKVerifiedCellStaysBlankEvenForAStoredV) {
  Count(Entity(true, {{"PSK", "V"}}));
  EXPECT_EQ(deleted[9][1], " 1");
  EXPECT_EQ(deleted[9][2], " 1");
  EXPECT_EQ(deleted[9][3], " ");
}

TEST_F(SummaryCountsTest, ABandLetterAloneCountsInNoModeRow) {
  Count(Entity(true, {{"20M", "F"}}));
  for (int row = 1; row <= 9; ++row)
    for (int c = 1; c < kSummaryColumns; ++c) EXPECT_EQ(deleted[row][c], " ") << row;
  EXPECT_EQ(deleted[14][2], " 1");
}

TEST_F(SummaryCountsTest, LettersOutsideTheTableCountAsWorkedOnly) {
  Count(Entity(true, {{"CW", "Q"}, {"40M", "x"}}));
  EXPECT_EQ(deleted[7][1], " 1");
  EXPECT_EQ(deleted[7][2], " ");
  EXPECT_EQ(deleted[12][1], " 1");
  EXPECT_EQ(deleted[12][2], " ");
  EXPECT_EQ(deleted[5][1], " 1");
}

TEST_F(SummaryCountsTest, AnEntityCountsOncePerCellAndTheSumsFollowTheirRows) {
  Count(Entity(
      true, {{"160M", "V"}, {"80M", "F"}, {"6M", "W"}, {"2M", "V"}, {"PHONE", "V"}, {"CW", "F"}}));
  Count(Entity(true, {{"10M", "R"}, {"30M", "W"}, {"PHONE", "W"}}));
  EXPECT_EQ(deleted[1][1], " 2");  // HR Mixed worked: two entities, each once
  EXPECT_EQ(deleted[1][2], " 1");
  EXPECT_EQ(deleted[1][3], " 1");
  EXPECT_EQ(deleted[21][1], " 4");  // 160, 80, 10, 30 (not 6 nor 2)
  EXPECT_EQ(deleted[21][2], " 2");
  EXPECT_EQ(deleted[21][3], " 1");
  EXPECT_EQ(deleted[24][1], " 4");  // 160, 80, 6, 10 (not 30 nor 2)
  EXPECT_EQ(deleted[22][1], " 3");  // Phone twice, CW once
  EXPECT_EQ(deleted[22][2], " 2");
  EXPECT_EQ(deleted[23][1], " 7");
  EXPECT_EQ(deleted[20][3], " 1");  // 2M verified, in no sum
}

}  // namespace
}  // namespace vellumar
