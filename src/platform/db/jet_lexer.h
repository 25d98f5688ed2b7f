#pragma once
// Tokens of the Jet expression language used in filters, criteria and sorts.
#include <cstddef>
#include <string>
#include <vector>

namespace vellumar::db::jet {

enum class TokenKind {
  End,          // after the last token
  Name,         // Call, QSO_Begin, also keywords (AND, LIKE, TRUE...), compared case-blind
  BracketName,  // [160M]: text between the brackets
  String,       // 'text' or "text": the text, doubled quotes made single
  Number,       // 14, 14.195, 1E3: the digits as written
  Date,         // #2002-01-15 12:00:00#: the text between the hashes
  Operator,     // = <> < > <= >= + - * / &
  LeftParen,
  RightParen,
  Comma,
  Dot,
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::string text;
  size_t column = 0;  // 1-based position of the token's first character in the expression
};

// Splits an expression into tokens, ending with an End token. A character that can't start a
// token, or an unterminated string, date or bracket, raises 3075 naming the column.
std::vector<Token> Tokenize(const std::string& expression);

// Raises 3075: "Syntax error in query expression '<expression>' at column <n>: <what>".
[[noreturn]] void SyntaxError(const std::string& expression, size_t column,
                              const std::string& what);

}  // namespace vellumar::db::jet
