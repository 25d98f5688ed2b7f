// The QSL tab's queue commands on a running program, and the section "QSL" of the settings.
#include <gtest/gtest.h>

#include <string>

#include "log_page_fixture.h"
#include "platform/vb/date_value.h"

namespace vellumar::test {
namespace {

class QSLTabTest : public LogPageTest {
 protected:
  // A 20M CW QSO with `call`, saved (and counted into Progress).
  void LogCW(const std::string& call) {
    main().NewCmd.UserClick();
    Type(1, call);
    Enter(1);
    box(4).SetText("14.025");
    box(0).SetText("20M");
    box(5).SetText("CW");
    main().SaveCmd.UserClick();
  }
  long QueueRows() {
    db::Recordset& q = main().QSLPosition.Recordset();
    if (q.BOF() && q.EOF_()) return 0;
    db::Recordset c = q.Clone();
    c.MoveLast();
    return c.RecordCount();
  }
};

TEST_F(QSLTabTest, TheQueueCommandsHaveTheirCaptionsAndTips) {
  EXPECT_EQ(main().GenerateNeededCmd.Caption(), "Add Needed");
  EXPECT_EQ(main().GenerateNeededCmd.ToolTipText(),
            "add to the print queue all QSOs whose confirmation is need to pursue awards "
            "specified on the Configuration window's Awards tab");
  EXPECT_EQ(main().ClearQSLDatabaseCmd.Caption(), "Clear");
  EXPECT_EQ(main().ClearQSLDatabaseCmd.ToolTipText(), "clear all entries in the QSL queue ");
  EXPECT_EQ(main().PrintQueueFrame.Caption(), "QSL queue");
}

TEST_F(QSLTabTest, AddNeededQueuesAWorkedEntityAndUpdateLogCarriesItBack) {
  LogCW("K1ABC");
  ASSERT_EQ(Letter("291", "20M"), "W");
  main().GenerateNeededCmd.UserClick();
  ASSERT_EQ(QueueRows(), 1);
  EXPECT_EQ(FileValue("K1ABC", "QSL_Rcvd"), "R");
  EXPECT_EQ(Letter("291", "20M"), "Q");
  EXPECT_NE(main().Caption().find("[QSL queue: 1 QSL]"), std::string::npos) << main().Caption();
  EXPECT_EQ(main().PrintQueueFrame.Caption(), "QSL queue");
  EXPECT_TRUE(main().GenerateNeededCmd.Enabled());

  // The card went out on the 20th.
  db::Recordset& q = main().QSLPosition.Recordset();
  q.MoveFirst();
  q.Edit();
  q.Fields("QSL_DATE").SetValue(vb::Variant::FromDate(vb::DateSerial(2024, 3, 20)));
  q.Update();
  main().ProcessPrintedCmd.UserClick();
  EXPECT_EQ(QueueRows(), 0);
  EXPECT_EQ(FileValue("K1ABC", "QSL_Sent"), "Y");
  EXPECT_EQ(FileValue("K1ABC", "QSLSDATE"),
            vb::Variant::FromDate(vb::DateSerial(2024, 3, 20)).ToString());
  EXPECT_EQ(Letter("291", "20M"), "R");
  EXPECT_EQ(main().Caption().find("QSL queue:"), std::string::npos) << main().Caption();
}

TEST_F(QSLTabTest, StopDuringAddNeededEndsTheWalk) {
  for (const char* call : {"K1AA", "K2BB", "K3CC"}) LogCW(call);
  // Stop comes in during the first record's yield: that record is finished, no other is.
  int seen = 0;
  h.loop.Post([&] {
    ++seen;
    EXPECT_TRUE(main().StopAddCmd.Enabled());
    EXPECT_FALSE(main().GenerateNeededCmd.Enabled());
    main().StopAddCmd.UserClick();
  });
  main().GenerateNeededCmd.UserClick();
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(QueueRows(), 1);
  EXPECT_FALSE(main().StopAddCmd.Visible());
  EXPECT_TRUE(main().GenerateNeededCmd.Enabled());
  EXPECT_TRUE(main().GenerateRequestedCmd.Enabled());
}

TEST_F(QSLTabTest, ABusyWindowIgnoresTheQueueCommands) {
  LogCW("K1ABC");
  main().CommandBusy = true;
  main().GenerateNeededCmd.UserClick();
  main().ClearQSLDatabaseCmd.UserClick();  // no question
  main().CommandBusy = false;
  EXPECT_EQ(QueueRows(), 0);
}

TEST_F(QSLTabTest, ClearAsksAndUndoesTheChoice) {
  LogCW("K1ABC");
  main().GenerateNeededCmd.UserClick();
  ASSERT_EQ(QueueRows(), 1);
  h.desktop.ExpectMsgBox("delete all entries in the QSL queue?", ui::vbYes);
  main().ClearQSLDatabaseCmd.UserClick();
  EXPECT_EQ(QueueRows(), 0);
  EXPECT_EQ(Letter("291", "20M"), "W");
  EXPECT_EQ(FileValue("K1ABC", "QSL_Rcvd"), "");
}

TEST_F(QSLTabTest, TheQueueSettingsAreWrittenAsTextAtTheClose) {
  ASSERT_TRUE(app->CloseMainWindow(ui::vbFormControlMenu));
  EXPECT_EQ(h.Setting("QSL", "QSLMode"), "0");
  EXPECT_EQ(h.Setting("QSL", "QSLPrintPreview"), "0");
  EXPECT_EQ(h.Setting("QSL", "AddressMode"), "0");
  EXPECT_EQ(h.Setting("QSL", "QSLInfoUpperLeft0"), "");
  EXPECT_EQ(h.Setting("QSL", "QSLInfoLowerRight"), "");
  EXPECT_EQ(h.Setting("QSL", "NarrowTopOffset"), "0.5");
  EXPECT_EQ(h.Setting("QSL", "NarrowColumnOffset1"), "0");
  EXPECT_EQ(h.Setting("QSL", "NarrowColumnOffset2"), "2.75");
  EXPECT_EQ(h.Setting("QSL", "NarrowColumnOffset3"), "5.5");
  EXPECT_EQ(h.Setting("QSL", "NarrowLabelsPerColumn"), "10");
  EXPECT_EQ(h.Setting("QSL", "WideTopOffset"), "0.5");
  EXPECT_EQ(h.Setting("QSL", "WideColumnOffset2"), "4.125");
  EXPECT_EQ(h.Setting("QSL", "WideLabelsPerColumn"), "10");
  EXPECT_EQ(h.Setting("QSL", "EnvelopeReturnAddress4"), "");
  EXPECT_EQ(h.Setting("QSL", "EnvelopeTopOffset"), "2");
  EXPECT_EQ(h.Setting("QSL", "EnvelopeLeftOffset"), "1");
  EXPECT_EQ(h.Setting("QSL", "EnvelopeAirmail"), "1");
}

TEST_F(QSLTabTest, TheOptionsAndChecksReadBackAtTheNextStart) {
  main().QSLMode(3).SetValue(true);
  main().AddressMode(2).SetValue(true);
  main().QSLPrintPreviewCheck.SetValue(1);
  app->setup().AirmailCheck.SetValue(0);
  app->setup().QSLInfoUpperLeft(1).SetText("<mycall>");
  ASSERT_TRUE(app->CloseMainWindow(ui::vbFormControlMenu));
  EXPECT_EQ(h.Setting("QSL", "QSLMode"), "3");
  EXPECT_EQ(h.Setting("QSL", "AddressMode"), "2");
  h.app.reset();
  Application& again = h.Start();
  h.loop.Advance(300);
  EXPECT_TRUE(again.main.QSLMode(3).Value());
  EXPECT_FALSE(again.main.QSLMode(0).Value());
  EXPECT_TRUE(again.main.AddressMode(2).Value());
  EXPECT_EQ(again.main.QSLPrintPreviewCheck.Value(), 1);
  EXPECT_EQ(again.setup().AirmailCheck.Value(), 0);
  EXPECT_EQ(again.setup().QSLInfoUpperLeft(1).Text(), "<mycall>");
}

TEST_F(QSLTabTest, ANarrowOffsetChangedAloneReturnsToTheAddressPagesValue) {
  app->setup().EnvelopeNarrowTopOffset.SetText("0.75");
  app->setup().NarrowTopOffset.SetText("1.25");  // the QSL label page alone
  ASSERT_TRUE(app->CloseMainWindow(ui::vbFormControlMenu));
  EXPECT_EQ(h.Setting("QSL", "NarrowTopOffset"), "0.75");
  h.app.reset();
  Application& again = h.Start();
  h.loop.Advance(300);
  EXPECT_EQ(again.setup().NarrowTopOffset.Text(), "0.75");
  EXPECT_EQ(again.setup().EnvelopeNarrowTopOffset.Text(), "0.75");
}

}  // namespace
}  // namespace vellumar::test
