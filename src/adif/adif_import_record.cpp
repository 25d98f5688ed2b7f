// One record of the import: from the values the tokeniser gathered to a new row of QSOs, with
// its Progress count.
#include <string>

#include "adif/adif_import.h"
#include "logstore/field_table.h"
#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "platform/vb/format.h"
#include "platform/vb/variant.h"

namespace vellumar::adif {

namespace {

namespace f = logstore::field;

constexpr const char* kImportRecord = "ADIF.ImportRecord";
constexpr int kAddressLimit = 1024;

// Mid$ of the runtime: the characters from 1-based `start`, at most `length`, never failing.
std::string Mid(const std::string& text, std::size_t start, std::size_t length) {
  if (start < 1 || start > text.size()) return {};
  return text.substr(start - 1, length);
}

// The first `limit` characters of a UTF-8 text, and whether it had more.
bool CutToCharacters(std::string& text, std::size_t limit) {
  std::size_t chars = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) continue;
    if (chars == limit) {
      text.resize(i);
      return true;
    }
    ++chars;
  }
  return false;
}

std::string Trim(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  const auto last = text.find_last_not_of(' ');
  return text.substr(first, last - first + 1);
}

int YearOf(double date) { return vb::SplitDate(date).year; }

}  // namespace

std::string AdifImport::BuildDateText(const std::string& date, const std::string& time) const {
  std::string text = Mid(date, 1, 4) + "-" + Mid(date, 5, 2) + "-" + Mid(date, 7, 2) + " " +
                     Mid(time, 1, 2) + ":" + Mid(time, 3, 2);
  if (time.size() == 6) {
    // The seconds are sanitised, the hours and minutes are not.
    int seconds = 0;
    if (const auto n = vb::ParseNumber(time.substr(4, 2))) {
      try {
        seconds = vb::CInt(*n);
      } catch (const vb::VbError&) {
        seconds = 0;
      }
    }
    if (seconds < 0 || seconds >= 60) seconds = 0;
    text += ":" + vb::FormatNumber(seconds, "00");
  }
  return text;
}

std::string AdifImport::ValidDate(const std::string& text, const std::string& fallback) {
  const auto date = vb::ParseDate(text);
  if (!date) {
    ImportReport("ignored bad date " + text + ": " + parser_.CurrentRecordText());
    return fallback;
  }
  if (YearOf(*date) < 1930) {
    ImportReport("ignored date with year prior to 1930" + text + ": " +
                 parser_.CurrentRecordText());
    return fallback;
  }
  return text;
}

std::string AdifImport::FieldText(db::Recordset& rs, int index) {
  return rs.Fields(index).Name();
}

bool AdifImport::IsDuplicate(db::Recordset& rs) {
  // The values are not escaped: a quote in a callsign makes the search fail.
  std::string criteria =
      FieldText(rs, f::Call) + " = '" + parser_.ImportedFields(f::Call) + "' and ";
  if (parser_.FieldImported(f::Freq))
    criteria += FieldText(rs, f::Freq) + " = '" + parser_.ImportedFields(f::Freq) + "' and ";
  if (parser_.FieldImported(f::Mode))
    criteria += FieldText(rs, f::Mode) + " = '" + parser_.ImportedFields(f::Mode) + "' and ";
  criteria += FieldText(rs, f::QSO_Begin) + " = #" +
              BuildDateText(parser_.ImportedDate().value, parser_.ImportedTimeOn().value) + "#";
  rs.FindFirst(criteria);
  return !rs.NoMatch();
}

void AdifImport::StoreFields(db::Recordset& rs, double start, double end) {
  for (int i = 0; i < logstore::kQSOFieldCount; ++i) {
    db::Field field = rs.Fields(i);
    if (parser_.FieldImported(i)) {
      const std::size_t limit =
          i == f::ADDRESS ? kAddressLimit : static_cast<std::size_t>(field.Size());
      std::string value = parser_.ImportedFields(i);
      if (CutToCharacters(value, limit)) {
        Count(&ImportCounters::truncated);
        ImportReport("truncated " + field.Name() + ": " + parser_.CurrentRecordText());
      }
      field.SetValue(vb::Variant(value));
    } else if (i == f::QSO_Begin) {
      field.SetValue(vb::Variant::FromDate(start));
    } else if (i == f::QSO_End) {
      field.SetValue(vb::Variant::FromDate(end));
    } else {
      field.SetValue(vb::Variant(std::string()));
    }
  }
}

void AdifImport::StoreQSLDate(db::Recordset& rs, int index, const ImportedValue& value) {
  if (!value.present) return;
  std::string text = value.value;
  if (text.find('/') != std::string::npos) text = vb::Format(vb::Variant(text), "YYYYMMDD");
  const std::string date = Mid(text, 1, 4) + "-" + Mid(text, 5, 2) + "-" + Mid(text, 7, 2);
  rs.Fields(index).SetValue(vb::Variant(ValidDate(date, "")));
}

std::string AdifImport::FindPrefixForCountryCode(const std::string& code) {
  // "CountryCode = " + code: the code is a number in the criteria; anything else is a syntax
  // error of the search, which ends the record as a failure.
  const auto number = vb::ParseNumber(code);
  if (!number || code.find_first_not_of("0123456789 ") != std::string::npos) {
    throw vb::VbError(3075, "Syntax error in criteria expression 'CountryCode = " + code + "'.");
  }
  db::Recordset dynaset = services_.dxcc->GetDXCCDynaset();
  dynaset.FindFirst("CountryCode = " + code);
  if (dynaset.NoMatch()) return {};
  return dynaset.Fields("DXCCPrefix").Value().ToStringOrEmpty();
}

void AdifImport::FillDXCC(db::Recordset& rs, bool lookupMissing) {
  const bool codeMissing = parser_.ImportedFieldMissing(f::DXCCID);
  const bool prefixMissing = parser_.ImportedFieldMissing(f::DXCCPrefix);
  if (!codeMissing && prefixMissing) {
    const std::string code = parser_.ImportedFields(f::DXCCID);
    const std::string prefix = FindPrefixForCountryCode(code);
    if (prefix.empty()) {
      IllegalRecord("can't find prefix for country code " + code);
    } else {
      rs.Fields(f::DXCCPrefix).SetValue(vb::Variant(prefix));
    }
  } else if (codeMissing && prefixMissing) {
    if (!lookupMissing) return;
    services_.dxcc->Lookup(parser_.ImportedFields(f::Call));
    const LookupSlots& slots = *services_.slots;
    rs.Fields(f::DXCCID).SetValue(vb::Variant(slots.DXCCID));
    rs.Fields(f::DXCCPrefix).SetValue(vb::Variant(slots.DXCCPrefix));
    if (parser_.ImportedFieldMissing(f::CONT)) rs.Fields(f::CONT).SetValue(vb::Variant(slots.Cont));
    if (parser_.ImportedFieldMissing(f::CQZ)) rs.Fields(f::CQZ).SetValue(vb::Variant(slots.CQ));
    if (parser_.ImportedFieldMissing(f::ITUZ)) rs.Fields(f::ITUZ).SetValue(vb::Variant(slots.ITU));
  } else if (codeMissing && !prefixMissing) {
    const std::string prefix = parser_.ImportedFields(f::DXCCPrefix);
    const auto row = services_.dxcc->Tables().SeekDXCC(prefix);
    if (!row) {
      IllegalRecord("can't find country code for prefix " + prefix);
    } else {
      rs.Fields(f::DXCCID).SetValue(vb::Variant(std::string(row->countryCode)));
    }
  }
  // Both imported: taken as they are, not checked against each other.
}

void AdifImport::ImportRecord(AdifParser& parser, bool fromFile, bool checkDuplicates,
                              bool lookupMissing) {
  (void)parser;  // the same object as parser_
  db::Recordset& rs = target_;
  bool wrote = false;
  try {
    // 1-4: counted, then the three things a QSO can't be without.
    if (fromFile) Count(&ImportCounters::processed);
    if (!parser_.FieldImported(f::Call)) {
      if (fromFile) IllegalRecord("missing callsign");
      return;
    }
    if (!parser_.ImportedDate().present) {
      if (fromFile) IllegalRecord("missing QSO date");
      return;
    }
    if (!parser_.ImportedTimeOn().present) {
      if (fromFile) IllegalRecord("missing QSO time");
      return;
    }
    // 5: the operator's own callsign where the record has none.
    if (parser_.ImportedFieldMissing(f::Operator) && settings_.defaultCallsign)
      parser_.ImportField(f::Operator, settings_.myCallsign);

    // 6-8: start and end; the end shares the start's date.
    const std::string startText =
        BuildDateText(parser_.ImportedDate().value, parser_.ImportedTimeOn().value);
    const auto start = vb::ParseDate(startText);
    if (!start) {
      IllegalRecord("bad start date or time");
      return;
    }
    if (YearOf(*start) < 1930) {
      IllegalRecord("start date is earlier than 1930");
      return;
    }
    std::string endText = startText;
    if (parser_.ImportedTimeOff().present)
      endText = BuildDateText(parser_.ImportedDate().value, parser_.ImportedTimeOff().value);
    const double end = vb::CDate(ValidDate(endText, startText));

    // 9: a QSO already in the view (call, frequency and mode texts, start) is a duplicate.
    if (settings_.checkDuplicates && checkDuplicates && IsDuplicate(rs)) {
      if (fromFile) Count(&ImportCounters::duplicates);
      return;
    }

    // 10-12: the new row, and the values that other loggers pack into a field.
    rs.AddNew();
    if (settings_.loggerImport && parser_.FieldImported(f::Name)) {
      const std::string name = parser_.ImportedFields(f::Name);
      const auto blank = name.find(' ');
      if (blank != std::string::npos) {
        std::string rest = Trim(name.substr(blank + 1));
        if (!rest.empty() && rest[0] == ':') rest = Trim(rest.substr(1));
        parser_.ImportField(f::Name, name.substr(0, blank));
        parser_.ImportField(f::Comment, rest);
      }
    }
    if (settings_.mmttyImport) {
      for (const auto& [rst, serial] : {std::pair{f::RST_Sent, f::STX},
                                        std::pair{f::RST_Rcvd, f::SRX}}) {
        const std::string value = parser_.ImportedFields(rst);
        if (parser_.FieldImported(rst) && value.size() > 3 && !parser_.FieldImported(serial)) {
          parser_.ImportField(rst, value.substr(0, 3));
          parser_.ImportField(serial, value.substr(3));
        }
      }
    }

    // 13-16: the fields, the QSL dates, the entity, the band.
    StoreFields(rs, *start, end);
    StoreQSLDate(rs, f::QSLSDATE, parser_.ImportedQSLSent());
    StoreQSLDate(rs, f::QSLRDATE, parser_.ImportedQSLRcvd());
    FillDXCC(rs, lookupMissing);
    if (parser_.ImportedFieldMissing(f::Band) && !parser_.ImportedFieldMissing(f::Freq)) {
      double freq = 0;
      if (const auto n = vb::ParseNumber(parser_.ImportedFields(f::Freq))) freq = *n;
      const std::string band = services_.bands ? services_.bands->GetBandNameForFreq(freq) : "";
      if (!band.empty()) rs.Fields(f::Band).SetValue(vb::Variant(band));
    }

    // 17-18: written, made current, counted into Progress.
    rs.Update();
    wrote = true;
    rs.SetBookmark(rs.LastModified());
    if (services_.progressView) {
      UpdateProgress(rs, services_.progressView, false, ProgressNotifications{},
                     [this](int number, const std::string& where) {
                       services_.errorLog->ReportError(number, where);
                     });
    }
    if (fromFile) Count(&ImportCounters::imported);
  } catch (...) {
    // The record is lost; an AddNew stays open until the next record's.
    ReportErrorIn(kImportRecord);
  }
  batch_.AfterRecord(wrote);
}

}  // namespace vellumar::adif
