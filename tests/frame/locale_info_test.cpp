#include "frame/locale_info.h"

#include <gtest/gtest.h>

#include "platform/vb/date_value.h"
#include "platform/vb/format.h"
#include "support/env_guard.h"

namespace vellumar {
namespace {

vb::DateLocale German() {
  vb::DateLocale locale;
  locale.shortDatePattern = "dd.mm.yyyy";
  locale.dateSeparator = '.';
  locale.timeSeparator = ':';
  locale.monthAbbreviations = {"Jan", "Feb", "Mär", "Apr", "Mai", "Jun",
                               "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
  return locale;
}

TEST(LocaleInfo, MonthsAreUnreadableUntilRead) {
  LocaleInfo info(LocaleSource{[] { return German(); }, {}, {}});
  for (const auto& name : info.MonthAbbreviations()) EXPECT_EQ(name, "???");
}

TEST(LocaleInfo, InitializeReadsSeparatorsAndMonthsAndInstallsThem) {
  vb::ScopedDateLocale restore{vb::DateLocale{}};
  LocaleInfo info(LocaleSource{[] { return German(); }, {}, {}});
  info.Initialize();
  EXPECT_EQ(info.LocaleDateSeparator(), '.');
  EXPECT_EQ(info.LocaleTimeSeparator(), ':');
  EXPECT_EQ(info.MonthAbbreviations()[2], "Mär");
  EXPECT_EQ(info.MonthAbbreviations()[11], "Dez");
  EXPECT_EQ(vb::CurrentDateLocale().monthAbbreviations[9], "Okt");
  EXPECT_EQ(vb::CurrentDateLocale().dateSeparator, '.');
  EXPECT_EQ(vb::FormatDate(vb::DateSerial(2024, 3, 5), "dd-mmm-yyyy"), "05-Mär-2024");
  EXPECT_EQ(vb::FormatDate(vb::DateSerial(2024, 3, 5), "ddddd"), "05.03.2024");
}

TEST(LocaleInfo, AMonthNameThatCannotBeReadStaysQuestionMarks) {
  vb::ScopedDateLocale restore{vb::DateLocale{}};
  vb::DateLocale partial = German();
  partial.monthAbbreviations[4] = "";
  LocaleInfo info(LocaleSource{[=] { return partial; }, {}, {}});
  info.Initialize();
  EXPECT_EQ(info.MonthAbbreviations()[4], "???");
  EXPECT_EQ(info.MonthAbbreviations()[5], "Jun");
}

TEST(LocaleInfo, LanguageAndCountryOrUnknown) {
  LocaleInfo told(LocaleSource{
      {}, [] { return std::string("English"); }, [] { return std::string("United States"); }});
  EXPECT_EQ(told.GetLocaleLanguage(), "English");
  EXPECT_EQ(told.GetLocaleCountry(), "United States");
  LocaleInfo silent(LocaleSource{{}, [] { return std::string(); }, {}});
  EXPECT_EQ(silent.GetLocaleLanguage(), "unknown");
  EXPECT_EQ(silent.GetLocaleCountry(), "unknown");
}

TEST(LocaleInfo, CodesOfALocaleName) {
  EXPECT_EQ(LocaleCodesFromName("de_AT.UTF-8@euro").language, "de");
  EXPECT_EQ(LocaleCodesFromName("de_AT.UTF-8@euro").country, "AT");
  EXPECT_EQ(LocaleCodesFromName("en_GB").country, "GB");
  EXPECT_EQ(LocaleCodesFromName("fr").language, "fr");
  EXPECT_EQ(LocaleCodesFromName("fr").country, "");
  EXPECT_EQ(LocaleCodesFromName("C").language, "");
  EXPECT_EQ(LocaleCodesFromName("C.UTF-8").language, "");
  EXPECT_EQ(LocaleCodesFromName("POSIX").language, "");
  EXPECT_EQ(LocaleCodesFromName("").language, "");
}

TEST(LocaleInfo, TheCLocaleTellsNoLanguageOrCountry) {
  test::EnvGuard env;
  env.Set("LC_ALL", "C.UTF-8");
  LocaleInfo info;
  EXPECT_EQ(info.GetLocaleLanguage(), "unknown");
  EXPECT_EQ(info.GetLocaleCountry(), "unknown");
}

TEST(LocaleInfo, AUserLocaleGivesItsNamesOrAtLeastItsCodes) {
  test::EnvGuard env;
  env.Unset("LC_ALL");
  env.Unset("LC_MESSAGES");
  env.Set("LANG", "fr_CA.UTF-8");
  LocaleInfo info;
  const std::string language = info.GetLocaleLanguage();
  const std::string country = info.GetLocaleCountry();
  // Names when the system has the locale's data, else the codes of its name.
  EXPECT_TRUE(language == "French" || language == "fr") << language;
  EXPECT_TRUE(country == "Canada" || country == "CA") << country;
}

TEST(LocaleInfo, EnvironmentDateLocaleIsInstalled) {
  vb::ScopedDateLocale restore{vb::DateLocale{}};
  test::EnvGuard env;
  env.Set("LC_ALL", "C.UTF-8");
  LocaleInfo info;
  info.Initialize();
  EXPECT_EQ(info.MonthAbbreviations()[0], "Jan");
  EXPECT_EQ(vb::CurrentDateLocale().dateSeparator, info.LocaleDateSeparator());
  EXPECT_EQ(vb::CurrentDateLocale().timeSeparator, info.LocaleTimeSeparator());
}

}  // namespace
}  // namespace vellumar
