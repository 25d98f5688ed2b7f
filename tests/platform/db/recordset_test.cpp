// Navigation, editing and views of recordsets.
#include <gtest/gtest.h>

#include "platform/db/database.h"
#include "platform/db/db_test_util.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"

namespace vellumar::db {
namespace {

using testing::AddRow;
using testing::Column;
using testing::CreateProgressTable;
using testing::CreateQsoTable;
using testing::Date;
using testing::ErrorOf;
using testing::TempDir;
using testing::Text;
using Strings = std::vector<std::string>;

class RecordsetTest : public ::testing::Test {
 protected:
  void SetUp() override {
    db_ = DBEngine::Workspaces(0).CreateDatabase(dir_.Path("log.vdb"), dbLangGeneral);
    CreateQsoTable(db_);
    Recordset rs = db_.OpenRecordset("QSOs", dbOpenDynaset);
    // Calls and start times deliberately out of order; "k1abc" and "K1ABC" differ in case only.
    AddRow(rs, {{"Call", "W1AW"},
                {"Band", "20M"},
                {"QSO_Begin", vb::Variant::FromDate(Date("2002-01-15 12:30:00"))}});
    AddRow(rs, {{"Call", "K1ABC"},
                {"Band", "40M"},
                {"QSO_Begin", vb::Variant::FromDate(Date("2002-01-15 12:00:00"))}});
    AddRow(rs, {{"Call", "dl1xyz"},
                {"Band", "20M"},
                {"QSO_Begin", vb::Variant::FromDate(Date("2001-06-01 08:00:00"))}});
    AddRow(rs, {{"Call", "k1abc"},
                {"Band", "15M"},
                {"QSO_Begin", vb::Variant::FromDate(Date("2002-01-15 12:00:00"))}});
    AddRow(rs, {{"Call", "VE3XX"},
                {"Band", "20M"},
                {"QSO_Begin", vb::Variant::FromDate(Date("2003-03-03 03:03:03"))}});
    rs.Close();
  }
  Recordset View(const std::string& sort, const std::string& filter = "") {
    Recordset base = db_.OpenRecordset("QSOs", dbOpenDynaset);
    base.SetSort(sort);
    base.SetFilter(filter);
    return base.OpenRecordset();
  }

  TempDir dir_;
  Database db_;
};

// The last row deleted and a row added: the new row has a bookmark of its own, never the
// deleted row's, in the recordset that deleted it and in another that held it.
TEST_F(RecordsetTest, ARowAddedAfterTheLastWasDeletedNeverTakesItsBookmark) {
  Recordset other = db_.OpenRecordset("QSOs", dbOpenDynaset);
  Recordset rs = db_.OpenRecordset("QSOs", dbOpenDynaset);
  rs.MoveLast();
  const BookmarkValue deleted = rs.Bookmark();
  rs.Delete();
  AddRow(rs, {{"Call", "N0NEW"}});
  const BookmarkValue added = rs.LastModified();
  EXPECT_FALSE(added == deleted);
  rs.SetBookmark(added);
  EXPECT_EQ(Text(rs, "Call"), "N0NEW");
  // The other recordset still holds the deleted row, which stays deleted.
  other.MoveLast();
  EXPECT_EQ(ErrorOf([&] { (void)other.Fields("Call").Value(); }), 3167);
  EXPECT_EQ((Strings{"W1AW", "K1ABC", "dl1xyz", "k1abc", "N0NEW"}),
            Column(db_.OpenRecordset("QSOs", dbOpenDynaset), "Call"));
}

TEST_F(RecordsetTest, DynasetWithoutSortIsInInsertionOrder) {
  EXPECT_EQ((Strings{"W1AW", "K1ABC", "dl1xyz", "k1abc", "VE3XX"}),
            Column(db_.OpenRecordset("QSOs", dbOpenDynaset), "Call"));
}

TEST_F(RecordsetTest, SortIsCaseBlindAndStableOnTies) {
  // K1ABC and k1abc are equal to a case-blind sort: the earlier row comes first.
  EXPECT_EQ((Strings{"dl1xyz", "K1ABC", "k1abc", "VE3XX", "W1AW"}), Column(View("Call"), "Call"));
  EXPECT_EQ((Strings{"W1AW", "VE3XX", "K1ABC", "k1abc", "dl1xyz"}),
            Column(View("Call DESC"), "Call"));
  // Equal start times keep their row order, descending or not.
  EXPECT_EQ((Strings{"dl1xyz", "K1ABC", "k1abc", "W1AW", "VE3XX"}),
            Column(View("QSO_Begin"), "Call"));
  EXPECT_EQ((Strings{"VE3XX", "W1AW", "K1ABC", "k1abc", "dl1xyz"}),
            Column(View("qso_begin DESC, [Call]"), "Call"));
  EXPECT_EQ((Strings{"K1ABC", "dl1xyz", "VE3XX", "W1AW", "k1abc"}),
            Column(View("Band DESC, Call"), "Call"));
}

TEST_F(RecordsetTest, SortAndFilterAffectOnlyViewsOpenedAfterwards) {
  Recordset base = db_.OpenRecordset("QSOs", dbOpenDynaset);
  base.SetSort("Call");
  base.SetFilter("Band = '20M'");
  // The base itself is unchanged.
  EXPECT_EQ(5u, Column(base, "Call").size());
  EXPECT_EQ("Call", base.Sort());
  EXPECT_EQ("Band = '20M'", base.Filter());
  Recordset view = base.OpenRecordset();
  EXPECT_EQ((Strings{"dl1xyz", "VE3XX", "W1AW"}), Column(view, "Call"));
  // Changing them again leaves the open view alone.
  base.SetFilter("");
  base.SetSort("QSO_Begin DESC");
  EXPECT_EQ((Strings{"dl1xyz", "VE3XX", "W1AW"}), Column(view, "Call"));
  EXPECT_EQ("VE3XX", Column(base.OpenRecordset(), "Call")[0]);
  // A view opened from a view keeps the rows of its parent and, without a Sort, its order.
  Recordset copy = view.OpenRecordset();
  EXPECT_EQ((Strings{"dl1xyz", "VE3XX", "W1AW"}), Column(copy, "Call"));
  view.SetFilter("Call LIKE 'V*'");
  EXPECT_EQ((Strings{"VE3XX"}), Column(view.OpenRecordset(), "Call"));
}

TEST_F(RecordsetTest, BadSortOrFilterFailsAtOpenRecordset) {
  Recordset base = db_.OpenRecordset("QSOs", dbOpenDynaset);
  base.SetFilter("Call LIKE 'O'Brien'");
  std::string description;
  EXPECT_EQ(3075, ErrorOf([&] { base.OpenRecordset(); }, description));
  EXPECT_NE(std::string::npos, description.find("Call LIKE 'O'Brien'")) << description;
  base.SetFilter("");
  base.SetSort("Cal");
  EXPECT_EQ(3075, ErrorOf([&] { base.OpenRecordset(); }, description));
  EXPECT_NE(std::string::npos, description.find("'Cal'")) << description;
}

TEST_F(RecordsetTest, MovesBofEofAndNoCurrentRecord) {
  Recordset rs = View("Call");
  EXPECT_FALSE(rs.BOF());
  EXPECT_FALSE(rs.EOF_());
  EXPECT_EQ("dl1xyz", Text(rs, "Call"));  // opened on the first row
  rs.MovePrevious();
  EXPECT_TRUE(rs.BOF());
  EXPECT_EQ(3021, ErrorOf([&] { rs.Fields("Call").Value(); }));
  EXPECT_EQ(3021, ErrorOf([&] { rs.MovePrevious(); }));
  rs.MoveNext();
  EXPECT_EQ("dl1xyz", Text(rs, "Call"));
  rs.MoveLast();
  EXPECT_EQ("W1AW", Text(rs, "Call"));
  rs.MoveNext();
  EXPECT_TRUE(rs.EOF_());
  EXPECT_EQ(3021, ErrorOf([&] { rs.MoveNext(); }));
  rs.MovePrevious();
  EXPECT_EQ("W1AW", Text(rs, "Call"));

  Recordset empty = View("", "Call = 'NOBODY'");
  EXPECT_TRUE(empty.BOF());
  EXPECT_TRUE(empty.EOF_());
  EXPECT_EQ(0, empty.RecordCount());
  EXPECT_EQ(3021, ErrorOf([&] { empty.MoveFirst(); }));
  EXPECT_EQ(3021, ErrorOf([&] { empty.MoveLast(); }));
  EXPECT_EQ(3021, ErrorOf([&] { empty.MoveNext(); }));
  EXPECT_EQ(3021, ErrorOf([&] { empty.Edit(); }));
  EXPECT_EQ(-1, empty.AbsolutePosition());
}

TEST_F(RecordsetTest, RecordCountIsRowsVisitedUntilMoveLast) {
  Recordset rs = View("QSO_Begin");
  EXPECT_EQ(1, rs.RecordCount());
  rs.MoveNext();
  rs.MoveNext();
  EXPECT_EQ(3, rs.RecordCount());
  rs.MoveFirst();
  EXPECT_EQ(3, rs.RecordCount());  // the highest visited counts
  rs.MoveLast();
  EXPECT_EQ(5, rs.RecordCount());
  // A table-type recordset knows its count at once.
  EXPECT_EQ(5, db_.OpenRecordset("QSOs", dbOpenTable).RecordCount());
}

TEST_F(RecordsetTest, AbsolutePositionGetAndSet) {
  Recordset rs = View("Call");
  EXPECT_EQ(0, rs.AbsolutePosition());
  rs.SetAbsolutePosition(3);
  EXPECT_EQ("VE3XX", Text(rs, "Call"));
  EXPECT_EQ(3, rs.AbsolutePosition());
  EXPECT_EQ(4, rs.RecordCount());
  EXPECT_EQ(3001, ErrorOf([&] { rs.SetAbsolutePosition(5); }));
  EXPECT_EQ(3001, ErrorOf([&] { rs.SetAbsolutePosition(-1); }));
  rs.MoveLast();
  rs.MoveNext();
  EXPECT_EQ(-1, rs.AbsolutePosition());
}

TEST_F(RecordsetTest, BookmarksCompareAndReturn) {
  Recordset rs = View("Call");
  rs.SetAbsolutePosition(2);
  BookmarkValue mark = rs.Bookmark();
  EXPECT_EQ("k1abc", Text(rs, "Call"));
  rs.MoveFirst();
  EXPECT_FALSE(rs.Bookmark() == mark);
  rs.SetBookmark(mark);
  EXPECT_EQ("k1abc", Text(rs, "Call"));
  EXPECT_TRUE(rs.Bookmark() == mark);
  // A clone takes the same bookmarks.
  Recordset clone = rs.Clone();
  clone.SetBookmark(mark);
  EXPECT_EQ("k1abc", Text(clone, "Call"));
  EXPECT_EQ(3159, ErrorOf([&] { rs.SetBookmark(BookmarkValue{987654}); }));
  rs.MoveLast();
  rs.MoveNext();
  EXPECT_EQ(3021, ErrorOf([&] { rs.Bookmark(); }));
}

TEST_F(RecordsetTest, CloneHasItsOwnPositionOverTheSameRows) {
  Recordset rs = View("Call");
  rs.MoveLast();
  Recordset clone = rs.Clone();
  EXPECT_EQ(-1, clone.AbsolutePosition());  // no current row yet
  clone.MoveFirst();
  EXPECT_EQ("dl1xyz", Text(clone, "Call"));
  EXPECT_EQ("W1AW", Text(rs, "Call"));
  clone.MoveNext();
  EXPECT_EQ("W1AW", Text(rs, "Call"));
  EXPECT_EQ((Strings{"dl1xyz", "K1ABC", "k1abc", "VE3XX", "W1AW"}), Column(clone, "Call"));
  // An edit through the clone is seen by the original.
  clone.MoveLast();
  clone.Edit();
  clone.Fields("Name").SetValue("Hiram");
  clone.Update();
  EXPECT_EQ("Hiram", Text(rs, "Name"));
  // A row added through the original is at the end of the clone's rows too.
  AddRow(rs, {{"Call", "AA1A"}});
  clone.MoveLast();
  EXPECT_EQ("AA1A", Text(clone, "Call"));
}

TEST_F(RecordsetTest, NullIsDistinctFromEmptyText) {
  Recordset rs = db_.OpenRecordset("QSOs", dbOpenDynaset);
  AddRow(rs, {{"Call", "N0NULL"}, {"Name", ""}});
  rs.SetBookmark(rs.LastModified());
  EXPECT_TRUE(rs.Fields("QTH").Value().IsNull());
  vb::Variant name = rs.Fields("Name").Value();
  EXPECT_FALSE(name.IsNull());
  EXPECT_TRUE(name.IsString());
  EXPECT_EQ("", name.ToString());
  Recordset nulls = View("", "Name IS NULL");
  Recordset empties = View("", "Name = ''");
  nulls.MoveLast();
  empties.MoveLast();
  EXPECT_EQ(5, nulls.RecordCount());
  EXPECT_EQ(1, empties.RecordCount());
  // Setting Null back.
  rs.Edit();
  rs.Fields("Name").SetValue(vb::Variant::Null());
  rs.Update();
  EXPECT_TRUE(rs.Fields("Name").Value().IsNull());
}

TEST_F(RecordsetTest, TextTooLongZeroLengthAndDuplicates) {
  Recordset rs = db_.OpenRecordset("QSOs", dbOpenDynaset);
  rs.MoveFirst();
  rs.Edit();
  std::string description;
  EXPECT_EQ(3163, ErrorOf([&] { rs.Fields("Call").SetValue("K1ABCDEFGHIJKL"); }, description));
  EXPECT_NE(std::string::npos, description.find("Call")) << description;
  rs.Fields("Call").SetValue("K1ABCDEFGHIJK");  // 13 characters fit
  rs.Update();
  EXPECT_EQ("K1ABCDEFGHIJK", Text(rs, "Call"));
  // Characters, not bytes: 13 accented letters fit in 13.
  rs.Edit();
  rs.Fields("Call").SetValue("ÄÖÜÄÖÜÄÖÜÄÖÜÄ");
  rs.Update();
  EXPECT_EQ("ÄÖÜÄÖÜÄÖÜÄÖÜÄ", Text(rs, "Call"));

  // A field without AllowZeroLength refuses "" at Update, writing nothing.
  TableDef t = db_.CreateTableDef("Strict");
  t.Fields().Append(t.CreateField("Code", dbText, 5));
  t.Fields().Append(t.CreateField("Note", dbText, 5));
  db_.TableDefs().Append(t);
  Recordset strict = db_.OpenRecordset("Strict", dbOpenDynaset);
  strict.AddNew();
  strict.Fields("Code").SetValue("");
  strict.Fields("Note").SetValue("x");
  EXPECT_EQ(3315, ErrorOf([&] { strict.Update(); }, description));
  EXPECT_NE(std::string::npos, description.find("Code")) << description;
  EXPECT_EQ(dbEditAdd, strict.EditMode());
  strict.CancelUpdate();
  EXPECT_EQ(0, db_.OpenRecordset("Strict", dbOpenTable).RecordCount());

  // Progress's CountryCode index is unique: a second "291" is refused, whatever the case.
  CreateProgressTable(db_);
  Recordset progress = db_.OpenRecordset("Progress", dbOpenDynaset);
  AddRow(progress, {{"CountryCode", "291"}, {"Prefix", "K"}, {"Valid", true}});
  EXPECT_EQ(3022, ErrorOf([&] { AddRow(progress, {{"CountryCode", "291"}, {"Prefix", "W"}}); }));
  progress.CancelUpdate();
  AddRow(progress, {{"CountryCode", "ab1"}, {"Prefix", "X"}});
  EXPECT_EQ(3022, ErrorOf([&] { AddRow(progress, {{"CountryCode", "AB1"}, {"Prefix", "Y"}}); }));
  progress.CancelUpdate();
  EXPECT_EQ(2, db_.OpenRecordset("Progress", dbOpenTable).RecordCount());
}

TEST_F(RecordsetTest, EditModeTransitions) {
  Recordset rs = View("Call");
  EXPECT_EQ(dbEditNone, rs.EditMode());
  EXPECT_EQ(3020, ErrorOf([&] { rs.Update(); }));
  EXPECT_EQ(3020, ErrorOf([&] { rs.CancelUpdate(); }));
  EXPECT_EQ(3020, ErrorOf([&] { rs.Fields("Name").SetValue("x"); }));
  rs.Edit();
  EXPECT_EQ(dbEditInProgress, rs.EditMode());
  rs.Fields("Name").SetValue("Otto");
  EXPECT_EQ("Otto", Text(rs, "Name"));  // the buffer is read while editing
  rs.CancelUpdate();
  EXPECT_EQ(dbEditNone, rs.EditMode());
  EXPECT_EQ("<Null>", Text(rs, "Name"));
  // A move drops an open edit without writing it.
  rs.Edit();
  rs.Fields("Name").SetValue("Lost");
  rs.MoveNext();
  EXPECT_EQ(dbEditNone, rs.EditMode());
  rs.MovePrevious();
  EXPECT_EQ("<Null>", Text(rs, "Name"));
  rs.AddNew();
  EXPECT_EQ(dbEditAdd, rs.EditMode());
  EXPECT_TRUE(rs.Fields("Call").Value().IsNull());
  rs.Edit();  // Edit drops the new row
  EXPECT_EQ(dbEditInProgress, rs.EditMode());
  rs.Fields("Name").SetValue("Kept");
  rs.Update();
  EXPECT_EQ(dbEditNone, rs.EditMode());
  EXPECT_EQ("Kept", Text(rs, "Name"));
  EXPECT_EQ(5, db_.OpenRecordset("QSOs", dbOpenTable).RecordCount());
}

TEST_F(RecordsetTest, AddNewAppearsAtTheEndOfItsOwnViewOnly) {
  Recordset rs = View("Call");
  Recordset other = View("Call");
  rs.SetAbsolutePosition(1);
  AddRow(rs, {{"Call", "AA0AA"}});
  // The position is where it was before AddNew; LastModified is the new row.
  EXPECT_EQ("K1ABC", Text(rs, "Call"));
  rs.SetBookmark(rs.LastModified());
  EXPECT_EQ("AA0AA", Text(rs, "Call"));
  EXPECT_EQ(5, rs.AbsolutePosition());  // at the end, not sorted in
  EXPECT_EQ((Strings{"dl1xyz", "K1ABC", "k1abc", "VE3XX", "W1AW", "AA0AA"}), Column(rs, "Call"));
  EXPECT_EQ(5u, Column(other, "Call").size());  // another view doesn't see it...
  other.Requery();                              // ...until Requery, which sorts it in
  EXPECT_EQ((Strings{"AA0AA", "dl1xyz", "K1ABC", "k1abc", "VE3XX", "W1AW"}), Column(other, "Call"));
  rs.Requery();
  EXPECT_EQ("AA0AA", Text(rs, "Call"));
}

TEST_F(RecordsetTest, RecordCountCountsAddedRows) {
  Recordset rs = View("Call");
  EXPECT_EQ(1, rs.RecordCount());
  AddRow(rs, {{"Call", "AA0AA"}});
  EXPECT_EQ(2, rs.RecordCount());
  rs.MoveLast();
  EXPECT_EQ(6, rs.RecordCount());
}

TEST_F(RecordsetTest, LastModifiedIsTheRowLastWritten) {
  Recordset rs = View("Call");
  rs.SetAbsolutePosition(3);
  rs.Edit();
  rs.Fields("Name").SetValue("Ed");
  rs.Update();
  BookmarkValue edited = rs.LastModified();
  EXPECT_TRUE(edited == rs.Bookmark());
  rs.MoveFirst();
  rs.SetBookmark(rs.LastModified());
  EXPECT_EQ("VE3XX", Text(rs, "Call"));
  AddRow(rs, {{"Call", "N1NEW"}});
  EXPECT_FALSE(rs.LastModified() == edited);
  rs.SetBookmark(rs.LastModified());
  EXPECT_EQ("N1NEW", Text(rs, "Call"));
}

TEST_F(RecordsetTest, DeleteLeavesThePositionOnADeletedRow) {
  Recordset rs = View("Call");
  rs.MoveLast();
  EXPECT_EQ(5, rs.RecordCount());
  rs.SetAbsolutePosition(2);  // k1abc
  Recordset clone = rs.Clone();
  clone.SetAbsolutePosition(2);
  rs.Delete();
  std::string description;
  EXPECT_EQ(3167, ErrorOf([&] { rs.Fields("Call").Value(); }, description));
  EXPECT_EQ("Record is deleted.", description);
  EXPECT_EQ(3167, ErrorOf([&] { clone.Fields("Call").Value(); }));
  EXPECT_EQ(3167, ErrorOf([&] { rs.Edit(); }));
  EXPECT_EQ(3167, ErrorOf([&] { rs.Delete(); }));
  EXPECT_EQ(-1, rs.AbsolutePosition());
  EXPECT_FALSE(rs.BOF());
  EXPECT_FALSE(rs.EOF_());
  EXPECT_EQ(4, rs.RecordCount());
  rs.MoveNext();
  EXPECT_EQ("VE3XX", Text(rs, "Call"));
  EXPECT_EQ(2, rs.AbsolutePosition());
  clone.MovePrevious();
  EXPECT_EQ("K1ABC", Text(clone, "Call"));
  EXPECT_EQ((Strings{"dl1xyz", "K1ABC", "VE3XX", "W1AW"}), Column(rs, "Call"));
  // Another view that still holds the row reads it as deleted.
  Recordset base = db_.OpenRecordset("QSOs", dbOpenDynaset);
  base.SetAbsolutePosition(0);
  Recordset view = View("");
  view.SetAbsolutePosition(0);
  base.Delete();
  EXPECT_EQ(3167, ErrorOf([&] { view.Fields("Call").Value(); }));
}

TEST_F(RecordsetTest, DeletingAWholeDisplay) {
  // MoveFirst; while RecordCount is at least 1: Delete, MoveNext.
  Recordset rs = View("Call", "Band = '20M'");
  rs.MoveLast();
  rs.MoveFirst();
  int deleted = 0;
  while (rs.RecordCount() >= 1) {
    rs.Delete();
    ++deleted;
    rs.MoveNext();
  }
  EXPECT_EQ(3, deleted);
  EXPECT_TRUE(rs.EOF_());
  EXPECT_EQ((Strings{"K1ABC", "k1abc"}), Column(db_.OpenRecordset("QSOs", dbOpenDynaset), "Call"));
}

TEST_F(RecordsetTest, FindFirstNextLastPrevious) {
  Recordset rs = View("QSO_Begin");
  rs.MoveLast();
  rs.FindFirst("Call = 'K1ABC'");  // case-blind: K1ABC and k1abc
  ASSERT_FALSE(rs.NoMatch());
  EXPECT_EQ("K1ABC", Text(rs, "Call"));
  EXPECT_EQ(1, rs.AbsolutePosition());
  rs.FindNext("Call = 'K1ABC'");
  ASSERT_FALSE(rs.NoMatch());
  EXPECT_EQ("k1abc", Text(rs, "Call"));
  rs.FindNext("Call = 'K1ABC'");
  EXPECT_TRUE(rs.NoMatch());
  EXPECT_EQ("k1abc", Text(rs, "Call"));  // stays on the last row found
  rs.FindPrevious("Call = 'K1ABC'");
  EXPECT_EQ("K1ABC", Text(rs, "Call"));
  rs.FindLast("Band = '20M'");
  EXPECT_EQ("VE3XX", Text(rs, "Call"));
  rs.FindPrevious("Band = '20M'");
  EXPECT_EQ("W1AW", Text(rs, "Call"));
  rs.FindFirst("Call = 'NOBODY'");
  EXPECT_TRUE(rs.NoMatch());
  EXPECT_EQ("W1AW", Text(rs, "Call"));
  // Only the rows of the view are searched.
  Recordset twenty = View("Call", "Band = '20M'");
  twenty.FindFirst("Call = 'K1ABC'");
  EXPECT_TRUE(twenty.NoMatch());
  // A bad criteria string is 3075 and leaves the position.
  EXPECT_EQ(3075, ErrorOf([&] { rs.FindFirst("Call = 'O'Brien'"); }));
  EXPECT_EQ("W1AW", Text(rs, "Call"));
  // The duplicate check of the import: call, frequency, mode and start.
  rs.FindFirst("Call = 'k1abc' and QSO_Begin = #2002-01-15 12:00:00#");
  EXPECT_FALSE(rs.NoMatch());
  EXPECT_EQ("K1ABC", Text(rs, "Call"));
}

TEST_F(RecordsetTest, FindFirstOnARowAddedHere) {
  Recordset rs = View("QSO_Begin");
  AddRow(rs, {{"Call", "ZZ9ZZ"}});
  rs.FindFirst("Call = 'ZZ9ZZ'");
  ASSERT_FALSE(rs.NoMatch());
  EXPECT_EQ(5, rs.AbsolutePosition());
}

TEST_F(RecordsetTest, SeekOnATableTypeRecordset) {
  TableDef t = db_.CreateTableDef("DXCC");
  t.Fields().Append(t.CreateField("DXCCPrefix", dbText, 6));
  t.Fields().Append(t.CreateField("CountryCode", dbInteger));
  t.Fields().Append(t.CreateField("DXCCName", dbText, 40));
  t.Fields().Append(t.CreateField("EndDate", dbDate));
  Index pk = t.CreateIndex("PrimaryKey");
  pk.SetPrimary(true);
  pk.Fields().Append(pk.CreateField("DXCCPrefix"));
  t.Indexes().Append(pk);
  db_.TableDefs().Append(t);
  Recordset dxcc = db_.OpenRecordset("DXCC", dbOpenTable);
  AddRow(dxcc, {{"DXCCPrefix", "K"}, {"CountryCode", 291}, {"DXCCName", "United States"}});
  AddRow(dxcc, {{"DXCCPrefix", "VE"}, {"CountryCode", 1}, {"DXCCName", "Canada"}});
  AddRow(dxcc, {{"DXCCPrefix", "DL"}, {"CountryCode", 230}, {"DXCCName", "Germany"}});
  EXPECT_EQ(3019, ErrorOf([&] { dxcc.Seek("=", "K"); }));
  dxcc.SetIndex("PrimaryKey");
  EXPECT_EQ("PrimaryKey", dxcc.Index());
  EXPECT_EQ((Strings{"DL", "K", "VE"}), Column(dxcc, "DXCCPrefix"));  // in index order
  dxcc.Seek("=", "ve");                                               // case-blind
  ASSERT_FALSE(dxcc.NoMatch());
  EXPECT_EQ("Canada", Text(dxcc, "DXCCName"));
  EXPECT_EQ(vb::Variant::Type::Integer, dxcc.Fields("CountryCode").Value().type());
  EXPECT_EQ(1, dxcc.Fields("CountryCode").Value().ToLong());
  dxcc.Seek("=", "XX");
  EXPECT_TRUE(dxcc.NoMatch());
  EXPECT_EQ("Canada", Text(dxcc, "DXCCName"));
  dxcc.Seek(">=", "E");
  EXPECT_EQ("K", Text(dxcc, "DXCCPrefix"));
  dxcc.Seek("<", "K");
  EXPECT_EQ("DL", Text(dxcc, "DXCCPrefix"));
  dxcc.Seek(">", "VE");
  EXPECT_TRUE(dxcc.NoMatch());
  EXPECT_EQ(3800, ErrorOf([&] { dxcc.SetIndex("Nope"); }));
  EXPECT_EQ(3001, ErrorOf([&] { dxcc.Seek("~", "K"); }));
  // Seek belongs to table-type recordsets, Find to dynasets.
  Recordset dyn = db_.OpenRecordset("DXCC", dbOpenDynaset);
  EXPECT_EQ(3251, ErrorOf([&] { dyn.Seek("=", "K"); }));
  EXPECT_EQ(3251, ErrorOf([&] { dxcc.FindFirst("DXCCPrefix = 'K'"); }));
  dyn.FindFirst("CountryCode = 291");
  EXPECT_EQ("K", Text(dyn, "DXCCPrefix"));
  // A row added elsewhere is found by Seek all the same.
  AddRow(dyn, {{"DXCCPrefix", "JA"}, {"CountryCode", 339}, {"DXCCName", "Japan"}});
  dxcc.Seek("=", "JA");
  ASSERT_FALSE(dxcc.NoMatch());
  EXPECT_EQ("Japan", Text(dxcc, "DXCCName"));
}

TEST_F(RecordsetTest, SeekOnATwoFieldIndex) {
  TableDef t = db_.CreateTableDef("Pairs");
  t.Fields().Append(t.CreateField("A", dbText, 5));
  t.Fields().Append(t.CreateField("B", dbLong));
  Index i = t.CreateIndex("AB");
  i.Fields().Append(i.CreateField("A"));
  i.Fields().Append(i.CreateField("B"));
  t.Indexes().Append(i);
  db_.TableDefs().Append(t);
  Recordset rs = db_.OpenRecordset("Pairs", dbOpenTable);
  for (auto [a, b] : {std::pair{"x", 2}, {"x", 1}, {"y", 1}}) AddRow(rs, {{"A", a}, {"B", b}});
  rs.SetIndex("AB");
  rs.Seek("=", "X", 2);
  ASSERT_FALSE(rs.NoMatch());
  EXPECT_EQ(1, rs.AbsolutePosition());  // index order: x1, x2, y1
  rs.Seek("=", "x");
  EXPECT_EQ(1, rs.Fields("B").Value().ToLong());
  rs.Seek(">", "x", 2);
  EXPECT_EQ("y", Text(rs, "A"));
}

TEST_F(RecordsetTest, DatesRoundTripToTheSecond) {
  Recordset rs = db_.OpenRecordset("QSOs", dbOpenDynaset);
  double when = Date("1999-12-31 23:59:59");
  AddRow(rs, {{"Call", "Y2K"},
              {"QSO_Begin", vb::Variant::FromDate(when)},
              {"QSO_End", "2000-01-01 00:00:01"}});
  rs.SetBookmark(rs.LastModified());
  vb::Variant begin = rs.Fields("QSO_Begin").Value();
  EXPECT_EQ(vb::Variant::Type::Date, begin.type());
  EXPECT_EQ("1999-12-31 23:59:59", vb::ToStorageText(begin.ToDate()));
  EXPECT_EQ("2000-01-01 00:00:01", vb::ToStorageText(rs.Fields("QSO_End").Value().ToDate()));
  // Fractions of a second round to the nearest second.
  rs.Edit();
  rs.Fields("QSO_Begin").SetValue(vb::Variant::FromDate(when + 0.4 / 86400));
  rs.Update();
  EXPECT_EQ("1999-12-31 23:59:59", vb::ToStorageText(rs.Fields("QSO_Begin").Value().ToDate()));
  rs.Edit();
  EXPECT_EQ(3421, ErrorOf([&] { rs.Fields("QSO_Begin").SetValue("not a date"); }));
  rs.CancelUpdate();
}

TEST_F(RecordsetTest, OtherFieldTypesRoundTrip) {
  TableDef t = db_.CreateTableDef("Types");
  for (auto [name, type] : {std::pair{"B", dbBoolean},
                            {"Y", dbByte},
                            {"I", dbInteger},
                            {"L", dbLong},
                            {"S", dbSingle},
                            {"D", dbDouble},
                            {"M", dbMemo}}) {
    t.Fields().Append(t.CreateField(name, type));
  }
  db_.TableDefs().Append(t);
  Recordset rs = db_.OpenRecordset("Types", dbOpenDynaset);
  std::string memo(5000, 'm');
  AddRow(rs, {{"B", true},
              {"Y", 200},
              {"I", -1234},
              {"L", 123456789},
              {"S", 1.5},
              {"D", 14.195},
              {"M", memo}});
  rs.MoveFirst();
  EXPECT_EQ(vb::Variant::Type::Boolean, rs.Fields("B").Value().type());
  EXPECT_TRUE(rs.Fields("B").Value().ToBool());
  EXPECT_EQ(200, rs.Fields("Y").Value().ToLong());
  EXPECT_EQ(-1234, rs.Fields("I").Value().ToLong());
  EXPECT_EQ(123456789, rs.Fields("L").Value().ToLong());
  EXPECT_DOUBLE_EQ(1.5, rs.Fields("S").Value().ToDouble());
  EXPECT_DOUBLE_EQ(14.195, rs.Fields("D").Value().ToDouble());
  EXPECT_EQ(memo, Text(rs, "M"));
  rs.Edit();
  EXPECT_EQ(3421, ErrorOf([&] { rs.Fields("Y").SetValue(300); }));
  EXPECT_EQ(3421, ErrorOf([&] { rs.Fields("L").SetValue("abc"); }));
  rs.Fields("B").SetValue(false);
  rs.Fields("I").SetValue("42");
  rs.Update();
  EXPECT_FALSE(rs.Fields("B").Value().ToBool());
  EXPECT_EQ(42, rs.Fields("I").Value().ToLong());
}

TEST_F(RecordsetTest, FieldAccessByIndexAndNameCaseBlind) {
  Recordset rs = View("Call");
  EXPECT_EQ("Call", rs.Fields(1).Name());
  EXPECT_EQ("Call", rs.Fields("CALL").Name());
  EXPECT_EQ(Text(rs, "call"), rs.Fields(1).Value().ToString());
  EXPECT_EQ(Text(rs, "call"), rs.Fields()["cAlL"].Value().ToString());
  EXPECT_EQ(35, rs.Fields().Count());
  EXPECT_EQ(3265, ErrorOf([&] { rs.Fields("Nope"); }));
  EXPECT_EQ(3265, ErrorOf([&] { rs.Fields(35); }));
  EXPECT_EQ(3251, ErrorOf([&] { rs.Fields("Call").SetAllowZeroLength(false); }));
}

TEST_F(RecordsetTest, ClosedRecordsetsAndDatabases) {
  Recordset rs = View("Call");
  Field call = rs.Fields("Call");
  rs.Close();
  EXPECT_EQ(3420, ErrorOf([&] { rs.MoveFirst(); }));
  EXPECT_EQ(3420, ErrorOf([&] { call.Value(); }));
  Recordset other = View("Call");
  db_.Close();
  EXPECT_EQ(3420, ErrorOf([&] { other.MoveNext(); }));
  EXPECT_EQ(3420, ErrorOf([&] { db_.TableDefs(); }));
}

TEST_F(RecordsetTest, EditsAreSeenByOtherViewsAndDatabases) {
  Recordset a = View("Call");
  Recordset b = View("Call");
  a.Edit();
  a.Fields("Name").SetValue("Seen");
  a.Update();
  EXPECT_EQ("Seen", Text(b, "Name"));
  Database second = DBEngine::Workspaces(0).OpenDatabase(dir_.Path("log.vdb"));
  Recordset c = second.OpenRecordset("QSOs", dbOpenDynaset);
  c.FindFirst("Name = 'seen'");
  ASSERT_FALSE(c.NoMatch());
  EXPECT_EQ("dl1xyz", Text(c, "Call"));
  // Rows added and deleted through the other database: until Requery the key set stays, and the
  // deleted row reads as deleted.
  AddRow(c, {{"Call", "OTHER"}});
  c.FindFirst("Call = 'W1AW'");
  c.Delete();
  a.MoveLast();
  EXPECT_EQ(3167, ErrorOf([&] { a.Fields("Call").Value(); }));
  EXPECT_EQ(5, a.RecordCount());
  a.Requery();
  EXPECT_EQ((Strings{"dl1xyz", "K1ABC", "k1abc", "OTHER", "VE3XX"}), Column(a, "Call"));
}

}  // namespace
}  // namespace vellumar::db
