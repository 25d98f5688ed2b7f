#pragma once
// The kinds of control the forms are made of.
#include <functional>
#include <string>
#include <vector>

#include "platform/ui/control.h"

namespace vellumar::ui {

// Mouse events carry the button, the shift mask and the position in twips.
using MouseHandler = std::function<void(int button, int shift, float x, float y)>;
using KeyHandler = std::function<void(int& keyCode, int shift)>;
using KeyPressHandler = std::function<void(int& keyAscii)>;

// Keyboard and mouse events shared by the controls that take input.
class InputControl : public Control {
 public:
  using Control::Control;
  KeyHandler KeyDown;        // keyCode may be changed; 0 swallows the key's KeyPress
  KeyPressHandler KeyPress;  // keyAscii may be changed; 0 swallows the character
  KeyHandler KeyUp;
  std::function<void()> Click;
  std::function<void()> DblClick;
  MouseHandler MouseDown;
  MouseHandler MouseUp;

  // The user presses and releases a mouse button: MouseDown, MouseUp, and Click for the left one.
  void UserMouse(int button, int shift = 0);
  void UserDblClick();
};

class TextBox : public InputControl {
 public:
  using InputControl::InputControl;
  const std::string& Text() const { return text_; }
  // A programmatic change raises Change, as the runtime does.
  void SetText(const std::string& text);
  int SelStart() const { return selStart_; }
  int SelLength() const { return selLength_; }
  void SetSelStart(int v);
  void SetSelLength(int v);
  bool Locked() const { return locked_; }
  void SetLocked(bool v) { Set(locked_, v, Property::Locked); }
  int MaxLength() const { return maxLength_; }  // 0: no limit
  void SetMaxLength(int v) { maxLength_ = v; }
  std::string DataField;     // column of the data control's row this box shows
  bool DataChanged = false;  // the text changed since the data control filled the box
  bool MultiLine = false;    // several lines, scrolled (set before a view is made)

  std::function<void()> Change;

  // The user strikes a key. keyAscii is the character it types (0 for none). Order: KeyDown;
  // KeyPress for a character unless KeyDown swallowed it; the edit and Change for a character
  // that survived (printable, or backspace), or for the Delete key; KeyUp.
  void UserKey(int keyCode, int shift = 0, int keyAscii = 0);
  // Types each character of the text as a key.
  void UserType(const std::string& text);
  // The user replaces the whole text at once (a paste, a drop, a view's edit).
  void UserSetText(const std::string& text);

 private:
  void EditWithCharacter(int keyAscii);
  std::string text_;
  int selStart_ = 0, selLength_ = 0;
  bool locked_ = false;
  int maxLength_ = 0;
};

class Label : public InputControl {
 public:
  using InputControl::InputControl;
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& v) { Set(caption_, v, Property::Caption); }

 private:
  std::string caption_;
};

class Frame : public Control {
 public:
  using Control::Control;
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& v) { Set(caption_, v, Property::Caption); }

 private:
  std::string caption_;
};

class CommandButton : public InputControl {
 public:
  using InputControl::InputControl;
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& v) { Set(caption_, v, Property::Caption); }
  // A disabled button takes no clicks.
  void UserClick() {
    if (Enabled()) UserMouse(vbLeftButton);
  }

 private:
  std::string caption_;
};

// Value 0 unchecked, 1 checked, 2 grayed; a change of Value raises Click.
class CheckBox : public InputControl {
 public:
  using InputControl::InputControl;
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& v) { Set(caption_, v, Property::Caption); }
  int Value() const { return value_; }
  void SetValue(int v);
  void UserToggle() {
    if (Enabled()) SetValue(value_ == 1 ? 0 : 1);
  }

 private:
  std::string caption_;
  int value_ = 0;
};

class OptionGroup;
// Setting Value true clears the others of its group and raises Click.
class OptionButton : public InputControl {
 public:
  using InputControl::InputControl;
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& v) { Set(caption_, v, Property::Caption); }
  bool Value() const { return value_; }
  void SetValue(bool v);
  void SetGroup(OptionGroup* g) { group_ = g; }
  void UserSelect() {
    if (Enabled()) SetValue(true);
  }

 private:
  friend class OptionGroup;
  std::string caption_;
  bool value_ = false;
  OptionGroup* group_ = nullptr;
};

// Option buttons that exclude each other, as those in one container do.
class OptionGroup {
 public:
  void Add(OptionButton& b) {
    members_.push_back(&b);
    b.SetGroup(this);
  }
  // Index of the first member whose Value is set, -1 if none.
  int Selected() const;
  void Cleared(OptionButton& except);

 private:
  std::vector<OptionButton*> members_;
};

// A list of items with item data. As a combo (Style 0) its text can be typed; as a drop-down
// list (Style 2) the text is the selected item. Setting ListIndex raises Click.
class ComboBox : public TextBox {
 public:
  enum ComboStyle { kDropDownCombo = 0, kSimpleCombo = 1, kDropDownList = 2 };
  using TextBox::TextBox;
  int Style() const { return style_; }
  void SetStyle(int s) { style_ = s; }
  int ListCount() const { return static_cast<int>(items_.size()); }
  const std::string& List(int i) const;
  long ItemData(int i) const;
  void SetItemData(int i, long v);
  int NewIndex() const { return newIndex_; }
  void AddItem(const std::string& text, int index = -1);
  void RemoveItem(int index);
  void Clear();
  int ListIndex() const { return listIndex_; }
  // -1 clears the selection; out of range raises error 380 (invalid property value).
  void SetListIndex(int i);
  void UserSelect(int i) {
    if (Enabled()) SetListIndex(i);
  }

 private:
  struct Item {
    std::string text;  // shown text
    long data = 0;     // ItemData
  };
  std::vector<Item> items_;
  int listIndex_ = -1;
  int newIndex_ = -1;
  int style_ = kDropDownCombo;
};

class ListBox : public ComboBox {
 public:
  using ComboBox::ComboBox;
};

// A tabbed dialog: Tab is the index shown; a change raises Click with the previous tab.
class TabStrip : public InputControl {
 public:
  TabStrip(std::string name, std::vector<std::string> captions)
      : InputControl(std::move(name)), captions_(std::move(captions)) {}
  int Tabs() const { return static_cast<int>(captions_.size()); }
  const std::string& TabCaption(int i) const { return captions_.at(i); }
  int Tab() const { return tab_; }
  void SetTab(int t);
  std::function<void(int previousTab)> TabClick;
  void UserSelectTab(int t) {
    if (Enabled()) SetTab(t);
  }

 private:
  std::vector<std::string> captions_;
  int tab_ = 0;
};

class ProgressBar : public Control {
 public:
  using Control::Control;
  double Min = 0;    // value of an empty bar
  double Max = 100;  // value of a full bar
  double Value() const { return value_; }
  void SetValue(double v) { Set(value_, v, Property::Value); }

 private:
  double value_ = 0;
};

}  // namespace vellumar::ui
