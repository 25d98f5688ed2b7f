#include "station/dxcc_tables.h"

#include <algorithm>
#include <array>

#include "platform/db/recordset.h"
#include "platform/db/tabledef.h"
#include "platform/vb/error.h"

namespace vellumar {

namespace {

std::string Upper(std::string s) {
  for (char& c : s)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return s;
}

// A field's value as text; a Null or unreadable value reads as "", as the lookup's reads that
// ignore errors do.
std::string Text(const db::Field& field) {
  try {
    return field.Value().ToStringOrEmpty();
  } catch (const vb::VbError&) {
    return "";
  }
}

// Walks a table, telling `reserve` the row count and handing `take` the key of its PrimaryKey
// index and the values of the named fields of each row. The rows come in the table's own order,
// which reads fastest; the copy is a hash table, so order doesn't matter.
template <size_t N, typename Reserve, typename Take>
void WalkByPrimaryKey(db::Database& database, const std::string& table,
                      const std::array<const char*, N>& names, Reserve reserve, Take take) {
  std::string keyField =
      database.TableDefs().Item(table).Indexes().Item("PrimaryKey").Fields().Item(0).Name();
  db::Recordset rs = database.OpenRecordset(table, db::dbOpenTable);
  // Field handles follow the recordset's current row: take them once.
  db::Field key = rs.Fields(keyField);
  std::array<db::Field, N> fields;
  for (size_t i = 0; i < N; ++i) fields[i] = rs.Fields(names[i]);
  std::array<std::string, N> values;
  if (!(rs.BOF() && rs.EOF_())) {
    rs.MoveLast();  // the count, to size the tables at once
    reserve(static_cast<size_t>(rs.RecordCount()));
    rs.MoveFirst();
  }
  while (!rs.EOF_()) {
    for (size_t i = 0; i < N; ++i) values[i] = Text(fields[i]);
    take(Upper(Text(key)), values);
    rs.MoveNext();
  }
  rs.Close();
}

}  // namespace

std::string_view DXCCTables::Intern(const std::string& text) { return *pool_.insert(text).first; }

void DXCCTables::Load(db::Database& database) {
  prefixes_.clear();
  pool_.clear();
  std::fill(lengthsByStart_.begin(), lengthsByStart_.end(), 0u);
  dxcc_.clear();
  locations_.clear();
  longestPrefixKey_ = 0;
  using Two = std::array<std::string, 2>;
  using Three = std::array<std::string, 3>;
  WalkByPrimaryKey(
      database, "Prefix", std::array{"DXCCPrefix", "Location"},
      [&](size_t n) { prefixes_.reserve(n); },
      [&](const std::string& key, const Two& v) {
        prefixes_[key] = PrefixRow{Intern(v[0]), Intern(v[1])};
        if (!key.empty() && key.size() < 32)
          lengthsByStart_[StartSlot(key, key.size())] |= 1u << key.size();
        longestPrefixKey_ = std::max(longestPrefixKey_, key.size());
      });
  WalkByPrimaryKey(
      database, "DXCC", std::array{"DXCCPrefix", "CountryCode", "DXCCName"},
      [&](size_t n) { dxcc_.reserve(n); },
      [&](const std::string& key, const Three& v) {
        dxcc_[key] = DXCCRow{v[0], v[1], v[2]};
      });
  WalkByPrimaryKey(
      database, "Location", std::array{"Continent", "CQZone", "ITUZone"},
      [&](size_t n) { locations_.reserve(n); },
      [&](const std::string& key, const Three& v) {
        locations_[key] = LocationRow{v[0], v[1], v[2]};
      });
}

}  // namespace vellumar
