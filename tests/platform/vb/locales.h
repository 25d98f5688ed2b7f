#pragma once
// Date locales the tests pin: a day-first and a month-first one like the common desktop ones,
// a year-first one, and one with dots for both separators and German month names.
#include "platform/vb/date_locale.h"

namespace vellumar::vb::testing {

inline DateLocale DayFirstLocale() {
  DateLocale l;
  l.shortDatePattern = "dd/mm/yyyy";
  return l;
}

inline DateLocale MonthFirstLocale() {
  DateLocale l;
  l.shortDatePattern = "mm/dd/yyyy";
  return l;
}

inline DateLocale YearFirstLocale() {
  DateLocale l;
  l.shortDatePattern = "yyyy-mm-dd";
  l.dateSeparator = '-';
  return l;
}

inline DateLocale GermanLocale() {
  DateLocale l;
  l.shortDatePattern = "dd.mm.yyyy";
  l.dateSeparator = '.';
  l.timeSeparator = '.';
  l.monthAbbreviations = {"Jan", "Feb", "Mär", "Apr", "Mai", "Jun",
                          "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
  l.monthNames = {"Januar", "Februar", "März",      "April",   "Mai",      "Juni",
                  "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
  return l;
}

inline DateLocale FrenchLocale() {
  DateLocale l;
  l.shortDatePattern = "dd/mm/yyyy";
  l.monthAbbreviations = {"janv.", "févr.", "mars",  "avr.", "mai",  "juin",
                          "juil.", "août",  "sept.", "oct.", "nov.", "déc."};
  l.monthNames = {"janvier", "février", "mars",      "avril",   "mai",      "juin",
                  "juillet", "août",    "septembre", "octobre", "novembre", "décembre"};
  return l;
}

}  // namespace vellumar::vb::testing
