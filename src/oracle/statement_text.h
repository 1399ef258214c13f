// SPDX-License-Identifier: MIT
// The texts of the schema statements: pure functions for any thread, names pasted as they stand.
// Internal to oracle/.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "oracle/oracle_records.h"

namespace quillmere {

std::string Concatenate(std::initializer_list<std::string_view> pieces);

std::string DropConstraintText(const KeyInfo& key);
std::string DropTableText(std::string_view owner, std::string_view table, bool cascade);
std::string DropIndexText(const IndexRef& index);
std::string AddPrimaryKeyText(const KeyInfo& key, const std::vector<std::string>& columns);
std::string AddForeignKeyText(const std::vector<std::string>& columns,
                              const std::vector<std::string>& referenced_columns,
                              const KeyInfo& key, std::string_view referenced_owner,
                              std::string_view referenced_table);
std::string CreateIndexText(const IndexRef& index, const std::vector<std::string>& columns);
std::string CreateTableText(const TableInfo& table, const std::vector<ColumnInfo>& columns,
                            bool with_tablespace);
std::string RenameTableText(std::string_view owner, std::string_view table,
                            std::string_view new_name);
std::string RenameIndexText(std::string_view owner, std::string_view index,
                            std::string_view new_name);

}  // namespace quillmere
