#pragma once
// The forms the main window loads at start-up beside itself. They hold what their load and
// unload need; their pages grow with the features they serve.
#include "logpage/advanced_filter.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace vellumar {

class LogPage;

// The fast QSO entry window, shown at start.
class Capture : public ui::Form {
 public:
  Capture();
  ui::ComboBox DXCC{"DXCC"};  // the DXCC prefix list, filled with the main window's
  ui::ComboBox MyQTH{"MyQTH"};  // the myQTH IDs, filled with the main window's
  ui::TextBox Callsign{"Callsign"};
  ui::TextBox Frequency{"Frequency"};  // MHz
  ui::ComboBox Mode{"Mode"};           // the main window's modes

  // The Log page it logs into; set once by the page (capture_commands.cpp).
  void Attach(LogPage& page) { page_ = &page; }
  // Empties the station's boxes and deselects the mode.
  void ClearCmd_Click();
  // The station looked up: its QSL route asked for, the transceiver's frequency and mode (or
  // the previous QSO's), and the entity through Atlasine or the local lookup.
  void LookupCmd_Click();

 private:
  LogPage* page_ = nullptr;
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
