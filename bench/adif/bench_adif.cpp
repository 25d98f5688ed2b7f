// ADIF import and export of 100,000 QSOs through the program's Qt window on the offscreen
// platform: Start clicked on the Import tab of a fresh program with an empty log, the file
// dialog answered, the import running as shipped (DXCC lookup for records without a code,
// duplicate check, Progress counted per QSO, counters and bar repainting, batched commits),
// timed from the click to its return; then Start on the Export tab, writing the log back.
// Baselines in the same run: the same rows inserted into the log's QSOs table with raw SQLite
// in transactions of 500, and the export's bytes written with fwrite. The file has about 340
// entities of the built DXCC database, a fifth of its records without a DXCC code and 2 %
// repeated. Memory: the resident size sampled while the import runs.
#include <sqlite3.h>

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "bench_util.h"
#include "frame/settings_store.h"
#include "platform/services/clock.h"
#include "platform/vb/date_locale.h"
#include "program/application.h"
#include "qt/program_views.h"
#include "qt/qt_event_loop.h"
#include "support/adif_generator.h"
#include "support/frame_harness.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

using namespace vellumar;
using vellumar::bench::Clock;
using vellumar::bench::Median;
using vellumar::bench::Ms;
using vellumar::bench::Report;

namespace {

constexpr int kQSOs = 100000;
constexpr int kRuns = 3;

// The resident set of this process, in MB.
double ResidentMb() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.rfind("VmRSS:", 0) == 0) return std::atof(line.c_str() + 6) / 1024.0;
  return 0;
}

// The current entities of the DXCC database, each with the start of its calls.
std::vector<test::GeneratedEntity> CurrentEntities(const std::string& dxccPath) {
  std::vector<test::GeneratedEntity> entities;
  sqlite3* db = nullptr;
  sqlite3_open_v2(dxccPath.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  sqlite3_stmt* st = nullptr;
  sqlite3_prepare_v2(db, "SELECT DXCCPrefix, CountryCode FROM DXCC WHERE EndDate IS NULL", -1,
                     &st, nullptr);
  while (st && sqlite3_step(st) == SQLITE_ROW) {
    std::string prefix = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
    prefix = prefix.substr(0, prefix.find_first_of("-/"));
    entities.push_back({prefix, sqlite3_column_int(st, 1)});
  }
  sqlite3_finalize(st);
  sqlite3_close(db);
  return entities;
}

// One program with its windows over a folder of its own, started on an empty log.
struct Program {
  Program() {
    settings.SaveSetting("Vellumar", "Configuration", "Callsign", "K1ABC");
    settings.SaveSetting("Vellumar", "RAC", "RACEnabled", "0");
    app.emplace(ApplicationPlatform{
        .common = test::HarnessContext(dir.Join("data"), clock, desktop),
        .loop = loop,
        .settingsRoot = dir.Join("config"),
        .installedData = std::string(VELLUMAR_BINARY_DIR) + "/data",
        .exitProcess = [](int) {},
    });
    views.emplace(*app);
    app->Start();
  }
  ~Program() {
    for (QWidget* w : QApplication::topLevelWidgets()) w->hide();
    QCoreApplication::processEvents();
    views.reset();
    app.reset();
  }
  template <typename W>
  W* Find(const char* name) {
    return views->main.window()->findChild<W*>(QString::fromUtf8(name));
  }
  std::string Label(const char* name) { return Find<QLabel>(name)->text().toStdString(); }

  test::TempDir dir;
  SettingsStore settings{dir.Join("config")};
  ui::SystemClock clock;
  qt::QtEventLoop loop;
  test::ScriptedDesktop desktop;
  vb::ScopedDateLocale dateLocale{vb::DateLocale{}};
  std::optional<Application> app;
  std::optional<qt::ProgramViews> views;
};

// Inserts the rows of `log`'s QSOs table into a fresh copy of its schema with raw SQLite,
// prepared once, committed every 500 rows; milliseconds.
double RawInsertMs(const std::string& log, const std::string& scratch) {
  sqlite3* source = nullptr;
  sqlite3_open_v2(log.c_str(), &source, SQLITE_OPEN_READONLY, nullptr);
  std::vector<std::vector<std::string>> rows;
  std::vector<bool> nulls;
  int columns = 0;
  std::string create;
  {
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(source, "SELECT sql FROM sqlite_master WHERE name = 'QSOs'", -1, &st,
                       nullptr);
    if (sqlite3_step(st) == SQLITE_ROW)
      create = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
    sqlite3_finalize(st);
    sqlite3_prepare_v2(source, "SELECT * FROM QSOs", -1, &st, nullptr);
    columns = sqlite3_column_count(st);
    while (sqlite3_step(st) == SQLITE_ROW) {
      std::vector<std::string> row;
      for (int c = 0; c < columns; ++c) {
        const unsigned char* t = sqlite3_column_text(st, c);
        row.push_back(t ? reinterpret_cast<const char*>(t) : "");
        nulls.push_back(t == nullptr);
      }
      rows.push_back(std::move(row));
    }
    sqlite3_finalize(st);
  }
  sqlite3_close(source);

  std::remove(scratch.c_str());
  sqlite3* db = nullptr;
  sqlite3_open(scratch.c_str(), &db);
  sqlite3_exec(db, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
  sqlite3_exec(db, create.c_str(), nullptr, nullptr, nullptr);
  std::string insert = "INSERT INTO QSOs VALUES (?";
  for (int c = 1; c < columns; ++c) insert += ",?";
  insert += ")";
  const auto start = Clock::now();
  sqlite3_stmt* st = nullptr;
  sqlite3_prepare_v2(db, insert.c_str(), -1, &st, nullptr);
  sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
  for (std::size_t r = 0; r < rows.size(); ++r) {
    for (int c = 0; c < columns; ++c) {
      if (nulls[r * columns + c])
        sqlite3_bind_null(st, c + 1);
      else
        sqlite3_bind_text(st, c + 1, rows[r][c].c_str(), -1, SQLITE_STATIC);
    }
    sqlite3_step(st);
    sqlite3_reset(st);
    if ((r + 1) % 500 == 0) {
      sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
      sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    }
  }
  sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_finalize(st);
  const double ms = Ms(start);
  sqlite3_close(db);
  return ms;
}

// Writes `bytes` to `path` with fwrite in blocks as a program writing a file line by line
// would see them buffered; milliseconds.
double FwriteMs(const std::string& bytes, const std::string& path) {
  const auto start = Clock::now();
  FILE* f = std::fopen(path.c_str(), "wb");
  std::size_t at = 0;
  while (at < bytes.size()) {
    const std::size_t eol = bytes.find('\n', at);
    const std::size_t end = eol == std::string::npos ? bytes.size() : eol + 1;
    std::fwrite(bytes.data() + at, 1, end - at, f);
    at = end;
  }
  std::fclose(f);
  return Ms(start);
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication qapp(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);

  test::TempDir work;
  const std::string adi = work.Join("generated.adi");
  {
    test::AdifGeneratorOptions options;
    options.count = kQSOs;
    options.seed = 340;
    options.entities = CurrentEntities(std::string(VELLUMAR_BINARY_DIR) + "/data/DXCC.vdb");
    options.withoutDxccPercent = 20;
    options.duplicatePercent = 2;
    std::ofstream(adi, std::ios::binary) << test::GenerateAdif(options);
    std::printf("# %d QSOs over %zu entities\n", kQSOs, options.entities.size());
  }

  std::vector<double> importMs, exportMs, rawMs, fwriteMs;
  double rssBefore = 0, rssEarlyPeak = 0, rssPeak = 0;
  long imported = 0;
  for (int run = 0; run < kRuns; ++run) {
    Program p;
    // The resident size every 100 ms while the import runs (the tab yields to the loop).
    double early = 0, peak = 0;
    const auto started = Clock::now();
    double expectedMs = importMs.empty() ? 4000 : importMs.front();
    QTimer sampler;
    QObject::connect(&sampler, &QTimer::timeout, [&] {
      const double rss = ResidentMb();
      peak = std::max(peak, rss);
      if (Ms(started) < expectedMs / 5) early = std::max(early, rss);
    });
    const double before = ResidentMb();
    p.desktop.ExpectOpenFile(adi);
    sampler.start(100);
    auto start = Clock::now();
    p.Find<QPushButton>("ImportCmd")->click();
    importMs.push_back(Ms(start));
    sampler.stop();
    imported = std::atol(p.Label("ImportRecordsImported").c_str());
    if (run == 0) rssBefore = before, rssEarlyPeak = early, rssPeak = peak;

    const std::string out = p.dir.Join("export.adi");
    p.desktop.ExpectSaveFile(out);
    start = Clock::now();
    p.Find<QPushButton>("ExportCmd")->click();
    exportMs.push_back(Ms(start));
    const long exported = std::atol(p.Label("ExportRecordsExported").c_str());
    if (exported != imported) {
      std::fprintf(stderr, "exported %ld of %ld QSOs\n", exported, imported);
      return 1;
    }
    const std::string logPath = p.app->setup().LogPathname.Text();
    fwriteMs.push_back(FwriteMs(ReadFile(out), p.dir.Join("fwrite.adi")));
    rawMs.push_back(RawInsertMs(logPath, p.dir.Join("raw.db")));
  }
  if (imported < kQSOs * 9 / 10) {
    std::fprintf(stderr, "only %ld QSOs imported\n", imported);
    return 1;
  }
  std::printf("# imported %ld QSOs (the rest duplicates or illegal)\n", imported);
  const double imp = Median(importMs), exp = Median(exportMs);
  const double raw = Median(rawMs), fw = Median(fwriteMs);
  Report("adif_import_qt_qsos_per_s", kQSOs / (imp / 1000), "QSOs/s");
  Report("adif_import_raw_sqlite_rows_per_s", imported / (raw / 1000), "rows/s");
  Report("adif_import_vs_raw_sqlite", (kQSOs / imp) / (imported / raw), "x");
  Report("adif_export_qt_qsos_per_s", imported / (exp / 1000), "QSOs/s");
  Report("adif_export_fwrite_qsos_per_s", imported / (fw / 1000), "QSOs/s");
  Report("adif_export_vs_fwrite", fw / exp, "x");
  Report("adif_import_rss_growth", rssPeak - rssBefore, "MB");
  Report("adif_import_rss_after_first_fifth", rssPeak - rssEarlyPeak, "MB");
  return 0;
}
