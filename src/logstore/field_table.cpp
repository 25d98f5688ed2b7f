#include "logstore/field_table.h"

#include "platform/vb/error.h"

namespace vellumar::logstore {

const std::array<FieldSlot, kQSOFieldCount> kFieldSlots = {{
    {"band", true, "QSO band"},
    {"call", false, "callsign of worked station (strike enter for DXCC prefix lookup)"},
    {"DXCC", true, "DXCC prefix of the station with whom you are in QSO"},
    {"", false, "ARRL country code of the worked station"},
    {"freq", false, "QSO frequency in MHz."},
    {"mode", true, "QSO mode"},
    {"name", false, "name of the operator of the worked station"},
    {"op", false, "your callsign"},
    {"rcvd", true, "status of QSL card received from this station"},
    {"sent", true, "status of QSL card sent to this station"},
    {"via", false, "QSL manager for the worked station"},
    {"note", false, "QSO notes"},
    {"QTH", false, "QTH of the worked station"},
    {"rcvd", false, "RST received (double-click for 59/599)"},
    {"sent", false, "RST sent (double-click for 59/599)"},
    {"state", true, "US state of the worked station"},
    {"date sent", false, "date QSL card was sent to worked station"},
    {"date rcvd", false, "date QSL card was received from worked station"},
    {"pwr", false, "your transmit power"},
    {"begin", false, "UTC time at which QSO started (double-click for current time)"},
    {"end", false, "UTC time at which QSO ended (double-click for current time)"},
    {"msg", false, "message to be printed on QSL card"},
    {"cont", true, "continent of the worked station"},
    {"ITU", false, "ITU zone of the worked station"},
    {"CQ", false, "CQ zone of the worked station"},
    {"IOTA", false, "IOTA designator of the worked station"},
    {"cnty", false, "county of the worked station"},
    {"ID", false, "contest ID"},
    {"grid", false, "gridsquare of the worked station"},
    {"rx #", false, "receive sequence number"},
    {"tx #", false, "transmit sequence number"},
    {"prov", true, "Canadian province of the worked station"},
    {"Broken", false, ""},
    {"myQTH", true, "QTH# from which this QSO was made"},
    {"addr", false, "QSL address"},
}};

namespace {

constexpr const char* kBands[] = {"160M", "80M", "40M", "30M", "20M", "17M", "15M", "12M",
                                  "10M",  "6M",  "2M",  "70CM", "33CM", "23CM", "3CM"};
constexpr const char* kModes[] = {"SSB",  "CW",   "RTTY", "AM",  "ATV", "EME",  "FM",    "Hell", "HSCW",
                                  "MFSK", "MT63", "Pac",  "Pkt", "PSK", "SSTV", "Throb", "TOR"};
constexpr const char* kQSLReceived[] = {"R", "Y", "V", "I", "X"};
constexpr const char* kQSLSent[] = {"R", "Y"};
constexpr const char* kStates[] = {"HI", "AK", "WA", "OR", "CA", "NV", "AZ", "UT", "WY", "CO",
                                   "ID", "MT", "ND", "SD", "NE", "NM", "TX", "OK", "KS", "MO",
                                   "AR", "IA", "IN", "MI", "WI", "MN", "IL", "OH", "MS", "KY",
                                   "TN", "WV", "VA", "NC", "SC", "GA", "LA", "AL", "FL", "MD",
                                   "PA", "DE", "NY", "NJ", "VT", "NH", "ME", "RI", "MA", "CT"};
constexpr const char* kContinents[] = {"NA", "SA", "EU", "AF", "OC", "AS", "AN"};
constexpr const char* kProvinces[] = {"NS", "NB", "QC", "ON", "MB", "SK", "AB",
                                      "BC", "NT", "YT", "PE", "NU", "NF", "LB"};

}  // namespace

std::span<const char* const> ComboItems(int index) {
  switch (index) {
    case 0: return kBands;
    case 5: return kModes;
    case 8: return kQSLReceived;
    case 9: return kQSLSent;
    case 15: return kStates;
    case 22: return kContinents;
    case 31: return kProvinces;
    default: return {};
  }
}

void PrevFieldValues::Check(int index) {
  if (index < 0 || index >= kQSOFieldCount) vb::Raise(vb::kSubscriptOutOfRange);
}

void PrevFieldValues::SetPrevFieldValue(int index, const std::string& value) {
  Check(index);
  value_[index] = value;
  present_[index] = true;
}

std::string PrevFieldValues::GetPrevFieldValue(int index) const {
  Check(index);
  return present_[index] ? value_[index] : std::string();
}

bool PrevFieldValues::PrevFieldPresent(int index) const {
  Check(index);
  return present_[index];
}

bool PrevFieldValues::PrevFieldPersistent(int index) const {
  Check(index);
  return persistent_[index];
}

}  // namespace vellumar::logstore
