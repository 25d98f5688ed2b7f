// Format of date values. The pattern is cut into fields and literals first, then the fields
// "m"/"mm" next to an hour or a second become minutes, then each field is written.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

#include "platform/vb/ascii.h"
#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"

namespace vellumar::vb {
namespace {

enum class Field {
  Literal,
  Day,          // d
  Day2,         // dd
  WeekdayAbbr,  // ddd
  WeekdayName,  // dddd
  ShortDate,    // ddddd
  LongDate,     // dddddd
  Month,        // m
  Month2,       // mm
  MonthAbbr,    // mmm
  MonthName,    // mmmm
  Year2,        // yy
  Year4,        // yyyy
  DayOfYear,    // y
  Quarter,      // q
  Weekday,      // w
  Week,         // ww
  Hour,         // h
  Hour2,        // hh
  Minute,       // n, or m after an hour
  Minute2,      // nn, or mm after an hour
  Second,       // s
  Second2,      // ss
  LongTime,     // ttttt
  General,      // c
  AmPm,         // AM/PM, am/pm, A/P, a/p, AMPM
};

struct Item {
  Field field;
  std::string text;  // Literal: the text; AmPm: the pattern's spelling
};

bool StartsWithIgnoreCase(const std::string& s, size_t pos, const char* word) {
  for (size_t k = 0; word[k] != '\0'; ++k)
    if (pos + k >= s.size() || LowerAscii(s[pos + k]) != word[k]) return false;
  return true;
}

size_t RunLength(const std::string& s, size_t pos) {
  const char l = LowerAscii(s[pos]);
  size_t n = 0;
  while (pos + n < s.size() && LowerAscii(s[pos + n]) == l) ++n;
  return n;
}

std::vector<Item> Parse(const std::string& pattern, const DateLocale& locale) {
  std::vector<Item> items;
  auto literal = [&items](const std::string& text) {
    if (!items.empty() && items.back().field == Field::Literal)
      items.back().text += text;
    else
      items.push_back({Field::Literal, text});
  };
  size_t i = 0;
  while (i < pattern.size()) {
    const char c = pattern[i];
    const char l = LowerAscii(c);
    if (c == '\\') {
      if (i + 1 < pattern.size()) literal(std::string(1, pattern[i + 1]));
      i += 2;
      continue;
    }
    if (c == '"') {
      const size_t close = pattern.find('"', i + 1);
      const size_t stop = close == std::string::npos ? pattern.size() : close;
      literal(pattern.substr(i + 1, stop - i - 1));
      i = stop + 1;
      continue;
    }
    if (StartsWithIgnoreCase(pattern, i, "am/pm")) {
      items.push_back({Field::AmPm, pattern.substr(i, 5)});
      i += 5;
      continue;
    }
    if (StartsWithIgnoreCase(pattern, i, "a/p")) {
      items.push_back({Field::AmPm, pattern.substr(i, 3)});
      i += 3;
      continue;
    }
    if (StartsWithIgnoreCase(pattern, i, "ampm")) {
      items.push_back({Field::AmPm, pattern.substr(i, 4)});
      i += 4;
      continue;
    }
    if (c == ':') {
      literal(std::string(1, locale.timeSeparator));
      ++i;
      continue;
    }
    if (c == '/') {
      literal(std::string(1, locale.dateSeparator));
      ++i;
      continue;
    }
    const size_t run = RunLength(pattern, i);
    size_t take = 1;
    switch (l) {
      case 'd': {
        static const Field kD[] = {Field::Day,         Field::Day2,      Field::WeekdayAbbr,
                                   Field::WeekdayName, Field::ShortDate, Field::LongDate};
        take = std::min<size_t>(run, 6);
        items.push_back({kD[take - 1], {}});
        break;
      }
      case 'm': {
        static const Field kM[] = {Field::Month, Field::Month2, Field::MonthAbbr, Field::MonthName};
        take = std::min<size_t>(run, 4);
        items.push_back({kM[take - 1], {}});
        break;
      }
      case 'y':
        take = run >= 4 ? 4 : run >= 2 ? 2 : 1;
        items.push_back({take == 4   ? Field::Year4
                         : take == 2 ? Field::Year2
                                     : Field::DayOfYear,
                         {}});
        break;
      case 'h':
        take = std::min<size_t>(run, 2);
        items.push_back({take == 2 ? Field::Hour2 : Field::Hour, {}});
        break;
      case 'n':
        take = std::min<size_t>(run, 2);
        items.push_back({take == 2 ? Field::Minute2 : Field::Minute, {}});
        break;
      case 's':
        take = std::min<size_t>(run, 2);
        items.push_back({take == 2 ? Field::Second2 : Field::Second, {}});
        break;
      case 'w':
        take = std::min<size_t>(run, 2);
        items.push_back({take == 2 ? Field::Week : Field::Weekday, {}});
        break;
      case 'q':
        items.push_back({Field::Quarter, {}});
        break;
      case 'c':
        items.push_back({Field::General, {}});
        break;
      case 't':
        if (run >= 5) {
          take = 5;
          items.push_back({Field::LongTime, {}});
        } else {
          take = run;
          literal(pattern.substr(i, run));
        }
        break;
      default:
        literal(std::string(1, c));
        break;
    }
    i += take;
  }
  // "m" and "mm" right after an hour, or right before a second, are minutes.
  for (size_t k = 0; k < items.size(); ++k) {
    if (items[k].field != Field::Month && items[k].field != Field::Month2) continue;
    size_t before = k;
    while (before > 0 && items[before - 1].field == Field::Literal) --before;
    size_t after = k + 1;
    while (after < items.size() && items[after].field == Field::Literal) ++after;
    const bool afterHour = before > 0 && (items[before - 1].field == Field::Hour ||
                                          items[before - 1].field == Field::Hour2);
    const bool beforeSecond = after < items.size() && (items[after].field == Field::Second ||
                                                       items[after].field == Field::Second2);
    if (afterHour || beforeSecond)
      items[k].field = items[k].field == Field::Month ? Field::Minute : Field::Minute2;
  }
  return items;
}

std::string Number(int value, int width) {
  if (value < 0 || value > 9999 || width > 4) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%0*d", width, value);
    return buf;
  }
  // Days, months, hours, minutes, seconds and years: written by hand, as every date shown is.
  char buf[4];
  int n = 0;
  do {
    buf[n++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value > 0);
  std::string out(static_cast<size_t>(std::max(0, width - n)), '0');
  while (n > 0) out += buf[--n];
  return out;
}

// The items of a pattern, parsed once per pattern and pair of separators: the same few
// patterns are rendered over and over.
// Shared, so that an entry dropped from the cache by a nested Render outlives its use.
std::shared_ptr<const std::vector<Item>> ParsedItems(const std::string& pattern,
                                                     const DateLocale& locale) {
  struct Entry {
    std::string pattern;
    char dateSeparator;
    char timeSeparator;
    std::shared_ptr<const std::vector<Item>> items;
  };
  thread_local std::vector<Entry> cache;
  for (const Entry& e : cache) {
    if (e.dateSeparator == locale.dateSeparator && e.timeSeparator == locale.timeSeparator &&
        e.pattern == pattern)
      return e.items;
  }
  constexpr size_t kKept = 16;
  if (cache.size() >= kKept) cache.erase(cache.begin());
  cache.push_back({pattern, locale.dateSeparator, locale.timeSeparator,
                   std::make_shared<const std::vector<Item>>(Parse(pattern, locale))});
  return cache.back().items;
}

int FloorMod(long a, int b) { return static_cast<int>(((a % b) + b) % b); }

void CheckRange(double date) {
  if (!InDateRange(date)) Raise(kInvalidProcedureCall);
}

// The day's place in the week and the year, worked out only for the patterns that show them.
struct Calendar {
  int weekday;                // 1 = Sunday
  int dayOfYear;              // 1..366
  int januaryFirstWeekday;    // 1 = Sunday
};

Calendar CalendarOf(const DateParts& p) {
  const long dayNumber = DaysFromCivil(p.year, p.month, p.day);
  const long januaryFirst = DaysFromCivil(p.year, 1, 1);
  return {FloorMod(dayNumber + 6, 7) + 1,  // day 0 was a Saturday
          static_cast<int>(dayNumber - januaryFirst) + 1, FloorMod(januaryFirst + 6, 7) + 1};
}

std::string Render(double date, const DateParts& p, const std::string& pattern,
                   const DateLocale& locale, bool nested) {
  const std::shared_ptr<const std::vector<Item>> parsed = ParsedItems(pattern, locale);
  const std::vector<Item>& items = *parsed;
  bool twelveHour = false;
  bool needsCalendar = false;
  for (const Item& item : items) {
    twelveHour = twelveHour || item.field == Field::AmPm;
    needsCalendar = needsCalendar || item.field == Field::WeekdayAbbr ||
                    item.field == Field::WeekdayName || item.field == Field::DayOfYear ||
                    item.field == Field::Weekday || item.field == Field::Week;
  }
  const Calendar calendar = needsCalendar ? CalendarOf(p) : Calendar{1, 1, 1};
  const int weekday = calendar.weekday;
  const int dayOfYear = calendar.dayOfYear;
  const int januaryFirstWeekday = calendar.januaryFirstWeekday;
  const int hour = twelveHour ? (p.hour % 12 == 0 ? 12 : p.hour % 12) : p.hour;

  std::string out;
  for (const Item& item : items) {
    switch (item.field) {
      case Field::Literal:
        out += item.text;
        break;
      case Field::Day:
        out += std::to_string(p.day);
        break;
      case Field::Day2:
        out += Number(p.day, 2);
        break;
      case Field::WeekdayAbbr:
        out += locale.dayAbbreviations[weekday - 1];
        break;
      case Field::WeekdayName:
        out += locale.dayNames[weekday - 1];
        break;
      case Field::ShortDate:
        out += nested ? Number(p.day, 2) : Render(date, p, locale.shortDatePattern, locale, true);
        break;
      case Field::LongDate:
        out += nested ? Number(p.day, 2) : Render(date, p, locale.longDatePattern, locale, true);
        break;
      case Field::Month:
        out += std::to_string(p.month);
        break;
      case Field::Month2:
        out += Number(p.month, 2);
        break;
      case Field::MonthAbbr:
        out += locale.monthAbbreviations[p.month - 1];
        break;
      case Field::MonthName:
        out += locale.monthNames[p.month - 1];
        break;
      case Field::Year2:
        out += Number(p.year % 100, 2);
        break;
      case Field::Year4:
        out += Number(p.year, 4);
        break;
      case Field::DayOfYear:
        out += std::to_string(dayOfYear);
        break;
      case Field::Quarter:
        out += std::to_string((p.month - 1) / 3 + 1);
        break;
      case Field::Weekday:
        out += std::to_string(weekday);
        break;
      case Field::Week:
        out += std::to_string((dayOfYear - 1 + januaryFirstWeekday - 1) / 7 + 1);
        break;
      case Field::Hour:
        out += std::to_string(hour);
        break;
      case Field::Hour2:
        out += Number(hour, 2);
        break;
      case Field::Minute:
        out += std::to_string(p.minute);
        break;
      case Field::Minute2:
        out += Number(p.minute, 2);
        break;
      case Field::Second:
        out += std::to_string(p.second);
        break;
      case Field::Second2:
        out += Number(p.second, 2);
        break;
      case Field::LongTime:
        out += Number(p.hour, 2) + locale.timeSeparator + Number(p.minute, 2) +
               locale.timeSeparator + Number(p.second, 2);
        break;
      case Field::General:
        out += DateToString(date);
        break;
      case Field::AmPm: {
        const bool pm = p.hour >= 12;
        const std::string& spelling = item.text;
        if (spelling.size() == 4) {  // AMPM: the locale's words
          out += pm ? locale.pmDesignator : locale.amDesignator;
        } else {
          // "AM/PM" or "A/P": the case of the half of the pattern that is written.
          const size_t slash = spelling.find('/');
          const std::string half = pm ? spelling.substr(slash + 1) : spelling.substr(0, slash);
          const bool upper = half[0] >= 'A' && half[0] <= 'Z';
          const std::string word = spelling.size() == 3 ? (pm ? "p" : "a") : (pm ? "pm" : "am");
          for (char c : word) out += upper ? static_cast<char>(c - 32) : c;
        }
        break;
      }
    }
  }
  return out;
}

}  // namespace

std::string FormatDate(double date, const std::string& pattern) {
  CheckRange(date);
  if (pattern.empty()) return DateToString(date);
  return Render(date, SplitDate(date), pattern, CurrentDateLocale(), false);
}

std::string DateToString(double date) {
  CheckRange(date);
  const DateLocale& locale = CurrentDateLocale();
  const DateParts p = SplitDate(date);
  const bool dayZero = p.year == 1899 && p.month == 12 && p.day == 30;
  const bool midnight = p.hour == 0 && p.minute == 0 && p.second == 0;
  // Every date of a log passes here when it is shown or exported: the time is written by hand
  // rather than through its pattern.
  std::string out;
  if (!dayZero) out = Render(date, p, locale.shortDatePattern, locale, true);
  if (dayZero || !midnight) {
    char time[9] = {static_cast<char>('0' + p.hour / 10),   static_cast<char>('0' + p.hour % 10),
                    locale.timeSeparator,
                    static_cast<char>('0' + p.minute / 10), static_cast<char>('0' + p.minute % 10),
                    locale.timeSeparator,
                    static_cast<char>('0' + p.second / 10), static_cast<char>('0' + p.second % 10),
                    '\0'};
    if (!dayZero) out += ' ';
    out.append(time, 8);
  }
  return out;
}

}  // namespace vellumar::vb
