// The layering of the tree: every include of src/, app/ and tools/ is one the README's table
// allows, so dependencies point down only.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "layering/layering_rules.h"

namespace vellumar::layering {
namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

const char* kSmallTable = R"(
Some text.

| folder | may use |
|---|---|
| `src/platform/vb` | |
| `src/platform/db` | `platform/vb` |
| `src/frame` | `platform/vb` |
| `src/logpage` | `frame`, `platform/db`, `platform/vb` |

After the table.
)";

TEST(LayeringRules, ParsesTheTableOfTheReadme) {
  const Table table = ParseTable(kSmallTable);
  ASSERT_EQ(table.size(), 4u);
  EXPECT_TRUE(table.at("src/platform/vb").empty());
  EXPECT_EQ(table.at("src/logpage"),
            (std::set<std::string>{"frame", "platform/db", "platform/vb"}));
}

TEST(LayeringRules, AnIncludeAgainstTheTableIsReported) {
  const Table table = ParseTable(kSmallTable);
  const std::vector<std::string> files = {"src/frame/common.cpp", "src/logpage/main.cpp"};
  std::vector<Include> includes = IncludesOf(
      "src/frame/common.cpp",
      "#include \"frame/common.h\"\n#include <string>\n#include \"platform/vb/error.h\"\n");
  EXPECT_TRUE(Violations(table, includes, files).empty());

  // The frame reaching up into the Log page, and sideways into the record layer.
  for (auto& inc : IncludesOf("src/frame/common.cpp",
                              "#include \"logpage/vellum_main.h\"\n"
                              "  #  include \"platform/db/recordset.h\"\n"))
    includes.push_back(inc);
  const auto found = Violations(table, includes, files);
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0],
            "src/frame/common.cpp:1: src/frame may not use logpage (\"logpage/vellum_main.h\")");
  EXPECT_EQ(
      found[1],
      "src/frame/common.cpp:2: src/frame may not use platform/db (\"platform/db/recordset.h\")");
}

TEST(LayeringRules, AFileOutsideEveryFolderIsReported) {
  const Table table = ParseTable(kSmallTable);
  const auto found = Violations(table, {}, {"src/newthing/x.cpp"});
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0], "src/newthing/x.cpp: in no folder of the table");
}

TEST(Layering, EveryIncludeOfTheTreeIsAllowedByTheReadme) {
  const fs::path top(VELLUMAR_SOURCE_DIR);
  const Table table = ParseTable(ReadFile(top / "README.md"));
  ASSERT_GE(table.size(), 15u) << "the README's table of folders was not found";
  std::vector<std::string> files;
  std::vector<Include> includes;
  for (const char* root : {"src", "app", "tools"}) {
    for (const auto& entry : fs::recursive_directory_iterator(top / root)) {
      const std::string ext = entry.path().extension().string();
      if (!entry.is_regular_file() || (ext != ".h" && ext != ".cpp")) continue;
      const std::string file = fs::relative(entry.path(), top).generic_string();
      files.push_back(file);
      for (auto& inc : IncludesOf(file, ReadFile(entry.path()))) includes.push_back(inc);
    }
  }
  EXPECT_GT(files.size(), 150u);
  EXPECT_GT(includes.size(), 400u);
  for (const auto& v : Violations(table, includes, files)) ADD_FAILURE() << v;
}

}  // namespace
}  // namespace vellumar::layering
