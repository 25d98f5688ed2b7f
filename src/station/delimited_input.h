#pragma once
// Reading of comma-delimited text files the way the runtime's "Input #" statement reads them:
// a field is a quoted string (the quotes removed, anything up to the next delimiter after the
// closing quote dropped) or plain text up to the next comma or line end, trimmed of blanks; a
// line end ends a record. Failures raise VbError with the runtime's numbers: 62 when the file
// ends in the middle of a record, 13 when a number field holds no number.
#include <istream>
#include <string>

namespace vellumar {

class DelimitedInput {
 public:
  explicit DelimitedInput(std::istream& in) : in_(in) {}

  // True at the end of the file; blank lines before it are passed over.
  bool AtEnd();
  // Reads the next field of the current record as text / as a number. A record's first field
  // starts on a new line; asking for a field after the line has ended raises 62 at the end of
  // the file and 13 otherwise.
  std::string ReadString();
  double ReadNumber();
  // Ends the current record: anything left on its line is an error (13).
  void EndRecord();
  int Line() const { return line_; }  // 1-based line of the current record

 private:
  bool ReadRawField(std::string& field, bool& quoted);
  std::istream& in_;
  std::string current_;  // the current line
  size_t pos_ = 0;       // next character of current_
  bool inRecord_ = false;
  bool lineEnded_ = false;  // the current line has no fields left
  int line_ = 0;
};

}  // namespace vellumar
