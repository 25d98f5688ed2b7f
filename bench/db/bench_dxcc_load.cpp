// bench_dxcc_load: the time of reading the generated DXCC database into memory at program start
// (DXCCTables::Load over the Prefix, DXCC and Location tables through the record layer), and a
// plain MoveFirst..EOF walk of Prefix reading every field. Medians of several runs, each on a
// freshly opened database.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench_util.h"
#include "platform/db/database.h"
#include "platform/vb/error.h"
#include "station/dxcc_tables.h"

namespace {

namespace db = vellumar::db;
using vellumar::bench::Clock;
using vellumar::bench::Median;
using vellumar::bench::Ms;
using vellumar::bench::Report;

}  // namespace

int main(int argc, char** argv) {
  std::string path = argc > 1 ? argv[1] : VELLUMAR_DXCC_DATABASE;
  int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 7;
  try {
    std::vector<double> load, walk;
    size_t prefixes = 0;
    long rows = 0;
    for (int r = 0; r < runs; ++r) {
      {
        auto t = Clock::now();
        db::Database database = db::DBEngine::Workspaces(0).OpenDatabase(path, true);
        vellumar::DXCCTables tables;
        tables.Load(database);
        database.Close();
        load.push_back(Ms(t));
        prefixes = tables.PrefixCount();
      }
      {
        db::Database database = db::DBEngine::Workspaces(0).OpenDatabase(path, true);
        db::Recordset rs = database.OpenRecordset("Prefix", db::dbOpenTable);
        db::Fields fields = rs.Fields();
        int n = fields.Count();
        std::vector<db::Field> each;
        for (int i = 0; i < n; ++i) each.push_back(rs.Fields(i));
        auto t = Clock::now();
        long count = 0;
        size_t bytes = 0;
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
          for (auto& f : each) bytes += f.Value().ToStringOrEmpty().size();
          ++count;
        }
        walk.push_back(Ms(t));
        rows = count;
        if (bytes == 0) std::fprintf(stderr, "# no text read\n");
        database.Close();
      }
    }
    std::fprintf(stderr, "# %s: %zu prefixes loaded, %ld Prefix rows walked, %d runs\n",
                 path.c_str(), prefixes, rows, runs);
    Report("db_dxcc_tables_load_ms", Median(load), "ms");
    Report("db_dxcc_prefix_walk_ms", Median(walk), "ms");
  } catch (const vellumar::vb::VbError& e) {
    std::fprintf(stderr, "bench_dxcc_load: error %d: %s\n", e.number(), e.description().c_str());
    return 1;
  }
  return 0;
}
