// The Jet expression language: tokens, syntax, and the errors for what it can't read.
#include "platform/db/jet_parser.h"

#include <gtest/gtest.h>

#include "platform/db/dao_constants.h"
#include "platform/db/db_test_util.h"
#include "platform/db/jet_lexer.h"
#include "platform/db/jet_sql.h"

namespace vellumar::db::jet {
namespace {

using testing::ErrorOf;
using Kind = Node::Kind;

detail::TableSchema Qsos() {
  detail::TableSchema t;
  t.name = "QSOs";
  for (const auto& shape : testing::QsoFields()) {
    detail::ColumnInfo c;
    c.name = shape.name;
    c.type = shape.type;
    c.size = shape.size;
    t.columns.push_back(c);
  }
  detail::ColumnInfo valid;
  valid.name = "Valid";
  valid.type = dbBoolean;
  t.columns.push_back(valid);
  detail::ColumnInfo band;
  band.name = "160M";
  band.type = dbText;
  band.size = 1;
  t.columns.push_back(band);
  t.BuildLookup();
  return t;
}

std::string Error(const std::string& criteria) {
  std::string description;
  int number = ErrorOf([&] { TranslateCriteria(criteria, Qsos()); }, description);
  EXPECT_EQ(3075, number) << criteria;
  return description;
}

TEST(JetLexer, Tokens) {
  auto t = Tokenize("[QSO Begin] >= #2002-01-15# AND Call<>'O''Brien' & \"a\"\"b\" + 14.5e2");
  ASSERT_EQ(12u, t.size());
  EXPECT_EQ(TokenKind::BracketName, t[0].kind);
  EXPECT_EQ("QSO Begin", t[0].text);
  EXPECT_EQ(">=", t[1].text);
  EXPECT_EQ(13u, t[1].column);
  EXPECT_EQ(TokenKind::Date, t[2].kind);
  EXPECT_EQ("2002-01-15", t[2].text);
  EXPECT_EQ(TokenKind::Name, t[3].kind);
  EXPECT_EQ("<>", t[5].text);
  EXPECT_EQ(TokenKind::String, t[6].kind);
  EXPECT_EQ("O'Brien", t[6].text);
  EXPECT_EQ("a\"b", t[8].text);
  EXPECT_EQ(TokenKind::Number, t[10].kind);
  EXPECT_EQ("14.5e2", t[10].text);
  EXPECT_EQ(TokenKind::End, t[11].kind);
}

TEST(JetLexer, ErrorsNameTheColumn) {
  EXPECT_EQ(3075, ErrorOf([] { Tokenize("Call = 'K1ABC"); }));
  std::string d;
  ErrorOf([] { Tokenize("Call = 'K1ABC"); }, d);
  EXPECT_EQ(
      "Syntax error in query expression 'Call = 'K1ABC' at column 8: the string that "
      "begins here has no closing quote.",
      d);
  ErrorOf([] { Tokenize("QSO_Begin = #2002"); }, d);
  EXPECT_NE(std::string::npos, d.find("column 13")) << d;
  ErrorOf([] { Tokenize("Call = $"); }, d);
  EXPECT_NE(std::string::npos, d.find("column 8: unexpected character '$'")) << d;
  ErrorOf([] { Tokenize(std::string("Call = \x01")); }, d);
  EXPECT_NE(std::string::npos, d.find("unexpected byte 0x01")) << d;
  EXPECT_EQ(3075, ErrorOf([] { Tokenize("[Call"); }));
  EXPECT_EQ(3075, ErrorOf([] { Tokenize("[] = 1"); }));
}

TEST(JetParser, Precedence) {
  auto n = ParseCriteria("a = 1 OR b = 2 AND NOT c = 3");
  ASSERT_EQ(Kind::Or, n->kind);
  ASSERT_EQ(2u, n->args.size());
  EXPECT_EQ(Kind::Compare, n->args[0]->kind);
  ASSERT_EQ(Kind::And, n->args[1]->kind);
  EXPECT_EQ(Kind::Not, n->args[1]->args[1]->kind);
  EXPECT_EQ(Kind::Compare, n->args[1]->args[1]->args[0]->kind);

  auto arith = ParseCriteria("a + b * c & d = e");
  ASSERT_EQ(Kind::Compare, arith->kind);
  ASSERT_EQ(Kind::Concat, arith->args[0]->kind);
  ASSERT_EQ(Kind::Arith, arith->args[0]->args[0]->kind);
  EXPECT_EQ("+", arith->args[0]->args[0]->op);
  EXPECT_EQ("*", arith->args[0]->args[0]->args[1]->op);

  auto between = ParseCriteria("x BETWEEN 1 AND 2 AND y = 3");
  ASSERT_EQ(Kind::And, between->kind);
  EXPECT_EQ(Kind::Between, between->args[0]->kind);

  auto chain = ParseCriteria("a=1 or b=2 or c=3 or d=4");
  ASSERT_EQ(Kind::Or, chain->kind);
  EXPECT_EQ(4u, chain->args.size());
}

TEST(JetParser, Literals) {
  auto n = ParseCriteria("x IN (TRUE, false, NULL, 291, 14.195, 'a', #2002-01-15 12:00:00#)");
  ASSERT_EQ(Kind::In, n->kind);
  ASSERT_EQ(8u, n->args.size());
  EXPECT_EQ(Kind::Boolean, n->args[1]->kind);
  EXPECT_EQ(-1, n->args[1]->number);  // True is -1
  EXPECT_EQ(0, n->args[2]->number);
  EXPECT_EQ(Kind::Null, n->args[3]->kind);
  EXPECT_TRUE(n->args[4]->isInteger);
  EXPECT_EQ(291, n->args[4]->integer);
  EXPECT_FALSE(n->args[5]->isInteger);
  EXPECT_DOUBLE_EQ(14.195, n->args[5]->number);
  EXPECT_EQ(Kind::Text, n->args[6]->kind);
  EXPECT_EQ(Kind::Date, n->args[7]->kind);
  EXPECT_DOUBLE_EQ(37271.5, n->args[7]->number);  // 2002-01-15 12:00
}

TEST(JetParser, NegatedForms) {
  EXPECT_TRUE(ParseCriteria("a NOT LIKE 'x'")->negated);
  EXPECT_TRUE(ParseCriteria("a not between 1 and 2")->negated);
  EXPECT_TRUE(ParseCriteria("a Not In (1)")->negated);
  EXPECT_TRUE(ParseCriteria("a IS NOT NULL")->negated);
  EXPECT_FALSE(ParseCriteria("a IS NULL")->negated);
}

TEST(JetParser, SyntaxErrors) {
  EXPECT_NE(
      std::string::npos,
      Error("Call LIKE 'O'Brien'").find("Syntax error in query expression 'Call LIKE 'O'Brien''"));
  EXPECT_NE(std::string::npos, Error("Call LIKE 'O'Brien'").find("at column"));
  EXPECT_NE(std::string::npos, Error("").find("empty"));
  EXPECT_NE(std::string::npos, Error("Call =").find("expected a value"));
  EXPECT_NE(std::string::npos, Error("Call = 'a' 'b'").find("column 12"));
  EXPECT_NE(std::string::npos, Error("(Call = 'a'").find("expected ')'"));
  EXPECT_NE(std::string::npos, Error("Call = 'a')").find("column 11"));
  EXPECT_NE(std::string::npos, Error("x BETWEEN 1 OR 2").find("BETWEEN needs AND"));
  EXPECT_NE(std::string::npos, Error("x IN 1").find("IN needs a list"));
  EXPECT_NE(std::string::npos, Error("x IN ()").find("expected a value"));
  EXPECT_NE(std::string::npos, Error("x IS 1").find("IS must be followed by NULL"));
  EXPECT_NE(std::string::npos, Error("UCase(Call) = 'X'").find("functions"));
  EXPECT_NE(std::string::npos, Error("160M = 'W'").find("column 4"));  // needs [160M]
  EXPECT_NE(std::string::npos, Error("AND = 1").find("expected a value"));
}

TEST(JetTranslation, FieldsAreCheckedAndQuoted) {
  auto t = Qsos();
  EXPECT_EQ("(\"Call\" = ?)", TranslateCriteria("call = 'x'", t).sql);
  EXPECT_EQ("(\"160M\" = ?)", TranslateCriteria("[160m] = 'W'", t).sql);
  EXPECT_NE(std::string::npos, Error("Calls = 'x'").find("unknown field 'Calls' in table 'QSOs'"));
  EXPECT_NE(std::string::npos, Error("Log.Call = 'x'").find("unknown table 'Log'"));
  EXPECT_NE(std::string::npos, Error("QSO_Begin + 1 > #2002-01-01#").find("dates"));
}

TEST(JetTranslation, DatesBindTheStoredText) {
  auto t = Qsos();
  auto c =
      TranslateCriteria("QSO_Begin between #2002-01-15 12:00:00# and #2002-01-15 12:30:00#", t);
  EXPECT_EQ("(\"QSO_Begin\" BETWEEN ? AND ?)", c.sql);
  ASSERT_EQ(2u, c.params.size());
  EXPECT_EQ(detail::SqlValue(std::string("2002-01-15 12:00:00")), c.params[0]);
  EXPECT_EQ(detail::SqlValue(std::string("2002-01-15 12:30:00")), c.params[1]);
  // A number or a text that is a date, beside a date field, is a date too.
  auto n = TranslateCriteria("QSO_Begin > 37271.5 OR QSO_Begin < '2001-01-01 00:00:00'", t);
  ASSERT_EQ(2u, n.params.size());
  EXPECT_EQ(detail::SqlValue(std::string("2002-01-15 12:00:00")), n.params[0]);
  EXPECT_EQ(detail::SqlValue(std::string("2001-01-01 00:00:00")), n.params[1]);
}

TEST(JetTranslation, LikeWithAPrefixUsesARange) {
  auto t = Qsos();
  auto c = TranslateCriteria("Call LIKE 'K1*'", t);
  EXPECT_EQ("(\"Call\" >= ? AND \"Call\" < ? AND vellumar_like(\"Call\", ?))", c.sql);
  ASSERT_EQ(3u, c.params.size());
  EXPECT_EQ(detail::SqlValue(std::string("k1")), c.params[0]);
  EXPECT_EQ(detail::SqlValue(std::string("k2")), c.params[1]);
  EXPECT_EQ(detail::SqlValue(std::string("K1*")), c.params[2]);
  EXPECT_EQ("vellumar_like(\"Call\", ?)", TranslateCriteria("Call LIKE '*1'", t).sql);
  EXPECT_EQ("(NOT vellumar_like(\"Call\", ?))", TranslateCriteria("Call NOT LIKE 'K*'", t).sql);
}

TEST(JetTranslation, NestingIsBounded) {
  std::string deep(kMaxDepth + 1, '(');
  deep += "Call = 'x'" + std::string(kMaxDepth + 1, ')');
  EXPECT_NE(std::string::npos, Error(deep).find("nested too deeply"));
  std::string ok(kMaxDepth - 1, '(');
  ok += "Call = 'x'" + std::string(kMaxDepth - 1, ')');
  EXPECT_NO_THROW(TranslateCriteria(ok, Qsos()));
  EXPECT_NE(std::string::npos, Error(std::string(kMaxDepth + 1, '-') + "1 = Call").find("nested"));
}

TEST(JetSort, Lists) {
  auto t = Qsos();
  EXPECT_EQ("\"Call\" DESC, \"QSO_Begin\"", TranslateSort("Call DESC, QSO_Begin", t));
  EXPECT_EQ("\"DXCCPrefix\", \"Band\" DESC, \"Call\", \"QSLSDATE\"",
            TranslateSort("DXCCPrefix, Band DESC, Call, QSLSdate", t));
  EXPECT_EQ("\"Call\", \"160M\" DESC", TranslateSort("[call] asc, [160M] desc", t));
  EXPECT_EQ("", TranslateSort("", t));
  EXPECT_EQ("", TranslateSort("   ", t));
  EXPECT_EQ(3075, ErrorOf([&] { TranslateSort("Cal", t); }));
  EXPECT_EQ(3075, ErrorOf([&] { TranslateSort("Call DESC QSO_Begin", t); }));
  EXPECT_EQ(3075, ErrorOf([&] { TranslateSort("Call,", t); }));
  EXPECT_EQ(3075, ErrorOf([&] { TranslateSort("'Call'", t); }));
}

}  // namespace
}  // namespace vellumar::db::jet
