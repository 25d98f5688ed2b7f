// The Log page's filter and sort commands, and the buttons of the advanced window that are the
// main window's. Each command does nothing while another runs (they yield mid-way), shows the
// hourglass meanwhile, and leaves the page ready for the next filter: FilterField focused with
// its text selected.
#include <string>

#include "config/window_placement.h"
#include "frame/common.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logpage/vellum_main.h"
#include "logview/filter_strings.h"
#include "platform/vb/convert.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "platform/vb/variant.h"

namespace vellumar {
namespace {

constexpr int kEnter = 13;
constexpr int kLineFeed = 10;

// Runs a filter or sort command: nothing while another command runs, the hourglass meanwhile,
// failures reported under the command's name.
template <class Body>
void RunFilterCommand(VellumMain& form, ErrorLog& log, const char* procedure, Body&& body) {
  if (form.CommandBusy) return;
  form.CommandBusy = true;
  form.SetMousePointer(ui::vbHourglass);
  WithFailureTail(log, std::string("VellumMain.") + procedure, std::forward<Body>(body));
  form.SetMousePointer(ui::vbDefault);
  form.CommandBusy = false;
}

}  // namespace

void VellumMain::WireFilters() {
  for (ui::Control* c : std::initializer_list<ui::Control*>{
           &FilterCallCmd, &FilterDXCCCmd, &FilterDateCmd, &FilterBrokenCmd, &FilterClearCmd,
           &AdvancedFilterCmd, &SortCallButton, &SortUTCButton, &SortAdvancedButton})
    Adopt(*c);
  SortCallButton.SetCaption("Call");
  SortUTCButton.SetCaption("UTC");
  SortAdvancedButton.SetCaption("Advanced");
  SortCallButton.SetToolTipText("display the log in callsign order");
  SortUTCButton.SetToolTipText("display the log in order of start time");
  SortAdvancedButton.SetToolTipText(
      "display the log in order specified in the Advanced Log Sorts and Filters window");
  SortKind.Add(SortCallButton);
  SortKind.Add(SortUTCButton);
  SortKind.Add(SortAdvancedButton);
  SortUTCButton.SetValue(true);  // a log opens in order of start time

  FilterCallCmd.Click = [this] { FilterCallCmd_Click(); };
  FilterDXCCCmd.Click = [this] { FilterDXCCCmd_Click(); };
  FilterDateCmd.Click = [this] { FilterDateCmd_Click(); };
  FilterDateCmd.MouseDown = [this](int button, int, float, float) {
    LastFilterMouseButton = static_cast<int16_t>(button);
  };
  // The right button shows the advanced window, where the date filter's range is set.
  FilterDateCmd.MouseUp = [this](int button, int, float, float) {
    if (button == ui::vbRightButton && FilterDateCmd.Enabled()) AdvancedFilterCmd_Click();
  };
  FilterBrokenCmd.Click = [this] { FilterBrokenCmd_Click(); };
  FilterClearCmd.Click = [this] { FilterClearCmd_Click(); };
  AdvancedFilterCmd.Click = [this] { AdvancedFilterCmd_Click(); };
  FilterField.KeyPress = [this](int& keyAscii) { FilterField_KeyPress(keyAscii); };
  SortCallButton.Click = [this] { SortCallButton_Click(); };
  SortUTCButton.Click = [this] { SortUTCButton_Click(); };
  SortAdvancedButton.Click = [this] { SortAdvancedButton_Click(); };
}

void VellumMain::WireAdvancedFilter() {
  AdvancedFilter& window = page_.advancedFilter;
  VellumModule& module = page_.module;
  window.ModeFilterCmd.Click = [this] { FilterModeCmd_Click(); };
  window.BandFilterCmd.Click = [this] { FilterBandCmd_Click(); };
  window.AdvancedUTCFilterCmd.Click = [this] { FilterDateCmd_Click(); };
  window.SQLFilterCmd.On(&ui::CommandButton::Click, [this](int i) { FilterSQLCmd_Click(i); });
  window.SQLHelpCmd.Click = [this] { page_.common.InvokeHelp("Items.htm"); };
  window.AdvancedSortSelect.On(&ui::OptionButton::Click,
                               [&module](int i) { module.UpdateAdvancedSortIndex(i); });
  window.AdvancedSort.On(&ui::TextBox::DblClick,
                         [&module](int i) { module.UpdateAdvancedSort(i); });
  window.SortField.On(&ui::TextBox::DblClick, [&window](int i) {
    window.SortField(i).SetText(window.FieldNameCombo.Text());
  });
  window.SortFieldClearCmd.On(&ui::CommandButton::Click,
                              [&window](int i) { window.SortField(i).SetText(""); });
  window.SQLquery.On(&ui::TextBox::Change, [&module](int i) { module.SaveSQLFilter(i); });
  window.SQLquery.On(&ui::TextBox::DblClick, [&window](int i) {
    ui::TextBox& query = window.SQLquery(i);
    query.SetText(query.Text() + window.FieldNameCombo.Text());
  });
  window.DateFilterUpperBound.DblClick = [this] {
    page_.advancedFilter.DateFilterUpperBound.SetText(
        vb::FormatDate(page_.common.utc().CurrentTime(), page_.setup().GetDateTimeFormat()));
  };
  window.Form_Load = [this] { AdvancedFilter_Load(); };
  window.Form_Unload = [this](int&) { AdvancedFilter_Unload(); };
}

// ---- The advanced window's load and unload ----

void VellumMain::AdvancedFilter_Load() {
  AdvancedFilter& window = page_.advancedFilter;
  WithFailureTail(page_.common.errorLog(), "AdvancedFilter.Form_Load", [&] {
    RestoreWindowPosition(window, page_.common, page_.settings);
    window.DateFilterTolerance.SetText(page_.GetSetting(setting::kDateFilterTolerance, "15"));
    const double now = page_.common.utc().CurrentTime();
    const std::string bound =
        page_.GetSetting(setting::kDateFilterUpperBound, vb::DateToString(now));
    // A bound that isn't a date is shown as it was stored; the date filter refuses it.
    const std::optional<double> date = vb::ParseDate(bound);
    window.DateFilterUpperBound.SetText(
        date ? vb::FormatDate(*date, page_.setup().GetDateTimeFormat()) : bound);
    window.DateFilterKind(0).SetValue(true);
    const int kind = vb::CInt(vb::Variant(page_.GetSetting(setting::kDateFilterKind, "0")).ToDouble());
    window.DateFilterKind(kind == 0 ? 0 : 1).SetValue(true);
  });
}

void VellumMain::AdvancedFilter_Unload() {
  AdvancedFilter& window = page_.advancedFilter;
  WithFailureTail(page_.common.errorLog(), "AdvancedFilter.Form_Unload", [&] {
    SaveWindowPosition(window, page_.common, page_.settings);
    page_.SaveSetting(setting::kDateFilterTolerance, window.DateFilterTolerance.Text());
    page_.SaveSetting(setting::kDateFilterUpperBound, window.DateFilterUpperBound.Text());
    page_.SaveSetting(setting::kDateFilterKind, window.DateFilterKind(0).Value() ? "0" : "1");
  });
}

// ---- The filters, as the page runs them ----

void VellumMain::TidyAfterFilter() {
  page_.loop.Yield();
  UpdateCaption();
  if (TabbedDialog.Tab() == 0) IgnoringErrors([&] { FilterField.SetFocus(); });
  FilterField.SetSelStart(0);
  FilterField.SetSelLength(static_cast<int>(FilterField.Text().size()));
  page_.module.EnableLogActions(true);
}

// Call, date and DXCC filters with nothing to filter by clear the filter instead.
bool VellumMain::ClearedForEmptyPattern() {
  if (!FilterField.Text().empty()) return false;
  LastFilterKind = 0;
  page_.module.FilterDisplay(logview::NoFilter());
  return true;
}

void VellumMain::FilterCall() {
  if (!ClearedForEmptyPattern()) {
    LastFilterKind = 1;
    page_.module.FilterCall(FilterField.Text());
  }
  TidyAfterFilter();
}

void VellumMain::FilterBand() {
  LastFilterKind = 0;
  page_.module.FilterBand();
  TidyAfterFilter();
}

void VellumMain::FilterMode() {
  LastFilterKind = 0;
  page_.module.FilterMode();
  TidyAfterFilter();
}

void VellumMain::FilterSQL(int index) {
  LastFilterKind = 0;
  page_.module.FilterSQL(index);
  TidyAfterFilter();
}

void VellumMain::FilterClear() {
  LastFilterKind = 0;
  page_.module.FilterDisplay(logview::NoFilter());
  page_.loop.Yield();
  UpdateCaption();
  if (FilterField.Visible()) IgnoringErrors([&] { FilterField.SetFocus(); });
  page_.module.EnableLogActions(true);
}

// ---- The commands ----

void VellumMain::FilterCallCmd_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "FilterCallCmd_Click", [&] { FilterCall(); });
}

void VellumMain::FilterDXCCCmd_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "FilterDXCCCmd_Click", [&] {
    if (!ClearedForEmptyPattern()) {
      LastFilterKind = 3;
      page_.module.FilterDXCCPrefix(FilterField.Text());
    }
    TidyAfterFilter();
  });
}

void VellumMain::FilterDateCmd_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "FilterDateCmd_Click", [&] {
    if (!ClearedForEmptyPattern()) {
      LastFilterKind = 2;
      page_.module.FilterDate(FilterField.Text());
    }
    TidyAfterFilter();
  });
}

void VellumMain::FilterBrokenCmd_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "FilterBrokenCmd_Click", [&] {
    FilterField.SetText("");
    LastFilterKind = 4;
    page_.module.FilterBroken();
    TidyAfterFilter();
  });
}

void VellumMain::FilterClearCmd_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "FilterClearCmd_Click", [&] { FilterClear(); });
}

void VellumMain::FilterBandCmd_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "FilterBandCmd_Click", [&] { FilterBand(); });
}

void VellumMain::FilterModeCmd_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "FilterModeCmd_Click", [&] { FilterMode(); });
}

void VellumMain::FilterSQLCmd_Click(int index) {
  RunFilterCommand(*this, page_.common.errorLog(), "FilterSQLCmd_Click",
                   [&] { FilterSQL(index); });
}

void VellumMain::FilterField_KeyPress(int& keyAscii) {
  if (keyAscii == kLineFeed) {
    keyAscii = 0;
    return;
  }
  if (keyAscii != kEnter) return;
  keyAscii = 0;
  RepeatLastFilter();
}

void VellumMain::RepeatLastFilter() {
  switch (LastFilterKind) {
    case 1:
      FilterCallCmd_Click();
      break;
    case 2:
      FilterDateCmd_Click();
      break;
    case 3:
      FilterDXCCCmd_Click();
      break;
    default:
      break;  // the broken filter, or none yet: nothing to repeat
  }
}

void VellumMain::AdvancedFilterCmd_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "AdvancedFilterCmd_Click",
                   [&] { page_.advancedFilter.Show(); });
}

// ---- Sorts ----

void VellumMain::SortCallButton_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "SortCallButton_Click",
                   [&] { page_.module.SortDisplay("Call"); });
}

void VellumMain::SortUTCButton_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "SortUTCButton_Click",
                   [&] { page_.module.SortDisplay("QSO_Begin"); });
}

void VellumMain::SortAdvancedButton_Click() {
  RunFilterCommand(*this, page_.common.errorLog(), "SortAdvancedButton_Click",
                   [&] { page_.module.SortDisplay(page_.module.GetCurrentAdvancedSort()); });
}

}  // namespace vellumar
