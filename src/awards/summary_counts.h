#pragma once
// The DXCC Summary's counts: two grids of 25 rows and 4 columns (captions in row 0 and column 0)
// counted from the Progress table. A count is kept as a cell's text, read as a number with an
// empty or blank cell as 0, and written as the runtime's Str writes a number: " 1".
#include <array>
#include <string>

#include "awards/progress_columns.h"
#include "platform/db/recordset.h"

namespace vellumar {

inline constexpr int kSummaryRows = 25;
inline constexpr int kSummaryColumns = 4;

// Rows of the grids.
inline constexpr int kSummaryHRMixed = 1;  // 1..4: Honor Roll Mixed, Phone, CW, RTTY
inline constexpr int kSummaryMixed = 5;    // 5..8: Mixed, Phone, CW, RTTY
inline constexpr int kSummaryPSK = 9;
inline constexpr int kSummaryFirstBand = 10;  // 10..20: 160M..2M (a band's column + 7)
inline constexpr int kSummaryBandCountries = 21;
inline constexpr int kSummaryModeCountries = 22;
inline constexpr int kSummaryBandModes = 23;
inline constexpr int kSummaryChallenge = 24;
// Columns of the grids.
inline constexpr int kSummaryWorked = 1;
inline constexpr int kSummaryConfirmed = 2;
inline constexpr int kSummaryVerified = 3;

using SummaryCells = std::array<std::array<std::string, kSummaryColumns>, kSummaryRows>;

// The caption of a row (1..24) or of a column (1..3), trailing blank included; "" otherwise.
std::string SummaryRowCaption(int row);
std::string SummaryColumnCaption(int column);

// A cell's number: leading blanks skipped, then the digits; "" and " " read 0.
long SummaryValue(const std::string& text);
// A number as the cell holds it: a blank for the sign of a positive number, "-" otherwise.
std::string SummaryText(long value);

// Every cell of rows 1..24 becomes " ", then the captions are written. Row 0's first cell
// stays empty.
void InitializeSummaryGrid(SummaryCells& grid);
// The cell becomes its number plus one.
void IncrementSummary(SummaryCells& grid, int row, int column);

// One entity as the summary reads it: column 2 (Valid) and the letters of columns 3..17.
struct SummaryEntity {
  bool valid = false;
  std::array<std::string, kProgressColumnCount> letters;  // indexed by Progress column
};
// Reads the entity on which the Progress recordset stands; Null reads as empty and false.
SummaryEntity ReadSummaryEntity(const db::Recordset& progress);

// Counts one entity into both grids: `deleted` (the DXCC programme, which keeps deleted
// entities outside the Honor Roll) and `undeleted` (TOP: current entities only). A letter
// counts as worked when non-empty (so "Q" or an unknown letter counts), confirmed when "F" or
// "V", verified when "V". Each cell counts the entity once at most.
void CountSummaryEntity(SummaryCells& deleted, SummaryCells& undeleted, const SummaryEntity& e);

// The award sums of columns 1..3: row 21 the bands 160..10 metres (rows 10..18), row 24 the
// bands 160..6 metres without 30 (rows 10..12, 14..19), row 22 Phone, CW and RTTY (6..8), and
// row 23 row 21 plus row 22.
void TotalSummaryGrid(SummaryCells& grid);

// Both grids from a walk of the Progress recordset `walk`, from its first row to its end:
// initialized, then each entity counted and the sums written after it. The window does the
// same with a yield per entity; the command line and the figures use this one.
void CountSummaryTable(db::Recordset& walk, SummaryCells& deleted, SummaryCells& undeleted);

}  // namespace vellumar
