#include "platform/vb/date_locale.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "platform/vb/locales.h"

using namespace vellumar::vb;
using namespace vellumar::vb::testing;

namespace {

std::string Translate(const std::string& dFmt, char* separatorOut = nullptr) {
  char separator = 0;
  const std::string pattern = ShortDatePatternFromCFormat(dFmt, separator);
  if (separatorOut) *separatorOut = separator;
  return pattern;
}

TEST(DateLocale, TranslatesCDateFormats) {
  char sep = 0;
  EXPECT_EQ(Translate("%d/%m/%Y", &sep), "dd/mm/yyyy");
  EXPECT_EQ(sep, '/');
  EXPECT_EQ(Translate("%m/%d/%y"), "mm/dd/yyyy");  // the year always has four digits
  EXPECT_EQ(Translate("%d.%m.%Y", &sep), "dd.mm.yyyy");
  EXPECT_EQ(sep, '.');
  EXPECT_EQ(Translate("%Y-%m-%d", &sep), "yyyy-mm-dd");
  EXPECT_EQ(sep, '-');
  EXPECT_EQ(Translate("%F"), "yyyy-mm-dd");
  EXPECT_EQ(Translate("%D"), "mm/dd/yyyy");
  EXPECT_EQ(Translate("%e %b %Y", &sep), "d mmm yyyy");
  EXPECT_EQ(sep, ' ');
  EXPECT_EQ(Translate("%a %d %b %Y"), "dd mmm yyyy");  // the weekday is left out
  EXPECT_EQ(Translate("%Y. %m. %d."), "yyyy.mm.dd");
  EXPECT_EQ(Translate("%Od/%Om/%EY"), "dd/mm/yyyy");
  EXPECT_EQ(Translate("%-d/%-m/%Y"), "dd/mm/yyyy");
  // Separators the date reader doesn't know become "/".
  EXPECT_EQ(Translate("%Y\xE5\xB9\xB4%m\xE6\x9C\x88%d\xE6\x97\xA5", &sep), "yyyy/mm/dd");
  EXPECT_EQ(sep, '/');
  EXPECT_EQ(Translate("%H:%M"), "");
  EXPECT_EQ(Translate(""), "");
}

TEST(DateLocale, OrderOfTheShortDate) {
  EXPECT_EQ(ShortDateOrder(DayFirstLocale()), "dmy");
  EXPECT_EQ(ShortDateOrder(MonthFirstLocale()), "mdy");
  EXPECT_EQ(ShortDateOrder(YearFirstLocale()), "ymd");
  DateLocale odd;
  odd.shortDatePattern = "mmm yyyy";
  EXPECT_EQ(ShortDateOrder(odd), "myd");
}

TEST(DateLocale, ScopedLocaleRestores) {
  const std::string before = CurrentDateLocale().shortDatePattern;
  {
    ScopedDateLocale pin(YearFirstLocale());
    EXPECT_EQ(CurrentDateLocale().shortDatePattern, "yyyy-mm-dd");
    {
      ScopedDateLocale inner(GermanLocale());
      EXPECT_EQ(CurrentDateLocale().dateSeparator, '.');
    }
    EXPECT_EQ(CurrentDateLocale().dateSeparator, '-');
  }
  EXPECT_EQ(CurrentDateLocale().shortDatePattern, before);
}

TEST(DateLocale, ProcessDefaultBeforeAnyIsSet) {
  const DateLocale d;
  EXPECT_EQ(d.shortDatePattern, "dd/mm/yyyy");
  EXPECT_EQ(d.monthAbbreviations[0], "Jan");
  EXPECT_EQ(d.monthAbbreviations[11], "Dec");
}

// Sets an environment variable for the scope and puts back what was there.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    setenv(name, value, 1);
  }
  ~ScopedEnv() {
    if (old_)
      setenv(name_, old_->c_str(), 1);
    else
      unsetenv(name_);
  }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

TEST(DateLocale, FromTheCLocaleIsMonthFirst) {
  for (const char* name : {"C", "POSIX", "C.UTF-8"}) {
    ScopedEnv env("LC_ALL", name);
    const DateLocale l = DateLocaleFromEnvironment();
    EXPECT_EQ(l.shortDatePattern, "mm/dd/yyyy") << name;
    EXPECT_EQ(l.dateSeparator, '/');
    EXPECT_EQ(l.timeSeparator, ':');
    EXPECT_EQ(l.monthAbbreviations[0], "Jan");
    EXPECT_EQ(l.monthAbbreviations[8], "Sep");
    EXPECT_EQ(l.monthNames[11], "December");
    EXPECT_EQ(l.dayAbbreviations[0], "Sun");
    EXPECT_EQ(l.amDesignator, "AM");
  }
}

TEST(DateLocale, AnUnknownLocaleFallsBackToMonthFirst) {
  ScopedEnv env("LC_ALL", "xx_NOWHERE.UTF-8");
  const DateLocale l = DateLocaleFromEnvironment();
  EXPECT_EQ(l.shortDatePattern, "mm/dd/yyyy");
  EXPECT_EQ(l.monthAbbreviations[1], "Feb");
}

TEST(DateLocale, ReadingTheEnvironmentLeavesTheProcessLocaleAlone) {
  const std::string before = setlocale(LC_TIME, nullptr);
  ScopedEnv env("LC_ALL", "C.UTF-8");
  DateLocaleFromEnvironment();
  EXPECT_EQ(std::string(setlocale(LC_TIME, nullptr)), before);
}

// Where the system has a day-first locale installed, its order and names come through.
TEST(DateLocale, AnInstalledDayFirstLocale) {
  for (const char* name : {"de_DE.UTF-8", "en_GB.UTF-8", "fr_FR.UTF-8"}) {
    locale_t probe = newlocale(LC_TIME_MASK, name, static_cast<locale_t>(nullptr));
    if (probe == static_cast<locale_t>(nullptr)) continue;
    freelocale(probe);
    ScopedEnv env("LC_ALL", name);
    const DateLocale l = DateLocaleFromEnvironment();
    EXPECT_EQ(ShortDateOrder(l), "dmy") << name;
    EXPECT_EQ(l.shortDatePattern.find("yyyy"), 6u) << name;
    return;
  }
  GTEST_SKIP() << "no day-first locale installed";
}

}  // namespace
