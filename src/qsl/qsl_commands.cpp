#include "qsl/qsl_commands.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace vellumar::qsl {
namespace {

// Commands are folded to lower case before anything else; only ASCII letters fold, so a name in
// UTF-8 keeps its other bytes.
std::string Lower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

bool AllDigits(const std::string& text) {
  for (char c : text) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

// The value of a run of digits compared with 255, without overflowing on a long run.
bool ExceedsControlCode(const std::string& digits) {
  size_t first = digits.find_first_not_of('0');
  if (first == std::string::npos) return false;
  const std::string significant = digits.substr(first);
  if (significant.size() > 3) return true;
  return std::stoi(significant) > 255;
}

// The table of plain commands; false when the command is none of them.
bool TableCommand(const std::string& command, const QSLCommandContext& context,
                  std::string& result) {
  const QSLCommandRow& row = context.row;
  if (command == "mycall") result = context.myCall;
  else if (command == "city") result = row.city;
  else if (command == "county") result = row.county;
  else if (command == "state") result = row.state;
  else if (command == "country") result = row.country;
  else if (command == "grid") result = row.grid.empty() ? "" : "Grid: " + row.grid;
  else if (command == "latitude") result = row.latitude;
  else if (command == "longitude") result = row.longitude;
  else if (command == "iota") result = row.iota.empty() ? "" : "Iota " + row.iota;
  else if (command == "cq") result = row.cq;
  else if (command == "itu") result = row.itu;
  else if (command == "revision") result = context.version;
  else return false;
  return true;
}

}  // namespace

CommandFile ReadCommandFile(const std::string& name) {
  CommandFile file;
  struct stat st;
  if (::stat(name.c_str(), &st) != 0) return file;  // kMissing
  std::ifstream in(name, std::ios::binary);
  if (!in || S_ISDIR(st.st_mode)) {
    file.outcome = CommandFile::Outcome::kFailed;
    file.failure = std::string("unable to read ") + name + ": " + std::strerror(errno ? errno : EIO);
    return file;
  }
  std::stringstream whole;
  whole << in.rdbuf();
  const std::string text = whole.str();
  std::string line;
  bool pending = false;  // a line has begun (the text doesn't end at a line end)
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\r' || c == '\n') {
      file.lines.push_back(line);
      line.clear();
      pending = false;
      if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    } else {
      line += c;
      pending = true;
    }
  }
  if (pending) file.lines.push_back(line);
  file.outcome = CommandFile::Outcome::kRead;
  return file;
}

std::string ExpandErrorText(const std::string& text, const std::string& message) {
  return "Error in QSL command " + text + ": " + message;
}

std::string ExpandCommands(std::string& text, const QSLCommandContext& context) {
  std::string output;
  auto fail = [&](const std::string& message) {
    if (context.expandError) context.expandError(text, message);
    return std::string();
  };
  for (;;) {
    const size_t open = text.find('<');
    if (open == std::string::npos) {
      output += text;
      text.clear();
      return output;
    }
    if (text.size() < 2) return fail("malformed command");
    if (open + 1 < text.size() && text[open + 1] == '<') {
      output += text.substr(0, open) + "<";
      text.erase(0, open + 2);
      continue;
    }
    const size_t close = text.find('>', open + 1);
    if (close == std::string::npos) return fail("< without matching >");
    output += text.substr(0, open);
    const std::string command = Lower(text.substr(open + 1, close - open - 1));
    text.erase(0, close + 1);
    if (command.empty()) continue;
    if (AllDigits(command)) {
      // An accepted control code is swallowed: it adds no character.
      if (ExceedsControlCode(command)) return fail("control code larger than 255");
      continue;
    }
    if (command.compare(0, 6, "file: ") == 0 && command.size() >= 6) {
      const std::string name = command.substr(6);
      const CommandFile file =
          context.readFile ? context.readFile(name) : CommandFile{};
      switch (file.outcome) {
        case CommandFile::Outcome::kMissing:
          // The one error that lets the expansion go on.
          if (context.expandError) context.expandError(text, "Filename does not exist: " + name);
          break;
        case CommandFile::Outcome::kFailed:
          if (context.reportError) {
            context.reportError("VellumQSLModule.ExpandCommands: " + file.failure);
          }
          return std::string();
        case CommandFile::Outcome::kRead:
          for (const std::string& line : file.lines) output += line + "\r";
          break;
      }
      continue;
    }
    std::string result;
    if (!TableCommand(command, context, result)) return fail("unknown command: " + command);
    output += result;
  }
}

}  // namespace vellumar::qsl
