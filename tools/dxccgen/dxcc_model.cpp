#include "dxcc_model.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

#include "platform/vb/error.h"

namespace vellumar::dxccgen {

namespace {

constexpr size_t kMaxDXCCPrefixLength = 6;  // width of DXCCPrefix in the log

[[noreturn]] void Contradiction(const std::string& path, int line, const std::string& what) {
  vb::Raise(vb::kTypeMismatch, path + " line " + std::to_string(line) + ": " + what);
}

std::string Upper(std::string s) {
  for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

bool IsLetter(char c) { return c >= 'A' && c <= 'Z'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

class Builder {
 public:
  Builder(const std::string& ctyPath, const std::string& deletedPath)
      : ctyPath_(ctyPath), deletedPath_(deletedPath) {}

  DxccModel Build(const std::vector<CtyEntity>& entities,
                  const std::vector<DeletedEntity>& deleted) {
    IndexCurrentEntities(entities);
    NameCurrentEntities(entities);
    for (const CtyEntity& e : entities) AddCtyPrefixes(e);
    for (const CtyEntity& e : entities) AddDashedKey(e);
    AddDeletedEntities(deleted);
    AddExactCallGuards();
    for (auto& [key, entry] : prefixes_) model_.prefixes.push_back(entry.row);
    for (auto& [key, row] : locations_) model_.locations.push_back(row);
    std::sort(model_.dxcc.begin(), model_.dxcc.end(),
              [](const DxccRow& a, const DxccRow& b) { return a.dxccPrefix < b.dxccPrefix; });
    return std::move(model_);
  }

 private:
  struct PrefixEntry {
    PrefixRow row;
    int adif = 0;            // entity the key belongs to
    bool fromStar = false;   // came from a "*" region entry
    bool current = true;     // from cty.dat rather than the deleted entities
    bool exactCall = false;  // a whole call ("=CALL") rather than a prefix
    std::string source;      // file and line, for messages
  };

  std::string Location(const std::string& continent, int cq, int itu) {
    char key[32];
    std::snprintf(key, sizeof key, "%s/%02d/%02d", continent.c_str(), cq, itu);
    if (!locations_.count(key)) locations_[key] = LocationRow{key, continent, cq, itu};
    return key;
  }

  void IndexCurrentEntities(const std::vector<CtyEntity>& entities) {
    for (const CtyEntity& e : entities) {
      if (e.notDXCC) continue;
      if (byAdif_.count(e.adif))
        Contradiction(ctyPath_, e.line,
                      e.name + " has ADIF number " + std::to_string(e.adif) + " like " +
                          byAdif_[e.adif]->name + " (line " +
                          std::to_string(byAdif_[e.adif]->line) + ")");
      byAdif_[e.adif] = &e;
    }
    for (const CtyEntity& e : entities)
      if (e.notDXCC && !byAdif_.count(e.adif))
        Contradiction(ctyPath_, e.line,
                      e.name + " (*" + e.primary + ") belongs to ADIF entity " +
                          std::to_string(e.adif) + ", which has no record");
  }

  // DXCC prefixes of the current entities: the main prefix, or the dashed form for entities
  // told apart by a letter.
  void NameCurrentEntities(const std::vector<CtyEntity>& entities) {
    // Stems shared by main prefixes of the form stem + letter, the stem ending in a digit.
    std::map<std::string, std::vector<const CtyEntity*>> stems;
    for (const CtyEntity& e : entities) {
      const std::string& p = e.primary;
      if (e.notDXCC || p.find('/') != std::string::npos || p.size() < 3) continue;
      if (IsLetter(p.back()) && IsDigit(p[p.size() - 2]))
        stems[p.substr(0, p.size() - 1)].push_back(&e);
    }
    std::map<const CtyEntity*, std::string> dashed;
    for (auto& [stem, members] : stems) {
      if (members.size() < 2) continue;
      bool stemIsPrefix = false;
      for (const CtyEntity* m : members)
        for (const CtyPrefix& p : m->prefixes)
          if (!p.exactCall && p.text == stem) stemIsPrefix = true;
      if (!stemIsPrefix) continue;
      std::string names;
      for (const CtyEntity* m : members) {
        dashed[m] = stem + "-" + m->primary.back();
        names += " " + dashed[m];
      }
      model_.notes.push_back("letter group " + stem + ":" + names);
    }
    std::map<std::string, const CtyEntity*> taken;
    for (const CtyEntity& e : entities) {
      if (e.notDXCC) continue;
      std::string name;
      size_t slash = e.primary.find('/');
      if (slash != std::string::npos)
        name = Upper(e.primary.substr(0, slash) + "-" + e.primary.substr(slash + 1));
      else if (dashed.count(&e))
        name = dashed[&e];
      else
        name = Upper(e.primary);
      if (name.size() > kMaxDXCCPrefixLength)
        Contradiction(ctyPath_, e.line,
                      "DXCC prefix " + name + " of " + e.name + " is longer than 6");
      if (taken.count(name))
        Contradiction(
            ctyPath_, e.line,
            "DXCC prefix " + name + " of " + e.name + " is also that of " + taken[name]->name);
      taken[name] = &e;
      dxccPrefixOf_[e.adif] = name;
      dxccNames_.insert(name);
      DxccRow row;
      row.dxccPrefix = name;
      row.countryCode = e.adif;
      row.dxccName = e.name;
      row.continent = e.continent;
      row.cqZone = e.cqZone;
      row.ituZone = e.ituZone;
      row.latitude = e.latitude;
      row.longitude = -e.longitude;  // the file counts west positive
      model_.dxcc.push_back(row);
    }
  }

  // A key of Prefix. The same key twice is allowed within one entity (a "*" region repeating
  // calls of its entity wins, having the more precise location); across entities it is an error.
  void AddKey(const std::string& key, PrefixEntry entry) {
    auto it = prefixes_.find(key);
    if (it == prefixes_.end()) {
      prefixes_[key] = entry;
      return;
    }
    if (it->second.exactCall != entry.exactCall) {
      // The whole call "=EF6" of one entity and the prefix EF6 of another share the key: the
      // prefix serves every call that begins with it, so it keeps the key.
      const PrefixEntry& call = entry.exactCall ? entry : it->second;
      model_.notes.push_back("exact call " + key + " (" + call.source +
                             ") gives way to the prefix " + key);
      if (!entry.exactCall) it->second = entry;
      return;
    }
    if (it->second.adif != entry.adif)
      vb::Raise(vb::kTypeMismatch, entry.source + ": " + key + " belongs to entity " +
                                       std::to_string(entry.adif) + " and, at " +
                                       it->second.source + ", to entity " +
                                       std::to_string(it->second.adif));
    if (entry.fromStar && !it->second.fromStar) it->second = entry;
  }

  std::string Source(const std::string& path, int line) {
    return path + " line " + std::to_string(line);
  }

  void AddCtyPrefixes(const CtyEntity& e) {
    const std::string& dxccPrefix = dxccPrefixOf_.at(e.adif);
    for (const CtyPrefix& p : e.prefixes) {
      PrefixEntry entry;
      entry.row.prefix = p.text;
      entry.row.dxccPrefix = dxccPrefix;
      entry.row.location = Location(p.continent.value_or(e.continent), p.cqZone.value_or(e.cqZone),
                                    p.ituZone.value_or(e.ituZone));
      entry.adif = e.adif;
      entry.fromStar = e.notDXCC;
      entry.exactCall = p.exactCall;
      entry.source = Source(ctyPath_, p.line);
      AddKey(p.text, entry);
    }
  }

  // The key the suffix-letter lookup builds ("3D2-C") leads to the entity, and for a "*" region
  // written "GM/s" to its entity with the region's location.
  void AddDashedKey(const CtyEntity& e) {
    std::string key;
    size_t slash = e.primary.find('/');
    if (slash != std::string::npos)
      key = Upper(e.primary.substr(0, slash) + "-" + e.primary.substr(slash + 1));
    else if (!e.notDXCC && dxccPrefixOf_.at(e.adif).find('-') != std::string::npos)
      key = dxccPrefixOf_.at(e.adif);
    if (key.empty()) return;
    PrefixEntry entry;
    entry.row =
        PrefixRow{key, dxccPrefixOf_.at(e.adif), Location(e.continent, e.cqZone, e.ituZone)};
    entry.adif = e.adif;
    entry.fromStar = e.notDXCC;
    entry.source = Source(ctyPath_, e.line);
    AddKey(key, entry);
  }

  // True if the prefix's block is in use today: a current key is its beginning (or the prefix
  // itself), or begins with it (VO1 and VO2 of Canada cover the old VO of Newfoundland).
  bool CoveredByCurrentKey(const std::string& prefix) const {
    for (size_t n = prefix.size(); n >= 1; --n) {
      auto it = prefixes_.find(prefix.substr(0, n));
      if (it != prefixes_.end() && it->second.current) return true;
    }
    for (auto it = prefixes_.lower_bound(prefix);
         it != prefixes_.end() && it->first.compare(0, prefix.size(), prefix) == 0; ++it)
      if (it->second.current) return true;
    return false;
  }

  void AddDeletedEntities(const std::vector<DeletedEntity>& deleted) {
    std::map<int, std::vector<const DeletedEntity*>> byAdif;
    std::vector<int> order;
    for (const DeletedEntity& d : deleted) {
      if (byAdif_.count(d.adif))
        Contradiction(deletedPath_, d.line,
                      "deleted entity " + std::to_string(d.adif) + " " + d.name +
                          " is current in " + ctyPath_);
      if (!byAdif.count(d.adif)) order.push_back(d.adif);
      byAdif[d.adif].push_back(&d);
    }
    for (int adif : order) {
      const std::vector<const DeletedEntity*>& rows = byAdif[adif];
      const DeletedEntity* latest = rows.front();
      for (const DeletedEntity* r : rows)
        if (r->endDate > latest->endDate) latest = r;
      std::string name = ExpandPrefixNotation(latest->prefixes.front()).front();
      if (dxccNames_.count(name)) {
        // The prefix is another entity's DXCC prefix: tell this one apart by its name's initial
        // (or the next letter of its name that is free), as the "X(Y)" notation does. Such a name
        // gets no key in Prefix, so that a mobile "C91AB/M" doesn't land on Manchuria "C9-M".
        std::string stem = name.substr(0, name.find('-'));
        std::string tried = name;
        name.clear();
        for (char c : latest->name) {
          char u = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
          if (IsLetter(u) && !dxccNames_.count(stem + "-" + u)) {
            name = stem + "-" + u;
            break;
          }
        }
        if (name.empty())
          Contradiction(deletedPath_, latest->line, "no free DXCC prefix for " + latest->name);
        if (name.size() > kMaxDXCCPrefixLength)
          Contradiction(deletedPath_, latest->line, "DXCC prefix " + name + " is longer than 6");
        model_.notes.push_back("deleted " + std::to_string(adif) + " " + latest->name + ": " +
                               tried + " is taken, DXCC prefix " + name);
      }
      dxccNames_.insert(name);
      DxccRow row;
      row.dxccPrefix = name;
      row.countryCode = adif;
      row.dxccName = latest->name;
      row.endDate = latest->endDate;
      row.continent = latest->continent;
      row.cqZone = latest->cqZone;
      row.ituZone = latest->ituZone;
      model_.dxcc.push_back(row);

      for (const DeletedEntity* r : rows) {
        std::string location = Location(r->continent, r->cqZone, r->ituZone);
        for (const std::string& written : r->prefixes)
          for (const std::string& prefix : ExpandPrefixNotation(written)) {
            bool dashed = prefix.find('-') != std::string::npos;
            if (prefixes_.count(prefix) || (!dashed && CoveredByCurrentKey(prefix))) continue;
            PrefixEntry entry;
            entry.row = PrefixRow{prefix, name, location};
            entry.adif = adif;
            entry.current = false;
            entry.source = Source(deletedPath_, r->line);
            AddKey(prefix, entry);
            ++deletedKeys_;
          }
      }
    }
    model_.notes.push_back(std::to_string(order.size()) + " deleted entities, " +
                           std::to_string(deletedKeys_) + " of their prefixes as keys");
  }

  // A whole call as a key also matches every longer call that begins with it: "=KL7AF" of a
  // station in the lower 48 would take KL7AFQ of Alaska along. Where the call's row differs
  // from what the prefixes give, a guard key per following letter (KL7AFA .. KL7AFZ) hands the
  // longer calls back to the prefix's row. Letters only: a suffix grows by letters, while
  // "KL7AF-7" (a station's SSID) rightly stays with KL7AF. Keys with "/" need none: the lookup
  // never searches a string with a slash in it.
  void AddExactCallGuards() {
    static const std::string kFollowing = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::vector<std::pair<std::string, PrefixEntry>> guards;
    int guarded = 0;
    for (const auto& [key, entry] : prefixes_) {
      if (!entry.exactCall || key.find('/') != std::string::npos) continue;
      const PrefixEntry* base = PrefixMatch(key);
      if (base && base->row.dxccPrefix == entry.row.dxccPrefix &&
          base->row.location == entry.row.location)
        continue;
      ++guarded;
      for (char c : kFollowing) {
        std::string guard = key + c;
        if (prefixes_.count(guard)) continue;
        if (!base) continue;  // no prefix covers the call: longer calls find nothing either way
        PrefixEntry g = *base;
        g.row.prefix = guard;
        g.exactCall = false;
        g.source = entry.source + " (after the call " + key + ")";
        guards.emplace_back(guard, g);
      }
    }
    for (auto& [key, g] : guards) prefixes_.emplace(key, g);
    model_.notes.push_back(std::to_string(guarded) + " exact calls differ from their prefix: " +
                           std::to_string(guards.size()) + " guard keys");
  }

  // The longest key shorter than the call that isn't itself a whole call: what the call's
  // beginning gives by its prefixes alone.
  const PrefixEntry* PrefixMatch(const std::string& call) const {
    for (size_t n = call.size() - 1; n >= 1; --n) {
      auto it = prefixes_.find(call.substr(0, n));
      if (it != prefixes_.end() && !it->second.exactCall) return &it->second;
    }
    return nullptr;
  }

  const std::string ctyPath_, deletedPath_;
  DxccModel model_;
  std::map<int, const CtyEntity*> byAdif_;       // current entities by ADIF number
  std::map<int, std::string> dxccPrefixOf_;      // ADIF number -> DXCC prefix (current)
  std::set<std::string> dxccNames_;              // DXCC prefixes given so far
  std::map<std::string, PrefixEntry> prefixes_;  // Prefix rows by key
  std::map<std::string, LocationRow> locations_;
  int deletedKeys_ = 0;
};

}  // namespace

DxccModel BuildDxccModel(const std::vector<CtyEntity>& entities, const std::string& ctyPath,
                         const std::vector<DeletedEntity>& deleted,
                         const std::string& deletedPath) {
  return Builder(ctyPath, deletedPath).Build(entities, deleted);
}

DxccModel BuildDxccModelFromFiles(const std::string& ctyDatPath, const std::string& ctyCsvPath,
                                  const std::string& deletedPath) {
  std::vector<CtyEntity> entities = ReadCtyDat(ctyDatPath);
  AssignAdifNumbers(entities, ReadCtyCsv(ctyCsvPath), ctyDatPath, ctyCsvPath);
  return BuildDxccModel(entities, ctyDatPath, ReadDeletedEntities(deletedPath), deletedPath);
}

}  // namespace vellumar::dxccgen
