// `vellumar-cli import` killed with SIGKILL at random moments of a 20,000-QSO import. Whatever
// the moment, the log afterwards passes SQLite's integrity check, opens, and holds exactly the
// file's first k QSOs, each whole, with the Progress table a clean import of those k QSOs
// gives; importing the file again (duplicates checked) completes it to the clean import of the
// whole file. The seeds are printed with every failure.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "support/adif_generator.h"
#include "support/temp_dir.h"

namespace vellumar::adif {
namespace {

using Rows = std::vector<std::vector<std::string>>;

constexpr int kQSOs = 20000;
constexpr int kKills = 20;

class CliKill : public ::testing::Test {
 protected:
  // Starts vellumar-cli with `args` in the test's folders, its output to `output`.
  pid_t Spawn(const std::vector<std::string>& args, const std::string& output) {
    const pid_t pid = fork();
    if (pid == 0) {
      setenv("VELLUMAR_HOME", dir.Join("home").c_str(), 1);
      setenv("XDG_CONFIG_HOME", dir.Join("config").c_str(), 1);
      if (!std::freopen(output.c_str(), "w", stdout)) _exit(126);
      if (!std::freopen(output.c_str(), "a", stderr)) _exit(126);
      const std::string cli = std::string(VELLUMAR_BINARY_DIR) + "/bin/vellumar-cli";
      std::vector<char*> argv{const_cast<char*>(cli.c_str())};
      for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
      argv.push_back(nullptr);
      execv(cli.c_str(), argv.data());
      _exit(127);
    }
    return pid;
  }
  // Runs an import to its end; its exit code.
  int Import(const std::string& log, const std::string& adi) {
    const pid_t pid = Spawn({"import", log, adi}, dir.Join("out.txt"));
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::string Output() const {
    std::string text;
    if (FILE* f = std::fopen(dir.Join("out.txt").c_str(), "r")) {
      char buffer[4096];
      std::size_t n;
      while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) text.append(buffer, n);
      std::fclose(f);
    }
    return text;
  }

  // Every row of `sql` as text, NULL as "<null>"; `ok` false when the query fails.
  static Rows Query(const std::string& path, const std::string& sql, bool* ok = nullptr) {
    Rows rows;
    sqlite3* db = nullptr;
    bool good = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK;
    sqlite3_stmt* st = nullptr;
    good = good && sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) == SQLITE_OK;
    int rc = SQLITE_DONE;
    while (good && (rc = sqlite3_step(st)) == SQLITE_ROW) {
      std::vector<std::string> row;
      for (int c = 0; c < sqlite3_column_count(st); ++c) {
        const unsigned char* t = sqlite3_column_text(st, c);
        row.push_back(t ? reinterpret_cast<const char*>(t) : "<null>");
      }
      rows.push_back(std::move(row));
    }
    good = good && rc == SQLITE_DONE;
    sqlite3_finalize(st);
    sqlite3_close(db);
    if (ok) *ok = good;
    return rows;
  }
  static Rows QSOs(const std::string& log, int limit = -1) {
    return Query(log, "SELECT * FROM QSOs ORDER BY rowid LIMIT " + std::to_string(limit));
  }
  static Rows Progress(const std::string& log) {
    return Query(log, "SELECT * FROM Progress ORDER BY CountryCode");
  }

  vellumar::test::TempDir dir;
};

TEST_F(CliKill, AKilledImportLeavesTheFirstQSOsWholeAndARerunCompletesIt) {
  test::AdifGeneratorOptions options;
  options.count = kQSOs;
  options.seed = 20;
  options.entities = {{"K", 291}, {"DL", 230}, {"G", 223}, {"JA", 339}, {"VE", 1},
                      {"F", 227}, {"I", 248},  {"EA", 281}, {"PY", 108}, {"VK", 150}};
  options.withoutDxccPercent = 30;
  const std::string adif = test::GenerateAdif(options);
  const std::string adi = dir.Join("in.adi");
  {
    FILE* f = std::fopen(adi.c_str(), "wb");
    ASSERT_NE(f, nullptr);
    std::fwrite(adif.data(), 1, adif.size(), f);
    std::fclose(f);
  }

  // The clean import of the whole file, and how long it takes.
  const std::string reference = dir.Join("reference.vdb");
  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(Import(reference, adi), 0) << Output();
  const auto fullRun = std::chrono::steady_clock::now() - start;
  const Rows all = QSOs(reference);
  ASSERT_EQ(all.size(), static_cast<std::size_t>(kQSOs)) << Output();
  const Rows fullProgress = Progress(reference);

  std::random_device device;
  const unsigned base = device();
  const long long spanUs =
      std::chrono::duration_cast<std::chrono::microseconds>(fullRun).count() * 11 / 10;
  std::vector<int> kept;
  for (int run = 0; run < kKills; ++run) {
    const unsigned seed = base + run;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string log = dir.Join("killed" + std::to_string(run) + ".vdb");
    const pid_t pid = Spawn({"import", log, adi}, dir.Join("out.txt"));
    std::this_thread::sleep_for(std::chrono::microseconds(random() % spanUs));
    kill(pid, SIGKILL);
    int status = 0;
    waitpid(pid, &status, 0);

    // A kill before the log was created leaves no log; one after leaves a sound one.
    if (std::filesystem::exists(log)) {
      bool ok = false;
      const Rows check = Query(log, "PRAGMA integrity_check", &ok);
      ASSERT_TRUE(ok);
      ASSERT_EQ(check, Rows{{"ok"}});
      ASSERT_TRUE(ok);
      const Rows rows = QSOs(log);
      const int k = static_cast<int>(rows.size());
      kept.push_back(k);
      ASSERT_EQ(rows, QSOs(reference, k)) << "the first " << k << " QSOs differ";

      const std::string part = dir.Join("part.adi");
      const std::string partLog = dir.Join("part" + std::to_string(run) + ".vdb");
      {
        const std::string first = test::FirstRecords(adif, k);
        FILE* f = std::fopen(part.c_str(), "wb");
        ASSERT_NE(f, nullptr);
        std::fwrite(first.data(), 1, first.size(), f);
        std::fclose(f);
      }
      ASSERT_EQ(Import(partLog, part), 0) << Output();
      EXPECT_EQ(Progress(log), Progress(partLog)) << "after " << k << " QSOs";
      std::filesystem::remove(partLog);
    } else {
      kept.push_back(-1);
    }

    // The same import again, duplicates checked, completes the log.
    ASSERT_EQ(Import(log, adi), 0) << Output();
    EXPECT_EQ(QSOs(log), all);
    EXPECT_EQ(Progress(log), fullProgress);
    std::filesystem::remove(log);
  }
  std::string summary;
  for (int k : kept) summary += " " + std::to_string(k);
  std::printf("killed imports kept (QSOs, -1: no log yet):%s\n", summary.c_str());
}

}  // namespace
}  // namespace vellumar::adif
