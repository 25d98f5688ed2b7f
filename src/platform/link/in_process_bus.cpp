#include "platform/link/in_process_bus.h"

#include <cassert>
#include <vector>

#include "platform/link/link_error.h"

namespace vellumar::link {

class InProcessBus::Endpoint final : public LinkEndpoint {
 public:
  explicit Endpoint(InProcessBus& bus) : bus_(bus) {}
  ~Endpoint() override { ReleaseApplication(); }

  bool RegisterApplication(const std::string& application) override {
    auto owner = bus_.owners_.find(application);
    if (owner != bus_.owners_.end()) return owner->second == this;
    ReleaseApplication();
    bus_.owners_[application] = this;
    application_ = application;
    return true;
  }

  std::string Application() const override { return application_; }

  void ReleaseApplication() override {
    if (application_.empty()) return;
    bus_.owners_.erase(application_);
    application_.clear();
    bus_.Disconnect(this);
  }

  Topic& Serve(const std::string& name) override {
    auto& topic = topics_[name];
    if (!topic) topic = std::make_unique<Topic>(name);
    return *topic;
  }

  Topic* Find(const std::string& name) const {
    auto topic = topics_.find(name);
    return topic == topics_.end() ? nullptr : topic->second.get();
  }

  std::unique_ptr<Conversation> Connect(const std::string& application,
                                        const std::string& topic) override;

 private:
  InProcessBus& bus_;
  std::string application_;  // the name owned, or ""
  std::map<std::string, std::unique_ptr<Topic>> topics_;
};

class InProcessBus::BusConversation final : public Conversation {
 public:
  BusConversation(InProcessBus& bus, const Endpoint& owner, Topic& topic)
      : bus_(bus), owner_(&owner), topic_(&topic) {
    bus_.conversations_.insert(this);
    watch_ = topic_->Watch([this](const std::string& item, const std::string& value) {
      if (onItemChanged_) {
        auto handler = onItemChanged_;
        handler(item, value);
      }
    });
  }

  ~BusConversation() override {
    Sever();
    bus_.conversations_.erase(this);
  }

  bool Open() const override { return topic_ != nullptr; }

  bool Execute(const std::string& command) override { return Target().Execute(command); }

  std::string Request(const std::string& item) override {
    Topic& topic = Target();
    if (!topic.HasItem(item)) RaiseLinkError(kRefused);
    return topic.Item(item);
  }

  void OnItemChanged(std::function<void(const std::string&, const std::string&)> handler) override {
    onItemChanged_ = std::move(handler);
  }

  void OnClosed(std::function<void()> handler) override {
    onClosed_ = std::make_shared<std::function<void()>>(std::move(handler));
  }

  const Endpoint* Owner() const { return owner_; }

  // Ends the conversation from the serving side; returns the client's closed handler, which
  // no longer runs once the conversation is destroyed.
  std::weak_ptr<std::function<void()>> Sever() {
    if (topic_) topic_->Unwatch(watch_);
    topic_ = nullptr;
    owner_ = nullptr;
    return onClosed_;
  }

 private:
  Topic& Target() {
    if (!topic_) RaiseLinkError(kNoResponder);
    return *topic_;
  }

  InProcessBus& bus_;
  const Endpoint* owner_;  // the serving program; null once closed
  Topic* topic_;           // null once closed
  int watch_ = 0;
  std::function<void(const std::string&, const std::string&)> onItemChanged_;
  std::shared_ptr<std::function<void()>> onClosed_;
};

std::unique_ptr<Conversation> InProcessBus::Endpoint::Connect(const std::string& application,
                                                              const std::string& topic) {
  auto owner = bus_.owners_.find(application);
  if (owner == bus_.owners_.end()) RaiseLinkError(kNoResponder);
  Topic* served = owner->second->Find(topic);
  if (!served) RaiseLinkError(kNoResponder);
  return std::make_unique<BusConversation>(bus_, *owner->second, *served);
}

InProcessBus::~InProcessBus() {
  assert(owners_.empty() && conversations_.empty() && "programs must leave the bus first");
}

std::unique_ptr<LinkEndpoint> InProcessBus::Join() { return std::make_unique<Endpoint>(*this); }

void InProcessBus::Disconnect(const Endpoint* owner) {
  std::vector<std::weak_ptr<std::function<void()>>> closed;
  for (BusConversation* conversation : conversations_) {
    if (conversation->Owner() == owner) closed.push_back(conversation->Sever());
  }
  for (auto& handler : closed) {
    Deliver([handler] {
      // The client may have ended the conversation meanwhile: then there is no one to tell.
      if (auto call = handler.lock(); call && *call) (*call)();
    });
  }
}

void InProcessBus::Deliver(std::function<void()> work) {
  if (dispatcher_) {
    dispatcher_(std::move(work));
  } else {
    work();
  }
}

}  // namespace vellumar::link
