// The ADIF import on any bytes, through both of its callers, into a real log with a small DXCC
// database: the sibling programs' `log` command (`Process`, one text) and the file import
// (`ImportFile`, the bytes written to a file), whose operator presses Abort once the passes
// outnumber what any file of that size needs, since a value declared past the end of the file
// repeats its pass until then. Whatever the bytes, the import ends, every QSO it stored is a
// whole row (every text field written, if only as an empty text: an empty <CALL:0> is a QSO
// like any other), the counters agree with the rows, and the log stays sound.
#include <sqlite3.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "adif/adif_import.h"
#include "awards/progress_init.h"
#include "logstore/log_schema.h"
#include "station/band_table.h"
#include "station/dxcc_module.h"
#include "support/frame_harness.h"
#include "support/test_dxcc_database.h"

namespace {

using namespace vellumar;

void Fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

// The Abort button, pressed after a bounded number of passes.
class AbortingView final : public adif::ImportView {
 public:
  explicit AbortingView(std::size_t passes) : left_(passes) {}
  bool Continue() override { return left_ > 0 && left_-- > 0; }

 private:
  std::size_t left_;
};

// What every input shares: the frame, the DXCC database and the bands.
struct Station {
  Station() {
    frame.common.Initialize();
    const std::string databases = frame.DataPath() + "/Databases";
    std::filesystem::create_directories(databases);
    test::CreateTestDXCCDatabase(
        databases + "/DXCC.vdb",
        {{"K", 291, "United States", std::nullopt},
         {"DL", 230, "Fed. Rep. of Germany", std::nullopt},
         {"JA", 339, "Japan", std::nullopt}},
        {{"K", "K", "K"}, {"W", "K", "K"}, {"DL", "DL", "DL"}, {"JA", "JA", "JA"}},
        {{"K", "NA", 5, 8}, {"DL", "EU", 14, 28}, {"JA", "AS", 25, 45}});
    services = MakeStationServices(frame.common, frame.settings, frame.desktop);
    dxcc = std::make_unique<DXCCModule>(services, slots);
    dxcc->OpenDXCCDatabase();
    bands.InitializeBandArray(std::string(VELLUMAR_SOURCE_DIR) + "/data/Bands.txt");
  }
  test::FrameHarness frame;
  StationServices services;
  LookupSlots slots;
  std::unique_ptr<DXCCModule> dxcc;
  BandTable bands{[](const std::string&) {}, [](int, const std::string&) {}};
};

Station& TheStation() {
  static Station* station = new Station;
  return *station;
}

// The QSOs rows and how many were left without a call written; -1 when the log isn't sound.
long CheckLog(const std::string& path, long* broken) {
  sqlite3* db = nullptr;
  long rows = -1;
  *broken = 0;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &st, nullptr) == SQLITE_OK &&
        sqlite3_step(st) == SQLITE_ROW &&
        std::string(reinterpret_cast<const char*>(sqlite3_column_text(st, 0))) == "ok") {
      sqlite3_finalize(st);
      st = nullptr;
      if (sqlite3_prepare_v2(db,
                             "SELECT count(*), total(Call IS NULL) FROM QSOs",
                             -1, &st, nullptr) == SQLITE_OK &&
          sqlite3_step(st) == SQLITE_ROW) {
        rows = sqlite3_column_int64(st, 0);
        *broken = sqlite3_column_int64(st, 1);
      }
    }
    sqlite3_finalize(st);
  }
  sqlite3_close(db);
  return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Station& s = TheStation();
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  // The log and the input in memory where the system has such a folder: a log is made anew
  // for every input, and the disk's syncs would set the pace.
  struct Folder {
    explicit Folder(Station& s) {
      std::error_code error;
      const std::string shm = "/dev/shm/vellumar-fuzz-" + std::to_string(getpid());
      path = std::filesystem::create_directories(shm, error) ? shm : s.frame.dir.Join("");
      owned = path == shm;
    }
    ~Folder() {
      std::error_code error;
      if (owned) std::filesystem::remove_all(path, error);
    }
    std::string path;
    bool owned = false;
  };
  static const Folder folder(s);
  const std::string logPath = folder.path + "/fuzz.vdb";
  const std::string input = folder.path + "/fuzz.adi";
  std::filesystem::remove(logPath);
  db::Recordset progress;
  logstore::LogSchema schema(s.frame.common.errorLog(), [&](db::Database& log) {
    InitializeProgressTableFromDatabase(log, s.dxcc->GetDXCCRecordset(), progress,
                                        [](int, const std::string&) {});
  });
  if (!schema.CreateLog(logPath)) Fail("the log could not be created");
  long imported = 0;
  {
    db::Database log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
    progress = log.OpenRecordset("Progress", db::dbOpenDynaset);
    progress.SetSort("Prefix");
    db::Recordset progressView = progress.OpenRecordset();
    db::Recordset qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    qsos.SetSort("QSO_Begin");
    db::Recordset logView = qsos.OpenRecordset();
    adif::AdifImport import(adif::ImportServices{log, progressView, s.dxcc.get(), &s.slots,
                                                 &s.bands, &s.frame.common.errorLog()},
                            adif::ImportSettings{.myCallsign = "W1AW"});

    import.Process(bytes, logView);

    if (FILE* f = std::fopen(input.c_str(), "wb")) {
      std::fwrite(bytes.data(), 1, bytes.size(), f);
      std::fclose(f);
    }
    AbortingView view(2 * size + 64);
    import.SetView(&view);
    const adif::ImportOutcome outcome = import.ImportFile(input, logView);
    if (outcome == adif::ImportOutcome::kUnreadable) Fail("the input file could not be read");
    if (import.ImportInProgress()) Fail("the import still counts as running");
    const adif::ImportCounters& c = import.Counters();
    imported = c.imported;
    if (c.imported > c.processed) Fail("more QSOs imported than processed");
    if (import.ReportText().size() > adif::AdifImport::kReportLimit + 200)
      Fail("the report outgrew its bound");
    progress = db::Recordset();
  }
  long broken = 0;
  const long rows = CheckLog(logPath, &broken);
  if (rows < 0) Fail("the log is not sound after the import");
  if (broken != 0) Fail("a QSO was stored half: its call was never written");
  if (rows < imported) Fail("fewer rows in the log than QSOs counted as imported");
  std::filesystem::remove(input);
  return 0;
}
