// The QSL tab's queue commands: "Add Needed", "Add Requested", Stop, "Update Log" and "Clear",
// and the section "QSL" of the settings moved into the controls and back.
#include <memory>
#include <string>

#include "config/setting_keys.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/vellum_main.h"
#include "qsl/qsl_module.h"

namespace vellumar {

namespace {

constexpr const char* kQSLModeCaptions[6] = {"Cards", "3-column labels", "2-column labels",
                                             "eQSL", "LotW", "ADIF"};
constexpr const char* kAddressModeCaptions[3] = {"Envelopes", "3-column labels",
                                                 "2-column labels"};

// The option a setting names; any other text selects the first.
int OptionIndex(const std::string& text, int count) {
  for (int i = 0; i < count; ++i)
    if (text == std::to_string(i)) return i;
  return 0;
}

}  // namespace

void VellumMain::WireQSL() {
  for (ui::Control* c : std::initializer_list<ui::Control*>{
           &GenerateNeededCmd, &ClearQSLDatabaseCmd, &PrintQueueFrame, &QSLPrintPreviewCheck})
    Adopt(*c);
  PrintQueueFrame.SetCaption("QSL queue");
  QSLPrintPreviewCheck.SetCaption("Print Preview");
  for (int i = 0; i < QSLMode.Count(); ++i) {
    Adopt(QSLMode(i));
    QSLMode(i).SetCaption(kQSLModeCaptions[i]);
    QSLModeGroup.Add(QSLMode(i));
  }
  for (int i = 0; i < AddressMode.Count(); ++i) {
    Adopt(AddressMode(i));
    AddressMode(i).SetCaption(kAddressModeCaptions[i]);
    AddressModeGroup.Add(AddressMode(i));
  }
  GenerateNeededCmd.Click = [this] { GenerateNeededCmd_Click(); };
  GenerateRequestedCmd.Click = [this] { GenerateRequestedCmd_Click(); };
  StopAddCmd.Click = [this] { StopAddCmd_Click(); };
  ProcessPrintedCmd.Click = [this] { ProcessPrintedCmd_Click(); };
  ClearQSLDatabaseCmd.Click = [this] { ClearQSLDatabaseCmd_Click(); };
  page_.qslQueue.InitializeQSLInfo = [this] { InitializeQSLInfo(); };
  page_.qslQueue.SaveQSLInfo = [this] { SaveQSLInfo(); };
}

qsl::QSLServices VellumMain::QSLWalkServices() {
  qsl::QSLServices s;
  s.desktop = &page_.desktop;
  s.reportError = [this](int number, const std::string& where) {
    page_.common.ReportError(number, where);
  };
  s.yield = [this] { page_.loop.Yield(); };
  // The log may be closed (by the configuration window) or the program ended during a yield.
  s.ended = [this] { return page_.ProcessEnding() || !page_.module.LogOpen(); };
  s.queueFrameCaption = [this] { return PrintQueueFrame.Caption(); };
  s.setQueueFrameCaption = [this](const std::string& caption) {
    PrintQueueFrame.SetCaption(caption);
  };
  s.walkButtons = [this](bool walking) {
    GenerateNeededCmd.SetEnabled(!walking);
    GenerateRequestedCmd.SetEnabled(!walking);
    StopAddCmd.SetVisible(walking);
    StopAddCmd.SetEnabled(walking);
  };
  s.waitCursor = [this](bool wait) { SetMousePointer(wait ? ui::vbHourglass : ui::vbDefault); };
  s.updateCaption = [this] { UpdateCaption(); };
  s.refreshLogGrid = [this] { page_.module.RefreshLogGrid(); };
  s.queueGridRedraw = [this] { QSLPosition.RowsChanged(); };
  s.findMyQTH = [this](const std::string& id) {
    return qsl::LookUpMyQTH(page_.module.QTHRecordset, id);
  };
  s.sortLogForNextOpening = [this] { page_.module.LogRecordset.SetSort("QSO_Begin"); };
  s.sortQSL = [this](const std::string& order) { page_.qslQueue.SortQSL(order); };
  return s;
}

template <class Body>
void VellumMain::RunQSLCommand(Body&& body) {
  if (CommandBusy || !page_.qslQueue.IsOpen() || !page_.module.LogOpen()) return;
  CommandBusy = true;
  qsl::VellumQSLModule module(QSLPosition.Recordset(), QSLWalkServices());
  runningQSLCommand_ = &module;
  try {
    body(module);
  } catch (...) {
    runningQSLCommand_ = nullptr;
    CommandBusy = false;
    throw;
  }
  runningQSLCommand_ = nullptr;
  CommandBusy = false;
  QSLPosition.RowsChanged();
}

void VellumMain::GenerateNeededCmd_Click() {
  RunQSLCommand([this](qsl::VellumQSLModule& module) {
    qsl::AwardChecks checks{};
    for (int i = 3; i <= 17; ++i)
      checks[static_cast<size_t>(i)] = page_.setup().AwardCheck(i).Value() == 1;
    module.GenerateNeededQSLs(LogPosition.Recordset(), ProgressPosition.Recordset(), checks);
  });
}

void VellumMain::GenerateRequestedCmd_Click() {
  RunQSLCommand([this](qsl::VellumQSLModule& module) {
    qsl::AwardChecks checks{};
    for (int i = 3; i <= 17; ++i)
      checks[static_cast<size_t>(i)] = page_.setup().AwardCheck(i).Value() == 1;
    module.GenerateRequestedQSLs(LogPosition.Recordset(), ProgressPosition.Recordset(), checks);
  });
}

// Outside the busy guard: it is what reaches a walk while it runs.
void VellumMain::StopAddCmd_Click() {
  if (runningQSLCommand_) runningQSLCommand_->StopAdd();
}

void VellumMain::ProcessPrintedCmd_Click() {
  RunQSLCommand([this](qsl::VellumQSLModule& module) {
    module.ProcessPrintedQSLs(page_.module.LogDatabase, ProgressPosition.Recordset());
  });
}

void VellumMain::ClearQSLDatabaseCmd_Click() {
  RunQSLCommand([this](qsl::VellumQSLModule& module) {
    module.ClearQSLDatabase(page_.module.LogDatabase, ProgressPosition.Recordset());
  });
}

// The keys in their order. The label offsets fill the QSL label page and the address label
// page alike; saving writes each twice, the address page's last, so its value is the one kept.
void VellumMain::InitializeQSLInfo() {
  VellumSetup& s = page_.setup();
  auto get = [this](const std::string& key, const std::string& defaultValue) {
    return page_.GetSetting(setting::kQSLSection, key, defaultValue);
  };
  QSLMode(OptionIndex(get("QSLMode", "0"), QSLMode.Count())).SetValue(true);
  QSLPrintPreviewCheck.SetValue(get("QSLPrintPreview", "0") == "1" ? 1 : 0);
  AddressMode(OptionIndex(get("AddressMode", "0"), AddressMode.Count())).SetValue(true);
  for (int i = 0; i < 4; ++i)
    s.QSLInfoUpperLeft(i).SetText(get("QSLInfoUpperLeft" + std::to_string(i), ""));
  for (int i = 0; i < 4; ++i)
    s.QSLInfoUpperRight(i).SetText(get("QSLInfoUpperRight" + std::to_string(i), ""));
  s.QSLInfoLowerLeft.SetText(get("QSLInfoLowerLeft", ""));
  s.QSLInfoLowerRight.SetText(get("QSLInfoLowerRight", ""));
  auto both = [&](ui::TextBox& label, ui::TextBox& envelope, const std::string& key,
                  const std::string& defaultValue) {
    const std::string value = get(key, defaultValue);
    label.SetText(value);
    envelope.SetText(value);
  };
  both(s.NarrowTopOffset, s.EnvelopeNarrowTopOffset, "NarrowTopOffset", "0.5");
  const char* narrowDefaults[3] = {"0", "2.75", "5.5"};
  for (int i = 0; i < 3; ++i)
    both(s.NarrowColumnOffset(i), s.EnvelopeNarrowColumnOffset(i),
         "NarrowColumnOffset" + std::to_string(i + 1), narrowDefaults[i]);
  both(s.NarrowLabelsPerColumn, s.EnvelopeNarrowLabelsPerColumn, "NarrowLabelsPerColumn", "10");
  both(s.WideTopOffset, s.EnvelopeWideTopOffset, "WideTopOffset", "0.5");
  const char* wideDefaults[2] = {"0", "4.125"};
  for (int i = 0; i < 2; ++i)
    both(s.WideColumnOffset(i), s.EnvelopeWideColumnOffset(i),
         "WideColumnOffset" + std::to_string(i + 1), wideDefaults[i]);
  both(s.WideLabelsPerColumn, s.EnvelopeWideLabelsPerColumn, "WideLabelsPerColumn", "10");
  for (int i = 0; i < 5; ++i)
    s.ReturnAddress(i).SetText(get("EnvelopeReturnAddress" + std::to_string(i), ""));
  s.EnvelopeTopOffset.SetText(get("EnvelopeTopOffset", "2"));
  s.EnvelopeLeftOffset.SetText(get("EnvelopeLeftOffset", "1"));
  s.AirmailCheck.SetValue(get("EnvelopeAirmail", "1") == "1" ? 1 : 0);
}

void VellumMain::SaveQSLInfo() {
  VellumSetup& s = page_.setup();
  auto save = [this](const std::string& key, const std::string& value) {
    page_.SaveSetting(setting::kQSLSection, key, value);
  };
  auto selected = [](const ui::OptionGroup& group) {
    const int index = group.Selected();
    return std::to_string(index < 0 ? 0 : index);
  };
  save("QSLPrintPreview", std::to_string(QSLPrintPreviewCheck.Value()));
  save("QSLMode", selected(QSLModeGroup));
  save("AddressMode", selected(AddressModeGroup));
  for (int i = 0; i < 4; ++i)
    save("QSLInfoUpperLeft" + std::to_string(i), s.QSLInfoUpperLeft(i).Text());
  for (int i = 0; i < 4; ++i)
    save("QSLInfoUpperRight" + std::to_string(i), s.QSLInfoUpperRight(i).Text());
  save("QSLInfoLowerLeft", s.QSLInfoLowerLeft.Text());
  save("QSLInfoLowerRight", s.QSLInfoLowerRight.Text());
  auto both = [&](ui::TextBox& label, ui::TextBox& envelope, const std::string& key) {
    save(key, label.Text());
    save(key, envelope.Text());
  };
  both(s.NarrowTopOffset, s.EnvelopeNarrowTopOffset, "NarrowTopOffset");
  for (int i = 0; i < 3; ++i)
    both(s.NarrowColumnOffset(i), s.EnvelopeNarrowColumnOffset(i),
         "NarrowColumnOffset" + std::to_string(i + 1));
  both(s.NarrowLabelsPerColumn, s.EnvelopeNarrowLabelsPerColumn, "NarrowLabelsPerColumn");
  both(s.WideTopOffset, s.EnvelopeWideTopOffset, "WideTopOffset");
  for (int i = 0; i < 2; ++i)
    both(s.WideColumnOffset(i), s.EnvelopeWideColumnOffset(i),
         "WideColumnOffset" + std::to_string(i + 1));
  both(s.WideLabelsPerColumn, s.EnvelopeWideLabelsPerColumn, "WideLabelsPerColumn");
  for (int i = 0; i < 5; ++i)
    save("EnvelopeReturnAddress" + std::to_string(i), s.ReturnAddress(i).Text());
  save("EnvelopeTopOffset", s.EnvelopeTopOffset.Text());
  save("EnvelopeLeftOffset", s.EnvelopeLeftOffset.Text());
  save("EnvelopeAirmail", std::to_string(s.AirmailCheck.Value()));
}

}  // namespace vellumar
