#pragma once
// A program's place on the transport. As a server it owns an application name and serves
// topics under it; as a client it opens conversations with "Application|Topic" of another
// program. Every kind of transport (the session bus, the in-process bus of the tests)
// implements these two classes; Link builds the link controls' behaviour on them.
#include <functional>
#include <memory>
#include <string>

#include "platform/link/topic.h"

namespace vellumar::link {

// One open conversation with a served topic.
class Conversation {
 public:
  virtual ~Conversation() = default;

  // False once the peer has gone; every call then raises kNoResponder.
  virtual bool Open() const = 0;
  // The command's answer: true accepted, false refused.
  virtual bool Execute(const std::string& command) = 0;
  // The item's value; an item not served raises kRefused.
  virtual std::string Request(const std::string& item) = 0;
  // Every change of the topic's items, until the conversation ends.
  virtual void OnItemChanged(
      std::function<void(const std::string& item, const std::string& value)> handler) = 0;
  // Called once when the peer goes away (its name loses its owner). Not called when this end
  // closes the conversation by destroying it.
  virtual void OnClosed(std::function<void()> handler) = 0;
};

class LinkEndpoint {
 public:
  virtual ~LinkEndpoint() = default;

  // Why this transport can't be used at all (no session bus...); "" when it can.
  virtual std::string Unavailable() const { return {}; }

  // Claims the application name; false when another program owns it. A program has at most
  // one name; claiming a second one replaces the first.
  virtual bool RegisterApplication(const std::string& application) = 0;
  // The name owned, or "".
  virtual std::string Application() const = 0;
  // Gives up the name: conversations with this program's topics close.
  virtual void ReleaseApplication() = 0;

  // The topic served under `name`, made on first use; it lives as long as the endpoint.
  virtual Topic& Serve(const std::string& name) = 0;

  // Opens a conversation with `topic` of the program owning `application`; raises
  // kNoResponder when nobody owns the name or it doesn't serve the topic.
  virtual std::unique_ptr<Conversation> Connect(const std::string& application,
                                                const std::string& topic) = 0;
};

}  // namespace vellumar::link
