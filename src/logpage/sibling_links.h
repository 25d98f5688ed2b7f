#pragma once
// The Log page's side of the conversations with the sibling programs: the client links and the
// served topic, with what their commands do to the main window, the Capture window and the log.
// The program's place on the transport is given; without one, or when another copy owns the
// name, the program runs unlinked: every link fails as if no sibling ran.
#include <string>

#include "interop/dde_client.h"
#include "interop/dde_common.h"
#include "interop/dde_server.h"
#include "platform/link/endpoint.h"
#include "platform/link/unlinked_endpoint.h"

namespace vellumar {

class LogPage;

class SiblingLinks final : public interop::DDEServerHost, public interop::DDEClientHost {
 public:
  // The application name this program owns on the transport.
  static constexpr const char* kApplicationName = "Vellumar";

  SiblingLinks(LogPage& page, link::LinkEndpoint* endpoint);

  interop::DDECommon common;
  interop::DDEClientModule client;
  interop::DDEServerModule server;

  // Start-up steps 14 and 15: the name claimed (once), the client's links, the served topic.
  void InitializeClient();
  void InitializeServer();
  // Whether the program owns its name on a transport.
  bool Linked() const { return endpoint_ == transport_ && transport_ != nullptr; }

  // DDEServerHost and DDEClientHost.
  void ReportError(int number, const std::string& where) override;
  void EnableShutdownTimer() override;
  void AdifProcess(const std::string& text) override;
  void FilterClear() override;
  void SetFilterFieldText(const std::string& text) override;
  void FilterCall() override;
  void SetSuppressLookup(bool suppressed) override;
  void TrailmarkGetQSLInfo(const std::string& callsign) override;
  std::string GetProgress(const std::string& prefix, const std::string& band,
                          const std::string& mode) override;
  bool RecomputeInProgress() override;
  std::string CaptureCallsign() override;
  void SetCaptureCallsign(const std::string& text) override;
  std::string CaptureFrequency() override;
  void SetCaptureFrequency(const std::string& text) override;
  std::string CaptureMode() override;
  void SetCaptureMode(const std::string& mode) override;
  void CaptureClearCmd_Click() override;
  void CaptureLookupCmd_Click() override;
  bool CaptureVisible() override;
  void FocusCaptureCallsign() override;
  void ShowLogQSOsTab() override;
  void SetPlotLogEnabled(bool enabled) override;
  void SetInteropCaption(const std::string& text) override;
  void UpdateCaption() override;
  bool LogOpen() override;
  std::string LogPathname() override;
  void Lookup(const std::string& callsign) override;

 private:
  // Claims the name on first use; the unlinked endpoint when that fails.
  link::LinkEndpoint& Endpoint();

  LogPage& page_;
  link::LinkEndpoint* transport_;  // as given; null without one
  link::LinkEndpoint* endpoint_ = nullptr;  // the one in use, once chosen
  link::UnlinkedEndpoint unlinked_;
};

}  // namespace vellumar
