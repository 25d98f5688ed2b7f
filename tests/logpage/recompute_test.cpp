// The Check Progress tab's Recompute: the question, the walk over the Log Page Display with its
// bar and yields, the table refilled from the DXCC database, the map program's entity, the
// siblings' notices, the end of the program during the walk, and failures.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "awards/progress_columns.h"
#include "logpage/log_page_fixture.h"
#include "platform/vb/date_value.h"
#include "support/test_dxcc_database.h"

namespace vellumar::test {
namespace {

constexpr const char* kQuestion =
    "clear the progress table and then rebuild by scanning every QSO in the log?";

using Notice = std::pair<VellumModule::SiblingNotice, std::string>;

// Watches a bar: every Value it is given, and whether it is visible meanwhile.
class BarWatch final : public ui::ControlObserver {
 public:
  explicit BarWatch(ui::ProgressBar& bar) : bar_(bar) { bar.AddObserver(this); }
  ~BarWatch() override { bar_.RemoveObserver(this); }
  void PropertyChanged(ui::Control&, ui::Property property) override {
    if (property == ui::Property::Value) values.push_back(bar_.Value());
    if (property == ui::Property::Visible) shown.push_back(bar_.Visible());
  }
  std::vector<double> values;
  std::vector<bool> shown;

 private:
  ui::ProgressBar& bar_;
};

class RecomputeTest : public LogPageTest {
 protected:
  RecomputeTest() {
    app->module.OnSiblingNotice = [this](VellumModule::SiblingNotice n, const std::string& t) {
      notices.emplace_back(n, t);
    };
  }
  VellumModule& module() { return app->module; }

  // A QSO written straight into the file, as another program or an old version would have left
  // it; the Log Page Display reads it after its requery.
  void AddRawQSO(const std::string& call, const std::string& dxccId, const std::string& band,
                 const std::string& mode, const std::string& qslRcvd = "",
                 const std::string& broken = "") {
    db::Recordset rs = module().LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.AddNew();
    rs.Fields("Call").SetValue(vb::Variant(call));
    rs.Fields("DXCCID").SetValue(vb::Variant(dxccId));
    rs.Fields("Band").SetValue(vb::Variant(band));
    rs.Fields("Mode").SetValue(vb::Variant(mode));
    rs.Fields("QSL_Rcvd").SetValue(vb::Variant(qslRcvd));
    rs.Fields("BROKEN").SetValue(vb::Variant(broken));
    rs.Fields("QSO_Begin").SetValue(vb::Variant(vb::DateSerial(2024, 1, 1)));
    rs.Update();
  }
  void RefreshDisplay() {
    log().Requery();
    module().EnableLogActions(true);
  }
  void RecomputeAnswering(int answer) {
    h.desktop.ExpectMsgBox(kQuestion, answer).WithTitle("Vellumar").WithButtons(ui::vbYesNo);
    main().ReComputeCmd.UserClick();
  }
  long ProgressRows() {
    db::Recordset rs = module().LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    if (rs.BOF() && rs.EOF_()) return 0;
    rs.MoveLast();
    return rs.RecordCount();
  }

  std::vector<Notice> notices;
};

TEST_F(RecomputeTest, NoLeavesTheTableAsItIs) {
  main().NewCmd.UserClick();
  Type(1, "K2AA");
  Enter(1);
  Pick(0, "20M");
  Pick(5, "CW");
  main().SaveCmd.UserClick();
  ASSERT_EQ(Letter("291", "20M"), "W");
  // A letter no QSO supports: a recompute would take it away.
  {
    db::Recordset rs = module().LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '223'");
    rs.Edit();
    rs.Fields("CW").SetValue(vb::Variant("F"));
    rs.Update();
  }
  db::Recordset before = main().ProgressPosition.Recordset();
  notices.clear();
  RecomputeAnswering(ui::vbNo);
  EXPECT_FALSE(module().RecomputeRunning);
  EXPECT_EQ(Letter("291", "20M"), "W");
  EXPECT_EQ(Letter("223", "CW"), "F");
  EXPECT_TRUE(main().ProgressPosition.Recordset() == before);
  EXPECT_TRUE(notices.empty());
}

TEST_F(RecomputeTest, ADeletedQSOsStatusesComeDownOnlyByARecompute) {
  AddRawQSO("K2AA", "291", "20m", "CW", "Y");
  AddRawQSO("G3AA", "223", "40m", "SSB", "");
  RefreshDisplay();
  // Counted as saved QSOs would have been.
  RecomputeAnswering(ui::vbYes);
  EXPECT_EQ(Letter("291", "20M"), "F");
  EXPECT_EQ(Letter("291", "CW"), "F");
  EXPECT_EQ(Letter("223", "40M"), "W");
  EXPECT_EQ(Letter("223", "PHONE"), "W");
  // The G QSO goes; its letters stay until the next recompute.
  db::Recordset rs = module().LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
  rs.FindFirst("Call = 'G3AA'");
  rs.Delete();
  RefreshDisplay();
  EXPECT_EQ(Letter("223", "40M"), "W");
  RecomputeAnswering(ui::vbYes);
  EXPECT_EQ(Letter("223", "40M"), "");
  EXPECT_EQ(Letter("223", "PHONE"), "");
  EXPECT_EQ(Letter("291", "20M"), "F");
}

TEST_F(RecomputeTest, TheWalkShowsItsBarYieldsOncePerQSOAndHoldsRecomputeRunning) {
  for (const char* call : {"K2AA", "K3BB", "G4CC", "VP2EA"}) LogQSO(call);
  BarWatch bar(main().RecomputeProgress);
  // Work posted at each yield sees the state of the walk, then posts itself for the next one.
  std::vector<double> barAtYield;
  std::vector<bool> running, gridShown, busyPointer;
  std::function<void()> watch = [&] {
    barAtYield.push_back(main().RecomputeProgress.Value());
    running.push_back(module().RecomputeRunning);
    gridShown.push_back(main().ProgressGrid.Visible());
    busyPointer.push_back(main().MousePointer() == ui::vbHourglass);
    if (module().RecomputeRunning) h.loop.Post(watch);
  };
  h.desktop.ExpectMsgBox(kQuestion, ui::vbYes).Then([&] { h.loop.Post(watch); });
  main().ReComputeCmd.UserClick();

  EXPECT_EQ(main().RecomputeProgress.Min, 0);
  EXPECT_EQ(main().RecomputeProgress.Max, 4);
  EXPECT_EQ(bar.values, (std::vector<double>{1, 2, 3, 4}));
  EXPECT_EQ(bar.shown, (std::vector<bool>{true, false}));
  // One yield per QSO, after its bar step; the panel's moves to the first QSO and back to the
  // last yield once each as their lists follow.
  EXPECT_EQ(barAtYield, (std::vector<double>{0, 1, 2, 3, 4, 4}));
  EXPECT_EQ(running, std::vector<bool>(6, true));
  EXPECT_EQ(gridShown, std::vector<bool>(6, false));
  EXPECT_EQ(busyPointer, std::vector<bool>(6, true));
  EXPECT_FALSE(module().RecomputeRunning);
  EXPECT_TRUE(main().ProgressGrid.Visible());
  EXPECT_FALSE(main().RecomputeProgress.Visible());
  EXPECT_EQ(main().MousePointer(), ui::vbDefault);
  const std::string path = h.LogPath("K1ABC.vdb");
  EXPECT_EQ(notices, (std::vector<Notice>{{VellumModule::SiblingNotice::kAtlasineNewLog, path},
                                          {VellumModule::SiblingNotice::kClustrineNewLog, path}}));
  // A second recompute starts its bar from 0 again.
  h.desktop.ExpectMsgBox(kQuestion, ui::vbYes);
  main().ReComputeCmd.UserClick();
  EXPECT_EQ(bar.values, (std::vector<double>{1, 2, 3, 4, 0, 1, 2, 3, 4}));
}

TEST_F(RecomputeTest, AnEmptyLogRefillsTheTableWithEmptyStatusesAndStillTellsTheSiblings) {
  // A stale letter of a log whose QSOs are gone.
  {
    db::Recordset rs = module().LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '223'");
    rs.Edit();
    rs.Fields("CW").SetValue(vb::Variant("F"));
    rs.Update();
  }
  BarWatch bar(main().RecomputeProgress);
  h.desktop.ExpectMsgBox(kQuestion, ui::vbYes);
  main().RecomputeCmd_Click();  // the button is disabled on an empty log; the handler runs
  EXPECT_EQ(ProgressRows(), 3);
  for (const char* code : {"291", "223", "12"})
    for (int column = kProgressFirstBand; column < kProgressColumnCount; ++column)
      EXPECT_EQ(Letter(code, BandProgressName(column).empty()
                                 ? std::vector<std::string>{"PHONE", "CW", "RTTY",
                                                            "PSK"}[column - kProgressPhone]
                                 : BandProgressName(column)),
                "");
  EXPECT_TRUE(bar.values.empty());  // the bar never advances
  EXPECT_EQ(main().RecomputeProgress.Value(), 0);
  EXPECT_EQ(main().RecomputeProgress.Max, 0);
  ASSERT_EQ(notices.size(), 2u);
  EXPECT_EQ(notices[0].first, VellumModule::SiblingNotice::kAtlasineNewLog);
  EXPECT_EQ(notices[1].first, VellumModule::SiblingNotice::kClustrineNewLog);
  EXPECT_FALSE(module().RecomputeRunning);
}

TEST_F(RecomputeTest, UnknownAndEmptyCodesBecomeBrokenAndAKnownOneLosesTheMark) {
  AddRawQSO("K2AA", "291", "20m", "CW", "", "Y");
  AddRawQSO("X1XX", "999", "20m", "CW");
  AddRawQSO("X2XX", "", "20m", "CW");
  RefreshDisplay();
  RecomputeAnswering(ui::vbYes);
  EXPECT_EQ(FileValue("K2AA", "BROKEN"), "");
  EXPECT_EQ(FileValue("X1XX", "BROKEN"), "Y");
  EXPECT_EQ(FileValue("X2XX", "BROKEN"), "Y");
  EXPECT_EQ(Letter("291", "20M"), "W");
}

TEST_F(RecomputeTest, ACodeTheCriteriaCantTakeIsReportedAndTheWalkGoesOn) {
  AddRawQSO("X1XX", "2'9", "20m", "CW");
  AddRawQSO("G3AA", "223", "15m", "SSB", "R");
  RefreshDisplay();
  RecomputeAnswering(ui::vbYes);
  EXPECT_NE(h.ErrorLogText().find("VellumModule.UpdateProgress"), std::string::npos);
  EXPECT_EQ(Letter("223", "15M"), "R");
  EXPECT_FALSE(module().RecomputeRunning);
}

TEST_F(RecomputeTest, AFilterInForceLimitsTheWalkToTheQSOsItShows) {
  AddRawQSO("K2AA", "291", "20m", "CW", "Y");
  AddRawQSO("G3AA", "223", "40m", "SSB", "Y");
  RefreshDisplay();
  RecomputeAnswering(ui::vbYes);
  ASSERT_EQ(Letter("291", "20M"), "F");
  // The display filtered to the G station, as a log filter leaves the module's recordsets.
  module().LogRecordset.SetFilter("Call = 'G3AA'");
  module().LogView = module().LogRecordset.OpenRecordset();
  main().LogPosition.SetRecordset(module().LogView);
  BarWatch bar(main().RecomputeProgress);
  RecomputeAnswering(ui::vbYes);
  EXPECT_EQ(main().RecomputeProgress.Max, 1);
  EXPECT_EQ(bar.values, (std::vector<double>{0, 1}));
  EXPECT_EQ(Letter("223", "40M"), "F");
  // The unfiltered QSO's statuses are lost until a recompute without the filter.
  EXPECT_EQ(Letter("291", "20M"), "");
  EXPECT_EQ(Letter("291", "CW"), "");
  // The display stands on its last QSO afterwards.
  EXPECT_EQ(box(1).Text(), "G3AA");
}

TEST_F(RecomputeTest, TheDisplaysRowMovesWithTheWalkAndAnUnsavedEditIsDropped) {
  LogQSO("K2AA");
  LogQSO("K3BB");
  main().LogFirstCmd.UserClick();
  ASSERT_EQ(box(1).Text(), "K2AA");
  Type(12, "Boston");
  ASSERT_TRUE(module().RecordModified());
  RecomputeAnswering(ui::vbYes);
  EXPECT_FALSE(module().RecordModified());
  EXPECT_EQ(box(1).Text(), "K3BB");  // the last QSO, where the walk left the display
  EXPECT_EQ(FileValue("K2AA", "QTH"), "");
}

TEST_F(RecomputeTest, TheGridIsReboundToFreshRecordsetsAndFormatted) {
  LogQSO("K2AA");
  db::Recordset old = main().ProgressPosition.Recordset();
  RecomputeAnswering(ui::vbYes);
  db::Recordset& now = main().ProgressPosition.Recordset();
  EXPECT_FALSE(now == old);
  EXPECT_TRUE(now == module().ProgressView);
  EXPECT_EQ(main().ProgressGrid.DataSource(), &main().ProgressPosition);
  EXPECT_EQ(main().ProgressGrid.Columns().size(), 18u);
  // The panel's prefix list was filled again: an empty item, then the three entities.
  EXPECT_EQ(combo(2).ListCount(), 4);
}

TEST_F(RecomputeTest, TheMapProgramsEntityIsShownAndSentItsProgress) {
  h.settings.SaveSetting("Atlasine", "General", "CurrentDXCCID", "223");
  AddRawQSO("G3AA", "223", "40m", "CW", "Y");
  AddRawQSO("K2AA", "291", "20m", "SSB");
  RefreshDisplay();
  RecomputeAnswering(ui::vbYes);
  EXPECT_EQ(main().ProgressPosition.Recordset().Fields("CountryCode").Value().ToStringOrEmpty(),
            "223");
  ASSERT_EQ(notices.size(), 3u);
  EXPECT_EQ(notices[0], (Notice{VellumModule::SiblingNotice::kAtlasineUpdateProgress,
                                "223|||F||||||||||F|||"}));
  EXPECT_EQ(notices[1].first, VellumModule::SiblingNotice::kAtlasineNewLog);
  EXPECT_EQ(notices[2].first, VellumModule::SiblingNotice::kClustrineNewLog);
}

TEST_F(RecomputeTest, UpdateAtlasineProgressMovesTheGridWithNoSiblingLinked) {
  LogQSO("K2AA");
  h.settings.SaveSetting("Atlasine", "General", "CurrentDXCCID", "12");
  module().UpdateAtlasineProgress();
  EXPECT_EQ(main().ProgressPosition.Recordset().Fields("Prefix").Value().ToStringOrEmpty(), "VP2E");
  ASSERT_EQ(notices.size(), 1u);
  EXPECT_EQ(notices[0].second, "12|" + std::string(15, '|'));
  // A code the table hasn't, or none: nothing is sent.
  h.settings.SaveSetting("Atlasine", "General", "CurrentDXCCID", "777");
  module().UpdateAtlasineProgress();
  h.settings.SaveSetting("Atlasine", "General", "CurrentDXCCID", "");
  module().UpdateAtlasineProgress();
  EXPECT_EQ(notices.size(), 1u);
}

TEST_F(RecomputeTest, AnImportEndsByShowingAndSendingTheMapProgramsEntity) {
  h.settings.SaveSetting("Atlasine", "General", "CurrentDXCCID", "223");
  const std::string path = h.dir.Join("in.adi");
  test::WriteFileText(
      path, "<call:5>G3ABC<qso_date:8>20240302<time_on:4>1300<band:3>40M<mode:2>CW<eor>\n");
  h.desktop.ExpectOpenFile(path);
  main().ImportCmd.UserClick();
  EXPECT_EQ(main().ProgressPosition.Recordset().Fields("CountryCode").Value().ToStringOrEmpty(),
            "223");
  ASSERT_FALSE(notices.empty());
  EXPECT_EQ(notices.back(), (Notice{VellumModule::SiblingNotice::kAtlasineUpdateProgress,
                                    "223|||W||||||||||W|||"}));
}

TEST_F(RecomputeTest, ClosingTheWindowDuringTheWalkEndsItAndKeepsWhatWasCounted) {
  AddRawQSO("K2AA", "291", "20m", "CW", "Y");
  AddRawQSO("G3AA", "223", "40m", "SSB", "Y");
  AddRawQSO("G4BB", "223", "15m", "SSB", "Y");
  RefreshDisplay();
  const std::string path = h.LogPath("K1ABC.vdb");
  // Nothing refuses the close; it comes at the yield after the first QSO.
  std::function<void()> closeAfterFirst = [&] {
    if (main().RecomputeProgress.Value() < 1) return h.loop.Post(closeAfterFirst);
    EXPECT_TRUE(app->CloseMainWindow(ui::vbFormControlMenu));
  };
  h.desktop.ExpectMsgBox(kQuestion, ui::vbYes).Then([&] { h.loop.Post(closeAfterFirst); });
  main().ReComputeCmd.UserClick();
  EXPECT_EQ(h.exitCode, 0);
  EXPECT_TRUE(app->Ended());
  // The table as the walk left it: the first QSO counted, the others not.
  db::Database file = db::DBEngine::Workspaces(0).OpenDatabase(path);
  db::Recordset rs = file.OpenRecordset("Progress", db::dbOpenDynaset);
  rs.FindFirst("CountryCode = '291'");
  EXPECT_EQ(rs.Fields("20M").Value().ToStringOrEmpty(), "F");
  rs.FindFirst("CountryCode = '223'");
  EXPECT_EQ(rs.Fields("40M").Value().ToStringOrEmpty(), "");
  EXPECT_EQ(rs.Fields("15M").Value().ToStringOrEmpty(), "");
  file.Close();
}

TEST_F(RecomputeTest, AWriteOfAnotherEventDuringTheWalkReachesTheFileAtOnce) {
  for (const char* call : {"K2AA", "K3BB", "G4CC"}) LogQSO(call);
  // Another reader of the file sees only what is committed.
  db::Database other = db::DBEngine::Workspaces(0).OpenDatabase(h.LogPath("K1ABC.vdb"));
  auto seenByOther = [&](const std::string& call) {
    db::Recordset rs = other.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.FindFirst("Call = '" + call + "'");
    return !rs.NoMatch();
  };
  bool seenAfterYield = false;
  std::function<void()> writeAfterFirst = [&] {
    if (main().RecomputeProgress.Value() < 1) return h.loop.Post(writeAfterFirst);
    // An event of the yield writes a row, as a save does.
    db::Recordset rs = module().LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.AddNew();
    rs.Fields("Call").SetValue(vb::Variant("N0NEW"));
    rs.Update();
    h.loop.Post([&] { seenAfterYield = seenByOther("N0NEW"); });
  };
  h.desktop.ExpectMsgBox(kQuestion, ui::vbYes).Then([&] { h.loop.Post(writeAfterFirst); });
  main().ReComputeCmd.UserClick();
  EXPECT_TRUE(seenAfterYield);
  EXPECT_FALSE(module().RecomputeRunning);
  EXPECT_EQ(main().RecomputeProgress.Value(), 3);  // the walk went on to its end
  other.Close();
}

TEST_F(RecomputeTest, AShutdownAskedForDuringTheWalkEndsIt) {
  for (const char* call : {"K2AA", "K3BB", "G4CC"}) LogQSO(call);
  h.desktop.ExpectMsgBox(kQuestion, ui::vbYes).Then([&] {
    h.loop.Post([&] {
      main().ShutdownTimer.SetEnabled(true);
      h.loop.Elapse(5000);  // due at the next yield
    });
  });
  main().ReComputeCmd.UserClick();
  EXPECT_EQ(h.exitCode, 0);
  EXPECT_TRUE(module().RecomputeRunning);  // the walk left without its last steps
  EXPECT_FALSE(module().LogOpen());
}

TEST_F(RecomputeTest, ADatabaseErrorEndsTheRecomputeWithRunningAndHourglassLeftSet) {
  LogQSO("K2AA");
  // The table is gone from under the open recordsets.
  module().LogDatabase.TableDefs().Delete("Progress");
  RecomputeAnswering(ui::vbYes);
  EXPECT_NE(h.ErrorLogText().find("VellumModule.RecomputeProgress"), std::string::npos)
      << h.ErrorLogText();
  EXPECT_TRUE(module().RecomputeRunning);
  EXPECT_EQ(main().MousePointer(), ui::vbHourglass);
}

TEST_F(RecomputeTest, ReentryWhileTheQuestionIsOpenDoesNothing) {
  LogQSO("K2AA");
  h.desktop.ExpectMsgBox(kQuestion, ui::vbNo).Then([&] { main().RecomputeCmd_Click(); });
  main().ReComputeCmd.UserClick();  // a second question would fail the scripted desktop
  EXPECT_FALSE(main().RecomputeCmdBusy);
}

// ---- The DXCC database changes under a log: a fresh program on the same log ----

class RemovedEntityTest : public ::testing::Test {
 protected:
  void StartWith(bool withAnguilla, bool anguillaDeleted = false) {
    if (h.app) {
      h.app->CloseMainWindow(ui::vbFormControlMenu);
      h.app.reset();
    }
    const std::string dxcc = h.DataPath() + "/Databases/DXCC.vdb";
    std::filesystem::create_directories(h.DataPath() + "/Databases");
    std::filesystem::remove(dxcc);
    std::vector<TestDXCCRow> entities = {{"K", 291, "United States", std::nullopt},
                                         {"G", 223, "England", std::nullopt}};
    if (withAnguilla)
      entities.push_back({"VP2E", 12, "Anguilla",
                          anguillaDeleted ? std::optional<double>(40000.0) : std::nullopt});
    CreateTestDXCCDatabase(dxcc, entities,
                           {{"K", "K", "K"}, {"G", "G", "G"}, {"VP2E", "VP2E", "VP2E"}},
                           {{"K", "NA", 5, 8}, {"G", "EU", 14, 27}, {"VP2E", "NA", 8, 11}});
    h.Start();
    h.loop.Advance(300);
    h.app->main.Show();
  }
  void Recompute() {
    h.desktop.ExpectMsgBox(kQuestion, ui::vbYes);
    h.app->main.RecomputeCmd_Click();
  }
  std::string Read(const std::string& table, const std::string& where, const std::string& field) {
    db::Recordset rs = h.app->module.LogDatabase.OpenRecordset(table, db::dbOpenDynaset);
    rs.FindFirst(where);
    if (rs.NoMatch()) return "<none>";
    return rs.Fields(field).Value().ToStringOrEmpty();
  }
  ProgramHarness h{ProgramHarness::DXCC::kSmall};
};

TEST_F(RemovedEntityTest, AQSOOfARemovedEntityBecomesBrokenAndLosesTheMarkWhenItComesBack) {
  h.SeedReturningOperator();
  StartWith(true);
  {
    db::Recordset rs = h.app->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.AddNew();
    rs.Fields("Call").SetValue(vb::Variant("VP2EA"));
    rs.Fields("DXCCID").SetValue(vb::Variant("12"));
    rs.Fields("Band").SetValue(vb::Variant("20m"));
    rs.Fields("Mode").SetValue(vb::Variant("CW"));
    rs.Fields("QSO_Begin").SetValue(vb::Variant(vb::DateSerial(2024, 1, 1)));
    rs.Update();
  }
  h.app->main.LogPosition.Recordset().Requery();
  Recompute();
  ASSERT_EQ(Read("Progress", "CountryCode = '12'", "20M"), "W");
  ASSERT_EQ(Read("QSOs", "Call = 'VP2EA'", "BROKEN"), "");

  StartWith(false);  // a DXCC database without Anguilla
  Recompute();
  EXPECT_EQ(Read("Progress", "CountryCode = '12'", "20M"), "<none>");
  EXPECT_EQ(Read("QSOs", "Call = 'VP2EA'", "BROKEN"), "Y");

  StartWith(true, true);  // back, now as a deleted entity
  Recompute();
  EXPECT_EQ(Read("Progress", "CountryCode = '12'", "20M"), "W");
  EXPECT_EQ(Read("Progress", "CountryCode = '12'", "Valid"), "False");
  EXPECT_EQ(Read("QSOs", "Call = 'VP2EA'", "BROKEN"), "");
}

// ---- The Check Progress grid and the notices of OpenLog ----

TEST(CheckProgressGrid, OpenLogFormatsTheGridAndTellsTheSiblingsOfTheLog) {
  ProgramHarness h;
  h.SeedReturningOperator();
  h.Build();
  std::vector<Notice> notices;
  h.app->module.OnSiblingNotice = [&](VellumModule::SiblingNotice n, const std::string& t) {
    notices.emplace_back(n, t);
  };
  h.Start();
  const std::string path = h.LogPath("K1ABC.vdb");
  EXPECT_EQ(notices, (std::vector<Notice>{{VellumModule::SiblingNotice::kAtlasineNewLog, path},
                                          {VellumModule::SiblingNotice::kClustrineNewLog, path}}));
  VellumMain& main = h.app->main;
  const std::vector<ui::GridColumn>& columns = main.ProgressGrid.Columns();
  ASSERT_EQ(columns.size(), 18u);
  EXPECT_FALSE(columns[0].Visible);
  EXPECT_FALSE(columns[2].Visible);
  EXPECT_EQ(columns[1].Caption, "Prefix");
  EXPECT_EQ(columns[1].Order, 1);
  const char* captions[] = {"  PH", "  CW", "RTTY", " PSK"};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(columns[14 + i].Order, 2 + i);
    EXPECT_EQ(columns[14 + i].Caption, captions[i]);
  }
  EXPECT_EQ(columns[12].Caption, " 6M");
  EXPECT_EQ(columns[13].Caption, " 2M");
  EXPECT_EQ(columns[3].Caption, "160M");
  EXPECT_GT(columns[3].Order, 5);
  const ui::Font& font = main.Font();
  const std::vector<int> sizes = {3, 6, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  for (size_t i = 0; i < columns.size(); ++i) {
    EXPECT_EQ(columns[i].Alignment, ui::dbgRight) << i;
    EXPECT_GE(columns[i].Width, h.desktop.TextWidth(font, columns[i].Caption + "   ")) << i;
    EXPECT_GE(columns[i].Width, sizes[i] * h.desktop.TextWidth(font, "A")) << i;
    EXPECT_EQ(columns[i].Width, std::max(h.desktop.TextWidth(font, columns[i].Caption + "   "),
                                         sizes[i] * h.desktop.TextWidth(font, "A")))
        << i;
  }
  // Every place from 0 to 17 is taken once.
  std::vector<int> places;
  for (const auto& c : columns) places.push_back(c.Order);
  std::sort(places.begin(), places.end());
  for (int i = 0; i < 18; ++i) EXPECT_EQ(places[static_cast<size_t>(i)], i);
}

TEST(CheckProgressGrid, TheTabsControlsHaveTheirTexts) {
  ProgramHarness h;
  h.SeedReturningOperator();
  VellumMain& main = h.Start().main;
  EXPECT_EQ(main.RecomputeProgress.ToolTipText(), "Progress of Recompute operation");
  EXPECT_FALSE(main.RecomputeProgress.Visible());
  EXPECT_EQ(main.ReComputeCmd.Caption(), "Recompute");
  EXPECT_EQ(main.ReComputeCmd.ToolTipText(),
            "clear the progress table, and then recompute the progress table by evaluating every "
            "QSO in the log");
  EXPECT_EQ(main.ConfigProgressCmd.Caption(), "Config");
  EXPECT_EQ(main.HelpProgressCmd.Caption(), "Help");
  main.ConfigProgressCmd.UserClick();
  EXPECT_TRUE(h.setup().Visible());
}

}  // namespace
}  // namespace vellumar::test
