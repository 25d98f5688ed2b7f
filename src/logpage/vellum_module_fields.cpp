// The QSO's field slots as the central module serves them: the lists of the combos, the sizes
// and names of the open log's columns, filling empty slots, and the values remembered from one
// QSO to the next.
#include <algorithm>
#include <string>

#include "logpage/log_page.h"
#include "logpage/vellum_main.h"
#include "logpage/vellum_module.h"
#include "logstore/field_table.h"
#include "platform/vb/error.h"
#include "platform/vb/text.h"

namespace vellumar {

namespace field = logstore::field;
namespace {

constexpr int kAddressIndex = 34;
constexpr size_t kAddressLimit = 1024;  // the address is a memo; a slot takes this much

}  // namespace

void VellumModule::CheckFieldIndex(int index) {
  if (index < 0 || index >= logstore::kQSOFieldCount) vb::Raise(vb::kSubscriptOutOfRange);
}

void VellumModule::InitializeCombos() {
  fieldCombo_.fill(false);
  VellumMain& main = page_.main;
  for (auto& combo : main.Fieldcombo) {
    const int index = combo->Index();
    fieldCombo_[static_cast<size_t>(index)] = true;
    if (index == field::DXCCPrefix) continue;  // the DXCC prefixes come with the DXCC database
    combo->Clear();
    combo->AddItem("");
    for (const char* item : logstore::ComboItems(index)) combo->AddItem(item);
  }
}

bool VellumModule::FieldIsCombo(int index) const {
  CheckFieldIndex(index);
  return fieldCombo_[static_cast<size_t>(index)];
}

int VellumModule::FieldWidth(int index) const {
  CheckFieldIndex(index);
  return static_cast<int>(page_.main.LogPosition.Recordset().Fields()[index].Size());
}

std::string VellumModule::FieldName(int index) const {
  CheckFieldIndex(index);
  return page_.main.LogPosition.Recordset().Fields()[index].Name();
}

std::string VellumModule::FieldValue(const db::Recordset& recordset, int index) {
  try {
    return recordset.Fields()[index].Value().ToStringOrEmpty();
  } catch (const vb::VbError&) {
    return {};
  }
}

void VellumModule::InitializeField(int index, const std::string& value) {
  CheckFieldIndex(index);
  ui::TextBox& box = page_.main.Fieldbox(index);
  if (!box.Text().empty()) return;
  const size_t limit =
      index == kAddressIndex ? kAddressLimit : static_cast<size_t>(std::max(0, FieldWidth(index)));
  box.SetText(vb::Left(value, limit));
}

void VellumModule::InitializePrevFieldValues() {
  PrevFields.InitializePrevFieldValues([&](const std::string& key) {
    return page_.GetSetting(setting::kConfigurationSection, key, "");
  });
}

void VellumModule::SavePrevFieldValues() {
  PrevFields.SavePrevFieldValues([&](const std::string& key, const std::string& value) {
    page_.SaveSetting(setting::kConfigurationSection, key, value);
  });
}

}  // namespace vellumar
