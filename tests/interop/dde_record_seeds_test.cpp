// The record fuzzer's seeds, and any reproducer kept beside them, replayed through the same
// checks the fuzzer makes, so that `make test` holds what the fuzzer once found.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "dde_record_check.h"

namespace vellumar {
namespace {

TEST(DDERecordSeeds, EverySeedPassesTheFuzzersChecks) {
  const std::filesystem::path folder =
      std::filesystem::path(VELLUMAR_SOURCE_DIR) / "tests/fuzz/fuzz_dde_record";
  int seeds = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream in(entry.path(), std::ios::binary);
    std::stringstream bytes;
    bytes << in.rdbuf();
    EXPECT_EQ(fuzzcheck::CheckRecord(bytes.str()), "") << entry.path().filename();
    ++seeds;
  }
  EXPECT_GE(seeds, 10);
}

TEST(DDERecordSeeds, TheChecksCatchWhatTheyAreFor) {
  EXPECT_TRUE(fuzzcheck::WellFormedUtf8("Z\xc3\xbcrich"));
  EXPECT_FALSE(fuzzcheck::WellFormedUtf8("Z\xc3"));
  EXPECT_FALSE(fuzzcheck::WellFormedUtf8("\xc0\x80"));
  EXPECT_FALSE(fuzzcheck::WellFormedUtf8("\xed\xa0\x80"));
  EXPECT_FALSE(fuzzcheck::WellFormedUtf8("\xf4\x90\x80\x80"));
  EXPECT_TRUE(fuzzcheck::WellFormedUtf8("\xf0\x9f\x93\xbb"));
}

}  // namespace
}  // namespace vellumar
