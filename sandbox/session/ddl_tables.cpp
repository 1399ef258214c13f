// SPDX-License-Identifier: MIT
#include <set>

#include "sandbox/expr/compiler.h"
#include "sandbox/redo/redo_record.h"
#include "sandbox/session/ddl.h"
#include "sandbox/store/redo_logs.h"

namespace quillmere::sandbox {

Status DdlExecutor::Execute(const Statement& statement) {
  if (const auto* table = std::get_if<TableDefinition>(&statement)) {
    CreateTable(*table);
  } else if (const auto* added = std::get_if<AddedConstraint>(&statement)) {
    const TablePtr extended = FindTable(added->table);
    if (extended) AddConstraints(extended->id, {added->constraint});
  } else if (const auto* columns = std::get_if<AddedColumns>(&statement)) {
    const TablePtr extended = FindTable(columns->table);
    if (extended) AddColumns(*extended, columns->columns);
  } else if (const auto* index = std::get_if<CreateIndex>(&statement)) {
    Create(*index);
  } else if (const auto* change = std::get_if<ObjectChange>(&statement)) {
    Change(*change);
  } else if (const auto* user = std::get_if<UserStatement>(&statement)) {
    ChangeUser(*user);
  } else if (const auto* database = std::get_if<DatabaseChange>(&statement)) {
    ChangeLogging(*database);
  }
  catalog_.Clear();
  return sql_.status();
}

void DdlExecutor::ChangeLogging(const DatabaseChange& change) {
  if (change.table.name.empty()) {
    if (!dba_) sql_.Fail(Ora(1031));
    return ChangeDatabase(&sql_, change, last_scn_);
  }
  const TablePtr table = FindTable(change.table);
  if (table) sql_.Run("UPDATE qm_table SET supplemental = ? WHERE id = ?", change.name, table->id);
}

TablePtr DdlExecutor::FindTable(const ObjectName& name) {
  const std::string owner = OwnerOf(name);
  TablePtr table;
  sql_.Fail(catalog_.FindTable(writer_, owner, name.name, &table));
  if (!May(owner)) sql_.Fail(Ora(942));
  return sql_.ok() ? table : nullptr;
}

TablePtr DdlExecutor::Reload(std::int64_t table_id) {
  TablePtr table;
  catalog_.Clear();
  if (sql_.ok()) sql_.Fail(catalog_.FindTableById(writer_, table_id, &table));
  return table;
}

std::string DdlExecutor::TargetOwner(const ObjectName& name) {
  const std::string owner = OwnerOf(name);
  if (!UserExists(owner)) sql_.Fail({1918, "user '" + owner + "' does not exist"});
  if (!May(owner)) sql_.Fail(Ora(1031));
  return owner;
}

void DdlExecutor::CheckColumns(const std::vector<ColumnDef>& columns) {
  constexpr std::size_t kMaxColumns = 1000;
  std::set<std::string> names;
  for (const ColumnDef& column : columns) {
    if (!names.insert(column.name).second) sql_.Fail(Ora(957, column.name));
  }
  if (names.size() > kMaxColumns) sql_.Fail(Ora(1792));
}

void DdlExecutor::CreateTable(const TableDefinition& def) {
  const ObjectName name{TargetOwner(def.table), def.table.name};
  if (sql_.Int("SELECT 1 FROM qm_table WHERE owner = ? AND name = ?", name.owner, name.name)) {
    sql_.Fail(Ora(955));
  }
  CheckColumns(def.columns);
  sql_.Run("INSERT INTO qm_table(owner, name, tablespace, shape, temporary) VALUES(?, ?, ?, 0, ?)",
           name.owner, name.name, def.tablespace.empty() ? std::string("USERS") : def.tablespace,
           def.temporary ? 1 : 0);
  const std::int64_t id = sql_.LastRowId();
  std::string body = "rid INTEGER PRIMARY KEY";
  for (std::size_t i = 0; i < def.columns.size(); ++i) {
    body += ", " + AddColumnRow(name, id, i + 1, def.columns[i]);
  }
  sql_.Exec("CREATE TABLE t" + std::to_string(id) + "(" + body + ")");
  NewShape(id);
  AddConstraints(id, def.constraints);
}

// The rows that are there have NULL in them.
void DdlExecutor::AddColumns(const Table& table, const std::vector<ColumnDef>& columns) {
  CheckColumns(columns);
  std::size_t position = table.columns.size();
  for (const ColumnDef& column : columns) {
    if (table.FindColumn(column.name) >= 0) sql_.Fail(Ora(957, column.name));
    sql_.Exec("ALTER TABLE " + table.SqlName() + " ADD COLUMN " +
              AddColumnRow({table.owner, table.name}, table.id, ++position, column));
  }
  NewShape(table.id);
}

std::string DdlExecutor::AddColumnRow(const ObjectName& table, std::int64_t table_id,
                                      std::size_t position, const ColumnDef& column) {
  ColumnType type;
  if (Status status = ResolveType(column.type, &type); !status.ok()) {
    sql_.Fail({status.code(), status.message() + " (column " + table.owner + "." + table.name +
                                  "." + column.name + ")"});
  }
  if (column.default_value) {
    ExpressionCompiler compiler(&context_);
    (void)compiler.Value(*column.default_value, Scope());
    sql_.Fail(compiler.status());
  }
  const std::string char_used = type.char_length == 0 ? "" : type.in_characters ? "C" : "B";
  sql_.Run(
      "INSERT INTO qm_column(table_id, position, name, type_code, data_type, data_length,"
      " data_precision, data_scale, char_length, char_used, nullable, default_text)"
      " VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, nullif(?, ''), ?, nullif(?, ''))",
      table_id, static_cast<std::int64_t>(position), column.name, static_cast<int>(type.code),
      type.name, type.data_length, type.precision, type.scale, type.char_length, char_used,
      column.not_null ? 0 : 1, column.default_text);
  return "c" + std::to_string(sql_.LastRowId()) + " TEXT COLLATE " + std::string(type.Collation());
}

// The form of the table that redo written from now on refers to.
void DdlExecutor::NewShape(std::int64_t table_id) {
  const TablePtr table = Reload(table_id);
  if (!table) return;
  sql_.Run("INSERT INTO qm_shape(table_id, owner, name, columns) VALUES(?, ?, ?, ?)", table_id,
           table->owner, table->name, Blob{EncodeShapeColumns(table->columns)});
  sql_.Run("UPDATE qm_table SET shape = ? WHERE id = ?", sql_.LastRowId(), table_id);
}

void DdlExecutor::Change(const ObjectChange& change) {
  using ChangeKind = ObjectChange::Kind;
  if (change.kind == ChangeKind::DropUser) return DropUser(change.object.name, change.cascade);
  if (change.kind == ChangeKind::DropIndex || change.kind == ChangeKind::RenameIndex) {
    return ChangeIndex(change);
  }
  const TablePtr table = FindTable(change.object);
  if (!table) return;
  switch (change.kind) {
    case ChangeKind::DropTable:
      return DropTable(*table, change.cascade);
    case ChangeKind::DropConstraint:
      return DropConstraint(*table, change.name, change.cascade);
    case ChangeKind::RenameTable:
      return RenameTable(*table, change.name);
    default:  // Truncate
      for (const ForeignKey& key : table->children) {
        if (key.child_table != table->id) sql_.Fail(Ora(2266));
      }
      return sql_.Exec("DELETE FROM " + table->SqlName());
  }
}

void DdlExecutor::RenameTable(const Table& table, const std::string& new_name) {
  if (sql_.Int("SELECT 1 FROM qm_table WHERE owner = ? AND name = ?", table.owner, new_name)) {
    sql_.Fail(Ora(955));
  }
  sql_.Run("UPDATE qm_table SET name = ? WHERE id = ?", new_name, table.id);
  NewShape(table.id);
}

void DdlExecutor::DropTable(const Table& table, bool cascade) {
  for (const ForeignKey& key : table.children) {
    if (key.child_table == table.id) continue;
    if (!cascade) sql_.Fail(Ora(2449));
    DropConstraintRow(key.constraint_id);
  }
  for (const char* sql :
       {"DELETE FROM qm_constraint_column WHERE constraint_id IN"
        " (SELECT id FROM qm_constraint WHERE table_id = ?)",
        "DELETE FROM qm_constraint WHERE table_id = ?",
        "DELETE FROM qm_index_column WHERE index_id IN"
        " (SELECT id FROM qm_index WHERE table_id = ?)",
        "DELETE FROM qm_index WHERE table_id = ?", "DELETE FROM qm_column WHERE table_id = ?",
        "DELETE FROM qm_table WHERE id = ?"}) {
    sql_.Run(sql, table.id);
  }
  sql_.Exec("DROP TABLE " + table.SqlName());
}

}  // namespace quillmere::sandbox
