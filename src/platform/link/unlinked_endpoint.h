#pragma once
// The place on the transport of a program that runs without one: no session bus, or another
// copy of the program owns its name. It owns no name and reaches nobody, so every link it
// opens fails as if no program answered; what it serves, nobody can reach.
#include <map>
#include <memory>
#include <string>

#include "platform/link/endpoint.h"
#include "platform/link/link_error.h"

namespace vellumar::link {

class UnlinkedEndpoint final : public LinkEndpoint {
 public:
  bool RegisterApplication(const std::string&) override { return false; }
  std::string Application() const override { return {}; }
  void ReleaseApplication() override {}
  Topic& Serve(const std::string& name) override {
    auto& topic = topics_[name];
    if (!topic) topic = std::make_unique<Topic>(name);
    return *topic;
  }
  std::unique_ptr<Conversation> Connect(const std::string&, const std::string&) override {
    RaiseLinkError(kNoResponder);
  }

 private:
  std::map<std::string, std::unique_ptr<Topic>> topics_;
};

}  // namespace vellumar::link
