#include "logpage/dxcc_summary.h"

#include <algorithm>
#include <string>
#include <vector>

#include "config/window_placement.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "platform/vb/error.h"

namespace vellumar {

DXCCSummary::DXCCSummary(LogPage& page) : ui::Form("DXCCSummary"), page_(page) {
  SetBorderStyle(2);
  Move(0, 0, 8400, 9600);  // the design size: both grids' four columns in sight
  AwardFrame.SetCaption("Award Program - include deleted countries?");
  ViewUnDeletedButton.SetCaption("TOP (non-deleted only)");
  ViewUnDeletedButton.SetToolTipText("click to view results that don't inlclude deleted countries");
  ViewDeletedButton.SetCaption("DXCC (includes deleted)");
  ViewDeletedButton.SetToolTipText(
      "click to view results that inlclude deleted countries (Honor Roll totals count only "
      "non-deleted countries)");
  AwardProgram.Add(ViewUnDeletedButton);
  AwardProgram.Add(ViewDeletedButton);
  SummaryProgress.SetToolTipText("Progress of current update or report operation");
  SummaryProgress.SetVisible(false);
  SummaryFrame.SetCaption("Summary");
  DisplayProgressCmd.SetCaption("Update");
  DisplayProgressCmd.SetToolTipText("Update the above progress summary");
  ReportFrame.SetCaption("Generate Reports");
  ReportSubmissionCmd.SetCaption("Submission");
  ReportSubmissionCmd.SetToolTipText("Generate an ARRL DXCC submission in the Reports subfolder");
  ReportProgressCmd.SetCaption("Progress");
  ReportProgressCmd.SetToolTipText("Generate a summary progress report in the Reports subfolder");
  for (ui::Grid* grid : {&DeletedGrid, &UnDeletedGrid}) {
    grid->SetDataMode(ui::Grid::kArrayData);
    grid->SetAllowUpdate(false);
    grid->SetAllowColMove(false);
  }
  // The programme that counts deleted entities shows at first.
  ViewDeletedButton.SetValue(true);
  UnDeletedGrid.SetVisible(false);

  for (ui::Control* c : std::initializer_list<ui::Control*>{
           &AwardFrame, &ViewUnDeletedButton, &ViewDeletedButton, &SummaryProgress, &SummaryFrame,
           &DeletedGrid, &UnDeletedGrid, &DisplayProgressCmd, &ReportFrame, &ReportSubmissionCmd,
           &ReportProgressCmd})
    Adopt(*c);

  Form_Load = [this] { DXCCSummary_Load(); };
  Form_Resize = [this] { DXCCSummary_Resize(); };
  // The operator's close hides the window, so the grids survive until the next Update.
  Form_QueryUnload = [this](int& cancel, int mode) {
    if (mode == ui::vbFormControlMenu) {
      cancel = 1;
      Hide();
    }
  };
  Form_Unload = [this](int&) { SaveWindowPosition(*this, page_.common, page_.settings); };
  ViewDeletedButton.Click = [this] { ViewDeletedButton_Click(); };
  ViewUnDeletedButton.Click = [this] { ViewUnDeletedButton_Click(); };
  DisplayProgressCmd.Click = [this] { ComputeSummaryGrids(); };
  // The reports are written by the DXCC reports, which this window will call once they exist.
  ReportSubmissionCmd.Click = [] {};
  ReportProgressCmd.Click = [] {};
}

void DXCCSummary::DXCCSummary_Load() {
  RestoreWindowPosition(*this, page_.common, page_.settings);
  UpdateCaption();
}

void DXCCSummary::DXCCSummary_Resize() {
  if (WindowState() == ui::vbMinimized) return;
  // The frames stand above and below the grids; the grids take the height left between them.
  const int margin = 120, top = 720, foot = 900;
  const int gridHeight = std::max(0, Height() - top - foot - 2 * margin);
  // The columns as wide as their longest texts in letters "A".
  const int letter = page_.desktop.TextWidth(Font(), "A");
  for (ui::Grid* grid : {&DeletedGrid, &UnDeletedGrid}) {
    grid->Move(margin, top, std::max(0, Width() - 2 * margin), gridHeight);
    std::vector<ui::GridColumn>& columns = grid->Columns();
    columns.resize(kSummaryColumns);
    columns[0].Width = static_cast<int>(std::string("HF BandCountries  ").size()) * letter;
    for (int c = 1; c < kSummaryColumns; ++c)
      columns[static_cast<size_t>(c)].Width =
          static_cast<int>(std::string("Confirmed  ").size()) * letter;
    grid->ColumnsChanged();
  }
}

void DXCCSummary::SetColumnWidths(ui::Grid& grid) {
  std::vector<ui::GridColumn>& columns = grid.Columns();
  columns.resize(kSummaryColumns);
  const ui::Font& font = Font();
  columns[0].Width = page_.desktop.TextWidth(font, "HF BandCountries  ");
  for (int c = 1; c < kSummaryColumns; ++c)
    columns[static_cast<size_t>(c)].Width = page_.desktop.TextWidth(font, "Confirmed  ");
  grid.ColumnsChanged();
}

SummaryCells DXCCSummary::Cells(const ui::Grid& grid) {
  SummaryCells cells;
  for (int row = 0; row < kSummaryRows; ++row)
    for (int col = 0; col < kSummaryColumns; ++col) cells[row][col] = grid.ArrayCell(row, col);
  return cells;
}

void DXCCSummary::ShowCells(ui::Grid& grid, const SummaryCells& cells) {
  std::vector<ui::Grid::ArrayRow> rows;
  rows.reserve(kSummaryRows);
  for (const auto& row : cells) rows.emplace_back(row.begin(), row.end());
  grid.SetArray(std::move(rows));
}

void DXCCSummary::InitializeSummaryGrid(ui::Grid& grid) {
  std::vector<ui::GridColumn>& columns = grid.Columns();
  columns.assign(kSummaryColumns, ui::GridColumn{});
  for (int c = 0; c < kSummaryColumns; ++c) {
    columns[static_cast<size_t>(c)].Caption = SummaryColumnCaption(c);
    columns[static_cast<size_t>(c)].Alignment = ui::dbgLeft;
  }
  SetColumnWidths(grid);
  SummaryCells cells;
  vellumar::InitializeSummaryGrid(cells);
  ShowCells(grid, cells);
}

void DXCCSummary::IncrementSummary(ui::Grid& grid, int row, int column) {
  grid.SetArrayCell(row, column, SummaryText(SummaryValue(grid.ArrayCell(row, column)) + 1));
}

void DXCCSummary::TotalSummaryGrid(ui::Grid& grid) {
  SummaryCells cells = Cells(grid);
  vellumar::TotalSummaryGrid(cells);
  ShowCells(grid, cells);
}

void DXCCSummary::UpdateCaption() {
  SetCaption(ViewDeletedButton.Value() ? "DXCC Summary (includes deleted countries)"
                                       : "DXCC Summary (exludes deleted countries)");
}

void DXCCSummary::ViewDeletedButton_Click() {
  UnDeletedGrid.SetVisible(false);
  DeletedGrid.SetVisible(true);
  UpdateCaption();
}

void DXCCSummary::ViewUnDeletedButton_Click() {
  DeletedGrid.SetVisible(false);
  UnDeletedGrid.SetVisible(true);
  UpdateCaption();
}

void DXCCSummary::ComputeSummaryGrids() {
  if (computing_) return;
  computing_ = true;
  VellumMain& main = page_.main;
  db::Recordset walk;
  try {
    // 1
    const bool undeleted = ViewUnDeletedButton.Value();
    DeletedGrid.SetVisible(!undeleted);
    UnDeletedGrid.SetVisible(undeleted);

    // 2
    SetMousePointer(ui::vbHourglass);
    main.SetMousePointer(ui::vbHourglass);
    db::Recordset& progress = main.ProgressPosition.Recordset();
    SummaryProgress.Min = 0;
    SummaryProgress.Max = static_cast<double>(CountRows(progress));
    SummaryProgress.SetValue(0);
    SummaryProgress.SetVisible(true);
    Show();
    page_.loop.Yield();

    // 3
    InitializeSummaryGrid(UnDeletedGrid);
    InitializeSummaryGrid(DeletedGrid);
    SummaryCells deletedCells = Cells(DeletedGrid);
    SummaryCells undeletedCells = Cells(UnDeletedGrid);

    // 4: a recordset of its own, so that the Check Progress grid keeps its row.
    walk = progress.OpenRecordset();
    long done = 0;
    if (!(walk.BOF() && walk.EOF_())) walk.MoveFirst();
    while (!walk.EOF_()) {
      page_.loop.Yield();
      if (page_.ProcessEnding() || !page_.module.LogOpen()) return;
      CountSummaryEntity(deletedCells, undeletedCells, ReadSummaryEntity(walk));
      vellumar::TotalSummaryGrid(undeletedCells);
      vellumar::TotalSummaryGrid(deletedCells);
      ShowCells(UnDeletedGrid, undeletedCells);
      ShowCells(DeletedGrid, deletedCells);
      walk.MoveNext();
      SummaryProgress.SetValue(static_cast<double>(++done));
    }

    // 5
    walk.Close();
    SummaryProgress.SetVisible(false);
    SetMousePointer(ui::vbDefault);
    main.SetMousePointer(ui::vbDefault);
  } catch (const ProgramTermination&) {
    computing_ = false;
    throw;
  } catch (const vb::VbError& e) {
    // The grids stay as far as they were filled.
    page_.common.ReportError(e.number(), "DXCCSummary.ComputeSummaryGrids");
  }
  computing_ = false;
}

}  // namespace vellumar
