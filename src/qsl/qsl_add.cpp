// AddToQSL, the one door into the queue, and the small services around it.
#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "frame/version.h"
#include "logstore/field_table.h"
#include "logstore/schema_tables.h"
#include "platform/vb/error.h"
#include "qsl/qsl_module.h"

namespace vellumar::qsl {
namespace f = logstore::field;

namespace {

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// Characters of a text as the fields count them: UTF-8 sequences, one each.
long CharacterCount(const std::string& text) {
  return static_cast<long>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

// Val of a text: the number its leading digits make, 0 for none.
long LeadingNumber(const std::string& text) {
  long value = 0;
  size_t i = text.find_first_not_of(' ');
  for (; i != std::string::npos && i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]));
       ++i) {
    value = value * 10 + (text[i] - '0');
    if (value > 1000000000L) break;
  }
  return value;
}

std::string Text(const db::Recordset& rs, int index) {
  return rs.Fields(index).Value().ToStringOrEmpty();
}
std::string Text(const db::Recordset& rs, const char* name) {
  return rs.Fields(name).Value().ToStringOrEmpty();
}

// The queue's ordinals of the ten myQTH fields.
constexpr int kFirstQTHField = 19;  // CITY .. IOTA are 19..28
constexpr int kQueueMyQTHID = 18;
constexpr int kQueueQSOBegin = 2;
constexpr int kQueueQSLDate = 13;
constexpr int kQueueAddress = 29;

}  // namespace

int QSLServices::MsgBox(const std::string& prompt, int buttons) const {
  if (!desktop) return buttons == ui::vbYesNo ? ui::vbYes : ui::vbOK;
  return desktop->MsgBox(prompt, buttons, kApplicationTitle);
}

void QSLServices::Report(int number, const std::string& where) const {
  if (reportError) reportError(number, where);
}

std::optional<MyQTH> LookUpMyQTH(db::Recordset& qths, const std::string& id) {
  if (id.empty() || !qths || (qths.BOF() && qths.EOF_())) return std::nullopt;
  const std::string wanted = Lower(id);
  db::Recordset walk = qths.Clone();
  walk.MoveFirst();
  for (; !walk.EOF_(); walk.MoveNext()) {
    const std::string rowId = Text(walk, 0);
    if (rowId.size() != wanted.size() || Lower(rowId) != wanted) continue;
    MyQTH qth;
    qth.id = rowId;
    for (int i = 0; i < 10; ++i) qth.fields[static_cast<size_t>(i)] = Text(walk, i + 1);
    return qth;
  }
  return std::nullopt;
}

bool ModeCountsAsRTTY(const std::string& mode) {
  static const char* const kModes[] = {"rtty", "hell", "mfsk", "mt63", "pac",  "pkt",
                                       "throb", "tor", "psk",  "psk31", "qpsk", "bpsk"};
  const std::string lower = Lower(mode);
  return std::any_of(std::begin(kModes), std::end(kModes),
                     [&](const char* m) { return lower == m; });
}

std::string VellumQSLModule::CallKey(const std::string& call) {
  std::string key = call;
  for (char& c : key) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return key;
}

void VellumQSLModule::IndexQueueByCall() {
  callRows_.clear();
  if (queue_.BOF() && queue_.EOF_()) return;
  db::Recordset walk = queue_.Clone();
  for (walk.MoveFirst(); !walk.EOF_(); walk.MoveNext())
    callRows_[CallKey(Text(walk, "CALL"))].push_back(walk.Bookmark());
}

std::vector<db::BookmarkValue>& VellumQSLModule::RowsOfCall(const std::string& call) {
  if (!indexed_) {
    IndexQueueByCall();
    indexed_ = true;
  }
  return callRows_[CallKey(call)];
}

void VellumQSLModule::AddToQSL(db::Recordset& qso, bool needed) {
  // Outside a walk the queue may have changed since the last call: its index is made anew.
  if (!walking_) indexed_ = false;
  try {
    // 1: the call goes into the filter as it is; an apostrophe breaks it (error 3075), which
    // the search shows by running it. Any other call is found through the index of the queue's
    // rows by call, in the display's order, as FindFirst and FindNext would find them: the
    // queue has no index of its own, and a search per row would scan it whole.
    const std::string call = Text(qso, f::Call);
    const std::string filter = qso.Fields(f::Call).Name() + " = '" + call + "'";
    if (call.find('\'') != std::string::npos) queue_.FindFirst(filter);
    std::vector<db::BookmarkValue>& rows = RowsOfCall(call);
    long count = 1;
    if (!rows.empty()) {
      // 3: is this QSO among the call's rows?
      const std::string freq = Text(qso, f::Freq);
      const std::string mode = Text(qso, f::Mode);
      const double begin = qso.Fields(f::QSO_Begin).Value().ToDate();
      for (const db::BookmarkValue& row : rows) {
        queue_.SetBookmark(row);
        if (Text(queue_, "FREQ") != freq || Text(queue_, "MODE") != mode ||
            queue_.Fields(kQueueQSOBegin).Value().ToDate() != begin)
          continue;
        // 4: queued already; only NEEDED may rise.
        if (needed && Text(queue_, "NEEDED") != "Y") {
          queue_.Edit();
          queue_.Fields("NEEDED").SetValue("Y");
          queue_.Update();
          if (onQueued) {
            onQueued({call, begin, Text(queue_, "BAND"), Text(queue_, "MODE"), "Y"});
          }
        }
        return;
      }
      // 5: the position stays on the last row of the call; every row gets the new count, before
      // the new row is checked, so a refused row leaves them one too high.
      count = LeadingNumber(Text(queue_, "INCIDENCE")) + 1;
      for (const db::BookmarkValue& row : rows) {
        queue_.SetBookmark(row);
        queue_.Edit();
        queue_.Fields("INCIDENCE").SetValue(std::to_string(count));
        queue_.Update();
      }
    }

    // 6: the new row's values by ordinal; the dates are set apart.
    std::vector<std::string> values(logstore::kPrintQueueFields.size());
    values[0] = call;
    values[1] = Text(qso, f::DXCCPrefix);
    values[3] = Text(qso, f::RST_Sent);
    values[4] = Text(qso, f::RST_Rcvd);
    values[5] = Text(qso, f::Mode);
    values[6] = Text(qso, f::Freq);
    values[7] = Text(qso, f::Band);
    values[8] = Text(qso, f::QSL_Via);
    values[9] = Text(qso, f::Operator);
    values[10] = Text(qso, f::QSL_Rcvd);
    values[11] = std::to_string(count);
    values[12] = needed ? "Y" : "";
    values[16] = Text(qso, f::QSLMsg);
    values[17] = "Y";
    values[kQueueAddress] = Text(qso, f::ADDRESS);
    values[30] = count == 1 ? "Y" : "N";
    const std::string myQTHID = Text(qso, f::MYQTHID);
    if (!myQTHID.empty() && services_.findMyQTH) {
      if (std::optional<MyQTH> qth = services_.findMyQTH(myQTHID)) {
        values[kQueueMyQTHID] = Lower(myQTHID);
        for (int i = 0; i < 10; ++i) values[static_cast<size_t>(kFirstQTHField + i)] = qth->fields[static_cast<size_t>(i)];
      }
    }
    const vb::Variant begin = qso.Fields(f::QSO_Begin).Value();

    queue_.AddNew();
    // 7: the size check, in the order of the fields; the first text too long refuses the row.
    for (int i = 0; i < static_cast<int>(values.size()); ++i) {
      if (i == kQueueQSOBegin || i == kQueueAddress || i == kQueueQSLDate) continue;
      const db::Field field = queue_.Fields(i);
      if (CharacterCount(values[static_cast<size_t>(i)]) > field.Size()) {
        services_.MsgBox("Too much data in " + field.Name() + " field of QSO with " + call +
                         " on " + begin.ToStringOrEmpty());
        queue_.CancelUpdate();
        return;
      }
    }
    for (int i = 0; i < static_cast<int>(values.size()); ++i) {
      if (i == kQueueQSOBegin || i == kQueueQSLDate) continue;
      queue_.Fields(i).SetValue(values[static_cast<size_t>(i)]);
    }
    queue_.Fields(kQueueQSOBegin).SetValue(begin);
    queue_.Fields(kQueueQSLDate).SetValue(vb::Variant::Null());
    // 8
    queue_.Update();
    rows.push_back(queue_.LastModified());
    if (onQueued) onQueued({call, begin.ToDate(), values[7], values[5], values[12]});
    // 9
    if (!(queue_.BOF() && queue_.EOF_())) queue_.MoveLast();
    if (services_.updateCaption) services_.updateCaption();
  } catch (const vb::VbError& e) {
    if (queue_.EditMode() != db::dbEditNone) {
      try {
        queue_.CancelUpdate();
      } catch (const vb::VbError&) {
      }
    }
    services_.Report(e.number(), "VellumQSLModule.AddToQSL");
  }
}

}  // namespace vellumar::qsl
