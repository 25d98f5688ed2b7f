// siblingsim: one process playing any of the sibling programs (Rigsteward, Atlasine, Clustrine,
// Trailmark, Songlark) on the session bus, driven by lines on its standard input:
//
//   own <App>                       claim vellumar.family.<App> and serve its topics
//   leave <App>                     give the name up (links to it close)
//   set <App> <item> <value>        set an item of its topics (a change is announced)
//   answer <App> <CALL> <prefix> <id> <cont> <cq> <itu>
//                                   Atlasine's answer to "003lookup<CALL>": the five items set
//                                   before the execute returns
//   send <App> <command>            execute on Vellumar|DDEServer, e.g. send Songlark 001log<CALL:4>K1AB<EOR>
//   start <App> <nnn>               execute "<nnn>start" on Vellumar|DDEClient
//   request <App> <item>            read an item of Vellumar|DDEServer
//   follow <App> <item>             follow an item of Vellumar|DDEServer (prints each change)
//   expect <App> <command> [ms]     wait (10 s unless told) until <App> has received the command
//   quit
//
// It prints one line per event: "received <App> <Topic> <command>", "changed <item> <value>",
// "linked <App>", and one answer per input line ("ok ...", "accepted", "refused",
// "failed <error>", "value <v>", "expected <command>", "timeout <command>").
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <deque>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "platform/link/link.h"
#include "platform/link/topic.h"
#include "platform/vb/error.h"
#include "qt/dbus_endpoint.h"

namespace {

using vellumar::link::Link;
using vellumar::qt::DBusEndpoint;

void Say(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

struct Lookup {
  std::string prefix, id, cont, cq, itu;
};

struct Sibling {
  std::string name;
  std::unique_ptr<DBusEndpoint> endpoint;
  std::map<std::string, Lookup> answers;
  std::deque<std::string> received;  // commands not yet expected
  std::unique_ptr<Link> command;     // its link to Vellumar|DDEServer
  std::unique_ptr<Link> start;       // its link to Vellumar|DDEClient
  std::vector<std::unique_ptr<Link>> follows;
};

std::map<std::string, std::unique_ptr<Sibling>> siblings;

// The topics and items each sibling serves, as the program links to them.
const std::map<std::string, std::map<std::string, std::map<std::string, std::string>>> kTopics = {
    {"Rigsteward",
     {{"RigstewardUI", {{"FreqDisplay", ""}}}, {"DDEServer", {{"Mode", ""}, {"DDECommand", ""}}}}},
    {"Atlasine",
     {{"DDEServer",
       {{"DXCCPrefix", ""}, {"DXCCID", ""}, {"Cont", ""}, {"CQ", ""}, {"ITU", ""}, {"DDECommand", ""}}}}},
};

Link& CommandLink(Sibling& s, std::unique_ptr<Link>& link, const char* topic) {
  if (!link) {
    link = std::make_unique<Link>(*s.endpoint);
    link->SetLinkTopic(topic);
    link->SetLinkItem(std::string(topic).find("DDEClient") != std::string::npos
                          ? "RequestDDEConnection"
                          : "DDECommand");
  }
  if (link->LinkMode() == vellumar::link::kLinkNone) link->SetLinkMode(vellumar::link::kLinkAutomatic);
  return *link;
}

// Links `s` back to the program after its "start": the program may still be starting up and
// not answering yet, so the link is tried for a few seconds.
void LinkBack(Sibling* s, int triesLeft) {
  try {
    CommandLink(*s, s->command, "Vellumar|DDEServer");
    Say("linked " + s->name);
  } catch (const vellumar::vb::VbError& e) {
    if (triesLeft > 0) {
      QTimer::singleShot(200, [s, triesLeft] { LinkBack(s, triesLeft - 1); });
    } else {
      Say("failed link " + std::to_string(e.number()));
    }
  }
}

bool Serve(Sibling& s) {
  // The simulator answers the program while it waits on it, as the program may be calling it.
  s.endpoint = std::make_unique<DBusEndpoint>("siblingsim-" + s.name, true);
  if (!s.endpoint->Unavailable().empty()) {
    Say("failed " + s.endpoint->Unavailable());
    return false;
  }
  if (!s.endpoint->RegisterApplication(s.name)) return false;
  std::map<std::string, std::map<std::string, std::string>> topics = {
      {"DDEServer", {{"DDECommand", ""}}}, {"DDEClient", {{"RequestDDEConnection", ""}}}};
  if (auto own = kTopics.find(s.name); own != kTopics.end())
    for (const auto& [topic, items] : own->second) topics[topic] = items;
  for (const auto& [topicName, items] : topics) {
    vellumar::link::Topic& topic = s.endpoint->Serve(topicName);
    for (const auto& [item, value] : items) topic.SetItem(item, value);
    Sibling* sp = &s;
    const std::string name = topicName;
    topic.OnExecute([sp, name, &topic](const std::string& command) {
      Say("received " + sp->name + " " + name + " " + command);
      sp->received.push_back(command);
      const std::string lookup = "003lookup";
      if (command.rfind(lookup, 0) == 0) {
        auto found = sp->answers.find(command.substr(lookup.size()));
        if (found != sp->answers.end()) {
          topic.SetItem("DXCCPrefix", found->second.prefix);
          topic.SetItem("DXCCID", found->second.id);
          topic.SetItem("Cont", found->second.cont);
          topic.SetItem("CQ", found->second.cq);
          topic.SetItem("ITU", found->second.itu);
        }
      }
      if (name == "DDEClient" && command == "001start") {
        // Linked back once this answer has gone, as the program waits for it meanwhile.
        QTimer::singleShot(0, [sp] { LinkBack(sp, 25); });
      }
      return true;
    });
  }
  return true;
}

std::string Rest(std::istringstream& in) {
  std::string rest;
  std::getline(in, rest);
  if (!rest.empty() && rest[0] == ' ') rest.erase(0, 1);
  return rest;
}

void Expect(Sibling& s, const std::string& command, int ms) {
  QElapsedTimer clock;
  clock.start();
  auto check = std::make_shared<std::function<void()>>();
  *check = [&s, command, ms, clock, check]() mutable {
    for (auto it = s.received.begin(); it != s.received.end(); ++it) {
      if (*it == command) {
        s.received.erase(s.received.begin(), it + 1);
        Say("expected " + command);
        return;
      }
    }
    if (clock.elapsed() > ms) {
      Say("timeout " + command);
      return;
    }
    QTimer::singleShot(10, [check] { (*check)(); });
  };
  (*check)();
}

void Handle(const std::string& line) {
  std::istringstream in(line);
  std::string verb, app;
  in >> verb;
  if (verb.empty()) return;
  if (verb == "quit") {
    QCoreApplication::exit(0);
    return;
  }
  in >> app;
  auto found = siblings.find(app);
  if (verb == "own") {
    auto s = std::make_unique<Sibling>();
    s->name = app;
    if (!Serve(*s)) {
      Say("refused own " + app);
      return;
    }
    siblings[app] = std::move(s);
    Say("ok own " + app);
    return;
  }
  if (found == siblings.end()) {
    Say("failed no sibling " + app);
    return;
  }
  Sibling& s = *found->second;
  try {
    if (verb == "leave") {
      siblings.erase(found);
      Say("ok leave " + app);
    } else if (verb == "set") {
      std::string item;
      in >> item;
      const std::string value = Rest(in);
      const char* topic = item == "FreqDisplay" ? "RigstewardUI" : "DDEServer";
      s.endpoint->Serve(topic).SetItem(item, value);
      Say("ok set " + item);
    } else if (verb == "answer") {
      std::string call;
      Lookup answer;
      in >> call >> answer.prefix >> answer.id >> answer.cont >> answer.cq >> answer.itu;
      s.answers[call] = answer;
      Say("ok answer " + call);
    } else if (verb == "send") {
      CommandLink(s, s.command, "Vellumar|DDEServer").LinkExecute(Rest(in));
      Say("accepted");
    } else if (verb == "start") {
      std::string digits;
      in >> digits;
      CommandLink(s, s.start, "Vellumar|DDEClient").LinkExecute(digits + "start");
      Say("accepted");
    } else if (verb == "request") {
      std::string item;
      in >> item;
      Link reader(*s.endpoint);
      reader.SetLinkTopic("Vellumar|DDEServer");
      reader.SetLinkItem(item);
      reader.SetLinkMode(vellumar::link::kLinkManual);
      reader.LinkRequest();
      Say("value " + reader.Text());
    } else if (verb == "follow") {
      std::string item;
      in >> item;
      auto link = std::make_unique<Link>(*s.endpoint);
      link->OnChange([item](const std::string& text) { Say("changed " + item + " " + text); });
      link->SetLinkTopic("Vellumar|DDEServer");
      link->SetLinkItem(item);
      link->SetLinkMode(vellumar::link::kLinkAutomatic);
      s.follows.push_back(std::move(link));
      Say("ok follow " + item);
    } else if (verb == "expect") {
      std::string rest = Rest(in);
      int ms = 10000;
      // A trailing number after a blank is the wait in milliseconds.
      const auto blank = rest.rfind(' ');
      if (blank != std::string::npos &&
          rest.find_first_not_of("0123456789", blank + 1) == std::string::npos &&
          blank + 1 < rest.size()) {
        ms = std::stoi(rest.substr(blank + 1));
        rest.erase(blank);
      }
      Expect(s, rest, ms);
    } else {
      Say("failed unknown verb " + verb);
    }
  } catch (const vellumar::vb::VbError& e) {
    Say(e.number() == 285 ? "refused" : "failed " + std::to_string(e.number()));
  }
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
  std::string pending;
  QObject::connect(&input, &QSocketNotifier::activated, [&] {
    char buffer[4096];
    const ssize_t n = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (n <= 0) {
      input.setEnabled(false);
      QCoreApplication::exit(0);
      return;
    }
    pending.append(buffer, static_cast<size_t>(n));
    for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
      std::string line = pending.substr(0, end);
      pending.erase(0, end + 1);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      Handle(line);
    }
  });
  const int code = QCoreApplication::exec();
  siblings.clear();
  return code;
}
