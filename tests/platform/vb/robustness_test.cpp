// Random texts and patterns: the readers and formatters never fail other than by their error
// numbers, and what they accept is consistent with what they write.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "platform/vb/locales.h"

using namespace vellumar::vb;
using namespace vellumar::vb::testing;

namespace {

class Random {
 public:
  explicit Random(uint32_t seed) : state_(seed) {}
  uint32_t Next() { return state_ = state_ * 1664525u + 1013904223u; }
  std::string Text(const std::string& alphabet, size_t maxLength) {
    std::string s;
    const size_t n = (Next() >> 16) % (maxLength + 1);
    for (size_t i = 0; i < n; ++i) s += alphabet[(Next() >> 16) % alphabet.size()];
    return s;
  }

 private:
  uint32_t state_;
};

TEST(Robustness, ReadDatesAreInRangeAndWriteBack) {
  ScopedDateLocale pin(DayFirstLocale());
  Random random(1);
  int accepted = 0;
  for (int i = 0; i < 200000; ++i) {
    const std::string text = random.Text("0123456789012345/-.:, JanDecpmAMT", 14);
    std::optional<double> value;
    ASSERT_NO_THROW(value = ParseDate(text)) << text;
    if (!value) continue;
    ++accepted;
    ASSERT_GT(*value, kMinDate - 1) << text;
    ASSERT_LT(*value, kMaxDate + 1) << text;
    const std::string written = FormatDate(*value, "yyyy-mm-dd hh:nn:ss");
    ASSERT_EQ(ToStorageText(CDate(written)), ToStorageText(*value)) << text;
  }
  EXPECT_GT(accepted, 100);  // the alphabet does produce dates
}

TEST(Robustness, NumberReadersAgree) {
  Random random(2);
  int numbers = 0;
  for (int i = 0; i < 200000; ++i) {
    const std::string text = random.Text("0123456789 .+-eEdD&hHo1F", 10);
    std::optional<double> parsed;
    ASSERT_NO_THROW(parsed = ParseNumber(text)) << text;
    if (!parsed) continue;
    ++numbers;
    ASSERT_EQ(Val(text), *parsed) << text;  // a whole number text is what Val reads of it
    ASSERT_EQ(Variant(text).ToDouble(), *parsed) << text;
  }
  EXPECT_GT(numbers, 1000);
}

TEST(Robustness, RandomPatternsFormat) {
  ScopedDateLocale pin(DayFirstLocale());
  Random random(3);
  for (int i = 0; i < 50000; ++i) {
    const std::string numberPattern = random.Text("00##.,,%E+-;\"\\ ab", 12);
    const std::string datePattern = random.Text("dmyhnswqctAMP/:\\\" -", 14);
    const double number = static_cast<int32_t>(random.Next()) / 997.0;
    const double date = DateSerial(1990, 1, 1) + (random.Next() % 20000) + 0.37;
    ASSERT_NO_THROW(FormatNumber(number, numberPattern)) << numberPattern;
    ASSERT_NO_THROW(FormatDate(date, datePattern)) << datePattern;
    // A number outside the range of dates has no date to show: error 5, nothing else.
    try {
      Format(Variant(number * 1000), datePattern + numberPattern);
    } catch (const VbError& e) {
      ASSERT_EQ(e.number(), 5) << datePattern + numberPattern;
    }
  }
}

// Every whole number from -1000 to 1000 and many fractions: "0.000" writes what Val reads.
TEST(Robustness, FixedPatternWritesWhatIsRead) {
  for (int i = -100000; i <= 100000; i += 7) {
    const double value = i / 1000.0;
    const std::string text = FormatNumber(value, " 0.000");
    ASSERT_DOUBLE_EQ(Val(text), value) << text;
  }
}

}  // namespace
