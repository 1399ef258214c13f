// SPDX-License-Identifier: MIT
#include "sandbox/store/column_type.h"

#include <algorithm>
#include <array>

#include "sandbox/store/sqlite_functions.h"

namespace quillmere::sandbox {

namespace {

// What may stand in the parentheses of a type.
enum class Size { None, Length, Bytes, Number, Binary, Fraction };

struct TypeRow {
  std::string_view name;
  TypeCode code;
  std::string_view reported;
  Size size;
  int length;  // in bytes; of what has a length the largest that it may have
};

constexpr TypeRow kTypes[] = {
    {"VARCHAR2", TypeCode::Varchar2, "VARCHAR2", Size::Length, 4000},
    {"VARCHAR", TypeCode::Varchar2, "VARCHAR2", Size::Length, 4000},
    {"NVARCHAR2", TypeCode::Nvarchar2, "NVARCHAR2", Size::Length, 2000},
    {"CHAR", TypeCode::Char, "CHAR", Size::Length, 2000},
    {"NCHAR", TypeCode::Nchar, "NCHAR", Size::Length, 1000},
    {"RAW", TypeCode::Raw, "RAW", Size::Bytes, 2000},
    {"NUMBER", TypeCode::Number, "NUMBER", Size::Number, 22},
    {"NUMERIC", TypeCode::Number, "NUMBER", Size::Number, 22},
    {"DECIMAL", TypeCode::Number, "NUMBER", Size::Number, 22},
    {"INTEGER", TypeCode::Number, "NUMBER", Size::None, 22},
    {"INT", TypeCode::Number, "NUMBER", Size::None, 22},
    {"SMALLINT", TypeCode::Number, "NUMBER", Size::None, 22},
    {"FLOAT", TypeCode::Float, "FLOAT", Size::Binary, 22},
    {"DATE", TypeCode::Date, "DATE", Size::None, 7},
    {"TIMESTAMP", TypeCode::Timestamp, "", Size::Fraction, 11},
    {"TIMESTAMP WITH TIME ZONE", TypeCode::TimestampTz, " WITH TIME ZONE", Size::Fraction, 13},
    {"TIMESTAMP WITH LOCAL TIME ZONE", TypeCode::TimestampLtz, " WITH LOCAL TIME ZONE",
     Size::Fraction, 11},
    {"CLOB", TypeCode::Clob, "CLOB", Size::None, 4000},
    {"NCLOB", TypeCode::Nclob, "NCLOB", Size::None, 4000},
    {"BLOB", TypeCode::Blob, "BLOB", Size::None, 4000},
    {"LONG", TypeCode::Long, "LONG", Size::None, 0},
    {"LONG RAW", TypeCode::LongRaw, "LONG RAW", Size::None, 0},
};

Status SetLength(const TypeName& name, const TypeRow& row, ColumnType* out) {
  if (!name.first && !out->IsFixedChar()) return Ora(906);
  const int length = name.first.value_or(1);
  if (length < 1 || length > row.length) return Ora(length == 0 ? 1723 : 910);
  out->data_length = length;
  if (row.size == Size::Bytes) return {};
  const bool national = row.code == TypeCode::Nvarchar2 || row.code == TypeCode::Nchar;
  constexpr int kMaxUtf8Bytes = 4;
  out->char_length = length;
  out->in_characters = national || name.in_characters;
  if (national) {
    out->data_length = 2 * length;
  } else if (name.in_characters) {
    out->data_length = std::min(kMaxUtf8Bytes * length, row.length);
  }
  return {};
}

Status SetNumber(const TypeName& name, ColumnType* out) {
  if (name.first && (*name.first < 1 || *name.first > 38)) return Ora(1727);
  if (name.second && (*name.second < -84 || *name.second > 127)) return Ora(1728);
  out->precision = name.first;
  const bool scaled = name.first || name.star_precision || name.name != "NUMBER";
  if (scaled) out->scale = name.second.value_or(0);
  return {};
}

}  // namespace

Kind KindOf(TypeCode code) {
  // In the order of TypeCode.
  static constexpr std::array kKinds = {
      Kind::Null,   Kind::Text, Kind::Text,      Kind::Text,        Kind::Text,      Kind::Number,
      Kind::Number, Kind::Date, Kind::Timestamp, Kind::TimestampTz, Kind::Timestamp, Kind::Raw,
      Kind::Lob,    Kind::Lob,  Kind::Raw,       Kind::Text,        Kind::Raw};
  return kKinds.at(static_cast<std::size_t>(code));
}

bool IsLarge(TypeCode code) {
  return code >= TypeCode::Clob;
}

std::string_view ColumnType::Collation() const {
  if (kind() == Kind::Number) return kNumberOrder;
  return IsFixedChar() ? "RTRIM" : "BINARY";
}

Status ResolveType(const TypeName& name, ColumnType* out) {
  const auto row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                [&name](const TypeRow& type) { return type.name == name.name; });
  if (row == std::end(kTypes)) return Ora(902, name.name);
  *out = ColumnType();
  out->code = row->code;
  out->name = row->reported;
  out->data_length = row->length;
  switch (row->size) {
    case Size::None:
      if (row->code == TypeCode::Number) out->scale = 0;
      return name.first ? Ora(907) : Status();
    case Size::Length:
    case Size::Bytes:
      return SetLength(name, *row, out);
    case Size::Number:
      return SetNumber(name, out);
    case Size::Binary:
      out->precision = name.first.value_or(126);
      return *out->precision < 1 || *out->precision > 126 ? Ora(1727) : Status();
    case Size::Fraction:
      out->scale = name.first.value_or(6);
      out->name = "TIMESTAMP(" + std::to_string(*out->scale) + ")" + out->name;
      if (*out->scale >= 0 && *out->scale <= 9) return {};
      return {30088, "datetime/interval precision is out of range"};
  }
  return {};
}

}  // namespace quillmere::sandbox
