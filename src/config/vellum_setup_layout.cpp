// The LogLayout grid of the configuration window: the operator edits the table of the Log Page
// Display's columns here, and every change goes to the central module, which keeps the table's
// settings and LogGrid in step with it.
#include "config/vellum_setup.h"

namespace vellumar {

void VellumSetup::WireLogLayout() {
  LogLayout.BeforeDelete = [this](int& cancel) { LogLayout_BeforeDelete(cancel); };
  LogLayout.AfterDelete = [this] { LogLayout_AfterDelete(); };
  LogLayout.BeforeInsert = [this](int& cancel) { LogLayout_BeforeInsert(cancel); };
  LogLayout.AfterInsert = [this] { LogLayout_AfterInsert(); };
  LogLayout.BeforeColUpdate = [this](int colIndex, const std::string& oldValue, int& cancel) {
    LogLayout_BeforeColUpdate(colIndex, oldValue, cancel);
  };
  LogLayout.ComboSelect = [this](int colIndex) { LogLayout_ComboSelect(colIndex); };
  LogLayout.KeyUp = [this](int& keyCode, int shift) { LogLayout_KeyUp(keyCode, shift); };
  LogLayout.SelChange = [this](int& cancel) { LogLayout_SelChange(cancel); };
}

// The row about to go: its column leaves LogGrid and its field leaves the stored table.
void VellumSetup::LogLayout_BeforeDelete(int&) {
  Tail("LogLayout_BeforeDelete",
       [&] { Notify([&](ConfigObserver& o) { o.LayoutRowDeleting(LogLayout.Row()); }); });
}

// The rows after the deleted one moved up: the whole table is written again.
void VellumSetup::LogLayout_AfterDelete() {
  Tail("LogLayout_AfterDelete", [&] { Notify([](ConfigObserver& o) { o.LayoutChanged(); }); });
}

void VellumSetup::LogLayout_BeforeInsert(int&) {
  Tail("LogLayout_BeforeInsert", [&] {
    if (LogLayout.EditActive()) LogLayout.SetEditActive(false);
  });
}

void VellumSetup::LogLayout_AfterInsert() {
  Tail("LogLayout_AfterInsert", [&] { Notify([](ConfigObserver& o) { o.LayoutChanged(); }); });
}

void VellumSetup::LogLayout_BeforeColUpdate(int colIndex, const std::string&, int&) {
  Tail("LogLayout_BeforeColUpdate",
       [&] { Notify([&](ConfigObserver& o) { o.LayoutCellChanged(LogLayout.Row(), colIndex); }); });
}

// A pick from a cell's list takes effect at once, before the cell is left.
void VellumSetup::LogLayout_ComboSelect(int colIndex) {
  Tail("LogLayout_ComboSelect",
       [&] { Notify([&](ConfigObserver& o) { o.LayoutCellChanged(LogLayout.Row(), colIndex); }); });
}

// Enter ends the edit in hand, so that the change is stored without leaving the cell.
void VellumSetup::LogLayout_KeyUp(int& keyCode, int) {
  Tail("LogLayout_KeyUp", [&] {
    if (keyCode == ui::vbKeyReturn && LogLayout.EditActive()) LogLayout.SetEditActive(false);
  });
}

// A new selection ends the edit in hand first, so that no typed text is left behind.
void VellumSetup::LogLayout_SelChange(int&) {
  Tail("LogLayout_SelChange", [&] {
    if (LogLayout.EditActive()) LogLayout.SetEditActive(false);
  });
}

}  // namespace vellumar
