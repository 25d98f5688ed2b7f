#include "awards/progress_columns.h"

#include <cctype>

#include "logstore/schema_tables.h"

namespace vellumar {

namespace {

struct ValueColumn {
  const char* value;  // lower-case band or mode
  int16_t column;     // Progress column index
};

constexpr ValueColumn kBandColumns[] = {
    {"160m", 3}, {"80m", 4},  {"40m", 5},  {"30m", 6}, {"20m", 7}, {"17m", 8},
    {"15m", 9},  {"12m", 10}, {"10m", 11}, {"6m", 12}, {"2m", 13},
};

constexpr ValueColumn kModeColumns[] = {
    {"ssb", 14},  {"usb", 14},   {"lsb", 14},  {"am", 14},    {"fm", 14},
    {"cw", 15},   {"hscw", 15},  {"rtty", 16}, {"hell", 16},  {"mfsk", 16},
    {"mt63", 16}, {"pac", 16},   {"pkt", 16},  {"throb", 16}, {"tor", 16},
    {"psk", 17},  {"psk31", 17}, {"bpsk", 17}, {"qpsk", 17},
};

constexpr const char* kModeNames[] = {"Phone", "CW", "RTTY", "PSK"};  // columns 14..17

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

template <size_t N>
int16_t ColumnOf(const ValueColumn (&table)[N], const std::string& value) {
  std::string lower = Lower(value);
  for (const ValueColumn& vc : table)
    if (lower == vc.value) return vc.column;
  return -1;
}

}  // namespace

static_assert(logstore::kProgressFields.size() == kProgressColumnCount);

int16_t BandProgressField(const std::string& band) { return ColumnOf(kBandColumns, band); }

int16_t ModeProgressField(const std::string& mode) { return ColumnOf(kModeColumns, mode); }

std::string BandProgressName(int index) {
  if (index < kProgressFirstBand || index > kProgressLastBand) return "";
  return logstore::kProgressFields[index].name;
}

vb::Variant BandFieldName(int index) { return vb::Variant(BandProgressName(index)); }

vb::Variant ModeFieldName(int index) {
  if (index < kProgressPhone || index > kProgressPSK) return vb::Variant(std::string());
  return vb::Variant(std::string(kModeNames[index - kProgressPhone]));
}

bool ARRLVerified(int index) { return index >= kProgressFirstBand && index <= kProgressRTTY; }

}  // namespace vellumar
