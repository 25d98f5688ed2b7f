#pragma once
// The three tables of the DXCC database held in memory, so that a lookup's Seeks are hash probes
// instead of SQL queries. The semantics are those of the tables' PrimaryKey indexes: keys
// compare without regard to case, one row per key.
//
// The copy is flat: every text lives once in one block, each table is an array of rows of text
// references (key first) and an open-addressing hash of row numbers. Being plain arrays, it is
// also what the compact form beside the database holds (dxcc_compact.h), read back without a
// row-by-row rebuild.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/db/database.h"

namespace vellumar {

class DXCCTables {
 public:
  struct PrefixRow {
    std::string_view dxccPrefix;  // field DXCCPrefix, "" when Null
    std::string_view location;    // field Location as text, "" when Null
  };
  struct DXCCRow {
    std::string_view dxccPrefix;   // field DXCCPrefix
    std::string_view countryCode;  // field CountryCode as text, "" when Null
    std::string_view dxccName;     // field DXCCName, "" when Null
  };
  struct LocationRow {
    std::string_view continent;  // field Continent, "" when Null
    std::string_view cqZone;     // field CQZone as text, "" when Null
    std::string_view ituZone;    // field ITUZone as text, "" when Null
  };

  // A text of the block: where it starts and how long it is, in bytes.
  struct TextRef {
    uint32_t offset = 0;
    uint32_t length = 0;
  };
  // One table: `width` texts a row (the upper-cased key, then the values), and the hash of row
  // numbers (row + 1; 0 is an empty slot), its size a power of two.
  struct Table {
    uint32_t width = 0;
    std::vector<TextRef> cells;
    std::vector<uint32_t> hashSlots;
    size_t Rows() const { return width ? cells.size() / width : 0; }
  };

  // Reads the tables through their PrimaryKey indexes, whatever the key fields are named.
  // Database errors propagate as VbError, and leave the tables empty.
  void Load(db::Database& database);
  void Clear();

  // Seek "=" on each table: nullopt on no match. The texts live as long as the tables.
  std::optional<PrefixRow> SeekPrefix(std::string_view key) const;
  std::optional<DXCCRow> SeekDXCC(std::string_view key) const;
  std::optional<LocationRow> SeekLocation(std::string_view key) const;

  // Longest key of Prefix: a longer beginning of a callsign can't match.
  size_t LongestPrefixKey() const { return longestPrefixKey_; }
  // False when no key of Prefix has this length and begins like `text` (its first two
  // characters, case-blind): the Seek of that length can be spared, its answer being "no match".
  bool MayHavePrefixKey(std::string_view text, size_t length) const {
    if (length >= 32) return true;
    return (lengthsByStart_[StartSlot(text, length)] >> length) & 1u;
  }
  size_t PrefixCount() const { return prefixes_.Rows(); }
  size_t DXCCCount() const { return dxcc_.Rows(); }
  size_t LocationCount() const { return locations_.Rows(); }
  // Bytes the loaded tables occupy.
  size_t MemoryBytes() const;

  // The parts, for the compact form: written as they are and checked when read back.
  struct Parts {
    std::string* text;
    Table* tables[3];  // Prefix, DXCC, Location
    std::vector<uint32_t>* lengthsByStart;
    uint64_t* longestPrefixKey;
  };
  Parts MutableParts();
  // Whether parts read from elsewhere hold together: every reference inside the text block,
  // widths as the tables need, hashes of the right shape, at least half empty (so every probe
  // ends) and holding each row once. That the rows are the database's is the checksum's part.
  bool Consistent() const;

  static constexpr size_t kAlphabet = 37;  // A-Z, 0-9, anything else
  static constexpr size_t kStartSlots = kAlphabet * kAlphabet + kAlphabet;

 private:
  std::string_view TextOf(TextRef ref) const { return {text_.data() + ref.offset, ref.length}; }
  // The row of the key (any case), or nullptr.
  const TextRef* Find(const Table& table, std::string_view key) const;
  static uint64_t Hash(std::string_view upperKey);
  static void BuildSlots(Table& table, const std::string& text);

  std::string text_;  // every text once, one after another
  Table prefixes_;
  Table dxcc_;
  Table locations_;
  uint64_t longestPrefixKey_ = 0;

  // Which key lengths (bit n for length n < 32) occur per beginning: the first two characters
  // of the key, or the first alone for keys of length 1.
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
  std::vector<uint32_t> lengthsByStart_ = std::vector<uint32_t>(kStartSlots);
};

}  // namespace vellumar
