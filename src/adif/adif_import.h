#pragma once
// The ADIF import: turns each record the tokeniser gathers into a new QSO of the open log, with
// its dates built, derived fields filled, over-long values cut, and every complaint told in the
// import's report (and, when asked, in the ".err" file beside the input). The window's Import
// tab, the sibling programs' `log` command and `vellumar-cli import` all run this code; what
// they differ in (labels or a console, the Abort button or a signal) comes in through
// `ImportView`.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "adif/adif_parser.h"
#include "adif/write_batch.h"
#include "awards/progress_update.h"
#include "frame/error_log.h"
#include "platform/db/database.h"
#include "station/band_table.h"
#include "station/dxcc_module.h"

namespace vellumar::adif {

// The options of the Import tab, with the defaults of their settings.
struct ImportSettings {
  bool checkDuplicates = true;    // ImportDuplicateCheckbox: no duplicate QSOs imported
  bool defaultCallsign = true;    // DefaultCallsignCheckbox ("DefaultImportCallsign" 1)
  bool saveImportErrors = false;  // SaveImportErrorsCheck ("SaveImportErrors" 0)
  bool loggerImport = false;      // LoggerImportButton ("LoggerImport" false)
  bool mmttyImport = false;       // MMTTYImportButton ("MMTTYImport" false)
  std::string myCallsign;         // MyCallsign of the configuration
};

// The import's counters, cleared together at the start of a file import.
struct ImportCounters {
  long processed = 0;
  long duplicates = 0;
  long truncated = 0;  // fields cut, not QSOs
  long illegals = 0;   // calls of IllegalRecord: one QSO may add more than one
  long imported = 0;
  long reports = 0;    // calls of ImportReport; decides whether the ".err" file stays
};

// What the import shows and asks along the way. The defaults show nothing and never abort.
class ImportView {
 public:
  virtual ~ImportView() = default;
  // A counter changed.
  virtual void CountersChanged(const ImportCounters&) {}
  // The report box's text changed (the header, or a message appended).
  virtual void ReportChanged(const std::string&) {}
  // Once per pass of the file loop: yields to the event loop. False once Abort was pressed.
  virtual bool Continue() { return true; }
  // How far the input has been read, in bytes of `total`.
  virtual void BytesRead(std::uint64_t, std::uint64_t) {}
};

// The narrow services the import works with.
struct ImportServices {
  db::Database log;            // the open log: its writes are grouped in batches
  db::Recordset progressView;  // the Progress view sorted by Prefix (UpdateProgress's)
  DXCCModule* dxcc = nullptr;  // Lookup, and the DXCC table's dynaset and rows
  LookupSlots* slots = nullptr;
  const BandTable* bands = nullptr;
  ErrorLog* errorLog = nullptr;
};

// How a file import ended.
enum class ImportOutcome {
  kEndOfFile,
  kAborted,
  kUnreadable,    // the input could not be opened
  kProgramError,  // a failure of the run itself; ImportCompleteTime shows "program error"
};

class AdifImport : public RecordConsumer {
 public:
  AdifImport(ImportServices services, ImportSettings settings);
  ~AdifImport() override;

  ImportSettings& Settings() { return settings_; }
  void SetView(ImportView* view) { view_ = view ? view : &silent_; }

  // Steps 4 to 10 of the file import, for a pathname already chosen: the ".err" file, the
  // counters, a copy of `logRecordset`'s view to work through, the header into the report, the
  // loop of one tag per pass until end of file or Abort, the ".err" file kept only when
  // something was reported. Writes are committed in batches, and always before it returns.
  // `openError` receives "Unable to open file ..." when the input can't be opened.
  ImportOutcome ImportFile(const std::string& pathname, db::Recordset& logRecordset,
                           std::string* openError = nullptr);

  // The sibling programs' `log` command: the whole text parsed against `logRecordset` without
  // counters, duplicate check, lookup or further reading. Commits before it returns.
  void Process(const std::string& text, db::Recordset& logRecordset);

  // The parser's <eor>: adds one QSO (steps 1 to 18 of the record import).
  void ImportRecord(AdifParser& parser, bool fromFile, bool checkDuplicates,
                    bool lookupMissing) override;

  // True from the opening of the input file to its end: the window refuses to close meanwhile.
  bool ImportInProgress() const { return importActive_; }

  // "text" if it is a date from 1930 on; else the fallback, with a report.
  std::string ValidDate(const std::string& text, const std::string& fallback);
  // Counts an illegal record and reports the message with the record's text.
  void IllegalRecord(const std::string& message);
  // Appends a message to the report box (until it is full) and to the ".err" file.
  void ImportReport(const std::string& message);

  const ImportCounters& Counters() const { return counters_; }
  const std::string& ReportText() const { return report_; }
  AdifParser& Parser() { return parser_; }
  // QSOs of the last run that are committed to the file.
  long CommittedImports() const { return batch_.CommittedRows(); }

  // The box's limit: a message finding more text than this is replaced by the limit line.
  static constexpr std::size_t kReportLimit = 65000;

 private:
  void Count(long ImportCounters::*counter);
  std::string BuildDateText(const std::string& date, const std::string& time) const;
  void StoreFields(db::Recordset& rs, double start, double end);
  void StoreQSLDate(db::Recordset& rs, int index, const ImportedValue& value);
  void FillDXCC(db::Recordset& rs, bool lookupMissing);
  bool IsDuplicate(db::Recordset& rs);
  std::string FieldText(db::Recordset& rs, int index);
  std::string FindPrefixForCountryCode(const std::string& code);
  void ReportErrorIn(const std::string& where);

  ImportServices services_;
  ImportSettings settings_;
  AdifParser parser_;
  WriteBatch batch_;
  db::Recordset target_;  // the recordset the records go to during a run
  ImportView silent_;
  ImportView* view_ = &silent_;
  ImportCounters counters_;
  std::string report_;        // the text of the ImportReport box
  bool errorReportFull_ = false;
  bool importActive_ = false;
  std::FILE* errFile_ = nullptr;  // "file number 2"
};

}  // namespace vellumar::adif
