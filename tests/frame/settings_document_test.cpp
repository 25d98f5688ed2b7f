#include "frame/settings_document.h"

#include <gtest/gtest.h>

#include <random>

namespace vellumar {
namespace {

TEST(SettingsDocument, PlainEntriesAreWrittenPlainly) {
  SettingsDocument doc;
  doc.Set("Windows", "VellumMainLeft", "120");
  doc.Set("Configuration", "Callsign", "K1ABC");
  doc.Set("Windows", "VellumMainTop", "80");
  EXPECT_EQ(doc.Serialize(),
            "[Windows]\nVellumMainLeft=120\nVellumMainTop=80\n\n[Configuration]\nCallsign=K1ABC\n");
}

TEST(SettingsDocument, KeysWithBlanksAndOddValuesAreQuoted) {
  SettingsDocument doc;
  doc.Set("Configuration", " LogFontItalic", "True");
  doc.Set("Configuration", "QSLMsg", "TNX QSO\r\n73!");
  doc.Set("Configuration", "Padded", "  x  ");
  doc.Set("Configuration", "Quote", "\"quoted\" text");
  doc.Set("Configuration", "a=b", "c=d");
  doc.Set("Configuration", "Empty", "");
  EXPECT_EQ(doc.Serialize(),
            "[Configuration]\n"
            "\" LogFontItalic\"=True\n"
            "QSLMsg=\"TNX QSO\\r\\n73!\"\n"
            "Padded=\"  x  \"\n"
            "Quote=\"\\\"quoted\\\" text\"\n"
            "\"a=b\"=c=d\n"
            "Empty=\n");
  const SettingsDocument back = SettingsDocument::Parse(doc.Serialize());
  EXPECT_EQ(back.Get("Configuration", " LogFontItalic"), "True");
  EXPECT_EQ(back.Get("Configuration", "LogFontItalic"), std::nullopt);
  EXPECT_EQ(back.Get("Configuration", "QSLMsg"), "TNX QSO\r\n73!");
  EXPECT_EQ(back.Get("Configuration", "Padded"), "  x  ");
  EXPECT_EQ(back.Get("Configuration", "Quote"), "\"quoted\" text");
  EXPECT_EQ(back.Get("Configuration", "a=b"), "c=d");
  EXPECT_EQ(back.Get("Configuration", "Empty"), "");
}

TEST(SettingsDocument, NamesCompareWithoutCaseAndKeepTheirFirstSpelling) {
  SettingsDocument doc;
  doc.Set("Windows", "VellumMainWindowState", "2");
  doc.Set("WINDOWS", "VellumMainWindowstate", "0");
  EXPECT_EQ(doc.Get("windows", "vellummainwindowstate"), "0");
  ASSERT_EQ(doc.sections().size(), 1u);
  ASSERT_EQ(doc.sections()[0].entries.size(), 1u);
  EXPECT_EQ(doc.sections()[0].name, "Windows");
  EXPECT_EQ(doc.sections()[0].entries[0].key, "VellumMainWindowState");
}

TEST(SettingsDocument, HandEditedFileIsReadAsFarAsItMakesSense) {
  static const char kText[] =
      "\xEF\xBB\xBF"                 // a byte-order mark from an editor
      "orphan=before any section\n"  // no section: ignored
      "; a comment\n"
      "# another comment\n"
      "[Configuration]\r\n"    // CR LF line ends
      "Callsign = K1ABC \r\n"  // blanks around are not part of it
      "   Run=1\n"             // indented
      "this line has no equals sign\n"
      "\"unterminated=1\n"
      "Bad=\"unterminated value\n"
      "Trailing=\"x\" junk\n"
      "BadEscape=\"\\q\"\n"
      "=no key\n"
      "Binary\x01\x02\xff=\x80\x81 ok\n"
      "[Broken section\n"  // not a header: what follows has no section
      "Lost=1\n"
      "[]\n"
      "AlsoLost=1\n"
      "[Windows]   \n"
      "VellumMainLeft=10\n"
      "VellumMainLeft=20\n"  // the later one wins
      "[configuration]\n"    // the same section again
      "QSLMsg=\"73\\x21\"\n"
      "\x00\x00garbage\n";
  const SettingsDocument doc = SettingsDocument::Parse(std::string_view(kText, sizeof kText - 1));
  EXPECT_EQ(doc.Get("Configuration", "Callsign"), "K1ABC");
  EXPECT_EQ(doc.Get("Configuration", "Run"), "1");
  EXPECT_EQ(doc.Get("Configuration", "QSLMsg"), "73!");
  EXPECT_EQ(doc.Get("Configuration", "Binary\x01\x02\xff"), "\x80\x81 ok");
  EXPECT_EQ(doc.Get("Windows", "VellumMainLeft"), "20");
  for (const char* key : {"orphan", "unterminated", "Bad", "Trailing", "BadEscape", "Lost",
                          "AlsoLost", "this line has no equals sign"}) {
    EXPECT_EQ(doc.Get("Configuration", key), std::nullopt) << key;
  }
  EXPECT_EQ(doc.Get("Broken section", "Lost"), std::nullopt);
  ASSERT_EQ(doc.sections().size(), 2u);
  // What was read survives a rewrite exactly.
  const SettingsDocument again = SettingsDocument::Parse(doc.Serialize());
  EXPECT_EQ(again.Serialize(), doc.Serialize());
}

std::string RandomText(std::mt19937& rng, std::size_t maxLength, bool anyByte) {
  static const std::string kPlain = "abcXYZ019 _-.=;#[]\"\\/'\t";
  std::uniform_int_distribution<std::size_t> length(0, maxLength);
  std::uniform_int_distribution<int> byte(0, 255);
  std::uniform_int_distribution<std::size_t> pick(0, kPlain.size() - 1);
  std::string text(length(rng), ' ');
  for (char& c : text) c = anyByte ? static_cast<char>(byte(rng)) : kPlain[pick(rng)];
  return text;
}

TEST(SettingsDocument, AnyNamesAndValuesSurviveTheFile) {
  std::mt19937 rng(20240315);
  for (int round = 0; round < 300; ++round) {
    SettingsDocument doc;
    std::vector<std::tuple<std::string, std::string, std::string>> written;
    for (int i = 0; i < 12; ++i) {
      const bool anyByte = round % 2 == 0;
      const std::string section = RandomText(rng, 6, anyByte);
      const std::string key = RandomText(rng, 10, anyByte);
      const std::string value = RandomText(rng, 40, anyByte);
      doc.Set(section, key, value);
    }
    const SettingsDocument back = SettingsDocument::Parse(doc.Serialize());
    ASSERT_EQ(back.sections().size(), doc.sections().size());
    for (const auto& section : doc.sections()) {
      for (const auto& entry : section.entries) {
        ASSERT_EQ(back.Get(section.name, entry.key), entry.value)
            << "round " << round << " key [" << entry.key << "]";
      }
    }
    ASSERT_EQ(back.Serialize(), doc.Serialize());
  }
}

TEST(SettingsDocument, RandomBytesNeverBreakTheReader) {
  std::mt19937 rng(7);
  for (int round = 0; round < 500; ++round) {
    std::string text = RandomText(rng, 400, true);
    if (round % 3 == 0) text = "[S]\n" + text;
    const SettingsDocument doc = SettingsDocument::Parse(text);
    const SettingsDocument again = SettingsDocument::Parse(doc.Serialize());
    ASSERT_EQ(again.Serialize(), doc.Serialize()) << "round " << round;
  }
}

}  // namespace
}  // namespace vellumar
