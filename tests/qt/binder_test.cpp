// The binders: a model change shows in the widget, and the user's input on the widget reaches
// the model's handlers in the runtime's order, the widget then showing what the model decided.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTabBar>
#include <QTest>
#include <QVBoxLayout>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/controls.h"
#include "platform/ui/form.h"
#include "qt/binder_factory.h"
#include "qt/form_binder.h"
#include "qt/list_binders.h"
#include "qt/simple_binders.h"
#include "qt/tab_strip_binder.h"

namespace vellumar::qt {
namespace {

// A shown window holding the widget of one control.
class BinderTest : public ::testing::Test {
 protected:
  template <typename W>
  W* Bind(ui::Control& control) {
    binder_ = MakeBinder(control, &window_);
    auto* w = static_cast<W*>(binder_->widget());
    layout_->addWidget(w);
    window_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
    return w;
  }

  // A second control's widget in the same window, laid out at once.
  template <typename W>
  W* BindAnother(ui::Control& control) {
    others_.push_back(MakeBinder(control, &window_));
    auto* w = static_cast<W*>(others_.back()->widget());
    layout_->addWidget(w);
    w->show();
    layout_->activate();
    return w;
  }

  QWidget window_;
  QVBoxLayout* layout_ = new QVBoxLayout(&window_);
  std::unique_ptr<ControlBinder> binder_;
  std::vector<std::unique_ptr<ControlBinder>> others_;
  std::vector<std::string> events_;  // what the model's handlers heard, in order
};

TEST_F(BinderTest, ObjectNameCarriesTheArrayIndex) {
  ui::TextBox lone("FilterField");
  ui::TextBox element("Fieldbox", 1);
  EXPECT_EQ(ObjectNameOf(lone), QStringLiteral("FilterField"));
  EXPECT_EQ(ObjectNameOf(element), QStringLiteral("Fieldbox(1)"));
}

TEST_F(BinderTest, TextBoxShowsTheModel) {
  ui::TextBox box("Fieldbox", 1);
  auto* edit = Bind<QLineEdit>(box);
  EXPECT_EQ(edit->objectName(), QStringLiteral("Fieldbox(1)"));
  box.SetText("DL1ABC");
  EXPECT_EQ(edit->text(), QStringLiteral("DL1ABC"));
  box.SetEnabled(false);
  EXPECT_FALSE(edit->isEnabled());
  box.SetEnabled(true);
  box.SetToolTipText("callsign of worked station");
  EXPECT_EQ(edit->toolTip(), QStringLiteral("callsign of worked station"));
  box.SetForeColor(0x0000FF);  // red in 0xBBGGRR
  EXPECT_EQ(edit->palette().color(QPalette::Text), QColor(255, 0, 0));
  box.SetForeColor(0);
  EXPECT_EQ(edit->palette().color(QPalette::Text),
            QApplication::palette(edit).color(QPalette::Text));
  box.SetBackColor(0x00FFFF);  // yellow
  EXPECT_EQ(edit->palette().color(QPalette::Base), QColor(255, 255, 0));
  box.SetBackColor(0xFFFFFF);
  EXPECT_EQ(edit->palette().color(QPalette::Base),
            QApplication::palette(edit).color(QPalette::Base));
  box.SetFont({"DejaVu Sans", 14, true, true});
  EXPECT_DOUBLE_EQ(edit->font().pointSizeF(), 14.0);
  EXPECT_TRUE(edit->font().bold());
  EXPECT_TRUE(edit->font().italic());
  box.SetLocked(true);
  EXPECT_TRUE(edit->isReadOnly());
  box.SetVisible(false);
  EXPECT_FALSE(edit->isVisible());
}

TEST_F(BinderTest, TypedKeysReachTheModelInTheRuntimesOrder) {
  ui::TextBox box("Fieldbox", 1);
  box.KeyDown = [&](int& code, int shift) {
    events_.push_back("KeyDown " + std::to_string(code) + " " + std::to_string(shift));
  };
  box.KeyPress = [&](int& ascii) { events_.push_back("KeyPress " + std::to_string(ascii)); };
  box.Change = [&] { events_.push_back("Change " + box.Text()); };
  box.KeyUp = [&](int& code, int) { events_.push_back("KeyUp " + std::to_string(code)); };
  auto* edit = Bind<QLineEdit>(box);
  QTest::keyClick(edit, Qt::Key_A);
  EXPECT_EQ(events_,
            (std::vector<std::string>{"KeyDown 65 0", "KeyPress 97", "Change a", "KeyUp 65"}));
  events_.clear();
  QTest::keyClick(edit, 'B', Qt::ShiftModifier);
  EXPECT_EQ(events_,
            (std::vector<std::string>{"KeyDown 66 1", "KeyPress 66", "Change aB", "KeyUp 66"}));
  EXPECT_EQ(edit->text(), QStringLiteral("aB"));
  events_.clear();
  QTest::keyClick(edit, Qt::Key_Return);
  EXPECT_EQ(events_, (std::vector<std::string>{"KeyDown 13 0", "KeyPress 13", "KeyUp 13"}));
  EXPECT_EQ(box.Text(), "aB");
  events_.clear();
  QTest::keyClick(edit, Qt::Key_Backspace);
  EXPECT_EQ(box.Text(), "a");
  EXPECT_EQ(edit->text(), QStringLiteral("a"));
}

TEST_F(BinderTest, KeyPressThatUpperCasesChangesWhatTheBoxShows) {
  ui::TextBox box("Fieldbox", 1);
  box.KeyPress = [](int& ascii) {
    if (ascii >= 'a' && ascii <= 'z') ascii -= 'a' - 'A';
  };
  auto* edit = Bind<QLineEdit>(box);
  QTest::keyClicks(edit, "dl1abc");
  EXPECT_EQ(box.Text(), "DL1ABC");
  EXPECT_EQ(edit->text(), QStringLiteral("DL1ABC"));
  EXPECT_EQ(edit->cursorPosition(), 6);
}

TEST_F(BinderTest, SwallowedKeyDoesNotAppear) {
  ui::TextBox box("NarrowTopOffset");
  box.KeyPress = [](int& ascii) {
    if (ascii != '.' && (ascii < '0' || ascii > '9') && ascii != 8) ascii = 0;
  };
  int keyDownSwallowed = 0;
  box.KeyDown = [&](int& code, int) {
    if (code == 'Q') {
      code = 0;  // KeyDown may swallow the key's KeyPress too
      ++keyDownSwallowed;
    }
  };
  auto* edit = Bind<QLineEdit>(box);
  QTest::keyClicks(edit, "1x.5q");
  EXPECT_EQ(box.Text(), "1.5");
  EXPECT_EQ(edit->text(), QStringLiteral("1.5"));
  EXPECT_EQ(keyDownSwallowed, 1);
}

TEST_F(BinderTest, TypingGoesInWhereTheUserPutTheCursor) {
  ui::TextBox box("Fieldbox", 1);
  box.SetText("DLABC");
  auto* edit = Bind<QLineEdit>(box);
  edit->setCursorPosition(2);  // as a click would
  QTest::keyClick(edit, Qt::Key_1);
  EXPECT_EQ(box.Text(), "DL1ABC");
  EXPECT_EQ(box.SelStart(), 3);
  EXPECT_EQ(edit->cursorPosition(), 3);
}

TEST_F(BinderTest, CharactersBeyondAsciiAreTakenWhole) {
  // The runtime's KeyPress carries one byte; a letter such as "ü" goes in as an edit of the
  // whole text, the text staying UTF-8.
  ui::TextBox box("Fieldbox", 6);
  std::vector<int> pressed;
  box.KeyPress = [&](int& ascii) { pressed.push_back(ascii); };
  auto* edit = Bind<QLineEdit>(box);
  QTest::keyClicks(edit, QStringLiteral("M"));
  for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent key(type, Qt::Key_Udiaeresis, Qt::NoModifier, QString::fromUtf8("ü"));
    QApplication::sendEvent(edit, &key);
  }
  QTest::keyClicks(edit, QStringLiteral("ller"));
  EXPECT_EQ(box.Text(), "M\xC3\xBCller");
  EXPECT_EQ(edit->text(), QString::fromUtf8("Müller"));
  EXPECT_EQ(pressed, (std::vector<int>{'M', 'l', 'l', 'e', 'r'}));
  EXPECT_EQ(box.SelStart(), 7);  // bytes: after the last "r"
}

TEST_F(BinderTest, PasteGoesThroughUserSetText) {
  ui::TextBox box("Fieldbox", 11);
  int changes = 0;
  box.Change = [&] { ++changes; };
  auto* edit = Bind<QLineEdit>(box);
  QApplication::clipboard()->setText(QStringLiteral("pasted note"));
  edit->setFocus();
  QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(box.Text(), "pasted note");
  EXPECT_TRUE(box.DataChanged);
  EXPECT_EQ(changes, 1);
}

TEST_F(BinderTest, LabelShowsCaptionAndColourAndHearsClicks) {
  ui::Label label("FieldLabel", 1);
  label.Click = [&] { events_.push_back("Click"); };
  label.MouseDown = [&](int b, int, float, float) {
    events_.push_back("MouseDown " + std::to_string(b));
  };
  label.MouseUp = [&](int b, int, float, float) {
    events_.push_back("MouseUp " + std::to_string(b));
  };
  label.DblClick = [&] { events_.push_back("DblClick"); };
  auto* w = Bind<QLabel>(label);
  label.SetCaption("call");
  EXPECT_EQ(w->text(), QStringLiteral("call"));
  label.SetCaption("&Rock && roll");
  EXPECT_EQ(w->text(), QStringLiteral("Rock & roll"));
  label.SetForeColor(255);
  EXPECT_EQ(w->palette().color(QPalette::WindowText), QColor(255, 0, 0));
  QTest::mouseClick(w, Qt::RightButton);
  EXPECT_EQ(events_, (std::vector<std::string>{"MouseDown 2", "MouseUp 2"}));
  events_.clear();
  QTest::mouseClick(w, Qt::LeftButton);
  EXPECT_EQ(events_, (std::vector<std::string>{"MouseDown 1", "MouseUp 1", "Click"}));
  events_.clear();
  // A double click as the window system delivers it: the second press comes as the double
  // click, and its release ends it.
  const QPointF at = QPointF(w->rect().center());
  for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                            QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(Qt::LeftButton);
    QMouseEvent event(type, at, w->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(w, &event);
  }
  EXPECT_EQ(events_, (std::vector<std::string>{"MouseDown 1", "MouseUp 1", "Click", "DblClick",
                                               "MouseUp 1"}));
}

TEST_F(BinderTest, FrameShowsCaptionAndColoursItsTitle) {
  ui::Frame frame("QSOFrame");
  auto* box = Bind<QGroupBox>(frame);
  frame.SetCaption("QSO: Germany");
  EXPECT_EQ(box->title(), QStringLiteral("QSO: Germany"));
  frame.SetForeColor(0xFF0000);
  EXPECT_TRUE(box->styleSheet().contains(QStringLiteral("#0000ff")));
  frame.SetForeColor(0);
  EXPECT_TRUE(box->styleSheet().isEmpty());
}

TEST_F(BinderTest, CommandButtonClicks) {
  ui::CommandButton button("SaveCmd");
  button.Click = [&] { events_.push_back("Click"); };
  button.MouseDown = [&](int b, int, float, float) {
    events_.push_back("MouseDown " + std::to_string(b));
  };
  button.MouseUp = [&](int b, int, float, float) {
    events_.push_back("MouseUp " + std::to_string(b));
  };
  auto* w = Bind<QPushButton>(button);
  button.SetCaption("&Save");
  EXPECT_EQ(w->text(), QStringLiteral("&Save"));
  QTest::mouseClick(w, Qt::LeftButton);
  EXPECT_EQ(events_, (std::vector<std::string>{"MouseDown 1", "MouseUp 1", "Click"}));
  events_.clear();
  QTest::mouseClick(w, Qt::RightButton);
  EXPECT_EQ(events_, (std::vector<std::string>{"MouseDown 2", "MouseUp 2"}));
  events_.clear();
  button.SetEnabled(false);
  EXPECT_FALSE(w->isEnabled());
  QTest::mouseClick(w, Qt::LeftButton);
  EXPECT_TRUE(events_.empty());
}

TEST_F(BinderTest, CheckBoxFollowsTheModelsDecision) {
  ui::CheckBox check("RunCheck");
  check.SetCaption("Run-mode");
  int clicks = 0;
  check.Click = [&] { ++clicks; };
  auto* w = Bind<QCheckBox>(check);
  EXPECT_EQ(w->text(), QStringLiteral("Run-mode"));
  QTest::mouseClick(w, Qt::LeftButton);
  EXPECT_EQ(check.Value(), 1);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(w->checkState(), Qt::Checked);
  // A handler that refuses the change: the box shows the model's value, not Qt's toggle.
  check.Click = [&] {
    if (check.Value() == 0) check.SetValue(1);
  };
  QTest::mouseClick(w, Qt::LeftButton);
  EXPECT_EQ(check.Value(), 1);
  EXPECT_EQ(w->checkState(), Qt::Checked);
  check.Click = nullptr;
  check.SetValue(2);
  EXPECT_EQ(w->checkState(), Qt::PartiallyChecked);
}

TEST_F(BinderTest, OptionButtonsExcludeEachOtherThroughTheModel) {
  ui::OptionButton a("PrintQualityButton", 1), b("PrintQualityButton", 2);
  ui::OptionGroup group;
  group.Add(a);
  group.Add(b);
  a.SetValue(true);
  int bClicks = 0;
  b.Click = [&] { ++bClicks; };
  auto* wa = Bind<QRadioButton>(a);
  auto* wb = BindAnother<QRadioButton>(b);
  EXPECT_TRUE(wa->isChecked());
  QTest::mouseClick(wb, Qt::LeftButton);
  EXPECT_TRUE(b.Value());
  EXPECT_FALSE(a.Value());
  EXPECT_EQ(bClicks, 1);
  EXPECT_TRUE(wb->isChecked());
  EXPECT_FALSE(wa->isChecked());
  // A click on the selected one leaves it selected.
  QTest::mouseClick(wb, Qt::LeftButton);
  EXPECT_TRUE(wb->isChecked());
}

TEST_F(BinderTest, ComboListAndSelection) {
  ui::ComboBox combo("Fieldcombo", 5);
  combo.SetStyle(ui::ComboBox::kDropDownList);
  for (const char* mode : {"", "SSB", "CW", "RTTY"}) combo.AddItem(mode);
  std::vector<int> clicks;
  combo.Click = [&] { clicks.push_back(combo.ListIndex()); };
  auto* w = Bind<QComboBox>(combo);
  ASSERT_EQ(w->count(), 4);
  EXPECT_EQ(w->itemText(2), QStringLiteral("CW"));
  EXPECT_FALSE(w->isEditable());
  combo.SetListIndex(3);
  EXPECT_EQ(w->currentIndex(), 3);
  clicks.clear();
  w->setFocus();
  QTest::keyClick(w, Qt::Key_Up);  // the user picks the item above
  EXPECT_EQ(combo.ListIndex(), 2);
  EXPECT_EQ(combo.Text(), "CW");
  EXPECT_EQ(clicks, (std::vector<int>{2}));
  combo.AddItem("PSK");
  EXPECT_EQ(w->count(), 5);
  EXPECT_EQ(w->itemText(4), QStringLiteral("PSK"));
  combo.RemoveItem(1);
  ASSERT_EQ(w->count(), 4);
  EXPECT_EQ(w->itemText(1), QStringLiteral("CW"));
  EXPECT_EQ(w->currentIndex(), 1);
  combo.Clear();
  EXPECT_EQ(w->count(), 0);
}

TEST_F(BinderTest, EditableComboTakesTypedKeysThroughTheModel) {
  ui::ComboBox combo("DXCC");
  combo.AddItem("DL");
  combo.AddItem("F");
  combo.KeyPress = [](int& ascii) {
    if (ascii >= 'a' && ascii <= 'z') ascii -= 'a' - 'A';
  };
  auto* w = Bind<QComboBox>(combo);
  ASSERT_TRUE(w->isEditable());
  QTest::keyClicks(w->lineEdit(), "vk");
  EXPECT_EQ(combo.Text(), "VK");
  EXPECT_EQ(w->currentText(), QStringLiteral("VK"));
  combo.SetListIndex(0);
  EXPECT_EQ(w->lineEdit()->text(), QStringLiteral("DL"));
  combo.SetText("DL/P");
  EXPECT_EQ(w->lineEdit()->text(), QStringLiteral("DL/P"));
}

TEST_F(BinderTest, TabStripUserChangeAndRefusal) {
  ui::TabStrip strip("TabbedDialog", {"Log QSOs", "QSL", "Check Progress"});
  std::vector<int> previous;
  bool busy = false;
  bool ignore = false;  // the next click is the handler's own
  strip.TabClick = [&](int prev) {
    if (ignore) {
      ignore = false;
      return;
    }
    previous.push_back(prev);
    if (busy) {  // a command is running: no tab can be left
      ignore = true;
      strip.SetTab(prev);
    }
  };
  auto* tabs = Bind<QTabWidget>(strip);
  ASSERT_EQ(tabs->count(), 3);
  EXPECT_EQ(tabs->tabText(2), QStringLiteral("Check Progress"));
  QTabBar* bar = tabs->tabBar();
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(2).center());
  EXPECT_EQ(strip.Tab(), 2);
  EXPECT_EQ(previous, (std::vector<int>{0}));
  busy = true;
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(1).center());
  EXPECT_EQ(strip.Tab(), 2);
  EXPECT_EQ(tabs->currentIndex(), 2);
  busy = false;
  strip.SetTab(0);
  EXPECT_EQ(tabs->currentIndex(), 0);
}

TEST_F(BinderTest, ProgressBarShowsTheFraction) {
  ui::ProgressBar bar("ExportProgress");
  bar.Max = 200;
  auto* w = Bind<QProgressBar>(bar);
  bar.SetValue(50);
  EXPECT_EQ(w->value(), ProgressBarBinder::kSteps / 4);
  bar.SetValue(500);  // beyond Max: full
  EXPECT_EQ(w->value(), ProgressBarBinder::kSteps);
}

TEST_F(BinderTest, FocusFollowsTheModelAndTheUser) {
  ui::Form form("Capture");
  ui::TextBox call("Call"), name("Name");
  form.Adopt(call);
  form.Adopt(name);
  std::vector<std::string> focus;
  call.LostFocus = [&] { focus.push_back("Call LostFocus"); };
  name.GotFocus = [&] { focus.push_back("Name GotFocus"); };
  auto* wc = Bind<QLineEdit>(call);
  auto* wn = BindAnother<QLineEdit>(name);
  QApplication::setActiveWindow(&window_);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
  call.SetFocus();
  EXPECT_TRUE(wc->hasFocus());
  // The user tabs on: the form's active control follows, with the runtime's events.
  QTest::keyClick(wc, Qt::Key_Tab);
  EXPECT_TRUE(wn->hasFocus());
  EXPECT_EQ(form.ActiveControl(), &name);
  EXPECT_EQ(focus, (std::vector<std::string>{"Call LostFocus", "Name GotFocus"}));
}

// A top-level window bound to a form.
class FormBinderTest : public ::testing::Test {
 protected:
  FormBinderTest() {
    form_.Form_QueryUnload = [this](int& cancel, int mode) {
      queried_.push_back(mode);
      cancel = refuse_ ? 1 : 0;
    };
    form_.Form_Unload = [this](int&) { ++unloaded_; };
    form_.Form_Resize = [this] { ++resized_; };
    window_->resize(400, 300);
    binder_ = std::make_unique<FormBinder>(form_, window_.get());
  }

  ui::Form form_{"AdvancedFilter"};
  std::unique_ptr<QWidget> window_ = std::make_unique<QWidget>();
  std::unique_ptr<FormBinder> binder_;
  std::vector<int> queried_;
  int unloaded_ = 0, resized_ = 0;
  bool refuse_ = false;
};

TEST_F(FormBinderTest, CaptionAndVisibility) {
  form_.SetCaption("Vellumar Advanced Log Sorts and Filters");
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("Vellumar Advanced Log Sorts and Filters"));
  EXPECT_FALSE(window_->isVisible());
  form_.Show();
  EXPECT_TRUE(window_->isVisible());
  form_.Hide();
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(FormBinderTest, CloseRefusedByQueryUnloadKeepsTheWindow) {
  form_.Show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  refuse_ = true;
  window_->close();
  EXPECT_EQ(queried_, (std::vector<int>{ui::vbFormControlMenu}));
  EXPECT_EQ(unloaded_, 0);
  EXPECT_TRUE(window_->isVisible());
  EXPECT_TRUE(form_.Loaded());
  refuse_ = false;
  window_->close();
  EXPECT_EQ(unloaded_, 1);
  EXPECT_FALSE(form_.Loaded());
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(FormBinderTest, HourglassIsTheApplicationsWaitCursor) {
  ASSERT_EQ(QApplication::overrideCursor(), nullptr);
  form_.SetMousePointer(ui::vbHourglass);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  form_.SetMousePointer(ui::vbDefault);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(FormBinderTest, GeometryBothWays) {
  form_.Show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  form_.Move(150, 300, 6000, 4500);  // twips
  EXPECT_EQ(window_->size(), QSize(400, 300));
  EXPECT_EQ(window_->pos(), QPoint(10, 20));
  window_->resize(500, 320);  // the user drags the border
  QTest::qWait(20);
  EXPECT_EQ(form_.Width(), 500 * 15);
  EXPECT_EQ(form_.Height(), 320 * 15);
  EXPECT_GT(resized_, 0);
}

TEST_F(FormBinderTest, WindowStateFromTheModel) {
  form_.Show();
  form_.SetWindowState(ui::vbMaximized);
  EXPECT_TRUE(window_->windowState() & Qt::WindowMaximized);
  form_.SetWindowState(ui::vbNormal);
  EXPECT_FALSE(window_->windowState() & Qt::WindowMaximized);
}

}  // namespace
}  // namespace vellumar::qt
