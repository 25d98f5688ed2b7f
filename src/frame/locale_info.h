#pragma once
// The user's locale as the program uses it: the date and time separators, the month
// abbreviations, and the language and country names for the error log's banner.
#include <array>
#include <functional>
#include <string>

#include "platform/vb/date_locale.h"

namespace vellumar {

// Where the locale's facts come from; the defaults read the environment, a test gives its own.
struct LocaleSource {
  std::function<vb::DateLocale()> dateLocale;  // separators and month names
  std::function<std::string()> language;       // "" when it can't be told
  std::function<std::string()> country;        // "" when it can't be told

  static LocaleSource FromEnvironment();
};

class LocaleInfo {
 public:
  explicit LocaleInfo(LocaleSource source = LocaleSource::FromEnvironment());

  // GetLocaleSeparators and GetMonthAbbreviations, then makes the result the date locale that
  // the runtime formats and reads dates with.
  void Initialize();
  // The first character of the locale's time and of its date separator.
  void GetLocaleSeparators();
  // Twelve month abbreviations; a name that can't be read stays "???".
  void GetMonthAbbreviations();
  // The user's language and country; "unknown" when the locale tells none.
  std::string GetLocaleLanguage() const;
  std::string GetLocaleCountry() const;

  char LocaleDateSeparator() const { return localeDateSeparator_; }
  char LocaleTimeSeparator() const { return localeTimeSeparator_; }
  const std::array<std::string, 12>& MonthAbbreviations() const { return monthAbbreviations_; }

 private:
  vb::DateLocale ReadDateLocale() const;

  LocaleSource source_;
  char localeDateSeparator_ = '/';                  // between day, month and year
  char localeTimeSeparator_ = ':';                  // between hours, minutes and seconds
  std::array<std::string, 12> monthAbbreviations_;  // January first; "???" when unreadable
};

// Language and country codes of a locale name such as "de_AT.UTF-8@euro" ("de", "AT"); empty
// for "C", "POSIX" and names without them.
struct LocaleCodes {
  std::string language;  // ISO 639 code, e.g. "de"
  std::string country;   // ISO 3166 code, e.g. "AT"
};
LocaleCodes LocaleCodesFromName(const std::string& name);

// The user's language and country names as the system's locale data give them ("English",
// "United States"), else the codes of the locale's name; "" when there are none.
std::string UserLanguageName();
std::string UserCountryName();

}  // namespace vellumar
