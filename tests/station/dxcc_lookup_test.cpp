// The callsign lookup against a small database of made-up prefixes.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "platform/vb/date_value.h"
#include "station/dxcc_compact.h"
#include "station/dxcc_module.h"
#include "support/scripted_desktop.h"
#include "support/temp_dir.h"
#include "support/test_dxcc_database.h"

namespace vellumar {
namespace {

using test::TestDXCCRow;
using test::TestLocationRow;
using test::TestPrefixRow;

class LookupTest : public ::testing::Test {
 protected:
  void SetUp() override {
    services.programFolder = dir.path();
    services.GetSetting = [this](const std::string& app, const std::string& section,
                                 const std::string& key, const std::string& def) {
      auto it = settings.find(app + "|" + section + "|" + key);
      return it == settings.end() ? def : it->second;
    };
    services.WriteErrorLog = [this](const std::string& text) { notes.push_back(text); };
    services.ReportError = [this](int number, const std::string& where) {
      reports.push_back(std::to_string(number) + " " + where);
    };
    services.desktop = &desktop;
    std::filesystem::create_directories(dir.Join("Databases"));
    test::CreateTestDXCCDatabase(dir.Join("Databases/DXCC.vdb"),
                                 {
                                     {"X1", 101, "Xland", std::nullopt},
                                     {"X4", 104, "Fourland", std::nullopt},
                                     {"X1-4", 140, "Xland Four", std::nullopt},
                                     {"VE", 1, "Canada", std::nullopt},
                                     {"A", 151, "Alpha", std::nullopt},
                                     {"A-C", 150, "Alpha Charlie", std::nullopt},
                                     {"Y9-A", 190, "Y9 Alpha", std::nullopt},
                                     {"Y9-B", 191, "Y9 Bravo", vb::DateSerial(1990, 1, 1)},
                                     {"Y9-D", 192, "Y9 Delta", std::nullopt},
                                     {"Z7-", 170, "Zulu Dash", std::nullopt},
                                     {"NN", std::nullopt, std::nullopt, std::nullopt},
                                 },
                                 {
                                     {"X1", "X1", "L1"},
                                     {"X4", "X4", "L4"},
                                     {"X1-4", "X1-4", "L5"},
                                     {"VE", "VE", "L2"},
                                     {"VE3", "VE", "L3"},
                                     {"A", "A", "L1"},
                                     {"A-C", "A-C", "L6"},
                                     {"5A", "A", "L1"},
                                     {"5A4", "X4", "L4"},
                                     {"Y9", "Y9-A", "L1"},
                                     {"Y9-B", "Y9-B", "L2"},
                                     {"Y9-D", "Y9-D", "L2"},
                                     {"z7", "Z7-", "L1"},    // keys compare without regard to case
                                     {"Q1", "QQ", "L1"},     // no such DXCC row
                                     {"Q2", "X1", "NOLOC"},  // no such Location row
                                     {"N1", "NN", "LNULL"},
                                     {"N2", std::nullopt, "L1"},
                                 },
                                 {
                                     {"L1", "EU", 14, 27},
                                     {"L2", "NA", 5, 9},
                                     {"L3", "NA", 4, 4},
                                     {"L4", "AF", 35, 46},
                                     {"L5", "OC", 32, 56},
                                     {"L6", "SA", 12, 14},
                                     {"LNULL", std::nullopt, std::nullopt, std::nullopt},
                                 });
  }

  DXCCModule& Open() {
    module = std::make_unique<DXCCModule>(services, slots);
    module->OpenDXCCDatabase();
    EXPECT_TRUE(module->IsOpen());
    EXPECT_TRUE(reports.empty());
    return *module;
  }

  // The five results as one text: prefix|id|cont|cq|itu.
  std::string Look(const std::string& call) {
    module->Lookup(call);
    return slots.DXCCPrefix + "|" + slots.DXCCID + "|" + slots.Cont + "|" + slots.CQ + "|" +
           slots.ITU;
  }

  test::TempDir dir;
  test::ScriptedDesktop desktop;
  std::map<std::string, std::string> settings;  // "application|section|key" -> value
  std::vector<std::string> notes;
  std::vector<std::string> reports;
  StationServices services;
  LookupSlots slots;
  std::unique_ptr<DXCCModule> module;
};

const std::string kX1 = "X1|101|EU|14|27";
const std::string kVE3 = "VE|1|NA|4|4";
const std::string kEmpty = "||||";

TEST_F(LookupTest, CaseDoesNotMatter) {
  Open();
  EXPECT_EQ(Look("X1ABC"), kX1);
  EXPECT_EQ(Look("x1abc"), kX1);
  EXPECT_EQ(Look("Z7AB"), "Z7-|170|EU|14|27");
  EXPECT_TRUE(notes.empty());
}

TEST_F(LookupTest, LongestMatchWins) {
  Open();
  EXPECT_EQ(Look("VE3ABC"), kVE3);
  EXPECT_EQ(Look("VE2ABC"), "VE|1|NA|5|9");
  EXPECT_EQ(Look("X1"), kX1);
}

TEST_F(LookupTest, ShorterPartIsTheLocation) {
  Open();
  EXPECT_EQ(Look("X1ABC/VE3"), kVE3);
  EXPECT_EQ(Look("VE3/X1ABC"), kVE3);
  // Equal lengths: the part behind the slash.
  EXPECT_EQ(Look("VE3/X1A"), kX1);
  EXPECT_EQ(Look("X1A/VE3"), kVE3);
}

TEST_F(LookupTest, PortableQrpAndMaritimeMobileLookUpTheCall) {
  Open();
  for (const char* call : {"X1ABC/P", "X1ABC/p", "X1ABC/B", "X1ABC/b", "X1ABC/QRP", "X1ABC/qrp",
                           "X1ABC/MM", "X1ABC/mm"})
    EXPECT_EQ(Look(call), kX1) << call;
}

TEST_F(LookupTest, CallAreaDigitReplacesTheFirstDigitAfterTheFirstCharacter) {
  Open();
  EXPECT_EQ(Look("X1ABC/4"), "X4|104|AF|35|46");
  // The leading digit of "5A1AB" stays; the 1 becomes 4.
  EXPECT_EQ(Look("5A1AB/4"), "X4|104|AF|35|46");
  // No digit from the second character on: the call as it is.
  EXPECT_EQ(Look("VEA/4"), "VE|1|NA|5|9");
}

TEST_F(LookupTest, ShortCallWithDigitTakesTheSuffixBranch) {
  Open();
  // L has fewer than three characters: X1, then its DXCC prefix "-" 4.
  EXPECT_EQ(Look("X1/4"), "X1-4|140|OC|32|56");
}

TEST_F(LookupTest, SuffixLetterSelectsTheEntity) {
  Open();
  // No dash in the DXCC prefix: one is added.
  EXPECT_EQ(Look("A1AB/C"), "A-C|150|SA|12|14");
  // A dash with a letter behind it: the letter is replaced, in upper case.
  EXPECT_EQ(Look("Y9ABC/D"), "Y9-D|192|NA|5|9");
  EXPECT_EQ(Look("y9abc/d"), "Y9-D|192|NA|5|9");
  // "/B" is no suffix letter: a beacon, like "/P".
  EXPECT_EQ(Look("Y9ABC/B"), "Y9-A|190|EU|14|27");
  // A dash at the end: P stays.
  EXPECT_EQ(Look("Z7AB/Q"), "Z7-|170|EU|14|27");
  // An unknown letter falls back by longest match.
  EXPECT_EQ(Look("X1AB/C"), kX1);
  // Nothing found for L: the lookup ends with the slots empty.
  EXPECT_EQ(Look("K1AB/C"), kEmpty);
  EXPECT_TRUE(notes.empty());
}

TEST_F(LookupTest, TwoSlashesJoinFirstAndLastPart) {
  Open();
  EXPECT_EQ(Look("A/B/C"), "A-C|150|SA|12|14");
  EXPECT_EQ(Look("X1/ZZZ/4"), "X1-4|140|OC|32|56");
}

TEST_F(LookupTest, SlashAndDashTogetherLookUpNothing) {
  Open();
  slots.DXCCPrefix = "old";
  slots.DXCCID = "1";
  slots.Cont = "EU";
  slots.CQ = "1";
  slots.ITU = "2";
  EXPECT_EQ(Look("X1ABC-7/P"), kEmpty);
  EXPECT_EQ(Look("X1ABC-7"), kX1);  // longest match ignores the tail
}

TEST_F(LookupTest, EmptyPartsLeaveTheSlotsEmpty) {
  Open();
  EXPECT_EQ(Look("X1ABC/"), kEmpty);
  EXPECT_EQ(Look("/P"), kEmpty);
  EXPECT_EQ(Look(""), kEmpty);
  EXPECT_TRUE(notes.empty());
}

TEST_F(LookupTest, UnknownFirstCharacterLeavesSlotsEmptyAndLogsNothing) {
  Open();
  Look("X1ABC");
  EXPECT_EQ(Look("K1ABC"), kEmpty);
  EXPECT_TRUE(notes.empty());
}

TEST_F(LookupTest, TransceiverSlotsAreLeftAlone) {
  Open();
  slots.Freq = "14074.0";
  slots.Mode = "USB";
  Look("X1ABC");
  EXPECT_EQ(slots.Freq, "14074.0");
  EXPECT_EQ(slots.Mode, "USB");
}

TEST_F(LookupTest, MissingDXCCRowIsLoggedAndTheLookupGoesOn) {
  Open();
  EXPECT_EQ(Look("Q1AB"), "QQ||EU|14|27");
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0], "failed to find QQ in DXCC table");
}

TEST_F(LookupTest, MissingLocationRowIsLogged) {
  Open();
  EXPECT_EQ(Look("Q2AB"), "X1|101|||");
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0], "failed to find NOLOC in Location table");
}

TEST_F(LookupTest, NullsReadAsEmpty) {
  Open();
  EXPECT_EQ(Look("N1AB"), "NN||||");
  EXPECT_TRUE(notes.empty());
  // A Null DXCCPrefix reads as "", which is no DXCC row.
  EXPECT_EQ(Look("N2AB"), "||EU|14|27");
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0], "failed to find  in DXCC table");
}

TEST_F(LookupTest, DXCCNameAndSmallHelpers) {
  Open();
  EXPECT_EQ(module->GetDXCCName("X1"), "Xland");
  EXPECT_EQ(module->GetDXCCName("x1-4"), "Xland Four");
  EXPECT_EQ(module->GetDXCCName("NN"), "");
  EXPECT_EQ(module->GetDXCCName("nowhere"), "");
  EXPECT_EQ(DXCCModule::IncludeCountry("", "\r\n"), "");
  EXPECT_EQ(DXCCModule::IncludeCountry("Canada", "\r\n"), "\r\nCanada");
  EXPECT_EQ(module->GetAtlasinePrefixID(), "");
  settings["Atlasine|General|CurrentDXCCID"] = "291";
  EXPECT_EQ(module->GetAtlasinePrefixID(), "291");
  EXPECT_FALSE(module->SuppressLookup());
  module->SetSuppressLookup(true);
  EXPECT_TRUE(module->SuppressLookup());
  module->SetSuppressLookup(false);
  EXPECT_FALSE(module->SuppressLookup());
}

class RecordingCombo : public DXCCComboList {
 public:
  void Clear() override { items.clear(); }
  void AddItem(const std::string& text, int16_t data) override {
    items.push_back(text + "=" + std::to_string(data));
  }
  std::vector<std::string> items;
};

TEST_F(LookupTest, CombosGetAnEmptyItemThenEveryEntityInKeyOrder) {
  Open();
  RecordingCombo main, capture;
  main.items = {"stale=1"};
  module->InitializeDXCCCombo({&main, &capture});
  const std::vector<std::string> expected = {"=0",       "A=151",    "A-C=150",  "NN=0",
                                             "VE=1",     "X1=101",   "X1-4=140", "X4=104",
                                             "Y9-A=190", "Y9-B=191", "Y9-D=192", "Z7-=170"};
  EXPECT_EQ(main.items, expected);
  EXPECT_EQ(capture.items, expected);
  EXPECT_TRUE(reports.empty());
}

TEST_F(LookupTest, TableRecordsetAndDynasetAreShared) {
  Open();
  db::Recordset table = module->GetDXCCRecordset();
  db::Recordset dynaset = module->GetDXCCDynaset();
  ASSERT_TRUE(table);
  ASSERT_TRUE(dynaset);
  EXPECT_EQ(table, module->GetDXCCRecordset());
  EXPECT_EQ(table.Type(), db::dbOpenTable);
  EXPECT_EQ(dynaset.Type(), db::dbOpenDynaset);
  EXPECT_FALSE(table.Updatable());
  dynaset.FindFirst("CountryCode = 191");
  ASSERT_FALSE(dynaset.NoMatch());
  EXPECT_EQ(dynaset.Fields("DXCCPrefix").Value().ToString(), "Y9-B");
}

TEST_F(LookupTest, PathnameDefaultsToTheDataFolder) {
  DXCCModule m(services, slots);
  EXPECT_EQ(m.GetDXCCDatabasePathname(), dir.Join("Databases/DXCC.vdb"));
}

TEST_F(LookupTest, PathnameFollowsTheMapProgramsSettingWhenTheFileExists) {
  std::filesystem::copy_file(dir.Join("Databases/DXCC.vdb"), dir.Join("elsewhere.vdb"));
  settings["Atlasine|DXCCDatabase|DXCCDatabasePathname"] = dir.Join("elsewhere.vdb");
  DXCCModule m(services, slots);
  EXPECT_EQ(m.GetDXCCDatabasePathname(), dir.Join("elsewhere.vdb"));
  settings["Atlasine|DXCCDatabase|DXCCDatabasePathname"] = dir.Join("gone.vdb");
  EXPECT_EQ(m.GetDXCCDatabasePathname(), dir.Join("Databases/DXCC.vdb"));
}

TEST_F(LookupTest, MissingDatabaseEndsTheProgramAfterTheMessage) {
  std::filesystem::remove(dir.Join("Databases/DXCC.vdb"));
  settings["Atlasine|DXCCDatabase|DXCCDatabasePathname"] = dir.Join("gone.vdb");
  desktop
      .ExpectMsgBox("Terminating: " + dir.Join("Databases/DXCC.vdb") +
                    " is missing! (restore by downloading from https://vellumar.org/download")
      .WithTitle("Vellumar");
  DXCCModule m(services, slots);
  EXPECT_THROW(m.GetDXCCDatabasePathname(), ProgramTermination);
  EXPECT_EQ(desktop.PendingExpectations(), 0u);
}

TEST_F(LookupTest, DistributionLocationIsASetting) {
  std::filesystem::remove(dir.Join("Databases/DXCC.vdb"));
  settings["Vellumar|DXCCDatabase|DistributionLocation"] = "https://example.org/x";
  desktop
      .ExpectMsgBox("Terminating: " + dir.Join("Databases/DXCC.vdb") +
                    " is missing! (restore by downloading from https://example.org/x")
      .WithTitle("Vellumar");
  DXCCModule m(services, slots);
  EXPECT_THROW(m.OpenDXCCDatabase(), ProgramTermination);
  EXPECT_FALSE(m.IsOpen());
}

TEST_F(LookupTest, UnreadableDatabaseGoesToTheErrorReporter) {
  std::filesystem::remove(dir.Join("Databases/DXCC.vdb"));
  ASSERT_TRUE(test::WriteFileText(dir.Join("Databases/DXCC.vdb"), "not a database at all"));
  DXCCModule m(services, slots);
  m.OpenDXCCDatabase();
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0], "3049 DXCCModule.OpenDXCCDatabase");
  // A lookup fails in its first Seek, and so does the combo's walk.
  m.Lookup("X1ABC");
  EXPECT_TRUE(slots.DXCCID.empty());
  ASSERT_EQ(reports.size(), 2u);
  EXPECT_EQ(reports[1], "91 DXCCModule.GetPrefix");
  RecordingCombo combo;
  m.InitializeDXCCCombo({&combo});
  EXPECT_EQ(combo.items, std::vector<std::string>{"=0"});
  ASSERT_EQ(reports.size(), 3u);
  EXPECT_EQ(reports[2], "91 DXCCModule.InitializeDXCCCombo");
}

// ---- The compact form beside the database

std::string CompactPath(const test::TempDir& dir) {
  return DXCCCompactPath(dir.Join("Databases/DXCC.vdb"));
}

// Whether the tables of the database at path come from its compact form, and X1ABC's answer.
bool LoadsFromCompact(const std::string& path) {
  db::Database database = db::DBEngine::Workspaces(0).OpenDatabase(path, true);
  DXCCTables tables;
  bool fromCompact = false;
  LoadDXCCTables(path, database, tables, &fromCompact);
  database.Close();
  return fromCompact;
}

void OverwriteByte(const std::string& path, std::streamoff at) {
  std::fstream f(path, std::ios::in | std::ios::out | std::ios::binary);
  f.seekg(at);
  char c = 0;
  f.get(c);
  f.seekp(at);
  f.put(static_cast<char>(c ^ 0x5a));
}

TEST_F(LookupTest, CompactFormIsWrittenAtTheFirstOpenAndReadAtTheNext) {
  EXPECT_FALSE(std::filesystem::exists(CompactPath(dir)));
  Open();
  EXPECT_EQ(Look("X1ABC"), kX1);
  ASSERT_TRUE(std::filesystem::exists(CompactPath(dir)));
  EXPECT_TRUE(LoadsFromCompact(dir.Join("Databases/DXCC.vdb")));
  Open();  // from the form: the same answers
  EXPECT_EQ(Look("x1abc"), kX1);
  EXPECT_EQ(Look("VE3ABC"), kVE3);
  EXPECT_EQ(Look("Y9ABC/B"), "Y9-A|190|EU|14|27");
  EXPECT_EQ(module->GetDXCCName("x1-4"), "Xland Four");
}

TEST_F(LookupTest, StaleCompactFormIsRebuiltFromTheNewDatabase) {
  Open();
  EXPECT_EQ(Look("X1ABC"), kX1);
  module.reset();
  // Another database in the file's place: X1 is now another entity.
  std::filesystem::remove(dir.Join("Databases/DXCC.vdb"));
  test::CreateTestDXCCDatabase(dir.Join("Databases/DXCC.vdb"),
                               {{"X1", 777, "New Xland", std::nullopt}}, {{"X1", "X1", "L9"}},
                               {{"L9", "AN", 39, 67}});
  EXPECT_FALSE(LoadsFromCompact(dir.Join("Databases/DXCC.vdb")));  // stale: not trusted
  Open();
  EXPECT_EQ(Look("X1ABC"), "X1|777|AN|39|67");
  EXPECT_EQ(Look("VE3ABC"), kEmpty);                              // gone with the old database
  EXPECT_TRUE(LoadsFromCompact(dir.Join("Databases/DXCC.vdb")));  // written anew
}

// A first start copies the installed database and its form: the copy has a new file stamp but
// the same bytes, so the form is used and stamped for the copy.
TEST_F(LookupTest, CompactFormCopiedWithItsDatabaseIsUsedAndStampedAnew) {
  Open();
  module.reset();
  const std::string path = dir.Join("Databases/DXCC.vdb");
  test::TempDir other;
  const std::string copy = other.Join("DXCC.vdb");
  std::filesystem::copy_file(path, copy);
  std::filesystem::copy_file(DXCCCompactPath(path), DXCCCompactPath(copy));
  std::ifstream before(DXCCCompactPath(copy), std::ios::binary);
  std::string headerBefore(64, '\0');
  before.read(headerBefore.data(), 64);
  before.close();
  EXPECT_TRUE(LoadsFromCompact(copy));
  std::ifstream after(DXCCCompactPath(copy), std::ios::binary);
  std::string headerAfter(64, '\0');
  after.read(headerAfter.data(), 64);
  EXPECT_NE(headerBefore, headerAfter);  // the copy's stamp written in
  EXPECT_TRUE(LoadsFromCompact(copy));
  EXPECT_TRUE(LoadsFromCompact(path));  // the original's form is untouched
}

// A database of the same size whose bytes differ from the form's source (an entity edited in a
// copy) never answers from the form.
TEST_F(LookupTest, CompactFormBesideADatabaseOfOtherBytesIsRebuilt) {
  Open();
  module.reset();
  const std::string path = dir.Join("Databases/DXCC.vdb");
  test::TempDir other;
  const std::string copy = other.Join("DXCC.vdb");
  std::filesystem::copy_file(path, copy);
  std::filesystem::copy_file(DXCCCompactPath(path), DXCCCompactPath(copy));
  {
    db::Database edited = db::DBEngine::Workspaces(0).OpenDatabase(copy);
    db::Recordset rs = edited.OpenRecordset("Location", db::dbOpenDynaset);
    rs.FindFirst("Place = 'L1'");
    ASSERT_FALSE(rs.NoMatch());
    rs.Edit();
    rs.Fields("CQZone").SetValue(vb::Variant(static_cast<int16_t>(40)));
    rs.Update();
    rs.Close();
    edited.Close();
  }
  EXPECT_FALSE(LoadsFromCompact(copy));
  EXPECT_TRUE(LoadsFromCompact(copy));  // written anew for the edited copy
}

TEST_F(LookupTest, CorruptOrCutCompactFormIsNotTrusted) {
  Open();
  const std::string form = CompactPath(dir);
  const auto size = static_cast<std::streamoff>(std::filesystem::file_size(form));
  for (std::streamoff at :
       {std::streamoff(0), std::streamoff(12), std::streamoff(100), size / 2, size - 1}) {
    OverwriteByte(form, at);
    EXPECT_FALSE(LoadsFromCompact(dir.Join("Databases/DXCC.vdb"))) << "byte " << at;
    Open();  // from the database, which writes the form again
    EXPECT_EQ(Look("X1ABC"), kX1);
    EXPECT_EQ(Look("VE3ABC"), kVE3);
    EXPECT_TRUE(LoadsFromCompact(dir.Join("Databases/DXCC.vdb")));
  }
  std::filesystem::resize_file(form, static_cast<uintmax_t>(size / 3));
  EXPECT_FALSE(LoadsFromCompact(dir.Join("Databases/DXCC.vdb")));
  std::filesystem::resize_file(form, 0);
  EXPECT_FALSE(LoadsFromCompact(dir.Join("Databases/DXCC.vdb")));
  Open();
  EXPECT_EQ(Look("X1ABC"), kX1);
}

TEST_F(LookupTest, TruncatedDatabaseIsReportedAndNeverAnsweredFromItsOldForm) {
  Open();
  module.reset();
  ASSERT_TRUE(std::filesystem::exists(CompactPath(dir)));
  const std::string path = dir.Join("Databases/DXCC.vdb");
  std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2 + 7);
  DXCCModule m(services, slots);
  m.OpenDXCCDatabase();
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0], "3049 DXCCModule.OpenDXCCDatabase");
  m.Lookup("X1ABC");
  EXPECT_EQ(slots.DXCCPrefix + slots.DXCCID + slots.Cont, "");
  EXPECT_EQ(m.GetDXCCName("X1"), "");
}

TEST_F(LookupTest, DatabaseOfAnotherShapeIsReportedAndNeverAnsweredFromTheOldForm) {
  Open();
  module.reset();
  ASSERT_TRUE(std::filesystem::exists(CompactPath(dir)));
  // A database without the Prefix table: another version of the file.
  const std::string path = dir.Join("Databases/DXCC.vdb");
  std::filesystem::remove(path);
  {
    db::Database other = db::DBEngine::Workspaces(0).CreateDatabase(path, db::dbLangGeneral);
    db::TableDef t = other.CreateTableDef("DXCC");
    t.Fields().Append(t.CreateField("DXCCPrefix", db::dbText, 6));
    other.TableDefs().Append(t);
    other.Close();
  }
  DXCCModule m(services, slots);
  m.OpenDXCCDatabase();
  ASSERT_FALSE(reports.empty());
  EXPECT_NE(reports[0].find("DXCCModule.OpenDXCCDatabase"), std::string::npos) << reports[0];
  m.Lookup("X1ABC");
  EXPECT_EQ(slots.DXCCPrefix + slots.DXCCID + slots.Cont + slots.CQ + slots.ITU, "");
  EXPECT_EQ(m.Tables().PrefixCount(), 0u);
}

TEST_F(LookupTest, MissingDatabaseEndsTheProgramEvenWithItsFormBeside) {
  Open();
  module.reset();
  ASSERT_TRUE(std::filesystem::exists(CompactPath(dir)));
  std::filesystem::remove(dir.Join("Databases/DXCC.vdb"));
  desktop
      .ExpectMsgBox("Terminating: " + dir.Join("Databases/DXCC.vdb") +
                    " is missing! (restore by downloading from https://vellumar.org/download")
      .WithTitle("Vellumar");
  DXCCModule m(services, slots);
  EXPECT_THROW(m.OpenDXCCDatabase(), ProgramTermination);
  EXPECT_EQ(desktop.PendingExpectations(), 0u);
}

}  // namespace
}  // namespace vellumar
