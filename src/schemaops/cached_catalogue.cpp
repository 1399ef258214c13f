// SPDX-License-Identifier: MIT
#include "schemaops/cached_catalogue.h"

#include <set>
#include <tuple>

namespace quillmere {
namespace {

using Name = std::tuple<std::string_view, std::string_view, std::string_view>;

Name NameOf(const KeyRecord& key) {
  return {key.table_owner, key.table_name, key.key_name};
}
Name NameOf(const IndexRecord& index) {
  return {index.table_owner, index.table_name, index.index_name};
}
Name NameOf(const TableRecord& table) {
  return {table.table_owner, table.table_name, table.table_name};
}

template <typename Record>
void EraseNamed(std::vector<Record>& records, const std::set<Name>& names) {
  std::erase_if(records, [&](const Record& record) { return names.contains(NameOf(record)); });
}

template <typename Record>
void EraseOfTables(std::vector<Record>& records, const std::set<Name>& tables) {
  std::erase_if(records, [&](const Record& record) {
    return tables.contains({record.table_owner, record.table_name, record.table_name});
  });
}

bool IsOfTable(const auto& record, const SchemaItem& table) {
  return record.table_owner == table.owner && record.table_name == table.table;
}

// Of the records that belong to the item's table: all when it is the table that changed its name.
void RenameIn(auto& records, ObjectKind kind, ObjectKind kind_of_records, const SchemaItem& item,
              std::string_view new_name, auto field) {
  for (auto& record : records) {
    if (!IsOfTable(record, item)) continue;
    if (kind == ObjectKind::Table) {
      record.table_name = new_name;
    } else if (kind == kind_of_records && record.*field == item.name) {
      record.*field = new_name;
    }
  }
}

}  // namespace

void TakeLists(DataSource& source, DataSource&& copy) {
  source.tables = std::move(copy.tables);
  source.primary_keys = std::move(copy.primary_keys);
  source.indexes = std::move(copy.indexes);
  source.needsave = source.needsave || copy.needsave;
}

void ForgetDropped(DataSource& source, ObjectKind kind, const std::vector<SchemaItem>& dropped) {
  if (dropped.empty()) return;
  std::set<Name> names;
  for (const SchemaItem& item : dropped) names.emplace(item.owner, item.table, item.name);
  switch (kind) {
    case ObjectKind::PrimaryKey:
      EraseNamed(source.primary_keys, names);
      break;
    case ObjectKind::Index:
      EraseNamed(source.indexes, names);
      break;
    case ObjectKind::Table:
      EraseNamed(source.tables, names);
      EraseOfTables(source.primary_keys, names);
      EraseOfTables(source.indexes, names);
  }
  source.needsave = true;
}

void TakeNewName(DataSource& source, ObjectKind kind, const SchemaItem& item,
                 std::string_view new_name) {
  RenameIn(source.primary_keys, kind, ObjectKind::PrimaryKey, item, new_name, &KeyRecord::key_name);
  RenameIn(source.indexes, kind, ObjectKind::Index, item, new_name, &IndexRecord::index_name);
  RenameIn(source.tables, kind, ObjectKind::Table, item, new_name, &TableRecord::table_name);
  source.needsave = true;
}

}  // namespace quillmere
