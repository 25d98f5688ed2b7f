// Each public ADIF file of the test data imported into a fresh log with the DXCC database the
// build generates, then imported again with duplicates checked. The counts below were worked
// out from the files: every record with a call, a date and a start time is stored; a field
// longer than its column counts once in "truncated"; a DXCC code the database lacks counts
// illegal and the QSO is stored all the same; the second run finds each stored QSO by call,
// frequency, mode and start unless a value was cut on the way in.
#include <gtest/gtest.h>

#include <string>

#include "adif/import_harness.h"
#include "logstore/field_table.h"
#include "platform/vb/convert.h"

namespace vellumar::adif {
namespace {

namespace f = logstore::field;
using test::ImportHarness;

struct Expected {
  long processed, duplicates, truncated, illegals, imported;
};

std::string DataFile(const std::string& name) {
  return std::string(VELLUMAR_SOURCE_DIR) + "/tests/adif/data/" + name;
}

void ExpectCounters(const ImportCounters& c, const Expected& e, const std::string& what) {
  EXPECT_EQ(c.processed, e.processed) << what;
  EXPECT_EQ(c.duplicates, e.duplicates) << what;
  EXPECT_EQ(c.truncated, e.truncated) << what;
  EXPECT_EQ(c.illegals, e.illegals) << what;
  EXPECT_EQ(c.imported, e.imported) << what;
}

// Imports `name` into the harness's log and checks the counters of the run.
void ImportFile(ImportHarness& h, const std::string& name, const Expected& e) {
  ASSERT_EQ(h.ImportPath(DataFile(name)), ImportOutcome::kEndOfFile) << name;
  ExpectCounters(h.import->Counters(), e, name + " (first run)");
}

// The same file once more: `again` QSOs come back because a value of theirs was cut when stored.
void ImportAgain(ImportHarness& h, const std::string& name, long again = 0) {
  const long rows = h.Rows();
  ASSERT_EQ(h.ImportPath(DataFile(name)), ImportOutcome::kEndOfFile) << name;
  const ImportCounters& c = h.import->Counters();
  EXPECT_EQ(c.imported, again) << name << " (second run)";
  EXPECT_EQ(c.duplicates, c.processed - again) << name << " (second run)";
  EXPECT_EQ(h.Rows(), rows + again) << name;
}

double When(const std::string& text) { return *vb::ParseDate(text); }

TEST(AdifSampleImports, AdifSpecificationSample) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  ImportFile(h, "adif_spec_sample_userdef.adi", {2, 0, 0, 0, 2});
  EXPECT_EQ(h.Value(0, f::Call), "VK9NS");
  EXPECT_EQ(h.Value(0, f::Operator), "W1AW");  // no OPERATOR: the default callsign
  EXPECT_EQ(h.Value(0, f::Band), "20M");
  EXPECT_EQ(h.DateValue(0, f::QSO_Begin), When("1990-06-20 15:23"));
  EXPECT_EQ(h.Value(1, f::Call), "ON4UN");
  ImportAgain(h, "adif_spec_sample_userdef.adi");
}

TEST(AdifSampleImports, TestQSOsOfAdif316) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  // 6191 records, all with call, date and time. Cut: 804 STATE values longer than two, 373
  // modes longer than six, 147 contest ids, 18 and 18 reports, 4 powers, one comment, one QSL
  // message, one QSL route. Three records bring DXCC 0 (two /MM calls and Z6ZZF), a code the
  // database has no row for.
  ImportFile(h, "ADIF_316_test_QSOs_2025_08_27.adi", {6191, 0, 1367, 3, 6191});
  EXPECT_EQ(h.Value(0, f::Call), "VE3AAA");
  EXPECT_EQ(h.Value(0, f::Freq), "14.05");
  EXPECT_EQ(h.Value(0, f::Operator), "W1AW");
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "VE");  // looked up: VE3 is Canada
  EXPECT_EQ(h.DateValue(0, f::QSO_Begin), When("2025-06-27 00:00:00"));
  EXPECT_EQ(h.DateValue(0, f::QSO_End), When("2025-06-27 00:04:37"));
  EXPECT_EQ(h.Value(6190, f::Call), "3D2ISQ");
  EXPECT_EQ(h.Value(6190, f::Mode), "OLIVIA");
  db::Recordset dynaset = h.dxcc->GetDXCCDynaset();
  dynaset.FindFirst("CountryCode = 0");
  EXPECT_TRUE(dynaset.NoMatch());
  // The 373 QSOs whose mode was cut don't match their own record any more.
  ImportAgain(h, "ADIF_316_test_QSOs_2025_08_27.adi", 373);
}

TEST(AdifSampleImports, CloudlogExport) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  ImportFile(h, "cloudlog_1.7_export.adi", {34, 0, 0, 0, 34});
  EXPECT_EQ(h.Value(0, f::Call), "EA8TN");
  EXPECT_EQ(h.Value(0, f::DXCCID), "29");
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "EA8");  // the row of code 29
  EXPECT_EQ(h.Value(0, f::Band), "40m");
  EXPECT_EQ(h.Value(0, f::Operator), "W1AW");
  EXPECT_EQ(h.DateValue(0, f::QSO_Begin), When("2022-12-10 03:09:15"));
  EXPECT_EQ(h.Value(33, f::Call), "OK2ZCH");
  ImportAgain(h, "cloudlog_1.7_export.adi");
}

TEST(AdifSampleImports, CqgmaExportWithoutEndOfRecord) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  ImportFile(h, "cqgma_export_broken_tags.adi", {0, 0, 0, 0, 0});
  EXPECT_EQ(h.Rows(), 0);
  ImportAgain(h, "cqgma_export_broken_tags.adi");
}

TEST(AdifSampleImports, CqrlogContestLog) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  ImportFile(h, "cqrlog_2.0.4_naqp_201701.adi", {13, 0, 0, 0, 13});
  EXPECT_EQ(h.Value(0, f::Call), "W6AFA");
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "K");  // code 291
  EXPECT_EQ(h.Value(0, f::CNTY), "CA,Los Angeles");
  EXPECT_EQ(h.Value(12, f::Call), "N3BBQ");
  ImportAgain(h, "cqrlog_2.0.4_naqp_201701.adi");
}

TEST(AdifSampleImports, HeaderlessPotaLog) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  ImportFile(h, "headerless_pota_log.adi", {49, 0, 0, 0, 49});
  EXPECT_EQ(h.Value(0, f::Call), "K9DVP");
  EXPECT_EQ(h.Value(0, f::Operator), "WW4N");
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "K");  // looked up
  EXPECT_EQ(h.DateValue(0, f::QSO_Begin), When("2021-07-04 14:46"));
  EXPECT_EQ(h.Value(48, f::Call), "KZ3L");
  ImportAgain(h, "headerless_pota_log.adi");
}

TEST(AdifSampleImports, Log4omExport) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  // Cut: 10 names, 6 QSL routes, 5 comments, 2 contest ids, one report sent.
  ImportFile(h, "log4om2_k9cts.adi", {122, 0, 24, 0, 122});
  EXPECT_EQ(h.Value(0, f::Call), "KE8LVA");
  EXPECT_EQ(h.Value(0, f::Name), "Aaron M Frazier");
  EXPECT_EQ(h.Value(0, f::Operator), "K9CTS");
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "K");
  ImportAgain(h, "log4om2_k9cts.adi");
}

TEST(AdifSampleImports, Logger32Export) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  ImportFile(h, "logger32_4.0_export.adi", {5, 0, 0, 0, 5});
  EXPECT_EQ(h.Value(0, f::Call), "GD4VBA");
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "GD");  // code 114
  EXPECT_EQ(h.Value(0, f::Operator), "YO2LSP");
  EXPECT_EQ(h.DateValue(0, f::QSO_Begin), When("2023-09-05 18:09:45"));
  ImportAgain(h, "logger32_4.0_export.adi");
}

TEST(AdifSampleImports, LogHX3ExportWithMalformedHeader) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  ImportFile(h, "loghx3_export_malformed_header.adi", {1, 0, 0, 0, 1});
  EXPECT_EQ(h.Value(0, f::Call), "M6VMS");
  EXPECT_EQ(h.Value(0, f::Operator), "M0NOM <");
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "G");  // code 223
  ImportAgain(h, "loghx3_export_malformed_header.adi");
}

TEST(AdifSampleImports, N1mmContestExport) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  ImportFile(h, "n1mm_logger_plus_export.adi", {2, 0, 0, 0, 2});
  EXPECT_EQ(h.Value(0, f::Call), "UA4M");
  EXPECT_EQ(h.Value(0, f::Freq), "7.10400");
  EXPECT_EQ(h.Value(0, f::CONTEST_ID), "CQ-WW-SSB");
  EXPECT_EQ(h.Value(1, f::Call), "PA6DX");
  ImportAgain(h, "n1mm_logger_plus_export.adi");
}

TEST(AdifSampleImports, QLogExport) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  ImportFile(h, "qlog_0.34_export.adi", {1, 0, 0, 0, 1});
  EXPECT_EQ(h.Value(0, f::Call), "LU7HF");
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "LU");  // code 100
  EXPECT_EQ(h.Value(0, f::Operator), "W1AW");
  EXPECT_EQ(h.DateValue(0, f::QSO_Begin), When("2024-05-09 21:35:31"));
  ImportAgain(h, "qlog_0.34_export.adi");
}

TEST(AdifSampleImports, QrzLogbookDownload) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  // Records 172 and 174 are the same QSO with NA1SS (call, frequency, mode and start): the
  // second is a duplicate already in the first run. Cut: 332 QSL routes, 72 names, 57 contest
  // ids, 23 comments, 3 and 2 reports, 2 QTHs.
  ImportFile(h, "qrz_logbook_k9cts.adi", {931, 1, 489, 0, 930});
  EXPECT_EQ(h.Value(0, f::Call), "KG9IV");
  EXPECT_EQ(h.Value(0, f::DXCCPrefix), "K");
  EXPECT_EQ(h.Value(0, f::Operator), "W1AW");
  EXPECT_EQ(h.Value(138, f::QTH), "Montr\xC3\xA9" "al");
  ImportAgain(h, "qrz_logbook_k9cts.adi");
}

TEST(AdifSampleImports, WsjtxLog) {
  ImportHarness h{ImportHarness::BuiltDXCC{}};
  // Cut: 324 powers longer than four characters ("100% EFLW" and the like).
  ImportFile(h, "wsjtx_2.6.1_log_kk7knb.adi", {528, 0, 324, 0, 528});
  EXPECT_EQ(h.Value(0, f::Call), "KG4LKY");
  EXPECT_EQ(h.Value(0, f::Operator), "STEVE");
  EXPECT_EQ(h.Value(0, f::TX_Power), "50W");
  EXPECT_EQ(h.Value(527, f::Call), "AB5EO/6");
  EXPECT_EQ(h.Value(527, f::TX_Power), "100%");
  ImportAgain(h, "wsjtx_2.6.1_log_kk7knb.adi");
}

}  // namespace
}  // namespace vellumar::adif
