#include "platform/db/db_test_util.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "platform/db/dao_constants.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"

namespace vellumar::db::testing {

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vellumar-db-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
  dir_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ec;
  // Read-only files inside must not stop the removal.
  for (auto& entry : std::filesystem::recursive_directory_iterator(dir_, ec)) {
    std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ec);
  }
  std::filesystem::remove_all(dir_, ec);
}

void CreateQsoTable(Database& db, const std::string& name) {
  TableDef t = db.CreateTableDef(name);
  for (const auto& shape : QsoFields()) {
    Field f = t.CreateField(shape.name, shape.type, shape.size);
    f.SetAttributes(dbUpdatableField);
    if (shape.type == dbText || shape.type == dbMemo) f.SetAllowZeroLength(true);
    t.Fields().Append(f);
  }
  db.TableDefs().Append(t);
  for (auto [index, field] : {std::pair{"Timestamp", "QSO_Begin"}, std::pair{"Callsign", "Call"}}) {
    Index i = t.CreateIndex(index);
    i.SetPrimary(false);
    i.SetUnique(false);
    i.Fields().Append(i.CreateField(field));
    t.Indexes().Append(i);
  }
}

void CreateProgressTable(Database& db) {
  TableDef t = db.CreateTableDef("Progress");
  auto add = [&](const char* name, int type, long size) {
    Field f = t.CreateField(name, type, size);
    f.SetAttributes(dbUpdatableField);
    if (type == dbText) f.SetAllowZeroLength(true);
    t.Fields().Append(f);
  };
  add("CountryCode", dbText, 3);
  add("Prefix", dbText, 6);
  add("Valid", dbBoolean, 1);
  for (const char* c : {"160M", "80M", "40M", "30M", "20M", "17M", "15M", "12M", "10M", "6M", "2M",
                        "PHONE", "CW", "RTTY", "PSK"}) {
    add(c, dbText, 1);
  }
  Index i = t.CreateIndex("CountryCode");
  i.SetPrimary(false);
  i.SetUnique(true);
  i.Fields().Append(i.CreateField("CountryCode"));
  t.Indexes().Append(i);
  db.TableDefs().Append(t);
}

void AddRow(Recordset& rs, const std::vector<std::pair<std::string, vb::Variant>>& values) {
  rs.AddNew();
  for (const auto& [name, value] : values) rs.Fields(name).SetValue(value);
  rs.Update();
}

int ErrorOf(const std::function<void()>& f, std::string& description) {
  try {
    f();
  } catch (const vb::VbError& e) {
    description = e.description();
    return e.number();
  }
  return 0;
}

int ErrorOf(const std::function<void()>& f) {
  std::string ignored;
  return ErrorOf(f, ignored);
}

std::string Text(const Recordset& rs, const std::string& field) {
  vb::Variant v = rs.Fields(field).Value();
  if (v.IsNull()) return "<Null>";
  return v.ToString();
}

std::vector<std::string> Column(Recordset rs, const std::string& field) {
  std::vector<std::string> out;
  if (rs.BOF() && rs.EOF_()) return out;
  rs.MoveFirst();
  while (!rs.EOF_()) {
    out.push_back(Text(rs, field));
    rs.MoveNext();
  }
  return out;
}

double Date(const std::string& storageText) {
  auto d = vb::FromStorageText(storageText);
  if (!d) throw std::runtime_error("bad date in test: " + storageText);
  return *d;
}

ChildProcess::ChildProcess(const std::vector<std::string>& args) {
  int toChild[2], fromChild[2];
  if (pipe2(toChild, O_CLOEXEC) != 0 || pipe2(fromChild, O_CLOEXEC) != 0) {
    throw std::runtime_error("pipe failed");
  }
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("fork failed");
  if (pid_ == 0) {
    dup2(toChild[0], 0);
    dup2(fromChild[1], 1);
    std::vector<char*> argv;
    for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
  }
  close(toChild[0]);
  close(fromChild[1]);
  in_ = toChild[1];
  out_ = fromChild[0];
}

ChildProcess::~ChildProcess() {
  if (in_ >= 0) close(in_);
  if (pid_ > 0) Kill();
  if (out_ >= 0) close(out_);
}

void ChildProcess::Send(const std::string& line) {
  std::string data = line + "\n";
  if (write(in_, data.data(), data.size()) != static_cast<ssize_t>(data.size())) {
    throw std::runtime_error("write to child failed");
  }
}

std::string ChildProcess::ReadLine(int timeoutMs) {
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  for (;;) {
    auto nl = pending_.find('\n');
    if (nl != std::string::npos) {
      std::string line = pending_.substr(0, nl);
      pending_.erase(0, nl + 1);
      return line;
    }
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                    deadline - std::chrono::steady_clock::now())
                    .count();
    if (left <= 0) return {};
    pollfd p{out_, POLLIN, 0};
    if (poll(&p, 1, static_cast<int>(left)) <= 0) continue;
    char buf[4096];
    ssize_t n = read(out_, buf, sizeof buf);
    if (n <= 0) return {};
    pending_.append(buf, static_cast<size_t>(n));
  }
}

void ChildProcess::Kill() {
  if (pid_ <= 0) return;
  kill(pid_, SIGKILL);
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
}

int ChildProcess::Wait() {
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace vellumar::db::testing
