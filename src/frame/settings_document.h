#pragma once
// One application's settings as they stand in its file: sections of keys with text values, in
// file order. Section and key names compare without regard to ASCII case; the spelling that
// came first is kept.
//
// The file is INI text. A name or value that a plain INI line couldn't carry (blanks at either
// end, control characters such as a newline, a "=" or quote in a key) is written in double
// quotes with backslash escapes (\\ \" \n \r \t \xHH), so that " LogFontItalic" stays a key of
// its own. Reading takes every line that makes sense and passes over the rest.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellumar {

class SettingsDocument {
 public:
  struct Entry {
    std::string key;    // as first written, blanks included
    std::string value;  // any text, newlines included
  };
  struct Section {
    std::string name;            // as first written
    std::vector<Entry> entries;  // in file order, one per key
  };

  static SettingsDocument Parse(std::string_view text);
  std::string Serialize() const;

  std::optional<std::string> Get(std::string_view section, std::string_view key) const;
  // Replaces the value of a key met in any case, or adds the key at the end of its section.
  void Set(std::string_view section, std::string_view key, std::string_view value);

  const std::vector<Section>& sections() const { return sections_; }

 private:
  std::vector<Section> sections_;
};

// Equality of names as the store compares them.
bool SameSettingName(std::string_view a, std::string_view b);

}  // namespace vellumar
