// The scanner step by step, the header, the tag table and the record's slots.
#include <gtest/gtest.h>

#include "adif/adif_harness.h"
#include "adif/tag_table.h"
#include "platform/vb/error.h"

namespace vellumar::adif {
namespace {

namespace f = logstore::field;
using test::ParserHarness;

TEST(AdifParserSteps, TextBeforeATagIsSkippedAndTextWithoutTagsIsEchoed) {
  ParserHarness h;
  h.parser.SetImportBuffer("junk <CALL:4>W1AW trailing");
  h.parser.ParseADIF(h.consumer, false, false, false);
  EXPECT_EQ(h.parser.CurrentRecordText(), "<CALL:4>W1AW");
  EXPECT_EQ(h.parser.ImportBuffer(), " trailing");
  h.parser.ParseADIF(h.consumer, false, false, false);
  EXPECT_EQ(h.parser.CurrentRecordText(), "<CALL:4>W1AW trailing");
  EXPECT_TRUE(h.parser.ImportBufferEmpty());
}

TEST(AdifParserSteps, EorInAnyCaseEchoesLowerCaseAndClearsTheRecord) {
  ParserHarness h;
  h.parser.SetImportBuffer("<CALL:4>W1AW<eOr><NAME:3>Ann");
  h.parser.ParseADIF(h.consumer, false, false, false);
  h.parser.ParseADIF(h.consumer, false, false, false);
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].echo, "<CALL:4>W1AW<eor>");
  EXPECT_EQ(h.parser.ImportBuffer(), "<NAME:3>Ann");
  EXPECT_EQ(h.parser.CurrentRecordText(), "");
  EXPECT_FALSE(h.parser.FieldImported(f::Call));
  // Only the mark is cleared: the value stays behind.
  EXPECT_EQ(h.parser.ImportedFields(f::Call), "W1AW");
  EXPECT_TRUE(h.parser.ImportedFieldMissing(f::Call));
}

TEST(AdifParserSteps, TagWithoutItsEndLosesTheRestOfTheBuffer) {
  ParserHarness h;
  h.parser.SetImportBuffer("x <CALL:4>W1AW <NAME:3");
  h.parser.ParseADIF(h.consumer, false, false, false);
  h.parser.ParseADIF(h.consumer, false, false, false);
  EXPECT_TRUE(h.parser.ImportBufferEmpty());
  EXPECT_FALSE(h.parser.FieldImported(f::Name));
  EXPECT_EQ(h.parser.CurrentRecordText(), "<CALL:4>W1AW <NAME:3");
}

TEST(AdifParserSteps, UnknownTagsAreDroppedButEchoed) {
  ParserHarness h;
  h.ParseText("<PROGRAMID:7>monolog<PROVINCE:2>ON<BROKEN:1>Y<MYQTHID:1>2<CALL:4>W1AW<EOR>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  const test::Record& r = h.consumer.records[0];
  EXPECT_FALSE(r.imported[f::PROVINCE]);
  EXPECT_FALSE(r.imported[f::BROKEN]);
  EXPECT_FALSE(r.imported[f::MYQTHID]);
  int count = 0;
  for (bool imported : r.imported) count += imported;
  EXPECT_EQ(count, 1);
  EXPECT_EQ(r.echo, "<PROGRAMID:7>monolog<PROVINCE:2>ON<BROKEN:1>Y<MYQTHID:1>2<CALL:4>W1AW<eor>");
}

TEST(AdifParserSteps, TreatmentsOfTheTagTable) {
  ParserHarness h;
  h.ParseText(
      "<operator:4>k1xx<qsl_via:5>w3abc<dxcc:3>291<DXCCPrefix:1>k<mode:5>Psk31<Name:3>jim"
      "<tx_pwr:3>100<comment:5>hello<cont:2>na<ituz:1>8<cqz:1>5<iota:6>NA-001<cnty:5>MA,Xy"
      "<contest_id:4>TEST<gridsquare:4>FN42<srx:2>12<stx:2>34<address:3>Box<qslmsg:2>TU"
      "<qth:6>Boston<rst_rcvd:2>59<rst_sent:3>599<state:2>MA<band:3>20m<qsl_rcvd:1>Y"
      "<qsl_sent:1>N<eor>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  const test::Record& r = h.consumer.records[0];
  EXPECT_EQ(r.Field(f::Operator), "K1XX");
  EXPECT_EQ(r.Field(f::QSL_Via), "W3ABC");
  EXPECT_EQ(r.Field(f::DXCCID), "291");
  EXPECT_EQ(r.Field(f::DXCCPrefix), "k");  // not upper-cased when read
  EXPECT_EQ(r.Field(f::Mode), "Psk");
  EXPECT_EQ(r.Field(f::Name), "jim");
  EXPECT_EQ(r.Field(f::TX_Power), "100");
  EXPECT_EQ(r.Field(f::Comment), "hello");
  EXPECT_EQ(r.Field(f::CONT), "na");
  EXPECT_EQ(r.Field(f::ITUZ), "8");
  EXPECT_EQ(r.Field(f::CQZ), "5");
  EXPECT_EQ(r.Field(f::IOTA), "NA-001");
  EXPECT_EQ(r.Field(f::CNTY), "MA,Xy");
  EXPECT_EQ(r.Field(f::CONTEST_ID), "TEST");
  EXPECT_EQ(r.Field(f::GRIDSQUARE), "FN42");
  EXPECT_EQ(r.Field(f::SRX), "12");
  EXPECT_EQ(r.Field(f::STX), "34");
  EXPECT_EQ(r.Field(f::ADDRESS), "Box");
  EXPECT_EQ(r.Field(f::QSLMsg), "TU");
  EXPECT_EQ(r.Field(f::QTH), "Boston");
  EXPECT_EQ(r.Field(f::RST_Rcvd), "59");
  EXPECT_EQ(r.Field(f::RST_Sent), "599");
  EXPECT_EQ(r.Field(f::State), "MA");
  EXPECT_EQ(r.Field(f::Band), "20m");
  EXPECT_EQ(r.Field(f::QSL_Rcvd), "Y");
  EXPECT_EQ(r.Field(f::QSL_Sent), "N");
}

TEST(AdifParserSteps, OnlyTheWholeWordPsk31IsShortened) {
  ParserHarness h;
  h.ParseText("<MODE:5>PSK63<EOR><MODE:5>psk31<EOR><TX_POWER:2>50<EOR>");
  ASSERT_EQ(h.consumer.records.size(), 3u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Mode), "PSK63");
  EXPECT_EQ(h.consumer.records[1].Field(f::Mode), "psk");
  EXPECT_EQ(h.consumer.records[2].Field(f::TX_Power), "50");
}

TEST(AdifParserSteps, SpecialValuesCountOnlyWithACharacter) {
  ParserHarness h;
  h.ParseText("<QSO_DATE:0><TIME_ON:0><TIME_OFF:4>1300<QSLSDATE:8>20020301<QSLRDATE:0><EOR>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  const test::Record& r = h.consumer.records[0];
  EXPECT_FALSE(r.date.present);
  EXPECT_FALSE(r.timeOn.present);
  EXPECT_TRUE(r.timeOff.present);
  EXPECT_EQ(r.timeOff.value, "1300");
  EXPECT_TRUE(r.qslSent.present);
  EXPECT_EQ(r.qslSent.value, "20020301");
  EXPECT_FALSE(r.qslRcvd.present);
  // The dates go to their special values, not to the field slots.
  EXPECT_FALSE(r.imported[f::QSLSDATE]);
}

TEST(AdifParserSteps, EmptyCallIsImportedButMissing) {
  ParserHarness h;
  h.ParseText("<CALL:0><EOR>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_TRUE(h.consumer.records[0].imported[f::Call]);
  EXPECT_TRUE(h.parser.ImportedFieldMissing(f::Call));
  h.parser.ImportField(f::Call, "W1AW");
  EXPECT_FALSE(h.parser.ImportedFieldMissing(f::Call));
}

TEST(AdifParserSteps, FieldIndexOutsideTheSlotsIsABoundsError) {
  ParserHarness h;
  for (int bad : {-1, 35}) {
    try {
      h.parser.ImportField(bad, "x");
      ADD_FAILURE() << bad;
    } catch (const vb::VbError& e) {
      EXPECT_EQ(e.number(), vb::kSubscriptOutOfRange);
    }
    EXPECT_THROW(h.parser.ImportedFieldMissing(bad), vb::VbError);
  }
}

// A consumer whose import fails.
class FailingConsumer : public RecordConsumer {
 public:
  void ImportRecord(AdifParser&, bool, bool, bool) override {
    vb::Raise(vb::kSubscriptOutOfRange);
  }
};

TEST(AdifParserSteps, FailureWithinAPassIsReportedUnderParseADIF) {
  ParserHarness h;
  FailingConsumer failing;
  h.parser.SetImportBuffer("<CALL:4>W1AW<EOR><NAME:3>Ann");
  h.parser.ParseADIF(failing, false, false, false);
  h.parser.ParseADIF(failing, false, false, false);
  EXPECT_EQ(h.ErrorLogEntries(),
            std::vector<std::string>{"program error 9 in module ParseADIF: Subscript out of range"});
  // The pass ended where it failed: the <eor> is still to be read, the record still held.
  EXPECT_EQ(h.parser.ImportBuffer(), "<EOR><NAME:3>Ann");
  EXPECT_TRUE(h.parser.FieldImported(f::Call));
}

TEST(AdifParserSteps, LengthTextIsConvertedLikeA16BitInteger) {
  EXPECT_EQ(DeclaredLength("5"), 5);
  EXPECT_EQ(DeclaredLength(" 5 "), 5);
  EXPECT_EQ(DeclaredLength("2.5"), 2);  // rounding half to even
  EXPECT_EQ(DeclaredLength("3.5"), 4);
  EXPECT_EQ(DeclaredLength("32767"), 32767);
  EXPECT_EQ(DeclaredLength("32768"), 0);
  EXPECT_EQ(DeclaredLength("40000"), 0);
  EXPECT_EQ(DeclaredLength("2000000000"), 0);
  EXPECT_EQ(DeclaredLength("-3"), -3);
  EXPECT_EQ(DeclaredLength(""), 0);
  EXPECT_EQ(DeclaredLength("x"), 0);
  EXPECT_EQ(DeclaredLength("5x"), 0);
}

TEST(AdifParserSteps, DXBaseFreqKeepsTheFirstPoint) {
  EXPECT_EQ(DXBaseFreq("14.195.12"), "14.19512");
  EXPECT_EQ(DXBaseFreq("14.195"), "14.195");
  EXPECT_EQ(DXBaseFreq("7"), "7");
  EXPECT_EQ(DXBaseFreq("..1.2"), ".12");
  EXPECT_EQ(DXBaseFreq(""), "");
}

TEST(AdifParserSteps, TagTableNamesTheLogColumnsInLowerCase) {
  for (const char* tag : {"qslmsg", "qslsdate", "qslrdate", "comment", "cont", "ituz", "cqz",
                          "iota", "cnty", "contest_id", "gridsquare", "srx", "stx", "address"})
    EXPECT_NE(FindTagRule(tag), nullptr) << tag;
  for (const char* tag : {"province", "broken", "myqthid", "CALL", "eoh", "qso_begin"})
    EXPECT_EQ(FindTagRule(tag), nullptr) << tag;
  EXPECT_EQ(FindTagRule("address")->field, f::ADDRESS);
  EXPECT_EQ(FindTagRule("dxcc")->field, f::DXCCID);
  EXPECT_EQ(FindTagRule("qslsdate")->special, Special::kQSLSent);
}

TEST(AdifParserSteps, HeaderRunsToEohAndLeavesTheRestOfItsLine) {
  ParserHarness h;
  h.ParseBytes("Made by hand\r\n<ADIF_VER:5>3.1.0 <eOh> <CALL:4>W1AW<EOR>\r\n");
  EXPECT_EQ(h.header, "Made by hand\r\n<ADIF_VER:5>3.1.0 ");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Call), "W1AW");
}

TEST(AdifParserSteps, HeaderWithoutEohTakesTheWholeFile) {
  ParserHarness h;
  h.ParseBytes("no header end\r\n<CALL:4>W1AW<EOR>\r\n");
  EXPECT_EQ(h.header, "no header end\r\n<CALL:4>W1AW<EOR>\r\n");
  EXPECT_TRUE(h.consumer.records.empty());
}

TEST(AdifParserSteps, FirstLineBeginningWithATagMeansNoHeaderEvenWithEohLater) {
  ParserHarness h;
  h.ParseBytes("<CALL:4>W1AW<EOR>\r\n<ADIF_VER:5>3.1.0\r\n<EOH>\r\n<CALL:4>K1AB<EOR>\r\n");
  EXPECT_EQ(h.header, "");
  ASSERT_EQ(h.consumer.records.size(), 2u);
  EXPECT_EQ(h.consumer.records[1].Field(f::Call), "K1AB");
}

TEST(AdifParserSteps, ValueSpanningLinesCountsTheJoiningCrLf) {
  ParserHarness h;
  // "ab" CR LF "cd" CR LF "e" is nine characters whatever ended the lines in the file.
  h.ParseBytes("<COMMENT:9>ab\ncd\re<EOR>\n");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Comment), "ab\r\ncd\r\ne");
}

}  // namespace
}  // namespace vellumar::adif
