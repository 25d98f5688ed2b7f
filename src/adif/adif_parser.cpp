// The scanner: the header, and one tag per call of ParseADIF.
#include "adif/adif_parser.h"

#include <algorithm>
#include <utility>

#include "platform/vb/ascii.h"
#include "platform/vb/error.h"

namespace vellumar::adif {

namespace {

constexpr const char* kCrLf = "\r\n";
// The procedure the scanner's failures are reported under.
constexpr const char* kParseADIF = "ParseADIF";

// The position of "<eoh>" in `line`, in any case; npos if it isn't there.
std::size_t FindEoh(std::string_view line) {
  for (std::size_t i = 0; i + 5 <= line.size(); ++i)
    if (line[i] == '<' && vb::EqualsIgnoreCase(std::string(line.substr(i, 5)), "<eoh>"))
      return i;
  return std::string_view::npos;
}

// Appends `text` to `out` while `out` holds less than `limit` bytes, never cutting a character.
void AppendBounded(std::string& out, std::string_view text, std::size_t limit) {
  if (out.size() >= limit) return;
  std::size_t n = std::min(text.size(), limit - out.size());
  while (n > 0 && n < text.size() && IsContinuationByte(text[n])) --n;
  out.append(text.substr(0, n));
}

}  // namespace

AdifParser::AdifParser(ErrorLog& errorLog) : errorLog_(errorLog) {}

void AdifParser::SetImportBuffer(std::string text) {
  buffer_ = std::move(text);
  consumed_ = 0;
}

void AdifParser::EmptyBuffer() {
  buffer_.clear();
  consumed_ = 0;
}

void AdifParser::AppendEcho(std::string_view text) { AppendBounded(echo_, text, kEchoLimit); }

std::string AdifParser::GetHeader() {
  std::string header;
  WithFailureTail(errorLog_, "ADIF.GetHeader", [&] {
    EmptyBuffer();
    std::string line;
    // An empty input has neither header nor records.
    if (input_ == nullptr || !input_->ReadLine(line)) return;
    if (!line.empty() && line[0] == '<') {
      SetImportBuffer(std::move(line));
      return;
    }
    for (;;) {
      const std::size_t p = FindEoh(line);
      if (p != std::string_view::npos) {
        AppendBounded(header, std::string_view(line).substr(0, p), kEchoLimit);
        SetImportBuffer(line.substr(p + 5));
        return;
      }
      // The header text shown to the operator is bounded like the echo; the lines beyond it
      // are still read for the marker.
      AppendBounded(header, line, kEchoLimit);
      AppendBounded(header, kCrLf, kEchoLimit);
      if (!input_->ReadLine(line)) return;
    }
  });
  return header;
}

bool AdifParser::ReadValueLines(std::size_t offset, int length, TextEncoding unit) {
  if (length <= 0) return true;
  const auto want = static_cast<std::size_t>(length);
  std::size_t have = CountUnits(Rest().substr(offset), want, unit);
  if (have < want && consumed_ > 0) {
    // What was taken before is dropped first, so the buffer holds no more than the value
    // still needs and one line. Offsets into Rest() stay as they were.
    buffer_.erase(0, consumed_);
    consumed_ = 0;
  }
  std::string line;
  while (have < want) {
    if (input_ == nullptr || !input_->ReadLine(line)) {
      // Running out of file inside a value looks the same. The buffer stays as it is, so the
      // import's loop comes back to this tag on its next pass.
      errorLog_.WriteErrorLog("Input error reading " + ImportBuffer());
      errorLog_.ReportError(input_ != nullptr ? input_->ReadError() : vb::kBadFileNameOrNumber,
                            kParseADIF);
      return false;
    }
    const std::size_t before = buffer_.size();
    buffer_ += kCrLf;
    buffer_ += line;
    have += CountUnits(std::string_view(buffer_).substr(before), want - have, unit);
  }
  return true;
}

void AdifParser::ParseADIF(RecordConsumer& consumer, bool fromFile, bool checkDuplicates,
                           bool lookupMissing) {
  WithFailureTail(errorLog_, kParseADIF, [&] {
    const std::string_view rest = Rest();
    const std::size_t p = rest.find('<');
    if (p == std::string_view::npos) {
      // Text outside any tag: kept in the echo, not read.
      AppendEcho(rest);
      EmptyBuffer();
      return;
    }
    if (rest.size() - p >= 5 && vb::LowerAscii(std::string(rest.substr(p, 5))) == "<eor>") {
      AppendEcho("<eor>");
      const std::size_t after = consumed_ + p + 5;
      consumer.ImportRecord(*this, fromFile, checkDuplicates, lookupMissing);
      consumed_ = std::min(after, buffer_.size());
      ClearRecord();
      return;
    }
    const std::size_t q = rest.find('>', p + 1);
    if (q == std::string_view::npos) {
      // A tag without its end, such as one broken over two lines, is lost with the rest.
      AppendEcho(rest);
      EmptyBuffer();
      return;
    }
    const std::string tag(rest.substr(p + 1, q - p - 1));
    AppendEcho("<" + tag + ">");
    const std::size_t c1 = tag.find(':');
    if (c1 == std::string::npos) {
      // A tag without a length (a stray <eoh>) takes the rest of the buffer with it.
      AppendEcho(rest);
      EmptyBuffer();
      return;
    }
    const std::size_t c2 = tag.find(':', c1 + 1);
    const std::string name = vb::LowerAscii(tag.substr(0, c1));
    // A data type after the second colon is never used.
    const int length = DeclaredLength(std::string_view(tag).substr(
        c1 + 1, c2 == std::string::npos ? std::string::npos : c2 - c1 - 1));
    const TextEncoding unit =
        fromFile && input_ != nullptr ? input_->Encoding() : TextEncoding::kUtf8;
    if (fromFile && !ReadValueLines(q + 1, length, unit)) return;
    // The buffer may have grown: the value is read from what follows the tag now.
    consumed_ += q + 1;
    const std::string_view after = Rest();
    const std::size_t want = static_cast<std::size_t>(std::max(0, length));
    std::string value;
    if (CountUnits(after, want, unit) >= want) {
      const std::size_t bytes = ValueBytes(after, want, unit);
      value.assign(after.substr(0, bytes));
      consumed_ += bytes;
    } else {
      value.assign(after);
      EmptyBuffer();
    }
    AppendEcho(value);
    Store(name, value);
  });
}

}  // namespace vellumar::adif
