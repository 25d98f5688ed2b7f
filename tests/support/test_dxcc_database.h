#pragma once
// Small DXCC databases for tests, written through the record layer with made-up rows. The key
// fields are named unlike the generator's, since the program reaches them only through the
// PrimaryKey indexes.
#include <optional>
#include <string>
#include <vector>

namespace vellumar::test {

struct TestDXCCRow {
  std::string dxccPrefix;
  std::optional<int> countryCode;  // Null when absent
  std::optional<std::string> dxccName;
  std::optional<double> endDate;  // date value; Null when absent
};

struct TestPrefixRow {
  std::string key;
  std::optional<std::string> dxccPrefix;
  std::optional<std::string> location;
};

struct TestLocationRow {
  std::string key;
  std::optional<std::string> continent;
  std::optional<int> cqZone;
  std::optional<int> ituZone;
};

void CreateTestDXCCDatabase(const std::string& path, const std::vector<TestDXCCRow>& dxcc,
                            const std::vector<TestPrefixRow>& prefixes,
                            const std::vector<TestLocationRow>& locations);

}  // namespace vellumar::test
