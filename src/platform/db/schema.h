#pragma once
// The layer's picture of a table: its fields in column order with their Jet types and sizes, and
// its indexes. Read from the file's own schema plus the metadata tables (see database.h).
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vellumar::db::detail {

struct ColumnInfo {
  std::string name;              // as created, case kept
  int type = 10;                 // FieldType
  long size = 0;                 // characters for dbText; bytes of the type otherwise; 0 memo
  long attributes = 0;           // FieldAttribute bits
  bool allowZeroLength = false;  // text and memo: "" may be stored
  bool required = false;         // Null refused by Update
};

struct IndexInfo {
  std::string name;        // the program's name, per table ("PrimaryKey")
  std::string sqliteName;  // the name in the file, "<table>.<name>"
  bool primary = false;    // unique, and Null refused in its fields
  bool unique = false;
  std::vector<std::string> fields;  // column names, key order
};

struct TableSchema {
  std::string name;
  std::vector<ColumnInfo> columns;
  std::vector<IndexInfo> indexes;
  std::unordered_map<std::string, int> byLowerName;  // lower-cased column name -> ordinal

  int Find(const std::string& name) const;                    // -1 when absent, case-blind
  const IndexInfo* FindIndex(const std::string& name) const;  // case-blind
  void BuildLookup();
};

// Field size of the fixed-size types, in bytes, and the defaults of a new field.
long DefaultSize(int type);
long DefaultAttributes(int type);
bool IsTextType(int type);  // dbText or dbMemo
bool IsKnownType(int type);

// The declared SQLite column type of a field ("VARCHAR(13)", "DATETIME", ...) with its collation.
std::string ColumnDeclaration(const ColumnInfo& column);
// The field type and size a declared type stands for; unknown declarations follow SQLite's
// affinity rules (text-like as memo, integer-like as long, real-like as double).
void ParseDeclaredType(const std::string& declared, int& type, long& size);

std::string Lower(std::string s);
bool EqualsNoCase(const std::string& a, const std::string& b);

}  // namespace vellumar::db::detail
