// The Import and Export tabs of the main window worked as the operator works them: the file
// chosen in the desktop's dialog, the counters, report box and times filled, the Log page
// showing what came in, closing refused while an import runs, Abort, and an export onto a file
// that exists already.
#include <filesystem>
#include <string>

#include "logpage/log_page_fixture.h"
#include "logpage/log_page.h"
#include "support/temp_dir.h"

namespace vellumar {
namespace {

using test::LogPageTest;

// Four records: two QSOs, the first of them again, and one without a callsign.
constexpr const char* kFourRecords =
    "test file\r\n<eoh>\r\n"
    "<call:5>K1XYZ<qso_date:8>20240301<time_on:4>1200<band:3>20M<mode:3>SSB<freq:6>14.200<eor>\r\n"
    "<call:5>G3ABC<qso_date:8>20240302<time_on:6>130000<band:3>40M<mode:2>CW<eor>\r\n"
    "<call:5>K1XYZ<qso_date:8>20240301<time_on:4>1200<band:3>20M<mode:3>SSB<freq:6>14.200<eor>\r\n"
    "<qso_date:8>20240303<time_on:4>1400<eor>\r\n";

class AdifTabsTest : public LogPageTest {
 protected:
  std::string WriteInput(const std::string& name, const std::string& text = kFourRecords) {
    const std::string path = h.dir.Join(name);
    test::WriteFileText(path, text);
    return path;
  }
  std::string Counters() {
    VellumMain& m = main();
    return m.ImportRecordsProcessed.Caption() + " " + m.ImportDuplicatesIgnored.Caption() + " " +
           m.ImportTruncatedFields.Caption() + " " + m.ImportIllegalsIgnored.Caption() + " " +
           m.ImportRecordsImported.Caption();
  }
  void ImportFourRecords() {
    h.desktop.ExpectOpenFile(WriteInput("in.adi"));
    main().ImportCmd.UserClick();
  }
};

TEST_F(AdifTabsTest, TheTabsShowTheirOptionsAndTheirDefaults) {
  VellumMain& m = main();
  EXPECT_EQ(m.LoggerImportButton.Caption(), "Import from Logger");
  EXPECT_EQ(m.Option2.Caption(), "Import standard ADIF");
  EXPECT_EQ(m.MMTTYImportButton.Caption(), "Import from MMTTY");
  EXPECT_EQ(m.DXBaseExportButton.Caption(), "Export for DXBase");
  EXPECT_EQ(m.Option1.Caption(), "Export standard ADIF");
  EXPECT_EQ(m.ImportDuplicateCheckbox.Caption(), "check duplicates on import");
  EXPECT_EQ(m.SaveImportErrorsCheck.Caption(), "Record import errors in .err file");
  EXPECT_EQ(m.DefaultCallsignCheckbox.Caption(), "Substitute K1ABC for missing operator callsigns");
  EXPECT_EQ(m.ImportIllegalsIgnored.ToolTipText(),
            "count of QSOs whose ADIF was malformed, preventing import");
  EXPECT_EQ(m.ExportQSONotes.ToolTipText(),
            "text to be appended to the Notes field of each exported QSO");
  EXPECT_EQ(m.ImportProgressFrame.Caption(), "Progress");
  // Nothing chosen in the settings: the standard kinds, duplicates checked, nothing running.
  EXPECT_TRUE(m.Option2.Value());
  EXPECT_FALSE(m.LoggerImportButton.Value());
  EXPECT_TRUE(m.Option1.Value());
  EXPECT_EQ(m.ImportDuplicateCheckbox.Value(), 1);
  EXPECT_FALSE(m.AbortImportCmd.Enabled());
  EXPECT_FALSE(m.AbortExportCmd.Enabled());
  EXPECT_TRUE(m.ImportReport.Locked());
  // One kind excludes the others.
  m.MMTTYImportButton.UserSelect();
  EXPECT_FALSE(m.Option2.Value());
}

TEST_F(AdifTabsTest, StartImportsTheChosenFileAndFillsTheTab) {
  const long before = RowsInFile();
  ImportFourRecords();
  ASSERT_EQ(h.desktop.PendingExpectations(), 0u);
  const ui::FileDialogRequest& dialog = h.desktop.Calls().back().dialog;
  EXPECT_EQ(dialog.title, "ADIF Import");
  EXPECT_EQ(dialog.filter, "ADIF (*.adi)|*.adi");
  EXPECT_EQ(dialog.defaultExt, ".adi");
  EXPECT_EQ(dialog.flags, 4104);
  EXPECT_EQ(Counters(), "4 1 0 1 2");
  EXPECT_EQ(RowsInFile(), before + 2);
  EXPECT_EQ(FileValue("G3ABC", "Mode"), "CW");
  EXPECT_EQ(FileValue("G3ABC", "Operator"), "K1ABC");  // the default callsign
  EXPECT_EQ(main().ImportReport.Text().rfind("test file\r\n", 0), 0u);
  EXPECT_NE(main().ImportReport.Text().find("missing callsign: "), std::string::npos);
  EXPECT_EQ(main().ImportProgressFrame.Caption(), "Importing from " + h.dir.Join("in.adi"));
  EXPECT_EQ(main().ImportStartTime.Caption(), "15/03/2024 08:30 Z");
  EXPECT_EQ(main().ImportCompleteTime.Caption(), "15/03/2024 08:30 Z");
  EXPECT_FALSE(main().AbortImportCmd.Enabled());
  EXPECT_FALSE(main().ImportInProgress());
  EXPECT_EQ(h.Setting("ADIF", "ImportDirectory"), h.dir.path());
  // The Log page shows them.
  log().Requery();
  long shown = 0;
  for (log().MoveFirst(); !log().EOF_(); log().MoveNext()) ++shown;
  EXPECT_EQ(shown, before + 2);
  // The same file again: every QSO is a duplicate now.
  ImportFourRecords();
  EXPECT_EQ(Counters(), "4 3 0 1 0");
  EXPECT_EQ(RowsInFile(), before + 2);
}

// After an import the display is sorted as the sort buttons say: by start time standing on the
// newest QSO, or by call standing on the first.
TEST_F(AdifTabsTest, TheDisplayFollowsTheSortButtonsAfterAnImport) {
  auto firstCall = [this] {
    log().MoveFirst();
    return log().Fields("Call").Value().ToStringOrEmpty();
  };
  ImportFourRecords();
  EXPECT_EQ(box(1).Text(), "G3ABC");  // 2 March 13:00, the newest
  EXPECT_EQ(firstCall(), "K1XYZ");    // 1 March
  main().SortCallButton.UserSelect();
  ImportFourRecords();
  EXPECT_EQ(box(1).Text(), "G3ABC");  // first in call order
  EXPECT_EQ(firstCall(), "G3ABC");
}

TEST_F(AdifTabsTest, ACancelledDialogImportsNothing) {
  const long before = RowsInFile();
  h.desktop.ExpectOpenFileCancel();
  main().ImportCmd.UserClick();
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  EXPECT_EQ(RowsInFile(), before);
  EXPECT_EQ(main().ImportRecordsProcessed.Caption(), "");
  EXPECT_FALSE(main().AbortImportCmd.Enabled());
  EXPECT_FALSE(main().CommandBusy);
}

TEST_F(AdifTabsTest, TheWindowRefusesToCloseWhileAnImportRunsAndAbortEndsIt) {
  const long before = RowsInFile();
  int cancelWhileRunning = -1;
  bool runningSeen = false;
  // The window's first turn during the import: the operator tries to close it, then aborts.
  h.loop.Post([&] {
    runningSeen = main().ImportInProgress();
    cancelWhileRunning = 0;
    main().VellumMain_QueryUnload(cancelWhileRunning, 0);
    main().AbortImportCmd.UserClick();
  });
  h.desktop.ExpectOpenFile(WriteInput("in.adi"));
  h.desktop.ExpectMsgBox("Abort the import operation before terminating");
  main().ImportCmd.UserClick();
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  EXPECT_TRUE(runningSeen);
  EXPECT_EQ(cancelWhileRunning, 1);
  // Aborted before its first line: nothing read, nothing stored.
  EXPECT_EQ(Counters(), "0 0 0 0 0");
  EXPECT_EQ(RowsInFile(), before);
  EXPECT_FALSE(main().ImportInProgress());
  int cancel = 0;
  main().VellumMain_QueryUnload(cancel, 0);
  EXPECT_EQ(cancel, 0);
}

TEST_F(AdifTabsTest, ExportOfAnEmptyLogSaysSo) {
  ASSERT_EQ(RowsInFile(), 0);
  // The button is off while the Log Page shows no QSO; the command itself says so too.
  EXPECT_FALSE(main().ExportCmd.Enabled());
  h.desktop.ExpectMsgBox("no records to export");
  main().ExportCmd_Click();
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  EXPECT_FALSE(main().CommandBusy);
}

TEST_F(AdifTabsTest, ExportOntoAnExistingFileClearsItOrAppends) {
  ImportFourRecords();
  const long rows = RowsInFile();
  const std::string out = h.dir.Join("out.adi");
  test::WriteFileText(out, "old contents\r\n");
  const std::string question =
      out + " already exists; should its current contents be cleared before exporting?";
  // Yes: cleared, a header, then the QSOs.
  h.desktop.ExpectSaveFile(out);
  h.desktop.ExpectMsgBox(question, ui::vbYes);
  main().ExportCmd.UserClick();
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  EXPECT_EQ(h.desktop.Calls()[h.desktop.Calls().size() - 2].dialog.title, "ADIF Export");
  EXPECT_EQ(main().ExportRecordsProcessed.Caption(), std::to_string(rows));
  EXPECT_EQ(main().ExportRecordsExported.Caption(), std::to_string(rows));
  EXPECT_EQ(main().ExportProgressFrame.Caption(), "Exporting to " + out);
  EXPECT_EQ(main().ExportCompleteTime.Caption(), "15/03/2024 08:30 Z");
  EXPECT_FALSE(main().AbortExportCmd.Enabled());
  EXPECT_EQ(h.Setting("ADIF", "ExportDirectory"), h.dir.path());
  std::string text = test::ReadFileText(out);
  EXPECT_EQ(text.rfind("ADIF file\r\n", 0), 0u);
  EXPECT_NE(text.find("<Call:5>G3ABC "), std::string::npos);
  // No: appended behind what is there, without a header.
  h.desktop.ExpectSaveFile(out);
  h.desktop.ExpectMsgBox(question, ui::vbNo);
  main().ExportCmd.UserClick();
  const std::string appended = test::ReadFileText(out);
  EXPECT_EQ(appended.rfind(text, 0), 0u);
  EXPECT_EQ(appended.find("ADIF file", text.size()), std::string::npos);
  EXPECT_NE(appended.find("<Call:5>G3ABC ", text.size()), std::string::npos);
}

TEST_F(AdifTabsTest, AFaultyQSOInHandStopsTheImportBeforeTheDialog) {
  ImportFourRecords();
  const long rows = RowsInFile();
  box(12).UserSetText("A QTH much longer than thirty characters");
  main().SelectTab(4);
  main().ImportCmd.UserClick();  // no dialog is scripted: one would fail the test
  EXPECT_EQ(main().TabbedDialog.Tab(), 0);
  EXPECT_TRUE(main().FieldInError[12]);
  EXPECT_EQ(RowsInFile(), rows);
  EXPECT_FALSE(main().CommandBusy);
}

TEST_F(AdifTabsTest, ErrorsGoToTheErrFileAndTheBarShowsTheBytesRead) {
  main().SaveImportErrorsCheck.SetValue(1);
  ImportFourRecords();
  const std::string err = test::ReadFileText(h.dir.Join("in.adi.err"));
  EXPECT_NE(err.find("missing callsign: "), std::string::npos) << err;
  EXPECT_EQ(main().ImportBytesRead.Max, static_cast<double>(std::string(kFourRecords).size()));
  EXPECT_EQ(main().ImportBytesRead.Value(), main().ImportBytesRead.Max);
}

TEST_F(AdifTabsTest, TheExportOptionsReachTheFile) {
  ImportFourRecords();
  main().DXBaseExportButton.UserSelect();
  main().ExportQSONotes.UserSetText("via import");
  const std::string out = h.dir.Join("notes.adi");
  h.desktop.ExpectSaveFile(out);
  main().ExportCmd.UserClick();
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  const std::string text = test::ReadFileText(out);
  // Stored "14.200": read as a number, DXBase form "14.2" (a second point only from the
  // fourth decimal on).
  EXPECT_NE(text.find("<Freq:4>14.2 "), std::string::npos) << text;
  EXPECT_NE(text.find("<Comment:10>via import "), std::string::npos) << text;
  // G3ABC has no frequency: an empty text doesn't read as a number, and that QSO alone is lost
  // (reported, and counted all the same).
  EXPECT_EQ(text.find("G3ABC"), std::string::npos) << text;
  EXPECT_EQ(main().ExportRecordsExported.Caption(), "2");
  EXPECT_NE(h.ErrorLogText().find("ADIF.ExportQSO"), std::string::npos);
  // Standard ADIF writes the frequency as stored, and every QSO.
  main().Option1.UserSelect();
  h.desktop.ExpectSaveFile(out);
  h.desktop.ExpectMsgBox(
      out + " already exists; should its current contents be cleared before exporting?",
      ui::vbYes);
  main().ExportCmd.UserClick();
  const std::string standard = test::ReadFileText(out);
  EXPECT_NE(standard.find("<Freq:6>14.200 "), std::string::npos) << standard;
  EXPECT_NE(standard.find("<Call:5>G3ABC "), std::string::npos) << standard;
}

TEST_F(AdifTabsTest, AFileThatCantBeReadIsToldInAMessageBox) {
  const long before = RowsInFile();
  const std::string folder = h.dir.Join("a-folder.adi");
  std::filesystem::create_directories(folder);
  h.desktop.ExpectOpenFile(folder);
  h.desktop.ExpectMsgBoxStartingWith("Unable to open file " + folder + " - ");
  main().ImportCmd.UserClick();
  EXPECT_EQ(h.desktop.PendingExpectations(), 0u);
  EXPECT_EQ(RowsInFile(), before);
  EXPECT_FALSE(main().AbortImportCmd.Enabled());
  EXPECT_FALSE(main().ImportInProgress());
  EXPECT_FALSE(main().CommandBusy);
}

}  // namespace
}  // namespace vellumar
