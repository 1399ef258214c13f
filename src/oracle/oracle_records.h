// SPDX-License-Identifier: MIT
// Rows of Oracle's data dictionary, as the catalogue queries return them: plain values. Texts are
// right-trimmed and in the dictionary's case.
#pragma once

#include <cstdint>
#include <string>

namespace quillmere {

struct TableInfo {
  std::string owner;
  std::string table_name;
  std::string tablespace_name;  // empty when the table has none
  std::int32_t num_rows = 0;    // from the statistics; 0 when never analysed
  std::string spare;
};

// A primary or foreign key.
struct KeyInfo {
  std::string owner;
  std::string table_name;
  std::string constraint_name;
  std::string status;  // "ENABLED" or "DISABLED"; empty where it was not asked for
};

struct IndexInfo {
  std::string index_name;
  std::string index_type;
  std::string status;
};

// What names an index in a statement.
struct IndexRef {
  std::string table_owner;
  std::string table_name;
  std::string index_owner;
  std::string index_name;
};

struct ColumnInfo {
  std::string column_name;
  std::string data_type;
  std::int32_t data_length = 0;     // bytes
  std::int32_t data_precision = 0;  // 0 when none was declared
  std::int32_t data_scale = 0;
  std::string nullable;  // "Y" or "N"
  std::string spare;
};

}  // namespace quillmere
