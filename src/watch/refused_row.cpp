// SPDX-License-Identifier: MIT
#include "watch/refused_row.h"

#include <vector>

#include "foundation/text.h"
#include "watch/statement_values.h"

namespace quillmere {
namespace {

// "ID" = '7' and "NAME" is null
std::string Joined(const std::vector<ColumnValue>& values, std::string_view between, bool found) {
  std::string text;
  for (const ColumnValue& value : values) {
    if (!text.empty()) text += between;
    text.append("\"").append(value.column).append("\"");
    const bool null = found && !PlainValue(value.expression);
    text.append(null ? " is null" : " = " + value.expression);
  }
  return text;
}

}  // namespace

std::string_view OperationOf(std::string_view statement) {
  const std::string_view text = TrimLeft(statement, " ");
  const std::string_view verb = text.substr(0, text.find(' '));
  for (const std::string_view known : {"insert", "update", "delete"}) {
    if (EqualsIgnoringCase(verb, known)) return known;
  }
  return {};
}

std::string RowOf(std::string_view statement) {
  const auto values = ReadStatementValues(statement);
  if (!values) return {};
  return values->verb == Verb::Insert ? Joined(values->given, ", ", false)
                                      : Joined(values->before, " and ", true);
}

}  // namespace quillmere
