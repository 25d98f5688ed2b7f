#include "qt/vellum_main_view.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDropEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
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
  BuildQSLPage(tabs_->widget(1));
  BuildProgressPage(tabs_->widget(2));
  BuildQTHPage(tabs_->widget(3));
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
  auto* sortLayout = new QHBoxLayout(sort);
  for (ui::OptionButton* b :
       {&main_.SortCallButton, &main_.SortUTCButton, &main_.SortAdvancedButton})
    sortLayout->addWidget(Widget(*b, sort));
  foot->addWidget(sort);
  auto* filter = WidgetAs<QGroupBox>(main_.FilterFrame, page);
  auto* filterLayout = new QHBoxLayout(filter);
  QWidget* filterField = Widget(main_.FilterField, filter);
  filterField->setMinimumWidth(110);  // room for a callsign or a date and time
  filterLayout->addWidget(filterField, 1);
  for (ui::CommandButton* b : {&main_.FilterCallCmd, &main_.FilterDXCCCmd, &main_.FilterDateCmd,
                               &main_.FilterBrokenCmd, &main_.FilterClearCmd,
                               &main_.AdvancedFilterCmd}) {
    // As narrow as their captions: the row holds the moves and the panel switches too.
    auto* button = WidgetAs<QPushButton>(*b, filter);
    button->setMaximumWidth(button->fontMetrics().horizontalAdvance(button->text()) + 20);
    filterLayout->addWidget(button);
  }
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
       {&main_.RACcmd, &main_.PlotLogCmd, &main_.ReportLogCmd, &main_.CaptureCmd,
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
  AddCommandRow(layout, commands, {&help}, page);
}

// The commands on the left, the others (configuration, help) on the right.
void VellumMainView::AddCommandRow(QBoxLayout* layout, std::initializer_list<ui::Control*> left,
                                   std::initializer_list<ui::Control*> right, QWidget* page) {
  QHBoxLayout* row = Row(layout);
  for (ui::Control* c : left) row->addWidget(Widget(*c, page));
  row->addStretch(1);
  for (ui::Control* c : right) row->addWidget(Widget(*c, page));
}

// An Import or Export tab: its options one below the other over its command row, and its
// progress frame beside them: the run's times, then its counts, each after the caption the
// view gives it.
QVBoxLayout* VellumMainView::BuildTransferPage(QWidget* page, const std::vector<QWidget*>& options,
                                               std::initializer_list<ui::Control*> left,
                                               std::initializer_list<ui::Control*> right,
                                               ui::Control& progressFrame, RunTimes times,
                                               std::initializer_list<Labelled> counts) {
  auto* layout = new QHBoxLayout(page);
  auto* column = new QVBoxLayout();
  layout->addLayout(column);
  for (QWidget* option : options) column->addWidget(option);
  column->addStretch(1);
  AddCommandRow(column, left, right, page);

  auto* frame = WidgetAs<QGroupBox>(progressFrame, page);
  layout->addWidget(frame, 1);
  auto* inFrame = new QVBoxLayout(frame);
  auto* grid = new QGridLayout();
  inFrame->addLayout(grid);
  int row = 0;
  const auto add = [&](const char* caption, ui::Control& value) {
    grid->addWidget(new QLabel(QString::fromUtf8(caption), frame), row, 0);
    grid->addWidget(Widget(value, frame), row++, 1);
  };
  add("started:", times.started);
  add("completed:", times.completed);
  for (const Labelled& count : counts) add(count.caption, *count.control);
  return inFrame;
}

void VellumMainView::BuildImportPage(QWidget* page) {
  std::vector<QWidget*> options;
  for (ui::Control* c : std::initializer_list<ui::Control*>{
           &main_.LoggerImportButton, &main_.Option2, &main_.MMTTYImportButton,
           &main_.DefaultCallsignCheckbox, &main_.SaveImportErrorsCheck,
           &main_.ImportDuplicateCheckbox})
    options.push_back(Widget(*c, page));
  QVBoxLayout* frame = BuildTransferPage(
      page, options, {&main_.ImportCmd, &main_.AbortImportCmd},
      {&main_.ConfigImportCmd, &main_.HelpImportCmd}, main_.ImportProgressFrame,
      {main_.ImportStartTime, main_.ImportCompleteTime},
      {{"processed:", &main_.ImportRecordsProcessed},
       {"duplicates:", &main_.ImportDuplicatesIgnored},
       {"truncated:", &main_.ImportTruncatedFields},
       {"illegals:", &main_.ImportIllegalsIgnored},
       {"imported:", &main_.ImportRecordsImported}});
  QWidget* parent = frame->parentWidget();
  frame->addWidget(Widget(main_.ImportBytesRead, parent));
  frame->addWidget(Widget(main_.ImportReport, parent), 1);
}

void VellumMainView::BuildExportPage(QWidget* page) {
  const std::vector<QWidget*> options = {
      Widget(main_.DXBaseExportButton, page), Widget(main_.Option1, page),
      new QLabel(QStringLiteral("append to QSO notes:"), page),
      Widget(main_.ExportQSONotes, page)};
  QVBoxLayout* frame = BuildTransferPage(
      page, options, {&main_.ExportCmd, &main_.AbortExportCmd},
      {&main_.ConfigExportCmd, &main_.HelpExportCmd}, main_.ExportProgressFrame,
      {main_.ExportStartTime, main_.ExportCompleteTime},
      {{"processed:", &main_.ExportRecordsProcessed}, {"exported:", &main_.ExportRecordsExported}});
  frame->addStretch(1);
}

}  // namespace vellumar::qt
