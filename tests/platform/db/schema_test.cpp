// Creating tables and reading their definitions back.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include "platform/db/database.h"
#include "platform/db/db_test_util.h"
#include "platform/vb/error.h"

namespace vellumar::db {
namespace {

using testing::CreateProgressTable;
using testing::CreateQsoTable;
using testing::ErrorOf;
using testing::QsoFields;
using testing::TempDir;

TEST(Schema, CreateDatabaseRefusesAnExistingFile) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
  db.Close();
  EXPECT_EQ(3204, ErrorOf([&] { DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral); }));
}

TEST(Schema, QsoTableReadsBackWithTypesSizesAttributesAndOrder) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
    CreateQsoTable(db);
    db.Close();
  }
  Database db = DBEngine::Workspaces(0).OpenDatabase(path);
  ASSERT_EQ(1, db.TableDefs().Count());
  TableDef t = db.TableDefs()["qsos"];  // case-blind
  EXPECT_EQ("QSOs", t.Name());
  ASSERT_EQ(35, t.Fields().Count());
  for (int i = 0; i < 35; ++i) {
    const auto& shape = QsoFields()[static_cast<size_t>(i)];
    Field f = t.Fields()[i];
    EXPECT_EQ(shape.name, f.Name()) << i;
    EXPECT_EQ(shape.type, f.Type()) << shape.name;
    if (shape.type == dbText) {
      EXPECT_EQ(shape.size, f.Size()) << shape.name;
    }
    EXPECT_EQ(dbUpdatableField, f.Attributes()) << shape.name;
    EXPECT_EQ(shape.type == dbText || shape.type == dbMemo, f.AllowZeroLength()) << shape.name;
    EXPECT_EQ(i, f.OrdinalPosition());
  }
  EXPECT_EQ(13, t.Fields()["CALL"].Size());
  EXPECT_EQ(dbMemo, t.Fields()["Address"].Type());
  ASSERT_EQ(2, t.Indexes().Count());
  EXPECT_EQ("Timestamp", t.Indexes()[0].Name());
  EXPECT_EQ("Callsign", t.Indexes()[1].Name());
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(t.Indexes()[i].Primary());
    EXPECT_FALSE(t.Indexes()[i].Unique());
  }
  EXPECT_EQ("QSO_Begin", t.Indexes()["timestamp"].Fields()[0].Name());
  EXPECT_EQ("Call", t.Indexes()["Callsign"].Fields()[0].Name());
  // A recordset has the same fields in the same order.
  Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
  ASSERT_EQ(35, rs.Fields().Count());
  EXPECT_EQ("ADDRESS", rs.Fields(34).Name());
  EXPECT_EQ(dbDate, rs.Fields("qso_begin").Type());
  EXPECT_EQ(6, rs.Fields().Item("band").Size());
}

TEST(Schema, DeclaredTypesAreReadableByOtherTools) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
    TableDef t = db.CreateTableDef("Types");
    const std::pair<const char*, int> types[] = {
        {"B", dbBoolean}, {"Y", dbByte}, {"I", dbInteger}, {"L", dbLong}, {"S", dbSingle},
        {"D", dbDouble},  {"T", dbDate}, {"X", dbText},    {"M", dbMemo}};
    for (auto [name, type] : types) t.Fields().Append(t.CreateField(name, type, 13));
    db.TableDefs().Append(t);
    db.Close();
  }
  sqlite3* raw = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READONLY, nullptr));
  sqlite3_stmt* st = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_prepare_v2(raw, "SELECT name, type FROM pragma_table_info('Types')",
                                          -1, &st, nullptr));
  std::vector<std::string> declared;
  while (sqlite3_step(st) == SQLITE_ROW) {
    declared.push_back(reinterpret_cast<const char*>(sqlite3_column_text(st, 1)));
  }
  sqlite3_finalize(st);
  sqlite3_close(raw);
  EXPECT_EQ((std::vector<std::string>{"BOOLEAN", "TINYINT", "SMALLINT", "INTEGER", "REAL", "DOUBLE",
                                      "DATETIME", "VARCHAR(13)", "TEXT"}),
            declared);
  // And read back as the same field types.
  Database db = DBEngine::Workspaces(0).OpenDatabase(path);
  TableDef t = db.TableDefs()["Types"];
  EXPECT_EQ(dbBoolean, t.Fields()["B"].Type());
  EXPECT_EQ(dbByte, t.Fields()["Y"].Type());
  EXPECT_EQ(dbInteger, t.Fields()["I"].Type());
  EXPECT_EQ(dbLong, t.Fields()["L"].Type());
  EXPECT_EQ(dbSingle, t.Fields()["S"].Type());
  EXPECT_EQ(dbDouble, t.Fields()["D"].Type());
  EXPECT_EQ(dbDate, t.Fields()["T"].Type());
  EXPECT_EQ(dbText, t.Fields()["X"].Type());
  EXPECT_EQ(13, t.Fields()["X"].Size());
  EXPECT_EQ(dbMemo, t.Fields()["M"].Type());
  EXPECT_FALSE(t.Fields()["X"].AllowZeroLength());  // the default
}

TEST(Schema, ProgressTableHasAUniqueIndexAndEighteenColumns) {
  TempDir dir;
  Database db = DBEngine::Workspaces(0).CreateDatabase(dir.Path("log.vdb"), dbLangGeneral);
  CreateProgressTable(db);
  TableDef t = db.TableDefs()["Progress"];
  EXPECT_EQ(18, t.Fields().Count());
  EXPECT_EQ("160M", t.Fields()[3].Name());
  EXPECT_EQ(dbBoolean, t.Fields()["Valid"].Type());
  ASSERT_EQ(1, t.Indexes().Count());
  EXPECT_TRUE(t.Indexes()["CountryCode"].Unique());
  EXPECT_FALSE(t.Indexes()["CountryCode"].Primary());
}

TEST(Schema, PrimaryIndexIsUniqueAndRefusesNull) {
  TempDir dir;
  Database db = DBEngine::Workspaces(0).CreateDatabase(dir.Path("dxcc.vdb"), dbLangGeneral);
  TableDef t = db.CreateTableDef("Prefix");
  t.Fields().Append(t.CreateField("Prefix", dbText, 10));
  t.Fields().Append(t.CreateField("Location", dbLong));
  Index pk = t.CreateIndex("PrimaryKey");
  pk.SetPrimary(true);
  pk.Fields().Append(pk.CreateField("Prefix"));
  t.Indexes().Append(pk);
  db.TableDefs().Append(t);
  Index read = db.TableDefs()["Prefix"].Indexes()["PrimaryKey"];
  EXPECT_TRUE(read.Primary());
  EXPECT_TRUE(read.Unique());
  Recordset rs = db.OpenRecordset("Prefix", dbOpenTable);
  testing::AddRow(rs, {{"Prefix", "K"}, {"Location", 1}});
  EXPECT_EQ(3022, ErrorOf([&] { testing::AddRow(rs, {{"Prefix", "k"}, {"Location", 2}}); }));
  rs.CancelUpdate();
  EXPECT_EQ(3058, ErrorOf([&] { testing::AddRow(rs, {{"Location", 3}}); }));
  rs.CancelUpdate();
}

TEST(Schema, IndexNamesArePerTable) {
  TempDir dir;
  Database db = DBEngine::Workspaces(0).CreateDatabase(dir.Path("dxcc.vdb"), dbLangGeneral);
  for (const char* name : {"DXCC", "Prefix", "Location"}) {
    TableDef t = db.CreateTableDef(name);
    t.Fields().Append(t.CreateField("Key", dbText, 10));
    Index pk = t.CreateIndex("PrimaryKey");
    pk.SetPrimary(true);
    pk.Fields().Append(pk.CreateField("Key"));
    t.Indexes().Append(pk);
    db.TableDefs().Append(t);
  }
  EXPECT_EQ(3, db.TableDefs().Count());
  for (const char* name : {"DXCC", "Prefix", "Location"}) {
    EXPECT_EQ("PrimaryKey", db.TableDefs()[name].Indexes()[0].Name());
  }
}

TEST(Schema, CollectionErrors) {
  TempDir dir;
  Database db = DBEngine::Workspaces(0).CreateDatabase(dir.Path("log.vdb"), dbLangGeneral);
  CreateQsoTable(db);
  EXPECT_EQ(3265, ErrorOf([&] { db.TableDefs()["Nope"]; }));
  EXPECT_EQ(3265, ErrorOf([&] { db.TableDefs()["QSOs"].Fields()["Nope"]; }));
  EXPECT_EQ(3265, ErrorOf([&] { db.TableDefs()["QSOs"].Fields()[35]; }));
  EXPECT_EQ(3078, ErrorOf([&] { db.OpenRecordset("Nope", dbOpenDynaset); }));
  EXPECT_EQ(3010, ErrorOf([&] { CreateQsoTable(db); }));
  TableDef t = db.CreateTableDef("Twice");
  t.Fields().Append(t.CreateField("A", dbText, 5));
  EXPECT_EQ(3191, ErrorOf([&] { t.Fields().Append(t.CreateField("a", dbText, 5)); }));
  EXPECT_EQ(3264, ErrorOf([&] { db.TableDefs().Append(db.CreateTableDef("Empty")); }));
  EXPECT_EQ(3259, ErrorOf([&] { t.CreateField("Bad", 99, 0); }));
  EXPECT_EQ(91, ErrorOf([&] {
              Recordset none;
              none.MoveFirst();
            }));
  // The layer's own tables are not the program's.
  EXPECT_EQ(1, db.TableDefs().Count());
  EXPECT_EQ(3265, ErrorOf([&] { db.TableDefs()["vellumar_field"]; }));
}

TEST(Schema, AddingFieldsAndDeletingATable) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
  CreateQsoTable(db);
  CreateProgressTable(db);
  Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
  testing::AddRow(rs, {{"Call", "K1ABC"}});
  rs.Close();
  TableDef t = db.TableDefs()["QSOs"];
  Field f = t.CreateField("EXTRA", dbText, 20);
  f.SetAttributes(dbUpdatableField);
  f.SetAllowZeroLength(true);
  t.Fields().Append(f);
  EXPECT_EQ(36, t.Fields().Count());
  Recordset again = db.OpenRecordset("QSOs", dbOpenDynaset);
  ASSERT_EQ(36, again.Fields().Count());
  EXPECT_EQ("EXTRA", again.Fields(35).Name());
  EXPECT_TRUE(again.Fields(35).Value().IsNull());  // old rows read Null
  EXPECT_TRUE(db.TableDefs()["QSOs"].Fields()["EXTRA"].AllowZeroLength());
  EXPECT_EQ(20, db.TableDefs()["QSOs"].Fields()["EXTRA"].Size());
  db.TableDefs().Delete("Progress");
  EXPECT_EQ(1, db.TableDefs().Count());
  EXPECT_EQ(3265, ErrorOf([&] { db.TableDefs().Delete("Progress"); }));
  CreateProgressTable(db);  // made again, as a log's upgrade does
  EXPECT_EQ(18, db.OpenRecordset("Progress", dbOpenDynaset).Fields().Count());
}

}  // namespace
}  // namespace vellumar::db
