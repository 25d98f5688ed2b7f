// How the QSO panel's slots react to the operator: keys, changes, list choices, double clicks
// and drops, the lookups and defaults they start, and what makes a QSO valid.
#include <optional>
#include <string>

#include "config/vellum_setup.h"
#include "frame/error_log.h"
#include "frame/version.h"
#include "logpage/log_page.h"
#include "logpage/log_page_helpers.h"
#include "logpage/side_forms.h"
#include "logpage/vellum_main.h"
#include "logstore/field_behaviour.h"
#include "logstore/schema_tables.h"
#include "platform/vb/ascii.h"
#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "platform/vb/text.h"

namespace vellumar {

namespace field = logstore::field;
using logstore::FieldCheck;
using logstore::KeyFilter;
namespace {

constexpr int kEarliestYear = 1930;  // a QSO or card date before it is a typing error
constexpr int kKeyCtrlC = 3, kKeyCtrlV = 22;

bool IsDigit(int c) { return c >= '0' && c <= '9'; }

// The year of a text that converts to a date; nothing when it doesn't convert.
std::optional<int> YearOf(const std::string& text) {
  const std::optional<double> date = vb::ParseDate(text);
  if (!date) return std::nullopt;
  return vb::SplitDate(*date).year;
}

}  // namespace

void VellumMain::WireFields() {
  for (auto& c : Fieldcombo) Adopt(*c);
  for (auto& d : DateBox) Adopt(*d);
  for (auto& combo : Fieldcombo) {
    // The box holds the value and takes what the operator types, a value in no list among
    // them (FT8, 60M); the list beside it offers the usual ones.
    combo->SetStyle(ui::ComboBox::kDropDownList);
    combo->SetToolTipText(Fieldbox(combo->Index()).ToolTipText());
  }
  for (auto& date : DateBox) {
    date->SetToolTipText(Fieldbox(date->Index()).ToolTipText());
    Fieldbox(date->Index()).SetVisible(false);
  }
  for (int i = 0; i < kFieldCount; ++i) {
    Fieldbox(i).DataField = logstore::kQSOFields[static_cast<size_t>(i)].name;
    LogPosition.Bind(Fieldbox(i));
  }
  Fieldbox.On(&ui::TextBox::KeyDown,
              [this](int i, int& key, int shift) { Fieldbox_KeyDown(i, key, shift); });
  Fieldbox.On(&ui::TextBox::KeyPress, [this](int i, int& ascii) { Fieldbox_KeyPress(i, ascii); });
  Fieldbox.On(&ui::TextBox::KeyUp,
              [this](int i, int& key, int shift) { Fieldbox_KeyUp(i, key, shift); });
  Fieldbox.On(&ui::TextBox::Change, [this](int i) { Fieldbox_Change(i); });
  Fieldbox.On(&ui::TextBox::DblClick, [this](int i) { fieldbox_DblClick(i); });
  Fieldcombo.On(&ui::ComboBox::Click, [this](int i) { Fieldcombo_Click(i); });
  DateBox.On(&ui::TextBox::KeyDown,
             [this](int i, int& key, int shift) { DateBox_KeyDown(i, key, shift); });
  DateBox.On(&ui::TextBox::KeyUp,
             [this](int i, int& key, int shift) { DateBox_KeyUp(i, key, shift); });
  DateBox.On(&ui::TextBox::Change, [this](int i) { DateBox_Change(i); });
  DateBox.On(&ui::TextBox::DblClick, [this](int i) { DateBox_DblClick(i); });
}

// ---- Validation ----

bool VellumMain::FieldErrors() const {
  for (bool e : FieldInError)
    if (e) return true;
  return false;
}

VellumMain::FieldVerdict VellumMain::CheckField(int index, const std::string& text) const {
  auto widthRule = [&]() -> FieldVerdict {
    const bool exceeded = static_cast<int>(vb::Len(text)) > page_.module.FieldWidth(index);
    return {!exceeded, exceeded};
  };
  switch (logstore::FieldBehaviourOf(index).check) {
    case FieldCheck::kCallsignRequired:
      if (text.empty()) return {false, true};
      return widthRule();
    case FieldCheck::kQSOTime: {
      const std::optional<int> year = text.empty() ? std::nullopt : YearOf(text);
      const bool valid = year && *year >= kEarliestYear;
      return {valid, !valid};
    }
    case FieldCheck::kCardDate: {
      if (text.empty()) return {true, false};
      const std::optional<int> year = YearOf(text);
      if (!year || *year < kEarliestYear) return {false, true};
      return widthRule();
    }
    case FieldCheck::kAlwaysValid:
      return {true, false};
    case FieldCheck::kWidth:
      break;
  }
  return widthRule();
}

bool VellumMain::ValidField(int index) {
  const FieldVerdict verdict = CheckField(index, Fieldbox(index).Text());
  SetFieldError(index, verdict.error);
  return verdict.valid;
}

bool VellumMain::ValidFields() {
  bool valid = true;
  for (int i = 0; i < kFieldCount; ++i) valid = ValidField(i) && valid;  // every label shows
  if (!valid) ErrorTimer.SetEnabled(true);
  return valid;
}

// ---- Keys ----

void VellumMain::Fieldbox_KeyDown(int index, int& keyCode, int shift) {
  (void)index;
  if (shift == ui::vbCtrlMask) {
    switch (keyCode) {
      case 'N':
        NewCmd_Click();
        return;
      case 'S':
        SaveCmd_Click();
        return;
      default:
        return;  // under Ctrl only N and S act; a paste or a cut marks nothing
    }
  } else {
    switch (keyCode) {
      case ui::vbKeyShift:
        return;
      case ui::vbKeyPageUp:
        LogPrevCmd_Click();
        return;
      case ui::vbKeyPageDown:
        LogNextCmd_Click();
        return;
      case ui::vbKeyEnd:
        LogLastCmd_Click();
        return;
      case ui::vbKeyHome:
        LogFirstCmd_Click();
        return;
      default:
        break;
    }
  }
  // Any other key marks the QSO modified, even one that changes nothing.
  WithFailureTail(page_.common.errorLog(), "VellumMain.Fieldbox_KeyDown", [&] {
    BeginEdit();
    page_.module.SetModified(true);
  });
}

void VellumMain::Fieldbox_KeyPress(int index, int& keyAscii) {
  const logstore::FieldBehaviour& behaviour = logstore::FieldBehaviourOf(index);
  if (keyAscii == ui::vbKeyReturn) {
    if (behaviour.enter == logstore::kEnterBeginsQSO) {
      keyAscii = 0;
      CallsignEntered();
      return;
    }
    if (behaviour.enter >= 0) {
      Fieldbox(behaviour.enter).SetFocus();
      return;
    }
  }
  const bool editKey = keyAscii == ui::vbKeyBack || keyAscii == kKeyCtrlC || keyAscii == kKeyCtrlV;
  switch (behaviour.keys) {
    case KeyFilter::kUppercase:
      if (keyAscii > 0 && keyAscii < 128) keyAscii = vb::UpperAscii(static_cast<char>(keyAscii));
      return;
    case KeyFilter::kDecimal: {
      const bool point = keyAscii == '.';
      if (point && Fieldbox(index).Text().find('.') == std::string::npos) return;
      if (!point && (IsDigit(keyAscii) || editKey)) return;
      keyAscii = 0;
      return;
    }
    case KeyFilter::kDigits:
      if (IsDigit(keyAscii) || editKey) return;
      keyAscii = 0;
      return;
    case KeyFilter::kAny:
      return;
  }
}

// Enter in the callsign: a callsign begins the QSO (and, in run mode, the next one), then the
// cursor goes on to the contest serial in a contest, else to the report sent.
void VellumMain::CallsignEntered() {
  if (!Fieldbox(field::Call).Text().empty()) {
    page_.siblings.client.ClustrineSpotStation(Fieldbox(field::Call).Text());
    InitializeQSO();
    if (page_.config.RunMode()) NewCmd_Click();
  }
  if (!Fieldbox(field::CONTEST_ID).Text().empty() && Fieldbox(field::SRX).Enabled()) {
    Fieldbox(field::SRX).SetFocus();
  } else {
    Fieldbox(field::RST_Sent).SetFocus();
  }
}

void VellumMain::Fieldbox_KeyUp(int index, int& keyCode, int shift) {
  (void)keyCode;
  (void)shift;
  const std::string text = Fieldbox(index).Text();
  WithFailureTail(page_.common.errorLog(), "VellumMain.Fieldbox_KeyUp", [&] {
    if (index == field::Freq) {
      if (text.empty()) {
        Fieldbox(field::Band).SetText("");
        return;
      }
      Fieldbox(field::Band).SetText(page_.bands.GetBandNameForFreq(vb::Val(text)));
    } else if (index == field::DXCCID) {
      // The prefix list follows the code typed; the prefix box keeps its value until the
      // operator picks from the list.
      if (!page_.common.IsInteger(text)) {
        MoveComboQuietly(2, Fieldcombo(field::DXCCPrefix).ListCount() > 0 ? 0 : -1);
      } else {
        int target = 0;
        DXCCDynaset.FindFirst("CountryCode = " + text);
        if (!DXCCDynaset.NoMatch()) {
          const std::string prefix = DXCCDynaset.Fields("DXCCPrefix").Value().ToStringOrEmpty();
          ui::ComboBox& combo = Fieldcombo(field::DXCCPrefix);
          for (int i = 0; i < combo.ListCount(); ++i)
            if (vb::EqualsIgnoreCase(combo.List(i), prefix)) {
              target = i;
              break;
            }
        }
        MoveComboQuietly(2, target);
      }
    }
    page_.module.SetPrevFieldValue(index, text);
  });
}

// ---- Changes ----

void VellumMain::MoveComboQuietly(int index, int listIndex) {
  ComboEchoIgnored[index] = true;
  Fieldcombo(index).SetListIndex(listIndex);
  page_.loop.Yield();
  ComboEchoIgnored[index] = false;
}

void VellumMain::Fieldbox_Change(int index) {
  SetFieldError(index, false);
  const std::string& text = Fieldbox(index).Text();
  if (index == field::QSL_Rcvd) {
    const std::string s = vb::UpperAscii(text);
    ConfirmCmd.SetEnabled(s != "V" && s != "Y");
    VerifyCmd.SetEnabled(s == "Y");
  } else if (index == field::DXCCPrefix) {
    QSOFrame.SetCaption("QSO: " + page_.dxcc.GetDXCCName(text));
  }
  if (FieldChanged[index]) {
    FieldChanged[index] = false;
    return;
  }
  if (!Fieldcombo.Exists(index)) {
    if (index == field::QSO_Begin || index == field::QSO_End) {
      const std::optional<double> date = vb::ParseDate(text);
      DateBox(index).SetText(date ? vb::FormatDate(*date, DateTimeFormat()) : text);
    } else if (index == field::QSLSDATE || index == field::QSLRDATE) {
      const std::optional<double> date = vb::ParseDate(text);
      DateBox(index).SetText(date ? vb::FormatDate(*date, "ddddd") : text);
    }
    return;
  }
  // The list shows the item equal to the upper-cased text. The comparison itself is exact, so
  // a list item in mixed case ("Hell", "Pkt") is never found and shows the empty item.
  ui::ComboBox& combo = Fieldcombo(index);
  const std::string wanted = vb::UpperAscii(text);
  for (int i = 0; i < combo.ListCount(); ++i) {
    if (combo.List(i) == wanted) {
      MoveComboQuietly(index, i);
      return;
    }
  }
  if (combo.ListCount() > 0) {
    // The value is in no list: the combo shows its empty item, the box keeps the value.
    ComboEchoIgnored[index] = true;
    combo.SetListIndex(0);
  }
}

void VellumMain::Fieldcombo_Click(int index) {
  if (ComboEchoIgnored[index]) {
    ComboEchoIgnored[index] = false;
    return;
  }
  WithFailureTail(page_.common.errorLog(), "VellumMain.Fieldcombo_Click", [&] {
    BeginEdit();
    page_.module.SetModified(true);
    FieldChanged[index] = true;
    ui::ComboBox& combo = Fieldcombo(index);
    if (index == field::QSL_Rcvd) {
      const std::string before = vb::UpperAscii(Fieldbox(field::QSL_Rcvd).Text());
      const std::string after = vb::UpperAscii(combo.Text());
      if (before != "Y" && after == "Y" && Fieldbox(field::QSLRDATE).Text().empty())
        Fieldbox(field::QSLRDATE)
            .SetText(vb::FormatDate(page_.common.utc().CurrentTime(), "ddddd"));
      if (before != "Y" && before != "V" && after == "Y" && VerificationNeeded())
        page_.desktop.MsgBox("Send this QSL card to the DXCC desk!", ui::vbOKOnly,
                             kApplicationTitle);
    }
    if (index == field::DXCCPrefix) {
      const int i = combo.ListIndex();
      if (i > -1) {
        const std::string code = std::to_string(combo.ItemData(i));
        Fieldbox(field::DXCCID).SetText(code == "0" ? "" : code);
      }
    }
    // The box takes the list's text; its Change knows the echo by FieldChanged.
    if (Fieldbox(index).Text() == combo.Text()) FieldChanged[index] = false;
    Fieldbox(index).SetText(combo.Text());
    page_.module.SetPrevFieldValue(index, combo.Text());
  });
}

// ---- Double clicks and drops ----

void VellumMain::fieldbox_DblClick(int index) {
  switch (index) {
    case field::RST_Rcvd:
    case field::RST_Sent:
      Fieldbox(index).SetText(IsPhoneMode(Fieldbox(field::Mode).Text()) ? "59" : "599");
      page_.module.SetModified(true);
      return;
    case field::QSL_Via:
    case field::ADDRESS:
      // Opens the address editor on the field, once that window can edit addresses.
      return;
    case field::Call: {
      const std::string call = Fieldbox(field::Call).Text();
      if (call.empty()) return;
      // The display narrows to the station's QSOs, and the siblings look the station up.
      FilterField.SetText(call);
      FilterCallCmd_Click();
      page_.siblings.client.AtlasineLookup(call);
      page_.trailmark.GetQSLInfo(call);
      return;
    }
    default:
      return;
  }
}

void VellumMain::Fieldbox_OLEDragDrop(int index, const std::string* text, int& effect) {
  if (index == field::ADDRESS) {
    if (text == nullptr) {
      effect = 0;
      return;
    }
    // The address editor's tidying of a dropped address comes with that window.
    Fieldbox(field::ADDRESS).SetText(*text);
  } else {
    Fieldbox(index).SetText(text ? *text : std::string());
  }
  // A drop fills the slot and no more: like a paste, it doesn't mark the QSO modified.
  effect = 1;
}

// ---- Date boxes ----

void VellumMain::DateBox_KeyDown(int index, int& keyCode, int shift) {
  (void)index;
  (void)keyCode;
  (void)shift;
  WithFailureTail(page_.common.errorLog(), "VellumMain.DateBox_KeyDown", [&] { BeginEdit(); });
}

void VellumMain::DateBox_KeyUp(int index, int& keyCode, int shift) {
  (void)keyCode;
  (void)shift;
  page_.module.SetModified(true);
  FieldChanged[index] = true;
  if (Fieldbox(index).Text() == DateBox(index).Text()) FieldChanged[index] = false;
  Fieldbox(index).SetText(DateBox(index).Text());
}

void VellumMain::DateBox_Change(int index) { SetFieldError(index, false); }

void VellumMain::DateBox_DblClick(int index) {
  switch (index) {
    case field::QSO_Begin:
      SetQSOStartTime();
      return;
    case field::QSO_End:
      if (page_.config.AutoSetDateTime()) {
        SetQSOEndTime();
      } else {
        DefaultQSOEndTime();
      }
      return;
    default:
      Fieldbox(index).SetText(vb::FormatDate(page_.common.utc().CurrentTime(), "ddddd"));
      return;
  }
}

}  // namespace vellumar
