#pragma once
// A control array: controls of one kind sharing a name, told apart by their index, whose
// handlers take the index first. An array may have gaps, as one drawn on a form may: only the
// listed indexes exist, and any other raises 340 (control array element doesn't exist).
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "platform/vb/error.h"

namespace vellumar::ui {

template <typename T>
class ControlArray {
 public:
  // Elements 0..count-1.
  ControlArray(const std::string& name, int count) {
    for (int i = 0; i < count; ++i) Add(name, i);
  }
  // Only the elements of the listed indexes, given in increasing order.
  ControlArray(const std::string& name, std::initializer_list<int> indexes) {
    for (int i : indexes) Add(name, i);
  }
  T& operator()(int index) { return *Element(index); }
  const T& operator()(int index) const { return *Element(index); }
  bool Exists(int index) const {
    return index >= 0 && index < static_cast<int>(byIndex_.size()) &&
           byIndex_[static_cast<size_t>(index)] != nullptr;
  }
  int Count() const { return static_cast<int>(items_.size()); }
  int LBound() const { return items_.empty() ? 0 : items_.front()->Index(); }
  int UBound() const { return items_.empty() ? -1 : items_.back()->Index(); }

  // Installs one handler for every element; the element's index is passed first.
  // Example: Fieldbox.On(&TextBox::Change, [this](int i) { Fieldbox_Change(i); });
  template <typename Member, typename F>
  void On(Member member, F handler) {
    for (auto& item : items_) {
      const int index = item->Index();
      ((*item).*member) = [handler, index](auto&&... args) {
        handler(index, std::forward<decltype(args)>(args)...);
      };
    }
  }

  // The elements that exist, in index order.
  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }

 private:
  void Add(const std::string& name, int index) {
    items_.push_back(std::make_unique<T>(name, index));
    if (static_cast<int>(byIndex_.size()) <= index) byIndex_.resize(static_cast<size_t>(index) + 1);
    byIndex_[static_cast<size_t>(index)] = items_.back().get();
  }
  T* Element(int index) const {
    if (!Exists(index)) vb::Raise(kNoSuchElement, "Control array element doesn't exist");
    return byIndex_[static_cast<size_t>(index)];
  }
  static constexpr int kNoSuchElement = 340;
  std::vector<std::unique_ptr<T>> items_;  // the elements, in index order
  std::vector<T*> byIndex_;                // by index; null where there is no element
};

}  // namespace vellumar::ui
