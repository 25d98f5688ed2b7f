#include "platform/link/topic.h"

#include <vector>

namespace vellumar::link {

bool Topic::Execute(const std::string& command) {
  if (!execute_) return false;
  // A copy: the handler may replace itself.
  ExecuteHandler handler = execute_;
  return handler(command);
}

void Topic::SetItem(const std::string& item, const std::string& value) {
  auto found = items_.find(item);
  if (found != items_.end() && found->second == value) return;
  items_[item] = value;
  // Watchers may come and go while they are told: tell those that still watch.
  std::vector<int> ids;
  for (const auto& [id, watcher] : watchers_) ids.push_back(id);
  for (int id : ids) {
    auto watcher = watchers_.find(id);
    if (watcher == watchers_.end()) continue;
    ItemWatcher call = watcher->second;
    call(item, value);
  }
}

std::string Topic::Item(const std::string& item) const {
  auto found = items_.find(item);
  return found == items_.end() ? std::string() : found->second;
}

int Topic::Watch(ItemWatcher watcher) {
  const int id = nextWatcher_++;
  watchers_.emplace(id, std::move(watcher));
  return id;
}

void Topic::Unwatch(int id) { watchers_.erase(id); }

}  // namespace vellumar::link
