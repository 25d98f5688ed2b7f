#pragma once
// The parser in a frame of its own, a consumer that records every <eor>, and the loops by which
// the file import and the sibling programs' `log` command drive the parser.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "adif/adif_parser.h"
#include "adif/line_source.h"
#include "support/frame_harness.h"

namespace vellumar::adif::test {

// What an <eor> handed over: the fields imported, the special values present, the echo.
struct Record {
  std::array<std::string, logstore::kQSOFieldCount> fields;
  std::array<bool, logstore::kQSOFieldCount> imported{};
  ImportedValue date, timeOn, timeOff, qslSent, qslRcvd;
  std::string echo;
  bool fromFile = false;

  // The field's value if it was imported, else "<missing>".
  std::string Field(int index) const {
    return imported[static_cast<size_t>(index)] ? fields[static_cast<size_t>(index)]
                                                : "<missing>";
  }
};

class RecordingConsumer : public RecordConsumer {
 public:
  void ImportRecord(AdifParser& parser, bool fromFile, bool checkDuplicates,
                    bool lookupMissing) override {
    EXPECT_EQ(checkDuplicates, fromFile);
    EXPECT_EQ(lookupMissing, fromFile);
    Record r;
    for (int i = 0; i < logstore::kQSOFieldCount; ++i) {
      r.imported[static_cast<size_t>(i)] = parser.FieldImported(i);
      r.fields[static_cast<size_t>(i)] = parser.ImportedFields(i);
    }
    r.date = parser.ImportedDate();
    r.timeOn = parser.ImportedTimeOn();
    r.timeOff = parser.ImportedTimeOff();
    r.qslSent = parser.ImportedQSLSent();
    r.qslRcvd = parser.ImportedQSLRcvd();
    r.echo = parser.CurrentRecordText();
    r.fromFile = fromFile;
    records.push_back(std::move(r));
  }
  std::vector<Record> records;
};

struct ParserHarness {
  ParserHarness() { frame.common.Initialize(); }

  // The `log` command's loop: the whole text in the buffer, one tag per call until it is used.
  void ParseText(const std::string& text) {
    parser.SetImportBuffer(text);
    parser.ClearRecord();
    while (!parser.ImportBufferEmpty()) parser.ParseADIF(consumer, false, false, false);
  }

  // The file import's loop: the header, then per pass a line read when the buffer is empty and
  // one tag. `maxPasses` stands for the operator's Abort, since a value declared past the end
  // of the file repeats its pass forever. Returns the passes made.
  int ParseSource(LineSource& source, int maxPasses = 1000000) {
    parser.SetInput(&source);
    header = parser.GetHeader();
    parser.ClearRecord();
    int passes = 0;
    std::string line;
    while (passes < maxPasses) {
      if (parser.ImportBufferEmpty()) {
        if (!source.ReadLine(line)) break;
        parser.SetImportBuffer(line);
      }
      parser.ParseADIF(consumer, true, true, true);
      ++passes;
    }
    parser.SetInput(nullptr);
    return passes;
  }

  int ParseBytes(const std::string& bytes, int maxPasses = 1000000) {
    MemoryLineSource source(bytes);
    return ParseSource(source, maxPasses);
  }

  // Lines written to the error log after its six-line banner.
  std::vector<std::string> ErrorLogEntries() const {
    std::vector<std::string> lines;
    const std::string text = vellumar::test::ReadFileText(frame.ErrorLogPath());
    size_t start = 0;
    while (start < text.size()) {
      size_t end = text.find('\n', start);
      if (end == std::string::npos) end = text.size();
      std::string line = text.substr(start, end - start);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      // Drop the date: "dd-mmm-yyyy hh:nn:ss > ".
      const size_t mark = line.find(" > ");
      lines.push_back(mark == std::string::npos ? line : line.substr(mark + 3));
      start = end + 1;
    }
    if (lines.size() >= 6) lines.erase(lines.begin(), lines.begin() + 6);
    return lines;
  }

  vellumar::test::FrameHarness frame;
  AdifParser parser{frame.common.errorLog()};
  RecordingConsumer consumer;
  std::string header;
};

}  // namespace vellumar::adif::test
