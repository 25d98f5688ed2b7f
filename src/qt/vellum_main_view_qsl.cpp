// The QSL tab of the main window: the queue's grid in its frame (whose caption shows a walk's
// progress), how QSLs and addresses go out, and the queue's commands.
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "qt/vellum_main_view.h"

namespace vellumar::qt {

void VellumMainView::BuildQSLPage(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  auto* frame = WidgetAs<QGroupBox>(main_.PrintQueueFrame, page);
  auto* inFrame = new QVBoxLayout(frame);
  inFrame->addWidget(Widget(main_.QSLGrid, frame), 1);
  layout->addWidget(frame, 1);
  QHBoxLayout* options = Row(layout);
  for (int i = 0; i < main_.QSLMode.Count(); ++i)
    options->addWidget(Widget(main_.QSLMode(i), page));
  options->addWidget(Widget(main_.QSLPrintPreviewCheck, page));
  options->addSpacing(24);
  for (int i = 0; i < main_.AddressMode.Count(); ++i)
    options->addWidget(Widget(main_.AddressMode(i), page));
  options->addStretch(1);
  AddCommandRow(layout,
                {&main_.GenerateNeededCmd, &main_.GenerateRequestedCmd, &main_.StopAddCmd,
                 &main_.ClearQSLDatabaseCmd, &main_.ProcessPrintedCmd},
                {&main_.HelpQSLCmd}, page);
}

}  // namespace vellumar::qt
