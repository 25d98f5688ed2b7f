#include "station/delimited_input.h"

#include <cstdlib>

#include "platform/vb/error.h"

namespace vellumar {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string Trim(const std::string& s) {
  size_t b = 0, e = s.size();
  while (b < e && IsBlank(s[b])) ++b;
  while (e > b && IsBlank(s[e - 1])) --e;
  return s.substr(b, e - b);
}

bool IsBlankLine(const std::string& s) { return Trim(s).empty(); }

}  // namespace

bool DelimitedInput::AtEnd() {
  if (inRecord_) return false;
  while (true) {
    int c = in_.peek();
    if (c == std::char_traits<char>::eof()) return true;
    std::string next;
    std::getline(in_, next);
    ++line_;
    if (!next.empty() && next.back() == '\r') next.pop_back();
    if (IsBlankLine(next)) continue;
    current_ = next;
    pos_ = 0;
    inRecord_ = true;
    lineEnded_ = false;
    return false;
  }
}

bool DelimitedInput::ReadRawField(std::string& field, bool& quoted) {
  if (!inRecord_ && AtEnd()) vb::Raise(vb::kInputPastEndOfFile);
  if (lineEnded_) {
    // The record's line has no more fields: the record is cut short.
    if (in_.peek() == std::char_traits<char>::eof()) vb::Raise(vb::kInputPastEndOfFile);
    vb::Raise(vb::kTypeMismatch);
  }
  while (pos_ < current_.size() && IsBlank(current_[pos_])) ++pos_;
  quoted = pos_ < current_.size() && current_[pos_] == '"';
  size_t end;
  if (quoted) {
    size_t close = current_.find('"', pos_ + 1);
    if (close == std::string::npos) close = current_.size();
    field = current_.substr(pos_ + 1, close - pos_ - 1);
    end = current_.find(',', close);
  } else {
    end = current_.find(',', pos_);
    field = Trim(current_.substr(pos_, end == std::string::npos ? std::string::npos : end - pos_));
  }
  if (end == std::string::npos) {
    lineEnded_ = true;
    pos_ = current_.size();
  } else {
    pos_ = end + 1;
  }
  return true;
}

std::string DelimitedInput::ReadString() {
  std::string field;
  bool quoted;
  ReadRawField(field, quoted);
  return field;
}

double DelimitedInput::ReadNumber() {
  std::string field;
  bool quoted;
  ReadRawField(field, quoted);
  field = Trim(field);
  if (field.empty()) return 0;  // an empty field reads as zero
  const char* begin = field.c_str();
  char* stop = nullptr;
  double value = std::strtod(begin, &stop);
  // Only plain decimal notation: no hexadecimal, no "inf" or "nan".
  bool plain = field.find_first_not_of("0123456789+-.eE") == std::string::npos;
  if (!plain || stop != begin + field.size()) vb::Raise(vb::kTypeMismatch);
  return value;
}

void DelimitedInput::EndRecord() {
  if (!lineEnded_) vb::Raise(vb::kTypeMismatch);  // more fields than the record has
  inRecord_ = false;
}

}  // namespace vellumar
