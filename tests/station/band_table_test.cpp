#include "station/band_table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace vellumar {
namespace {

class BandTableTest : public ::testing::Test {
 protected:
  BandTable MakeTable() {
    return BandTable([this](const std::string& text) { notes.push_back(text); },
                     [this](int number, const std::string& where) {
                       reports.push_back(std::to_string(number) + " " + where);
                     });
  }
  std::string WriteBands(const std::string& text) {
    std::string path = dir.Join("Bands.txt");
    EXPECT_TRUE(test::WriteFileText(path, text));
    return path;
  }

  test::TempDir dir;
  std::vector<std::string> notes;    // WriteErrorLog texts
  std::vector<std::string> reports;  // ReportError calls: "number where"
};

TEST_F(BandTableTest, EdgesBelongToTheBand) {
  BandTable t = MakeTable();
  t.InitializeBandArray(WriteBands("\"20M\",14.0,14.35\r\n\"17M\",18.068,18.168\r\n"));
  EXPECT_EQ(t.BandCount(), 2);
  EXPECT_EQ(t.GetBandNameForFreq(14.0), "20M");
  EXPECT_EQ(t.GetBandNameForFreq(14.35), "20M");
  EXPECT_EQ(t.GetBandNameForFreq(14.2), "20M");
  EXPECT_EQ(t.GetBandNameForFreq(13.999), "");
  EXPECT_EQ(t.GetBandNameForFreq(14.351), "");
  EXPECT_EQ(t.GetBandNameForFreq(18.1), "17M");
  EXPECT_TRUE(notes.empty());
  EXPECT_TRUE(reports.empty());
}

TEST_F(BandTableTest, SharedEdgeGoesToTheFirstRecord) {
  BandTable t = MakeTable();
  t.InitializeBandArray(WriteBands("B,10,20\nA,20,30\n"));
  EXPECT_EQ(t.GetBandNameForFreq(20), "B");
  EXPECT_EQ(t.GetBandNameForFreq(20.0001), "A");
  BandTable u = MakeTable();
  u.InitializeBandArray(WriteBands("A,20,30\nB,10,20\n"));
  EXPECT_EQ(u.GetBandNameForFreq(20), "A");
}

TEST_F(BandTableTest, MissingFileIsNotedAndNothingMatches) {
  BandTable t = MakeTable();
  std::string path = dir.Join("Databases/Bands.txt");
  t.InitializeBandArray(path);
  EXPECT_EQ(t.BandCount(), 0);
  EXPECT_EQ(t.GetBandNameForFreq(14.2), "");
  EXPECT_EQ(t.GetBandNameForFreq(0), "");
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0], "Missing band definition file in " + path);
  EXPECT_TRUE(reports.empty());
}

TEST_F(BandTableTest, LowerAboveUpperNeverMatches) {
  BandTable t = MakeTable();
  t.InitializeBandArray(WriteBands("UPSIDE,30,10\nX,5,40\n"));
  EXPECT_EQ(t.BandCount(), 2);
  EXPECT_EQ(t.GetBandNameForFreq(20), "X");
  EXPECT_EQ(t.GetBandNameForFreq(30), "X");
  EXPECT_EQ(t.GetBandNameForFreq(10), "X");
}

std::string Records(int n) {
  std::string text;
  for (int i = 0; i < n; ++i)
    text += "\"B" + std::to_string(i) + "\"," + std::to_string(i * 10) + "," +
            std::to_string(i * 10 + 5) + "\n";
  return text;
}

TEST_F(BandTableTest, NineteenRecordsLoadQuietly) {
  BandTable t = MakeTable();
  t.InitializeBandArray(WriteBands(Records(19)));
  EXPECT_EQ(t.BandCount(), 19);
  EXPECT_TRUE(notes.empty());
  EXPECT_EQ(t.GetBandNameForFreq(182), "B18");
}

TEST_F(BandTableTest, ExactlyTwentyRecordsAreNotedAsMoreThanTwenty) {
  BandTable t = MakeTable();
  std::string path = WriteBands(Records(20));
  t.InitializeBandArray(path);
  EXPECT_EQ(t.BandCount(), 20);
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0], "More than 20 band definitions found in " + path);
  EXPECT_EQ(t.GetBandNameForFreq(192), "B19");
}

TEST_F(BandTableTest, MoreThanTwentyKeepsTheFirstTwenty) {
  BandTable t = MakeTable();
  std::string path = WriteBands(Records(25));
  t.InitializeBandArray(path);
  EXPECT_EQ(t.BandCount(), 20);
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0], "More than 20 band definitions found in " + path);
  EXPECT_EQ(t.GetBandNameForFreq(192), "B19");
  EXPECT_EQ(t.GetBandNameForFreq(202), "");
  EXPECT_TRUE(reports.empty());
}

TEST_F(BandTableTest, MalformedRecordStopsTheLoadKeepingWhatWasRead) {
  BandTable t = MakeTable();
  t.InitializeBandArray(WriteBands("A,1,2\nB,3,4\nC,five,6\nD,7,8\n"));
  EXPECT_EQ(t.BandCount(), 2);
  EXPECT_EQ(t.GetBandNameForFreq(3.5), "B");
  EXPECT_EQ(t.GetBandNameForFreq(7.5), "");
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0], "13 VellumModule.InitializeBandArray");
  EXPECT_TRUE(notes.empty());
}

TEST_F(BandTableTest, RecordCutShortAtTheEndIsInputPastEndOfFile) {
  BandTable t = MakeTable();
  t.InitializeBandArray(WriteBands("A,1,2\nB,3"));
  EXPECT_EQ(t.BandCount(), 1);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0], "62 VellumModule.InitializeBandArray");
}

TEST_F(BandTableTest, RecordWithTooFewFieldsMidFileStops) {
  BandTable t = MakeTable();
  t.InitializeBandArray(WriteBands("A,1,2\nB,3\nC,5,6\n"));
  EXPECT_EQ(t.BandCount(), 1);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0], "13 VellumModule.InitializeBandArray");
}

TEST_F(BandTableTest, InputStatementFieldForms) {
  BandTable t = MakeTable();
  // Quoted and plain names, blanks around fields, a comma inside quotes, blank lines, CRLF.
  t.InitializeBandArray(
      WriteBands("  \"160M\" , 1.8 , 2.0\r\n\r\n80M,3.5,4\r\n\"A, B\",1e1,1.1E1\r\n"
                 "\"2M\",144,148"));
  ASSERT_EQ(t.BandCount(), 4);
  EXPECT_EQ(t.BandName(0), "160M");
  EXPECT_EQ(t.BandName(1), "80M");
  EXPECT_EQ(t.BandName(2), "A, B");
  EXPECT_DOUBLE_EQ(t.BandLowerEdge(2), 10.0);
  EXPECT_DOUBLE_EQ(t.BandUpperEdge(2), 11.0);
  EXPECT_EQ(t.BandName(3), "2M");
  EXPECT_EQ(t.GetBandNameForFreq(146), "2M");
  EXPECT_TRUE(reports.empty());
}

TEST_F(BandTableTest, ReloadStartsFromAnEmptyTable) {
  BandTable t = MakeTable();
  t.InitializeBandArray(WriteBands("A,1,2\nB,3,4\n"));
  EXPECT_EQ(t.BandCount(), 2);
  t.InitializeBandArray(dir.Join("none.txt"));
  EXPECT_EQ(t.BandCount(), 0);
  EXPECT_EQ(t.GetBandNameForFreq(1.5), "");
}

// The file shipped with the program: the fifteen names of the Band list, in its order, with the
// amateur band edges.
TEST_F(BandTableTest, ShippedFileHasTheBandListInOrder) {
  BandTable t = MakeTable();
  t.InitializeBandArray(std::string(VELLUMAR_SOURCE_DIR) + "/data/Bands.txt");
  const std::vector<std::string> names = {"160M", "80M",  "40M",  "30M",  "20M",
                                          "17M",  "15M",  "12M",  "10M",  "6M",
                                          "2M",   "70CM", "33CM", "23CM", "3CM"};
  ASSERT_EQ(t.BandCount(), static_cast<int>(names.size()));
  for (size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(t.BandName(static_cast<int>(i)), names[i]);
    EXPECT_LT(t.BandLowerEdge(static_cast<int>(i)), t.BandUpperEdge(static_cast<int>(i)));
  }
  EXPECT_TRUE(notes.empty());
  EXPECT_TRUE(reports.empty());
  struct Case {
    double mhz;
    const char* band;
  } cases[] = {{1.83, "160M"},  {3.573, "80M"},   {7.074, "40M"},   {10.136, "30M"},
               {14.074, "20M"}, {18.1, "17M"},    {21.074, "15M"},  {24.915, "12M"},
               {28.074, "10M"}, {50.313, "6M"},   {144.174, "2M"},  {432.1, "70CM"},
               {903.1, "33CM"}, {1296.1, "23CM"}, {10368.1, "3CM"}, {5.0, ""},
               {27.0, ""},      {100.0, ""}};
  for (const Case& c : cases) EXPECT_EQ(t.GetBandNameForFreq(c.mhz), c.band) << c.mhz;
}

}  // namespace
}  // namespace vellumar
