// SPDX-License-Identifier: MIT
#include "doctor/table_facts.h"

#include <set>

#include "doctor/visit.h"
#include "foundation/text.h"

namespace quillmere::doctor {

const TableFacts::Column* TableFacts::Table::FindColumn(std::string_view column) const {
  for (const Column& one : columns) {
    if (one.name == column) return &one;
  }
  return nullptr;
}

const TableFacts::Table* TableFacts::Find(std::string_view owner, std::string_view name) const {
  const auto found = tables_.find({std::string(owner), std::string(name)});
  return found == tables_.end() || !found->second ? nullptr : &*found->second;
}

TableFacts::Table* TableFacts::Wanted(const std::string& owner, const std::string& name) {
  const auto found = tables_.find({owner, name});
  return found == tables_.end() || !found->second ? nullptr : &*found->second;
}

bool TableFacts::Load(Visit& visit, Side& side) {
  if (loaded_) return *loaded_ || visit.Connected(side);
  std::set<std::string> owners;
  for (const CarriedTable& table : visit.Job().tables) {
    const std::string& owner = &side == &visit.Destination() ? table.to_owner : table.owner;
    tables_[{owner, table.name}];
    owners.insert(owner);
  }
  loaded_ = true;
  for (const std::string& owner : owners) {
    if (!LoadOwner(visit, side, owner)) loaded_.reset();
    if (!loaded_) return false;
  }
  return true;
}

bool TableFacts::LoadOwner(Visit& visit, Side& side, const std::string& owner) {
  const std::string name = SqlLiteral(owner);
  TextRows rows;
  if (!visit.Read(side,
                  "select table_name, tablespace_name from dba_all_tables where owner = " + name, 2,
                  rows)) {
    return false;
  }
  for (const std::vector<std::string>& row : rows) {
    const auto found = tables_.find({owner, row[0]});
    if (found != tables_.end()) found->second.emplace().tablespace = row[1];
  }
  if (!visit.Read(side, ColumnsQuery(owner), kColumnFields, rows)) return false;
  for (const std::vector<std::string>& row : rows) {
    if (Table* const table = Wanted(owner, row[0])) table->columns.push_back(ColumnOf(row));
  }
  if (!visit.Read(side,
                  "select c.table_name, k.column_name from dba_constraints c join "
                  "dba_cons_columns k on k.owner = c.owner and k.constraint_name = "
                  "c.constraint_name where c.constraint_type = 'P' and c.owner = " +
                      name + " order by c.table_name, k.position",
                  2, rows)) {
    return false;
  }
  for (const std::vector<std::string>& row : rows) {
    if (Table* const table = Wanted(owner, row[0])) table->key.push_back(row[1]);
  }
  if (!visit.Read(side,
                  "select table_name from dba_indexes where uniqueness = 'UNIQUE' and "
                  "table_owner = " +
                      name,
                  1, rows)) {
    return false;
  }
  for (const std::vector<std::string>& row : rows) {
    if (Table* const table = Wanted(owner, row[0])) table->unique = true;
  }
  return true;
}

}  // namespace quillmere::doctor
