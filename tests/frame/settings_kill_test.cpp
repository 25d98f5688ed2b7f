// A process killed at any moment while it saves settings leaves the old settings or the new
// ones, complete: never a torn file, and never a temporary file read in its place.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "frame/atomic_file.h"
#include "frame/settings_store.h"
#include "support/temp_dir.h"

namespace vellumar {
namespace {

// The large value of one generation: its number first, then a body whose length and bytes
// follow from the number, alternating between short and long.
std::string Blob(long generation) {
  const std::size_t length = generation % 2 == 0 ? 150000 : 400000;
  std::string text = std::to_string(generation) + ":";
  std::mt19937 rng(static_cast<unsigned>(generation));
  while (text.size() < length) text += static_cast<char>('a' + rng() % 26);
  return text;
}

long GenerationOf(const std::string& blob) {
  const auto colon = blob.find(':');
  if (colon == std::string::npos || colon == 0) return -1;
  try {
    return std::stol(blob.substr(0, colon));
  } catch (...) {
    return -1;
  }
}

// The child: saves generation after generation as fast as it can, telling the parent through
// the pipe once it is under way. It never returns into the test framework.
[[noreturn]] void SaveForever(const std::string& root, long firstGeneration, int readyFd) {
  try {
    SettingsStore store(root);
    for (long generation = firstGeneration;; ++generation) {
      store.SaveSetting("Vellumar", "Kill", "Blob", Blob(generation));
      store.SaveSetting("Vellumar", "Kill", "Generation", std::to_string(generation));
      if (generation == firstGeneration) {
        const char ready = 'r';
        if (write(readyFd, &ready, 1) != 1) _exit(3);
      }
    }
  } catch (...) {
    _exit(2);
  }
}

TEST(SettingsKill, KilledWriterLeavesOldOrNewContentNeverTorn) {
  test::TempDir dir;
  const std::string root = dir.Join("config");
  {
    SettingsStore store(root);
    store.SaveSetting("Vellumar", "Configuration", " LogFontItalic", "True");
    store.SaveSetting("Vellumar", "Configuration", "Callsign", "K1ABC");
    store.SaveSetting("Vellumar", "Kill", "Blob", Blob(0));
    store.SaveSetting("Vellumar", "Kill", "Generation", "0");
  }
  std::mt19937 rng(12345);
  long lastSeen = 0;
  int tornFreeChecks = 0;
  int killsDuringWrite = 0;
  for (int round = 0; round < 20; ++round) {
    int pipeFds[2];
    ASSERT_EQ(pipe(pipeFds), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      close(pipeFds[0]);
      SaveForever(root, lastSeen + 1, pipeFds[1]);
    }
    close(pipeFds[1]);
    char ready = 0;
    const ssize_t got = read(pipeFds[0], &ready, 1);
    close(pipeFds[0]);
    ASSERT_EQ(got, 1) << "the writer failed before its first save";
    // A random moment within the next few saves.
    std::this_thread::sleep_for(std::chrono::microseconds(rng() % 40000));
    ASSERT_EQ(kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended on its own, status " << status;

    SettingsStore reader(root);
    const std::string blob = reader.GetSetting("Vellumar", "Kill", "Blob", "");
    const long generation = GenerationOf(blob);
    // The child's first save was complete before it said it was under way.
    ASSERT_GE(generation, lastSeen + 1) << "round " << round << ": settings went back or are torn";
    ASSERT_TRUE(blob == Blob(generation))
        << "round " << round << ": blob " << generation << " is torn, length " << blob.size();
    // The other settings are all there, whatever moment the kill hit.
    EXPECT_EQ(reader.GetSetting("Vellumar", "Configuration", " LogFontItalic", ""), "True");
    EXPECT_EQ(reader.GetSetting("Vellumar", "Configuration", "Callsign", ""), "K1ABC");
    const long recorded = std::stol(reader.GetSetting("Vellumar", "Kill", "Generation", "-1"));
    // The generation key is saved right after the blob: it equals the blob's or lags by one.
    EXPECT_TRUE(recorded == generation || recorded == generation - 1)
        << "blob " << generation << " generation key " << recorded;
    // A temporary file of the killed writer means the kill hit it in the middle of a save.
    if (std::filesystem::exists(AtomicTemporaryName(reader.FilePath("Vellumar"), child))) {
      ++killsDuringWrite;
    }
    lastSeen = generation;
    ++tornFreeChecks;
  }
  EXPECT_EQ(tornFreeChecks, 20);
  RecordProperty("KillsDuringWrite", killsDuringWrite);
  RecordProperty("Generations", static_cast<int>(lastSeen));

  // Whatever the kills left behind, the next save clears the dead writers' temporary files.
  SettingsStore store(root);
  store.SaveSetting("Vellumar", "Kill", "Done", "1");
  for (const auto& entry : std::filesystem::directory_iterator(root)) {
    EXPECT_EQ(entry.path().filename().string(), "Vellumar.ini");
  }
}

}  // namespace
}  // namespace vellumar
