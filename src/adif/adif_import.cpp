// The file import's run and the sibling programs' `log` command; the report and its ".err" file.
#include "adif/adif_import.h"

#include <sys/stat.h>

#include <cstdio>
#include <utility>

#include "platform/vb/error.h"

namespace vellumar::adif {

namespace {

constexpr const char* kImportQSOs = "ADIF.ImportQSOs";
constexpr const char* kProcess = "ADIF.Process";

std::uint64_t FileSize(const std::string& pathname) {
  struct stat st;
  if (::stat(pathname.c_str(), &st) != 0) return 0;
  return static_cast<std::uint64_t>(st.st_size);
}

// A line source that tells how many bytes of the file its lines have taken.
class CountingSource final : public LineSource {
 public:
  explicit CountingSource(FileLineSource& file) : file_(file) {}
  bool ReadLine(std::string& line) override {
    if (!file_.ReadLine(line)) return false;
    bytes_ += line.size() + 2;  // an estimate in the file's bytes: the line and its end
    return true;
  }
  int ReadError() const override { return file_.ReadError(); }
  TextEncoding Encoding() const override { return file_.Encoding(); }
  std::uint64_t Bytes() const { return bytes_; }

 private:
  FileLineSource& file_;
  std::uint64_t bytes_ = 0;
};

// Characters of a UTF-8 text: the box counts characters, not bytes.
std::size_t CharacterCount(const std::string& text) {
  std::size_t n = 0;
  for (unsigned char c : text)
    if ((c & 0xC0) != 0x80) ++n;
  return n;
}

}  // namespace

AdifImport::AdifImport(ImportServices services, ImportSettings settings)
    : services_(std::move(services)),
      settings_(std::move(settings)),
      parser_(*services_.errorLog) {}

AdifImport::~AdifImport() {
  if (errFile_) std::fclose(errFile_);
}

void AdifImport::Count(long ImportCounters::*counter) {
  ++(counters_.*counter);
  view_->CountersChanged(counters_);
}

void AdifImport::ReportErrorIn(const std::string& where) {
  services_.errorLog->ReportCurrentException(where);
}

ImportOutcome AdifImport::ImportFile(const std::string& pathname, db::Recordset& logRecordset,
                                     std::string* openError) {
  ImportOutcome outcome = ImportOutcome::kEndOfFile;
  FileLineSource file;
  CountingSource counted(file);
  db::Recordset view;
  const bool saveErrors = settings_.saveImportErrors;
  try {
    // The report file, behind the whole name: "log.adi" reports to "log.adi.err".
    if (saveErrors) {
      if (errFile_) std::fclose(errFile_);
      errFile_ = std::fopen((pathname + ".err").c_str(), "wb");
      if (!errFile_) throw vb::VbError(75, "Path/File access error");
    }
    counters_ = ImportCounters{};
    view_->CountersChanged(counters_);

    // A copy of the present view: the duplicate search sees what the Log page's filter shows.
    view = logRecordset.OpenRecordset();
    target_ = view;

    importActive_ = true;
    errorReportFull_ = false;
    if (!file.Open(pathname)) {
      const std::string message =
          "Unable to open file " + pathname + " - " + file.OpenErrorDescription();
      if (openError) *openError = message;
      importActive_ = false;
      view.Close();
      if (errFile_) {
        std::fclose(errFile_);
        errFile_ = nullptr;
        std::remove((pathname + ".err").c_str());
      }
      return ImportOutcome::kUnreadable;
    }
    const std::uint64_t total = FileSize(pathname);
    parser_.SetImportBuffer("");
    parser_.SetInput(&counted);
    report_ = parser_.GetHeader();
    view_->ReportChanged(report_);
    parser_.ClearRecord();
    batch_.Start(services_.log);

    std::string line;
    for (;;) {
      if (!view_->Continue()) {
        outcome = ImportOutcome::kAborted;
        break;
      }
      // Between two passes no record is half written: the place to close a batch.
      batch_.BeforeRecord();
      if (parser_.ImportBufferEmpty()) {
        if (!counted.ReadLine(line)) {
          if (counted.ReadError() == 62) break;  // end of file
          services_.errorLog->WriteErrorLog("Input error reading " + parser_.ImportBuffer());
          throw vb::VbError(counted.ReadError());
        }
        parser_.SetImportBuffer(line);
        view_->BytesRead(counted.Bytes() < total ? counted.Bytes() : total, total);
      }
      parser_.ParseADIF(*this, true, true, true);
    }
    batch_.Commit();
    view_->BytesRead(total, total);
  } catch (...) {
    outcome = ImportOutcome::kProgramError;
    ReportErrorIn(kImportQSOs);
    if (batch_.Open()) batch_.Abandon();
    services_.errorLog->WriteErrorLog(
        "ADIF.ImportQSOs: the log holds " + std::to_string(batch_.CommittedRows()) + " of the " +
        std::to_string(counters_.imported) + " QSOs imported by this run");
  }
  parser_.SetInput(nullptr);
  file.Close();
  // The report file stays only when something was reported.
  if (errFile_) {
    std::fclose(errFile_);
    errFile_ = nullptr;
    if (counters_.reports == 0) std::remove((pathname + ".err").c_str());
  }
  importActive_ = false;
  target_ = db::Recordset();
  if (view) {
    try {
      view.Close();
    } catch (...) {
    }
  }
  return outcome;
}

void AdifImport::Process(const std::string& text, db::Recordset& logRecordset) {
  int state = 1;
  try {
    state = 2;
    target_ = logRecordset;
    parser_.SetImportBuffer(text);
    parser_.ClearRecord();
    state = 3;
    batch_.Start(services_.log);
    batch_.BeforeRecord();
    while (!parser_.ImportBufferEmpty()) parser_.ParseADIF(*this, false, false, false);
    state = 4;
    batch_.Commit();
  } catch (...) {
    if (batch_.Open()) {
      try {
        batch_.Commit();
      } catch (...) {
        batch_.Abandon();
      }
    }
    ReportErrorIn(std::string(kProcess) + "; state = " + std::to_string(state));
  }
  target_ = db::Recordset();
}

void AdifImport::ImportReport(const std::string& message) {
  ++counters_.reports;
  if (settings_.saveImportErrors) {
    if (!errFile_) throw vb::VbError(52, "Bad file name or number");
    std::fputs(message.c_str(), errFile_);
    std::fputs("\r\n", errFile_);
  }
  if (errorReportFull_) return;
  std::string shown = message;
  if (CharacterCount(report_) > kReportLimit) {
    errorReportFull_ = true;
    shown = "error report limit -- no further errors will be reported";
  }
  report_ += shown;
  report_ += "\r\n";
  view_->ReportChanged(report_);
}

void AdifImport::IllegalRecord(const std::string& message) {
  ++counters_.illegals;
  ImportReport(message + ": " + parser_.CurrentRecordText());
  view_->CountersChanged(counters_);
}

}  // namespace vellumar::adif
