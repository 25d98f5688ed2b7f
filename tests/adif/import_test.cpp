// The import of ADIF files into a fresh log: records, dates, duplicates, reports.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "adif/import_harness.h"
#include "platform/vb/date_value.h"
#include "platform/vb/format.h"
#include "support/temp_dir.h"

namespace vellumar::adif {
namespace {

namespace f = logstore::field;
using test::ImportHarness;

std::string Tag(const std::string& name, const std::string& value) {
  return "<" + name + ":" + std::to_string(value.size()) + ">" + value;
}

// One QSO of K1ABC on 20 m SSB, with a start time and what more is asked for.
std::string Qso(const std::string& date, const std::string& time, const std::string& more = "") {
  return Tag("CALL", "K1ABC") + Tag("QSO_DATE", date) + Tag("TIME_ON", time) +
         Tag("FREQ", "14.195") + Tag("MODE", "SSB") + more + "<EOR>\r\n";
}

std::string Begin(ImportHarness& h, long row) {
  return vb::FormatDate(h.DateValue(row, f::QSO_Begin), "yyyy-mm-dd hh:nn:ss");
}
std::string End(ImportHarness& h, long row) {
  return vb::FormatDate(h.DateValue(row, f::QSO_End), "yyyy-mm-dd hh:nn:ss");
}

TEST(AdifImport, SevenDigitDateIsTakenWhenItConverts) {
  ImportHarness h;
  EXPECT_EQ(h.ImportText(Qso("2002011", "1230")), ImportOutcome::kEndOfFile);
  EXPECT_EQ(h.import->Counters().imported, 1);
  EXPECT_EQ(Begin(h, 0), "2002-01-01 12:30:00");
}

TEST(AdifImport, Year1929IsIllegalAnd1930IsStored) {
  ImportHarness h;
  h.ImportText(Qso("19291231", "2359") + Qso("19300101", "0000"));
  const ImportCounters& c = h.import->Counters();
  EXPECT_EQ(c.processed, 2);
  EXPECT_EQ(c.illegals, 1);
  EXPECT_EQ(c.imported, 1);
  ASSERT_EQ(h.Rows(), 1);
  EXPECT_EQ(Begin(h, 0), "1930-01-01 00:00:00");
  EXPECT_EQ(h.import->ReportText().find("start date is earlier than 1930: <CALL:5>K1ABC"),
            0u);
}

TEST(AdifImport, SecondsOfTheStartTime) {
  ImportHarness h;
  h.import->Settings().checkDuplicates = false;  // the first and the last start alike
  h.ImportText(Qso("20020115", "1230") + Qso("20020115", "123045") +
               Qso("20020115", "120060") + Qso("20020115", "12304"));
  ASSERT_EQ(h.Rows(), 4);
  EXPECT_EQ(Begin(h, 0), "2002-01-15 12:30:00");
  EXPECT_EQ(Begin(h, 1), "2002-01-15 12:30:45");
  EXPECT_EQ(Begin(h, 2), "2002-01-15 12:00:00");  // 60 seconds become 0
  EXPECT_EQ(Begin(h, 3), "2002-01-15 12:30:00");  // five characters: no seconds
}

TEST(AdifImport, EndSharesTheStartDateAndABadEndIsReported) {
  ImportHarness h;
  h.ImportText(Qso("20020115", "2350", Tag("TIME_OFF", "001500")) +
               Qso("20020116", "1000", Tag("TIME_OFF", "99xx")));
  ASSERT_EQ(h.Rows(), 2);
  // Over midnight the end falls before the start.
  EXPECT_EQ(End(h, 0), "2002-01-15 00:15:00");
  EXPECT_EQ(End(h, 1), "2002-01-16 10:00:00");
  const ImportCounters& c = h.import->Counters();
  EXPECT_EQ(c.imported, 2);
  EXPECT_EQ(c.illegals, 0);
  EXPECT_EQ(h.import->ReportText().find("ignored bad date 2002-01-16 99:xx: <CALL:5>K1ABC"), 0u);
}

TEST(AdifImport, BadPrefixCountsIllegalAndIsImported) {
  ImportHarness h;
  h.ImportText(Qso("20020115", "1230", Tag("DXCCPREFIX", "ZZ9")) +
               Qso("20020116", "1230", Tag("DXCC", "999")));
  const ImportCounters& c = h.import->Counters();
  EXPECT_EQ(c.processed, 2);
  EXPECT_EQ(c.illegals, 2);
  EXPECT_EQ(c.imported, 2);
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "ZZ9");
  EXPECT_EQ(h.Value(0, f::DXCCID), "");
  EXPECT_EQ(h.Value(1, f::DXCCID), "999");
  EXPECT_EQ(h.Value(1, f::DXCCPrefix), "");
  EXPECT_NE(h.import->ReportText().find("can't find country code for prefix ZZ9: "),
            std::string::npos);
  EXPECT_NE(h.import->ReportText().find("can't find prefix for country code 999: "),
            std::string::npos);
}

TEST(AdifImport, CodeAndPrefixFillEachOtherAndTheLookupFillsBoth) {
  ImportHarness h;
  h.ImportText(Qso("20020115", "1230", Tag("DXCC", "230")) +
               Qso("20020116", "1230", Tag("DXCCPREFIX", "ja")) +
               Qso("20020117", "1230", Tag("CQZ", "3")));
  ASSERT_EQ(h.Rows(), 3);
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "DL");
  EXPECT_EQ(h.Value(1, f::DXCCID), "339");
  // K1ABC looked up: the United States, the record's own CQ zone kept.
  EXPECT_EQ(h.Value(2, f::DXCCID), "291");
  EXPECT_EQ(h.Value(2, f::DXCCPrefix), "K");
  EXPECT_EQ(h.Value(2, f::CONT), "NA");
  EXPECT_EQ(h.Value(2, f::CQZ), "3");
  EXPECT_EQ(h.Value(2, f::ITUZ), "8");
  EXPECT_EQ(h.import->Counters().illegals, 0);
  // Each counted into Progress at once: 20M and PHONE worked.
  EXPECT_EQ(h.ProgressLetter("K", "20M"), "W");
  EXPECT_EQ(h.ProgressLetter("K", "PHONE"), "W");
  EXPECT_EQ(h.ProgressLetter("DL", "20M"), "W");
  EXPECT_EQ(h.ProgressLetter("G", "20M"), "");
}

TEST(AdifImport, SameFileTwiceWithDuplicatesOnImportsNothingTheSecondTime) {
  ImportHarness h;
  const std::string text = Qso("20020115", "1230") + Qso("20020115", "1231") +
                           Qso("20020115", "123130");
  h.ImportText(text);
  EXPECT_EQ(h.import->Counters().imported, 3);
  h.ImportText(text);
  const ImportCounters& c = h.import->Counters();
  EXPECT_EQ(c.processed, 3);
  EXPECT_EQ(c.imported, 0);
  EXPECT_EQ(c.duplicates, 3);
  EXPECT_EQ(h.Rows(), 3);
  // A frequency that differs in its text is another QSO; the band doesn't count.
  h.ImportText(Tag("CALL", "K1ABC") + Tag("QSO_DATE", "20020115") + Tag("TIME_ON", "1230") +
               Tag("FREQ", "14.19500") + Tag("MODE", "SSB") + "<EOR>");
  EXPECT_EQ(h.import->Counters().imported, 1);
  // With duplicates off every record is added.
  h.import->Settings().checkDuplicates = false;
  h.ImportText(text);
  EXPECT_EQ(h.import->Counters().imported, 3);
  EXPECT_EQ(h.Rows(), 7);
}

TEST(AdifImport, QuoteInACallsignFailsTheDuplicateSearch) {
  ImportHarness h;
  h.ImportText(Tag("CALL", "K1'X") + Tag("QSO_DATE", "20020115") + Tag("TIME_ON", "1230") +
               "<EOR>");
  EXPECT_EQ(h.import->Counters().processed, 1);
  EXPECT_EQ(h.import->Counters().imported, 0);
  EXPECT_EQ(h.Rows(), 0);
  const auto log = h.ErrorLogEntries();
  ASSERT_FALSE(log.empty());
  EXPECT_NE(log.back().find("in module ADIF.ImportRecord"), std::string::npos) << log.back();
}

TEST(AdifImport, MissingCallDateOrTimeIsIllegalButAnEmptyCallPasses) {
  ImportHarness h;
  h.ImportText("<EOR>" + Tag("CALL", "K1A") + "<EOR>" + Tag("CALL", "K1A") +
               Tag("QSO_DATE", "20020115") + "<EOR><CALL:0>" + Tag("QSO_DATE", "20020115") +
               Tag("TIME_ON", "1230") + "<EOR>");
  const ImportCounters& c = h.import->Counters();
  EXPECT_EQ(c.processed, 4);
  EXPECT_EQ(c.illegals, 3);
  EXPECT_EQ(c.imported, 1);
  EXPECT_EQ(h.import->ReportText(),
            "missing callsign: <eor>\r\n"
            "missing QSO date: <CALL:3>K1A<eor>\r\n"
            "missing QSO time: <CALL:3>K1A<QSO_DATE:8>20020115<eor>\r\n");
}

// Found by the import's fuzzer: a length with no digits reads as 0, so the call is empty and the
// text behind it skipped; the QSO is still stored whole, by the file import and by a sibling's
// text alike, every text field written.
TEST(AdifImport, ALengthWithoutDigitsGivesAnEmptyCallStoredWhole) {
  ImportHarness h;
  const std::string record = "<CALL:>5PA6DX <QSO_DATE:8>20221029 <TIME_ON:6>181433 "
                             "<BAND:3>40M <MODE:3>SSB <RST_SENT:2>nameOPERATOR:5>M0LTE <EOR>\r\n";
  h.ImportText(record);
  const ImportCounters& c = h.import->Counters();
  EXPECT_EQ(c.processed, 1);
  EXPECT_EQ(c.illegals, 0);
  EXPECT_EQ(c.imported, 1);
  h.import->Process(record, h.logView);
  ASSERT_EQ(h.Rows(), 2);
  for (long row = 0; row < 2; ++row) {
    EXPECT_EQ(h.Value(row, f::Call), "");
    EXPECT_EQ(h.Value(row, f::Band), "40M");
    EXPECT_EQ(h.Value(row, f::Mode), "SSB");
    EXPECT_EQ(h.Value(row, f::RST_Sent), "na");  // two characters, the rest skipped to "<"
  }
  db::Recordset rs = h.log.OpenRecordset("QSOs", db::dbOpenDynaset);
  rs.FindFirst("Call Is Null");
  EXPECT_TRUE(rs.NoMatch());
}

TEST(AdifImport, TruncatedCountsFieldsAgainstTheirSizes) {
  ImportHarness h;
  const std::string address(1030, 'a');
  h.ImportText(Qso("20020115", "1230",
                   Tag("NAME", std::string(25, 'n')) + Tag("QTH", std::string(31, 'q')) +
                       Tag("ADDRESS", address)));
  const ImportCounters& c = h.import->Counters();
  EXPECT_EQ(c.truncated, 3);
  EXPECT_EQ(c.imported, 1);
  EXPECT_EQ(h.Value(0, f::Name), std::string(20, 'n'));
  EXPECT_EQ(h.Value(0, f::QTH), std::string(30, 'q'));
  EXPECT_EQ(h.Value(0, f::ADDRESS), std::string(1024, 'a'));
  EXPECT_EQ(h.import->ReportText().find("truncated Name: <CALL:5>K1ABC"), 0u);
}

TEST(AdifImport, DefaultOperatorBandFromFrequencyAndQSLDates) {
  ImportHarness h;
  h.ImportText(Tag("CALL", "k1abc") + Tag("QSO_DATE", "20020115") + Tag("TIME_ON", "1230") +
               Tag("FREQ", "7.025") + Tag("QSLSDATE", "20020301") +
               Tag("QSLRDATE", "19200101") + Tag("QSL_VIA", "w1xx") + "<EOR>" +
               Tag("CALL", "K1ABD") + Tag("QSO_DATE", "20020115") + Tag("TIME_ON", "1230") +
               Tag("OPERATOR", "n0op") + Tag("QSLSDATE", "2002/3/4") + "<EOR>");
  ASSERT_EQ(h.Rows(), 2);
  EXPECT_EQ(h.Value(0, f::Call), "K1ABC");
  EXPECT_EQ(h.Value(0, f::Operator), "W1AW");
  EXPECT_EQ(h.Value(0, f::Band), "40M");
  EXPECT_EQ(h.Value(0, f::QSL_Via), "W1XX");
  EXPECT_EQ(h.Value(0, f::QSLSDATE), "2002-03-01");
  EXPECT_EQ(h.Value(0, f::QSLRDATE), "");
  EXPECT_NE(h.import->ReportText().find("ignored date with year prior to 19301920-01-01: "),
            std::string::npos);
  EXPECT_EQ(h.Value(1, f::Operator), "N0OP");
  EXPECT_EQ(h.Value(1, f::QSLSDATE), "2002-03-04");  // a date with "/" reformatted
  EXPECT_EQ(h.import->Counters().illegals, 0);

  h.import->Settings().defaultCallsign = false;
  h.ImportText(Qso("20030115", "1230"));
  EXPECT_EQ(h.Value(2, f::Operator), "");
}

TEST(AdifImport, LoggerAndMMTTYPackedFields) {
  ImportHarness h;
  h.import->Settings().loggerImport = true;
  h.import->Settings().mmttyImport = true;
  h.ImportText(Qso("20020115", "1230",
                   Tag("NAME", "Jim : Boston, MA") + Tag("COMMENT", "lost") +
                       Tag("RST_SENT", "599012") + Tag("RST_RCVD", "5990034") +
                       Tag("SRX", "77")));
  ASSERT_EQ(h.Rows(), 1);
  EXPECT_EQ(h.Value(0, f::Name), "Jim");
  EXPECT_EQ(h.Value(0, f::Comment), "Boston, MA");
  EXPECT_EQ(h.Value(0, f::RST_Sent), "599");
  EXPECT_EQ(h.Value(0, f::STX), "012");
  // A serial already in the record keeps the report whole, cut only to its field's size.
  EXPECT_EQ(h.Value(0, f::RST_Rcvd), "599");
  EXPECT_EQ(h.Value(0, f::SRX), "77");
  EXPECT_EQ(h.import->Counters().truncated, 1);
}

TEST(AdifImport, ErrFileBehindTheWholeNameReplacedAndRemovedWhenClean) {
  ImportHarness h;
  h.import->Settings().saveImportErrors = true;
  const std::string errPath = h.frame.dir.Join("log.adi.err");
  vellumar::test::WriteFileText(errPath, "old run\r\n");
  h.ImportText("<EOR>" + Qso("20020115", "1230"), "log.adi");
  EXPECT_EQ(vellumar::test::ReadFileText(errPath), "missing callsign: <eor>\r\n");
  h.ImportText(Qso("20020116", "1230"), "log.adi");
  EXPECT_FALSE(std::filesystem::exists(errPath));
}

TEST(AdifImport, ReportBoxLimitIsTestedBeforeAdding) {
  ImportHarness h;
  h.import->Settings().saveImportErrors = true;
  // Each "missing callsign" line of a <NAME:1000> record is 1,036 long with its CR LF: after
  // 62 lines the box holds 64,232 characters, so the 63rd is still added (65,268) and the
  // 64th is the first to find the box full.
  const std::string name(1000, 'x');
  std::string text;
  for (int i = 0; i < 70; ++i) text += Tag("NAME", name) + "<EOR>\r\n";
  h.ImportText(text, "big.adi");
  const std::string& box = h.import->ReportText();
  const std::string line = "missing callsign: " + Tag("NAME", name) + "<eor>\r\n";
  ASSERT_EQ(line.size(), 1036u);
  EXPECT_EQ(box.size(), 63 * line.size() +
                            std::string("error report limit -- no further errors will be "
                                        "reported\r\n").size());
  EXPECT_EQ(h.import->Counters().illegals, 70);
  EXPECT_EQ(h.import->Counters().reports, 70);
  const std::string err = vellumar::test::ReadFileText(h.frame.dir.Join("big.adi.err"));
  EXPECT_EQ(err.size(), 70 * line.size());
}

TEST(AdifImport, UnreadableFileAndDirectory) {
  ImportHarness h;
  EXPECT_EQ(h.ImportPath(h.frame.dir.Join("missing.adi")), ImportOutcome::kUnreadable);
  EXPECT_EQ(h.openError.rfind("Unable to open file " + h.frame.dir.Join("missing.adi") + " - ", 0),
            0u);
  EXPECT_EQ(h.ImportPath(h.frame.dir.path()), ImportOutcome::kUnreadable);
  EXPECT_FALSE(h.import->ImportInProgress());
}

TEST(AdifImport, AbortEndsTheRunWithTheRecordsBeforeItCommitted) {
  struct AbortAfter : ImportView {
    int passes = 0;
    bool Continue() override { return ++passes <= 12; }
  } view;
  ImportHarness h;
  h.import->SetView(&view);
  std::string text;
  for (int i = 0; i < 10; ++i) text += Qso("20020115", "12" + std::to_string(10 + i));
  // Each record is five tags and its <EOR>: twelve passes add two QSOs.
  EXPECT_EQ(h.ImportText(text), ImportOutcome::kAborted);
  EXPECT_EQ(h.import->Counters().imported, 2);
  EXPECT_EQ(h.import->CommittedImports(), 2);
  EXPECT_FALSE(h.log.InTransaction());
  // Another connection sees them: they are in the file.
  db::Database other = db::DBEngine::Workspaces(0).OpenDatabase(h.logPath);
  db::Recordset rs = other.OpenRecordset("QSOs", db::dbOpenDynaset);
  rs.MoveLast();
  EXPECT_EQ(rs.RecordCount(), 2);
}

TEST(AdifImport, LengthPastTheEndRepeatsTheInputErrorUntilAbort) {
  struct AbortAfter : ImportView {
    int passes = 0;
    bool Continue() override { return ++passes <= 9; }
  } view;
  ImportHarness h;
  h.import->SetView(&view);
  EXPECT_EQ(h.ImportText(Qso("20020115", "1230") + "<CALL:40>K1ABC"), ImportOutcome::kAborted);
  EXPECT_EQ(h.import->Counters().imported, 1);
  int inputErrors = 0;
  for (const std::string& line : h.ErrorLogEntries())
    if (line.rfind("Input error reading <CALL:40>K1ABC", 0) == 0) ++inputErrors;
  EXPECT_GE(inputErrors, 2);
}

TEST(AdifImport, BatchesCommitEvery500Rows) {
  ImportHarness h;
  struct Watch : ImportView {
    ImportHarness* h = nullptr;
    long seenCommitted = 0;
    bool Continue() override {
      seenCommitted = std::max(seenCommitted, h->import->CommittedImports());
      return true;
    }
  } view;
  view.h = &h;
  h.import->SetView(&view);
  std::string text;
  for (int i = 0; i < 1200; ++i) {
    text += Tag("CALL", "K" + std::to_string(i)) + Tag("QSO_DATE", "20020115") +
            Tag("TIME_ON", "1230") + "<EOR>\r\n";
  }
  EXPECT_EQ(h.ImportText(text), ImportOutcome::kEndOfFile);
  EXPECT_EQ(h.import->Counters().imported, 1200);
  EXPECT_EQ(h.import->CommittedImports(), 1200);
  EXPECT_GE(view.seenCommitted, 500);  // committed along the way, not only at the end
  EXPECT_EQ(h.Rows(), 1200);
}

TEST(AdifImport, ProcessOfASiblingsTextIsSilent) {
  ImportHarness h;
  h.import->Process(Qso("20020115", "1230") + "<EOR>" + Qso("20020115", "1230"), h.logView);
  EXPECT_EQ(h.Rows(), 2);  // no duplicate check for a sibling's text
  EXPECT_EQ(h.import->Counters().processed, 0);
  EXPECT_EQ(h.import->ReportText(), "");
  EXPECT_FALSE(h.log.InTransaction());
  // No lookup either.
  EXPECT_EQ(h.Value(0, f::DXCCID), "");
}

}  // namespace
}  // namespace vellumar::adif
