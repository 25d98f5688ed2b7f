#include "platform/db/value_convert.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "platform/db/dao_constants.h"
#include "platform/vb/convert.h"
#include "platform/vb/date_value.h"
#include "platform/vb/error.h"

namespace vellumar::db::detail {

size_t CharacterCount(const std::string& text) {
  size_t n = 0;
  for (unsigned char c : text) n += (c & 0xc0) != 0x80;
  return n;
}

namespace {

std::string StoredText(const SqlValue& v) {
  if (auto* s = std::get_if<std::string>(&v)) return *s;
  if (auto* i = std::get_if<int64_t>(&v)) return std::to_string(*i);
  if (auto* d = std::get_if<double>(&v)) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15g", *d);
    return buf;
  }
  return {};
}

double StoredNumber(const SqlValue& v) {
  if (auto* i = std::get_if<int64_t>(&v)) return static_cast<double>(*i);
  if (auto* d = std::get_if<double>(&v)) return *d;
  if (auto* s = std::get_if<std::string>(&v)) return std::strtod(s->c_str(), nullptr);
  return 0;
}

[[noreturn]] void ConversionError(const ColumnInfo& column, const std::string& table,
                                  const std::string& why) {
  throw vb::VbError(
      3421, "Data type conversion error: field '" + table + "." + column.name + "' " + why + ".");
}

// The value as a date value, or nullopt.
std::optional<double> AsDate(const vb::Variant& value) {
  switch (value.type()) {
    case vb::Variant::Type::Date:
      return value.ToDate();
    case vb::Variant::Type::String: {
      std::string text = value.ToString();
      if (auto d = vb::FromStorageText(text)) return d;
      return vb::ParseDate(text);
    }
    case vb::Variant::Type::Integer:
    case vb::Variant::Type::Long:
    case vb::Variant::Type::Double:
      return value.ToDouble();
    default:
      return std::nullopt;
  }
}

std::optional<double> AsNumber(const vb::Variant& value) {
  try {
    switch (value.type()) {
      case vb::Variant::Type::Boolean:
        return value.ToBool() ? -1.0 : 0.0;
      case vb::Variant::Type::String:
        return vb::ParseNumber(value.ToString());
      default:
        return value.ToDouble();
    }
  } catch (const vb::VbError&) {
    return std::nullopt;
  }
}

}  // namespace

vb::Variant ToVariant(const SqlValue& stored, const ColumnInfo& column) {
  if (IsNull(stored)) return vb::Variant::Null();
  switch (column.type) {
    case dbText:
    case dbMemo:
      return vb::Variant(StoredText(stored));
    case dbDate: {
      if (auto* s = std::get_if<std::string>(&stored)) {
        if (auto d = vb::FromStorageText(*s)) return vb::Variant::FromDate(*d);
        return vb::Variant(*s);  // another tool's text: shown as it is
      }
      return vb::Variant::FromDate(StoredNumber(stored));
    }
    case dbBoolean:
      return vb::Variant(StoredNumber(stored) != 0);
    case dbByte:
    case dbInteger:
      return vb::Variant(static_cast<int16_t>(StoredNumber(stored)));
    case dbLong:
      return vb::Variant(static_cast<int>(StoredNumber(stored)));
    default:
      return vb::Variant(StoredNumber(stored));
  }
}

SqlValue ToStored(const vb::Variant& value, const ColumnInfo& column, const std::string& table) {
  if (value.IsNull() || value.IsEmpty()) return std::monostate{};
  switch (column.type) {
    case dbText:
    case dbMemo: {
      std::string text;
      try {
        text = value.ToString();
      } catch (const vb::VbError&) {
        ConversionError(column, table, "can't hold the value");
      }
      if (column.type == dbText && static_cast<long>(CharacterCount(text)) > column.size) {
        throw vb::VbError(3163, "The field '" + table + "." + column.name +
                                    "' is too small to accept the amount of data you attempted "
                                    "to add (" +
                                    std::to_string(CharacterCount(text)) +
                                    " characters, the field holds " + std::to_string(column.size) +
                                    ").");
      }
      return text;
    }
    case dbDate: {
      std::optional<double> d;
      try {
        d = AsDate(value);
      } catch (const vb::VbError&) {
      }
      if (!d || *d < vb::kMinDate || *d > vb::kMaxDate) {
        ConversionError(column, table, "takes dates only");
      }
      return vb::ToStorageText(*d);
    }
    case dbBoolean: {
      auto n = AsNumber(value);
      if (!n) {
        try {
          return static_cast<int64_t>(value.ToBool() ? -1 : 0);
        } catch (const vb::VbError&) {
          ConversionError(column, table, "takes True or False only");
        }
      }
      return static_cast<int64_t>(*n != 0 ? -1 : 0);
    }
    case dbByte:
    case dbInteger:
    case dbLong: {
      auto n = AsNumber(value);
      if (!n) ConversionError(column, table, "takes numbers only");
      double r = std::nearbyint(*n);  // half to even, as the runtime rounds
      double lo = column.type == dbByte ? 0 : column.type == dbInteger ? -32768 : -2147483648.0;
      double hi = column.type == dbByte ? 255 : column.type == dbInteger ? 32767 : 2147483647.0;
      if (!(r >= lo && r <= hi)) ConversionError(column, table, "can't hold " + value.ToString());
      return static_cast<int64_t>(r);
    }
    case dbSingle: {
      auto n = AsNumber(value);
      if (!n) ConversionError(column, table, "takes numbers only");
      return static_cast<double>(static_cast<float>(*n));
    }
    default: {
      auto n = AsNumber(value);
      if (!n) ConversionError(column, table, "takes numbers only");
      return *n;
    }
  }
}

SqlValue ToKey(const vb::Variant& value, const ColumnInfo& column) {
  if (value.IsNull() || value.IsEmpty()) return std::monostate{};
  try {
    if (IsTextType(column.type)) return value.ToString();
    ColumnInfo unlimited = column;
    return ToStored(value, unlimited, "");
  } catch (const vb::VbError&) {
    return std::monostate{};
  }
}

}  // namespace vellumar::db::detail
