#pragma once
// Small pieces the Log page's files share.
#include <string>

#include "platform/vb/ascii.h"
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

}  // namespace vellumar
