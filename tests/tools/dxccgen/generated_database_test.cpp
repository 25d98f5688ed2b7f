// The DXCC database the build generates, read through the lookup. Entity numbers come from the
// country files themselves (cty.csv), never from the lookup.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "country_files.h"
#include "deleted_entities.h"
#include "station/dxcc_module.h"
#include "support/scripted_desktop.h"

namespace vellumar {
namespace {

class GeneratedDatabase : public ::testing::Test {
 protected:
  struct Program {
    test::ScriptedDesktop desktop;
    std::vector<std::string> notes;
    std::vector<std::string> reports;
    StationServices services;
    LookupSlots slots;
    std::unique_ptr<DXCCModule> module;
    std::map<std::string, dxccgen::CtyCsvEntry> csv;
  };

  static void SetUpTestSuite() {
    program = new Program;
    const std::string data = std::string(VELLUMAR_BINARY_DIR) + "/data";
    program->services.programFolder = data;
    program->services.GetSetting = [data](const std::string&, const std::string&,
                                          const std::string&,
                                          const std::string&) { return data + "/DXCC.vdb"; };
    program->services.WriteErrorLog = [](const std::string& t) { program->notes.push_back(t); };
    program->services.ReportError = [](int n, const std::string& w) {
      program->reports.push_back(std::to_string(n) + " " + w);
    };
    program->services.desktop = &program->desktop;
    program->module = std::make_unique<DXCCModule>(program->services, program->slots);
    program->module->OpenDXCCDatabase();
    program->csv = dxccgen::ReadCtyCsv("/usr/share/hamradio-files/cty.csv");
  }
  static void TearDownTestSuite() {
    delete program;
    program = nullptr;
  }
  void SetUp() override {
    ASSERT_TRUE(program->module->IsOpen());
    ASSERT_TRUE(program->reports.empty());
    program->notes.clear();
  }

  // The ADIF number cty.csv gives the entity with this main prefix, as text.
  static std::string Adif(const std::string& mainPrefix) {
    auto it = program->csv.find(mainPrefix);
    EXPECT_NE(it, program->csv.end()) << mainPrefix;
    return it == program->csv.end() ? "?" : std::to_string(it->second.adif);
  }
  static LookupSlots& Look(const std::string& call) {
    program->module->Lookup(call);
    return program->slots;
  }

  static Program* program;
};

GeneratedDatabase::Program* GeneratedDatabase::program = nullptr;

TEST_F(GeneratedDatabase, SuffixLettersTellApartEntitiesSharingAPrefix) {
  EXPECT_EQ(Look("3D2ABC").DXCCID, Adif("3D2"));
  EXPECT_EQ(Look("3D2ABC/C").DXCCID, Adif("3D2/c"));
  EXPECT_EQ(program->slots.DXCCPrefix, "3D2-C");
  EXPECT_EQ(program->module->GetDXCCName("3D2-C"), "Conway Reef");
  EXPECT_EQ(Look("3D2ABC/R").DXCCID, Adif("3D2/r"));
  EXPECT_EQ(Look("HK0ABC").DXCCID, Adif("HK0/a"));
  EXPECT_EQ(Look("HK0ABC/M").DXCCID, Adif("HK0/m"));
  EXPECT_EQ(Look("VK9ABC").DXCCID, Adif("VK9N"));
  EXPECT_EQ(Look("VK9ABC/X").DXCCID, Adif("VK9X"));
  EXPECT_EQ(Look("VK9ABC/L").DXCCID, Adif("VK9L"));
  EXPECT_EQ(Look("CE0ABC/Z").DXCCID, Adif("CE0Z"));
  EXPECT_EQ(Look("E5ABC/N").DXCCID, Adif("E5/n"));
  // The dash's letter is overwritten: Kerguelen's FT5X with /G is Glorioso.
  EXPECT_EQ(Look("FT5XA").DXCCID, Adif("FT/x"));
  EXPECT_EQ(Look("FT5XA/G").DXCCID, Adif("FT/g"));
  // A letter that names no entity stays with the call's own.
  EXPECT_EQ(Look("3D2ABC/Q").DXCCID, Adif("3D2"));
  // /M is mobile, no entity letter: it stays with the call's own, also for renamed old ones.
  EXPECT_EQ(Look("C91AB/M").DXCCID, Adif("C9"));
  EXPECT_TRUE(program->notes.empty());
}

TEST_F(GeneratedDatabase, RegionsMarkedWithAStarBelongToTheirEntity) {
  EXPECT_EQ(Look("IG9ABC").DXCCID, Adif("I"));
  EXPECT_EQ(program->slots.Cont, "AF");
  EXPECT_EQ(Look("IT9ABC").DXCCID, Adif("I"));
  EXPECT_EQ(program->slots.Cont, "EU");
  EXPECT_EQ(Look("4U1VIC").DXCCID, Adif("OE"));
  EXPECT_EQ(Look("TA1ABC").DXCCID, Adif("TA"));
  EXPECT_EQ(program->slots.Cont, "EU");
  EXPECT_EQ(Look("TA2ABC").DXCCID, Adif("TA"));
  EXPECT_EQ(program->slots.Cont, "AS");
  EXPECT_EQ(Look("GM4ABC/S").DXCCID, Adif("GM"));
}

TEST_F(GeneratedDatabase, WholeCallsAreExactAndLongerCallsFallBackToThePrefix) {
  EXPECT_EQ(Look("3D2C").DXCCID, Adif("3D2/c"));
  EXPECT_EQ(Look("3D2CA").DXCCID, Adif("3D2"));
  EXPECT_EQ(Look("3D2CAB").DXCCID, Adif("3D2"));
  // A station's SSID stays with the station.
  EXPECT_EQ(Look("3D2C-1").DXCCID, Adif("3D2/c"));
}

TEST_F(GeneratedDatabase, ZoneOverridesGiveTheirOwnZones) {
  LookupSlots& s = Look("3H0ABC");  // written 3H0(23)[42] under China
  EXPECT_EQ(s.DXCCID, Adif("BY"));
  EXPECT_EQ(s.CQ, "23");
  EXPECT_EQ(s.ITU, "42");
  EXPECT_EQ(Look("BY1ABC").CQ, "24");
}

TEST_F(GeneratedDatabase, DeletedEntitiesAreInTheDXCCTable) {
  std::vector<dxccgen::DeletedEntity> deleted =
      dxccgen::ReadDeletedEntities(std::string(VELLUMAR_SOURCE_DIR) + "/data/deleted-entities.csv");
  const dxccgen::DeletedEntity* aldabra = nullptr;  // written "VQ9(A)"
  for (const dxccgen::DeletedEntity& d : deleted)
    if (d.prefixes.front() == "VQ9(A)") aldabra = &d;
  ASSERT_NE(aldabra, nullptr);
  EXPECT_EQ(program->module->GetDXCCName("VQ9-A"), aldabra->name);
  EXPECT_EQ(Look("VQ9ABC/A").DXCCID, std::to_string(aldabra->adif));
  EXPECT_EQ(Look("VQ9ABC").DXCCID, Adif("VQ9"));
  db::Recordset dynaset = program->module->GetDXCCDynaset();
  for (const dxccgen::DeletedEntity& d : deleted) {
    dynaset.FindFirst("CountryCode = " + std::to_string(d.adif));
    ASSERT_FALSE(dynaset.NoMatch()) << d.name;
    EXPECT_FALSE(dynaset.Fields("EndDate").Value().IsNull()) << d.name;
  }
  dynaset.FindFirst("CountryCode = " + Adif("3D2/c"));
  ASSERT_FALSE(dynaset.NoMatch());
  EXPECT_TRUE(dynaset.Fields("EndDate").Value().IsNull());
}

TEST_F(GeneratedDatabase, EveryKeyLeadsToADXCCAndALocationRow) {
  // Walk the Prefix table: each key's row must find its DXCC and Location rows.
  db::Database database =
      db::DBEngine::Workspaces(0).OpenDatabase(program->module->GetDXCCDatabasePathname(), true);
  db::Recordset rs = database.OpenRecordset("Prefix", db::dbOpenTable);
  rs.SetIndex("PrimaryKey");
  db::Field key = rs.Fields("Prefix");
  long checked = 0;
  for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
    std::string k = key.Value().ToString();
    if (k.find('/') != std::string::npos) continue;  // not reachable by Lookup as a whole
    program->module->Lookup(k);
    ASSERT_FALSE(program->slots.DXCCID.empty()) << k;
    ASSERT_FALSE(program->slots.Cont.empty()) << k;
    ++checked;
  }
  EXPECT_GT(checked, 20000);
  EXPECT_TRUE(program->notes.empty()) << program->notes.front();
  database.Close();
}

struct RecordingCombo : DXCCComboList {
  void Clear() override { items.clear(); }
  void AddItem(const std::string& text, int16_t data) override { items.emplace_back(text, data); }
  std::vector<std::pair<std::string, int16_t>> items;
};

TEST_F(GeneratedDatabase, ComboListsEveryEntity) {
  RecordingCombo combo;
  program->module->InitializeDXCCCombo({&combo});
  ASSERT_GT(combo.items.size(), 400u);
  EXPECT_EQ(combo.items[0], std::make_pair(std::string(), int16_t{0}));
  std::map<int, int> seen;
  for (size_t i = 1; i < combo.items.size(); ++i) {
    EXPECT_GT(combo.items[i].second, 0) << combo.items[i].first;
    ++seen[combo.items[i].second];
  }
  for (const auto& [code, count] : seen) EXPECT_EQ(count, 1) << code;
  EXPECT_TRUE(program->reports.empty());
}

}  // namespace
}  // namespace vellumar
