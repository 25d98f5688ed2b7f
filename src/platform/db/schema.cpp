#include "platform/db/schema.h"

#include <cctype>
#include <cstdlib>

#include "platform/db/dao_constants.h"

namespace vellumar::db::detail {

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

bool EqualsNoCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  }
  return true;
}

int TableSchema::Find(const std::string& name) const {
  auto it = byLowerName.find(Lower(name));
  return it == byLowerName.end() ? -1 : it->second;
}

const IndexInfo* TableSchema::FindIndex(const std::string& name) const {
  for (const auto& index : indexes) {
    if (EqualsNoCase(index.name, name)) return &index;
  }
  return nullptr;
}

void TableSchema::BuildLookup() {
  byLowerName.clear();
  for (size_t i = 0; i < columns.size(); ++i) {
    byLowerName.emplace(Lower(columns[i].name), static_cast<int>(i));
  }
}

long DefaultSize(int type) {
  switch (type) {
    case dbBoolean:
      return 1;
    case dbByte:
      return 1;
    case dbInteger:
      return 2;
    case dbLong:
      return 4;
    case dbSingle:
      return 4;
    case dbDouble:
      return 8;
    case dbDate:
      return 8;
    case dbText:
      return 50;
    default:
      return 0;  // memo
  }
}

long DefaultAttributes(int type) { return IsTextType(type) ? dbVariableField : dbFixedField; }

bool IsTextType(int type) { return type == dbText || type == dbMemo; }

bool IsKnownType(int type) {
  switch (type) {
    case dbBoolean:
    case dbByte:
    case dbInteger:
    case dbLong:
    case dbSingle:
    case dbDouble:
    case dbDate:
    case dbText:
    case dbMemo:
      return true;
    default:
      return false;
  }
}

std::string ColumnDeclaration(const ColumnInfo& column) {
  switch (column.type) {
    case dbBoolean:
      return "BOOLEAN";
    case dbByte:
      return "TINYINT";
    case dbInteger:
      return "SMALLINT";
    case dbLong:
      return "INTEGER";
    case dbSingle:
      return "REAL";
    case dbDouble:
      return "DOUBLE";
    case dbDate:
      return "DATETIME";
    case dbText:
      return "VARCHAR(" + std::to_string(column.size) + ") COLLATE NOCASE";
    default:
      return "TEXT COLLATE NOCASE";
  }
}

void ParseDeclaredType(const std::string& declared, int& type, long& size) {
  std::string d;
  for (char c : declared) d += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  auto starts = [&](const char* prefix) { return d.rfind(prefix, 0) == 0; };
  if (starts("VARCHAR")) {
    type = dbText;
    size = 255;
    auto open = d.find('(');
    if (open != std::string::npos) size = std::strtol(d.c_str() + open + 1, nullptr, 10);
    if (size <= 0) size = 255;
    return;
  }
  if (d == "TEXT" || d == "MEMO") {
    type = dbMemo;
    size = 0;
    return;
  }
  if (d == "DATETIME" || d == "DATE") {
    type = dbDate;
    size = 8;
    return;
  }
  if (d == "BOOLEAN" || d == "BIT") {
    type = dbBoolean;
    size = 1;
    return;
  }
  if (d == "TINYINT" || d == "BYTE") {
    type = dbByte;
    size = 1;
    return;
  }
  if (d == "SMALLINT") {
    type = dbInteger;
    size = 2;
    return;
  }
  if (d == "INTEGER" || d == "INT" || d == "LONG") {
    type = dbLong;
    size = 4;
    return;
  }
  if (d == "REAL" || d == "SINGLE") {
    type = dbSingle;
    size = 4;
    return;
  }
  if (d == "DOUBLE" || d == "FLOAT") {
    type = dbDouble;
    size = 8;
    return;
  }
  // Another tool's file: SQLite's affinity rules.
  if (d.find("INT") != std::string::npos) {
    type = dbLong;
    size = 4;
    return;
  }
  if (d.find("CHAR") != std::string::npos || d.find("CLOB") != std::string::npos ||
      d.find("TEXT") != std::string::npos || d.empty()) {
    type = dbMemo;
    size = 0;
    return;
  }
  if (d.find("REAL") != std::string::npos || d.find("FLOA") != std::string::npos ||
      d.find("DOUB") != std::string::npos) {
    type = dbDouble;
    size = 8;
    return;
  }
  type = dbDouble;  // NUMERIC affinity
  size = 8;
}

}  // namespace vellumar::db::detail
