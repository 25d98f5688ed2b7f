// The record encoding of the sibling programs' commands: fields written and read, the token
// slots kept from record to record, the bounds of GetToken, and the nicknames of the family.
#include "interop/dde_common.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace vellumar::interop {
namespace {

class DDECommonTest : public ::testing::Test {
 protected:
  DDECommon common{[this](int number, const std::string& where) {
    reports.emplace_back(number, where);
  }};
  std::vector<std::pair<int, std::string>> reports;

  std::string Value(int position) { return common.GetToken(position).Value; }
  std::string Tag(int position) { return common.GetToken(position).Tag; }
};

TEST_F(DDECommonTest, TwoFieldsGiveTwoTokens) {
  common.ParseRecord("<a:3>abc<b:2>de");
  EXPECT_EQ(common.DDETokenCount(), 2);
  EXPECT_EQ(Tag(1), "a");
  EXPECT_EQ(Value(1), "abc");
  EXPECT_EQ(Tag(2), "b");
  EXPECT_EQ(Value(2), "de");
  EXPECT_TRUE(reports.empty());
}

TEST_F(DDECommonTest, EndOfRecordStopsTheParseInAnyCase) {
  common.ParseRecord("<a:3>abc<eor><b:2>de");
  EXPECT_EQ(common.DDETokenCount(), 1);
  EXPECT_EQ(Value(1), "abc");
  common.ParseRecord("<x:1>y<EoR><b:2>de");
  EXPECT_EQ(common.DDETokenCount(), 1);
  common.ParseRecord("<EOR><b:2>de");
  EXPECT_EQ(common.DDETokenCount(), 0);
}

TEST_F(DDECommonTest, ALengthBeyondTheTextTakesWhatIsThere) {
  common.ParseRecord("<a:10>abc");
  EXPECT_EQ(common.DDETokenCount(), 1);
  EXPECT_EQ(Value(1), "abc");
}

TEST_F(DDECommonTest, TextBeforeTheFirstFieldIsSkipped) {
  common.ParseRecord("junk<a:1>x");
  EXPECT_EQ(common.DDETokenCount(), 1);
  EXPECT_EQ(Tag(1), "a");
  EXPECT_EQ(Value(1), "x");
}

TEST_F(DDECommonTest, ATagWithoutColonEndsTheParse) {
  common.ParseRecord("<a>x<b:1>y");
  EXPECT_EQ(common.DDETokenCount(), 0);
}

TEST_F(DDECommonTest, NoClosingBracketEndsTheParse) {
  common.ParseRecord("<a:1>x<b:1");
  EXPECT_EQ(common.DDETokenCount(), 1);
  common.ParseRecord("no field at all");
  EXPECT_EQ(common.DDETokenCount(), 0);
  common.ParseRecord("");
  EXPECT_EQ(common.DDETokenCount(), 0);
}

TEST_F(DDECommonTest, SlotsBeyondTheCountKeepAnOlderRecord) {
  common.ParseRecord("<p:1>1<q:1>2<r:1>3");
  common.ParseRecord("<a:1>x<b:1>y");
  EXPECT_EQ(common.DDETokenCount(), 2);
  EXPECT_EQ(Value(1), "x");
  EXPECT_EQ(Value(2), "y");
  // The count is not consulted: the third slot is the older record's.
  EXPECT_EQ(Tag(3), "r");
  EXPECT_EQ(Value(3), "3");
  // Never filled: two empty strings.
  EXPECT_EQ(Tag(4), "");
  EXPECT_EQ(Value(4), "");
  EXPECT_TRUE(reports.empty());
}

TEST_F(DDECommonTest, PositionZeroAndAboveAHundredAreBoundsErrors) {
  common.ParseRecord("<a:1>x");
  EXPECT_EQ(Value(0), "");
  EXPECT_EQ(Value(101), "");
  EXPECT_EQ(Value(-1), "");
  ASSERT_EQ(reports.size(), 3u);
  for (const auto& [number, where] : reports) {
    EXPECT_EQ(number, 9);
    EXPECT_EQ(where, "DDECommon.GetToken");
  }
  reports.clear();
  EXPECT_EQ(Value(100), "");  // the last slot is in bounds
  EXPECT_TRUE(reports.empty());
}

TEST_F(DDECommonTest, AHundredAndFirstTokenEndsTheParseAndKeepsAHundred) {
  std::string text;
  for (int i = 1; i <= 102; ++i) text += DDECommon::EncodeField("t", std::to_string(i));
  common.ParseRecord(text);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].first, 9);
  EXPECT_EQ(reports[0].second, "DDECommon.ParseRecord");
  EXPECT_EQ(Value(1), "1");
  EXPECT_EQ(Value(100), "100");
  // The count went up before the slot was refused.
  EXPECT_EQ(common.DDETokenCount(), 101);
}

TEST_F(DDECommonTest, ExactlyAHundredTokensAreNoError) {
  std::string text;
  for (int i = 1; i <= 100; ++i) text += DDECommon::EncodeField("t", std::to_string(i));
  common.ParseRecord(text);
  EXPECT_TRUE(reports.empty());
  EXPECT_EQ(common.DDETokenCount(), 100);
  EXPECT_EQ(Value(100), "100");
}

TEST_F(DDECommonTest, ALengthThatDoesNotConvertIsZero) {
  // The value is empty and the search for the next field goes on behind ">".
  common.ParseRecord("<a:x>abc<b:1>d");
  ASSERT_EQ(common.DDETokenCount(), 2);
  EXPECT_EQ(Value(1), "");
  EXPECT_EQ(Value(2), "d");
  common.ParseRecord("<a:70000>abc");  // beyond 16 bits
  ASSERT_EQ(common.DDETokenCount(), 1);
  EXPECT_EQ(Value(1), "");
  common.ParseRecord("<a:>abc");
  ASSERT_EQ(common.DDETokenCount(), 1);
  EXPECT_EQ(Value(1), "");
  EXPECT_TRUE(reports.empty());
}

TEST_F(DDECommonTest, ANegativeLengthCountsAsZero) {
  common.ParseRecord("<a:-3>abc<b:2>de");
  ASSERT_EQ(common.DDETokenCount(), 2);
  EXPECT_EQ(Value(1), "");
  EXPECT_EQ(Value(2), "de");
}

TEST_F(DDECommonTest, TheLengthReadsAsTheRuntimeReadsANumber) {
  EXPECT_EQ(DDECommon::DeclaredLength("3"), 3);
  EXPECT_EQ(DDECommon::DeclaredLength(" 3 "), 3);
  EXPECT_EQ(DDECommon::DeclaredLength("32767"), 32767);
  EXPECT_EQ(DDECommon::DeclaredLength("32768"), 0);
  EXPECT_EQ(DDECommon::DeclaredLength("2.5"), 2);  // rounded half to even
  EXPECT_EQ(DDECommon::DeclaredLength("3:s"), 0);  // a type after the length doesn't convert
}

TEST_F(DDECommonTest, LengthsCountUtf8Bytes) {
  // "Zürich" is seven bytes.
  common.ParseRecord("<QTH:7>Zürich<b:1>x");
  ASSERT_EQ(common.DDETokenCount(), 2);
  EXPECT_EQ(Value(1), "Zürich");
  EXPECT_EQ(Value(2), "x");
  EXPECT_EQ(DDECommon::EncodeField("QTH", "Zürich"), "<QTH:7>Zürich");
}

TEST_F(DDECommonTest, ACountEndingInsideACharacterStopsBeforeIt) {
  // Two bytes reach into the middle of "ü": the value is "Z" alone.
  common.ParseRecord("<QTH:2>Zürich");
  ASSERT_EQ(common.DDETokenCount(), 1);
  EXPECT_EQ(Value(1), "Z");
  // A four-byte character cut after its second byte.
  common.ParseRecord("<a:3>x\xF0\x9F\x93\xBB<b:1>y");
  ASSERT_EQ(common.DDETokenCount(), 2);
  EXPECT_EQ(Value(1), "x");
  EXPECT_EQ(Value(2), "y");
}

TEST_F(DDECommonTest, EncodeFieldWritesTagLengthAndValue) {
  EXPECT_EQ(DDECommon::EncodeField("ProgressPrefix", "K"), "<ProgressPrefix:1>K");
  EXPECT_EQ(DDECommon::EncodeField("", "x"), "");
  EXPECT_EQ(DDECommon::EncodeField("X", ""), "<X:0>");
  EXPECT_EQ(DDECommon::EncodeField("a", "abc") + DDECommon::EncodeField("b", "de"),
            "<a:3>abc<b:2>de");
}

TEST_F(DDECommonTest, EncodedFieldsReadBackInOrder) {
  const std::string record = DDECommon::EncodeField("entrycallsign", "VP2EAB") +
                             DDECommon::EncodeField("entryfreq", "14.025") +
                             DDECommon::EncodeField("entrymode", "CW");
  common.ParseRecord(record);
  ASSERT_EQ(common.DDETokenCount(), 3);
  EXPECT_EQ(Value(1), "VP2EAB");
  EXPECT_EQ(Value(2), "14.025");
  EXPECT_EQ(Value(3), "CW");
  EXPECT_EQ(Tag(3), "entrymode");
}

TEST_F(DDECommonTest, ValuesMayHoldBracketsAndColons) {
  common.ParseRecord("<a:5><b:1><c:1>z");
  ASSERT_EQ(common.DDETokenCount(), 2);
  EXPECT_EQ(Value(1), "<b:1>");
  EXPECT_EQ(Value(2), "z");
}

TEST_F(DDECommonTest, ServerNickNames) {
  const char* expected[] = {"RS", "VL", "TM", "AT", "CL", "GX", "SG"};
  for (int n = 0; n < 7; ++n) EXPECT_EQ(DDECommon::ServerNickName(n), expected[n]);
  EXPECT_EQ(DDECommon::ServerNickName(-1), "");
  EXPECT_EQ(DDECommon::ServerNickName(7), "");
}

}  // namespace
}  // namespace vellumar::interop
