// Public ADIF files from other programs, each read to its end as the file import reads it. The
// counts and values expected were taken from reading the files themselves.
#include <gtest/gtest.h>

#include <string>

#include "adif/adif_harness.h"

namespace vellumar::adif {
namespace {

namespace f = logstore::field;
using test::ParserHarness;
using test::Record;

std::string DataFile(const std::string& name) {
  return std::string(VELLUMAR_SOURCE_DIR) + "/tests/adif/data/" + name;
}

// Reads a whole file; the file must open, and it must not run any value past its end.
void ParseFile(ParserHarness& h, const std::string& name) {
  FileLineSource source;
  ASSERT_TRUE(source.Open(DataFile(name))) << name << ": " << source.OpenErrorDescription();
  h.ParseSource(source);
  EXPECT_TRUE(h.ErrorLogEntries().empty()) << name;
}

TEST(AdifSampleFiles, AdifSpecificationSampleWithUserFields) {
  ParserHarness h;
  ParseFile(h, "adif_spec_sample_userdef.adi");
  EXPECT_EQ(h.header,
            "Generated on 2011-11-22 at 02:15:23Z for WN4AZY\r\n\r\n<adif_ver:5>3.0.5\r\n"
            "<programid:7>monolog\r\n<USERDEF1:3:N>EPC\r\n<USERDEF2:19:E>SweaterSize,{S,M,L}\r\n"
            "<USERDEF3:15:N>ShoeSize,{5:20}\r\n\r\n");
  ASSERT_EQ(h.consumer.records.size(), 2u);
  const Record& first = h.consumer.records[0];
  EXPECT_EQ(first.Field(f::Call), "VK9NS");
  EXPECT_EQ(first.date.value, "19900620");
  EXPECT_EQ(first.timeOn.value, "1523");
  EXPECT_EQ(first.Field(f::Band), "20M");
  EXPECT_EQ(first.Field(f::Mode), "RTTY");
  EXPECT_EQ(h.consumer.records[1].Field(f::Call), "ON4UN");
  EXPECT_EQ(h.consumer.records[1].Field(f::Mode), "PSK");
}

TEST(AdifSampleFiles, TestQSOsOfAdif316) {
  ParserHarness h;
  ParseFile(h, "ADIF_316_test_QSOs_2025_08_27.adi");
  // The first line begins with a blank, not a tag: the header runs to the <EOH>.
  EXPECT_EQ(h.header.rfind(" <ADIF_VER:5>3.1.6\r\n<CREATED_TIMESTAMP:15>20250827 162624\r\n", 0),
            0u);
  ASSERT_EQ(h.consumer.records.size(), 6191u);
  const Record& first = h.consumer.records.front();
  EXPECT_EQ(first.Field(f::Call), "VE3AAA");
  EXPECT_EQ(first.date.value, "20250627");
  EXPECT_EQ(first.timeOn.value, "000000");
  EXPECT_EQ(first.timeOff.value, "000437");
  EXPECT_EQ(first.Field(f::Freq), "14.05");
  EXPECT_EQ(first.Field(f::Mode), "SSB");
  // A value of three lines: its length counts the CR LF between them.
  EXPECT_NE(first.echo.find("<QSO_TRANSCRIPT:37>NAME FRED\r\nQTH ALENCON\r\n73 ES GOOD DX<"),
            std::string::npos);
  const Record& last = h.consumer.records.back();
  EXPECT_EQ(last.Field(f::Call), "3D2ISQ");
  EXPECT_EQ(last.date.value, "20250721");
  EXPECT_EQ(last.Field(f::Band), "17m");
  EXPECT_EQ(last.Field(f::Freq), "18.16421");
  EXPECT_EQ(last.Field(f::Mode), "OLIVIA");
}

TEST(AdifSampleFiles, CloudlogExport) {
  ParserHarness h;
  ParseFile(h, "cloudlog_1.7_export.adi");
  ASSERT_EQ(h.consumer.records.size(), 34u);
  const Record& first = h.consumer.records.front();
  EXPECT_EQ(first.Field(f::Call), "EA8TN");
  EXPECT_EQ(first.Field(f::DXCCID), "29");
  EXPECT_EQ(first.Field(f::CQZ), "33");
  EXPECT_EQ(first.Field(f::GRIDSQUARE), "IL18UK");
  EXPECT_EQ(first.Field(f::Freq), "7.075091");
  EXPECT_EQ(first.Field(f::RST_Rcvd), "-20");
  EXPECT_EQ(first.timeOn.value, "030915");
  EXPECT_FALSE(first.qslSent.present);  // EQSL_QSLSDATE and LOTW_QSLSDATE aren't read
  const Record& last = h.consumer.records.back();
  EXPECT_EQ(last.Field(f::Call), "OK2ZCH");
  EXPECT_EQ(last.Field(f::Mode), "SSTV");
  EXPECT_EQ(last.Field(f::Freq), "14.23");
  EXPECT_EQ(last.Field(f::TX_Power), "100");
  EXPECT_EQ(last.Field(f::Operator), "M0OFX");
}

TEST(AdifSampleFiles, CqgmaExportWithBrokenTagsHasNoRecord) {
  ParserHarness h;
  ParseFile(h, "cqgma_export_broken_tags.adi");
  EXPECT_EQ(h.header.rfind("ADIF-Export from cqGMA.net\r\nQW DL0QW (c) 1978-2021\r\n", 0), 0u);
  EXPECT_EQ(h.header.size() - h.header.rfind("Reference:9DM/NS-135\r\n"), 22u);
  // No line has an <EOR>: the tags that kept their brackets pile up in one record, never
  // handed over, the last line's values on top.
  EXPECT_TRUE(h.consumer.records.empty());
  EXPECT_EQ(h.parser.ImportedDate().value, "20210706");
  EXPECT_EQ(h.parser.ImportedTimeOn().value, "2056");
  EXPECT_EQ(h.parser.ImportedFields(f::RST_Sent), "53");
  EXPECT_EQ(h.parser.ImportedFields(f::RST_Rcvd), "55");
  EXPECT_FALSE(h.parser.FieldImported(f::Call));
}

TEST(AdifSampleFiles, CqrlogContestLogWithRecordsOverSeveralLines) {
  ParserHarness h;
  ParseFile(h, "cqrlog_2.0.4_naqp_201701.adi");
  ASSERT_EQ(h.consumer.records.size(), 13u);
  const Record& first = h.consumer.records.front();
  EXPECT_EQ(first.Field(f::Call), "W6AFA");
  EXPECT_EQ(first.Field(f::Name), "Alexander");
  EXPECT_EQ(first.Field(f::QTH), "Studio City");
  EXPECT_EQ(first.Field(f::CNTY), "CA,Los Angeles");
  EXPECT_EQ(first.Field(f::Comment), "naqp,alex,ca");
  EXPECT_EQ(first.Field(f::CONT), "NA");
  EXPECT_EQ(first.Field(f::TX_Power), "100");
  const Record& last = h.consumer.records.back();
  EXPECT_EQ(last.Field(f::Call), "N3BBQ");
  EXPECT_EQ(last.Field(f::QTH), "Anna");
  EXPECT_EQ(last.Field(f::Freq), "7.1445");
  EXPECT_EQ(last.timeOn.value, "0318");
}

TEST(AdifSampleFiles, HeaderlessPotaLog) {
  ParserHarness h;
  ParseFile(h, "headerless_pota_log.adi");
  EXPECT_EQ(h.header, "");
  ASSERT_EQ(h.consumer.records.size(), 49u);
  const Record& first = h.consumer.records.front();
  EXPECT_EQ(first.Field(f::Call), "K9DVP");
  EXPECT_EQ(first.Field(f::Operator), "WW4N");
  EXPECT_EQ(first.Field(f::Band), "40M");
  EXPECT_EQ(first.timeOn.value, "1446");
  const Record& last = h.consumer.records.back();
  EXPECT_EQ(last.Field(f::Call), "KZ3L");
  EXPECT_EQ(last.Field(f::Band), "20M");
  EXPECT_EQ(last.timeOn.value, "1550");
}

TEST(AdifSampleFiles, Log4omExportWithByteOrderMark) {
  ParserHarness h;
  ParseFile(h, "log4om2_k9cts.adi");
  EXPECT_EQ(h.header.rfind("#++++", 0), 0u);  // the mark is gone
  ASSERT_EQ(h.consumer.records.size(), 122u);
  const Record& first = h.consumer.records.front();
  EXPECT_EQ(first.Field(f::Call), "KE8LVA");
  EXPECT_EQ(first.Field(f::Name), "Aaron M Frazier");
  // Declared shorter than what stands in the file: the rest is skipped.
  EXPECT_EQ(first.Field(f::ADDRESS), "x" + std::string(33, '='));
  EXPECT_EQ(first.Field(f::CNTY), "OH,WAYNE");
  const Record& last = h.consumer.records.back();
  EXPECT_EQ(last.Field(f::Call), "WA0PYW");
  EXPECT_EQ(last.Field(f::ADDRESS), "x" + std::string(39, '='));
  EXPECT_EQ(last.Field(f::State), "MO");
}

TEST(AdifSampleFiles, Logger32Export) {
  ParserHarness h;
  ParseFile(h, "logger32_4.0_export.adi");
  ASSERT_EQ(h.consumer.records.size(), 5u);
  const Record& first = h.consumer.records.front();
  EXPECT_EQ(first.Field(f::Call), "GD4VBA");
  EXPECT_EQ(first.Field(f::Comment), "FT8  Sent: -16  Rcvd: -01");
  EXPECT_EQ(first.Field(f::DXCCID), "114");
  EXPECT_EQ(first.date.value, "20230905");
  EXPECT_EQ(h.consumer.records.back().Field(f::Call), "YP20KQT");
  EXPECT_EQ(h.consumer.records.back().timeOn.value, "181402");
}

TEST(AdifSampleFiles, LogHX3ExportWithMalformedHeader) {
  ParserHarness h;
  ParseFile(h, "loghx3_export_malformed_header.adi");
  EXPECT_NE(h.header.find("<ADIF_VER:5>3.0.4>\r\n"), std::string::npos);
  ASSERT_EQ(h.consumer.records.size(), 1u);
  const Record& r = h.consumer.records[0];
  EXPECT_EQ(r.Field(f::Call), "M6VMS");
  EXPECT_EQ(r.Field(f::Freq), "14");
  EXPECT_EQ(r.Field(f::QTH), "Windermere");
  // Declared seven long, the operator takes the blank and the "<" of the next tag, which is
  // lost with it.
  EXPECT_EQ(r.Field(f::Operator), "M0NOM <");
  EXPECT_EQ(r.Field(f::ITUZ), "27");
  EXPECT_EQ(r.Field(f::CONT), "EU");
}

TEST(AdifSampleFiles, N1mmContestExport) {
  ParserHarness h;
  ParseFile(h, "n1mm_logger_plus_export.adi");
  ASSERT_EQ(h.consumer.records.size(), 2u);
  const Record& first = h.consumer.records.front();
  EXPECT_EQ(first.Field(f::Call), "UA4M");
  EXPECT_EQ(first.Field(f::Freq), "7.10400");
  EXPECT_EQ(first.Field(f::CONTEST_ID), "CQ-WW-SSB");
  EXPECT_EQ(first.Field(f::STX), "1");
  EXPECT_EQ(first.timeOff.value, "181415");
  EXPECT_EQ(h.consumer.records[1].Field(f::Call), "PA6DX");
  EXPECT_EQ(h.consumer.records[1].Field(f::STX), "2");
}

TEST(AdifSampleFiles, QLogExportWithTypedTags) {
  ParserHarness h;
  ParseFile(h, "qlog_0.34_export.adi");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  const Record& r = h.consumer.records[0];
  EXPECT_EQ(r.Field(f::Call), "LU7HF");
  EXPECT_EQ(r.Field(f::Freq), "24.895");
  EXPECT_EQ(r.Field(f::QTH), "SAN FRANCISCO - CORDOBA");
  EXPECT_EQ(r.Field(f::State), "Se");
  EXPECT_EQ(r.Field(f::QSL_Sent), "Q");
  EXPECT_EQ(r.date.value, "20240509");
  EXPECT_EQ(r.timeOff.value, "213639");
  EXPECT_FALSE(r.qslSent.present);  // LOTW_QSLSDATE isn't read
}

TEST(AdifSampleFiles, QrzLogbookDownloadInUtf8) {
  ParserHarness h;
  ParseFile(h, "qrz_logbook_k9cts.adi");
  ASSERT_EQ(h.consumer.records.size(), 931u);
  const Record& first = h.consumer.records.front();
  EXPECT_EQ(first.Field(f::Call), "KG9IV");
  EXPECT_EQ(first.Field(f::Freq), "146.655");
  EXPECT_EQ(first.Field(f::TX_Power), "5");
  // Lengths count bytes: nine for "Montréal", 23 for a name cut by the writer.
  EXPECT_EQ(h.consumer.records[138].Field(f::Call), "VA2MKX");
  EXPECT_EQ(h.consumer.records[138].Field(f::QTH), "Montr\xC3\xA9" "al");
  EXPECT_EQ(h.consumer.records[177].Field(f::Call), "PV8AL");
  EXPECT_EQ(h.consumer.records[177].Field(f::Name), "H\xC3\xA9lio De Oliveira Alve");
}

TEST(AdifSampleFiles, WsjtxLog) {
  ParserHarness h;
  ParseFile(h, "wsjtx_2.6.1_log_kk7knb.adi");
  ASSERT_EQ(h.consumer.records.size(), 528u);
  const Record& first = h.consumer.records.front();
  EXPECT_EQ(first.Field(f::Call), "KG4LKY");
  EXPECT_EQ(first.Field(f::Operator), "STEVE");  // upper-cased when read
  EXPECT_EQ(first.Field(f::TX_Power), "50W");
  EXPECT_EQ(first.Field(f::Freq), "28.076249");
  const Record& last = h.consumer.records.back();
  EXPECT_EQ(last.Field(f::Call), "AB5EO/6");
  EXPECT_EQ(last.Field(f::GRIDSQUARE), "");
  EXPECT_EQ(last.Field(f::TX_Power), "100% EFLW");
  EXPECT_EQ(last.Field(f::Operator), "<missing>");
}

}  // namespace
}  // namespace vellumar::adif
