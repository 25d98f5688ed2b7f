#pragma once
// DDECommon: the text conventions of every command between this program and its siblings. A
// command is three digits (a server number), the command word, and directly behind it the
// argument: raw text or a record of fields written "<tag:length>value". Nothing here touches the
// transport; these are string operations, with the token table of the last record read.
#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace vellumar::interop {

// The family's programs by their numbers.
enum ServerNumber : int {
  kRigsteward = 0,
  kThisProgram = 1,
  kTrailmark = 2,
  kAtlasine = 3,
  kClustrine = 4,
  kPropagationViewer = 5,
  kSonglark = 6,
};
inline constexpr int kServerCount = 7;

struct DDEToken {
  std::string Tag;
  std::string Value;
};

// A procedure's failure tail: the error number and "Module.Procedure".
using ErrorReporter = std::function<void(int number, const std::string& where)>;

class DDECommon {
 public:
  static constexpr int kTokenSlots = 100;

  explicit DDECommon(ErrorReporter reportError) : reportError_(std::move(reportError)) {}

  // "<" + tag + ":" + the value's length in bytes + ">" + value; "" when the tag is empty.
  static std::string EncodeField(const std::string& tag, const std::string& value);

  // Reads the fields of `text` into the token slots, from slot 0 on, stopping quietly at the
  // first thing it can't read. Slots beyond the count keep what earlier records left there.
  void ParseRecord(const std::string& text);

  // The token at 1-based `position`, whatever the count of the last record. 0 or above 100 is
  // a bounds error, reported under "DDECommon.GetToken", with an empty token as the answer.
  DDEToken GetToken(int position) const;

  // "RS", "VL", "TM", "AT", "CL", "GX", "SG" for 0..6; "" for any other number.
  static std::string ServerNickName(int number);

  // Tokens found by the last ParseRecord (101 when a 101st ended it).
  int16_t DDETokenCount() const { return DDETokenCount_; }

  // A field's declared length as the record reads it: the text as a 16-bit whole number, 0 when
  // it doesn't convert or is negative.
  static int DeclaredLength(const std::string& text);

 private:
  ErrorReporter reportError_;
  std::array<DDEToken, kTokenSlots> DDETokens{};
  int16_t DDETokenCount_ = 0;
};

}  // namespace vellumar::interop
