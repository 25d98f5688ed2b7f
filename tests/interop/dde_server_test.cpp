// The topic through which the siblings drive this program, on the in-process bus and the
// virtual clock: the dispatcher's words matched by prefix in their order, the frame that must
// be a number, getprogress's swapped arguments into the Progress item, the Capture window's
// hand-over through the 1 ms timers, and what a recompute drops.
#include "interop/dde_server.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "interop/fake_sibling.h"
#include "platform/link/in_process_bus.h"
#include "platform/services/virtual_clock_loop.h"
#include "platform/vb/error.h"

namespace vellumar::interop {
namespace {

using test::FakeSibling;

// Records what the commands do to the program, in order, with the virtual time.
class FakeServerHost final : public DDEServerHost {
 public:
  explicit FakeServerHost(const ui::EventLoop& loop) : loop_(loop) {}
  void ReportError(int number, const std::string& where) override {
    reports.push_back(std::to_string(number) + " " + where);
  }
  void EnableShutdownTimer() override { Do("EnableShutdownTimer"); }
  void AdifProcess(const std::string& text) override { Do("AdifProcess " + text); }
  void FilterClear() override { Do("FilterClear"); }
  void SetFilterFieldText(const std::string& text) override { Do("FilterField " + text); }
  void FilterCall() override { Do("FilterCall"); }
  void SetSuppressLookup(bool suppressed) override {
    Do(std::string("SetSuppressLookup ") + (suppressed ? "true" : "false"));
  }
  void TrailmarkGetQSLInfo(const std::string& callsign) override { Do("GetQSLInfo " + callsign); }
  std::string GetProgress(const std::string& prefix, const std::string& band,
                          const std::string& mode) override {
    Do("GetProgress " + prefix + "," + band + "," + mode);
    return prefix == "K" ? "F" : "?";
  }
  bool RecomputeInProgress() override { return recomputing; }
  std::string CaptureCallsign() override { return callsign; }
  void SetCaptureCallsign(const std::string& text) override {
    callsign = text;
    Do("Callsign " + text);
  }
  std::string CaptureFrequency() override { return frequency; }
  void SetCaptureFrequency(const std::string& text) override {
    frequency = text;
    Do("Frequency " + text);
  }
  std::string CaptureMode() override { return mode; }
  void SetCaptureMode(const std::string& text) override {
    mode = text;
    Do("Mode " + text);
  }
  void CaptureClearCmd_Click() override {
    callsign.clear(), frequency.clear(), mode.clear();
    Do("ClearCmd_Click");
  }
  void CaptureLookupCmd_Click() override { Do("LookupCmd_Click " + callsign); }
  bool CaptureVisible() override { return visible; }
  void FocusCaptureCallsign() override { Do("Focus Callsign"); }
  void ShowLogQSOsTab() override { Do("Tab 0"); }

  void Do(const std::string& what) { done.push_back("@" + std::to_string(loop_.NowMs()) + " " + what); }

  std::vector<std::string> done, reports;
  std::string callsign, frequency, mode;
  bool recomputing = false;
  bool visible = true;

 private:
  const ui::EventLoop& loop_;
};

class DDEServerTest : public ::testing::Test {
 protected:
  DDEServerTest() {
    program->RegisterApplication("Vellumar");
  }
  ~DDEServerTest() override {
    module.reset();
    sibling.reset();
    program.reset();
  }

  void Initialize() { module->Initialize(*program); }

  // A sibling's execute on "Vellumar|DDEServer": true when accepted.
  bool Send(const std::string& command) {
    if (!commandLink) {
      commandLink = std::make_unique<link::Link>(sibling->Endpoint());
      commandLink->SetLinkTopic("Vellumar|DDEServer");
      commandLink->SetLinkItem("DDECommand");
      commandLink->SetLinkMode(link::kLinkAutomatic);
    }
    try {
      commandLink->LinkExecute(command);
      return true;
    } catch (const vb::VbError&) {
      return false;
    }
  }

  ui::VirtualClockLoop loop;
  link::InProcessBus bus{[this](std::function<void()> work) { loop.Post(std::move(work)); }};
  std::unique_ptr<link::LinkEndpoint> program = bus.Join();
  std::unique_ptr<FakeSibling> sibling = std::make_unique<FakeSibling>(bus, loop, "Atlasine");
  std::unique_ptr<link::Link> commandLink;
  FakeServerHost host{loop};
  DDECommon common{[this](int number, const std::string& where) { host.ReportError(number, where); }};
  std::unique_ptr<DDEServerModule> module = std::make_unique<DDEServerModule>(loop, common, host);

  void TearDown() override { commandLink.reset(); }
};

TEST_F(DDEServerTest, TestIsAcceptedAndAShortFrameFails) {
  Initialize();
  EXPECT_TRUE(Send("000TEST"));
  EXPECT_TRUE(Send("001testing"));  // "test" followed by anything
  EXPECT_TRUE(host.done.empty());
  EXPECT_TRUE(host.reports.empty());
  EXPECT_FALSE(Send("01test"));
  EXPECT_FALSE(Send("test"));
  EXPECT_FALSE(Send(""));
  EXPECT_EQ(host.reports, (std::vector<std::string>{"13 DDEServer.Form_LinkExecute",
                                                    "13 DDEServer.Form_LinkExecute",
                                                    "13 DDEServer.Form_LinkExecute"}));
  EXPECT_TRUE(host.done.empty());
}

TEST_F(DDEServerTest, AnUnknownWordIsRefusedAndTheSiblingSeesAFailedExecute) {
  Initialize();
  EXPECT_FALSE(Send("001bye"));
  EXPECT_FALSE(Send("001"));
  EXPECT_TRUE(host.reports.empty());
  EXPECT_TRUE(host.done.empty());
}

TEST_F(DDEServerTest, LogHandsTheRestToTheImportThenClearsTheFilter) {
  Initialize();
  EXPECT_TRUE(Send("001logx"));
  EXPECT_TRUE(Send("002LOG<CALL:4>K1AB<eor>"));
  EXPECT_EQ(host.done, (std::vector<std::string>{"@0 AdifProcess x", "@0 FilterClear",
                                                 "@0 AdifProcess <CALL:4>K1AB<eor>",
                                                 "@0 FilterClear"}));
}

TEST_F(DDEServerTest, ShutdownOnlyEnablesTheShutdownTimer) {
  Initialize();
  EXPECT_TRUE(Send("001shutdown"));
  EXPECT_EQ(host.done, std::vector<std::string>{"@0 EnableShutdownTimer"});
}

TEST_F(DDEServerTest, CheckFiltersWithoutLookupThenAsksForTheRoute) {
  Initialize();
  EXPECT_TRUE(Send("001checkVP2EAB"));
  EXPECT_EQ(host.done,
            (std::vector<std::string>{"@0 FilterField VP2EAB", "@0 SetSuppressLookup true",
                                      "@0 FilterCall", "@0 SetSuppressLookup false",
                                      "@0 GetQSLInfo VP2EAB"}));
}

TEST_F(DDEServerTest, GetProgressSwapsBandAndModeAndTheItemHoldsTheAnswer) {
  Initialize();
  // A client follows the Progress item.
  link::Link progress(sibling->Endpoint());
  progress.SetLinkTopic("Vellumar|DDEServer");
  progress.SetLinkItem("Progress");
  progress.SetLinkMode(link::kLinkAutomatic);
  std::vector<std::string> seen;
  progress.OnChange([&](const std::string& text) { seen.push_back(text); });

  EXPECT_TRUE(Send("001getprogress<ProgressPrefix:1>K<ProgressBand:3>20M<ProgressMode:2>CW"));
  // The record's second value reaches the mode argument, its third the band argument.
  EXPECT_EQ(host.done, std::vector<std::string>{"@0 GetProgress K,CW,20M"});
  EXPECT_EQ(module->Form().Progress(), "F");
  EXPECT_EQ(progress.Text(), "F");
  EXPECT_EQ(seen, std::vector<std::string>{"F"});

  EXPECT_TRUE(Send("001getprogress<ProgressPrefix:4>ZZ9Z<ProgressBand:3>20M<ProgressMode:2>CW"));
  EXPECT_EQ(module->Form().Progress(), "?");
  EXPECT_EQ(progress.Text(), "?");
  // Other commands leave the item alone.
  EXPECT_TRUE(Send("001test"));
  EXPECT_TRUE(Send("001logx"));
  EXPECT_EQ(module->Form().Progress(), "?");
  link::Link reader(sibling->Endpoint());
  reader.SetLinkTopic("Vellumar|DDEServer");
  reader.SetLinkItem("Progress");
  reader.SetLinkMode(link::kLinkManual);
  reader.LinkRequest();
  EXPECT_EQ(reader.Text(), "?");
}

TEST_F(DDEServerTest, NewCallsignSetsTheCaptureAtOnceAndLooksUpAMillisecondLater) {
  Initialize();
  host.frequency = "14.025";
  EXPECT_TRUE(Send("001newcallsign<callsign:6>VP2EAB"));
  EXPECT_EQ(host.done, std::vector<std::string>{"@0 Callsign VP2EAB"});
  loop.Advance(1);
  EXPECT_EQ(host.done, (std::vector<std::string>{"@0 Callsign VP2EAB", "@1 ClearCmd_Click",
                                                 "@1 Callsign VP2EAB", "@1 Tab 0",
                                                 "@1 LookupCmd_Click VP2EAB",
                                                 "@1 Focus Callsign"}));
  EXPECT_EQ(host.frequency, "");  // the clear took the rest
  loop.Advance(100);
  EXPECT_EQ(host.done.size(), 6u);  // one-shot
}

TEST_F(DDEServerTest, NewCallsignWithNoRecordReusesAnOlderToken) {
  Initialize();
  EXPECT_TRUE(Send("001newentry<entrycallsign:4>G3XY<entryfreq:5>7.010<entrymode:3>SSB"));
  loop.Advance(1);
  host.done.clear();
  EXPECT_TRUE(Send("001newcallsign"));
  EXPECT_EQ(host.done, std::vector<std::string>{"@1 Callsign G3XY"});
  host.visible = false;
  loop.Advance(1);
  EXPECT_EQ(host.done.back(), "@2 LookupCmd_Click G3XY");  // no focus: the window is hidden
}

TEST_F(DDEServerTest, ASecondNewCallsignInTheSameMillisecondReplacesTheFirst) {
  Initialize();
  EXPECT_TRUE(Send("001newcallsign<c:4>K1AB"));
  EXPECT_TRUE(Send("001newcallsign<c:4>W1AW"));
  loop.Advance(1);
  int lookups = 0;
  for (const std::string& d : host.done) {
    if (d.find("LookupCmd_Click") != std::string::npos) {
      ++lookups;
      EXPECT_EQ(d, "@1 LookupCmd_Click W1AW");
    }
  }
  EXPECT_EQ(lookups, 1);
}

TEST_F(DDEServerTest, NewEntryFillsCallFrequencyAndModeAndRestoresThemAfterTheClear) {
  Initialize();
  EXPECT_TRUE(Send("001newentry<entrycallsign:6>VP2EAB<entryfreq:6>14.025<entrymode:2>CW"));
  EXPECT_EQ(host.done, (std::vector<std::string>{"@0 Callsign VP2EAB", "@0 Frequency 14.025",
                                                 "@0 Mode CW"}));
  loop.Advance(1);
  EXPECT_EQ(host.callsign, "VP2EAB");
  EXPECT_EQ(host.frequency, "14.025");
  EXPECT_EQ(host.mode, "CW");
  const std::vector<std::string> tail(host.done.begin() + 3, host.done.end());
  EXPECT_EQ(tail, (std::vector<std::string>{"@1 ClearCmd_Click", "@1 Callsign VP2EAB",
                                            "@1 Frequency 14.025", "@1 Mode CW", "@1 Tab 0",
                                            "@1 LookupCmd_Click VP2EAB", "@1 Focus Callsign"}));
}

TEST_F(DDEServerTest, DuringARecomputeCheckNewcallsignAndNewentryAreAcceptedAndDropped) {
  Initialize();
  host.recomputing = true;
  EXPECT_TRUE(Send("001checkK1AB"));
  EXPECT_TRUE(Send("001newcallsign<c:4>K1AB"));
  EXPECT_TRUE(Send("001newentry<c:4>K1AB<f:6>14.025<m:2>CW"));
  loop.Advance(10);
  EXPECT_TRUE(host.done.empty());
  // log and getprogress are served also then.
  EXPECT_TRUE(Send("001log<CALL:4>K1AB<eor>"));
  EXPECT_TRUE(Send("001getprogress<p:1>K<b:3>20M<m:2>CW"));
  EXPECT_EQ(host.done, (std::vector<std::string>{"@10 AdifProcess <CALL:4>K1AB<eor>",
                                                 "@10 FilterClear", "@10 GetProgress K,CW,20M"}));
  EXPECT_TRUE(host.reports.empty());
}

TEST_F(DDEServerTest, StartUpTellsSonglarkThenClustrineAndAnAbsentOneIsNoFailure) {
  FakeSibling clustrine(bus, loop, "Clustrine");
  ASSERT_TRUE(clustrine.Start());
  test::PlayCommandSibling(clustrine);
  FakeSibling songlark(bus, loop, "Songlark");
  ASSERT_TRUE(songlark.Start());
  test::PlayCommandSibling(songlark);
  std::vector<std::string> order;
  clustrine.onCommand = [&](const std::string& topic, const std::string& c) {
    order.push_back("Clustrine " + topic + " " + c);
    return true;
  };
  songlark.onCommand = [&](const std::string& topic, const std::string& c) {
    order.push_back("Songlark " + topic + " " + c);
    return true;
  };
  Initialize();
  EXPECT_EQ(order, (std::vector<std::string>{"Songlark DDEClient 001start",
                                             "Clustrine DDEClient 001start"}));
  module.reset();
  songlark.Stop();
  clustrine.Stop();
  // Nobody running: nothing told, nothing reported.
  module = std::make_unique<DDEServerModule>(loop, common, host);
  Initialize();
  EXPECT_TRUE(host.reports.empty());
}

TEST_F(DDEServerTest, AfterTerminateCommandsAreRefused) {
  Initialize();
  EXPECT_TRUE(Send("001test"));
  module->Terminate();
  EXPECT_FALSE(Send("001test"));
}

}  // namespace
}  // namespace vellumar::interop
