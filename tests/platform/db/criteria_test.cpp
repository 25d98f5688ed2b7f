// Every filter and criteria string the program builds, translated and run against rows whose
// results are known.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/db/database.h"
#include "platform/db/database_core.h"
#include "platform/db/db_test_util.h"
#include "platform/db/jet_sql.h"
#include "platform/vb/date_value.h"
#include "platform/vb/format.h"

namespace vellumar::db {
namespace {

using testing::AddRow;
using testing::CreateProgressTable;
using testing::CreateQsoTable;
using testing::Date;
using testing::ErrorOf;
using testing::TempDir;
using testing::Text;
using Strings = std::vector<std::string>;

vb::Variant When(const std::string& text) { return vb::Variant::FromDate(Date(text)); }

class CriteriaTest : public ::testing::Test {
 protected:
  void SetUp() override {
    db_ = DBEngine::Workspaces(0).CreateDatabase(dir_.Path("log.vdb"), dbLangGeneral);
    CreateQsoTable(db_);
    Recordset q = db_.OpenRecordset("QSOs", dbOpenDynaset);
    AddRow(q, {{"Call", "K1ABC"},
               {"Band", "20M"},
               {"Mode", "SSB"},
               {"BROKEN", "Y"},
               {"MYQTHID", "home"},
               {"DXCCPrefix", "K"},
               {"QSO_Begin", When("2002-01-15 12:00:00")}});
    AddRow(q, {{"Call", "K1XYZ"},
               {"Band", "40M"},
               {"Mode", "CW"},
               {"BROKEN", ""},
               {"MYQTHID", ""},
               {"DXCCPrefix", "K"},
               {"QSO_Begin", When("2002-01-15 12:30:00")}});
    AddRow(q, {{"Call", "W1AW"},
               {"Band", "20M"},
               {"Mode", "Hell"},
               {"BROKEN", "y"},
               {"DXCCPrefix", "K"},
               {"QSO_Begin", When("2002-01-15 12:15:00")}});
    AddRow(q, {{"Call", "k1abc"},
               {"Band", "15M"},
               {"Mode", "CW"},
               {"MYQTHID", "x"},
               {"DXCCPrefix", "K"},
               {"QSO_Begin", When("2002-01-15 13:00:00")}});
    AddRow(q, {{"Call", "VE3ABC"},
               {"Band", "20m"},
               {"Mode", "RTTY"},
               {"BROKEN", "N"},
               {"MYQTHID", ""},
               {"DXCCPrefix", "VE"},
               {"QSO_Begin", When("2001-12-31 23:59:59")}});
    AddRow(q, {{"Call", "DL1XX"},
               {"Mode", "PSK31"},
               {"DXCCPrefix", "14"},
               {"QSO_Begin", When("2002-01-15 12:30:01")}});

    CreateProgressTable(db_);
    Recordset p = db_.OpenRecordset("Progress", dbOpenDynaset);
    AddRow(p, {{"CountryCode", "291"}, {"Prefix", "K"}, {"Valid", true}});
    AddRow(p, {{"CountryCode", "1"}, {"Prefix", "VE"}, {"Valid", true}});
    AddRow(p, {{"CountryCode", "230"}, {"Prefix", "DL"}, {"Valid", true}});
    AddRow(p, {{"CountryCode", "81"}, {"Prefix", "DL/G"}, {"Valid", false}});

    TableDef t = db_.CreateTableDef("DXCC");
    t.Fields().Append(t.CreateField("DXCCPrefix", dbText, 6));
    t.Fields().Append(t.CreateField("CountryCode", dbInteger));
    t.Fields().Append(t.CreateField("EndDate", dbDate));
    db_.TableDefs().Append(t);
    Recordset d = db_.OpenRecordset("DXCC", dbOpenDynaset);
    AddRow(d, {{"DXCCPrefix", "K"}, {"CountryCode", 291}});
    AddRow(d, {{"DXCCPrefix", "VE"}, {"CountryCode", 1}});
    AddRow(d,
           {{"DXCCPrefix", "Y2"}, {"CountryCode", 229}, {"EndDate", When("1990-10-03 00:00:00")}});
  }

  // The values of `field` in the rows that pass the filter, sorted by `field`.
  Strings Filtered(const std::string& table, const std::string& filter,
                   const std::string& field = "Call") {
    Recordset base = db_.OpenRecordset(table, dbOpenDynaset);
    base.SetFilter(filter);
    base.SetSort(field);
    Recordset view = base.OpenRecordset();
    Strings out = testing::Column(view, field);
    // FindFirst/FindNext with the same criteria finds the same rows.
    Strings found;
    Recordset all = db_.OpenRecordset(table, dbOpenDynaset);
    all.SetSort(field);
    Recordset sorted = all.OpenRecordset();
    sorted.FindFirst(filter);
    while (!sorted.NoMatch()) {
      found.push_back(Text(sorted, field));
      sorted.FindNext(filter);
    }
    EXPECT_EQ(out, found) << "FindFirst/FindNext of " << filter;
    return out;
  }

  // The translation of the criteria, for looking at its SQL.
  jet::SqlCondition Translation(const std::string& table, const std::string& criteria) {
    auto core = detail::DatabaseCore::Open(dir_.Path("log.vdb"), true);
    return jet::TranslateCriteria(criteria, *core->Schema(table));
  }

  TempDir dir_;
  Database db_;
};

TEST_F(CriteriaTest, CallFilter) {
  EXPECT_EQ((Strings{"K1ABC", "k1abc", "K1XYZ"}), Filtered("QSOs", "Call LIKE 'K1*'"));
  EXPECT_EQ((Strings{"K1ABC", "k1abc", "K1XYZ"}), Filtered("QSOs", "Call LIKE 'k1*'"));
  EXPECT_EQ((Strings{"K1ABC", "k1abc"}), Filtered("QSOs", "Call LIKE 'K1ABC'"));
  EXPECT_EQ((Strings{"K1ABC", "k1abc", "K1XYZ"}), Filtered("QSOs", "Call LIKE 'K?[A-X]*'"));
  EXPECT_EQ((Strings{"DL1XX", "VE3ABC", "W1AW"}), Filtered("QSOs", "Call LIKE '[!K]*'"));
  EXPECT_EQ((Strings{"K1ABC", "k1abc", "K1XYZ", "W1AW"}), Filtered("QSOs", "Call Like '?#*'"));
  EXPECT_EQ((Strings{}), Filtered("QSOs", "Call LIKE 'K1'"));
}

TEST_F(CriteriaTest, DxccFilter) {
  EXPECT_EQ((Strings{"DL1XX"}), Filtered("QSOs", "DXCCPrefix LIKE '14'"));
  EXPECT_EQ((Strings{"VE3ABC"}), Filtered("QSOs", "DXCCPrefix LIKE 've'"));
}

TEST_F(CriteriaTest, BrokenFilters) {
  EXPECT_EQ((Strings{"K1ABC", "W1AW"}), Filtered("QSOs", "BROKEN = 'Y'"));
  EXPECT_EQ((Strings{"K1ABC", "K1XYZ", "VE3ABC", "W1AW"}),
            Filtered("QSOs", "(BROKEN = 'Y') OR (myQTHID='')"));
}

TEST_F(CriteriaTest, DateFilter) {
  EXPECT_EQ((Strings{"K1ABC", "K1XYZ", "W1AW"}),
            Filtered("QSOs", "QSO_Begin between #2002-01-15 12:00:00# and #2002-01-15 12:30:00#"));
  // A filter 0 minutes wide is a between on one date-time.
  EXPECT_EQ((Strings{"K1XYZ"}),
            Filtered("QSOs", "QSO_Begin between #2002-01-15 12:30:00# and #2002-01-15 12:30:00#"));
  EXPECT_EQ((Strings{"VE3ABC"}), Filtered("QSOs", "QSO_Begin < #2002-01-01 00:00:00#"));
}

TEST_F(CriteriaTest, BandAndModeFilters) {
  EXPECT_EQ((Strings{"K1ABC", "K1XYZ", "VE3ABC", "W1AW"}),
            Filtered("QSOs", "(Band = '20M') OR (Band = '40M')"));
  EXPECT_EQ((Strings{"W1AW"}), Filtered("QSOs", "(Mode = 'HELL')"));
  EXPECT_EQ((Strings{"k1abc", "K1XYZ", "W1AW"}),
            Filtered("QSOs", "(Mode = 'CW') OR (Mode = 'HELL')"));
  // All boxes: every QSO, also the one without a band. No boxes: none.
  EXPECT_EQ(6u, Filtered("QSOs", "TRUE").size());
  EXPECT_EQ(6u, Filtered("QSOs", "true").size());
  EXPECT_EQ(0u, Filtered("QSOs", "FALSE").size());
}

TEST_F(CriteriaTest, ProgressLookups) {
  EXPECT_EQ((Strings{"291"}), Filtered("Progress", "CountryCode = '291'", "CountryCode"));
  EXPECT_EQ((Strings{"291"}), Filtered("Progress", "CountryCode = 291", "CountryCode"));
  EXPECT_EQ((Strings{"VE"}), Filtered("Progress", "Prefix = 'VE'", "Prefix"));
  EXPECT_EQ((Strings{"VE"}), Filtered("Progress", "Prefix = 've'", "Prefix"));
  EXPECT_EQ((Strings{}), Filtered("Progress", "Prefix = 'V'", "Prefix"));
  // The DXCC table's CountryCode is numeric; both forms find it.
  EXPECT_EQ((Strings{"K"}), Filtered("DXCC", "CountryCode = 291", "DXCCPrefix"));
  EXPECT_EQ((Strings{"K"}), Filtered("DXCC", "CountryCode = '291'", "DXCCPrefix"));
  EXPECT_EQ((Strings{"Y2"}), Filtered("DXCC", "EndDate IS NOT NULL", "DXCCPrefix"));
}

TEST_F(CriteriaTest, BooleansAsJetHasThem) {
  Strings valid{"DL", "K", "VE"};
  EXPECT_EQ(valid, Filtered("Progress", "Valid = TRUE", "Prefix"));
  EXPECT_EQ(valid, Filtered("Progress", "Valid = -1", "Prefix"));
  EXPECT_EQ(valid, Filtered("Progress", "Valid", "Prefix"));
  EXPECT_EQ(valid, Filtered("Progress", "Valid <> False", "Prefix"));
  EXPECT_EQ((Strings{"DL/G"}), Filtered("Progress", "NOT Valid", "Prefix"));
  EXPECT_EQ((Strings{"DL/G"}), Filtered("Progress", "Valid = FALSE", "Prefix"));
  EXPECT_EQ((Strings{"DL/G"}), Filtered("Progress", "Valid = 0", "Prefix"));
  EXPECT_EQ((Strings{}), Filtered("Progress", "Valid = 1", "Prefix"));  // True is -1
  EXPECT_EQ((Strings{"K"}), Filtered("Progress", "(Prefix = 'K') = TRUE", "Prefix"));
}

TEST_F(CriteriaTest, LocatorsWithDates) {
  EXPECT_EQ((Strings{"K1ABC"}),
            Filtered("QSOs", "Call = 'K1ABC' AND QSO_Begin = #15-Jan-2002 12:00:00#"));
  EXPECT_EQ((Strings{"K1ABC"}),
            Filtered("QSOs", "(Call = 'K1ABC') and (QSO_Begin = #01/15/2002 12:00:00#)"));
  // The locator of the log page: the start box holds the locale's short date and the time.
  std::string shown = vb::FormatDate(Date("2002-01-15 12:00:00"), "ddddd hh:nn:ss");
  EXPECT_EQ((Strings{"K1ABC"}),
            Filtered("QSOs", "(Call = 'k1abc') and (QSO_Begin = #" + shown + "#)"));
  // The duplicate check of the import.
  EXPECT_EQ((Strings{"K1XYZ"}), Filtered("QSOs",
                                         "Call = 'K1XYZ' and Mode = 'cw' and "
                                         "QSO_Begin = #2002-01-15 12:30:00#"));
}

TEST_F(CriteriaTest, KeywordsAnyCase) {
  EXPECT_EQ((Strings{"K1ABC", "K1XYZ", "W1AW"}),
            Filtered("QSOs", "qso_begin BETWEEN #2002-01-15 12:00:00# AND #2002-01-15 12:30:00#"));
  EXPECT_EQ(
      (Strings{"K1ABC", "K1XYZ", "W1AW"}),
      Filtered("QSOs", "[QSO_Begin] Between #2002-01-15 12:00:00# And #2002-01-15 12:30:00#"));
  EXPECT_EQ((Strings{"K1ABC", "k1abc", "K1XYZ"}), Filtered("QSOs", "call like 'K1*'"));
  // NOT of a Null comparison is Null, so k1abc (BROKEN Null) stays out, as in Jet.
  EXPECT_EQ((Strings{"DL1XX", "VE3ABC"}),
            Filtered("QSOs", "band in ('15m', '20M') and not broken = 'y' or mode = 'psk31'"));
}

TEST_F(CriteriaTest, MoreOfTheLanguage) {
  EXPECT_EQ((Strings{"DL1XX"}), Filtered("QSOs", "Band IS NULL"));
  EXPECT_EQ((Strings{"DL1XX", "k1abc"}), Filtered("QSOs", "BROKEN Is Null"));
  EXPECT_EQ((Strings{"K1ABC", "k1abc", "VE3ABC"}), Filtered("QSOs", "Call NOT LIKE '*[WXYZ]*'"));
  EXPECT_EQ((Strings{"K1XYZ", "VE3ABC", "W1AW"}),
            Filtered("QSOs", "Call & '/' & Band IN ('K1XYZ/40M', 'VE3ABC/20M', \"W1AW/20M\")"));
  EXPECT_EQ((Strings{"W1AW"}), Filtered("QSOs", "QSOs.Call = 'W1AW'"));
  EXPECT_EQ((Strings{"K1XYZ"}), Filtered("QSOs", "Mode = 'C' + 'W' AND Band <> '15M'"));
  EXPECT_EQ((Strings{"291"}), Filtered("Progress", "CountryCode * 2 = 582 ", "CountryCode"));
  EXPECT_EQ((Strings{"VE3ABC"}), Filtered("QSOs", "NOT (Call < 'V') AND Call <= 'VE3ABC'"));
}

TEST_F(CriteriaTest, LiteralsAreBoundNeverPasted) {
  for (const char* criteria : {"Call LIKE 'K1*'", "BROKEN = 'Y'", "(BROKEN = 'Y') OR (myQTHID='')",
                               "QSO_Begin between #2002-01-15 12:00:00# and #2002-01-15 12:30:00#",
                               "(Band = '20M') OR (Band = '40M')", "TRUE", "FALSE",
                               "Call = 'K1ABC' AND QSO_Begin = #15-Jan-2002 12:00:00#",
                               "Call = 'x; DROP TABLE QSOs; --'"}) {
    jet::SqlCondition c = Translation("QSOs", criteria);
    for (const char* literal : {"K1", "'Y'", "2002", "20M", "40M", "TRUE", "FALSE", "-1", "DROP"}) {
      EXPECT_EQ(std::string::npos, c.sql.find(literal)) << criteria << " -> " << c.sql;
    }
    EXPECT_FALSE(c.params.empty()) << criteria;
  }
  jet::SqlCondition date = Translation("QSOs", "QSO_Begin = #15-Jan-2002 12:00:00#");
  ASSERT_EQ(1u, date.params.size());
  EXPECT_EQ(detail::SqlValue(std::string("2002-01-15 12:00:00")), date.params[0]);
  jet::SqlCondition truth = Translation("Progress", "Valid = TRUE");
  ASSERT_EQ(1u, truth.params.size());
  EXPECT_EQ(detail::SqlValue(int64_t{-1}), truth.params[0]);
}

TEST_F(CriteriaTest, RefusedStrings) {
  std::string d;
  EXPECT_EQ(3075, ErrorOf([&] { Filtered("QSOs", "Call LIKE 'O'Brien'"); }, d));
  EXPECT_EQ(3075, ErrorOf([&] { Filtered("QSOs", "Nope = 'x'"); }, d));
  EXPECT_NE(std::string::npos, d.find("unknown field 'Nope'")) << d;
  EXPECT_EQ(3075, ErrorOf([&] { Filtered("QSOs", "QSO_Begin = #31-Feb-2002#"); }, d));
  EXPECT_NE(std::string::npos, d.find("is not a date")) << d;
  EXPECT_EQ(3075, ErrorOf([&] { Filtered("QSOs", "Call LIKE '[K1*'"); }, d));
}

}  // namespace
}  // namespace vellumar::db
