#pragma once
// Small pieces the Log page's files share.
#include <string>

#include "platform/db/recordset.h"
#include "platform/vb/ascii.h"
#include "platform/vb/error.h"
#include "station/station_services.h"

namespace vellumar {

// Runs a step with errors ignored, as the program does where a failure is expected and
// harmless. The end of the program is no error and goes on up.
template <class Step>
void IgnoringErrors(Step&& step) {
  try {
    step();
  } catch (const ProgramTermination&) {
    throw;
  } catch (...) {
  }
}

// The modes whose reports are two digits (59) rather than three (599).
inline bool IsPhoneMode(const std::string& mode) {
  const std::string m = vb::UpperAscii(mode);
  return m == "SSB" || m == "FM" || m == "AM";
}

// The rows of a recordset, counted on a clone so that its current row stays; 0 for a closed or
// unreadable one.
inline long CountRows(const db::Recordset& rs) {
  if (!rs) return 0;
  try {
    db::Recordset counter = rs.Clone();
    if (counter.BOF() && counter.EOF_()) return 0;
    counter.MoveLast();
    return counter.RecordCount();
  } catch (const vb::VbError&) {
    return 0;
  }
}

}  // namespace vellumar
