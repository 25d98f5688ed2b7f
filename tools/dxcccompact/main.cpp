// dxcccompact DXCC.vdb: writes the compact form of the DXCC tables beside a generated database,
// so that the form is installed with it and a first start copies both instead of walking the
// database's rows. Exit 1 when the database can't be read or the form can't be written.
#include <cstdio>
#include <string>

#include "platform/db/database.h"
#include "platform/vb/error.h"
#include "station/dxcc_compact.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: dxcccompact DXCC.vdb\n");
    return 2;
  }
  const std::string path = argv[1];
  try {
    vellumar::DXCCTables tables;
    {
      vellumar::db::Database database =
          vellumar::db::DBEngine::Workspaces(0).OpenDatabase(path, /*readOnly=*/true);
      tables.Load(database);
      database.Close();
    }
    if (!vellumar::WriteDXCCCompact(path, tables)) {
      std::fprintf(stderr, "dxcccompact: can't write %s\n", vellumar::DXCCCompactPath(path).c_str());
      return 1;
    }
  } catch (const vellumar::vb::VbError& e) {
    std::fprintf(stderr, "dxcccompact: %s: error %d: %s\n", path.c_str(), e.number(),
                 e.description().c_str());
    return 1;
  }
  return 0;
}
