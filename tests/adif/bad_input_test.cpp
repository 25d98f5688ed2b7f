// Inputs that must neither crash nor hang nor grow without bound: empty and binary files,
// broken tags, records cut by the end of the file, absurd lengths, paths that aren't files.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <random>

#include "adif/adif_harness.h"
#include "platform/vb/error.h"

namespace vellumar::adif {
namespace {

namespace f = logstore::field;
using test::ParserHarness;

std::string Repeat(const std::string& text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

TEST(AdifBadInput, EmptyFileHasNoHeaderAndNoRecords) {
  ParserHarness h;
  EXPECT_EQ(h.ParseBytes(""), 0);
  EXPECT_EQ(h.header, "");
  EXPECT_TRUE(h.consumer.records.empty());
  EXPECT_TRUE(h.ErrorLogEntries().empty());
}

TEST(AdifBadInput, BinaryGarbageEndsWithoutCrash) {
  std::mt19937 random(20240315);
  std::string bytes;
  for (int i = 0; i < 200000; ++i) bytes.push_back(static_cast<char>(random() & 0xff));
  ParserHarness h;
  // Any length declared past the end repeats its pass, as for the operator until Abort.
  h.ParseBytes(bytes, 20000);
  EXPECT_LE(h.parser.CurrentRecordText().size(), AdifParser::kEchoLimit);
  EXPECT_LE(h.header.size(), AdifParser::kEchoLimit);
}

TEST(AdifBadInput, TagNeverClosedIsDropped) {
  ParserHarness h;
  h.ParseBytes("<CALL:4>W1AW <NAME:3\r\n<QSO_DATE:8>20020115 <EOR>\r\n");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Call), "W1AW");
  EXPECT_FALSE(h.consumer.records[0].imported[f::Name]);
  EXPECT_TRUE(h.consumer.records[0].date.present);
}

TEST(AdifBadInput, RecordCutByTheEndOfTheFileIsNeverImported) {
  ParserHarness h;
  // The date's value runs past the end: its pass repeats until the operator's Abort.
  EXPECT_EQ(h.ParseBytes("<CALL:4>W1AW<EOR>\r\n<CALL:4>K1AB <QSO_DATE:8>2002", 10), 10);
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Call), "W1AW");
  // Each failing pass had echoed the tag before it read on.
  EXPECT_EQ(h.parser.CurrentRecordText(), "<CALL:4>K1AB" + Repeat("<QSO_DATE:8>", 7));
  // Passes: W1AW, <EOR>, K1AB, then seven failures of two lines each.
  EXPECT_EQ(h.ErrorLogEntries().size(), 14u);
}

TEST(AdifBadInput, ValuePastTheEndRepeatsItsErrorOnEveryPassLeavingTheBufferAlone) {
  ParserHarness h;
  const int passes = h.ParseBytes("<CALL:4>W1AW <NAME:10>Jim", 5);
  EXPECT_EQ(passes, 5);
  EXPECT_EQ(h.parser.ImportBuffer(), " <NAME:10>Jim");
  const std::vector<std::string> log = h.ErrorLogEntries();
  // The first pass took the call; each of the four others failed on the name.
  ASSERT_EQ(log.size(), 8u);
  for (size_t i = 0; i < log.size(); i += 2) {
    EXPECT_EQ(log[i], "Input error reading  <NAME:10>Jim");
    EXPECT_EQ(log[i + 1], "program error 62 in module ParseADIF: Input past end of file");
  }
  EXPECT_FALSE(h.parser.FieldImported(f::Name));
}

TEST(AdifBadInput, HugeLengthIsZero) {
  ParserHarness h;
  h.ParseBytes("<CALL:2000000000>W1AW<NAME:3>Ann<EOR>\r\n");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Call), "");
  EXPECT_EQ(h.consumer.records[0].Field(f::Name), "Ann");
  EXPECT_TRUE(h.ErrorLogEntries().empty());
}

TEST(AdifBadInput, LengthAbove16BitsIsZero) {
  ParserHarness h;
  h.ParseText("<CALL:40000>W1AW<EOR>");
  ASSERT_EQ(h.consumer.records.size(), 1u);
  EXPECT_EQ(h.consumer.records[0].Field(f::Call), "");
}

TEST(AdifBadInput, NegativeLengthGivesAnEmptyValue) {
  ParserHarness file, text;
  file.ParseBytes("<CALL:-3>W1AW<NAME:3>Ann<EOR>\r\n");
  text.ParseText("<CALL:-3>W1AW<NAME:3>Ann<EOR>");
  for (ParserHarness* h : {&file, &text}) {
    ASSERT_EQ(h->consumer.records.size(), 1u);
    EXPECT_EQ(h->consumer.records[0].Field(f::Call), "");
    EXPECT_EQ(h->consumer.records[0].Field(f::Name), "Ann");
  }
}

TEST(AdifBadInput, DirectoryIsRefusedAsInput) {
  ParserHarness h;
  FileLineSource source;
  EXPECT_FALSE(source.Open(h.frame.dir.path()));
  EXPECT_EQ(source.OpenError(), vb::kPathFileAccessError);
  EXPECT_FALSE(source.OpenErrorDescription().empty());
  // Driving the parser from it anyway reads nothing.
  EXPECT_EQ(h.ParseSource(source), 0);
  EXPECT_TRUE(h.consumer.records.empty());
}

TEST(AdifBadInput, MissingFileIsRefusedAsInput) {
  ParserHarness h;
  FileLineSource source;
  EXPECT_FALSE(source.Open(h.frame.dir.Join("absent.adi")));
  EXPECT_EQ(source.OpenError(), vb::kFileNotFound);
}

TEST(AdifBadInput, UnreadableFileIsRefusedAsInput) {
  ParserHarness h;
  const std::string path = h.frame.dir.Join("locked.adi");
  ASSERT_TRUE(vellumar::test::WriteFileText(path, "<CALL:4>W1AW<EOR>\r\n"));
  ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  FileLineSource source;
  // The superuser reads any file; anyone else is refused.
  if (::geteuid() == 0) {
    EXPECT_TRUE(source.Open(path));
  } else {
    EXPECT_FALSE(source.Open(path));
    EXPECT_EQ(source.OpenError(), vb::kPathFileAccessError);
  }
}

// A line source that measures the parser's buffer every time the parser asks for a line.
class MeasuringSource : public LineSource {
 public:
  MeasuringSource(MemoryLineSource& inner, const AdifParser& parser)
      : inner_(inner), parser_(parser) {}
  bool ReadLine(std::string& line) override {
    largest = std::max(largest, parser_.ImportBuffer().size());
    return inner_.ReadLine(line);
  }
  int ReadError() const override { return inner_.ReadError(); }
  TextEncoding Encoding() const override { return inner_.Encoding(); }
  size_t largest = 0;

 private:
  MemoryLineSource& inner_;
  const AdifParser& parser_;
};

TEST(AdifBadInput, BufferStaysWithinALinePlusTheLongestValue) {
  std::string bytes;
  for (int i = 0; i < 20; ++i) {
    bytes += "<COMMENT:32767>";
    for (int line = 0; line < 5000; ++line) bytes += "0123456789\r\n";
    bytes += "<EOR>\r\n";
  }
  ParserHarness h;
  MemoryLineSource inner(bytes);
  MeasuringSource source(inner, h.parser);
  h.ParseSource(source);
  ASSERT_EQ(h.consumer.records.size(), 20u);
  EXPECT_EQ(h.consumer.records[0].fields[f::Comment].size(), 32767u);
  EXPECT_LE(source.largest, 32767u + 12u + 15u);
}

TEST(AdifBadInput, HeaderOfAFileWithoutEohStaysBounded) {
  std::string bytes;
  for (int i = 0; i < 50000; ++i) bytes += "a line of text that never ends the header\r\n";
  ParserHarness h;
  h.ParseBytes(bytes);
  EXPECT_TRUE(h.consumer.records.empty());
  EXPECT_LE(h.header.size(), AdifParser::kEchoLimit);
  EXPECT_GT(h.header.size(), AdifParser::kEchoLimit - 100);
  EXPECT_EQ(h.header.rfind("a line of text that never ends the header\r\na line", 0), 0u);
  EXPECT_TRUE(h.parser.ImportBufferEmpty());
}

TEST(AdifBadInput, EchoOfAFileWithoutEorStaysBounded) {
  std::string bytes;
  for (int i = 0; i < 100000; ++i) bytes += "<CALL:4>W1AW <NOTES:5>hello\r\n";
  ParserHarness h;
  h.ParseBytes(bytes);
  EXPECT_TRUE(h.consumer.records.empty());
  EXPECT_LE(h.parser.CurrentRecordText().size(), AdifParser::kEchoLimit);
  EXPECT_GT(h.parser.CurrentRecordText().size(), AdifParser::kEchoLimit - 100);
  EXPECT_EQ(h.parser.ImportedFields(f::Call), "W1AW");
}

}  // namespace
}  // namespace vellumar::adif
