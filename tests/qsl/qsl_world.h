#pragma once
// A log and a QSL queue on disk, without the program around them: a log made by the schema with
// a Progress row for three entities (291 K, 223 G, 249 VP2E), the queue opened on its data
// control, and a VellumQSLModule over the queue whose services record what they are told.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "awards/progress_columns.h"
#include "logstore/field_table.h"
#include "logstore/log_schema.h"
#include "platform/bound/data_control.h"
#include "platform/db/database.h"
#include "platform/vb/date_value.h"
#include "platform/vb/format.h"
#include "qsl/qsl_module.h"
#include "qsl/qsl_queue.h"
#include "support/frame_harness.h"

namespace vellumar::test {

namespace qf = logstore::field;

struct TestQSO {
  std::string call = "K1ABC";
  double begin = vb::CombineDateTime(vb::DateSerial(2024, 3, 1), vb::TimeSerial(12, 0, 0));
  std::string band = "20M", mode = "CW", freq = "14.025", dxccid = "291", prefix = "K";
  std::string rcvd, sent, myQTHID, qslMsg, via, address;
};

class QSLWorld : public ::testing::Test {
 protected:
  QSLWorld()
      : schema(h.common.errorLog(), [](db::Database& log) {
          db::Recordset p = log.OpenRecordset("Progress", db::dbOpenDynaset);
          for (auto [code, prefix] : {std::pair{"291", "K"}, {"223", "G"}, {"249", "VP2E"}}) {
            p.AddNew();
            p.Fields(kProgressCountryCode).SetValue(code);
            p.Fields(kProgressPrefix).SetValue(prefix);
            p.Fields(kProgressValid).SetValue(true);
            p.Update();
          }
          p.Close();
        }),
        queue(h.desktop, h.common.errorLog()) {
    logPath = h.dir.Join("K1ABC.vdb");
    EXPECT_TRUE(schema.CreateLog(logPath));
    log = db::DBEngine::Workspaces(0).OpenDatabase(logPath);
    queue.OpenQSLQueue(h.dir.Join("QSL.vdb"), position);
    EXPECT_TRUE(queue.IsOpen());
    OpenViews();
    for (int c = 3; c <= 17; ++c) checks[static_cast<size_t>(c)] = true;
  }
  ~QSLWorld() override {
    queue.CloseQSLQueue(position);
    log.Close();
  }

  // The Log Page Display in start order, with `filter` in force; the Progress view.
  void OpenViews(const std::string& filter = "") {
    db::Recordset table = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    table.SetSort("QSO_Begin");
    table.SetFilter(filter);
    view = table.OpenRecordset();
    progress = log.OpenRecordset("Progress", db::dbOpenDynaset);
  }
  db::Recordset& Queue() { return position.Recordset(); }

  qsl::QSLServices Services() {
    qsl::QSLServices s;
    s.desktop = &h.desktop;
    s.reportError = [this](int number, const std::string& where) {
      reported.push_back(std::to_string(number) + " " + where);
    };
    s.yield = [this] {
      ++yields;
      if (onYield) onYield();
    };
    s.setQueueFrameCaption = [this](const std::string& c) { captions.push_back(c); };
    s.queueFrameCaption = [] { return std::string("QSL queue"); };
    s.findMyQTH = [this](const std::string& id) {
      db::Recordset qths = log.OpenRecordset("QTHs", db::dbOpenDynaset);
      return qsl::LookUpMyQTH(qths, id);
    };
    return s;
  }
  qsl::VellumQSLModule& Module() {
    if (!module) module.emplace(Queue(), Services());
    return *module;
  }

  void AddQSO(const TestQSO& q) {
    db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.AddNew();
    rs.Fields(qf::Call).SetValue(q.call);
    rs.Fields(qf::QSO_Begin).SetValue(vb::Variant::FromDate(q.begin));
    rs.Fields(qf::Band).SetValue(q.band);
    rs.Fields(qf::Mode).SetValue(q.mode);
    rs.Fields(qf::Freq).SetValue(q.freq);
    rs.Fields(qf::DXCCID).SetValue(q.dxccid);
    rs.Fields(qf::DXCCPrefix).SetValue(q.prefix);
    rs.Fields(qf::QSL_Rcvd).SetValue(q.rcvd);
    rs.Fields(qf::QSL_Sent).SetValue(q.sent);
    rs.Fields(qf::MYQTHID).SetValue(q.myQTHID);
    rs.Fields(qf::QSLMsg).SetValue(q.qslMsg);
    rs.Fields(qf::QSL_Via).SetValue(q.via);
    rs.Fields(qf::ADDRESS).SetValue(q.address);
    rs.Fields(qf::Operator).SetValue("K1ABC");
    rs.Fields(qf::RST_Sent).SetValue("599");
    rs.Fields(qf::RST_Rcvd).SetValue("579");
    rs.Update();
    rs.Close();
  }
  void AddQTH(const std::vector<std::string>& fields) {
    db::Recordset rs = log.OpenRecordset("QTHs", db::dbOpenDynaset);
    rs.AddNew();
    for (size_t i = 0; i < fields.size(); ++i) rs.Fields(static_cast<int>(i)).SetValue(fields[i]);
    rs.Update();
    rs.Close();
  }
  void SetLetter(const std::string& code, int column, const std::string& letter) {
    db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '" + code + "'");
    ASSERT_FALSE(rs.NoMatch());
    rs.Edit();
    rs.Fields(column).SetValue(letter);
    rs.Update();
    rs.Close();
  }
  std::string Letter(const std::string& code, int column) {
    db::Recordset rs = log.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '" + code + "'");
    if (rs.NoMatch()) return "<no entity>";
    return rs.Fields(column).Value().ToStringOrEmpty();
  }
  // A field of the QSO of `call` begun at `begin` (the first QSO of the call without one).
  std::string QSOValue(const std::string& call, int field, double begin = 0) {
    db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
      if (rs.Fields(qf::Call).Value().ToStringOrEmpty() != call) continue;
      if (begin != 0 && rs.Fields(qf::QSO_Begin).Value().ToDate() != begin) continue;
      return rs.Fields(field).Value().ToStringOrEmpty();
    }
    return "<no QSO>";
  }
  // The queue's rows as the file holds them, in the order they were added.
  struct Row {
    std::string call, freq, mode, incidence, needed, unique, myQTHID, city, iota, enabled;
    double begin = 0;
    bool done = false;
  };
  std::vector<Row> Rows() {
    std::vector<Row> rows;
    db::Database q = db::DBEngine::Workspaces(0).OpenDatabase(h.dir.Join("QSL.vdb"));
    db::Recordset rs = q.OpenRecordset("PrintQueue", db::dbOpenDynaset);
    for (; !rs.EOF_(); rs.MoveNext()) {
      auto t = [&](const char* n) { return rs.Fields(n).Value().ToStringOrEmpty(); };
      rows.push_back({t("CALL"), t("FREQ"), t("MODE"), t("INCIDENCE"), t("NEEDED"), t("UNIQUE"),
                      t("MYQTHID"), t("CITY"), t("IOTA"), t("ENABLED"),
                      rs.Fields("QSO_BEGIN").Value().ToDate(),
                      !rs.Fields("QSL_DATE").Value().IsNull()});
    }
    rs.Close();
    q.Close();
    return rows;
  }
  // Stands on the QSO of `call` (the first in the view's order) and adds it to the queue.
  void Add(const std::string& call, bool needed, double begin = 0) {
    db::Recordset rs = log.OpenRecordset("QSOs", db::dbOpenDynaset);
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
      if (rs.Fields(qf::Call).Value().ToStringOrEmpty() != call) continue;
      if (begin != 0 && rs.Fields(qf::QSO_Begin).Value().ToDate() != begin) continue;
      Module().AddToQSL(rs, needed);
      return;
    }
    ADD_FAILURE() << "no QSO of " << call;
  }
  static double At(int day, int hour, int minute = 0) {
    return vb::CombineDateTime(vb::DateSerial(2024, 3, day), vb::TimeSerial(hour, minute, 0));
  }

  FrameHarness h;
  logstore::LogSchema schema;
  QSLQueue queue;
  ui::DataControl position{"QSLPosition"};
  std::string logPath;
  db::Database log;
  db::Recordset view, progress;
  qsl::AwardChecks checks{};
  std::optional<qsl::VellumQSLModule> module;
  std::vector<std::string> reported, captions;
  int yields = 0;
  std::function<void()> onYield;
};

}  // namespace vellumar::test
