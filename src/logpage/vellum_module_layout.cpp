// The Log Page Display's layout: the table of its columns (the array of VellumSetup's LogLayout
// grid), its defaults, its settings, and how LogGrid is formatted from it.
#include <array>
#include <cmath>
#include <string>

#include "config/vellum_setup.h"
#include "logpage/log_page.h"
#include "logpage/vellum_module.h"
#include "platform/vb/ascii.h"
#include "platform/vb/error.h"
#include "platform/vb/variant.h"

namespace vellumar {

namespace field = logstore::field;
namespace {


// The columns of the layout table.
constexpr int kLayoutField = 0;
constexpr int kLayoutCaption = 1;
constexpr int kLayoutAlignment = 2;
constexpr int kLayoutColumns = 3;

constexpr const char* kFreqFormat = "  0.000";  // MHz with three decimals, two blanks ahead
constexpr double kWidthShare = 0.75;            // no column is wider than this of the grid

// The layout when none is stored: field index and caption, all aligned right.
struct DefaultColumn {
  int fieldIndex;       // QSO field number
  const char* caption;  // header text
};
constexpr std::array<DefaultColumn, 8> kDefaultLayout = {{
    {1, "Call"},
    {2, "DXCC"},
    {19, "Starting UTC"},
    {0, "Band"},
    {5, "Mode"},
    {14, "Sent"},
    {13, "Rcvd"},
    {6, "Name"},
}};
constexpr const char* kDefaultAlignment = "Right";
constexpr std::array<const char*, 3> kAlignmentNames = {"Left", "Center", "Right"};

// Runs a procedure that keeps a state number; a failure is reported with the state reached.
template <class Body>
void WithState(ErrorLog& log, const char* procedure, Body&& body) {
  int state = 0;
  try {
    body(state);
  } catch (...) {
    log.ReportCurrentException(std::string("VellumModule.") + procedure +
                               ", State = " + std::to_string(state));
  }
}

// Font settings as they are stored: the size as the runtime writes a single ("8.25"), the
// switches as "True" or "False". Read back, a text that isn't one fails the procedure.
std::string SizeText(double size) { return vb::Variant(size).ToString(); }
std::string BoolText(bool b) { return b ? "True" : "False"; }

// The alignment a text names: left 0, right 1, centre 2; anything else is right.
int AlignmentOf(const std::string& text) {
  const std::string upper = vb::UpperAscii(text);
  if (upper == "LEFT") return ui::dbgLeft;
  if (upper == "CENTER") return ui::dbgCenter;
  return ui::dbgRight;
}

ui::GridColumn& ColumnAt(ui::Grid& grid, int column) {
  if (column < 0 || column >= static_cast<int>(grid.Columns().size()))
    vb::Raise(vb::kSubscriptOutOfRange);
  return grid.Columns()[static_cast<size_t>(column)];
}

// Grows the grid to hold the column; new columns take their index as their place.
ui::GridColumn& EnsureColumn(ui::Grid& grid, int column) {
  if (column < 0) vb::Raise(vb::kSubscriptOutOfRange);
  if (column >= static_cast<int>(grid.Columns().size()))
    grid.Columns().resize(static_cast<size_t>(column) + 1);
  return grid.Columns()[static_cast<size_t>(column)];
}

}  // namespace

// ---- The table ----

int VellumModule::LogLayoutUpperBound() const {
  const ui::Grid& layout = page_.setup().LogLayout;
  for (int row = layout.ArrayRowCount() - 1; row >= 0; --row)
    if (!layout.ArrayCell(row, kLayoutField).empty()) return row;
  return -1;
}

void VellumModule::InitializeColumn(int column, int fieldIndex, const std::string& caption,
                                    const std::string& alignment) {
  WithFailureTail(page_.common.errorLog(), "VellumModule.InitializeColumn", [&] {
    const std::string field = LogRecordset.Fields(fieldIndex).Name();
    ui::Grid& layout = page_.setup().LogLayout;
    layout.SetArrayCell(column, kLayoutField, field);
    layout.SetArrayCell(column, kLayoutCaption, caption);
    layout.SetArrayCell(column, kLayoutAlignment, alignment);
    EnsureColumn(page_.main.LogGrid, column).DataField = field;
  });
}

void VellumModule::InitializeLogLayout() {
  WithState(page_.common.errorLog(), "InitializeLogLayout", [&](int& state) {
    VellumMain& main = page_.main;
    ui::Grid& layout = page_.setup().LogLayout;

    state = 1;
    main.LogGrid.SetAllowColMove(true);
    main.LogGrid.SetAllowColResize(true);

    state = 2;
    int stored = 0;
    while (!page_.GetSetting(setting::kLayoutRow.field, stored, "").empty()) ++stored;

    state = 3;
    for (int c = 0; c < kLayoutColumns && c < static_cast<int>(layout.Columns().size()); ++c) {
      ui::GridColumn& column = layout.Columns()[static_cast<size_t>(c)];
      column.Width = vb::Variant(page_.GetSetting(setting::kLogLayoutColumnWidth, c,
                                                  std::to_string(column.Width)))
                         .ToLong();
    }

    state = 4;
    std::vector<std::string> names;
    const db::Fields fields = LogRecordset.Fields();
    for (int i = 0; i < fields.Count() && i < kFieldCount; ++i) names.push_back(fields[i].Name());
    ColumnAt(layout, kLayoutField).ValueItems = names;
    ColumnAt(layout, kLayoutAlignment)
        .ValueItems.assign(kAlignmentNames.begin(), kAlignmentNames.end());
    layout.ColumnsChanged();

    state = 5;
    layout.SetArray({});
    if (stored == 0) {
      for (size_t i = 0; i < kDefaultLayout.size(); ++i) {
        InitializeColumn(static_cast<int>(i), kDefaultLayout[i].fieldIndex,
                         kDefaultLayout[i].caption, kDefaultAlignment);
      }
      SaveLogLayout();
    } else {
      std::vector<ui::Grid::ArrayRow> rows;
      for (int i = 0; i < stored; ++i) {
        rows.push_back({page_.GetSetting(setting::kLayoutRow.field, i, ""),
                        page_.GetSetting(setting::kLayoutRow.caption, i, ""),
                        page_.GetSetting(setting::kLayoutRow.alignment, i, "")});
      }
      layout.SetArray(std::move(rows));
    }

    state = 6;
    const auto readFont = [&](const setting::FontKeys& keys, ui::Font font) {
      font.Name = page_.GetSetting(keys.name, "MS Sans Serif");
      font.Size = vb::Variant(page_.GetSetting(keys.size, SizeText(font.Size))).ToDouble();
      font.Bold = vb::Variant(page_.GetSetting(keys.bold, BoolText(font.Bold))).ToBool();
      font.Italic = vb::Variant(page_.GetSetting(keys.italic, BoolText(font.Italic))).ToBool();
      return font;
    };
    main.LogGrid.SetFont(readFont(setting::kLogGridFont, main.LogGrid.Font()));
    const ui::Font panel =
        readFont(setting::kLogPanelFont, main.Fieldbox(field::Call).Font());
    for (auto& box : main.Fieldbox) box->SetFont(panel);
    for (auto& combo : main.Fieldcombo) combo->SetFont(panel);
  });
}

void VellumModule::SaveLogLayoutRow(int row) {
  WithFailureTail(page_.common.errorLog(), "VellumModule.SaveLogLayoutRow", [&] {
    const ui::Grid& layout = page_.setup().LogLayout;
    page_.SaveSetting(setting::kLayoutRow.field, row, layout.ArrayCell(row, kLayoutField));
    page_.SaveSetting(setting::kLayoutRow.caption, row,
                      layout.ArrayCell(row, kLayoutCaption));
    page_.SaveSetting(setting::kLayoutRow.alignment, row,
                      layout.ArrayCell(row, kLayoutAlignment));
  });
}

void VellumModule::SaveLogLayout() {
  WithFailureTail(page_.common.errorLog(), "VellumModule.SaveLogLayout", [&] {
    // Every row, and the empty one after them that ends the stored table.
    const int rows = page_.setup().LogLayout.ArrayRowCount();
    for (int row = 0; row <= rows; ++row) SaveLogLayoutRow(row);
  });
}

// ---- LogGrid ----

namespace {

// The format of a field's column: frequencies with three decimals, the QSO's times as the
// configuration window says; the others as they are.
std::string ColumnFormat(const Configuration& config, const std::string& field) {
  if (vb::EqualsIgnoreCase(field, "Freq")) return kFreqFormat;
  if (vb::EqualsIgnoreCase(field, "QSO_Begin") || vb::EqualsIgnoreCase(field, "QSO_End"))
    return config.DateTimeFormat();
  return {};
}

// The width a column needs: the wider of two blanks and its caption, and as many "W"s as the
// field holds characters, in the grid's font.
int ColumnWidthByText(const LogPage& page, const db::Recordset& log, const std::string& field,
                      const std::string& caption) {
  const ui::Font& font = page.main.LogGrid.Font();
  const long size = log.Fields(field).Size();
  return Common::Max(page.desktop.TextWidth(font, "  " + caption),
                     page.desktop.TextWidth(font, std::string(static_cast<size_t>(size), 'W')));
}

// Three quarters of the grid's width. A grid the view hasn't laid out yet spans its window.
int ColumnWidthLimit(const VellumMain& main) {
  const int gridWidth = main.LogGrid.Width() > 0 ? main.LogGrid.Width() : main.Width();
  return static_cast<int>(std::nearbyint(kWidthShare * gridWidth));
}

}  // namespace

void VellumModule::FormatLogGrid() {
  ui::Grid& grid = page_.main.LogGrid;
  WithState(page_.common.errorLog(), "FormatLogGrid", [&](int& state) {
    const ui::Grid& layout = page_.setup().LogLayout;

    state = 1;
    // The grid has the table's columns and no others: a row deleted from the table takes its
    // column with it.
    const int count = LogLayoutUpperBound() + 1;
    grid.Columns().resize(static_cast<size_t>(count));
    const int limit = ColumnWidthLimit(page_.main);

    for (int i = 0; i < count; ++i) {
      state = 2;
      ui::GridColumn& column = grid.Columns()[static_cast<size_t>(i)];
      const std::string field = layout.ArrayCell(i, kLayoutField);
      const std::string caption = layout.ArrayCell(i, kLayoutCaption);
      column.DataField = field;
      column.Order =
          vb::Variant(page_.GetSetting(setting::kLogGridFieldOrder, i, std::to_string(i)))
              .ToInteger();
      column.Alignment = AlignmentOf(layout.ArrayCell(i, kLayoutAlignment));
      column.Caption = caption;
      column.Visible = !field.empty();  // a row left empty in the middle shows nothing
      if (field.empty()) continue;

      state = 3;
      const int byText = ColumnWidthByText(page_, LogRecordset, field, caption);
      const int stored = vb::Variant(page_.GetSetting(setting::kLogGridColumnWidth, i,
                                                      std::to_string(byText)))
                             .ToLong();
      column.Width = Common::Min(stored, limit);

      state = 4;
      column.NumberFormat = ColumnFormat(page_.config, field);
    }
    state = 5;
  });
  // The view shows what was applied, also when a failure ended the procedure early.
  grid.ColumnsChanged();
}

void VellumModule::RefreshLogGrid() {
  WithFailureTail(page_.common.errorLog(), "VellumModule.RefreshLogGrid", [&] {
    // The rows may have changed under the view (a walk that wrote to the log): the filter in
    // force is applied again, which opens a fresh view and formats the grid.
    std::string filter = LogRecordset.Filter();
    std::string caption = page_.main.FilterFrame.Caption();
    FilterDisplay(filter, caption);
  });
}

void VellumModule::SetColumnAlignment(int column, const std::string& alignment) {
  WithFailureTail(page_.common.errorLog(), "VellumModule.SetColumnAlignment", [&] {
    ui::Grid& grid = page_.main.LogGrid;
    ColumnAt(grid, column).Alignment = AlignmentOf(alignment);
    grid.ColumnsChanged();
  });
}

// ---- Changes made in the LogLayout grid ----

void VellumModule::HideLayoutColumn(int row) {
  WithFailureTail(page_.common.errorLog(), "VellumModule.HideLayoutColumn", [&] {
    ui::Grid& grid = page_.main.LogGrid;
    if (row >= 0 && row < static_cast<int>(grid.Columns().size())) {
      grid.Columns()[static_cast<size_t>(row)].Visible = false;
      grid.ColumnsChanged();
    }
    UpdateLayout(row, kLayoutField, "");
  });
}

void VellumModule::ChangeLayoutColumn(int row, int column) {
  WithFailureTail(page_.common.errorLog(), "VellumModule.ChangeLayoutColumn", [&] {
    // The text the user is entering in the cell, not yet stored there.
    UpdateLayout(row, column, page_.setup().LogLayout.EditText());
  });
}

void VellumModule::UpdateLayout(int row, int column, const std::string& value) {
  WithFailureTail(page_.common.errorLog(), "VellumModule.UpdateLayout", [&] {
    ui::Grid& layout = page_.setup().LogLayout;
    layout.SetArrayCell(row, column, value);
    SaveLogLayoutRow(row);
    if (column == kLayoutAlignment) {
      SetColumnAlignment(row, value);
      return;
    }
    if ((column != kLayoutField && column != kLayoutCaption) || value.empty()) return;

    // A new field or a new caption: the row's column shows the row's field under its caption.
    ui::Grid& grid = page_.main.LogGrid;
    const std::string field = layout.ArrayCell(row, kLayoutField);
    const std::string caption = layout.ArrayCell(row, kLayoutCaption);
    ui::GridColumn& shown = EnsureColumn(grid, row);
    shown.DataField = field;
    shown.Caption = caption;
    shown.Visible = !field.empty();
    if (!field.empty()) {
      const int width = Common::Min(ColumnWidthByText(page_, LogRecordset, field, caption),
                                    ColumnWidthLimit(page_.main));
      if (width != shown.Width) shown.Width = width;
      shown.NumberFormat = ColumnFormat(page_.config, field);
    }
    grid.ColumnsChanged();
    SetColumnAlignment(row, layout.ArrayCell(row, kLayoutAlignment));
  });
}

// ---- Widths and order ----

void VellumModule::SaveLogOrder() {
  WithFailureTail(page_.common.errorLog(), "VellumModule.SaveLogOrder", [&] {
    const auto& columns = page_.main.LogGrid.Columns();
    for (int i = 0; i < static_cast<int>(columns.size()); ++i)
      page_.SaveSetting(setting::kLogGridFieldOrder, i,
                        std::to_string(ui::DisplayOrder(columns, i)));
  });
}

void VellumModule::SaveLogGridColumnWidths() {
  WithFailureTail(page_.common.errorLog(), "VellumModule.SaveLogGridColumnWidths", [&] {
    const auto& columns = page_.main.LogGrid.Columns();
    for (int i = 0; i < static_cast<int>(columns.size()); ++i)
      page_.SaveSetting(setting::kLogGridColumnWidth, i,
                        std::to_string(columns[static_cast<size_t>(i)].Width));
  });
}

void VellumModule::SaveLogLayoutGridColumnWidths() {
  page_.setup().SaveLogLayoutGridColumnWidths();
}

void VellumModule::LogGridFormatError(int, const std::string& text) {
  page_.common.WriteErrorLog("VellumModule.FormatLogGrid format error: " + text);
}

}  // namespace vellumar
