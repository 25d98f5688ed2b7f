// The installed read-only data is found from the executable's place, in the build tree and in an
// installed tree alike, wherever the tree lies.
#include <gtest/gtest.h>

#include <filesystem>

#include "station/installed_files.h"
#include "support/temp_dir.h"

namespace vellumar {
namespace {

namespace fs = std::filesystem;

TEST(InstalledDataFolder, TheBuildTreeKeepsItsDataBesideBin) {
  test::TempDir dir;
  fs::create_directories(dir.Join("build/bin"));
  fs::create_directories(dir.Join("build/data"));
  EXPECT_EQ(InstalledDataFolderFor(dir.Join("build/bin/vellumar")), dir.Join("build/data"));
}

TEST(InstalledDataFolder, AnInstalledTreeKeepsItInShareVellumar) {
  test::TempDir dir;
  const std::string prefix = dir.Join("opt/ham radio");  // a prefix with a space
  fs::create_directories(prefix + "/bin");
  fs::create_directories(prefix + "/share/vellumar");
  EXPECT_EQ(InstalledDataFolderFor(prefix + "/bin/vellumar-cli"), prefix + "/share/vellumar");
}

TEST(InstalledDataFolder, ABinFolderReachedThroughDotsIsNormalised) {
  test::TempDir dir;
  fs::create_directories(dir.Join("usr/bin"));
  fs::create_directories(dir.Join("usr/share/vellumar"));
  EXPECT_EQ(InstalledDataFolderFor(dir.Join("usr/lib/../bin/vellumar")),
            dir.Join("usr/share/vellumar"));
}

TEST(InstalledDataFolder, WithNeitherTheBuildTreesFolderIsNamed) {
  // Nothing installed: the later copy finds no files and the program reports what it misses.
  test::TempDir dir;
  fs::create_directories(dir.Join("x/bin"));
  EXPECT_EQ(InstalledDataFolderFor(dir.Join("x/bin/vellumar")), dir.Join("x/data"));
}

// This test's own executable lies in the build's tests/ folder, beside bin/: the build's data.
TEST(InstalledDataFolder, TheRunningExecutableFindsTheBuildsData) {
  EXPECT_EQ(fs::path(InstalledDataFolder()),
            (fs::path(VELLUMAR_BINARY_DIR) / "data").lexically_normal());
}

}  // namespace
}  // namespace vellumar
