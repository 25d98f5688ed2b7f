#pragma once
// The tables of the log file and of the QSL queue, as data: field order, types and sizes are a
// file format (upgrades count fields, and the QSO panel addresses fields by ordinal).
#include <array>
#include <span>

namespace vellumar::logstore {

// Field types by the engine's numbers.
enum FieldKind : int { kBoolean = 1, kText = 10, kDate = 8, kMemo = 12 };

struct FieldSpec {
  const char* name;   // column name
  int type;           // FieldKind
  int size;           // characters for text, 0 for the others
  bool allowZeroLength;  // a text that may be ""
};

// Table QSOs as a new log is created: 35 fields, MYQTHID of size 4.
inline constexpr std::array<FieldSpec, 35> kQSOFields = {{
    {"Band", kText, 6, true},        // band name
    {"Call", kText, 13, true},       // worked callsign
    {"DXCCPrefix", kText, 6, true},  // DXCC entity prefix
    {"DXCCID", kText, 3, true},      // DXCC entity number
    {"Freq", kText, 10, true},       // frequency in MHz, as typed
    {"Mode", kText, 6, true},        // mode
    {"Name", kText, 20, true},       // operator's name at the other station
    {"Operator", kText, 13, true},   // own operator's callsign
    {"QSL_Rcvd", kText, 1, true},    // status of the received QSL
    {"QSL_Sent", kText, 1, true},    // status of the sent QSL
    {"QSL_Via", kText, 13, true},    // QSL route
    {"Comment", kText, 50, true},    // notes
    {"QTH", kText, 30, true},        // location of the other station
    {"RST_Rcvd", kText, 3, true},    // report received
    {"RST_Sent", kText, 3, true},    // report sent
    {"State", kText, 2, true},       // US state
    {"QSLSDATE", kText, 11, true},   // date the QSL was sent, as text
    {"QSLRDATE", kText, 11, true},   // date the QSL was received, as text
    {"TX_Power", kText, 4, true},    // power
    {"QSO_Begin", kDate, 0, false},  // start, UTC
    {"QSO_End", kDate, 0, false},    // end, UTC
    {"QSLMsg", kText, 30, true},     // message for the QSL card
    {"CONT", kText, 2, true},        // continent
    {"ITUZ", kText, 2, true},        // ITU zone
    {"CQZ", kText, 2, true},         // CQ zone
    {"IOTA", kText, 7, true},        // IOTA reference
    {"CNTY", kText, 30, true},       // county
    {"CONTEST_ID", kText, 10, true},  // contest
    {"GRIDSQUARE", kText, 8, true},  // Maidenhead locator
    {"SRX", kText, 8, true},         // contest serial received
    {"STX", kText, 8, true},         // contest serial sent
    {"PROVINCE", kText, 2, true},    // Canadian province
    {"BROKEN", kText, 1, true},      // "Y" marks a QSO that can't be counted
    {"MYQTHID", kText, 4, true},     // reference to QTHs (20 wide in an upgraded log)
    {"ADDRESS", kMemo, 0, true},     // postal address
}};

// Fields an older log lacks, added at its end by the upgrade (ordinals 31 to 34).
inline constexpr int kFirstUpgradeField = 31;
inline constexpr std::array<FieldSpec, 4> kQSOUpgradeFields = {{
    {"PROVINCE", kText, 2, true},
    {"BROKEN", kText, 1, true},
    {"MYQTHID", kText, 20, true},
    {"ADDRESS", kMemo, 0, true},
}};

// Table Progress: one row per DXCC entity, one status letter per band and mode group.
inline constexpr std::array<FieldSpec, 18> kProgressFields = {{
    {"CountryCode", kText, 3, true},  // DXCC code of the entity
    {"Prefix", kText, 6, true},       // DXCC prefix of the entity
    {"Valid", kBoolean, 0, false},    // true while the entity is current
    {"160M", kText, 1, true}, {"80M", kText, 1, true}, {"40M", kText, 1, true},
    {"30M", kText, 1, true},  {"20M", kText, 1, true}, {"17M", kText, 1, true},
    {"15M", kText, 1, true},  {"12M", kText, 1, true}, {"10M", kText, 1, true},
    {"6M", kText, 1, true},   {"2M", kText, 1, true},    // status letters per band
    {"PHONE", kText, 1, true}, {"CW", kText, 1, true},
    {"RTTY", kText, 1, true},  {"PSK", kText, 1, true},  // status letters per mode group
}};

// Table QTHs: the operator's own stations.
inline constexpr std::array<FieldSpec, 11> kQTHFields = {{
    {"MYQTHID", kText, 20, true},  // the station's ID
    {"City", kText, 32, true},
    {"County", kText, 32, true},
    {"State", kText, 32, true},
    {"Country", kText, 32, true},
    {"Grid", kText, 6, true},       // Maidenhead locator
    {"Latitude", kText, 16, true},
    {"Longitude", kText, 16, true},
    {"CQZone", kText, 2, true},
    {"ITUZone", kText, 2, true},
    {"Iota", kText, 8, true},
}};

// Table PrintQueue of the QSL queue: 31 fields; no index, rows told apart by CALL and QSO_BEGIN.
inline constexpr std::array<FieldSpec, 31> kPrintQueueFields = {{
    {"CALL", kText, 13, true},       // callsign of the station worked
    {"DXCC", kText, 5, true},        // the QSO's DXCC prefix
    {"QSO_BEGIN", kDate, 0, false},  // QSO start, UTC
    {"RST_SENT", kText, 3, true},
    {"RST_RCVD", kText, 3, true},
    {"MODE", kText, 4, true},
    {"FREQ", kText, 10, true},       // frequency as the log holds it
    {"BAND", kText, 5, true},
    {"VIA", kText, 13, true},        // QSL route
    {"OPERATOR", kText, 13, true},
    {"QSL_RCVD", kText, 1, true},    // the QSO's QSL_Rcvd when it was queued
    {"INCIDENCE", kText, 5, true},   // count of queue rows for this CALL, decimal
    {"NEEDED", kText, 1, true},      // "Y" if queued as needed for an award
    {"QSL_DATE", kDate, 0, false},   // when printed or uploaded; Null until then
    {"PRINT_PAGE", kText, 5, true},  // page the entry was placed on
    {"PRINT_QUAD", kText, 3, true},  // place on the page
    {"NOTES", kText, 30, true},      // message for the card
    {"ENABLED", kText, 1, false},    // "Y" or "N"; "N" holds the entry back
    {"MYQTHID", kText, 20, true},    // the QSO's myQTH ID, lower case
    {"CITY", kText, 32, true},
    {"COUNTY", kText, 32, true},
    {"STATE", kText, 32, true},
    {"COUNTRY", kText, 32, true},
    {"GRID", kText, 6, true},
    {"LATITUDE", kText, 16, true},
    {"LONGITUDE", kText, 16, true},
    {"CQZONE", kText, 2, true},
    {"ITUZONE", kText, 2, true},
    {"IOTA", kText, 8, true},
    {"ADDRESS", kMemo, 0, true},     // the station's mailing address
    {"UNIQUE", kText, 1, true},      // "Y" for the first row of a call, "N" for the others
}};

// Field counts of the older queue formats that can be upgraded.
inline constexpr std::array<int, 3> kPrintQueueUpgradableCounts = {17, 18, 29};

}  // namespace vellumar::logstore
