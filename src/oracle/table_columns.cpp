// SPDX-License-Identifier: MIT
#include "oracle/table_columns.h"

#include "foundation/text.h"
#include "oracle/follow_queries.h"
#include "oracle/text_query.h"

namespace quillmere {
namespace {

// A list in a condition has at most a thousand.
constexpr std::size_t kMostOwners = 500;

std::string OwnerCondition(const std::vector<std::string>& owners) {
  if (owners.size() > kMostOwners) return {};
  std::string list;
  for (const std::string& owner : owners) list += (list.empty() ? "" : ", ") + SqlLiteral(owner);
  return " and owner in (" + list + ")";
}

std::string_view Views(Dictionary dictionary) {
  return dictionary == Dictionary::Whole ? "dba" : "all";
}

}  // namespace

std::string ColumnsQuery(std::string_view owner, Dictionary dictionary) {
  return follow::FillIn(
      "select table_name, column_name, data_type, data_type_owner, data_length, "
      "nvl(data_precision, 0), nvl(data_scale, 0), nullable, nvl(default_length, 0) "
      "from {}_tab_columns where owner = {} order by table_name, column_id",
      {Views(dictionary), SqlLiteral(owner)});
}

TableColumn ColumnOf(const std::vector<std::string>& row) {
  TableColumn column;
  column.name = row[1];
  column.type = row[2];
  column.type_owner = row[3];
  ParseNumber(row[4], column.length);
  ParseNumber(row[5], column.precision);
  ParseNumber(row[6], column.scale);
  column.nullable = row[7] != "N";
  column.has_default = row[8] != "0";
  return column;
}

std::string TypeText(const TableColumn& column) {
  const bool sized =
      column.type.ends_with("CHAR") || column.type.ends_with("CHAR2") || column.type == "RAW";
  // National ones are declared in characters of two bytes.
  const std::int64_t size = column.type.starts_with('N') ? column.length / 2 : column.length;
  if (sized) return column.type + "(" + std::to_string(size) + ")";
  if (column.type != "NUMBER" || column.precision == 0) return column.type;
  return column.type + "(" + std::to_string(column.precision) +
         (column.scale == 0 ? "" : "," + std::to_string(column.scale)) + ")";
}

bool ReadNewestChange(OracleSession& session, const std::vector<std::string>& owners,
                      Dictionary dictionary, std::string& newest) {
  constexpr oci::sb4 kBytes = 40;
  TextQuery query(session, kSingleLabels);
  if (!query.OpenWithRow(
          follow::FillIn(follow::kNewestChange, {Views(dictionary)}) + OwnerCondition(owners),
          {kBytes, kBytes, kBytes})) {
    return false;
  }
  newest.clear();
  if (query.Text(1) < query.Text(2)) {
    newest.append(query.Text(0)).append(" tables, ").append(query.Text(1));
  }
  return true;
}

}  // namespace quillmere
