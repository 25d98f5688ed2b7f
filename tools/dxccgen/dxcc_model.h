#pragma once
// The contents of the DXCC database, worked out from the country files and the table of
// deleted entities before anything is written:
//
// - DXCC: one row per entity, current ones (from cty.dat, EndDate Null) and deleted ones
//   (EndDate their last day). DXCCPrefix is unique. Entities told apart from a neighbour by a
//   letter get the form the lookup builds from a suffix letter, "3D2-C": those whose cty.dat main
//   prefix is written "3D2/c", groups whose main prefixes are one stem plus a letter where the
//   stem itself is a prefix of one of them (VK9 -> Norfolk, VK9C Cocos, VK9X Christmas...: all
//   become "VK9-N", "VK9-C", "VK9-X"), and deleted entities written "VQ9(A)".
// - Prefix: one row per prefix or exact call of cty.dat, keyed by the prefix or the whole call;
//   "*" entries (regions that aren't entities) point at the entity with their ADIF number; a
//   row per dashed DXCC prefix so that the suffix-letter lookup lands on it; prefixes of deleted
//   entities only where no current key covers them or lies within them, so that no call of
//   today is taken away; and where a whole call ("=KL7AF") differs from what its prefix gives,
//   guard keys of one more letter (KL7AFA..KL7AFZ) that give longer calls back to the prefix.
//   Where a whole call and a prefix are the same text ("=EF6" and EF6), the prefix keeps it.
// - Location: one row per distinct continent and zone pair, keyed "EU/14/27"; an entry with
//   its own zones or continent refers to its own row.
#include <optional>
#include <string>
#include <vector>

#include "country_files.h"
#include "deleted_entities.h"

namespace vellumar::dxccgen {

struct DxccRow {
  std::string dxccPrefix;         // unique, at most 6 characters, e.g. "3D2-C"
  int countryCode = 0;            // ADIF entity number
  std::string dxccName;           // e.g. "Conway Reef"
  std::optional<double> endDate;  // deleted entities: last day, days since 1899-12-30
  std::string continent;          // two letters
  int cqZone = 0;                 // CQ zone
  int ituZone = 0;                // ITU zone
  double latitude = 0;            // degrees, north positive (0 for deleted entities)
  double longitude = 0;           // degrees, east positive (0 for deleted entities)
};

struct PrefixRow {
  std::string prefix;      // key: a callsign's beginning, a whole call, or a dashed DXCC prefix
  std::string dxccPrefix;  // the entity's DXCCPrefix
  std::string location;    // key into Location
};

struct LocationRow {
  std::string location;  // key: continent "/" CQ zone "/" ITU zone, e.g. "OC/32/56"
  std::string continent;
  int cqZone = 0;
  int ituZone = 0;
};

struct DxccModel {
  std::vector<DxccRow> dxcc;
  std::vector<PrefixRow> prefixes;
  std::vector<LocationRow> locations;
  std::vector<std::string> notes;  // choices worth telling whoever runs the generator
};

// Raises VbError (naming the file and line) on contradictions: an entity number twice, a
// "*" entry whose number has no entity, one key claimed by two entities.
DxccModel BuildDxccModel(const std::vector<CtyEntity>& entities, const std::string& ctyPath,
                         const std::vector<DeletedEntity>& deleted, const std::string& deletedPath);

// Reads the three input files and builds the model.
DxccModel BuildDxccModelFromFiles(const std::string& ctyDatPath, const std::string& ctyCsvPath,
                                  const std::string& deletedPath);

}  // namespace vellumar::dxccgen
