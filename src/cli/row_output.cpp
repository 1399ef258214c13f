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
  if (!row.why_not.empty()) return RowSummary(row) + "\n";
  std::vector<std::vector<std::string>> rows = {{"Column", "There", "Expected", "Given", ""}};
  for (const RowBeside::Column& column : row.columns) {
    rows.push_back({column.name, Cell(column.there, row.rows > 0),
                    Cell(column.before, column.expected), Cell(column.after, column.given),
                    column.differs ? "differs" : ""});
  }
  return RowSummary(row) + "\n" + TextTable(rows);
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
