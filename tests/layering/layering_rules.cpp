#include "layering/layering_rules.h"

#include <regex>
#include <sstream>

namespace vellumar::layering {
namespace {

std::vector<std::string> Backticked(const std::string& cell) {
  std::vector<std::string> names;
  static const std::regex name("`([^`]+)`");
  for (auto it = std::sregex_iterator(cell.begin(), cell.end(), name); it != std::sregex_iterator();
       ++it)
    names.push_back((*it)[1]);
  return names;
}

// The folder of the table that holds `file`: the longest one that is a prefix of its path.
std::string FolderOf(const Table& table, const std::string& file) {
  std::string best;
  for (const auto& [folder, allowed] : table) {
    if (file.rfind(folder + "/", 0) == 0 && folder.size() > best.size()) best = folder;
  }
  return best;
}

// The folder an include reaches, written as includes write it ("platform/db"); the including
// file's own folder for a name without a folder.
std::string TargetFolder(const Table& table, const std::string& ownFolder,
                         const std::string& target) {
  if (target.find('/') == std::string::npos) return ownFolder;
  const std::string asSource = FolderOf(table, "src/" + target);
  if (!asSource.empty()) return asSource.substr(4);
  return target.substr(0, target.find('/'));
}

}  // namespace

Table ParseTable(const std::string& markdown) {
  Table table;
  std::istringstream in(markdown);
  std::string line;
  bool inTable = false;
  static const std::regex header(R"(^\|\s*folder\s*\|\s*may use\s*\|\s*$)");
  while (std::getline(in, line)) {
    if (!inTable) {
      inTable = std::regex_match(line, header);
      continue;
    }
    if (line.empty() || line[0] != '|') break;
    const size_t second = line.find('|', 1);
    if (second == std::string::npos) continue;
    const auto folder = Backticked(line.substr(1, second - 1));
    if (folder.size() != 1) continue;  // the separator row
    auto& allowed = table[folder[0]];
    for (const auto& name : Backticked(line.substr(second + 1))) allowed.insert(name);
  }
  return table;
}

std::vector<Include> IncludesOf(const std::string& file, const std::string& text) {
  std::vector<Include> includes;
  static const std::regex include(R"re(^\s*#\s*include\s*"([^"]+)")re");
  std::istringstream in(text);
  std::string line;
  for (int n = 1; std::getline(in, line); ++n) {
    std::smatch m;
    if (std::regex_search(line, m, include)) includes.push_back({file, n, m[1]});
  }
  return includes;
}

std::vector<std::string> Violations(const Table& table, const std::vector<Include>& includes,
                                    const std::vector<std::string>& files) {
  std::vector<std::string> found;
  for (const auto& file : files) {
    if (FolderOf(table, file).empty()) found.push_back(file + ": in no folder of the table");
  }
  for (const auto& inc : includes) {
    const std::string own = FolderOf(table, inc.file);
    if (own.empty()) continue;
    const std::string target = TargetFolder(table, own, inc.target);
    const std::string ownAsInclude = own.rfind("src/", 0) == 0 ? own.substr(4) : own;
    if (target == own || target == ownAsInclude) continue;
    if (table.at(own).count(target)) continue;
    found.push_back(inc.file + ":" + std::to_string(inc.line) + ": " + own + " may not use " +
                    target + " (\"" + inc.target + "\")");
  }
  return found;
}

}  // namespace vellumar::layering
