#pragma once
// The date conventions of the user's locale, which Format's "ddddd", CStr of a date and the
// reading of typed dates follow. The process has one, set at start from the environment; until
// then it is DateLocale{} ("dd/mm/yyyy", English month names). Tests pin one with
// ScopedDateLocale.
#include <array>
#include <string>

namespace vellumar::vb {

struct DateLocale {
  std::string shortDatePattern = "dd/mm/yyyy";  // "ddddd" formats with this
  char dateSeparator = '/';                     // what "/" in a date pattern writes
  char timeSeparator = ':';                     // what ":" in a date pattern writes
  std::array<std::string, 12> monthAbbreviations = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  // "mmmm"; also read back by the date reader.
  std::array<std::string, 12> monthNames = {"January",   "February", "March",    "April",
                                            "May",       "June",     "July",     "August",
                                            "September", "October",  "November", "December"};
  // "ddd" and "dddd", Sunday first.
  std::array<std::string, 7> dayAbbreviations = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  std::array<std::string, 7> dayNames = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                         "Thursday", "Friday", "Saturday"};
  std::string longDatePattern = "d mmmm yyyy";  // "dddddd"
  std::string amDesignator = "AM";              // "AMPM"
  std::string pmDesignator = "PM";
};

const DateLocale& CurrentDateLocale();
void SetCurrentDateLocale(const DateLocale& locale);

// Pins a date locale for the lifetime of the object and restores the one before.
class ScopedDateLocale {
 public:
  explicit ScopedDateLocale(const DateLocale& locale);
  ~ScopedDateLocale();
  ScopedDateLocale(const ScopedDateLocale&) = delete;
  ScopedDateLocale& operator=(const ScopedDateLocale&) = delete;

 private:
  DateLocale saved_;
};

// The order of day, month and year in the short date: "dmy", "mdy" or "ymd" etc.
std::string ShortDateOrder(const DateLocale& locale);

// A short-date pattern of this system from a C library date format (nl_langinfo(D_FMT)):
// %d -> dd, %e -> d, %m -> mm, %y and %Y -> yyyy (the year always has four digits), %b -> mmm,
// %B -> mmmm; the fields are joined by the first separator of the format when it is one of
// "/", "-", "." or a blank, else by "/", so that the date reader always reads it back.
// `separator` receives that separator. Empty when the format has no day, month and year.
std::string ShortDatePatternFromCFormat(const std::string& dFmt, char& separator);

// The user's date locale from the environment (LC_ALL, LC_TIME, LANG): the date format, the
// separators, month and day names. The C/POSIX locale, or one the system doesn't have, gives
// "mm/dd/yyyy" with English names. The process's own locale is left as it was.
DateLocale DateLocaleFromEnvironment();

}  // namespace vellumar::vb
