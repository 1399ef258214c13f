// SPDX-License-Identifier: MIT
// How a change is kept: the values before and after it, beside a reference to the table's form at
// that time. The text of the statement is made when somebody mines it, in the formats of that
// session. Plain values and functions, for any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sandbox/store/table.h"

namespace quillmere::sandbox {

// The numbers are stored in database files and reported as OPERATION_CODE.
enum class RedoOperation { Insert = 1, Delete = 2, Update = 3, Start = 6, Commit = 7 };

using RowValue = std::optional<std::string>;  // canonical text, or NULL
using RowValues = std::vector<RowValue>;

// A table's owner, name and columns as redo needs them.
struct RedoShape {
  struct Column {
    std::string name;
    TypeCode type = TypeCode::Varchar2;
  };
  std::int64_t table_id = 0;
  std::string owner;
  std::string name;
  std::vector<Column> columns;
};

struct RedoRecord {
  RedoOperation operation = RedoOperation::Insert;
  RowValues row;  // Insert: the new values; otherwise the old ones, all columns
  std::vector<std::pair<std::size_t, RowValue>> changes;  // Update: column and new value
  std::vector<std::size_t> logged;  // Update: the columns that were logged; none: all
};

std::string EncodeShapeColumns(const std::vector<Column>& columns);
bool DecodeShapeColumns(std::string_view bytes, std::vector<RedoShape::Column>* out);

std::string EncodeRecord(const RedoRecord& record);
// False when the bytes are none of EncodeRecord's; `out` then means nothing.
bool DecodeRecord(RedoOperation operation, std::string_view bytes, RedoRecord* out);

}  // namespace quillmere::sandbox
