#include "qsl/qsl_commands.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <unistd.h>
#include <string>
#include <utility>
#include <vector>

#include "support/frame_harness.h"

namespace vellumar::qsl {
namespace {

// A context over a fixed row, with the files of a map and every error recorded.
class ExpandTest : public ::testing::Test {
 protected:
  ExpandTest() {
    context.row = {"Springfield", "Hampden", "MA", "USA", "FN32", "42.1", "-72.5", "NA-001",
                   "5", "8"};
    context.myCall = "K1ABC";
    context.version = "3.2.17";
    context.readFile = [this](const std::string& name) {
      names.push_back(name);
      auto it = files.find(name);
      if (it == files.end()) return CommandFile{};
      return CommandFile{CommandFile::Outcome::kRead, it->second, {}};
    };
    context.expandError = [this](const std::string& text, const std::string& message) {
      errors.push_back(ExpandErrorText(text, message));
    };
    context.reportError = [this](const std::string& text) { reported.push_back(text); };
  }
  std::string Expand(std::string text) {
    remainder = std::move(text);
    return ExpandCommands(remainder, context);
  }
  QSLCommandContext context;
  std::map<std::string, std::vector<std::string>> files;
  std::vector<std::string> names, errors, reported;
  std::string remainder;
};

TEST_F(ExpandTest, PlainTextIsItself) {
  EXPECT_EQ(Expand("73 and thanks"), "73 and thanks");
  EXPECT_EQ(remainder, "");
  EXPECT_EQ(Expand(""), "");
  EXPECT_TRUE(errors.empty());
}

TEST_F(ExpandTest, EveryCommandOfTheTable) {
  EXPECT_EQ(Expand("<mycall>|<city>|<county>|<state>|<country>|<grid>|<latitude>|<longitude>|"
                   "<iota>|<cq>|<itu>|<revision>"),
            "K1ABC|Springfield|Hampden|MA|USA|Grid: FN32|42.1|-72.5|Iota NA-001|5|8|3.2.17");
  EXPECT_EQ(remainder, "");
  EXPECT_TRUE(errors.empty());
}

TEST_F(ExpandTest, CommandsFoldToLowerCase) {
  EXPECT_EQ(Expand("op <MyCall> in <CITY>"), "op K1ABC in Springfield");
}

TEST_F(ExpandTest, AnEmptyGridOrIotaGivesNothing) {
  context.row.grid.clear();
  context.row.iota.clear();
  EXPECT_EQ(Expand("Grid <grid>"), "Grid ");
  EXPECT_EQ(Expand("<iota>!"), "!");
  EXPECT_TRUE(errors.empty());
}

TEST_F(ExpandTest, ADoubledOpenerIsOneOpener) {
  EXPECT_EQ(Expand("a<<b"), "a<b");
  EXPECT_EQ(Expand("a<<<city>"), "a<Springfield");
  EXPECT_EQ(Expand("<<"), "<");
  EXPECT_EQ(Expand("x>y"), "x>y");
  EXPECT_TRUE(errors.empty());
}

TEST_F(ExpandTest, ControlCodesUpTo255AreSwallowed) {
  EXPECT_EQ(Expand("a<255>b"), "ab");
  EXPECT_EQ(Expand("a<0>b"), "ab");
  EXPECT_EQ(Expand("a<007>b"), "ab");
  EXPECT_EQ(Expand("<13><10>"), "");
  EXPECT_EQ(Expand("<0000000000000000000255>x"), "x");
  EXPECT_TRUE(errors.empty());
}

TEST_F(ExpandTest, AControlCodeAbove255IsAnErrorNamingWhatFollows) {
  EXPECT_EQ(Expand("ab<256>cd<city>"), "");
  EXPECT_EQ(remainder, "cd<city>");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Error in QSL command cd<city>: control code larger than 255");
  // A long run of digits is just as large, never an overflow.
  EXPECT_EQ(Expand("<99999999999999999999999999>"), "");
  EXPECT_EQ(errors.back(), "Error in QSL command : control code larger than 255");
}

TEST_F(ExpandTest, AnEmptyCommandAddsNothing) {
  EXPECT_EQ(Expand("a<>b"), "ab");
  EXPECT_TRUE(errors.empty());
}

TEST_F(ExpandTest, AFileIsReadByItsLowerCasedNameEachLineEndedByACarriageReturn) {
  files["c:\\text.txt"] = {"line one", "line two"};
  EXPECT_EQ(Expand("[<FILE: C:\\Text.TXT>]"), "[line one\rline two\r]");
  ASSERT_EQ(names.size(), 1u);
  EXPECT_EQ(names[0], "c:\\text.txt");
  EXPECT_TRUE(errors.empty());
}

TEST_F(ExpandTest, TheNameAfterFileIsNotTrimmed) {
  files[" x "] = {"spaced"};
  EXPECT_EQ(Expand("<file:  x >"), "spaced\r");
  EXPECT_EQ(names.back(), " x ");
}

TEST_F(ExpandTest, FileWithoutTheBlankIsAnUnknownCommand) {
  EXPECT_EQ(Expand("<file:x>tail"), "");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Error in QSL command tail: unknown command: file:x");
  EXPECT_EQ(remainder, "tail");
  EXPECT_TRUE(names.empty());
}

TEST_F(ExpandTest, AMissingFileIsReportedAndTheExpansionGoesOn) {
  EXPECT_EQ(Expand("a<file: gone.txt>b<city>"), "abSpringfield");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Error in QSL command b<city>: Filename does not exist: gone.txt");
  EXPECT_EQ(remainder, "");
}

TEST_F(ExpandTest, AFileThatCantBeReadGoesToTheCommonReporterAndGivesNothing) {
  context.readFile = [](const std::string&) {
    return CommandFile{CommandFile::Outcome::kFailed, {}, "disk error"};
  };
  EXPECT_EQ(Expand("a<file: x>b"), "");
  ASSERT_EQ(reported.size(), 1u);
  EXPECT_EQ(reported[0], "VellumQSLModule.ExpandCommands: disk error");
  EXPECT_EQ(remainder, "b");
}

TEST_F(ExpandTest, AnUnknownCommandIsAnError) {
  EXPECT_EQ(Expand("x<Callsign>y"), "");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Error in QSL command y: unknown command: callsign");
}

TEST_F(ExpandTest, ALoneOpenerAtTheEndOfALongerTextHasNoMatchingCloser) {
  EXPECT_EQ(Expand("73 <"), "");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Error in QSL command 73 <: < without matching >");
  EXPECT_EQ(remainder, "73 <");
  EXPECT_EQ(Expand("<city"), "");
  EXPECT_EQ(errors.back(), "Error in QSL command <city: < without matching >");
}

TEST_F(ExpandTest, ATextThatIsOnlyAnOpenerIsMalformed) {
  EXPECT_EQ(Expand("<"), "");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Error in QSL command <: malformed command");
  // The same once the working text has shrunk to it.
  EXPECT_EQ(Expand("<city><"), "");
  EXPECT_EQ(errors.back(), "Error in QSL command <: malformed command");
  EXPECT_EQ(remainder, "<");
}

TEST_F(ExpandTest, ThereIsNoCloserInsideACommand) {
  // The first ">" ends the command; the rest is plain text.
  EXPECT_EQ(Expand("<city>>"), "Springfield>");
}

TEST(ReadCommandFile, ReadsLinesOfEveryEndingAndTellsAMissingFile) {
  test::FrameHarness h;
  const std::string path = h.dir.Join("corner.txt");
  {
    std::ofstream out(path, std::ios::binary);
    out << "one\r\ntwo\nthree\rfour";
  }
  const CommandFile file = ReadCommandFile(path);
  ASSERT_EQ(file.outcome, CommandFile::Outcome::kRead);
  EXPECT_EQ(file.lines, (std::vector<std::string>{"one", "two", "three", "four"}));
  EXPECT_EQ(ReadCommandFile(h.dir.Join("none.txt")).outcome, CommandFile::Outcome::kMissing);
  // Names are case-sensitive here: the lower-cased name of an upper-case file is missing.
  const std::string upper = h.dir.Join("UPPER.TXT");
  { std::ofstream out(upper); out << "x\n"; }
  EXPECT_EQ(ReadCommandFile(h.dir.Join("upper.txt")).outcome, CommandFile::Outcome::kMissing);
  // A folder of that name exists but can't be read as a file.
  std::filesystem::create_directories(h.dir.Join("folder"));
  EXPECT_EQ(ReadCommandFile(h.dir.Join("folder")).outcome, CommandFile::Outcome::kFailed);
}

TEST(ReadCommandFile, TheRealReaderThroughExpandCommands) {
  // The name is folded to lower case before it is opened: a folder of lower-case letters.
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("vellumar_qsl_" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  const std::string path = (folder / "corner.txt").string();
  { std::ofstream out(path); out << "QSL via bureau\n"; }
  QSLCommandContext context;  // ReadCommandFile is the default reader
  std::string text = "<File: " + path + ">";
  const std::string expanded = ExpandCommands(text, context);
  std::filesystem::remove_all(folder);
  EXPECT_EQ(expanded, "QSL via bureau\r");
}

}  // namespace
}  // namespace vellumar::qsl
