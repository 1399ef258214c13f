// SPDX-License-Identifier: MIT
#include <algorithm>

#include "sandbox/session/ddl.h"

namespace quillmere::sandbox {

namespace {

Status NotValid(int code, const Table& table, const std::string& name, const std::string& why) {
  return {code, "cannot validate (" + table.owner + "." + name + ") - " + why};
}

}  // namespace

std::vector<std::size_t> DdlExecutor::Columns(const Table& table,
                                              const std::vector<std::string>& names) {
  std::vector<std::size_t> columns;
  for (const std::string& name : names) {
    const int column = table.FindColumn(name);
    if (column < 0) {
      sql_.Fail({904, "\"" + name + "\": invalid identifier"});
      return {};
    }
    const auto position = static_cast<std::size_t>(column);
    if (std::count(columns.begin(), columns.end(), position) > 0) sql_.Fail(Ora(957, name));
    columns.push_back(position);
  }
  return columns;
}

void DdlExecutor::SaveColumns(const std::string& list, std::int64_t id, const Table& table,
                              const std::vector<std::size_t>& columns) {
  std::int64_t position = 0;
  for (const std::size_t column : columns) {
    sql_.Run("INSERT INTO " + list + " VALUES(?, ?, ?)", id, ++position, table.columns[column].id);
  }
}

std::string DdlExecutor::ConstraintName(const Table& table, const ConstraintDef& def) {
  if (def.name.empty()) {
    const std::int64_t number = sql_.Int("SELECT next_name FROM qm_meta WHERE id = 1").value_or(1);
    sql_.Run("UPDATE qm_meta SET next_name = next_name + 1 WHERE id = 1");
    const std::string digits = std::to_string(number);
    return "SYS_C" + std::string(digits.size() < 8 ? 8 - digits.size() : 0, '0') + digits;
  }
  if (sql_.Int("SELECT 1 FROM qm_constraint WHERE owner = ? AND name = ?", table.owner, def.name)) {
    sql_.Fail(Ora(2264));
  }
  return def.name;
}

void DdlExecutor::AddConstraints(std::int64_t table_id, const std::vector<ConstraintDef>& defs) {
  // A foreign key may reference a key of the same statement.
  for (const bool foreign : {false, true}) {
    for (const ConstraintDef& def : defs) {
      if ((def.kind == ConstraintKind::ForeignKey) != foreign) continue;
      const TablePtr table = Reload(table_id);
      if (!table) return;
      const std::string name = ConstraintName(*table, def);
      foreign ? AddForeignKey(*table, name, def) : AddKey(*table, name, def);
    }
  }
}

void DdlExecutor::AddKey(const Table& table, const std::string& name, const ConstraintDef& def) {
  const bool primary = def.kind == ConstraintKind::PrimaryKey;
  if (primary && table.PrimaryKey() != nullptr) sql_.Fail(Ora(2260));
  const std::vector<std::size_t> columns = Columns(table, def.columns);
  for (const UniqueKey& key : table.keys) {
    if (key.constraint_id != 0 && key.columns == columns) sql_.Fail(Ora(2261));
  }
  for (const std::size_t index : columns) {
    const Column& column = table.columns[index];
    if (column.type.IsLarge()) sql_.Fail(Ora(2329));
    if (primary && sql_.Int("SELECT 1 FROM " + table.SqlName() + " WHERE " + column.SqlName() +
                            " IS NULL LIMIT 1")) {
      sql_.Fail(Ora(1449, column.name));
    }
  }
  const bool has_index = HasIndexOn(table, columns);
  if (!has_index) CheckIndexName(table.owner, name);
  sql_.Run("INSERT INTO qm_constraint(owner, name, table_id, type) VALUES(?, ?, ?, ?)", table.owner,
           name, table.id, std::string(primary ? "P" : "U"));
  const std::int64_t id = sql_.LastRowId();
  SaveColumns("qm_constraint_column", id, table, columns);
  if (!has_index) {
    sql_.Run(
        "INSERT INTO qm_index(owner, name, table_id, is_unique, constraint_id)"
        " VALUES(?, ?, ?, 1, ?)",
        table.owner, name, table.id, id);
    SaveColumns("qm_index_column", sql_.LastRowId(), table, columns);
  }
  MakeIndex("k" + std::to_string(id), table, columns,
            primary ? IndexKind::Primary : IndexKind::Unique,
            primary ? NotValid(2437, table, name, "primary key violated")
                    : NotValid(2299, table, name, "duplicate keys found"));
}

TablePtr DdlExecutor::FindReferencedKey(const Table& child, const ConstraintDef& def,
                                        const UniqueKey** key,
                                        std::vector<std::size_t>* child_columns) {
  ObjectName referenced = def.referenced;
  if (referenced.owner.empty()) referenced.owner = child.owner;
  const TablePtr parent = FindTable(referenced);
  const std::vector<std::size_t> given = Columns(child, def.columns);
  if (!parent || !sql_.ok()) return nullptr;
  std::vector<std::size_t> wanted = Columns(*parent, def.referenced_columns);
  if (def.referenced_columns.empty()) {
    if (parent->PrimaryKey() == nullptr) sql_.Fail(Ora(2268));
    if (sql_.ok()) wanted = parent->PrimaryKey()->columns;
  }
  if (given.size() != wanted.size()) sql_.Fail(Ora(2256));
  for (const UniqueKey& candidate : parent->keys) {
    const bool same = std::is_permutation(candidate.columns.begin(), candidate.columns.end(),
                                          wanted.begin(), wanted.end());
    if (same && candidate.constraint_id != 0) *key = &candidate;
  }
  if (*key == nullptr) sql_.Fail(Ora(2270));
  if (*key == nullptr || !sql_.ok()) return nullptr;
  for (const std::size_t column : (*key)->columns) {
    const auto at = std::find(wanted.begin(), wanted.end(), column);
    child_columns->push_back(given[static_cast<std::size_t>(at - wanted.begin())]);
    const Kind kind = child.columns[child_columns->back()].type.kind();
    if (kind != parent->columns[column].type.kind()) sql_.Fail(Ora(2267));
  }
  return parent;
}

void DdlExecutor::AddForeignKey(const Table& table, const std::string& name,
                                const ConstraintDef& def) {
  const UniqueKey* key = nullptr;
  std::vector<std::size_t> columns;
  const TablePtr parent = FindReferencedKey(table, def, &key, &columns);
  if (!parent) return;
  std::string match;
  std::string bound;
  std::vector<std::int64_t> own_ids;
  std::vector<std::int64_t> parent_ids;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const Column& own = table.columns[columns[i]];
    const Column& referenced = parent->columns[key->columns[i]];
    own_ids.push_back(own.id);
    parent_ids.push_back(referenced.id);
    const std::string both = i == 0 ? "" : " AND ";
    match += both + "p." + referenced.SqlName() + " = c." + own.SqlName();
    bound += both + "c." + own.SqlName() + " IS NOT NULL";
  }
  for (const ForeignKey& existing : table.parents) {
    const bool same = existing.child_columns == own_ids && existing.parent_columns == parent_ids;
    if (same) sql_.Fail(Ora(2275));
  }
  if (sql_.Int("SELECT 1 FROM " + table.SqlName() + " c WHERE " + bound +
               " AND NOT EXISTS (SELECT 1 FROM " + parent->SqlName() + " p WHERE " + match +
               ") LIMIT 1")) {
    sql_.Fail(NotValid(2298, table, name, "parent keys not found"));
  }
  sql_.Run(
      "INSERT INTO qm_constraint(owner, name, table_id, type, ref_id)"
      " VALUES(?, ?, ?, 'R', ?)",
      table.owner, name, table.id, key->constraint_id);
  const std::int64_t id = sql_.LastRowId();
  SaveColumns("qm_constraint_column", id, table, columns);
  // Without it every change of a parent would read the whole child table.
  MakeIndex("f" + std::to_string(id), table, columns, IndexKind::Plain, {});
}

// No name: the primary key.
void DdlExecutor::DropConstraint(const Table& table, std::string name, bool cascade) {
  if (name.empty()) {
    const UniqueKey* key = table.PrimaryKey();
    if (key == nullptr) return sql_.Fail({2441, "Cannot drop nonexistent primary key"});
    name = key->name;
  }
  const auto id =
      sql_.Int("SELECT id FROM qm_constraint WHERE owner = ? AND name = ? AND table_id = ?",
               table.owner, name, table.id);
  if (!id) return sql_.Fail(Ora(2443));
  for (const std::int64_t reference :
       sql_.Ints("SELECT id FROM qm_constraint WHERE ref_id = ?", *id)) {
    if (!cascade) sql_.Fail(Ora(2273));
    DropConstraintRow(reference);
  }
  DropConstraintRow(*id);
}

void DdlExecutor::DropConstraintRow(std::int64_t id) {
  RemoveIndex("k" + std::to_string(id));
  RemoveIndex("f" + std::to_string(id));
  for (const char* sql : {"DELETE FROM qm_index_column WHERE index_id IN"
                          " (SELECT id FROM qm_index WHERE constraint_id = ?)",
                          "DELETE FROM qm_index WHERE constraint_id = ?",
                          "DELETE FROM qm_constraint_column WHERE constraint_id = ?",
                          "DELETE FROM qm_constraint WHERE id = ?"}) {
    sql_.Run(sql, id);
  }
}

}  // namespace quillmere::sandbox
