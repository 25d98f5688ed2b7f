#include "awards/summary_counts.h"

#include <cstdlib>

namespace vellumar {

namespace {

// clang-format off
constexpr const char* kRowCaptions[kSummaryRows] = {
    "",
    "HR Mixed ", "HR Phone ", "HR CW ", "HR RTTY ",
    "Mixed ", "Phone ", "CW ", "RTTY ", "PSK ",
    "160M ", "80M ", "40M ", "30M ", "20M ", "17M ", "15M ", "12M ", "10M ", "6M ", "2M ",
    "HF BandCountries ", "HF ModeCountries ", "HF BandModes ", "DXCC Challenge "};
// clang-format on

bool Has(const std::string& letter) { return !letter.empty(); }
bool Confirms(const std::string& letter) { return letter == "F" || letter == "V"; }
bool Verifies(const std::string& letter) { return letter == "V"; }

// Counts one row of a grid from the letters of the columns it reads; `verifiable` is false for
// PSK, whose Verified cell stays blank.
template <class Letters>
void CountRow(SummaryCells& grid, int row, const Letters& letters, bool verifiable) {
  bool worked = false, confirmed = false, verified = false;
  for (const std::string* letter : letters) {
    worked = worked || Has(*letter);
    confirmed = confirmed || Confirms(*letter);
    verified = verified || Verifies(*letter);
  }
  if (worked) IncrementSummary(grid, row, kSummaryWorked);
  if (confirmed) IncrementSummary(grid, row, kSummaryConfirmed);
  if (verified && verifiable) IncrementSummary(grid, row, kSummaryVerified);
}

long SumRows(const SummaryCells& grid, int column, int first, int last) {
  long sum = 0;
  for (int row = first; row <= last; ++row) sum += SummaryValue(grid[row][column]);
  return sum;
}

}  // namespace

std::string SummaryRowCaption(int row) {
  return row >= 1 && row < kSummaryRows ? kRowCaptions[row] : "";
}

std::string SummaryColumnCaption(int column) {
  switch (column) {
    case kSummaryWorked:
      return "Worked ";
    case kSummaryConfirmed:
      return "Confirmed ";
    case kSummaryVerified:
      return "Verified ";
    default:
      return "";
  }
}

long SummaryValue(const std::string& text) {
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  long value = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
    value = value * 10 + (text[i] - '0');
  return negative ? -value : value;
}

std::string SummaryText(long value) {
  return value < 0 ? std::to_string(value) : " " + std::to_string(value);
}

void InitializeSummaryGrid(SummaryCells& grid) {
  grid[0] = {"", SummaryColumnCaption(1), SummaryColumnCaption(2), SummaryColumnCaption(3)};
  for (int row = 1; row < kSummaryRows; ++row) {
    grid[row] = {" ", " ", " ", " "};
    grid[row][0] = kRowCaptions[row];
  }
}

void IncrementSummary(SummaryCells& grid, int row, int column) {
  grid[row][column] = SummaryText(SummaryValue(grid[row][column]) + 1);
}

SummaryEntity ReadSummaryEntity(const db::Recordset& progress) {
  SummaryEntity e;
  const vb::Variant valid = progress.Fields(kProgressValid).Value();
  e.valid = !valid.IsNull() && valid.ToBool();
  for (int column = kProgressFirstBand; column < kProgressColumnCount; ++column)
    e.letters[column] = progress.Fields(column).Value().ToStringOrEmpty();
  return e;
}

void CountSummaryEntity(SummaryCells& deleted, SummaryCells& undeleted, const SummaryEntity& e) {
  const auto& l = e.letters;
  const std::string* phone = &l[kProgressPhone];
  const std::string* cw = &l[kProgressCW];
  const std::string* rtty = &l[kProgressRTTY];
  const std::string* psk = &l[kProgressPSK];
  // The Honor Roll counts current entities only, in both programmes.
  auto honorRoll = [&](SummaryCells& grid) {
    CountRow(grid, kSummaryHRMixed, std::array{phone, cw, rtty, psk}, true);
    CountRow(grid, kSummaryHRMixed + 1, std::array{phone}, true);
    CountRow(grid, kSummaryHRMixed + 2, std::array{cw}, true);
    CountRow(grid, kSummaryHRMixed + 3, std::array{rtty}, true);
  };
  auto modesAndBands = [&](SummaryCells& grid) {
    CountRow(grid, kSummaryMixed, std::array{phone, cw, rtty, psk}, true);
    CountRow(grid, kSummaryMixed + 1, std::array{phone}, true);
    CountRow(grid, kSummaryMixed + 2, std::array{cw}, true);
    CountRow(grid, kSummaryMixed + 3, std::array{rtty}, true);
    CountRow(grid, kSummaryPSK, std::array{psk}, false);
    for (int column = kProgressFirstBand; column <= kProgressLastBand; ++column)
      CountRow(grid, column + 7, std::array{&l[column]}, true);
  };
  if (e.valid) {
    honorRoll(deleted);
    honorRoll(undeleted);
    modesAndBands(undeleted);
  }
  modesAndBands(deleted);
}

void TotalSummaryGrid(SummaryCells& grid) {
  for (int column = kSummaryWorked; column <= kSummaryVerified; ++column) {
    grid[kSummaryBandCountries][column] = SummaryText(SumRows(grid, column, 10, 18));
    grid[kSummaryChallenge][column] =
        SummaryText(SumRows(grid, column, 10, 12) + SumRows(grid, column, 14, 19));
    grid[kSummaryModeCountries][column] = SummaryText(SumRows(grid, column, 6, 8));
    grid[kSummaryBandModes][column] =
        SummaryText(SummaryValue(grid[kSummaryBandCountries][column]) +
                    SummaryValue(grid[kSummaryModeCountries][column]));
  }
}

void CountSummaryTable(db::Recordset& walk, SummaryCells& deleted, SummaryCells& undeleted) {
  InitializeSummaryGrid(undeleted);
  InitializeSummaryGrid(deleted);
  if (walk.BOF() && walk.EOF_()) return;
  walk.MoveFirst();
  while (!walk.EOF_()) {
    CountSummaryEntity(deleted, undeleted, ReadSummaryEntity(walk));
    TotalSummaryGrid(undeleted);
    TotalSummaryGrid(deleted);
    walk.MoveNext();
  }
}

}  // namespace vellumar
