#include "support/env_guard.h"

#include <stdlib.h>

namespace vellumar::test {

EnvGuard::~EnvGuard() {
  for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
    if (it->second) {
      setenv(it->first.c_str(), it->second->c_str(), 1);
    } else {
      unsetenv(it->first.c_str());
    }
  }
}

void EnvGuard::Remember(const std::string& name) {
  for (const auto& [saved, value] : saved_) {
    if (saved == name) return;
  }
  const char* old = getenv(name.c_str());
  saved_.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
}

void EnvGuard::Set(const std::string& name, const std::string& value) {
  Remember(name);
  setenv(name.c_str(), value.c_str(), 1);
}

void EnvGuard::Unset(const std::string& name) {
  Remember(name);
  unsetenv(name.c_str());
}

}  // namespace vellumar::test
