// SPDX-License-Identifier: MIT
#include "sandbox/session/ddl.h"

namespace quillmere::sandbox {

void DdlExecutor::CheckIndexName(const std::string& owner, const std::string& name) {
  if (sql_.Int("SELECT 1 FROM qm_index WHERE owner = ? AND name = ?", owner, name)) {
    sql_.Fail(Ora(955));
  }
}

// Whether an index on exactly these columns is there.
bool DdlExecutor::HasIndexOn(const Table& table, const std::vector<std::size_t>& columns) {
  std::vector<std::int64_t> wanted;
  wanted.reserve(columns.size());
  for (const std::size_t column : columns) wanted.push_back(table.columns[column].id);
  for (const std::int64_t index :
       sql_.Ints("SELECT id FROM qm_index WHERE table_id = ?", table.id)) {
    if (sql_.Ints("SELECT column_id FROM qm_index_column WHERE index_id = ? ORDER BY position",
                  index) == wanted) {
      return true;
    }
  }
  return false;
}

void DdlExecutor::MakeIndex(const std::string& name, const Table& table,
                            const std::vector<std::size_t>& columns, IndexKind kind,
                            const Status& duplicates) {
  std::string plain;
  std::string filled;
  std::string where;
  bool nullable = false;
  for (const std::size_t index : columns) {
    const std::string column = table.columns[index].SqlName();
    plain += (plain.empty() ? "" : ",") + column;
    filled += (filled.empty() ? "ifnull(" : ",ifnull(") + column + ",x'')";
    where += (where.empty() ? " WHERE " : " OR ") + column + " IS NOT NULL";
    nullable = nullable || table.columns[index].nullable;
  }
  const std::string on = name + " ON " + table.SqlName() + "(";
  std::string sql = "CREATE UNIQUE INDEX " + on + plain + ")";
  if (kind == IndexKind::Plain) sql = "CREATE INDEX " + on + plain + ")";
  if (kind == IndexKind::Unique && nullable && columns.size() > 1) {
    // For SQLite a key with a NULL in it equals no other; for Oracle only one of nothing but NULLs.
    // Rows are found by a second index, which knows the columns as they are.
    sql =
        "CREATE UNIQUE INDEX " + on + filled + ")" + where + "; CREATE INDEX n" + on + plain + ")";
  }
  const Status status = sql_.ok() ? writer_->Exec(sql) : Status();
  const bool twice = status.message().find("UNIQUE constraint failed") != std::string::npos;
  sql_.Fail(twice ? duplicates : status);
}

void DdlExecutor::RemoveIndex(const std::string& name) {
  sql_.Exec("DROP INDEX IF EXISTS " + name + "; DROP INDEX IF EXISTS n" + name);
}

void DdlExecutor::Create(const CreateIndex& create) {
  const std::string owner = TargetOwner(create.index);
  const TablePtr table = FindTable(create.table);
  if (!table) return;
  CheckIndexName(owner, create.index.name);
  const std::vector<std::size_t> columns = Columns(*table, create.columns);
  for (const std::size_t column : columns) {
    if (table->columns[column].type.IsLarge()) sql_.Fail(Ora(2327));
  }
  if (HasIndexOn(*table, columns)) sql_.Fail(Ora(1408));
  sql_.Run("INSERT INTO qm_index(owner, name, table_id, is_unique) VALUES(?, ?, ?, ?)", owner,
           create.index.name, table->id, create.unique ? 1 : 0);
  const std::int64_t id = sql_.LastRowId();
  SaveColumns("qm_index_column", id, *table, columns);
  MakeIndex("i" + std::to_string(id), *table, columns,
            create.unique ? IndexKind::Unique : IndexKind::Plain, Ora(1452));
}

void DdlExecutor::ChangeIndex(const ObjectChange& change) {
  const bool drop = change.kind == ObjectChange::Kind::DropIndex;
  const std::string owner = OwnerOf(change.object);
  const auto id =
      sql_.Int("SELECT id FROM qm_index WHERE owner = ? AND name = ?", owner, change.object.name);
  if (!id || !May(owner)) return sql_.Fail(Ora(1418));
  if (!drop) {
    CheckIndexName(owner, change.name);
    return sql_.Run("UPDATE qm_index SET name = ? WHERE id = ?", change.name, *id);
  }
  if (sql_.Int("SELECT 1 FROM qm_index WHERE id = ? AND constraint_id IS NOT NULL", *id)) {
    return sql_.Fail(Ora(2429));
  }
  sql_.Run("DELETE FROM qm_index_column WHERE index_id = ?", *id);
  sql_.Run("DELETE FROM qm_index WHERE id = ?", *id);
  RemoveIndex("i" + std::to_string(*id));
}

}  // namespace quillmere::sandbox
