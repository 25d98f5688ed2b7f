#pragma once
// A control array: controls of one kind sharing a name, told apart by their index, whose
// handlers take the index first.
#include <memory>
#include <string>
#include <vector>

namespace vellumar::ui {

template <typename T>
class ControlArray {
 public:
  ControlArray(const std::string& name, int count) {
    for (int i = 0; i < count; ++i) items_.push_back(std::make_unique<T>(name, i));
  }
  T& operator()(int index) { return *items_.at(static_cast<size_t>(index)); }
  const T& operator()(int index) const { return *items_.at(static_cast<size_t>(index)); }
  int Count() const { return static_cast<int>(items_.size()); }
  int LBound() const { return 0; }
  int UBound() const { return Count() - 1; }

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

  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }

 private:
  std::vector<std::unique_ptr<T>> items_;
};

}  // namespace vellumar::ui
