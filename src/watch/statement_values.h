// SPDX-License-Identifier: MIT
// What a mined statement says of its row: the values that it gives, and those that it expects.
// Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/rewriter.h"

namespace quillmere {

struct ColumnValue {
  std::string column;
  std::string expression;  // as the statement has it: 'a''b', NULL, TO_DATE('...', '...')
};

struct StatementValues {
  Verb verb = Verb::Insert;
  std::string owner, table;         // as the server has them
  std::vector<ColumnValue> given;   // of an insert, and what an update sets
  std::vector<ColumnValue> before;  // what an update or delete expects
};

// Nothing when the statement is not of the form that LogMiner writes, or was cut.
std::optional<StatementValues> ReadStatementValues(std::string_view statement);

// For people and to compare: the text of a literal, of a conversion the text converted, nothing of
// NULL. What is computed stands as it is.
std::optional<std::string> PlainValue(std::string_view expression);

}  // namespace quillmere
