#pragma once
// The station commands of vellumar-cli: callsign lookup, locator and band.
#include <string>
#include <vector>

namespace vellumar::cli {

// lookup CALL...: one line per call, tab-separated: call, DXCC prefix, DXCC code, continent,
// CQ zone, ITU zone, entity name.
int Lookup(const std::vector<std::string>& args);
// grid LAT LON: signed decimal degrees (north and east positive) -> six-character locator.
int Grid(const std::vector<std::string>& args);
// band FREQ: frequency in MHz -> band name from Bands.txt.
int Band(const std::vector<std::string>& args);

}  // namespace vellumar::cli
