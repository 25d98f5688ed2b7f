// The reading of dates from text (CDate, IsDate). The text is cut into numbers, words and
// separators; a run "number:number[:number]" (with an optional AM/PM) is the time, the other
// numbers and a month name are the date, placed by their size and the locale's order.
#include <cstdint>
#include <vector>

#include "platform/vb/ascii.h"
#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"

namespace vellumar::vb {
namespace {

const char* const kEnglishMonths[12] = {"january",   "february", "march",    "april",
                                        "may",       "june",     "july",     "august",
                                        "september", "october",  "november", "december"};
const char* const kEnglishDays[7] = {"sunday",   "monday", "tuesday", "wednesday",
                                     "thursday", "friday", "saturday"};

enum class Kind { Num, Month, AmPm, Sep, TimeSep, Blank };

struct Token {
  Kind kind;
  int64_t value = 0;  // Num: the number; Month: 1..12; AmPm: 1 for PM
  int digits = 0;     // Num: how many digits were written
  char sep = 0;       // Sep, TimeSep
};

bool IsWordChar(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80;
}

std::string Stripped(const std::string& name) {
  std::string s = LowerAscii(name);
  while (!s.empty() && s.back() == '.') s.pop_back();
  return s;
}

// 1..12 for a month name, 0 otherwise.
int MatchMonth(const std::string& word, const DateLocale& locale) {
  for (int m = 0; m < 12; ++m) {
    if (word == Stripped(locale.monthAbbreviations[m]) || word == Stripped(locale.monthNames[m]))
      return m + 1;
  }
  for (int m = 0; m < 12; ++m) {
    const std::string full = kEnglishMonths[m];
    if (word.size() >= 3 && full.compare(0, word.size(), word) == 0) return m + 1;
  }
  return 0;
}

bool MatchWeekday(const std::string& word, const DateLocale& locale) {
  for (int d = 0; d < 7; ++d) {
    if (word == Stripped(locale.dayAbbreviations[d]) || word == Stripped(locale.dayNames[d]))
      return true;
    const std::string full = kEnglishDays[d];
    if (word.size() >= 3 && full.compare(0, word.size(), word) == 0) return true;
  }
  return false;
}

// -1 when the word is no AM/PM marker, else 0 for AM and 1 for PM.
int MatchAmPm(const std::string& word, const DateLocale& locale) {
  if (word == "am" || word == "a" || word == Stripped(locale.amDesignator)) return 0;
  if (word == "pm" || word == "p" || word == Stripped(locale.pmDesignator)) return 1;
  return -1;
}

bool Tokenize(const std::string& text, const DateLocale& locale, std::vector<Token>& tokens) {
  size_t i = 0;
  while (i < text.size()) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c >= '0' && c <= '9') {
      Token t{Kind::Num};
      while (i < text.size() && text[i] >= '0' && text[i] <= '9') {
        if (++t.digits > 9) return false;
        t.value = t.value * 10 + (text[i++] - '0');
      }
      tokens.push_back(t);
    } else if (c == ' ' || c == '\t') {
      while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
      tokens.push_back({Kind::Blank});
    } else if (IsWordChar(c)) {
      std::string word;
      while (i < text.size() && IsWordChar(static_cast<unsigned char>(text[i])))
        word += LowerAscii(text[i++]);
      const bool betweenNumbers = !tokens.empty() && tokens.back().kind == Kind::Num &&
                                  i < text.size() && text[i] >= '0' && text[i] <= '9';
      if (word == "t" && betweenNumbers) {  // ISO "2002-01-15T12:00"
        tokens.push_back({Kind::Blank});
      } else if (const int month = MatchMonth(word, locale)) {
        tokens.push_back({Kind::Month, month});
        if (i < text.size() && text[i] == '.') ++i;  // "janv." and the like
      } else if (const int pm = MatchAmPm(word, locale); pm >= 0) {
        tokens.push_back({Kind::AmPm, pm});
      } else if (MatchWeekday(word, locale)) {
        if (i < text.size() && (text[i] == ',' || text[i] == '.')) ++i;
        tokens.push_back({Kind::Blank});
      } else {
        return false;
      }
    } else {
      tokens.push_back({c == ':' ? Kind::TimeSep : Kind::Sep, 0, 0, static_cast<char>(c)});
      ++i;
    }
  }
  return true;
}

bool IsDateSeparator(char c, const DateLocale& locale) {
  return c == '/' || c == '-' || c == '.' || c == ',' || c == locale.dateSeparator;
}

struct Time {
  bool present = false;
  int hour = 0, minute = 0, second = 0;
};

int ExpandYear(const Token& t) {
  if (t.digits <= 2) return static_cast<int>(t.value < 30 ? 2000 + t.value : 1900 + t.value);
  return static_cast<int>(t.value);
}

bool YearLike(const Token& t) { return t.digits >= 3 || t.value > 31; }

std::optional<double> WholeDay(int year, int64_t month, int64_t day) {
  if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 ||
      day > DaysInMonth(year, static_cast<int>(month)))
    return std::nullopt;
  return DateSerial(year, static_cast<int>(month), static_cast<int>(day));
}

// Day, month and year from what isn't the time.
std::optional<double> ResolveDate(const std::vector<Token>& nums, int month,
                                  const DateLocale& locale) {
  if (month != 0) {
    if (nums.size() == 1 && YearLike(nums[0]) && nums[0].digits <= 4)
      return WholeDay(ExpandYear(nums[0]), month, 1);
    if (nums.size() != 2) return std::nullopt;
    const Token* day = &nums[0];
    const Token* year = &nums[1];
    if (YearLike(nums[0]) && !YearLike(nums[1])) std::swap(day, year);
    if (day->digits > 2 || year->digits > 4) return std::nullopt;
    return WholeDay(ExpandYear(*year), month, day->value);
  }
  if (nums.size() == 1 && nums[0].digits == 8) {  // YYYYMMDD
    const int64_t v = nums[0].value;
    return WholeDay(static_cast<int>(v / 10000), v / 100 % 100, v % 100);
  }
  if (nums.size() != 3) return std::nullopt;
  for (const Token& t : nums)
    if (t.digits > 4) return std::nullopt;
  const std::string order = ShortDateOrder(locale);
  const Token *d = nullptr, *m = nullptr, *y = nullptr;
  if (YearLike(nums[0])) {  // year first is always year, month, day
    y = &nums[0], m = &nums[1], d = &nums[2];
    if (d->digits > 2 || m->digits > 2) return std::nullopt;
    return WholeDay(ExpandYear(*y), m->value, d->value);
  }
  if (YearLike(nums[2])) {
    y = &nums[2];
    const bool dayFirst = order.find('d') < order.find('m');
    d = dayFirst ? &nums[0] : &nums[1];
    m = dayFirst ? &nums[1] : &nums[0];
  } else if (YearLike(nums[1])) {
    return std::nullopt;
  } else {
    d = &nums[order.find('d')];
    m = &nums[order.find('m')];
    y = &nums[order.find('y')];
  }
  if (d->digits > 2 || m->digits > 2) return std::nullopt;
  if (auto v = WholeDay(ExpandYear(*y), m->value, d->value)) return v;
  // A month out of range: the runtime reads the two the other way round.
  return WholeDay(ExpandYear(*y), d->value, m->value);
}

std::optional<double> ParseTokens(const std::vector<Token>& tokens, const DateLocale& locale) {
  std::vector<Token> nums;
  int month = 0;
  Time time;
  int sepsSinceItem = 0;  // separators since the last date element or time
  bool anyItem = false;
  for (size_t i = 0; i < tokens.size(); ++i) {
    const Token& t = tokens[i];
    switch (t.kind) {
      case Kind::Blank:
        break;
      case Kind::Sep:
        if (!IsDateSeparator(t.sep, locale) || !anyItem || ++sepsSinceItem > 1) return std::nullopt;
        break;
      case Kind::TimeSep:
      case Kind::AmPm:
        return std::nullopt;  // only inside a time
      case Kind::Month:
        if (month != 0) return std::nullopt;
        month = static_cast<int>(t.value);
        sepsSinceItem = 0;
        anyItem = true;
        break;
      case Kind::Num: {
        size_t j = i + 1;
        const bool clock = j + 1 < tokens.size() && tokens[j].kind == Kind::TimeSep &&
                           tokens[j + 1].kind == Kind::Num;
        size_t afterBlank = j;
        if (afterBlank < tokens.size() && tokens[afterBlank].kind == Kind::Blank) ++afterBlank;
        const bool hourOnly =
            !clock && afterBlank < tokens.size() && tokens[afterBlank].kind == Kind::AmPm;
        if (!clock && !hourOnly) {
          nums.push_back(t);
          sepsSinceItem = 0;
          anyItem = true;
          break;
        }
        if (time.present) return std::nullopt;
        time.present = true;
        if (t.digits > 2) return std::nullopt;
        time.hour = static_cast<int>(t.value);
        if (clock) {
          const Token* parts[2] = {&tokens[j + 1], nullptr};
          j += 2;
          if (j + 1 < tokens.size() && tokens[j].kind == Kind::TimeSep &&
              tokens[j + 1].kind == Kind::Num) {
            parts[1] = &tokens[j + 1];
            j += 2;
          }
          if (parts[0]->digits > 2 || (parts[1] && parts[1]->digits > 2)) return std::nullopt;
          time.minute = static_cast<int>(parts[0]->value);
          time.second = parts[1] ? static_cast<int>(parts[1]->value) : 0;
          afterBlank = j;
          if (afterBlank < tokens.size() && tokens[afterBlank].kind == Kind::Blank) ++afterBlank;
        }
        if (afterBlank < tokens.size() && tokens[afterBlank].kind == Kind::AmPm) {
          if (time.hour < 1 || time.hour > 12) return std::nullopt;
          time.hour = time.hour % 12 + (tokens[afterBlank].value == 1 ? 12 : 0);
          j = afterBlank + 1;
        }
        if (time.hour > 23 || time.minute > 59 || time.second > 59) return std::nullopt;
        i = j - 1;
        sepsSinceItem = 0;
        anyItem = true;
        break;
      }
    }
  }
  if (sepsSinceItem > 0) return std::nullopt;  // a separator at the end
  const double clockValue = TimeSerial(time.hour, time.minute, time.second);
  if (nums.empty() && month == 0) {
    if (!time.present) return std::nullopt;
    return clockValue;
  }
  const std::optional<double> day = ResolveDate(nums, month, locale);
  if (!day) return std::nullopt;
  return time.present ? CombineDateTime(*day, clockValue) : *day;
}

// With a locale whose time separator is also a date separator ("12.30"), the last group of the
// text is read as the time when reading it as part of the date fails.
void MarkTrailingTimeSeparators(std::vector<Token>& tokens, char timeSeparator) {
  size_t end = tokens.size();
  while (end > 0 && (tokens[end - 1].kind == Kind::AmPm || tokens[end - 1].kind == Kind::Blank))
    --end;
  size_t begin = end;
  while (begin > 0 && tokens[begin - 1].kind != Kind::Blank) --begin;
  for (size_t i = begin; i < end; ++i)
    if (tokens[i].kind == Kind::Sep && tokens[i].sep == timeSeparator)
      tokens[i].kind = Kind::TimeSep;
}

}  // namespace

std::optional<double> ParseDate(const std::string& text, const DateLocale& locale) {
  size_t begin = 0, end = text.size();
  while (begin < end && (text[begin] == ' ' || text[begin] == '\t')) ++begin;
  while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t')) --end;
  if (begin == end) return std::nullopt;
  std::vector<Token> tokens;
  if (!Tokenize(text.substr(begin, end - begin), locale, tokens)) return std::nullopt;
  const char tsep = locale.timeSeparator;
  if (tsep != ':' && !IsDateSeparator(tsep, locale)) {
    for (Token& t : tokens)
      if (t.kind == Kind::Sep && t.sep == tsep) t.kind = Kind::TimeSep;
  }
  if (auto value = ParseTokens(tokens, locale)) return value;
  if (tsep != ':' && IsDateSeparator(tsep, locale)) {
    MarkTrailingTimeSeparators(tokens, tsep);
    return ParseTokens(tokens, locale);
  }
  return std::nullopt;
}

std::optional<double> ParseDate(const std::string& text) {
  return ParseDate(text, CurrentDateLocale());
}

double CDate(const std::string& text) {
  const std::optional<double> value = ParseDate(text);
  if (!value) Raise(kTypeMismatch);
  return *value;
}

bool IsDate(const std::string& text) { return ParseDate(text).has_value(); }

}  // namespace vellumar::vb
