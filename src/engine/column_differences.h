// SPDX-License-Identifier: MIT
// What keeps a destination's table from taking the rows of a source's table. Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "oracle/table_columns.h"

namespace quillmere {

struct ColumnDifference {
  std::string column;
  std::string what;  // "has no column NOTE"
  std::string cure;  // the statement that brings the destination up
};

// table: the destination's, as statements name it.
std::vector<ColumnDifference> CompareColumns(const std::string& table,
                                             const std::vector<TableColumn>& source,
                                             const std::vector<TableColumn>& destination);

// "TIMESTAMP(6)" as "TIMESTAMP".
std::string_view TypeFamily(std::string_view type);

}  // namespace quillmere
