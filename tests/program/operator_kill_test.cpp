// The program's headless core killed with SIGKILL while an operator works the Log page: a child
// process starts the program on a new log and saves QSOs (band by frequency, mode, QSL received)
// and edits the name of the one in hand, telling its parent after every save that returned; the parent kills
// it at a random moment. Afterwards the log passes SQLite's integrity check and holds every QSO
// whose save had returned, as saved, at most one more (the QSO in hand, which New writes as an
// empty row at once), no row torn; and no Progress letter is stronger than a recompute of the log makes it (a kill
// between a row and its Progress update leaves the letter behind, never ahead). 100 runs, each
// with its seed printed on failure.
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "awards/progress_columns.h"
#include "awards/progress_update.h"
#include "config/vellum_setup.h"
#include "platform/db/database.h"
#include "support/program_harness.h"

namespace vellumar {
namespace {

constexpr int kRuns = 100;

struct Saved {
  std::string band, mode, qslRcvd;
};

// The child: works the Log page until killed, a line to `out` after every save that returned.
[[noreturn]] void Operate(int out, unsigned seed) {
  auto say = [out](const std::string& line) {
    const std::string text = line + "\n";
    if (write(out, text.data(), text.size()) < 0) _exit(3);
  };
  test::ProgramHarness h(test::ProgramHarness::DXCC::kSmall);
  h.SeedReturningOperator();
  h.desktop.Tolerate({"Send this QSL card to the DXCC desk!"});
  Application& app = h.Start();
  h.loop.Advance(300);
  VellumMain& main = app.main;
  main.Show();
  say("log " + app.setup().LogPathname.Text());
  auto pick = [&main](int index, const std::string& item) {
    ui::ComboBox& c = main.Fieldcombo(index);
    for (int i = 0; i < c.ListCount(); ++i)
      if (c.List(i) == item) return c.UserSelect(i);
  };
  static const char* kFreqs[] = {"1.830", "3.525", "7.025", "14.025", "21.025", "28.025", "50.100"};
  static const char* kModes[] = {"CW", "SSB", "RTTY", "PSK"};
  static const char* kQsl[] = {"Y", "N", "V"};
  static const char* kPrefixes[] = {"K", "W", "DL", "G", "JA", "VE", "ZZ9"};
  static const char* kNames[] = {"Hans", "Yuki", "Bob", "Ana"};
  std::mt19937 random(seed);
  for (int n = 0; n < 5000; ++n) {
    const bool edit = n > 0 && random() % 4 == 0;
    if (!edit) {
      main.NewCmd.UserClick();
      main.Fieldbox(1).UserType(std::string(kPrefixes[random() % 7]) + std::to_string(n) + "X");
      main.Fieldbox(1).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn);
    }
    if (edit) {
      // An edit that moves no count: a QSO moved to another band or mode keeps its old letter,
      // which a recompute would take back, and that is no kill's doing.
      main.Fieldbox(6).SetText(kNames[random() % 4]);
    } else {
      main.Fieldbox(4).SetText("");
      main.Fieldbox(4).UserType(kFreqs[random() % 7]);
      pick(5, kModes[random() % 4]);
      pick(8, kQsl[random() % 3]);
    }
    main.SaveCmd.UserClick();
    db::Recordset& rs = main.LogPosition.Recordset();
    auto text = [&rs](const char* name) { return rs.Fields(name).Value().ToStringOrEmpty(); };
    say("saved|" + text("Call") + "|" + text("Band") + "|" + text("Mode") + "|" +
        text("QSL_Rcvd"));
  }
  _exit(0);
}

// Every row of `sql` as text, NULL as "<null>".
std::vector<std::vector<std::string>> Query(const std::string& path, const std::string& sql) {
  std::vector<std::vector<std::string>> rows;
  sqlite3* db = nullptr;
  sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) == SQLITE_OK) {
    while (sqlite3_step(st) == SQLITE_ROW) {
      std::vector<std::string> row;
      for (int c = 0; c < sqlite3_column_count(st); ++c) {
        const unsigned char* t = sqlite3_column_text(st, c);
        row.push_back(t ? reinterpret_cast<const char*>(t) : "<null>");
      }
      rows.push_back(std::move(row));
    }
  }
  sqlite3_finalize(st);
  sqlite3_close(db);
  return rows;
}

// The Progress letters a recompute of `log` gives, by country code: every letter cleared, then
// each QSO counted in again as a save counts it.
std::map<std::string, std::vector<std::string>> Recomputed(const std::string& log,
                                                           const std::string& scratch) {
  // The file with its write-ahead log: what the killed program committed may be only there.
  for (const char* suffix : {"", "-wal"}) {
    std::filesystem::remove(scratch + suffix);
    if (std::filesystem::exists(log + suffix))
      std::filesystem::copy_file(log + suffix, scratch + suffix);
  }
  std::map<std::string, std::vector<std::string>> letters;
  db::Database copy = db::DBEngine::Workspaces(0).OpenDatabase(scratch);
  {
    db::Recordset progress = copy.OpenRecordset("Progress", db::dbOpenDynaset);
    for (; !progress.EOF_(); progress.MoveNext()) {
      progress.Edit();
      for (int c = kProgressFirstBand; c <= kProgressPSK; ++c)
        progress.Fields(c).SetValue(vb::Variant(std::string()));
      progress.Update();
    }
  }
  db::Recordset progress = copy.OpenRecordset("Progress", db::dbOpenDynaset);
  progress.SetSort("Prefix");
  db::Recordset progressView = progress.OpenRecordset();
  db::Recordset qsos = copy.OpenRecordset("QSOs", db::dbOpenDynaset);
  for (; !qsos.EOF_(); qsos.MoveNext()) UpdateProgress(qsos, progressView, false, {}, nullptr);
  db::Recordset all = copy.OpenRecordset("Progress", db::dbOpenDynaset);
  for (; !all.EOF_(); all.MoveNext()) {
    std::vector<std::string>& row = letters[all.Fields(kProgressCountryCode).Value().ToStringOrEmpty()];
    for (int c = kProgressFirstBand; c <= kProgressPSK; ++c)
      row.push_back(all.Fields(c).Value().ToStringOrEmpty());
  }
  copy.Close();
  return letters;
}

TEST(OperatorKill, AKilledProgramKeepsEverySavedQSOAndNoLetterAhead) {
  std::random_device device;
  const unsigned base = device();
  test::TempDir dir;
  int lostTotal = 0, tornTotal = 0, aheadTotal = 0;
  long savedTotal = 0;
  for (int run = 0; run < kRuns; ++run) {
    const unsigned seed = base + run;
    SCOPED_TRACE("seed " + std::to_string(seed));
    const std::string folder = dir.Join("run" + std::to_string(run));
    std::filesystem::create_directories(folder);
    std::string lastCall;
    int pipeFds[2];
    ASSERT_EQ(pipe(pipeFds), 0);
    std::fflush(nullptr);
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      close(pipeFds[0]);
      Operate(pipeFds[1], seed);
    }
    close(pipeFds[1]);
    // Wait for the program to start, then kill it after a random share of a second of work.
    std::mt19937 random(seed);
    std::string buffer, line;
    auto readLine = [&](int timeoutMs) {
      while (true) {
        const auto eol = buffer.find('\n');
        if (eol != std::string::npos) {
          line = buffer.substr(0, eol);
          buffer.erase(0, eol + 1);
          return true;
        }
        pollfd p{pipeFds[0], POLLIN, 0};
        if (poll(&p, 1, timeoutMs) <= 0) return false;
        char chunk[4096];
        const ssize_t n = read(pipeFds[0], chunk, sizeof chunk);
        if (n <= 0) return false;
        buffer.append(chunk, static_cast<size_t>(n));
      }
    };
    ASSERT_TRUE(readLine(60000)) << "the program did not start";
    ASSERT_EQ(line.rfind("log ", 0), 0u) << line;
    const std::string log = line.substr(4);
    usleep(static_cast<useconds_t>(random() % 400000));
    kill(pid, SIGKILL);
    int status = 0;
    waitpid(pid, &status, 0);
    // What the child said before it died is still in the pipe.
    std::map<std::string, Saved> saved;
    while (readLine(1000)) {
      std::vector<std::string> parts;
      for (size_t at = 0;;) {
        const size_t bar = line.find('|', at);
        parts.push_back(line.substr(at, bar - at));
        if (bar == std::string::npos) break;
        at = bar + 1;
      }
      ASSERT_EQ(parts.size(), 5u) << line;
      ASSERT_EQ(parts[0], "saved") << line;
      saved[parts[1]] = Saved{parts[2], parts[3], parts[4]};
      lastCall = parts[1];
    }
    close(pipeFds[0]);
    savedTotal += static_cast<long>(saved.size());

    ASSERT_EQ(Query(log, "PRAGMA integrity_check"),
              (std::vector<std::vector<std::string>>{{"ok"}}));
    const auto rows = Query(log, "SELECT Call, Band, Mode, QSL_Rcvd, QSO_Begin FROM QSOs");
    std::map<std::string, Saved> inFile;
    int torn = 0, blank = 0;
    for (const auto& r : rows) {
      // New writes the QSO in hand as an empty row at once; one may be left, all Null.
      if (r == std::vector<std::string>(5, "<null>")) {
        ++blank;
        continue;
      }
      if (r[0] == "<null>" || r[0].empty() || r[4] == "<null>") {
        ++torn;
        ADD_FAILURE() << "torn row: " << r[0] << " " << r[1] << " " << r[2] << " " << r[3] << " "
                      << r[4];
      }
      inFile[r[0]] = Saved{r[1] == "<null>" ? "" : r[1], r[2] == "<null>" ? "" : r[2],
                           r[3] == "<null>" ? "" : r[3]};
    }
    int lost = 0;
    for (const auto& [call, s] : saved) {
      const auto it = inFile.find(call);
      if (it == inFile.end()) {
        ++lost;
        ADD_FAILURE() << call << " was saved and is missing";
        continue;
      }
      // An edit of this QSO under way when the kill came may have reached the file.
      if (it->second.band != s.band || it->second.mode != s.mode ||
          it->second.qslRcvd != s.qslRcvd) {
        EXPECT_EQ(call, lastCall) << call << " differs from its last save: file " << it->second.band
                                  << "/" << it->second.mode << "/" << it->second.qslRcvd
                                  << ", saved " << s.band << "/" << s.mode << "/" << s.qslRcvd;
      }
    }
    EXPECT_LE(blank, 1);
    EXPECT_LE(rows.size(), saved.size() + 1);
    EXPECT_EQ(torn, 0);

    // Progress never ahead of a recompute.
    const auto recomputed = Recomputed(log, folder + "/recomputed.vdb");
    int ahead = 0;
    for (const auto& r : Query(log, "SELECT * FROM Progress")) {
      const auto it = recomputed.find(r[kProgressCountryCode]);
      ASSERT_NE(it, recomputed.end()) << r[kProgressCountryCode];
      for (int c = kProgressFirstBand; c <= kProgressPSK; ++c) {
        const std::string kept = r[static_cast<size_t>(c)] == "<null>" ? "" : r[static_cast<size_t>(c)];
        const std::string again = it->second[static_cast<size_t>(c - kProgressFirstBand)];
        if (ProgressLetterStrength(kept) > ProgressLetterStrength(again)) {
          ++ahead;
          ADD_FAILURE() << "entity " << r[kProgressCountryCode] << " column " << c << ": kept "
                        << kept << ", recomputed " << again;
        }
      }
    }
    lostTotal += lost;
    tornTotal += torn;
    aheadTotal += ahead;
    std::filesystem::remove_all(folder);
    // The child's own folders, which its death left behind.
    for (std::filesystem::path p = log; p.has_parent_path() && p != p.parent_path();
         p = p.parent_path()) {
      if (p.filename().string().rfind("vellumar-test-", 0) == 0) {
        std::filesystem::remove_all(p);
        break;
      }
    }
  }
  std::printf("operator kills: %d runs, %ld saves returned, rows lost %d, torn rows %d, "
              "letters ahead of a recompute %d\n",
              kRuns, savedTotal, lostTotal, tornTotal, aheadTotal);
}

}  // namespace
}  // namespace vellumar
