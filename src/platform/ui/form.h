#pragma once
// A form: its controls, its load cycle and its window properties.
//
// Life of a form:
//   not loaded --Load()--> loaded, hidden --Show()--> shown --Hide()--> loaded, hidden
//   loaded --Unload()--> QueryUnload (may cancel) --> Unload (may cancel) --> not loaded
// Load() runs Form_Load once; Show() loads first if needed.
#include <functional>
#include <string>
#include <vector>

#include "platform/ui/control.h"

namespace vellumar::ui {

enum UnloadMode : int {
  vbFormControlMenu = 0,  // the user closed the window
  vbFormCode = 1,         // Unload statement in code
  vbAppWindows = 2,       // the session is ending
  vbAppTaskManager = 3,   // the process is asked to end
  vbFormMDIForm = 4,
  vbFormOwner = 5
};
enum WindowState : int { vbNormal = 0, vbMinimized = 1, vbMaximized = 2 };
enum MousePointer : int { vbDefault = 0, vbHourglass = 11 };

class Form : public Control {
 public:
  explicit Form(std::string name) : Control(std::move(name)) { SetVisible(false); }

  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& v) { Set(caption_, v, Property::Caption); }
  int WindowState() const { return windowState_; }
  void SetWindowState(int v) { Set(windowState_, v, Property::WindowState); }
  int MousePointer() const { return mousePointer_; }
  void SetMousePointer(int v) { Set(mousePointer_, v, Property::MousePointer); }
  int BorderStyle() const { return borderStyle_; }  // 2 and 5 are the sizable ones
  void SetBorderStyle(int v) { borderStyle_ = v; }
  // Window geometry in twips; setting raises Resize as the runtime does.
  void SetLeft(int v) { Move(v, Top(), Width(), Height()); }
  void SetTop(int v) { Move(Left(), v, Width(), Height()); }
  void SetWidth(int v);
  void SetHeight(int v);

  bool Loaded() const { return loaded_; }
  void Load();
  void Show();
  void Hide() { SetVisible(false); }
  // Asks QueryUnload, then Unload; true if the form is gone.
  bool Unload(int unloadMode = vbFormCode);

  std::function<void()> Form_Load;
  std::function<void(int& cancel, int unloadMode)> Form_QueryUnload;
  std::function<void(int& cancel)> Form_Unload;
  std::function<void()> Form_Resize;

  // Controls of the form, in creation order (the Controls collection).
  void Adopt(Control& c) {
    c.SetParent(this);
    controls_.push_back(&c);
  }
  const std::vector<Control*>& Controls() const { return controls_; }
  Control* ActiveControl() const { return active_; }
  void SetActiveControl(Control* c);

 private:
  std::string caption_;
  int windowState_ = vbNormal;
  int mousePointer_ = vbDefault;
  int borderStyle_ = 2;
  bool loaded_ = false;
  std::vector<Control*> controls_;
  Control* active_ = nullptr;
};

}  // namespace vellumar::ui
