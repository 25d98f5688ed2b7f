#pragma once
// The ADIF export: writes the QSOs of the Log page's view, in its order, to a text file of ADIF
// tags, one line per QSO behind a short header. The window's Export tab and `vellumar-cli
// export` run this code; the question about an existing file and the display of the count
// come in through `ExportView`.
#include <cstdio>
#include <string>

#include "frame/error_log.h"
#include "platform/db/recordset.h"

namespace vellumar::adif {

class ExportView {
 public:
  virtual ~ExportView() = default;
  // The file exists: true to clear it first ("Yes"), false to append to it without a header.
  virtual bool ClearExistingFile(const std::string& /*prompt*/) { return true; }
  // Once per QSO: yields to the event loop. False once Abort was pressed.
  virtual bool Continue() { return true; }
  // The count of QSOs processed (and exported: the two are always the same).
  virtual void CountChanged(long) {}
};

enum class ExportOutcome {
  kFinished,
  kAborted,
  kNoRecords,     // "no records to export"
  kUnopenable,    // "unable to open ADIF file ..."
  kProgramError,  // ExportCompleteTime shows "program error"
};

struct ExportOptions {
  bool dxBaseFrequencies = false;  // DXBaseExportButton
  std::string qsoNotes;            // ExportQSONotes: appended to each QSO's comment
};

class AdifExport {
 public:
  AdifExport(ErrorLog& errorLog, ExportOptions options) : errorLog_(errorLog), options_(options) {}

  // Steps 6 to 10 of the export for a pathname already chosen, walking a Clone of
  // `logRecordset` so that its current row stays. `now` is the present UTC date value, for
  // the header. `openError` receives "unable to open ADIF file ..." when the file can't be
  // opened.
  ExportOutcome ExportFile(const std::string& pathname, db::Recordset& logRecordset, double now,
                           ExportView& view, std::string* openError = nullptr);

  // The line of one QSO, "<EOR>" at its end; raises what reading or converting its fields
  // raises.
  std::string ExportQSO(db::Recordset& recordset);
  // The header's four lines, each with its CR LF.
  static std::string CreateNewADIF(double now);

  long Count() const { return count_; }

 private:
  void AppendField(const std::string& tag, const std::string& value);

  ErrorLog& errorLog_;
  ExportOptions options_;
  std::string exportRecordBuffer_;  // ExportRecordBuffer
  long count_ = 0;
};

// The text without any "<", wherever it stands.
std::string RemoveLeadingAngleBrackets(const std::string& text);
// The DXBase form of a frequency: a second point after the third decimal ("14.195.12").
std::string DXBaseFreqFormat(double freq);

}  // namespace vellumar::adif
