#include "country_files.h"

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <set>

#include "platform/vb/error.h"

namespace vellumar::dxccgen {

namespace {

std::string Trim(const std::string& s) {
  size_t b = s.find_first_not_of(" \t\r\n");
  if (b == std::string::npos) return "";
  size_t e = s.find_last_not_of(" \t\r\n");
  return s.substr(b, e - b + 1);
}

[[noreturn]] void Malformed(const std::string& path, int line, const std::string& what) {
  vb::Raise(vb::kTypeMismatch, path + " line " + std::to_string(line) + ": " + what);
}

std::ifstream OpenOrRaise(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) vb::Raise(vb::kFileNotFound, path + ": cannot open the file");
  return in;
}

bool ParseInt(const std::string& text, int& value) {
  if (text.empty() || text.size() > 6) return false;
  for (char c : text)
    if (!std::isdigit(static_cast<unsigned char>(c))) return false;
  value = std::atoi(text.c_str());
  return true;
}

bool ParseDouble(const std::string& text, double& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return end == text.c_str() + text.size() &&
         text.find_first_not_of("0123456789+-.") == std::string::npos;
}

const std::set<std::string> kContinents = {"AF", "AN", "AS", "EU", "NA", "OC", "SA"};

bool IsCallChar(char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/'; }

// One entry of a prefix list: "=CALL" or "PREFIX", then overrides in any order.
CtyPrefix ParsePrefix(const std::string& token, const std::string& path, int line) {
  CtyPrefix p;
  p.line = line;
  size_t i = 0;
  if (i < token.size() && token[i] == '=') {
    p.exactCall = true;
    ++i;
  }
  size_t start = i;
  while (i < token.size() && IsCallChar(token[i])) ++i;
  p.text = token.substr(start, i - start);
  if (p.text.empty()) Malformed(path, line, "entry \"" + token + "\" has no prefix or call");
  while (i < token.size()) {
    char open = token[i];
    char close = open == '('   ? ')'
                 : open == '[' ? ']'
                 : open == '{' ? '}'
                 : open == '<' ? '>'
                 : open == '~' ? '~'
                               : 0;
    size_t end = close ? token.find(close, i + 1) : std::string::npos;
    if (end == std::string::npos)
      Malformed(path, line, "entry \"" + token + "\" has an unreadable override");
    std::string inner = token.substr(i + 1, end - i - 1);
    int zone = 0;
    if (open == '(') {
      if (!ParseInt(inner, zone) || zone < 1 || zone > 40)
        Malformed(path, line, "entry \"" + token + "\": CQ zone \"" + inner + "\" is no zone");
      p.cqZone = zone;
    } else if (open == '[') {
      if (!ParseInt(inner, zone) || zone < 1 || zone > 90)
        Malformed(path, line, "entry \"" + token + "\": ITU zone \"" + inner + "\" is no zone");
      p.ituZone = zone;
    } else if (open == '{') {
      if (!kContinents.count(inner))
        Malformed(path, line,
                  "entry \"" + token + "\": continent \"" + inner + "\" is no continent");
      p.continent = inner;
    }
    // "<lat/lon>" and "~offset~" overrides don't concern the lookup.
    i = end + 1;
  }
  return p;
}

CtyEntity ParseHeader(const std::string& text, const std::string& path, int line) {
  std::vector<std::string> fields;
  size_t start = 0;
  for (size_t colon; (colon = text.find(':', start)) != std::string::npos; start = colon + 1)
    fields.push_back(Trim(text.substr(start, colon - start)));
  if (fields.size() != 8 || !Trim(text.substr(start)).empty())
    Malformed(path, line,
              "entity header has " + std::to_string(fields.size()) +
                  " colon-terminated fields, 8 expected");
  CtyEntity e;
  e.line = line;
  e.name = fields[0];
  if (e.name.empty()) Malformed(path, line, "entity header has no name");
  if (!ParseInt(fields[1], e.cqZone) || e.cqZone < 1 || e.cqZone > 40)
    Malformed(path, line, "CQ zone \"" + fields[1] + "\" of " + e.name + " is no zone");
  if (!ParseInt(fields[2], e.ituZone) || e.ituZone < 1 || e.ituZone > 90)
    Malformed(path, line, "ITU zone \"" + fields[2] + "\" of " + e.name + " is no zone");
  e.continent = fields[3];
  if (!kContinents.count(e.continent))
    Malformed(path, line, "continent \"" + fields[3] + "\" of " + e.name + " is no continent");
  if (!ParseDouble(fields[4], e.latitude) || !ParseDouble(fields[5], e.longitude) ||
      !ParseDouble(fields[6], e.utcOffset))
    Malformed(path, line, "latitude, longitude or time offset of " + e.name + " is no number");
  std::string primary = fields[7];
  if (!primary.empty() && primary[0] == '*') {
    e.notDXCC = true;
    primary.erase(0, 1);
  }
  bool ok = !primary.empty();
  for (char c : primary)
    if (!std::isalnum(static_cast<unsigned char>(c)) && c != '/') ok = false;
  if (!ok)
    Malformed(path, line, "main prefix \"" + fields[7] + "\" of " + e.name + " is unreadable");
  e.primary = primary;
  return e;
}

}  // namespace

std::vector<CtyEntity> ReadCtyDat(const std::string& path) {
  std::ifstream in = OpenOrRaise(path);
  std::vector<CtyEntity> entities;
  bool open = false;  // a record's prefix list is being read
  std::string text;
  int line = 0;
  while (std::getline(in, text)) {
    ++line;
    if (!text.empty() && text.back() == '\r') text.pop_back();
    if (Trim(text).empty()) continue;
    bool header = !std::isspace(static_cast<unsigned char>(text[0]));
    if (header) {
      if (open)
        Malformed(path, line,
                  "the prefix list of " + entities.back().name + " (line " +
                      std::to_string(entities.back().line) + ") has no closing \";\"");
      entities.push_back(ParseHeader(text, path, line));
      open = true;
      continue;
    }
    if (!open) Malformed(path, line, "prefix list outside an entity record");
    std::string body = Trim(text);
    bool ends = !body.empty() && body.back() == ';';
    if (ends) body.pop_back();
    if (body.find(';') != std::string::npos)
      Malformed(path, line, "\";\" before the end of the line");
    size_t start = 0;
    while (start <= body.size()) {
      size_t comma = body.find(',', start);
      std::string token =
          Trim(body.substr(start, comma == std::string::npos ? std::string::npos : comma - start));
      if (!token.empty()) {
        entities.back().prefixes.push_back(ParsePrefix(token, path, line));
      } else if (comma != std::string::npos && comma + 1 < body.size()) {
        Malformed(path, line, "empty entry in the prefix list");
      }
      if (comma == std::string::npos) break;
      start = comma + 1;
    }
    if (ends) {
      if (entities.back().prefixes.empty())
        Malformed(path, line, entities.back().name + " has an empty prefix list");
      open = false;
    }
  }
  if (open)
    Malformed(path, line,
              "the file ends inside the prefix list of " + entities.back().name + " (line " +
                  std::to_string(entities.back().line) + ")");
  if (entities.empty()) Malformed(path, line, "no entity records");
  return entities;
}

std::vector<std::string> SplitCsvLine(const std::string& line) {
  std::vector<std::string> fields;
  std::string field;
  bool quoted = false;
  for (size_t i = 0; i < line.size(); ++i) {
    char c = line[i];
    if (quoted) {
      if (c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
        field += '"';
        ++i;
      } else if (c == '"') {
        quoted = false;
      } else {
        field += c;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == ',') {
      fields.push_back(field);
      field.clear();
    } else {
      field += c;
    }
  }
  fields.push_back(field);
  return fields;
}

std::map<std::string, CtyCsvEntry> ReadCtyCsv(const std::string& path) {
  std::ifstream in = OpenOrRaise(path);
  std::map<std::string, CtyCsvEntry> entries;
  std::string text;
  int line = 0;
  while (std::getline(in, text)) {
    ++line;
    if (!text.empty() && text.back() == '\r') text.pop_back();
    if (Trim(text).empty()) continue;
    std::vector<std::string> f = SplitCsvLine(text);
    if (f.size() < 10) Malformed(path, line, "fewer than 10 fields");
    CtyCsvEntry e;
    e.name = Trim(f[1]);
    e.line = line;
    if (!ParseInt(Trim(f[2]), e.adif) || e.adif < 1 || e.adif > 999)
      Malformed(path, line, "ADIF number \"" + f[2] + "\" of " + e.name + " is no number");
    std::string primary = Trim(f[0]);
    if (entries.count(primary)) Malformed(path, line, "main prefix " + primary + " twice");
    entries[primary] = e;
  }
  if (entries.empty()) Malformed(path, line, "no entity rows");
  return entries;
}

void AssignAdifNumbers(std::vector<CtyEntity>& entities,
                       const std::map<std::string, CtyCsvEntry>& csv, const std::string& ctyPath,
                       const std::string& csvPath) {
  for (CtyEntity& e : entities) {
    std::string key = (e.notDXCC ? "*" : "") + e.primary;
    auto it = csv.find(key);
    if (it == csv.end())
      Malformed(ctyPath, e.line, e.name + " (" + key + ") has no row in " + csvPath);
    e.adif = it->second.adif;
  }
}

}  // namespace vellumar::dxccgen
