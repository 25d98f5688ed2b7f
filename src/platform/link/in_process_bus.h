#pragma once
// A bus inside one process on which the programs of a test meet: each program joins and gets
// its endpoint, claims an application name and serves topics; the others connect to those
// topics. Everything is delivered at once on the caller's thread: an item set during a
// command reaches automatic links before the command's answer. When a name loses its owner
// (released, or its program leaves the bus) every conversation with it closes; the closed
// notifications go through the dispatcher, if one is given (an event loop's post, so that
// they arrive as events do), or are made at once.
//
// The bus outlives its endpoints; a program's links go before its endpoint.
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/link/endpoint.h"

namespace vellumar::link {

class InProcessBus {
 public:
  using Dispatcher = std::function<void(std::function<void()> work)>;

  InProcessBus() = default;
  explicit InProcessBus(Dispatcher dispatcher) : dispatcher_(std::move(dispatcher)) {}
  ~InProcessBus();
  InProcessBus(const InProcessBus&) = delete;
  InProcessBus& operator=(const InProcessBus&) = delete;

  // A program joining the bus. Destroying the endpoint is the program leaving.
  std::unique_ptr<LinkEndpoint> Join();

  bool NameHasOwner(const std::string& application) const {
    return owners_.count(application) != 0;
  }
  // Conversations open now, for tests that check nothing is left behind.
  std::size_t OpenConversations() const { return conversations_.size(); }

 private:
  class Endpoint;
  class BusConversation;

  // Closes every conversation with `owner`'s topics and tells their clients.
  void Disconnect(const Endpoint* owner);
  void Deliver(std::function<void()> work);

  Dispatcher dispatcher_;
  std::map<std::string, Endpoint*> owners_;  // application name -> its program
  std::set<BusConversation*> conversations_;
};

}  // namespace vellumar::link
