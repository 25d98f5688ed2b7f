// The export of the log's QSOs, and the round trip back through the import.
#include <gtest/gtest.h>

#include <string>

#include "adif/import_harness.h"
#include "frame/common.h"
#include "platform/vb/convert.h"
#include "support/temp_dir.h"

namespace vellumar::adif {
namespace {

namespace f = logstore::field;
using test::ImportHarness;

// Adds one QSO of K1ABC with the values given (field number, text), starting 2002-01-15 12:30:45.
void AddQso(ImportHarness& h, const std::vector<std::pair<int, std::string>>& values) {
  db::Recordset rs = h.log.OpenRecordset("QSOs", db::dbOpenDynaset);
  rs.AddNew();
  for (int i = 0; i < logstore::kQSOFieldCount; ++i)
    if (i != f::QSO_Begin && i != f::QSO_End) rs.Fields(i).SetValue(vb::Variant(std::string()));
  rs.Fields(f::Call).SetValue(vb::Variant(std::string("K1ABC")));
  rs.Fields(f::QSO_Begin).SetValue(vb::Variant::FromDate(vb::CDate("2002-01-15 12:30:45")));
  rs.Fields(f::QSO_End).SetValue(vb::Variant::FromDate(vb::CDate("2002-01-15 12:40:00")));
  for (const auto& [index, value] : values) rs.Fields(index).SetValue(vb::Variant(value));
  rs.Update();
  h.logView.Requery();
}

struct Answers : ExportView {
  bool clear = true;
  int abortAfter = -1;
  int passes = 0;
  std::string asked;
  bool ClearExistingFile(const std::string& prompt) override {
    asked = prompt;
    return clear;
  }
  bool Continue() override { return abortAfter < 0 || passes++ < abortAfter; }
};

// The QSO lines of an exported file (the header's four lines left out).
std::string Export(ImportHarness& h, ExportOptions options = {}, const std::string& name = "out.adi") {
  AdifExport exporter(h.frame.common.errorLog(), options);
  Answers answers;
  const std::string path = h.frame.dir.Join(name);
  EXPECT_EQ(exporter.ExportFile(path, h.logView, vb::CDate("2024-03-15 08:30:00"), answers),
            ExportOutcome::kFinished);
  const std::string text = vellumar::test::ReadFileText(path);
  std::size_t at = 0;
  for (int i = 0; i < 4; ++i) at = text.find("\r\n", at) + 2;
  return text.substr(at);
}

TEST(AdifExport, HeaderAndTagsInTheirOrderWithTheColumnsCase) {
  ImportHarness h;
  AddQso(h, {{f::Band, "20M"}, {f::Call, "k1abc"}, {f::DXCCPrefix, "k"}, {f::DXCCID, "291"},
             {f::Freq, "14.19500"}, {f::Mode, "SSB"}, {f::Operator, "w1aw"},
             {f::TX_Power, "100"}, {f::Comment, "nice"}, {f::QSLSDATE, "2002-03-01"},
             {f::PROVINCE, "ON"}, {f::BROKEN, "Y"}, {f::MYQTHID, "1"}});
  AdifExport exporter(h.frame.common.errorLog(), {});
  Answers answers;
  const std::string path = h.frame.dir.Join("out.adi");
  ASSERT_EQ(exporter.ExportFile(path, h.logView, vb::CDate("2024-03-15 08:30:00"), answers),
            ExportOutcome::kFinished);
  EXPECT_EQ(vellumar::test::ReadFileText(path),
            "ADIF file\r\ncreated by Vellumar " + Common::Version() +
                " on 15-Mar-2024 08:30:00 UTC\r\n<ProgramID:8>Vellumar\r\n<EOH>\r\n"
                "<Band:3>20M <Call:5>K1ABC <DXCCPrefix:1>K <DXCC:3>291 <Freq:8>14.19500 "
                "<Mode:3>SSB <Operator:4>W1AW <QSO_DATE:8>20020115 <TIME_OFF:6>124000 "
                "<TIME_ON:6>123045 <TX_Power:3>100 <QSLSDATE:8>20020301 <Comment:5>nice  "
                "<EOR>\r\n");
  EXPECT_EQ(exporter.Count(), 1);
}

TEST(AdifExport, AngleBracketsAreRemovedAndALoneOneLeavesNoTag) {
  ImportHarness h;
  AddQso(h, {{f::Name, "<Jim<"}, {f::QTH, "<"}});
  const std::string line = Export(h);
  EXPECT_NE(line.find("<Name:3>Jim "), std::string::npos);
  EXPECT_EQ(line.find("<QTH"), std::string::npos);
  EXPECT_EQ(line.find("<QSLSDATE"), std::string::npos);  // empty: no tag
}

TEST(AdifExport, NotesAppendedAndTheCommentsTrailingBlankStays) {
  ImportHarness h;
  AddQso(h, {{f::Comment, "nice"}});
  AddQso(h, {});
  ExportOptions options;
  options.qsoNotes = "from log";
  const std::string lines = Export(h, options);
  EXPECT_NE(lines.find("<Comment:13>nice from log "), std::string::npos);
  EXPECT_NE(lines.find("<Comment:8>from log "), std::string::npos);
  EXPECT_NE(Export(h, {}, "b.adi").find("<Comment:5>nice "), std::string::npos);
}

TEST(AdifExport, DXBaseFrequencies) {
  EXPECT_EQ(DXBaseFreqFormat(14.19512), "14.195.12");
  EXPECT_EQ(DXBaseFreqFormat(14.0255), "14.025.5");
  EXPECT_EQ(DXBaseFreqFormat(14.195), "14.195");
  EXPECT_EQ(DXBaseFreqFormat(14), "14.");
  ImportHarness h;
  AddQso(h, {{f::Freq, "14.19500"}});
  AddQso(h, {{f::Freq, ""}});
  ExportOptions dxbase;
  dxbase.dxBaseFrequencies = true;
  const std::string lines = Export(h, dxbase);
  EXPECT_NE(lines.find("<Freq:6>14.195 "), std::string::npos);
  // The QSO without a frequency fails alone: one line written, the error logged.
  EXPECT_EQ(lines.find("<EOR>\r\n") + 7, lines.size());
  const auto log = h.ErrorLogEntries();
  ASSERT_EQ(log.size(), 1u);
  EXPECT_NE(log[0].find("ADIF.ExportQSO:"), std::string::npos) << log[0];
  EXPECT_NE(Export(h, {}, "std.adi").find("<Freq:8>14.19500 "), std::string::npos);
}

TEST(AdifExport, NoAppendsWithoutHeaderAndAbortAfterTheFirstRecord) {
  ImportHarness h;
  AddQso(h, {});
  AddQso(h, {{f::Call, "K2ABC"}});
  const std::string path = h.frame.dir.Join("other.adi");
  vellumar::test::WriteFileText(path, "<call:4>G4XX<eor>");
  AdifExport exporter(h.frame.common.errorLog(), {});
  Answers no;
  no.clear = false;
  no.abortAfter = 1;
  EXPECT_EQ(exporter.ExportFile(path, h.logView, 0, no), ExportOutcome::kAborted);
  EXPECT_EQ(no.asked,
            path + " already exists; should its current contents be cleared before exporting?");
  EXPECT_EQ(exporter.Count(), 1);
  const std::string text = vellumar::test::ReadFileText(path);
  EXPECT_EQ(text.rfind("<call:4>G4XX<eor><Call:5>K1ABC ", 0), 0u);
  EXPECT_EQ(text.find("K2ABC"), std::string::npos);
}

TEST(AdifExport, NoRecordsToExport) {
  ImportHarness h;
  AdifExport exporter(h.frame.common.errorLog(), {});
  Answers answers;
  EXPECT_EQ(exporter.ExportFile(h.frame.dir.Join("x.adi"), h.logView, 0, answers),
            ExportOutcome::kNoRecords);
}

TEST(AdifRoundTrip, EveryMappedFieldComesBackButForTheKnownDifferences) {
  ImportHarness h;
  const std::string address = std::string(500, 'a') + "\r\n" + std::string(522, 'b');
  AddQso(h, {{f::Band, "20M"}, {f::DXCCPrefix, "dl"}, {f::DXCCID, "230"},
             {f::Freq, "14.19512"}, {f::Mode, "SSB"}, {f::Name, "O'Brien \"Jim\""},
             {f::Operator, "w1aw"}, {f::QSL_Rcvd, "Y"}, {f::QSL_Sent, "R"},
             {f::QSL_Via, "dl1xx"}, {f::Comment, "a<b"}, {f::QTH, "Berlin"},
             {f::RST_Rcvd, "57"}, {f::RST_Sent, "59"}, {f::State, "MA"},
             {f::QSLSDATE, "1930-01-02"}, {f::QSLRDATE, ""}, {f::TX_Power, "100"},
             {f::QSLMsg, "tnx"}, {f::CONT, "EU"}, {f::ITUZ, "28"}, {f::CQZ, "14"},
             {f::IOTA, "EU-001"}, {f::CNTY, "Essex"}, {f::CONTEST_ID, "CQWW"},
             {f::GRIDSQUARE, "JO62"}, {f::SRX, "12"}, {f::STX, "34"}, {f::PROVINCE, "ON"},
             {f::BROKEN, "Y"}, {f::MYQTHID, "1"}, {f::ADDRESS, address}});
  ExportOptions dxbase;
  dxbase.dxBaseFrequencies = true;
  const std::string path = h.frame.dir.Join("trip.adi");
  AdifExport exporter(h.frame.common.errorLog(), dxbase);
  Answers answers;
  ASSERT_EQ(exporter.ExportFile(path, h.logView, 0, answers), ExportOutcome::kFinished);

  ImportHarness back;
  back.import->Settings().myCallsign = "W9ZZ";
  ASSERT_EQ(back.ImportPath(path), ImportOutcome::kEndOfFile);
  EXPECT_EQ(back.import->Counters().imported, 1);
  EXPECT_EQ(back.import->Counters().illegals, 0);
  EXPECT_EQ(back.import->Counters().truncated, 0);
  for (int i = 0; i < logstore::kQSOFieldCount; ++i) {
    const std::string was = h.Value(0, i), is = back.Value(0, i);
    switch (i) {
      case f::DXCCPrefix: EXPECT_EQ(is, "DL"); break;      // upper-cased when written
      case f::Operator: EXPECT_EQ(is, "W1AW"); break;
      case f::QSL_Via: EXPECT_EQ(is, "DL1XX"); break;      // upper-cased when read
      case f::Comment: EXPECT_EQ(is, "ab "); break;        // "<" lost, the blank behind
      case f::Freq: EXPECT_EQ(is, "14.19512"); break;      // DXBase form read back
      case f::QSLSDATE: EXPECT_EQ(is, "1930-01-02"); break;
      case f::PROVINCE: case f::BROKEN: case f::MYQTHID: EXPECT_EQ(is, "") << i; break;
      default: EXPECT_EQ(is, was) << "field " << i;
    }
  }
}

TEST(AdifRoundTrip, DefaultOperatorFillsAnEmptyOne) {
  ImportHarness h;
  AddQso(h, {{f::Operator, ""}, {f::Freq, "14.195"}});
  const std::string path = h.frame.dir.Join("op.adi");
  AdifExport exporter(h.frame.common.errorLog(), {});
  Answers answers;
  ASSERT_EQ(exporter.ExportFile(path, h.logView, 0, answers), ExportOutcome::kFinished);
  ImportHarness back;
  back.ImportPath(path);
  EXPECT_EQ(back.Value(0, f::Operator), "W1AW");
  EXPECT_EQ(back.Value(0, f::Band), "20M");  // from the frequency
}

}  // namespace
}  // namespace vellumar::adif
