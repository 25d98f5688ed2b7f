#include "adif/adif_export.h"

#include <array>
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

namespace {

// How a field is written: as stored, upper-cased, or through a conversion of its own.
enum class Written { kPlain, kUpper, kDXCC, kFreq, kQSODate, kTimeOff, kTimeOn, kCardDate, kComment };

struct ExportStep {
  int field;
  Written how;
};

// The 33 tags of a record, in the order they are written. PROVINCE, BROKEN and MYQTHID are never
// exported; the start gives two tags, its date and its time.
constexpr std::array<ExportStep, 33> kExportOrder = {{
    {f::Band, Written::kPlain},        {f::Call, Written::kUpper},
    {f::DXCCPrefix, Written::kUpper},  {f::DXCCID, Written::kDXCC},
    {f::Freq, Written::kFreq},         {f::Mode, Written::kPlain},
    {f::Name, Written::kPlain},        {f::Operator, Written::kUpper},
    {f::QSL_Rcvd, Written::kPlain},    {f::QSL_Sent, Written::kPlain},
    {f::QSL_Via, Written::kPlain},     {f::QSO_Begin, Written::kQSODate},
    {f::QTH, Written::kPlain},         {f::RST_Rcvd, Written::kPlain},
    {f::RST_Sent, Written::kPlain},    {f::State, Written::kPlain},
    {f::QSO_End, Written::kTimeOff},   {f::QSO_Begin, Written::kTimeOn},
    {f::TX_Power, Written::kPlain},    {f::QSLMsg, Written::kPlain},
    {f::QSLSDATE, Written::kCardDate}, {f::QSLRDATE, Written::kCardDate},
    {f::Comment, Written::kComment},   {f::CONT, Written::kPlain},
    {f::ITUZ, Written::kPlain},        {f::CQZ, Written::kPlain},
    {f::IOTA, Written::kPlain},        {f::CNTY, Written::kPlain},
    {f::CONTEST_ID, Written::kPlain},  {f::GRIDSQUARE, Written::kPlain},
    {f::SRX, Written::kPlain},         {f::STX, Written::kPlain},
    {f::ADDRESS, Written::kPlain},
}};

}  // namespace

std::string AdifExport::ExportQSO(db::Recordset& rs) {
  exportRecordBuffer_.clear();
  for (const ExportStep& step : kExportOrder) {
    const int i = step.field;
    switch (step.how) {
      case Written::kPlain:
        AppendField(rs.Fields(i).Name(), Text(rs, i));
        break;
      case Written::kUpper:
        AppendField(rs.Fields(i).Name(), vb::UpperAscii(Text(rs, i)));
        break;
      case Written::kDXCC:
        AppendField("DXCC", vb::UpperAscii(Text(rs, i)));
        break;
      case Written::kFreq:
        // Under DXBase an empty or non-numeric frequency fails the record.
        AppendField(rs.Fields(i).Name(),
                    options_.dxBaseFrequencies
                        ? DXBaseFreqFormat(vb::Variant(Text(rs, i)).ToDouble())
                        : Text(rs, i));
        break;
      case Written::kQSODate:
        AppendField("QSO_DATE", DateText(rs, i, "YYYYMMDD"));
        break;
      case Written::kTimeOff:
        AppendField("TIME_OFF", DateText(rs, i, "HHNNSS"));
        break;
      case Written::kTimeOn:
        AppendField("TIME_ON", DateText(rs, i, "HHNNSS"));
        break;
      case Written::kCardDate:
        AppendField(rs.Fields(i).Name(), vb::Format(vb::Variant(Text(rs, i)), "YYYYMMDD"));
        break;
      case Written::kComment: {
        const std::string comment = Text(rs, i);
        AppendField(rs.Fields(i).Name(),
                    comment.empty() ? options_.qsoNotes : comment + " " + options_.qsoNotes);
        break;
      }
    }
  }
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
