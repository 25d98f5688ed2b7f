#pragma once
// The log both filter benchmarks work on, so that their figures compare: calls of eight
// prefixes, five bands and no band, five modes (one in mixed case), one QSO in fifty broken,
// a third with a QSL sent date, a tenth naming none of my QTHs; a QSO every 14.4 minutes from
// 1 January 2005.
#include <random>
#include <string>

#include "platform/db/database.h"
#include "platform/vb/date_value.h"

namespace vellumar::bench {

inline void FillFilterLog(db::Database& log, int count) {
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  std::mt19937 random(11);
  const char* calls[] = {"K1", "K2", "W1", "DL1", "G4", "JA1", "VK2", "F6"};
  const char* prefixes[] = {"K", "K", "K", "DL", "G", "JA", "VK", "F"};
  const char* bands[] = {"20M", "40M", "15M", "10M", "80M", "160M", ""};
  const char* modes[] = {"CW", "SSB", "RTTY", "PSK", "Hell"};
  for (int i = 0; i < count; ++i) {
    const int c = static_cast<int>(random() % 8);
    rs.AddNew();
    rs.Fields("Call").SetValue(vb::Variant(std::string(calls[c]) + "A" + std::to_string(i % 997)));
    rs.Fields("DXCCPrefix").SetValue(vb::Variant(prefixes[c]));
    const char* band = bands[random() % 7];
    rs.Fields("Band").SetValue(*band ? vb::Variant(band) : vb::Variant::Null());
    rs.Fields("Mode").SetValue(vb::Variant(modes[random() % 5]));
    rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(vb::DateSerial(2005, 1, 1) + i * 0.01));
    if (random() % 50 == 0) rs.Fields("BROKEN").SetValue(vb::Variant("Y"));
    if (random() % 3 == 0)
      rs.Fields("QSLSdate").SetValue(vb::Variant("06/01/" + std::to_string(10 + i % 20)));
    rs.Fields("myQTHID").SetValue(vb::Variant(random() % 10 == 0 ? "" : "HOME"));
    rs.Update();
  }
}

}  // namespace vellumar::bench
