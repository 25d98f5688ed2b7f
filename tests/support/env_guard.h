#pragma once
// Sets environment variables for one test and puts the old values back afterwards.
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vellumar::test {

class EnvGuard {
 public:
  EnvGuard() = default;
  ~EnvGuard();
  EnvGuard(const EnvGuard&) = delete;
  EnvGuard& operator=(const EnvGuard&) = delete;

  void Set(const std::string& name, const std::string& value);
  void Unset(const std::string& name);

 private:
  void Remember(const std::string& name);

  // Each variable's value before the guard first touched it; nullopt when it was unset.
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

}  // namespace vellumar::test
