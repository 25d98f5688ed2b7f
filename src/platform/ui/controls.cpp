#include "platform/ui/controls.h"

#include <algorithm>

#include "platform/vb/error.h"

namespace vellumar::ui {

namespace {
constexpr int kInvalidPropertyValue = 380;
}

void InputControl::UserMouse(int button, int shift) {
  Raise(MouseDown, button, shift, 0.0f, 0.0f);
  Raise(MouseUp, button, shift, 0.0f, 0.0f);
  if (button == vbLeftButton) Raise(Click);
}

void InputControl::UserDblClick() { Raise(DblClick); }

void TextBox::SetText(const std::string& text) {
  const bool changed = text != text_;
  text_ = text;
  selStart_ = std::min<int>(selStart_, static_cast<int>(text_.size()));
  selLength_ = 0;
  if (!changed) return;
  DataChanged = true;  // a bound box writes what the program put in it too
  Notify(Property::Text);
  Raise(Change);
}

void TextBox::SetSelStart(int v) {
  selStart_ = std::clamp(v, 0, static_cast<int>(text_.size()));
  selLength_ = std::min(selLength_, static_cast<int>(text_.size()) - selStart_);
  Notify(Property::Selection);
}

void TextBox::SetSelLength(int v) {
  selLength_ = std::clamp(v, 0, static_cast<int>(text_.size()) - selStart_);
  Notify(Property::Selection);
}

void TextBox::EditWithCharacter(int keyAscii) {
  std::string t = text_;
  int start = selStart_;
  if (selLength_ > 0) {
    t.erase(static_cast<size_t>(start), static_cast<size_t>(selLength_));
  } else if (keyAscii == vbKeyBack) {
    if (start == 0) return;
    t.erase(static_cast<size_t>(--start), 1);
  }
  if (keyAscii != vbKeyBack) {
    if (maxLength_ > 0 && static_cast<int>(t.size()) >= maxLength_) return;
    t.insert(t.begin() + start, static_cast<char>(keyAscii));
    ++start;
  }
  text_ = t;
  selStart_ = start;
  selLength_ = 0;
  DataChanged = true;
  Notify(Property::Text);
  Raise(Change);
}

void TextBox::UserKey(int keyCode, int shift, int keyAscii) {
  if (!Enabled()) return;
  Raise(KeyDown, keyCode, shift);
  if (keyCode != 0 && keyAscii != 0) {
    Raise(KeyPress, keyAscii);
    const bool edits = keyAscii == vbKeyBack || keyAscii >= 32;
    if (keyAscii != 0 && edits && !locked_) EditWithCharacter(keyAscii);
  } else if (keyCode == vbKeyDelete && !locked_ && selStart_ < static_cast<int>(text_.size())) {
    std::string t = text_;
    t.erase(static_cast<size_t>(selStart_), static_cast<size_t>(std::max(1, selLength_)));
    text_ = t;
    selLength_ = 0;
    DataChanged = true;
    Notify(Property::Text);
    Raise(Change);
  }
  Raise(KeyUp, keyCode, shift);
}

void TextBox::UserType(const std::string& text) {
  for (unsigned char c : text) {
    int code = c;
    if (c >= 'a' && c <= 'z') code = c - 'a' + 'A';  // key codes are those of the upper case
    UserKey(code, 0, c);
  }
}

void TextBox::UserSetText(const std::string& text) {
  if (!Enabled() || locked_) return;
  DataChanged = true;
  selStart_ = static_cast<int>(text.size());
  SetText(text);
}

void CheckBox::SetValue(int v) {
  if (Set(value_, v, Property::Value)) Raise(Click);
}

void OptionButton::SetValue(bool v) {
  if (v && group_) group_->Cleared(*this);
  if (Set(value_, v, Property::Value) && v) Raise(Click);
}

int OptionGroup::Selected() const {
  for (size_t i = 0; i < members_.size(); ++i)
    if (members_[i]->Value()) return static_cast<int>(i);
  return -1;
}

void OptionGroup::Cleared(OptionButton& except) {
  for (OptionButton* b : members_)
    if (b != &except && b->value_) {
      b->value_ = false;
      b->Notify(Property::Value);
    }
}

const std::string& ComboBox::List(int i) const {
  if (i < 0 || i >= ListCount()) vb::Raise(kInvalidPropertyValue, "Invalid property array index");
  return items_[static_cast<size_t>(i)].text;
}

long ComboBox::ItemData(int i) const {
  if (i < 0 || i >= ListCount()) vb::Raise(kInvalidPropertyValue, "Invalid property array index");
  return items_[static_cast<size_t>(i)].data;
}

void ComboBox::SetItemData(int i, long v) {
  if (i < 0 || i >= ListCount()) vb::Raise(kInvalidPropertyValue, "Invalid property array index");
  items_[static_cast<size_t>(i)].data = v;
}

void ComboBox::AddItem(const std::string& text, int index) {
  if (index < 0 || index > ListCount()) index = ListCount();
  items_.insert(items_.begin() + index, Item{text, 0});
  newIndex_ = index;
  if (listIndex_ >= index) ++listIndex_;
  Notify(Property::List);
}

void ComboBox::RemoveItem(int index) {
  if (index < 0 || index >= ListCount())
    vb::Raise(kInvalidPropertyValue, "Invalid property array index");
  items_.erase(items_.begin() + index);
  if (listIndex_ == index)
    listIndex_ = -1;
  else if (listIndex_ > index)
    --listIndex_;
  Notify(Property::List);
}

void ComboBox::Clear() {
  items_.clear();
  listIndex_ = -1;
  newIndex_ = -1;
  Notify(Property::List);
  if (style_ != kDropDownList) SetText("");
}

void ComboBox::SetListIndex(int i) {
  if (i < -1 || i >= ListCount()) vb::Raise(kInvalidPropertyValue, "Invalid property value");
  listIndex_ = i;
  Notify(Property::ListIndex);
  // The text follows the selection; the runtime raises Click whenever ListIndex is set.
  if (i >= 0) SetText(items_[static_cast<size_t>(i)].text);
  Raise(Click);
}

void TabStrip::SetTab(int t) {
  if (t < 0 || t >= Tabs()) vb::Raise(kInvalidPropertyValue, "Invalid property value");
  const int previous = tab_;
  if (!Set(tab_, t, Property::Tab)) return;
  Raise(TabClick, previous);
}

}  // namespace vellumar::ui
