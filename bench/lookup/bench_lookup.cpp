// bench_lookup: callsign lookups per second on one core, over 100,000 real-looking calls made
// from the generated database's prefixes and the real calls of the test data, with portable
// forms mixed in. A plain hash probe of the same strings is measured in the same run as the
// baseline.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

#include "bench_util.h"
#include "platform/db/database.h"
#include "station/dxcc_module.h"
#include "station/installed_files.h"

namespace {

namespace db = vellumar::db;
using Clock = std::chrono::steady_clock;

constexpr int kCalls = 100000;
constexpr int kRuns = 7;

double Seconds(Clock::time_point from) {
  return std::chrono::duration<double>(Clock::now() - from).count();
}

// Plain prefixes of the database: no whole calls (they carry digits and suffix letters of
// their own), no dashed or slashed keys.
std::vector<std::string> PlainPrefixes(const std::string& path) {
  db::Database database = db::DBEngine::Workspaces(0).OpenDatabase(path, true);
  db::Recordset rs = database.OpenRecordset("Prefix", db::dbOpenTable);
  db::Field key = rs.Fields("Prefix");
  std::vector<std::string> prefixes;
  for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
    std::string k = key.Value().ToString();
    if (k.size() <= 4 && k.find_first_of("/-") == std::string::npos) prefixes.push_back(k);
  }
  database.Close();
  return prefixes;
}

std::vector<std::string> RealCalls() {
  std::ifstream in(std::string(VELLUMAR_SOURCE_DIR) + "/tests/station/data/real_calls.tsv");
  std::vector<std::string> calls;
  for (std::string line; std::getline(in, line);)
    if (!line.empty() && line[0] != '#') calls.push_back(line.substr(0, line.find('\t')));
  return calls;
}

std::vector<std::string> MakeCalls(const std::vector<std::string>& prefixes,
                                   const std::vector<std::string>& real) {
  std::mt19937 rng(20240315);
  auto pick = [&](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(rng); };
  auto letters = [&](int n) {
    std::string s;
    for (int i = 0; i < n; ++i) s += static_cast<char>('A' + pick(26));
    return s;
  };
  std::vector<std::string> calls;
  calls.reserve(kCalls);
  while (static_cast<int>(calls.size()) < kCalls) {
    std::string call;
    if (pick(4) == 0) {
      call = real[pick(real.size())];
    } else {
      call = prefixes[pick(prefixes.size())];
      if (call.find_first_of("0123456789", 1) == std::string::npos)
        call += static_cast<char>('0' + pick(10));
      call += letters(1 + static_cast<int>(pick(3)));
    }
    switch (pick(20)) {  // portable forms, about one call in three
      case 0:
      case 1:
      case 2:
        call += "/P";
        break;
      case 3:
        call += "/MM";
        break;
      case 4:
        call += "/QRP";
        break;
      case 5:
      case 6:
        call += "/" + std::to_string(pick(10));
        break;
      case 7:
        call = prefixes[pick(prefixes.size())] + "/" + call;
        break;
      case 8:
        call += "/" + letters(1);
        break;
      default:
        break;
    }
    calls.push_back(call);
  }
  return calls;
}

}  // namespace

int main() {
  using namespace vellumar;
  const std::string data = InstalledDataFolder();
  const std::string path = data + "/DXCC.vdb";

  StationServices services;
  services.programFolder = data;
  services.GetSetting = [&](const std::string&, const std::string&, const std::string&,
                            const std::string&) { return path; };
  long notes = 0;
  services.WriteErrorLog = [&](const std::string&) { ++notes; };
  services.ReportError = [&](int number, const std::string& where) {
    std::fprintf(stderr, "bench_lookup: error %d in %s\n", number, where.c_str());
  };
  LookupSlots slots;
  DXCCModule module(services, slots);
  Clock::time_point start = Clock::now();
  module.OpenDXCCDatabase();
  double loadSeconds = Seconds(start);
  if (!module.IsOpen()) return 1;

  std::vector<std::string> calls = MakeCalls(PlainPrefixes(path), RealCalls());
  std::unordered_set<std::string> set(calls.begin(), calls.end());

  std::vector<double> lookupRates, probeRates;
  long found = 0, hits = 0;
  for (int run = 0; run < kRuns; ++run) {
    start = Clock::now();
    for (const std::string& call : calls) {
      module.Lookup(call);
      found += !slots.DXCCID.empty();
    }
    lookupRates.push_back(calls.size() / Seconds(start));
    start = Clock::now();
    for (const std::string& call : calls) hits += set.count(call);
    probeRates.push_back(calls.size() / Seconds(start));
  }
  std::fprintf(stderr, "# %zu calls, %.1f%% with an entity, %zu prefix keys loaded\n", calls.size(),
               100.0 * found / (static_cast<double>(kRuns) * calls.size()),
               module.Tables().PrefixCount());
  std::printf("BENCH lookup_calls_per_s %.0f calls/s\n", vellumar::bench::Median(lookupRates));
  std::printf("BENCH lookup_baseline_hash_probe_per_s %.0f probes/s\n", vellumar::bench::Median(probeRates));
  std::printf("BENCH lookup_database_load_s %.2f s\n", loadSeconds);
  return hits == static_cast<long>(kRuns) * static_cast<long>(calls.size()) ? 0 : 1;
}
