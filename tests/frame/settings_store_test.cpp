#include "frame/settings_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "frame/atomic_file.h"
#include "platform/vb/error.h"
#include "support/temp_dir.h"

namespace vellumar {
namespace {

class SettingsStoreTest : public ::testing::Test {
 protected:
  test::TempDir dir;
  SettingsStore store{dir.Join("config/vellumar")};
};

TEST_F(SettingsStoreTest, MissingValuesGiveTheDefault) {
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "Callsign", "none"), "none");
  store.SaveSetting("Vellumar", "Configuration", "Run", "1");
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "Callsign", "none"), "none");
  EXPECT_EQ(store.GetSetting("Vellumar", "Windows", "Run", "d"), "d");
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "Run", "d"), "1");
}

TEST_F(SettingsStoreTest, FolderIsMadeOnFirstSaveAndFileIsPrivate) {
  EXPECT_FALSE(std::filesystem::exists(store.root()));
  store.SaveSetting("Vellumar", "Configuration", "eQSLPassword", "secret");
  EXPECT_EQ(store.FilePath("Vellumar"), dir.Join("config/vellumar/Vellumar.ini"));
  struct stat st {};
  ASSERT_EQ(stat(store.FilePath("Vellumar").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
  EXPECT_EQ(test::ReadFileText(store.FilePath("Vellumar")),
            "[Configuration]\neQSLPassword=secret\n");
}

TEST_F(SettingsStoreTest, WindowStateAndWindowstateAreOneKey) {
  store.SaveSetting("Vellumar", "Windows", "VellumMainWindowState", "2");
  EXPECT_EQ(store.GetSetting("Vellumar", "Windows", "VellumMainWindowstate", "0"), "2");
  EXPECT_EQ(store.GetSetting("Vellumar", "windows", "VELLUMMAINWINDOWSTATE", "0"), "2");
  store.SaveSetting("Vellumar", "Windows", "VellumMainWindowstate", "1");
  EXPECT_EQ(store.GetSetting("Vellumar", "Windows", "VellumMainWindowState", "0"), "1");
  EXPECT_EQ(test::ReadFileText(store.FilePath("Vellumar")), "[Windows]\nVellumMainWindowState=1\n");
}

TEST_F(SettingsStoreTest, KeysKeepTheirLeadingBlank) {
  store.SaveSetting("Vellumar", "Configuration", " LogFontItalic", "True");
  store.SaveSetting("Vellumar", "Configuration", "LogFontItalic", "False");
  store.SaveSetting("Vellumar", "Configuration", " LogPanelFontItalic", "False");
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", " LogFontItalic", ""), "True");
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "LogFontItalic", ""), "False");
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", " logfontitalic", ""), "True");
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", " LogPanelFontItalic", "x"), "False");
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "LogPanelFontItalic", "x"), "x");
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "  LogFontItalic", "x"), "x");
}

TEST_F(SettingsStoreTest, SiblingsHaveTheirOwnFiles) {
  store.SaveSetting("Atlasine", "DXCCDatabase", "Pathname", "/opt/atlasine/DXCC.vdb");
  store.SaveSetting("Trailmark", "RAC", "Pathname", "/opt/callbook");
  store.SaveSetting("Vellumar", "RAC", "Pathname", "/own");
  EXPECT_TRUE(std::filesystem::exists(store.root() + "/Atlasine.ini"));
  EXPECT_TRUE(std::filesystem::exists(store.root() + "/Trailmark.ini"));
  EXPECT_TRUE(std::filesystem::exists(store.root() + "/Vellumar.ini"));
  EXPECT_EQ(store.GetSetting("Atlasine", "DXCCDatabase", "Pathname", ""), "/opt/atlasine/DXCC.vdb");
  EXPECT_EQ(store.GetSetting("Vellumar", "DXCCDatabase", "Pathname", "none"), "none");
  EXPECT_EQ(store.GetSetting("Trailmark", "RAC", "Pathname", ""), "/opt/callbook");
  EXPECT_EQ(store.GetSetting("Vellumar", "RAC", "Pathname", ""), "/own");
  // A sibling that has written nothing gives defaults.
  EXPECT_EQ(store.GetSetting("Clustrine", "General", "X", "d"), "d");
}

TEST_F(SettingsStoreTest, ASiblingsFileWrittenByItselfIsRead) {
  std::filesystem::create_directories(store.root());
  ASSERT_TRUE(test::WriteFileText(store.root() + "/Atlasine.ini",
                                  "[General]\nDXCCDatabaseDirectory=/data/atlasine\n"));
  EXPECT_EQ(store.GetSetting("Atlasine", "general", "dxccdatabasedirectory", ""), "/data/atlasine");
}

TEST_F(SettingsStoreTest, NonsenseFileIsReadAsFarAsItMakesSenseAndRepairedOnSave) {
  std::filesystem::create_directories(store.root());
  const std::string nonsense =
      "[Configuration]\nCallsign=K1ABC\n\x01\x02\x03 garbage\xff\n[Windows\nLost=1\n"
      "[Windows]\nVellumMainLeft=\"unterminated\nVellumMainTop=15\n";
  ASSERT_TRUE(test::WriteFileText(store.FilePath("Vellumar"), nonsense));
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "Callsign", ""), "K1ABC");
  EXPECT_EQ(store.GetSetting("Vellumar", "Windows", "VellumMainTop", ""), "15");
  EXPECT_EQ(store.GetSetting("Vellumar", "Windows", "VellumMainLeft", "0"), "0");
  EXPECT_EQ(store.GetSetting("Vellumar", "Windows", "Lost", "no"), "no");

  store.SaveSetting("Vellumar", "Windows", "VellumMainLeft", "40");
  EXPECT_EQ(test::ReadFileText(store.FilePath("Vellumar")),
            "[Configuration]\nCallsign=K1ABC\n\n[Windows]\nVellumMainTop=15\nVellumMainLeft=40\n");
}

TEST_F(SettingsStoreTest, ValuesOfAnyTextRoundTrip) {
  const std::string values[] = {
      "",  " leading", "trailing ",      "a\nb",     "\"q\"",    "C:\\Logs\\x.vdb",
      "=", "[x]",      ";not a comment", "Grüße 73", "tab\there"};
  int i = 0;
  for (const std::string& value : values) {
    store.SaveSetting("Vellumar", "Odd", "Key" + std::to_string(i++), value);
  }
  i = 0;
  SettingsStore fresh(store.root());
  for (const std::string& value : values) {
    EXPECT_EQ(fresh.GetSetting("Vellumar", "Odd", "Key" + std::to_string(i++), "?"), value);
  }
}

TEST_F(SettingsStoreTest, AFileThatCannotBeReadIsNotReplaced) {
  std::filesystem::create_directories(store.FilePath("Vellumar"));  // a folder in its place
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "Callsign", "d"), "d");
  try {
    store.SaveSetting("Vellumar", "Configuration", "Callsign", "K1ABC");
    ADD_FAILURE() << "no error raised";
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), vb::kPathFileAccessError);
  }
  EXPECT_TRUE(std::filesystem::is_directory(store.FilePath("Vellumar")));
}

TEST_F(SettingsStoreTest, AFolderThatCannotBeMadeRaises75) {
  ASSERT_TRUE(test::WriteFileText(dir.Join("plainfile"), "x"));
  SettingsStore blocked(dir.Join("plainfile/vellumar"));
  try {
    blocked.SaveSetting("Vellumar", "Configuration", "Callsign", "K1ABC");
    ADD_FAILURE() << "no error raised";
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), vb::kPathFileAccessError);
  }
  EXPECT_EQ(blocked.GetSetting("Vellumar", "Configuration", "Callsign", "d"), "d");
}

TEST_F(SettingsStoreTest, TemporaryFilesAreNeverTakenForTheStoreAndStaleOnesGo) {
  store.SaveSetting("Vellumar", "Configuration", "Callsign", "K1ABC");
  // A save of another process that died half-way, and one of a process still running.
  const std::string dead = AtomicTemporaryName(store.FilePath("Vellumar"), 4194305);
  const std::string alive = AtomicTemporaryName(store.FilePath("Vellumar"), 1);
  ASSERT_TRUE(test::WriteFileText(dead, "[Configuration]\nCallsign=TORN"));
  ASSERT_TRUE(test::WriteFileText(alive, "[Configuration]\nCallsign=OTHER"));
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "Callsign", ""), "K1ABC");

  store.SaveSetting("Vellumar", "Configuration", "Run", "1");
  EXPECT_FALSE(std::filesystem::exists(dead));
  EXPECT_TRUE(std::filesystem::exists(alive));
  EXPECT_EQ(store.GetSetting("Vellumar", "Configuration", "Callsign", ""), "K1ABC");
  // Our own save leaves no temporary behind.
  EXPECT_FALSE(std::filesystem::exists(
      AtomicTemporaryName(store.FilePath("Vellumar"), static_cast<long>(getpid()))));
}

TEST_F(SettingsStoreTest, ApplicationNameStaysInsideTheFolder) {
  EXPECT_EQ(store.FilePath("../evil"), store.root() + "/..-evil.ini");
}

}  // namespace
}  // namespace vellumar
