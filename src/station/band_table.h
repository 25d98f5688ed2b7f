#pragma once
// The band table: band names with their edges in MHz, read once at start-up from Bands.txt so
// that the operator can change edges or add bands without a new program.
#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace vellumar {

class BandTable {
 public:
  static constexpr int kMaxBands = 20;

  using WriteErrorLogFn = std::function<void(const std::string& text)>;
  using ReportErrorFn = std::function<void(int number, const std::string& where)>;

  BandTable(WriteErrorLogFn writeErrorLog, ReportErrorFn reportError);

  // Loads the file (the data folder's "/Databases/Bands.txt"). A missing file and a file that
  // fills all 20 entries are noted in the error log; a malformed record ends the load through
  // the failure tail, keeping the records read before it.
  void InitializeBandArray(const std::string& pathname);

  // The first band, in file order, whose edges (both inclusive) hold freq; "" when none does.
  std::string GetBandNameForFreq(double freq) const;

  int16_t BandCount() const { return bandCount_; }
  const std::string& BandName(int i) const { return bandNames_.at(i); }
  double BandLowerEdge(int i) const { return bandLowerEdges_.at(i); }
  double BandUpperEdge(int i) const { return bandUpperEdges_.at(i); }

 private:
  WriteErrorLogFn writeErrorLog_;
  ReportErrorFn reportError_;
  std::array<std::string, kMaxBands> bandNames_;    // as in the QSO's Band field, e.g. "20M"
  std::array<double, kMaxBands> bandLowerEdges_{};  // MHz, inclusive
  std::array<double, kMaxBands> bandUpperEdges_{};  // MHz, inclusive
  int16_t bandCount_ = 0;                           // entries in use
};

}  // namespace vellumar
