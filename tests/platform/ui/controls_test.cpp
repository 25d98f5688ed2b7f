#include "platform/ui/controls.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/ui/control_array.h"
#include "platform/ui/form.h"
#include "platform/vb/error.h"

using namespace vellumar::ui;

namespace {

struct Recorder : ControlObserver {
  std::vector<Property> seen;
  void PropertyChanged(Control&, Property p) override { seen.push_back(p); }
};

}  // namespace

TEST(TextBox, KeyEventsComeInTheRuntimesOrder) {
  TextBox box("Fieldbox", 1);
  std::vector<std::string> events;
  box.KeyDown = [&](int& code, int) { events.push_back("KeyDown " + std::to_string(code)); };
  box.KeyPress = [&](int& ascii) { events.push_back("KeyPress " + std::to_string(ascii)); };
  box.Change = [&] { events.push_back("Change " + box.Text()); };
  box.KeyUp = [&](int& code, int) { events.push_back("KeyUp " + std::to_string(code)); };
  box.UserKey('K', vbShiftMask, 'K');
  EXPECT_EQ(events,
            (std::vector<std::string>{"KeyDown 75", "KeyPress 75", "Change K", "KeyUp 75"}));
}

TEST(TextBox, KeyPressMayChangeOrSwallowTheCharacter) {
  TextBox box("Fieldbox", 1);
  box.KeyPress = [](int& ascii) {
    if (ascii >= 'a' && ascii <= 'z') ascii -= 32;  // upper-case what is typed
    if (ascii == ' ') ascii = 0;                    // no blanks
  };
  int changes = 0;
  box.Change = [&] { ++changes; };
  box.UserType("k1 abc");
  EXPECT_EQ(box.Text(), "K1ABC");
  EXPECT_EQ(changes, 5);
}

TEST(TextBox, KeyDownMaySwallowTheKey) {
  TextBox box("Fieldbox", 4);
  int presses = 0;
  box.KeyDown = [](int& code, int) {
    if (code == vbKeyReturn) code = 0;
  };
  box.KeyPress = [&](int&) { ++presses; };
  box.UserKey(vbKeyReturn, 0, 13);
  EXPECT_EQ(presses, 0);
  box.UserKey('A', 0, 'a');
  EXPECT_EQ(presses, 1);
}

TEST(TextBox, EnterRaisesKeyPressWithoutChangingTheText) {
  TextBox box("Fieldbox", 1);
  box.SetText("K1ABC");
  int ascii = -1, changes = 0;
  box.KeyPress = [&](int& a) { ascii = a; };
  box.Change = [&] { ++changes; };
  box.UserKey(vbKeyReturn, 0, 13);
  EXPECT_EQ(ascii, 13);
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(box.Text(), "K1ABC");
}

TEST(TextBox, ProgrammaticTextChangeRaisesChangeAndTellsTheView) {
  Recorder r;  // outlives the box, which tells its observers when it goes
  TextBox box("Fieldbox", 0);
  box.AddObserver(&r);
  int changes = 0;
  box.Change = [&] { ++changes; };
  box.SetText("20M");
  box.SetText("20M");  // no change, no event
  EXPECT_EQ(changes, 1);
  ASSERT_EQ(r.seen.size(), 1u);
  EXPECT_EQ(r.seen[0], Property::Text);
  // A bound box writes what the program put in it as well as the user's typing.
  EXPECT_TRUE(box.DataChanged);
}

TEST(TextBox, BackspaceDeleteAndSelection) {
  TextBox box("b");
  box.UserType("ABCD");
  box.UserKey(vbKeyBack, 0, 8);
  EXPECT_EQ(box.Text(), "ABC");
  box.SetSelStart(0);
  box.UserKey(vbKeyDelete, 0, 0);
  EXPECT_EQ(box.Text(), "BC");
  box.SetSelStart(0);
  box.SetSelLength(2);
  box.UserType("X");
  EXPECT_EQ(box.Text(), "X");
  EXPECT_TRUE(box.DataChanged);
}

TEST(TextBox, LockedOrDisabledTakesNoTyping) {
  TextBox box("b");
  box.SetLocked(true);
  box.UserType("A");
  EXPECT_EQ(box.Text(), "");
  box.SetLocked(false);
  box.SetEnabled(false);
  box.UserType("A");
  EXPECT_EQ(box.Text(), "");
}

TEST(TextBox, MaxLengthStopsTyping) {
  TextBox box("b");
  box.SetMaxLength(3);
  box.UserType("ABCDE");
  EXPECT_EQ(box.Text(), "ABC");
}

TEST(ControlArray, HandlersTakeTheIndexFirst) {
  ControlArray<TextBox> boxes("Fieldbox", 35);
  std::vector<int> changed;
  boxes.On(&TextBox::Change, [&](int index) { changed.push_back(index); });
  std::vector<std::pair<int, int>> pressed;
  boxes.On(&TextBox::KeyPress, [&](int index, int& ascii) {
    pressed.push_back({index, ascii});
    ascii = 0;
  });
  boxes(19).SetText("x");
  boxes(3).UserType("a");
  EXPECT_EQ(changed, (std::vector<int>{19}));
  EXPECT_EQ(pressed, (std::vector<std::pair<int, int>>{{3, 'a'}}));
  EXPECT_EQ(boxes(3).Text(), "");
  EXPECT_EQ(boxes.UBound(), 34);
  EXPECT_EQ(boxes(7).Name(), "Fieldbox");
  EXPECT_EQ(boxes(7).Index(), 7);
}

TEST(ControlArray, AnArrayWithGapsHasOnlyItsListedElements) {
  ControlArray<TextBox> dates("DateBox", {16, 17, 19, 20});
  EXPECT_EQ(dates.Count(), 4);
  EXPECT_EQ(dates.LBound(), 16);
  EXPECT_EQ(dates.UBound(), 20);
  EXPECT_TRUE(dates.Exists(19));
  EXPECT_FALSE(dates.Exists(18));
  EXPECT_EQ(dates(19).Index(), 19);
  try {
    dates(18);
    FAIL() << "a missing element was handed out";
  } catch (const vellumar::vb::VbError& e) {
    EXPECT_EQ(e.number(), 340);
  }
  std::vector<int> seen;
  for (auto& d : dates) seen.push_back(d->Index());
  EXPECT_EQ(seen, (std::vector<int>{16, 17, 19, 20}));
}

TEST(CommandButton, RightButtonGivesMouseEventsButNoClick) {
  CommandButton save("SaveCmd");
  std::vector<std::string> events;
  save.MouseDown = [&](int b, int, float, float) { events.push_back("down " + std::to_string(b)); };
  save.MouseUp = [&](int b, int, float, float) { events.push_back("up " + std::to_string(b)); };
  save.Click = [&] { events.push_back("click"); };
  save.UserMouse(vbRightButton);
  save.UserMouse(vbLeftButton);
  EXPECT_EQ(events, (std::vector<std::string>{"down 2", "up 2", "down 1", "up 1", "click"}));
  save.SetEnabled(false);
  save.UserClick();
  EXPECT_EQ(events.size(), 5u);
}

TEST(CheckBox, ValueChangeRaisesClick) {
  CheckBox c("TooltipsCheckbox");
  int clicks = 0;
  c.Click = [&] { ++clicks; };
  c.SetValue(1);
  c.SetValue(1);
  c.UserToggle();
  EXPECT_EQ(c.Value(), 0);
  EXPECT_EQ(clicks, 2);
}

TEST(OptionButton, GroupMembersExcludeEachOther) {
  OptionButton a("QSLMode", 0), b("QSLMode", 1), c("QSLMode", 2);
  OptionGroup g;
  g.Add(a);
  g.Add(b);
  g.Add(c);
  int clicks = 0;
  b.Click = [&] { ++clicks; };
  a.SetValue(true);
  EXPECT_EQ(g.Selected(), 0);
  b.UserSelect();
  EXPECT_FALSE(a.Value());
  EXPECT_TRUE(b.Value());
  EXPECT_EQ(g.Selected(), 1);
  EXPECT_EQ(clicks, 1);
}

TEST(ComboBox, ListItemDataAndListIndex) {
  ComboBox combo("Fieldcombo", 2);
  combo.AddItem("");
  combo.SetItemData(combo.NewIndex(), 0);
  combo.AddItem("VE");
  combo.SetItemData(combo.NewIndex(), 1);
  combo.AddItem("K");
  combo.SetItemData(combo.NewIndex(), 291);
  int clicks = 0;
  combo.Click = [&] { ++clicks; };
  combo.SetListIndex(2);
  EXPECT_EQ(combo.Text(), "K");
  EXPECT_EQ(combo.ItemData(combo.ListIndex()), 291);
  EXPECT_EQ(clicks, 1);
  combo.RemoveItem(0);
  EXPECT_EQ(combo.ListIndex(), 1);
  EXPECT_EQ(combo.List(1), "K");
  try {
    combo.SetListIndex(5);
    FAIL() << "an index past the list must fail";
  } catch (const vellumar::vb::VbError& e) {
    EXPECT_EQ(e.number(), 380);
  }
  combo.Clear();
  EXPECT_EQ(combo.ListCount(), 0);
  EXPECT_EQ(combo.ListIndex(), -1);
}

TEST(TabStrip, ClickCarriesThePreviousTab) {
  TabStrip tabs("TabbedDialog",
                {"Log QSOs", "QSL", "Check Progress", "my QTHs", "Import", "Export"});
  int previous = -1;
  tabs.TabClick = [&](int p) { previous = p; };
  tabs.UserSelectTab(2);
  EXPECT_EQ(tabs.Tab(), 2);
  EXPECT_EQ(previous, 0);
  EXPECT_EQ(tabs.TabCaption(5), "Export");
}

TEST(Form, LoadShowQueryUnloadAndUnloadInOrder) {
  Form form("VellumMain");
  std::vector<std::string> events;
  form.Form_Load = [&] { events.push_back("Load"); };
  form.Form_QueryUnload = [&](int& cancel, int mode) {
    events.push_back("QueryUnload " + std::to_string(mode));
    cancel = events.size() < 3;  // refuse the first time
  };
  form.Form_Unload = [&](int&) { events.push_back("Unload"); };
  form.Show();
  form.Show();
  EXPECT_TRUE(form.Visible());
  EXPECT_FALSE(form.Unload(vbFormControlMenu));
  EXPECT_TRUE(form.Loaded());
  EXPECT_TRUE(form.Unload(vbFormCode));
  EXPECT_FALSE(form.Loaded());
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(events, (std::vector<std::string>{"Load", "QueryUnload 0", "QueryUnload 1", "Unload"}));
}

TEST(Form, FocusMovesWithLostAndGotFocus) {
  Form form("VellumMain");
  TextBox a("Fieldbox", 1), b("FilterField");
  form.Adopt(a);
  form.Adopt(b);
  std::vector<std::string> events;
  a.GotFocus = [&] { events.push_back("a got"); };
  a.LostFocus = [&] { events.push_back("a lost"); };
  b.GotFocus = [&] { events.push_back("b got"); };
  a.SetFocus();
  b.SetFocus();
  EXPECT_TRUE(b.HasFocus());
  EXPECT_FALSE(a.HasFocus());
  EXPECT_EQ(events, (std::vector<std::string>{"a got", "a lost", "b got"}));
  EXPECT_EQ(form.Controls().size(), 2u);
}

TEST(Form, SizeChangesRaiseResizeOnceLoaded) {
  Form form("VellumMain");
  int resizes = 0;
  form.Form_Resize = [&] { ++resizes; };
  form.SetWidth(9000);  // not loaded yet
  form.Load();
  form.SetWidth(9500);
  form.SetHeight(7000);
  form.SetHeight(7000);
  EXPECT_EQ(resizes, 2);
  EXPECT_EQ(form.Width(), 9500);
}

TEST(Control, AnObserverHearsOfTheControlsEndAndIsNotCalledAfter) {
  struct Watcher : ControlObserver {
    int ended = 0;
    void PropertyChanged(Control&, Property) override {}
    void ControlDestroyed(Control&) override { ++ended; }
  } watcher;
  {
    TextBox box("Fieldbox", 1);
    box.AddObserver(&watcher);
  }
  EXPECT_EQ(watcher.ended, 1);
}
