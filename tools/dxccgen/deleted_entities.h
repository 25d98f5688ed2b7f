#pragma once
// The table of deleted DXCC entities kept in data/deleted-entities.csv: ADIF number, name,
// prefixes ("X(Y)" for a prefix shared with another entity and told apart by the letter Y,
// "[..]" a character class), continent, CQ zone, ITU zone and the periods of validity.
#include <string>
#include <vector>

namespace vellumar::dxccgen {

struct DeletedEntity {
  int adif = 0;                       // ADIF entity number
  std::string name;                   // e.g. "Aldabra Isl."
  std::vector<std::string> prefixes;  // as written: "VQ9(A)", "MS[460]", "DL"
  std::string continent;              // two letters
  int cqZone = 0;                     // first CQ zone given ("02;05" gives 2)
  int ituZone = 0;                    // first ITU zone given
  double endDate = 0;                 // last day of validity, days since 1899-12-30
  int line = 0;                       // line in the file
};

// Raises VbError naming the file and line for a row it can't read.
std::vector<DeletedEntity> ReadDeletedEntities(const std::string& path);

// The prefixes one written form stands for: "MS[460]" gives MS4, MS6, MS0; "6[T-U]0" gives
// 6T0, 6U0; "VQ9(A)" gives "VQ9-A" (the form a suffix letter leads to); "DL" gives DL.
std::vector<std::string> ExpandPrefixNotation(const std::string& written);

}  // namespace vellumar::dxccgen
