// SPDX-License-Identifier: MIT
// The datatypes of columns: what a definition means, how the dictionary reports it, how values of
// it are kept. Plain values.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "sandbox/base/status.h"
#include "sandbox/sql/ast.h"
#include "sandbox/values/datum.h"

namespace quillmere::sandbox {

// The numbers are stored in database files.
enum class TypeCode {
  Varchar2 = 1,
  Nvarchar2 = 2,
  Char = 3,
  Nchar = 4,
  Number = 5,
  Float = 6,
  Date = 7,
  Timestamp = 8,
  TimestampTz = 9,
  TimestampLtz = 10,
  Raw = 11,
  Clob = 12,
  Nclob = 13,
  Blob = 14,
  Long = 15,
  LongRaw = 16
};

Kind KindOf(TypeCode code);
// Large and LONG values: not in keys, not in the conditions of redo.
bool IsLarge(TypeCode code);

struct ColumnType {
  TypeCode code = TypeCode::Varchar2;
  std::string name;     // as the dictionary reports it: "TIMESTAMP(6)"
  int data_length = 0;  // bytes
  std::optional<int> precision;
  std::optional<int> scale;
  int char_length = 0;         // of character types
  bool in_characters = false;  // char_length counts characters, not bytes

  Kind kind() const { return KindOf(code); }
  bool IsLarge() const { return sandbox::IsLarge(code); }
  bool IsFixedChar() const { return code == TypeCode::Char || code == TypeCode::Nchar; }
  // The order that SQLite keeps values of it in.
  std::string_view Collation() const;
};

// ORA-00902, 00906, 00910, 01727 or 01728 for what is no datatype; `out` then means nothing.
Status ResolveType(const TypeName& name, ColumnType* out);

}  // namespace quillmere::sandbox
