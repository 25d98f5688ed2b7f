#pragma once
// The lookup slots: one shared place that the map program's reply to a lookup and the local
// Lookup both fill, and that every caller reads the entity, continent and zones from. The
// transceiver program's frequency and mode arrive beside them.
#include <string>

namespace vellumar {

struct LookupSlots {
  std::string DXCCPrefix;  // entity's DXCC prefix, e.g. "3D2-C"
  std::string DXCCID;      // entity's numeric DXCC code as text, "" for no entity
  std::string Cont;        // continent, two letters
  std::string CQ;          // CQ zone
  std::string ITU;         // ITU zone
  std::string Freq;        // transceiver frequency, kHz as the transceiver program sends it
  std::string Mode;        // transceiver mode

  // Empties the five lookup results (not Freq and Mode).
  void ClearLookup() { DXCCPrefix.clear(), DXCCID.clear(), Cont.clear(), CQ.clear(), ITU.clear(); }
};

}  // namespace vellumar
