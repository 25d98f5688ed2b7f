// The record being gathered: the field slots, the five special values, and how a tag's value
// is stored by the tag table.
#include "adif/adif_parser.h"
#include "adif/tag_table.h"
#include "platform/vb/ascii.h"
#include "platform/vb/error.h"
#include "platform/vb/text.h"

namespace vellumar::adif {

void AdifParser::CheckIndex(int index) {
  if (index < 0 || index >= logstore::kQSOFieldCount) vb::Raise(vb::kSubscriptOutOfRange);
}

void AdifParser::ImportField(int index, const std::string& value) {
  CheckIndex(index);
  fields_[static_cast<std::size_t>(index)] = value;
  imported_[static_cast<std::size_t>(index)] = true;
}

void AdifParser::ClearRecord() {
  imported_.fill(false);
  for (ImportedValue* special : {&date_, &timeOn_, &timeOff_, &qslSent_, &qslRcvd_})
    special->present = false;
  echo_.clear();
}

bool AdifParser::ImportedFieldMissing(int index) const {
  CheckIndex(index);
  const auto i = static_cast<std::size_t>(index);
  return !(imported_[i] && !fields_[i].empty());
}

const std::string& AdifParser::ImportedFields(int index) const {
  CheckIndex(index);
  return fields_[static_cast<std::size_t>(index)];
}

bool AdifParser::FieldImported(int index) const {
  CheckIndex(index);
  return imported_[static_cast<std::size_t>(index)];
}

ImportedValue& AdifParser::SpecialSlot(int special) {
  switch (static_cast<Special>(special)) {
    case Special::kDate: return date_;
    case Special::kTimeOn: return timeOn_;
    case Special::kTimeOff: return timeOff_;
    case Special::kQSLSent: return qslSent_;
    case Special::kQSLRcvd: return qslRcvd_;
    case Special::kNone: break;
  }
  vb::Raise(vb::kSubscriptOutOfRange);
}

void AdifParser::Store(std::string_view lowerName, const std::string& value) {
  const TagRule* rule = FindTagRule(lowerName);
  if (rule == nullptr) return;  // not read; it stays in the echo
  switch (rule->treatment) {
    case Treatment::kAsRead:
      ImportField(rule->field, value);
      break;
    case Treatment::kUpperCase:
      ImportField(rule->field, vb::UpperAscii(value));
      break;
    case Treatment::kBaseFreq:
      ImportField(rule->field, DXBaseFreq(value));
      break;
    case Treatment::kMode:
      ImportField(rule->field, vb::EqualsIgnoreCase(value, "psk31") ? vb::Left(value, 3) : value);
      break;
    case Treatment::kIfNotEmpty:
      if (!value.empty()) {
        ImportedValue& slot = SpecialSlot(static_cast<int>(rule->special));
        slot.value = value;
        slot.present = true;
      }
      break;
  }
}

}  // namespace vellumar::adif
