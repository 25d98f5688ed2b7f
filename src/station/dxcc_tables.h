#pragma once
// The three tables of the DXCC database held in memory, loaded once from the read-only file, so
// that a lookup's Seeks are hash probes instead of SQL queries. The semantics are those of the
// tables' PrimaryKey indexes: keys compare without regard to case, one row per key.
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/db/database.h"

namespace vellumar {

class DXCCTables {
 public:
  // Hundreds of thousands of rows share a few hundred values: they point into a pool.
  struct PrefixRow {
    std::string_view dxccPrefix;  // field DXCCPrefix, "" when Null
    std::string_view location;    // field Location as text, "" when Null
  };
  struct DXCCRow {
    std::string dxccPrefix;   // field DXCCPrefix
    std::string countryCode;  // field CountryCode as text, "" when Null
    std::string dxccName;     // field DXCCName, "" when Null
  };
  struct LocationRow {
    std::string continent;  // field Continent, "" when Null
    std::string cqZone;     // field CQZone as text, "" when Null
    std::string ituZone;    // field ITUZone as text, "" when Null
  };

  // Reads the tables through their PrimaryKey indexes, whatever the key fields are named.
  // Database errors propagate as VbError.
  void Load(db::Database& database);

  // Seek "=" on each table: nullptr on no match.
  const PrefixRow* SeekPrefix(std::string_view key) const { return Find(prefixes_, key); }
  const DXCCRow* SeekDXCC(std::string_view key) const { return Find(dxcc_, key); }
  const LocationRow* SeekLocation(std::string_view key) const { return Find(locations_, key); }

  // Longest key of Prefix: a longer beginning of a callsign can't match.
  size_t LongestPrefixKey() const { return longestPrefixKey_; }
  // False when no key of Prefix has this length and begins like `text` (its first two
  // characters, case-blind): the Seek of that length can be spared, its answer being "no match".
  bool MayHavePrefixKey(std::string_view text, size_t length) const {
    if (length >= 32) return true;
    return (lengthsByStart_[StartSlot(text, length)] >> length) & 1u;
  }
  size_t PrefixCount() const { return prefixes_.size(); }
  size_t DXCCCount() const { return dxcc_.size(); }
  size_t LocationCount() const { return locations_.size(); }

 private:
  // Keys are kept upper-cased (ASCII, as the index compares); lookups upper-case a copy.
  struct KeyHash {
    using is_transparent = void;
    size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
  };
  template <typename Row>
  using Table = std::unordered_map<std::string, Row, KeyHash, std::equal_to<>>;

  template <typename Row>
  static const Row* Find(const Table<Row>& table, std::string_view key);

  // The text of a value, kept in the pool.
  std::string_view Intern(const std::string& text);

  std::unordered_set<std::string> pool_;  // node-based: the texts never move
  Table<PrefixRow> prefixes_;
  Table<DXCCRow> dxcc_;
  Table<LocationRow> locations_;
  size_t longestPrefixKey_ = 0;

  // Which key lengths (bit n for length n < 32) occur per beginning: the first two characters
  // of the key, or the first alone for keys of length 1.
  static constexpr size_t kAlphabet = 37;  // A-Z, 0-9, anything else
  static size_t Symbol(char c) {
    if (c >= 'a' && c <= 'z') return static_cast<size_t>(c - 'a');
    if (c >= 'A' && c <= 'Z') return static_cast<size_t>(c - 'A');
    if (c >= '0' && c <= '9') return static_cast<size_t>(26 + c - '0');
    return 36;
  }
  static size_t StartSlot(std::string_view text, size_t length) {
    size_t first = Symbol(text[0]);
    return length == 1 ? kAlphabet * kAlphabet + first : first * kAlphabet + Symbol(text[1]);
  }
  std::vector<uint32_t> lengthsByStart_ = std::vector<uint32_t>(kAlphabet * kAlphabet + kAlphabet);
};

template <typename Row>
const Row* DXCCTables::Find(const Table<Row>& table, std::string_view key) {
  char buffer[64];
  if (key.size() > sizeof buffer) {
    std::string upper(key);
    for (char& c : upper)
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    auto it = table.find(std::string_view(upper));
    return it == table.end() ? nullptr : &it->second;
  }
  for (size_t i = 0; i < key.size(); ++i) {
    char c = key[i];
    buffer[i] = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
  }
  auto it = table.find(std::string_view(buffer, key.size()));
  return it == table.end() ? nullptr : &it->second;
}

}  // namespace vellumar
