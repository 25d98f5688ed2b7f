// The QSL card's command language on any text: the expansion ends without a crash or a
// sanitizer report, what it leaves unprocessed is always a suffix of the input (empty after
// success), and a successful expansion has no error. Files are served from memory: a name
// beginning with "a" exists (two lines), any other is missing, and "fail" can't be read.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "qsl/qsl_commands.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using vellumar::qsl::CommandFile;
  const std::string input(reinterpret_cast<const char*>(data), size);
  vellumar::qsl::QSLCommandContext context;
  context.row = {"city", "county", "state", "country", "FN32", "1", "2", "EU-001", "14", "28"};
  context.myCall = "K1ABC";
  context.version = "1.2.3";
  context.readFile = [](const std::string& name) {
    if (name == "fail") return CommandFile{CommandFile::Outcome::kFailed, {}, "broken"};
    if (!name.empty() && name[0] == 'a') {
      return CommandFile{CommandFile::Outcome::kRead, {name, "<city>"}, {}};
    }
    return CommandFile{};
  };
  int errors = 0;  // errors other than a missing file
  context.expandError = [&](const std::string&, const std::string& message) {
    if (message.rfind("Filename does not exist: ", 0) != 0) ++errors;
  };
  context.reportError = [&](const std::string&) { ++errors; };
  std::string remainder = input;
  const std::string output = vellumar::qsl::ExpandCommands(remainder, context);
  if (remainder.size() > input.size() ||
      input.compare(input.size() - remainder.size(), remainder.size(), remainder) != 0) {
    std::fprintf(stderr, "the remainder is no suffix of the input\n");
    std::abort();
  }
  if (errors == 0 && !remainder.empty()) {
    std::fprintf(stderr, "a successful expansion left text unprocessed\n");
    std::abort();
  }
  if (errors != 0 && !output.empty()) {
    std::fprintf(stderr, "a failed expansion returned text\n");
    std::abort();
  }
  return 0;
}
