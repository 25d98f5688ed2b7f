// Random operations on the Log page, then a recompute: the rebuilt Progress table equals what
// the test works out from the QSOs themselves, never stands above what the saves had raised,
// equals it when nothing could have lowered a status, marks BROKEN exactly the QSOs that can't
// be counted, follows a filter, and the DXCC Summary counts it as the test does.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "logpage/log_page_fixture.h"
#include "support/test_dxcc_database.h"

namespace vellumar::test {
namespace {

constexpr const char* kQuestion =
    "clear the progress table and then rebuild by scanning every QSO in the log?";

// The entities of the test's DXCC database: K and G current, VP2E deleted.
const std::map<std::string, bool> kEntities = {{"291", true}, {"223", true}, {"12", false}};

// The test's own reading of the status rules.
const std::vector<std::string> kColumnNames = {
    "CountryCode", "Prefix", "Valid", "160M", "80M", "40M",   "30M", "20M",  "17M",
    "15M",         "12M",    "10M",   "6M",   "2M",  "PHONE", "CW",  "RTTY", "PSK"};

int BandColumn(std::string band) {
  for (char& c : band) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const std::map<std::string, int> bands = {{"160m", 3}, {"80m", 4}, {"40m", 5}, {"30m", 6},
                                            {"20m", 7},  {"17m", 8}, {"15m", 9}, {"12m", 10},
                                            {"10m", 11}, {"6m", 12}, {"2m", 13}};
  auto it = bands.find(band);
  return it == bands.end() ? -1 : it->second;
}

int ModeColumn(std::string mode) {
  for (char& c : mode) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (const char* m : {"ssb", "usb", "lsb", "am", "fm"})
    if (mode == m) return 14;
  for (const char* m : {"cw", "hscw"})
    if (mode == m) return 15;
  for (const char* m : {"rtty", "hell", "mfsk", "mt63", "pac", "pkt", "throb", "tor"})
    if (mode == m) return 16;
  for (const char* m : {"psk", "psk31", "bpsk", "qpsk"})
    if (mode == m) return 17;
  return -1;
}

int QSLStrength(std::string q) {
  for (char& c : q) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  if (q.empty() || q == " " || q == "N") return 1;
  if (q == "R") return 2;
  if (q == "Y") return 3;
  if (q == "V") return 4;
  return 0;
}

int LetterStrength(const std::string& letter) {
  if (letter == "W") return 1;
  if (letter == "R") return 2;
  if (letter == "F") return 3;
  if (letter == "V") return 4;
  return 0;
}

std::string LetterOf(int strength, int column) {
  switch (strength) {
    case 1:
      return "W";
    case 2:
      return "R";
    case 3:
      return "F";
    case 4:
      return column == 17 ? "F" : "V";  // the ARRL verifies no PSK card
    default:
      return "";
  }
}

struct QSORow {
  std::string call, code, band, mode, qsl, broken;
};

using Letters = std::array<std::string, 18>;
using Table = std::map<std::string, Letters>;  // by CountryCode

Table Oracle(const std::vector<QSORow>& qsos) {
  Table table;
  for (const auto& [code, valid] : kEntities) table[code] = Letters{};
  std::map<std::string, std::array<int, 18>> best;
  for (const QSORow& q : qsos) {
    if (!kEntities.count(q.code)) continue;
    const int s = QSLStrength(q.qsl);
    std::vector<int> columns = {BandColumn(q.band), ModeColumn(q.mode)};
    if (columns[1] == 17) columns.push_back(16);  // a PSK QSO counts in RTTY as well
    for (int c : columns)
      if (c != -1 && s > best[q.code][c]) best[q.code][c] = s;
  }
  for (auto& [code, strengths] : best)
    for (int c = 3; c < 18; ++c) table[code][c] = LetterOf(strengths[c], c);
  return table;
}

class ProgressInvariantTest : public ::testing::Test {
 protected:
  void Start() {
    h.SeedReturningOperator();
    const std::string dxcc = h.DataPath() + "/Databases/DXCC.vdb";
    std::filesystem::create_directories(h.DataPath() + "/Databases");
    CreateTestDXCCDatabase(dxcc,
                           {{"K", 291, "United States", std::nullopt},
                            {"G", 223, "England", std::nullopt},
                            {"VP2E", 12, "Anguilla", 40000.0}},
                           {{"K", "K", "K"}, {"G", "G", "G"}, {"VP2E", "VP2E", "VP2E"}},
                           {{"K", "NA", 5, 8}, {"G", "EU", 14, 27}, {"VP2E", "NA", 8, 11}});
    app = &h.Start();
    h.loop.Advance(300);
    app->main.Show();
    // Whether a card is worth verifying depends on the tracked awards; its message is OK'd.
    h.desktop.Tolerate({"Send this QSL card to the DXCC desk!"});
  }

  VellumMain& main() { return app->main; }
  ui::TextBox& box(int i) { return main().Fieldbox(i); }
  ui::ComboBox& combo(int i) { return main().Fieldcombo(i); }

  // A random non-empty item of a slot's list.
  void PickAny(int index) {
    ui::ComboBox& c = combo(index);
    std::vector<int> items;
    for (int i = 0; i < c.ListCount(); ++i)
      if (!c.List(i).empty()) items.push_back(i);
    ASSERT_FALSE(items.empty()) << "slot " << index;
    const int chosen = items[Random(static_cast<int>(items.size()))];
    const std::string before = box(8).Text();
    if (index == 8) ExpectUnknownCodeMessage(before, c.List(chosen) == "Y");
    c.UserSelect(chosen);
  }
  // VerificationNeeded tells of an unknown code when a card comes in.
  void ExpectUnknownCodeMessage(std::string before, bool becomesY) {
    for (char& ch : before) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    const std::string code = box(3).Text();
    if (becomesY && before != "Y" && before != "V" && !code.empty() && !kEntities.count(code))
      h.desktop.ExpectMsgBoxStartingWith("can't find DXCC code " + code + " for ");
  }
  int Random(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); }

  long Rows() {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    if (rs.BOF() && rs.EOF_()) return 0;
    rs.MoveLast();
    return rs.RecordCount();
  }
  // Stands on a random QSO of the display with the Log page's moves.
  bool GoToRandomQSO() {
    const long rows = Rows();
    if (rows == 0) return false;
    main().LogFirstCmd.UserClick();
    for (long k = Random(static_cast<int>(rows)); k > 0; --k) main().LogNextCmd.UserClick();
    return true;
  }

  void NewQSO() {
    // Known entities mostly; W1XYZ has no prefix in this DXCC database.
    static const char* kCalls[] = {"K2AA", "K3BB", "G3ABC", "G4XYZ", "VP2EA", "W1XYZ"};
    main().NewCmd.UserClick();
    box(1).UserType(kCalls[Random(6)]);
    box(1).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn);
    PickAny(0);
    PickAny(5);
    PickAny(8);
    const int r = Random(10);
    if (r == 0) box(3).UserSetText("999");  // an unknown entity
    if (r == 1) box(3).UserSetText("");     // no entity at all
    main().SaveCmd.UserClick();
  }

  void Operate(int ops, bool raisingOnly) {
    for (int i = 0; i < ops; ++i) {
      // New 40%, Confirm 15%, Verify 10%, Delete 10%, edits 25%; without Delete and edits when
      // only raising operations are wanted.
      const int roll = Random(raisingOnly ? 65 : 100);
      const int kind = roll < 40 ? 0 : roll < 55 ? 1 : roll < 65 ? 2 : roll < 75 ? 3 : 4;
      if (kind == 0 || Rows() == 0) {
        NewQSO();
      } else if (kind == 1) {  // Confirm
        GoToRandomQSO();
        std::string q = box(8).Text();
        for (char& ch : q) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
        if (raisingOnly && q == "V") continue;  // Confirm on a verified card lowers it
        if (q == "V") lowered = true;
        ExpectUnknownCodeMessage(box(8).Text(), true);
        main().ConfirmCmd.UserClick();
      } else if (kind == 2) {  // Verify, offered for a card received
        GoToRandomQSO();
        if (main().VerifyCmd.Enabled()) main().VerifyCmd.UserClick();
      } else if (kind == 3) {  // Delete
        GoToRandomQSO();
        if (app->logPage.config.ConfirmDelete())
          h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes);
        main().DeleteCmd.UserClick();
        lowered = true;
      } else {  // an edit of band, mode, DXCC code or QSL_Rcvd
        GoToRandomQSO();
        switch (Random(4)) {
          case 0:
            PickAny(0);
            break;
          case 1:
            PickAny(5);
            break;
          case 2:
            PickAny(8);
            break;
          default: {
            static const char* kCodes[] = {"291", "223", "12", "999", ""};
            box(3).UserSetText(kCodes[Random(5)]);
          }
        }
        main().SaveCmd.UserClick();
        lowered = true;
      }
      if (::testing::Test::HasFatalFailure()) return;
    }
    if (app->module.RecordModified()) main().SaveCmd.UserClick();
  }

  Table ReadProgress() {
    Table table;
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    while (!rs.EOF_()) {
      Letters l;
      for (int c = 3; c < 18; ++c) l[c] = rs.Fields(c).Value().ToStringOrEmpty();
      table[rs.Fields(0).Value().ToStringOrEmpty()] = l;
      rs.MoveNext();
    }
    return table;
  }
  std::vector<QSORow> ReadQSOs() {
    std::vector<QSORow> rows;
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    auto f = [&](const char* name) { return rs.Fields(name).Value().ToStringOrEmpty(); };
    while (!rs.EOF_()) {
      rows.push_back({f("Call"), f("DXCCID"), f("Band"), f("Mode"), f("QSL_Rcvd"), f("BROKEN")});
      rs.MoveNext();
    }
    return rows;
  }
  void Recompute() {
    h.desktop.ExpectMsgBox(kQuestion, ui::vbYes);
    main().RecomputeCmd_Click();
    ASSERT_FALSE(app->module.RecomputeRunning);
  }

  // (a), (d): the table equals the oracle over `walked`, and BROKEN marks exactly the walked
  // QSOs without a known entity.
  void ExpectOracle(const std::vector<QSORow>& walked, const std::string& what) {
    const Table expected = Oracle(walked);
    const Table actual = ReadProgress();
    for (const auto& [code, letters] : expected)
      for (int c = 3; c < 18; ++c)
        EXPECT_EQ(actual.at(code)[c], letters[c])
            << what << ": entity " << code << " column " << kColumnNames[c];
    std::map<std::string, std::string> brokenByCall;
    const std::vector<QSORow> after = ReadQSOs();
    for (size_t i = 0; i < after.size(); ++i) {
      bool isWalked = false;
      for (const QSORow& w : walked) isWalked = isWalked || w.call == after[i].call;
      if (!isWalked) continue;
      const bool countable = kEntities.count(after[i].code) > 0;
      EXPECT_EQ(after[i].broken, countable ? "" : "Y")
          << what << ": QSO " << after[i].call << " code '" << after[i].code << "'";
    }
  }

  // (f): the summary's cells as the test counts them from the table.
  void ExpectSummary(const Table& table) {
    main().SummaryCmd_Click();
    DXCCSummary& summary = app->logPage.dxccSummary;
    for (int grid = 0; grid < 2; ++grid) {
      const bool withDeleted = grid == 0;
      std::array<std::array<long, 4>, 25> counts{};
      auto count = [&](int row, const std::vector<std::string>& letters, bool verifiable) {
        bool w = false, f = false, v = false;
        for (const std::string& l : letters) {
          w = w || !l.empty();
          f = f || l == "F" || l == "V";
          v = v || l == "V";
        }
        counts[row][1] += w;
        counts[row][2] += f;
        counts[row][3] += v && verifiable;
      };
      for (const auto& [code, l] : table) {
        const bool valid = kEntities.at(code);
        const std::vector<std::string> modes = {l[14], l[15], l[16], l[17]};
        if (valid) {
          count(1, modes, true);
          count(2, {l[14]}, true);
          count(3, {l[15]}, true);
          count(4, {l[16]}, true);
        }
        if (!valid && !withDeleted) continue;
        count(5, modes, true);
        count(6, {l[14]}, true);
        count(7, {l[15]}, true);
        count(8, {l[16]}, true);
        count(9, {l[17]}, false);
        for (int c = 3; c <= 13; ++c) count(c + 7, {l[c]}, true);
      }
      for (int c = 1; c <= 3; ++c) {
        for (int r = 10; r <= 18; ++r) counts[21][c] += counts[r][c];
        for (int r : {10, 11, 12, 14, 15, 16, 17, 18, 19}) counts[24][c] += counts[r][c];
        for (int r = 6; r <= 8; ++r) counts[22][c] += counts[r][c];
        counts[23][c] = counts[21][c] + counts[22][c];
      }
      ui::Grid& g = withDeleted ? summary.DeletedGrid : summary.UnDeletedGrid;
      for (int r = 1; r < 25; ++r)
        for (int c = 1; c < 4; ++c) {
          // An untouched cell stays blank; the sums are written after every entity.
          const std::string text =
              counts[r][c] == 0 && r < 21 ? " " : " " + std::to_string(counts[r][c]);
          EXPECT_EQ(g.ArrayCell(r, c), text)
              << (withDeleted ? "DXCC" : "TOP") << " row " << r << " column " << c;
        }
    }
  }

  void Run(unsigned seed, int ops, bool raisingOnly) {
    SCOPED_TRACE("seed " + std::to_string(seed) + (raisingOnly ? " (raising only)" : ""));
    rng.seed(seed);
    Start();
    Operate(ops, raisingOnly);
    if (HasFatalFailure()) return;
    const Table kept = ReadProgress();
    Recompute();
    const std::vector<QSORow> all = ReadQSOs();
    // The operations made a log worth checking: QSOs of known and of unknown entities.
    int unknown = 0;
    for (const QSORow& q : all) unknown += kEntities.count(q.code) == 0;
    EXPECT_GE(all.size(), 50u);
    EXPECT_GT(unknown, 0);
    EXPECT_LT(unknown, static_cast<int>(all.size()));
    ExpectOracle(all, "whole log");
    const Table recomputed = ReadProgress();
    for (const auto& [code, letters] : recomputed)
      for (int c = 3; c < 18; ++c) {
        // (b) never stronger than what the saves had raised.
        EXPECT_LE(LetterStrength(letters[c]), LetterStrength(kept.at(code)[c]))
            << "entity " << code << " column " << kColumnNames[c];
        // (c) equal when nothing could have lowered a status.
        if (!lowered) {
          EXPECT_EQ(letters[c], kept.at(code)[c])
              << "entity " << code << " column " << kColumnNames[c];
        }
      }
    ExpectSummary(recomputed);

    // (e) a filter in force: the oracle over the QSOs it shows.
    app->module.LogRecordset.SetFilter("Call = 'G3ABC' OR Call = 'VP2EA' OR Call = 'W1XYZ'");
    app->module.LogView = app->module.LogRecordset.OpenRecordset();
    main().LogPosition.SetRecordset(app->module.LogView);
    Recompute();
    std::vector<QSORow> shown;
    for (const QSORow& q : ReadQSOs())
      if (q.call == "G3ABC" || q.call == "VP2EA" || q.call == "W1XYZ") shown.push_back(q);
    ExpectOracle(shown, "filtered");
  }

  ProgramHarness h{ProgramHarness::DXCC::kSmall};
  Application* app = nullptr;
  std::mt19937 rng;
  bool lowered = false;  // a delete or an edit may have lowered a status
};

TEST_F(ProgressInvariantTest, Seed1) { Run(1, 300, false); }
TEST_F(ProgressInvariantTest, Seed2) { Run(2, 300, false); }
TEST_F(ProgressInvariantTest, Seed3) { Run(3, 300, false); }
TEST_F(ProgressInvariantTest, Seed4RaisingOnly) { Run(4, 250, true); }
TEST_F(ProgressInvariantTest, Seed5RaisingOnly) { Run(5, 250, true); }

}  // namespace
}  // namespace vellumar::test
