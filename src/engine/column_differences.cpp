// SPDX-License-Identifier: MIT
#include "engine/column_differences.h"

#include <algorithm>
#include <utility>

#include "engine/rewriter.h"

namespace quillmere {
namespace {

const TableColumn* Find(const std::vector<TableColumn>& columns, std::string_view name) {
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [&](const TableColumn& column) { return column.name == name; });
  return found == columns.end() ? nullptr : &*found;
}

// What the source has that does not fit.
bool IsNarrower(const TableColumn& there, const TableColumn& column) {
  if (there.type != "NUMBER") return there.length < column.length;
  if (there.precision == 0) return false;
  return column.precision == 0 || there.scale < column.scale ||
         there.precision - there.scale < column.precision - column.scale;
}

}  // namespace

std::string_view TypeFamily(std::string_view type) {
  return type.substr(0, type.find('('));
}

std::vector<ColumnDifference> CompareColumns(const std::string& table,
                                             const std::vector<TableColumn>& source,
                                             const std::vector<TableColumn>& destination) {
  std::vector<ColumnDifference> differences;
  const std::string alter = "alter table " + table;
  const auto differs = [&](const std::string& column, std::string what, std::string cure) {
    differences.push_back({column, std::move(what), alter + std::move(cure)});
  };
  for (const TableColumn& column : source) {
    const TableColumn* const there = Find(destination, column.name);
    const std::string declared = " (" + SqlName(column.name) + " " + TypeText(column) + ");";
    if (there == nullptr) {
      differs(column.name, "has no column " + column.name, " add" + declared);
    } else if (TypeFamily(there->type) != TypeFamily(column.type)) {
      differs(column.name,
              column.name + " is " + TypeText(*there) + ", on the source " + TypeText(column),
              " modify" + declared);
    } else if (IsNarrower(*there, column)) {
      differs(column.name,
              column.name + " is " + TypeText(*there) + ", narrower than " + TypeText(column),
              " modify" + declared);
    }
  }
  for (const TableColumn& there : destination) {
    if (there.nullable || there.has_default || Find(source, there.name) != nullptr) continue;
    differs(there.name, there.name + " must have a value, and the source does not have it",
            " modify (" + SqlName(there.name) + " null);");
  }
  return differences;
}

}  // namespace quillmere
