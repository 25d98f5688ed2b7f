#pragma once
// The command language of a QSL card's corner texts: "<mycall>", "<city>", "<grid>",
// "<file: name>", "<13>", "<<" for a "<" and the like, expanded against one queue row. The
// expansion is a pure function of its arguments; the file reader and the error sink are the
// only ways out, so that the card printer, the tests and the fuzzer call the same code.
#include <functional>
#include <string>
#include <vector>

namespace vellumar::qsl {

// The myQTH part of a queue row that the commands read.
struct QSLCommandRow {
  std::string city, county, state, country, grid, latitude, longitude, iota, cq, itu;
};

// What reading a file gave: missing (no such file), read (its lines, without their ends), or a
// failure while reading (its text).
struct CommandFile {
  enum class Outcome { kMissing, kRead, kFailed } outcome = Outcome::kMissing;
  std::vector<std::string> lines;
  std::string failure;
};
using CommandFileReader = std::function<CommandFile(const std::string& name)>;

// Reads a file of the platform by its name as given (names are case-sensitive here); lines end
// at LF, CR LF or a lone CR.
CommandFile ReadCommandFile(const std::string& name);

struct QSLCommandContext {
  QSLCommandRow row;
  std::string myCall;   // MyCallsign of the configuration
  std::string version;  // major.minor.revision
  CommandFileReader readFile = ReadCommandFile;
  // ExpandError: the working text at the moment of the error and the message. The card printer
  // shows "Error in QSL command " + text + ": " + message (ExpandErrorText).
  std::function<void(const std::string& text, const std::string& message)> expandError;
  // A file that exists but can't be read: the common reporter's text.
  std::function<void(const std::string& text)> reportError;
};

std::string ExpandErrorText(const std::string& text, const std::string& message);

// Expands `text`, which it consumes: afterwards `text` holds what was left unprocessed (empty
// after success, the working text at the error otherwise). Returns the expanded text, or empty
// after an error. A missing file is the one error that doesn't end the expansion.
std::string ExpandCommands(std::string& text, const QSLCommandContext& context);

}  // namespace vellumar::qsl
