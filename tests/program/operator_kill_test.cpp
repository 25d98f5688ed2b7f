// The program's headless core killed with SIGKILL while an operator works the Log page: a child
// process starts the program on a new log and saves QSOs (band by frequency, mode, QSL received),
// edits the name of the one in hand, confirms it (Confirm) and deletes it (Delete), telling its
// parent after every command that returned; the parent kills it at a random moment. Afterwards
// the log passes SQLite's integrity check and holds every QSO whose save had returned and whose
// delete had not begun, as saved, at most one more (the QSO in hand, which New writes as an empty
// row at once), no row torn, none whose delete had returned; and no Progress letter is stronger
// than a recompute of the log and of the QSOs deleted makes it (a delete leaves its letters, and
// a kill between a row and its Progress update leaves the letter behind, never ahead). 100 runs,
// each with its seed printed on failure.
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
#include <set>
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

// The child: works the Log page until killed, a line to `out` after every command that returned.
// Without confirmsAndDeletes it only saves new QSOs and edits names, which leave what a reader
// compares (band, mode, card) as saved.
[[noreturn]] void Operate(int out, unsigned seed, bool confirmsAndDeletes) {
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
  // The display's recordset is asked for anew each time: a delete of the last QSO reopens the log.
  auto text = [&main](const char* name) {
    return main.LogPosition.Recordset().Fields(name).Value().ToStringOrEmpty();
  };
  auto tellSaved = [&] {
    say("saved|" + text("Call") + "|" + text("Band") + "|" + text("Mode") + "|" +
        text("QSL_Rcvd"));
  };
  bool inHand = false;  // a saved QSO is in the panel
  for (int n = 0; n < 5000; ++n) {
    const unsigned kind = confirmsAndDeletes ? random() % 12 : 2 + random() % 10;
    if (inHand && kind == 0 && text("QSL_Rcvd") != "V") {
      // QSL_Rcvd "Y", saved with its Progress update. (Confirming a verified QSO would lower its
      // card below the letter it counted, which a recompute takes back: no kill's doing.)
      say("confirming|" + text("Call"));  // the QSO whose card may change before "saved"
      main.ConfirmCmd.UserClick();
      tellSaved();
      continue;
    }
    if (inHand && kind == 1) {
      // The letters a recompute would count from it, for the parent's reckoning.
      say("deleting|" + text("Call") + "|" + text("DXCCID") + "|" + text("Band") + "|" +
          text("Mode") + "|" + text("QSL_Rcvd"));
      const std::string call = text("Call");
      if (app.setup().ConfirmDeleteCheck.Value() == 1)
        h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes);
      main.DeleteCmd.UserClick();
      if (h.desktop.PendingExpectations() != 0) _exit(4);
      say("deleted|" + call);
      inHand = main.LogPosition.Recordset().RecordCount() > 0 && !text("Call").empty();
      continue;
    }
    const bool edit = inHand && kind < 4;
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
    tellSaved();
    inHand = true;
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

// A QSO the child deleted or was deleting, as a recompute would have counted it.
struct DeletedQSO {
  std::string call, dxccId, band, mode, qslRcvd;
};

// The Progress letters a recompute of `log` gives, by country code: every letter cleared, then
// each QSO counted in again as a save counts it, also those deleted (a delete keeps its letters).
std::map<std::string, std::vector<std::string>> Recomputed(const std::string& log,
                                                           const std::string& scratch,
                                                           const std::vector<DeletedQSO>& deleted) {
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
  for (const DeletedQSO& d : deleted) {
    qsos.AddNew();
    qsos.Fields("Call").SetValue(vb::Variant(d.call));
    qsos.Fields("DXCCID").SetValue(vb::Variant(d.dxccId));
    qsos.Fields("Band").SetValue(vb::Variant(d.band));
    qsos.Fields("Mode").SetValue(vb::Variant(d.mode));
    qsos.Fields("QSL_Rcvd").SetValue(vb::Variant(d.qslRcvd));
    qsos.Update();
  }
  qsos.Requery();
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

// The operating child as the parent sees it: started, its lines read as they come.
struct OperatorChild {
  OperatorChild(unsigned seed, bool confirmsAndDeletes) {
    if (pipe(fds) != 0) return;
    std::fflush(nullptr);
    pid = fork();
    if (pid == 0) {
      close(fds[0]);
      Operate(fds[1], seed, confirmsAndDeletes);
    }
    close(fds[1]);
  }
  ~OperatorChild() {
    if (pid > 0) {
      kill(pid, SIGKILL);
      waitpid(pid, nullptr, 0);
    }
    close(fds[0]);
  }
  // The next line into `line`; false at the end of the output or after `timeoutMs`.
  bool ReadLine(std::string& line, int timeoutMs) {
    while (true) {
      const auto eol = buffer.find('\n');
      if (eol != std::string::npos) {
        line = buffer.substr(0, eol);
        buffer.erase(0, eol + 1);
        return true;
      }
      pollfd p{fds[0], POLLIN, 0};
      if (poll(&p, 1, timeoutMs) <= 0) return false;
      char chunk[4096];
      const ssize_t n = read(fds[0], chunk, sizeof chunk);
      if (n <= 0) return false;
      buffer.append(chunk, static_cast<size_t>(n));
    }
  }
  void Kill() {
    if (pid <= 0) return;
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    pid = -1;
  }
  int fds[2] = {-1, -1};
  pid_t pid = -1;
  std::string buffer;
};

// "saved|call|band|mode|qsl" split at the bars.
std::vector<std::string> SplitSaved(const std::string& line) {
  std::vector<std::string> parts;
  for (size_t at = 0;;) {
    const size_t bar = line.find('|', at);
    parts.push_back(line.substr(at, bar - at));
    if (bar == std::string::npos) break;
    at = bar + 1;
  }
  return parts;
}

// The folder of a child's program, which its death left behind.
void RemoveChildFolder(const std::string& log) {
  for (std::filesystem::path p = log; p.has_parent_path() && p != p.parent_path();
       p = p.parent_path()) {
    if (p.filename().string().rfind("vellumar-test-", 0) == 0) {
      std::filesystem::remove_all(p);
      return;
    }
  }
}

TEST(OperatorKill, AKilledProgramKeepsEverySavedQSOAndNoLetterAhead) {
  std::random_device device;
  const unsigned base = device();
  test::TempDir dir;
  int lostTotal = 0, tornTotal = 0, aheadTotal = 0;
  long savedTotal = 0, deletesTotal = 0;
  for (int run = 0; run < kRuns; ++run) {
    const unsigned seed = base + run;
    SCOPED_TRACE("seed " + std::to_string(seed));
    const std::string folder = dir.Join("run" + std::to_string(run));
    std::filesystem::create_directories(folder);
    std::string lastCall;
    OperatorChild child(seed, /*confirmsAndDeletes=*/true);
    ASSERT_GT(child.pid, 0);
    std::mt19937 random(seed);
    std::string line;
    // Wait for the program to start, then kill it after a random share of a second of work.
    ASSERT_TRUE(child.ReadLine(line, 60000)) << "the program did not start";
    ASSERT_EQ(line.rfind("log ", 0), 0u) << line;
    const std::string log = line.substr(4);
    usleep(static_cast<useconds_t>(random() % 400000));
    child.Kill();
    // What the child said before it died is still in the pipe.
    std::map<std::string, Saved> saved;
    std::set<std::string> gone;    // deletes that returned
    std::string deleting;          // a delete begun and not seen to return
    std::vector<DeletedQSO> deleted;
    while (child.ReadLine(line, 1000)) {
      const std::vector<std::string> parts = SplitSaved(line);
      if (parts[0] == "deleting") {
        ASSERT_EQ(parts.size(), 6u) << line;
        deleting = parts[1];
        deleted.push_back(DeletedQSO{parts[1], parts[2], parts[3], parts[4], parts[5]});
        continue;
      }
      if (parts[0] == "confirming") {
        ASSERT_EQ(parts.size(), 2u) << line;
        lastCall = parts[1];  // a confirm under way may have reached the file
        continue;
      }
      if (parts[0] == "deleted") {
        ASSERT_EQ(parts.size(), 2u) << line;
        ASSERT_EQ(parts[1], deleting) << line;
        saved.erase(parts[1]);
        gone.insert(parts[1]);
        deleting.clear();
        ++deletesTotal;
        continue;
      }
      ASSERT_EQ(parts.size(), 5u) << line;
      ASSERT_EQ(parts[0], "saved") << line;
      saved[parts[1]] = Saved{parts[2], parts[3], parts[4]};
      lastCall = parts[1];
    }
    // The delete under way when the kill came may or may not have reached the file.
    if (!deleting.empty()) saved.erase(deleting);
    savedTotal += static_cast<long>(saved.size());

    ASSERT_EQ(Query(log, "PRAGMA integrity_check"),
              (std::vector<std::vector<std::string>>{{"ok"}}));
    const auto rows = Query(log, "SELECT Call, Band, Mode, QSL_Rcvd, QSO_Begin FROM QSOs");
    std::map<std::string, Saved> inFile;
    int torn = 0, blank = 0, undeleted = 0;
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
      if (gone.count(r[0])) {
        ++undeleted;
        ADD_FAILURE() << r[0] << " was deleted and is back";
      }
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
    EXPECT_LE(rows.size(), saved.size() + (deleting.empty() ? 1 : 2));
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(undeleted, 0);

    // Progress never ahead of a recompute.
    const auto recomputed = Recomputed(log, folder + "/recomputed.vdb", deleted);
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
    RemoveChildFolder(log);
  }
  std::printf("operator kills: %d runs, %ld QSOs saved and kept, %ld deletes returned, rows lost "
              "%d, torn rows %d, letters ahead of a recompute %d\n",
              kRuns, savedTotal, deletesTotal, lostTotal, tornTotal, aheadTotal);
}

// A second process holding the log open as the spots program does, reading while the program
// saves: each QSO whose save had returned is there at the reader's next read, as saved, and no
// read ever meets a torn row.
TEST(SiblingReader, SeesEverySavedQSOAtItsNextReadAndNoTornRow) {
  std::random_device device;
  const unsigned seed = device();
  SCOPED_TRACE("seed " + std::to_string(seed));
  OperatorChild child(seed, /*confirmsAndDeletes=*/false);
  ASSERT_GT(child.pid, 0);
  std::string line;
  ASSERT_TRUE(child.ReadLine(line, 60000)) << "the program did not start";
  ASSERT_EQ(line.rfind("log ", 0), 0u) << line;
  const std::string log = line.substr(4);
  db::Database reader = db::DBEngine::Workspaces(0).OpenDatabase(log, true);
  db::Recordset qsos = reader.OpenRecordset("QSOs", db::dbOpenDynaset);
  int seen = 0, torn = 0;
  for (int n = 0; n < 400; ++n) {
    ASSERT_TRUE(child.ReadLine(line, 60000)) << "the program stopped saving";
    const std::vector<std::string> parts = SplitSaved(line);
    ASSERT_EQ(parts.size(), 5u) << line;
    qsos.Requery();
    qsos.FindFirst("Call = '" + parts[1] + "'");
    if (qsos.NoMatch()) {
      ADD_FAILURE() << parts[1] << " was saved and the reader doesn't see it";
      continue;
    }
    ++seen;
    // An edit changes the name only: band, mode and card stay as the save left them.
    EXPECT_EQ(qsos.Fields("Band").Value().ToStringOrEmpty(), parts[2]) << parts[1];
    EXPECT_EQ(qsos.Fields("Mode").Value().ToStringOrEmpty(), parts[3]) << parts[1];
    EXPECT_EQ(qsos.Fields("QSL_Rcvd").Value().ToStringOrEmpty(), parts[4]) << parts[1];
    if (n % 50 == 49) {
      // Every row the reader meets is whole: a saved QSO, or the empty row of the QSO in hand.
      for (qsos.MoveFirst(); !qsos.EOF_(); qsos.MoveNext()) {
        const vb::Variant call = qsos.Fields("Call").Value();
        const vb::Variant begin = qsos.Fields("QSO_Begin").Value();
        if (call.IsNull() && begin.IsNull()) continue;
        if (call.ToStringOrEmpty().empty() || begin.IsNull()) ++torn;
      }
    }
  }
  child.Kill();
  reader.Close();
  EXPECT_EQ(torn, 0);
  std::printf("sibling reader: %d saves seen at the next read, torn rows %d\n", seen, torn);
  RemoveChildFolder(log);
}

}  // namespace
}  // namespace vellumar
