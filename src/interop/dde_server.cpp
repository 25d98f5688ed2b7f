#include "interop/dde_server.h"

#include <cctype>

#include "platform/vb/convert.h"
#include "platform/vb/error.h"

namespace vellumar::interop {
namespace {

std::string Lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// Mid(text, start, length) of the runtime, 1-based; a start beyond the end gives "".
std::string Mid(const std::string& text, std::size_t start, std::size_t length = std::string::npos) {
  if (start - 1 >= text.size()) return {};
  return text.substr(start - 1, length);
}

// The frame's three characters as a number, as the runtime converts them: a frame that isn't
// numeric raises type mismatch.
int FrameNumber(const std::string& command) {
  const auto number = vb::ParseNumber(command.substr(0, 3));
  if (!number) vb::Raise(vb::kTypeMismatch);
  return vb::CInt(*number);
}

}  // namespace

DDEServer::DDEServer(ui::EventLoop& loop, link::LinkEndpoint& endpoint,
                     std::function<void()> newEntryTick, std::function<void()> newCallsignTick)
    : NewEntryTimer(loop, 1, ui::TimerMode::kPeriodic, std::move(newEntryTick)),
      NewCallsignTimer(loop, 1, ui::TimerMode::kPeriodic, std::move(newCallsignTick)),
      DDEStart(endpoint),
      endpoint_(endpoint) {}

DDEServer::~DDEServer() { Unserve(); }

void DDEServer::Form_Load() {
  NewEntryTimer.SetEnabled(false);
  NewEntryTimer.SetInterval(1);
  NewCallsignTimer.SetEnabled(false);
  NewCallsignTimer.SetInterval(1);
}

void DDEServer::SetProgress(const std::string& text) {
  progress_ = text;
  if (topic_) topic_->SetItem("Progress", progress_);
}

void DDEServer::Serve(link::Topic::ExecuteHandler execute) {
  topic_ = &endpoint_.Serve(kCaption);
  topic_->SetItem("Progress", progress_);
  topic_->SetItem("DDECommand", "");
  topic_->OnExecute(std::move(execute));
}

void DDEServer::Unserve() {
  if (topic_) topic_->OnExecute(nullptr);
  topic_ = nullptr;
}

DDEServerModule::DDEServerModule(ui::EventLoop& loop, DDECommon& common, DDEServerHost& host)
    : loop_(loop), common_(common), host_(host) {}

DDEServerModule::~DDEServerModule() = default;

void DDEServerModule::Initialize(link::LinkEndpoint& endpoint) {
  try {
    form_ = std::make_unique<DDEServer>(
        loop_, endpoint, [this] { NewEntryTimer_Timer(); }, [this] { NewCallsignTimer_Timer(); });
    form_->Form_Load();
    form_->Serve([this](const std::string& command) { return Form_LinkExecute(command); });
    InformClient("Songlark");
    InformClient("Clustrine");
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEServerModule.Initialize");
  }
}

void DDEServerModule::Terminate() { form_.reset(); }

void DDEServerModule::InformClient(const std::string& application) {
  if (!form_) return;
  link::Link& start = form_->DDEStart;
  try {
    start.SetLinkTopic(application + "|DDEClient");
    start.SetLinkItem("RequestDDEConnection");
    start.SetLinkMode(link::kLinkAutomatic);
    start.LinkExecute("001start");
  } catch (const vb::VbError&) {
    // The sibling isn't running: nothing to tell anyone.
  }
}

bool DDEServerModule::Form_LinkExecute(const std::string& command) {
  try {
    FrameNumber(command);  // its value is not used; a frame that isn't a number fails
    const auto word = [&](const std::string& w) { return Lowered(Mid(command, 4, w.size())) == w; };
    const auto argument = [&](const std::string& w) { return Mid(command, 4 + w.size()); };
    // The words in this order, each matching whatever follows it: "001testing" is "test".
    if (word("test")) return true;
    if (word("shutdown")) {
      host_.EnableShutdownTimer();
      return true;
    }
    if (word("log")) {
      doLog(argument("log"));
      return true;
    }
    if (word("check")) {
      doCheck(argument("check"));
      return true;
    }
    if (word("getprogress")) {
      common_.ParseRecord(argument("getprogress"));
      // The record's second value goes to the mode and its third to the band; the two columns
      // count alike, so either order answers the same.
      const std::string answer = host_.GetProgress(
          common_.GetToken(1).Value, common_.GetToken(3).Value, common_.GetToken(2).Value);
      if (form_) form_->SetProgress(answer);
      return true;
    }
    if (word("newcallsign")) {
      common_.ParseRecord(argument("newcallsign"));
      DoNewCallsign(common_.GetToken(1).Value);
      return true;
    }
    if (word("newentry")) {
      common_.ParseRecord(argument("newentry"));
      DoNewEntry(common_.GetToken(1).Value, common_.GetToken(2).Value, common_.GetToken(3).Value);
      return true;
    }
    return false;
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEServer.Form_LinkExecute");
    return false;
  }
}

void DDEServerModule::doLog(const std::string& text) {
  try {
    host_.AdifProcess(text);
    host_.FilterClear();
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEServerModule.doLog");
  }
}

void DDEServerModule::doCheck(const std::string& callsign) {
  if (host_.RecomputeInProgress()) return;
  try {
    host_.SetFilterFieldText(callsign);
    host_.SetSuppressLookup(true);
    host_.FilterCall();
    host_.SetSuppressLookup(false);
    host_.TrailmarkGetQSLInfo(callsign);
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEServerModule.doCheck");
  }
}

void DDEServerModule::DoNewCallsign(const std::string& callsign) {
  if (host_.RecomputeInProgress() || !form_) return;
  try {
    host_.SetCaptureCallsign(callsign);
    // The work proper runs after the sibling's call has returned.
    form_->NewCallsignTimer.SetInterval(1);
    form_->NewCallsignTimer.SetEnabled(true);
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEServerModule.DoNewCallsign");
  }
}

void DDEServerModule::DoNewEntry(const std::string& callsign, const std::string& frequency,
                                 const std::string& mode) {
  if (host_.RecomputeInProgress() || !form_) return;
  try {
    host_.SetCaptureCallsign(callsign);
    host_.SetCaptureFrequency(frequency);
    host_.SetCaptureMode(mode);
    form_->NewEntryTimer.SetInterval(1);
    form_->NewEntryTimer.SetEnabled(true);
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEServerModule.DoNewEntry");
  }
}

void DDEServerModule::DoLookup() {
  if (host_.RecomputeInProgress()) return;
  try {
    host_.ShowLogQSOsTab();
    host_.CaptureLookupCmd_Click();
    if (host_.CaptureVisible()) host_.FocusCaptureCallsign();
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEServerModule.DoLookup");
  }
}

void DDEServerModule::NewCallsignTimer_Timer() {
  try {
    form_->NewCallsignTimer.SetEnabled(false);
    const std::string callsign = host_.CaptureCallsign();
    host_.CaptureClearCmd_Click();
    host_.SetCaptureCallsign(callsign);
    DoLookup();
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEServer.NewCallsignTimer_Timer");
  }
}

void DDEServerModule::NewEntryTimer_Timer() {
  try {
    form_->NewEntryTimer.SetEnabled(false);
    const std::string callsign = host_.CaptureCallsign();
    const std::string frequency = host_.CaptureFrequency();
    const std::string mode = host_.CaptureMode();
    host_.CaptureClearCmd_Click();
    host_.SetCaptureCallsign(callsign);
    host_.SetCaptureFrequency(frequency);
    host_.SetCaptureMode(mode);
    DoLookup();
  } catch (const vb::VbError& e) {
    host_.ReportError(e.number(), "DDEServer.NewEntryTimer_Timer");
  }
}

}  // namespace vellumar::interop
