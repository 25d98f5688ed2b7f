// The second process of the record layer's tests.
//
//   db_test_child hold <path>   opens the database, prints "ready", then obeys lines on stdin:
//                               "addfield <name>" appends a text field to QSOs,
//                               "write <call>" adds a QSO, "count" prints the QSO count,
//                               "setvalue <id> <text>" sets Value of the row of table Walk
//                               whose Id is <id>, "deleteid <id>" deletes that row,
//                               "quit" exits. Each answers "ok", "error <number>" or a count.
//   db_test_child walk <path>   walks table Walk from the first row, setting Value to
//                               "edited <id>" with Edit/Update, and prints each id once its
//                               Update has returned; "done" at the end.
#include <cstdio>
#include <iostream>
#include <string>

#include "platform/db/database.h"
#include "platform/vb/error.h"

using namespace vellumar;
using namespace vellumar::db;

namespace {

template <typename F>
void Answer(F f) {
  try {
    f();
    std::cout << "ok" << std::endl;
  } catch (const vb::VbError& e) {
    std::cout << "error " << e.number() << std::endl;
  }
}

int Hold(const std::string& path) {
  Database db = DBEngine::Workspaces(0).OpenDatabase(path);
  std::cout << "ready" << std::endl;
  std::string line;
  while (std::getline(std::cin, line)) {
    if (line.rfind("addfield ", 0) == 0) {
      Answer([&] {
        TableDef t = db.TableDefs()["QSOs"];
        Field f = t.CreateField(line.substr(9), dbText, 5);
        f.SetAttributes(dbUpdatableField);
        f.SetAllowZeroLength(true);
        t.Fields().Append(f);
      });
    } else if (line.rfind("write ", 0) == 0) {
      Answer([&] {
        Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
        rs.AddNew();
        rs.Fields("Call").SetValue(line.substr(6));
        rs.Update();
        rs.Close();
      });
    } else if (line.rfind("setvalue ", 0) == 0) {
      Answer([&] {
        std::string rest = line.substr(9);
        size_t space = rest.find(' ');
        Recordset rs = db.OpenRecordset("Walk", dbOpenDynaset);
        rs.FindFirst("Id = " + rest.substr(0, space));
        if (rs.NoMatch()) throw vb::VbError(3021, "no such row");
        rs.Edit();
        rs.Fields("Value").SetValue(space == std::string::npos ? "" : rest.substr(space + 1));
        rs.Update();
        rs.Close();
      });
    } else if (line.rfind("deleteid ", 0) == 0) {
      Answer([&] {
        Recordset rs = db.OpenRecordset("Walk", dbOpenDynaset);
        rs.FindFirst("Id = " + line.substr(9));
        if (rs.NoMatch()) throw vb::VbError(3021, "no such row");
        rs.Delete();
        rs.Close();
      });
    } else if (line == "count") {
      try {
        Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
        if (!rs.EOF_()) rs.MoveLast();
        std::cout << rs.RecordCount() << std::endl;
      } catch (const vb::VbError& e) {
        std::cout << "error " << e.number() << std::endl;
      }
    } else if (line == "quit") {
      break;
    }
  }
  db.Close();
  return 0;
}

int Walk(const std::string& path) {
  Database db = DBEngine::Workspaces(0).OpenDatabase(path);
  Recordset rs = db.OpenRecordset("Walk", dbOpenDynaset);
  rs.MoveFirst();
  while (!rs.EOF_()) {
    std::string id = rs.Fields("Id").Value().ToString();
    rs.Edit();
    rs.Fields("Value").SetValue("edited " + id);
    rs.Update();
    // Reported only after Update has returned: the parent holds us to every id it has read.
    std::fputs((id + "\n").c_str(), stdout);
    std::fflush(stdout);
    rs.MoveNext();
  }
  std::cout << "done" << std::endl;
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: db_test_child hold|walk <path>\n";
    return 2;
  }
  std::string mode = argv[1];
  try {
    if (mode == "hold") return Hold(argv[2]);
    if (mode == "walk") return Walk(argv[2]);
  } catch (const vb::VbError& e) {
    std::cout << "error " << e.number() << " " << e.description() << std::endl;
    return 1;
  }
  return 2;
}
