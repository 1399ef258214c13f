// SPDX-License-Identifier: MIT
// What the dictionary of a model says of tables and their columns, as much as is compared.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "oracle/follow_queries.h"
#include "oracle/table_columns.h"
#include "sim/statement_match.h"

namespace quillmere::sim {

struct ModelDictionary {
  std::string changed = "2026-01-01 00:00:00", now = "2026-01-02 00:00:00";
  // Owner, then the fields of a row: table, column, type, its owner, length, precision, scale, Y or
  // N for nullable, 0 without a default.
  std::vector<std::vector<std::string>> columns;

  // False: it is no question of this kind.
  bool Answer(std::string_view sql, std::vector<std::vector<std::string>>& rows) const {
    if (!sql.starts_with("select count(*), nvl(to_char") &&
        !sql.starts_with("select table_name, column_name")) {
      return false;
    }
    const auto newest = Match(std::string(follow::kNewestChange) + " and owner in ({})", sql);
    if (newest) rows = {{std::to_string(columns.size()), changed, now}};
    for (const Dictionary view : {Dictionary::Whole, Dictionary::Own}) {
      std::string query = ColumnsQuery("{}", view);
      const auto owner = Match(query, sql);
      if (!owner) continue;
      for (const std::vector<std::string>& row : columns) {
        if (row[0] == (*owner)[0]) rows.emplace_back(row.begin() + 1, row.end());
      }
      return true;
    }
    return newest.has_value();
  }
};

}  // namespace quillmere::sim
