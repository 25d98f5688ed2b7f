#pragma once
// The reading of numeric text shared by CDbl, IsNumeric and the Variant conversions, which need
// to tell a text that isn't a number (13) from one too large for a Double (6); and the decimal
// digits of a Double that CStr and Format start from.
#include <string>

namespace vellumar::vb {

enum class NumberRead { kOk, kNotNumber, kOverflow };

// The whole text, blanks around allowed, as ParseNumber describes it.
NumberRead ReadNumber(const std::string& text, double& value);

// "d.ddde+xx" with the given number of significant digits. Written without the C library's
// locale (a process locale with a decimal comma must not change the program's numbers).
std::string ScientificText(double value, int significantDigits);

}  // namespace vellumar::vb
