// The skin stays on top: below src/qt and app/vellumar no source includes a Qt header, so that
// every subsystem builds and runs without Qt.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>

namespace {

TEST(LayeringTest, NoQtHeaderOutsideTheSkin) {
  namespace fs = std::filesystem;
  const fs::path src = fs::path(VELLUMAR_SOURCE_DIR) / "src";
  const std::regex qtInclude(R"(^\s*#\s*include\s*[<"]Q[A-Za-z]*(/|>|"))");
  int scanned = 0;
  for (const auto& entry : fs::recursive_directory_iterator(src)) {
    if (!entry.is_regular_file()) continue;
    const fs::path relative = fs::relative(entry.path(), src);
    if (*relative.begin() == "qt") continue;
    const std::string ext = entry.path().extension().string();
    if (ext != ".h" && ext != ".cpp") continue;
    ++scanned;
    std::ifstream in(entry.path());
    std::string line;
    for (int n = 1; std::getline(in, line); ++n)
      EXPECT_FALSE(std::regex_search(line, qtInclude))
          << relative.string() << ":" << n << ": " << line;
  }
  EXPECT_GT(scanned, 50);
}

}  // namespace
