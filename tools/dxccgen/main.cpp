// dxccgen: builds the DXCC database (DXCC.vdb) from the country files and the table of deleted
// entities.
//
//   dxccgen --cty-dat FILE --cty-csv FILE --deleted FILE --output FILE [--dump]
//
// --dump prints the tables as text instead of writing the database. On a malformed or missing
// input the message names the file and line, and the exit status is 1.
#include <cstdio>
#include <cstring>
#include <string>

#include "dxcc_model.h"
#include "dxcc_writer.h"
#include "platform/vb/error.h"

namespace {

int Usage() {
  std::fprintf(stderr,
               "usage: dxccgen --cty-dat FILE --cty-csv FILE --deleted FILE "
               "(--output FILE | --dump)\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace vellumar::dxccgen;
  std::string ctyDat, ctyCsv, deleted, output;
  bool dump = false;
  for (int i = 1; i < argc; ++i) {
    std::string arg = argv[i];
    auto value = [&](std::string& target) {
      if (i + 1 >= argc) return false;
      target = argv[++i];
      return true;
    };
    if (arg == "--cty-dat"   ? !value(ctyDat)
        : arg == "--cty-csv" ? !value(ctyCsv)
        : arg == "--deleted" ? !value(deleted)
        : arg == "--output"  ? !value(output)
        : arg == "--dump"    ? (dump = true, false)
                             : true)
      return Usage();
  }
  if (ctyDat.empty() || ctyCsv.empty() || deleted.empty() || (output.empty() && !dump))
    return Usage();
  try {
    DxccModel model = BuildDxccModelFromFiles(ctyDat, ctyCsv, deleted);
    if (dump) {
      for (const DxccRow& r : model.dxcc)
        std::printf("DXCC\t%s\t%d\t%s\t%s\t%s\t%d\t%d\n", r.dxccPrefix.c_str(), r.countryCode,
                    r.dxccName.c_str(), r.endDate ? std::to_string(*r.endDate).c_str() : "Null",
                    r.continent.c_str(), r.cqZone, r.ituZone);
      for (const PrefixRow& r : model.prefixes)
        std::printf("Prefix\t%s\t%s\t%s\n", r.prefix.c_str(), r.dxccPrefix.c_str(),
                    r.location.c_str());
      for (const LocationRow& r : model.locations)
        std::printf("Location\t%s\t%s\t%d\t%d\n", r.location.c_str(), r.continent.c_str(), r.cqZone,
                    r.ituZone);
    } else {
      WriteDxccDatabase(model, output);
    }
    for (const std::string& note : model.notes) std::fprintf(stderr, "dxccgen: %s\n", note.c_str());
    std::fprintf(stderr, "dxccgen: %zu entities, %zu prefixes, %zu locations%s%s\n",
                 model.dxcc.size(), model.prefixes.size(), model.locations.size(),
                 dump ? "" : " -> ", dump ? "" : output.c_str());
    return 0;
  } catch (const vellumar::vb::VbError& e) {
    std::fprintf(stderr, "dxccgen: %s\n", e.description().c_str());
    return 1;
  }
}
