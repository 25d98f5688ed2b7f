#include "station/dxcc_tables.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <unordered_map>

#include "platform/db/recordset.h"
#include "platform/db/tabledef.h"
#include "platform/vb/error.h"

namespace vellumar {

namespace {

char UpperAscii(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

std::string Upper(std::string s) {
  for (char& c : s) c = UpperAscii(c);
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

// Collects the texts of the tables, each once.
class TextBlock {
 public:
  explicit TextBlock(std::string& text) : text_(text) {}
  DXCCTables::TextRef Add(const std::string& s) {
    auto [it, added] = refs_.try_emplace(s);
    if (added) {
      it->second = {static_cast<uint32_t>(text_.size()), static_cast<uint32_t>(s.size())};
      text_ += s;
    }
    return it->second;
  }

 private:
  std::string& text_;
  std::unordered_map<std::string, DXCCTables::TextRef> refs_;
};

// Walks a table, handing `take` the key of its PrimaryKey index and the values of the named
// fields of each row. The rows come in the table's own order, which reads fastest; the copy is
// a hash table, so order doesn't matter.
template <size_t N, typename Take>
void WalkByPrimaryKey(db::Database& database, const std::string& table,
                      const std::array<const char*, N>& names, Take take) {
  std::string keyField =
      database.TableDefs().Item(table).Indexes().Item("PrimaryKey").Fields().Item(0).Name();
  db::Recordset rs = database.OpenRecordset(table, db::dbOpenTable);
  // Field handles follow the recordset's current row: take them once.
  db::Field key = rs.Fields(keyField);
  std::array<db::Field, N> fields;
  for (size_t i = 0; i < N; ++i) fields[i] = rs.Fields(names[i]);
  std::array<std::string, N> values;
  while (!rs.EOF_()) {
    for (size_t i = 0; i < N; ++i) values[i] = Text(fields[i]);
    take(Upper(Text(key)), values);
    rs.MoveNext();
  }
  rs.Close();
}

}  // namespace

uint64_t DXCCTables::Hash(std::string_view upperKey) {
  uint64_t h = 0xcbf29ce484222325ull;  // FNV-1a: keys are a few characters
  for (char c : upperKey) {
    h ^= static_cast<unsigned char>(c);
    h *= 0x100000001b3ull;
  }
  return h ^ (h >> 29);
}

void DXCCTables::BuildSlots(Table& table, const std::string& text) {
  size_t rows = table.Rows();
  size_t size = 16;
  while (size < rows * 2) size *= 2;
  table.hashSlots.assign(size, 0);
  for (size_t row = 0; row < rows; ++row) {
    TextRef keyRef = table.cells[row * table.width];
    std::string_view key(text.data() + keyRef.offset, keyRef.length);
    for (size_t i = Hash(key) & (size - 1);; i = (i + 1) & (size - 1)) {
      uint32_t& slot = table.hashSlots[i];
      if (slot == 0) {
        slot = static_cast<uint32_t>(row + 1);
        break;
      }
      TextRef other = table.cells[(slot - 1) * table.width];
      if (std::string_view(text.data() + other.offset, other.length) == key) {
        slot = static_cast<uint32_t>(row + 1);  // a key met again: the later row, as a map keeps
        break;
      }
    }
  }
}

void DXCCTables::Clear() {
  text_.clear();
  prefixes_ = Table();
  dxcc_ = Table();
  locations_ = Table();
  longestPrefixKey_ = 0;
  std::fill(lengthsByStart_.begin(), lengthsByStart_.end(), 0u);
}

void DXCCTables::Load(db::Database& database) {
  Clear();
  try {
    TextBlock block(text_);
    auto fill = [&](Table& table, uint32_t width) {
      table.width = width;
      return [&table, &block](const std::string& key, const auto& values) {
        table.cells.push_back(block.Add(key));
        for (const std::string& v : values) table.cells.push_back(block.Add(v));
      };
    };
    auto prefixRow = fill(prefixes_, 3);
    WalkByPrimaryKey(database, "Prefix", std::array{"DXCCPrefix", "Location"},
                     [&](const std::string& key, const std::array<std::string, 2>& v) {
                       prefixRow(key, v);
                       if (!key.empty() && key.size() < 32)
                         lengthsByStart_[StartSlot(key, key.size())] |= 1u << key.size();
                       longestPrefixKey_ = std::max<uint64_t>(longestPrefixKey_, key.size());
                     });
    WalkByPrimaryKey(database, "DXCC", std::array{"DXCCPrefix", "CountryCode", "DXCCName"},
                     fill(dxcc_, 4));
    WalkByPrimaryKey(database, "Location", std::array{"Continent", "CQZone", "ITUZone"},
                     fill(locations_, 4));
    for (Table* t : {&prefixes_, &dxcc_, &locations_}) BuildSlots(*t, text_);
  } catch (...) {
    Clear();  // never half a copy
    throw;
  }
}

const DXCCTables::TextRef* DXCCTables::Find(const Table& table, std::string_view key) const {
  if (table.hashSlots.empty()) return nullptr;
  char buffer[64];
  std::string longer;
  std::string_view upper;
  if (key.size() <= sizeof buffer) {
    for (size_t i = 0; i < key.size(); ++i) buffer[i] = UpperAscii(key[i]);
    upper = std::string_view(buffer, key.size());
  } else {
    longer = Upper(std::string(key));
    upper = longer;
  }
  const size_t mask = table.hashSlots.size() - 1;
  for (size_t i = Hash(upper) & mask;; i = (i + 1) & mask) {
    uint32_t slot = table.hashSlots[i];
    if (slot == 0) return nullptr;
    const TextRef* row = &table.cells[(slot - 1) * table.width];
    if (TextOf(row[0]) == upper) return row;
  }
}

std::optional<DXCCTables::PrefixRow> DXCCTables::SeekPrefix(std::string_view key) const {
  const TextRef* row = Find(prefixes_, key);
  if (!row) return std::nullopt;
  return PrefixRow{TextOf(row[1]), TextOf(row[2])};
}

std::optional<DXCCTables::DXCCRow> DXCCTables::SeekDXCC(std::string_view key) const {
  const TextRef* row = Find(dxcc_, key);
  if (!row) return std::nullopt;
  return DXCCRow{TextOf(row[1]), TextOf(row[2]), TextOf(row[3])};
}

std::optional<DXCCTables::LocationRow> DXCCTables::SeekLocation(std::string_view key) const {
  const TextRef* row = Find(locations_, key);
  if (!row) return std::nullopt;
  return LocationRow{TextOf(row[1]), TextOf(row[2]), TextOf(row[3])};
}

size_t DXCCTables::MemoryBytes() const {
  size_t bytes = text_.capacity() + lengthsByStart_.capacity() * sizeof(uint32_t);
  for (const Table* t : {&prefixes_, &dxcc_, &locations_})
    bytes += t->cells.capacity() * sizeof(TextRef) + t->hashSlots.capacity() * sizeof(uint32_t);
  return bytes;
}

DXCCTables::Parts DXCCTables::MutableParts() {
  return Parts{&text_, {&prefixes_, &dxcc_, &locations_}, &lengthsByStart_, &longestPrefixKey_};
}

bool DXCCTables::Consistent() const {
  if (lengthsByStart_.size() != kStartSlots) return false;
  const uint32_t widths[3] = {3, 4, 4};
  const Table* tables[3] = {&prefixes_, &dxcc_, &locations_};
  uint64_t longest = 0;
  for (int t = 0; t < 3; ++t) {
    const Table& table = *tables[t];
    if (table.width != widths[t] || table.cells.size() % table.width != 0) return false;
    size_t rows = table.Rows();
    size_t size = table.hashSlots.size();
    if (size < 16 || (size & (size - 1)) != 0 || size < rows * 2) return false;
    for (const TextRef& ref : table.cells)
      if (ref.offset > text_.size() || ref.length > text_.size() - ref.offset) return false;
    size_t used = 0;
    for (uint32_t slot : table.hashSlots) {
      if (slot > rows) return false;
      used += slot != 0;
    }
    if (used != rows) return false;  // each row once: a key met twice was dropped when built
    if (t == 0) {
      for (size_t row = 0; row < rows; ++row)
        longest = std::max<uint64_t>(longest, table.cells[row * table.width].length);
    }
  }
  return longest == longestPrefixKey_;
}

}  // namespace vellumar
