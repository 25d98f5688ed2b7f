#include "config/paper_sizes.h"

#include <array>

namespace vellumar {
namespace {

constexpr std::array<PaperSize, 42> kPaperSizes{{
    {1, "Letter, 8 1/2 x 11 in"},
    {2, "Letter Small, 8 1/2 x 11 in"},
    {3, "Tabloid, 11 x 17 in"},
    {4, "Ledger, 17 x 11 in"},
    {5, "Legal, 8 1/2 x 14 in"},
    {6, "Statement, 5 1/2 x 8 1/2 in"},
    {7, "Executive, 7 1/2 x 10 1/2 in"},
    {8, "A3, 297 x 420 mm"},
    {9, "A4, 210 x 297 mm"},
    {10, "A4 Small, 210 x 297 mm"},
    {11, "A5, 148 x 210 mm"},
    {12, "B4, 250 x 354 mm"},
    {13, "B5, 182 x 257 mm"},
    {14, "Folio, 8 1/2 x 13 in"},
    {15, "Quarto, 215 x 275 mm"},
    {16, "10 x 14 in"},
    {17, "11 x 17 in"},
    {18, "Note, 8 1/2 x 11 in"},
    {19, "Envelope #9, 3 7/8 x 8 7/8 in"},
    {20, "Envelope #10, 4 1/8 x 9 1/2 in"},
    {21, "Envelope #11, 4 1/2 x 10 3/8 in"},
    {22, "Envelope #12, 4 1/2 x 11 in"},
    {23, "Envelope #14, 5 x 11 1/2 in"},
    {24, "C size sheet"},
    {25, "D size sheet"},
    {26, "E size sheet"},
    {27, "Envelope DL, 110 x 220 mm"},
    {28, "Envelope C5, 162 x 229 mm"},
    {29, "Envelope C3, 324 x 458 mm"},
    {30, "Envelope C4, 229 x 324 mm"},
    {31, "Envelope C6, 114 x 162 mm"},
    {32, "Envelope C65, 114 x 229 mm"},
    {33, "Envelope B4, 250 x 353 mm"},
    {34, "Envelope B5, 176 x 250 mm"},
    {35, "Envelope B6, 176 x 125 mm"},
    {36, "Envelope, 110 x 230 mm"},
    {37, "Envelope Monarch, 3 7/8 x 7 1/2 in"},
    {38, "Envelope, 3 5/8 x 6 1/2 in"},
    {39, "U.S. Standard Fanfold, 14 7/8 x 11 in"},
    {40, "German Standard Fanfold, 8 1/2 x 12 in"},
    {41, "German Legal Fanfold, 8 1/2 x 13 in"},
    {kUserDefinedPaper, "User-defined"},
}};

}  // namespace

std::span<const PaperSize> StandardPaperSizes() { return kPaperSizes; }

}  // namespace vellumar
