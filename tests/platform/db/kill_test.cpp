// A process killed in the middle of a walk loses none of the Updates that had returned.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "platform/db/database.h"
#include "platform/db/db_test_util.h"

namespace vellumar::db {
namespace {

using testing::ChildProcess;
using testing::TempDir;
using testing::Text;

TEST(KillTest, EveryReportedUpdateSurvivesSigkill) {
  TempDir dir;
  std::string path = dir.Path("walk.vdb");
  constexpr int kRows = 10000;
  {
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral);
    TableDef t = db.CreateTableDef("Walk");
    t.Fields().Append(t.CreateField("Id", dbLong));
    t.Fields().Append(t.CreateField("Value", dbText, 40));
    db.TableDefs().Append(t);
    Recordset rs = db.OpenRecordset("Walk", dbOpenDynaset);
    for (int i = 1; i <= kRows; ++i) testing::AddRow(rs, {{"Id", i}, {"Value", "original"}});
    db.Close();
  }

  ChildProcess child({DB_TEST_CHILD, "walk", path});
  std::set<int> reported;
  // Let it get well into the walk, then kill it without warning.
  while (reported.size() < 3000) {
    std::string line = child.ReadLine();
    ASSERT_FALSE(line.empty()) << "the child stopped early";
    ASSERT_NE("done", line);
    reported.insert(std::stoi(line));
  }
  child.Kill();

  Database db = DBEngine::Workspaces(0).OpenDatabase(path);
  Recordset rs = db.OpenRecordset("Walk", dbOpenDynaset);
  int edited = 0, original = 0;
  for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
    int id = rs.Fields("Id").Value().ToLong();
    std::string value = Text(rs, "Value");
    if (reported.count(id)) {
      EXPECT_EQ("edited " + std::to_string(id), value) << "row " << id << " was reported written";
    }
    if (value == "original") {
      ++original;
    } else {
      EXPECT_EQ("edited " + std::to_string(id), value);
      ++edited;
    }
  }
  EXPECT_EQ(kRows, edited + original);
  EXPECT_GE(edited, static_cast<int>(reported.size()));
  EXPECT_LT(edited, kRows);  // it was killed mid-walk
  // The walk goes in order: what was written is a prefix of the rows.
  rs.MoveFirst();
  rs.FindFirst("Value = 'original'");
  ASSERT_FALSE(rs.NoMatch());
  EXPECT_EQ(edited, rs.AbsolutePosition());
}

}  // namespace
}  // namespace vellumar::db
