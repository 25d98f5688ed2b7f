// "Add Needed" and "Add Requested" over a small log.
#include <gtest/gtest.h>

#include "qsl/qsl_module.h"
#include "qsl_world.h"

namespace vellumar::test {
namespace {

constexpr int k20M = 7, k40M = 5, kPhone = kProgressPhone, kCW = kProgressCW,
              kRTTY = kProgressRTTY, kPSK = kProgressPSK;

class WalksTest : public QSLWorld {
 protected:
  void Needed() {
    OpenViews(filter);
    Module().GenerateNeededQSLs(view, progress, checks);
  }
  void Requested() {
    OpenViews(filter);
    Module().GenerateRequestedQSLs(view, progress, checks);
  }
  void CheckOnly(std::initializer_list<int> columns) {
    checks = {};
    for (int c : columns) checks[static_cast<size_t>(c)] = true;
  }
  std::string filter;
};

TEST_F(WalksTest, AllBoxesCheckedRunsOnlyTheBandsAndModesPass) {
  AddQSO({});  // K1ABC 20M CW, letters empty: nothing is "W"
  SetLetter("291", k20M, "");
  Needed();
  EXPECT_TRUE(Rows().empty());  // the countries pass would have taken it
  for (const std::string& c : captions) EXPECT_EQ(c.find("countries"), std::string::npos) << c;
}

TEST_F(WalksTest, NoBoxCheckedRunsOnlyTheCountriesPass) {
  CheckOnly({});
  AddQSO({});
  SetLetter("291", k20M, "W");
  SetLetter("291", kCW, "W");
  Needed();
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].needed, "Y");
  EXPECT_EQ(Letter("291", k20M), "Q");
  EXPECT_EQ(Letter("291", kCW), "W");  // modes play no part in this pass
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Rcvd), "R");
  ASSERT_FALSE(captions.empty());
  EXPECT_EQ(captions.front().rfind("checking needed countries on ", 0), 0u);
  for (const std::string& c : captions)
    EXPECT_EQ(c.find("bands and modes"), std::string::npos) << c;
  EXPECT_EQ(captions.back(), "QSL queue");  // restored
}

TEST_F(WalksTest, TheCountriesPassTakesTheLatestQSOOfAnEntityWithNothingOnTheWay) {
  CheckOnly({});
  TestQSO a, b, c;
  a.call = "K2AAA";
  b.call = "K3BBB";
  b.begin = At(5, 10);
  c.call = "G3CCC";
  c.dxccid = "223";
  c.prefix = "G";
  AddQSO(a);
  AddQSO(b);
  AddQSO(c);
  SetLetter("223", 4, "F");  // G has a band confirmed: nothing to do there
  Needed();
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].call, "K3BBB");
  EXPECT_EQ(QSOValue("K2AAA", qf::QSL_Rcvd), "");
}

TEST_F(WalksTest, AFirstPassChoiceMarksTheNeededColumnsAndTheQSO) {
  AddQSO({});
  SetLetter("291", k20M, "W");
  SetLetter("291", kCW, "W");
  Needed();
  ASSERT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Letter("291", k20M), "Q");
  EXPECT_EQ(Letter("291", kCW), "Q");
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Rcvd), "R");
  ASSERT_FALSE(captions.empty());
  EXPECT_EQ(captions.front(), "checking needed bands and modes on " +
                                  vb::FormatDate(TestQSO{}.begin, "ddddd"));
}

TEST_F(WalksTest, ASecondAddNeededStraightAfterAddsNothing) {
  CheckOnly({k20M, kCW});  // a mixed choice: both passes run
  AddQSO({});
  TestQSO g;
  g.call = "G3AAA";
  g.dxccid = "223";
  g.prefix = "G";
  AddQSO(g);
  SetLetter("291", k20M, "W");
  Needed();
  const auto first = Rows();
  ASSERT_EQ(first.size(), 2u);  // K by its band, G by the countries pass
  Needed();
  EXPECT_EQ(Rows().size(), 2u);
}

TEST_F(WalksTest, AWorkedBandWhoseBoxIsClearIsNotChosenByTheFirstPass) {
  CheckOnly({k40M});
  AddQSO({});  // 20M
  SetLetter("291", k20M, "W");
  SetLetter("291", kCW, "W");
  SetLetter("291", 3, "F");  // keeps the countries pass away too
  Needed();
  EXPECT_TRUE(Rows().empty());
  EXPECT_EQ(Letter("291", k20M), "W");
}

TEST_F(WalksTest, ADigitalModeNeededThroughTheRTTYColumnMarksItsOwnColumn) {
  CheckOnly({kRTTY});
  TestQSO a;
  a.mode = "PSK31";
  AddQSO(a);
  SetLetter("291", kPSK, "F");
  SetLetter("291", kRTTY, "W");
  SetLetter("291", 3, "F");  // keeps the countries pass away
  h.desktop.ExpectMsgBoxStartingWith("Too much data in MODE field");  // PSK31 won't fit
  Needed();
  EXPECT_EQ(Letter("291", kPSK), "Q");   // the mode's own column, though it held "F"
  EXPECT_EQ(Letter("291", kRTTY), "W");  // not the column that made it needed
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Rcvd), "R");  // the QSO is marked all the same
}

TEST_F(WalksTest, QSOsReceivedAsIOrXAreNeverChosenButBecomeCompanions) {
  CheckOnly({k20M});
  TestQSO early, ignored, chosen;
  early.begin = At(1, 8);
  early.rcvd = "I";
  chosen.begin = At(2, 8);
  ignored.begin = At(3, 8);  // walked first: its 20M would be needed, but it is out
  ignored.rcvd = "X";
  ignored.call = "K1XXX";
  AddQSO(early);
  AddQSO(chosen);
  AddQSO(ignored);
  SetLetter("291", k20M, "W");
  SetLetter("291", 3, "F");
  Needed();
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].begin, chosen.begin);
  EXPECT_EQ(rows[1].begin, early.begin);  // the "I" QSO went with it as a companion
  EXPECT_EQ(rows[1].incidence, "2");
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Rcvd, early.begin), "R");
  EXPECT_EQ(QSOValue("K1XXX", qf::QSL_Rcvd), "X");
}

TEST_F(WalksTest, CompanionsBeforeTheChosenQSOGoOnTheCardWithTheirNeededFlag) {
  CheckOnly({k20M, k40M, kCW});
  TestQSO a, b, c, d, later;
  a.begin = At(1, 8);
  a.band = "40M";
  a.rcvd = "I";  // taken as a companion all the same
  b.begin = At(1, 9);
  b.band = "40M";
  b.rcvd = "Y";  // the card is in: not a companion
  c.begin = At(1, 10);
  c.band = "80M";  // its band has no box: needed only by its mode
  d.begin = At(2, 8);  // the chosen one
  later.begin = At(3, 8);
  later.band = "40M";
  later.rcvd = "X";  // stands after the chosen one and is out of the walk
  for (const TestQSO& q : {a, b, c, d, later}) AddQSO(q);
  SetLetter("291", k20M, "W");
  SetLetter("291", k40M, "F");
  SetLetter("291", kCW, "V");  // a verified mode column still counts for a companion
  Needed();
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].begin, d.begin);
  EXPECT_EQ(rows[0].needed, "Y");
  EXPECT_EQ(rows[0].incidence, "3");
  // The companions, from the first in the log: both needed by CW, whose letter is "V".
  EXPECT_EQ(rows[1].begin, a.begin);
  EXPECT_EQ(rows[1].needed, "Y");
  EXPECT_EQ(rows[2].begin, c.begin);
  EXPECT_EQ(rows[2].needed, "Y");
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Rcvd, a.begin), "R");
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Rcvd, b.begin), "Y");
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Rcvd, later.begin), "X");
  EXPECT_EQ(Letter("291", k40M), "F");  // companions never raise a column
}

TEST_F(WalksTest, ACompanionIsNotNeededWhenItsColumnsAreConfirmed) {
  CheckOnly({k20M, k40M});
  TestQSO a, d;
  a.begin = At(1, 8);
  a.band = "40M";
  d.begin = At(2, 8);
  AddQSO(a);
  AddQSO(d);
  SetLetter("291", k20M, "W");
  SetLetter("291", k40M, "V");
  Needed();
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[1].begin, a.begin);
  EXPECT_EQ(rows[1].needed, "");
}

TEST_F(WalksTest, ACompanionUsesTheChosenQSOsProgressRowWhateverItsEntity) {
  CheckOnly({k20M, k40M});
  TestQSO a, d;
  a.begin = At(1, 8);
  a.band = "40M";
  a.dxccid = "223";  // G's 40M is confirmed, but K's row decides
  d.begin = At(2, 8);
  AddQSO(a);
  AddQSO(d);
  SetLetter("291", k20M, "W");
  SetLetter("291", k40M, "W");
  SetLetter("223", k40M, "F");
  SetLetter("223", 3, "F");
  Needed();
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[1].begin, a.begin);
  EXPECT_EQ(rows[1].needed, "Y");
  EXPECT_EQ(Letter("223", k40M), "F");
  EXPECT_EQ(Letter("291", k40M), "W");  // a companion raises no column
}

TEST_F(WalksTest, AFilterOnTheScreenLimitsTheWalksAndTheCompanionSearch) {
  CheckOnly({k20M, k40M});
  TestQSO a, d, g;
  a.begin = At(1, 8);
  a.band = "40M";
  d.begin = At(5, 8);
  g.call = "K9ZZZ";
  g.begin = At(6, 8);
  g.band = "40M";
  AddQSO(a);
  AddQSO(d);
  AddQSO(g);
  SetLetter("291", k20M, "W");
  SetLetter("291", k40M, "W");
  filter = "QSO_Begin >= #2024-03-05#";  // a's day is out of sight
  Needed();
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].call, "K9ZZZ");
  EXPECT_EQ(rows[1].call, "K1ABC");
  EXPECT_EQ(rows[1].incidence, "1");  // the hidden earlier QSO didn't come along
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Rcvd, a.begin), "");
}

TEST_F(WalksTest, StopInTheFirstPassEndsItAndTheSecondPassEndsAtOnce) {
  CheckOnly({k20M});  // mixed: both passes would run
  for (int day = 1; day <= 6; ++day) {
    TestQSO q;
    q.call = "K" + std::to_string(day) + "AA";
    q.begin = At(day, 8);
    AddQSO(q);
  }
  SetLetter("291", k20M, "W");
  int turns = 0;
  onYield = [&] {
    if (++turns == 1) Module().StopAdd();  // during the first record's yield
  };
  int walking = 0;
  qsl::QSLServices s = Services();
  s.walkButtons = [&](bool on) { walking += on ? 1 : -1; };
  module.emplace(Queue(), s);
  Needed();
  EXPECT_EQ(yields, 1);  // the first record finished; no more records, no second pass
  ASSERT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Rows()[0].call, "K6AA");
  EXPECT_EQ(walking, 0);  // the buttons came back
  // A new walk starts with the flag cleared.
  onYield = nullptr;
  Needed();
  EXPECT_GT(yields, 1);
}

TEST_F(WalksTest, AMissingProgressRowIsNamedInTheFirstPassAndSilentInTheSecond) {
  CheckOnly({k20M});
  TestQSO lost;
  lost.call = "ZZ1A";
  lost.dxccid = "999";
  AddQSO(lost);
  h.desktop.ExpectMsgBox("can't find DXCC code 999 for ZZ1A @ " +
                         vb::FormatDate(lost.begin, "ddddd hh:nn"));
  Needed();  // both passes ran; only the first spoke
  EXPECT_TRUE(Rows().empty());
  EXPECT_TRUE(reported.empty());
}

TEST_F(WalksTest, TheCaptionChangesOnlyWithTheDateShown) {
  CheckOnly({k20M});
  for (int hour = 8; hour < 12; ++hour) {
    TestQSO q;
    q.call = "K" + std::to_string(hour) + "B";
    q.begin = At(1, hour);
    AddQSO(q);
  }
  TestQSO other;
  other.call = "K7X";
  other.begin = At(2, 8);
  AddQSO(other);
  CheckOnly({k20M, kCW});
  SetLetter("291", 3, "F");
  Needed();
  // Pass one shows two dates, pass two two more, then the caption is restored.
  ASSERT_EQ(captions.size(), 5u);
  EXPECT_EQ(captions[0], "checking needed bands and modes on " + vb::FormatDate(At(2, 8), "ddddd"));
  EXPECT_EQ(captions[1], "checking needed bands and modes on " + vb::FormatDate(At(1, 8), "ddddd"));
  EXPECT_EQ(captions[2], "checking needed countries on " + vb::FormatDate(At(2, 8), "ddddd"));
  EXPECT_EQ(captions[4], "QSL queue");
  EXPECT_EQ(yields, 10);
}

TEST_F(WalksTest, AddNeededSortsTheLogForItsNextOpeningAndTheQueueAfter) {
  std::vector<std::string> sorts;
  int logSorted = 0;
  qsl::QSLServices s = Services();
  s.sortLogForNextOpening = [&] { ++logSorted; };
  s.sortQSL = [&](const std::string& order) { sorts.push_back(order); };
  module.emplace(Queue(), s);
  AddQSO({});
  Needed();
  EXPECT_EQ(logSorted, 1);
  EXPECT_EQ(sorts, std::vector<std::string>{"OPERATOR, CALL, QSO_BEGIN"});
  Requested();
  EXPECT_EQ(logSorted, 1);  // only Add Needed
  EXPECT_EQ(sorts.size(), 2u);
}

TEST_F(WalksTest, AnEmptyLogDoesNothing) {
  int walking = 0;
  qsl::QSLServices s = Services();
  s.walkButtons = [&](bool) { ++walking; };
  module.emplace(Queue(), s);
  Needed();
  Requested();
  EXPECT_EQ(walking, 0);
  EXPECT_EQ(yields, 0);
}

TEST_F(WalksTest, AddRequestedQueuesTheRequestedQSOsNotNeededAndMarksTheirColumns) {
  CheckOnly({k20M, kPhone});
  TestQSO r, other, rtty;
  r.sent = "R";
  r.mode = "SSB";
  other.call = "K2BBB";
  other.sent = "Y";
  rtty.call = "K3CCC";
  rtty.sent = "R";
  rtty.mode = "RTTY";
  rtty.band = "40M";
  rtty.rcvd = "X";  // the received filter doesn't apply here
  rtty.begin = At(2, 8);
  AddQSO(r);
  AddQSO(other);
  AddQSO(rtty);
  SetLetter("291", k20M, "W");
  SetLetter("291", kPhone, "W");
  SetLetter("291", kRTTY, "W");  // its box is clear; the RTTY test isn't made here
  Requested();
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].call, "K3CCC");
  EXPECT_EQ(rows[1].call, "K1ABC");
  EXPECT_EQ(rows[0].needed, "");
  EXPECT_EQ(rows[1].needed, "");
  EXPECT_EQ(Letter("291", k20M), "Q");
  EXPECT_EQ(Letter("291", kPhone), "Q");
  EXPECT_EQ(Letter("291", kRTTY), "W");
  // The QSOs themselves are untouched.
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Sent), "R");
  EXPECT_EQ(QSOValue("K1ABC", qf::QSL_Rcvd), "");
  EXPECT_EQ(QSOValue("K3CCC", qf::QSL_Rcvd), "X");
  EXPECT_EQ(captions.front(), "checking " + vb::FormatDate(At(2, 8), "ddddd"));
}

TEST_F(WalksTest, AddRequestedNamesAMissingProgressRowAndQueuesTheQSOAllTheSame) {
  TestQSO lost;
  lost.call = "ZZ1A";
  lost.dxccid = "999";
  lost.sent = "R";
  AddQSO(lost);
  h.desktop.ExpectMsgBox("can't find DXCC code 999 for ZZ1A @ " +
                         vb::FormatDate(lost.begin, "ddddd hh:nn"));
  Requested();
  ASSERT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Rows()[0].call, "ZZ1A");
}

TEST_F(WalksTest, AnApostropheInACallIsReportedAndTheWalkGoesOn) {
  CheckOnly({k20M});
  TestQSO bad, good;
  bad.call = "O'K";
  bad.begin = At(2, 8);
  bad.sent = "R";
  good.sent = "R";
  AddQSO(good);
  AddQSO(bad);
  Requested();
  ASSERT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Rows()[0].call, "K1ABC");
  ASSERT_EQ(reported.size(), 1u);
  EXPECT_EQ(reported[0], "3075 VellumQSLModule.AddToQSL");
}

}  // namespace
}  // namespace vellumar::test
