#include "frame/locale_info.h"

#include <langinfo.h>
#include <locale.h>
#include <stdlib.h>

namespace vellumar {
namespace {

const char* kUnreadable = "???";

// The locale the environment names for the user's messages: LC_ALL, LC_MESSAGES, then LANG.
std::string EnvironmentLocaleName() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

// One item of the system's data for the environment's locale; "" when there is none.
std::string LocaleItem(const std::string& localeName, nl_item item) {
  locale_t loc = newlocale(LC_ALL_MASK, localeName.c_str(), static_cast<locale_t>(0));
  if (loc == static_cast<locale_t>(0)) return {};
  std::string value = nl_langinfo_l(item, loc);
  freelocale(loc);
  return value;
}

}  // namespace

LocaleCodes LocaleCodesFromName(const std::string& name) {
  LocaleCodes codes;
  const std::string base = name.substr(0, name.find_first_of(".@"));
  if (base.empty() || base == "C" || base == "POSIX") return codes;
  const auto underscore = base.find('_');
  codes.language = base.substr(0, underscore);
  if (underscore != std::string::npos) codes.country = base.substr(underscore + 1);
  return codes;
}

namespace {

// A name of the user's locale: its address item, else its identification item, else the code
// in the locale's own name. Nothing without a language.
std::string UserLocaleName(nl_item addressItem, nl_item identificationItem,
                           std::string LocaleCodes::*code) {
  const std::string name = EnvironmentLocaleName();
  const LocaleCodes codes = LocaleCodesFromName(name);
  if (codes.language.empty()) return {};
  std::string value = LocaleItem(name, addressItem);
  if (value.empty()) value = LocaleItem(name, identificationItem);
  return value.empty() ? codes.*code : value;
}

}  // namespace

std::string UserLanguageName() {
  return UserLocaleName(_NL_ADDRESS_LANG_NAME, _NL_IDENTIFICATION_LANGUAGE, &LocaleCodes::language);
}

std::string UserCountryName() {
  return UserLocaleName(_NL_ADDRESS_COUNTRY_NAME, _NL_IDENTIFICATION_TERRITORY,
                        &LocaleCodes::country);
}

LocaleSource LocaleSource::FromEnvironment() {
  return LocaleSource{vb::DateLocaleFromEnvironment, UserLanguageName, UserCountryName};
}

LocaleInfo::LocaleInfo(LocaleSource source) : source_(std::move(source)) {
  monthAbbreviations_.fill(kUnreadable);
}

vb::DateLocale LocaleInfo::ReadDateLocale() const {
  return source_.dateLocale ? source_.dateLocale() : vb::DateLocale{};
}

void LocaleInfo::Initialize() {
  GetLocaleSeparators();
  GetMonthAbbreviations();
  vb::DateLocale installed = ReadDateLocale();
  installed.dateSeparator = localeDateSeparator_;
  installed.timeSeparator = localeTimeSeparator_;
  installed.monthAbbreviations = monthAbbreviations_;
  vb::SetCurrentDateLocale(installed);
}

void LocaleInfo::GetLocaleSeparators() {
  const vb::DateLocale read = ReadDateLocale();
  if (read.timeSeparator != '\0') localeTimeSeparator_ = read.timeSeparator;
  if (read.dateSeparator != '\0') localeDateSeparator_ = read.dateSeparator;
}

void LocaleInfo::GetMonthAbbreviations() {
  const vb::DateLocale read = ReadDateLocale();
  for (std::size_t i = 0; i < monthAbbreviations_.size(); ++i) {
    monthAbbreviations_[i] =
        read.monthAbbreviations[i].empty() ? kUnreadable : read.monthAbbreviations[i];
  }
}

std::string LocaleInfo::GetLocaleLanguage() const {
  const std::string language = source_.language ? source_.language() : std::string();
  return language.empty() ? "unknown" : language;
}

std::string LocaleInfo::GetLocaleCountry() const {
  const std::string country = source_.country ? source_.country() : std::string();
  return country.empty() ? "unknown" : country;
}

}  // namespace vellumar
