#pragma once
// A topic a program serves under its application name ("Application|Topic"): commands come in
// through its execute handler, which accepts or refuses them, and clients read its items.
// Setting an item to a new value announces the change to every watcher at once, before
// SetItem returns, so a command handler that sets items has them delivered to automatic links
// before the command's answer.
#include <functional>
#include <map>
#include <string>

namespace vellumar::link {

class Topic {
 public:
  // Returns true when the command is accepted, false when it is refused.
  using ExecuteHandler = std::function<bool(const std::string& command)>;
  // Told the item's name and its new value.
  using ItemWatcher = std::function<void(const std::string& item, const std::string& value)>;

  explicit Topic(std::string name) : name_(std::move(name)) {}
  Topic(const Topic&) = delete;
  Topic& operator=(const Topic&) = delete;

  const std::string& Name() const { return name_; }

  // Without a handler every command is refused.
  void OnExecute(ExecuteHandler handler) { execute_ = std::move(handler); }
  bool Execute(const std::string& command);

  // Serves `item` with `value`; a change of value is announced (a first value too).
  void SetItem(const std::string& item, const std::string& value);
  bool HasItem(const std::string& item) const { return items_.count(item) != 0; }
  // The item's value; "" for an item not served (check HasItem).
  std::string Item(const std::string& item) const;

  // Watchers are told every announced change until they are removed.
  int Watch(ItemWatcher watcher);
  void Unwatch(int id);

 private:
  std::string name_;
  ExecuteHandler execute_;
  std::map<std::string, std::string> items_;  // item name -> value
  std::map<int, ItemWatcher> watchers_;       // by id, in order of watching
  int nextWatcher_ = 1;
};

}  // namespace vellumar::link
