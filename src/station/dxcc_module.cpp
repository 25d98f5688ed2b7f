#include "station/dxcc_module.h"

#include <filesystem>

#include "platform/services/desktop.h"
#include "platform/vb/error.h"
#include "station/dxcc_compact.h"

namespace vellumar {

namespace {

bool FileExists(const std::string& path) {
  std::error_code ec;
  return std::filesystem::is_regular_file(path, ec);
}

constexpr int kObjectNotSet = 91;  // "Object variable or With block variable not set"

char UpperChar(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

// Case-blind comparison with a lower-case word.
bool IsWord(std::string_view text, std::string_view lowerWord) {
  if (text.size() != lowerWord.size()) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != lowerWord[i]) return false;
  }
  return true;
}

}  // namespace

DXCCModule::DXCCModule(StationServices& services, LookupSlots& slots)
    : services_(services), slots_(slots) {}

std::string DXCCModule::GetDXCCDatabasePathname() {
  const std::string defaultPath = services_.programFolder + "/Databases/DXCC.vdb";
  std::string path =
      services_.GetSetting(kAtlasine, "DXCCDatabase", "DXCCDatabasePathname", defaultPath);
  if (path != defaultPath && !FileExists(path)) path = defaultPath;
  if (!FileExists(path)) {
    std::string location = services_.GetSetting("Vellumar", "DXCCDatabase", "DistributionLocation",
                                                kDefaultDistributionLocation);
    // The message has never had a closing parenthesis.
    services_.desktop->MsgBox(
        "Terminating: " + path + " is missing! (restore by downloading from " + location,
        ui::vbOKOnly, "Vellumar");
    throw ProgramTermination(path + " is missing");
  }
  return path;
}

void DXCCModule::OpenDXCCDatabase() {
  std::string path = GetDXCCDatabasePathname();
  try {
    database_ = db::DBEngine::Workspaces(0).OpenDatabase(path, /*readOnly=*/true);
    dxccRecordset_ = database_.OpenRecordset("DXCC", db::dbOpenTable);
    dxccRecordset_.SetIndex("PrimaryKey");
    dxccDynaset_ = database_.OpenRecordset("DXCC", db::dbOpenDynaset);
    // From the compact form beside the database while it is the database's, else from the
    // database's tables (which writes the form anew).
    LoadDXCCTables(path, database_, tables_);
  } catch (const vb::VbError& e) {
    tables_.Clear();  // a lookup never answers from a copy that failed to load
    services_.ReportError(e.number(), "DXCCModule.OpenDXCCDatabase");
  }
}

void DXCCModule::GetPrefix(std::string_view prefixOrCall) {
  if (!database_ && !prefixOrCall.empty()) {
    // The database never opened: the first Seek fails on a recordset that isn't set.
    services_.ReportError(kObjectNotSet, "DXCCModule.GetPrefix");
    return;
  }
  // Longest match: no key is longer than the longest key, so shorter beginnings suffice.
  size_t n = std::min(prefixOrCall.size(), tables_.LongestPrefixKey());
  std::optional<DXCCTables::PrefixRow> row;
  for (; n >= 1; --n) {
    if (!tables_.MayHavePrefixKey(prefixOrCall, n)) continue;  // that Seek would find nothing
    row = tables_.SeekPrefix(prefixOrCall.substr(0, n));
    if (row) break;
  }
  if (!row) return;
  currentPrefix_ = row;
  slots_.DXCCPrefix = row->dxccPrefix;

  if (auto dxcc = tables_.SeekDXCC(row->dxccPrefix)) {
    slots_.DXCCID = dxcc->countryCode;
  } else {
    services_.WriteErrorLog("failed to find " + std::string(row->dxccPrefix) + " in DXCC table");
  }

  if (auto location = tables_.SeekLocation(row->location)) {
    slots_.Cont = location->continent;
    slots_.CQ = location->cqZone;
    slots_.ITU = location->ituZone;
  } else {
    services_.WriteErrorLog("failed to find " + std::string(row->location) + " in Location table");
  }
}

void DXCCModule::Lookup(const std::string& callsign) {
  slots_.ClearLookup();
  currentPrefix_.reset();
  const std::string_view call(callsign);
  size_t slash = call.find('/');
  size_t dash = call.find('-');
  if (slash != std::string_view::npos && dash != std::string_view::npos) return;
  if (slash == std::string_view::npos) {
    GetPrefix(call);
    return;
  }
  const size_t s = slash + 1;  // 1-based position of the slash
  std::string_view left = call.substr(0, slash);
  std::string_view right = call.substr(slash + 1);

  size_t second = right.find('/');
  if (second != std::string_view::npos) {
    // A/B/C: the first part and what follows the second slash; the middle plays no role.
    std::string joined(left);
    joined += '-';
    joined += right.substr(second + 1);
    GetPrefix(joined);
    return;
  }

  if (right.size() == 1) {
    char r = right[0];
    if (IsWord(right, "b") || IsWord(right, "p")) {
      GetPrefix(left);
    } else if (r >= '0' && r <= '9' && s >= 4) {
      // A new call area: the first digit from the second character on becomes R.
      std::string moved(left);
      for (size_t i = 1; i < moved.size(); ++i)
        if (moved[i] >= '0' && moved[i] <= '9') {
          moved[i] = r;
          break;
        }
      GetPrefix(moved);
    } else {
      // A suffix letter tells apart entities sharing a prefix: "3D2ABC/C" -> "3D2-C".
      GetPrefix(left);
      if (slots_.DXCCPrefix.empty()) return;
      std::string p(currentPrefix_ ? currentPrefix_->dxccPrefix : std::string_view());
      size_t d = p.find('-');
      if (d == std::string::npos)
        p = p + "-" + UpperChar(r);
      else if (d + 1 < p.size())
        p[d + 1] = UpperChar(r);
      GetPrefix(p);
    }
    return;
  }

  if ((right.size() == 3 && IsWord(right, "qrp")) || (right.size() == 2 && IsWord(right, "mm"))) {
    GetPrefix(left);
  } else if (left.size() >= right.size()) {
    GetPrefix(right);  // the shorter part is the location; equal lengths favour the right
  } else {
    GetPrefix(left);
  }
}

std::string DXCCModule::GetDXCCName(const std::string& dxccPrefix) const {
  auto row = tables_.SeekDXCC(dxccPrefix);
  return row ? std::string(row->dxccName) : "";
}

std::string DXCCModule::IncludeCountry(const std::string& country, const std::string& separator) {
  return country.empty() ? "" : separator + country;
}

std::string DXCCModule::GetAtlasinePrefixID() const {
  return services_.GetSetting(kAtlasine, "General", "CurrentDXCCID", "");
}

void DXCCModule::InitializeDXCCCombo(const std::vector<DXCCComboList*>& combos) {
  try {
    for (DXCCComboList* c : combos) {
      c->Clear();
      c->AddItem("", 0);
    }
    dxccRecordset_.MoveFirst();
    while (!dxccRecordset_.EOF_()) {
      std::string prefix = dxccRecordset_.Fields("DXCCPrefix").Value().ToStringOrEmpty();
      int16_t code = 0;
      try {
        code = dxccRecordset_.Fields("CountryCode").Value().ToInteger();
      } catch (const vb::VbError&) {
        // An unreadable code leaves the item's data at 0.
      }
      for (DXCCComboList* c : combos) c->AddItem(prefix, code);
      dxccRecordset_.MoveNext();
    }
  } catch (const vb::VbError& e) {
    services_.ReportError(e.number(), "DXCCModule.InitializeDXCCCombo");
  }
}

}  // namespace vellumar
