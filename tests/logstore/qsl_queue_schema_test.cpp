#include <gtest/gtest.h>

#include <string>

#include "logstore/log_schema.h"
#include "logstore/schema_tables.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"
#include "support/frame_harness.h"

namespace vellumar::logstore {
namespace {

class QSLQueueSchemaTest : public ::testing::Test {
 protected:
  QSLQueueSchemaTest() : schema(h.desktop, [this] { ++disabled; }) {}

  // A queue file of an older format: the first `count` fields of today's table, with `rows` rows.
  std::string MakeOldQueue(int count, int rows) {
    const std::string path = h.dir.Join("QSL" + std::to_string(count) + ".vdb");
    db::Database q = db::DBEngine::Workspaces(0).CreateDatabase(path);
    db::TableDef t = q.CreateTableDef("PrintQueue");
    for (int i = 0; i < count; ++i) {
      const FieldSpec& s = kPrintQueueFields[i];
      db::Field f = t.CreateField(s.name, s.type, s.size);
      f.SetAttributes(db::dbUpdatableField);
      if (s.type == kText || s.type == kMemo) f.SetAllowZeroLength(i != 17);
      t.Fields().Append(f);
    }
    q.TableDefs().Append(t);
    db::Recordset rs = q.OpenRecordset("PrintQueue", db::dbOpenDynaset);
    for (int r = 0; r < rows; ++r) {
      rs.AddNew();
      rs.Fields("CALL").SetValue(vb::Variant("K" + std::to_string(r) + "AB"));
      rs.Fields("QSO_BEGIN").SetValue(vb::Variant::FromDate(36526.5 + r));
      rs.Update();
    }
    q.Close();
    return path;
  }

  test::FrameHarness h;
  int disabled = 0;
  QSLQueueSchema schema;
};

TEST_F(QSLQueueSchemaTest, CreateQSLQueueMakesPrintQueueWith31Fields) {
  const std::string path = h.dir.Join("QSL.vdb");
  ASSERT_TRUE(CreateQSLQueue(path));
  db::Database q = db::DBEngine::Workspaces(0).OpenDatabase(path);
  db::TableDef t = q.TableDefs()["PrintQueue"];
  ASSERT_EQ(t.Fields().Count(), 31);
  for (int i = 0; i < 31; ++i) {
    const FieldSpec& s = kPrintQueueFields[i];
    SCOPED_TRACE(s.name);
    EXPECT_EQ(t.Fields()[i].Name(), s.name);
    EXPECT_EQ(t.Fields()[i].Type(), s.type);
    if (s.type == kText) EXPECT_EQ(t.Fields()[i].Size(), s.size);
    if (s.type == kText || s.type == kMemo)
      EXPECT_EQ(t.Fields()[i].AllowZeroLength(), i != 17) << "only ENABLED refuses \"\"";
  }
  EXPECT_EQ(t.Indexes().Count(), 0);
  // The file exists now: creating it again fails.
  EXPECT_THROW(CreateQSLQueue(path), vb::VbError);
}

TEST_F(QSLQueueSchemaTest, SeventeenFieldsAreUpgradedAndEveryOldRowEnabled) {
  const std::string path = MakeOldQueue(17, 17);
  db::Database q = db::DBEngine::Workspaces(0).OpenDatabase(path);
  db::Recordset master = q.OpenRecordset("PrintQueue", db::dbOpenDynaset);
  ASSERT_TRUE(schema.UpdateQSLDatabaseSchema(q, master));
  EXPECT_EQ(master.Fields().Count(), 31);
  EXPECT_EQ(q.TableDefs()["PrintQueue"].Fields()[17].Name(), "ENABLED");
  EXPECT_EQ(q.TableDefs()["PrintQueue"].Fields()[30].Name(), "UNIQUE");
  int rows = 0;
  for (master.MoveFirst(); !master.EOF_(); master.MoveNext()) {
    ++rows;
    EXPECT_EQ(master.Fields("ENABLED").Value().ToString(), "Y");
    EXPECT_TRUE(master.Fields("UNIQUE").Value().IsNull());  // no other new field is filled
    EXPECT_TRUE(master.Fields("MYQTHID").Value().IsNull());
  }
  EXPECT_EQ(rows, 17);
  EXPECT_EQ(disabled, 0);
}

TEST_F(QSLQueueSchemaTest, EighteenAndTwentyNineFieldsAreUpgraded) {
  for (int count : {18, 29}) {
    SCOPED_TRACE(count);
    const std::string path = MakeOldQueue(count, 3);
    db::Database q = db::DBEngine::Workspaces(0).OpenDatabase(path);
    db::Recordset master = q.OpenRecordset("PrintQueue", db::dbOpenDynaset);
    ASSERT_TRUE(schema.UpdateQSLDatabaseSchema(q, master));
    db::TableDef t = q.TableDefs()["PrintQueue"];
    ASSERT_EQ(t.Fields().Count(), 31);
    for (int i = 0; i < 31; ++i) EXPECT_EQ(t.Fields()[i].Name(), kPrintQueueFields[i].name);
    // ENABLED was there before: only a 17-field queue's rows are enabled by the upgrade.
    int rows = 0;
    for (master.MoveFirst(); !master.EOF_(); master.MoveNext()) {
      ++rows;
      EXPECT_TRUE(master.Fields("ENABLED").Value().IsNull());
    }
    EXPECT_EQ(rows, 3);
  }
}

TEST_F(QSLQueueSchemaTest, AnUnknownFieldCountIsRefusedWithItsCount) {
  for (int count : {30, 25}) {
    SCOPED_TRACE(count);
    const std::string path = MakeOldQueue(count, 1);
    db::Database q = db::DBEngine::Workspaces(0).OpenDatabase(path);
    db::Recordset master = q.OpenRecordset("PrintQueue", db::dbOpenDynaset);
    h.desktop.ExpectMsgBox("unknown QSL Queue field count: " + std::to_string(count))
        .WithTitle("Vellumar");
    EXPECT_FALSE(schema.UpdateQSLDatabaseSchema(q, master));
    db::Database again = db::DBEngine::Workspaces(0).OpenDatabase(path);
    EXPECT_EQ(again.TableDefs()["PrintQueue"].Fields().Count(), count);
  }
  EXPECT_EQ(disabled, 2);
}

}  // namespace
}  // namespace vellumar::logstore
