#pragma once
// The DXCC Summary window: its two grids of counts as QTableWidgets (row 0 and column 0 of the
// model's cells are the tables' headers, so they stay in place and can't be edited), the award
// programme's option buttons above them, and the bar and commands below.
#include <QElapsedTimer>
#include <QStringList>
#include <QTableWidget>
#include <QTimer>

#include "logpage/dxcc_summary.h"
#include "platform/bound/grid.h"
#include "qt/control_binder.h"
#include "qt/form_view.h"

namespace vellumar::qt {

// An array grid of fixed captions and read-only cells <-> a QTableWidget.
class SummaryGridBinder : public ControlBinder {
 public:
  SummaryGridBinder(ui::Grid& grid, QTableWidget* table);

 protected:
  void Show(ui::Property property) override;

 private:
  void ShowCells();
  // ShowCells now, or at the end of the current frame when the last one was just shown.
  void ShowCellsSoon();
  void ShowWidths();
  ui::Grid& grid_;
  QStringList across_, down_;  // the headers' captions as last shown
  QElapsedTimer shown_;        // since the cells were last shown
  QTimer catchUp_;             // shows the cells changed since, at the end of the frame
};

class DXCCSummaryView : public FormView {
 public:
  explicit DXCCSummaryView(DXCCSummary& form);
};

}  // namespace vellumar::qt
