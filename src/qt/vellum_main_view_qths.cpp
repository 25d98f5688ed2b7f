// The my QTHs tab of the main window: the grid of the operator's stations, the boxes of the
// current one (two pairs of label and box a row), and the commands.
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "qt/vellum_main_view.h"

namespace vellumar::qt {

void VellumMainView::BuildQTHPage(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(Widget(main_.QTHGrid, page), 1);
  auto* boxes = new QWidget(page);
  auto* grid = new QGridLayout(boxes);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(6);
  grid->setVerticalSpacing(3);
  for (int i = 0; i < main_.QTHFieldBox.Count(); ++i) {
    const int row = i / 2, column = 2 * (i % 2);
    grid->addWidget(WidgetAs<QLabel>(main_.QTHFieldLabel(i), boxes), row, column);
    grid->addWidget(Widget(main_.QTHFieldBox(i), boxes), row, column + 1);
  }
  layout->addWidget(boxes);
  AddCommandRow(layout,
                {&main_.NewQTHCmd, &main_.SaveQTHCmd, &main_.DeleteQTHCmd, &main_.SetLogCmd,
                 &main_.ClrLogCmd, &main_.QTHFirstCmd, &main_.QTHPrevCmd, &main_.QTHNextCmd,
                 &main_.QTHLastCmd},
                {&main_.QTHListCmd, &main_.HelpQTHCmd}, page);
}

}  // namespace vellumar::qt
