// Every command button of the main window, with the caption and tool tip it must show, read
// from one table: a button missing from the table, or one that differs, fails.
#include <map>
#include <string>
#include <utility>

#include "logpage/log_page_fixture.h"

namespace vellumar {
namespace {

using test::LogPageTest;

const char* const kHelp = "show the help page of this tab";

// Name -> caption and tool tip. The tool tips in quotes of the QSL, Check Progress, Import and
// Export commands are those their tabs give; ConfirmCmd's is the Log page's own.
const std::map<std::string, std::pair<std::string, std::string>> kExpected = {
    {"NewCmd", {"&New", "save the QSO in hand and begin a new one (Ctrl+N)"}},
    {"SaveCmd",
     {"&Save", "save the QSO in hand (Ctrl+S); right-click to save it and begin a new one"}},
    {"RevertCmd", {"&Revert", "discard the changes made to the QSO in hand"}},
    {"DeleteCmd",
     {"&Delete", "delete the QSO in hand; right-click to delete every QSO the Log Page shows"}},
    {"ConfirmCmd",
     {"Con&firm",
      "click to set QSL received status to \"Yes\", date received to \"today\", and QSL sent "
      "status to \"requested\""}},
    {"VerifyCmd", {"&Verify", "click to set QSL received status to \"Verified\""}},
    {"LogFirstCmd", {"|< F&irst", "go to the first QSO of the Log Page (Home)"}},
    {"LogPrevCmd", {"< &Prev", "go to the previous QSO (Page Up)"}},
    {"LogNextCmd", {"Ne&xt >", "go to the next QSO (Page Down)"}},
    {"LogLastCmd", {"&Last >|", "go to the last QSO of the Log Page (End)"}},
    {"RACcmd", {"Callbook", "look up the callsign in the callbook"}},
    {"PlotLogCmd", {"Plot", "plot the QSOs of the Log Page on the map"}},
    {"ReportLogCmd", {"Report", "write a report of the Log Page's QSOs to the Reports subfolder"}},
    {"CaptureCmd", {"Capture", "show the QSO Capture window"}},
    {"ConfigLogCmd", {"Config", "show the Log page of the Configuration window"}},
    {"StopAddCmd", {"Stop", "stop adding QSOs to the QSL queue"}},
    {"HelpLogCmd", {"Help", kHelp}},
    {"FilterCallCmd",
     {"Call", "display only QSOs whose callsign matches the filter text (wildcards * ? # [..])"}},
    {"FilterDXCCCmd", {"DXCC", "display only QSOs whose DXCC prefix matches the filter text"}},
    {"FilterDateCmd",
     {"UTC",
      "display only QSOs begun within the UTC filter range of the filter date and time; "
      "right-click to set the range"}},
    {"FilterBrokenCmd", {"Broken", "display only QSOs marked as \"broken\""}},
    {"FilterClearCmd", {"Clear", "display all QSOs"}},
    {"AdvancedFilterCmd", {"Advanced", "display the Advanced Log Sorts and Filters window"}},
    {"GenerateRequestedCmd",
     {"Add Requested", "add to the print queue all QSOs whose QSL sent status is \"requested\""}},
    {"ProcessPrintedCmd", {"Update Log", "carry the results of the printed QSLs back to the log"}},
    {"GenerateNeededCmd",
     {"Add Needed",
      "add to the print queue all QSOs whose confirmation is need to pursue awards specified on "
      "the Configuration window's Awards tab"}},
    {"ClearQSLDatabaseCmd", {"Clear", "clear all entries in the QSL queue "}},
    {"NewQTHCmd", {"New", "create a new myQTH"}},
    {"SaveQTHCmd", {"Save", "save the current myQTH"}},
    {"DeleteQTHCmd", {"Delete", "delete the current myQTH"}},
    {"SetLogCmd",
     {"Set Log", "set the myQTH ID of every QSO in the Log Page Display to the current myQTH ID"}},
    {"ClrLogCmd", {"Clear Log", "clear the myQTH ID of every QSO in the Log Page Display"}},
    {"QTHListCmd", {"List", "list the myQTH IDs"}},
    {"QTHFirstCmd", {"|<", "go to the first myQTH"}},
    {"QTHPrevCmd", {"<", "go to the previous myQTH"}},
    {"QTHNextCmd", {">", "go to the next myQTH"}},
    {"QTHLastCmd", {">|", "go to the last myQTH"}},
    {"HelpQSLCmd", {"Help", kHelp}},
    {"SummaryCmd", {"Summary", "show the DXCC Summary window"}},
    {"ReComputeCmd",
     {"Recompute",
      "clear the progress table, and then recompute the progress table by evaluating every QSO "
      "in the log"}},
    {"HelpProgressCmd", {"Help", kHelp}},
    {"ConfigProgressCmd", {"Config", "show the Awards page of the Configuration window"}},
    {"HelpQTHCmd", {"Help", kHelp}},
    {"ImportCmd", {"Start", "click to import QSOs from an ADIF-compliant log file"}},
    {"HelpImportCmd", {"Help", kHelp}},
    {"ExportCmd", {"Start", "click to export filtered QSOs to an ADIF-compliant log file"}},
    {"HelpExportCmd", {"Help", kHelp}},
    {"AbortImportCmd", {"Abort", "stop an in-progress Import operation"}},
    {"AbortExportCmd", {"Abort", "stop an in-progress Export operation"}},
    {"ConfigImportCmd", {"Config", "show the Configuration window"}},
    {"ConfigExportCmd", {"Config", "show the Configuration window"}},
};

TEST_F(LogPageTest, EveryCommandButtonShowsItsCaptionAndToolTip) {
  std::map<std::string, int> seen;
  for (ui::Control* c : main().Controls()) {
    auto* button = dynamic_cast<ui::CommandButton*>(c);
    if (button == nullptr) continue;
    SCOPED_TRACE(button->Name());
    ++seen[button->Name()];
    const auto it = kExpected.find(button->Name());
    ASSERT_NE(it, kExpected.end()) << "a command button the table doesn't list";
    EXPECT_EQ(button->Caption(), it->second.first);
    EXPECT_EQ(button->ToolTipText(), it->second.second);
  }
  for (const auto& [name, texts] : kExpected) EXPECT_EQ(seen[name], 1) << name;
}

}  // namespace
}  // namespace vellumar
