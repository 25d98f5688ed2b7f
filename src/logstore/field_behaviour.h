#pragma once
// What each of the QSO's 35 field slots does beyond holding text, as data beside the field
// table: how the QSO panel checks its text, which keys it takes, where Enter moves the cursor,
// and the tag under which an ADIF export writes it. The panel reads this table instead of
// listing slots in its handlers.
#include <array>
#include <string>

#include "logstore/field_table.h"

namespace vellumar::logstore {

// How a slot's text is checked before a QSO is saved.
enum class FieldCheck {
  kWidth,             // no longer than the column
  kCallsignRequired,  // not empty, and no longer than the column
  kQSOTime,           // a date-time from 1930 on; empty is an error
  kCardDate,          // empty, or a date from 1930 on no longer than the column
  kAlwaysValid,       // the address: a memo, any length
};

// Which keys a slot's box takes.
enum class KeyFilter {
  kAny,
  kUppercase,  // letters become capitals (the callsign)
  kDecimal,    // digits, one ".", backspace, copy and paste (the frequency)
  kDigits,     // digits, backspace, copy and paste (the DXCC code)
};

// Where Enter in a slot goes, besides another slot's number.
inline constexpr int kEnterStays = -1;      // Enter does nothing of its own
inline constexpr int kEnterBeginsQSO = -2;  // the callsign: looks the station up, then moves on

// The tag of an ADIF export, besides a literal.
inline constexpr const char* kTagIsColumnName = nullptr;  // the column's own name, its case kept
inline constexpr const char* kNotExported = "";

struct FieldBehaviour {
  FieldCheck check;
  KeyFilter keys;
  int enter;                          // slot number, kEnterStays or kEnterBeginsQSO
  const char* adifTag;                // a literal, kTagIsColumnName or kNotExported
  const char* adifDateTag = nullptr;  // a second tag for the date of a date-time, or none
};

extern const std::array<FieldBehaviour, kQSOFieldCount> kFieldBehaviours;

// The behaviour of slot `index`; outside 0..34 the plain width rule and nothing else.
const FieldBehaviour& FieldBehaviourOf(int index);

// The ADIF tag of slot `index` ("" for a slot that is not exported).
std::string AdifTag(int index);

}  // namespace vellumar::logstore
