#pragma once
// The forms the main window loads at start-up beside itself. They hold what their load and
// unload need; their pages grow with the features they serve.
#include "logpage/advanced_filter.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace vellumar {

// The fast QSO entry window, shown at start.
class Capture : public ui::Form {
 public:
  Capture() : ui::Form("Capture") { SetCaption("Vellumar QSO Capture"); }
  ui::ComboBox DXCC{"DXCC"};  // the DXCC prefix list, filled with the main window's
  ui::ComboBox MyQTH{"MyQTH"};  // the myQTH IDs, filled with the main window's
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
