// Files that aren't databases, and files that can't be written.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "platform/db/database.h"
#include "platform/db/db_test_util.h"

namespace vellumar::db {
namespace {

using testing::AddRow;
using testing::CreateQsoTable;
using testing::ErrorOf;
using testing::TempDir;
using testing::Text;

std::string Bytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

void Write(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

void ExpectNotADatabase(const std::string& path) {
  std::string before = Bytes(path);
  std::string description;
  EXPECT_EQ(3049, ErrorOf([&] { DBEngine::Workspaces(0).OpenDatabase(path); }, description));
  EXPECT_NE(std::string::npos, description.find(path)) << description;
  EXPECT_EQ(before, Bytes(path)) << "the file was changed";
  EXPECT_NE(0, access((path + "-wal").c_str(), F_OK));
  EXPECT_NE(0, access((path + "-shm").c_str(), F_OK));
}

TEST(BadFiles, TextFileIsNotADatabase) {
  TempDir dir;
  std::string path = dir.Path("notes.vdb");
  Write(path, "This is a text file, not a log.\n");
  ExpectNotADatabase(path);
}

TEST(BadFiles, EmptyFileIsNotADatabase) {
  TempDir dir;
  std::string path = dir.Path("empty.vdb");
  Write(path, "");
  ExpectNotADatabase(path);
}

TEST(BadFiles, RandomBytesAreNotADatabase) {
  TempDir dir;
  std::string path = dir.Path("noise.vdb");
  std::string noise;
  for (int i = 0; i < 8192; ++i) noise += static_cast<char>((i * 7919 + 13) % 251);
  Write(path, noise);
  ExpectNotADatabase(path);
}

TEST(BadFiles, DamagedDatabaseIsRefusedUntouched) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
    CreateQsoTable(db);
    Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
    for (int i = 0; i < 50; ++i) AddRow(rs, {{"Call", "K" + std::to_string(i)}});
    db.Close();
  }
  // The header kept, the rest overwritten: page size and the pages after it are garbage.
  std::string bytes = Bytes(path);
  ASSERT_GT(bytes.size(), 4096u);
  for (size_t i = 16; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31);
  Write(path, bytes);
  ExpectNotADatabase(path);
  // Only the first pages' contents damaged (the header valid): still refused, still untouched.
  std::string path2 = dir.Path("log2.vdb");
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path2, dbLangGeneral);
    CreateQsoTable(db);
    db.Close();
  }
  std::string b2 = Bytes(path2);
  for (size_t i = 100; i < b2.size(); ++i) b2[i] = static_cast<char>(0xA5 ^ i);
  Write(path2, b2);
  ExpectNotADatabase(path2);
}

TEST(BadFiles, MissingFile) {
  TempDir dir;
  EXPECT_EQ(3024, ErrorOf([&] { DBEngine::Workspaces(0).OpenDatabase(dir.Path("none.vdb")); }));
}

TEST(BadFiles, ReadOnlyFileOpensForReading) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
    CreateQsoTable(db);
    Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
    AddRow(rs, {{"Call", "K1ABC"}});
    db.Close();
  }
  ASSERT_EQ(0, chmod(path.c_str(), 0444));
  std::string before = Bytes(path);
  {
    Database db = DBEngine::Workspaces(0).OpenDatabase(path);
    EXPECT_FALSE(db.Updatable());
    Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
    EXPECT_FALSE(rs.Updatable());
    EXPECT_EQ("K1ABC", Text(rs, "Call"));
    rs.FindFirst("Call LIKE 'k1*'");
    EXPECT_FALSE(rs.NoMatch());
    std::string description;
    EXPECT_EQ(3027, ErrorOf([&] { rs.Edit(); }, description));
    EXPECT_NE(std::string::npos, description.find("read-only")) << description;
    EXPECT_EQ(3027, ErrorOf([&] { rs.AddNew(); }));
    EXPECT_EQ(3027, ErrorOf([&] { rs.Delete(); }));
    TableDef t = db.TableDefs()["QSOs"];
    EXPECT_EQ(3027, ErrorOf([&] { t.Fields().Append(t.CreateField("X", dbText, 1)); }));
    EXPECT_EQ(3027, ErrorOf([&] { db.TableDefs().Delete("QSOs"); }));
    TableDef n = db.CreateTableDef("New");
    n.Fields().Append(n.CreateField("A", dbText, 1));
    EXPECT_EQ(3027, ErrorOf([&] { db.TableDefs().Append(n); }));
    db.Close();
  }
  EXPECT_EQ(before, Bytes(path));
}

TEST(BadFiles, ReadOnlyOnRequest) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
    CreateQsoTable(db);
    Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
    AddRow(rs, {{"Call", "K1ABC"}});
    db.Close();
  }
  Database db = DBEngine::Workspaces(0).OpenDatabase(path, true);
  Recordset rs = db.OpenRecordset("QSOs", dbOpenTable);
  EXPECT_EQ(1, rs.RecordCount());
  EXPECT_EQ(3027, ErrorOf([&] { rs.Edit(); }));
}

}  // namespace
}  // namespace vellumar::db
