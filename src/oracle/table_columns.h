// SPDX-License-Identifier: MIT
// The columns of tables as a dictionary has them, and whether any of them may have changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "oracle/H_oracle.h"

namespace quillmere {

struct TableColumn {
  std::string name, type, type_owner;  // of a type that is not the server's own
  std::int64_t length = 0, precision = 0, scale = 0;
  bool nullable = true;
  bool has_default = false;

  bool operator==(const TableColumn&) const = default;
};

// Whose views are asked: those of the administrator, which have all tables, or those of the user,
// which need no grant and have the tables that the user may work with.
enum class Dictionary { Whole, Own };

// The columns of all tables of an owner, table by table in their order: for ReadRows, with so many
// fields. The first one is the table's name.
std::string ColumnsQuery(std::string_view owner, Dictionary dictionary = Dictionary::Whole);
inline constexpr std::size_t kColumnFields = 9;
TableColumn ColumnOf(const std::vector<std::string>& row);

// As a column is declared: "VARCHAR2(20)", "NUMBER(8,2)".
std::string TypeText(const TableColumn& column);

// How many tables these owners have and when one of their definitions changed last, as one text
// that is another one after each change; empty while the second in which one was changed is not
// over, in which it may change again. False: the reason is in the session's LastError().
bool ReadNewestChange(OracleSession& session, const std::vector<std::string>& owners,
                      Dictionary dictionary, std::string& newest);

}  // namespace quillmere
