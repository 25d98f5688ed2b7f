#include "platform/db/jet_sql.h"

#include "platform/db/dao_constants.h"
#include "platform/db/jet_lexer.h"
#include "platform/db/jet_like.h"
#include "platform/db/jet_parser.h"
#include "platform/vb/date_value.h"

namespace vellumar::db::jet {

using detail::QuoteName;
using detail::SqlValue;
using detail::TableSchema;
using Kind = Node::Kind;

namespace {

// What an operand's value is, as far as translation needs to know.
enum class ValueKind { Null, Logical, Number, Text, Date, Boolean, Unknown };

// An operand on its way into SQL. Literals stay unmaterialised until the operator beside them
// says which form to bind (a date field wants dates as stored text).
struct Operand {
  bool literal = false;
  const Node* node = nullptr;  // the literal
  std::string sql;             // when not a literal
  std::vector<SqlValue> params;
  ValueKind kind = ValueKind::Unknown;
  int fieldType = 0;  // a field reference: its type; 0 otherwise
  bool isField = false;
};

class Translator {
 public:
  Translator(const std::string& text, const TableSchema& table) : text_(text), table_(table) {}

  SqlCondition Run(const Node& root) {
    Operand o = Translate(root);
    SqlCondition out;
    out.sql = Materialize(o, 0, out.params);
    return out;
  }

 private:
  [[noreturn]] void Fail(const Node& n, const std::string& what) const {
    SyntaxError(text_, n.column, what);
  }

  // SQL for an operand, binding literals in the form the neighbour's field type asks for.
  std::string Materialize(const Operand& o, int contextType, std::vector<SqlValue>& params) {
    if (!o.literal) {
      params.insert(params.end(), o.params.begin(), o.params.end());
      return o.sql;
    }
    params.push_back(LiteralValue(*o.node, contextType));
    return "?";
  }

  SqlValue LiteralValue(const Node& n, int contextType) {
    switch (n.kind) {
      case Kind::Null:
        return std::monostate{};
      case Kind::Boolean:
        return static_cast<int64_t>(n.number);
      case Kind::Number:
        if (contextType == dbDate && n.number >= vb::kMinDate && n.number <= vb::kMaxDate) {
          return vb::ToStorageText(n.number);
        }
        if (n.isInteger) return static_cast<int64_t>(n.integer);
        return n.number;
      case Kind::Text:
        if (contextType == dbDate) {
          double d;
          if (ParseDateLiteral(n.text, d)) return vb::ToStorageText(d);
        }
        return n.text;
      case Kind::Date:
        if (contextType != 0 && contextType != dbDate && !detail::IsTextType(contextType)) {
          return n.number;  // a numeric field compares with the date value
        }
        return vb::ToStorageText(n.number);
      default:
        return std::monostate{};
    }
  }

  static ValueKind LiteralKind(const Node& n) {
    switch (n.kind) {
      case Kind::Null:
        return ValueKind::Null;
      case Kind::Boolean:
        return ValueKind::Boolean;
      case Kind::Number:
        return ValueKind::Number;
      case Kind::Text:
        return ValueKind::Text;
      case Kind::Date:
        return ValueKind::Date;
      default:
        return ValueKind::Unknown;
    }
  }

  static ValueKind FieldKind(int type) {
    switch (type) {
      case dbText:
      case dbMemo:
        return ValueKind::Text;
      case dbDate:
        return ValueKind::Date;
      case dbBoolean:
        return ValueKind::Boolean;
      default:
        return ValueKind::Number;
    }
  }

  // A logical result used as a value is Jet's -1 or 0.
  std::string AsValue(const Operand& o, int contextType, std::vector<SqlValue>& params) {
    std::string sql = Materialize(o, contextType, params);
    if (o.kind == ValueKind::Logical) return "(-(" + sql + "))";
    return sql;
  }

  Operand Sql(std::string sql, std::vector<SqlValue> params, ValueKind kind) {
    Operand o;
    o.sql = std::move(sql);
    o.params = std::move(params);
    o.kind = kind;
    return o;
  }

  Operand Translate(const Node& n) {
    switch (n.kind) {
      case Kind::Null:
      case Kind::Boolean:
      case Kind::Number:
      case Kind::Text:
      case Kind::Date: {
        Operand o;
        o.literal = true;
        o.node = &n;
        o.kind = LiteralKind(n);
        return o;
      }
      case Kind::Field: {
        if (!n.qualifier.empty() && !detail::EqualsNoCase(n.qualifier, table_.name)) {
          Fail(n, "unknown table '" + n.qualifier + "' (the table is '" + table_.name + "')");
        }
        int ordinal = table_.Find(n.text);
        if (ordinal < 0) {
          Fail(n, "unknown field '" + n.text + "' in table '" + table_.name + "'");
        }
        const auto& column = table_.columns[static_cast<size_t>(ordinal)];
        Operand o = Sql(QuoteName(column.name), {}, FieldKind(column.type));
        o.isField = true;
        o.fieldType = column.type;
        return o;
      }
      case Kind::Negate: {
        Operand a = Translate(*n.args[0]);
        if (a.kind == ValueKind::Date) Fail(n, "arithmetic on dates is not supported");
        std::vector<SqlValue> p;
        std::string s = AsValue(a, 0, p);
        return Sql("(-" + s + ")", std::move(p), ValueKind::Number);
      }
      case Kind::Not: {
        Operand a = Translate(*n.args[0]);
        std::vector<SqlValue> p;
        std::string s = Materialize(a, 0, p);
        // Jet's Not is bitwise: Not -1 is 0 and Not 0 is -1, which keeps True and False; on a
        // comparison it is the logical negation.
        if (a.kind == ValueKind::Logical)
          return Sql("(NOT " + s + ")", std::move(p), ValueKind::Logical);
        return Sql("(~" + s + ")", std::move(p), ValueKind::Number);
      }
      case Kind::And:
      case Kind::Or: {
        std::vector<SqlValue> p;
        std::string s = "(";
        for (size_t i = 0; i < n.args.size(); ++i) {
          if (i) s += n.kind == Kind::And ? " AND " : " OR ";
          s += Materialize(Translate(*n.args[i]), 0, p);
        }
        s += ")";
        return Sql(std::move(s), std::move(p), ValueKind::Logical);
      }
      case Kind::Compare: {
        Operand a = Translate(*n.args[0]);
        Operand b = Translate(*n.args[1]);
        std::vector<SqlValue> p;
        std::string left = AsValue(a, b.fieldType, p);
        std::string right = AsValue(b, a.fieldType, p);
        return Sql("(" + left + " " + n.op + " " + right + Collation(a, b) + ")", std::move(p),
                   ValueKind::Logical);
      }
      case Kind::Arith: {
        Operand a = Translate(*n.args[0]);
        Operand b = Translate(*n.args[1]);
        if (a.kind == ValueKind::Date || b.kind == ValueKind::Date) {
          Fail(n, "arithmetic on dates is not supported");
        }
        std::vector<SqlValue> p;
        std::string left = AsValue(a, 0, p);
        std::string right = AsValue(b, 0, p);
        if (n.op == "+" && a.kind == ValueKind::Text && b.kind == ValueKind::Text) {
          return Sql("(" + left + " || " + right + ")", std::move(p), ValueKind::Text);
        }
        if (n.op == "/") {  // Jet's / always divides as floating point
          return Sql("(CAST(" + left + " AS REAL) / " + right + ")", std::move(p),
                     ValueKind::Number);
        }
        return Sql("(" + left + " " + n.op + " " + right + ")", std::move(p), ValueKind::Number);
      }
      case Kind::Concat: {
        Operand a = Translate(*n.args[0]);
        Operand b = Translate(*n.args[1]);
        std::vector<SqlValue> p;
        std::string left = AsValue(a, 0, p);
        std::string right = AsValue(b, 0, p);
        // & treats Null as "" and gives Null only when both are Null.
        return Sql("vellumar_concat(" + left + ", " + right + ")", std::move(p), ValueKind::Text);
      }
      case Kind::Like:
        return TranslateLike(n);
      case Kind::Between: {
        Operand a = Translate(*n.args[0]);
        Operand lo = Translate(*n.args[1]);
        Operand hi = Translate(*n.args[2]);
        std::vector<SqlValue> p;
        int context = a.fieldType ? a.fieldType : (lo.fieldType ? lo.fieldType : hi.fieldType);
        std::string s = AsValue(a, context, p);
        if (!a.isField && (a.kind == ValueKind::Text || lo.kind == ValueKind::Text)) {
          s += " COLLATE NOCASE";
        }
        std::string l = AsValue(lo, context, p);
        std::string h = AsValue(hi, context, p);
        return Sql("(" + s + (n.negated ? " NOT" : "") + " BETWEEN " + l + " AND " + h + ")",
                   std::move(p), ValueKind::Logical);
      }
      case Kind::In: {
        Operand a = Translate(*n.args[0]);
        std::vector<SqlValue> p;
        std::string s = AsValue(a, 0, p);
        if (!a.isField) s += " COLLATE NOCASE";
        s = "(" + s + (n.negated ? " NOT IN (" : " IN (");
        for (size_t i = 1; i < n.args.size(); ++i) {
          if (i > 1) s += ", ";
          s += AsValue(Translate(*n.args[i]), a.fieldType, p);
        }
        s += "))";
        return Sql(std::move(s), std::move(p), ValueKind::Logical);
      }
      case Kind::IsNull: {
        Operand a = Translate(*n.args[0]);
        std::vector<SqlValue> p;
        std::string s = AsValue(a, 0, p);
        return Sql("(" + s + (n.negated ? " IS NOT NULL)" : " IS NULL)"), std::move(p),
                   ValueKind::Logical);
      }
    }
    Fail(n, "unsupported expression");
  }

  // Text compares without regard to case: fields carry NOCASE; between two other values the
  // comparison asks for it.
  static std::string Collation(const Operand& a, const Operand& b) {
    if (a.isField || b.isField) return "";
    if (a.kind == ValueKind::Text || b.kind == ValueKind::Text || a.kind == ValueKind::Unknown ||
        b.kind == ValueKind::Unknown)
      return " COLLATE NOCASE";
    return "";
  }

  Operand TranslateLike(const Node& n) {
    Operand a = Translate(*n.args[0]);
    Operand pat = Translate(*n.args[1]);
    std::vector<SqlValue> p;
    if (pat.literal && pat.node->kind == Kind::Text) {
      if (auto problem = LikePatternProblem(pat.node->text)) Fail(*n.args[1], *problem);
    }
    std::string value = AsValue(a, 0, p);
    std::string pattern = Materialize(pat, dbText, p);
    std::string call = "vellumar_like(" + value + ", " + pattern + ")";
    if (n.negated) return Sql("(NOT " + call + ")", std::move(p), ValueKind::Logical);
    // A literal prefix narrows the rows by a range that an index on a text field can serve; the
    // range is over the lower-cased prefix, which is how NOCASE orders.
    if (a.isField && detail::IsTextType(a.fieldType) && pat.literal &&
        pat.node->kind == Kind::Text) {
      std::string prefix = LikeLiteralPrefix(pat.node->text);
      if (!prefix.empty() && static_cast<unsigned char>(prefix.back()) < 0x7f) {
        std::string upper = prefix;
        upper.back() = static_cast<char>(upper.back() + 1);
        std::vector<SqlValue> q;
        q.push_back(prefix);
        q.push_back(upper);
        q.insert(q.end(), p.begin(), p.end());
        return Sql("(" + a.sql + " >= ? AND " + a.sql + " < ? AND " + call + ")", std::move(q),
                   ValueKind::Logical);
      }
    }
    return Sql(std::move(call), std::move(p), ValueKind::Logical);
  }

  const std::string& text_;
  const TableSchema& table_;
};

}  // namespace

SqlCondition TranslateCriteria(const std::string& criteria, const TableSchema& table) {
  std::unique_ptr<Node> root = ParseCriteria(criteria);
  Translator t(criteria, table);
  return t.Run(*root);
}

std::string TranslateSort(const std::string& sort, const TableSchema& table) {
  std::string out;
  for (const SortKey& key : ParseSort(sort)) {
    int ordinal = table.Find(key.field);
    if (ordinal < 0) {
      SyntaxError(sort, key.column,
                  "unknown field '" + key.field + "' in table '" + table.name + "'");
    }
    if (!out.empty()) out += ", ";
    out += QuoteName(table.columns[static_cast<size_t>(ordinal)].name);
    if (key.descending) out += " DESC";
  }
  return out;
}

namespace {
void ConcatFunction(sqlite3_context* ctx, int, sqlite3_value** argv) {
  bool null0 = sqlite3_value_type(argv[0]) == SQLITE_NULL;
  bool null1 = sqlite3_value_type(argv[1]) == SQLITE_NULL;
  if (null0 && null1) {
    sqlite3_result_null(ctx);
    return;
  }
  std::string out;
  for (int i = 0; i < 2; ++i) {
    if (sqlite3_value_type(argv[i]) == SQLITE_NULL) continue;
    const auto* t = reinterpret_cast<const char*>(sqlite3_value_text(argv[i]));
    out.append(t ? t : "", static_cast<size_t>(sqlite3_value_bytes(argv[i])));
  }
  sqlite3_result_text(ctx, out.data(), static_cast<int>(out.size()), SQLITE_TRANSIENT);
}
}  // namespace

void RegisterFunctions(sqlite3* db) {
  RegisterLikeFunction(db);
  sqlite3_create_function_v2(db, "vellumar_concat", 2,
                             SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, nullptr,
                             ConcatFunction, nullptr, nullptr, nullptr);
}

SqlCondition Conjoin(const SqlCondition& a, const SqlCondition& b) {
  if (a.empty()) return b;
  if (b.empty()) return a;
  SqlCondition out;
  out.sql = "(" + a.sql + ") AND (" + b.sql + ")";
  out.params = a.params;
  out.params.insert(out.params.end(), b.params.begin(), b.params.end());
  return out;
}

}  // namespace vellumar::db::jet
