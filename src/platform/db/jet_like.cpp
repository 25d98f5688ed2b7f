#include "platform/db/jet_like.h"

#include <sqlite3.h>

#include <vector>

namespace vellumar::db::jet {

namespace {

// Decodes one UTF-8 character at s[i], advancing i; a byte that doesn't start a valid sequence
// stands for itself.
char32_t Decode(std::string_view s, size_t& i) {
  unsigned char c = static_cast<unsigned char>(s[i]);
  int len = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 0;
  if (len <= 1 || i + len > s.size()) {
    ++i;
    return c;
  }
  char32_t cp = c & (0x7f >> len);
  for (int k = 1; k < len; ++k) {
    unsigned char cc = static_cast<unsigned char>(s[i + k]);
    if ((cc & 0xc0) != 0x80) {
      ++i;
      return c;
    }
    cp = (cp << 6) | (cc & 0x3f);
  }
  i += len;
  return cp;
}

char32_t Fold(char32_t c) {
  if (c >= 'A' && c <= 'Z') return c + 32;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;  // Latin-1 capitals
  return c;
}

std::u32string ToChars(std::string_view s) {
  std::u32string out;
  out.reserve(s.size());
  for (size_t i = 0; i < s.size();) out.push_back(Fold(Decode(s, i)));
  return out;
}

struct Element {
  enum Kind { Literal, Any, Digit, Set, Star } kind = Literal;
  char32_t ch = 0;
  bool negated = false;
  std::vector<std::pair<char32_t, char32_t>> ranges;  // Set: inclusive ranges

  bool Matches(char32_t c) const {
    switch (kind) {
      case Literal:
        return c == ch;
      case Any:
        return true;
      case Digit:
        return c >= '0' && c <= '9';
      case Set: {
        bool in = false;
        for (auto [lo, hi] : ranges) in = in || (c >= lo && c <= hi);
        return in != negated;
      }
      case Star:
        return false;
    }
    return false;
  }
};

// Compiles a pattern; `problem` receives the first malformation, which then stands for itself.
std::vector<Element> Compile(std::string_view pattern, std::string* problem) {
  std::u32string p = ToChars(pattern);
  std::vector<Element> out;
  for (size_t i = 0; i < p.size(); ++i) {
    Element e;
    char32_t c = p[i];
    if (c == '*') {
      if (!out.empty() && out.back().kind == Element::Star) continue;
      e.kind = Element::Star;
    } else if (c == '?') {
      e.kind = Element::Any;
    } else if (c == '#') {
      e.kind = Element::Digit;
    } else if (c == '[') {
      size_t close = p.find(']', i + 1);
      if (close == std::u32string::npos || close == i + 1) {
        if (problem && problem->empty()) {
          *problem = close == std::u32string::npos ? "'[' without ']' in the pattern"
                                                   : "empty '[]' in the pattern";
        }
        e.ch = c;  // stands for itself
      } else {
        e.kind = Element::Set;
        size_t j = i + 1;
        if (p[j] == '!' && j + 1 < close) {
          e.negated = true;
          ++j;
        }
        for (; j < close; ++j) {
          if (j + 2 < close && p[j + 1] == '-') {
            e.ranges.emplace_back(p[j], p[j + 2]);
            j += 2;
          } else {
            e.ranges.emplace_back(p[j], p[j]);
          }
        }
        i = close;
      }
    } else {
      e.ch = c;
    }
    out.push_back(std::move(e));
  }
  return out;
}

bool Match(std::string_view value, const std::vector<Element>& pat) {
  std::u32string v = ToChars(value);
  // The usual wildcard walk: on a mismatch go back to just after the last star, which then
  // swallows one more character. Linear in practice, never exponential.
  size_t vi = 0, pi = 0;
  size_t starP = std::string::npos, starV = 0;
  while (vi < v.size()) {
    if (pi < pat.size() && pat[pi].kind == Element::Star) {
      starP = pi++;
      starV = vi;
    } else if (pi < pat.size() && pat[pi].Matches(v[vi])) {
      ++pi;
      ++vi;
    } else if (starP != std::string::npos) {
      pi = starP + 1;
      vi = ++starV;
    } else {
      return false;
    }
  }
  while (pi < pat.size() && pat[pi].kind == Element::Star) ++pi;
  return pi == pat.size();
}

}  // namespace

bool LikeMatch(std::string_view value, std::string_view pattern) {
  return Match(value, Compile(pattern, nullptr));
}

std::optional<std::string> LikePatternProblem(std::string_view pattern) {
  std::string problem;
  Compile(pattern, &problem);
  if (problem.empty()) return std::nullopt;
  return problem;
}

std::string LikeLiteralPrefix(std::string_view pattern) {
  std::string prefix;
  for (char c : pattern) {
    if (c == '*' || c == '?' || c == '#' || c == '[') break;
    if (static_cast<unsigned char>(c) >= 0x80) break;  // keep the range to ASCII folding
    prefix += (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
  }
  return prefix;
}

namespace {

// A pattern compiled once per statement: SQLite keeps it beside the pattern argument.
struct CompiledPattern {
  std::string text;
  std::vector<Element> elements;
};

void LikeFunction(sqlite3_context* ctx, int, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
    sqlite3_result_null(ctx);
    return;
  }
  const char* v = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
  int vn = sqlite3_value_bytes(argv[0]);
  const char* p = reinterpret_cast<const char*>(sqlite3_value_text(argv[1]));
  int pn = sqlite3_value_bytes(argv[1]);
  std::string_view value(v ? v : "", static_cast<size_t>(vn));
  std::string_view pattern(p ? p : "", static_cast<size_t>(pn));
  auto* compiled = static_cast<CompiledPattern*>(sqlite3_get_auxdata(ctx, 1));
  if (compiled && compiled->text == pattern) {
    sqlite3_result_int(ctx, Match(value, compiled->elements) ? 1 : 0);
    return;
  }
  auto fresh = new CompiledPattern{std::string(pattern), Compile(pattern, nullptr)};
  sqlite3_result_int(ctx, Match(value, fresh->elements) ? 1 : 0);
  // SQLite may drop it at once; it isn't used after this.
  sqlite3_set_auxdata(ctx, 1, fresh, [](void* c) { delete static_cast<CompiledPattern*>(c); });
}
}  // namespace

void RegisterLikeFunction(sqlite3* db) {
  sqlite3_create_function_v2(db, "vellumar_like", 2,
                             SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, nullptr,
                             LikeFunction, nullptr, nullptr, nullptr);
}

}  // namespace vellumar::db::jet
