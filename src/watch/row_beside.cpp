// SPDX-License-Identifier: MIT
#include "watch/row_beside.h"

#include <algorithm>

#include "foundation/text.h"
#include "oracle/read_rows.h"
#include "watch/statement_values.h"

namespace quillmere {
namespace {

constexpr int kNotUnique = 1;

// Of "... (SHOP.UQ_NAME) violated": the constraint or index that was hurt.
bool HurtConstraint(const JobProblem& problem, std::string& owner, std::string& name) {
  if (problem.ora != kNotUnique) return false;
  const std::string_view error = problem.what.error;
  const std::size_t open = error.find('(', error.find("ORA-00001"));
  const std::size_t dot = error.find('.', open);
  const std::size_t close = error.find(')', dot);
  if (close == std::string_view::npos) return false;
  owner = error.substr(open + 1, dot - open - 1);
  name = error.substr(dot + 1, close - dot - 1);
  return true;
}

// The columns that tell the row: of what was hurt, else of the primary key.
std::vector<std::string> KeyColumns(OracleSession& destination, const JobProblem& problem,
                                    const StatementValues& values) {
  std::vector<std::string> columns;
  std::string owner;
  std::string name;
  if (HurtConstraint(problem, owner, name) &&
      destination.ListConstraintColumns(owner, name, columns) && !columns.empty()) {
    return columns;
  }
  KeyInfo key;
  columns.clear();
  if (destination.GetPrimaryKey(values.owner, values.table, key)) {
    destination.ListConstraintColumns(key.owner, key.constraint_name, columns);
  }
  return columns;
}

const ColumnValue* Find(const std::vector<ColumnValue>& values, std::string_view column) {
  const auto found = std::find_if(values.begin(), values.end(),
                                  [&](const ColumnValue& value) { return value.column == column; });
  return found == values.end() ? nullptr : &*found;
}

std::string Condition(const ColumnValue& value) {
  const bool null = !PlainValue(value.expression);
  return '"' + value.column + '"' + (null ? " is null" : " = " + value.expression);
}

std::string Where(const StatementValues& values, const std::vector<std::string>& key) {
  std::string where;
  for (const std::string& column : key) {
    const ColumnValue* value = Find(values.before, column);
    if (value == nullptr) value = Find(values.given, column);
    if (value == nullptr) return {};
    where += (where.empty() ? " where " : " and ") + Condition(*value);
  }
  return where;
}

std::vector<RowBeside::Column> ColumnsOf(const StatementValues& values) {
  std::vector<RowBeside::Column> columns;
  for (const std::vector<ColumnValue>* list : {&values.before, &values.given}) {
    for (const ColumnValue& value : *list) {
      auto found = std::find_if(columns.begin(), columns.end(),
                                [&](const auto& column) { return column.name == value.column; });
      if (found == columns.end()) {
        found = columns.insert(found, RowBeside::Column{});
        found->name = value.column;
      }
      const bool expects = list == &values.before;
      (expects ? found->before : found->after) = PlainValue(value.expression);
      (expects ? found->expected : found->given) = true;
    }
  }
  return columns;
}

// What is there may have been cut.
bool Alike(const std::optional<std::string>& there, const std::optional<std::string>& expected) {
  if (there == expected) return true;
  return there && expected && there->size() == kLongestText && expected->starts_with(*there);
}

}  // namespace

std::string RowSummary(const RowBeside& row) {
  if (!row.why_not.empty()) return row.why_not;
  std::string key;
  for (const std::string& column : row.key) key += (key.empty() ? "" : ", ") + column;
  const std::string rows = row.rows == 0   ? "no row"
                           : row.rows == 1 ? "1 row"
                                           : std::to_string(row.rows) + " rows";
  return "The destination has " + rows + " with the change's values of " + key;
}

RowBeside LookAtRow(OracleSession& destination, const JobProblem& problem) {
  RowBeside row;
  const std::optional<StatementValues> values = problem.what.where == PassProblem::Where::Statement
                                                    ? ReadStatementValues(problem.what.statement)
                                                    : std::nullopt;
  if (!values) {
    row.why_not = "No row is to be looked for: the problem is no statement that names one";
    return row;
  }
  row.columns = ColumnsOf(*values);
  row.key = KeyColumns(destination, problem, *values);
  if (row.key.empty()) {
    for (const ColumnValue& value : values->before) row.key.push_back(value.column);
  }
  const std::string where = Where(*values, row.key);
  if (where.empty()) {
    row.why_not =
        "The row can not be looked for: the table has no key, or the statement does not "
        "name it";
    return row;
  }
  std::string list;
  for (const RowBeside::Column& column : row.columns) {
    list += (list.empty() ? "" : ", ") + ('"' + column.name + '"');
  }
  const auto quoted = [](const std::string& name) { return '"' + name + '"'; };
  TextRows found;
  if (!ReadRows(
          destination,
          "select " + list + " from " + quoted(values->owner) + "." + quoted(values->table) + where,
          row.columns.size(), found)) {
    row.why_not = "The destination did not give the row: " + destination.LastError();
    return row;
  }
  row.rows = found.size();
  if (found.empty()) return row;
  for (std::size_t i = 0; i < row.columns.size(); ++i) {
    RowBeside::Column& column = row.columns[i];
    if (!found.front()[i].empty()) column.there = found.front()[i];
    column.differs = column.expected && !Alike(column.there, column.before);
  }
  return row;
}

}  // namespace quillmere
