#pragma once
// The ADIF tokeniser: turns a stream of ADIF text into one QSO at a time. It serves the file
// import, which feeds it line by line and lets it read further lines itself, and the sibling
// programs' `log` command, which hands it one complete text. A record may span any number of
// calls: the state between them is wholly in this object.
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "adif/line_source.h"
#include "adif/text_encoding.h"
#include "frame/error_log.h"
#include "logstore/field_table.h"

namespace vellumar::adif {

class AdifParser;

// What an <eor> hands its record to: the import. It reads the values from the parser; the
// parser clears them once it returns.
class RecordConsumer {
 public:
  virtual ~RecordConsumer() = default;
  virtual void ImportRecord(AdifParser& parser, bool fromFile, bool checkDuplicates,
                            bool lookupMissing) = 0;
};

// One of the values the import converts before storing; it counts only when present.
struct ImportedValue {
  std::string value;
  bool present = false;
};

class AdifParser {
 public:
  // Failures are written to and reported in `errorLog`.
  explicit AdifParser(ErrorLog& errorLog);

  // The input the parser reads further lines from (the import's open file); null for none.
  void SetInput(LineSource* input) { input_ = input; }
  LineSource* Input() const { return input_; }

  // Reads the file's header from the input and leaves the text after it in ImportBuffer. A
  // file whose first line begins with "<" has none, and is parsed from that tag on.
  std::string GetHeader();

  // Consumes one tag from ImportBuffer; an <eor> hands the record to `consumer` with the three
  // flags. With `fromFile` a value declared longer than the buffer reads further lines of the
  // input, and lengths count as the input's encoding says; without it the buffer is all there
  // is, and lengths count its UTF-8 bytes.
  void ParseADIF(RecordConsumer& consumer, bool fromFile, bool checkDuplicates,
                 bool lookupMissing);

  // Stores the value of field `index` and marks it imported; outside 0..34 raises 9.
  void ImportField(int index, const std::string& value);
  // Clears the marks of the 35 fields and of the five special values, and the echo. The
  // values themselves stay behind: nothing may read one without its mark.
  void ClearRecord();
  // True unless field `index` was imported with at least one character; outside 0..34 raises 9.
  bool ImportedFieldMissing(int index) const;

  // Value of field `index` as last stored (stale unless FieldImported); outside 0..34 raises 9.
  const std::string& ImportedFields(int index) const;
  bool FieldImported(int index) const;
  const ImportedValue& ImportedDate() const { return date_; }
  const ImportedValue& ImportedTimeOn() const { return timeOn_; }
  const ImportedValue& ImportedTimeOff() const { return timeOff_; }
  const ImportedValue& ImportedQSLSent() const { return qslSent_; }
  const ImportedValue& ImportedQSLRcvd() const { return qslRcvd_; }
  // The record as parsed so far, for the import's reports. It stops growing at kEchoLimit
  // bytes, so that a file without any <eor> isn't held whole in memory.
  const std::string& CurrentRecordText() const { return echo_; }

  // The input not yet consumed.
  std::string ImportBuffer() const { return buffer_.substr(consumed_); }
  bool ImportBufferEmpty() const { return consumed_ >= buffer_.size(); }
  void SetImportBuffer(std::string text);

  // The longest echo and header text kept, in bytes.
  static constexpr std::size_t kEchoLimit = 65536;

 private:
  std::string_view Rest() const { return std::string_view(buffer_).substr(consumed_); }
  void EmptyBuffer();
  void AppendEcho(std::string_view text);
  // Reads lines of the input until `length` units follow `offset` of the unconsumed buffer.
  // False when a read failed; the failure is then logged and reported.
  bool ReadValueLines(std::size_t offset, int length, TextEncoding unit);
  void Store(std::string_view lowerName, const std::string& value);
  ImportedValue& SpecialSlot(int special);
  static void CheckIndex(int index);

  ErrorLog& errorLog_;
  LineSource* input_ = nullptr;  // "file number 1"
  std::string buffer_;           // ImportBuffer from consumed_ on
  std::size_t consumed_ = 0;     // bytes of buffer_ already taken
  std::array<std::string, logstore::kQSOFieldCount> fields_{};  // ImportedFields
  std::array<bool, logstore::kQSOFieldCount> imported_{};       // FieldImported
  ImportedValue date_, timeOn_, timeOff_, qslSent_, qslRcvd_;
  std::string echo_;  // CurrentRecordText
};

// The declared length of a value as a 16-bit integer; 0 for text that isn't a number or lies
// outside -32768..32767.
int DeclaredLength(std::string_view text);

// How a declared length measures the text after a tag: UTF-8 input counts bytes, Windows-1252
// input characters. The units at the start of `text`, counted no further than `limit`.
std::size_t CountUnits(std::string_view text, std::size_t limit, TextEncoding unit);
// The bytes of the value of `length` units at the start of `text` (which holds at least that
// many), extended to the end of a character a byte count would cut.
std::size_t ValueBytes(std::string_view text, std::size_t length, TextEncoding unit);

}  // namespace vellumar::adif
