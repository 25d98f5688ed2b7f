#include "support/test_dxcc_database.h"

#include "platform/db/database.h"

namespace vellumar::test {

namespace {

db::TableDef Table(db::Database& database, const std::string& name,
                   std::initializer_list<std::pair<const char*, int>> fields, int textSize,
                   const std::string& keyField) {
  db::TableDef table = database.CreateTableDef(name);
  for (const auto& [fieldName, type] : fields) {
    db::Field f = table.CreateField(fieldName, type, type == db::dbText ? textSize : 0);
    if (type == db::dbText) f.SetAllowZeroLength(true);
    table.Fields().Append(f);
  }
  db::Index index = table.CreateIndex("PrimaryKey");
  index.SetPrimary(true);
  index.SetUnique(true);
  index.Fields().Append(index.CreateField(keyField));
  table.Indexes().Append(index);
  database.TableDefs().Append(table);
  return table;
}

template <typename T>
vb::Variant OrNull(const std::optional<T>& value) {
  return value ? vb::Variant(*value) : vb::Variant::Null();
}

}  // namespace

void CreateTestDXCCDatabase(const std::string& path, const std::vector<TestDXCCRow>& dxcc,
                            const std::vector<TestPrefixRow>& prefixes,
                            const std::vector<TestLocationRow>& locations) {
  db::Database database = db::DBEngine::Workspaces(0).CreateDatabase(path);
  Table(database, "DXCC",
        {{"DXCCPrefix", db::dbText},
         {"CountryCode", db::dbInteger},
         {"DXCCName", db::dbText},
         {"EndDate", db::dbDate}},
        40, "DXCCPrefix");
  Table(database, "Prefix",
        {{"CallBeginning", db::dbText}, {"DXCCPrefix", db::dbText}, {"Location", db::dbText}}, 20,
        "CallBeginning");
  Table(database, "Location",
        {{"Place", db::dbText},
         {"Continent", db::dbText},
         {"CQZone", db::dbInteger},
         {"ITUZone", db::dbInteger}},
        20, "Place");

  db::Recordset rs = database.OpenRecordset("DXCC", db::dbOpenTable);
  for (const TestDXCCRow& r : dxcc) {
    rs.AddNew();
    rs.Fields("DXCCPrefix").SetValue(vb::Variant(r.dxccPrefix));
    rs.Fields("CountryCode")
        .SetValue(r.countryCode ? vb::Variant(static_cast<int16_t>(*r.countryCode))
                                : vb::Variant::Null());
    rs.Fields("DXCCName").SetValue(OrNull(r.dxccName));
    rs.Fields("EndDate").SetValue(r.endDate ? vb::Variant::FromDate(*r.endDate)
                                            : vb::Variant::Null());
    rs.Update();
  }
  rs.Close();
  rs = database.OpenRecordset("Prefix", db::dbOpenTable);
  for (const TestPrefixRow& r : prefixes) {
    rs.AddNew();
    rs.Fields("CallBeginning").SetValue(vb::Variant(r.key));
    rs.Fields("DXCCPrefix").SetValue(OrNull(r.dxccPrefix));
    rs.Fields("Location").SetValue(OrNull(r.location));
    rs.Update();
  }
  rs.Close();
  rs = database.OpenRecordset("Location", db::dbOpenTable);
  for (const TestLocationRow& r : locations) {
    rs.AddNew();
    rs.Fields("Place").SetValue(vb::Variant(r.key));
    rs.Fields("Continent").SetValue(OrNull(r.continent));
    rs.Fields("CQZone").SetValue(r.cqZone ? vb::Variant(static_cast<int16_t>(*r.cqZone))
                                          : vb::Variant::Null());
    rs.Fields("ITUZone").SetValue(r.ituZone ? vb::Variant(static_cast<int16_t>(*r.ituZone))
                                            : vb::Variant::Null());
    rs.Update();
  }
  rs.Close();
  database.Close();
}

}  // namespace vellumar::test
