#include "platform/db/jet_parser.h"

#include <cerrno>
#include <cstdlib>
#include <optional>

#include "platform/db/jet_lexer.h"
#include "platform/db/schema.h"
#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"

namespace vellumar::db::jet {

bool ParseDateLiteral(const std::string& text, double& value) {
  // The stored form first: it is what the program writes most, and it is unambiguous.
  std::optional<double> d = vb::FromStorageText(text);
  if (!d) d = vb::ParseDate(text);
  if (!d) return false;
  value = *d;
  return true;
}

namespace {

using detail::EqualsNoCase;
using Kind = Node::Kind;

class Parser {
 public:
  explicit Parser(const std::string& expression)
      : expr_(expression), tokens_(Tokenize(expression)) {}

  std::unique_ptr<Node> ParseAll() {
    if (Peek().kind == TokenKind::End) Fail(Peek(), "the expression is empty");
    auto node = Or();
    if (Peek().kind != TokenKind::End)
      Fail(Peek(), "expected an operator or the end, found " + Describe(Peek()));
    return node;
  }

 private:
  const Token& Peek(size_t ahead = 0) const {
    size_t k = pos_ + ahead;
    return k < tokens_.size() ? tokens_[k] : tokens_.back();
  }
  const Token& Next() { return tokens_[pos_ < tokens_.size() - 1 ? pos_++ : pos_]; }
  bool IsKeyword(const Token& t, const char* word) const {
    return t.kind == TokenKind::Name && EqualsNoCase(t.text, word);
  }
  bool AcceptKeyword(const char* word) {
    if (IsKeyword(Peek(), word)) {
      ++pos_;
      return true;
    }
    return false;
  }
  bool IsOperator(const Token& t, const char* op) const {
    return t.kind == TokenKind::Operator && t.text == op;
  }

  [[noreturn]] void Fail(const Token& t, const std::string& what) const {
    SyntaxError(expr_, t.column, what);
  }

  static std::string Describe(const Token& t) {
    switch (t.kind) {
      case TokenKind::End:
        return "the end of the expression";
      case TokenKind::Name:
        return "'" + t.text + "'";
      case TokenKind::BracketName:
        return "'[" + t.text + "]'";
      case TokenKind::String:
        return "the string '" + t.text + "'";
      case TokenKind::Number:
        return "the number " + t.text;
      case TokenKind::Date:
        return "the date #" + t.text + "#";
      case TokenKind::Operator:
        return "'" + t.text + "'";
      case TokenKind::LeftParen:
        return "'('";
      case TokenKind::RightParen:
        return "')'";
      case TokenKind::Comma:
        return "','";
      case TokenKind::Dot:
        return "'.'";
    }
    return "a token";
  }

  std::unique_ptr<Node> Make(Kind kind, size_t column) {
    if (++nodes_ > kMaxNodes) Fail(Peek(), "the expression is too complex");
    auto n = std::make_unique<Node>();
    n->kind = kind;
    n->column = column;
    return n;
  }

  // Guards the recursion depth, on every path out.
  struct Depth {
    Parser& p;
    Depth(Parser& parser, const Token& at) : p(parser) {
      if (++p.depth_ > kMaxDepth) p.Fail(at, "the expression is nested too deeply");
    }
    ~Depth() { --p.depth_; }
  };

  std::unique_ptr<Node> Or() {
    auto left = And();
    if (!IsKeyword(Peek(), "OR")) return left;
    auto node = Make(Kind::Or, left->column);
    node->args.push_back(std::move(left));
    while (AcceptKeyword("OR")) node->args.push_back(And());
    return node;
  }

  std::unique_ptr<Node> And() {
    auto left = NotExpr();
    if (!IsKeyword(Peek(), "AND")) return left;
    auto node = Make(Kind::And, left->column);
    node->args.push_back(std::move(left));
    while (AcceptKeyword("AND")) node->args.push_back(NotExpr());
    return node;
  }

  std::unique_ptr<Node> NotExpr() {
    if (IsKeyword(Peek(), "NOT")) {
      Depth d(*this, Peek());
      const Token& t = Next();
      auto node = Make(Kind::Not, t.column);
      node->args.push_back(NotExpr());
      return node;
    }
    return Comparison();
  }

  std::unique_ptr<Node> Comparison() {
    auto left = Concat();
    const Token& t = Peek();
    if (t.kind == TokenKind::Operator && (t.text == "=" || t.text == "<>" || t.text == "<" ||
                                          t.text == ">" || t.text == "<=" || t.text == ">=")) {
      Next();
      auto node = Make(Kind::Compare, t.column);
      node->op = t.text;
      node->args.push_back(std::move(left));
      node->args.push_back(Concat());
      return node;
    }
    bool negated = false;
    size_t column = t.column;
    if (IsKeyword(t, "NOT") &&
        (IsKeyword(Peek(1), "LIKE") || IsKeyword(Peek(1), "BETWEEN") || IsKeyword(Peek(1), "IN"))) {
      Next();
      negated = true;
    }
    if (AcceptKeyword("LIKE")) {
      auto node = Make(Kind::Like, column);
      node->negated = negated;
      node->args.push_back(std::move(left));
      node->args.push_back(Concat());
      return node;
    }
    if (AcceptKeyword("BETWEEN")) {
      auto node = Make(Kind::Between, column);
      node->negated = negated;
      node->args.push_back(std::move(left));
      node->args.push_back(Concat());
      if (!AcceptKeyword("AND")) Fail(Peek(), "BETWEEN needs AND, found " + Describe(Peek()));
      node->args.push_back(Concat());
      return node;
    }
    if (AcceptKeyword("IN")) {
      auto node = Make(Kind::In, column);
      node->negated = negated;
      node->args.push_back(std::move(left));
      if (Peek().kind != TokenKind::LeftParen) Fail(Peek(), "IN needs a list in parentheses");
      Next();
      for (;;) {
        node->args.push_back(Concat());
        if (Peek().kind == TokenKind::Comma) {
          Next();
          continue;
        }
        if (Peek().kind == TokenKind::RightParen) {
          Next();
          break;
        }
        Fail(Peek(), "expected ',' or ')' in the IN list, found " + Describe(Peek()));
      }
      return node;
    }
    if (IsKeyword(t, "IS")) {
      Next();
      auto node = Make(Kind::IsNull, t.column);
      node->negated = AcceptKeyword("NOT");
      if (!AcceptKeyword("NULL")) Fail(Peek(), "IS must be followed by NULL or NOT NULL");
      node->args.push_back(std::move(left));
      return node;
    }
    return left;
  }

  std::unique_ptr<Node> Concat() {
    auto left = Additive();
    while (IsOperator(Peek(), "&")) {
      const Token& t = Next();
      auto node = Make(Kind::Concat, t.column);
      node->args.push_back(std::move(left));
      node->args.push_back(Additive());
      left = std::move(node);
    }
    return left;
  }

  std::unique_ptr<Node> Additive() {
    auto left = Term();
    while (IsOperator(Peek(), "+") || IsOperator(Peek(), "-")) {
      const Token& t = Next();
      auto node = Make(Kind::Arith, t.column);
      node->op = t.text;
      node->args.push_back(std::move(left));
      node->args.push_back(Term());
      left = std::move(node);
    }
    return left;
  }

  std::unique_ptr<Node> Term() {
    auto left = Unary();
    while (IsOperator(Peek(), "*") || IsOperator(Peek(), "/")) {
      const Token& t = Next();
      auto node = Make(Kind::Arith, t.column);
      node->op = t.text;
      node->args.push_back(std::move(left));
      node->args.push_back(Unary());
      left = std::move(node);
    }
    return left;
  }

  std::unique_ptr<Node> Unary() {
    if (IsOperator(Peek(), "-") || IsOperator(Peek(), "+")) {
      Depth d(*this, Peek());
      const Token& t = Next();
      auto operand = Unary();
      if (t.text == "+") return operand;
      auto node = Make(Kind::Negate, t.column);
      node->args.push_back(std::move(operand));
      return node;
    }
    return Primary();
  }

  std::unique_ptr<Node> Primary() {
    const Token& t = Peek();
    switch (t.kind) {
      case TokenKind::String: {
        Next();
        auto node = Make(Kind::Text, t.column);
        node->text = t.text;
        return node;
      }
      case TokenKind::Number: {
        Next();
        auto node = Make(Kind::Number, t.column);
        node->text = t.text;
        bool integral = t.text.find_first_of(".eE") == std::string::npos;
        errno = 0;
        if (integral) {
          long long v = std::strtoll(t.text.c_str(), nullptr, 10);
          if (errno == 0) {
            node->isInteger = true;
            node->integer = v;
          }
        }
        node->number = std::strtod(t.text.c_str(), nullptr);
        return node;
      }
      case TokenKind::Date: {
        Next();
        auto node = Make(Kind::Date, t.column);
        node->text = t.text;
        if (!ParseDateLiteral(t.text, node->number)) {
          Fail(t, "#" + t.text + "# is not a date");
        }
        return node;
      }
      case TokenKind::LeftParen: {
        Depth d(*this, t);
        Next();
        auto inner = Or();
        if (Peek().kind != TokenKind::RightParen) {
          Fail(Peek(), "expected ')' to close the '(' at column " + std::to_string(t.column) +
                           ", found " + Describe(Peek()));
        }
        Next();
        return inner;
      }
      case TokenKind::Name:
      case TokenKind::BracketName: {
        if (t.kind == TokenKind::Name) {
          if (EqualsNoCase(t.text, "TRUE") || EqualsNoCase(t.text, "FALSE")) {
            Next();
            auto node = Make(Kind::Boolean, t.column);
            node->number = EqualsNoCase(t.text, "TRUE") ? -1 : 0;
            return node;
          }
          if (EqualsNoCase(t.text, "NULL")) {
            Next();
            return Make(Kind::Null, t.column);
          }
          static const char* kReserved[] = {"AND", "OR", "NOT", "LIKE", "BETWEEN", "IN", "IS"};
          for (const char* word : kReserved) {
            if (EqualsNoCase(t.text, word)) Fail(t, "expected a value, found " + Describe(t));
          }
        }
        Next();
        auto node = Make(Kind::Field, t.column);
        node->text = t.text;
        if (Peek().kind == TokenKind::Dot) {
          Next();
          const Token& field = Peek();
          if (field.kind != TokenKind::Name && field.kind != TokenKind::BracketName) {
            Fail(field, "expected a field name after '.', found " + Describe(field));
          }
          Next();
          node->qualifier = node->text;
          node->text = field.text;
        }
        if (Peek().kind == TokenKind::LeftParen) {
          Fail(t, "functions such as " + t.text + "() are not supported");
        }
        return node;
      }
      default:
        Fail(t, "expected a value, found " + Describe(t));
    }
  }

  const std::string& expr_;
  std::vector<Token> tokens_;
  size_t pos_ = 0;
  int depth_ = 0;
  int nodes_ = 0;
};

}  // namespace

std::unique_ptr<Node> ParseCriteria(const std::string& expression) {
  Parser p(expression);
  return p.ParseAll();
}

std::vector<SortKey> ParseSort(const std::string& sort) {
  std::vector<Token> tokens = Tokenize(sort);
  std::vector<SortKey> keys;
  size_t i = 0;
  if (tokens[0].kind == TokenKind::End) return keys;
  for (;;) {
    const Token& t = tokens[i];
    if (t.kind != TokenKind::Name && t.kind != TokenKind::BracketName) {
      SyntaxError(sort, t.column, "expected a field name in the sort");
    }
    SortKey key;
    key.field = t.text;
    key.column = t.column;
    ++i;
    if (tokens[i].kind == TokenKind::Dot) {  // Table.Field
      const Token& f = tokens[i + 1];
      if (f.kind != TokenKind::Name && f.kind != TokenKind::BracketName) {
        SyntaxError(sort, f.column, "expected a field name after '.'");
      }
      key.field = f.text;
      i += 2;
    }
    if (tokens[i].kind == TokenKind::Name && EqualsNoCase(tokens[i].text, "DESC")) {
      key.descending = true;
      ++i;
    } else if (tokens[i].kind == TokenKind::Name && EqualsNoCase(tokens[i].text, "ASC")) {
      ++i;
    }
    keys.push_back(key);
    if (tokens[i].kind == TokenKind::End) break;
    if (tokens[i].kind != TokenKind::Comma) {
      SyntaxError(sort, tokens[i].column, "expected ',' or the end of the sort");
    }
    ++i;
  }
  return keys;
}

}  // namespace vellumar::db::jet
