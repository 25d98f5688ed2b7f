#pragma once
// The conversations this program keeps with up to four siblings: Rigsteward's frequency and
// mode, Atlasine's answer to a lookup, and the command channels of Atlasine, Clustrine and
// Trailmark. A link that dies is tried again once, five seconds later; after that the sibling
// is waited for until it announces itself with "start". DDEClient is the hidden form (the link
// controls, and the topic siblings announce themselves on), DDEClientModule its procedures.
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "interop/dde_common.h"
#include "platform/link/endpoint.h"
#include "platform/link/link.h"
#include "platform/services/event_loop.h"
#include "station/lookup_slots.h"

namespace vellumar::interop {

// What the client reaches in the rest of the program.
class DDEClientHost {
 public:
  virtual ~DDEClientHost() = default;
  virtual void ReportError(int number, const std::string& where) = 0;
  // PlotLogCmd of the main window: the Log page's plot needs Atlasine.
  virtual void SetPlotLogEnabled(bool enabled) = 0;
  // The caption's list of linked siblings, then the caption rebuilt.
  virtual void SetInteropCaption(const std::string& text) = 0;
  virtual void UpdateCaption() = 0;
  virtual bool LogOpen() = 0;
  // The log pathname box of the configuration window.
  virtual std::string LogPathname() = 0;
  // The local lookup of a callsign into the lookup slots.
  virtual void Lookup(const std::string& callsign) = 0;
};

// The main window's timers that the client arms.
struct DDEClientTimers {
  ui::Timer& AtlasineNewlogTimer;
  ui::Timer& ClustrineNewlogTimer;
  ui::Timer& ServerRetryTimer;
};

// The hidden form: one link control per row of its table, in that order. The text of the five
// Atlasine controls and of Freq and Mode is copied into the lookup slots as it arrives.
class DDEClient {
 public:
  static constexpr const char* kCaption = "DDEClient";

  explicit DDEClient(link::LinkEndpoint& endpoint);
  ~DDEClient();
  DDEClient(const DDEClient&) = delete;
  DDEClient& operator=(const DDEClient&) = delete;

  link::Link Freq, Mode, TrailmarkDDECommand, DXCCPrefix, DXCCID, Cont, CQ, ITU,
      AtlasineDDECommand, ClustrineDDECommand;

  struct Control {
    link::Link* link;
    int server;
    const char* topic;
    const char* item;
  };
  // The controls in the order of the form's table.
  const std::vector<Control>& Controls() const { return controls_; }

  // Serves "DDEClient" with the item "RequestDDEConnection"; `execute` answers its commands.
  void Serve(link::Topic::ExecuteHandler execute);
  void Unserve();

 private:
  link::LinkEndpoint& endpoint_;
  link::Topic* topic_ = nullptr;
  std::vector<Control> controls_;
};

class DDEClientModule {
 public:
  DDEClientModule(DDEClientHost& host, DDEClientTimers timers, LookupSlots& slots);
  ~DDEClientModule();

  // Clears the flags, loads the form on `endpoint` and connects Atlasine, Rigsteward,
  // Clustrine and Trailmark, in this order.
  void Initialize(link::LinkEndpoint& endpoint);
  // Tells Atlasine and Clustrine that no log is open, and unloads the form.
  void Terminate();
  bool Loaded() const { return form_ != nullptr; }
  DDEClient& Form() { return *form_; }

  // The siblings' announcement "<nnn>start": true when accepted.
  bool Form_LinkExecute(const std::string& command);

  void ConnectServer(int server);
  bool ServerConnected(int server);
  void SetServerConnected(int server, bool connected);
  void RetryDeadServers();
  void AllowTrailmarkQueries() { TrailmarkQueriesAllowed = true; }
  void SendAtlasineNewlog();
  void SendClustrineNewlog();

  // The commands to the siblings; each does nothing unless its sibling is linked.
  void AtlasineLookup(const std::string& callsign);
  void AtlasinePlotCall(const std::string& text);
  void AtlasinePlotGrid(const std::string& text);
  void AtlasineNewLog(const std::string& pathname);
  void AtlasineUpdateProgress(const std::string& text);
  void ClustrineNewLog(const std::string& pathname);
  void ClustrineNewAwards();
  void ClustrineUpdateProgress(const std::string& callsign, const std::string& band,
                               const std::string& mode, const std::string& dxcc,
                               const std::string& progress);
  void ClustrineSpotStation(const std::string& callsign);
  void TrailmarkGetQSLInfo(const std::string& callsign);

  std::array<bool, kServerCount> ServerIsConnected{};
  std::array<bool, kServerCount> ServerRetrying{};
  std::array<bool, kServerCount> ServerDead{};
  bool TrailmarkQueriesAllowed = false;

 private:
  // LinkExecute of "<nnn>" + text on `control`, when `server` is linked; a failure is reported
  // under `procedure` and the caller goes on.
  void Send(int server, link::Link DDEClient::*control, const std::string& text,
            const char* procedure);
  // The five Atlasine controls' texts into the lookup slots.
  void CopyAtlasineSlots();
  void WireSlots();

  DDEClientHost& host_;
  DDEClientTimers timers_;
  LookupSlots& slots_;
  std::unique_ptr<DDEClient> form_;
};

}  // namespace vellumar::interop
