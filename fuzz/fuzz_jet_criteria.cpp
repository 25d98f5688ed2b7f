// Jet criteria and filters from outside: every input is translated and runs, or is refused with
// 3075; nothing else is raised and nothing crashes.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "logstore/schema_tables.h"
#include "platform/db/database.h"
#include "platform/vb/error.h"

using namespace vellumar;

namespace {

db::Database& Log() {
  static db::Database log = [] {
    std::string path = "/tmp/vellumar-fuzz-jet-" + std::to_string(getpid()) + ".vdb";
    unlink(path.c_str());
    db::Database d = db::DBEngine::Workspaces(0).CreateDatabase(path);
    db::TableDef t = d.CreateTableDef("QSOs");
    for (const auto& s : logstore::kQSOFields)
      t.Fields().Append(t.CreateField(s.name, s.type, s.size));
    d.TableDefs().Append(t);
    db::Recordset rs = d.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.AddNew();
    rs.Fields("Call").SetValue(vb::Variant("K1ABC"));
    rs.Fields("Band").SetValue(vb::Variant("20M"));
    rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(45000.5));
    rs.Update();
    unlink(path.c_str());  // the open file stays usable; nothing is left behind
    return d;
  }();
  return log;
}

void Check(const vb::VbError& e) {
  if (e.number() != 3075) {
    std::fprintf(stderr, "refused with %d, not 3075: %s\n", e.number(), e.description().c_str());
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  db::Recordset rs = Log().OpenRecordset("QSOs", db::dbOpenDynaset);
  try {
    rs.FindFirst(text);
  } catch (const vb::VbError& e) {
    Check(e);
  }
  try {
    rs.SetFilter(text);
    db::Recordset view = rs.OpenRecordset();
    if (!view.EOF_()) view.MoveLast();
  } catch (const vb::VbError& e) {
    Check(e);
  }
  return 0;
}
