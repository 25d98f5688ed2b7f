#include "platform/vb/date_locale.h"

#include <langinfo.h>
#include <locale.h>

#include <cctype>

namespace vellumar::vb {
namespace {

// The one process-wide date locale, as the runtime has one per process.
DateLocale& ProcessDateLocale() {
  static DateLocale locale;
  return locale;
}

bool IsJoiner(char c) { return c == '/' || c == '-' || c == '.' || c == ' '; }

}  // namespace

const DateLocale& CurrentDateLocale() { return ProcessDateLocale(); }

void SetCurrentDateLocale(const DateLocale& locale) { ProcessDateLocale() = locale; }

ScopedDateLocale::ScopedDateLocale(const DateLocale& locale) : saved_(CurrentDateLocale()) {
  SetCurrentDateLocale(locale);
}

ScopedDateLocale::~ScopedDateLocale() { SetCurrentDateLocale(saved_); }

std::string ShortDateOrder(const DateLocale& locale) {
  std::string order;
  for (char c : locale.shortDatePattern) {
    const char l = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if ((l == 'd' || l == 'm' || l == 'y') && order.find(l) == std::string::npos) order += l;
  }
  // A pattern that lacks a field reads the missing ones in day, month, year order.
  for (char l : std::string("dmy"))
    if (order.find(l) == std::string::npos) order += l;
  return order;
}

std::string ShortDatePatternFromCFormat(const std::string& dFmt, char& separator) {
  // Expand the composite conversions first.
  std::string fmt;
  for (size_t i = 0; i < dFmt.size(); ++i) {
    if (dFmt[i] == '%' && i + 1 < dFmt.size() && dFmt[i + 1] == 'D') {
      fmt += "%m/%d/%y";
      ++i;
    } else if (dFmt[i] == '%' && i + 1 < dFmt.size() && dFmt[i + 1] == 'F') {
      fmt += "%Y-%m-%d";
      ++i;
    } else {
      fmt += dFmt[i];
    }
  }
  std::string fields[3];
  int count = 0;
  std::string between;  // the text after the first field, up to the second
  separator = 0;
  for (size_t i = 0; i < fmt.size(); ++i) {
    if (fmt[i] != '%') {
      if (count == 1) between += fmt[i];
      continue;
    }
    ++i;
    // Flags and the E/O modifiers don't change which field it is.
    while (i < fmt.size() && std::string("-_0^#EO").find(fmt[i]) != std::string::npos) ++i;
    if (i >= fmt.size()) break;
    std::string field;
    switch (fmt[i]) {
      case 'd':
        field = "dd";
        break;
      case 'e':
        field = "d";
        break;
      case 'm':
        field = "mm";
        break;
      case 'b':
      case 'h':
        field = "mmm";
        break;
      case 'B':
        field = "mmmm";
        break;
      case 'y':
      case 'Y':
      case 'G':
        field = "yyyy";
        break;
      default:
        break;  // weekday names and the like are left out of the short date
    }
    if (field.empty() || count == 3) continue;
    bool duplicate = false;
    for (int k = 0; k < count; ++k) duplicate = duplicate || fields[k][0] == field[0];
    if (duplicate) continue;
    if (count == 1 && !between.empty() && IsJoiner(between[0])) separator = between[0];
    fields[count++] = field;
  }
  if (count != 3) return {};
  if (separator == 0) separator = '/';
  return fields[0] + separator + fields[1] + separator + fields[2];
}

DateLocale DateLocaleFromEnvironment() {
  DateLocale result;
  result.shortDatePattern = "mm/dd/yyyy";
  // A locale object of its own, so that the process's locale is never touched.
  locale_t loc = newlocale(LC_TIME_MASK, "", static_cast<locale_t>(nullptr));
  if (loc == static_cast<locale_t>(nullptr)) return result;
  char separator = '/';
  const std::string pattern = ShortDatePatternFromCFormat(nl_langinfo_l(D_FMT, loc), separator);
  if (!pattern.empty()) {
    result.shortDatePattern = pattern;
    result.dateSeparator = separator;
  }
  // The time separator is the text between the hour and the minute of the time format.
  std::string tFmt = nl_langinfo_l(T_FMT, loc);
  if (tFmt.find("%T") != std::string::npos || tFmt.find("%R") != std::string::npos) tFmt = "%H:%M";
  for (size_t i = 0; i + 2 < tFmt.size(); ++i) {
    if (tFmt[i] == '%' &&
        (tFmt[i + 1] == 'H' || tFmt[i + 1] == 'I' || tFmt[i + 1] == 'k' || tFmt[i + 1] == 'l')) {
      if (tFmt[i + 2] == ':' || tFmt[i + 2] == '.') result.timeSeparator = tFmt[i + 2];
      break;
    }
  }
  const nl_item abmon[12] = {ABMON_1, ABMON_2, ABMON_3, ABMON_4,  ABMON_5,  ABMON_6,
                             ABMON_7, ABMON_8, ABMON_9, ABMON_10, ABMON_11, ABMON_12};
  const nl_item mon[12] = {MON_1, MON_2, MON_3, MON_4,  MON_5,  MON_6,
                           MON_7, MON_8, MON_9, MON_10, MON_11, MON_12};
  const nl_item abday[7] = {ABDAY_1, ABDAY_2, ABDAY_3, ABDAY_4, ABDAY_5, ABDAY_6, ABDAY_7};
  const nl_item day[7] = {DAY_1, DAY_2, DAY_3, DAY_4, DAY_5, DAY_6, DAY_7};
  auto take = [loc](nl_item item, std::string& into) {
    const char* text = nl_langinfo_l(item, loc);
    if (text != nullptr && *text != '\0') into = text;  // an unreadable name keeps the default
  };
  for (int i = 0; i < 12; ++i) {
    take(abmon[i], result.monthAbbreviations[i]);
    take(mon[i], result.monthNames[i]);
  }
  for (int i = 0; i < 7; ++i) {
    take(abday[i], result.dayAbbreviations[i]);
    take(day[i], result.dayNames[i]);
  }
  take(AM_STR, result.amDesignator);
  take(PM_STR, result.pmDesignator);
  freelocale(loc);
  return result;
}

}  // namespace vellumar::vb
