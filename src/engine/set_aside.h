// SPDX-License-Identifier: MIT
// The changes of one capture that are not safe to apply: what is kept and what is told of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/statement_safety.h"

namespace quillmere {

// Belongs to the thread that captures. Owner and table are as the statement has them; both may be
// empty.
class SetAside {
 public:
  void Add(std::int64_t scn, std::string_view owner, std::string_view table, Safety why,
           std::string_view mined);

  struct Table {
    std::string owner, name;
    std::size_t count = 0;
    std::int64_t first_scn = 0;
    Safety first_why = Safety::Safe;
    std::string beginning;
  };
  const std::vector<Table>& Tables() const { return tables_; }

  // What setaside.sql is to get: each change whole, with SCN, owner, table and reason.
  const std::string& Text() const { return text_; }

  // A line for each table in the order of their first change, with count, first reason and the
  // beginning of the first statement; of very many tables the first ones and a count. file: where
  // the texts are.
  std::vector<std::string> Messages(std::string_view file) const;

 private:
  std::string text_;
  std::vector<Table> tables_;
  std::map<std::pair<std::string, std::string>, std::size_t> by_name_;  // places in tables_
};

}  // namespace quillmere
