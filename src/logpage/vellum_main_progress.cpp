// The Check Progress tab: the Recompute command, the Summary command, and the tab's controls
// that go beyond its grid (the bar of a recompute, Config).
#include <string>

#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logpage/vellum_main.h"

namespace vellumar {

void VellumMain::WireProgress() {
  RecomputeProgress.SetToolTipText("Progress of Recompute operation");
  RecomputeProgress.SetVisible(false);  // shown only while a recompute runs
  Adopt(RecomputeProgress);
  Adopt(ConfigProgressCmd);
  ConfigProgressCmd.Click = [this] { page_.setup().ShowPage(kAwardsPage); };
  ReComputeCmd.Click = [this] { RecomputeCmd_Click(); };
  SummaryCmd.Click = [this] { SummaryCmd_Click(); };
  // The grid shows the rows of ProgressPosition; its columns are set by FormatProgressGrid.
  ProgressGrid.SetDataSource(&ProgressPosition);
  ProgressGrid.SetAllowUpdate(false);
}

void VellumMain::RecomputeCmd_Click() {
  if (RecomputeCmdBusy) return;
  RecomputeCmdBusy = true;
  const int answer = page_.desktop.MsgBox(
      "clear the progress table and then rebuild by scanning every QSO in the log?", ui::vbYesNo,
      kApplicationTitle);
  if (answer == ui::vbYes) page_.module.RecomputeProgress();
  RecomputeCmdBusy = false;
}

void VellumMain::SummaryCmd_Click() {
  if (SummaryCmdBusy) return;
  SummaryCmdBusy = true;
  page_.dxccSummary.ComputeSummaryGrids();
  SummaryCmdBusy = false;
}

}  // namespace vellumar
