#pragma once
// The topic "DDEServer" through which the siblings drive this program: they add QSOs to the
// log, ask for an entity's award status on a band and mode, point the Log page at a callsign,
// and fill the Capture window with a new station. DDEServer is the hidden form (its timers and
// the Progress item), DDEServerModule its procedures. What the commands do to the log and the
// windows goes through DDEServerHost, which the Log page implements.
#include <functional>
#include <memory>
#include <string>

#include "interop/dde_common.h"
#include "platform/link/endpoint.h"
#include "platform/link/link.h"
#include "platform/services/event_loop.h"

namespace vellumar::interop {

// What the server's commands reach in the rest of the program.
class DDEServerHost {
 public:
  virtual ~DDEServerHost() = default;
  virtual void ReportError(int number, const std::string& where) = 0;
  // The main window's ShutdownTimer (its tick unloads the main window).
  virtual void EnableShutdownTimer() = 0;
  // ADIF.Process of the import: the text's records added to the open log.
  virtual void AdifProcess(const std::string& text) = 0;
  // The main window's FilterClear and FilterCall, and its FilterField's text.
  virtual void FilterClear() = 0;
  virtual void SetFilterFieldText(const std::string& text) = 0;
  virtual void FilterCall() = 0;
  virtual void SetSuppressLookup(bool suppressed) = 0;
  virtual void TrailmarkGetQSLInfo(const std::string& callsign) = 0;
  // The award status of the entity with `prefix` over the two columns `band` and `mode`.
  virtual std::string GetProgress(const std::string& prefix, const std::string& band,
                                  const std::string& mode) = 0;
  virtual bool RecomputeInProgress() = 0;
  // The Capture window's controls and commands.
  virtual std::string CaptureCallsign() = 0;
  virtual void SetCaptureCallsign(const std::string& text) = 0;
  virtual std::string CaptureFrequency() = 0;
  virtual void SetCaptureFrequency(const std::string& text) = 0;
  virtual std::string CaptureMode() = 0;
  // Selects the mode's list item (SetCombo).
  virtual void SetCaptureMode(const std::string& mode) = 0;
  virtual void CaptureClearCmd_Click() = 0;
  virtual void CaptureLookupCmd_Click() = 0;
  virtual bool CaptureVisible() = 0;
  virtual void FocusCaptureCallsign() = 0;
  // TabbedDialog.Tab = 0: the Log QSOs tab.
  virtual void ShowLogQSOsTab() = 0;
};

// The hidden form. Its LinkTopic is its caption; the items clients read are `Progress` and
// `DDECommand`, which the siblings link their command channel to.
class DDEServer {
 public:
  static constexpr const char* kCaption = "DDEServer";

  // The timers' ticks run `newEntryTick` and `newCallsignTick`.
  DDEServer(ui::EventLoop& loop, link::LinkEndpoint& endpoint, std::function<void()> newEntryTick,
            std::function<void()> newCallsignTick);
  ~DDEServer();
  DDEServer(const DDEServer&) = delete;
  DDEServer& operator=(const DDEServer&) = delete;

  ui::Timer NewEntryTimer;     // 1 ms: the second half of `newentry`
  ui::Timer NewCallsignTimer;  // 1 ms: the second half of `newcallsign`
  link::Link DDEStart;         // the client end that InformClient uses

  // The reply of `getprogress`, served as the item "Progress".
  const std::string& Progress() const { return progress_; }
  void SetProgress(const std::string& text);

  void Form_Load();
  // Serves the topic under this program's name with `execute` as its command handler.
  void Serve(link::Topic::ExecuteHandler execute);
  // Stops serving: later commands are refused.
  void Unserve();

 private:
  link::LinkEndpoint& endpoint_;
  link::Topic* topic_ = nullptr;
  std::string progress_;
};

class DDEServerModule {
 public:
  DDEServerModule(ui::EventLoop& loop, DDECommon& common, DDEServerHost& host);
  ~DDEServerModule();

  // Loads the form on `endpoint`, serves its topic, then tells Songlark and Clustrine that this
  // program has started.
  void Initialize(link::LinkEndpoint& endpoint);
  // Unloads the form: the topic is served no more.
  void Terminate();
  bool Loaded() const { return form_ != nullptr; }
  DDEServer& Form() { return *form_; }

  // Asks `application` to connect to this program: "001start" to its "DDEClient" topic. A
  // sibling that isn't running is no failure worth telling.
  void InformClient(const std::string& application);

  // The dispatcher: true accepted, false refused (the sibling's execute fails).
  bool Form_LinkExecute(const std::string& command);

  void doLog(const std::string& text);
  void doCheck(const std::string& callsign);
  void DoNewCallsign(const std::string& callsign);
  void DoNewEntry(const std::string& callsign, const std::string& frequency,
                  const std::string& mode);
  void DoLookup();
  void NewCallsignTimer_Timer();
  void NewEntryTimer_Timer();

 private:
  ui::EventLoop& loop_;
  DDECommon& common_;
  DDEServerHost& host_;
  std::unique_ptr<DDEServer> form_;
};

}  // namespace vellumar::interop
