// The client end of a link on the in-process bus: commands accepted and refused, requests,
// automatic and manual links, the peer going away, and the errors raised.
#include "platform/link/link.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/link/in_process_bus.h"
#include "platform/link/link_error.h"
#include "platform/vb/error.h"

namespace vellumar::link {
namespace {

// The error number a call raises, or 0.
template <typename F>
int ErrorOf(F&& call) {
  try {
    call();
  } catch (const vb::VbError& e) {
    return e.number();
  }
  return 0;
}

// A serving program "Atlasine" with topic "DDEServer": "003lookup..." is accepted and sets
// its items before answering; anything else is refused.
class LinkTest : public ::testing::Test {
 protected:
  LinkTest() {
    EXPECT_TRUE(server->RegisterApplication("Atlasine"));
    Topic& topic = server->Serve("DDEServer");
    topic.SetItem("DXCCID", "");
    topic.SetItem("Cont", "");
    topic.SetItem("DDECommand", "");
    topic.OnExecute([this, &topic](const std::string& command) {
      commands.push_back(command);
      if (command.rfind("003lookup", 0) != 0) return false;
      topic.SetItem("DXCCID", command == "003lookupK1AB" ? "291" : "150");
      topic.SetItem("Cont", "NA");
      return true;
    });
  }

  InProcessBus bus;
  std::unique_ptr<LinkEndpoint> server = bus.Join();
  std::unique_ptr<LinkEndpoint> client = bus.Join();
  std::vector<std::string> commands;  // as the server got them

  // A link of the client to Atlasine's `item`, open in `mode`.
  std::unique_ptr<Link> Linked(const std::string& item, int mode = kLinkAutomatic) {
    auto link = std::make_unique<Link>(*client);
    link->SetLinkTopic("Atlasine|DDEServer");
    link->SetLinkItem(item);
    link->SetLinkMode(mode);
    return link;
  }
};

TEST_F(LinkTest, ExecuteAcceptedReturnsAndRefusedRaises) {
  auto link = Linked("DDECommand");
  Link& command = *link;
  EXPECT_NO_THROW(command.LinkExecute("003lookupK1AB"));
  EXPECT_EQ(ErrorOf([&] { command.LinkExecute("003bye"); }), kRefused);
  EXPECT_EQ(commands, (std::vector<std::string>{"003lookupK1AB", "003bye"}));
  EXPECT_EQ(command.LinkMode(), kLinkAutomatic);  // a refusal doesn't close the link
}

TEST_F(LinkTest, AutomaticLinkRequestsThenFollowsChanges) {
  server->Serve("DDEServer").SetItem("DXCCID", "1");
  Link dxccid(*client);
  std::vector<std::string> changes;
  dxccid.OnChange([&](const std::string& text) { changes.push_back(text); });
  dxccid.SetLinkItem("DXCCID");
  dxccid.SetLinkTopic("Atlasine|DDEServer");
  dxccid.SetLinkMode(kLinkAutomatic);
  EXPECT_EQ(dxccid.Text(), "1");
  server->Serve("DDEServer").SetItem("DXCCID", "110");
  EXPECT_EQ(dxccid.Text(), "110");
  server->Serve("DDEServer").SetItem("Cont", "OC");  // another item: not followed
  EXPECT_EQ(dxccid.Text(), "110");
  EXPECT_EQ(changes, (std::vector<std::string>{"1", "110"}));
}

TEST_F(LinkTest, ItemsSetDuringACommandArriveBeforeItsAnswer) {
  auto dxccidLink = Linked("DXCCID");
  auto contLink = Linked("Cont");
  auto commandLink = Linked("DDECommand");
  Link& dxccid = *dxccidLink;
  Link& cont = *contLink;
  Link& command = *commandLink;
  command.LinkExecute("003lookupK1AB");
  EXPECT_EQ(dxccid.Text(), "291");
  EXPECT_EQ(cont.Text(), "NA");
  command.LinkExecute("003lookupVK9X");
  EXPECT_EQ(dxccid.Text(), "150");
}

TEST_F(LinkTest, ManualLinkChangesOnlyByRequest) {
  auto link = Linked("DXCCID", kLinkManual);
  Link& dxccid = *link;
  server->Serve("DDEServer").SetItem("DXCCID", "291");
  EXPECT_EQ(dxccid.Text(), "");
  dxccid.LinkRequest();
  EXPECT_EQ(dxccid.Text(), "291");
}

TEST_F(LinkTest, LinkClosesWhenThePeerGoes) {
  auto link = Linked("DXCCID");
  Link& dxccid = *link;
  int closes = 0;
  dxccid.OnLinkClose([&] { ++closes; });
  server.reset();  // the program ends: its name loses its owner
  EXPECT_EQ(closes, 1);
  EXPECT_EQ(dxccid.LinkMode(), kLinkNone);
  EXPECT_EQ(ErrorOf([&] { dxccid.LinkExecute("003lookupK1AB"); }), kNoChannel);
  EXPECT_EQ(ErrorOf([&] { dxccid.SetLinkMode(kLinkAutomatic); }), kNoResponder);
  EXPECT_EQ(dxccid.LinkMode(), kLinkNone);
  EXPECT_EQ(closes, 1);  // a failed connect is not a close
}

TEST_F(LinkTest, ClosingByThisEndIsQuiet) {
  auto link = Linked("DXCCID");
  Link& dxccid = *link;
  int closes = 0;
  dxccid.OnLinkClose([&] { ++closes; });
  dxccid.SetLinkMode(kLinkNone);
  EXPECT_EQ(bus.OpenConversations(), 0u);
  dxccid.SetLinkMode(kLinkAutomatic);
  dxccid.SetLinkTopic("Atlasine|Other");  // a new topic closes the old link
  EXPECT_EQ(dxccid.LinkMode(), kLinkNone);
  EXPECT_EQ(bus.OpenConversations(), 0u);
  server->ReleaseApplication();
  EXPECT_EQ(closes, 0);
}

TEST_F(LinkTest, ErrorsCarryTheRuntimeNumbers) {
  Link link(*client);
  EXPECT_EQ(ErrorOf([&] { link.LinkExecute("003lookupK1AB"); }), kNoChannel);
  EXPECT_EQ(ErrorOf([&] { link.LinkRequest(); }), kNoChannel);
  link.SetLinkTopic("Clustrine|DDEServer");  // nobody owns the name
  EXPECT_EQ(ErrorOf([&] { link.SetLinkMode(kLinkAutomatic); }), kNoResponder);
  link.SetLinkTopic("Atlasine|Nothing");  // not a served topic
  EXPECT_EQ(ErrorOf([&] { link.SetLinkMode(kLinkAutomatic); }), kNoResponder);
  link.SetLinkTopic("Atlasine");  // no bar
  EXPECT_EQ(ErrorOf([&] { link.SetLinkMode(kLinkAutomatic); }), kNoResponder);
  link.SetLinkTopic("Atlasine|DDEServer");
  link.SetLinkItem("Nothing");  // not a served item
  EXPECT_EQ(ErrorOf([&] { link.SetLinkMode(kLinkAutomatic); }), kRefused);
  EXPECT_EQ(link.LinkMode(), kLinkNone);
  EXPECT_EQ(ErrorOf([&] { link.SetLinkMode(3); }), vb::kInvalidProcedureCall);
  try {
    link.LinkRequest();
    FAIL();
  } catch (const vb::VbError& e) {
    EXPECT_EQ(e.description(), "DDE method invoked with no channel open");
  }
}

}  // namespace
}  // namespace vellumar::link
