#pragma once
// Jet's LIKE: * any run of characters, ? one character, # one digit, [abc] [a-z] one of a set,
// [!abc] one not in it; everything else stands for itself. Matching ignores case (ASCII and
// the Latin-1 letters) and works on characters, not bytes (UTF-8).
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;

namespace vellumar::db::jet {

// Whether value matches pattern. A malformed bracket ("[abc" or "[]") stands for itself here.
bool LikeMatch(std::string_view value, std::string_view pattern);

// The problem with a pattern, if it has one (an unclosed '[' or an empty "[]"), for the
// translator to refuse it.
std::optional<std::string> LikePatternProblem(std::string_view pattern);

// The literal text before the first wildcard, lower-cased, when the pattern has one: every match
// begins with it, so a range over it can use an index.
std::string LikeLiteralPrefix(std::string_view pattern);

// Registers vellumar_like(value, pattern) on a connection: NULL when either is NULL, else 1 or 0.
void RegisterLikeFunction(sqlite3* db);

}  // namespace vellumar::db::jet
