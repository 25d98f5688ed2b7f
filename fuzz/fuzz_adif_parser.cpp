// The ADIF tokeniser on any bytes, through both of its callers: the sibling programs' `log`
// command, which hands it one text, and the file import, which reads lines from the input. A
// bounded number of passes stands for the operator's Abort, since a value declared past the
// end of the file repeats its pass for ever. Whatever the bytes, every value it hands over is
// well-formed UTF-8, every call of the `log` loop consumes something, and the echo stays
// within its bound.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "adif/adif_parser.h"
#include "adif/line_source.h"
#include "adif/text_encoding.h"
#include "frame/error_log.h"
#include "platform/services/clock.h"

namespace {

using namespace vellumar;

void Fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

bool ValidUtf8(std::string_view text) {
  adif::Utf8Validator validator;
  validator.Feed(text);
  return validator.Valid();
}

// Checks each record as the import would read it.
class CheckingConsumer : public adif::RecordConsumer {
 public:
  explicit CheckingConsumer(bool utf8) : utf8_(utf8) {}
  void ImportRecord(adif::AdifParser& parser, bool, bool, bool) override {
    for (int i = 0; i < logstore::kQSOFieldCount; ++i) {
      const bool missing = parser.ImportedFieldMissing(i);
      if (missing != (!parser.FieldImported(i) || parser.ImportedFields(i).empty()))
        Fail("ImportedFieldMissing disagrees with the field's mark and value");
      if (utf8_ && parser.FieldImported(i) && !ValidUtf8(parser.ImportedFields(i)))
        Fail("a value is not well-formed UTF-8");
    }
    for (const adif::ImportedValue* v :
         {&parser.ImportedDate(), &parser.ImportedTimeOn(), &parser.ImportedTimeOff(),
          &parser.ImportedQSLSent(), &parser.ImportedQSLRcvd()}) {
      if (v->present && v->value.empty()) Fail("an empty special value counts as present");
      if (utf8_ && v->present && !ValidUtf8(v->value)) Fail("a special value is not UTF-8");
    }
    if (parser.CurrentRecordText().size() > adif::AdifParser::kEchoLimit)
      Fail("the echo outgrew its bound");
  }

 private:
  bool utf8_;  // the text came in as well-formed UTF-8
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  ui::VirtualClock clock;
  ErrorLog log(clock, nullptr);  // no pathname: entries are formatted and dropped

  {  // The `log` command: one text, never read further.
    CheckingConsumer consumer(ValidUtf8(bytes));
    adif::AdifParser parser(log);
    parser.SetImportBuffer(bytes);
    parser.ClearRecord();
    while (!parser.ImportBufferEmpty()) {
      const std::size_t before = parser.ImportBuffer().size();
      parser.ParseADIF(consumer, false, false, false);
      if (parser.ImportBuffer().size() >= before) Fail("a pass of the log command took nothing");
    }
  }

  {  // The file import over the same bytes held as a file.
    CheckingConsumer consumer(true);
    adif::AdifParser parser(log);
    adif::MemoryLineSource source(bytes);
    parser.SetInput(&source);
    const std::string header = parser.GetHeader();
    if (header.size() > adif::AdifParser::kEchoLimit) Fail("the header outgrew its bound");
    if (!ValidUtf8(header)) Fail("the header is not UTF-8");
    parser.ClearRecord();
    std::string line;
    // The operator presses Abort once the same pass has failed three times running; the
    // bound on passes is a second guard against a loop that never ends.
    const std::size_t maxPasses = 4 * size + 16;
    int unchanged = 0;
    for (std::size_t pass = 0; pass < maxPasses && unchanged < 3; ++pass) {
      if (parser.ImportBufferEmpty()) {
        if (!source.ReadLine(line)) break;
        parser.SetImportBuffer(line);
      }
      const std::string before = parser.ImportBuffer();
      parser.ParseADIF(consumer, true, true, true);
      unchanged = parser.ImportBuffer() == before ? unchanged + 1 : 0;
    }
    if (unchanged < 3 && !parser.ImportBufferEmpty()) Fail("the file import did not end");
    if (parser.CurrentRecordText().size() > adif::AdifParser::kEchoLimit)
      Fail("the echo outgrew its bound");
  }
  return 0;
}
