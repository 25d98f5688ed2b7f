#pragma once
// The forms the main window loads at start-up beside itself. They hold what their load and
// unload need; their pages grow with the features they serve.
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace vellumar {

// The fast QSO entry window, shown at start.
class Capture : public ui::Form {
 public:
  Capture() : ui::Form("Capture") { SetCaption("Vellumar QSO Capture"); }
  ui::ComboBox DXCC{"DXCC"};  // the DXCC prefix list, filled with the main window's
};

// The window of composed sorts, band and mode filters and SQL filters. The operator's close
// hides it; it is unloaded with the program.
class AdvancedFilter : public ui::Form {
 public:
  AdvancedFilter();
  ui::ComboBox FieldNameCombo{"FieldNameCombo"};  // the log's column names
};

// The QSL card page: where cards are composed before printing.
class CardPage : public ui::Form {
 public:
  CardPage() : ui::Form("CardPage") { SetCaption("Vellumar QSL Card"); }
};

// The window in which QSL routes and addresses are corrected.
class AddressEditor : public ui::Form {
 public:
  AddressEditor();
};

}  // namespace vellumar
