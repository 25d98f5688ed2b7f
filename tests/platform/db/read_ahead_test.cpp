// Walks read rows ahead in blocks; what a walk reads must still be what a read of the single row
// would give at that moment: changes and deletions made meanwhile through this database, through
// a second Database on the same file, or by another process are seen at the next move, also on
// rows that were read ahead before the change.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "platform/db/database.h"
#include "platform/db/db_test_util.h"
#include "platform/vb/error.h"

namespace vellumar::db {
namespace {

using testing::AddRow;
using testing::ChildProcess;
using testing::ErrorOf;
using testing::TempDir;
using testing::Text;

constexpr int kRows = 600;

// The sort key of row id: a permutation of 0..kRows-1, so that a view sorted on it visits the
// rowids out of their order.
int KeyOf(int id) { return (id * 7919) % kRows; }

class ReadAheadTest : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = dir_.Path("walk.vdb");
    db_ = DBEngine::Workspaces(0).CreateDatabase(path_, dbLangGeneral);
    TableDef t = db_.CreateTableDef("Walk");
    t.Fields().Append(t.CreateField("Id", dbLong));
    t.Fields().Append(t.CreateField("SortKey", dbLong));
    t.Fields().Append(t.CreateField("Value", dbText, 40));
    db_.TableDefs().Append(t);
    Recordset rs = db_.OpenRecordset("Walk", dbOpenDynaset);
    for (int id = 1; id <= kRows; ++id) {
      AddRow(rs, {{"Id", id}, {"SortKey", KeyOf(id)}, {"Value", Original(id)}});
    }
    rs.Close();
  }

  static std::string Original(int id) { return "v" + std::to_string(id); }

  Recordset Table() { return db_.OpenRecordset("Walk", dbOpenDynaset); }
  Recordset SortedView() {
    Recordset base = db_.OpenRecordset("Walk", dbOpenDynaset);
    base.SetSort("SortKey");
    return base.OpenRecordset();
  }

  // Moves forward to the row at 0-based position `to` (rows deleted here not counted), reading
  // every row on the way and checking it against the unchanged table.
  static void WalkTo(Recordset& rs, int to) {
    rs.MoveFirst();
    for (int p = 0; p < to; ++p) {
      int id = static_cast<int>(rs.Fields("Id").Value().ToLong());
      ASSERT_EQ(Original(id), Text(rs, "Value")) << "position " << p;
      rs.MoveNext();
    }
  }

  static int Id(const Recordset& rs) { return static_cast<int>(rs.Fields("Id").Value().ToLong()); }

  // Sets Value of the row with this Id through a recordset of db.
  static void SetValue(Database& db, int id, const std::string& value) {
    Recordset rs = db.OpenRecordset("Walk", dbOpenDynaset);
    rs.FindFirst("Id = " + std::to_string(id));
    ASSERT_FALSE(rs.NoMatch());
    rs.Edit();
    rs.Fields("Value").SetValue(value);
    rs.Update();
    rs.Close();
  }

  static void DeleteRow(Database& db, int id) {
    Recordset rs = db.OpenRecordset("Walk", dbOpenDynaset);
    rs.FindFirst("Id = " + std::to_string(id));
    ASSERT_FALSE(rs.NoMatch());
    rs.Delete();
    rs.Close();
  }

  TempDir dir_;
  std::string path_;
  Database db_;
};

TEST_F(ReadAheadTest, WalksReadEveryRowInBothDirections) {
  Recordset rs = Table();
  std::vector<int> forward;
  for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
    forward.push_back(Id(rs));
    EXPECT_EQ(Original(forward.back()), Text(rs, "Value"));
    EXPECT_EQ(KeyOf(forward.back()), rs.Fields("SortKey").Value().ToLong());
  }
  ASSERT_EQ(static_cast<size_t>(kRows), forward.size());
  for (int i = 0; i < kRows; ++i) EXPECT_EQ(i + 1, forward[static_cast<size_t>(i)]);

  std::vector<int> backward;
  for (rs.MoveLast(); !rs.BOF(); rs.MovePrevious()) {
    backward.push_back(Id(rs));
    EXPECT_EQ(Original(backward.back()), Text(rs, "Value"));
  }
  ASSERT_EQ(static_cast<size_t>(kRows), backward.size());
  for (int i = 0; i < kRows; ++i) EXPECT_EQ(kRows - i, backward[static_cast<size_t>(i)]);
}

TEST_F(ReadAheadTest, SortedViewVisitsRowidsOutOfOrderBothWays) {
  Recordset view = SortedView();
  int key = 0;
  for (view.MoveFirst(); !view.EOF_(); view.MoveNext(), ++key) {
    ASSERT_EQ(key, view.Fields("SortKey").Value().ToLong());
    int id = Id(view);
    EXPECT_EQ(key, KeyOf(id));
    EXPECT_EQ(Original(id), Text(view, "Value"));
  }
  EXPECT_EQ(kRows, key);
  for (view.MoveLast(); !view.BOF(); view.MovePrevious()) {
    --key;
    ASSERT_EQ(key, view.Fields("SortKey").Value().ToLong());
    EXPECT_EQ(Original(Id(view)), Text(view, "Value"));
  }
  EXPECT_EQ(0, key);
}

// A filter keeping every other row, or seven of ten: the rows of a block lie close together and
// are read as a range of rowids, whose rows outside the view must never be shown.
TEST_F(ReadAheadTest, FilteredViewReadAsARangeShowsOnlyItsOwnRows) {
  struct Case {
    const char* filter;
    bool (*keeps)(int id);
  };
  for (const Case& c : {Case{"Value LIKE '*[13579]'", [](int id) { return id % 2 == 1; }},
                        Case{"Value LIKE '*[0-6]'", [](int id) { return id % 10 <= 6; }}}) {
    Recordset base = Table();
    base.SetFilter(c.filter);
    Recordset view = base.OpenRecordset();
    std::vector<int> seen;
    for (view.MoveFirst(); !view.EOF_(); view.MoveNext()) {
      int id = Id(view);
      ASSERT_TRUE(c.keeps(id)) << "a row outside the filter was shown: " << id;
      EXPECT_EQ(Original(id), Text(view, "Value"));
      seen.push_back(id);
    }
    std::vector<int> expected;
    for (int id = 1; id <= kRows; ++id)
      if (c.keeps(id)) expected.push_back(id);
    EXPECT_EQ(expected, seen) << c.filter;
    std::vector<int> back;
    for (view.MoveLast(); !view.BOF(); view.MovePrevious()) back.push_back(Id(view));
    std::reverse(back.begin(), back.end());
    EXPECT_EQ(expected, back) << c.filter;
  }
}

// Rows deleted by another connection in the middle of a range are gone from the walk; rows added
// after the view was opened are not part of it.
TEST_F(ReadAheadTest, RangeReadSkipsRowsDeletedAndAddedElsewhere) {
  Recordset rs = Table();
  WalkTo(rs, 10);
  Database other = DBEngine::Workspaces(0).OpenDatabase(path_);
  for (int id : {300, 301, 450}) DeleteRow(other, id);
  {
    Recordset add = other.OpenRecordset("Walk", dbOpenDynaset);
    AddRow(add, {{"Id", kRows + 1}, {"SortKey", kRows + 1}, {"Value", Original(kRows + 1)}});
  }
  std::vector<int> seen;
  for (; !rs.EOF_(); rs.MoveNext()) {
    try {
      seen.push_back(Id(rs));
    } catch (const vb::VbError& e) {
      EXPECT_EQ(3167, e.number());  // a row deleted since the view was opened
    }
  }
  for (int id : seen) {
    EXPECT_NE(300, id);
    EXPECT_NE(301, id);
    EXPECT_NE(450, id);
    EXPECT_LE(id, kRows);
  }
  EXPECT_EQ(static_cast<size_t>(kRows - 10 - 3), seen.size());
}

TEST_F(ReadAheadTest, SecondDatabaseChangesRowsAlreadyReadAhead) {
  Recordset rs = Table();
  WalkTo(rs, 100);
  ASSERT_EQ(101, Id(rs));
  Database second = DBEngine::Workspaces(0).OpenDatabase(path_);
  // Rows just ahead of the position, far ahead, and one already passed.
  for (int id = 102; id <= 130; ++id) SetValue(second, id, "second " + std::to_string(id));
  SetValue(second, 500, "second 500");
  SetValue(second, 100, "second 100");
  EXPECT_EQ(Original(101), Text(rs, "Value"));  // the current row as it was read
  for (rs.MoveNext(); !rs.EOF_(); rs.MoveNext()) {
    int id = Id(rs);
    bool changed = (id >= 102 && id <= 130) || id == 500;
    EXPECT_EQ(changed ? "second " + std::to_string(id) : Original(id), Text(rs, "Value"));
  }
  rs.SetAbsolutePosition(99);
  EXPECT_EQ("second 100", Text(rs, "Value"));
  // Changed again while the walk stands on a row: the next move sees it.
  rs.SetAbsolutePosition(200);
  EXPECT_EQ(Original(201), Text(rs, "Value"));
  SetValue(second, 202, "again 202");
  SetValue(second, 200, "again 200");
  rs.MoveNext();
  EXPECT_EQ("again 202", Text(rs, "Value"));
  rs.MovePrevious();
  rs.MovePrevious();
  EXPECT_EQ("again 200", Text(rs, "Value"));
  second.Close();
}

// A walk stamps the file by the write-ahead log's index; a writer that checkpoints the log and
// starts it again from its beginning still shows as a change, so the rows are read again.
TEST_F(ReadAheadTest, ChangeAfterTheLogIsCheckpointedAndRestartedIsSeen) {
  Recordset rs = Table();
  WalkTo(rs, 50);
  ASSERT_EQ(51, Id(rs));
  sqlite3* raw = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open(path_.c_str(), &raw));
  auto exec = [raw](const std::string& sql) {
    char* error = nullptr;
    int rc = sqlite3_exec(raw, sql.c_str(), nullptr, nullptr, &error);
    std::string text = error ? error : "";
    sqlite3_free(error);
    return rc == SQLITE_OK ? std::string("ok") : text;
  };
  ASSERT_EQ("ok", exec("UPDATE Walk SET Value = 'first 52' WHERE Id = 52"));
  ASSERT_EQ("ok", exec("PRAGMA wal_checkpoint(TRUNCATE)"));
  ASSERT_EQ("ok", exec("UPDATE Walk SET Value = 'after 53' WHERE Id = 53"));
  rs.MoveNext();
  EXPECT_EQ("first 52", Text(rs, "Value"));
  rs.MoveNext();
  EXPECT_EQ("after 53", Text(rs, "Value"));
  // Both writes again, the log restarted between them, while the walk stands on a row.
  ASSERT_EQ("ok", exec("PRAGMA wal_checkpoint(TRUNCATE)"));
  ASSERT_EQ("ok", exec("UPDATE Walk SET Value = 'late 54' WHERE Id = 54"));
  ASSERT_EQ("ok", exec("PRAGMA wal_checkpoint(TRUNCATE)"));
  ASSERT_EQ("ok", exec("UPDATE Walk SET Value = 'late 55' WHERE Id = 55"));
  rs.MoveNext();
  EXPECT_EQ("late 54", Text(rs, "Value"));
  rs.MoveNext();
  EXPECT_EQ("late 55", Text(rs, "Value"));
  sqlite3_close(raw);
  for (rs.MoveNext(); !rs.EOF_(); rs.MoveNext()) EXPECT_EQ(Original(Id(rs)), Text(rs, "Value"));
}

TEST_F(ReadAheadTest, OtherRecordsetsOfTheSameDatabaseChangeRowsAlreadyReadAhead) {
  Recordset rs = Table();
  WalkTo(rs, 100);
  Recordset other = Table();
  other.SetAbsolutePosition(110);
  other.Edit();
  other.Fields("Value").SetValue("other 111");
  other.Update();
  Recordset view = SortedView();
  view.FindFirst("Id = 120");
  ASSERT_FALSE(view.NoMatch());
  view.Delete();
  for (int id = 101; !rs.EOF_(); rs.MoveNext(), ++id) {
    if (id == 120) {
      EXPECT_EQ(3167, ErrorOf([&] { rs.Fields("Value").Value(); }));
      continue;
    }
    ASSERT_EQ(id, Id(rs));
    EXPECT_EQ(id == 111 ? "other 111" : Original(id), Text(rs, "Value"));
  }
}

TEST_F(ReadAheadTest, SecondDatabaseDeletesRowsAlreadyReadAhead) {
  Recordset rs = Table();
  WalkTo(rs, 64);
  Database second = DBEngine::Workspaces(0).OpenDatabase(path_);
  for (int id : {66, 67, 68, 90}) DeleteRow(second, id);
  std::vector<int> deleted;
  int visited = 0;
  for (; !rs.EOF_(); rs.MoveNext(), ++visited) {
    // The key set keeps the rows deleted elsewhere until Requery; their fields raise 3167.
    int number = ErrorOf([&] { rs.Fields("Value").Value(); });
    if (number) {
      EXPECT_EQ(3167, number);
      EXPECT_EQ(3167, ErrorOf([&] { rs.Fields("Id").Value(); }));
      deleted.push_back(64 + visited + 1);  // the row's Id, by its position
      continue;
    }
    EXPECT_EQ(65 + visited, Id(rs));
    EXPECT_EQ(Original(65 + visited), Text(rs, "Value"));
  }
  EXPECT_EQ((std::vector<int>{66, 67, 68, 90}), deleted);
  // Backwards over them too.
  rs.SetAbsolutePosition(68);
  EXPECT_EQ(69, Id(rs));
  rs.MovePrevious();
  EXPECT_EQ(3167, ErrorOf([&] { rs.Fields("Value").Value(); }));
  rs.MovePrevious();
  rs.MovePrevious();
  rs.MovePrevious();
  EXPECT_EQ(65, Id(rs));
  rs.Requery();
  EXPECT_EQ(kRows - 4, [&] {
    rs.MoveLast();
    return rs.RecordCount();
  }());
  second.Close();
}

TEST_F(ReadAheadTest, SecondProcessChangesAndDeletesRowsAlreadyReadAhead) {
  Recordset rs = Table();
  WalkTo(rs, 64);
  ChildProcess child({DB_TEST_CHILD, "hold", path_});
  ASSERT_EQ("ready", child.ReadLine());
  child.Send("setvalue 70 child 70");
  ASSERT_EQ("ok", child.ReadLine());
  child.Send("deleteid 72");
  ASSERT_EQ("ok", child.ReadLine());
  child.Send("setvalue 64 child 64");  // a row already passed
  ASSERT_EQ("ok", child.ReadLine());
  for (int id = 65; id <= 80; ++id, rs.MoveNext()) {
    if (id == 72) {
      EXPECT_EQ(3167, ErrorOf([&] { rs.Fields("Value").Value(); }));
      continue;
    }
    EXPECT_EQ(id, Id(rs));
    EXPECT_EQ(id == 70 ? "child 70" : Original(id), Text(rs, "Value"));
  }
  rs.SetAbsolutePosition(63);
  EXPECT_EQ("child 64", Text(rs, "Value"));
  // A change made while the walk stands on a row, then the move back onto the row before.
  child.Send("setvalue 63 child 63");
  ASSERT_EQ("ok", child.ReadLine());
  rs.MovePrevious();
  EXPECT_EQ("child 63", Text(rs, "Value"));
  child.Send("quit");
  EXPECT_EQ(0, child.Wait());
}

TEST_F(ReadAheadTest, CloneAndOriginalWalkOppositeWays) {
  Recordset rs = Table();
  Recordset clone = rs.Clone();
  rs.MoveFirst();
  clone.MoveLast();
  for (int step = 0; step < kRows; ++step) {
    ASSERT_EQ(step + 1, Id(rs));
    ASSERT_EQ(kRows - step, Id(clone));
    EXPECT_EQ(Original(step + 1), Text(rs, "Value"));
    EXPECT_EQ(Original(kRows - step), Text(clone, "Value"));
    rs.MoveNext();
    clone.MovePrevious();
  }
  EXPECT_TRUE(rs.EOF_());
  EXPECT_TRUE(clone.BOF());
  // A clone's edit and delete on rows the other has read ahead.
  WalkTo(rs, 100);
  clone.SetAbsolutePosition(105);
  clone.Edit();
  clone.Fields("Value").SetValue("clone 106");
  clone.Update();
  clone.MoveNext();
  clone.Delete();  // Id 107: a hole in the shared key set, skipped by moves
  std::vector<int> ids;
  for (int i = 0; i < 10; ++i, rs.MoveNext()) {
    ids.push_back(Id(rs));
    EXPECT_EQ(ids.back() == 106 ? "clone 106" : Original(ids.back()), Text(rs, "Value"));
  }
  EXPECT_EQ((std::vector<int>{101, 102, 103, 104, 105, 106, 108, 109, 110, 111}), ids);
}

TEST_F(ReadAheadTest, AbsolutePositionJumps) {
  Recordset rs = Table();
  Recordset view = SortedView();
  Database second = DBEngine::Workspaces(0).OpenDatabase(path_);
  std::vector<std::string> expected(kRows + 1);
  for (int id = 1; id <= kRows; ++id) expected[static_cast<size_t>(id)] = Original(id);
  std::mt19937 rng(17);
  for (int jump = 0; jump < 400; ++jump) {
    int position = static_cast<int>(rng() % kRows);
    rs.SetAbsolutePosition(position);
    ASSERT_EQ(position + 1, Id(rs));
    EXPECT_EQ(expected[static_cast<size_t>(position + 1)], Text(rs, "Value"));
    EXPECT_EQ(position, rs.AbsolutePosition());
    // A short walk from there, as a display of a few rows reads them.
    for (int k = 0; k < 3 && position + 1 + k < kRows; ++k) {
      rs.MoveNext();
      EXPECT_EQ(expected[static_cast<size_t>(position + 2 + k)], Text(rs, "Value"));
    }
    view.SetAbsolutePosition(position);
    ASSERT_EQ(position, view.Fields("SortKey").Value().ToLong());
    EXPECT_EQ(expected[static_cast<size_t>(Id(view))], Text(view, "Value"));
    if (jump % 10 == 0) {  // now and then a change elsewhere near where the walks go
      int id = 1 + static_cast<int>(rng() % kRows);
      std::string value = "jump " + std::to_string(jump);
      SetValue(second, id, value);
      expected[static_cast<size_t>(id)] = value;
    }
  }
  second.Close();
}

TEST_F(ReadAheadTest, EditWalkThatReadsEachRow) {
  Recordset rs = Table();
  Database second = DBEngine::Workspaces(0).OpenDatabase(path_);
  for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
    int id = Id(rs);
    std::string value = Text(rs, "Value");
    ASSERT_EQ(id == 301 ? "second 301" : Original(id), value);
    rs.Edit();
    EXPECT_EQ(value, Text(rs, "Value"));  // the buffer starts as the row
    rs.Fields("Value").SetValue(value + "!");
    rs.Update();
    EXPECT_EQ(value + "!", Text(rs, "Value"));
    if (id == 300) SetValue(second, 301, "second 301");
  }
  int rows = 0;
  for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext(), ++rows) {
    int id = Id(rs);
    EXPECT_EQ((id == 301 ? "second 301" : Original(id)) + "!", Text(rs, "Value"));
  }
  EXPECT_EQ(kRows, rows);
  second.Close();
}

TEST_F(ReadAheadTest, RowsAddedHereAreReadAtTheEndOfTheWalk) {
  Recordset rs = Table();
  WalkTo(rs, kRows - 3);
  Recordset clone = rs.Clone();
  AddRow(clone, {{"Id", 1001}, {"Value", "added"}});
  std::vector<int> ids;
  for (; !rs.EOF_(); rs.MoveNext()) ids.push_back(Id(rs));
  EXPECT_EQ((std::vector<int>{kRows - 2, kRows - 1, kRows, 1001}), ids);
  rs.MoveLast();
  EXPECT_EQ("added", Text(rs, "Value"));
}

}  // namespace
}  // namespace vellumar::db
