#pragma once
// A log of known QSOs written straight into the file and opened again, with helpers that read
// the Log Page Display as the operator sees it.
#include <initializer_list>
#include <string>
#include <vector>

#include "frame/common.h"
#include "frame/version.h"
#include "logpage/log_page_fixture.h"
#include "logpage/log_page_helpers.h"
#include "platform/vb/convert.h"
#include "platform/vb/variant.h"

namespace vellumar::test {

struct SeedQSO {
  std::string call;
  std::string begin;  // "yyyy-mm-dd hh:nn:ss"
  std::string band;
  std::string mode;
  std::string prefix;
  std::string broken = "";
  std::string myQTH = "";
};

class FilterTest : public LogPageTest {
 protected:
  // K1ABC, K1XYZ, K2AA, G3ABC, VP2EAA over an hour on the morning of the clock's day.
  void SeedStandardLog() {
    Seed({{"K1ABC", "2024-03-15 07:00:00", "20M", "CW", "K"},
          {"K1XYZ", "2024-03-15 07:15:00", "40M", "SSB", "K"},
          {"K2AA", "2024-03-15 07:30:00", "", "Hell", "K"},
          {"G3ABC", "2024-03-15 07:45:00", "20M", "RTTY", "G", "Y"},
          {"VP2EAA", "2024-03-15 08:00:00", "10M", "CW", "VP2E", "", "HOME"}});
  }

  void Seed(std::initializer_list<SeedQSO> qsos) {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    // The start-up's empty QSO goes: the display holds exactly these.
    if (!(rs.BOF() && rs.EOF_())) {
      rs.MoveFirst();
      while (!rs.EOF_()) {
        rs.Delete();
        rs.MoveNext();
      }
    }
    for (const SeedQSO& q : qsos) {
      rs.AddNew();
      rs.Fields("Call").SetValue(vb::Variant(q.call));
      rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(vb::CDate(q.begin)));
      auto text = [&](const char* name, const std::string& value) {
        rs.Fields(name).SetValue(value.empty() ? vb::Variant::Null() : vb::Variant(value));
      };
      text("Band", q.band);
      text("Mode", q.mode);
      text("DXCCPrefix", q.prefix);
      text("BROKEN", q.broken);
      rs.Fields("myQTHID").SetValue(vb::Variant(q.myQTH));
      rs.Update();
    }
    rs.Close();
    Reopen();
  }

  void AddMyQTH(const std::string& id) {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("QTHs", db::dbOpenDynaset);
    rs.AddNew();
    rs.Fields("MYQTHID").SetValue(vb::Variant(id));
    rs.Update();
    rs.Close();
    Reopen();
  }

  void Reopen() {
    app->module.CloseLog();
    app->module.OpenLog(h.LogPath("K1ABC.vdb"), false);
  }

  // The callsigns of the display, in its order.
  std::vector<std::string> Shown() {
    std::vector<std::string> calls;
    db::Recordset& view = log();
    if (!view) return calls;
    try {
      db::Recordset walk = view.Clone();
      if (walk.BOF() && walk.EOF_()) return calls;
      walk.MoveFirst();
      while (!walk.EOF_()) {
        calls.push_back(walk.Fields("Call").Value().ToStringOrEmpty());
        walk.MoveNext();
      }
    } catch (const vb::VbError&) {
      calls.clear();
    }
    return calls;
  }
  long ShownCount() { return CountRows(log()); }
  // The callsign of the row the display stands on.
  std::string Current() { return log().Fields("Call").Value().ToStringOrEmpty(); }

  std::string Filter() { return app->module.GetLogFilter(); }
  std::string FilterCaption() { return main().FilterFrame.Caption(); }
  AdvancedFilter& window() { return app->advancedFilter; }

  void FilterBy(ui::CommandButton& button, const std::string& text) {
    main().FilterField.SetText(text);
    button.UserClick();
  }
  void EnterInFilterField() { main().FilterField.UserKey(ui::vbKeyReturn, 0, 13); }
};

}  // namespace vellumar::test
