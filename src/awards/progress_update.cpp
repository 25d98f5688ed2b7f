#include "awards/progress_update.h"

#include "awards/progress_columns.h"
#include "platform/db/dao_constants.h"
#include "platform/vb/error.h"

namespace vellumar {

namespace {

std::string Upper(std::string s) {
  for (char& c : s)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return s;
}

std::string Read(const db::Recordset& rs, const std::string& name) {
  return rs.Fields(name).Value().ToStringOrEmpty();
}

// Sets one field of the QSO and stores it, opening an edit unless one is open already.
void StoreQSOField(db::Recordset& qso, const std::string& name, const std::string& value) {
  if (qso.EditMode() == db::dbEditNone) qso.Edit();
  qso.Fields(name).SetValue(vb::Variant(value));
  qso.Update();
}

// A column's letter read by name; an unknown name (or any other error) reads as empty.
std::string LetterByName(const db::Recordset& rs, const std::string& name) {
  try {
    return rs.Fields(name).Value().ToStringOrEmpty();
  } catch (const vb::VbError&) {
    return "";
  }
}

bool IsConfirmed(const std::string& letter) { return letter == "F" || letter == "V"; }

}  // namespace

int16_t ProgressLetterStrength(const std::string& letter) {
  std::string upper = Upper(letter);
  if (upper == "W") return 1;
  if (upper == "R") return 2;
  if (upper == "F") return 3;
  if (upper == "V") return 4;
  return 0;  // empty, "Q", or a letter no QSO writes
}

int16_t QSLRcvdStrength(const std::string& qslRcvd) {
  std::string upper = Upper(qslRcvd);
  if (upper.empty() || upper == " " || upper == "N") return 1;
  if (upper == "R") return 2;
  if (upper == "Y") return 3;
  if (upper == "V") return 4;
  return 0;
}

void UpdateProgressRecord(db::Recordset& progressRow, int16_t strength, int16_t column) {
  if (column == -1) return;
  db::Field field = progressRow.Fields(column);
  int16_t current = ProgressLetterStrength(field.Value().ToStringOrEmpty());
  if (strength <= current || strength < 1 || strength > 4) return;
  const char* letter = "W";
  switch (strength) {
    case 1: letter = "W"; break;
    case 2: letter = "R"; break;
    case 3: letter = "F"; break;
    case 4: letter = ARRLVerified(column) ? "V" : "F"; break;
  }
  field.SetValue(vb::Variant(letter));
}

std::string ProgressString(const db::Recordset& progressRow) {
  std::string progress;
  for (int column = kProgressFirstBand; column <= kProgressPSK; ++column)
    progress += progressRow.Fields(column).Value().ToStringOrEmpty() + "|";
  return progress;
}

void UpdateProgress(db::Recordset& qso, db::Recordset& progressView, bool notify,
                    const ProgressNotifications& notifications,
                    const ProgressErrorReporter& reportError) {
  try {
    std::string dxccId = Read(qso, "DXCCID");
    if (dxccId.empty()) {
      StoreQSOField(qso, "BROKEN", "Y");
      return;
    }
    int16_t strength = QSLRcvdStrength(Read(qso, "QSL_Rcvd"));

    progressView.FindFirst("CountryCode = '" + dxccId + "'");
    if (progressView.NoMatch()) {
      StoreQSOField(qso, "BROKEN", "Y");
      return;
    }

    std::string band = Read(qso, "Band");
    std::string mode = Read(qso, "Mode");
    int16_t modeColumn = ModeProgressField(mode);
    progressView.Edit();
    UpdateProgressRecord(progressView, strength, BandProgressField(band));
    UpdateProgressRecord(progressView, strength, modeColumn);
    // PSK QSOs count in RTTY as well.
    if (modeColumn == kProgressPSK) UpdateProgressRecord(progressView, strength, kProgressRTTY);
    progressView.Update();

    if (Upper(Read(qso, "BROKEN")) == "Y") StoreQSOField(qso, "BROKEN", "");

    if (!notify) return;
    std::string progress = ProgressString(progressView);
    if (notifications.atlasineUpdateProgress)
      notifications.atlasineUpdateProgress(
          progressView.Fields(kProgressCountryCode).Value().ToStringOrEmpty() + "|" + progress);
    if (notifications.clustrineUpdateProgress)
      notifications.clustrineUpdateProgress(Read(qso, "Call"), band, mode,
                                            Read(qso, "DXCCPrefix"), progress);
  } catch (const vb::VbError& e) {
    if (reportError) reportError(e.number(), "VellumModule.UpdateProgress");
  }
}

std::string GetProgress(db::Recordset& progressRecordset, const std::string& prefix,
                        const std::string& band, const std::string& mode) {
  progressRecordset.FindFirst("Prefix = '" + prefix + "'");
  if (progressRecordset.NoMatch()) return "?";
  std::string bandLetter = LetterByName(progressRecordset, band);
  std::string modeLetter = LetterByName(progressRecordset, mode);
  if (IsConfirmed(bandLetter) && IsConfirmed(modeLetter)) return "F";
  if (!bandLetter.empty() && !modeLetter.empty()) return "W";
  return "U";
}

}  // namespace vellumar
