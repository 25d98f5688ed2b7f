#include "qsl_commands.h"

#include <sys/stat.h>

#include <csignal>
#include <cstdio>

#include "awards/progress_columns.h"
#include "cli_frame.h"
#include "frame/version.h"
#include "platform/bound/data_control.h"
#include "platform/db/database.h"
#include "platform/vb/date_value.h"
#include "qsl/qsl_module.h"
#include "qsl/qsl_queue.h"

namespace vellumar::cli {

namespace {

volatile std::sig_atomic_t interrupted = 0;
extern "C" void OnQSLInterrupt(int) { interrupted = 1; }

bool FileExists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

// AwardCheck(3..17) as the configuration window loads them: checked unless the setting says 0.
qsl::AwardChecks AwardChoices(SettingsStore& settings) {
  qsl::AwardChecks checks{};
  for (int i = kProgressFirstBand; i <= kProgressPSK; ++i) {
    const std::string name =
        (i <= kProgressLastBand ? BandFieldName(i) : ModeFieldName(i)).ToString();
    const std::string value = settings.GetSetting(kApplicationTitle, "Award", "Award" + name, "1");
    checks[static_cast<size_t>(i)] = vb::Variant(value).ToInteger() == 1;
  }
  return checks;
}

// A start as ISO 8601 UTC: 2024-03-15T08:30:00Z.
std::string IsoUtc(double date) {
  const vb::DateParts p = vb::SplitDate(date);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", p.year, p.month, p.day,
                p.hour, p.minute, p.second);
  return text;
}

}  // namespace

int AddNeeded(const std::vector<std::string>& args) {
  if (args.size() != 1) {
    std::fprintf(stderr, "usage: vellumar-cli add-needed LOG.vdb\n");
    return 2;
  }
  const std::string& pathname = args[0];
  Frame frame;
  if (!FileExists(pathname)) {
    std::fprintf(stderr, "vellumar-cli: unable to open log database %s\n", pathname.c_str());
    return 2;
  }
  db::Database log;
  db::Recordset progress, logView, qths;
  try {
    log = db::DBEngine::Workspaces(0).OpenDatabase(pathname);
    db::Recordset table = log.OpenRecordset("Progress", db::dbOpenDynaset);
    table.SetSort("Prefix");
    progress = table.OpenRecordset();
    db::Recordset qsos = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    qsos.SetSort("QSO_Begin");
    logView = qsos.OpenRecordset();
    qths = log.OpenRecordset("QTHs", db::dbOpenDynaset);
  } catch (const vb::VbError& e) {
    std::fprintf(stderr, "vellumar-cli: unable to open log database %s - %s\n", pathname.c_str(),
                 e.what());
    return 2;
  }

  QSLQueue queue(frame.desktop, frame.common.errorLog());
  ui::DataControl position("QSLPosition");
  queue.OpenQSLQueue(frame.common.ApplicationDirectory() + "/Databases/QSL.vdb", position);
  if (!queue.IsOpen()) {
    std::fprintf(stderr, "vellumar-cli: unable to open the QSL queue (see ErrorLog.txt)\n");
    return 2;
  }

  qsl::QSLServices services;
  services.desktop = &frame.desktop;
  services.reportError = [&frame](int number, const std::string& where) {
    frame.common.ReportError(number, where);
  };
  services.findMyQTH = [&qths](const std::string& id) { return qsl::LookUpMyQTH(qths, id); };
  services.sortQSL = [&queue](const std::string& order) { queue.SortQSL(order); };
  // Ctrl-C is the Stop button: the walk ends after the record in hand.
  qsl::VellumQSLModule* running = nullptr;
  std::signal(SIGINT, OnQSLInterrupt);
  std::signal(SIGTERM, OnQSLInterrupt);
  services.yield = [&running] {
    if (interrupted && running) running->StopAdd();
  };
  qsl::VellumQSLModule module(position.Recordset(), services);
  running = &module;
  long rows = 0;
  module.onQueued = [&rows](const qsl::QueuedRow& row) {
    ++rows;
    std::printf("%s\t%s\t%s\t%s\t%s\n", row.call.c_str(), IsoUtc(row.begin).c_str(),
                row.band.c_str(), row.mode.c_str(), row.needed.c_str());
  };
  module.GenerateNeededQSLs(logView, progress, AwardChoices(frame.settings));
  std::printf("%ld\n", rows);
  std::fflush(stdout);
  queue.CloseQSLQueue(position);
  log.Close();
  return interrupted ? 3 : 0;
}

}  // namespace vellumar::cli
