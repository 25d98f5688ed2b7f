#pragma once
// The columns of the Progress table, as data: which band and mode values count in which column,
// and the reverse names. A column's index is used as a number throughout the program.
#include <cstdint>
#include <string>

#include "platform/vb/variant.h"

namespace vellumar {

// Column indexes of Progress (its field order, logstore::kProgressFields, is a format).
inline constexpr int kProgressColumnCount = 18;
inline constexpr int kProgressCountryCode = 0;  // DXCC code, text 3
inline constexpr int kProgressPrefix = 1;       // DXCC prefix, text 6
inline constexpr int kProgressValid = 2;        // true while the entity is current
inline constexpr int kProgressFirstBand = 3;    // 160M
inline constexpr int kProgressLastBand = 13;    // 2M
inline constexpr int kProgressPhone = 14;
inline constexpr int kProgressCW = 15;
inline constexpr int kProgressRTTY = 16;
inline constexpr int kProgressPSK = 17;

// Column of a band, compared on the lower-case form ("20m" -> 7); -1 for no column.
int16_t BandProgressField(const std::string& band);
// Column of a mode's group ("usb" -> 14 PHONE, "bpsk" -> 17 PSK); -1 for no column.
int16_t ModeProgressField(const std::string& mode);
// "160M".."2M" for 3..13, "" otherwise.
std::string BandProgressName(int index);
// The same names, as a variant holding a string.
vb::Variant BandFieldName(int index);
// "Phone", "CW", "RTTY", "PSK" for 14..17 (note the case of "Phone"), "" otherwise.
vb::Variant ModeFieldName(int index);
// True for the columns whose cards the ARRL verifies: 3..16 (all bands, Phone, CW, RTTY).
bool ARRLVerified(int index);

}  // namespace vellumar
