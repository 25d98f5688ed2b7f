#include "platform/ui/control.h"

#include <algorithm>

#include "platform/ui/form.h"

namespace vellumar::ui {

Control::~Control() {
  const auto observers = observers_;
  for (ControlObserver* o : observers) o->ControlDestroyed(*this);
}

void Control::Move(int left, int top, int width, int height) {
  if (left_ == left && top_ == top && width_ == width && height_ == height) return;
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
  Notify(Property::Geometry);
}

void Control::SetFocus() {
  if (parent_) parent_->SetActiveControl(this);
}

bool Control::HasFocus() const { return parent_ && parent_->ActiveControl() == this; }

void Control::RemoveObserver(ControlObserver* o) {
  observers_.erase(std::remove(observers_.begin(), observers_.end(), o), observers_.end());
}

void Control::Notify(Property p) {
  // A copy: an observer may detach itself while being told.
  const auto observers = observers_;
  for (ControlObserver* o : observers) o->PropertyChanged(*this, p);
}

}  // namespace vellumar::ui
