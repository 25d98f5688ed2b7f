// The generator's reading of the country files and its mapping onto the DXCC, Prefix and
// Location tables, on small files written by the tests and on the installed country files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <set>
#include <string>

#include "country_files.h"
#include "deleted_entities.h"
#include "dxcc_model.h"
#include "dxcc_writer.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "station/dxcc_module.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"

namespace vellumar::dxccgen {
namespace {

const char kCtyDat[] =
    "Fiji:                     32:  56:  OC:  -17.78:  -177.92:   -12.0:  3D2:\n"
    "    3D2,=3D5X;\n"
    "Conway Reef:              32:  56:  OC:  -22.00:  -175.00:   -12.0:  3D2/c:\n"
    "    =3D20CR,=3D2C;\n"
    "Rotuma Island:            32:  56:  OC:  -12.48:  -177.08:   -12.0:  3D2/r:\n"
    "    =3D2R,=3D2AG/P;\n"
    "Italy:                    15:  28:  EU:   42.82:   -12.58:    -1.0:  I:\n"
    "    I,=II0ABC(14)[27];\n"
    "African Italy:            33:  37:  AF:   35.67:   -12.67:    -1.0:  *IG9:\n"
    "    IG9,IH9,=IO9Y;\n"
    "Canada:                   05:  09:  NA:   44.35:    78.75:     5.0:  VE:\n"
    "    VE,VE8(2)[75]{AN},VO1,VO2;\n"
    "Cocos (Keeling) Islands:  29:  54:  OC:  -12.15:   -96.82:    -6.5:  VK9C:\n"
    "    VK9C,VK9Y;\n"
    "Norfolk Island:           32:  60:  OC:  -29.03:  -167.93:   -11.5:  VK9N:\n"
    "    VK9;\n"
    "Australia:                30:  59:  OC:  -23.70:  -132.33:   -10.0:  VK:\n"
    "    VK;\n"
    "Bouvet:                   38:  67:  AF:  -54.42:    -3.38:    -1.0:  3Y/b:\n"
    "    =3Y0J;\n";

const char kCtyCsv[] =
    "3D2,Fiji,176,OC,32,56,-17.78,-177.92,-12.0,3D2 =3D5X;\n"
    "3D2/c,Conway Reef,489,OC,32,56,-22.00,-175.00,-12.0,=3D20CR =3D2C;\n"
    "3D2/r,Rotuma Island,460,OC,32,56,-12.48,-177.08,-12.0,=3D2R =3D2AG/P;\n"
    "I,Italy,248,EU,15,28,42.82,-12.58,-1.0,I;\n"
    "*IG9,African Italy,248,AF,33,37,35.67,-12.67,-1.0,IG9 IH9 =IO9Y;\n"
    "VE,Canada,1,NA,5,9,44.35,78.75,5.0,VE VE8(2)[75]{AN} VO1 VO2;\n"
    "VK9C,Cocos (Keeling) Islands,38,OC,29,54,-12.15,-96.82,-6.5,VK9C VK9Y;\n"
    "VK9N,Norfolk Island,189,OC,32,60,-29.03,-167.93,-11.5,VK9;\n"
    "VK,Australia,150,OC,30,59,-23.70,-132.33,-10.0,VK;\n"
    "3Y/b,Bouvet,24,AF,38,67,-54.42,-3.38,-1.0,=3Y0J;\n";

const char kDeleted[] =
    "adif,name,prefixes,continent,cq_zone,itu_zone,validity\n"
    "8,\"Aldabra Isl.\",\"VQ9(A)\",AF,\"39\",\"53\",\"-1976/06/28 1976/06/29-=379\"\n"
    "2,\"Abu Ail, Jabal at Tair\",\"A1\",AS,\"21\",\"39\",\"-1991/03/30\"\n"
    "186,\"Newfoundland, Labrador\",\"VO\",NA,\"02;05\",\"9\",\"-1949/03/31\"\n"
    "271,\"Trieste\",\"I1 MF2\",EU,\"15\",\"28\",\"-1957/05/31\"\n"
    "999,\"Old Fiji\",\"3D2\",OC,\"32\",\"56\",\"1950/01/01-1960/12/31\"\n";

const DxccRow* Dxcc(const DxccModel& m, const std::string& prefix) {
  for (const DxccRow& r : m.dxcc)
    if (r.dxccPrefix == prefix) return &r;
  return nullptr;
}
const PrefixRow* Key(const DxccModel& m, const std::string& key) {
  for (const PrefixRow& r : m.prefixes)
    if (r.prefix == key) return &r;
  return nullptr;
}
const LocationRow* Loc(const DxccModel& m, const std::string& key) {
  for (const LocationRow& r : m.locations)
    if (r.location == key) return &r;
  return nullptr;
}

class ModelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ctyDat = dir.Join("cty.dat");
    ctyCsv = dir.Join("cty.csv");
    deleted = dir.Join("deleted.csv");
    ASSERT_TRUE(test::WriteFileText(ctyDat, kCtyDat));
    ASSERT_TRUE(test::WriteFileText(ctyCsv, kCtyCsv));
    ASSERT_TRUE(test::WriteFileText(deleted, kDeleted));
  }
  DxccModel Build() { return BuildDxccModelFromFiles(ctyDat, ctyCsv, deleted); }

  // The error a build raises, "" if none.
  std::string BuildError() {
    try {
      Build();
    } catch (const vb::VbError& e) {
      return e.description();
    }
    return "";
  }

  test::TempDir dir;
  std::string ctyDat, ctyCsv, deleted;
};

TEST_F(ModelTest, CurrentEntitiesHaveTheirNumbersAndNoEndDate) {
  DxccModel m = Build();
  const DxccRow* fiji = Dxcc(m, "3D2");
  ASSERT_NE(fiji, nullptr);
  EXPECT_EQ(fiji->countryCode, 176);
  EXPECT_EQ(fiji->dxccName, "Fiji");
  EXPECT_FALSE(fiji->endDate.has_value());
  EXPECT_EQ(fiji->continent, "OC");
  EXPECT_EQ(fiji->cqZone, 32);
  EXPECT_EQ(fiji->ituZone, 56);
  EXPECT_DOUBLE_EQ(fiji->longitude, 177.92);  // east positive
  // The region "*IG9" is no entity of its own.
  for (const DxccRow& r : m.dxcc) EXPECT_NE(r.dxccName, "African Italy");
}

TEST_F(ModelTest, SuffixLetterEntitiesGetDashedPrefixesAndKeys) {
  DxccModel m = Build();
  ASSERT_NE(Dxcc(m, "3D2-C"), nullptr);
  EXPECT_EQ(Dxcc(m, "3D2-C")->countryCode, 489);
  EXPECT_EQ(Dxcc(m, "3D2-R")->countryCode, 460);
  EXPECT_EQ(Dxcc(m, "3Y-B")->countryCode, 24);
  ASSERT_NE(Key(m, "3D2-C"), nullptr);
  EXPECT_EQ(Key(m, "3D2-C")->dxccPrefix, "3D2-C");
  EXPECT_EQ(Key(m, "3D2-R")->dxccPrefix, "3D2-R");
  EXPECT_EQ(Key(m, "3Y-B")->dxccPrefix, "3Y-B");
  // The stem VK9 is Norfolk's prefix: the VK9 group is told apart by letters.
  EXPECT_EQ(Dxcc(m, "VK9-C")->countryCode, 38);
  EXPECT_EQ(Dxcc(m, "VK9-N")->countryCode, 189);
  EXPECT_EQ(Dxcc(m, "VK9C"), nullptr);
  EXPECT_EQ(Key(m, "VK9")->dxccPrefix, "VK9-N");
  EXPECT_EQ(Key(m, "VK9C")->dxccPrefix, "VK9-C");
  EXPECT_EQ(Key(m, "VK9-C")->dxccPrefix, "VK9-C");
  // Every DXCC prefix is unique.
  std::vector<std::string> names;
  for (const DxccRow& r : m.dxcc) names.push_back(r.dxccPrefix);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

TEST_F(ModelTest, ExactCallsAreKeysOfTheWholeCall) {
  DxccModel m = Build();
  ASSERT_NE(Key(m, "3D2C"), nullptr);
  EXPECT_EQ(Key(m, "3D2C")->dxccPrefix, "3D2-C");
  ASSERT_NE(Key(m, "3D2AG/P"), nullptr);
  EXPECT_EQ(Key(m, "3D2AG/P")->dxccPrefix, "3D2-R");
  EXPECT_EQ(Key(m, "3D5X")->dxccPrefix, "3D2");
  EXPECT_EQ(Key(m, "3Y0J")->dxccPrefix, "3Y-B");
}

TEST_F(ModelTest, LongerCallsThanAWholeCallFallBackToThePrefix) {
  DxccModel m = Build();
  // "=3D2C" is Conway Reef; 3D2CA.. must stay with Fiji's prefix 3D2.
  for (char c = 'A'; c <= 'Z'; ++c) {
    const PrefixRow* guard = Key(m, std::string("3D2C") + c);
    ASSERT_NE(guard, nullptr) << c;
    EXPECT_EQ(guard->dxccPrefix, "3D2");
    EXPECT_EQ(guard->location, "OC/32/56");
  }
  EXPECT_EQ(Key(m, "3D2C-"), nullptr);     // a station's SSID stays with the station
  EXPECT_EQ(Key(m, "3D2AG/PA"), nullptr);  // keys with "/" need no guard
  // A whole call that the prefix gives anyway needs no guard: "=3D5X" is Fiji's.
  EXPECT_EQ(Key(m, "3D5XA"), nullptr);
  // A whole call with its own zones differs from the prefix: guarded with the prefix's zones.
  ASSERT_NE(Key(m, "II0ABCA"), nullptr);
  EXPECT_EQ(Key(m, "II0ABCA")->location, "EU/15/28");
}

TEST_F(ModelTest, AWholeCallGivesWayToTheSamePrefix) {
  std::string text = kCtyDat;
  text += "Tonga:  32:  62:  OC:  -21.22:   175.15:   -13.0:  A3:\n    A3,=VE8;\n";
  ASSERT_TRUE(test::WriteFileText(ctyDat, text));
  ASSERT_TRUE(test::WriteFileText(
      ctyCsv, std::string(kCtyCsv) + "A3,Tonga,160,OC,32,62,-21.22,175.15,-13.0,A3 =VE8;\n"));
  DxccModel m = Build();
  EXPECT_EQ(Key(m, "VE8")->dxccPrefix, "VE");
  bool noted = false;
  for (const std::string& n : m.notes) noted = noted || n.find("exact call VE8") == 0;
  EXPECT_TRUE(noted);
}

TEST_F(ModelTest, StarRegionsBelongToTheirEntityWithTheirOwnLocation) {
  DxccModel m = Build();
  for (const char* key : {"IG9", "IH9", "IO9Y"}) {
    ASSERT_NE(Key(m, key), nullptr) << key;
    EXPECT_EQ(Key(m, key)->dxccPrefix, "I") << key;
    EXPECT_EQ(Key(m, key)->location, "AF/33/37") << key;
  }
  EXPECT_EQ(Key(m, "I")->location, "EU/15/28");
  ASSERT_NE(Loc(m, "AF/33/37"), nullptr);
  EXPECT_EQ(Loc(m, "AF/33/37")->continent, "AF");
}

TEST_F(ModelTest, OverridesBecomeTheirOwnLocations) {
  DxccModel m = Build();
  EXPECT_EQ(Key(m, "VE")->location, "NA/05/09");
  EXPECT_EQ(Key(m, "VE8")->location, "AN/02/75");
  const LocationRow* arctic = Loc(m, "AN/02/75");
  ASSERT_NE(arctic, nullptr);
  EXPECT_EQ(arctic->continent, "AN");
  EXPECT_EQ(arctic->cqZone, 2);
  EXPECT_EQ(arctic->ituZone, 75);
  EXPECT_EQ(Key(m, "II0ABC")->location, "EU/14/27");
  // Each Location key is used by some prefix, and each prefix's location exists.
  for (const PrefixRow& p : m.prefixes) EXPECT_NE(Loc(m, p.location), nullptr) << p.prefix;
}

TEST_F(ModelTest, DeletedEntities) {
  DxccModel m = Build();
  const DxccRow* aldabra = Dxcc(m, "VQ9-A");
  ASSERT_NE(aldabra, nullptr);
  EXPECT_EQ(aldabra->countryCode, 8);
  ASSERT_TRUE(aldabra->endDate.has_value());
  EXPECT_DOUBLE_EQ(*aldabra->endDate, vb::DateSerial(1976, 6, 28));
  EXPECT_EQ(Key(m, "VQ9-A")->dxccPrefix, "VQ9-A");
  EXPECT_EQ(Key(m, "VQ9-A")->location, "AF/39/53");
  // A free prefix block becomes a key; a block in use today does not.
  EXPECT_EQ(Key(m, "A1")->dxccPrefix, "A1");
  EXPECT_EQ(Key(m, "VO"), nullptr);  // VO1 and VO2 are Canada's
  EXPECT_EQ(Key(m, "I1"), nullptr);  // I is Italy's
  EXPECT_EQ(Key(m, "MF2")->dxccPrefix, "I1");
  EXPECT_EQ(Dxcc(m, "VO")->cqZone, 2);  // the first of "02;05"
  EXPECT_DOUBLE_EQ(*Dxcc(m, "I1")->endDate, vb::DateSerial(1957, 5, 31));
  // A deleted entity whose prefix is a current one's is told apart by its name's initial.
  const DxccRow* oldFiji = nullptr;
  for (const DxccRow& r : m.dxcc)
    if (r.countryCode == 999) oldFiji = &r;
  ASSERT_NE(oldFiji, nullptr);
  EXPECT_EQ(oldFiji->dxccPrefix, "3D2-O");
  EXPECT_DOUBLE_EQ(*oldFiji->endDate, vb::DateSerial(1960, 12, 31));
  EXPECT_EQ(Key(m, "3D2-O"), nullptr);  // such a name is no key: "/O" stays with Fiji
}

TEST_F(ModelTest, MissingCtyDatNamesTheFile) {
  ctyDat = dir.Join("absent/cty.dat");
  std::string error = BuildError();
  EXPECT_NE(error.find(ctyDat), std::string::npos) << error;
}

TEST_F(ModelTest, UnterminatedRecordNamesFileAndLine) {
  ASSERT_TRUE(test::WriteFileText(ctyDat,
                                  "Fiji:   32:  56:  OC:  -17.78:  -177.92:   -12.0:  3D2:\n"
                                  "    3D2,=3D5X,\n"
                                  "Italy:  15:  28:  EU:   42.82:   -12.58:    -1.0:  I:\n"
                                  "    I;\n"));
  EXPECT_EQ(BuildError(),
            ctyDat + " line 3: the prefix list of Fiji (line 1) has no closing \";\"");
}

TEST_F(ModelTest, FileEndingInsideARecordNamesTheLastLine) {
  ASSERT_TRUE(test::WriteFileText(ctyDat,
                                  "Fiji:   32:  56:  OC:  -17.78:  -177.92:   -12.0:  3D2:\n"
                                  "    3D2,=3D5X,\n"
                                  "    3D3\n"));
  EXPECT_EQ(BuildError(),
            ctyDat + " line 3: the file ends inside the prefix list of Fiji (line 1)");
}

TEST_F(ModelTest, BadHeaderFieldsNameFileAndLine) {
  ASSERT_TRUE(test::WriteFileText(ctyDat,
                                  "Fiji:   32:  56:  OC:  -17.78:  -177.92:   -12.0:  3D2:\n"
                                  "    3D2;\n"
                                  "Italy:  15:  XX:  EU:   42.82:   -12.58:    -1.0:  I:\n"
                                  "    I;\n"));
  EXPECT_EQ(BuildError(), ctyDat + " line 3: ITU zone \"XX\" of Italy is no zone");
  ASSERT_TRUE(
      test::WriteFileText(ctyDat, "Fiji:   32:  56:  OC:  -17.78:  -177.92:  3D2:\n 3D2;\n"));
  EXPECT_EQ(BuildError(),
            ctyDat + " line 1: entity header has 7 colon-terminated fields, 8 expected");
  ASSERT_TRUE(test::WriteFileText(
      ctyDat, "Fiji:   32:  56:  XY:  -17.78:  -177.92:  -12.0:  3D2:\n 3D2;\n"));
  EXPECT_EQ(BuildError(), ctyDat + " line 1: continent \"XY\" of Fiji is no continent");
}

TEST_F(ModelTest, BadPrefixEntryNamesFileAndLine) {
  ASSERT_TRUE(test::WriteFileText(ctyDat,
                                  "Fiji:   32:  56:  OC:  -17.78:  -177.92:   -12.0:  3D2:\n"
                                  "    3D2,\n"
                                  "    3D3(x);\n"));
  EXPECT_EQ(BuildError(), ctyDat + " line 3: entry \"3D3(x)\": CQ zone \"x\" is no zone");
  ASSERT_TRUE(test::WriteFileText(ctyDat,
                                  "Fiji:   32:  56:  OC:  -17.78:  -177.92:   -12.0:  3D2:\n"
                                  "    3D2,3d3;\n"));
  EXPECT_EQ(BuildError(), ctyDat + " line 2: entry \"3d3\" has an unreadable override");
}

TEST_F(ModelTest, EntityMissingFromCsvIsAnError) {
  ASSERT_TRUE(test::WriteFileText(ctyCsv, "3D2,Fiji,176,OC,32,56,-17.78,-177.92,-12.0,3D2;\n"));
  std::string error = BuildError();
  EXPECT_NE(error.find(ctyDat + " line 3: Conway Reef (3D2/c) has no row in " + ctyCsv),
            std::string::npos)
      << error;
}

TEST_F(ModelTest, OneKeyForTwoEntitiesIsAnError) {
  std::string text = kCtyDat;
  text += "Tonga:  32:  62:  OC:  -21.22:   175.15:   -13.0:  A3:\n    A3,VK;\n";
  ASSERT_TRUE(test::WriteFileText(ctyDat, text));
  ASSERT_TRUE(test::WriteFileText(
      ctyCsv, std::string(kCtyCsv) + "A3,Tonga,160,OC,32,62,-21.22,175.15,-13.0,A3 VK;\n"));
  std::string error = BuildError();
  EXPECT_NE(error.find("VK belongs to entity 160"), std::string::npos) << error;
  EXPECT_NE(error.find(ctyDat + " line 22"), std::string::npos) << error;
}

// The small files written to a database and read back by the lookup.
TEST_F(ModelTest, WrittenDatabaseServesTheLookup) {
  std::filesystem::create_directories(dir.Join("data/Databases"));
  WriteDxccDatabase(Build(), dir.Join("data/Databases/DXCC.vdb"));
  test::ScriptedDesktop desktop;
  std::vector<std::string> notes;
  StationServices services;
  services.programFolder = dir.Join("data");
  services.GetSetting = [](const std::string&, const std::string&, const std::string&,
                           const std::string& def) { return def; };
  services.WriteErrorLog = [&](const std::string& t) { notes.push_back(t); };
  services.ReportError = [](int n, const std::string& w) { ADD_FAILURE() << n << " " << w; };
  services.desktop = &desktop;
  LookupSlots slots;
  DXCCModule module(services, slots);
  module.OpenDXCCDatabase();
  ASSERT_TRUE(module.IsOpen());
  module.Lookup("3D2ABC/C");
  EXPECT_EQ(slots.DXCCID, "489");
  EXPECT_EQ(slots.DXCCPrefix, "3D2-C");
  EXPECT_EQ(module.GetDXCCName(slots.DXCCPrefix), "Conway Reef");
  module.Lookup("3D2ABC/R");
  EXPECT_EQ(slots.DXCCID, "460");
  module.Lookup("3D2ABC");
  EXPECT_EQ(slots.DXCCID, "176");
  module.Lookup("VK9AB/C");
  EXPECT_EQ(slots.DXCCID, "38");
  module.Lookup("IH9ABC");
  EXPECT_EQ(slots.DXCCID, "248");
  EXPECT_EQ(slots.Cont, "AF");
  EXPECT_EQ(slots.CQ, "33");
  EXPECT_EQ(slots.ITU, "37");
  module.Lookup("VE8ABC");
  EXPECT_EQ(slots.Cont, "AN");
  EXPECT_EQ(slots.CQ, "2");
  EXPECT_EQ(slots.ITU, "75");
  module.Lookup("3Y0J");
  EXPECT_EQ(slots.DXCCID, "24");
  module.Lookup("VQ9-A");  // no VQ9 prefix in these files: the dashed key itself
  EXPECT_EQ(slots.DXCCID, "8");
  EXPECT_TRUE(notes.empty());
  db::Recordset dynaset = module.GetDXCCDynaset();
  dynaset.FindFirst("CountryCode = 8");
  ASSERT_FALSE(dynaset.NoMatch());
  EXPECT_DOUBLE_EQ(dynaset.Fields("EndDate").Value().ToDate(), vb::DateSerial(1976, 6, 28));
}

// The generator as the build runs it: a malformed file stops it with the file and line named.
TEST_F(ModelTest, GeneratorExitsNonZeroNamingFileAndLine) {
  ASSERT_TRUE(test::WriteFileText(ctyDat,
                                  "Fiji:   32:  56:  OC:  -17.78:  -177.92:   -12.0:  3D2:\n"
                                  "    3D2,=3D5X,\n"));
  std::string output = dir.Join("out.vdb");
  std::string command = std::string(VELLUMAR_BINARY_DIR) + "/bin/dxccgen --cty-dat " + ctyDat +
                        " --cty-csv " + ctyCsv + " --deleted " + deleted + " --output " + output +
                        " 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string text;
  char buffer[256];
  while (fgets(buffer, sizeof buffer, pipe)) text += buffer;
  int status = pclose(pipe);
  EXPECT_NE(status, 0);
  EXPECT_EQ(text, "dxccgen: " + ctyDat +
                      " line 2: the file ends inside the prefix list of Fiji (line 1)\n");
  EXPECT_FALSE(std::filesystem::exists(output));
}

TEST(PrefixNotation, ClassesAndLetters) {
  EXPECT_EQ(ExpandPrefixNotation("VQ9(A)"), std::vector<std::string>{"VQ9-A"});
  EXPECT_EQ(ExpandPrefixNotation("MS[460]"), (std::vector<std::string>{"MS4", "MS6", "MS0"}));
  EXPECT_EQ(ExpandPrefixNotation("6[T-U]0"), (std::vector<std::string>{"6T0", "6U0"}));
  EXPECT_EQ(ExpandPrefixNotation("4W[02-4]"),
            (std::vector<std::string>{"4W0", "4W2", "4W3", "4W4"}));
  EXPECT_EQ(ExpandPrefixNotation("DL"), std::vector<std::string>{"DL"});
}

// The installed country files: counts and a few facts that the files themselves state.
TEST(InstalledCountryFiles, MapOntoTheTables) {
  const std::string dat = "/usr/share/hamradio-files/cty.dat";
  const std::string csv = "/usr/share/hamradio-files/cty.csv";
  std::vector<CtyEntity> entities = ReadCtyDat(dat);
  AssignAdifNumbers(entities, ReadCtyCsv(csv), dat, csv);
  size_t current = std::count_if(entities.begin(), entities.end(),
                                 [](const CtyEntity& e) { return !e.notDXCC; });
  DxccModel m = BuildDxccModelFromFiles(
      dat, csv, std::string(VELLUMAR_SOURCE_DIR) + "/data/deleted-entities.csv");
  std::vector<DeletedEntity> deleted =
      ReadDeletedEntities(std::string(VELLUMAR_SOURCE_DIR) + "/data/deleted-entities.csv");
  std::set<int> deletedNumbers;
  for (const DeletedEntity& d : deleted) deletedNumbers.insert(d.adif);
  EXPECT_EQ(m.dxcc.size(), current + deletedNumbers.size());
  size_t withEndDate = std::count_if(m.dxcc.begin(), m.dxcc.end(),
                                     [](const DxccRow& r) { return r.endDate.has_value(); });
  EXPECT_EQ(withEndDate, deletedNumbers.size());
  // Every entry of every record is a key, but for the few exact calls that equal a prefix.
  size_t entries = 0;
  for (const CtyEntity& e : entities) entries += e.prefixes.size();
  EXPECT_GT(m.prefixes.size(), entries * 99 / 100);
  EXPECT_EQ(Dxcc(m, "3D2-C")->dxccName, "Conway Reef");
  EXPECT_EQ(Key(m, "4U1VIC")->dxccPrefix, "OE");  // Vienna Intl Ctr counts as Austria
}

}  // namespace
}  // namespace vellumar::dxccgen
