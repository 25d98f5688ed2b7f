#pragma once
// Runtime errors as the program's procedures see them: a VB/Jet error number with its
// description. Platform code raises them; a procedure's failure tail catches them and hands
// the number to ReportError.
#include <stdexcept>
#include <string>

namespace vellumar::vb {

// Error numbers the program relies on, by their runtime meaning.
enum ErrorNumber : int {
  kInvalidProcedureCall = 5,
  kOverflow = 6,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kBadFileNameOrNumber = 52,
  kFileNotFound = 53,
  kInputPastEndOfFile = 62,
  kPathFileAccessError = 75,
  kInvalidUseOfNull = 94,
  kNoCurrentRecord = 3021,
  kDuplicateKey = 3022,
  kSyntaxInQueryExpression = 3075,
  kFieldTooSmall = 3163,
  kCancelSelected = 32755,
};

// The runtime's description of an error number; a generic text for numbers it doesn't know.
std::string ErrorDescription(int number);

class VbError : public std::runtime_error {
 public:
  // An empty description takes the runtime's own text for the number.
  explicit VbError(int number, const std::string& description = {});
  int number() const { return number_; }
  const std::string& description() const { return description_; }

 private:
  int number_;
  std::string description_;
};

[[noreturn]] void Raise(int number, const std::string& description = {});

}  // namespace vellumar::vb
