#pragma once
// Readers of the public country files: cty.dat (entities with their prefixes and exact calls,
// zone and continent overrides) and cty.csv (the same entities with their ADIF entity numbers).
// A file that doesn't have the expected form raises VbError naming the file and the line.
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vellumar::dxccgen {

// One entry of an entity's prefix list in cty.dat.
struct CtyPrefix {
  std::string text;            // prefix or, for an exact call, the whole call (upper case)
  bool exactCall = false;      // written "=CALL": matches that call only
  std::optional<int> cqZone;   // "(n)" override of the entity's CQ zone
  std::optional<int> ituZone;  // "[n]" override of the entity's ITU zone
  std::optional<std::string> continent;  // "{cc}" override of the entity's continent
  int line = 0;                          // line of cty.dat the entry stands on
};

// One entity record of cty.dat.
struct CtyEntity {
  std::string name;       // e.g. "Conway Reef"
  int cqZone = 0;         // CQ zone
  int ituZone = 0;        // ITU zone
  std::string continent;  // two letters: AF AN AS EU NA OC SA
  double latitude = 0;    // degrees, north positive
  double longitude = 0;   // degrees, WEST positive as the file writes it
  double utcOffset = 0;   // hours, east negative as the file writes it (UTC = local + offset)
  std::string primary;    // main prefix without the "*", e.g. "3D2/c"
  bool notDXCC = false;   // marked "*": a region of another entity, not an entity of its own
  std::vector<CtyPrefix> prefixes;
  int line = 0;  // line of the record's header
  int adif = 0;  // ADIF entity number, from cty.csv
};

// Reads cty.dat. Raises VbError 53 if it can't be opened, 13 for a malformed record.
std::vector<CtyEntity> ReadCtyDat(const std::string& path);

// Reads cty.csv: main prefix as cty.dat writes it (with "*") -> (name, ADIF number).
struct CtyCsvEntry {
  std::string name;  // entity name
  int adif = 0;      // ADIF entity number
  int line = 0;
};
std::map<std::string, CtyCsvEntry> ReadCtyCsv(const std::string& path);

// Sets each entity's ADIF number from cty.csv, matched by main prefix (the two files may word a
// name differently); an entity missing there raises VbError naming both files.
void AssignAdifNumbers(std::vector<CtyEntity>& entities,
                       const std::map<std::string, CtyCsvEntry>& csv, const std::string& ctyPath,
                       const std::string& csvPath);

// Splits one line of comma-separated values with double-quoted fields ("" inside quotes is a
// quote). Shared by the readers of the CSV files.
std::vector<std::string> SplitCsvLine(const std::string& line);

}  // namespace vellumar::dxccgen
