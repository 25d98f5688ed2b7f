// bench_dxcc_load: the DXCC tables' load at program start, by the ways measured against each
// other: from the compact form beside the database (what the program does while the form is
// current), from the database through the record layer (what it does when the form must be
// made anew), and no load at all with each lookup's Seeks served by SQLite's index (the longest
// match of 20,000 callsign beginnings through one prepared statement). Also the loaded tables'
// memory and a plain MoveFirst..EOF walk of Prefix reading every field. Medians of several runs,
// each on a freshly opened copy of the generated database in a temporary folder.
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench_util.h"
#include "platform/db/database.h"
#include "platform/vb/error.h"
#include "station/dxcc_compact.h"
#include "station/dxcc_tables.h"

namespace {

namespace db = vellumar::db;
namespace fs = std::filesystem;
using vellumar::bench::Clock;
using vellumar::bench::Median;
using vellumar::bench::Ms;
using vellumar::bench::Report;

// Longest matches served by SQLite's index of Prefix, one prepared statement for every Seek.
double SqliteIndexLookupsPerS(const std::string& path, const std::vector<std::string>& calls) {
  sqlite3* raw = nullptr;
  sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READONLY, nullptr);
  sqlite3_stmt* st = nullptr;
  sqlite3_prepare_v2(raw, "SELECT DXCCPrefix, Location FROM Prefix WHERE Prefix = ?", -1, &st,
                     nullptr);
  auto t = Clock::now();
  long found = 0;
  for (const std::string& call : calls) {
    for (size_t n = call.size(); n >= 1; --n) {
      sqlite3_bind_text(st, 1, call.data(), static_cast<int>(n), SQLITE_STATIC);
      bool hit = sqlite3_step(st) == SQLITE_ROW;
      sqlite3_reset(st);
      if (hit) {
        ++found;
        break;
      }
    }
  }
  double perS = calls.size() / (Ms(t) / 1000);
  sqlite3_finalize(st);
  sqlite3_close(raw);
  if (found == 0) std::fprintf(stderr, "# SQLite index: nothing found\n");
  return perS;
}

}  // namespace

int main(int argc, char** argv) {
  std::string source = argc > 1 && argv[1][0] ? argv[1] : VELLUMAR_DXCC_DATABASE;
  int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 7;
  std::string dir = (fs::temp_directory_path() / "vellumar-dxcc-XXXXXX").string();
  if (!mkdtemp(dir.data())) return 1;
  const std::string path = dir + "/DXCC.vdb";
  fs::copy_file(source, path);
  bool compactUsed = true;
  try {
    std::vector<double> compact, fromDatabase, walk;
    size_t prefixes = 0, bytes = 0;
    long rows = 0;
    for (int r = 0; r < runs; ++r) {
      {  // The form made anew: the database's tables through the record layer.
        fs::remove(vellumar::DXCCCompactPath(path));
        auto t = Clock::now();
        db::Database database = db::DBEngine::Workspaces(0).OpenDatabase(path, true);
        vellumar::DXCCTables tables;
        bool fromCompact = true;
        vellumar::LoadDXCCTables(path, database, tables, &fromCompact);
        database.Close();
        fromDatabase.push_back(Ms(t));
        if (fromCompact) std::fprintf(stderr, "# the form was used where it was removed\n");
      }
      {  // The form current: what a start reads.
        auto t = Clock::now();
        db::Database database = db::DBEngine::Workspaces(0).OpenDatabase(path, true);
        vellumar::DXCCTables tables;
        bool fromCompact = false;
        vellumar::LoadDXCCTables(path, database, tables, &fromCompact);
        database.Close();
        compact.push_back(Ms(t));
        compactUsed = compactUsed && fromCompact;
        prefixes = tables.PrefixCount();
        bytes = tables.MemoryBytes();
      }
      {
        db::Database database = db::DBEngine::Workspaces(0).OpenDatabase(path, true);
        db::Recordset rs = database.OpenRecordset("Prefix", db::dbOpenTable);
        int n = rs.Fields().Count();
        std::vector<db::Field> each;
        for (int i = 0; i < n; ++i) each.push_back(rs.Fields(i));
        auto t = Clock::now();
        long count = 0;
        size_t text = 0;
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
          for (auto& f : each) text += f.Value().ToStringOrEmpty().size();
          ++count;
        }
        walk.push_back(Ms(t));
        rows = count;
        if (text == 0) std::fprintf(stderr, "# no text read\n");
        database.Close();
      }
    }
    // Beginnings of callsigns for the index: every 16th key of Prefix with letters behind it.
    std::vector<std::string> calls;
    {
      db::Database database = db::DBEngine::Workspaces(0).OpenDatabase(path, true);
      db::Recordset rs = database.OpenRecordset("Prefix", db::dbOpenTable);
      db::Field key = rs.Fields("Prefix");
      long i = 0;
      for (rs.MoveFirst(); !rs.EOF_() && calls.size() < 20000; rs.MoveNext())
        if (i++ % 16 == 0) calls.push_back(key.Value().ToStringOrEmpty() + "XYZ");
      database.Close();
    }
    std::vector<double> indexRates;
    for (int r = 0; r < std::min(runs, 3); ++r)
      indexRates.push_back(SqliteIndexLookupsPerS(path, calls));
    std::fprintf(stderr, "# %s: %zu prefixes loaded, %ld Prefix rows walked, %d runs%s\n",
                 source.c_str(), prefixes, rows, runs,
                 compactUsed ? "" : "; the compact form was NOT used");
    Report("db_dxcc_tables_load_ms", Median(compact), "ms");
    Report("db_dxcc_tables_load_from_database_ms", Median(fromDatabase), "ms");
    Report("db_dxcc_tables_memory_mb", static_cast<double>(bytes) / (1024.0 * 1024.0), "MB");
    Report("db_dxcc_sqlite_index_lookups_per_s", Median(indexRates), "calls/s");
    Report("db_dxcc_prefix_walk_ms", Median(walk), "ms");
  } catch (const vellumar::vb::VbError& e) {
    std::fprintf(stderr, "bench_dxcc_load: error %d: %s\n", e.number(), e.description().c_str());
    fs::remove_all(dir);
    return 1;
  }
  fs::remove_all(dir);
  return compactUsed ? 0 : 1;
}
