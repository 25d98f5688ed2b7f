#include "adif_commands.h"

#include <sys/stat.h>

#include <csignal>
#include <cstdio>
#include <map>

#include "adif/adif_export.h"
#include "adif/adif_import.h"
#include "awards/progress_init.h"
#include "cli_frame.h"
#include "logstore/log_schema.h"
#include "platform/vb/ascii.h"
#include "station/band_table.h"
#include "station/dxcc_module.h"

namespace vellumar::cli {

namespace {

volatile std::sig_atomic_t interrupted = 0;
extern "C" void OnInterrupt(int) { interrupted = 1; }

bool FileExists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

// "--Key=value" options, keys compared without regard to case; false on anything else.
bool ParseOptions(const std::vector<std::string>& args, std::size_t first,
                  std::map<std::string, std::string>& options) {
  for (std::size_t i = first; i < args.size(); ++i) {
    const std::string& a = args[i];
    const auto eq = a.find('=');
    if (a.rfind("--", 0) != 0 || eq == std::string::npos) return false;
    options[vb::LowerAscii(a.substr(2, eq - 2))] = a.substr(eq + 1);
  }
  return true;
}

// A check box's or option button's setting: "1", "true" (any case) or "-1" for on.
bool OptionBool(std::map<std::string, std::string>& options, const char* key, bool fallback,
                bool& ok) {
  const auto it = options.find(vb::LowerAscii(std::string(key)));
  if (it == options.end()) return fallback;
  const std::string v = vb::LowerAscii(it->second);
  options.erase(it);
  if (v == "1" || v == "true" || v == "-1") return true;
  if (v == "0" || v == "false") return false;
  ok = false;
  return fallback;
}

std::string OptionText(std::map<std::string, std::string>& options, const char* key,
                       const std::string& fallback) {
  const auto it = options.find(vb::LowerAscii(std::string(key)));
  if (it == options.end()) return fallback;
  std::string v = it->second;
  options.erase(it);
  return v;
}

// The program's services for one log: the DXCC database, the bands, the log with its views.
struct LogSession {
  explicit LogSession(Frame& frame)
      : frame(frame),
        dxcc(frame.services, slots),
        bands([&frame](const std::string& t) { frame.common.WriteErrorLog(t); },
              [&frame](int n, const std::string& w) { frame.common.ReportError(n, w); }) {}

  // Opens (creating when missing) the log. False with a message on stderr when it can't.
  bool Open(const std::string& pathname, bool create) {
    try {
      dxcc.OpenDXCCDatabase();
    } catch (const ProgramTermination&) {
      return false;
    }
    if (!dxcc.IsOpen()) {
      std::fprintf(stderr, "vellumar-cli: the DXCC database can't be opened (see ErrorLog.txt)\n");
      return false;
    }
    bands.InitializeBandArray(frame.common.ApplicationDirectory() + "/Databases/Bands.txt");
    auto report = [this](int n, const std::string& w) { frame.common.ReportError(n, w); };
    logstore::LogSchema schema(frame.common.errorLog(), [&](db::Database& log) {
      InitializeProgressTableFromDatabase(log, dxcc.GetDXCCRecordset(), progress, report);
    });
    if (!FileExists(pathname)) {
      if (!create || !schema.CreateLog(pathname)) {
        std::fprintf(stderr, "vellumar-cli: unable to open log database %s\n", pathname.c_str());
        return false;
      }
    }
    try {
      log = db::DBEngine::Workspaces(0).OpenDatabase(pathname);
      if (create) schema.AddMissingFieldDefinitions(log);
      progress = log.OpenRecordset("Progress", db::dbOpenDynaset);
      progress.SetSort("Prefix");
      progressView = progress.OpenRecordset();
      qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
      qsos.SetSort("QSO_Begin");
      logView = qsos.OpenRecordset();
    } catch (const vb::VbError& e) {
      std::fprintf(stderr, "vellumar-cli: unable to open log database %s - %s\n",
                   pathname.c_str(), e.what());
      return false;
    }
    return true;
  }

  Frame& frame;
  LookupSlots slots;
  DXCCModule dxcc;
  BandTable bands;
  db::Database log;
  db::Recordset progress, progressView, qsos, logView;
};

class ConsoleImportView final : public adif::ImportView {
 public:
  bool Continue() override { return interrupted == 0; }
};

class ConsoleExportView final : public adif::ExportView {
 public:
  explicit ConsoleExportView(bool clear) : clear_(clear) {}
  bool ClearExistingFile(const std::string&) override { return clear_; }
  bool Continue() override { return interrupted == 0; }

 private:
  bool clear_;
};

void CatchInterrupts() {
  std::signal(SIGINT, OnInterrupt);
  std::signal(SIGTERM, OnInterrupt);
}

}  // namespace

int Import(const std::vector<std::string>& args) {
  std::map<std::string, std::string> options;
  if (args.size() < 2 || !ParseOptions(args, 2, options)) {
    std::fprintf(stderr,
                 "usage: vellumar-cli import LOG.vdb FILE.adi [--ImportDuplicate=1] "
                 "[--DefaultImportCallsign=1] [--Callsign=CALL] [--SaveImportErrors=0] "
                 "[--LoggerImport=false] [--MMTTYImport=false]\n");
    return 2;
  }
  Frame frame;
  bool ok = true;
  adif::ImportSettings settings;
  settings.checkDuplicates = OptionBool(options, "ImportDuplicate", true, ok);
  settings.defaultCallsign = OptionBool(options, "DefaultImportCallsign", true, ok);
  settings.saveImportErrors = OptionBool(options, "SaveImportErrors", false, ok);
  settings.loggerImport = OptionBool(options, "LoggerImport", false, ok);
  settings.mmttyImport = OptionBool(options, "MMTTYImport", false, ok);
  settings.myCallsign = vb::UpperAscii(OptionText(
      options, "Callsign", frame.settings.GetSetting("Vellumar", "Configuration", "Callsign", "")));
  if (!ok || !options.empty()) {
    std::fprintf(stderr, "vellumar-cli: unknown option or value\n");
    return 2;
  }
  LogSession session(frame);
  if (!session.Open(args[0], true)) return 1;

  adif::AdifImport import(
      adif::ImportServices{session.log, session.progressView, &session.dxcc, &session.slots,
                           &session.bands, &frame.common.errorLog()},
      settings);
  ConsoleImportView view;
  import.SetView(&view);
  CatchInterrupts();
  std::string openError;
  const adif::ImportOutcome outcome = import.ImportFile(args[1], session.logView, &openError);
  if (outcome == adif::ImportOutcome::kUnreadable) {
    std::fprintf(stderr, "%s\n", openError.c_str());
    return 1;
  }
  const adif::ImportCounters& c = import.Counters();
  std::printf("processed: %ld\nduplicates: %ld\ntruncated: %ld\nillegals: %ld\nimported: %ld\n",
              c.processed, c.duplicates, c.truncated, c.illegals, c.imported);
  if (outcome == adif::ImportOutcome::kAborted) return 3;
  if (outcome == adif::ImportOutcome::kProgramError) {
    std::fprintf(stderr, "vellumar-cli: program error (see ErrorLog.txt)\n");
    return 4;
  }
  return 0;
}

int Export(const std::vector<std::string>& args) {
  std::map<std::string, std::string> options;
  if (args.size() < 2 || !ParseOptions(args, 2, options)) {
    std::fprintf(stderr,
                 "usage: vellumar-cli export LOG.vdb FILE.adi [--DXBaseExport=false] "
                 "[--ExportQSONotes=TEXT] [--Clear=true]\n");
    return 2;
  }
  Frame frame;
  bool ok = true;
  adif::ExportOptions exportOptions;
  exportOptions.dxBaseFrequencies = OptionBool(options, "DXBaseExport", false, ok);
  exportOptions.qsoNotes = OptionText(options, "ExportQSONotes", "");
  const bool clear = OptionBool(options, "Clear", true, ok);
  if (!ok || !options.empty()) {
    std::fprintf(stderr, "vellumar-cli: unknown option or value\n");
    return 2;
  }
  if (!FileExists(args[0])) {
    std::fprintf(stderr, "vellumar-cli: unable to open log database %s\n", args[0].c_str());
    return 1;
  }
  LogSession session(frame);
  if (!session.Open(args[0], false)) return 1;
  adif::AdifExport exporter(frame.common.errorLog(), exportOptions);
  ConsoleExportView view(clear);
  CatchInterrupts();
  std::string openError;
  const adif::ExportOutcome outcome = exporter.ExportFile(
      args[1], session.logView, frame.common.utc().CurrentTime(), view, &openError);
  switch (outcome) {
    case adif::ExportOutcome::kNoRecords:
      std::fprintf(stderr, "no records to export\n");
      return 0;
    case adif::ExportOutcome::kUnopenable:
      std::fprintf(stderr, "%s\n", openError.c_str());
      return 1;
    default:
      break;
  }
  std::printf("exported: %ld\n", exporter.Count());
  if (outcome == adif::ExportOutcome::kAborted) return 3;
  if (outcome == adif::ExportOutcome::kProgramError) return 4;
  return 0;
}

}  // namespace vellumar::cli
