// A sibling's commands as the program serves them, on a log of 10,000 QSOs: a `log` of one QSO
// from the sibling's execute to the row committed in the file (the execute returns after the
// commit), and a `getprogress` round trip (the execute, then the sibling's request of the
// Progress item). The transport is the in-process one, so the figures are the program's own
// work; the session bus adds its round trip on top. Medians of several hundred commands.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench_util.h"
#include "platform/link/link.h"
#include "platform/vb/date_value.h"
#include "support/program_harness.h"

using namespace vellumar;
using vellumar::bench::Clock;
using vellumar::bench::Median;
using vellumar::bench::Ms;
using vellumar::bench::Report;

namespace {

constexpr int kLogSize = 10000;
constexpr int kRuns = 300;

void FillLog(db::Database& log, int count) {
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  for (int i = 0; i < count; ++i) {
    rs.AddNew();
    rs.Fields("Call").SetValue(vb::Variant("DL" + std::to_string(i % 1000) + "AB"));
    rs.Fields("Band").SetValue(vb::Variant("20M"));
    rs.Fields("Mode").SetValue(vb::Variant("CW"));
    rs.Fields("DXCCID").SetValue(vb::Variant("230"));
    rs.Fields("DXCCPrefix").SetValue(vb::Variant("DL"));
    rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(vb::DateSerial(2005, 1, 1) + i * 0.01));
    rs.Fields("QSO_End").SetValue(vb::Variant::FromDate(vb::DateSerial(2005, 1, 1) + i * 0.01));
    rs.Update();
  }
}

std::string Tag(const std::string& tag, const std::string& value) {
  return "<" + tag + ":" + std::to_string(value.size()) + ">" + value;
}

// A valid HHMM for the i-th QSO.
std::string TimeOn(int i) {
  char text[8];
  std::snprintf(text, sizeof text, "%02d%02d", (i / 60) % 24, i % 60);
  return text;
}

long RowsInFile(db::Database& log) {
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  if (rs.BOF() && rs.EOF_()) return 0;
  rs.MoveLast();
  return rs.RecordCount();
}

}  // namespace

int main() {
  test::ProgramHarness h(test::ProgramHarness::DXCC::kBuilt);
  h.SeedReturningOperator();
  Application& app = h.Start();
  h.loop.Advance(300);
  FillLog(app.module.LogDatabase, kLogSize);
  app.module.OpenLog(app.setup().LogPathname.Text(), false);
  app.main.Show();

  {
    std::unique_ptr<link::LinkEndpoint> sibling = h.bus.Join();
    sibling->RegisterApplication("Songlark");
    link::Link command(*sibling);
    command.SetLinkTopic("Vellumar|DDEServer");
    command.SetLinkItem("Progress");
    command.SetLinkMode(link::kLinkManual);

    const long before = RowsInFile(app.module.LogDatabase);
    std::vector<double> log;
    for (int i = 0; i < kRuns; ++i) {
      const std::string qso = Tag("CALL", "K" + std::to_string(i) + "AB") +
                              Tag("QSO_DATE", "20240314") +
                              Tag("TIME_ON", TimeOn(i)) + Tag("BAND", "20M") +
                              Tag("MODE", "CW") + Tag("DXCC", "291") + "<EOR>";
      const auto start = Clock::now();
      command.LinkExecute("001log" + qso);
      log.push_back(Ms(start));
    }
    const long added = RowsInFile(app.module.LogDatabase) - before;
    if (added != kRuns) {
      std::fprintf(stderr, "bench_interop: %ld QSOs in the file, expected %d\n", added, kRuns);
      return 1;
    }
    Report("interop_log_one_qso_committed", Median(log), "ms");

    std::vector<double> progress;
    const char* prefixes[] = {"K", "DL", "G", "ZZ9Z"};
    for (int i = 0; i < kRuns; ++i) {
      const auto start = Clock::now();
      command.LinkExecute("001getprogress" + Tag("ProgressPrefix", prefixes[i % 4]) +
                          Tag("ProgressBand", "20M") + Tag("ProgressMode", "CW"));
      command.LinkRequest();
      progress.push_back(Ms(start));
      if (command.Text().empty()) {
        std::fprintf(stderr, "bench_interop: no Progress answer\n");
        return 1;
      }
    }
    Report("interop_getprogress_round_trip", Median(progress), "ms");
  }
  return 0;
}
