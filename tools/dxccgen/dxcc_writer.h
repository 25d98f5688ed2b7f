#pragma once
// Writes the DXCC database through the record layer: tables DXCC, Prefix and Location, each
// with its PrimaryKey index.
#include <string>

#include "dxcc_model.h"

namespace vellumar::dxccgen {

// Creates the file at `path` (replacing an older one only once the new one is complete).
// Database errors propagate as VbError.
void WriteDxccDatabase(const DxccModel& model, const std::string& path);

}  // namespace vellumar::dxccgen
