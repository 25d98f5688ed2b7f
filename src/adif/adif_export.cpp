#include "adif/adif_export.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>

#include "frame/common.h"
#include "frame/version.h"
#include "logstore/field_table.h"
#include "platform/vb/ascii.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "platform/vb/variant.h"

namespace vellumar::adif {

namespace {

namespace f = logstore::field;

constexpr const char* kCrLf = "\r\n";

bool FileExists(const std::string& pathname) {
  struct stat st;
  return ::stat(pathname.c_str(), &st) == 0;
}

std::string Text(db::Recordset& rs, int index) { return rs.Fields(index).Value().ToStringOrEmpty(); }

// A date column in a pattern; Null gives the empty text, and so no tag.
std::string DateText(db::Recordset& rs, int index, const char* pattern) {
  const vb::Variant value = rs.Fields(index).Value();
  if (value.IsNull()) return {};
  return vb::Format(value, pattern);
}

}  // namespace

std::string RemoveLeadingAngleBrackets(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text)
    if (c != '<') out.push_back(c);
  return out;
}

std::string DXBaseFreqFormat(double freq) {
  const std::string text = vb::FormatNumber(freq, "###.#####");
  const auto point = text.find('.');
  if (point == std::string::npos) return text;
  const std::size_t p = point + 1;  // 1-based
  if (text.size() - p >= 4) return text.substr(0, p + 3) + "." + text.substr(p + 3);
  return text;
}

std::string AdifExport::CreateNewADIF(double now) {
  const std::string title = RemoveLeadingAngleBrackets(kApplicationTitle);
  return std::string("ADIF file") + kCrLf + "created by " + kApplicationTitle + " " +
         Common::Version() + " on " + vb::FormatDate(now, "dd-mmm-yyyy hh:nn:ss") + " UTC" +
         kCrLf + "<ProgramID:" + std::to_string(title.size()) + ">" + title + kCrLf + "<EOH>" +
         kCrLf;
}

void AdifExport::AppendField(const std::string& tag, const std::string& value) {
  const std::string clean = RemoveLeadingAngleBrackets(value);
  if (clean.empty()) return;
  exportRecordBuffer_ += "<" + tag + ":" + std::to_string(clean.size()) + ">" + clean + " ";
}

std::string AdifExport::ExportQSO(db::Recordset& rs) {
  exportRecordBuffer_.clear();
  auto name = [&](int index) { return rs.Fields(index).Name(); };
  auto plain = [&](int index) { AppendField(name(index), Text(rs, index)); };
  auto upper = [&](int index) { AppendField(name(index), vb::UpperAscii(Text(rs, index))); };

  plain(f::Band);
  upper(f::Call);
  upper(f::DXCCPrefix);
  AppendField("DXCC", vb::UpperAscii(Text(rs, f::DXCCID)));
  if (options_.dxBaseFrequencies) {
    // An empty or non-numeric frequency fails the record.
    AppendField(name(f::Freq), DXBaseFreqFormat(vb::Variant(Text(rs, f::Freq)).ToDouble()));
  } else {
    plain(f::Freq);
  }
  plain(f::Mode);
  plain(f::Name);
  upper(f::Operator);
  plain(f::QSL_Rcvd);
  plain(f::QSL_Sent);
  plain(f::QSL_Via);
  AppendField("QSO_DATE", DateText(rs, f::QSO_Begin, "YYYYMMDD"));
  plain(f::QTH);
  plain(f::RST_Rcvd);
  plain(f::RST_Sent);
  plain(f::State);
  AppendField("TIME_OFF", DateText(rs, f::QSO_End, "HHNNSS"));
  AppendField("TIME_ON", DateText(rs, f::QSO_Begin, "HHNNSS"));
  plain(f::TX_Power);
  plain(f::QSLMsg);
  AppendField(name(f::QSLSDATE), vb::Format(vb::Variant(Text(rs, f::QSLSDATE)), "YYYYMMDD"));
  AppendField(name(f::QSLRDATE), vb::Format(vb::Variant(Text(rs, f::QSLRDATE)), "YYYYMMDD"));
  const std::string comment = Text(rs, f::Comment);
  AppendField(name(f::Comment), comment.empty() ? options_.qsoNotes
                                                : comment + " " + options_.qsoNotes);
  plain(f::CONT);
  plain(f::ITUZ);
  plain(f::CQZ);
  plain(f::IOTA);
  plain(f::CNTY);
  plain(f::CONTEST_ID);
  plain(f::GRIDSQUARE);
  plain(f::SRX);
  plain(f::STX);
  plain(f::ADDRESS);  // PROVINCE, BROKEN and MYQTHID are never exported
  exportRecordBuffer_ += "<EOR>";
  return exportRecordBuffer_;
}

ExportOutcome AdifExport::ExportFile(const std::string& pathname, db::Recordset& logRecordset,
                                     double now, ExportView& view, std::string* openError) {
  count_ = 0;
  if (logRecordset.RecordCount() == 0) return ExportOutcome::kNoRecords;
  ExportOutcome outcome = ExportOutcome::kFinished;
  db::Recordset clone;
  std::FILE* file = nullptr;
  try {
    clone = logRecordset.Clone();
    bool header = true;
    const char* mode = "ab";
    if (FileExists(pathname)) {
      if (view.ClearExistingFile(pathname +
                                 " already exists; should its current contents be cleared "
                                 "before exporting?")) {
        mode = "wb";
      } else {
        header = false;  // the new records follow the old ones, without a header
      }
    }
    file = std::fopen(pathname.c_str(), mode);
    if (!file) {
      const std::string message =
          "unable to open ADIF file " + pathname + " - " + std::strerror(errno);
      if (openError) *openError = message;
      clone.Close();
      return ExportOutcome::kUnopenable;
    }
    if (header) {
      const std::string text = CreateNewADIF(now);
      std::fwrite(text.data(), 1, text.size(), file);
    }
    if (!clone.BOF() || !clone.EOF_()) clone.MoveFirst();
    while (!clone.EOF_()) {
      if (!view.Continue()) {
        outcome = ExportOutcome::kAborted;
        break;
      }
      try {
        const std::string line = ExportQSO(clone) + kCrLf;
        if (std::fwrite(line.data(), 1, line.size(), file) != line.size())
          throw vb::VbError(61, "Disk full");
      } catch (...) {
        errorLog_.ReportCurrentException("ADIF.ExportQSO");  // this record alone is lost
      }
      ++count_;
      view.CountChanged(count_);
      clone.MoveNext();
    }
  } catch (...) {
    outcome = ExportOutcome::kProgramError;
    errorLog_.ReportCurrentException("ADIF.ExportQSOs");
  }
  if (file && std::fclose(file) != 0 && outcome != ExportOutcome::kProgramError) {
    outcome = ExportOutcome::kProgramError;
    errorLog_.ReportError(61, "ADIF.ExportQSOs");
  }
  if (clone) {
    try {
      clone.Close();
    } catch (...) {
    }
  }
  return outcome;
}

}  // namespace vellumar::adif
