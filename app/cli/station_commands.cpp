#include "station_commands.h"

#include "cli_frame.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "frame/common.h"
#include "frame/data_folder.h"
#include "frame/settings_store.h"
#include "platform/services/clock.h"
#include "platform/services/desktop.h"
#include "platform/vb/error.h"
#include "station/band_table.h"
#include "station/dxcc_module.h"
#include "station/grid_square.h"
#include "station/installed_files.h"
#include "station/station_services.h"

namespace vellumar::cli {

namespace {

bool ParseDouble(const std::string& text, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return !text.empty() && end == text.c_str() + text.size();
}

}  // namespace

int Lookup(const std::vector<std::string>& args) {
  if (args.empty()) {
    std::fprintf(stderr, "usage: vellumar-cli lookup CALL...\n");
    return 2;
  }
  Frame frame;
  LookupSlots slots;
  DXCCModule dxcc(frame.services, slots);
  try {
    dxcc.OpenDXCCDatabase();
  } catch (const ProgramTermination&) {
    return 1;
  }
  if (!dxcc.IsOpen()) {
    std::fprintf(stderr, "vellumar-cli: the DXCC database can't be opened (see ErrorLog.txt)\n");
    return 1;
  }
  for (const std::string& call : args) {
    dxcc.Lookup(call);
    std::printf("%s\t%s\t%s\t%s\t%s\t%s\t%s\n", call.c_str(), slots.DXCCPrefix.c_str(),
                slots.DXCCID.c_str(), slots.Cont.c_str(), slots.CQ.c_str(), slots.ITU.c_str(),
                dxcc.GetDXCCName(slots.DXCCPrefix).c_str());
  }
  return 0;
}

int Grid(const std::vector<std::string>& args) {
  double latitude, longitude;
  if (args.size() != 2 || !ParseDouble(args[0], latitude) || !ParseDouble(args[1], longitude)) {
    std::fprintf(stderr, "usage: vellumar-cli grid LAT LON   (decimal degrees, north/east +)\n");
    return 2;
  }
  std::string grid = DXGridModule::GetGridSquare(GridPositionFromDegrees(latitude, longitude));
  std::printf("%s\n", grid.c_str());
  return grid == "undefined" ? 1 : 0;
}

int Band(const std::vector<std::string>& args) {
  double mhz;
  if (args.size() != 1 || !ParseDouble(args[0], mhz)) {
    std::fprintf(stderr, "usage: vellumar-cli band FREQ   (MHz)\n");
    return 2;
  }
  Frame frame;
  BandTable bands(frame.services.WriteErrorLog, frame.services.ReportError);
  bands.InitializeBandArray(frame.services.programFolder + "/Databases/Bands.txt");
  std::string band = bands.GetBandNameForFreq(mhz);
  if (band.empty()) {
    std::fprintf(stderr, "vellumar-cli: %s MHz is in no band of Bands.txt\n", args[0].c_str());
    return 1;
  }
  std::printf("%s\n", band.c_str());
  return 0;
}

}  // namespace vellumar::cli
