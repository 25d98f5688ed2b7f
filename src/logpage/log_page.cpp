#include "logpage/log_page.h"

#include "frame/version.h"

namespace vellumar {

LogPage::LogPage(LogPageServices services)
    : LogPageServices(std::move(services)), config(setup().Options()), module(*this), main(*this), dxccSummary(*this),
      siblings(*this, linkEndpoint) {
  setup().SetObserver(this);
  capture.Attach(*this);
  setup().ClustrineNewAwards = [this] { siblings.client.ClustrineNewAwards(); };
  trailmark.SetSender(
      [this](const std::string& callsign) { siblings.client.TrailmarkGetQSLInfo(callsign); });
  // The advanced window is built after the main window, whose commands its buttons run.
  main.WireAdvancedFilter();
}

LogPage::~LogPage() { setup().SetObserver(nullptr); }

std::vector<ui::Form*> LogPage::LoadedForms() {
  std::vector<ui::Form*> forms;
  for (ui::Form* form :
       {static_cast<ui::Form*>(&main), static_cast<ui::Form*>(&capture),
        static_cast<ui::Form*>(&setup()), static_cast<ui::Form*>(&cardPage),
        static_cast<ui::Form*>(&advancedFilter), static_cast<ui::Form*>(&addressEditor),
        static_cast<ui::Form*>(&dxccSummary)}) {
    if (form->Loaded()) forms.push_back(form);
  }
  return forms;
}

std::string LogPage::GetSetting(const std::string& section, const std::string& key,
                                const std::string& defaultValue) const {
  return settings.GetSetting(kApplicationTitle, section, key, defaultValue);
}

void LogPage::SaveSetting(const std::string& section, const std::string& key,
                          const std::string& value) {
  settings.SaveSetting(kApplicationTitle, section, key, value);
}

std::string LogPage::GetWindowSetting(const char* word, const std::string& defaultValue) const {
  return GetSetting(setting::kWindowsSection, setting::WindowKey(main.Name(), word), defaultValue);
}

void LogPage::SaveWindowSetting(const char* word, const std::string& value) {
  SaveSetting(setting::kWindowsSection, setting::WindowKey(main.Name(), word), value);
}

void LogPage::EndProcess(int code) {
  processEnding_ = true;
  if (endProcess) endProcess(code);
}

bool LogPage::SwitchLog(const std::string& pathname) {
  module.CloseLog();
  module.OpenLog(pathname, false);
  return module.LogOpen();
}

void LogPage::CloseLog() { module.CloseLog(); }

void LogPage::UpdateCaption() { main.UpdateCaption(); }

void LogPage::LogFrameVisibilityChanged(int index, int value) {
  // The echo in the main window's box is not the operator's click.
  main.IgnoreFrameSelect();
  main.LogFrameSelect(index).SetValue(value);
  main.obeyFrameSelect();
  ui::Frame& frame = main.LogFrame(index);
  const bool show = value == 1;
  if (frame.Visible() != show) {
    frame.SetVisible(show);
    main.SetHeight(main.Height() + (show ? frame.Height() : -frame.Height()));
  }
}

void LogPage::CallbookEnabledChanged(bool enabled) { main.RACcmd.SetEnabled(enabled); }

void LogPage::MyCallsignChanged(const std::string& callsign) {
  ui::CheckBox& box = main.DefaultCallsignCheckbox;
  box.SetCaption("Substitute " + callsign + " for missing operator callsigns");
  box.SetToolTipText("If checked, " + callsign +
                     " will be substituted for missing operator callsigns in imported records");
}

void LogPage::LayoutRowDeleting(int row) { module.HideLayoutColumn(row); }
void LogPage::LayoutCellChanged(int row, int column) { module.ChangeLayoutColumn(row, column); }
void LogPage::LayoutChanged() { module.SaveLogLayout(); }
void LogPage::SaveLogGridColumnWidths() { module.SaveLogGridColumnWidths(); }

}  // namespace vellumar
