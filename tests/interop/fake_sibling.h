#pragma once
// A sibling program on the in-process bus, as the tests play one: it owns its application
// name, serves the topics it is given with items, records every command it receives with the
// virtual time of its arrival, and answers "lookup" by setting its items before the command
// returns. Leaving the bus closes every link to it.
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/link/endpoint.h"
#include "platform/link/in_process_bus.h"
#include "platform/services/event_loop.h"

namespace vellumar::test {

struct ReceivedCommand {
  std::int64_t atMs;
  std::string topic;
  std::string command;
};

class FakeSibling {
 public:
  FakeSibling(link::InProcessBus& bus, const ui::EventLoop& loop, std::string application)
      : loop_(loop), application_(std::move(application)), endpoint_(bus.Join()) {}

  // Claims the name; false when someone owns it.
  bool Start() { return endpoint_->RegisterApplication(application_); }
  // The program goes away: its name loses its owner.
  void Stop() { endpoint_->ReleaseApplication(); }

  // Serves `topic` with these items; commands are recorded and accepted.
  link::Topic& Serve(const std::string& topic, const std::map<std::string, std::string>& items) {
    link::Topic& served = endpoint_->Serve(topic);
    for (const auto& [item, value] : items) served.SetItem(item, value);
    served.OnExecute([this, topic](const std::string& command) {
      received.push_back({loop_.NowMs(), topic, command});
      if (onCommand) return onCommand(topic, command);
      return true;
    });
    return served;
  }
  link::Topic& Topic(const std::string& topic) { return endpoint_->Serve(topic); }

  // The commands received on `topic`, in order.
  std::vector<std::string> Commands(const std::string& topic) const {
    std::vector<std::string> out;
    for (const auto& r : received)
      if (r.topic == topic) out.push_back(r.command);
    return out;
  }

  link::LinkEndpoint& Endpoint() { return *endpoint_; }

  std::vector<ReceivedCommand> received;
  // Decides a command's answer, after it is recorded; accepted when unset.
  std::function<bool(const std::string& topic, const std::string& command)> onCommand;

 private:
  const ui::EventLoop& loop_;
  std::string application_;
  std::unique_ptr<link::LinkEndpoint> endpoint_;
};

// Atlasine with its entity items; "lookup" + a callsign sets them from `answers` (unknown
// callsigns leave them as they are).
struct AtlasineAnswer {
  std::string prefix, id, cont, cq, itu;
};
inline void PlayAtlasine(FakeSibling& atlasine, std::map<std::string, AtlasineAnswer> answers) {
  link::Topic& topic = atlasine.Serve("DDEServer", {{"DXCCPrefix", ""},
                                                    {"DXCCID", ""},
                                                    {"Cont", ""},
                                                    {"CQ", ""},
                                                    {"ITU", ""},
                                                    {"DDECommand", ""}});
  atlasine.onCommand = [&topic, answers](const std::string&, const std::string& command) {
    const std::string word = "003lookup";
    if (command.rfind(word, 0) == 0) {
      auto found = answers.find(command.substr(word.size()));
      if (found != answers.end()) {
        topic.SetItem("DXCCPrefix", found->second.prefix);
        topic.SetItem("DXCCID", found->second.id);
        topic.SetItem("Cont", found->second.cont);
        topic.SetItem("CQ", found->second.cq);
        topic.SetItem("ITU", found->second.itu);
      }
    }
    return true;
  };
}

// Rigsteward: the frequency on its UI topic, the mode on its server topic.
inline void PlayRigsteward(FakeSibling& rig, const std::string& freq, const std::string& mode) {
  rig.Serve("RigstewardUI", {{"FreqDisplay", freq}});
  rig.Serve("DDEServer", {{"Mode", mode}, {"DDECommand", ""}});
}

// A sibling with a command channel only (Clustrine, Trailmark), and the "DDEClient" topic on
// which it hears "start" announcements.
inline void PlayCommandSibling(FakeSibling& sibling) {
  sibling.Serve("DDEServer", {{"DDECommand", ""}});
  sibling.Serve("DDEClient", {{"RequestDDEConnection", ""}});
}

}  // namespace vellumar::test
