// The Log Page Display's filters and sorts. Every filter is one criteria string set on the
// log's dynaset, from which a fresh view is opened; FilterDisplay does this for all kinds, and
// the others only compose the string and the caption. The string reaches SQLite only through
// the record layer's Jet parser, which binds its literals: what the operator writes in an SQL
// filter is never pasted into a statement, and what lies outside the language fails to open.
#include <array>
#include <string>

#include "frame/common.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logpage/vellum_module.h"
#include "logview/filter_strings.h"
#include "platform/vb/convert.h"
#include "platform/vb/error.h"

namespace vellumar {

namespace field = logstore::field;
namespace {

bool HasRows(const db::Recordset& rs) {
  if (!rs) return false;
  try {
    return !(rs.BOF() && rs.EOF_());
  } catch (const vb::VbError&) {
    return false;
  }
}

}  // namespace

void VellumModule::FilterDisplay(std::string& filter, std::string& caption) {
  VellumMain& main = page_.main;
  WithFailureTail(page_.common.errorLog(), "VellumModule.FilterDisplay", [&] {
    const bool gridVisible = main.LogGrid.Visible();
    main.LogGrid.SetVisible(false);
    // An empty QSO in hand is given its start time here, so that the locator names a time.
    if (main.Fieldbox(field::QSO_Begin).Text().empty()) main.SetQSOStartTime();
    const std::string locator = logview::Locator(main.Fieldbox(field::Call).Text(),
                                                 main.Fieldbox(field::QSO_Begin).Text());
    LogRecordset.SetFilter(filter);
    if (!HasRows(LogView)) main.LogPosition.SetRecordset(LogRecordset);
    LogView.Close();
    try {
      LogView = LogRecordset.OpenRecordset();
    } catch (const ProgramTermination&) {
      throw;
    } catch (const vb::VbError&) {
      // A string the language can't read: all QSOs, and the caption says so in one word.
      page_.desktop.MsgBox("Invalid Filter expression", ui::vbOKOnly, kApplicationTitle);
      LogRecordset.SetFilter("");
      LogView = LogRecordset.OpenRecordset();
      caption = logview::kFailedFilterCaption;
    }
    main.LogPosition.SetRecordset(LogView);
    if (!HasRows(LogView)) {
      main.SetFieldEnable(false);
    } else {
      main.SetFieldEnable(true);
      bool found = false;
      IgnoringErrors([&] {
        LogView.FindFirst(locator);
        found = !LogView.NoMatch();
      });
      if (found) {
        main.LogPosition.Repositioned();
      } else {
        main.LogPosition.MoveFirst();
      }
      LogView.Edit();
    }
    FormatLogGrid();
    main.LogGrid.SetVisible(gridVisible);
    main.FilterFrame.SetCaption(caption);
    // The QSO found again above is given up: the display stands on its newest QSO in time
    // order, else on its first row.
    if (HasRows(LogView)) {
      if (LogRecordset.Sort() == "QSO_Begin") {
        main.LogPosition.MoveLast();
      } else {
        main.LogPosition.MoveFirst();
      }
    }
    LogFilteredFlag = !filter.empty();
    if (main.FilterField.Visible()) IgnoringErrors([&] { main.FilterField.SetFocus(); });
    main.UpdateCaption();
  });
}

void VellumModule::FilterDisplay(const logview::FilterText& text) {
  std::string filter = text.filter;
  std::string caption = text.caption;
  FilterDisplay(filter, caption);
}

void VellumModule::FilterCall(const std::string& pattern) {
  FilterDisplay(logview::CallFilter(pattern));
  // A callsign that isn't in the log still gets its QSL route asked for.
  if (!HasRows(page_.main.LogPosition.Recordset()) && !page_.dxcc.SuppressLookup() &&
      logview::NamesOneStation(pattern))
    page_.trailmark.GetQSLInfo(pattern);
}

void VellumModule::FilterDXCCPrefix(const std::string& pattern) {
  FilterDisplay(logview::DXCCFilter(pattern));
}

void VellumModule::FilterDate(const std::string& dateText) {
  const AdvancedFilter& window = page_.advancedFilter;
  try {
    if (!Common::IsDate(dateText)) {
      page_.desktop.MsgBox("Filter contains illegal date: " + dateText, ui::vbOKOnly,
                           kApplicationTitle);
      return;
    }
    const double at = vb::CDate(dateText);
    logview::DateRange range;
    if (window.DateFilterKind(0).Value()) {
      // A pasted tolerance isn't checked: it counts as the number it begins with.
      range = logview::RangeAround(at, vb::Val(window.DateFilterTolerance.Text()));
    } else {
      const std::string bound = window.DateFilterUpperBound.Text();
      if (!Common::IsDate(bound)) {
        page_.desktop.MsgBox("Filter upper bound setting contains illegal date: " + bound,
                             ui::vbOKOnly, kApplicationTitle);
        return;
      }
      range = {at, vb::CDate(bound)};
    }
    FilterDisplay(logview::DateFilter(range.lower, range.upper));
  } catch (const ProgramTermination&) {
    throw;
  } catch (...) {
    FilterDisplay(logview::NoFilter());
  }
}

void VellumModule::FilterBroken() {
  FilterDisplay(logview::BrokenFilter(CountRows(QTHRecordset) > 0));
}

void VellumModule::FilterBand() {
  const AdvancedFilter& window = page_.advancedFilter;
  std::array<bool, logview::kBandBoxes + 1> checked{};
  std::array<std::string, logview::kBandBoxes + 1> labels{};
  for (int i = 1; i <= logview::kBandBoxes; ++i) {
    checked[static_cast<size_t>(i)] = window.BandCheck(i).Value() == 1;
    labels[static_cast<size_t>(i)] = window.BandLabel(i).Caption();
  }
  FilterDisplay(logview::BandFilter(checked, labels));
}

void VellumModule::FilterMode() {
  const AdvancedFilter& window = page_.advancedFilter;
  std::array<bool, logview::kModeBoxes + 1> checked{};
  std::array<std::string, logview::kModeBoxes + 1> labels{};
  for (int i = 1; i <= logview::kModeBoxes; ++i) {
    checked[static_cast<size_t>(i)] = window.ModeCheck(i).Value() == 1;
    labels[static_cast<size_t>(i)] = window.ModeLabel(i).Caption();
  }
  FilterDisplay(logview::ModeFilter(checked, labels));
}

void VellumModule::FilterSQL(int index) {
  FilterDisplay(logview::SQLFilter(page_.advancedFilter.SQLquery(index).Text()));
}

// ---- Sorts ----

void VellumModule::SortDisplay(const std::string& sort) {
  VellumMain& main = page_.main;
  const bool opened = WithFailureTail(page_.common.errorLog(), "VellumModule.SortDisplay", [&] {
    if (!HasRows(LogView)) main.LogPosition.SetRecordset(LogRecordset);
    LogView.Close();
    LogRecordset.SetSort(sort);
    LogView = LogRecordset.OpenRecordset();
    main.LogPosition.SetRecordset(LogView);
    if (!HasRows(LogView)) {
      main.SetFieldEnable(false);
    } else {
      main.SetFieldEnable(true);
      if (sort == "QSO_Begin") {
        main.LogPosition.MoveLast();
      } else {
        main.LogPosition.MoveFirst();
      }
      LogView.Edit();
      if (main.Visible()) main.Fieldbox(field::Call).SetFocus();
    }
    FormatLogGrid();
  });
  // A sort that failed to open leaves the display on the view it closed: the grid is told, so
  // that it counts no rows there rather than going on showing the old ones.
  if (!opened) IgnoringErrors([&] { main.LogPosition.RowsChanged(); });
}

void VellumModule::SortLog(const std::string& sort) {
  VellumMain& main = page_.main;
  WithFailureTail(page_.common.errorLog(), "VellumModule.SortLog", [&] {
    if (!HasRows(LogView)) main.LogPosition.SetRecordset(LogRecordset);
    LogView.Close();
    LogRecordset.SetSort(sort);
    LogView = LogRecordset.OpenRecordset();
    main.LogPosition.SetRecordset(LogView);
  });
}

// ---- The advanced window's composed sorts and SQL filters ----

void VellumModule::UpdateAdvancedSort(int index) {
  AdvancedFilter& window = page_.advancedFilter;
  std::array<logview::SortFieldChoice, 3> fields;
  for (int i = 0; i < 3; ++i)
    fields[static_cast<size_t>(i)] = {window.SortField(i).Text(),
                                      window.SortDescendingButton(i).Value()};
  const std::string sort = logview::ComposeSort(fields);
  window.AdvancedSort(index).SetText(sort);
  page_.SaveSetting(setting::kSQLSort, index, sort);
  if (index == CurrentAdvancedSort && page_.main.SortAdvancedButton.Value())
    page_.main.SortAdvancedButton_Click();
}

void VellumModule::UpdateAdvancedSortIndex(int index) {
  AdvancedFilter& window = page_.advancedFilter;
  for (int i = 0; i < 4; ++i) {
    if (window.AdvancedSortSelect(i).Value()) {
      page_.SaveSetting(setting::kSQLSortIndex, std::to_string(i));
      CurrentAdvancedSort = static_cast<int16_t>(index);
    }
  }
  if (page_.main.SortAdvancedButton.Value()) page_.main.SortAdvancedButton_Click();
}

std::string VellumModule::GetCurrentAdvancedSort() const {
  return page_.advancedFilter.AdvancedSort(CurrentAdvancedSort).Text();
}

void VellumModule::InitializeBandModeFilters() {
  AdvancedFilter& window = page_.advancedFilter;
  for (int i = 1; i <= logview::kBandBoxes; ++i) window.BandCheck(i).SetValue(0);
  for (int i = 1; i <= logview::kModeBoxes; ++i) window.ModeCheck(i).SetValue(0);
}

void VellumModule::InitializeSQLFilters() {
  WithFailureTail(page_.common.errorLog(), "VellumModule.InitializeSQLFilters", [&] {
    AdvancedFilter& window = page_.advancedFilter;
    for (int i = 0; i < 4; ++i) {
      window.SQLquery(i).SetText(page_.GetSetting(setting::kSQLQuery, i, ""));
      window.AdvancedSort(i).SetText(page_.GetSetting(setting::kSQLSort, i, ""));
    }
    // Nonsense here (a word, an index beyond the four) fails the procedure and is reported;
    // the first sort stays selected and the window is usable.
    CurrentAdvancedSort = 0;
    const int16_t stored = vb::CInt(vb::Variant(page_.GetSetting(setting::kSQLSortIndex, "0"))
                                        .ToDouble());
    window.AdvancedSortSelect(stored).SetValue(true);
    CurrentAdvancedSort = stored;
  });
}

void VellumModule::SaveSQLFilter(int index) {
  page_.SaveSetting(setting::kSQLQuery, index, page_.advancedFilter.SQLquery(index).Text());
}

}  // namespace vellumar
