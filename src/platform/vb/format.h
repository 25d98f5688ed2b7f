#pragma once
// Format of the runtime for the patterns the program uses.
#include <string>

#include "platform/vb/date_locale.h"
#include "platform/vb/variant.h"

namespace vellumar::vb {

// Date patterns, letters in either case: "d" "dd" day, "ddd" "dddd" weekday name, "ddddd" the
// locale's short date, "dddddd" its long date, "m" "mm" month ("m"/"mm" right after an hour or
// right before a second are minutes), "mmm" "mmmm" month name, "yy" "yyyy" year, "y" day of
// year, "q" quarter, "w" weekday number, "ww" week of year, "h" "hh" hour, "n" "nn" minute,
// "s" "ss" second, "ttttt" the time, "c" the general date, "AM/PM" "am/pm" "A/P" "a/p" "AMPM"
// (twelve-hour clock). "/" and ":" write the locale's separators; "\x" and "quoted text" are
// literal, as is any other character. An empty pattern gives DateToString. Outside the date
// range raises 5.
std::string FormatDate(double date, const std::string& pattern);

// Number patterns: "0" a digit always, "#" a digit when there is one, "." the decimal point
// (always written when the pattern has one: Format(14, "###.##") is "14."), "," between digit
// places groups thousands, "," right before the point divides by 1000, "%" multiplies by 100,
// "E+0" "E-0" scientific, "\x" and "quoted text" literal, up to three sections "pos;neg;zero".
// Rounds half away from zero on the value's 15 significant digits. A negative number with one
// section gets "-" in front of the whole text.
std::string FormatNumber(double number, const std::string& pattern);

// Format of a Variant: with a date pattern, dates, numbers (as day values) and texts that read
// as dates go through FormatDate; with a number pattern, numbers, dates (their day value) and
// numeric texts through FormatNumber; a text that fits neither is returned as it is. An empty
// pattern gives the plain conversion (CStr); Null gives "". The runtime's named formats
// ("General Number", "Fixed", "Standard", "Percent", "Scientific", "Currency", "Yes/No",
// "True/False", "On/Off", "General Date", "Long Date", "Medium Date", "Short Date", "Long Time",
// "Medium Time", "Short Time") are understood.
std::string Format(const Variant& value, const std::string& pattern);

}  // namespace vellumar::vb
