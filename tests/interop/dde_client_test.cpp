// The links this program keeps to its siblings, on the in-process bus and the virtual clock:
// the start-up's four connections and their single retry, a late "start", the caption's list,
// the log's name a second after a link stands, Atlasine's lookups and their local fallback,
// and every command with its exact string.
#include "interop/dde_client.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "interop/fake_sibling.h"
#include "platform/link/in_process_bus.h"
#include "platform/link/link_error.h"
#include "platform/services/virtual_clock_loop.h"
#include "platform/vb/error.h"

namespace vellumar::interop {
namespace {

using test::FakeSibling;

// The program's place on the bus, counting the connections it tries and when.
class CountingEndpoint final : public link::LinkEndpoint {
 public:
  CountingEndpoint(std::unique_ptr<link::LinkEndpoint> inner, const ui::EventLoop& loop)
      : inner_(std::move(inner)), loop_(loop) {}
  bool RegisterApplication(const std::string& a) override { return inner_->RegisterApplication(a); }
  std::string Application() const override { return inner_->Application(); }
  void ReleaseApplication() override { inner_->ReleaseApplication(); }
  link::Topic& Serve(const std::string& name) override { return inner_->Serve(name); }
  std::unique_ptr<link::Conversation> Connect(const std::string& application,
                                              const std::string& topic) override {
    attempts.emplace_back(loop_.NowMs(), application + "|" + topic);
    return inner_->Connect(application, topic);
  }
  std::vector<std::pair<std::int64_t, std::string>> attempts;

 private:
  std::unique_ptr<link::LinkEndpoint> inner_;
  const ui::EventLoop& loop_;
};

class FakeClientHost final : public DDEClientHost {
 public:
  void ReportError(int number, const std::string& where) override {
    reports.push_back(std::to_string(number) + " " + where);
  }
  void SetPlotLogEnabled(bool enabled) override { plotLogEnabled = enabled; }
  void SetInteropCaption(const std::string& text) override { captions.push_back(text); }
  void UpdateCaption() override { ++captionUpdates; }
  bool LogOpen() override { return logOpen; }
  std::string LogPathname() override { return "/home/op/K1ABC.vdb"; }
  void Lookup(const std::string& callsign) override { localLookups.push_back(callsign); }

  std::vector<std::string> reports, captions, localLookups;
  bool plotLogEnabled = true;
  bool logOpen = true;
  int captionUpdates = 0;
};

class DDEClientTest : public ::testing::Test {
 protected:
  DDEClientTest() {
    auto counting = std::make_unique<CountingEndpoint>(bus.Join(), loop);
    endpoint = counting.get();
    program = std::move(counting);
    program->RegisterApplication("Vellumar");
  }
  ~DDEClientTest() override {
    module.reset();
    program.reset();
    siblings.clear();
  }

  FakeSibling& Sibling(const std::string& name) {
    siblings.push_back(std::make_unique<FakeSibling>(bus, loop, name));
    EXPECT_TRUE(siblings.back()->Start());
    return *siblings.back();
  }
  // A sibling announcing itself to this program.
  bool Announce(FakeSibling& sibling, const std::string& command) {
    link::Link start(sibling.Endpoint());
    start.SetLinkTopic("Vellumar|DDEClient");
    start.SetLinkItem("RequestDDEConnection");
    start.SetLinkMode(link::kLinkAutomatic);
    try {
      start.LinkExecute(command);
      return true;
    } catch (const vb::VbError&) {
      return false;
    }
  }
  std::vector<std::string> AttemptsAt(std::int64_t ms) const {
    std::vector<std::string> out;
    for (const auto& [at, what] : endpoint->attempts)
      if (at == ms) out.push_back(what);
    return out;
  }

  ui::VirtualClockLoop loop;
  link::InProcessBus bus{[this](std::function<void()> work) { loop.Post(std::move(work)); }};
  std::vector<std::unique_ptr<FakeSibling>> siblings;
  std::unique_ptr<link::LinkEndpoint> program;
  CountingEndpoint* endpoint = nullptr;
  FakeClientHost host;
  LookupSlots slots;
  std::unique_ptr<DDEClientModule> module;
  ui::Timer atlasineNewlog{loop, 1000, ui::TimerMode::kPeriodic, [this] {
                             atlasineNewlog.SetEnabled(false);
                             module->SendAtlasineNewlog();
                           }};
  ui::Timer clustrineNewlog{loop, 1000, ui::TimerMode::kPeriodic, [this] {
                              clustrineNewlog.SetEnabled(false);
                              module->SendClustrineNewlog();
                            }};
  ui::Timer serverRetry{loop, 5000, ui::TimerMode::kPeriodic, [this] { module->RetryDeadServers(); }};

  DDEClientModule& Initialize() {
    module = std::make_unique<DDEClientModule>(
        host, DDEClientTimers{atlasineNewlog, clustrineNewlog, serverRetry}, slots);
    module->Initialize(*program);
    return *module;
  }
};

TEST_F(DDEClientTest, WithNoSiblingFourFailedConnectsOneRetryEachAtFiveSecondsThenSilence) {
  DDEClientModule& m = Initialize();
  // Atlasine, Rigsteward, Clustrine, Trailmark: the first control of each fails.
  EXPECT_EQ(AttemptsAt(0),
            (std::vector<std::string>{"Atlasine|DDEServer", "Rigsteward|RigstewardUI",
                                      "Clustrine|DDEServer", "Trailmark|DDEServer"}));
  for (int server : {0, 2, 3, 4}) {
    EXPECT_TRUE(m.ServerDead[server]) << server;
    EXPECT_FALSE(m.ServerConnected(server));
  }
  EXPECT_TRUE(serverRetry.Enabled());
  loop.Advance(4999);
  EXPECT_EQ(endpoint->attempts.size(), 4u);
  loop.Advance(1);
  // The retry goes in server order.
  EXPECT_EQ(AttemptsAt(5000),
            (std::vector<std::string>{"Rigsteward|RigstewardUI", "Trailmark|DDEServer",
                                      "Atlasine|DDEServer", "Clustrine|DDEServer"}));
  EXPECT_FALSE(serverRetry.Enabled());
  for (int server = 0; server < 7; ++server) {
    EXPECT_FALSE(m.ServerDead[server]);
    EXPECT_FALSE(m.ServerRetrying[server]);
  }
  loop.Advance(600000);
  EXPECT_EQ(endpoint->attempts.size(), 8u);
  // The caption never shows a list; nothing reaches the error log.
  for (const std::string& caption : host.captions) EXPECT_EQ(caption, "");
  EXPECT_FALSE(host.plotLogEnabled);
  EXPECT_TRUE(host.reports.empty());
}

TEST_F(DDEClientTest, ALateStartIsConnectedAtOnceAndGetsTheLogASecondAfter) {
  Initialize();
  loop.Advance(20000);  // the retry has come and gone
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {});
  atlasine.Serve("DDEClient", {{"RequestDDEConnection", ""}});
  loop.Advance(7);
  EXPECT_TRUE(Announce(atlasine, "003start"));
  EXPECT_TRUE(module->ServerConnected(3));
  EXPECT_EQ(host.captions.back(), "AT");
  EXPECT_TRUE(host.plotLogEnabled);
  loop.Advance(999);
  EXPECT_TRUE(atlasine.Commands("DDEServer").empty());
  loop.Advance(1);
  ASSERT_EQ(atlasine.received.size(), 1u);
  EXPECT_EQ(atlasine.received[0].atMs, 21007);
  EXPECT_EQ(atlasine.received[0].command, "003newlog/home/op/K1ABC.vdb");
  loop.Advance(10000);
  EXPECT_EQ(atlasine.received.size(), 1u);  // one-shot
}

TEST_F(DDEClientTest, StartIsTheWholeWordAfterLowerCasing) {
  FakeSibling& trailmark = Sibling("Trailmark");
  test::PlayCommandSibling(trailmark);
  Initialize();
  module->SetServerConnected(2, false);
  loop.Advance(5000);
  trailmark.Stop();
  loop.Advance(10);
  ASSERT_FALSE(module->ServerConnected(2));
  ASSERT_TRUE(trailmark.Start());
  EXPECT_FALSE(Announce(trailmark, "0033start"));
  EXPECT_FALSE(Announce(trailmark, "002starting"));
  EXPECT_FALSE(Announce(trailmark, "002"));
  EXPECT_FALSE(module->ServerConnected(2));
  EXPECT_TRUE(Announce(trailmark, "002START"));
  EXPECT_TRUE(module->ServerConnected(2));
  EXPECT_EQ(host.captions.back(), "TM");
}

TEST_F(DDEClientTest, ANonNumericFrameIsRefusedAndReported) {
  FakeSibling& songlark = Sibling("Songlark");
  Initialize();
  EXPECT_FALSE(Announce(songlark, "abcstart"));
  ASSERT_EQ(host.reports.size(), 1u);
  EXPECT_EQ(host.reports[0], "13 DDEClient.Form_LinkExecute");
}

TEST_F(DDEClientTest, TheCaptionListsTheLinkedSiblingsInNumberOrder) {
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {});
  FakeSibling& rig = Sibling("Rigsteward");
  test::PlayRigsteward(rig, "14025.00", "CW");
  FakeSibling& clustrine = Sibling("Clustrine");
  test::PlayCommandSibling(clustrine);
  Initialize();
  EXPECT_EQ(host.captions.back(), "RS,AT,CL");
  // Rigsteward's items followed into the slots.
  EXPECT_EQ(slots.Freq, "14025.00");
  EXPECT_EQ(slots.Mode, "CW");
  rig.Topic("RigstewardUI").SetItem("FreqDisplay", "7010.50");
  EXPECT_EQ(slots.Freq, "7010.50");
  rig.Stop();
  loop.Advance(0);
  EXPECT_EQ(host.captions.back(), "AT,CL");
}

TEST_F(DDEClientTest, ClosingAtlasineDisablesThePlotAndLookupsTurnLocalAtOnce) {
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {{"VP2EAB", {"VP2E", "12", "NA", "8", "11"}}});
  Initialize();
  EXPECT_TRUE(host.plotLogEnabled);
  module->AtlasineLookup("VP2EAB");
  EXPECT_EQ(atlasine.Commands("DDEServer").back(), "003lookupVP2EAB");
  EXPECT_TRUE(host.localLookups.empty());
  EXPECT_EQ(slots.DXCCPrefix, "VP2E");
  EXPECT_EQ(slots.DXCCID, "12");
  EXPECT_EQ(slots.Cont, "NA");
  EXPECT_EQ(slots.CQ, "8");
  EXPECT_EQ(slots.ITU, "11");

  loop.Advance(6000);  // the other siblings' start-up retry has come and gone
  const std::size_t before = endpoint->attempts.size();
  atlasine.Stop();
  loop.Advance(0);  // the six links' LinkClose arrive as events
  EXPECT_FALSE(module->ServerConnected(3));
  EXPECT_FALSE(host.plotLogEnabled);
  module->AtlasineLookup("G3XYZ");
  EXPECT_EQ(host.localLookups, std::vector<std::string>{"G3XYZ"});
  // Six closes, one retry.
  loop.Advance(5000);
  EXPECT_EQ(endpoint->attempts.size(), before + 1);
  EXPECT_EQ(endpoint->attempts.back().first, 11000);
  EXPECT_EQ(endpoint->attempts.back().second, "Atlasine|DDEServer");
  loop.Advance(60000);
  EXPECT_EQ(endpoint->attempts.size(), before + 1);
}

TEST_F(DDEClientTest, ALookupReadsTheSlotsAsTheAnswerLeftThemEvenWhenUnchanged) {
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {{"VP2EAB", {"VP2E", "12", "NA", "8", "11"}}});
  Initialize();
  module->AtlasineLookup("VP2EAB");
  slots.ClearLookup();  // as InitializeQSO clears them before asking
  module->AtlasineLookup("VP2EAB");
  EXPECT_EQ(slots.DXCCPrefix, "VP2E");
  EXPECT_EQ(slots.ITU, "11");
}

TEST_F(DDEClientTest, AtTheEndNewlogGoesOutEmptyToConnectedSiblingsOnly) {
  FakeSibling& clustrine = Sibling("Clustrine");
  test::PlayCommandSibling(clustrine);
  Initialize();
  loop.Advance(1000);
  EXPECT_EQ(clustrine.Commands("DDEServer"),
            std::vector<std::string>{"004newlog/home/op/K1ABC.vdb"});
  module->Terminate();
  EXPECT_EQ(clustrine.Commands("DDEServer").back(), "004newlog");
  EXPECT_EQ(clustrine.Commands("DDEServer").size(), 2u);
  EXPECT_TRUE(host.reports.empty());
  EXPECT_EQ(bus.OpenConversations(), 0u);
}

TEST_F(DDEClientTest, WithNoLogOpenNewlogIsEmpty) {
  host.logOpen = false;
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {});
  Initialize();
  loop.Advance(1000);
  EXPECT_EQ(atlasine.Commands("DDEServer"), std::vector<std::string>{"003newlog"});
}

TEST_F(DDEClientTest, EveryCommandWithItsString) {
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {});
  FakeSibling& clustrine = Sibling("Clustrine");
  test::PlayCommandSibling(clustrine);
  FakeSibling& trailmark = Sibling("Trailmark");
  test::PlayCommandSibling(trailmark);
  Initialize();
  loop.Advance(1000);
  atlasine.received.clear();
  clustrine.received.clear();

  module->AtlasinePlotCall("K1AB|G3XYZ");
  module->AtlasinePlotGrid("FN42|IO91");
  module->AtlasineNewLog("/x.vdb");
  module->AtlasineUpdateProgress("291|W|F|");
  EXPECT_EQ(atlasine.Commands("DDEServer"),
            (std::vector<std::string>{"003plotcallK1AB|G3XYZ", "003plotgridFN42|IO91",
                                      "003newlog/x.vdb", "003updateprogress291|W|F|"}));
  module->ClustrineNewLog("/x.vdb");
  module->ClustrineNewAwards();
  module->ClustrineUpdateProgress("K1AB", "20M", "CW", "K", "W");
  module->ClustrineSpotStation("VP2EAB");
  EXPECT_EQ(clustrine.Commands("DDEServer"),
            (std::vector<std::string>{
                "004newlog/x.vdb", "004newawards",
                "004updateprogress<UpdatedCallsign:4>K1AB<UpdatedBand:3>20M<UpdatedMode:2>CW"
                "<UpdatedDXCC:1>K<UpdatedProgress:1>W",
                "004spotstation<SpotStationCallsign:6>VP2EAB"}));
  // Trailmark is asked only once queries are allowed.
  module->TrailmarkGetQSLInfo("VP2EAB");
  EXPECT_TRUE(trailmark.Commands("DDEServer").empty());
  module->AllowTrailmarkQueries();
  module->TrailmarkGetQSLInfo("VP2EAB");
  EXPECT_EQ(trailmark.Commands("DDEServer"),
            std::vector<std::string>{"002getqslinfo<CALLSIGN:6>VP2EAB"});
  EXPECT_TRUE(host.reports.empty());
}

TEST_F(DDEClientTest, CommandsToAnUnlinkedSiblingDoNothing) {
  Initialize();
  module->AllowTrailmarkQueries();
  module->AtlasinePlotCall("x");
  module->ClustrineNewAwards();
  module->TrailmarkGetQSLInfo("K1AB");
  EXPECT_TRUE(host.reports.empty());
  EXPECT_EQ(bus.OpenConversations(), 0u);
}

TEST_F(DDEClientTest, ARefusedCommandIsReportedUnderItsProcedureAndTheSenderGoesOn) {
  FakeSibling& clustrine = Sibling("Clustrine");
  test::PlayCommandSibling(clustrine);
  Initialize();
  clustrine.onCommand = [](const std::string&, const std::string&) { return false; };
  module->ClustrineNewAwards();
  ASSERT_EQ(host.reports.size(), 1u);
  EXPECT_EQ(host.reports[0], "285 DDEClientModule.ClustrineNewAwards");
  EXPECT_TRUE(module->ServerConnected(4));
}

TEST_F(DDEClientTest, ServerConnectedOutOfRangeIsABoundsError) {
  Initialize();
  EXPECT_FALSE(module->ServerConnected(7));
  EXPECT_FALSE(module->ServerConnected(-1));
  EXPECT_EQ(host.reports, (std::vector<std::string>{"9 DDEClientModule.ServerConnected",
                                                    "9 DDEClientModule.ServerConnected"}));
}

TEST_F(DDEClientTest, ConnectServerIgnoresThisProgramAndUnknownNumbers) {
  Initialize();
  const std::size_t before = endpoint->attempts.size();
  module->ConnectServer(1);
  module->ConnectServer(5);
  module->ConnectServer(6);
  module->ConnectServer(-2);
  EXPECT_EQ(endpoint->attempts.size(), before);
}

TEST_F(DDEClientTest, AFailedRetryWaitsForStart) {
  Initialize();
  loop.Advance(5000);  // the retry fails
  FakeSibling& clustrine = Sibling("Clustrine");
  test::PlayCommandSibling(clustrine);
  loop.Advance(30000);
  EXPECT_FALSE(module->ServerConnected(4));  // nobody tried again
  EXPECT_TRUE(Announce(clustrine, "004start"));
  EXPECT_TRUE(module->ServerConnected(4));
  EXPECT_EQ(host.captions.back(), "CL");
}

TEST_F(DDEClientTest, ASiblingBackForTheRetryIsLinkedAgain) {
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {});
  Initialize();
  loop.Advance(1000);
  atlasine.Stop();
  loop.Advance(100);
  EXPECT_EQ(host.captions.back(), "");
  ASSERT_TRUE(atlasine.Start());
  loop.Advance(4900);  // the retry at 5 s after the loss
  EXPECT_TRUE(module->ServerConnected(3));
  EXPECT_EQ(host.captions.back(), "AT");
  EXPECT_FALSE(module->ServerRetrying[3]);
  loop.Advance(1000);
  EXPECT_EQ(atlasine.Commands("DDEServer").back(), "003newlog/home/op/K1ABC.vdb");
}

}  // namespace
}  // namespace vellumar::interop
