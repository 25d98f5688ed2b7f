// Schema changes fail while another process holds the file open; data access goes on.
#include <gtest/gtest.h>

#include "platform/db/database.h"
#include "platform/db/db_test_util.h"

namespace vellumar::db {
namespace {

using testing::AddRow;
using testing::ChildProcess;
using testing::CreateProgressTable;
using testing::CreateQsoTable;
using testing::ErrorOf;
using testing::TempDir;

TEST(AdvisoryLock, SchemaChangesFailWhileAnotherProcessHoldsTheLog) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
  CreateQsoTable(db);
  CreateProgressTable(db);
  Recordset rs = db.OpenRecordset("QSOs", dbOpenDynaset);
  AddRow(rs, {{"Call", "PARENT1"}});

  ChildProcess child({DB_TEST_CHILD, "hold", path});
  ASSERT_EQ("ready", child.ReadLine());

  // Adding a field, adding an index and deleting a table all need the file to ourselves.
  TableDef qsos = db.TableDefs()["QSOs"];
  std::string description;
  EXPECT_EQ(3211, ErrorOf([&] { qsos.Fields().Append(qsos.CreateField("PROVINCE2", dbText, 2)); },
                          description));
  EXPECT_NE(std::string::npos, description.find("QSOs")) << description;
  EXPECT_EQ(35, db.TableDefs()["QSOs"].Fields().Count());  // nothing was added
  EXPECT_EQ(3211, ErrorOf([&] { db.TableDefs().Delete("Progress"); }));
  EXPECT_EQ(2, db.TableDefs().Count());
  Index i = qsos.CreateIndex("ByName");
  i.Fields().Append(i.CreateField("Name"));
  EXPECT_EQ(3211, ErrorOf([&] { qsos.Indexes().Append(i); }));

  // The child can't change the schema either, since we hold it too.
  child.Send("addfield FROMCHILD");
  EXPECT_EQ("error 3211", child.ReadLine());

  // Reads and writes work both ways.
  child.Send("write CHILD1");
  EXPECT_EQ("ok", child.ReadLine());
  child.Send("count");
  EXPECT_EQ("2", child.ReadLine());
  AddRow(rs, {{"Call", "PARENT2"}});
  child.Send("count");
  EXPECT_EQ("3", child.ReadLine());
  rs.Requery();
  rs.FindFirst("Call = 'child1'");
  EXPECT_FALSE(rs.NoMatch());

  // Our own lock survived the failed attempts: the child still can't change the schema.
  child.Send("addfield FROMCHILD");
  EXPECT_EQ("error 3211", child.ReadLine());

  // Once the other process is gone, the schema change goes through.
  child.Send("quit");
  EXPECT_EQ(0, child.Wait());
  qsos.Fields().Append(qsos.CreateField("PROVINCE2", dbText, 2));
  EXPECT_EQ(36, db.TableDefs()["QSOs"].Fields().Count());
  db.TableDefs().Delete("Progress");
  EXPECT_EQ(1, db.TableDefs().Count());
}

TEST(AdvisoryLock, ChildAddsFieldsWhenWeHaveClosed) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
    CreateQsoTable(db);
    db.Close();
  }
  ChildProcess child({DB_TEST_CHILD, "hold", path});
  ASSERT_EQ("ready", child.ReadLine());
  child.Send("addfield FROMCHILD");
  EXPECT_EQ("ok", child.ReadLine());
  child.Send("quit");
  EXPECT_EQ(0, child.Wait());
  Database db = DBEngine::Workspaces(0).OpenDatabase(path);
  EXPECT_EQ("FROMCHILD", db.TableDefs()["QSOs"].Fields()[35].Name());
}

TEST(AdvisoryLock, TwoDatabasesOfOneProcessShareTheLock) {
  TempDir dir;
  std::string path = dir.Path("log.vdb");
  Database a = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
  CreateQsoTable(a);
  Database b = DBEngine::Workspaces(0).OpenDatabase(path);
  TableDef t = a.TableDefs()["QSOs"];
  t.Fields().Append(t.CreateField("X", dbText, 1));
  EXPECT_EQ(36, b.TableDefs()["QSOs"].Fields().Count());
  b.Close();
  // Closing one leaves the other's lock in place.
  ChildProcess child({DB_TEST_CHILD, "hold", path});
  ASSERT_EQ("ready", child.ReadLine());
  child.Send("addfield Y");
  EXPECT_EQ("error 3211", child.ReadLine());
}

}  // namespace
}  // namespace vellumar::db
