#include "adif/tag_table.h"

#include "logstore/field_table.h"
#include "logstore/schema_tables.h"
#include "platform/vb/ascii.h"

namespace vellumar::adif {

namespace {

namespace f = logstore::field;

// A tag named after the log's column: the column name in lower case.
TagRule Column(int field, Special special = Special::kNone,
               Treatment treatment = Treatment::kAsRead) {
  return {vb::LowerAscii(logstore::kQSOFields[static_cast<std::size_t>(field)].name),
          special == Special::kNone ? field : -1, special, treatment};
}

TagRule Tag(const char* tag, int field, Treatment treatment = Treatment::kAsRead) {
  return {tag, field, Special::kNone, treatment};
}

TagRule SpecialTag(const char* tag, Special special) {
  return {tag, -1, special, Treatment::kIfNotEmpty};
}

std::vector<TagRule> BuildTable() {
  // The standard ADIF names first. "dxcc" fills DXCCID, and both "tx_power" (what the export
  // writes) and the standard "tx_pwr" fill TX_Power. PROVINCE, BROKEN and MYQTHID are never
  // read.
  return {
      Tag("band", f::Band),
      Tag("call", f::Call, Treatment::kUpperCase),
      Tag("dxcc", f::DXCCID),
      Tag("dxccprefix", f::DXCCPrefix),
      Tag("freq", f::Freq, Treatment::kBaseFreq),
      Tag("mode", f::Mode, Treatment::kMode),
      Tag("name", f::Name),
      Tag("operator", f::Operator, Treatment::kUpperCase),
      Tag("qsl_rcvd", f::QSL_Rcvd),
      Tag("qsl_sent", f::QSL_Sent),
      Tag("qsl_via", f::QSL_Via, Treatment::kUpperCase),
      SpecialTag("qso_date", Special::kDate),
      Tag("qth", f::QTH),
      Tag("rst_rcvd", f::RST_Rcvd),
      Tag("rst_sent", f::RST_Sent),
      Tag("state", f::State),
      SpecialTag("time_off", Special::kTimeOff),
      SpecialTag("time_on", Special::kTimeOn),
      Tag("tx_power", f::TX_Power),
      Tag("tx_pwr", f::TX_Power),
      // The log's own columns, by their names.
      Column(f::QSLMsg),
      Column(f::QSLSDATE, Special::kQSLSent, Treatment::kIfNotEmpty),
      Column(f::QSLRDATE, Special::kQSLRcvd, Treatment::kIfNotEmpty),
      Column(f::Comment),
      Column(f::CONT),
      Column(f::ITUZ),
      Column(f::CQZ),
      Column(f::IOTA),
      Column(f::CNTY),
      Column(f::CONTEST_ID),
      Column(f::GRIDSQUARE),
      Column(f::SRX),
      Column(f::STX),
      Column(f::ADDRESS),
  };
}

}  // namespace

const std::vector<TagRule>& TagTable() {
  static const std::vector<TagRule> table = BuildTable();
  return table;
}

const TagRule* FindTagRule(std::string_view tag) {
  for (const TagRule& rule : TagTable())
    if (rule.tag == tag) return &rule;
  return nullptr;
}

std::string DXBaseFreq(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  bool seenPoint = false;
  for (char c : text) {
    if (c == '.') {
      if (seenPoint) continue;
      seenPoint = true;
    }
    out.push_back(c);
  }
  return out;
}

}  // namespace vellumar::adif
