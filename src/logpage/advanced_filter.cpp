#include "logpage/advanced_filter.h"

#include <cctype>
#include <string>

#include "logview/filter_strings.h"
#include "platform/vb/ascii.h"

namespace vellumar {
namespace {

constexpr int kBackspace = 8;

const char* const kFieldOrdinals[3] = {"First", "Second", "Third"};

std::string LowerAscii(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return text;
}

}  // namespace

AdvancedFilter::AdvancedFilter() : ui::Form("AdvancedFilter") {
  SetCaption("Vellumar Advanced Log Sorts and Filters");

  ModeFrame.SetCaption("Mode Filter");
  Adopt(ModeFrame);
  for (int i = 1; i <= logview::kModeBoxes; ++i) {
    ModeLabel(i).SetCaption(logview::kModeLabels[static_cast<size_t>(i)]);
    // The mode boxes carry the band boxes' tips, copied along with them long ago; they mean
    // nothing for the modes, and stay as the window has always shown them.
    ModeCheck(i).SetToolTipText("check to show 20m QSOs");
    Adopt(ModeCheck(i));
    Adopt(ModeLabel(i));
  }
  ModeFilterCmd.SetCaption("Filter");
  ModeFilterCmd.SetToolTipText("display only QSOs in the specified modes");
  Adopt(ModeFilterCmd);

  BandFrame.SetCaption("Band Filter");
  Adopt(BandFrame);
  for (int i = 1; i <= logview::kBandBoxes; ++i) {
    const std::string label = logview::kBandLabels[static_cast<size_t>(i)];
    BandLabel(i).SetCaption(label);
    BandCheck(i).SetToolTipText("check to show " + LowerAscii(label) + " QSOs");
    Adopt(BandCheck(i));
    Adopt(BandLabel(i));
  }
  BandFilterCmd.SetCaption("Filter");
  BandFilterCmd.SetToolTipText("display only QSOs on the specified bands");
  Adopt(BandFilterCmd);

  AdvancedSortFrame.SetCaption("Advanced Sort");
  Adopt(AdvancedSortFrame);
  for (int i = 0; i < 4; ++i) {
    AdvancedSortSelect(i).SetToolTipText("click select advanced sort ");
    AdvancedSortGroup.Add(AdvancedSortSelect(i));
    AdvancedSort(i).SetToolTipText(
        "double-click to compose from First, Second, and Third fields");
    Adopt(AdvancedSortSelect(i));
    Adopt(AdvancedSort(i));
  }
  for (int i = 0; i < 3; ++i) {
    const std::string ordinal = kFieldOrdinals[i];
    SortFieldFrame(i).SetCaption(ordinal + " field");
    SortField(i).SetToolTipText("double-click to choose current ADIF field name");
    SortAscendingButton(i).SetCaption("Ascend");
    SortAscendingButton(i).SetToolTipText("sort from lowest to highest");
    SortDescendingButton(i).SetCaption("Descend");
    SortDescendingButton(i).SetToolTipText("sort from highest to lowest");
    SortDirection[i].Add(SortAscendingButton(i));
    SortDirection[i].Add(SortDescendingButton(i));
    SortAscendingButton(i).SetValue(true);
    SortFieldClearCmd(i).SetCaption("Clear");
    SortFieldClearCmd(i).SetToolTipText("clear the " + ordinal + " field");
    for (ui::Control* c : std::initializer_list<ui::Control*>{
             &SortFieldFrame(i), &SortField(i), &SortAscendingButton(i), &SortDescendingButton(i),
             &SortFieldClearCmd(i)})
      Adopt(*c);
  }
  FieldNameLabel.SetCaption("ADIF field name");
  Adopt(FieldNameLabel);
  FieldNameCombo.SetToolTipText("Valid field name");
  Adopt(FieldNameCombo);

  SQLFrame.SetCaption("SQL Query Filters");
  Adopt(SQLFrame);
  for (int i = 0; i < 4; ++i) {
    SQLquery(i).SetToolTipText("SQL query - double-click to append ADIF field name");
    SQLFilterCmd(i).SetCaption("Filter");
    SQLFilterCmd(i).SetToolTipText("display QSOs that match the SQL query");
    Adopt(SQLquery(i));
    Adopt(SQLFilterCmd(i));
  }
  SQLHelpCmd.SetCaption("Help");
  // A tip copied from the broken filter's button and never corrected; kept as it reads.
  SQLHelpCmd.SetToolTipText("display only QSOs marked as \"broken\"");
  Adopt(SQLHelpCmd);

  UTCFrame.SetCaption("UTC Filter");
  Adopt(UTCFrame);
  AdvancedUTCFilterCmd.SetCaption("Filter");
  AdvancedUTCFilterCmd.SetToolTipText("display only QSOs occuring within the UTC filter range");
  Adopt(AdvancedUTCFilterCmd);
  DateFilterKind(0).SetCaption("within");
  DateFilterKind(0).SetToolTipText(
      "when selected, UTC filter range is specifed in minutes before or after the filter date "
      "and time");
  DateFilterKind(1).SetToolTipText(
      "when selected, UTC filter range is specifed as after the filter date and time, and prior "
      "to this date and time");
  for (int i = 0; i < 2; ++i) {
    DateFilterKindGroup.Add(DateFilterKind(i));
    Adopt(DateFilterKind(i));
  }
  DateFilterTolerance.SetToolTipText("UTC filter selection range (minutes)");
  Adopt(DateFilterTolerance);
  ToleranceLabel.SetCaption("minutes of the filter date and time");
  Adopt(ToleranceLabel);
  UpperBoundLabel.SetCaption("after the filter date and time, and prior to");
  Adopt(UpperBoundLabel);
  DateFilterUpperBound.SetToolTipText("UTC filter upper bound (dd-mmm-yyyy hh:mm:ss)");
  Adopt(DateFilterUpperBound);

  DateFilterTolerance.KeyPress = [](int& keyAscii) {
    if (!ToleranceKeyPasses(keyAscii)) keyAscii = 0;
  };
  DateFilterUpperBound.KeyPress = [](int& keyAscii) {
    if (!UpperBoundKeyPasses(keyAscii)) keyAscii = 0;
  };
  // The operator's close hides the window; it is unloaded with the program.
  Form_QueryUnload = [this](int& cancel, int mode) {
    if (mode == ui::vbFormControlMenu) {
      cancel = 1;
      Hide();
    }
  };
}

bool AdvancedFilter::ToleranceKeyPasses(int keyAscii) {
  return keyAscii == kBackspace || (keyAscii >= '0' && keyAscii <= '9');
}

bool AdvancedFilter::UpperBoundKeyPasses(int keyAscii) {
  if (keyAscii == kBackspace || keyAscii == ' ' || keyAscii == '.' || keyAscii == ':' ||
      keyAscii == '-')
    return true;
  return keyAscii > 0 && keyAscii < 128 && std::isalnum(keyAscii) != 0;
}

}  // namespace vellumar
