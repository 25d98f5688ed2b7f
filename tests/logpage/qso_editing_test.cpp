// The life of the QSO in hand: new, the defaults of Enter, save with either button, revert,
// delete, confirm and verify, and the moves through the display.
#include <string>

#include "logpage/log_page_fixture.h"
#include "platform/vb/date_value.h"
#include "platform/vb/format.h"

namespace vellumar {
namespace {

using test::LogPageTest;

TEST_F(LogPageTest, AnEmptyLogBeginsWithTheEntryFieldsDisabledAndNewEnabled) {
  EXPECT_FALSE(box(1).Enabled());
  EXPECT_FALSE(combo(0).Enabled());
  EXPECT_FALSE(main().DateBox(19).Enabled());
  EXPECT_TRUE(main().NewCmd.Enabled());
  EXPECT_FALSE(main().SaveCmd.Enabled());
  EXPECT_FALSE(main().ConfirmCmd.Enabled());
  EXPECT_FALSE(main().VerifyCmd.Enabled());
}

TEST_F(LogPageTest, NewWritesAnEmptyRowAtOnceAndFocusesTheCallsign) {
  main().NewCmd.UserClick();
  EXPECT_EQ(RowsInFile(), 1);
  EXPECT_TRUE(box(1).Enabled());
  EXPECT_TRUE(box(1).HasFocus());
  EXPECT_EQ(log().EditMode(), db::dbEditInProgress);
  EXPECT_FALSE(app->module.RecordModified());
  EXPECT_FALSE(main().CommandBusy);
  EXPECT_EQ(main().MousePointer(), ui::vbDefault);
}

TEST_F(LogPageTest, EnterInTheCallsignFillsTheQSOsDefaults) {
  h.setup().TransmitPower.SetText("100");
  h.setup().QSLMsg.SetText("TNX QSO");
  main().NewCmd.UserClick();
  Type(1, "k2aw");
  EXPECT_EQ(box(1).Text(), "K2AW");  // typed upper case
  Enter(1);
  EXPECT_EQ(box(7).Text(), "K1ABC");
  EXPECT_EQ(box(18).Text(), "100");
  EXPECT_EQ(box(21).Text(), "TNX QSO");
  EXPECT_EQ(box(19).Text(), vb::FormatDate(vb::DateSerial(2024, 3, 15) + vb::TimeSerial(8, 30, 0),
                                           "ddddd hh:nn:ss"));
  EXPECT_EQ(box(3).Text(), "291");
  EXPECT_EQ(box(2).Text(), "K");
  EXPECT_EQ(combo(2).Text(), "K");
  EXPECT_EQ(box(22).Text(), "NA");
  EXPECT_EQ(combo(22).Text(), "NA");
  EXPECT_EQ(box(24).Text(), "5");
  EXPECT_EQ(box(23).Text(), "8");
  EXPECT_EQ(main().QSOFrame.Caption(), "QSO: United States");
  EXPECT_TRUE(box(14).HasFocus());  // no contest: the report sent is next
  EXPECT_TRUE(app->module.RecordModified());
  EXPECT_EQ(main().QSOFrame.ForeColor(), 0xFF0000u);  // blue while modified
}

TEST_F(LogPageTest, RunModeDefaultsTheReportsByMode) {
  h.setup().RunCheck.SetValue(1);
  app->module.SetPrevFieldValue(5, "SSB");
  main().NewCmd.UserClick();
  Type(1, "G3XYZ");
  box(1).UserKey(ui::vbKeyReturn, 0, 0);  // the key alone: no Enter character, no defaults
  EXPECT_EQ(box(14).Text(), "");
  Enter(1);
  // In Run-mode one Enter logs the QSO with its defaults and opens the next.
  EXPECT_EQ(FileValue("G3XYZ", "RST_Sent"), "59");
  EXPECT_EQ(FileValue("G3XYZ", "RST_Rcvd"), "59");
  EXPECT_EQ(FileValue("G3XYZ", "Mode"), "SSB");
  EXPECT_EQ(box(1).Text(), "");
  EXPECT_EQ(RowsInFile(), 2);
}

TEST_F(LogPageTest, TheRememberedFrequencyGivesTheBand) {
  main().NewCmd.UserClick();
  Type(4, "14.025");
  EXPECT_EQ(box(0).Text(), "20M");
  Type(1, "K2AA");
  Enter(1);
  main().SaveCmd.UserClick();
  main().NewCmd.UserClick();
  Type(1, "K3BB");
  Enter(1);
  EXPECT_EQ(box(4).Text(), "14.025");
  EXPECT_EQ(box(0).Text(), "20M");
  EXPECT_EQ(combo(0).Text(), "20M");
}

TEST_F(LogPageTest, WithoutAFrequencyTheBandIsEmptiedEvenWhenPicked) {
  // No frequency typed and none remembered: the band picked from the list doesn't survive the
  // callsign's Enter, since the band is always the frequency's.
  main().NewCmd.UserClick();
  Pick(0, "20M");
  ASSERT_EQ(box(0).Text(), "20M");
  Type(1, "K2AA");
  Enter(1);
  EXPECT_EQ(box(4).Text(), "");
  EXPECT_EQ(box(0).Text(), "");
  EXPECT_EQ(combo(0).ListIndex(), 0);
}

TEST_F(LogPageTest, AFrequencyOutsideEveryBandGivesNoBand) {
  main().NewCmd.UserClick();
  Type(4, "5.3715");  // 60 m is in no band of the table
  Type(1, "K2AA");
  Enter(1);
  main().SaveCmd.UserClick();
  main().NewCmd.UserClick();
  Pick(0, "40M");
  Type(1, "K3BB");
  Enter(1);
  EXPECT_EQ(box(4).Text(), "5.3715");  // remembered
  EXPECT_EQ(box(0).Text(), "");
}

TEST_F(LogPageTest, LeftClickOnSaveStaysOnTheSavedQSO) {
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  main().SaveCmd.UserClick();
  EXPECT_EQ(FileValue("K2AA", "DXCCID"), "291");
  EXPECT_EQ(box(1).Text(), "K2AA");
  EXPECT_EQ(RowsInFile(), 1);
  EXPECT_FALSE(app->module.RecordModified());
  EXPECT_EQ(main().QSOFrame.ForeColor(), 0u);
  EXPECT_FALSE(main().SaveCmd.Enabled());
}

TEST_F(LogPageTest, RightClickOnSaveSavesAndStartsANewQSO) {
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  RightClick(main().SaveCmd);
  EXPECT_EQ(FileValue("K2AA", "Call"), "K2AA");
  EXPECT_EQ(RowsInFile(), 2);
  EXPECT_EQ(box(1).Text(), "");
  EXPECT_EQ(combo(2).ListIndex(), 0);
  EXPECT_TRUE(box(1).HasFocus());
  EXPECT_EQ(main().SaveButton, 0);  // forgotten: an Alt+S afterwards is a left-button save
}

TEST_F(LogPageTest, CtrlSSavesAndCtrlNBeginsTheNextQSO) {
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  Ctrl(14, 'S');
  EXPECT_EQ(FileValue("K2AA", "Call"), "K2AA");
  Ctrl(1, 'N');
  EXPECT_EQ(RowsInFile(), 2);
  EXPECT_EQ(box(1).Text(), "");
}

TEST_F(LogPageTest, ASaveCountsTheQSOIntoProgress) {
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  Pick(0, "20M");
  Pick(5, "CW");
  main().SaveCmd.UserClick();
  EXPECT_EQ(Letter("291", "20M"), "W");
  EXPECT_EQ(Letter("291", "CW"), "W");
  EXPECT_EQ(Letter("291", "PHONE"), "");
  // The Check Progress grid stands on the entity just counted.
  EXPECT_EQ(main().ProgressPosition.Recordset().Fields("CountryCode").Value().ToStringOrEmpty(),
            "291");
}

TEST_F(LogPageTest, SavingABrokenQSOByHandRepairsIt) {
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  Type(32, "Y");
  // The count into Progress would clear the mark of a countable QSO too; with no Progress open
  // it is skipped, so only the save itself can have cleared it.
  main().ProgressPosition.SetRecordset(db::Recordset());
  main().SaveCmd.UserClick();
  EXPECT_EQ(FileValue("K2AA", "BROKEN"), "");
  EXPECT_EQ(box(32).Text(), "");
}

TEST_F(LogPageTest, AQSOOfNoKnownEntityIsMarkedBroken) {
  main().NewCmd.UserClick();
  Type(1, "JA1AA");  // not in the small DXCC database
  Enter(1);
  EXPECT_EQ(box(3).Text(), "");
  main().SaveCmd.UserClick();
  EXPECT_EQ(FileValue("JA1AA", "BROKEN"), "Y");
}

TEST_F(LogPageTest, RevertReloadsTheRow) {
  LogQSO("K2AA");
  Type(6, "Bob");
  EXPECT_TRUE(app->module.RecordModified());
  main().RevertCmd.UserClick();
  EXPECT_EQ(box(6).Text(), "");
  EXPECT_FALSE(app->module.RecordModified());
  EXPECT_TRUE(box(1).HasFocus());
  EXPECT_EQ(FileValue("K2AA", "Name"), "");
}

TEST_F(LogPageTest, AMissingEndTimeIsTheStartTimeWithoutAutomaticTimes) {
  h.setup().AutoSetDateTimeCheck.SetValue(0);
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  EXPECT_EQ(box(19).Text(), "");  // no automatic start time either
  main().DateBox(19).UserSetText("3/15/2024 08:00");
  main().DateBox(19).UserKey('0', 0, 0);
  main().SaveCmd.UserClick();
  EXPECT_EQ(box(20).Text(), box(19).Text());
  EXPECT_EQ(FileValue("K2AA", "QSO_End"), FileValue("K2AA", "QSO_Begin"));
}

TEST_F(LogPageTest, AMissingEndTimeIsNowWithAutomaticTimes) {
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  h.clock.AdvanceMs(3 * 60000);
  main().SaveCmd.UserClick();
  EXPECT_EQ(box(20).Text(), vb::FormatDate(vb::DateSerial(2024, 3, 15) + vb::TimeSerial(8, 33, 0),
                                           "ddddd hh:nn:ss"));
}

class DeleteTest : public LogPageTest {
 protected:
  DeleteTest() {
    for (const char* call : {"K1AA", "K2BB", "K3CC"}) {
      LogQSO(call);
      h.clock.AdvanceMs(1 * 60000);
    }
  }
};

TEST_F(DeleteTest, DeletingARowLandsOnTheRowBeforeIt) {
  main().LogLastCmd.UserClick();
  EXPECT_EQ(box(1).Text(), "K3CC");
  h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes).WithButtons(ui::vbYesNo);
  main().DeleteCmd.UserClick();
  EXPECT_EQ(RowsInFile(), 2);
  EXPECT_EQ(FileValue("K3CC", "Call"), "<no QSO>");
  EXPECT_EQ(box(1).Text(), "K2BB");
  EXPECT_EQ(log().EditMode(), db::dbEditInProgress);
}

// The row landed on after a delete may itself be deleted next: each delete lands on the row
// before, and the panel and the display's row are always a live QSO.
TEST_F(DeleteTest, TwoDeletesInARowEachLandOnTheRowBefore) {
  main().LogLastCmd.UserClick();
  h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes);
  main().DeleteCmd.UserClick();
  EXPECT_EQ(box(1).Text(), "K2BB");
  h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes);
  main().DeleteCmd.UserClick();
  EXPECT_EQ(RowsInFile(), 1);
  EXPECT_EQ(box(1).Text(), "K1AA");
  EXPECT_EQ(main().LogPosition.Recordset().Fields("Call").Value().ToStringOrEmpty(), "K1AA");
}

// The operator saves a new QSO and deletes it at once, without moving: the delete lands on the
// row before it, never on the deleted row.
TEST_F(DeleteTest, DeletingTheQSOJustSavedLandsOnTheRowBefore) {
  LogQSO("K4DD");
  EXPECT_EQ(box(1).Text(), "K4DD");
  h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes);
  main().DeleteCmd.UserClick();
  EXPECT_EQ(RowsInFile(), 3);
  EXPECT_EQ(FileValue("K4DD", "Call"), "<no QSO>");
  EXPECT_EQ(box(1).Text(), "K3CC");
  EXPECT_EQ(main().LogPosition.Recordset().Fields("Call").Value().ToStringOrEmpty(), "K3CC");
}

// The newest QSO deleted, then new QSOs logged: each is a row of its own (the file never gives
// the deleted row's place to the next one while the display holds it), the QSO the delete landed
// on keeps its own, and a delete of the QSO just saved lands on a live row.
TEST_F(DeleteTest, NewQSOsAfterDeletingTheNewestKeepEveryOtherQSO) {
  for (const char* call : {"K4DD", "K5EE", "K6FF"}) LogQSO(call);
  h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes);
  main().DeleteCmd.UserClick();
  EXPECT_EQ(box(1).Text(), "K5EE");
  for (const char* call : {"K7GG", "K8HH"}) LogQSO(call);
  EXPECT_EQ(FileValue("K5EE", "Call"), "K5EE");
  EXPECT_EQ(FileValue("K7GG", "Call"), "K7GG");
  EXPECT_EQ(RowsInFile(), 7);
  h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes);
  main().DeleteCmd.UserClick();
  EXPECT_EQ(FileValue("K8HH", "Call"), "<no QSO>");
  EXPECT_EQ(box(1).Text(), "K7GG");
  EXPECT_EQ(main().LogPosition.Recordset().Fields("Call").Value().ToStringOrEmpty(), "K7GG");
  EXPECT_EQ(RowsInFile(), 6);
}

TEST_F(DeleteTest, DeletingTheFirstRowLandsOnTheNewFirst) {
  main().LogFirstCmd.UserClick();
  EXPECT_EQ(box(1).Text(), "K1AA");
  h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbYes);
  main().DeleteCmd.UserClick();
  EXPECT_EQ(box(1).Text(), "K2BB");
  EXPECT_EQ(RowsInFile(), 2);
}

TEST_F(DeleteTest, AnsweringNoDeletesNothingAndPositionsAsADeleteWould) {
  main().LogLastCmd.UserClick();
  h.desktop.ExpectMsgBox("Delete current QSO?", ui::vbNo);
  main().DeleteCmd.UserClick();
  EXPECT_EQ(RowsInFile(), 3);
  EXPECT_EQ(box(1).Text(), "K2BB");
}

TEST_F(DeleteTest, WithoutConfirmationTheRowGoesAtOnce) {
  h.setup().ConfirmDeleteCheck.SetValue(0);
  main().LogLastCmd.UserClick();
  main().DeleteCmd.UserClick();  // the scripted desktop fails the test on any question
  EXPECT_EQ(RowsInFile(), 2);
}

TEST_F(DeleteTest, RightClickDeletesTheWholeDisplayAfterOneQuestion) {
  h.desktop.ExpectMsgBox("Delete 3 Log Page QSOs?", ui::vbYes).WithButtons(ui::vbYesNo);
  RightClick(main().DeleteCmd);
  EXPECT_EQ(RowsInFile(), 0);
  EXPECT_TRUE(app->module.LogOpen());
  EXPECT_FALSE(box(1).Enabled());
  EXPECT_EQ(main().DeleteButton, 0);
}

TEST_F(DeleteTest, RightClickAnsweredNoKeepsEverything) {
  h.desktop.ExpectMsgBox("Delete 3 Log Page QSOs?", ui::vbNo);
  RightClick(main().DeleteCmd);
  EXPECT_EQ(RowsInFile(), 3);
}

TEST_F(DeleteTest, DeletingTheOnlyQSOReopensTheEmptyLog) {
  h.setup().ConfirmDeleteCheck.SetValue(0);
  main().DeleteCmd.UserClick();
  main().DeleteCmd.UserClick();
  main().DeleteCmd.UserClick();
  EXPECT_EQ(RowsInFile(), 0);
  EXPECT_TRUE(app->module.LogOpen());
  EXPECT_FALSE(box(1).Enabled());
  EXPECT_FALSE(main().DeleteCmd.Enabled());
  EXPECT_TRUE(main().NewCmd.Enabled());
}

TEST_F(DeleteTest, ADeleteLeavesProgressAlone) {
  h.setup().ConfirmDeleteCheck.SetValue(0);
  main().LogLastCmd.UserClick();
  Pick(0, "20M");
  main().SaveCmd.UserClick();
  ASSERT_EQ(Letter("291", "20M"), "W");
  main().DeleteCmd.UserClick();
  EXPECT_EQ(Letter("291", "20M"), "W");
}

TEST_F(DeleteTest, TheMovesStopAtTheEnds) {
  main().LogFirstCmd.UserClick();
  main().LogPrevCmd.UserClick();
  EXPECT_EQ(box(1).Text(), "K1AA");
  main().LogNextCmd.UserClick();
  EXPECT_EQ(box(1).Text(), "K2BB");
  main().LogNextCmd.UserClick();
  main().LogNextCmd.UserClick();
  EXPECT_EQ(box(1).Text(), "K3CC");
  EXPECT_FALSE(log().EOF_());
  // Page keys in a slot move too.
  box(6).UserKey(ui::vbKeyHome);
  EXPECT_EQ(box(1).Text(), "K1AA");
  box(6).UserKey(ui::vbKeyPageDown);
  EXPECT_EQ(box(1).Text(), "K2BB");
  box(6).UserKey(ui::vbKeyEnd);
  EXPECT_EQ(box(1).Text(), "K3CC");
  box(6).UserKey(ui::vbKeyPageUp);
  EXPECT_EQ(box(1).Text(), "K2BB");
  EXPECT_FALSE(app->module.RecordModified());
}

TEST_F(DeleteTest, AMoveDropsAnUnsavedEdit) {
  main().LogLastCmd.UserClick();
  Type(6, "Bob");
  main().LogFirstCmd.UserClick();
  main().LogLastCmd.UserClick();
  EXPECT_EQ(box(6).Text(), "");
  EXPECT_FALSE(app->module.RecordModified());
  EXPECT_EQ(FileValue("K3CC", "Name"), "");
}

TEST_F(LogPageTest, ConfirmMarksTheCardReceivedAndSaves) {
  LogQSO("K2AA");
  main().ConfirmCmd.UserClick();
  EXPECT_EQ(FileValue("K2AA", "QSL_Rcvd"), "Y");
  EXPECT_EQ(FileValue("K2AA", "QSL_Sent"), "R");
  EXPECT_EQ(box(17).Text(), "03/15/24");  // a two-digit year, unlike a double click
  EXPECT_EQ(FileValue("K2AA", "QSLRDATE"), "03/15/24");
  EXPECT_TRUE(main().FilterField.HasFocus());
  EXPECT_FALSE(main().ConfirmCmd.Enabled());
  EXPECT_TRUE(main().VerifyCmd.Enabled());
  main().DateBox(17).UserDblClick();
  EXPECT_EQ(box(17).Text(), vb::FormatDate(vb::DateSerial(2024, 3, 15), "ddddd"));
}

TEST_F(LogPageTest, ConfirmKeepsASentYes) {
  LogQSO("K2AA");
  Pick(9, "Y");
  main().ConfirmCmd.UserClick();
  EXPECT_EQ(FileValue("K2AA", "QSL_Sent"), "Y");
}

TEST_F(LogPageTest, AConfirmedCardOnATrackedBandIsWorthVerifying) {
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  Pick(0, "20M");
  Pick(5, "CW");
  main().SaveCmd.UserClick();
  h.setup().AwardCheck(7).SetValue(1);  // 20M tracked
  h.desktop.ExpectMsgBox("Send this QSL card to the DXCC desk!").WithTitle("Vellumar");
  main().ConfirmCmd.UserClick();
  EXPECT_EQ(Letter("291", "20M"), "F");
  main().VerifyCmd.UserClick();
  EXPECT_EQ(FileValue("K2AA", "QSL_Rcvd"), "V");
  EXPECT_EQ(Letter("291", "20M"), "V");
  EXPECT_EQ(Letter("291", "CW"), "V");
}

TEST_F(LogPageTest, APSKCardOnAVerifiedBandIsNotWorthVerifying) {
  h.setup().AwardCheck(7).SetValue(1);
  h.setup().AwardCheck(17).SetValue(1);
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  Pick(0, "20M");
  Pick(5, "PSK");
  Pick(8, "V");
  main().SaveCmd.UserClick();
  ASSERT_EQ(Letter("291", "20M"), "V");
  ASSERT_EQ(Letter("291", "PSK"), "F");
  main().NewCmd.UserClick();
  Type(1, "K3BB");
  Enter(1);
  Pick(0, "20M");
  Pick(5, "PSK");
  EXPECT_FALSE(main().VerificationNeeded());
  main().ConfirmCmd.UserClick();  // no message: the scripted desktop would fail the test
}

TEST_F(LogPageTest, AnUnknownCodeIsReportedWhenAskingAboutVerification) {
  LogQSO("K2AA");
  main().Fieldbox(3).SetText("999");
  h.desktop.ExpectMsgBoxStartingWith("can't find DXCC code 999 for K2AA @ ");
  EXPECT_FALSE(main().VerificationNeeded());
}

TEST_F(LogPageTest, InAContestTheSerialSentCountsUp) {
  main().NewCmd.UserClick();
  Type(27, "CQWW");
  Type(1, "K2AA");
  Enter(1);
  EXPECT_EQ(box(30).Text(), "1");
  EXPECT_TRUE(box(29).HasFocus());  // the serial received is next in a contest
  main().SaveCmd.UserClick();
  main().NewCmd.UserClick();
  Type(1, "K3BB");
  Enter(1);
  EXPECT_EQ(box(27).Text(), "CQWW");
  EXPECT_EQ(box(30).Text(), "2");
}

TEST_F(LogPageTest, InAContestASerialThatIsntANumberStays) {
  main().NewCmd.UserClick();
  Type(27, "CQWW");
  Type(30, "A7");
  Type(1, "K2AA");
  Enter(1);
  EXPECT_EQ(box(30).Text(), "A7");
}

TEST_F(LogPageTest, ASecondClickWhileACommandRunsDoesNothing) {
  LogQSO("K2AA");
  main().CommandBusy = true;
  main().NewCmd.UserClick();
  main().LogFirstCmd.UserClick();
  EXPECT_EQ(RowsInFile(), 1);
}

TEST_F(LogPageTest, TheRememberedValuesSurviveARestart) {
  main().NewCmd.UserClick();
  Type(4, "7.010");
  Pick(5, "CW");
  Type(27, "ARRL-DX");
  Type(1, "K2AA");
  Enter(1);
  main().SaveCmd.UserClick();
  app->module.CloseLog();
  EXPECT_EQ(h.Setting("Configuration", "PrevFieldValue4"), "7.010");
  EXPECT_EQ(h.Setting("Configuration", "PrevFieldValue5"), "CW");
  EXPECT_EQ(h.Setting("Configuration", "PrevFieldValue27"), "ARRL-DX");
  EXPECT_EQ(h.Setting("Configuration", "PrevFieldValue30"), "1");
  EXPECT_EQ(h.Setting("Configuration", "PrevFieldValue1"), "<missing>");
}

}  // namespace
}  // namespace vellumar
