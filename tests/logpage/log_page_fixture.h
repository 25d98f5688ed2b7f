#pragma once
// A program started on an empty log K1ABC.vdb, with helpers that work the Log page as the
// operator does: typing into the slots, picking from the lists, clicking the commands.
#include <gtest/gtest.h>

#include <string>

#include "config/vellum_setup.h"
#include "support/program_harness.h"

namespace vellumar::test {

class LogPageTest : public ::testing::Test {
 protected:
  explicit LogPageTest(ProgramHarness::DXCC dxcc = ProgramHarness::DXCC::kSmall) : h(dxcc) {
    h.SeedReturningOperator();
    app = &h.Start();
    h.loop.Advance(300);  // the start-up's last timer
    main().Show();
  }

  VellumMain& main() { return app->main; }
  ui::TextBox& box(int index) { return app->main.Fieldbox(index); }
  ui::ComboBox& combo(int index) { return app->main.Fieldcombo(index); }
  db::Recordset& log() { return app->main.LogPosition.Recordset(); }

  // Types text into a slot, key by key.
  void Type(int index, const std::string& text) { box(index).UserType(text); }
  void Enter(int index) { box(index).UserKey(ui::vbKeyReturn, 0, ui::vbKeyReturn); }
  void Ctrl(int index, char letter) { box(index).UserKey(letter, ui::vbCtrlMask, letter - '@'); }
  // Picks the list item with this text; fails the test when the list hasn't it.
  void Pick(int index, const std::string& item) {
    ui::ComboBox& c = combo(index);
    for (int i = 0; i < c.ListCount(); ++i)
      if (c.List(i) == item) {
        c.UserSelect(i);
        return;
      }
    ADD_FAILURE() << "no item " << item << " in the list of slot " << index;
  }
  void RightClick(ui::CommandButton& button) { button.UserMouse(ui::vbRightButton); }

  // A new QSO with this callsign, its defaults filled by Enter, saved with the left button.
  void LogQSO(const std::string& call) {
    main().NewCmd.UserClick();
    Type(1, call);
    Enter(1);
    main().SaveCmd.UserClick();
  }

  // Reads the log's file as another reader would: QSOs in the order they were added.
  long RowsInFile() {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    if (rs.BOF() && rs.EOF_()) return 0;
    rs.MoveLast();
    return rs.RecordCount();
  }
  std::string FileValue(const std::string& call, const std::string& field) {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("QSOs", db::dbOpenDynaset);
    rs.FindFirst("Call = '" + call + "'");
    if (rs.NoMatch()) return "<no QSO>";
    return rs.Fields(field).Value().ToStringOrEmpty();
  }
  // The Progress letter of an entity's column.
  std::string Letter(const std::string& countryCode, const std::string& column) {
    db::Recordset rs = app->module.LogDatabase.OpenRecordset("Progress", db::dbOpenDynaset);
    rs.FindFirst("CountryCode = '" + countryCode + "'");
    if (rs.NoMatch()) return "<no entity>";
    return rs.Fields(column).Value().ToStringOrEmpty();
  }

  ProgramHarness h;
  Application* app = nullptr;
};

}  // namespace vellumar::test
