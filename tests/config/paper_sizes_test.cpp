#include "config/paper_sizes.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace vellumar {
namespace {

TEST(PaperSizes, RunFromOneToFortyOneThenUserDefined) {
  const auto papers = StandardPaperSizes();
  ASSERT_EQ(papers.size(), 42u);
  for (int i = 0; i < 41; ++i) EXPECT_EQ(papers[i].number, i + 1) << i;
  EXPECT_EQ(papers.back().number, kUserDefinedPaper);
  EXPECT_EQ(kUserDefinedPaper, 256);
  EXPECT_STREQ(papers.back().name, "User-defined");
}

TEST(PaperSizes, NamesAreTheTableOfThePlatform) {
  const auto papers = StandardPaperSizes();
  EXPECT_STREQ(papers[0].name, "Letter, 8 1/2 x 11 in");
  EXPECT_STREQ(papers[1].name, "Letter Small, 8 1/2 x 11 in");
  EXPECT_STREQ(papers[2].name, "Tabloid, 11 x 17 in");
  EXPECT_STREQ(papers[8].name, "A4, 210 x 297 mm");
  EXPECT_STREQ(papers[19].name, "Envelope #10, 4 1/8 x 9 1/2 in");
  EXPECT_STREQ(papers[26].name, "Envelope DL, 110 x 220 mm");
  EXPECT_STREQ(papers[40].name, "German Legal Fanfold, 8 1/2 x 13 in");
  std::set<std::string> names;
  for (const PaperSize& p : papers) {
    EXPECT_FALSE(std::string(p.name).empty()) << p.number;
    EXPECT_NE(std::string(p.name).back(), '.') << p.name;
    names.insert(p.name);
  }
  // Two envelopes are named by their sizes alone; no name repeats.
  EXPECT_EQ(names.size(), papers.size());
}

}  // namespace
}  // namespace vellumar
