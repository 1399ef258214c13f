// SPDX-License-Identifier: MIT
// What the dictionary knows of a table. Loaded once, then only read: shared freely within a
// session, and kept by whoever holds it when the table has changed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "sandbox/store/column_type.h"

namespace quillmere::sandbox {

struct Column {
  std::int64_t id = 0;
  std::string name;
  ColumnType type;
  bool nullable = true;
  std::string default_text;

  std::string SqlName() const { return "c" + std::to_string(id); }
};

// A primary or unique key, or a unique index: what ORA-00001 names.
struct UniqueKey {
  std::int64_t constraint_id = 0;  // 0: a unique index without constraint
  std::string owner;
  std::string name;
  std::string sql_index;  // what SQLite calls the index that enforces it
  bool primary = false;
  std::vector<std::size_t> columns;  // positions in Table::columns
};

struct ForeignKey {
  std::int64_t constraint_id = 0;
  std::string owner;
  std::string name;
  std::int64_t child_table = 0;
  std::int64_t parent_table = 0;
  std::vector<std::int64_t> child_columns;  // column ids, pairwise
  std::vector<std::int64_t> parent_columns;
};

struct Table {
  std::int64_t id = 0;
  std::string owner;
  std::string name;
  std::int64_t shape = 0;    // its form in the redo
  bool temporary = false;    // its rows go at the commit; the redo says that something changed
  std::string supplemental;  // NONE, KEY or ALL, beside what the database says
  std::vector<Column> columns;
  std::unordered_map<std::string, std::size_t> by_name;  // positions in columns
  std::vector<UniqueKey> keys;
  std::vector<ForeignKey> parents;   // keys of this table that reference others
  std::vector<ForeignKey> children;  // keys of any table that reference this one

  std::string SqlName() const { return "t" + std::to_string(id); }
  // "c7,c8"
  std::string SqlColumns() const;
  // -1 when there is none.
  int FindColumn(const std::string& column) const;
  int FindColumnId(std::int64_t column_id) const;
  const UniqueKey* PrimaryKey() const;
};

using TablePtr = std::shared_ptr<const Table>;

}  // namespace quillmere::sandbox
