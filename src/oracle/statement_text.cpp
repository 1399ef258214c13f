// SPDX-License-Identifier: MIT
#include "oracle/statement_text.h"

#include <algorithm>
#include <array>

namespace quillmere {
namespace {

std::string Joined(const std::vector<std::string>& columns) {
  std::string text;
  for (const std::string& column : columns) {
    if (!text.empty()) text += ',';
    text += column;
  }
  return text;
}

std::string NumberType(const ColumnInfo& column) {
  if (column.data_scale >= 1) {
    return "NUMBER(" + std::to_string(column.data_precision) + "," +
           std::to_string(column.data_scale) + ")";
  }
  if (column.data_precision != 0) return "NUMBER(" + std::to_string(column.data_precision) + ")";
  return "NUMBER";
}

std::string TypeText(const ColumnInfo& column) {
  static constexpr std::array<std::string_view, 5> kSizedTypes = {"CHAR", "NCHAR", "NVARCHAR",
                                                                  "NVARCHAR2", "VARCHAR2"};
  const std::string& type = column.data_type;
  if (std::find(kSizedTypes.begin(), kSizedTypes.end(), type) != kSizedTypes.end()) {
    return type + "(" + std::to_string(column.data_length) + ")";
  }
  if (type == "NUMBER") return NumberType(column);
  if (type.find("TIMESTAMP") != std::string::npos && column.data_scale >= 1) {
    return type + "(" + std::to_string(column.data_scale) + ")";
  }
  return type + " ";
}

}  // namespace

std::string Concatenate(std::initializer_list<std::string_view> pieces) {
  std::size_t size = 0;
  for (const std::string_view piece : pieces) size += piece.size();
  std::string text;
  text.reserve(size);
  for (const std::string_view piece : pieces) text += piece;
  return text;
}

std::string DropConstraintText(const KeyInfo& key) {
  return Concatenate(
      {"alter table ", key.owner, ".", key.table_name, " drop constraint ", key.constraint_name});
}

std::string DropTableText(std::string_view owner, std::string_view table, bool cascade) {
  return Concatenate({"drop table ", owner, ".", table, cascade ? " CASCADE CONSTRAINTS" : ""});
}

std::string DropIndexText(const IndexRef& index) {
  return Concatenate({"drop index ", index.index_owner, ".", index.index_name});
}

std::string AddPrimaryKeyText(const KeyInfo& key, const std::vector<std::string>& columns) {
  return Concatenate({"ALTER TABLE ", key.owner, ".", key.table_name, " ADD CONSTRAINT ",
                      key.constraint_name, " PRIMARY KEY (", Joined(columns), ")"});
}

std::string AddForeignKeyText(const std::vector<std::string>& columns,
                              const std::vector<std::string>& referenced_columns,
                              const KeyInfo& key, std::string_view referenced_owner,
                              std::string_view referenced_table) {
  return Concatenate({"ALTER TABLE ", key.owner, ".", key.table_name, " ADD CONSTRAINT ",
                      key.constraint_name, " FOREIGN KEY (", Joined(columns), ")", " REFERENCES ",
                      referenced_owner, ".", referenced_table, " (", Joined(referenced_columns),
                      ")"});
}

std::string CreateIndexText(const IndexRef& index, const std::vector<std::string>& columns) {
  return Concatenate({"CREATE INDEX  ", index.index_owner, ".", index.index_name, " on ",
                      index.table_owner, ".", index.table_name, "(", Joined(columns), ")"});
}

std::string CreateTableText(const TableInfo& table, const std::vector<ColumnInfo>& columns,
                            bool with_tablespace) {
  std::string lines;
  for (const ColumnInfo& column : columns) {
    if (!lines.empty()) lines += ", ";
    lines += column.column_name + " " + TypeText(column);
    lines += column.nullable == "Y" ? " NULL" : " NOT NULL";
  }
  std::string text =
      Concatenate({"CREATE TABLE ", table.owner, ".", table.table_name, " ( ", lines, " ) "});
  if (with_tablespace) text += "TABLESPACE " + table.tablespace_name;
  return text;
}

std::string RenameTableText(std::string_view owner, std::string_view table,
                            std::string_view new_name) {
  return Concatenate({"ALTER TABLE ", owner, ".", table, " RENAME TO ", new_name});
}

std::string RenameIndexText(std::string_view owner, std::string_view index,
                            std::string_view new_name) {
  return Concatenate({"ALTER INDEX ", owner, ".", index, " RENAME TO ", new_name});
}

}  // namespace quillmere
