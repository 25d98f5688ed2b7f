// The Check Progress tab of the main window.
#include <QVBoxLayout>

#include "qt/vellum_main_view.h"

namespace vellumar::qt {

void VellumMainView::BuildProgressPage(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(Widget(main_.ProgressGrid, page), 1);
  // The bar shows only while a recompute runs; the grid is hidden meanwhile.
  layout->addWidget(Widget(main_.RecomputeProgress, page));
  AddCommandRow(layout, {&main_.SummaryCmd, &main_.ReComputeCmd},
                {&main_.ConfigProgressCmd, &main_.HelpProgressCmd}, page);
}

}  // namespace vellumar::qt
