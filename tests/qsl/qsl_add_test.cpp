// AddToQSL: a QSO enters the queue once, with the per-call count on every row of its call.
#include <gtest/gtest.h>

#include "qsl/qsl_module.h"
#include "qsl_world.h"

namespace vellumar::test {
namespace {

class AddToQSLTest : public QSLWorld {};

TEST_F(AddToQSLTest, ANewQSOBecomesOneRowFilledFromIt) {
  TestQSO q;
  q.qslMsg = "TNX QSO";
  q.via = "W1XYZ";
  q.address = "1 Main St";
  q.rcvd = "N";
  AddQSO(q);
  Add("K1ABC", false);
  ASSERT_EQ(Rows().size(), 1u);
  db::Recordset& r = Queue();
  auto t = [&](const char* n) { return r.Fields(n).Value().ToStringOrEmpty(); };
  EXPECT_EQ(t("CALL"), "K1ABC");
  EXPECT_EQ(t("DXCC"), "K");
  EXPECT_EQ(r.Fields("QSO_BEGIN").Value().ToDate(), q.begin);
  EXPECT_EQ(t("RST_SENT"), "599");
  EXPECT_EQ(t("RST_RCVD"), "579");
  EXPECT_EQ(t("MODE"), "CW");
  EXPECT_EQ(t("FREQ"), "14.025");
  EXPECT_EQ(t("BAND"), "20M");
  EXPECT_EQ(t("VIA"), "W1XYZ");
  EXPECT_EQ(t("OPERATOR"), "K1ABC");
  EXPECT_EQ(t("QSL_RCVD"), "N");
  EXPECT_EQ(t("INCIDENCE"), "1");
  EXPECT_EQ(t("NEEDED"), "");
  EXPECT_TRUE(r.Fields("QSL_DATE").Value().IsNull());
  EXPECT_EQ(t("PRINT_PAGE"), "");
  EXPECT_EQ(t("PRINT_QUAD"), "");
  EXPECT_EQ(t("NOTES"), "TNX QSO");
  EXPECT_EQ(t("ENABLED"), "Y");
  EXPECT_EQ(t("ADDRESS"), "1 Main St");
  EXPECT_EQ(t("UNIQUE"), "Y");
  EXPECT_EQ(t("MYQTHID"), "");
  EXPECT_TRUE(reported.empty());
}

TEST_F(AddToQSLTest, TheSameQSOTwiceIsOneRowWhoseNeededOnlyRises) {
  AddQSO({});
  Add("K1ABC", false);
  Add("K1ABC", false);
  ASSERT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Rows()[0].needed, "");
  Add("K1ABC", true);
  ASSERT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Rows()[0].needed, "Y");
  EXPECT_EQ(Rows()[0].incidence, "1");
  Add("K1ABC", false);  // never lowered
  EXPECT_EQ(Rows()[0].needed, "Y");
}

TEST_F(AddToQSLTest, AQueuedRowKeepsItsDateAndEnabledWhenItsNeededRises) {
  AddQSO({});
  Add("K1ABC", false);
  Queue().MoveFirst();
  Queue().Edit();
  Queue().Fields("ENABLED").SetValue("N");
  Queue().Fields("QSL_DATE").SetValue(vb::Variant::FromDate(At(10, 0)));
  Queue().Update();
  Add("K1ABC", true);
  ASSERT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Rows()[0].needed, "Y");
  EXPECT_EQ(Rows()[0].enabled, "N");
  EXPECT_TRUE(Rows()[0].done);
}

TEST_F(AddToQSLTest, TwoQSOsOfACallAtOneMomentOnTwoFrequenciesAreTwoRowsCountedTwice) {
  TestQSO a, b;
  b.freq = "14.030";
  AddQSO(a);
  AddQSO(b);
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  Module().AddToQSL(rs, true);
  rs.MoveNext();
  Module().AddToQSL(rs, false);
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].incidence, "2");
  EXPECT_EQ(rows[1].incidence, "2");
  EXPECT_EQ(rows[0].unique, "Y");
  EXPECT_EQ(rows[1].unique, "N");
  EXPECT_EQ(rows[0].freq, "14.025");
  EXPECT_EQ(rows[1].freq, "14.030");
}

TEST_F(AddToQSLTest, AnotherModeOrStartIsAnotherRow) {
  TestQSO a, b, c;
  b.mode = "SSB";
  c.begin = At(2, 9);
  AddQSO(a);
  AddQSO(b);
  AddQSO(c);
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  for (; !rs.EOF_(); rs.MoveNext()) Module().AddToQSL(rs, false);
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 3u);
  for (const auto& row : rows) EXPECT_EQ(row.incidence, "3");
  EXPECT_EQ(rows[2].unique, "N");
}

TEST_F(AddToQSLTest, AModeTooWideForTheQueueIsRefusedNamingModeAndTheCountStaysRaised) {
  TestQSO a, b;
  b.mode = "PSK31";
  b.begin = At(2, 9);
  AddQSO(a);
  AddQSO(b);
  Add("K1ABC", false, a.begin);
  h.desktop.ExpectMsgBoxStartingWith("Too much data in MODE field of QSO with K1ABC on ");
  Add("K1ABC", false, b.begin);
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 1u);  // the refused row isn't there, nor half of it
  EXPECT_EQ(rows[0].incidence, "2");
  EXPECT_TRUE(reported.empty());
}

TEST_F(AddToQSLTest, TheMessageNamesTheStartOfTheRefusedQSO) {
  TestQSO a;
  a.mode = "OLIVIA";
  AddQSO(a);
  h.desktop.ExpectMsgBox("Too much data in MODE field of QSO with K1ABC on " +
                         vb::Variant::FromDate(a.begin).ToString());
  Add("K1ABC", false);
  EXPECT_TRUE(Rows().empty());
}

TEST_F(AddToQSLTest, AnApostropheInTheCallBreaksTheFilterAndIsReportedWithoutAHalfRow) {
  TestQSO a;
  a.call = "O'K1";
  AddQSO(a);
  Add("O'K1", false);
  EXPECT_TRUE(Rows().empty());
  ASSERT_EQ(reported.size(), 1u);
  EXPECT_EQ(reported[0], "3075 VellumQSLModule.AddToQSL");
  // The queue is usable afterwards.
  AddQSO({});
  Add("K1ABC", false);
  EXPECT_EQ(Rows().size(), 1u);
}

TEST_F(AddToQSLTest, TheMyQTHIsASnapshotWithItsIDLowerCased) {
  AddQTH({"Home", "Springfield", "Hampden", "MA", "USA", "FN32", "42.1", "-72.5", "5", "8",
          "NA-001"});
  TestQSO a;
  a.myQTHID = "HOME";
  AddQSO(a);
  Add("K1ABC", false);
  // A later edit of the QTH doesn't reach the queue.
  db::Recordset qths = log.OpenRecordset("QTHs", db::dbOpenDynaset);
  qths.Edit();
  qths.Fields("City").SetValue("Elsewhere");
  qths.Update();
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].myQTHID, "home");
  EXPECT_EQ(rows[0].city, "Springfield");
  EXPECT_EQ(rows[0].iota, "NA-001");
}

TEST_F(AddToQSLTest, AnUnknownMyQTHLeavesTheQTHFieldsEmptySilently) {
  TestQSO a;
  a.myQTHID = "away";
  AddQSO(a);
  Add("K1ABC", false);
  const auto rows = Rows();
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].myQTHID, "");
  EXPECT_EQ(rows[0].city, "");
  EXPECT_TRUE(reported.empty());
}

TEST_F(AddToQSLTest, TheAddedRowIsTheCurrentOneAndTheCaptionIsRefreshed) {
  int captions = 0;
  qsl::QSLServices s = Services();
  s.updateCaption = [&] { ++captions; };
  module.emplace(Queue(), s);
  TestQSO a, b;
  a.call = "G3AAA";
  a.dxccid = "223";
  AddQSO(a);
  AddQSO(b);
  Add("G3AAA", false);
  Add("K1ABC", false);
  EXPECT_EQ(Queue().Fields("CALL").Value().ToString(), "K1ABC");
  EXPECT_EQ(captions, 2);
}

TEST(ModeCountsAsRTTY, TheDigitalModesCountInAnyCase) {
  for (const char* m : {"RTTY", "hell", "MFSK", "mt63", "PAC", "pkt", "Throb", "tor", "PSK",
                        "psk31", "QPSK", "bpsk"})
    EXPECT_TRUE(qsl::ModeCountsAsRTTY(m)) << m;
  for (const char* m : {"CW", "SSB", "FT8", "PSK63", "", "rtty "})
    EXPECT_FALSE(qsl::ModeCountsAsRTTY(m)) << m;
}

}  // namespace
}  // namespace vellumar::test
