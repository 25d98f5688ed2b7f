#pragma once
// The QSO's 35 field slots as data: the label, the tool tip and the drop-down list of each slot
// of the QSO panel, indexed by the field's ordinal in QSOs. The windows build their controls
// from this table; nothing else lists the slots.
#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace vellumar::logstore {

inline constexpr int kQSOFieldCount = 35;

// The QSO's fields by their column names: each one's ordinal in QSOs, which is also the index of
// its slot in the panel's control arrays and in every table of fields.
namespace field {
enum Field : int {
  Band = 0,
  Call = 1,
  DXCCPrefix = 2,
  DXCCID = 3,
  Freq = 4,
  Mode = 5,
  Name = 6,
  Operator = 7,
  QSL_Rcvd = 8,
  QSL_Sent = 9,
  QSL_Via = 10,
  Comment = 11,
  QTH = 12,
  RST_Rcvd = 13,
  RST_Sent = 14,
  State = 15,
  QSLSDATE = 16,
  QSLRDATE = 17,
  TX_Power = 18,
  QSO_Begin = 19,
  QSO_End = 20,
  QSLMsg = 21,
  CONT = 22,
  ITUZ = 23,
  CQZ = 24,
  IOTA = 25,
  CNTY = 26,
  CONTEST_ID = 27,
  GRIDSQUARE = 28,
  SRX = 29,
  STX = 30,
  PROVINCE = 31,
  BROKEN = 32,
  MYQTHID = 33,
  ADDRESS = 34,
};
}  // namespace field

struct FieldSlot {
  const char* label;    // FieldLabel caption; "" for none
  bool combo;           // a Fieldcombo on top of the Fieldbox
  const char* toolTip;  // tool tip of the slot's control
};

extern const std::array<FieldSlot, kQSOFieldCount> kFieldSlots;

// The fixed items of a combo slot's list after its first, empty item: band, mode, QSL
// statuses, state, continent and province. The DXCC prefixes (2) and the myQTH IDs (33) come
// from the databases; other slots have none.
std::span<const char* const> ComboItems(int index);

// Ordinals of the fields whose value a new QSO inherits from the previous one, and which are
// kept in the settings between runs: Freq, Mode, CONTEST_ID, STX and MYQTHID.
inline constexpr std::array<int, 5> kRememberedFields = {
    field::Freq, field::Mode, field::CONTEST_ID, field::STX, field::MYQTHID};

// The table of previous values: what the next new QSO is given. Values of the remembered
// fields are read from and written to section "Configuration", keys "PrevFieldValue" + index.
class PrevFieldValues {
 public:
  // Clears the table, then reads the remembered fields through `get` (key -> stored value).
  template <class Get>
  void InitializePrevFieldValues(Get&& get) {
    *this = PrevFieldValues();
    for (int index : kRememberedFields) {
      persistent_[index] = true;
      value_[index] = get(Key(index));
      present_[index] = !value_[index].empty();
    }
  }
  // Writes the value of every remembered field through `save` (key, value).
  template <class Save>
  void SavePrevFieldValues(Save&& save) const {
    for (int index = 0; index < kQSOFieldCount; ++index)
      if (persistent_[index]) save(Key(index), value_[index]);
  }
  // Out of 0..34 raises 9 (subscript out of range).
  void SetPrevFieldValue(int index, const std::string& value);
  std::string GetPrevFieldValue(int index) const;
  bool PrevFieldPresent(int index) const;
  bool PrevFieldPersistent(int index) const;
  static std::string Key(int index) { return "PrevFieldValue" + std::to_string(index); }

 private:
  static void Check(int index);
  std::array<std::string, kQSOFieldCount> value_{};  // PrevFieldValue
  std::array<bool, kQSOFieldCount> present_{};       // PrevFieldPresent: holds a value
  std::array<bool, kQSOFieldCount> persistent_{};    // PrevFieldPersistent: kept in settings
};

}  // namespace vellumar::logstore
