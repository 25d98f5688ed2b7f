// The captions and tool tips of the main window's command buttons, in one table. Every command
// of the Log page has an Alt key, so that a log is kept without the mouse.
#include <array>

#include "logpage/vellum_main.h"

namespace vellumar {
namespace {

struct CommandText {
  ui::CommandButton VellumMain::*button;
  const char* caption;
  const char* toolTip;
};

constexpr const char* kHelpTip = "show the help page of this tab";

const std::array<CommandText, 51> kCommandTexts = {{
    // The Log page: the QSO in hand.
    {&VellumMain::NewCmd, "&New", "save the QSO in hand and begin a new one (Ctrl+N)"},
    {&VellumMain::SaveCmd, "&Save",
     "save the QSO in hand (Ctrl+S); right-click to save it and begin a new one"},
    {&VellumMain::RevertCmd, "&Revert", "discard the changes made to the QSO in hand"},
    {&VellumMain::DeleteCmd, "&Delete",
     "delete the QSO in hand; right-click to delete every QSO the Log Page shows"},
    {&VellumMain::ConfirmCmd, "Con&firm",
     "click to set QSL received status to \"Yes\", date received to \"today\", and QSL sent "
     "status to \"requested\""},
    {&VellumMain::VerifyCmd, "&Verify", "click to set QSL received status to \"Verified\""},
    // The Log page: moves through the display, and the tools beside it.
    {&VellumMain::LogFirstCmd, "|< F&irst", "go to the first QSO of the Log Page (Home)"},
    {&VellumMain::LogPrevCmd, "< &Prev", "go to the previous QSO (Page Up)"},
    {&VellumMain::LogNextCmd, "Ne&xt >", "go to the next QSO (Page Down)"},
    {&VellumMain::LogLastCmd, "&Last >|", "go to the last QSO of the Log Page (End)"},
    {&VellumMain::RACcmd, "Callbook", "look up the callsign in the callbook"},
    {&VellumMain::PlotLogCmd, "Plot", "plot the QSOs of the Log Page on the map"},
    {&VellumMain::ReportLogCmd, "Report",
     "write a report of the Log Page's QSOs to the Reports subfolder"},
    {&VellumMain::CaptureCmd, "Capture", "show the QSO Capture window"},
    {&VellumMain::ConfigLogCmd, "Config", "show the Log page of the Configuration window"},
    {&VellumMain::StopAddCmd, "Stop", "stop adding QSOs to the QSL queue"},
    {&VellumMain::HelpLogCmd, "Help", kHelpTip},
    // The Log page: its filters, by the text of FilterField or by the advanced window.
    {&VellumMain::FilterCallCmd, "Call",
     "display only QSOs whose callsign matches the filter text (wildcards * ? # [..])"},
    {&VellumMain::FilterDXCCCmd, "DXCC",
     "display only QSOs whose DXCC prefix matches the filter text"},
    {&VellumMain::FilterDateCmd, "UTC",
     "display only QSOs begun within the UTC filter range of the filter date and time; "
     "right-click to set the range"},
    {&VellumMain::FilterBrokenCmd, "Broken", "display only QSOs marked as \"broken\""},
    {&VellumMain::FilterClearCmd, "Clear", "display all QSOs"},
    {&VellumMain::AdvancedFilterCmd, "Advanced",
     "display the Advanced Log Sorts and Filters window"},
    // The other tabs.
    {&VellumMain::GenerateNeededCmd, "Add Needed",
     "add to the print queue all QSOs whose confirmation is need to pursue awards specified on "
     "the Configuration window's Awards tab"},
    {&VellumMain::ClearQSLDatabaseCmd, "Clear", "clear all entries in the QSL queue "},
    {&VellumMain::GenerateRequestedCmd, "Add Requested",
     "add to the print queue all QSOs whose QSL sent status is \"requested\""},
    {&VellumMain::ProcessPrintedCmd, "Update Log",
     "carry the results of the printed QSLs back to the log"},
    {&VellumMain::HelpQSLCmd, "Help", kHelpTip},
    {&VellumMain::SummaryCmd, "Summary", "show the DXCC Summary window"},
    {&VellumMain::ReComputeCmd, "Recompute",
     "clear the progress table, and then recompute the progress table by evaluating every QSO "
     "in the log"},
    {&VellumMain::ConfigProgressCmd, "Config",
     "show the Awards page of the Configuration window"},
    {&VellumMain::HelpProgressCmd, "Help", kHelpTip},
    {&VellumMain::HelpQTHCmd, "Help", kHelpTip},
    {&VellumMain::NewQTHCmd, "New", "create a new myQTH"},
    {&VellumMain::SaveQTHCmd, "Save", "save the current myQTH"},
    {&VellumMain::DeleteQTHCmd, "Delete", "delete the current myQTH"},
    {&VellumMain::SetLogCmd, "Set Log",
     "set the myQTH ID of every QSO in the Log Page Display to the current myQTH ID"},
    {&VellumMain::ClrLogCmd, "Clear Log", "clear the myQTH ID of every QSO in the Log Page Display"},
    {&VellumMain::QTHListCmd, "List", "list the myQTH IDs"},
    {&VellumMain::QTHFirstCmd, "|<", "go to the first myQTH"},
    {&VellumMain::QTHPrevCmd, "<", "go to the previous myQTH"},
    {&VellumMain::QTHNextCmd, ">", "go to the next myQTH"},
    {&VellumMain::QTHLastCmd, ">|", "go to the last myQTH"},
    {&VellumMain::ImportCmd, "Start", "click to import QSOs from an ADIF-compliant log file"},
    {&VellumMain::HelpImportCmd, "Help", kHelpTip},
    {&VellumMain::ExportCmd, "Start", "click to export filtered QSOs to an ADIF-compliant log file"},
    {&VellumMain::HelpExportCmd, "Help", kHelpTip},
    {&VellumMain::AbortImportCmd, "Abort", "stop an in-progress Import operation"},
    {&VellumMain::AbortExportCmd, "Abort", "stop an in-progress Export operation"},
    {&VellumMain::ConfigImportCmd, "Config", "show the Configuration window"},
    {&VellumMain::ConfigExportCmd, "Config", "show the Configuration window"},
}};

}  // namespace

void VellumMain::ApplyCommandTexts() {
  for (const CommandText& c : kCommandTexts) {
    (this->*c.button).SetCaption(c.caption);
    (this->*c.button).SetToolTipText(c.toolTip);
  }
}

}  // namespace vellumar
