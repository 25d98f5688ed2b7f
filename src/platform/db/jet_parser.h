#pragma once
// The Jet expression language as a syntax tree: criteria of Filter and FindFirst, and sort lists.
//
//   expression := or
//   or         := and { OR and }
//   and        := not { AND not }
//   not        := NOT not | comparison
//   comparison := concat [ ( = | <> | < | > | <= | >= ) concat
//                        | [NOT] LIKE concat
//                        | [NOT] BETWEEN concat AND concat
//                        | [NOT] IN ( concat { , concat } )
//                        | IS [NOT] NULL ]
//   concat     := additive { & additive }
//   additive   := term { ( + | - ) term }
//   term       := unary { ( * | / ) unary }
//   unary      := ( - | + ) unary | primary
//   primary    := literal | name [ . name ] | ( expression )
//   literal    := 'text' | "text" | number | #date# | TRUE | FALSE | NULL
//
// Keywords are case-blind. A name may be [bracketed]; "Table.Field" names a field of the table.
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vellumar::db::jet {

struct Node {
  enum class Kind {
    Null,     // NULL
    Boolean,  // TRUE, FALSE: number = -1 or 0
    Number,   // number; isInteger when it has no fraction or exponent and fits 64 bits
    Text,     // text
    Date,     // number = the date value
    Field,    // text = the field name; qualifier = the table name written before it, if any
    Negate,   // - args[0]
    Not,      // NOT args[0]
    And,      // args[0] AND args[1] AND ...
    Or,       // args[0] OR args[1] OR ...
    Compare,  // args[0] op args[1]; op is = <> < > <= >=
    Arith,    // args[0] op args[1]; op is + - * /
    Concat,   // args[0] & args[1]
    Like,     // args[0] [NOT] LIKE args[1]
    Between,  // args[0] [NOT] BETWEEN args[1] AND args[2]
    In,       // args[0] [NOT] IN (args[1], ...)
    IsNull,   // args[0] IS [NOT] NULL
  };
  Kind kind = Kind::Null;
  std::string op;         // operator of Compare and Arith
  bool negated = false;   // NOT LIKE, NOT BETWEEN, NOT IN, IS NOT NULL
  double number = 0;      // Boolean, Number, Date
  long long integer = 0;  // Number when isInteger
  bool isInteger = false;
  std::string text;       // Text, Field; the written form of a Date
  std::string qualifier;  // Field: table name before the dot
  size_t column = 0;      // 1-based position in the expression, for messages
  std::vector<std::unique_ptr<Node>> args;
};

// Parses criteria; anything that isn't a whole expression raises 3075 naming the column.
// A #date# that isn't a date is 3075 too. Nesting deeper than kMaxDepth, or more than kMaxNodes
// nodes, is refused (3075) so that the translation stays within what SQLite accepts.
std::unique_ptr<Node> ParseCriteria(const std::string& expression);

constexpr int kMaxDepth = 32;
constexpr int kMaxNodes = 2000;

struct SortKey {
  std::string field;  // as written
  bool descending = false;
  size_t column = 0;
};
// Parses "Field [ASC|DESC], ..."; an empty or blank text is no sort.
std::vector<SortKey> ParseSort(const std::string& sort);

// Reads a #date# literal's text as a date value; nullopt when it isn't one.
bool ParseDateLiteral(const std::string& text, double& value);

}  // namespace vellumar::db::jet
