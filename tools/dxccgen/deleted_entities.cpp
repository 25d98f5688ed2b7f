#include "deleted_entities.h"

#include <cctype>
#include <fstream>
#include <sstream>

#include "country_files.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"

namespace vellumar::dxccgen {

namespace {

[[noreturn]] void Malformed(const std::string& path, int line, const std::string& what) {
  vb::Raise(vb::kTypeMismatch, path + " line " + std::to_string(line) + ": " + what);
}

// The first whole number of a zone field such as "02;05" or "47-48"; 0 if there is none.
int FirstNumber(const std::string& text) {
  size_t i = 0;
  while (i < text.size() && !std::isdigit(static_cast<unsigned char>(text[i]))) ++i;
  int value = 0;
  while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])))
    value = value * 10 + (text[i++] - '0');
  return value;
}

// "YYYY/MM/DD" as a date value.
bool ParseSlashDate(const std::string& text, double& value) {
  int y, m, d;
  char s1, s2;
  std::istringstream in(text);
  if (!(in >> y >> s1 >> m >> s2 >> d) || s1 != '/' || s2 != '/' || !in.eof()) return false;
  if (m < 1 || m > 12 || d < 1 || d > vb::DaysInMonth(y, m)) return false;
  value = vb::DateSerial(y, m, d);
  return true;
}

// The end of the last period of a validity text: "-1975/07/01", "1960/06/01-1975/07/05",
// "-1976/06/28 1976/06/29-=379" (the second period is the area's time as part of entity 379).
bool EndOfValidity(const std::string& validity, double& end) {
  std::istringstream periods(validity);
  std::string period;
  bool found = false;
  while (periods >> period) {
    size_t dash = period.find('-');
    if (dash == std::string::npos) return false;
    std::string to = period.substr(dash + 1);
    if (!to.empty() && to[0] == '=') continue;  // taken over by another entity
    double value;
    if (!ParseSlashDate(to, value)) return false;
    end = value;
    found = true;
  }
  return found;
}

}  // namespace

std::vector<std::string> ExpandPrefixNotation(const std::string& written) {
  size_t paren = written.find('(');
  if (paren != std::string::npos) {
    std::string letter = written.substr(paren + 1, written.find(')', paren) - paren - 1);
    return {written.substr(0, paren) + "-" + letter};
  }
  size_t open = written.find('[');
  if (open == std::string::npos) return {written};
  size_t close = written.find(']', open);
  if (close == std::string::npos) return {};
  std::string cls = written.substr(open + 1, close - open - 1);
  std::string chars;
  for (size_t i = 0; i < cls.size(); ++i) {
    if (i + 2 < cls.size() && cls[i + 1] == '-') {
      for (char c = cls[i]; c <= cls[i + 2]; ++c) chars += c;
      i += 2;
    } else {
      chars += cls[i];
    }
  }
  std::vector<std::string> result;
  for (char c : chars)
    for (const std::string& rest : ExpandPrefixNotation(written.substr(close + 1)))
      result.push_back(written.substr(0, open) + c + rest);
  return result;
}

std::vector<DeletedEntity> ReadDeletedEntities(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) vb::Raise(vb::kFileNotFound, path + ": cannot open the file");
  std::vector<DeletedEntity> rows;
  std::string text;
  int line = 0;
  while (std::getline(in, text)) {
    ++line;
    if (!text.empty() && text.back() == '\r') text.pop_back();
    if (line == 1 || text.empty()) continue;  // the header names the columns
    std::vector<std::string> f = SplitCsvLine(text);
    if (f.size() != 7) Malformed(path, line, std::to_string(f.size()) + " fields, 7 expected");
    DeletedEntity e;
    e.line = line;
    try {
      e.adif = std::stoi(f[0]);
    } catch (...) {
      Malformed(path, line, "ADIF number \"" + f[0] + "\" is no number");
    }
    e.name = f[1];
    std::istringstream prefixes(f[2]);
    for (std::string p; prefixes >> p;) {
      if (ExpandPrefixNotation(p).empty()) Malformed(path, line, "prefix \"" + p + "\" unreadable");
      e.prefixes.push_back(p);
    }
    if (e.prefixes.empty()) Malformed(path, line, "no prefix");
    e.continent = f[3];
    e.cqZone = FirstNumber(f[4]);
    e.ituZone = FirstNumber(f[5]);
    if (e.continent.size() != 2 || e.cqZone == 0 || e.ituZone == 0)
      Malformed(path, line, "continent or zones unreadable");
    if (!EndOfValidity(f[6], e.endDate))
      Malformed(path, line, "validity \"" + f[6] + "\" has no end date");
    rows.push_back(e);
  }
  return rows;
}

}  // namespace vellumar::dxccgen
