#pragma once
// Filling a fresh Progress table with one row per entity of the DXCC database.
#include <functional>
#include <string>

#include "platform/db/database.h"

namespace vellumar {

// Closes `progressRecordset` (the central module's dynaset on Progress; it may not be open) and
// opens it anew, walks the DXCC table recordset from its first row and adds one row each:
// CountryCode, DXCCPrefix, Valid (true when EndDate is Null or empty) and "" in the 15 status
// columns. The recordset is closed at the end; the caller reopens it. A database error ends the
// walk through reportError(number, "VellumModule.InitializeProgressTableFromDatabase"), keeping
// the rows written.
void InitializeProgressTableFromDatabase(
    db::Database& log, db::Recordset dxccTable, db::Recordset& progressRecordset,
    const std::function<void(int number, const std::string& where)>& reportError);

}  // namespace vellumar
