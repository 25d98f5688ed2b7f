// The my QTHs page: the operator's own stations in table QTHs, edited in QTHGrid and the boxes
// QTHFieldBox, and the two commands that write an ID into every QSO of the Log Page Display.
// MyQTHIDs holds the IDs in the order of the rows; its 1024 places are the limit of QTHs.
#include <string>

#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logpage/vellum_main.h"
#include "logstore/schema_tables.h"
#include "platform/vb/error.h"

namespace vellumar {

namespace {

// Enter moves the focus along this chain of boxes: ID, city, county, state, country, zones,
// IOTA, latitude, longitude, grid, and back to the ID.
constexpr int kQTHEnterNext[11] = {1, 2, 3, 4, 8, 0, 7, 5, 9, 10, 6};

const char* const kQTHSection = "QTH";

std::string Lower(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

bool HasRows(const db::Recordset& rs) { return rs && !(rs.BOF() && rs.EOF_()); }

}  // namespace

void VellumMain::WireQTHs() {
  for (int i = 0; i < QTHFieldBox.Count(); ++i) {
    const std::string name = logstore::kQTHFields[static_cast<size_t>(i)].name;
    Adopt(QTHFieldBox(i));
    Adopt(QTHFieldLabel(i));
    QTHFieldBox(i).DataField = name;
    QTHPosition.Bind(QTHFieldBox(i));
    QTHFieldLabel(i).SetCaption(i == 0 ? "myQTH ID" : name);
  }
  QTHFieldBox.On(&ui::TextBox::KeyPress,
                 [this](int i, int& ascii) { QTHFieldBox_KeyPress(i, ascii); });
  QTHFieldBox.On(&ui::TextBox::KeyUp, [this](int i, int&, int) { QTHFieldBox_KeyUp(i); });
  // Captions and tool tips come from the command table (vellum_main_commands.cpp).
  for (ui::CommandButton* button :
       {&NewQTHCmd, &SaveQTHCmd, &DeleteQTHCmd, &SetLogCmd, &ClrLogCmd, &QTHListCmd, &QTHFirstCmd,
        &QTHPrevCmd, &QTHNextCmd, &QTHLastCmd})
    Adopt(*button);
  NewQTHCmd.Click = [this] { NewQTHCmd_Click(); };
  SaveQTHCmd.Click = [this] { SaveQTHCmd_Click(); };
  DeleteQTHCmd.Click = [this] { DeleteQTHCmd_Click(); };
  SetLogCmd.Click = [this] { SetLogCmd_Click(); };
  ClrLogCmd.Click = [this] { ClrLogCmd_Click(); };
  QTHListCmd.Click = [this] { DisplayQTHList(); };
  auto move = [this](void (ui::DataControl::*step)()) {
    if (!HasRows(QTHPosition.Recordset())) return;
    IgnoringErrors([&] { (QTHPosition.*step)(); });
    db::Recordset& rs = QTHPosition.Recordset();
    // Past either end stands on the end row, as the log's moves do.
    if (rs.EOF_()) QTHPosition.MoveLast();
    if (rs.BOF()) QTHPosition.MoveFirst();
    SetQTHModified(false);
  };
  QTHFirstCmd.Click = [=] { move(&ui::DataControl::MoveFirst); };
  QTHPrevCmd.Click = [=] { move(&ui::DataControl::MovePrevious); };
  QTHNextCmd.Click = [=] { move(&ui::DataControl::MoveNext); };
  QTHLastCmd.Click = [=] { move(&ui::DataControl::MoveLast); };
  QTHGrid.SetDataSource(&QTHPosition);
  QTHGrid.SetAllowUpdate(true);
  QTHGrid.AfterUpdate = [this] { SetQTHModified(false); };
}

long VellumMain::QTHCount() const { return CountRows(page_.module.QTHRecordset); }

void VellumMain::OpenQTHRecordset(const std::string& pathname) {
  db::Recordset& qths = page_.module.QTHRecordset;
  qths = page_.module.LogDatabase.OpenRecordset("QTHs", db::dbOpenDynaset);
  QTHPosition.DatabaseName = pathname;
  QTHPosition.RecordSource = "QTHs";
  QTHPosition.SetRecordset(qths);
  SetQTHModified(false);
  SetQTHFieldEnable(HasRows(qths));
  if (HasRows(qths)) QTHPosition.MoveLast();
  FormatQTHGrid();
  InitializeQTHList();
  SyncMyQTHCombo();
}

void VellumMain::CloseQTHRecordset() {
  IgnoringErrors([&] { page_.module.QTHRecordset.Close(); });
  QTHPosition.SetRecordset(db::Recordset());
}

void VellumMain::SetQTHModified(bool value) {
  QTHIsModified = value;
  SaveQTHCmd.SetEnabled(value && !QTHFieldBox(0).Text().empty());
}

void VellumMain::SetQTHFieldEnable(bool value) {
  for (int i = 0; i < QTHFieldBox.Count(); ++i) {
    QTHFieldBox(i).SetEnabled(value);
    QTHFieldLabel(i).SetEnabled(value);
  }
  DeleteQTHCmd.SetEnabled(value);
  SetLogCmd.SetEnabled(value);
}

void VellumMain::InitializeQTHList() {
  db::Recordset& qths = QTHPosition.Recordset();
  const long count = QTHCount();
  for (long i = 0; i < count && i < kMaxQTHs; ++i) {
    qths.SetAbsolutePosition(i);
    const vb::Variant id = qths.Fields(0).Value();
    MyQTHIDs[static_cast<size_t>(i)] = id.IsNull() ? "" : id.ToStringOrEmpty();
  }
  if (count > 0) QTHPosition.Repositioned();
}

void VellumMain::UpdateQTHList(const std::string& id) {
  const long at = QTHPosition.Recordset().AbsolutePosition();
  if (at >= 0 && at < kMaxQTHs) MyQTHIDs[static_cast<size_t>(at)] = id;
}

// A diagnostic hook that walks the rows and does nothing with them.
void VellumMain::DisplayQTHList() {
  const long count = QTHCount();
  for (long i = 0; i < count; ++i) (void)MyQTHIDs[static_cast<size_t>(i)];
}

void VellumMain::SyncMyQTHCombo() {
  ui::ComboBox& panel = Fieldcombo(33);
  ui::ComboBox& capture = page_.capture.MyQTH;
  while (panel.ListCount() > 0) panel.RemoveItem(0);
  while (capture.ListCount() > 0) capture.RemoveItem(0);
  panel.AddItem("");
  capture.AddItem("");
  const long count = QTHCount();
  for (long i = 0; i < count && i < kMaxQTHs; ++i) {
    panel.AddItem(MyQTHIDs[static_cast<size_t>(i)]);
    capture.AddItem(MyQTHIDs[static_cast<size_t>(i)]);
  }
}

bool VellumMain::FindMyQTH(const std::string& id) {
  const long count = QTHCount();
  const std::string wanted = Lower(id);
  for (long i = 0; i < count && i < kMaxQTHs; ++i) {
    const std::string& candidate = MyQTHIDs[static_cast<size_t>(i)];
    if (candidate.size() != id.size() || Lower(candidate) != wanted) continue;
    QTHPosition.Recordset().SetAbsolutePosition(i);
    QTHPosition.Repositioned();
    return true;
  }
  return false;
}

std::string VellumMain::QTHFieldValue(int index) {
  std::string value;
  IgnoringErrors([&] { value = QTHPosition.Recordset().Fields(index).Value().ToStringOrEmpty(); });
  return value;
}

void VellumMain::FormatQTHGrid() {
  std::vector<ui::GridColumn>& columns = QTHGrid.Columns();
  columns.assign(logstore::kQTHFields.size(), ui::GridColumn{});
  for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
    ui::GridColumn& column = columns[static_cast<size_t>(i)];
    column.DataField = logstore::kQTHFields[static_cast<size_t>(i)].name;
    column.Caption = i == 0 ? "myQTH ID" : column.DataField;
    column.Order = static_cast<int>(vb::Variant(page_.GetSetting(
        kQTHSection, "QTHFieldOrder" + std::to_string(i), std::to_string(i))).ToInteger());
    column.Width = static_cast<int>(vb::Variant(page_.GetSetting(
        kQTHSection, "QTHColumnWidth" + std::to_string(i), std::to_string(column.Width))).ToInteger());
  }
  QTHGrid.ColumnsChanged();
}

void VellumMain::SaveQTHGridColumnWidths() {
  const auto& columns = QTHGrid.Columns();
  for (int i = 0; i < static_cast<int>(columns.size()); ++i)
    page_.SaveSetting(kQTHSection, "QTHColumnWidth" + std::to_string(i),
                      std::to_string(columns[static_cast<size_t>(i)].Width));
}

void VellumMain::SaveQTHOrder() {
  const auto& columns = QTHGrid.Columns();
  for (int i = 0; i < static_cast<int>(columns.size()); ++i)
    page_.SaveSetting(kQTHSection, "QTHFieldOrder" + std::to_string(i),
                      std::to_string(ui::DisplayOrder(columns, i)));
}

void VellumMain::NewQTHCmd_Click() {
  if (QTHCount() == kMaxQTHs) {
    page_.desktop.MsgBox("you have already created the maximum number of QTHs", ui::vbOKOnly,
                         kApplicationTitle);
    return;
  }
  if (CommandBusy || !page_.module.LogOpen()) return;
  try {
    db::Recordset& qths = QTHPosition.Recordset();
    if (HasRows(qths)) {
      if (QTHModified()) {
        if (qths.EditMode() == db::dbEditNone) qths.Edit();
        QTHPosition.UpdateRecord();
        qths.Update();
      } else if (qths.EditMode() != db::dbEditNone) {
        qths.CancelUpdate();
      }
    }
    qths.AddNew();
    SetQTHFieldEnable(true);
    for (int i = 0; i < QTHFieldBox.Count(); ++i) QTHFieldBox(i).SetText("");
    qths.Update();
    QTHPosition.MoveLast();
    qths.Edit();
    QTHPosition.RowsChanged();
    SetQTHModified(false);
    if (Visible()) QTHFieldBox(0).SetFocus();
  } catch (const vb::VbError& e) {
    page_.common.ReportError(e.number(), "VellumMain.NewQTHCmd_Click");
  }
}

void VellumMain::SaveQTHCmd_Click() {
  if (CommandBusy) return;
  const std::string id = QTHFieldBox(0).Text();
  if (id.empty()) return;
  // The ID must fit MYQTHID of this log's QSOs (4 in a new log, 20 in an upgraded one), whatever
  // the width of the QTHs table.
  const int limit = page_.module.FieldWidth(33);
  if (static_cast<int>(id.size()) > limit) {
    page_.desktop.MsgBox("myQTH ID cannot be more than " + std::to_string(limit) +
                             " characters in length",
                         ui::vbOKOnly, kApplicationTitle);
    return;
  }
  try {
    db::Recordset& qths = QTHPosition.Recordset();
    if (QTHModified()) {
      if (qths.EditMode() == db::dbEditNone) qths.Edit();
      QTHPosition.UpdateRecord();
      qths.Update();
      UpdateQTHList(id);
      SyncMyQTHCombo();
      QTHPosition.RowsChanged();
    }
    SetQTHModified(false);
    if (HasRows(qths)) qths.Edit();
    if (Visible()) QTHFieldBox(0).SetFocus();
  } catch (const vb::VbError& e) {
    page_.common.ReportError(e.number(), "VellumMain.SaveQTHCmd_Click");
  }
}

void VellumMain::DeleteQTHCmd_Click() {
  if (CommandBusy) return;
  try {
    db::Recordset& qths = QTHPosition.Recordset();
    if (!HasRows(qths)) return;
    if (qths.EditMode() != db::dbEditNone) qths.CancelUpdate();
    // The row to stand on afterwards: the one before, or the first when this is the first.
    const db::BookmarkValue doomed = qths.Bookmark();
    bool atFirst = false;
    db::BookmarkValue keep;
    qths.MovePrevious();
    if (qths.BOF()) {
      qths.MoveFirst();
      atFirst = true;
    } else {
      keep = qths.Bookmark();
    }
    qths.SetBookmark(doomed);
    bool confirmed = true;
    if (page_.setup().ConfirmDeleteCheck.Value() == 1)
      confirmed = page_.desktop.MsgBox("Delete current QTH?", ui::vbYesNo, kApplicationTitle) ==
                  ui::vbYes;
    if (confirmed) qths.Delete();
    if (CountRows(qths) > 0) {
      const std::string pathname = QTHPosition.DatabaseName;
      CloseQTHRecordset();
      OpenQTHRecordset(pathname);
      db::Recordset& again = QTHPosition.Recordset();
      if (atFirst || !keep) {
        QTHPosition.MoveFirst();
      } else {
        IgnoringErrors([&] { QTHPosition.GoTo(keep); });
      }
      again.Edit();
      SetQTHFieldEnable(true);
    } else {
      for (int i = 0; i < QTHFieldBox.Count(); ++i) QTHFieldBox(i).SetText("");
      SetQTHFieldEnable(false);
    }
    QTHPosition.RowsChanged();
    // In this order: the combos are filled from the list as it stood before the delete.
    SetQTHModified(false);
    SyncMyQTHCombo();
    InitializeQTHList();
  } catch (const vb::VbError& e) {
    page_.common.ReportError(e.number(), "VellumMain.DeleteQTHCmd_Click");
  }
}

void VellumMain::SetLogQTH(const std::string& id, const std::string& question) {
  if (!HasRows(LogPosition.Recordset())) {
    page_.desktop.MsgBox("the Log Page Display is currently empty", ui::vbOKOnly,
                         kApplicationTitle);
    return;
  }
  if (page_.desktop.MsgBox(question, ui::vbYesNo, kApplicationTitle) != ui::vbYes) return;
  CommandBusy = true;
  try {
    // A private copy of the display's rows, so that the display's position stays.
    db::Recordset copy = LogPosition.Recordset().OpenRecordset();
    for (copy.MoveFirst(); !copy.EOF_(); copy.MoveNext()) {
      copy.Edit();
      copy.Fields(33).SetValue(id);
      copy.Update();
      page_.loop.Yield();
      if (page_.ProcessEnding() || !page_.module.LogOpen()) {
        CommandBusy = false;
        return;
      }
    }
    copy.Close();
    LogPosition.Recordset().Requery();
    LogPosition.Repositioned();
    page_.module.FormatLogGrid();
  } catch (const vb::VbError& e) {
    page_.common.ReportError(e.number(), "VellumMain.SetLogCmd_Click");
  }
  CommandBusy = false;
}

void VellumMain::SetLogCmd_Click() {
  if (CommandBusy) return;
  const std::string id = QTHFieldBox(0).Text();
  if (id.empty()) {
    page_.desktop.MsgBox("the current myQTH ID is empty", ui::vbOKOnly, kApplicationTitle);
    return;
  }
  SetLogQTH(id, "Set the myQTH ID in every QSO in the Log Page Display to " + id + " ?");
}

void VellumMain::ClrLogCmd_Click() {
  if (CommandBusy) return;
  SetLogQTH("", "Clear the myQTH ID in every QSO in the Log Page Display?");
}

void VellumMain::QTHFieldBox_KeyPress(int index, int& keyAscii) {
  if (keyAscii != ui::vbKeyReturn) {
    SetQTHModified(true);
    return;
  }
  keyAscii = 0;
  QTHFieldBox(kQTHEnterNext[index]).SetFocus();
}

void VellumMain::QTHFieldBox_KeyUp(int) { SaveQTHCmd.SetEnabled(!QTHFieldBox(0).Text().empty()); }

}  // namespace vellumar
