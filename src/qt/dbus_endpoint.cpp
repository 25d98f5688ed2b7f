#include "qt/dbus_endpoint.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "platform/link/link_error.h"
#include "platform/link/topic.h"

namespace vellumar::qt {
namespace {

QString Q(const std::string& text) { return QString::fromUtf8(text.data(), int(text.size())); }
std::string S(const QString& text) { return text.toUtf8().toStdString(); }

const QString kInterface = QStringLiteral("vellumar.family.Topic");
const QString kRefused = QStringLiteral("vellumar.family.Refused");

// A served topic as a bus object: its method calls go to the topic, its item changes go out as
// signals.
class TopicObject final : public QDBusVirtualObject {
 public:
  TopicObject(link::Topic& topic, QDBusConnection bus, QString path)
      : topic_(topic), bus_(std::move(bus)), path_(std::move(path)) {
    watch_ = topic_.Watch([this](const std::string& item, const std::string& value) {
      QDBusMessage signal =
          QDBusMessage::createSignal(path_, kInterface, QStringLiteral("ItemChanged"));
      signal << Q(item) << Q(value);
      bus_.send(signal);
    });
  }
  ~TopicObject() override { topic_.Unwatch(watch_); }

  QString introspect(const QString&) const override {
    return QStringLiteral(
        "<interface name=\"vellumar.family.Topic\">"
        "<method name=\"Execute\"><arg type=\"s\" direction=\"in\"/>"
        "<arg type=\"b\" direction=\"out\"/></method>"
        "<method name=\"Request\"><arg type=\"s\" direction=\"in\"/>"
        "<arg type=\"s\" direction=\"out\"/></method>"
        "<signal name=\"ItemChanged\"><arg type=\"s\"/><arg type=\"s\"/></signal>"
        "</interface>");
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.type() != QDBusMessage::MethodCallMessage) return false;
    if (!message.interface().isEmpty() && message.interface() != kInterface) return false;
    const QList<QVariant> args = message.arguments();
    const std::string argument = args.isEmpty() ? std::string() : S(args.at(0).toString());
    if (message.member() == QLatin1String("Execute")) {
      const bool accepted = topic_.Execute(argument);
      connection.send(message.createReply(QVariant(accepted)));
      return true;
    }
    if (message.member() == QLatin1String("Request")) {
      if (!topic_.HasItem(argument)) {
        connection.send(message.createErrorReply(kRefused, QStringLiteral("no such item")));
      } else {
        connection.send(message.createReply(QVariant(Q(topic_.Item(argument)))));
      }
      return true;
    }
    return false;
  }

 private:
  link::Topic& topic_;
  QDBusConnection bus_;
  QString path_;
  int watch_ = 0;
};

// Raises the link error that a failed call stands for.
[[noreturn]] void RaiseFor(const QDBusMessage& reply) {
  const QString name = reply.errorName();
  if (name == kRefused) link::RaiseLinkError(link::kRefused);
  if (name == QLatin1String("org.freedesktop.DBus.Error.NoReply") ||
      name == QLatin1String("org.freedesktop.DBus.Error.Timeout"))
    link::RaiseLinkError(link::kTimeout);
  link::RaiseLinkError(link::kNoResponder);
}

// Receives the ItemChanged signals of one conversation; the bus delivers them to a slot.
class SignalReceiver final : public QObject {
  Q_OBJECT
 public:
  std::function<void(const QString&, const QString&)> onSignal;
 public slots:
  void Receive(const QString& item, const QString& value) {
    if (onSignal) onSignal(item, value);
  }
};

}  // namespace

class DBusConversation;

struct DBusEndpoint::Impl {
  QDBusConnection bus;
  std::string connectionName;
  std::string application;
  std::map<std::string, std::unique_ptr<link::Topic>> topics;
  std::map<std::string, std::unique_ptr<TopicObject>> objects;
  std::set<DBusConversation*> conversations;

  bool serveWhileWaiting;

  Impl(const std::string& name, bool serve)
      : bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, Q(name))),
        connectionName(name),
        serveWhileWaiting(serve) {}

  // Reads back the followed items of every open conversation with `owner`: what the peer
  // changed while it served a command reaches the links before that command returns.
  void Refresh(const QString& owner);

  QDBusMessage Call(const QString& service, const QString& path, const char* member,
                    const std::string& argument) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, kInterface,
                                                       QString::fromLatin1(member));
    call << Q(argument);
    return bus.call(call, serveWhileWaiting ? QDBus::BlockWithGui : QDBus::Block, kCallTimeoutMs);
  }
};

class DBusConversation final : public link::Conversation {
 public:
  DBusConversation(DBusEndpoint::Impl& endpoint, QString owner, QString service, QString path)
      : endpoint_(endpoint),
        owner_(std::move(owner)),
        service_(std::move(service)),
        path_(std::move(path)),
        watcher_(service_, endpoint_.bus, QDBusServiceWatcher::WatchForOwnerChange) {
    endpoint_.conversations.insert(this);
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &context_,
                     [this](const QString&, const QString&, const QString& newOwner) {
                       if (newOwner == owner_ || !open_) return;
                       PeerGone();
                     });
    // The item changes announced by the peer arrive as signals through the event loop.
    endpoint_.bus.connect(owner_, path_, kInterface, QStringLiteral("ItemChanged"), &receiver_,
                          SLOT(Receive(QString, QString)));
    receiver_.onSignal = [this](const QString& item, const QString& value) {
      if (open_) Tell(S(item), S(value));
    };
  }

  ~DBusConversation() override {
    endpoint_.bus.disconnect(owner_, path_, kInterface, QStringLiteral("ItemChanged"), &receiver_,
                             SLOT(Receive(QString, QString)));
    endpoint_.conversations.erase(this);
  }

  bool Open() const override { return open_; }

  bool Execute(const std::string& command) override {
    if (!open_) link::RaiseLinkError(link::kNoResponder);
    const QDBusMessage reply = endpoint_.Call(owner_, path_, "Execute", command);
    if (reply.type() == QDBusMessage::ErrorMessage) RaiseFor(reply);
    const bool accepted = !reply.arguments().isEmpty() && reply.arguments().at(0).toBool();
    endpoint_.Refresh(owner_);
    return accepted;
  }

  std::string Request(const std::string& item) override {
    if (!open_) link::RaiseLinkError(link::kNoResponder);
    const QDBusMessage reply = endpoint_.Call(owner_, path_, "Request", item);
    if (reply.type() == QDBusMessage::ErrorMessage) RaiseFor(reply);
    const std::string value = reply.arguments().isEmpty() ? std::string()
                                                          : S(reply.arguments().at(0).toString());
    requested_.insert(item);
    known_[item] = value;
    return value;
  }

  void OnItemChanged(std::function<void(const std::string&, const std::string&)> handler) override {
    onItemChanged_ = std::move(handler);
  }
  void OnClosed(std::function<void()> handler) override { onClosed_ = std::move(handler); }

  const QString& Owner() const { return owner_; }

  // The followed items read again; changes told as the peer's signal would.
  void Refresh() {
    for (const std::string& item : requested_) {
      if (!open_) return;
      const QDBusMessage reply = endpoint_.Call(owner_, path_, "Request", item);
      if (reply.type() == QDBusMessage::ErrorMessage || reply.arguments().isEmpty()) continue;
      Tell(item, S(reply.arguments().at(0).toString()));
    }
  }

 private:
  void Tell(const std::string& item, const std::string& value) {
    auto known = known_.find(item);
    if (known != known_.end() && known->second == value) return;
    known_[item] = value;
    if (onItemChanged_) {
      auto handler = onItemChanged_;
      handler(item, value);
    }
  }

  void PeerGone() {
    open_ = false;
    // Told as an event of its own: the client's handler ends the conversation, which must not
    // happen inside the watcher's signal that this runs in.
    std::weak_ptr<bool> alive = alive_;
    auto handler = onClosed_;
    QTimer::singleShot(0, [alive, handler] {
      if (!alive.expired() && handler) handler();
    });
  }

  DBusEndpoint::Impl& endpoint_;
  QString owner_;    // the peer's unique connection name
  QString service_;  // its well-known name
  QString path_;
  QDBusServiceWatcher watcher_;
  QObject context_;
  SignalReceiver receiver_;
  bool open_ = true;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  std::set<std::string> requested_;
  std::map<std::string, std::string> known_;
  std::function<void(const std::string&, const std::string&)> onItemChanged_;
  std::function<void()> onClosed_;
};

void DBusEndpoint::Impl::Refresh(const QString& owner) {
  std::vector<DBusConversation*> peers;
  for (DBusConversation* c : conversations)
    if (c->Owner() == owner) peers.push_back(c);
  for (DBusConversation* c : peers)
    if (conversations.count(c)) c->Refresh();
}

DBusEndpoint::DBusEndpoint(const std::string& connectionName, bool serveWhileWaiting)
    : impl_(std::make_unique<Impl>(connectionName, serveWhileWaiting)) {}

DBusEndpoint::~DBusEndpoint() {
  ReleaseApplication();
  for (auto& [path, object] : impl_->objects) impl_->bus.unregisterObject(Q("/" + path));
  impl_->objects.clear();
  QDBusConnection::disconnectFromBus(Q(impl_->connectionName));
}

std::string DBusEndpoint::Unavailable() const {
  if (impl_->bus.isConnected()) return {};
  return "no session bus (" + S(impl_->bus.lastError().message()) + ")";
}

bool DBusEndpoint::RegisterApplication(const std::string& application) {
  if (!impl_->bus.isConnected()) return false;
  if (application == impl_->application) return true;
  QDBusConnectionInterface* names = impl_->bus.interface();
  const auto reply = names->registerService(Q(BusName(application)),
                                            QDBusConnectionInterface::DontQueueService,
                                            QDBusConnectionInterface::DontAllowReplacement);
  if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered)
    return false;
  ReleaseApplication();
  impl_->application = application;
  return true;
}

std::string DBusEndpoint::Application() const { return impl_->application; }

void DBusEndpoint::ReleaseApplication() {
  if (impl_->application.empty()) return;
  impl_->bus.interface()->unregisterService(Q(BusName(impl_->application)));
  impl_->application.clear();
}

link::Topic& DBusEndpoint::Serve(const std::string& name) {
  auto& topic = impl_->topics[name];
  if (!topic) {
    topic = std::make_unique<link::Topic>(name);
    auto object = std::make_unique<TopicObject>(*topic, impl_->bus, Q("/" + name));
    if (impl_->bus.isConnected()) impl_->bus.registerVirtualObject(Q("/" + name), object.get());
    impl_->objects[name] = std::move(object);
  }
  return *topic;
}

std::unique_ptr<link::Conversation> DBusEndpoint::Connect(const std::string& application,
                                                          const std::string& topic) {
  if (!impl_->bus.isConnected()) link::RaiseLinkError(link::kNoResponder);
  const QString service = Q(BusName(application));
  const auto owner = impl_->bus.interface()->serviceOwner(service);
  if (!owner.isValid() || owner.value().isEmpty()) link::RaiseLinkError(link::kNoResponder);
  const QString path = Q("/" + topic);
  // The peer serves the topic when it answers for it, even with a refusal of the empty item.
  const QDBusMessage probe = impl_->Call(owner.value(), path, "Request", "");
  if (probe.type() == QDBusMessage::ErrorMessage && probe.errorName() != kRefused) RaiseFor(probe);
  return std::make_unique<DBusConversation>(*impl_, owner.value(), service, path);
}

}  // namespace vellumar::qt

#include "dbus_endpoint.moc"
