// Callsigns from public ADIF logs, looked up in the generated DXCC database and compared with
// the entity numbers the logs themselves state. Old logs may hold calls whose entity has since
// changed, so the test asks for agreement of at least 98.5%, and prints the misses.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "platform/db/database.h"
#include "station/dxcc_compact.h"
#include "station/dxcc_module.h"
#include "station/installed_files.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

namespace vellumar {
namespace {

struct RealCall {
  std::string call;    // as logged
  std::string dxcc;    // the log's DXCC field
  std::string source;  // the ADIF file it came from, by its SHA-256 ("sha256:" + 12 digits)
};

std::vector<RealCall> ReadRealCalls(const std::string& path) {
  std::ifstream in(path);
  std::vector<RealCall> calls;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    RealCall c;
    std::getline(fields, c.call, '\t');
    std::getline(fields, c.dxcc, '\t');
    std::getline(fields, c.source, '\t');
    calls.push_back(c);
  }
  return calls;
}

TEST(RealCallsigns, GeneratedDatabaseAgreesWithTheLogs) {
  const std::string data = std::string(VELLUMAR_BINARY_DIR) + "/data";
  ASSERT_TRUE(std::filesystem::exists(data + "/DXCC.vdb")) << "build target dxcc_database first";
  std::vector<RealCall> calls =
      ReadRealCalls(std::string(VELLUMAR_SOURCE_DIR) + "/tests/station/data/real_calls.tsv");
  ASSERT_GE(calls.size(), 300u);

  test::ScriptedDesktop desktop;
  std::vector<std::string> notes;
  StationServices services;
  services.programFolder = data;
  services.GetSetting = [&](const std::string& app, const std::string& section,
                            const std::string& key, const std::string&) {
    EXPECT_EQ(app + "/" + section + "/" + key, "Atlasine/DXCCDatabase/DXCCDatabasePathname");
    return data + "/DXCC.vdb";
  };
  services.WriteErrorLog = [&](const std::string& text) { notes.push_back(text); };
  services.ReportError = [&](int number, const std::string& where) {
    ADD_FAILURE() << "error " << number << " in " << where;
  };
  services.desktop = &desktop;
  LookupSlots slots;
  DXCCModule module(services, slots);
  module.OpenDXCCDatabase();
  ASSERT_TRUE(module.IsOpen());

  std::map<std::string, std::pair<int, int>> bySource;  // source -> (agreed, total)
  int agreed = 0;
  std::string misses;
  for (const RealCall& c : calls) {
    module.Lookup(c.call);
    auto& [ok, total] = bySource[c.source];
    ++total;
    if (slots.DXCCID == c.dxcc) {
      ++agreed, ++ok;
    } else {
      misses += "  " + c.call + " expected " + c.dxcc + " got " +
                (slots.DXCCID.empty() ? "nothing" : slots.DXCCID + " (" + slots.DXCCPrefix + ")") +
                "  [" + c.source + "]\n";
    }
  }
  double percent = 100.0 * agreed / calls.size();
  std::printf("real callsigns: %d of %zu agree (%.2f%%)\n", agreed, calls.size(), percent);
  for (const auto& [source, counts] : bySource)
    std::printf("  %-40s %4d of %4d\n", source.c_str(), counts.first, counts.second);
  std::printf("misses:\n%s", misses.c_str());
  EXPECT_TRUE(notes.empty()) << notes.front();
  EXPECT_GE(percent, 98.5);
}

}  // namespace
}  // namespace vellumar

namespace vellumar {
namespace {

// A first start copies the installed database and the compact form the build made of it: the
// copy loads from the form, without walking the database's rows.
TEST(InstalledDXCC, FirstStartCopyLoadsFromTheInstalledForm) {
  const std::string data = std::string(VELLUMAR_BINARY_DIR) + "/data";
  ASSERT_TRUE(std::filesystem::exists(data + "/DXCC.vdb.lookup")) << "build dxcc_database first";
  test::TempDir home;
  std::vector<std::string> copied =
      CopyInstalledFilesWhenMissing(data, home.path(), StationInstalledFiles());
  EXPECT_EQ(copied, (std::vector<std::string>{"Databases/DXCC.vdb", "Databases/DXCC.vdb.lookup",
                                               "Databases/Bands.txt"}));
  const std::string path = home.Join("Databases/DXCC.vdb");
  db::Database database = db::DBEngine::Workspaces(0).OpenDatabase(path, true);
  DXCCTables tables;
  bool fromCompact = false;
  LoadDXCCTables(path, database, tables, &fromCompact);
  EXPECT_TRUE(fromCompact);
  EXPECT_GT(tables.LongestPrefixKey(), 0u);
}

}  // namespace
}  // namespace vellumar
