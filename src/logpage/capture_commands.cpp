// The Capture window's commands that the siblings' newcallsign and newentry reach: Clear and
// Lookup, as far as the station, the transceiver and the entity go.
#include <string>

#include "config/set_combo.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logstore/field_table.h"
#include "platform/vb/convert.h"

namespace vellumar {

Capture::Capture() : ui::Form("Capture") {
  SetCaption("Vellumar QSO Capture");
  Mode.SetStyle(ui::ComboBox::kDropDownList);
  Mode.AddItem("");
  for (const char* item : logstore::ComboItems(logstore::field::Mode)) Mode.AddItem(item);
}

void Capture::ClearCmd_Click() {
  Callsign.SetText("");
  Frequency.SetText("");
  Mode.SetListIndex(-1);
  IgnoringErrors([&] { Callsign.SetFocus(); });
}

void Capture::LookupCmd_Click() {
  if (!page_) return;
  const std::string callsign = Callsign.Text();
  if (callsign.empty()) return;
  SiblingLinks& siblings = page_->siblings;
  page_->trailmark.GetQSLInfo(callsign);
  // The transceiver: its frequency comes in kHz; its mode is looked for from the list's second
  // item on. Without it the previous QSO's values fill what is empty.
  const LookupSlots& slots = page_->lookupSlots;
  if (siblings.client.ServerConnected(interop::kRigsteward)) {
    IgnoringErrors([&] { Frequency.SetText(vb::NumberToString(vb::Val(slots.Freq) / 1000)); });
    for (int i = 1; i < Mode.ListCount(); ++i) {
      if (Mode.List(i) == slots.Mode) {
        Mode.SetListIndex(i);
        break;
      }
    }
  } else {
    VellumModule& module = page_->module;
    if (Frequency.Text().empty()) Frequency.SetText(module.GetPrevFieldValue(logstore::field::Freq));
    if (Mode.ListIndex() < 1) SetCombo(Mode, module.GetPrevFieldValue(logstore::field::Mode));
  }
  siblings.client.AtlasineLookup(callsign);
  page_->loop.Yield();
  IgnoringErrors([&] { SetCombo(DXCC, slots.DXCCPrefix); });
  if (Visible()) IgnoringErrors([&] { Callsign.SetFocus(); });
}

}  // namespace vellumar
