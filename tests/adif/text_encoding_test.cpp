// UTF-8 and Windows-1252 files: how each is decided, decoded and measured.
#include "adif/text_encoding.h"

#include <gtest/gtest.h>

#include "adif/adif_harness.h"

namespace vellumar::adif {
namespace {

namespace f = logstore::field;
using test::ParserHarness;

bool ValidUtf8(std::string_view bytes, size_t chunk) {
  Utf8Validator validator;
  for (size_t i = 0; i < bytes.size(); i += chunk) validator.Feed(bytes.substr(i, chunk));
  return validator.Valid();
}

TEST(AdifTextEncoding, Utf8ValidatorAcceptsWellFormedTextInAnyChunks) {
  const std::string text = "J\xC3\xB6rg \xE2\x82\xAC \xF0\x9F\x93\xBB";
  for (size_t chunk : {1u, 2u, 3u, 100u}) EXPECT_TRUE(ValidUtf8(text, chunk)) << chunk;
}

TEST(AdifTextEncoding, Utf8ValidatorRefusesMalformedText) {
  EXPECT_FALSE(ValidUtf8("J\xF6rg", 1));             // a Windows-1252 letter
  EXPECT_FALSE(ValidUtf8("\xC0\xAF", 1));            // overlong
  EXPECT_FALSE(ValidUtf8("\xE0\x80\xAF", 1));        // overlong
  EXPECT_FALSE(ValidUtf8("\xED\xA0\x80", 1));        // a surrogate
  EXPECT_FALSE(ValidUtf8("\xF4\x90\x80\x80", 1));    // beyond U+10FFFF
  EXPECT_FALSE(ValidUtf8("ab\xC3", 1));              // cut short at the end
  EXPECT_FALSE(ValidUtf8("\x80", 1));                // a lone continuation byte
}

TEST(AdifTextEncoding, Windows1252BecomesUtf8) {
  std::string out;
  AppendWindows1252(out, "J\xF6rg \x80 \x81 \x9F \xFF");
  EXPECT_EQ(out, "J\xC3\xB6rg \xE2\x82\xAC \xC2\x81 \xC5\xB8 \xC3\xBF");
}

TEST(AdifTextEncoding, JoergArrivesAsJoergFromEitherEncoding) {
  ParserHarness utf8, cp1252;
  utf8.ParseBytes("<NAME:5>J\xC3\xB6rg<EOR>\r\n");       // five bytes
  cp1252.ParseBytes("<NAME:4>J\xF6rg<EOR>\r\n");         // four characters
  for (ParserHarness* h : {&utf8, &cp1252}) {
    ASSERT_EQ(h->consumer.records.size(), 1u);
    EXPECT_EQ(h->consumer.records[0].Field(f::Name), "J\xC3\xB6rg");
  }
}

TEST(AdifTextEncoding, Windows1252LengthsCountCharacters) {
  ParserHarness h;
  h.ParseBytes("<QTH:7>M\xFCnchen<NAME:2>\x80x<EOR>\r\n");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::QTH), "M\xC3\xBCnchen");
  EXPECT_EQ(h.consumer.records[0].Field(f::Name), "\xE2\x82\xACx");
}

TEST(AdifTextEncoding, Utf8LengthNeverCutsInsideACharacter) {
  ParserHarness h;
  // Two bytes end inside the "ö": the value takes the whole letter.
  h.ParseBytes("<NAME:2>J\xC3\xB6rg<QTH:1>\xE2\x82\xAC<EOR>\r\n");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Name), "J\xC3\xB6");
  EXPECT_EQ(h.consumer.records[0].Field(f::QTH), "\xE2\x82\xAC");
}

TEST(AdifTextEncoding, OneBadByteMakesTheWholeFileWindows1252) {
  ParserHarness h;
  // Valid UTF-8 in the first record, a Windows-1252 byte in the second.
  h.ParseBytes("<NAME:2>\xC3\xB6<EOR>\r\n<NAME:1>\xF6<EOR>\r\n");
  ASSERT_EQ(h.consumer.records.size(), 2u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Name), "\xC3\x83\xC2\xB6");  // "Ã¶"
  EXPECT_EQ(h.consumer.records[1].Field(f::Name), "\xC3\xB6");
}

TEST(AdifTextEncoding, ByteOrderMarkBeforeAHeaderlessFile) {
  ParserHarness h;
  h.ParseBytes("\xEF\xBB\xBF<CALL:4>W1AW<NAME:5>J\xC3\xB6rg<EOR>\r\n");
  EXPECT_EQ(h.header, "");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Call), "W1AW");
  EXPECT_EQ(h.consumer.records[0].Field(f::Name), "J\xC3\xB6rg");
}

TEST(AdifTextEncoding, ByteOrderMarkIsNotPartOfTheHeader) {
  ParserHarness h;
  h.ParseBytes("\xEF\xBB\xBF# made by hand\r\n<EOH>\r\n<CALL:4>W1AW<EOR>\r\n");
  EXPECT_EQ(h.header, "# made by hand\r\n");
  ASSERT_EQ(h.consumer.records.size(), 1u);
}

TEST(AdifTextEncoding, SiblingTextCountsBytesAsUtf8) {
  ParserHarness h;
  h.ParseText("<NAME:5>J\xC3\xB6rg<QTH:1>\xC3\xA9t\xC3\xA9<EOR>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Name), "J\xC3\xB6rg");
  EXPECT_EQ(h.consumer.records[0].Field(f::QTH), "\xC3\xA9");
}

}  // namespace
}  // namespace vellumar::adif
