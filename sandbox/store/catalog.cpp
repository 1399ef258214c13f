// SPDX-License-Identifier: MIT
#include "sandbox/store/catalog.h"

#include "sandbox/store/sql_runner.h"

namespace quillmere::sandbox {

namespace {

std::optional<int> OptionalInt(const SqliteStatement& row, int column) {
  if (row.IsNull(column)) return std::nullopt;
  return static_cast<int>(row.Int(column));
}

void LoadColumns(SqlRunner* sql, Table* table) {
  sql->Each(
      "SELECT id, name, type_code, data_type, data_length, data_precision, data_scale, char_length,"
      " char_used = 'C', nullable, default_text FROM qm_column WHERE table_id = ?"
      " ORDER BY position",
      [table](const SqliteStatement& row) {
        Column& column = table->columns.emplace_back();
        column.id = row.Int(0);
        column.name = row.Text(1);
        column.type.code = static_cast<TypeCode>(row.Int(2));
        column.type.name = row.Text(3);
        column.type.data_length = static_cast<int>(row.Int(4));
        column.type.precision = OptionalInt(row, 5);
        column.type.scale = OptionalInt(row, 6);
        column.type.char_length = static_cast<int>(row.Int(7));
        column.type.in_characters = row.Int(8) != 0;
        column.nullable = row.Int(9) != 0;
        column.default_text = row.Text(10);
        table->by_name.emplace(column.name, table->columns.size() - 1);
      },
      table->id);
}

// Keys that constraints make, then unique indexes made by hand.
void LoadKeys(SqlRunner* sql, Table* table) {
  std::int64_t current = 0;
  sql->Each(
      "SELECT c.id, c.owner, c.name, c.type = 'P', k.column_id, k.position FROM qm_constraint c"
      " JOIN qm_constraint_column k ON k.constraint_id = c.id"
      " WHERE c.table_id = ?1 AND c.type IN ('P', 'U')"
      " UNION ALL SELECT -i.id, i.owner, i.name, 0, k.column_id, k.position FROM qm_index i"
      " JOIN qm_index_column k ON k.index_id = i.id"
      " WHERE i.table_id = ?1 AND i.is_unique AND i.constraint_id IS NULL"
      " ORDER BY 1, 6",
      [table, &current](const SqliteStatement& row) {
        if (row.Int(0) != current) {
          current = row.Int(0);
          UniqueKey& key = table->keys.emplace_back();
          key.constraint_id = current > 0 ? current : 0;
          key.owner = row.Text(1);
          key.name = row.Text(2);
          key.sql_index =
              current > 0 ? "k" + std::to_string(current) : "i" + std::to_string(-current);
          key.primary = row.Int(3) != 0;
        }
        const auto column = static_cast<std::size_t>(table->FindColumnId(row.Int(4)));
        if (row.Int(3) != 0) table->columns.at(column).nullable = false;
        table->keys.back().columns.push_back(column);
      },
      table->id);
}

void LoadForeignKeys(SqlRunner* sql, const std::string& side, std::int64_t table_id,
                     std::vector<ForeignKey>* out) {
  sql->Each(
      "SELECT c.id, c.owner, c.name, c.table_id, r.table_id, k.column_id,"
      " q.column_id FROM qm_constraint c JOIN qm_constraint r ON r.id = c.ref_id"
      " JOIN qm_constraint_column k ON k.constraint_id = c.id"
      " JOIN qm_constraint_column q ON q.constraint_id = r.id AND q.position = k.position"
      " WHERE " +
          side + ".table_id = ? AND c.type = 'R' ORDER BY c.id, k.position",
      [out](const SqliteStatement& row) {
        if (out->empty() || out->back().constraint_id != row.Int(0)) {
          ForeignKey& key = out->emplace_back();
          key.constraint_id = row.Int(0);
          key.owner = row.Text(1);
          key.name = row.Text(2);
          key.child_table = row.Int(3);
          key.parent_table = row.Int(4);
        }
        out->back().child_columns.push_back(row.Int(5));
        out->back().parent_columns.push_back(row.Int(6));
      },
      table_id);
}

}  // namespace

std::string Table::SqlColumns() const {
  std::string sql;
  for (const Column& column : columns) sql += (sql.empty() ? "" : ",") + column.SqlName();
  return sql;
}

int Table::FindColumn(const std::string& column) const {
  const auto found = by_name.find(column);
  return found == by_name.end() ? -1 : static_cast<int>(found->second);
}

int Table::FindColumnId(std::int64_t column_id) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].id == column_id) return static_cast<int>(i);
  }
  return -1;
}

const UniqueKey* Table::PrimaryKey() const {
  for (const UniqueKey& key : keys) {
    if (key.primary) return &key;
  }
  return nullptr;
}

void Catalog::Clear() {
  by_name_.clear();
  by_id_.clear();
}

Status Catalog::FindTable(SqliteConnection* connection, const std::string& owner,
                          const std::string& name, TablePtr* out) {
  const std::string key = owner + '\0' + name;
  if (const auto found = by_name_.find(key); found != by_name_.end()) {
    *out = found->second;
    return {};
  }
  SqlRunner sql(connection);
  const auto id = sql.Int("SELECT id FROM qm_table WHERE owner = ? AND name = ?", owner, name);
  if (!id) return sql.ok() ? Ora(942) : sql.status();
  Status status = FindTableById(connection, *id, out);
  if (status.ok()) by_name_.emplace(key, *out);
  return status;
}

Status Catalog::FindTableById(SqliteConnection* connection, std::int64_t id, TablePtr* out) {
  constexpr std::size_t kMost = 20000;
  if (const auto found = by_id_.find(id); found != by_id_.end()) {
    *out = found->second;
    return {};
  }
  if (by_id_.size() >= kMost) Clear();
  auto table = std::make_shared<Table>();
  SqlRunner sql(connection);
  sql.Each(
      "SELECT id, owner, name, shape, supplemental, temporary FROM qm_table WHERE id = ?",
      [&table](const SqliteStatement& row) {
        table->id = row.Int(0);
        table->owner = row.Text(1);
        table->name = row.Text(2);
        table->shape = row.Int(3);
        table->supplemental = row.Text(4);
        table->temporary = row.Int(5) != 0;
      },
      id);
  LoadColumns(&sql, table.get());
  LoadKeys(&sql, table.get());
  LoadForeignKeys(&sql, "c", id, &table->parents);
  LoadForeignKeys(&sql, "r", id, &table->children);
  if (!sql.ok()) return sql.status();
  if (table->id != id) return Ora(942);
  *out = table;
  by_id_.emplace(id, *out);
  return {};
}

}  // namespace quillmere::sandbox
