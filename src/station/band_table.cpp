#include "station/band_table.h"

#include <filesystem>
#include <fstream>

#include "platform/vb/error.h"
#include "station/delimited_input.h"

namespace vellumar {

BandTable::BandTable(WriteErrorLogFn writeErrorLog, ReportErrorFn reportError)
    : writeErrorLog_(std::move(writeErrorLog)), reportError_(std::move(reportError)) {}

void BandTable::InitializeBandArray(const std::string& pathname) {
  bandCount_ = 0;
  try {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(pathname, ec)) {
      writeErrorLog_("Missing band definition file in " + pathname);
      return;
    }
    std::ifstream file(pathname, std::ios::binary);
    if (!file) vb::Raise(vb::kPathFileAccessError);
    DelimitedInput input(file);
    while (!input.AtEnd()) {
      std::string name = input.ReadString();
      double lower = input.ReadNumber();
      double upper = input.ReadNumber();
      input.EndRecord();
      bandNames_[bandCount_] = name;
      bandLowerEdges_[bandCount_] = lower;
      bandUpperEdges_[bandCount_] = upper;
      ++bandCount_;
      // The check comes on reaching the last entry, so a file of exactly 20 records is noted
      // as well: the message has always appeared for it.
      if (bandCount_ >= kMaxBands) {
        file.close();
        writeErrorLog_("More than 20 band definitions found in " + pathname);
        return;
      }
    }
  } catch (const vb::VbError& e) {
    reportError_(e.number(), "VellumModule.InitializeBandArray");
  }
}

std::string BandTable::GetBandNameForFreq(double freq) const {
  for (int i = 0; i < bandCount_; ++i)
    if (!(freq < bandLowerEdges_[i]) && !(freq > bandUpperEdges_[i])) return bandNames_[i];
  return "";
}

}  // namespace vellumar
