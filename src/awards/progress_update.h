#pragma once
// Counting a QSO into the Progress table, and reading one entity's status on a band and mode.
// Statuses only rise: a QSO raises the letters of its band's and its mode's columns; nothing here
// lowers one (a recompute rebuilds the table for that).
#include <cstdint>
#include <functional>
#include <string>

#include "platform/db/recordset.h"

namespace vellumar {

// Strength of a stored status letter: "" 0, "W" 1, "R" 2, "F" 3, "V" 4. Any other letter,
// "Q" of the QSL walk included, counts 0. The letter is compared upper-cased.
int16_t ProgressLetterStrength(const std::string& letter);

// Strength a QSO's QSL_Rcvd brings, compared upper-cased: "", " ", "N" 1; "R" 2; "Y" 3; "V" 4;
// anything else ("I", "X", ...) 0.
int16_t QSLRcvdStrength(const std::string& qslRcvd);

// Raises the status in `column` of the current Progress row, which the caller has put into edit
// mode. Column -1 (no column) does nothing. Only a strength of 1..4 greater than the current
// letter's is written: "W", "R", "F", and for 4 "V" where the ARRL verifies the column, else "F".
void UpdateProgressRecord(db::Recordset& progressRow, int16_t strength, int16_t column);

// The two sibling programs told about a counted QSO. An empty hook is skipped.
struct ProgressNotifications {
  // The map sibling: CountryCode & "|" & progress.
  std::function<void(const std::string& text)> atlasineUpdateProgress;
  // The spot-collecting sibling: the QSO's Call, Band, Mode, DXCCPrefix and the progress.
  std::function<void(const std::string& callsign, const std::string& band,
                     const std::string& mode, const std::string& dxcc,
                     const std::string& progress)>
      clustrineUpdateProgress;
};

using ProgressErrorReporter = std::function<void(int number, const std::string& where)>;

// The letters of columns 3..17 of the current Progress row, each followed by "|".
std::string ProgressString(const db::Recordset& progressRow);

// Counts the QSO on which `qso` stands into `progressView` (the Progress view, sorted by Prefix).
// A QSO with no DXCCID, or whose entity has no Progress row, is marked BROKEN "Y"; a counted QSO
// loses an earlier BROKEN "Y". The view is left on the QSO's entity. With `notify`, the siblings
// are sent the entity's new progress. A database error goes to reportError under
// "VellumModule.UpdateProgress".
void UpdateProgress(db::Recordset& qso, db::Recordset& progressView, bool notify,
                    const ProgressNotifications& notifications,
                    const ProgressErrorReporter& reportError);

// The status of the entity with `prefix` over two columns named by `band` and `mode` (the two
// are interchangeable): "?" for an unknown prefix, "F" when both letters are "F" or "V", "W" when
// both are non-empty, "U" otherwise. An unknown column name reads as empty.
std::string GetProgress(db::Recordset& progressRecordset, const std::string& prefix,
                        const std::string& band, const std::string& mode);

}  // namespace vellumar
