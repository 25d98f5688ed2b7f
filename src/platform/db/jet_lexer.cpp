#include "platform/db/jet_lexer.h"

#include <cstdio>

#include "platform/vb/error.h"

namespace vellumar::db::jet {

void SyntaxError(const std::string& expression, size_t column, const std::string& what) {
  throw vb::VbError(3075, "Syntax error in query expression '" + expression + "' at column " +
                              std::to_string(column) + ": " + what + ".");
}

namespace {

bool IsNameStart(unsigned char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c >= 0x80;
}
bool IsNameChar(unsigned char c) { return IsNameStart(c) || (c >= '0' && c <= '9'); }
bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }

std::string Describe(unsigned char c) {
  if (c >= 0x20 && c < 0x7f) return std::string("unexpected character '") + char(c) + "'";
  char buf[32];
  std::snprintf(buf, sizeof buf, "unexpected byte 0x%02X", c);
  return buf;
}

}  // namespace

std::vector<Token> Tokenize(const std::string& e) {
  std::vector<Token> tokens;
  size_t i = 0;
  const size_t n = e.size();
  auto at = [&](size_t k) -> unsigned char { return k < n ? static_cast<unsigned char>(e[k]) : 0; };
  while (i < n) {
    unsigned char c = at(i);
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      ++i;
      continue;
    }
    Token t;
    t.column = i + 1;
    if (IsNameStart(c)) {
      size_t start = i;
      while (i < n && IsNameChar(at(i))) ++i;
      t.kind = TokenKind::Name;
      t.text = e.substr(start, i - start);
    } else if (IsDigit(c) || (c == '.' && IsDigit(at(i + 1)))) {
      size_t start = i;
      while (IsDigit(at(i))) ++i;
      if (at(i) == '.') {
        ++i;
        while (IsDigit(at(i))) ++i;
      }
      if ((at(i) == 'e' || at(i) == 'E') &&
          (IsDigit(at(i + 1)) || ((at(i + 1) == '+' || at(i + 1) == '-') && IsDigit(at(i + 2))))) {
        i += 2;
        while (IsDigit(at(i))) ++i;
      }
      t.kind = TokenKind::Number;
      t.text = e.substr(start, i - start);
    } else if (c == '\'' || c == '"') {
      ++i;
      for (;;) {
        if (i >= n) SyntaxError(e, t.column, "the string that begins here has no closing quote");
        if (at(i) == c) {
          if (at(i + 1) == c) {
            t.text += static_cast<char>(c);
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        t.text += e[i++];
      }
      t.kind = TokenKind::String;
    } else if (c == '#') {
      size_t close = e.find('#', i + 1);
      if (close == std::string::npos) SyntaxError(e, t.column, "the date has no closing '#'");
      t.kind = TokenKind::Date;
      t.text = e.substr(i + 1, close - i - 1);
      i = close + 1;
    } else if (c == '[') {
      size_t close = e.find(']', i + 1);
      if (close == std::string::npos) SyntaxError(e, t.column, "the name has no closing ']'");
      t.kind = TokenKind::BracketName;
      t.text = e.substr(i + 1, close - i - 1);
      if (t.text.empty()) SyntaxError(e, t.column, "empty name '[]'");
      i = close + 1;
    } else if (c == '<') {
      t.kind = TokenKind::Operator;
      if (at(i + 1) == '>' || at(i + 1) == '=') {
        t.text = e.substr(i, 2);
        i += 2;
      } else {
        t.text = "<";
        ++i;
      }
    } else if (c == '>') {
      t.kind = TokenKind::Operator;
      if (at(i + 1) == '=') {
        t.text = ">=";
        i += 2;
      } else {
        t.text = ">";
        ++i;
      }
    } else if (c == '=' || c == '+' || c == '-' || c == '*' || c == '/' || c == '&') {
      t.kind = TokenKind::Operator;
      t.text = std::string(1, static_cast<char>(c));
      ++i;
    } else if (c == '(') {
      t.kind = TokenKind::LeftParen;
      ++i;
    } else if (c == ')') {
      t.kind = TokenKind::RightParen;
      ++i;
    } else if (c == ',') {
      t.kind = TokenKind::Comma;
      ++i;
    } else if (c == '.') {
      t.kind = TokenKind::Dot;
      ++i;
    } else {
      SyntaxError(e, t.column, Describe(c));
    }
    tokens.push_back(std::move(t));
  }
  Token end;
  end.column = n + 1;
  tokens.push_back(end);
  return tokens;
}

}  // namespace vellumar::db::jet
