// Sorts of the Log Page Display and the Advanced Sorts and Filters window: composed sorts, the
// SQL query filters (and every malformed query an operator may write), the date filter's range
// settings, and the window's load, close and unload.
#include <random>
#include <string>
#include <vector>

#include "frame/common.h"
#include "logpage/filter_fixture.h"
#include "platform/vb/format.h"

namespace vellumar {
namespace {

using test::FilterTest;
using V = std::vector<std::string>;

class LogSorts : public FilterTest {
 protected:
  LogSorts() { SeedStandardLog(); }

  // Composes a sort in the window as the operator does: the fields by double clicks on them
  // with the name chosen in FieldNameCombo, then a double click on the sort's box.
  void Compose(int index, const std::vector<std::pair<std::string, bool>>& fields) {
    for (int i = 0; i < 3; ++i) window().SortFieldClearCmd(i).UserClick();
    for (size_t i = 0; i < fields.size(); ++i) {
      ChooseField(fields[i].first);
      window().SortField(static_cast<int>(i)).UserDblClick();
      (fields[i].second ? window().SortDescendingButton(static_cast<int>(i))
                        : window().SortAscendingButton(static_cast<int>(i)))
          .UserSelect();
    }
    window().AdvancedSort(index).UserDblClick();
  }
  void ChooseField(const std::string& name) {
    ui::ComboBox& names = window().FieldNameCombo;
    for (int i = 0; i < names.ListCount(); ++i)
      if (names.List(i) == name) return names.UserSelect(i);
    names.SetText(name);  // a name the log hasn't: typed
  }
  void SelectSort(int index) { window().AdvancedSortSelect(index).UserSelect(); }
};

TEST_F(LogSorts, CallAndUTCButtons) {
  main().SortCallButton.UserSelect();
  EXPECT_EQ(Shown(), (V{"G3ABC", "K1ABC", "K1XYZ", "K2AA", "VP2EAA"}));
  EXPECT_EQ(Current(), "G3ABC");
  main().SortUTCButton.UserSelect();
  EXPECT_EQ(Shown(), (V{"K1ABC", "K1XYZ", "K2AA", "G3ABC", "VP2EAA"}));
  EXPECT_EQ(Current(), "VP2EAA");  // "QSO_Begin": the newest
  EXPECT_EQ(log().EditMode(), db::dbEditInProgress);
  EXPECT_EQ(main().MousePointer(), ui::vbDefault);
}

TEST_F(LogSorts, ASortKeepsTheFilter) {
  FilterBy(main().FilterCallCmd, "K*");
  main().SortCallButton.UserSelect();
  EXPECT_EQ(Shown(), (V{"K1ABC", "K1XYZ", "K2AA"}));
  EXPECT_EQ(FilterCaption(), "Filter: Call=K*");
}

TEST_F(LogSorts, CallDescendingThenStartTime) {
  Compose(0, {{"Call", true}, {"QSO_Begin", false}});
  EXPECT_EQ(window().AdvancedSort(0).Text(), "Call DESC, QSO_Begin");
  EXPECT_EQ(h.Setting("SQLFilters", "SQLSort0"), "Call DESC, QSO_Begin");
  SelectSort(0);
  main().SortAdvancedButton.UserSelect();
  EXPECT_EQ(Shown(), (V{"VP2EAA", "K2AA", "K1XYZ", "K1ABC", "G3ABC"}));
}

TEST_F(LogSorts, AllThreeEmptyIsTheEmptyStringSaved) {
  Compose(1, {{"Call", false}});
  Compose(1, {});
  EXPECT_EQ(window().AdvancedSort(1).Text(), "");
  EXPECT_EQ(h.Setting("SQLFilters", "SQLSort1"), "");
  // An empty composed sort is the store's own order.
  SelectSort(1);
  main().SortAdvancedButton.UserSelect();
  EXPECT_EQ(ShownCount(), 5);
  EXPECT_EQ(h.ErrorLogText().find("SortDisplay"), std::string::npos);
}

TEST_F(LogSorts, ChangingTheSelectedSortResortsAtOnceAnotherDoesnt) {
  Compose(2, {{"Call", false}});
  SelectSort(2);
  main().SortAdvancedButton.UserSelect();
  EXPECT_EQ(Shown().front(), "G3ABC");
  Compose(2, {{"Call", true}});
  EXPECT_EQ(Shown().front(), "VP2EAA");
  Compose(3, {{"QSO_Begin", false}});
  EXPECT_EQ(Shown().front(), "VP2EAA");  // sort 3 isn't the one selected
  SelectSort(3);  // selecting it re-sorts
  EXPECT_EQ(Shown().front(), "K1ABC");
  EXPECT_EQ(h.Setting("SQLFilters", "SQLSortIndex"), "3");
  EXPECT_EQ(app->module.CurrentAdvancedSort, 3);
}

TEST_F(LogSorts, StartTimeDescendingGoesToTheFirstRow) {
  Compose(0, {{"QSO_Begin", true}});
  EXPECT_EQ(window().AdvancedSort(0).Text(), "QSO_Begin DESC");
  SelectSort(0);
  main().SortAdvancedButton.UserSelect();
  EXPECT_EQ(Shown().front(), "VP2EAA");
  EXPECT_EQ(log().AbsolutePosition(), 0);
  EXPECT_EQ(Current(), "VP2EAA");
}

TEST_F(LogSorts, AHoleInTheRowIsKeptAndFailsAsASort) {
  ChooseField("Call");
  window().SortField(0).UserDblClick();
  ChooseField("Band");
  window().SortField(2).UserDblClick();
  window().AdvancedSort(0).UserDblClick();
  EXPECT_EQ(window().AdvancedSort(0).Text(), "CallBand");
}

TEST_F(LogSorts, AnUnknownFieldIsReportedAndTheGridShowsNoRows) {
  const long rows = RowsInFile();
  Compose(0, {{"Nonesuch", false}, {"Call", false}});
  SelectSort(0);
  main().SortAdvancedButton.UserSelect();  // the scripted desktop fails on any message
  EXPECT_NE(h.ErrorLogText().find("VellumModule.SortDisplay"), std::string::npos)
      << h.ErrorLogText();
  EXPECT_EQ(ShownCount(), 0);
  EXPECT_EQ(main().LogGrid.DataSource()->Recordset(), main().LogPosition.Recordset());
  EXPECT_EQ(RowsInFile(), rows);
  EXPECT_FALSE(main().CommandBusy);
  main().SortCallButton.UserSelect();
  EXPECT_EQ(Shown(), (V{"G3ABC", "K1ABC", "K1XYZ", "K2AA", "VP2EAA"}));
  Compose(0, {{"Nonesuch", false}});
  main().SortUTCButton.UserSelect();
  EXPECT_EQ(ShownCount(), 5);
  EXPECT_EQ(RowsInFile(), rows);
}

TEST_F(LogSorts, FieldNamesAreTheLogsColumnsAndADoubleClickAppendsOne) {
  ui::ComboBox& names = window().FieldNameCombo;
  ASSERT_EQ(names.ListCount(), log().Fields().Count());
  EXPECT_EQ(names.List(0), log().Fields(0).Name());
  window().SQLquery(1).UserSetText("");
  window().SQLquery(1).UserType("Call LIKE 'K*' AND ");
  ChooseField("Band");
  window().SQLquery(1).UserDblClick();
  window().SQLquery(1).SetSelStart(static_cast<int>(window().SQLquery(1).Text().size()));  // End
  window().SQLquery(1).UserType(" = '20M'");
  EXPECT_EQ(window().SQLquery(1).Text(), "Call LIKE 'K*' AND Band = '20M'");
  EXPECT_EQ(h.Setting("SQLFilters", "SQLQuery1"), "Call LIKE 'K*' AND Band = '20M'");
  window().SQLFilterCmd(1).UserClick();
  EXPECT_EQ(Shown(), (V{"K1ABC"}));
  EXPECT_EQ(FilterCaption(), "Filter: SQL Query");
  EXPECT_EQ(Filter(), "Call LIKE 'K*' AND Band = '20M'");
  EXPECT_EQ(main().LastFilterKind, 0);
}

TEST_F(LogSorts, SQLQueriesInTheJetLanguage) {
  const std::vector<std::pair<std::string, V>> cases = {
      {"Band = '20M' OR Band = '10M'", {"K1ABC", "G3ABC", "VP2EAA"}},
      {"Mode IN ('cw', 'RTTY')", {"K1ABC", "G3ABC", "VP2EAA"}},
      {"QSO_Begin >= #2024-03-15 07:30# AND Band IS NULL", {"K2AA"}},
      {"NOT (Call LIKE 'K*')", {"G3ABC", "VP2EAA"}},
      {"[DXCCPrefix] = 'VP2E'", {"VP2EAA"}},
  };
  for (const auto& [query, expected] : cases) {
    window().SQLquery(0).UserSetText(query);
    window().SQLFilterCmd(0).UserClick();
    EXPECT_EQ(Shown(), expected) << query;
    EXPECT_EQ(FilterCaption(), "Filter: SQL Query") << query;
  }
}

// A dump of every table of the file: names, and each row's values.
std::string DumpFile(db::Database& database) {
  std::string out;
  for (const char* table : {"QSOs", "Progress", "QTHs"}) {
    out += std::string("[") + table + "]\n";
    db::Recordset rs = database.OpenRecordset(table, db::dbOpenDynaset);
    if (rs.BOF() && rs.EOF_()) continue;
    rs.MoveFirst();
    while (!rs.EOF_()) {
      for (int i = 0; i < rs.Fields().Count(); ++i)
        out += rs.Fields(i).Value().ToStringOrEmpty() + "|";
      out += "\n";
      rs.MoveNext();
    }
  }
  out += "tables:" + std::to_string(database.TableDefs().Count());
  return out;
}

class MalformedQueries : public LogSorts {
 protected:
  // Runs a query through its button; true when it was refused the way a bad filter is.
  bool Refused(const std::string& query) {
    const size_t before = h.desktop.MessageBoxTexts().size();
    window().SQLquery(2).UserSetText(query);
    window().SQLFilterCmd(2).UserClick();
    const auto texts = h.desktop.MessageBoxTexts();
    return texts.size() == before + 1 && texts.back() == "Invalid Filter expression";
  }
  void ExpectRefusedCleanly(const std::string& query, const std::string& dumpBefore) {
    SCOPED_TRACE(query);
    const size_t before = h.desktop.MessageBoxTexts().size();
    EXPECT_TRUE(Refused(query));
    EXPECT_EQ(h.desktop.MessageBoxTexts().size(), before + 1);  // one message, no more
    EXPECT_EQ(FilterCaption(), "None");
    EXPECT_EQ(Filter(), "");
    EXPECT_EQ(Shown(), (V{"K1ABC", "K1XYZ", "K2AA", "G3ABC", "VP2EAA"}));
    EXPECT_EQ(Current(), "VP2EAA");  // sorted by start time: the newest
    EXPECT_TRUE(app->module.LogFilteredFlag);
    EXPECT_EQ(DumpFile(app->module.LogDatabase), dumpBefore);
  }
};

TEST_F(MalformedQueries, EachIsOneInvalidFilterExpressionAndChangesNothing) {
  h.desktop.Tolerate({"Invalid Filter expression"});
  const std::string dump = DumpFile(app->module.LogDatabase);
  for (const char* query : {
           "Call LIKE 'O'Brien'",
           "(Call = 'K1ABC'",
           "Call = 'K1ABC')",
           "[Call = 'K1ABC'",
           "Call = 'K1ABC",
           "Call = \"K1ABC",
           "Nonesuch = 'x'",
           "QSO_Begin > #not a date#",
           "QSO_Begin > #2024-13-45#",
           "Call = 'x'; DROP TABLE QSOs",
           "Call = 'x' --",
           "1=1) OR (1=1",
           "substr(Call,1,2) = 'K1'",
           "Call GLOB 'K*'",
           "Call IN (SELECT Call FROM QSOs)",
           "rowid > 0",
           "()",
       })
    ExpectRefusedCleanly(query, dump);
}

TEST_F(MalformedQueries, TwoMinusesAreArithmeticNeverAComment) {
  // Read as a comment the rest would be dropped and K1ABC shown; read as Jet it is 'K1ABC'
  // minus minus a field, which no callsign equals.
  window().SQLquery(2).UserSetText("Call = 'K1ABC' -- Comment");
  window().SQLFilterCmd(2).UserClick();
  EXPECT_EQ(ShownCount(), 0);
  EXPECT_EQ(FilterCaption(), "Filter: SQL Query");
}

TEST_F(MalformedQueries, ARandomBatchIsRefusedOrRunsAndNeverWrites) {
  h.desktop.Tolerate({"Invalid Filter expression"});
  const std::string dump = DumpFile(app->module.LogDatabase);
  const std::vector<std::string> tokens = {
      "Call", "Band", "QSO_Begin", "=", "<>", "LIKE", "'K1*'", "'", "\"", "(", ")", "[", "]",
      "AND", "OR", "NOT", ";", "--", "#2024-03-15#", "#", "substr", ",", "1", "GLOB", "SELECT",
      "rowid", "DROP TABLE QSOs", "*", "%", "BETWEEN", "IS NULL", "TRUE", "&", "+"};
  std::mt19937 random(20241123);
  int refused = 0, ran = 0;
  for (int n = 0; n < 300; ++n) {
    std::string query;
    const int length = 1 + static_cast<int>(random() % 7);
    for (int t = 0; t < length; ++t) query += tokens[random() % tokens.size()] + " ";
    SCOPED_TRACE(query);
    if (Refused(query)) {
      ++refused;
      EXPECT_EQ(FilterCaption(), "None");
      EXPECT_EQ(ShownCount(), 5);
    } else {
      ++ran;
      EXPECT_EQ(FilterCaption(), "Filter: SQL Query");
      EXPECT_LE(ShownCount(), 5);
    }
    EXPECT_TRUE(app->module.LogFilteredFlag);
  }
  EXPECT_EQ(DumpFile(app->module.LogDatabase), dump);
  EXPECT_GT(refused, 0);
  EXPECT_EQ(refused + ran, 300);
}

// ---- The window ----

TEST_F(LogSorts, TheWindowsCaptionsAndTips) {
  EXPECT_EQ(window().Caption(), "Vellumar Advanced Log Sorts and Filters");
  EXPECT_EQ(window().ModeFrame.Caption(), "Mode Filter");
  EXPECT_EQ(window().BandFrame.Caption(), "Band Filter");
  EXPECT_EQ(window().AdvancedSortFrame.Caption(), "Advanced Sort");
  EXPECT_EQ(window().SortFieldFrame(0).Caption(), "First field");
  EXPECT_EQ(window().SortFieldFrame(1).Caption(), "Second field");
  EXPECT_EQ(window().SortFieldFrame(2).Caption(), "Third field");
  EXPECT_EQ(window().SQLFrame.Caption(), "SQL Query Filters");
  EXPECT_EQ(window().UTCFrame.Caption(), "UTC Filter");
  EXPECT_EQ(window().SortFieldClearCmd(1).ToolTipText(), "clear the Second field");
  EXPECT_EQ(window().AdvancedSortSelect(0).ToolTipText(), "click select advanced sort ");
  EXPECT_EQ(window().SQLHelpCmd.ToolTipText(), "display only QSOs marked as \"broken\"");
  EXPECT_EQ(window().AdvancedUTCFilterCmd.ToolTipText(),
            "display only QSOs occuring within the UTC filter range");
  EXPECT_EQ(window().DateFilterKind(0).Caption(), "within");
  EXPECT_EQ(main().SortAdvancedButton.ToolTipText(),
            "display the log in order specified in the Advanced Log Sorts and Filters window");
}

TEST_F(LogSorts, TheRightButtonOnTheDateFilterShowsTheWindowAndItsCloseHidesIt) {
  window().Hide();
  main().FilterDateCmd.UserMouse(ui::vbRightButton);
  EXPECT_TRUE(window().Visible());
  EXPECT_EQ(main().LastFilterMouseButton, ui::vbRightButton);
  EXPECT_EQ(Filter(), "");
  EXPECT_FALSE(window().Unload(ui::vbFormControlMenu));
  EXPECT_TRUE(window().Loaded());
  EXPECT_FALSE(window().Visible());
  main().AdvancedFilterCmd.UserClick();
  EXPECT_TRUE(window().Visible());
}

TEST_F(LogSorts, TheUTCButtonOfTheWindowFiltersByDate) {
  window().DateFilterKind(0).SetValue(true);
  window().DateFilterTolerance.SetText("0");
  main().FilterField.SetText("2024-03-15 08:00");
  window().AdvancedUTCFilterCmd.UserClick();
  EXPECT_EQ(Shown(), (V{"VP2EAA"}));
}

TEST_F(LogSorts, TheRangeBoxesLetOnlyTheirKeysThrough) {
  ui::TextBox& tolerance = window().DateFilterTolerance;
  tolerance.UserSetText("");
  tolerance.UserType("1a5-");
  EXPECT_EQ(tolerance.Text(), "15");
  ui::TextBox& bound = window().DateFilterUpperBound;
  bound.UserSetText("");
  bound.UserType("15-Mar-2024 08:00:00/!,");
  EXPECT_EQ(bound.Text(), "15-Mar-2024 08:00:00");
  bound.UserSetText("pasted/!text");  // a paste isn't checked
  EXPECT_EQ(bound.Text(), "pasted/!text");
  bound.UserDblClick();
  EXPECT_EQ(bound.Text(), vb::FormatDate(h.app->common.utc().CurrentTime(),
                                         h.setup().GetDateTimeFormat()));
}

TEST(AdvancedFilterSettings, DefaultsAtLoadAndTheThreeSavedAtUnload) {
  test::ProgramHarness h;
  h.SeedReturningOperator();
  Application& app = h.Start();
  h.loop.Advance(300);
  EXPECT_EQ(app.advancedFilter.DateFilterTolerance.Text(), "15");
  EXPECT_TRUE(app.advancedFilter.DateFilterKind(0).Value());
  EXPECT_TRUE(vb::IsDate(app.advancedFilter.DateFilterUpperBound.Text()));
  EXPECT_TRUE(app.advancedFilter.AdvancedSortSelect(0).Value());
  EXPECT_EQ(app.module.CurrentAdvancedSort, 0);
  app.advancedFilter.DateFilterTolerance.SetText("30");
  app.advancedFilter.DateFilterKind(1).SetValue(true);
  app.advancedFilter.DateFilterUpperBound.SetText("16-Mar-2024 00:00:00");
  EXPECT_TRUE(app.advancedFilter.Unload());
  EXPECT_EQ(h.Setting("Configuration", "DateFilterTolerance"), "30");
  EXPECT_EQ(h.Setting("Configuration", "DateFilterKind"), "1");
  EXPECT_EQ(h.Setting("Configuration", "DateFilterUpperBound"), "16-Mar-2024 00:00:00");
}

TEST(AdvancedFilterSettings, StoredQueriesAndSortsComeBack) {
  test::ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("SQLFilters", "SQLQuery3", "Band = '20M'");
  h.Seed("SQLFilters", "SQLSort2", "Call DESC");
  h.Seed("SQLFilters", "SQLSortIndex", "2");
  h.Seed("Configuration", "DateFilterKind", "1");
  h.Seed("Configuration", "DateFilterTolerance", "5");
  Application& app = h.Start();
  h.loop.Advance(300);
  EXPECT_EQ(app.advancedFilter.SQLquery(3).Text(), "Band = '20M'");
  EXPECT_EQ(app.advancedFilter.AdvancedSort(2).Text(), "Call DESC");
  EXPECT_TRUE(app.advancedFilter.AdvancedSortSelect(2).Value());
  EXPECT_EQ(app.module.CurrentAdvancedSort, 2);
  EXPECT_EQ(app.module.GetCurrentAdvancedSort(), "Call DESC");
  EXPECT_TRUE(app.advancedFilter.DateFilterKind(1).Value());
  EXPECT_EQ(app.advancedFilter.DateFilterTolerance.Text(), "5");
}

TEST(AdvancedFilterSettings, NonsenseInTheSettingsIsReportedAndTheWindowWorks) {
  test::ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("SQLFilters", "SQLSortIndex", "seven");
  h.Seed("Configuration", "DateFilterKind", "either");
  Application& app = h.Start();
  h.loop.Advance(300);
  EXPECT_NE(h.ErrorLogText().find("VellumModule.InitializeSQLFilters"), std::string::npos)
      << h.ErrorLogText();
  EXPECT_NE(h.ErrorLogText().find("AdvancedFilter.Form_Load"), std::string::npos)
      << h.ErrorLogText();
  EXPECT_EQ(app.module.CurrentAdvancedSort, 0);
  EXPECT_TRUE(app.advancedFilter.DateFilterKind(0).Value());
  app.advancedFilter.AdvancedSortSelect(1).UserSelect();
  EXPECT_EQ(app.module.CurrentAdvancedSort, 1);
  EXPECT_EQ(h.Setting("SQLFilters", "SQLSortIndex"), "1");
}

TEST(AdvancedFilterSettings, AnIndexBeyondTheFourIsReportedToo) {
  test::ProgramHarness h;
  h.SeedReturningOperator();
  h.Seed("SQLFilters", "SQLSortIndex", "9");
  Application& app = h.Start();
  h.loop.Advance(300);
  EXPECT_NE(h.ErrorLogText().find("VellumModule.InitializeSQLFilters"), std::string::npos);
  EXPECT_EQ(app.module.CurrentAdvancedSort, 0);
  EXPECT_EQ(app.module.GetCurrentAdvancedSort(), "");
}

}  // namespace
}  // namespace vellumar
