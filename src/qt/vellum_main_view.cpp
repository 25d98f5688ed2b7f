#include "qt/vellum_main_view.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDropEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QVBoxLayout>
#include <array>
#include <optional>

#include "qt/conversions.h"
#include "qt/qt_event_loop.h"

namespace vellumar::qt {
namespace {

// Text dropped on a slot goes to the form's drop handler, which decides what the slot takes
// and whether the drop counts as a copy.
class SlotDropFilter : public QObject {
 public:
  SlotDropFilter(VellumMain& main, int index, QObject* parent)
      : QObject(parent), main_(main), index_(index) {}

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    switch (event->type()) {
      case QEvent::DragEnter:
      case QEvent::DragMove: {
        auto* drag = static_cast<QDropEvent*>(event);
        drag->setDropAction(Qt::CopyAction);
        drag->accept();
        return true;
      }
      case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        const std::optional<std::string> text =
            drop->mimeData()->hasText()
                ? std::optional<std::string>(ToStdString(drop->mimeData()->text()))
                : std::nullopt;
        int effect = 0;
        RunEvent("a drop on a slot",
                 [&] { main_.Fieldbox_OLEDragDrop(index_, text ? &*text : nullptr, effect); });
        drop->setDropAction(effect == 1 ? Qt::CopyAction : Qt::IgnoreAction);
        drop->accept();
        return true;
      }
      default:
        return QObject::eventFilter(watched, event);
    }
  }

 private:
  VellumMain& main_;
  int index_;
};

// The field slots of each panel of the QSO, in the order they are shown. QSOFrame holds what
// every QSO has; the four LogFrame panels hold what the operator may hide.
const std::vector<int> kQSOFields = {1,  2,  3, 0, 4,  5,  19, 20, 14,
                                     13, 18, 7, 6, 12, 15, 31, 33, 11};
const std::array<std::vector<int>, 4> kLogFrameFields = {{
    {22, 23, 24, 28, 34, 32},  // Aux: continent, zones, grid square, address, broken
    {9, 8, 16, 17, 10, 21},    // QSL: sent, received, their dates, via, message
    {25, 26},                  // Awards: IOTA, county
    {27, 29, 30},              // Contest: ID, serial numbers received and sent
}};

}  // namespace

VellumMainView::VellumMainView(VellumMain& form)
    : FormView(form, std::make_unique<QMainWindow>()), main_(form) {
  auto* central = new QWidget(mainWindow());
  auto* layout = new QVBoxLayout(central);
  layout->setContentsMargins(6, 6, 6, 6);
  tabs_ = WidgetAs<QTabWidget>(main_.TabbedDialog, central);
  layout->addWidget(tabs_, 1);
  BuildLogPage(tabs_->widget(0));
  BuildGridPage(tabs_->widget(1), main_.QSLGrid,
                {&main_.GenerateRequestedCmd, &main_.ProcessPrintedCmd}, main_.HelpQSLCmd);
  BuildGridPage(tabs_->widget(2), main_.ProgressGrid, {&main_.SummaryCmd, &main_.ReComputeCmd},
                main_.HelpProgressCmd);
  BuildGridPage(tabs_->widget(3), main_.QTHGrid, {}, main_.HelpQTHCmd);
  BuildImportPage(tabs_->widget(4));
  BuildExportPage(tabs_->widget(5));
  PlaceRemaining(central, layout);
  mainWindow()->setCentralWidget(central);
  Finish();
}

QWidget* VellumMainView::FieldPanel(ui::Control& frame, const std::vector<int>& fields,
                                    int pairsPerRow, QWidget* parent) {
  auto* box = WidgetAs<QGroupBox>(frame, parent);
  auto* grid = new QGridLayout(box);
  grid->setHorizontalSpacing(6);
  grid->setVerticalSpacing(3);
  for (size_t n = 0; n < fields.size(); ++n) {
    const int slot = fields[n];
    const int row = static_cast<int>(n) / pairsPerRow;
    const int column = 2 * (static_cast<int>(n) % pairsPerRow);
    auto* label = WidgetAs<QLabel>(main_.FieldLabel(slot), box);
    // A slot with a list shows its box, which takes any text, with the list's button beside
    // it; a date slot shows its date box, and the box behind it holds the value.
    QWidget* edit = nullptr;
    QWidget* cell = nullptr;
    if (main_.Fieldcombo.Exists(slot)) {
      cell = new QWidget(box);
      auto* pair = new QHBoxLayout(cell);
      pair->setContentsMargins(0, 0, 0, 0);
      pair->setSpacing(1);
      edit = Widget(main_.Fieldbox(slot), cell);
      edit->installEventFilter(new SlotDropFilter(main_, slot, edit));
      auto* list = WidgetAs<QComboBox>(main_.Fieldcombo(slot), cell);
      // Only the button shows: the box beside it tells the value. The list opens wide enough
      // for its items.
      list->setFixedWidth(list->fontMetrics().height() + 12);
      list->view()->setMinimumWidth(list->fontMetrics().horizontalAdvance("W") * 10);
      list->setFocusPolicy(Qt::ClickFocus);
      pair->addWidget(edit, 1);
      pair->addWidget(list);
    } else if (main_.DateBox.Exists(slot)) {
      Widget(main_.Fieldbox(slot), box);
      edit = Widget(main_.DateBox(slot), box);
    } else {
      edit = Widget(main_.Fieldbox(slot), box);
      edit->installEventFilter(new SlotDropFilter(main_, slot, edit));
    }
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setBuddy(edit);
    // A blinking label keeps its place, so the panel doesn't jump.
    QSizePolicy policy = label->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    label->setSizePolicy(policy);
    edit->setMinimumWidth(70);
    grid->addWidget(label, row, column);
    grid->addWidget(cell != nullptr ? cell : edit, row, column + 1);
    grid->setColumnStretch(column + 1, 1);
  }
  return box;
}

QWidget* VellumMainView::BuildLogPage(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  layout->setSpacing(4);

  layout->addWidget(FieldPanel(main_.QSOFrame, kQSOFields, 6, page));
  QHBoxLayout* panels = Row(layout);
  for (int i = 0; i < 4; ++i)
    panels->addWidget(
        FieldPanel(main_.LogFrame(i), kLogFrameFields[static_cast<size_t>(i)], i < 2 ? 2 : 1, page),
        i < 2 ? 2 : 1);

  layout->addWidget(Widget(main_.LogGrid, page), 1);

  QHBoxLayout* foot = Row(layout);
  auto* sort = WidgetAs<QGroupBox>(main_.SortFrame, page);
  sort->setMinimumWidth(120);
  foot->addWidget(sort);
  auto* filter = WidgetAs<QGroupBox>(main_.FilterFrame, page);
  auto* filterLayout = new QHBoxLayout(filter);
  filterLayout->addWidget(Widget(main_.FilterField, filter));
  foot->addWidget(filter, 1);
  for (ui::CommandButton* move :
       {&main_.LogFirstCmd, &main_.LogPrevCmd, &main_.LogNextCmd, &main_.LogLastCmd}) {
    foot->addWidget(Widget(*move, page));
  }
  foot->addSpacing(12);
  for (int i = 0; i < 4; ++i) foot->addWidget(Widget(main_.LogFrameSelect(i), page));

  QHBoxLayout* commands = Row(layout);
  for (ui::CommandButton* c : {&main_.NewCmd, &main_.SaveCmd, &main_.RevertCmd, &main_.DeleteCmd,
                               &main_.ConfirmCmd, &main_.VerifyCmd})
    commands->addWidget(Widget(*c, page));
  commands->addStretch(1);
  for (ui::CommandButton* c :
       {&main_.StopAddCmd, &main_.RACcmd, &main_.PlotLogCmd, &main_.ReportLogCmd, &main_.CaptureCmd,
        &main_.ConfigLogCmd, &main_.HelpLogCmd})
    commands->addWidget(Widget(*c, page));
  return page;
}

// A page that is its grid, with the page's commands and its help button in a row below.
void VellumMainView::BuildGridPage(QWidget* page, ui::Grid& grid,
                                   std::initializer_list<ui::Control*> commands,
                                   ui::Control& help) {
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(Widget(grid, page), 1);
  AddCommandRow(layout, commands, help, page);
}

// The commands on the left, the help button on the right.
void VellumMainView::AddCommandRow(QVBoxLayout* layout,
                                   std::initializer_list<ui::Control*> commands,
                                   ui::Control& help, QWidget* page) {
  QHBoxLayout* row = Row(layout);
  for (ui::Control* c : commands) row->addWidget(Widget(*c, page));
  row->addStretch(1);
  row->addWidget(Widget(help, page));
}

// A labelled value: the caption the view gives it, then the control's own widget.
void VellumMainView::AddLabelled(QGridLayout* grid, int row, const char* caption,
                                 ui::Control& value, QWidget* parent) {
  grid->addWidget(new QLabel(QString::fromUtf8(caption), parent), row, 0);
  grid->addWidget(Widget(value, parent), row, 1);
}

void VellumMainView::BuildImportPage(QWidget* page) {
  auto* layout = new QHBoxLayout(page);
  auto* options = new QVBoxLayout();
  layout->addLayout(options);
  for (ui::Control* c : std::initializer_list<ui::Control*>{
           &main_.LoggerImportButton, &main_.Option2, &main_.MMTTYImportButton,
           &main_.DefaultCallsignCheckbox, &main_.SaveImportErrorsCheck,
           &main_.ImportDuplicateCheckbox})
    options->addWidget(Widget(*c, page));
  options->addStretch(1);
  QHBoxLayout* commands = Row(options);
  commands->addWidget(Widget(main_.ImportCmd, page));
  commands->addWidget(Widget(main_.AbortImportCmd, page));
  commands->addStretch(1);
  commands->addWidget(Widget(main_.ConfigImportCmd, page));
  commands->addWidget(Widget(main_.HelpImportCmd, page));

  auto* frame = WidgetAs<QGroupBox>(main_.ImportProgressFrame, page);
  layout->addWidget(frame, 1);
  auto* inFrame = new QVBoxLayout(frame);
  auto* counts = new QGridLayout();
  inFrame->addLayout(counts);
  AddLabelled(counts, 0, "started:", main_.ImportStartTime, frame);
  AddLabelled(counts, 1, "completed:", main_.ImportCompleteTime, frame);
  AddLabelled(counts, 2, "processed:", main_.ImportRecordsProcessed, frame);
  AddLabelled(counts, 3, "duplicates:", main_.ImportDuplicatesIgnored, frame);
  AddLabelled(counts, 4, "truncated:", main_.ImportTruncatedFields, frame);
  AddLabelled(counts, 5, "illegals:", main_.ImportIllegalsIgnored, frame);
  AddLabelled(counts, 6, "imported:", main_.ImportRecordsImported, frame);
  inFrame->addWidget(Widget(main_.ImportBytesRead, frame));
  inFrame->addWidget(Widget(main_.ImportReport, frame), 1);
}

void VellumMainView::BuildExportPage(QWidget* page) {
  auto* layout = new QHBoxLayout(page);
  auto* options = new QVBoxLayout();
  layout->addLayout(options);
  options->addWidget(Widget(main_.DXBaseExportButton, page));
  options->addWidget(Widget(main_.Option1, page));
  options->addWidget(new QLabel(QStringLiteral("append to QSO notes:"), page));
  options->addWidget(Widget(main_.ExportQSONotes, page));
  options->addStretch(1);
  QHBoxLayout* commands = Row(options);
  commands->addWidget(Widget(main_.ExportCmd, page));
  commands->addWidget(Widget(main_.AbortExportCmd, page));
  commands->addStretch(1);
  commands->addWidget(Widget(main_.ConfigExportCmd, page));
  commands->addWidget(Widget(main_.HelpExportCmd, page));

  auto* frame = WidgetAs<QGroupBox>(main_.ExportProgressFrame, page);
  layout->addWidget(frame, 1);
  auto* counts = new QGridLayout(frame);
  AddLabelled(counts, 0, "started:", main_.ExportStartTime, frame);
  AddLabelled(counts, 1, "completed:", main_.ExportCompleteTime, frame);
  AddLabelled(counts, 2, "processed:", main_.ExportRecordsProcessed, frame);
  AddLabelled(counts, 3, "exported:", main_.ExportRecordsExported, frame);
  counts->setRowStretch(4, 1);
}

}  // namespace vellumar::qt
