// The whole program in memory with siblings played on the in-process bus: the start-up's and
// the shut-down's order towards them, their `log`, `getprogress`, `check`, `newentry` and
// `shutdown`, Atlasine answering the Log page's lookup, and a second copy finding its name taken.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "awards/progress_update.h"
#include "interop/fake_sibling.h"
#include "logpage/log_page_fixture.h"
#include "platform/link/link.h"
#include "platform/vb/error.h"

namespace vellumar {
namespace {

using test::FakeSibling;

std::string Tag(const std::string& tag, const std::string& value) {
  return "<" + tag + ":" + std::to_string(value.size()) + ">" + value;
}

std::string QSO(const std::string& call, const std::string& time, const std::string& band,
                const std::string& mode, const std::string& dxcc) {
  return Tag("CALL", call) + Tag("QSO_DATE", "20240314") + Tag("TIME_ON", time) +
         Tag("BAND", band) + Tag("MODE", mode) + Tag("DXCC", dxcc) + "<EOR>";
}

class SiblingProgramTest : public ::testing::Test {
 protected:
  ~SiblingProgramTest() override {
    command.reset();
    siblings.clear();
  }

  FakeSibling& Sibling(const std::string& name) {
    siblings.push_back(std::make_unique<FakeSibling>(h.bus, h.loop, name));
    EXPECT_TRUE(siblings.back()->Start());
    return *siblings.back();
  }
  Application& Start() {
    h.SeedReturningOperator();
    app = &h.Start();
    h.loop.Advance(300);  // the start-up's last timer
    app->main.Show();
    return *app;
  }
  // A sibling's execute on "Vellumar|DDEServer": true when accepted.
  bool Send(FakeSibling& from, const std::string& text) {
    if (!command) {
      command = std::make_unique<link::Link>(from.Endpoint());
      command->SetLinkTopic("Vellumar|DDEServer");
      command->SetLinkItem("DDECommand");
      command->SetLinkMode(link::kLinkAutomatic);
    }
    try {
      command->LinkExecute(text);
      return true;
    } catch (const vb::VbError&) {
      return false;
    }
  }
  long RowsInFile() {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    if (rs.BOF() && rs.EOF_()) return 0;
    rs.MoveLast();
    return rs.RecordCount();
  }
  std::string Letter(const std::string& countryCode, const std::string& column) {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '" + countryCode + "'");
    if (rs.NoMatch()) return "<no entity>";
    return rs.Fields(column).Value().ToStringOrEmpty();
  }
  std::string LogPath() { return h.LogPath("K1ABC.vdb"); }

  test::ProgramHarness h;
  Application* app = nullptr;
  std::vector<std::unique_ptr<FakeSibling>> siblings;
  std::unique_ptr<link::Link> command;
};

TEST_F(SiblingProgramTest, WithNoSiblingTheProgramStartsUnlinkedAndSaysNothing) {
  Start();
  EXPECT_EQ(app->main.Caption().find('['), std::string::npos) << app->main.Caption();
  EXPECT_FALSE(app->main.PlotLogCmd.Enabled());
  EXPECT_TRUE(app->main.ServerRetryTimer.Enabled());
  h.loop.Advance(5000);
  EXPECT_FALSE(app->main.ServerRetryTimer.Enabled());
  EXPECT_TRUE(h.bus.NameHasOwner("Vellumar"));
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(SiblingProgramTest, StartUpLinksInOrderAndTellsTheLogAtStep16AndASecondLater) {
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {});
  FakeSibling& clustrine = Sibling("Clustrine");
  test::PlayCommandSibling(clustrine);
  FakeSibling& songlark = Sibling("Songlark");
  test::PlayCommandSibling(songlark);
  Start();
  h.loop.Advance(700);
  EXPECT_NE(app->main.Caption().find("[AT,CL]"), std::string::npos) << app->main.Caption();
  EXPECT_TRUE(app->main.PlotLogCmd.Enabled());
  EXPECT_EQ(songlark.Commands("DDEClient"), std::vector<std::string>{"001start"});
  EXPECT_EQ(clustrine.Commands("DDEClient"), std::vector<std::string>{"001start"});
  // Step 16 at once, and the link's own notice a second after it stood.
  ASSERT_EQ(atlasine.received.size(), 2u);
  EXPECT_EQ(atlasine.received[0].atMs, 0);
  EXPECT_EQ(atlasine.received[0].command, "003newlog" + LogPath());
  EXPECT_EQ(atlasine.received[1].atMs, 1000);
  EXPECT_EQ(atlasine.received[1].command, "003newlog" + LogPath());
  EXPECT_EQ(clustrine.Commands("DDEServer"),
            (std::vector<std::string>{"004newlog" + LogPath(), "004newlog" + LogPath()}));
}

TEST_F(SiblingProgramTest, ALogOfTwoQSOsIsInTheFileWithProgressRaised) {
  FakeSibling& songlark = Sibling("Songlark");
  Start();
  const long before = RowsInFile();
  EXPECT_TRUE(Send(songlark, "001log" + QSO("K1AB", "1200", "20M", "CW", "291") +
                                 QSO("G3XYZ", "1201", "40M", "SSB", "223")));
  EXPECT_EQ(RowsInFile(), before + 2);
  EXPECT_EQ(Letter("291", "20M"), "W");
  EXPECT_EQ(Letter("291", "CW"), "W");
  EXPECT_EQ(Letter("223", "40M"), "W");
  EXPECT_EQ(Letter("223", "PHONE"), "W");
  // The Log page shows them: the filter was cleared.
  EXPECT_EQ(app->main.FilterFrame.Caption().rfind("Filter: None", 0), 0u);
  EXPECT_EQ(h.ErrorLogText(), "");
}

TEST_F(SiblingProgramTest, ATruncatedRecordIsDroppedWithNoHalfRow) {
  FakeSibling& songlark = Sibling("Songlark");
  Start();
  const long before = RowsInFile();
  const std::string whole = QSO("K1AB", "1200", "20M", "CW", "291");
  EXPECT_TRUE(Send(songlark, "001log" + whole + whole.substr(0, whole.size() / 2)));
  EXPECT_EQ(RowsInFile(), before + 1);
}

TEST_F(SiblingProgramTest, ALogWhileThePanelHoldsAnInvalidQSOCancelsThatEditAndGoesOn) {
  FakeSibling& songlark = Sibling("Songlark");
  Start();
  app->main.NewCmd.UserClick();
  app->main.Fieldbox(1).UserType("K1XYZ");
  app->main.Fieldbox(4).SetText("not a frequency");
  const long before = RowsInFile();
  EXPECT_TRUE(Send(songlark, "001log" + QSO("K1AB", "1200", "20M", "CW", "291")));
  EXPECT_EQ(RowsInFile(), before + 1);
  EXPECT_EQ(app->main.LogPosition.Recordset().EditMode(), db::dbEditNone);
}

TEST_F(SiblingProgramTest, GetProgressEqualsGetProgressAndALinkedProgressFollows) {
  FakeSibling& clustrine = Sibling("Clustrine");
  test::PlayCommandSibling(clustrine);
  Start();
  EXPECT_TRUE(Send(clustrine, "004log" + QSO("K1AB", "1200", "20M", "CW", "291")));
  link::Link progress(clustrine.Endpoint());
  progress.SetLinkTopic("Vellumar|DDEServer");
  progress.SetLinkItem("Progress");
  progress.SetLinkMode(link::kLinkAutomatic);
  EXPECT_TRUE(Send(clustrine,
                   "001getprogress<ProgressPrefix:1>K<ProgressBand:3>20M<ProgressMode:2>CW"));
  EXPECT_EQ(progress.Text(),
            GetProgress(app->module.ProgressRecordset, "K", "20M", "CW"));
  EXPECT_EQ(progress.Text(), "W");
  EXPECT_TRUE(Send(clustrine,
                   "001getprogress<ProgressPrefix:4>ZZ9Z<ProgressBand:3>20M<ProgressMode:2>CW"));
  EXPECT_EQ(progress.Text(), "?");
  EXPECT_TRUE(Send(clustrine,
                   "001getprogress<ProgressPrefix:1>G<ProgressBand:3>20M<ProgressMode:2>CW"));
  EXPECT_EQ(progress.Text(), "U");
}

TEST_F(SiblingProgramTest, NewEntryFillsTheCaptureWindow) {
  FakeSibling& songlark = Sibling("Songlark");
  Start();
  EXPECT_TRUE(Send(songlark, "001newentry<entrycallsign:6>VP2EAB<entryfreq:6>14.025"
                             "<entrymode:2>CW"));
  Capture& capture = app->capture;
  EXPECT_EQ(capture.Callsign.Text(), "VP2EAB");
  h.loop.Advance(1);
  EXPECT_EQ(capture.Callsign.Text(), "VP2EAB");
  EXPECT_EQ(capture.Frequency.Text(), "14.025");
  ASSERT_GE(capture.Mode.ListIndex(), 0);
  EXPECT_EQ(capture.Mode.List(capture.Mode.ListIndex()), "CW");
  // The local lookup found the entity.
  EXPECT_EQ(app->lookupSlots.DXCCPrefix, "VP2E");
  ASSERT_GE(capture.DXCC.ListIndex(), 0);
  EXPECT_EQ(capture.DXCC.List(capture.DXCC.ListIndex()), "VP2E");
  EXPECT_EQ(app->main.TabbedDialog.Tab(), 0);
}

TEST_F(SiblingProgramTest, AtlasineAnswersTheLogPagesLookupInPlaceOfTheLocalOne) {
  FakeSibling& atlasine = Sibling("Atlasine");
  // An answer unlike the local lookup's (K: NA, CQ 5, ITU 8).
  test::PlayAtlasine(atlasine, {{"K1XYZ", {"KH6", "110", "OC", "31", "61"}}});
  Start();
  EXPECT_NE(app->main.Caption().find("[AT]"), std::string::npos) << app->main.Caption();
  app->main.NewCmd.UserClick();
  app->main.Fieldbox(1).UserType("K1XYZ");
  app->main.Fieldbox(1).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn);
  EXPECT_EQ(atlasine.Commands("DDEServer").back(), "003lookupK1XYZ");
  EXPECT_EQ(app->main.Fieldbox(3).Text(), "110");
  EXPECT_EQ(app->main.Fieldbox(22).Text(), "OC");
  EXPECT_EQ(app->main.Fieldbox(24).Text(), "31");
  EXPECT_EQ(app->main.Fieldbox(23).Text(), "61");
}

TEST_F(SiblingProgramTest, ClosingAtlasineTurnsTheLookupLocalAtOnce) {
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {{"K1XYZ", {"KH6", "110", "OC", "31", "61"}}});
  Start();
  atlasine.Stop();
  h.loop.Advance(0);
  EXPECT_EQ(app->main.Caption().find('['), std::string::npos) << app->main.Caption();
  EXPECT_FALSE(app->main.PlotLogCmd.Enabled());
  app->main.NewCmd.UserClick();
  app->main.Fieldbox(1).UserType("K1XYZ");
  app->main.Fieldbox(1).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn);
  EXPECT_EQ(app->main.Fieldbox(3).Text(), "291");
  EXPECT_EQ(app->main.Fieldbox(22).Text(), "NA");
}

TEST_F(SiblingProgramTest, TrailmarkIsAskedOnlyOnceStartUpHasEnded) {
  FakeSibling& trailmark = Sibling("Trailmark");
  test::PlayCommandSibling(trailmark);
  FakeSibling& songlark = Sibling("Songlark");
  h.SeedReturningOperator();
  app = &h.Start();
  EXPECT_TRUE(Send(songlark, "001checkW1AW"));
  EXPECT_TRUE(trailmark.Commands("DDEServer").empty());
  h.loop.Advance(300);
  EXPECT_TRUE(Send(songlark, "001checkW1AW"));
  EXPECT_EQ(trailmark.Commands("DDEServer"),
            std::vector<std::string>{"002getqslinfo<CALLSIGN:4>W1AW"});
  EXPECT_EQ(app->main.FilterField.Text(), "W1AW");
}

TEST_F(SiblingProgramTest, ShutdownEndsTheProgramFiveSecondsLaterAndTheSiblingsHearNoLog) {
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {});
  Start();
  h.loop.Advance(2000);
  atlasine.received.clear();
  EXPECT_TRUE(Send(atlasine, "003shutdown"));
  h.loop.Advance(4999);
  EXPECT_FALSE(app->Ended());
  h.loop.Advance(1);
  EXPECT_TRUE(app->Ended());
  EXPECT_EQ(atlasine.Commands("DDEServer"), std::vector<std::string>{"003newlog"});
  // The server went first: nobody can drive the program any more.
  EXPECT_FALSE(Send(atlasine, "001test"));
}

TEST_F(SiblingProgramTest, ASecondCopyFindingItsNameOwnedRunsUnlinkedWithOneLine) {
  auto first = h.bus.Join();
  ASSERT_TRUE(first->RegisterApplication("Vellumar"));
  FakeSibling& atlasine = Sibling("Atlasine");
  test::PlayAtlasine(atlasine, {});
  Start();
  EXPECT_EQ(app->main.Caption().find('['), std::string::npos);
  EXPECT_TRUE(atlasine.received.empty());
  const std::string log = h.ErrorLogText();
  EXPECT_NE(log.find("the name Vellumar is owned by another program"), std::string::npos) << log;
  // One entry behind the run's six-line banner.
  std::size_t lines = 0;
  for (std::size_t at = log.find(" > "); at != std::string::npos; at = log.find(" > ", at + 1))
    ++lines;
  EXPECT_EQ(lines, 6u + 1u) << log;
  // No box: the scripted desktop fails the test on any message it wasn't told to expect.
}

}  // namespace
}  // namespace vellumar
