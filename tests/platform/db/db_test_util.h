#pragma once
// Helpers of the record layer's tests: a temporary folder, the log's table shapes, a second
// process to talk to, and a way to catch the error number of a call.
#include <sys/types.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "logstore/schema_tables.h"
#include "platform/db/database.h"
#include "platform/vb/variant.h"

namespace vellumar::db::testing {

// A fresh folder under the system's temporary folder, removed with everything in it at the end.
class TempDir {
 public:
  TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir();
  std::string Path(const std::string& name) const { return dir_ + "/" + name; }

 private:
  std::string dir_;
};

// The 35 fields of the log's QSOs table, in order.
inline const auto& QsoFields() { return logstore::kQSOFields; }

// Creates QSOs as a new log has it: fields with dbUpdatableField, text and memo allowing zero
// length, indexes Timestamp (QSO_Begin) and Callsign (Call), neither unique.
void CreateQsoTable(Database& db, const std::string& name = "QSOs");
// Creates Progress: CountryCode text 3, Prefix text 6, Valid boolean, 15 status columns, and the
// unique index CountryCode.
void CreateProgressTable(Database& db);

// Adds a row through AddNew/Update; values by field name.
void AddRow(Recordset& rs, const std::vector<std::pair<std::string, vb::Variant>>& values);

// Runs f and returns the number of the VbError it raised, or 0 when it raised none.
int ErrorOf(const std::function<void()>& f);
// As ErrorOf, also keeping the description.
int ErrorOf(const std::function<void()>& f, std::string& description);

// The current row's field as a string ("<Null>" for Null).
std::string Text(const Recordset& rs, const std::string& field);

// The values of one field over a whole recordset, MoveFirst to EOF.
std::vector<std::string> Column(Recordset rs, const std::string& field);

// A date value from "YYYY-MM-DD HH:MM:SS".
double Date(const std::string& storageText);

// db_test_child running with pipes to its stdin and from its stdout; killed at the end if alive.
class ChildProcess {
 public:
  explicit ChildProcess(const std::vector<std::string>& args);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  void Send(const std::string& line);  // a line to its stdin
  // The next line of its output, without the newline; "" at end of output or after timeoutMs.
  std::string ReadLine(int timeoutMs = 10000);
  void Kill();  // SIGKILL and reap
  int Wait();   // exit status
  pid_t pid() const { return pid_; }

 private:
  pid_t pid_ = -1;
  int in_ = -1;   // to the child's stdin
  int out_ = -1;  // from the child's stdout
  std::string pending_;
};

}  // namespace vellumar::db::testing
