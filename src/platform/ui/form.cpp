#include "platform/ui/form.h"

namespace vellumar::ui {

void Form::SetWidth(int v) {
  if (v == Width()) return;
  Move(Left(), Top(), v, Height());
  if (loaded_) Raise(Form_Resize);
}

void Form::SetHeight(int v) {
  if (v == Height()) return;
  Move(Left(), Top(), Width(), v);
  if (loaded_) Raise(Form_Resize);
}

void Form::Load() {
  if (loaded_) return;
  loaded_ = true;
  Raise(Form_Load);
}

void Form::Show() {
  Load();
  SetVisible(true);
}

bool Form::Unload(int unloadMode) {
  if (!loaded_) return true;
  int cancel = 0;
  Raise(Form_QueryUnload, cancel, unloadMode);
  if (cancel) return false;
  Raise(Form_Unload, cancel);
  if (cancel) return false;
  loaded_ = false;
  active_ = nullptr;
  SetVisible(false);
  return true;
}

void Form::SetActiveControl(Control* c) {
  if (c == active_) return;
  Control* previous = active_;
  active_ = c;
  if (previous) {
    Raise(previous->LostFocus);
    previous->PropertyChangedFocus();
  }
  if (c) {
    Raise(c->GotFocus);
    c->PropertyChangedFocus();
  }
}

}  // namespace vellumar::ui
