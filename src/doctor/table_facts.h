// SPDX-License-Identifier: MIT
// What one side's dictionary says of the tables that the job carries. Internal to doctor/.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "oracle/table_columns.h"

namespace quillmere::doctor {

struct Side;
class Visit;

class TableFacts {
 public:
  using Column = TableColumn;
  struct Table {
    std::string tablespace;
    std::vector<Column> columns;
    std::vector<std::string> key;  // columns of the primary key
    bool unique = false;           // it has a unique index, a key's or another
    const Column* FindColumn(std::string_view column) const;
  };

  // Asks the side, once, owner by owner. False: there was no answer, which is a finding.
  bool Load(Visit& visit, Side& side);

  // Null when the side does not have it.
  const Table* Find(std::string_view owner, std::string_view name) const;

 private:
  using Name = std::pair<std::string, std::string>;
  bool LoadOwner(Visit& visit, Side& side, const std::string& owner);
  Table* Wanted(const std::string& owner, const std::string& name);

  std::optional<bool> loaded_;
  std::map<Name, std::optional<Table>> tables_;  // those of the job
};

}  // namespace quillmere::doctor
