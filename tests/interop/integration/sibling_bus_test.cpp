// The desktop program and the sibling simulator as separate processes on a private session bus
// (the test runs under dbus-run-session): a sibling's log of two QSOs reaches the log file with
// Progress raised, getprogress answers as the Progress table says and a linked Progress follows,
// newentry reaches the lookup, a killed sibling is tried again five seconds later, shutdown ends
// the program five seconds later telling the sibling that no log is open, and the program
// listens on no TCP port meanwhile.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>
#include <fstream>
#include <memory>
#include <sstream>
#include <vector>
#include <set>
#include <string>

namespace {

const QString kBin = QStringLiteral(VELLUMAR_BINARY_DIR "/bin/");

// A process driven by lines: what it prints is kept, and waited for by its beginning.
class Driven {
 public:
  explicit Driven(const QString& program, const QStringList& args = {},
                  const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment()) {
    process_.setProcessEnvironment(env);
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start(program, args);
    started_ = process_.waitForStarted(5000);
  }
  ~Driven() {
    if (process_.state() != QProcess::NotRunning) {
      process_.kill();
      process_.waitForFinished(5000);
    }
  }
  bool Started() const { return started_; }
  void Send(const std::string& line) {
    process_.write(QByteArray::fromStdString(line + "\n"));
    process_.waitForBytesWritten(1000);
  }
  // The first line not yet taken that begins with `prefix`, or "<timeout>".
  std::string WaitFor(const std::string& prefix, int ms = 10000) {
    QElapsedTimer clock;
    clock.start();
    for (;;) {
      while (process_.canReadLine()) lines_.push_back(process_.readLine().trimmed().toStdString());
      for (auto it = lines_.begin(); it != lines_.end(); ++it) {
        if (it->rfind(prefix, 0) == 0) {
          std::string line = *it;
          lines_.erase(it);
          return line;
        }
      }
      if (clock.elapsed() > ms) return "<timeout>";
      process_.waitForReadyRead(50);
    }
  }
  QProcess& process() { return process_; }
  std::string Seen() const {
    std::string all;
    for (const auto& l : lines_) all += l + "\n";
    return all;
  }

 private:
  QProcess process_;
  bool started_ = false;
  std::vector<std::string> lines_;
};

std::string Query(const std::string& path, const std::string& sql) {
  sqlite3* db = nullptr;
  std::string out = "<error>";
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) == SQLITE_OK) {
      out = sqlite3_step(st) == SQLITE_ROW && sqlite3_column_text(st, 0)
                ? reinterpret_cast<const char*>(sqlite3_column_text(st, 0))
                : "";
    }
    sqlite3_finalize(st);
  }
  sqlite3_close(db);
  return out;
}

// Inodes of the sockets the process holds.
std::set<std::string> SocketInodes(qint64 pid) {
  std::set<std::string> inodes;
  const QDir fds(QStringLiteral("/proc/%1/fd").arg(pid));
  for (const QFileInfo& fd : fds.entryInfoList(QDir::System | QDir::NoDotAndDotDot)) {
    const std::string target = fd.symLinkTarget().toStdString();
    const QString link = QFile::symLinkTarget(fd.absoluteFilePath());
    const std::string text = link.isEmpty() ? target : link.toStdString();
    const auto open = text.find("socket:[");
    if (open != std::string::npos) inodes.insert(text.substr(open + 8, text.size() - open - 9));
  }
  return inodes;
}

// The listening TCP sockets (state 0A) among `inodes`.
int ListeningTcp(const std::set<std::string>& inodes) {
  int count = 0;
  for (const char* table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
    std::ifstream in(table);
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
      std::istringstream fields(line);
      std::string sl, local, remote, state, queues, timer, retr, uid, timeout, inode;
      fields >> sl >> local >> remote >> state >> queues >> timer >> retr >> uid >> timeout >> inode;
      if (state == "0A" && inodes.count(inode)) ++count;
    }
  }
  return count;
}

TEST(SiblingBus, TheProgramAndItsSiblingsOverTheSessionBus) {
  ASSERT_FALSE(qgetenv("DBUS_SESSION_BUS_ADDRESS").isEmpty()) << "run under dbus-run-session";
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  const QString home = dir.filePath(QStringLiteral("home"));
  const QString config = dir.filePath(QStringLiteral("config"));
  QDir().mkpath(config + "/vellumar");
  {
    std::ofstream ini((config + "/vellumar/Vellumar.ini").toStdString());
    ini << "[Configuration]\nCallsign=K1ABC\n[RAC]\nRACEnabled=0\n";
  }
  const std::string logPath = (home + "/Databases/K1ABC.vdb").toStdString();

  auto sim = std::make_unique<Driven>(kBin + "siblingsim");
  ASSERT_TRUE(sim->Started());
  for (const char* app : {"Atlasine", "Songlark", "Clustrine"}) {
    sim->Send(std::string("own ") + app);
    ASSERT_EQ(sim->WaitFor("ok own"), std::string("ok own ") + app);
  }
  sim->Send("answer Atlasine VP2EAB VP2E 12 NA 8 11");
  sim->WaitFor("ok answer");

  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("VELLUMAR_HOME", home);
  env.insert("XDG_CONFIG_HOME", config);
  env.insert("QT_QPA_PLATFORM", "offscreen");
  Driven program(kBin + "vellumar", {}, env);
  ASSERT_TRUE(program.Started());

  // Start-up: Songlark and Clustrine told, the log's name to Atlasine and Clustrine.
  EXPECT_EQ(sim->WaitFor("received Songlark"), "received Songlark DDEClient 001start");
  EXPECT_EQ(sim->WaitFor("linked Songlark", 15000), "linked Songlark");
  EXPECT_EQ(sim->WaitFor("received Atlasine"),
            "received Atlasine DDEServer 003newlog" + logPath);

  // A log of two QSOs.
  sim->Send("send Songlark 001log<CALL:4>K1AB<QSO_DATE:8>20240314<TIME_ON:4>1200<BAND:3>20M"
            "<MODE:2>CW<DXCC:3>291<EOR><CALL:5>G3XYZ<QSO_DATE:8>20240314<TIME_ON:4>1201"
            "<BAND:3>40M<MODE:3>SSB<DXCC:3>223<EOR>");
  EXPECT_EQ(sim->WaitFor("accepted"), "accepted");
  EXPECT_EQ(Query(logPath, "SELECT COUNT(*) FROM QSOs WHERE Call IN ('K1AB','G3XYZ')"), "2");
  EXPECT_EQ(Query(logPath, "SELECT \"20M\" FROM Progress WHERE CountryCode = '291'"), "W");
  EXPECT_EQ(Query(logPath, "SELECT PHONE FROM Progress WHERE CountryCode = '223'"), "W");

  // getprogress, and a client following Progress.
  sim->Send("follow Clustrine Progress");
  sim->WaitFor("ok follow");
  sim->Send("send Songlark 001getprogress<ProgressPrefix:1>K<ProgressBand:3>20M<ProgressMode:2>CW");
  EXPECT_EQ(sim->WaitFor("accepted"), "accepted");
  EXPECT_EQ(sim->WaitFor("changed Progress"), "changed Progress W");
  sim->Send("request Songlark Progress");
  EXPECT_EQ(sim->WaitFor("value"), "value W");
  sim->Send("send Songlark 001getprogress<ProgressPrefix:4>ZZ9Z<ProgressBand:3>20M<ProgressMode:2>CW");
  EXPECT_EQ(sim->WaitFor("changed Progress"), "changed Progress ?");

  // newentry: the Capture window's lookup asks Atlasine a moment later.
  sim->Send("send Songlark 001newentry<entrycallsign:6>VP2EAB<entryfreq:6>14.025<entrymode:2>CW");
  EXPECT_EQ(sim->WaitFor("accepted"), "accepted");
  EXPECT_EQ(sim->WaitFor("received Atlasine DDEServer 003lookup"),
            "received Atlasine DDEServer 003lookupVP2EAB");

  // No TCP port is listened on.
  EXPECT_EQ(ListeningTcp(SocketInodes(program.process().processId())), 0);

  // The simulator killed: the program tries again five seconds later, and a simulator back by
  // then is linked and told the log's name a second after.
  sim->process().kill();
  sim->process().waitForFinished(5000);
  QElapsedTimer sinceKill;
  sinceKill.start();
  sim = std::make_unique<Driven>(kBin + "siblingsim");
  sim->Send("own Atlasine");
  ASSERT_EQ(sim->WaitFor("ok own"), "ok own Atlasine");
  EXPECT_EQ(sim->WaitFor("received Atlasine", 12000),
            "received Atlasine DDEServer 003newlog" + logPath);
  const qint64 relinked = sinceKill.elapsed();
  EXPECT_GE(relinked, 5500);
  EXPECT_LE(relinked, 8000);

  // shutdown: five seconds later the program ends, Atlasine hearing that no log is open.
  sim->Send("own Songlark");
  sim->WaitFor("ok own");
  sim->Send("send Songlark 001shutdown");
  EXPECT_EQ(sim->WaitFor("accepted"), "accepted") << sim->Seen();
  QElapsedTimer sinceShutdown;
  sinceShutdown.start();
  EXPECT_EQ(sim->WaitFor("received Atlasine", 9000), "received Atlasine DDEServer 003newlog");
  ASSERT_TRUE(program.process().waitForFinished(5000));
  EXPECT_GE(sinceShutdown.elapsed(), 4500);
  EXPECT_EQ(program.process().exitCode(), 0);
  EXPECT_EQ(program.process().exitStatus(), QProcess::NormalExit);
  sim->Send("quit");
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
