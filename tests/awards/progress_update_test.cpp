// Counting QSOs into the Progress table and reading an entity's status back.
#include "awards/progress_update.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "awards/progress_columns.h"
#include "logstore/log_schema.h"
#include "platform/db/database.h"
#include "platform/vb/error.h"
#include "support/frame_harness.h"

namespace vellumar {
namespace {

using QSOFields = std::map<std::string, std::string>;

class ProgressUpdateTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string logPath = harness.dir.Join("LOG.vdb");
    logstore::LogSchema schema(harness.common.errorLog(), [](db::Database&) {});
    ASSERT_TRUE(schema.CreateLog(logPath));
    log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
    progressRecordset = log.OpenRecordset("Progress", db::dbOpenDynaset);
    AddEntity("291", "K", true);
    AddEntity("1", "VE", true);
    AddEntity("230", "DL", true);
    AddEntity("8", "VQ9-A", false);
    logRecordset = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    // The view as the program opens it.
    progressRecordset.SetSort("Prefix");
    progressView = progressRecordset.OpenRecordset();
  }

  void TearDown() override { log.Close(); }

  void AddEntity(const std::string& code, const std::string& prefix, bool valid) {
    progressRecordset.AddNew();
    progressRecordset.Fields("CountryCode").SetValue(vb::Variant(code));
    progressRecordset.Fields("Prefix").SetValue(vb::Variant(prefix));
    progressRecordset.Fields("Valid").SetValue(vb::Variant(valid));
    for (int column = kProgressFirstBand; column < kProgressColumnCount; ++column)
      progressRecordset.Fields(column).SetValue(vb::Variant(std::string()));
    progressRecordset.Update();
  }

  // Adds a QSO and leaves the log recordset standing on it.
  void AddQSO(const QSOFields& fields) {
    logRecordset.AddNew();
    for (const auto& [name, value] : fields)
      logRecordset.Fields(name).SetValue(vb::Variant(value));
    logRecordset.Update();
    logRecordset.SetBookmark(logRecordset.LastModified());
  }

  void Count(const QSOFields& fields, bool notify = false) {
    AddQSO(fields);
    UpdateProgress(logRecordset, progressView, notify, notifications,
                   [&](int n, const std::string& w) { reports.push_back(std::to_string(n) + " " + w); });
  }

  // The letter of one column of an entity, read afresh.
  std::string Letter(const std::string& prefix, const std::string& column) {
    db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("Prefix = '" + prefix + "'");
    EXPECT_FALSE(rs.NoMatch()) << prefix;
    if (rs.NoMatch()) return "<none>";
    return rs.Fields(column).Value().ToStringOrEmpty();
  }

  // All fifteen status letters of an entity, each followed by "|".
  std::string Letters(const std::string& prefix) {
    std::string out;
    for (int column = kProgressFirstBand; column < kProgressColumnCount; ++column)
      out += Letter(prefix, db::Recordset(progressRecordset).Fields(column).Name()) + "|";
    return out;
  }

  void SetLetter(const std::string& prefix, const std::string& column, const std::string& letter) {
    db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("Prefix = '" + prefix + "'");
    ASSERT_FALSE(rs.NoMatch());
    rs.Edit();
    rs.Fields(column).SetValue(vb::Variant(letter));
    rs.Update();
  }

  std::string Broken() { return logRecordset.Fields("BROKEN").Value().ToStringOrEmpty(); }

  test::FrameHarness harness;
  db::Database log;
  db::Recordset progressRecordset;  // the central module's dynaset on Progress
  db::Recordset progressView;       // its view sorted by Prefix
  db::Recordset logRecordset;
  ProgressNotifications notifications;
  std::vector<std::string> reports;
};

QSOFields QSO(const std::string& dxccId, const std::string& band, const std::string& mode,
              const std::string& qslRcvd) {
  return {{"Call", "W1AW"}, {"DXCCPrefix", "K"}, {"DXCCID", dxccId},
          {"Band", band},   {"Mode", mode},      {"QSL_Rcvd", qslRcvd}};
}

const std::string kEmptyLetters = "|||||||||||||||";

// The letters and their strengths.

TEST(ProgressStrengthTest, LettersAndQSLRcvd) {
  EXPECT_EQ(ProgressLetterStrength(""), 0);
  EXPECT_EQ(ProgressLetterStrength("W"), 1);
  EXPECT_EQ(ProgressLetterStrength("r"), 2);
  EXPECT_EQ(ProgressLetterStrength("F"), 3);
  EXPECT_EQ(ProgressLetterStrength("v"), 4);
  EXPECT_EQ(ProgressLetterStrength("Q"), 0);
  EXPECT_EQ(ProgressLetterStrength("Z"), 0);
  EXPECT_EQ(QSLRcvdStrength(""), 1);
  EXPECT_EQ(QSLRcvdStrength(" "), 1);
  EXPECT_EQ(QSLRcvdStrength("n"), 1);
  EXPECT_EQ(QSLRcvdStrength("R"), 2);
  EXPECT_EQ(QSLRcvdStrength("y"), 3);
  EXPECT_EQ(QSLRcvdStrength("V"), 4);
  EXPECT_EQ(QSLRcvdStrength("I"), 0);
  EXPECT_EQ(QSLRcvdStrength("X"), 0);
  EXPECT_EQ(QSLRcvdStrength("Q"), 0);
}

// UpdateProgressRecord on its own.

TEST_F(ProgressUpdateTest, RecordRaisesOnlyToAGreaterStrength) {
  progressView.FindFirst("Prefix = 'DL'");
  ASSERT_FALSE(progressView.NoMatch());
  progressView.Edit();
  UpdateProgressRecord(progressView, 1, -1);  // no column: nothing
  UpdateProgressRecord(progressView, 2, 7);
  UpdateProgressRecord(progressView, 1, 7);  // lower: stays R
  UpdateProgressRecord(progressView, 0, 8);  // strength 0 writes nothing
  UpdateProgressRecord(progressView, 5, 9);  // out of range writes nothing
  UpdateProgressRecord(progressView, 4, 15);
  UpdateProgressRecord(progressView, 4, 17);
  UpdateProgressRecord(progressView, 3, 14);
  progressView.Update();
  EXPECT_EQ(Letter("DL", "20M"), "R");
  EXPECT_EQ(Letter("DL", "17M"), "");
  EXPECT_EQ(Letter("DL", "15M"), "");
  EXPECT_EQ(Letter("DL", "CW"), "V");
  EXPECT_EQ(Letter("DL", "PSK"), "F");  // not verified by the ARRL
  EXPECT_EQ(Letter("DL", "PHONE"), "F");
}

TEST_F(ProgressUpdateTest, RecordReadsTheCurrentLetterUpperCased) {
  SetLetter("DL", "20M", "f");
  progressView.Requery();
  progressView.FindFirst("Prefix = 'DL'");
  progressView.Edit();
  UpdateProgressRecord(progressView, 2, 7);  // "f" is F: R is no raise
  progressView.Update();
  EXPECT_EQ(Letter("DL", "20M"), "f");
}

// Edge cases of counting.

TEST_F(ProgressUpdateTest, FirstQSOWorkedThenConfirmedThenUnchanged) {
  Count(QSO("291", "20m", "SSB", ""));
  EXPECT_EQ(Letter("K", "20M"), "W");
  EXPECT_EQ(Letter("K", "PHONE"), "W");
  Count(QSO("291", "20m", "SSB", "Y"));
  EXPECT_EQ(Letter("K", "20M"), "F");
  EXPECT_EQ(Letter("K", "PHONE"), "F");
  Count(QSO("291", "20m", "SSB", "N"));
  EXPECT_EQ(Letter("K", "20M"), "F");
  EXPECT_EQ(Letter("K", "PHONE"), "F");
  EXPECT_EQ(Letters("K"), "||||F|||||||F||||");
  EXPECT_EQ(Letters("VE"), kEmptyLetters);  // other entities untouched
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, RequestedOverWorkedConfirmedOverRequestedVerifiedOverConfirmed) {
  Count(QSO("1", "40m", "CW", " "));
  EXPECT_EQ(Letter("VE", "40M"), "W");
  Count(QSO("1", "40m", "CW", "R"));
  EXPECT_EQ(Letter("VE", "40M"), "R");
  EXPECT_EQ(Letter("VE", "CW"), "R");
  Count(QSO("1", "40m", "CW", "Y"));
  EXPECT_EQ(Letter("VE", "40M"), "F");
  EXPECT_EQ(Letter("VE", "CW"), "F");
  Count(QSO("1", "40m", "CW", "V"));
  EXPECT_EQ(Letter("VE", "40M"), "V");
  EXPECT_EQ(Letter("VE", "CW"), "V");
  Count(QSO("1", "40m", "CW", "y"));  // no lowering
  EXPECT_EQ(Letter("VE", "40M"), "V");
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, QSLRcvdIOnANewEntityClearsBrokenAndRaisesNothing) {
  QSOFields fields = QSO("230", "20m", "CW", "I");
  fields["BROKEN"] = "Y";
  Count(fields);
  EXPECT_EQ(Letters("DL"), kEmptyLetters);
  EXPECT_EQ(Broken(), "");
  EXPECT_FALSE(logRecordset.Fields("BROKEN").Value().IsNull());
  EXPECT_EQ(logRecordset.EditMode(), db::dbEditNone);  // stored
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, LowerCaseBrokenIsClearedToo) {
  QSOFields fields = QSO("230", "20m", "CW", "X");
  fields["BROKEN"] = "y";
  Count(fields);
  EXPECT_EQ(Broken(), "");
}

TEST_F(ProgressUpdateTest, AVerifiedBPSKQSOCountsInPSKAndRTTY) {
  Count(QSO("230", "15m", "BPSK", "V"));
  EXPECT_EQ(Letter("DL", "PSK"), "F");
  EXPECT_EQ(Letter("DL", "RTTY"), "V");
  EXPECT_EQ(Letter("DL", "15M"), "V");
  EXPECT_EQ(Letter("DL", "CW"), "");
  EXPECT_EQ(Letter("DL", "PHONE"), "");
}

TEST_F(ProgressUpdateTest, AnUnknownModeRaisesTheBandOnly) {
  Count(QSO("230", "10m", "SSTV", ""));
  EXPECT_EQ(Letters("DL"), "||||||||W|||||||");
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, AnUnknownBandRaisesTheModeOnly) {
  Count(QSO("230", "70cm", "FM", "R"));
  EXPECT_EQ(Letters("DL"), "|||||||||||R||||");
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, BandAndModeCompareWithoutCase) {
  Count(QSO("230", "20M", "cw", ""));
  EXPECT_EQ(Letter("DL", "20M"), "W");
  EXPECT_EQ(Letter("DL", "CW"), "W");
}

TEST_F(ProgressUpdateTest, AQueuedCardIsReplacedByAnyCountedQSO) {
  SetLetter("K", "20M", "Q");
  SetLetter("K", "CW", "Q");
  SetLetter("K", "PHONE", "Q");
  Count(QSO("291", "20m", "CW", "N"));
  EXPECT_EQ(Letter("K", "20M"), "W");
  EXPECT_EQ(Letter("K", "CW"), "W");
  EXPECT_EQ(Letter("K", "PHONE"), "Q");  // not this QSO's column
  SetLetter("K", "40M", "Q");
  Count(QSO("291", "40m", "SSB", "R"));
  EXPECT_EQ(Letter("K", "40M"), "R");
  EXPECT_EQ(Letter("K", "PHONE"), "R");
  SetLetter("K", "80M", "Q");
  Count(QSO("291", "80m", "SSB", "I"));  // strength 0: no change
  EXPECT_EQ(Letter("K", "80M"), "Q");
}

// QSOs that can't be counted.

TEST_F(ProgressUpdateTest, AnEmptyDXCCIDMarksTheQSOBroken) {
  Count(QSO("", "20m", "CW", "Y"));
  EXPECT_EQ(Broken(), "Y");
  EXPECT_EQ(logRecordset.EditMode(), db::dbEditNone);
  for (const char* prefix : {"K", "VE", "DL", "VQ9-A"}) EXPECT_EQ(Letters(prefix), kEmptyLetters);
  // Stored in the file, not only in the recordset.
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  rs.MoveFirst();
  EXPECT_EQ(rs.Fields("BROKEN").Value().ToStringOrEmpty(), "Y");
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, ANullDXCCIDMarksTheQSOBroken) {
  Count({{"Call", "W1AW"}, {"Band", "20m"}, {"Mode", "CW"}});
  EXPECT_EQ(Broken(), "Y");
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, AnUnknownDXCCIDMarksTheQSOBroken) {
  Count(QSO("999", "20m", "CW", "Y"));
  EXPECT_EQ(Broken(), "Y");
  for (const char* prefix : {"K", "VE", "DL", "VQ9-A"}) EXPECT_EQ(Letters(prefix), kEmptyLetters);
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, AQSOAlreadyInEditIsStoredByTheSameEdit) {
  AddQSO(QSO("", "20m", "CW", ""));
  logRecordset.Edit();
  logRecordset.Fields("Comment").SetValue(vb::Variant("kept"));
  UpdateProgress(logRecordset, progressView, false, notifications,
                 [&](int n, const std::string& w) { reports.push_back(std::to_string(n) + " " + w); });
  EXPECT_TRUE(reports.empty());
  EXPECT_EQ(logRecordset.EditMode(), db::dbEditNone);
  db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
  rs.MoveFirst();
  EXPECT_EQ(rs.Fields("BROKEN").Value().ToStringOrEmpty(), "Y");
  EXPECT_EQ(rs.Fields("Comment").Value().ToStringOrEmpty(), "kept");
}

// Position and notification.

TEST_F(ProgressUpdateTest, TheViewIsLeftOnTheCountedEntity) {
  Count(QSO("1", "20m", "CW", ""));
  EXPECT_EQ(progressView.Fields("Prefix").Value().ToString(), "VE");
}

TEST_F(ProgressUpdateTest, NotifyTellsBothSiblingsTheNewProgress) {
  std::vector<std::string> atlasine;
  std::vector<std::vector<std::string>> clustrine;
  notifications.atlasineUpdateProgress = [&](const std::string& text) {
    atlasine.push_back(text);
  };
  notifications.clustrineUpdateProgress = [&](const std::string& call, const std::string& band,
                                              const std::string& mode, const std::string& dxcc,
                                              const std::string& progress) {
    clustrine.push_back({call, band, mode, dxcc, progress});
  };
  Count(QSO("291", "20m", "CW", ""), true);
  ASSERT_EQ(atlasine.size(), 1u);
  EXPECT_EQ(atlasine[0], "291|||||W||||||||W|||");
  ASSERT_EQ(clustrine.size(), 1u);
  EXPECT_EQ(clustrine[0],
            (std::vector<std::string>{"W1AW", "20m", "CW", "K", "||||W||||||||W|||"}));

  Count(QSO("291", "6m", "BPSK", "V"), true);
  ASSERT_EQ(atlasine.size(), 2u);
  EXPECT_EQ(atlasine[1], "291|||||W|||||V|||W|V|F|");
  EXPECT_EQ(clustrine[1][4], "||||W|||||V|||W|V|F|");
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, WithoutNotifyNoSiblingIsTold) {
  int calls = 0;
  notifications.atlasineUpdateProgress = [&](const std::string&) { ++calls; };
  notifications.clustrineUpdateProgress = [&](const std::string&, const std::string&,
                                              const std::string&, const std::string&,
                                              const std::string&) { ++calls; };
  Count(QSO("291", "20m", "CW", ""), false);
  Count(QSO("999", "20m", "CW", ""), true);  // broken: nothing counted, nothing sent
  Count(QSO("", "20m", "CW", ""), true);
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(Letter("K", "20M"), "W");
}

TEST_F(ProgressUpdateTest, NotifyWithoutHooksIsHarmless) {
  Count(QSO("291", "20m", "CW", ""), true);
  EXPECT_EQ(Letter("K", "20M"), "W");
  EXPECT_TRUE(reports.empty());
}

TEST_F(ProgressUpdateTest, ADatabaseErrorIsReportedUnderTheProcedure) {
  progressView.Close();
  Count(QSO("291", "20m", "CW", ""));
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0], "3420 VellumModule.UpdateProgress");
}

// GetProgress.

TEST_F(ProgressUpdateTest, GetProgressOfAnUnknownPrefixIsAQuestionMark) {
  EXPECT_EQ(GetProgress(progressRecordset, "ZZ9", "20M", "CW"), "?");
}

TEST_F(ProgressUpdateTest, GetProgressCombinesTheTwoLetters) {
  SetLetter("DL", "20M", "W");
  SetLetter("DL", "CW", "F");
  EXPECT_EQ(GetProgress(progressRecordset, "DL", "20M", "CW"), "W");
  EXPECT_EQ(GetProgress(progressRecordset, "DL", "CW", "20M"), "W");  // interchangeable

  SetLetter("DL", "20M", "F");
  SetLetter("DL", "CW", "V");
  EXPECT_EQ(GetProgress(progressRecordset, "DL", "20M", "CW"), "F");  // never "V"
  SetLetter("DL", "20M", "V");
  EXPECT_EQ(GetProgress(progressRecordset, "DL", "20M", "CW"), "F");

  // One empty letter.
  EXPECT_EQ(GetProgress(progressRecordset, "DL", "20M", "PHONE"), "U");
  EXPECT_EQ(GetProgress(progressRecordset, "DL", "PHONE", "20M"), "U");
  EXPECT_EQ(GetProgress(progressRecordset, "DL", "40M", "PHONE"), "U");

  // "Q" and "R" are non-empty letters.
  SetLetter("DL", "PHONE", "Q");
  EXPECT_EQ(GetProgress(progressRecordset, "DL", "20M", "PHONE"), "W");
  SetLetter("DL", "PHONE", "R");
  EXPECT_EQ(GetProgress(progressRecordset, "DL", "PHONE", "CW"), "W");
}

TEST_F(ProgressUpdateTest, GetProgressReadsAnUnknownColumnAsEmpty) {
  SetLetter("K", "20M", "F");
  EXPECT_EQ(GetProgress(progressRecordset, "K", "20M", "SSTV"), "U");
  EXPECT_EQ(GetProgress(progressRecordset, "K", "70cm", "20M"), "U");
}

TEST_F(ProgressUpdateTest, GetProgressSeesCountedQSOs) {
  Count(QSO("1", "17m", "RTTY", "Y"));
  EXPECT_EQ(GetProgress(progressRecordset, "VE", "17M", "RTTY"), "F");
  EXPECT_EQ(GetProgress(progressRecordset, "VE", "17M", "PSK"), "U");
}

}  // namespace
}  // namespace vellumar
