#pragma once
// The tags the parser reads, as data: for each lower-case tag name, where its value goes and
// how it is treated on the way. Any tag not in the table is dropped. The tags named after the
// log's columns are those columns' names in lower case.
#include <string>
#include <string_view>
#include <vector>

namespace vellumar::adif {

// The five values kept apart from the field slots, because the import converts them first.
enum class Special {
  kNone,     // the value goes to a field slot
  kDate,     // ImportedDate
  kTimeOn,   // ImportedTimeOn
  kTimeOff,  // ImportedTimeOff
  kQSLSent,  // ImportedQSLSent
  kQSLRcvd,  // ImportedQSLRcvd
};

enum class Treatment {
  kAsRead,
  kUpperCase,   // callsigns and QSL routes are kept in capitals
  kBaseFreq,    // frequencies through DXBaseFreq, whatever the import's options
  kMode,        // "PSK31" in any case becomes the log's "PSK" (its first three characters)
  kIfNotEmpty,  // a special value counts only when it has at least one character
};

struct TagRule {
  std::string tag;  // lower case
  int field;        // QSO field number, or -1 for a special value
  Special special;
  Treatment treatment;
};

// The table, in the order it is searched; the first match wins.
const std::vector<TagRule>& TagTable();
// The rule of a lower-case tag name; null for a tag the parser drops.
const TagRule* FindTagRule(std::string_view tag);

// Keeps the first "." of a frequency and drops every later one: "14.195.12" gives "14.19512".
std::string DXBaseFreq(const std::string& text);

}  // namespace vellumar::adif
