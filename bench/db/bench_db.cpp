// Benchmarks of the record layer on a log of 100,000 realistic QSOs, with raw SQLite figures
// measured in the same run as baselines. Prints "BENCH <name> <value> <unit>" lines; timings are
// medians of several runs.
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "bench_util.h"
#include "logstore/schema_tables.h"
#include "platform/db/database.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"

using namespace vellumar;
using namespace vellumar::db;

namespace {

using vellumar::bench::Clock;
using vellumar::bench::Median;
using vellumar::bench::Ms;
using vellumar::bench::Report;

// ---- The log's shape

// The log's QSOs table, field by field.
const auto& kQsoFields = logstore::kQSOFields;

void CreateQsoTable(Database& db, const std::string& name) {
  TableDef t = db.CreateTableDef(name);
  for (const auto& shape : kQsoFields) {
    Field f = t.CreateField(shape.name, shape.type, shape.size);
    f.SetAttributes(dbUpdatableField);
    if (shape.type == dbText || shape.type == dbMemo) f.SetAllowZeroLength(true);
    t.Fields().Append(f);
  }
  db.TableDefs().Append(t);
  for (auto [index, field] : {std::pair{"Timestamp", "QSO_Begin"}, std::pair{"Callsign", "Call"}}) {
    Index i = t.CreateIndex(index);
    i.Fields().Append(i.CreateField(field));
    t.Indexes().Append(i);
  }
}

// ---- Realistic QSOs

struct Entity {
  const char* prefix;  // DXCC prefix
  const char* id;      // DXCC entity number
  const char* cont;
  const char* cq;
  const char* itu;
  std::vector<const char*> callPrefixes;
  int weight;  // how often it's worked
};

const std::vector<Entity> kEntities = {
    {"K",
     "291",
     "NA",
     "5",
     "8",
     {"K", "W", "N", "AA", "AB", "AC", "KB", "KC", "KD", "WA", "WB"},
     30},
    {"VE", "1", "NA", "5", "4", {"VE", "VA", "VY"}, 6},
    {"DL", "230", "EU", "14", "28", {"DL", "DK", "DJ", "DF", "DO"}, 9},
    {"G", "223", "EU", "14", "27", {"G", "M", "2E"}, 6},
    {"F", "227", "EU", "14", "27", {"F"}, 4},
    {"I", "248", "EU", "15", "28", {"I", "IK", "IZ"}, 5},
    {"JA", "339", "AS", "25", "45", {"JA", "JH", "JR", "JE", "7K"}, 7},
    {"EA", "281", "EU", "14", "37", {"EA", "EB", "EC"}, 4},
    {"UA", "54", "EU", "16", "29", {"UA", "RA", "RU", "RW"}, 5},
    {"SP", "269", "EU", "15", "28", {"SP", "SQ", "SO"}, 3},
    {"PY", "108", "SA", "11", "15", {"PY", "PU", "PP"}, 3},
    {"LU", "100", "SA", "13", "14", {"LU", "LW"}, 2},
    {"VK", "150", "OC", "30", "59", {"VK"}, 3},
    {"ZL", "170", "OC", "32", "60", {"ZL"}, 1},
    {"ON", "209", "EU", "14", "27", {"ON", "OO"}, 2},
    {"PA", "263", "EU", "14", "27", {"PA", "PD", "PE"}, 3},
    {"HB", "287", "EU", "14", "28", {"HB9"}, 2},
    {"OK", "503", "EU", "15", "28", {"OK", "OL"}, 2},
    {"OH", "224", "EU", "15", "18", {"OH"}, 2},
    {"SM", "284", "EU", "14", "18", {"SM", "SA", "SE"}, 2},
    {"YU", "296", "EU", "15", "28", {"YU", "YT"}, 1},
    {"ZS", "462", "AF", "38", "57", {"ZS", "ZR"}, 1},
    {"KH6", "110", "OC", "31", "61", {"KH6", "NH6", "WH6"}, 1},
    {"9A", "497", "EU", "15", "28", {"9A"}, 1},
    {"KP4", "202", "NA", "8", "11", {"KP4", "NP4", "WP4"}, 1},
};

struct Band {
  const char* name;
  double lowMHz;
  double highMHz;
  int weight;
};
const std::vector<Band> kBands = {
    {"160M", 1.8, 2.0, 2},    {"80M", 3.5, 4.0, 7},     {"40M", 7.0, 7.3, 14},
    {"30M", 10.1, 10.15, 5},  {"20M", 14.0, 14.35, 25}, {"17M", 18.068, 18.168, 7},
    {"15M", 21.0, 21.45, 12}, {"12M", 24.89, 24.99, 4}, {"10M", 28.0, 29.7, 10},
    {"6M", 50.0, 54.0, 4},    {"2M", 144.0, 148.0, 2},
};
const std::vector<std::pair<const char*, int>> kModes = {{"SSB", 40},  {"CW", 35}, {"RTTY", 8},
                                                         {"PSK31", 8}, {"FM", 4},  {"AM", 1},
                                                         {"HELL", 1},  {"SSTV", 1}};
const char* kNames[] = {"John", "Bob", "Hans", "Pierre", "Taro", "Ivan",  "Maria", "Jose",
                        "Piet", "Jan", "Mike", "Steve",  "Karl", "Luigi", "Ana",   "Ken"};
const char* kQths[] = {"Boston", "Munich",  "Paris", "Osaka",  "Moscow", "Madrid", "Rome",
                       "Sydney", "Toronto", "Lima",  "Zurich", "Prague", "Oslo",   ""};

template <typename T, typename W>
const T& Weighted(const std::vector<T>& items, W weight, std::mt19937& rng) {
  int total = 0;
  for (const auto& i : items) total += weight(i);
  int r = static_cast<int>(rng() % static_cast<uint32_t>(total));
  for (const auto& i : items) {
    r -= weight(i);
    if (r < 0) return i;
  }
  return items.back();
}

struct Station {
  std::string call;
  const Entity* entity;
  std::string name;
  std::string qth;
  std::string grid;
};

class QsoMaker {
 public:
  explicit QsoMaker(uint32_t seed) : rng_(seed) {
    // A pool of stations: some are worked often, most once or twice.
    for (int i = 0; i < 40000; ++i) {
      const Entity& e = Weighted(
          kEntities, [](const Entity& x) { return x.weight; }, rng_);
      std::string call = e.callPrefixes[rng_() % e.callPrefixes.size()];
      if (!std::isdigit(static_cast<unsigned char>(call.back()))) call += char('0' + rng_() % 10);
      int letters = 1 + static_cast<int>(rng_() % 3);
      for (int k = 0; k < letters; ++k) call += char('A' + rng_() % 26);
      std::string grid;
      grid += char('A' + rng_() % 18);
      grid += char('A' + rng_() % 18);
      grid += char('0' + rng_() % 10);
      grid += char('0' + rng_() % 10);
      stations_.push_back(
          {call, &e, kNames[rng_() % std::size(kNames)], kQths[rng_() % std::size(kQths)], grid});
    }
    time_ = vb::DateSerial(2004, 1, 1);
  }

  // The values of the next QSO, as the 35 fields store them (empty text is Null).
  std::vector<std::string> Next() {
    // Zipf-like choice: low indexes far more often.
    double u = std::uniform_real_distribution<double>(0, 1)(rng_);
    size_t idx = static_cast<size_t>(std::pow(u, 3.0) * static_cast<double>(stations_.size()));
    const Station& s = stations_[std::min(idx, stations_.size() - 1)];
    const Band& b = Weighted(
        kBands, [](const Band& x) { return x.weight; }, rng_);
    const auto& mode = Weighted(
        kModes, [](const auto& x) { return x.second; }, rng_);
    // Twenty years of QSOs, mostly in order; one in ten was imported later, out of order.
    time_ += std::exponential_distribution<double>(1.0 / (7305.0 / 100000))(rng_);
    double when = time_;
    if (rng_() % 10 == 0) when -= std::uniform_real_distribution<double>(0, 2000)(rng_);
    when = std::round(when * 86400) / 86400;
    double freq =
        b.lowMHz + (b.highMHz - b.lowMHz) * std::uniform_real_distribution<double>(0, 1)(rng_);
    char freqText[16];
    std::snprintf(freqText, sizeof freqText, "%.4f", freq);
    bool cw = std::string(mode.first) == "CW";
    std::string rst = cw ? "599" : "59";
    bool qslIn = rng_() % 3 == 0;
    std::vector<std::string> v(35);
    v[0] = b.name;
    v[1] = s.call;
    v[2] = s.entity->prefix;
    v[3] = s.entity->id;
    v[4] = freqText;
    v[5] = mode.first;
    v[6] = rng_() % 2 ? s.name : "";
    v[7] = "K1VLM";
    v[8] = qslIn ? "Y" : (rng_() % 4 == 0 ? "R" : "N");
    v[9] = rng_() % 2 ? "Y" : "N";
    v[10] = rng_() % 8 == 0 ? s.entity->callPrefixes[0] + std::string("1QSL") : "";
    v[11] = rng_() % 10 == 0 ? "nice signal, worked through the pile-up" : "";
    v[12] = s.qth;
    v[13] = rst;
    v[14] = rst;
    v[15] = std::string(s.entity->prefix) == "K" ? "MA" : "";
    v[16] = qslIn ? "15-Jan-2010" : "";
    v[17] = qslIn ? "02-Mar-2010" : "";
    v[18] = "100";
    v[19] = vb::ToStorageText(when);
    v[20] = vb::ToStorageText(when + (3 + rng_() % 600) / 86400.0);
    v[21] = "TNX QSO 73";
    v[22] = s.entity->cont;
    v[23] = s.entity->itu;
    v[24] = s.entity->cq;
    v[25] = rng_() % 50 == 0 ? "EU-005" : "";
    v[26] = "";
    v[27] = rng_() % 20 == 0 ? "CQ-WW-CW" : "";
    v[28] = s.grid;
    v[29] = "";
    v[30] = "";
    v[31] = "";
    v[32] = "";
    v[33] = "home";
    v[34] = rng_() % 25 == 0 ? s.name + "\n12 Main Street\n" + s.qth : "";
    return v;
  }

 private:
  std::mt19937 rng_;
  std::vector<Station> stations_;
  double time_ = 0;
};

// ---- Raw SQLite, for set-up and baselines

void Check(int rc, sqlite3* db, const char* what) {
  if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW) {
    std::fprintf(stderr, "%s: %s\n", what, sqlite3_errmsg(db));
    std::exit(1);
  }
}

std::string InsertSql(const std::string& table) {
  std::string sql = "INSERT INTO \"" + table + "\"(";
  std::string marks;
  for (size_t i = 0; i < kQsoFields.size(); ++i) {
    sql += (i ? ", \"" : "\"") + std::string(kQsoFields[i].name) + "\"";
    marks += i ? ", ?" : "?";
  }
  return sql + ") VALUES(" + marks + ")";
}

void BindRow(sqlite3_stmt* st, const std::vector<std::string>& v) {
  for (size_t i = 0; i < v.size(); ++i) {
    if (v[i].empty()) {
      sqlite3_bind_null(st, static_cast<int>(i + 1));
    } else {
      sqlite3_bind_text(st, static_cast<int>(i + 1), v[i].data(), static_cast<int>(v[i].size()),
                        SQLITE_TRANSIENT);
    }
  }
}

// Fills a table with n QSOs in one transaction.
void Fill(const std::string& path, const std::string& table, int n, QsoMaker& maker) {
  sqlite3* db = nullptr;
  Check(sqlite3_open(path.c_str(), &db), db, "open");
  Check(sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), db, "begin");
  sqlite3_stmt* st = nullptr;
  Check(sqlite3_prepare_v2(db, InsertSql(table).c_str(), -1, &st, nullptr), db, "prepare");
  for (int i = 0; i < n; ++i) {
    BindRow(st, maker.Next());
    Check(sqlite3_step(st), db, "insert");
    sqlite3_reset(st);
  }
  sqlite3_finalize(st);
  Check(sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr), db, "commit");
  sqlite3_close(db);
}

// The journal settings the layer uses, so that the baselines differ from it only in the layer.
void SameSettings(sqlite3* raw) {
  sqlite3_exec(raw,
               "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; "
               "PRAGMA wal_autocheckpoint = 8192; PRAGMA journal_size_limit = 67108864",
               nullptr, nullptr, nullptr);
}

long VmHwmKb() {
  std::ifstream in("/proc/self/status");
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind("VmHWM:", 0) == 0) return std::strtol(line.c_str() + 6, nullptr, 10);
  }
  return -1;
}

// ---- The measurements

Recordset OpenView(Database& db, const std::string& sort, const std::string& filter) {
  Recordset base = db.OpenRecordset("QSOs", dbOpenDynaset);
  base.SetSort(sort);
  base.SetFilter(filter);
  Recordset view = base.OpenRecordset();
  if (!view.EOF_()) view.MoveLast();
  return view;
}

// The peak memory of opening and walking a view of a million rows, in a fresh process so that
// nothing measured before counts.
double MillionRowViewPeakMb(const std::string& dir) {
  std::string path = dir + "/million.vdb";
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
    CreateQsoTable(db, "QSOs");
    db.Close();
  }
  QsoMaker maker(7);
  auto t0 = Clock::now();
  Fill(path, "QSOs", 1000000, maker);
  std::fprintf(stderr, "# 1M rows built in %.1f s\n", Ms(t0) / 1000);
  int fds[2];
  if (pipe(fds) != 0) return -1;
  pid_t pid = fork();
  if (pid == 0) {
    close(fds[0]);
    long before = VmHwmKb();
    long rows = 0;
    {
      Database db = DBEngine::Workspaces(0).OpenDatabase(path);
      Recordset view = OpenView(db, "QSO_Begin", "");
      Field call = view.Fields("Call");
      for (view.MoveFirst(); !view.EOF_(); view.MoveNext()) {
        rows += call.Value().IsNull() ? 0 : 1;
      }
      rows = view.RecordCount();
    }
    long after = VmHwmKb();
    double mb = static_cast<double>(after - before) / 1024.0;
    std::string out = std::to_string(mb) + " " + std::to_string(rows) + "\n";
    if (write(fds[1], out.data(), out.size()) < 0) _exit(1);
    _exit(0);
  }
  close(fds[1]);
  char buf[64] = {};
  ssize_t n = read(fds[0], buf, sizeof buf - 1);
  close(fds[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  std::filesystem::remove(path);
  if (n <= 0) return -1;
  double mb = 0;
  long rows = 0;
  std::sscanf(buf, "%lf %ld", &mb, &rows);
  std::fprintf(stderr, "# 1M-row view walked: %ld rows\n", rows);
  return mb;
}

}  // namespace

int main() {
  std::string dir = (std::filesystem::temp_directory_path() / "vellumar-bench-XXXXXX").string();
  if (!mkdtemp(dir.data())) return 1;
  constexpr int kRuns = 5;
  try {
    Report("db_view_1m_rows_peak_mb", MillionRowViewPeakMb(dir), "MB");

    std::string path = dir + "/log.vdb";
    {
      Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
      CreateQsoTable(db, "QSOs");
      CreateQsoTable(db, "Inserts");
      db.Close();
    }
    QsoMaker maker(1);
    Fill(path, "QSOs", 100000, maker);
    Database db = DBEngine::Workspaces(0).OpenDatabase(path);

    std::vector<double> sorted, like, rawSorted;
    long count = 0, likeCount = 0;
    for (int r = 0; r < kRuns; ++r) {
      auto t = Clock::now();
      Recordset v = OpenView(db, "QSO_Begin", "");
      sorted.push_back(Ms(t));
      count = v.RecordCount();
      t = Clock::now();
      Recordset f = OpenView(db, "QSO_Begin", "Call LIKE 'K1*'");
      like.push_back(Ms(t));
      likeCount = f.RecordCount();
    }
    std::fprintf(stderr, "# sorted view %ld rows, K1* view %ld rows\n", count, likeCount);
    Report("db_view_open_sorted_ms", Median(sorted), "ms");
    Report("db_view_open_like_k1_ms", Median(like), "ms");

    {  // Baseline: the same key set read with raw SQLite.
      sqlite3* raw = nullptr;
      sqlite3_open(path.c_str(), &raw);
      for (int r = 0; r < kRuns; ++r) {
        auto t = Clock::now();
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(raw, "SELECT rowid FROM QSOs ORDER BY QSO_Begin, rowid", -1, &st,
                           nullptr);
        std::vector<int64_t> keys;
        while (sqlite3_step(st) == SQLITE_ROW) keys.push_back(sqlite3_column_int64(st, 0));
        sqlite3_finalize(st);
        rawSorted.push_back(Ms(t));
      }
      sqlite3_close(raw);
      Report("db_baseline_raw_sqlite_sorted_keys_ms", Median(rawSorted), "ms");
    }

    {  // FindFirst on the sorted view, calls known to be there.
      Recordset view = OpenView(db, "QSO_Begin", "");
      std::vector<double> finds;
      int misses = 0;
      // Calls taken from rows of the log, spread over it.
      std::vector<std::string> calls;
      std::mt19937 rng(5);
      for (int i = 0; i < 2000; ++i) {
        view.SetAbsolutePosition(static_cast<long>(rng() % static_cast<uint32_t>(count)));
        calls.push_back(view.Fields("Call").Value().ToString());
      }
      for (const auto& call : calls) {
        std::string criteria = "Call = '" + call + "'";
        auto t = Clock::now();
        view.FindFirst(criteria);
        finds.push_back(Ms(t));
        misses += view.NoMatch();
      }
      std::fprintf(stderr, "# FindFirst: %d of 2000 not found\n", misses);
      Report("db_findfirst_indexed_ms", Median(finds), "ms");
    }

    // Read walks: MoveFirst..EOF reading every field of every row, over the table in its own
    // order and over the view sorted by time, against a raw SELECT of every column in rowid order.
    // Each value is taken in its type on both sides (a Variant; the column's stored type) and
    // touched: a text copied, a number compared.
    {
      auto readWalk = [&](Recordset rs) {
        std::vector<Field> fields;
        for (int i = 0; i < rs.Fields().Count(); ++i) fields.push_back(rs.Fields(i));
        auto t = Clock::now();
        long rows = 0;
        size_t bytes = 0;
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
          for (auto& f : fields) {
            vb::Variant v = f.Value();
            if (v.IsString()) {
              bytes += v.ToString().size();
            } else if (!v.IsNull()) {
              bytes += v.ToDouble() != 0 ? 8 : 4;
            }
          }
          ++rows;
        }
        double perS = rows / (Ms(t) / 1000);
        if (rows != count || bytes == 0) {
          std::fprintf(stderr, "# read walk: %ld rows, %zu bytes\n", rows, bytes);
        }
        return perS;
      };
      std::vector<double> table, sortedView, baseline;
      for (int r = 0; r < kRuns; ++r) {
        table.push_back(readWalk(db.OpenRecordset("QSOs", dbOpenDynaset)));
        sortedView.push_back(readWalk(OpenView(db, "QSO_Begin", "")));
        sqlite3* raw = nullptr;
        sqlite3_open(path.c_str(), &raw);
        auto t = Clock::now();
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(raw, "SELECT * FROM QSOs ORDER BY rowid", -1, &st, nullptr);
        long rows = 0;
        size_t bytes = 0;
        while (sqlite3_step(st) == SQLITE_ROW) {
          for (int i = 0; i < sqlite3_column_count(st); ++i) {
            switch (sqlite3_column_type(st, i)) {
              case SQLITE_NULL:
                break;
              case SQLITE_INTEGER:
                bytes += sqlite3_column_int64(st, i) != 0 ? 8 : 4;
                break;
              case SQLITE_FLOAT:
                bytes += sqlite3_column_double(st, i) != 0 ? 8 : 4;
                break;
              default:
                bytes += std::string(reinterpret_cast<const char*>(sqlite3_column_text(st, i)),
                                     static_cast<size_t>(sqlite3_column_bytes(st, i)))
                             .size();
            }
          }
          ++rows;
        }
        sqlite3_finalize(st);
        baseline.push_back(rows / (Ms(t) / 1000));
        sqlite3_close(raw);
      }
      // Random access: a jump to a random position and a read of one field, as a display of
      // single rows or a search followed by a read does.
      std::vector<double> random;
      {
        Recordset view = OpenView(db, "QSO_Begin", "");
        Field call = view.Fields("Call");
        std::mt19937 rng(11);
        for (int r = 0; r < kRuns; ++r) {
          constexpr int kJumps = 20000;
          auto t = Clock::now();
          size_t bytes = 0;
          for (int i = 0; i < kJumps; ++i) {
            view.SetAbsolutePosition(static_cast<long>(rng() % static_cast<uint32_t>(count)));
            bytes += call.Value().ToStringOrEmpty().size();
          }
          random.push_back(kJumps / (Ms(t) / 1000));
          if (bytes == 0) std::fprintf(stderr, "# random reads: nothing read\n");
        }
      }
      Report("db_walk_read_rows_per_s", Median(table), "rows/s");
      Report("db_walk_sorted_view_read_rows_per_s", Median(sortedView), "rows/s");
      Report("db_baseline_raw_sqlite_read_rows_per_s", Median(baseline), "rows/s");
      Report("db_random_position_read_rows_per_s", Median(random), "rows/s");
    }

    // Edit walk (Edit, one field, Update, MoveNext; 20,000 rows a run) against raw prepared
    // UPDATEs by rowid of the same rows in the same order. The two alternate, each going first
    // in every other run, so that neither has the warmer cache throughout.
    {
      sqlite3* raw = nullptr;
      sqlite3_open(path.c_str(), &raw);
      SameSettings(raw);
      std::vector<int64_t> order;
      sqlite3_stmt* st = nullptr;
      sqlite3_prepare_v2(raw, "SELECT rowid FROM QSOs ORDER BY QSO_Begin, rowid", -1, &st, nullptr);
      while (sqlite3_step(st) == SQLITE_ROW) order.push_back(sqlite3_column_int64(st, 0));
      sqlite3_finalize(st);
      sqlite3_prepare_v2(raw, "UPDATE QSOs SET QSL_Rcvd = ? WHERE rowid = ?", -1, &st, nullptr);

      Recordset view = OpenView(db, "QSO_Begin", "");
      constexpr int kWalk = 20000;
      std::vector<double> layer, baseline;
      for (int r = 0; r < kRuns; ++r) {
        auto walk = [&] {
          view.SetAbsolutePosition(r * kWalk);
          auto t = Clock::now();
          int rows = 0;
          for (; rows < kWalk && !view.EOF_(); ++rows) {
            view.Edit();
            view.Fields("QSL_Sent").SetValue(r % 2 ? "R" : "Y");
            view.Update();
            view.MoveNext();
          }
          layer.push_back(rows / (Ms(t) / 1000));
        };
        auto rawWalk = [&] {
          auto t = Clock::now();
          for (int i = 0; i < kWalk; ++i) {
            sqlite3_bind_text(st, 1, r % 2 ? "N" : "Y", 1, SQLITE_STATIC);
            sqlite3_bind_int64(st, 2, order[static_cast<size_t>(r * kWalk + i)]);
            Check(sqlite3_step(st), raw, "update");
            sqlite3_reset(st);
          }
          baseline.push_back(kWalk / (Ms(t) / 1000));
        };
        if (r % 2) {
          rawWalk();
          walk();
        } else {
          walk();
          rawWalk();
        }
      }
      sqlite3_finalize(st);
      sqlite3_close(raw);
      Report("db_edit_walk_rows_per_s", Median(layer), "rows/s");
      Report("db_baseline_raw_sqlite_update_rows_per_s", Median(baseline), "rows/s");
    }

    // Inserts (AddNew, the QSO's fields, Update; 10,000 rows a run) against raw prepared INSERTs
    // of the same rows in autocommit, alternating as above.
    {
      sqlite3* raw = nullptr;
      sqlite3_open(path.c_str(), &raw);
      SameSettings(raw);
      sqlite3_stmt* st = nullptr;
      sqlite3_prepare_v2(raw, InsertSql("Inserts").c_str(), -1, &st, nullptr);
      Recordset rs = db.OpenRecordset("Inserts", dbOpenDynaset);
      std::vector<Field> fields;
      for (int i = 0; i < 35; ++i) fields.push_back(rs.Fields(i));
      QsoMaker m(3);
      std::vector<std::vector<std::string>> rows;
      for (int i = 0; i < 10000; ++i) rows.push_back(m.Next());
      std::vector<double> layer, baseline;
      for (int r = 0; r < kRuns; ++r) {
        auto insert = [&] {
          auto t = Clock::now();
          for (const auto& row : rows) {
            rs.AddNew();
            for (size_t i = 0; i < 35; ++i) {
              if (row[i].empty()) continue;
              if (i == 19 || i == 20) {
                fields[i].SetValue(vb::Variant::FromDate(*vb::FromStorageText(row[i])));
              } else {
                fields[i].SetValue(row[i]);
              }
            }
            rs.Update();
          }
          layer.push_back(rows.size() / (Ms(t) / 1000));
        };
        auto rawInsert = [&] {
          auto t = Clock::now();
          for (const auto& row : rows) {
            BindRow(st, row);
            Check(sqlite3_step(st), raw, "insert");
            sqlite3_reset(st);
          }
          baseline.push_back(rows.size() / (Ms(t) / 1000));
        };
        if (r % 2) {
          rawInsert();
          insert();
        } else {
          insert();
          rawInsert();
        }
      }
      sqlite3_finalize(st);
      sqlite3_close(raw);
      Report("db_insert_rows_per_s", Median(layer), "rows/s");
      Report("db_baseline_raw_sqlite_insert_rows_per_s", Median(baseline), "rows/s");
    }
    db.Close();
  } catch (const vb::VbError& e) {
    std::fprintf(stderr, "bench_db: error %d: %s\n", e.number(), e.description().c_str());
    std::filesystem::remove_all(dir);
    return 1;
  }
  std::filesystem::remove_all(dir);
  return 0;
}
