#include "logpage/sibling_links.h"

#include "awards/progress_update.h"
#include "config/set_combo.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"

namespace vellumar {

SiblingLinks::SiblingLinks(LogPage& page, link::LinkEndpoint* endpoint)
    : common([this](int number, const std::string& where) { ReportError(number, where); }),
      client(*this,
             interop::DDEClientTimers{page.main.AtlasineNewlogTimer, page.main.ClustrineNewlogTimer,
                                      page.main.ServerRetryTimer},
             page.lookupSlots),
      server(page.loop, common, *this),
      page_(page),
      transport_(endpoint) {}

link::LinkEndpoint& SiblingLinks::Endpoint() {
  if (endpoint_) return *endpoint_;
  endpoint_ = &unlinked_;
  // A program built without a transport has nothing to report; one whose name is taken says
  // so once, and works without the siblings.
  if (!transport_) return *endpoint_;
  if (const std::string why = transport_->Unavailable(); !why.empty()) {
    page_.common.WriteErrorLog(why + ": working without the siblings");
  } else if (!transport_->RegisterApplication(kApplicationName)) {
    page_.common.WriteErrorLog(std::string("the name ") + kApplicationName +
                               " is owned by another program: working without the siblings");
  } else {
    endpoint_ = transport_;
  }
  return *endpoint_;
}

void SiblingLinks::InitializeClient() { client.Initialize(Endpoint()); }
void SiblingLinks::InitializeServer() { server.Initialize(Endpoint()); }

void SiblingLinks::ReportError(int number, const std::string& where) {
  page_.common.ReportError(number, where);
}

void SiblingLinks::EnableShutdownTimer() { page_.main.ShutdownTimer.SetEnabled(true); }

void SiblingLinks::AdifProcess(const std::string& text) { page_.main.ProcessSiblingLog(text); }

void SiblingLinks::FilterClear() { page_.main.FilterClear(); }

void SiblingLinks::SetFilterFieldText(const std::string& text) {
  page_.main.FilterField.SetText(text);
}

void SiblingLinks::FilterCall() { page_.main.FilterCall(); }

void SiblingLinks::SetSuppressLookup(bool suppressed) { page_.dxcc.SetSuppressLookup(suppressed); }

void SiblingLinks::TrailmarkGetQSLInfo(const std::string& callsign) {
  page_.trailmark.GetQSLInfo(callsign);
}

std::string SiblingLinks::GetProgress(const std::string& prefix, const std::string& band,
                                      const std::string& mode) {
  db::Recordset& progress = page_.module.ProgressRecordset;
  if (!page_.module.LogOpen() || !progress) return "?";
  return vellumar::GetProgress(progress, prefix, band, mode);
}

bool SiblingLinks::RecomputeInProgress() { return page_.module.RecomputeInProgress(); }

std::string SiblingLinks::CaptureCallsign() { return page_.capture.Callsign.Text(); }
void SiblingLinks::SetCaptureCallsign(const std::string& text) {
  page_.capture.Callsign.SetText(text);
}
std::string SiblingLinks::CaptureFrequency() { return page_.capture.Frequency.Text(); }
void SiblingLinks::SetCaptureFrequency(const std::string& text) {
  page_.capture.Frequency.SetText(text);
}
std::string SiblingLinks::CaptureMode() {
  const ui::ComboBox& mode = page_.capture.Mode;
  return mode.ListIndex() < 0 ? std::string() : mode.List(mode.ListIndex());
}
void SiblingLinks::SetCaptureMode(const std::string& mode) { SetCombo(page_.capture.Mode, mode); }
void SiblingLinks::CaptureClearCmd_Click() { page_.capture.ClearCmd_Click(); }
void SiblingLinks::CaptureLookupCmd_Click() { page_.capture.LookupCmd_Click(); }
bool SiblingLinks::CaptureVisible() { return page_.capture.Visible(); }
void SiblingLinks::FocusCaptureCallsign() { page_.capture.Callsign.SetFocus(); }
void SiblingLinks::ShowLogQSOsTab() { page_.main.TabbedDialog.SetTab(0); }

void SiblingLinks::SetPlotLogEnabled(bool enabled) { page_.main.PlotLogCmd.SetEnabled(enabled); }
void SiblingLinks::SetInteropCaption(const std::string& text) {
  page_.module.SetInteropCaption(text);
}
void SiblingLinks::UpdateCaption() { page_.main.UpdateCaption(); }
bool SiblingLinks::LogOpen() { return page_.module.LogOpen(); }
std::string SiblingLinks::LogPathname() { return page_.config.LogPathname(); }
void SiblingLinks::Lookup(const std::string& callsign) { page_.dxcc.Lookup(callsign); }

}  // namespace vellumar
