// The help pages: every topic the code opens with InvokeHelp has its page, the pages link only to
// each other (and to their stylesheet), never to the network, and the program puts them where
// its Help buttons look.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "station/installed_files.h"
#include "support/program_harness.h"
#include "support/temp_dir.h"

namespace vellumar {
namespace {

namespace fs = std::filesystem;

const std::string kSourceHelp = std::string(VELLUMAR_SOURCE_DIR) + "/help";
const std::string kBuildData = std::string(VELLUMAR_BINARY_DIR) + "/data";

std::string Read(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The topics named in calls of InvokeHelp throughout the program's sources.
std::set<std::string> TopicsInCode() {
  std::set<std::string> topics;
  const std::regex call(R"re(InvokeHelp\(\s*"([^"]+)"\s*\))re");
  for (const char* root : {"/src", "/app"}) {
    for (const auto& entry :
         fs::recursive_directory_iterator(std::string(VELLUMAR_SOURCE_DIR) + root)) {
      const std::string ext = entry.path().extension().string();
      if (!entry.is_regular_file() || (ext != ".cpp" && ext != ".h")) continue;
      const std::string text = Read(entry.path());
      for (std::sregex_iterator m(text.begin(), text.end(), call), end; m != end; ++m)
        topics.insert((*m)[1].str());
    }
  }
  return topics;
}

bool Write(const std::string& path, const std::string& text) {
  fs::create_directories(fs::path(path).parent_path());
  return test::WriteFileText(path, text);
}

std::vector<fs::path> Pages() {
  std::vector<fs::path> pages;
  for (const auto& entry : fs::directory_iterator(kSourceHelp))
    if (entry.path().extension() == ".htm") pages.push_back(entry.path());
  std::sort(pages.begin(), pages.end());
  return pages;
}

TEST(HelpPages, EveryTopicOpenedByTheCodeHasItsPage) {
  const std::set<std::string> topics = TopicsInCode();
  // The Help buttons of the main window, the Advanced window and the configuration window.
  for (const char* topic : {"Log.htm", "Items.htm", "Progress.htm", "QSL.htm", "Import.htm",
                            "Export.htm", "Configuration.htm", "MultipleQTHs.htm"}) {
    EXPECT_TRUE(topics.count(topic)) << topic << " is no longer opened by the code";
  }
  for (const std::string& topic : topics) {
    EXPECT_TRUE(fs::is_regular_file(kSourceHelp + "/" + topic)) << "no page for " << topic;
    // The build's copy, which `make run` and the tests' programs copy into the data folder.
    EXPECT_EQ(Read(kBuildData + "/Help/" + topic), Read(kSourceHelp + "/" + topic))
        << "the build's data/Help lacks or holds a stale " << topic;
  }
}

TEST(HelpPages, EveryPageIsCopiedIntoTheBuild) {
  for (const auto& entry : fs::directory_iterator(kSourceHelp)) {
    const std::string name = entry.path().filename().string();
    if (name == "CMakeLists.txt") continue;
    EXPECT_EQ(Read(kBuildData + "/Help/" + name), Read(entry.path()))
        << name << " is missing from help/CMakeLists.txt's list or stale in the build";
  }
}

TEST(HelpPages, EveryLinkResolvesAndNoneLeavesThePages) {
  const std::regex link(R"re((?:href|src)\s*=\s*"([^"]*)")re", std::regex::icase);
  const std::regex anchor(R"re(id\s*=\s*"([^"]*)")re", std::regex::icase);
  std::vector<fs::path> pages = Pages();
  ASSERT_GE(pages.size(), 9u);
  int links = 0;
  for (const fs::path& page : pages) {
    const std::string text = Read(page);
    EXPECT_NE(text.find("<title>"), std::string::npos) << page;
    EXPECT_NE(text.find("href=\"style.css\""), std::string::npos) << page << " lacks the style";
    for (std::sregex_iterator m(text.begin(), text.end(), link), end; m != end; ++m) {
      const std::string target = (*m)[1].str();
      ++links;
      EXPECT_EQ(target.find(':'), std::string::npos)
          << page.filename() << " links outside the pages: " << target;
      EXPECT_FALSE(target.empty()) << page.filename();
      const auto hash = target.find('#');
      const std::string file = target.substr(0, hash);
      const fs::path resolved = file.empty() ? page : page.parent_path() / file;
      ASSERT_TRUE(fs::is_regular_file(resolved)) << page.filename() << " -> " << target;
      if (hash != std::string::npos) {
        const std::string other = Read(resolved);
        bool found = false;
        for (std::sregex_iterator a(other.begin(), other.end(), anchor); a != end; ++a)
          found = found || (*a)[1].str() == target.substr(hash + 1);
        EXPECT_TRUE(found) << page.filename() << " -> " << target;
      }
    }
  }
  EXPECT_GT(links, 50);
}

// Every page can be reached from the contents page.
TEST(HelpPages, EveryPageIsReachableFromTheContents) {
  const std::regex link(R"re(href\s*=\s*"([^"#:]+\.htm))re", std::regex::icase);
  std::set<std::string> reached = {"index.htm"};
  std::vector<std::string> todo = {"index.htm"};
  while (!todo.empty()) {
    const std::string text = Read(kSourceHelp + "/" + todo.back());
    todo.pop_back();
    for (std::sregex_iterator m(text.begin(), text.end(), link), end; m != end; ++m)
      if (reached.insert((*m)[1].str()).second) todo.push_back((*m)[1].str());
  }
  for (const fs::path& page : Pages())
    EXPECT_TRUE(reached.count(page.filename().string())) << page.filename();
}

TEST(InstalledFolderFiles, ListsTheFolderBelowTheInstalledDataAndCopiesWhatIsMissing) {
  test::TempDir dir;
  const std::string installed = dir.Join("installed");
  ASSERT_TRUE(Write(installed + "/Help/Log.htm", "log"));
  ASSERT_TRUE(Write(installed + "/Help/style.css", "css"));
  ASSERT_TRUE(Write(installed + "/Help/images/mast.png", "png"));
  ASSERT_TRUE(Write(installed + "/Bands.txt", "bands"));
  const std::vector<InstalledFile> files = InstalledFolderFiles(installed, "Help");
  std::vector<std::string> names;
  for (const InstalledFile& f : files) {
    EXPECT_EQ(f.installed, f.data);
    names.push_back(f.data);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Help/Log.htm", "Help/images/mast.png",
                                             "Help/style.css"}));
  EXPECT_TRUE(InstalledFolderFiles(installed, "Absent").empty());

  // The operator's own edit of a page stays; the missing ones come.
  const std::string data = dir.Join("data");
  ASSERT_TRUE(Write(data + "/Help/Log.htm", "my notes"));
  const std::vector<std::string> copied = CopyInstalledFilesWhenMissing(installed, data, files);
  EXPECT_EQ(copied, (std::vector<std::string>{"Help/images/mast.png", "Help/style.css"}));
  EXPECT_EQ(test::ReadFileText(data + "/Help/Log.htm"), "my notes");
  EXPECT_EQ(test::ReadFileText(data + "/Help/style.css"), "css");
}

// The program's first start copies the build's pages into the data folder's Help, where the
// Help buttons open them in the desktop's viewer.
TEST(HelpPages, TheProgramCopiesThePagesAndItsHelpButtonsOpenThem) {
  test::ProgramHarness h(test::ProgramHarness::DXCC::kBuilt);
  h.SeedReturningOperator();
  Application& app = h.Start();
  for (const fs::path& page : Pages())
    EXPECT_TRUE(fs::is_regular_file(h.DataPath() + "/Help/" + page.filename().string()))
        << page.filename();
  EXPECT_TRUE(fs::is_regular_file(h.DataPath() + "/Help/style.css"));

  const std::string log = h.DataPath() + "/Help/Log.htm";
  h.desktop.ExpectShell("Open", log, "").WithShow(1);
  app.main.HelpLogCmd.UserClick();
  const std::string qths = h.DataPath() + "/Help/MultipleQTHs.htm";
  h.desktop.ExpectShell("Open", qths, "").WithShow(1);
  app.main.HelpQTHCmd.UserClick();
  const std::string config = h.DataPath() + "/Help/Configuration.htm";
  h.desktop.ExpectShell("Open", config, "").WithShow(1);
  app.setup().HelpCmd(0).UserClick();
}

}  // namespace
}  // namespace vellumar
