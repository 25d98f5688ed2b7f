#pragma once
// Date arithmetic of the runtime.
#include <string>

namespace vellumar::vb {

// DateAdd: interval "yyyy", "m", "d", "h", "n", "s", "ww"; raises 5 on another interval.
double DateAdd(const std::string& interval, double number, double date);
// DateDiff: counts interval boundaries crossed from date1 to date2 ("ww" counts Sundays).
long DateDiff(const std::string& interval, double date1, double date2);

}  // namespace vellumar::vb
