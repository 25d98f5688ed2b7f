// Lines of the input: their ends, the last line, the byte-order mark, the file's errors.
#include "adif/line_source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/vb/error.h"
#include "support/temp_dir.h"

namespace vellumar::adif {
namespace {

std::vector<std::string> AllLines(LineSource& source) {
  std::vector<std::string> lines;
  std::string line;
  while (source.ReadLine(line)) lines.push_back(line);
  return lines;
}

TEST(AdifLineSource, LinesEndAtCrLfLfOrCr) {
  MemoryLineSource source("a\r\nb\nc\rd\r\n\r\ne");
  EXPECT_EQ(AllLines(source), (std::vector<std::string>{"a", "b", "c", "d", "", "e"}));
  EXPECT_EQ(source.ReadError(), vb::kInputPastEndOfFile);
}

TEST(AdifLineSource, FinalLineEndAddsNoEmptyLine) {
  MemoryLineSource source("a\r\nb\r\n");
  EXPECT_EQ(AllLines(source), (std::vector<std::string>{"a", "b"}));
}

TEST(AdifLineSource, CrAtTheEndOfAChunkStillPairsWithTheLfAfterIt) {
  // 64 KiB chunks: put the CR as the last byte of the first one.
  std::string first(64 * 1024 - 1, 'x');
  MemoryLineSource source(first + "\r\nnext\r\n");
  const std::vector<std::string> lines = AllLines(source);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0], first);
  EXPECT_EQ(lines[1], "next");
}

TEST(AdifLineSource, EmptyInputHasNoLine) {
  MemoryLineSource source("");
  std::string line = "kept";
  EXPECT_FALSE(source.ReadLine(line));
  EXPECT_EQ(line, "kept");
  EXPECT_EQ(source.ReadError(), vb::kInputPastEndOfFile);
}

TEST(AdifLineSource, ByteOrderMarkIsDroppedOnlyAtTheStart) {
  MemoryLineSource source("\xEF\xBB\xBF<CALL:4>W1AW\r\n\xEF\xBB\xBFx");
  EXPECT_EQ(AllLines(source),
            (std::vector<std::string>{"<CALL:4>W1AW", "\xEF\xBB\xBFx"}));
}

TEST(AdifLineSource, FileReadsLikeTheSameBytesInMemory) {
  test::TempDir dir;
  const std::string path = dir.Join("log.adi");
  const std::string bytes = "head\r\n<EOH>\n<NAME:4>J\xF6rg<EOR>\r";
  ASSERT_TRUE(test::WriteFileText(path, bytes));
  FileLineSource file;
  ASSERT_TRUE(file.Open(path));
  MemoryLineSource memory(bytes);
  EXPECT_EQ(file.Encoding(), TextEncoding::kWindows1252);
  EXPECT_EQ(AllLines(file), AllLines(memory));
  EXPECT_EQ(file.ReadError(), vb::kInputPastEndOfFile);
}

TEST(AdifLineSource, ClosedFileReadsNothing) {
  FileLineSource file;
  std::string line;
  EXPECT_FALSE(file.ReadLine(line));
}

}  // namespace
}  // namespace vellumar::adif
