#pragma once
// Format of the runtime for the patterns the program uses, and the locale it formats in.
#include <array>
#include <string>

#include "platform/vb/variant.h"

namespace vellumar::vb {

// The date conventions of the user's locale. The process has one, set at start from the
// environment (tests pin one).
struct DateLocale {
  std::string shortDatePattern = "dd/mm/yyyy";  // "ddddd" formats with this
  char dateSeparator = '/';
  char timeSeparator = ':';
  std::array<std::string, 12> monthAbbreviations = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
};
const DateLocale& CurrentDateLocale();
void SetCurrentDateLocale(const DateLocale& locale);

// Date patterns: "dd" "mmm" "yyyy" "hh" "nn" "ss" (either case) and their combinations,
// "ddddd", "dd-mmm-yyyy hh:nn:ss", "YYYYMMDD", "HHNNSS", "hhnn", "mm/dd/yy", ...
std::string FormatDate(double date, const std::string& pattern);
// Number patterns: "0", "00", "000", "0000", " 0.000", "  0.000", "###.#####", ...
std::string FormatNumber(double number, const std::string& pattern);
// Format of a Variant: dates by FormatDate, numbers by FormatNumber; a numeric text is a number.
std::string Format(const Variant& value, const std::string& pattern);

}  // namespace vellumar::vb
