// The Import and Export tabs in Qt windows on the offscreen platform: Start clicked, the
// desktop's dialog answered, the counters and the report box filled on screen, the Log page
// showing the QSOs, closing refused while the import runs, Abort, and an export onto an
// existing file.
#include <gtest/gtest.h>

#include <QLabel>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <string>

#include "qt/qt_program_test.h"

namespace vellumar::qt {
namespace {

// Three QSOs and a record without a callsign.
constexpr const char* kInput =
    "<call:5>K1XYZ<qso_date:8>20240301<time_on:4>1200<band:3>20M<mode:3>SSB<eor>\r\n"
    "<call:5>G3ABC<qso_date:8>20240302<time_on:4>1300<band:3>40M<mode:2>CW<eor>\r\n"
    "<call:6>JA1ABC<qso_date:8>20240303<time_on:4>1400<band:3>15M<mode:2>CW<eor>\r\n"
    "<qso_date:8>20240303<time_on:4>1500<eor>\r\n";

class AdifTabsViewTest : public test::QtProgramTest {
 protected:
  void SetUp() override {
    SeedReturningOperator();
    StartProgram();
    input_ = dir_.Join("in.adi");
    vellumar::test::WriteFileText(input_, kInput);
  }
  template <typename W>
  W* Find(const char* name) {
    W* w = views_->main.window()->findChild<W*>(QString::fromUtf8(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
  }
  std::string LabelText(const char* name) { return Find<QLabel>(name)->text().toStdString(); }
  long LogRows() {
    db::Recordset rs = app_->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    if (rs.EOF_()) return 0;
    rs.MoveLast();
    return rs.RecordCount();
  }

  std::string input_;
};

TEST_F(AdifTabsViewTest, StartImportsAndTheTabShowsTheCounts) {
  desktop_.ExpectOpenFile(input_);
  Find<QPushButton>("ImportCmd")->click();
  EXPECT_EQ(desktop_.PendingExpectations(), 0u);
  EXPECT_EQ(LabelText("ImportRecordsProcessed"), "4");
  EXPECT_EQ(LabelText("ImportDuplicatesIgnored"), "0");
  EXPECT_EQ(LabelText("ImportTruncatedFields"), "0");
  EXPECT_EQ(LabelText("ImportIllegalsIgnored"), "1");
  EXPECT_EQ(LabelText("ImportRecordsImported"), "3");
  const std::string report = Find<QPlainTextEdit>("ImportReport")->toPlainText().toStdString();
  EXPECT_NE(report.find("missing callsign: "), std::string::npos) << report;
  EXPECT_TRUE(Find<QPlainTextEdit>("ImportReport")->isReadOnly());
  EXPECT_FALSE(Find<QPushButton>("AbortImportCmd")->isEnabled());
  EXPECT_EQ(LogRows(), 3);
  // The Log page's display holds them, and the export can start.
  EXPECT_TRUE(Find<QPushButton>("ExportCmd")->isEnabled());
  EXPECT_NE(app_->main.LogPosition.Recordset().RecordCount(), 0);
}

TEST_F(AdifTabsViewTest, ClosingIsRefusedWhileTheImportRunsUntilAbort) {
  auto* window = views_->main.window();
  bool stillOpen = false;
  loop_.Post([&] {
    window->close();  // the operator closes the window mid-import
    stillOpen = window->isVisible();
    Find<QPushButton>("AbortImportCmd")->click();
  });
  desktop_.ExpectOpenFile(input_);
  desktop_.ExpectMsgBox("Abort the import operation before terminating");
  Find<QPushButton>("ImportCmd")->click();
  EXPECT_EQ(desktop_.PendingExpectations(), 0u);
  EXPECT_TRUE(stillOpen);
  EXPECT_TRUE(window->isVisible());
  EXPECT_FALSE(exitCode_.has_value());
  EXPECT_EQ(LabelText("ImportRecordsImported"), "0");
  EXPECT_EQ(LogRows(), 0);
  EXPECT_FALSE(app_->main.ImportInProgress());
}

TEST_F(AdifTabsViewTest, ExportOntoAnExistingFileAfterYes) {
  desktop_.ExpectOpenFile(input_);
  Find<QPushButton>("ImportCmd")->click();
  const std::string out = dir_.Join("out.adi");
  vellumar::test::WriteFileText(out, "old\r\n");
  desktop_.ExpectSaveFile(out);
  desktop_.ExpectMsgBox(out + " already exists; should its current contents be cleared before "
                              "exporting?",
                        ui::vbYes);
  Find<QPushButton>("ExportCmd")->click();
  EXPECT_EQ(desktop_.PendingExpectations(), 0u);
  EXPECT_EQ(LabelText("ExportRecordsProcessed"), "3");
  EXPECT_EQ(LabelText("ExportRecordsExported"), "3");
  const std::string text = vellumar::test::ReadFileText(out);
  EXPECT_EQ(text.rfind("ADIF file\r\n", 0), 0u);
  EXPECT_NE(text.find("<Call:6>JA1ABC "), std::string::npos);
}

}  // namespace
}  // namespace vellumar::qt
