#pragma once
// A fresh log in a frame of its own with a small DXCC database, and the import and export
// working on it as the program's window and the command-line tool do.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "adif/adif_export.h"
#include "adif/adif_import.h"
#include "awards/progress_init.h"
#include "logstore/log_schema.h"
#include "station/band_table.h"
#include "station/dxcc_module.h"
#include "support/frame_harness.h"
#include "support/test_dxcc_database.h"

namespace vellumar::adif::test {

struct ImportHarness {
  // The DXCC database the build generated from the country files, instead of the small one.
  struct BuiltDXCC {};

  ImportHarness() : ImportHarness(false) {}
  explicit ImportHarness(BuiltDXCC) : ImportHarness(true) {}

 private:
  static void CreateSmallDXCCDatabase(const std::string& path) {
    vellumar::test::CreateTestDXCCDatabase(
        path,
        {
            {"K", 291, "United States", std::nullopt},
            {"VE", 1, "Canada", std::nullopt},
            {"DL", 230, "Fed. Rep. of Germany", std::nullopt},
            {"G", 223, "England", std::nullopt},
            {"JA", 339, "Japan", std::nullopt},
        },
        {{"K", "K", "K"}, {"W", "K", "K"}, {"N", "K", "K"}, {"AA", "K", "K"},
         {"VE", "VE", "VE"}, {"DL", "DL", "DL"}, {"G", "G", "G"}, {"JA", "JA", "JA"}},
        {{"K", "NA", 5, 8}, {"VE", "NA", 4, 9}, {"DL", "EU", 14, 28}, {"G", "EU", 14, 27},
         {"JA", "AS", 25, 45}});
  }

  explicit ImportHarness(bool builtDXCC) {
    frame.common.Initialize();
    const std::string databases = frame.DataPath() + "/Databases";
    std::filesystem::create_directories(databases);
    if (builtDXCC) {
      std::filesystem::copy_file(std::string(VELLUMAR_BINARY_DIR) + "/data/DXCC.vdb",
                                 databases + "/DXCC.vdb");
    } else {
      CreateSmallDXCCDatabase(databases + "/DXCC.vdb");
    }
    services = MakeStationServices(frame.common, frame.settings, frame.desktop);
    dxcc = std::make_unique<DXCCModule>(services, slots);
    dxcc->OpenDXCCDatabase();
    bands.InitializeBandArray(std::string(VELLUMAR_SOURCE_DIR) + "/data/Bands.txt");
    logPath = frame.dir.Join("LOG.vdb");
    logstore::LogSchema schema(frame.common.errorLog(), [this](db::Database& log) {
      InitializeProgressTableFromDatabase(log, dxcc->GetDXCCRecordset(), progress,
                                          [](int, const std::string&) {});
    });
    EXPECT_TRUE(schema.CreateLog(logPath));
    OpenLog();
    import = std::make_unique<AdifImport>(
        ImportServices{log, progressView, dxcc.get(), &slots, &bands, &frame.common.errorLog()},
        ImportSettings{.myCallsign = "W1AW"});
  }

 public:
  void OpenLog() {
    log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
    progress = log.OpenRecordset("Progress", db::dbOpenDynaset);
    progress.SetSort("Prefix");
    progressView = progress.OpenRecordset();
    qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    qsos.SetSort("QSO_Begin");
    logView = qsos.OpenRecordset();
  }

  // Writes `text` to a file of the test's folder and imports it; the outcome.
  ImportOutcome ImportText(const std::string& text, const std::string& name = "in.adi") {
    const std::string path = frame.dir.Join(name);
    vellumar::test::WriteFileText(path, text);
    return ImportPath(path);
  }
  ImportOutcome ImportPath(const std::string& path) {
    const ImportOutcome outcome = import->ImportFile(path, logView, &openError);
    logView.Requery();
    return outcome;
  }

  // The rows of QSOs in start order (ties in the order written).
  long Rows() {
    db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    if (rs.EOF_()) return 0;
    rs.MoveLast();
    return rs.RecordCount();
  }
  // Field `index` of row `row` (0-based, in the order written) as text.
  std::string Value(long row, int index) {
    db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    for (long i = 0; i < row; ++i) rs.MoveNext();
    return rs.Fields(index).Value().ToStringOrEmpty();
  }
  double DateValue(long row, int index) {
    db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    for (long i = 0; i < row; ++i) rs.MoveNext();
    return rs.Fields(index).Value().ToDate();
  }
  std::string ProgressLetter(const std::string& prefix, const std::string& column) {
    db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("Prefix = '" + prefix + "'");
    if (rs.NoMatch()) return "<none>";
    return rs.Fields(column).Value().ToStringOrEmpty();
  }

  // Lines written to the error log after its banner, without their dates.
  std::vector<std::string> ErrorLogEntries() const {
    std::vector<std::string> lines;
    const std::string text = vellumar::test::ReadFileText(frame.ErrorLogPath());
    std::size_t start = 0;
    while (start < text.size()) {
      std::size_t end = text.find('\n', start);
      if (end == std::string::npos) end = text.size();
      std::string line = text.substr(start, end - start);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      const std::size_t mark = line.find(" > ");
      lines.push_back(mark == std::string::npos ? line : line.substr(mark + 3));
      start = end + 1;
    }
    if (lines.size() >= 6) lines.erase(lines.begin(), lines.begin() + 6);
    return lines;
  }

  vellumar::test::FrameHarness frame;
  StationServices services;
  LookupSlots slots;
  std::unique_ptr<DXCCModule> dxcc;
  BandTable bands{[](const std::string&) {}, [](int, const std::string&) {}};
  std::string logPath;
  db::Database log;
  db::Recordset progress, progressView, qsos, logView;
  std::unique_ptr<AdifImport> import;
  std::string openError;
};

}  // namespace vellumar::adif::test
