#pragma once
// The transport to the sibling programs on the D-Bus session bus. Each program owns the bus
// name "vellumar.family.<Application>"; each topic it serves is the object "/<Topic>" with the
// interface "vellumar.family.Topic": Execute(s) -> b, Request(s) -> s, and the signal
// ItemChanged(s, s) that drives automatic links. A link closes when the peer's name loses its
// owner. Calls block without running the event loop, so no other event runs meanwhile, and fail
// after 1000 ms. When an Execute returns, the items its peer changed while serving it are
// already in the links that follow them: the changes are read back before the call returns.
#include <memory>
#include <string>

#include "platform/link/endpoint.h"

class QDBusConnection;

namespace vellumar::qt {

class DBusEndpoint final : public link::LinkEndpoint {
 public:
  static constexpr const char* kInterface = "vellumar.family.Topic";
  static constexpr int kCallTimeoutMs = 1000;
  static std::string BusName(const std::string& application) {
    return "vellumar.family." + application;
  }

  // On the session bus, through a connection of its own named `connectionName`, so that several
  // programs of one process (the simulator's siblings) each own their name. The program's calls
  // block without running its event loop; a test tool may ask to keep serving while it waits
  // (`serveWhileWaiting`), so that two of them calling each other at once don't wait in vain.
  explicit DBusEndpoint(const std::string& connectionName = "vellumar",
                        bool serveWhileWaiting = false);
  ~DBusEndpoint() override;
  DBusEndpoint(const DBusEndpoint&) = delete;
  DBusEndpoint& operator=(const DBusEndpoint&) = delete;

  std::string Unavailable() const override;
  bool RegisterApplication(const std::string& application) override;
  std::string Application() const override;
  void ReleaseApplication() override;
  link::Topic& Serve(const std::string& name) override;
  std::unique_ptr<link::Conversation> Connect(const std::string& application,
                                              const std::string& topic) override;

  struct Impl;

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace vellumar::qt
