#include "dxcc_writer.h"

#include <filesystem>

#include "platform/db/database.h"
#include "platform/vb/error.h"

namespace vellumar::dxccgen {

namespace {

// Field widths; the generator checks the data against them before writing.
constexpr int kPrefixKeyWidth = 32;  // longest exact call in today's files is 16
constexpr int kDXCCPrefixWidth = 6;  // as the log's DXCCPrefix
constexpr int kLocationWidth = 8;    // "EU/14/27"
constexpr int kNameWidth = 64;

struct FieldSpec {
  const char* name;
  int type;
  int size;
};

db::TableDef MakeTable(db::Database& database, const std::string& name,
                       std::initializer_list<FieldSpec> fields) {
  db::TableDef table = database.CreateTableDef(name);
  for (const FieldSpec& f : fields) {
    db::Field field = table.CreateField(f.name, f.type, f.size);
    field.SetAttributes(db::dbUpdatableField);
    if (f.type == db::dbText) field.SetAllowZeroLength(false);
    table.Fields().Append(field);
  }
  return table;
}

void AddIndex(db::TableDef& table, const std::string& name, const std::string& field, bool primary,
              bool unique) {
  db::Index index = table.CreateIndex(name);
  index.SetPrimary(primary);
  index.SetUnique(unique);
  index.Fields().Append(index.CreateField(field));
  table.Indexes().Append(index);
}

void CheckWidth(const std::string& value, int width, const std::string& what) {
  if (static_cast<int>(value.size()) > width)
    vb::Raise(vb::kFieldTooSmall,
              what + " \"" + value + "\" is longer than " + std::to_string(width) + " characters");
}

}  // namespace

void WriteDxccDatabase(const DxccModel& model, const std::string& path) {
  namespace fs = std::filesystem;
  for (const DxccRow& r : model.dxcc) {
    CheckWidth(r.dxccPrefix, kDXCCPrefixWidth, "DXCC prefix");
    CheckWidth(r.dxccName, kNameWidth, "entity name");
  }
  for (const PrefixRow& r : model.prefixes) CheckWidth(r.prefix, kPrefixKeyWidth, "prefix");
  for (const LocationRow& r : model.locations) CheckWidth(r.location, kLocationWidth, "location");

  std::string partial = path + ".partial";
  std::error_code ec;
  fs::remove(partial, ec);
  for (const char* side : {"-wal", "-shm"}) fs::remove(partial + side, ec);
  {
    db::Database database = db::DBEngine::Workspaces(0).CreateDatabase(partial);

    db::TableDef dxcc = MakeTable(database, "DXCC",
                                  {{"DXCCPrefix", db::dbText, kDXCCPrefixWidth},
                                   {"CountryCode", db::dbInteger, 0},
                                   {"DXCCName", db::dbText, kNameWidth},
                                   {"EndDate", db::dbDate, 0},
                                   {"Continent", db::dbText, 2},
                                   {"CQZone", db::dbInteger, 0},
                                   {"ITUZone", db::dbInteger, 0},
                                   {"Latitude", db::dbDouble, 0},
                                   {"Longitude", db::dbDouble, 0}});
    AddIndex(dxcc, "PrimaryKey", "DXCCPrefix", true, true);
    AddIndex(dxcc, "CountryCode", "CountryCode", false, true);
    database.TableDefs().Append(dxcc);

    db::TableDef prefix = MakeTable(database, "Prefix",
                                    {{"Prefix", db::dbText, kPrefixKeyWidth},
                                     {"DXCCPrefix", db::dbText, kDXCCPrefixWidth},
                                     {"Location", db::dbText, kLocationWidth}});
    AddIndex(prefix, "PrimaryKey", "Prefix", true, true);
    database.TableDefs().Append(prefix);

    db::TableDef location = MakeTable(database, "Location",
                                      {{"Location", db::dbText, kLocationWidth},
                                       {"Continent", db::dbText, 2},
                                       {"CQZone", db::dbInteger, 0},
                                       {"ITUZone", db::dbInteger, 0}});
    AddIndex(location, "PrimaryKey", "Location", true, true);
    database.TableDefs().Append(location);

    db::Recordset rs = database.OpenRecordset("DXCC", db::dbOpenTable);
    for (const DxccRow& r : model.dxcc) {
      rs.AddNew();
      rs.Fields("DXCCPrefix").SetValue(vb::Variant(r.dxccPrefix));
      rs.Fields("CountryCode").SetValue(vb::Variant(static_cast<int16_t>(r.countryCode)));
      rs.Fields("DXCCName").SetValue(vb::Variant(r.dxccName));
      rs.Fields("EndDate").SetValue(r.endDate ? vb::Variant::FromDate(*r.endDate)
                                              : vb::Variant::Null());
      rs.Fields("Continent").SetValue(vb::Variant(r.continent));
      rs.Fields("CQZone").SetValue(vb::Variant(static_cast<int16_t>(r.cqZone)));
      rs.Fields("ITUZone").SetValue(vb::Variant(static_cast<int16_t>(r.ituZone)));
      rs.Fields("Latitude").SetValue(vb::Variant(r.latitude));
      rs.Fields("Longitude").SetValue(vb::Variant(r.longitude));
      rs.Update();
    }
    rs.Close();

    rs = database.OpenRecordset("Prefix", db::dbOpenTable);
    for (const PrefixRow& r : model.prefixes) {
      rs.AddNew();
      rs.Fields("Prefix").SetValue(vb::Variant(r.prefix));
      rs.Fields("DXCCPrefix").SetValue(vb::Variant(r.dxccPrefix));
      rs.Fields("Location").SetValue(vb::Variant(r.location));
      rs.Update();
    }
    rs.Close();

    rs = database.OpenRecordset("Location", db::dbOpenTable);
    for (const LocationRow& r : model.locations) {
      rs.AddNew();
      rs.Fields("Location").SetValue(vb::Variant(r.location));
      rs.Fields("Continent").SetValue(vb::Variant(r.continent));
      rs.Fields("CQZone").SetValue(vb::Variant(static_cast<int16_t>(r.cqZone)));
      rs.Fields("ITUZone").SetValue(vb::Variant(static_cast<int16_t>(r.ituZone)));
      rs.Update();
    }
    rs.Close();
    database.Close();
  }
  for (const char* side : {"-wal", "-shm"}) fs::remove(partial + side, ec);
  fs::rename(partial, path, ec);
  if (ec) vb::Raise(vb::kPathFileAccessError, path + ": " + ec.message());
}

}  // namespace vellumar::dxccgen
