#pragma once
// The record layer's constants, with the values and names the program's code uses for them.

namespace vellumar::db {

// Field types (Field.Type).
enum FieldType : int {
  dbBoolean = 1,  // True is -1, False 0
  dbByte = 2,     // 0..255
  dbInteger = 3,  // 16-bit signed
  dbLong = 4,     // 32-bit signed
  dbSingle = 6,   // float
  dbDouble = 7,   // double
  dbDate = 8,     // date value, days since 1899-12-30, kept to the second
  dbText = 10,    // text of at most Size characters (1..255)
  dbMemo = 12,    // text of any length
};

// Field attributes (Field.Attributes), a bit set.
enum FieldAttribute : long {
  dbFixedField = 1,
  dbVariableField = 2,
  dbAutoIncrField = 16,
  dbUpdatableField = 32,
};

// Recordset types (Database.OpenRecordset).
enum RecordsetType : int {
  dbOpenTable = 1,    // the whole table, in the order of its current Index; Seek works here
  dbOpenDynaset = 2,  // a key set of the rows that pass Filter, in the order of Sort
};

// Recordset.EditMode.
enum EditModeValue : int {
  dbEditNone = 0,        // no edit open
  dbEditInProgress = 1,  // Edit has copied the current row into the edit buffer
  dbEditAdd = 2,         // AddNew has opened an empty edit buffer for a new row
};

// The locale of Workspace.CreateDatabase: general sort order, code page 1252.
inline constexpr const char* dbLangGeneral = ";LANGID=0x0409;CP=1252;COUNTRY=0";

}  // namespace vellumar::db
