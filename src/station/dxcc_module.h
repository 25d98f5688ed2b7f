#pragma once
// The DXCC module: finds and opens the DXCC database (shared with the map program and never
// written here) and turns a callsign as the operator types it into the entity, continent and
// zones, left in the lookup slots.
//
// The Prefix, DXCC and Location tables are read once into memory when the database opens (from
// their compact form beside it while that is current, dxcc_compact.h); a Seek of the lookup is
// then a probe of that copy with the same semantics (case-blind keys, one
// row per key). The DXCC table recordset and dynaset stay open for the program's other users.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/db/database.h"
#include "station/dxcc_tables.h"
#include "station/lookup_slots.h"
#include "station/station_services.h"

namespace vellumar {

// What InitializeDXCCCombo fills: the DXCC prefix lists of the main window and the Capture
// window, or anything else that takes items with data.
class DXCCComboList {
 public:
  virtual ~DXCCComboList() = default;
  virtual void Clear() = 0;
  virtual void AddItem(const std::string& text, int16_t itemData) = 0;
};

class DXCCModule {
 public:
  // The settings that locate the database belong to the map program.
  static constexpr const char* kAtlasine = "Atlasine";
  // Where the fatal message sends the operator when the database is missing; a setting of
  // this program (section "DXCCDatabase", key "DistributionLocation") may replace it.
  static constexpr const char* kDefaultDistributionLocation = "https://vellumar.org/download";

  DXCCModule(StationServices& services, LookupSlots& slots);

  // The database's path: the map program's setting when a file exists there, else the data
  // folder's "Databases/DXCC.vdb". When no file exists at the result, the operator is told and
  // ProgramTermination is raised after the OK.
  std::string GetDXCCDatabasePathname();
  // Opens the database read-only, its DXCC table recordset and dynaset, and loads the tables
  // for the lookup. A database that can't be opened goes to the error reporter.
  void OpenDXCCDatabase();
  bool IsOpen() const { return database_.operator bool(); }

  // New references to the shared DXCC table recordset (PrimaryKey order) and dynaset.
  db::Recordset GetDXCCRecordset() const { return dxccRecordset_; }
  db::Recordset GetDXCCDynaset() const { return dxccDynaset_; }

  // Parses the callsign (portable forms, /P /B /QRP /MM, call-area digits, suffix letters) and
  // leaves DXCCPrefix, DXCCID, Cont, CQ and ITU in the slots; all five empty when nothing
  // matches.
  void Lookup(const std::string& callsign);

  // DXCCName of the entity with this DXCC prefix; "" when there is none.
  std::string GetDXCCName(const std::string& dxccPrefix) const;
  // "" for an empty country, else separator + country.
  static std::string IncludeCountry(const std::string& country, const std::string& separator);
  // The DXCC code of the entity the map program shows now ("" when it shows none).
  std::string GetAtlasinePrefixID() const;

  bool SuppressLookup() const { return lookupSuppressed_; }
  void SetSuppressLookup(bool value) { lookupSuppressed_ = value; }

  // Clears each list, adds an empty item with data 0, then one item per DXCC row in PrimaryKey
  // order: text DXCCPrefix, data CountryCode (0 when unreadable). Deleted entities included.
  void InitializeDXCCCombo(const std::vector<DXCCComboList*>& combos);

  const DXCCTables& Tables() const { return tables_; }

 private:
  // Longest match of the string's beginning in Prefix, then its DXCC and Location rows.
  void GetPrefix(std::string_view prefixOrCall);

  StationServices& services_;
  LookupSlots& slots_;
  db::Database database_;
  db::Recordset dxccRecordset_;  // table-type, index PrimaryKey
  db::Recordset dxccDynaset_;
  DXCCTables tables_;  // Prefix, DXCC and Location rows: what their Seeks would find
  std::optional<DXCCTables::PrefixRow> currentPrefix_;  // Prefix row of the last match
  bool lookupSuppressed_ = false;
};

}  // namespace vellumar
