// How the slots react to typing, lists, date boxes, double clicks and drops, and what makes a
// QSO valid.
#include <string>

#include "logpage/log_page_fixture.h"
#include "platform/vb/date_value.h"
#include "platform/vb/format.h"

namespace vellumar {
namespace {

using test::LogPageTest;

class FieldTest : public LogPageTest {
 protected:
  FieldTest() {
    main().NewCmd.UserClick();
    Type(1, "K2AA");
    Enter(1);
  }
  void TypeDate(int index, const std::string& text) {
    main().DateBox(index).UserSetText(text);
    main().DateBox(index).UserKey('0', 0, 0);  // the key's release copies the text to the slot
  }
};

TEST_F(FieldTest, AQSOYearOf1929IsAnErrorAnd1930IsNot) {
  TypeDate(19, "12/31/1929 10:00");
  EXPECT_EQ(box(19).Text(), "12/31/1929 10:00");
  EXPECT_FALSE(main().ValidField(19));
  EXPECT_TRUE(main().FieldInError[19]);
  EXPECT_EQ(main().FieldLabel(19).ForeColor(), 255u);
  TypeDate(19, "1/1/1930 10:00");
  EXPECT_TRUE(main().ValidField(19));
  EXPECT_FALSE(main().FieldInError[19]);
  EXPECT_EQ(main().FieldLabel(19).ForeColor(), 0u);
}

TEST_F(FieldTest, AnEmptyOrUnreadableQSOTimeIsAnError) {
  TypeDate(20, "");
  EXPECT_FALSE(main().ValidField(20));
  TypeDate(20, "not a date");
  EXPECT_FALSE(main().ValidField(20));
}

TEST_F(FieldTest, ACardDateOfElevenCharactersPassesAndOfTwelveDoesNot) {
  TypeDate(16, "15-Jan-2002");
  EXPECT_TRUE(main().ValidField(16));
  TypeDate(16, "15-Jan-2002 ");  // a date too, but longer than the field
  EXPECT_FALSE(main().ValidField(16));
  TypeDate(17, "");
  EXPECT_TRUE(main().ValidField(17));
  TypeDate(17, "1/2/1920");
  EXPECT_FALSE(main().ValidField(17));
}

TEST_F(FieldTest, ValidFieldsShowsEveryFaultyLabelAtOnce) {
  box(6).UserSetText("A name much longer than twenty");
  box(12).UserSetText("A QTH much longer than thirty characters");
  TypeDate(19, "1/1/1900");
  main().ErrorTimer.SetEnabled(false);
  EXPECT_FALSE(main().ValidFields());
  EXPECT_TRUE(main().FieldInError[6]);
  EXPECT_TRUE(main().FieldInError[12]);
  EXPECT_TRUE(main().FieldInError[19]);
  EXPECT_FALSE(main().FieldInError[1]);
  EXPECT_TRUE(main().ErrorTimer.Enabled());
  // The labels in error blink; the others stay.
  h.loop.Advance(250);
  const bool first = main().FieldLabel(6).Visible();
  h.loop.Advance(250);
  EXPECT_NE(main().FieldLabel(6).Visible(), first);
  EXPECT_TRUE(main().FieldLabel(1).Visible());
}

TEST_F(FieldTest, AnAddressIsAlwaysValid) {
  box(34).UserSetText(std::string(3000, 'x'));
  EXPECT_TRUE(main().ValidField(34));
}

TEST_F(FieldTest, AnInvalidQSOStaysUnsavedAndUnchanged) {
  main().SaveCmd.UserClick();
  ASSERT_EQ(FileValue("K2AA", "Name"), "");
  box(6).UserSetText("A name much longer than twenty");
  TypeDate(19, "1/1/1900");
  main().SaveCmd.UserClick();
  EXPECT_EQ(FileValue("K2AA", "Name"), "");
  EXPECT_NE(FileValue("K2AA", "QSO_Begin").find("2024"), std::string::npos);
  EXPECT_TRUE(app->module.RecordModified());
  EXPECT_FALSE(main().CommandBusy);
  EXPECT_EQ(main().MousePointer(), ui::vbDefault);
  // Corrected, it saves.
  box(6).UserSetText("Hiram");
  TypeDate(19, "3/15/2024 08:00");
  main().SaveCmd.UserClick();
  EXPECT_EQ(FileValue("K2AA", "Name"), "Hiram");
  EXPECT_FALSE(main().FieldErrors());
}

TEST_F(FieldTest, AnEmptyCallsignBlocksTheSave) {
  main().SaveCmd.UserClick();
  box(1).SetSelStart(0);
  box(1).SetSelLength(4);
  box(1).UserKey(ui::vbKeyDelete);
  EXPECT_EQ(box(1).Text(), "");
  main().SaveCmd.UserClick();
  EXPECT_TRUE(main().FieldInError[1]);
  EXPECT_EQ(FileValue("K2AA", "Call"), "K2AA");
}

TEST_F(FieldTest, ASecondPointInTheFrequencyIsDropped) {
  Type(4, "14.02.5");
  EXPECT_EQ(box(4).Text(), "14.025");
  Type(4, "x");
  EXPECT_EQ(box(4).Text(), "14.025");
  box(4).UserKey(ui::vbKeyBack, 0, ui::vbKeyBack);
  EXPECT_EQ(box(4).Text(), "14.02");
}

TEST_F(FieldTest, TheDXCCCodeTakesDigitsOnly) {
  box(3).UserSetText("");
  Type(3, "2a2-3");
  EXPECT_EQ(box(3).Text(), "223");
  EXPECT_EQ(combo(2).Text(), "G");  // the list follows the code
}

TEST_F(FieldTest, ACodeTheDatabaseDoesntHoldClearsThePrefixList) {
  box(3).UserSetText("");
  Type(3, "999");
  EXPECT_EQ(combo(2).ListIndex(), 0);
  EXPECT_EQ(combo(2).Text(), "");
}

// A DXCC database whose fourth prefix, 4U1X, has no entity code: its list item's data is 0.
class UncodedPrefixTest : public LogPageTest {
 protected:
  UncodedPrefixTest() : LogPageTest(test::ProgramHarness::DXCC::kSmallWithUncoded) {
    main().NewCmd.UserClick();
    Type(1, "K2AA");
    Enter(1);
  }
};

TEST_F(UncodedPrefixTest, APrefixWithItemData0LeavesTheCodeEmpty) {
  ASSERT_EQ(box(3).Text(), "291");
  Pick(2, "4U1X");
  ASSERT_EQ(combo(2).Text(), "4U1X");
  EXPECT_EQ(combo(2).ItemData(combo(2).ListIndex()), 0);
  EXPECT_EQ(box(2).Text(), "4U1X");
  EXPECT_EQ(box(3).Text(), "");  // not "0"
  Pick(2, "VP2E");
  EXPECT_EQ(box(3).Text(), "12");
  EXPECT_EQ(box(2).Text(), "VP2E");
  EXPECT_EQ(main().QSOFrame.Caption(), "QSO: Anguilla");
}

TEST_F(FieldTest, AModeInNoListShowsTheEmptyItemAndKeepsTheText) {
  Pick(5, "CW");
  // The operator selects the box's "CW" and types over it.
  box(5).SetSelStart(0);
  box(5).SetSelLength(2);
  Type(5, "FT8");
  EXPECT_EQ(combo(5).ListIndex(), 0);
  EXPECT_EQ(box(5).Text(), "FT8");
  EXPECT_FALSE(main().ComboEchoIgnored[5]);  // the combo's click took the flag back
  main().SaveCmd.UserClick();
  EXPECT_EQ(FileValue("K2AA", "Mode"), "FT8");
  EXPECT_EQ(combo(5).ListIndex(), 0);
}

TEST_F(FieldTest, ABandInNoListIsTypedAndSaved) {
  Type(0, "60M");
  EXPECT_EQ(combo(0).ListIndex(), 0);
  main().SaveCmd.UserClick();
  EXPECT_EQ(FileValue("K2AA", "Band"), "60M");
  EXPECT_EQ(box(0).Text(), "60M");
  EXPECT_EQ(combo(0).ListIndex(), 0);
}

TEST_F(FieldTest, TheListMatchIsOnTheUpperCasedTextExactly) {
  Type(5, "cw");
  EXPECT_EQ(combo(5).Text(), "CW");  // "CW" is the upper-cased "cw"
  EXPECT_EQ(box(5).Text(), "cw");
  // The list's "Hell" is in mixed case: the upper-cased text "HELL" never equals it.
  for (const char* typed : {"Hell", "HELL", "hell"}) {
    SCOPED_TRACE(typed);
    box(5).UserSetText(typed);
    EXPECT_EQ(combo(5).ListIndex(), 0);
    EXPECT_EQ(box(5).Text(), typed);
  }
}

TEST_F(FieldTest, AValueInTheListMovesTheCombo) {
  Type(5, "rtty");
  EXPECT_EQ(combo(5).Text(), "RTTY");
  EXPECT_EQ(box(5).Text(), "rtty");
}

TEST_F(FieldTest, APickFromAListIsTheSlotsValueAndTheNextQSOs) {
  Pick(5, "SSB");
  EXPECT_EQ(box(5).Text(), "SSB");
  EXPECT_EQ(app->module.GetPrevFieldValue(5), "SSB");
  EXPECT_FALSE(main().FieldChanged[5]);  // the echo in Fieldbox_Change was taken
  EXPECT_TRUE(app->module.RecordModified());
}

TEST_F(FieldTest, ReceivingTheCardDatesItOnce) {
  Pick(8, "Y");
  EXPECT_EQ(box(17).Text(), vb::FormatDate(vb::DateSerial(2024, 3, 15), "ddddd"));
  EXPECT_TRUE(main().VerifyCmd.Enabled());
  EXPECT_FALSE(main().ConfirmCmd.Enabled());
  h.clock.AdvanceMs(48 * 3600000LL);
  Pick(8, "V");  // from "Y" to "V": the date stays, and no message
  EXPECT_EQ(box(17).Text(), vb::FormatDate(vb::DateSerial(2024, 3, 15), "ddddd"));
  EXPECT_FALSE(main().VerifyCmd.Enabled());
}

TEST_F(FieldTest, ADoubleClickOnAReportGivesTheUsualOne) {
  Pick(5, "CW");
  box(14).UserDblClick();
  EXPECT_EQ(box(14).Text(), "599");
  Pick(5, "FM");
  box(13).UserDblClick();
  EXPECT_EQ(box(13).Text(), "59");
}

TEST_F(FieldTest, ADoubleClickOnTheTimesSetsThem) {
  h.clock.AdvanceMs(10 * 60000);
  main().DateBox(20).UserDblClick();
  EXPECT_EQ(box(20).Text(), vb::FormatDate(vb::DateSerial(2024, 3, 15) + vb::TimeSerial(8, 40, 0),
                                           "ddddd hh:nn:ss"));
  // The date box shows the slot in the configured format.
  EXPECT_EQ(main().DateBox(20).Text(),
            vb::FormatDate(vb::DateSerial(2024, 3, 15) + vb::TimeSerial(8, 40, 0),
                           h.setup().GetDateTimeFormat()));
  h.setup().AutoSetDateTimeCheck.SetValue(0);
  main().DateBox(20).UserDblClick();
  EXPECT_EQ(box(20).Text(), box(19).Text());
}

TEST_F(FieldTest, ADoubleClickOnTheCallsignLooksItUp) {
  main().Fieldbox(1).UserDblClick();
  EXPECT_EQ(main().FilterField.Text(), "K2AA");
  EXPECT_EQ(app->lookupSlots.DXCCID, "291");
}

TEST_F(FieldTest, ADropFillsTheSlotWithoutMarkingTheQSOModified) {
  main().SaveCmd.UserClick();
  ASSERT_FALSE(app->module.RecordModified());
  int effect = -1;
  const std::string text = "Hiram";
  main().Fieldbox_OLEDragDrop(6, &text, effect);
  EXPECT_EQ(effect, 1);
  EXPECT_EQ(box(6).Text(), "Hiram");
  EXPECT_FALSE(app->module.RecordModified());
  EXPECT_FALSE(main().SaveCmd.Enabled());
  main().Fieldbox_OLEDragDrop(34, nullptr, effect);
  EXPECT_EQ(effect, 0);
  const std::string address = "PO Box 1";
  main().Fieldbox_OLEDragDrop(34, &address, effect);
  EXPECT_EQ(effect, 1);
  EXPECT_EQ(box(34).Text(), "PO Box 1");
  EXPECT_FALSE(app->module.RecordModified());
}

TEST_F(FieldTest, UnderCtrlOnlyNAndSAct) {
  main().SaveCmd.UserClick();
  ASSERT_FALSE(app->module.RecordModified());
  // A paste, a cut, a copy, or any other letter under Ctrl marks nothing.
  for (char letter : {'V', 'X', 'C', 'A', 'Z'}) {
    SCOPED_TRACE(letter);
    Ctrl(6, letter);
    EXPECT_FALSE(app->module.RecordModified());
    EXPECT_FALSE(main().SaveCmd.Enabled());
  }
  const long before = RowsInFile();
  Ctrl(6, 'N');
  EXPECT_EQ(RowsInFile(), before + 1);  // New wrote the next QSO's empty row
}

TEST_F(FieldTest, TheErrorMarksAreWalkedByTheGridsColumns) {
  // The default layout has eight columns: the marks of slots 0 to 7 are cleared and blink, and
  // the others are left to their slots' own changes.
  ASSERT_EQ(main().LogGridFieldCount(), 8);
  main().SetFieldError(6, true);
  main().SetFieldError(19, true);
  main().ClearFieldErrors();
  EXPECT_FALSE(main().FieldInError[6]);
  EXPECT_TRUE(main().FieldInError[19]);
  EXPECT_EQ(main().FieldLabel(19).ForeColor(), 255u);
  // The blink counts slot 19 as no error: its label stays shown and the timer stops itself.
  ASSERT_TRUE(main().ErrorTimer.Enabled());
  h.loop.Advance(300);
  EXPECT_TRUE(main().FieldLabel(19).Visible());
  EXPECT_FALSE(main().ErrorTimer.Enabled());
  // A slot within the columns blinks.
  main().SetFieldError(5, true);
  h.loop.Advance(260);
  h.loop.Advance(260);
  bool hidden = !main().FieldLabel(5).Visible();
  h.loop.Advance(260);
  hidden = hidden || !main().FieldLabel(5).Visible();
  EXPECT_TRUE(hidden);
  EXPECT_TRUE(main().ErrorTimer.Enabled());
}

TEST_F(FieldTest, AnyKeyButTheMovesMarksTheQSOModified) {
  main().SaveCmd.UserClick();
  ASSERT_FALSE(app->module.RecordModified());
  box(6).UserKey(ui::vbKeyShift);
  EXPECT_FALSE(app->module.RecordModified());
  box(6).UserKey(ui::vbKeyLeft);
  EXPECT_TRUE(app->module.RecordModified());
  EXPECT_TRUE(main().SaveCmd.Enabled());
  EXPECT_TRUE(main().RevertCmd.Enabled());
}

TEST_F(FieldTest, EnterWalksTheReportsNameQTHAndVia) {
  Enter(14);
  EXPECT_TRUE(box(13).HasFocus());
  Enter(13);
  EXPECT_TRUE(box(6).HasFocus());
  Enter(6);
  EXPECT_TRUE(box(12).HasFocus());
  Enter(12);
  EXPECT_TRUE(box(10).HasFocus());
}

TEST_F(FieldTest, EnterInAnEmptyCallsignOnlyMovesOn) {
  box(1).UserSetText("");
  box(6).SetFocus();
  Enter(1);
  EXPECT_TRUE(box(14).HasFocus());
}

TEST_F(FieldTest, TheFrequencyGivesTheBandAndAnEmptyOneNone) {
  Type(4, "3.5");
  EXPECT_EQ(box(0).Text(), "80M");
  EXPECT_EQ(combo(0).Text(), "80M");
  box(4).SetSelStart(0);
  box(4).SetSelLength(3);
  box(4).UserKey(ui::vbKeyDelete);
  EXPECT_EQ(box(4).Text(), "");
  EXPECT_EQ(box(0).Text(), "");
  EXPECT_EQ(combo(0).ListIndex(), 0);
}

}  // namespace
}  // namespace vellumar
