// SPDX-License-Identifier: MIT
#include "sandbox/store/column_type.h"

#include "sandbox/store/sqlite_functions.h"

namespace quillmere::sandbox {

namespace {

constexpr int kMaxUtf8Bytes = 4;

struct CharacterType {
  std::string_view name;
  TypeCode code;
  int max_length;
  bool national;
  bool fixed;
  std::string_view reported;
};

constexpr CharacterType kCharacterTypes[] = {
    {"VARCHAR2", TypeCode::Varchar2, 4000, false, false, "VARCHAR2"},
    {"VARCHAR", TypeCode::Varchar2, 4000, false, false, "VARCHAR2"},
    {"NVARCHAR2", TypeCode::Nvarchar2, 2000, true, false, "NVARCHAR2"},
    {"CHAR", TypeCode::Char, 2000, false, true, "CHAR"},
    {"CHARACTER", TypeCode::Char, 2000, false, true, "CHAR"},
    {"NCHAR", TypeCode::Nchar, 1000, true, true, "NCHAR"},
};

Status ResolveCharacter(const TypeName& name, const CharacterType& type, ColumnType* out) {
  if (!name.first && !type.fixed) return Ora(906);
  const int length = name.first.value_or(1);
  if (length == 0) return Ora(1723);
  if (length < 0 || length > type.max_length) return Ora(910);
  out->code = type.code;
  out->name = type.reported;
  out->char_length = length;
  out->in_characters = type.national || name.in_characters;
  out->data_length = length;
  if (type.national) out->data_length = 2 * length;
  if (!type.national && name.in_characters) {
    out->data_length = std::min(kMaxUtf8Bytes * length, type.max_length);
  }
  return {};
}

Status ResolveNumber(const TypeName& name, ColumnType* out) {
  out->code = TypeCode::Number;
  out->name = "NUMBER";
  out->data_length = 22;
  if (name.name != "NUMBER" && name.name != "NUMERIC" && name.name != "DECIMAL" &&
      name.name != "DEC") {
    out->scale = 0;  // INTEGER, INT, SMALLINT
    return {};
  }
  if (name.first && (*name.first < 1 || *name.first > 38)) return Ora(1727);
  if (name.second && (*name.second < -84 || *name.second > 127)) return Ora(1728);
  out->precision = name.first;
  if (name.first || name.star_precision) out->scale = name.second.value_or(0);
  if (name.name != "NUMBER" && !out->scale) out->scale = 0;
  return {};
}

Status ResolveTimestamp(const TypeName& name, ColumnType* out) {
  const int scale = name.first.value_or(6);
  if (scale < 0 || scale > 9) {
    return {30088, "datetime/interval precision is out of range"};
  }
  out->scale = scale;
  out->data_length = 11;
  out->code = TypeCode::Timestamp;
  out->name = "TIMESTAMP(" + std::to_string(scale) + ")";
  if (name.name == "TIMESTAMP WITH TIME ZONE") {
    out->code = TypeCode::TimestampTz;
    out->data_length = 13;
    out->name += " WITH TIME ZONE";
  } else if (name.name == "TIMESTAMP WITH LOCAL TIME ZONE") {
    out->code = TypeCode::TimestampLtz;
    out->name += " WITH LOCAL TIME ZONE";
  }
  return {};
}

struct PlainType {
  std::string_view name;
  TypeCode code;
  int data_length;
};

constexpr PlainType kPlainTypes[] = {
    {"DATE", TypeCode::Date, 7},      {"CLOB", TypeCode::Clob, 4000},
    {"NCLOB", TypeCode::Nclob, 4000}, {"BLOB", TypeCode::Blob, 4000},
    {"LONG", TypeCode::Long, 0},      {"LONG RAW", TypeCode::LongRaw, 0},
};

}  // namespace

Kind ColumnType::kind() const {
  switch (code) {
    case TypeCode::Varchar2:
    case TypeCode::Nvarchar2:
    case TypeCode::Char:
    case TypeCode::Nchar:
    case TypeCode::Long:
      return Kind::Text;
    case TypeCode::Number:
    case TypeCode::Float:
      return Kind::Number;
    case TypeCode::Date:
      return Kind::Date;
    case TypeCode::Timestamp:
    case TypeCode::TimestampLtz:
      return Kind::Timestamp;
    case TypeCode::TimestampTz:
      return Kind::TimestampTz;
    case TypeCode::Raw:
    case TypeCode::Blob:
    case TypeCode::LongRaw:
      return Kind::Raw;
    case TypeCode::Clob:
    case TypeCode::Nclob:
      return Kind::Lob;
  }
  return Kind::Text;
}

bool ColumnType::IsLarge() const {
  return code == TypeCode::Clob || code == TypeCode::Nclob || code == TypeCode::Blob ||
         code == TypeCode::Long || code == TypeCode::LongRaw;
}

std::string_view ColumnType::Collation() const {
  if (kind() == Kind::Number) return kNumberOrder;
  return IsFixedChar() ? "RTRIM" : "BINARY";
}

Status ResolveType(const TypeName& name, ColumnType* out) {
  for (const CharacterType& type : kCharacterTypes) {
    if (type.name == name.name) return ResolveCharacter(name, type, out);
  }
  for (const std::string_view number :
       {"NUMBER", "NUMERIC", "DECIMAL", "DEC", "INTEGER", "INT", "SMALLINT"}) {
    if (name.name == number) return ResolveNumber(name, out);
  }
  if (name.name.starts_with("TIMESTAMP")) return ResolveTimestamp(name, out);
  if (name.name == "FLOAT" || name.name == "REAL") {
    const int precision = name.first.value_or(name.name == "REAL" ? 63 : 126);
    if (precision < 1 || precision > 126) return Ora(1727);
    *out = ColumnType{TypeCode::Float, "FLOAT", 22, precision, std::nullopt, 0, false};
    return {};
  }
  if (name.name == "RAW") {
    if (!name.first) return Ora(906);
    if (*name.first < 1 || *name.first > 2000) return Ora(910);
    *out = ColumnType{TypeCode::Raw, "RAW", *name.first, std::nullopt, std::nullopt, 0, false};
    return {};
  }
  for (const PlainType& type : kPlainTypes) {
    if (type.name != name.name) continue;
    if (name.first) return Ora(907);
    *out = ColumnType{
        type.code, std::string(type.name), type.data_length, std::nullopt, std::nullopt, 0, false};
    return {};
  }
  return Ora(902, name.name);
}

}  // namespace quillmere::sandbox
