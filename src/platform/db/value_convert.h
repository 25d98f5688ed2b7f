#pragma once
// Field values between the program's Variants and what the file stores, by field type.
#include <string>

#include "platform/db/schema.h"
#include "platform/db/sqlite_handle.h"
#include "platform/vb/variant.h"

namespace vellumar::db::detail {

// A stored value as the field's type reads: text and memo as String, dbDate as Date, dbBoolean
// as Boolean, dbByte and dbInteger as Integer, dbLong as Long, dbSingle and dbDouble as Double.
// NULL is Null.
vb::Variant ToVariant(const SqlValue& stored, const ColumnInfo& column);

// A value converted for storage in the field. Raises 3163 for a text longer than the field and
// 3421 for a value the field's type can't take. `table` names the field in messages.
SqlValue ToStored(const vb::Variant& value, const ColumnInfo& column, const std::string& table);

// A key value for Seek: converted like ToStored but without the length check (a key longer than
// the field simply matches nothing); nullopt-like Null when it can't be converted.
SqlValue ToKey(const vb::Variant& value, const ColumnInfo& column);

// Number of characters of UTF-8 text.
size_t CharacterCount(const std::string& text);

}  // namespace vellumar::db::detail
