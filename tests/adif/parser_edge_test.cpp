// The tokeniser's known edge cases, one test each.
#include <gtest/gtest.h>

#include "adif/adif_harness.h"

namespace vellumar::adif {
namespace {

namespace f = logstore::field;
using test::ParserHarness;

TEST(AdifParserEdge, TagsWithoutBlanksParseLikeTagsWithBlanks) {
  ParserHarness tight, spaced;
  tight.ParseText("<CALL:5>K1ABC<QSO_DATE:8>20020115<EOR>");
  spaced.ParseText("<CALL:5>K1ABC <QSO_DATE:8>20020115 <EOR>");
  for (ParserHarness* h : {&tight, &spaced}) {
    ASSERT_EQ(h->consumer.records.size(), 1u);
    EXPECT_EQ(h->consumer.records[0].Field(f::Call), "K1ABC");
    EXPECT_TRUE(h->consumer.records[0].date.present);
    EXPECT_EQ(h->consumer.records[0].date.value, "20020115");
  }
}

TEST(AdifParserEdge, TypeIndicatorIsIgnoredAndCallUpperCased) {
  ParserHarness h;
  h.ParseText("<call:5:S>k1abc<eor>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Call), "K1ABC");
}

TEST(AdifParserEdge, LengthThatIsNoNumberGivesEmptyValueAndSkipsTextToNextTag) {
  ParserHarness h;
  h.ParseText("<CALL:x>K1ABC<NAME:3>Jim<EOR>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  const test::Record& r = h.consumer.records[0];
  EXPECT_EQ(r.Field(f::Call), "");  // imported, and empty
  EXPECT_EQ(r.Field(f::Name), "Jim");
  // K1ABC stood outside any value: skipped, and not echoed.
  EXPECT_EQ(r.echo, "<CALL:x><NAME:3>Jim<eor>");
}

TEST(AdifParserEdge, ShortValueEndsWithTheTextButReadsOnInAFile) {
  ParserHarness text;
  text.ParseText("<NAME:7>Jim");
  EXPECT_EQ(text.parser.ImportedFields(f::Name), "Jim");
  EXPECT_TRUE(text.parser.FieldImported(f::Name));

  ParserHarness file;
  file.ParseBytes("<NAME:7>Jim\r\nBob Smith<EOR>\r\n");
  ASSERT_EQ(file.consumer.records.size(), 1u);
  // "Jim", CR LF and the first two characters of the next line make the seven.
  EXPECT_EQ(file.consumer.records[0].Field(f::Name), "Jim\r\nBo");
  EXPECT_EQ(file.consumer.records[0].echo, "<NAME:7>Jim\r\nBo<eor>");
}

TEST(AdifParserEdge, EohInsideALineBeginningWithATagDiscardsTheRestOfThatLine) {
  ParserHarness h;
  h.ParseBytes(
      "<CALL:5>K1ABC <EOH> <QSO_DATE:8>20020115 <EOR>\r\n"
      "<CALL:4>W1AW <TIME_ON:4>1200 <EOR>\r\n");
  EXPECT_EQ(h.header, "");
  // The first line's date and <EOR> went with the <EOH>: one record, which the first line's
  // call began and the second line's call finished.
  ASSERT_EQ(h.consumer.records.size(), 1u);
  const test::Record& r = h.consumer.records[0];
  EXPECT_EQ(r.Field(f::Call), "W1AW");
  EXPECT_FALSE(r.date.present);
  EXPECT_TRUE(r.timeOn.present);
  EXPECT_EQ(r.echo,
            "<CALL:5>K1ABC<EOH> <EOH> <QSO_DATE:8>20020115 <EOR><CALL:4>W1AW<TIME_ON:4>1200<eor>");
}

TEST(AdifParserEdge, SecondCallTagOfARecordWins) {
  ParserHarness h;
  h.ParseText("<CALL:5>K1ABC <CALL:4>W1AW <EOR>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Call), "W1AW");
}

TEST(AdifParserEdge, EorWithoutTagsIsARecordWithNothingImported) {
  ParserHarness h;
  h.ParseBytes("<EOR>\r\n");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  const test::Record& r = h.consumer.records[0];
  for (bool imported : r.imported) EXPECT_FALSE(imported);
  EXPECT_FALSE(r.date.present);
  EXPECT_FALSE(r.timeOn.present);
  EXPECT_TRUE(r.fromFile);
  EXPECT_EQ(r.echo, "<eor>");
}

TEST(AdifParserEdge, FrequencyKeepsOnlyItsFirstPoint) {
  ParserHarness h;
  h.ParseText("<FREQ:9>14.195.12<EOR>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Freq), "14.19512");
}

}  // namespace
}  // namespace vellumar::adif
