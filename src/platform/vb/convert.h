#pragma once
// Conversions of the runtime: CDate/IsDate, Val, CDbl's reading of text, CInt/CLng narrowing,
// CStr of numbers and dates.
#include <cstdint>
#include <optional>
#include <string>

#include "platform/vb/date_locale.h"

namespace vellumar::vb {

// A date value from text, read with the current date locale, or the one given. Accepted:
//  - ISO "2002-01-15", "2002-01-15 12:00:00", "2002-01-15T12:00", the storage text;
//  - "YYYYMMDD" when the text is those eight digits alone (optionally with a time after a
//    blank): eight digits are never read any other way;
//  - three numbers: a first one of three or four digits (or above 31) is the year, then month
//    and day ("2002/01/15"); a last one of three or four digits is the year, the two before it
//    in the locale's day/month order; three small numbers follow the locale's order entirely.
//    When that gives a month above 12, day and month are swapped as the runtime does
//    ("01/15/2002" in a day-first locale is 15 January);
//  - a month name (English or the locale's, abbreviated or full, any case; three or more
//    letters of an English name) with day and year in any order ("15-Jan-2002", "15 Jan 02",
//    "Jan 15, 2002"), or with a year alone (the first of the month);
//  - separators "/", "-", ".", ",", blanks and the locale's date separator; a weekday name is
//    skipped;
//  - a time "h:nn", "h:nn:ss", optionally with AM/PM, or "3 PM", before or after the date, or
//    alone ("12:30" is 0.5208333); ":" or the locale's time separator;
//  - years of one or two digits: 00-29 are 20xx, 30-99 are 19xx; years 100 to 9999.
// A day and month without a year are refused, as is a text with anything else.
std::optional<double> ParseDate(const std::string& text);
std::optional<double> ParseDate(const std::string& text, const DateLocale& locale);
double CDate(const std::string& text);  // raises 13 when the text isn't a date
bool IsDate(const std::string& text);

// Val: blanks, tabs and line feeds anywhere are skipped; an optional sign, digits, one ".",
// an exponent "E" or "D"; "&H" hexadecimal and "&O" octal (16-bit when up to 4 hex / 6 octal
// digits, so Val("&HFFFF") is -1, else 32-bit). Reading stops at the first other character;
// 0 when there is no number. A number too large raises 6.
double Val(const std::string& text);

// Numeric text as CDbl reads it: blanks around, an optional sign, digits with at most one ".",
// an optional exponent ("E", "D", with sign and digits), or "&H"/"&O" as Val reads them; the
// whole text must be the number. nullopt when it isn't one or is too large for a Double.
std::optional<double> ParseNumber(const std::string& text);

// Rounding half to even, then narrowing; out of range raises 6.
int16_t CInt(double value);
int32_t CLng(double value);
// Narrowing of a whole number to 16 bits; out of range raises 6.
int16_t NarrowTo16(int64_t value);

// CStr of a Double: the shortest text of at most 15 significant digits that stands for it;
// scientific ("1E+20", "1E-05") when the exponent is 15 or more, or below -4.
std::string NumberToString(double value);

// CStr of a date value: the locale's short date, then " hh:nn:ss" unless the time is midnight;
// a value with no whole-day part is the time alone ("00:00:00" for 0).
std::string DateToString(double date);

}  // namespace vellumar::vb
