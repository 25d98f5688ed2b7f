#include "frame/data_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "frame/settings_store.h"
#include "support/env_guard.h"
#include "support/temp_dir.h"

namespace vellumar {
namespace {

TEST(DataFolder, OwnVariableComesFirst) {
  test::EnvGuard env;
  env.Set("VELLUMAR_HOME", "/srv/ham/vellumar/");
  env.Set("XDG_DATA_HOME", "/xdg/data");
  EXPECT_EQ(DataFolder::FromEnvironment().path(), "/srv/ham/vellumar");
}

TEST(DataFolder, ThenTheXdgDataFolder) {
  test::EnvGuard env;
  env.Unset("VELLUMAR_HOME");
  env.Set("XDG_DATA_HOME", "/xdg/data");
  EXPECT_EQ(DataFolder::FromEnvironment().path(), "/xdg/data/vellumar");
  env.Set("VELLUMAR_HOME", "");  // empty counts as unset
  EXPECT_EQ(DataFolder::FromEnvironment().path(), "/xdg/data/vellumar");
}

TEST(DataFolder, ThenTheHomeFolder) {
  test::EnvGuard env;
  env.Unset("VELLUMAR_HOME");
  env.Unset("XDG_DATA_HOME");
  env.Set("HOME", "/home/op");
  EXPECT_EQ(DataFolder::FromEnvironment().path(), "/home/op/.local/share/vellumar");
  env.Set("XDG_DATA_HOME", "relative/data");  // not absolute: ignored
  EXPECT_EQ(DataFolder::FromEnvironment().path(), "/home/op/.local/share/vellumar");
}

TEST(DataFolder, CreatedWithItsSubfolders) {
  test::TempDir dir;
  const DataFolder folder(dir.Join("deep/data"));
  EXPECT_TRUE(folder.EnsureCreated());
  for (const char* sub : DataFolder::kSubfolders) {
    EXPECT_TRUE(std::filesystem::is_directory(folder.Join(sub))) << sub;
  }
  EXPECT_TRUE(folder.EnsureCreated());  // again: nothing to do
  EXPECT_EQ(folder.Join("ErrorLog.txt"), dir.Join("deep/data/ErrorLog.txt"));
}

TEST(DataFolder, CannotBeMadeUnderAFile) {
  test::TempDir dir;
  ASSERT_TRUE(test::WriteFileText(dir.Join("file"), "x"));
  EXPECT_FALSE(DataFolder(dir.Join("file/data")).EnsureCreated());
}

TEST(SettingsRoot, XdgConfigFolderOrHome) {
  test::EnvGuard env;
  env.Set("XDG_CONFIG_HOME", "/xdg/config/");
  EXPECT_EQ(SettingsStore::DefaultRoot(), "/xdg/config/vellumar");
  env.Unset("XDG_CONFIG_HOME");
  env.Set("HOME", "/home/op");
  EXPECT_EQ(SettingsStore::DefaultRoot(), "/home/op/.config/vellumar");
}

}  // namespace
}  // namespace vellumar
