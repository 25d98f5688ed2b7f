#pragma once
// A fresh directory for one test, removed with everything in it when the test ends.
#include <string>

namespace vellumar::test {

class TempDir {
 public:
  explicit TempDir(const std::string& prefix = "vellumar-test");
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  // path() + "/" + name
  std::string Join(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;  // absolute, without a trailing "/"
};

// Whole content of a file; "" when it can't be read.
std::string ReadFileText(const std::string& path);
// Writes (replaces) a file; false when it can't.
bool WriteFileText(const std::string& path, const std::string& text);

}  // namespace vellumar::test
