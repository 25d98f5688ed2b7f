#include "qt/vellum_setup_view.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>
#include <array>

#include "awards/progress_columns.h"
#include "qt/conversions.h"

namespace vellumar::qt {
namespace {

constexpr int kWAZFirstBand = kProgressFirstBand;  // WAZBandCheck(3) is 160M
constexpr int kWAZLastBand = 12;                   // WAZBandCheck(12) is 6M

QFormLayout* Form(QBoxLayout* into) {
  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  into->addLayout(form);
  return form;
}

std::vector<ui::TextBox*> Entries(ui::ControlArray<ui::TextBox>& array) {
  std::vector<ui::TextBox*> out;
  for (auto& b : array) out.push_back(b.get());
  return out;
}

}  // namespace

VellumSetupView::VellumSetupView(VellumSetup& form)
    : FormView(form, std::make_unique<QWidget>()), setup_(form) {
  auto* layout = new QVBoxLayout(window());
  tabs_ = WidgetAs<QTabWidget>(setup_.SetupTab, window());
  layout->addWidget(tabs_, 1);
  BuildGeneral(tabs_->widget(kGeneralPage));
  BuildLog(tabs_->widget(kLogPage));
  BuildAwards(tabs_->widget(kAwardsPage));
  BuildQSLCards(tabs_->widget(kQSLCardsPage));
  BuildQSLLabels(tabs_->widget(kQSLLabelsPage));
  BuildEQSL(tabs_->widget(keQSLPage));
  BuildCallbook(tabs_->widget(kCallbookPage));
  BuildPrinter(tabs_->widget(kPrinterPage));
  BuildEnvelopes(tabs_->widget(kEnvelopesPage));
  BuildAddressLabels(tabs_->widget(kAddressLabelsPage));
  PlaceRemaining(window(), layout);
  Finish();
}

void VellumSetupView::AddRow(QFormLayout* form, const char* label, ui::Control& control,
                             QWidget* parent) {
  form->addRow(QString::fromUtf8(label), Widget(control, parent));
}

QWidget* VellumSetupView::CheckRow(ui::ControlArray<ui::CheckBox>& array, int first, int last,
                                   int perRow, QWidget* parent) {
  auto* holder = new QWidget(parent);
  auto* grid = new QGridLayout(holder);
  grid->setContentsMargins(0, 0, 0, 0);
  for (int i = first; i <= last; ++i) {
    const int n = i - first;
    grid->addWidget(Widget(array(i), holder), n / perRow, n % perRow);
  }
  return holder;
}

void VellumSetupView::AddHelp(QBoxLayout* layout, int index, QWidget* parent) {
  QHBoxLayout* row = Row(layout);
  row->addStretch(1);
  row->addWidget(Widget(setup_.HelpCmd(index), parent));
}

void VellumSetupView::BuildGeneral(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  QFormLayout* form = Form(layout);
  AddRow(form, "Callsign", setup_.MyCallsign, page);
  AddRow(form, "Transmit power", setup_.TransmitPower, page);
  AddRow(form, "QSL message", setup_.QSLMsg, page);
  AddRow(form, "Help viewer", setup_.BrowserPathname, page);
  for (ui::CheckBox* check :
       {&setup_.RunCheck, &setup_.ConfirmDeleteCheck, &setup_.LookupPrevQSOCheck,
        &setup_.AutoSetDateTimeCheck, &setup_.DisplaySecondsCheckbox,
        &setup_.SetCaptureQSLRequestCheck, &setup_.TooltipsCheckbox})
    layout->addWidget(Widget(*check, page));
  layout->addStretch(1);
  AddHelp(layout, 0, page);
}

void VellumSetupView::BuildLog(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  QFormLayout* form = Form(layout);
  auto* logRow = new QHBoxLayout;
  logRow->addWidget(Widget(setup_.LogPathname, page), 1);
  logRow->addWidget(Widget(setup_.LogSelectCmd, page));
  logRow->addWidget(Widget(setup_.OpenLogCmd, page));
  form->addRow(QStringLiteral("Log"), logRow);
  auto* backupRow = new QHBoxLayout;
  backupRow->addWidget(Widget(setup_.BackupDirectory, page), 1);
  backupRow->addWidget(Widget(setup_.BackupCmd, page));
  form->addRow(QStringLiteral("Backup folder"), backupRow);
  layout->addWidget(Widget(setup_.LogLayout, page), 1);
  layout->addWidget(CheckRow(setup_.LogFrameVisible, 0, setup_.LogFrameVisible.UBound(), 4, page));
  QHBoxLayout* fonts = Row(layout);
  fonts->addWidget(Widget(setup_.LogGridFontCmd, page));
  fonts->addWidget(Widget(setup_.LogPanelFontCmd, page));
  fonts->addStretch(1);
  fonts->addWidget(Widget(setup_.HelpCmd(1), page));
}

void VellumSetupView::BuildAwards(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  auto* dxcc = new QGroupBox(QStringLiteral("DXCC"), page);
  auto* dxccLayout = new QVBoxLayout(dxcc);
  dxccLayout->addWidget(
      CheckRow(setup_.AwardCheck, kProgressFirstBand, kProgressLastBand, 6, dxcc));
  dxccLayout->addWidget(CheckRow(setup_.AwardCheck, kProgressPhone, kProgressPSK, 6, dxcc));
  layout->addWidget(dxcc);
  auto* waz = new QGroupBox(QStringLiteral("WAZ"), page);
  auto* wazLayout = new QVBoxLayout(waz);
  wazLayout->addWidget(CheckRow(setup_.WAZBandCheck, kWAZFirstBand, kWAZLastBand, 6, waz));
  wazLayout->addWidget(CheckRow(setup_.WAZModeCheck, 1, setup_.WAZModeCheck.UBound(), 6, waz));
  layout->addWidget(waz);
  // The array entries that stand for no column are never shown, but have their widgets too.
  auto* unused = new QWidget(page);
  unused->hide();
  for (int i = 0; i < setup_.AwardCheck.Count(); ++i)
    if (i < kProgressFirstBand || i > kProgressPSK) Widget(setup_.AwardCheck(i), unused);
  for (int i = 0; i < setup_.WAZBandCheck.Count(); ++i)
    if (i < kWAZFirstBand || i > kWAZLastBand) Widget(setup_.WAZBandCheck(i), unused);
  Widget(setup_.WAZModeCheck(0), unused);
  layout->addWidget(unused);
  layout->addStretch(1);
  AddHelp(layout, 2, page);
}

void VellumSetupView::BuildQSLCards(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  auto* grid = new QGridLayout;
  layout->addLayout(grid);
  auto corner = [&](const char* title, std::vector<ui::TextBox*> boxes, ui::CommandButton& clear) {
    auto* box = new QGroupBox(QString::fromUtf8(title), page);
    auto* v = new QVBoxLayout(box);
    for (ui::TextBox* b : boxes) v->addWidget(Widget(*b, box));
    QHBoxLayout* row = Row(v);
    row->addStretch(1);
    row->addWidget(Widget(clear, box));
    return box;
  };
  grid->addWidget(corner("Upper left", Entries(setup_.QSLInfoUpperLeft), setup_.ClearUpperLeftCmd),
                  0, 0);
  grid->addWidget(
      corner("Upper right", Entries(setup_.QSLInfoUpperRight), setup_.ClearUpperRightCmd), 0, 1);
  grid->addWidget(corner("Lower left", {&setup_.QSLInfoLowerLeft}, setup_.ClearLowerLeftCmd), 1, 0);
  grid->addWidget(corner("Lower right", {&setup_.QSLInfoLowerRight}, setup_.ClearLowerRightCmd), 1,
                  1);
  layout->addWidget(Widget(setup_.QSLPrintOpCallsignCheck, page));
  layout->addStretch(1);
}

void VellumSetupView::BuildQSLLabels(QWidget* page) {
  BuildLabelSizes(page,
                  {"Narrow labels", &setup_.NarrowTopOffset, Entries(setup_.NarrowColumnOffset),
                   &setup_.NarrowLabelsPerColumn},
                  {"Wide labels", &setup_.WideTopOffset, Entries(setup_.WideColumnOffset),
                   &setup_.WideLabelsPerColumn});
}

void VellumSetupView::BuildAddressLabels(QWidget* page) {
  BuildLabelSizes(
      page,
      {"Narrow labels", &setup_.EnvelopeNarrowTopOffset, Entries(setup_.EnvelopeNarrowColumnOffset),
       &setup_.EnvelopeNarrowLabelsPerColumn},
      {"Wide labels", &setup_.EnvelopeWideTopOffset, Entries(setup_.EnvelopeWideColumnOffset),
       &setup_.EnvelopeWideLabelsPerColumn});
}

void VellumSetupView::BuildLabelSizes(QWidget* page, const LabelBoxes& narrow,
                                      const LabelBoxes& wide) {
  auto* layout = new QHBoxLayout(page);
  for (const LabelBoxes* size : {&narrow, &wide}) {
    auto* box = new QGroupBox(QString::fromUtf8(size->title), page);
    auto* form = new QFormLayout(box);
    form->addRow(QStringLiteral("Top offset (in)"), Widget(*size->top, box));
    for (size_t c = 0; c < size->columns.size(); ++c)
      form->addRow(QStringLiteral("Column %1 offset (in)").arg(c + 1),
                   Widget(*size->columns[c], box));
    form->addRow(QStringLiteral("Labels per column"), Widget(*size->perColumn, box));
    layout->addWidget(box, 1, Qt::AlignTop);
  }
}

void VellumSetupView::BuildEQSL(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  QFormLayout* form = Form(layout);
  AddRow(form, "User", setup_.eQSLName, page);
  AddRow(form, "Password", setup_.eQSLPassword, page);
  WidgetAs<QLineEdit>(setup_.eQSLPassword, page)->setEchoMode(QLineEdit::Password);
  layout->addStretch(1);
}

void VellumSetupView::BuildCallbook(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  QFormLayout* form = Form(layout);
  auto* row = new QHBoxLayout;
  row->addWidget(Widget(setup_.RACPathname, page), 1);
  row->addWidget(Widget(setup_.RACBrowseCmd, page));
  form->addRow(QStringLiteral("Callbook program"), row);
  layout->addWidget(Widget(setup_.RACEnabled, page));
  layout->addStretch(1);
}

void VellumSetupView::BuildPrinter(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  QFormLayout* form = Form(layout);
  AddRow(form, "Printer", setup_.PrinterName, page);
  AddRow(form, "Paper size", setup_.PaperSizeCombo, page);
  auto* quality = new QHBoxLayout;
  for (int q = 1; q < setup_.PrintQualityButton.Count(); ++q)
    quality->addWidget(Widget(setup_.PrintQualityButton(q), page));
  quality->addStretch(1);
  form->addRow(QStringLiteral("Print quality"), quality);
  auto* unused = Widget(setup_.PrintQualityButton(0), page);  // no quality of its own
  layout->addWidget(unused);
  layout->addStretch(1);
}

void VellumSetupView::BuildEnvelopes(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  QFormLayout* form = Form(layout);
  AddRow(form, "Left offset (in)", setup_.EnvelopeLeftOffset, page);
  AddRow(form, "Top offset (in)", setup_.EnvelopeTopOffset, page);
  for (int i = 0; i < setup_.ReturnAddress.Count(); ++i)
    AddRow(form, i == 0 ? "Return address" : "", setup_.ReturnAddress(i), page);
  layout->addWidget(Widget(setup_.AirmailCheck, page));
  layout->addStretch(1);
}

}  // namespace vellumar::qt
