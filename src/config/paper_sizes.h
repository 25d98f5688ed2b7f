#pragma once
// The platform's standard paper table: the paper numbers a printer driver knows, with their
// names, in the order of their numbers. The configuration window lists them for the operator
// and keeps the chosen number.
#include <span>

namespace vellumar {

struct PaperSize {
  int number;        // the driver's paper number, kept as the combo's ItemData
  const char* name;  // as listed to the operator
};

inline constexpr int kUserDefinedPaper = 256;  // a size set by width and height

// Numbers 1 to 41, then kUserDefinedPaper.
std::span<const PaperSize> StandardPaperSizes();

}  // namespace vellumar
