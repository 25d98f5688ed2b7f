// 100,000 generated and mutated expressions: each is either translated, and then its SQL runs
// without an SQLite error, or refused with 3075. Nothing else may happen.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "platform/db/database.h"
#include "platform/db/database_core.h"
#include "platform/db/db_test_util.h"
#include "platform/db/jet_sql.h"
#include "platform/vb/error.h"

namespace vellumar::db {
namespace {

using testing::CreateProgressTable;
using testing::CreateQsoTable;
using testing::TempDir;

// Valid expressions from the grammar, over the fields of the log's QSOs table.
class Generator {
 public:
  explicit Generator(uint32_t seed) : rng_(seed) {}

  std::string Expression(int depth = 0) {
    int pick = Pick(depth > 4 ? 6 : 10);
    switch (pick) {
      case 0:
      case 1:
      case 2:
      case 3:
      case 4:
      case 5:
        return Comparison(depth);
      case 6:
        return Expression(depth + 1) + Word(" AND ", " and ", " And ") + Expression(depth + 1);
      case 7:
        return Expression(depth + 1) + Word(" OR ", " or ", " Or ") + Expression(depth + 1);
      case 8:
        return Word("NOT ", "not ", "Not ") + Expression(depth + 1);
      default:
        return "(" + Expression(depth + 1) + ")";
    }
  }

  std::string Comparison(int depth) {
    switch (Pick(9)) {
      case 0:
        return Value(depth) + " " + Op() + " " + Value(depth);
      case 1:
        return TextField() + Word(" LIKE ", " like ", " NOT LIKE ") + Pattern();
      case 2:
        return DateField() + Word(" between ", " BETWEEN ") + DateLit() + " and " + DateLit();
      case 3: {
        std::string s = Value(depth) + Word(" IN (", " in (", " NOT IN (");
        int n = 1 + Pick(4);
        for (int i = 0; i < n; ++i) s += (i ? ", " : "") + Literal();
        return s + ")";
      }
      case 4:
        return Field() + Word(" IS NULL", " is not null", " Is Null");
      case 5:
        return Word("TRUE", "FALSE", "true");
      case 6:
        return "Valid" + Word("", " = TRUE", " = -1", " <> False");
      default:
        return Field() + " = " + Literal();
    }
  }

  std::string Value(int depth) {
    switch (Pick(depth > 3 ? 3 : 6)) {
      case 0:
      case 1:
        return Field();
      case 2:
        return Literal();
      case 3:
        return Plain(depth + 1) + Word(" + ", " - ", " * ", " / ", " & ") + Plain(depth + 1);
      case 4:
        return "-" + Plain(depth + 1);
      default:
        return "(" + Value(depth + 1) + ")";
    }
  }

  // A value without dates, for arithmetic (which dates don't take part in).
  std::string Plain(int depth) {
    switch (Pick(depth > 3 ? 2 : 4)) {
      case 0:
        return Word("Call", "Band", "[Mode]", "Freq", "Valid", "Rank", "QSOs.Call");
      case 1:
        return Word("'K1ABC'", "'20M'", "291", "14.195", "TRUE", "NULL", "\"cw\"");
      case 2:
        return Plain(depth + 1) + Word(" + ", " - ", " * ", " / ", " & ") + Plain(depth + 1);
      default:
        return "(" + Plain(depth + 1) + ")";
    }
  }

  std::string Field() {
    static const char* fields[] = {"Call",      "Band",    "[Mode]", "QSO_Begin",
                                   "BROKEN",    "myQTHID", "Freq",   "[QSL_Rcvd]",
                                   "QSOs.Call", "ADDRESS", "Valid",  "Rank"};
    return fields[Pick(12)];
  }
  std::string TextField() { return Word("Call", "Band", "DXCCPrefix", "[Comment]", "ADDRESS"); }
  std::string DateField() { return Word("QSO_Begin", "QSO_End", "[QSO_Begin]"); }
  std::string Op() { return Word("=", "<>", "<", ">", "<=", ">="); }
  std::string Pattern() {
    return Word("'K1*'", "'*1'", "'?#*'", "'[A-K]*'", "'[!W]?*'", "'14'", "\"K*\"", "'*'", "''");
  }
  std::string DateLit() {
    return Word("#2002-01-15 12:00:00#", "#15-Jan-2002 12:00:00#", "#2002-01-15#",
                "#2001-12-31 23:59:59#");
  }
  std::string Literal() {
    switch (Pick(7)) {
      case 0:
        return "'" + Word("K1ABC", "20M", "Y", "", "O''Brien", "291") + "'";
      case 1:
        return "\"" + Word("cw", "x\"\"y") + "\"";
      case 2:
        return std::to_string(Pick(1000));
      case 3:
        return Word("14.195", "1E3", ".5", "0");
      case 4:
        return DateLit();
      case 5:
        return Word("TRUE", "FALSE", "NULL");
      default:
        return "'" + std::to_string(Pick(300)) + "'";
    }
  }

  template <typename... W>
  std::string Word(W... words) {
    const char* all[] = {words...};
    return all[Pick(static_cast<int>(sizeof...(words)))];
  }
  int Pick(int n) { return static_cast<int>(rng_() % static_cast<uint32_t>(n)); }
  std::mt19937& rng() { return rng_; }

 private:
  std::mt19937 rng_;
};

// Deletes, duplicates or inserts characters and tokens, or writes random bytes.
std::string Mutate(std::string s, Generator& g) {
  static const char* tokens[] = {"(",      ")",    "'",     "\"",     "#",         "[",    "]",
                                 " AND ",  " OR ", " NOT ", " LIKE ", " BETWEEN ", " IN ", ",",
                                 "=",      "<>",   "&",     "-",      "*",         ".",    " IS ",
                                 " NULL ", "Call", "1e",    "!",      "%",         "\\",   "0x"};
  int edits = 1 + g.Pick(4);
  for (int e = 0; e < edits; ++e) {
    size_t at = s.empty() ? 0 : static_cast<size_t>(g.Pick(static_cast<int>(s.size()) + 1));
    switch (g.Pick(6)) {
      case 0:
        if (!s.empty() && at < s.size()) s.erase(at, 1 + static_cast<size_t>(g.Pick(3)));
        break;
      case 1:
        if (!s.empty() && at < s.size())
          s.insert(at, s.substr(at, 1 + static_cast<size_t>(g.Pick(4))));
        break;
      case 2:
        s.insert(at, tokens[g.Pick(static_cast<int>(std::size(tokens)))]);
        break;
      case 3:
        s.insert(at, 1, static_cast<char>(g.Pick(256)));
        break;
      case 4:
        if (at < s.size()) s[at] = static_cast<char>(g.Pick(256));
        break;
      default: {
        std::string bytes;
        int n = g.Pick(8);
        for (int i = 0; i < n; ++i) bytes += static_cast<char>(g.Pick(256));
        s.insert(at, bytes);
      }
    }
  }
  return s;
}

TEST(JetFuzz, EveryInputIsTranslatedAndRunsOrIsRefusedWith3075) {
  TempDir dir;
  std::string path = dir.Path("fuzz.vdb");
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
    CreateQsoTable(db);
    TableDef t = db.TableDefs()["QSOs"];
    t.Fields().Append(t.CreateField("Valid", dbBoolean));
    t.Fields().Append(t.CreateField("Rank", dbDouble));
    Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
    testing::AddRow(rs,
                    {{"Call", "K1ABC"},
                     {"Band", "20M"},
                     {"Valid", true},
                     {"Rank", 1.5},
                     {"QSO_Begin", vb::Variant::FromDate(testing::Date("2002-01-15 12:00:00"))}});
    testing::AddRow(rs, {{"Call", "W1AW"}, {"Mode", "CW"}, {"Valid", false}});
    testing::AddRow(rs, {{"Call", "O'Brien"}});
    db.Close();
  }
  auto core = detail::DatabaseCore::Open(path, false);
  auto schema = core->Schema("QSOs");

  Generator g(20240601);
  int translated = 0, refused = 0, ran = 0;
  constexpr int kInputs = 100000;
  for (int n = 0; n < kInputs; ++n) {
    std::string input = g.Expression();
    bool mutated = n % 2 == 1;
    if (mutated) input = Mutate(input, g);
    if (n % 50 == 0) {  // wholly random bytes now and then
      input.clear();
      int len = g.Pick(40);
      for (int i = 0; i < len; ++i) input += static_cast<char>(g.Pick(256));
    }
    jet::SqlCondition condition;
    try {
      condition = jet::TranslateCriteria(input, *schema);
    } catch (const vb::VbError& e) {
      ASSERT_EQ(3075, e.number()) << "input: " << input << "\n" << e.description();
      ASSERT_NE(std::string::npos, e.description().find("at column")) << e.description();
      ASSERT_FALSE(!mutated && n % 50 != 0) << "a valid expression was refused: " << input << "\n"
                                            << e.description();
      ++refused;
      continue;
    } catch (const std::exception& e) {
      FAIL() << "input: " << input << " raised " << e.what();
    }
    ++translated;
    // Run it: any SQLite error fails the test.
    try {
      auto q = core->Prepare("SELECT count(*) FROM \"QSOs\" WHERE " + condition.sql);
      q->BindAll(condition.params);
      ASSERT_TRUE(q->Step());
      ++ran;
    } catch (const vb::VbError& e) {
      FAIL() << "input: " << input << "\nSQL: " << condition.sql << "\n" << e.description();
    }
  }
  EXPECT_EQ(kInputs, translated + refused);
  EXPECT_EQ(translated, ran);
  // Both outcomes occur in numbers.
  EXPECT_GT(translated, kInputs / 3);
  EXPECT_GT(refused, kInputs / 10);
  std::cout << "translated " << translated << ", refused " << refused << "\n";
}

}  // namespace
}  // namespace vellumar::db
