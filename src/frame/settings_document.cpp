#include "frame/settings_document.h"

#include <cstdio>

namespace vellumar {
namespace {

char FoldAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsControl(char c) {
  const auto u = static_cast<unsigned char>(c);
  return u < 0x20 || u == 0x7f;
}

bool HasControl(std::string_view text) {
  for (char c : text) {
    if (IsControl(c)) return true;
  }
  return false;
}

bool BlankAtEnds(std::string_view text) {
  return !text.empty() && (IsBlank(text.front()) || IsBlank(text.back()));
}

std::string Quoted(std::string_view text) {
  std::string out = "\"";
  for (char c : text) {
    switch (c) {
      case '\\':
        out += "\\\\";
        break;
      case '"':
        out += "\\\"";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        if (IsControl(c)) {
          char hex[8];
          std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned char>(c));
          out += hex;
        } else {
          out += c;
        }
    }
  }
  return out + "\"";
}

std::string EncodeKey(std::string_view key) {
  const bool plain = !key.empty() && !BlankAtEnds(key) && !HasControl(key) &&
                     key.find_first_of("=\"\\") == std::string_view::npos && key.front() != '[' &&
                     key.front() != ';' && key.front() != '#';
  return plain ? std::string(key) : Quoted(key);
}

std::string EncodeValue(std::string_view value) {
  const bool plain =
      !BlankAtEnds(value) && !HasControl(value) && (value.empty() || value.front() != '"');
  return plain ? std::string(value) : Quoted(value);
}

std::string EncodeSectionName(std::string_view name) {
  const bool plain = !name.empty() && !BlankAtEnds(name) && !HasControl(name) &&
                     name.find(']') == std::string_view::npos && name.front() != '"';
  return plain ? std::string(name) : Quoted(name);
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Reads a quoted text at `pos` (on its opening quote); moves `pos` past the closing quote.
// nullopt when it isn't a well-formed quoted text.
std::optional<std::string> ReadQuoted(std::string_view line, std::size_t& pos) {
  if (pos >= line.size() || line[pos] != '"') return std::nullopt;
  std::string out;
  for (std::size_t i = pos + 1; i < line.size(); ++i) {
    const char c = line[i];
    if (c == '"') {
      pos = i + 1;
      return out;
    }
    if (c != '\\') {
      out += c;
      continue;
    }
    if (++i >= line.size()) return std::nullopt;
    switch (line[i]) {
      case '\\':
        out += '\\';
        break;
      case '"':
        out += '"';
        break;
      case 'n':
        out += '\n';
        break;
      case 'r':
        out += '\r';
        break;
      case 't':
        out += '\t';
        break;
      case 'x': {
        if (i + 2 >= line.size()) return std::nullopt;
        const int hi = HexDigit(line[i + 1]);
        const int lo = HexDigit(line[i + 2]);
        if (hi < 0 || lo < 0) return std::nullopt;
        out += static_cast<char>(hi * 16 + lo);
        i += 2;
        break;
      }
      default:
        return std::nullopt;
    }
  }
  return std::nullopt;  // no closing quote
}

std::size_t SkipBlanks(std::string_view line, std::size_t pos) {
  while (pos < line.size() && IsBlank(line[pos])) ++pos;
  return pos;
}

std::string_view TrimBlanks(std::string_view text) {
  std::size_t start = 0;
  std::size_t end = text.size();
  while (start < end && IsBlank(text[start])) ++start;
  while (end > start && IsBlank(text[end - 1])) --end;
  return text.substr(start, end - start);
}

bool OnlyBlanksFrom(std::string_view line, std::size_t pos) {
  return SkipBlanks(line, pos) == line.size();
}

// "[name]" or "["quoted name"]"; nullopt when the header doesn't make sense.
std::optional<std::string> ReadSectionHeader(std::string_view line) {
  std::size_t pos = SkipBlanks(line, 1);
  std::string name;
  if (pos < line.size() && line[pos] == '"') {
    auto quoted = ReadQuoted(line, pos);
    if (!quoted) return std::nullopt;
    name = std::move(*quoted);  // may be empty: quotes make any name writable
    pos = SkipBlanks(line, pos);
    if (pos >= line.size() || line[pos] != ']') return std::nullopt;
  } else {
    const std::size_t close = line.find(']', pos);
    if (close == std::string_view::npos) return std::nullopt;
    name = std::string(TrimBlanks(line.substr(pos, close - pos)));
    if (name.empty()) return std::nullopt;
    pos = close;
  }
  if (!OnlyBlanksFrom(line, pos + 1)) return std::nullopt;
  return name;
}

// "key=value" with either side possibly quoted; false when the line doesn't make sense.
bool ReadEntry(std::string_view line, std::string& key, std::string& value) {
  std::size_t pos = 0;
  if (line[0] == '"') {
    auto quoted = ReadQuoted(line, pos);
    if (!quoted) return false;
    key = std::move(*quoted);
    pos = SkipBlanks(line, pos);
    if (pos >= line.size() || line[pos] != '=') return false;
  } else {
    pos = line.find('=');
    if (pos == std::string_view::npos) return false;
    key = std::string(TrimBlanks(line.substr(0, pos)));
    if (key.empty()) return false;
  }
  pos = SkipBlanks(line, pos + 1);
  if (pos < line.size() && line[pos] == '"') {
    auto quoted = ReadQuoted(line, pos);
    if (!quoted || !OnlyBlanksFrom(line, pos)) return false;
    value = std::move(*quoted);
  } else {
    value = std::string(TrimBlanks(line.substr(pos)));
  }
  return true;
}

}  // namespace

bool SameSettingName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (FoldAscii(a[i]) != FoldAscii(b[i])) return false;
  }
  return true;
}

SettingsDocument SettingsDocument::Parse(std::string_view text) {
  SettingsDocument doc;
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);  // a BOM from an editor
  bool inSection = false;  // keys count only under a header that made sense
  std::string section;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(start, end - start);
    start = end + 1;
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    line = line.substr(SkipBlanks(line, 0));
    if (line.empty() || line[0] == ';' || line[0] == '#') continue;
    if (line[0] == '[') {
      auto name = ReadSectionHeader(line);
      inSection = name.has_value();
      if (inSection) section = std::move(*name);
      continue;
    }
    std::string key;
    std::string value;
    if (inSection && ReadEntry(line, key, value)) doc.Set(section, key, value);
  }
  return doc;
}

std::string SettingsDocument::Serialize() const {
  std::string out;
  for (const Section& section : sections_) {
    if (!out.empty()) out += '\n';
    out += "[" + EncodeSectionName(section.name) + "]\n";
    for (const Entry& entry : section.entries) {
      out += EncodeKey(entry.key) + "=" + EncodeValue(entry.value) + "\n";
    }
  }
  return out;
}

std::optional<std::string> SettingsDocument::Get(std::string_view section,
                                                 std::string_view key) const {
  for (const Section& s : sections_) {
    if (!SameSettingName(s.name, section)) continue;
    for (const Entry& entry : s.entries) {
      if (SameSettingName(entry.key, key)) return entry.value;
    }
    return std::nullopt;
  }
  return std::nullopt;
}

void SettingsDocument::Set(std::string_view section, std::string_view key, std::string_view value) {
  Section* target = nullptr;
  for (Section& s : sections_) {
    if (SameSettingName(s.name, section)) {
      target = &s;
      break;
    }
  }
  if (target == nullptr) {
    sections_.push_back(Section{std::string(section), {}});
    target = &sections_.back();
  }
  for (Entry& entry : target->entries) {
    if (SameSettingName(entry.key, key)) {
      entry.value = std::string(value);
      return;
    }
  }
  target->entries.push_back(Entry{std::string(key), std::string(value)});
}

}  // namespace vellumar
