#pragma once
// Generated ADIF files for the import's long-running tests and benchmarks: one record a line,
// start times a minute apart so that no two QSOs are alike, calls, bands, modes, reports and
// QSL states drawn from a seeded generator, so that the same arguments give the same bytes.
#include <cstdint>
#include <string>
#include <vector>

namespace vellumar::test {

struct GeneratedEntity {
  std::string callPrefix;  // the start of the calls, e.g. "DL"
  int dxccCode = 0;        // the ADIF DXCC code written with them (0: none written)
};

struct AdifGeneratorOptions {
  int count = 1000;              // records
  std::uint32_t seed = 1;
  std::vector<GeneratedEntity> entities;  // drawn uniformly
  int withoutDxccPercent = 0;    // records written without a DXCC code, left to the lookup
  int duplicatePercent = 0;      // records that repeat an earlier one exactly (counted in `count`)
};

// The header and records, CR LF line ends.
std::string GenerateAdif(const AdifGeneratorOptions& options);

// The header and the first `records` records of `adif` as GenerateAdif wrote it.
std::string FirstRecords(const std::string& adif, int records);

}  // namespace vellumar::test
