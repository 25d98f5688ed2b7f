// vellumar-cli: the headless tool. Each command is one entry of the table below.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "frame/version.h"
#include "adif_commands.h"
#include "award_commands.h"
#include "qsl_commands.h"
#include "station_commands.h"

namespace {

int Version(const std::vector<std::string>&) {
  std::printf("%s %s\n", vellumar::kApplicationTitle, vellumar::VersionText().c_str());
  return 0;
}

struct Command {
  const char* name;
  const char* usage;
  int (*run)(const std::vector<std::string>& args);
};

const Command kCommands[] = {
    {"version", "version                 the program's title and version", Version},
    {"lookup", "lookup CALL...          DXCC entity, continent and zones of each call",
     vellumar::cli::Lookup},
    {"grid", "grid LAT LON            Maidenhead locator of a position in decimal degrees",
     vellumar::cli::Grid},
    {"band", "band FREQ               band name of a frequency in MHz", vellumar::cli::Band},
    {"import", "import LOG.vdb FILE.adi [--Option=value...]  add an ADIF file's QSOs to a log",
     vellumar::cli::Import},
    {"export", "export LOG.vdb FILE.adi [--Option=value...]  write a log's QSOs as ADIF",
     vellumar::cli::Export},
    {"recompute", "recompute LOG.vdb       rebuild a log's Progress table from its QSOs",
     vellumar::cli::Recompute},
    {"summary", "summary LOG.vdb [dxcc|top]  the DXCC Summary of a log's Progress table",
     vellumar::cli::Summary},
    {"add-needed", "add-needed LOG.vdb      queue the QSOs whose cards the awards need",
     vellumar::cli::AddNeeded},
};

void Usage() {
  std::fprintf(stderr, "usage: vellumar-cli COMMAND [ARGS]\n");
  for (const Command& c : kCommands) std::fprintf(stderr, "  %s\n", c.usage);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    Usage();
    return 2;
  }
  std::vector<std::string> args(argv + 2, argv + argc);
  for (const Command& c : kCommands)
    if (std::strcmp(argv[1], c.name) == 0) return c.run(args);
  std::fprintf(stderr, "vellumar-cli: unknown command '%s'\n", argv[1]);
  Usage();
  return 2;
}
