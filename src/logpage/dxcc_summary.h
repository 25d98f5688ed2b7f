#pragma once
// DXCCSummary: the DXer's scoreboard. Two grids of counts from the Progress table, one for the
// award programme that includes deleted entities (DXCC) and one for the one that doesn't (TOP);
// both are always computed, and the option buttons only choose which one shows.
//
// Life of the window: created hidden on first use (the main window's Summary), shown by each
// computation; the operator's close hides it, so the grids survive; the main window's unload
// unloads it.
#include "awards/summary_counts.h"
#include "platform/bound/grid.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace vellumar {

class LogPage;

class DXCCSummary : public ui::Form {
 public:
  explicit DXCCSummary(LogPage& page);

  ui::Frame AwardFrame{"AwardFrame"};
  ui::OptionButton ViewUnDeletedButton{"ViewUnDeletedButton"},
      ViewDeletedButton{"ViewDeletedButton"};
  ui::OptionGroup AwardProgram;
  ui::ProgressBar SummaryProgress{"SummaryProgress"};
  ui::Frame SummaryFrame{"SummaryFrame"};
  // 25 rows by 4 columns of cell texts; row 0 and column 0 hold the captions.
  ui::Grid DeletedGrid{"DeletedGrid"}, UnDeletedGrid{"UnDeletedGrid"};
  ui::CommandButton DisplayProgressCmd{"DisplayProgressCmd"};
  ui::Frame ReportFrame{"ReportFrame"};
  ui::CommandButton ReportSubmissionCmd{"ReportSubmissionCmd"},
      ReportProgressCmd{"ReportProgressCmd"};

  // Counts every entity of ProgressPosition's recordset into both grids, on a recordset of its
  // own so that the Check Progress grid keeps its row. One yield per entity; the sums are
  // written after each entity, so they grow in view. A call while one runs does nothing.
  void ComputeSummaryGrids();
  // 4 columns and 25 rows, every cell " " and left-aligned, then the captions.
  void InitializeSummaryGrid(ui::Grid& grid);
  void IncrementSummary(ui::Grid& grid, int row, int column);
  void TotalSummaryGrid(ui::Grid& grid);
  void UpdateCaption();
  void ViewDeletedButton_Click();
  void ViewUnDeletedButton_Click();
  bool Computing() const { return computing_; }

 private:
  void DXCCSummary_Load();
  void DXCCSummary_Resize();
  // The cells of a grid, and back into it in one change.
  static SummaryCells Cells(const ui::Grid& grid);
  static void ShowCells(ui::Grid& grid, const SummaryCells& cells);
  void SetColumnWidths(ui::Grid& grid);
  LogPage& page_;
  bool computing_ = false;
};

}  // namespace vellumar
