// The in-process bus: several programs, names and their owners, conversations closing when a
// name loses its owner, and closed notifications through a dispatcher.
#include "platform/link/in_process_bus.h"

#include <gtest/gtest.h>

#include <deque>

#include "platform/link/link.h"
#include "platform/link/link_error.h"
#include "platform/vb/error.h"

namespace vellumar::link {
namespace {

TEST(InProcessBusTest, ANameHasOneOwner) {
  InProcessBus bus;
  auto first = bus.Join();
  auto second = bus.Join();
  EXPECT_TRUE(first->RegisterApplication("Vellumar"));
  EXPECT_FALSE(second->RegisterApplication("Vellumar"));
  EXPECT_EQ(second->Application(), "");
  EXPECT_TRUE(first->RegisterApplication("Vellumar"));  // its own already
  first.reset();
  EXPECT_FALSE(bus.NameHasOwner("Vellumar"));
  EXPECT_TRUE(second->RegisterApplication("Vellumar"));
}

TEST(InProcessBusTest, ProgramsServeAndCallEachOtherBothWays) {
  InProcessBus bus;
  auto us = bus.Join();
  auto sibling = bus.Join();
  ASSERT_TRUE(us->RegisterApplication("Vellumar"));
  ASSERT_TRUE(sibling->RegisterApplication("Songlark"));
  std::string toUs, toSibling;
  us->Serve("DDEServer").OnExecute([&](const std::string& c) { return toUs = c, true; });
  Topic& siblingClient = sibling->Serve("DDEClient");
  siblingClient.SetItem("RequestDDEConnection", "");
  siblingClient.OnExecute([&](const std::string& c) { return toSibling = c, c == "001start"; });

  auto toSongl = us->Connect("Songlark", "DDEClient");
  EXPECT_TRUE(toSongl->Execute("001start"));
  EXPECT_FALSE(toSongl->Execute("001stop"));
  EXPECT_EQ(toSibling, "001stop");
  auto toVellumar = sibling->Connect("Vellumar", "DDEServer");
  EXPECT_TRUE(toVellumar->Execute("006test"));
  EXPECT_EQ(toUs, "006test");
  EXPECT_EQ(bus.OpenConversations(), 2u);
}

TEST(InProcessBusTest, ATopicWithoutHandlerRefusesAndUnknownItemsAreRefused) {
  InProcessBus bus;
  auto server = bus.Join();
  auto client = bus.Join();
  ASSERT_TRUE(server->RegisterApplication("Rigsteward"));
  server->Serve("RigstewardUI").SetItem("FreqDisplay", "14025.5");
  auto conversation = client->Connect("Rigsteward", "RigstewardUI");
  EXPECT_FALSE(conversation->Execute("000anything"));
  EXPECT_EQ(conversation->Request("FreqDisplay"), "14025.5");
  try {
    conversation->Request("Mode");
    FAIL();
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), kRefused);
  }
}

TEST(InProcessBusTest, ReleasingTheNameClosesEveryConversationWithIt) {
  InProcessBus bus;
  auto server = bus.Join();
  auto other = bus.Join();
  auto client = bus.Join();
  ASSERT_TRUE(server->RegisterApplication("Atlasine"));
  ASSERT_TRUE(other->RegisterApplication("Clustrine"));
  server->Serve("DDEServer");
  other->Serve("DDEServer");
  auto a = client->Connect("Atlasine", "DDEServer");
  auto b = client->Connect("Atlasine", "DDEServer");
  auto c = client->Connect("Clustrine", "DDEServer");
  int closedA = 0, closedB = 0, closedC = 0;
  a->OnClosed([&] { ++closedA; });
  b->OnClosed([&] { ++closedB; });
  c->OnClosed([&] { ++closedC; });
  server->ReleaseApplication();
  EXPECT_EQ(closedA, 1);
  EXPECT_EQ(closedB, 1);
  EXPECT_EQ(closedC, 0);
  EXPECT_FALSE(a->Open());
  EXPECT_TRUE(c->Open());
  try {
    a->Execute("003lookupK1AB");
    FAIL();
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.number(), kNoResponder);
  }
  server->Serve("DDEServer").SetItem("DXCCID", "1");  // no one hears it, nothing breaks
}

TEST(InProcessBusTest, SixLinksToOneProgramCloseSixTimes) {
  InProcessBus bus;
  auto server = bus.Join();
  auto client = bus.Join();
  ASSERT_TRUE(server->RegisterApplication("Atlasine"));
  Topic& topic = server->Serve("DDEServer");
  const char* items[] = {"DXCCPrefix", "DXCCID", "Cont", "CQ", "ITU", "DDECommand"};
  for (const char* item : items) topic.SetItem(item, "");
  std::vector<std::unique_ptr<Link>> links;
  std::vector<std::string> closed;
  for (const char* item : items) {
    auto link = std::make_unique<Link>(*client);
    link->SetLinkItem(item);
    link->SetLinkTopic("Atlasine|DDEServer");
    link->SetLinkMode(kLinkAutomatic);
    link->OnLinkClose([&closed, item] { closed.push_back(item); });
    links.push_back(std::move(link));
  }
  server.reset();
  EXPECT_EQ(closed.size(), 6u);
  EXPECT_EQ(bus.OpenConversations(), 0u);
}

TEST(InProcessBusTest, ClosedNotificationsGoThroughTheDispatcher) {
  std::deque<std::function<void()>> posted;
  InProcessBus bus([&](std::function<void()> work) { posted.push_back(std::move(work)); });
  auto server = bus.Join();
  auto client = bus.Join();
  ASSERT_TRUE(server->RegisterApplication("Trailmark"));
  server->Serve("DDEServer").SetItem("DDECommand", "");
  Link kept(*client);
  auto dropped = std::make_unique<Link>(*client);
  int keptClosed = 0, droppedClosed = 0;
  for (Link* link : {&kept, dropped.get()}) {
    link->SetLinkTopic("Trailmark|DDEServer");
    link->SetLinkItem("DDECommand");
    link->SetLinkMode(kLinkAutomatic);
  }
  kept.OnLinkClose([&] { ++keptClosed; });
  dropped->OnLinkClose([&] { ++droppedClosed; });
  server->ReleaseApplication();
  EXPECT_EQ(keptClosed, 0);  // not yet: it waits for the event loop
  ASSERT_EQ(posted.size(), 2u);
  EXPECT_EQ(kept.LinkMode(), kLinkAutomatic);
  dropped.reset();  // gone before its notification runs
  while (!posted.empty()) {
    auto work = std::move(posted.front());
    posted.pop_front();
    work();
  }
  EXPECT_EQ(keptClosed, 1);
  EXPECT_EQ(droppedClosed, 0);
  EXPECT_EQ(kept.LinkMode(), kLinkNone);
}

}  // namespace
}  // namespace vellumar::link
