// The Log page on a log of 100,000 QSOs: the save of one QSO (New, the callsign's defaults,
// a report, band and mode, Save with its progress count), and a move to the next row with the
// panel refreshed. Baselines measured in the same run: the record layer's own AddNew+Update of
// a whole row, and its MoveNext with the 35 fields read. Medians of several runs.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench_util.h"
#include "config/vellum_setup.h"
#include "platform/vb/date_value.h"
#include "support/program_harness.h"

using namespace vellumar;
using vellumar::bench::Clock;
using vellumar::bench::Median;
using vellumar::bench::Ms;
using vellumar::bench::Report;

namespace {

constexpr int kLogSize = 100000;
const char* kCalls[] = {"DL1ABC", "G4XYZ", "JA1QRP", "VK2DX", "K5ZZ", "F6ABC", "ZS6AA", "PY2XX"};

// Fills the open log with QSOs straight through the record layer.
void FillLog(db::Database& log, int count) {
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  std::mt19937 random(7);
  const char* bands[] = {"20M", "40M", "15M", "10M", "80M"};
  const char* modes[] = {"CW", "SSB", "RTTY", "PSK"};
  for (int i = 0; i < count; ++i) {
    rs.AddNew();
    rs.Fields("Call").SetValue(vb::Variant(kCalls[random() % 8] + std::to_string(i % 100)));
    rs.Fields("Band").SetValue(vb::Variant(bands[random() % 5]));
    rs.Fields("Mode").SetValue(vb::Variant(modes[random() % 4]));
    rs.Fields("RST_Sent").SetValue(vb::Variant("599"));
    rs.Fields("DXCCID").SetValue(vb::Variant("230"));
    rs.Fields("DXCCPrefix").SetValue(vb::Variant("DL"));
    rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(vb::DateSerial(2005, 1, 1) + i * 0.01));
    rs.Fields("QSO_End").SetValue(vb::Variant::FromDate(vb::DateSerial(2005, 1, 1) + i * 0.01));
    rs.Update();
  }
}

}  // namespace

int main() {
  test::ProgramHarness h(test::ProgramHarness::DXCC::kBuilt);
  h.SeedReturningOperator();
  Application& app = h.Start();
  h.loop.Advance(300);
  const std::string path = app.setup().LogPathname.Text();
  FillLog(app.module.LogDatabase, kLogSize);
  app.module.OpenLog(path, false);
  VellumMain& main = app.main;
  main.Show();

  // The save of one QSO, as the operator makes it.
  std::vector<double> saves, saveClicks, rawInserts;
  for (int run = 0; run < 60; ++run) {
    const auto begin = Clock::now();
    main.NewCmd.UserClick();
    main.Fieldbox(1).UserType(kCalls[run % 8]);
    main.Fieldbox(1).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn);
    main.Fieldbox(14).UserType("599");
    main.Fieldcombo(0).UserSelect(5);  // 20M
    main.Fieldcombo(5).UserSelect(2);  // CW
    const auto save = Clock::now();
    main.SaveCmd.UserClick();
    saveClicks.push_back(Ms(save));
    saves.push_back(Ms(begin));
    h.clock.AdvanceMs(60000);
  }
  {
    db::Recordset raw = app.module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    for (int run = 0; run < 60; ++run) {
      const auto begin = Clock::now();
      raw.AddNew();
      for (int f = 0; f < 19; ++f) raw.Fields()[f].SetValue(vb::Variant("X"));
      raw.Update();
      rawInserts.push_back(Ms(begin));
    }
  }

  // Moves to the next row, the panel refreshed.
  std::vector<double> moves, rawMoves;
  main.LogPosition.MoveFirst();
  for (int run = 0; run < 2000; ++run) {
    const auto begin = Clock::now();
    main.LogNextCmd.UserClick();
    moves.push_back(Ms(begin));
  }
  {
    db::Recordset raw = main.LogPosition.Recordset().Clone();
    raw.MoveFirst();
    std::string sink;
    for (int run = 0; run < 2000; ++run) {
      const auto begin = Clock::now();
      raw.MoveNext();
      for (int f = 0; f < 35; ++f) sink += raw.Fields()[f].Value().ToStringOrEmpty();
      rawMoves.push_back(Ms(begin));
      sink.clear();
    }
  }
  std::fprintf(stderr, "# log of %d QSOs; %s\n", kLogSize, main.Caption().c_str());
  Report("logpage_save_qso_ms", Median(saves), "ms");
  Report("logpage_save_click_ms", Median(saveClicks), "ms");
  Report("logpage_raw_insert_ms", Median(rawInserts), "ms");
  Report("logpage_save_vs_raw_insert", Median(saves) / Median(rawInserts), "x");
  Report("logpage_next_row_ms", Median(moves), "ms");
  Report("logpage_raw_next_row_ms", Median(rawMoves), "ms");
  Report("logpage_next_vs_raw_next", Median(moves) / Median(rawMoves), "x");
  return 0;
}
