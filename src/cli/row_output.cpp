// SPDX-License-Identifier: MIT
#include "cli/row_output.h"

#include "cli/command.h"
#include "cli/text_table.h"

namespace quillmere::cli {
namespace {

using Json = nlohmann::ordered_json;

std::string Cell(const std::optional<std::string>& value, bool told) {
  if (!told) return {};
  return value ? OneLine(*value) : "NULL";
}

Json Value(const std::optional<std::string>& value) {
  return value ? Json(*value) : Json(nullptr);
}

}  // namespace

std::string RowText(const RowBeside& row) {
  if (!row.why_not.empty()) return row.why_not + "\n";
  std::string key;
  for (const std::string& column : row.key) key += (key.empty() ? "" : ", ") + column;
  std::string text = "The destination has " +
                     (row.rows == 0 ? std::string("no row") : std::to_string(row.rows)) +
                     (row.rows > 1    ? " rows"
                      : row.rows == 1 ? " row"
                                      : "") +
                     " with the change's values of " + key + "\n";
  std::vector<std::vector<std::string>> rows = {{"Column", "There", "Expected", "Given", ""}};
  for (const RowBeside::Column& column : row.columns) {
    rows.push_back({column.name, Cell(column.there, row.rows > 0),
                    Cell(column.before, column.expected), Cell(column.after, column.given),
                    column.differs ? "differs" : ""});
  }
  return text + TextTable(rows);
}

Json RowObject(const RowBeside& row) {
  Json columns = Json::array();
  for (const RowBeside::Column& column : row.columns) {
    Json object = {{"name", column.name}};
    if (row.rows > 0) object["there"] = Value(column.there);
    if (column.expected) object["expected"] = Value(column.before);
    if (column.given) object["given"] = Value(column.after);
    object["differs"] = column.differs;
    columns.push_back(std::move(object));
  }
  return {{"why_not", row.why_not}, {"rows", row.rows}, {"key", row.key}, {"columns", columns}};
}

}  // namespace quillmere::cli
