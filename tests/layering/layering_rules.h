#pragma once
// The layering of the code as a table: for each folder of the tree, the folders its sources may
// include. The table is the README's (section "Layout of the code"), so that the one a reader
// sees is the one the tests check.
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vellumar::layering {

// Folder (as "src/logpage", "app/cli") -> the folders it may include, as written in includes
// ("platform/db", "frame"). A folder may always include itself.
using Table = std::map<std::string, std::set<std::string>>;

// Reads the table from the markdown text: the rows "| `folder` | `a`, `b` |" of the first table
// whose header is "| folder | may use |".
Table ParseTable(const std::string& markdown);

struct Include {
  std::string file;    // path from the top of the tree, e.g. "src/logpage/vellum_main.cpp"
  int line = 0;        // 1-based
  std::string target;  // what the include names, e.g. "platform/db/recordset.h"
};

// Every `#include "..."` of a source text.
std::vector<Include> IncludesOf(const std::string& file, const std::string& text);

// Each include the table doesn't allow, and each file under no folder of the table, as
// "file:line: reason" lines.
std::vector<std::string> Violations(const Table& table, const std::vector<Include>& includes,
                                    const std::vector<std::string>& files);

}  // namespace vellumar::layering
