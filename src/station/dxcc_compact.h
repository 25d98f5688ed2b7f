#pragma once
// The compact form of the DXCC tables: a file beside the database ("DXCC.vdb.lookup") holding
// the loaded tables as they lie in memory, so that a start reads a few megabytes instead of
// walking 300,000 rows. The database stays the only source: the form names the database file it
// was made from (device, inode, size and modification time of the file and of its write-ahead
// log) and sums its bytes. A form whose file stamp differs is used only when the database's
// bytes sum as they did (a copy of the pair, as a first start makes of the installed files), and
// is then stamped anew; a form made from anything else, or of another format, or whose checksum
// or structure fails, is never used: the tables are then loaded from the database and the form
// written anew. The database itself is never written.
#include <string>

#include "station/dxcc_tables.h"

namespace vellumar {

// The compact form's path for a database path.
std::string DXCCCompactPath(const std::string& databasePath);

// Reads the tables from the compact form of the database at databasePath; false, with the
// tables empty, when there is no usable form for the database as it stands now.
bool ReadDXCCCompact(const std::string& databasePath, DXCCTables& tables);

// Writes the compact form of tables loaded from the database at databasePath (to a temporary
// file, then renamed over the old form). False when it can't be written, which costs only the
// next start's speed.
bool WriteDXCCCompact(const std::string& databasePath, DXCCTables& tables);  // tables unchanged

// The tables from the compact form when it is current, else from the open database (after which
// the form is written). Database errors propagate as VbError and leave the tables empty.
// fromCompact tells which it was.
void LoadDXCCTables(const std::string& databasePath, db::Database& database, DXCCTables& tables,
                    bool* fromCompact = nullptr);

}  // namespace vellumar
