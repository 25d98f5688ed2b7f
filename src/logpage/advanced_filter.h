#pragma once
// The window of composed sorts, band and mode filters, SQL filters and the date filter's range:
// a view of those settings, not modal. The operator's close hides it; it is unloaded with the
// program. What its buttons do is the main window's (vellum_main_filters.cpp).
#include "platform/ui/control_array.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace vellumar {

class AdvancedFilter : public ui::Form {
 public:
  AdvancedFilter();

  // "Mode Filter": boxes 1..14 with their labels, and the button that filters by them.
  ui::Frame ModeFrame{"ModeFrame"};
  ui::ControlArray<ui::CheckBox> ModeCheck{"ModeCheck", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}};
  ui::ControlArray<ui::Label> ModeLabel{"ModeLabel", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}};
  ui::CommandButton ModeFilterCmd{"ModeFilterCmd"};
  // "Band Filter": boxes 1..15.
  ui::Frame BandFrame{"BandFrame"};
  ui::ControlArray<ui::CheckBox> BandCheck{"BandCheck",
                                           {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}};
  ui::ControlArray<ui::Label> BandLabel{"BandLabel",
                                        {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}};
  ui::CommandButton BandFilterCmd{"BandFilterCmd"};
  // "Advanced Sort": four composed sorts, one of them selected.
  ui::Frame AdvancedSortFrame{"AdvancedSortFrame"};
  ui::ControlArray<ui::OptionButton> AdvancedSortSelect{"AdvancedSortSelect", 4};
  ui::OptionGroup AdvancedSortGroup;
  ui::ControlArray<ui::TextBox> AdvancedSort{"AdvancedSort", 4};
  // The three fields a sort is composed of, each ascending or descending.
  ui::ControlArray<ui::Frame> SortFieldFrame{"SortFieldFrame", 3};
  ui::ControlArray<ui::TextBox> SortField{"SortField", 3};
  ui::ControlArray<ui::OptionButton> SortAscendingButton{"SortAscendingButton", 3};
  ui::ControlArray<ui::OptionButton> SortDescendingButton{"SortDescendingButton", 3};
  ui::OptionGroup SortDirection[3];
  ui::ControlArray<ui::CommandButton> SortFieldClearCmd{"SortFieldClearCmd", 3};
  ui::Label FieldNameLabel{"FieldNameLabel"};
  ui::ComboBox FieldNameCombo{"FieldNameCombo"};  // the log's column names
  // "SQL Query Filters": four queries, each with its button.
  ui::Frame SQLFrame{"SQLFrame"};
  ui::ControlArray<ui::TextBox> SQLquery{"SQLquery", 4};
  ui::ControlArray<ui::CommandButton> SQLFilterCmd{"SQLFilterCmd", 4};
  ui::CommandButton SQLHelpCmd{"SQLHelpCmd"};
  // "UTC Filter": the date filter's range, within minutes of the date or up to a bound.
  ui::Frame UTCFrame{"UTCFrame"};
  ui::CommandButton AdvancedUTCFilterCmd{"AdvancedUTCFilterCmd"};
  ui::ControlArray<ui::OptionButton> DateFilterKind{"DateFilterKind", 2};
  ui::OptionGroup DateFilterKindGroup;
  ui::TextBox DateFilterTolerance{"DateFilterTolerance"};
  ui::Label ToleranceLabel{"ToleranceLabel"};
  ui::Label UpperBoundLabel{"UpperBoundLabel"};
  ui::TextBox DateFilterUpperBound{"DateFilterUpperBound"};

  // The keys the two range boxes let through.
  static bool ToleranceKeyPasses(int keyAscii);
  static bool UpperBoundKeyPasses(int keyAscii);
};

}  // namespace vellumar
