#pragma once
// A generated log for the award figures: QSOs over the current entities of the DXCC database,
// on every band and in every mode (some with no Progress column), with mixed QSL_Rcvd, and a few
// with an unknown or no entity code.
#include <random>
#include <string>
#include <vector>

#include "platform/db/database.h"
#include "platform/vb/date_value.h"

namespace vellumar::bench {

// The codes of the DXCC database's current entities.
inline std::vector<std::string> CurrentEntityCodes(db::Recordset dxcc) {
  std::vector<std::string> codes;
  dxcc.MoveFirst();
  while (!dxcc.EOF_()) {
    const vb::Variant end = dxcc.Fields("EndDate").Value();
    const std::string code = dxcc.Fields("CountryCode").Value().ToStringOrEmpty();
    if ((end.IsNull() || end.ToStringOrEmpty().empty()) && !code.empty()) codes.push_back(code);
    dxcc.MoveNext();
  }
  return codes;
}

inline void FillProgressLog(db::Database& log, const std::vector<std::string>& codes, int count) {
  static const char* kBands[] = {"160M", "80M", "40M", "30M", "20M", "17M", "15M",
                                 "12M",  "10M", "6M",  "2M",  "60M", "70CM"};
  static const char* kModes[] = {"SSB",  "USB",  "LSB",   "AM",   "FM",   "CW",
                                 "RTTY", "MFSK", "PSK31", "BPSK", "SSTV", "JT65"};
  static const char* kQSL[] = {"", "N", "R", "Y", "V", "I", "X", " "};
  std::mt19937 random(11);
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  log.BeginTrans();
  for (int i = 0; i < count; ++i) {
    rs.AddNew();
    const unsigned r = random() % 100;
    const std::string code = r == 0 ? "" : r == 1 ? "999" : codes[random() % codes.size()];
    rs.Fields("Call").SetValue(vb::Variant("X" + std::to_string(i % 5000) + "AA"));
    rs.Fields("DXCCID").SetValue(vb::Variant(code));
    rs.Fields("Band").SetValue(vb::Variant(kBands[random() % 13]));
    rs.Fields("Mode").SetValue(vb::Variant(kModes[random() % 12]));
    rs.Fields("QSL_Rcvd").SetValue(vb::Variant(kQSL[random() % 8]));
    rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(vb::DateSerial(2000, 1, 1) + i * 0.01));
    rs.Update();
    if (i % 5000 == 4999) {
      log.CommitTrans();
      log.BeginTrans();
    }
  }
  log.CommitTrans();
}

}  // namespace vellumar::bench
