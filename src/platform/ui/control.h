#pragma once
// Headless controls: plain objects with the properties the forms read and write, raising their
// events in the runtime's order. A view (the Qt skin, or nothing in tests) follows a control
// through ControlObserver and forwards the user's input to the control's User... operations.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/services/font.h"

namespace vellumar::ui {

class Form;

enum class Property {
  Text,
  Caption,
  Enabled,
  Visible,
  Value,
  ListIndex,
  List,
  ToolTipText,
  ForeColor,
  BackColor,
  Font,
  Tag,
  Locked,
  Selection,
  Interval,
  Tab,
  Geometry,
  MousePointer,
  WindowState,
  Focus
};

class Control;
class ControlObserver {
 public:
  virtual ~ControlObserver() = default;
  virtual void PropertyChanged(Control& control, Property property) = 0;
  // The control is being destroyed: an observer that outlives it lets go of it here.
  virtual void ControlDestroyed(Control& control) {}
};

// Key codes, shift masks and mouse buttons with the runtime's values.
enum KeyCode : int {
  vbKeyBack = 8,
  vbKeyTab = 9,
  vbKeyReturn = 13,
  vbKeyShift = 16,
  vbKeyControl = 17,
  vbKeyMenu = 18,
  vbKeyEscape = 27,
  vbKeySpace = 32,
  vbKeyPageUp = 33,
  vbKeyPageDown = 34,
  vbKeyEnd = 35,
  vbKeyHome = 36,
  vbKeyLeft = 37,
  vbKeyUp = 38,
  vbKeyRight = 39,
  vbKeyDown = 40,
  vbKeyInsert = 45,
  vbKeyDelete = 46,
  vbKeyF1 = 112,
  vbKeyF12 = 123
};
enum ShiftMask : int { vbShiftMask = 1, vbCtrlMask = 2, vbAltMask = 4 };
enum MouseButton : int { vbLeftButton = 1, vbRightButton = 2, vbMiddleButton = 4 };

// Colours are the runtime's 0xBBGGRR longs, so 0xFF0000 is blue.
using Color = uint32_t;

class Control {
 public:
  explicit Control(std::string name, int index = -1) : name_(std::move(name)), index_(index) {}
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& Name() const { return name_; }
  int Index() const { return index_; }  // place in its control array, -1 for a lone control
  Form* Parent() const { return parent_; }
  void SetParent(Form* form) { parent_ = form; }

  bool Enabled() const { return enabled_; }
  void SetEnabled(bool v) { Set(enabled_, v, Property::Enabled); }
  bool Visible() const { return visible_; }
  void SetVisible(bool v) { Set(visible_, v, Property::Visible); }
  const std::string& ToolTipText() const { return toolTip_; }
  void SetToolTipText(const std::string& v) { Set(toolTip_, v, Property::ToolTipText); }
  const std::string& Tag() const { return tag_; }
  void SetTag(const std::string& v) { Set(tag_, v, Property::Tag); }
  Color ForeColor() const { return foreColor_; }
  void SetForeColor(Color v) { Set(foreColor_, v, Property::ForeColor); }
  Color BackColor() const { return backColor_; }
  void SetBackColor(Color v) { Set(backColor_, v, Property::BackColor); }
  const ui::Font& Font() const { return font_; }
  void SetFont(const ui::Font& v) { Set(font_, v, Property::Font); }
  // Design geometry in twips; a view may lay out otherwise, the logic only reads and writes it.
  int Left() const { return left_; }
  int Top() const { return top_; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  void Move(int left, int top, int width, int height);

  // Focus: the form tracks which control has it and raises LostFocus/GotFocus.
  void SetFocus();
  bool HasFocus() const;

  std::function<void()> GotFocus;
  std::function<void()> LostFocus;

  void AddObserver(ControlObserver* o) { observers_.push_back(o); }
  void PropertyChangedFocus() { Notify(Property::Focus); }
  void RemoveObserver(ControlObserver* o);

 protected:
  void Notify(Property p);
  template <typename T>
  bool Set(T& field, const T& value, Property p) {
    if (field == value) return false;
    field = value;
    Notify(p);
    return true;
  }

 private:
  std::string name_;
  int index_;
  Form* parent_ = nullptr;
  bool enabled_ = true;
  bool visible_ = true;
  std::string toolTip_;
  std::string tag_;
  Color foreColor_ = 0;
  Color backColor_ = 0xFFFFFF;
  ui::Font font_;
  int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  std::vector<ControlObserver*> observers_;
};

// Invokes a handler if one is set.
template <typename F, typename... A>
void Raise(const F& handler, A&&... args) {
  if (handler) handler(std::forward<A>(args)...);
}

}  // namespace vellumar::ui
