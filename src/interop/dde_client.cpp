#include "interop/dde_client.h"

#include <cctype>
#include <cstdio>

#include "platform/vb/convert.h"
#include "platform/vb/error.h"

namespace vellumar::interop {
namespace {

std::string Lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// Format(number, "000").
std::string Frame(int server) {
  char digits[8];
  std::snprintf(digits, sizeof digits, "%03d", server);
  return digits;
}

constexpr const char* kAtlasineServer = "Atlasine|DDEServer";

}  // namespace

DDEClient::DDEClient(link::LinkEndpoint& endpoint)
    : Freq(endpoint),
      Mode(endpoint),
      TrailmarkDDECommand(endpoint),
      DXCCPrefix(endpoint),
      DXCCID(endpoint),
      Cont(endpoint),
      CQ(endpoint),
      ITU(endpoint),
      AtlasineDDECommand(endpoint),
      ClustrineDDECommand(endpoint),
      endpoint_(endpoint),
      controls_{
          {&Freq, kRigsteward, "Rigsteward|RigstewardUI", "FreqDisplay"},
          {&Mode, kRigsteward, "Rigsteward|DDEServer", "Mode"},
          {&TrailmarkDDECommand, kTrailmark, "Trailmark|DDEServer", "DDECommand"},
          {&DXCCPrefix, kAtlasine, kAtlasineServer, "DXCCPrefix"},
          {&DXCCID, kAtlasine, kAtlasineServer, "DXCCID"},
          {&Cont, kAtlasine, kAtlasineServer, "Cont"},
          {&CQ, kAtlasine, kAtlasineServer, "CQ"},
          {&ITU, kAtlasine, kAtlasineServer, "ITU"},
          {&AtlasineDDECommand, kAtlasine, kAtlasineServer, "DDECommand"},
          {&ClustrineDDECommand, kClustrine, "Clustrine|DDEServer", "DDECommand"},
      } {}

DDEClient::~DDEClient() { Unserve(); }

void DDEClient::Serve(link::Topic::ExecuteHandler execute) {
  topic_ = &endpoint_.Serve(kCaption);
  topic_->SetItem("RequestDDEConnection", "");
  topic_->OnExecute(std::move(execute));
}

void DDEClient::Unserve() {
  if (topic_) topic_->OnExecute(nullptr);
  topic_ = nullptr;
}

DDEClientModule::DDEClientModule(DDEClientHost& host, DDEClientTimers timers, LookupSlots& slots)
    : host_(host), timers_(timers), slots_(slots) {}

DDEClientModule::~DDEClientModule() = default;

void DDEClientModule::Initialize(link::LinkEndpoint& endpoint) {
  try {
    ServerIsConnected.fill(false);
    ServerRetrying.fill(false);
    ServerDead.fill(false);
    TrailmarkQueriesAllowed = false;
    form_ = std::make_unique<DDEClient>(endpoint);
    WireSlots();
    form_->Serve([this](const std::string& command) { return Form_LinkExecute(command); });
    for (int server : {kAtlasine, kRigsteward, kClustrine, kTrailmark}) ConnectServer(server);
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEClientModule.Initialize");
  }
}

void DDEClientModule::WireSlots() {
  // The transceiver's values and Atlasine's answer land in the shared lookup slots; each
  // control's LinkClose marks its sibling gone.
  const std::pair<link::Link DDEClient::*, std::string LookupSlots::*> slotOf[] = {
      {&DDEClient::Freq, &LookupSlots::Freq},       {&DDEClient::Mode, &LookupSlots::Mode},
      {&DDEClient::DXCCPrefix, &LookupSlots::DXCCPrefix}, {&DDEClient::DXCCID, &LookupSlots::DXCCID},
      {&DDEClient::Cont, &LookupSlots::Cont},       {&DDEClient::CQ, &LookupSlots::CQ},
      {&DDEClient::ITU, &LookupSlots::ITU},
  };
  for (const auto& [control, slot] : slotOf) {
    std::string LookupSlots::*target = slot;
    (form_.get()->*control).OnChange([this, target](const std::string& text) {
      slots_.*target = text;
    });
  }
  for (const DDEClient::Control& control : form_->Controls()) {
    const int server = control.server;
    control.link->OnLinkClose([this, server] { SetServerConnected(server, false); });
  }
}

void DDEClientModule::Terminate() {
  // Connected siblings learn that no log is open any more.
  AtlasineNewLog("");
  ClustrineNewLog("");
  form_.reset();
}

bool DDEClientModule::Form_LinkExecute(const std::string& command) {
  bool cancel = true;
  try {
    const auto number = vb::ParseNumber(command.substr(0, 3));
    if (!number) vb::Raise(vb::kTypeMismatch);
    const int server = vb::CInt(*number);
    if (command.size() > 3 && Lowered(command.substr(3)) == "start") {
      ConnectServer(server);
      cancel = false;
    }
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEClient.Form_LinkExecute");
  }
  return !cancel;
}

void DDEClientModule::ConnectServer(int server) {
  if (!form_ || server < kRigsteward || server > kClustrine || server == kThisProgram) return;
  try {
    for (const DDEClient::Control& control : form_->Controls()) {
      if (control.server != server) continue;
      control.link->SetLinkItem(control.item);
      control.link->SetLinkTopic(control.topic);
      control.link->SetLinkMode(link::kLinkAutomatic);
    }
  } catch (const vb::VbError&) {
    // The sibling isn't running: the rest of its controls are skipped.
    SetServerConnected(server, false);
    return;
  }
  SetServerConnected(server, true);
}

bool DDEClientModule::ServerConnected(int server) {
  if (server < 0 || server >= kServerCount) {
    host_.ReportError(vb::kSubscriptOutOfRange, "DDEClientModule.ServerConnected");
    return false;
  }
  return ServerIsConnected[static_cast<std::size_t>(server)];
}

void DDEClientModule::SetServerConnected(int server, bool connected) {
  if (server < 0 || server >= kServerCount) {
    host_.ReportError(vb::kSubscriptOutOfRange, "DDEClientModule.SetServerConnected");
    return;
  }
  const auto s = static_cast<std::size_t>(server);
  try {
    ServerIsConnected[s] = connected;
    if (server == kAtlasine) host_.SetPlotLogEnabled(connected);
    std::string list;
    for (int n = 0; n < kServerCount; ++n) {
      if (!ServerIsConnected[static_cast<std::size_t>(n)]) continue;
      if (!list.empty()) list += ",";
      list += DDECommon::ServerNickName(n);
    }
    host_.SetInteropCaption(list);
    host_.UpdateCaption();
    if (connected) {
      // The sibling learns the log's name a second after the link stands.
      if (server == kAtlasine) timers_.AtlasineNewlogTimer.SetEnabled(true);
      if (server == kClustrine) timers_.ClustrineNewlogTimer.SetEnabled(true);
      ServerRetrying[s] = false;
    } else if (!ServerRetrying[s]) {
      ServerDead[s] = true;
      timers_.ServerRetryTimer.SetEnabled(true);
    } else {
      // The retry failed too: the sibling is waited for until it says "start".
      ServerRetrying[s] = false;
    }
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEClientModule.SetServerConnected");
  }
}

void DDEClientModule::RetryDeadServers() {
  timers_.ServerRetryTimer.SetEnabled(false);
  for (int server = 0; server < kServerCount; ++server) {
    const auto s = static_cast<std::size_t>(server);
    if (!ServerDead[s]) continue;
    ServerDead[s] = false;
    ServerRetrying[s] = true;
    ConnectServer(server);
  }
}

void DDEClientModule::SendAtlasineNewlog() {
  AtlasineNewLog(host_.LogOpen() ? host_.LogPathname() : std::string());
}

void DDEClientModule::SendClustrineNewlog() {
  ClustrineNewLog(host_.LogOpen() ? host_.LogPathname() : std::string());
}

void DDEClientModule::Send(int server, link::Link DDEClient::*control, const std::string& text,
                           const char* procedure) {
  if (!form_ || !ServerConnected(server)) return;
  try {
    (form_.get()->*control).LinkExecute(Frame(server) + text);
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), std::string("DDEClientModule.") + procedure);
  }
}

void DDEClientModule::CopyAtlasineSlots() {
  slots_.DXCCPrefix = form_->DXCCPrefix.Text();
  slots_.DXCCID = form_->DXCCID.Text();
  slots_.Cont = form_->Cont.Text();
  slots_.CQ = form_->CQ.Text();
  slots_.ITU = form_->ITU.Text();
}

void DDEClientModule::AtlasineLookup(const std::string& callsign) {
  if (!form_ || !ServerConnected(kAtlasine)) {
    host_.Lookup(callsign);
    return;
  }
  Send(kAtlasine, &DDEClient::AtlasineDDECommand, "lookup" + callsign, "AtlasineLookup");
  // The controls hold Atlasine's answer now, changed or not: the slots show what they hold,
  // whatever a local lookup put there meanwhile.
  if (form_) CopyAtlasineSlots();
}

void DDEClientModule::AtlasinePlotCall(const std::string& text) {
  Send(kAtlasine, &DDEClient::AtlasineDDECommand, "plotcall" + text, "AtlasinePlotCall");
}

void DDEClientModule::AtlasinePlotGrid(const std::string& text) {
  Send(kAtlasine, &DDEClient::AtlasineDDECommand, "plotgrid" + text, "AtlasinePlotGrid");
}

void DDEClientModule::AtlasineNewLog(const std::string& pathname) {
  Send(kAtlasine, &DDEClient::AtlasineDDECommand, "newlog" + pathname, "AtlasineNewLog");
}

void DDEClientModule::AtlasineUpdateProgress(const std::string& text) {
  Send(kAtlasine, &DDEClient::AtlasineDDECommand, "updateprogress" + text,
       "AtlasineUpdateProgress");
}

void DDEClientModule::ClustrineNewLog(const std::string& pathname) {
  Send(kClustrine, &DDEClient::ClustrineDDECommand, "newlog" + pathname, "ClustrineNewLog");
}

void DDEClientModule::ClustrineNewAwards() {
  Send(kClustrine, &DDEClient::ClustrineDDECommand, "newawards", "ClustrineNewAwards");
}

void DDEClientModule::ClustrineUpdateProgress(const std::string& callsign, const std::string& band,
                                              const std::string& mode, const std::string& dxcc,
                                              const std::string& progress) {
  Send(kClustrine, &DDEClient::ClustrineDDECommand,
       "updateprogress" + DDECommon::EncodeField("UpdatedCallsign", callsign) +
           DDECommon::EncodeField("UpdatedBand", band) +
           DDECommon::EncodeField("UpdatedMode", mode) +
           DDECommon::EncodeField("UpdatedDXCC", dxcc) +
           DDECommon::EncodeField("UpdatedProgress", progress),
       "ClustrineUpdateProgress");
}

void DDEClientModule::ClustrineSpotStation(const std::string& callsign) {
  Send(kClustrine, &DDEClient::ClustrineDDECommand,
       "spotstation" + DDECommon::EncodeField("SpotStationCallsign", callsign),
       "ClustrineSpotStation");
}

void DDEClientModule::TrailmarkGetQSLInfo(const std::string& callsign) {
  if (!TrailmarkQueriesAllowed) return;
  Send(kTrailmark, &DDEClient::TrailmarkDDECommand,
       "getqslinfo" + DDECommon::EncodeField(Upper("callsign"), callsign), "TrailmarkGetQSLInfo");
}

}  // namespace vellumar::interop
