#pragma once
// What every benchmark shares: a clock, the median of repeated runs, and the line it prints.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace vellumar::bench {

using Clock = std::chrono::steady_clock;

// Milliseconds since `since`.
inline double Ms(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

inline double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  const size_t n = v.size();
  return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// One figure, as bench/run collects them: "BENCH <name> <value> <unit>".
inline void Report(const char* name, double value, const char* unit) {
  std::printf("BENCH %s %.3f %s\n", name, value, unit);
  std::fflush(stdout);
}

}  // namespace vellumar::bench
