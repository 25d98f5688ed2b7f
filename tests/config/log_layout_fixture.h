#pragma once
// A program on the virtual clock whose log K1ABC.vdb is open, for the Log Page Display's layout:
// the table in VellumSetup's LogLayout grid, LogGrid's columns, and section "LogGrid".
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "config/vellum_setup.h"
#include "support/program_harness.h"

namespace vellumar::test {

class LogLayoutTest : public ::testing::Test {
 protected:
  // Seed the settings first (Seed), then Start.
  void Start() {
    h.SeedReturningOperator("K1ABC");
    app = &h.Start();
    ASSERT_TRUE(app->module.LogOpen());
  }
  void Seed(const std::string& key, const std::string& value) { h.Seed("LogGrid", key, value); }
  void SeedRow(int i, const std::string& field, const std::string& caption,
               const std::string& alignment) {
    Seed("FieldName" + std::to_string(i), field);
    Seed("FieldCaption" + std::to_string(i), caption);
    Seed("FieldAlignment" + std::to_string(i), alignment);
  }
  std::string Setting(const std::string& key) const { return h.Setting("LogGrid", key); }

  ui::Grid& layout() { return app->setup().LogLayout; }
  ui::Grid& grid() { return app->main.LogGrid; }
  const ui::GridColumn& column(int i) { return grid().Columns().at(static_cast<size_t>(i)); }
  std::vector<std::string> GridFields() {
    std::vector<std::string> out;
    for (const ui::GridColumn& c : grid().Columns()) out.push_back(c.DataField);
    return out;
  }
  std::vector<std::string> LayoutColumn(int col) {
    std::vector<std::string> out;
    for (int r = 0; r < layout().ArrayRowCount(); ++r) out.push_back(layout().ArrayCell(r, col));
    return out;
  }
  // The width the layout gives a column by its texts: the wider of two blanks and the caption,
  // and as many "W"s as the field's size, in LogGrid's font.
  int WidthByText(const std::string& field, const std::string& caption) {
    const ui::Font& font = grid().Font();
    const long size = app->module.LogRecordset.Fields(field).Size();
    return std::max(app->desktop.TextWidth(font, "  " + caption),
                    app->desktop.TextWidth(font, std::string(static_cast<size_t>(size), 'W')));
  }
  int Limit() {
    const int width = grid().Width() > 0 ? grid().Width() : app->main.Width();
    return static_cast<int>(std::nearbyint(0.75 * width));
  }
  void Reopen() {
    const std::string path = h.LogPath("K1ABC.vdb");
    app->module.CloseLog();
    app->module.OpenLog(path, false);
    ASSERT_TRUE(app->module.LogOpen());
  }
  // The index of an item of a column's drop-down.
  int Item(int col, const std::string& text) {
    const auto& items = layout().Columns().at(static_cast<size_t>(col)).ValueItems;
    for (size_t i = 0; i < items.size(); ++i)
      if (items[i] == text) return static_cast<int>(i);
    ADD_FAILURE() << "no item " << text << " in column " << col;
    return -1;
  }

  ProgramHarness h;
  Application* app = nullptr;
};

// The default table, field by field.
inline const std::vector<std::string> kDefaultFields = {"Call", "DXCCPrefix", "QSO_Begin", "Band",
                                                        "Mode", "RST_Sent",   "RST_Rcvd",  "Name"};
inline const std::vector<std::string> kDefaultCaptions = {"Call", "DXCC", "Starting UTC", "Band",
                                                          "Mode", "Sent", "Rcvd",         "Name"};

}  // namespace vellumar::test
