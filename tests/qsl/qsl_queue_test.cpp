#include "qsl/qsl_queue.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/bound/data_control.h"
#include "support/frame_harness.h"

namespace vellumar {
namespace {

std::string FileText(const std::string& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(QSLQueue, AMissingQueueIsCreatedAndItsRowsBoundToThePosition) {
  test::FrameHarness h;
  QSLQueue queue(h.desktop, h.common.errorLog());
  int disabled = 0;
  queue.DisableQSLCommands = [&] { ++disabled; };
  ui::DataControl position("QSLPosition");
  const std::string pathname = h.dir.Join("QSL.vdb");

  queue.OpenQSLQueue(pathname, position);

  EXPECT_TRUE(queue.IsOpen());
  EXPECT_TRUE(std::filesystem::is_regular_file(pathname));
  EXPECT_EQ(position.DatabaseName, pathname);
  EXPECT_EQ(position.RecordSource, "PrintQueue");
  EXPECT_EQ(position.Recordset().Fields().Count(), 31);
  EXPECT_EQ(disabled, 0);

  queue.CloseQSLQueue(position);
  EXPECT_FALSE(queue.IsOpen());
  // Closing twice is harmless: every step's failure is ignored.
  queue.CloseQSLQueue(position);
  EXPECT_FALSE(queue.IsOpen());
}

TEST(QSLQueue, AQueueThatCantBeOpenedIsReportedAndDisablesTheCommands) {
  test::FrameHarness h;
  h.common.Initialize();  // the error log of this run, in the data folder
  QSLQueue queue(h.desktop, h.common.errorLog());
  int disabled = 0;
  queue.DisableQSLCommands = [&] { ++disabled; };
  ui::DataControl position("QSLPosition");
  // A folder where the file should be: it exists, but is no database.
  const std::string pathname = h.dir.Join("QSL.vdb");
  std::filesystem::create_directories(pathname);
  h.desktop.ExpectMsgBox("Unable to open QSL Queue database: " + pathname);

  queue.OpenQSLQueue(pathname, position);

  EXPECT_FALSE(queue.IsOpen());
  EXPECT_EQ(disabled, 1);
  EXPECT_NE(FileText(h.ErrorLogPath()).find("Unable to open QSLQueue " + pathname),
            std::string::npos);
}

}  // namespace
}  // namespace vellumar
