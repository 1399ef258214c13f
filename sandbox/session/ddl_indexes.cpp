#include "sandbox/session/ddl.h"
#include "sandbox/store/run_sql.h"

namespace quillmere::sandbox {

Status DdlExecutor::IndexNameIsFree(const std::string& owner, const std::string& name) {
  std::optional<std::int64_t> found;
  Status status =
      QueryInt(writer_, &found, "SELECT 1 FROM qm_index WHERE owner = ? AND name = ?", owner, name);
  return status.ok() && found ? Ora(955) : status;
}

// Whether an index on exactly these columns is there.
Status DdlExecutor::FindIndexOn(const Table& table, const std::vector<std::size_t>& columns,
                                bool* found) {
  std::string wanted;
  for (const std::size_t column : columns) wanted += std::to_string(table.columns[column].id) + ",";
  std::vector<std::int64_t> indexes;
  Status status =
      QueryInts(writer_, &indexes, "SELECT id FROM qm_index WHERE table_id = ?", table.id);
  *found = false;
  for (const std::int64_t index : indexes) {
    if (!status.ok()) return status;
    std::vector<std::int64_t> ids;
    status = QueryInts(writer_, &ids,
                       "SELECT column_id FROM qm_index_column WHERE index_id = ? ORDER BY position",
                       index);
    std::string has;
    for (const std::int64_t id : ids) has += std::to_string(id) + ",";
    *found = *found || has == wanted;
  }
  return status;
}

Status DdlExecutor::Create(const CreateIndex& create) {
  std::string owner;
  if (Status status = TargetOwner(create.index, "CREATE ANY INDEX", &owner); !status.ok()) {
    return status;
  }
  TablePtr table;
  Status status = FindTable(create.table, "INDEX", &table);
  if (status.ok()) status = IndexNameIsFree(owner, create.index.name);
  std::vector<std::size_t> columns;
  if (status.ok()) status = FindColumns(*table, create.columns, &columns);
  if (!status.ok()) return status;
  std::string sql_columns;
  for (const std::size_t column : columns) {
    if (table->columns[column].type.IsLarge()) return Ora(2327);
    sql_columns += (sql_columns.empty() ? "" : ", ") + table->columns[column].SqlName();
  }
  bool exists = false;
  if (status = FindIndexOn(*table, columns, &exists); !status.ok()) return status;
  if (exists) return Ora(1408);
  status =
      RunSql(writer_, "INSERT INTO qm_index(owner, name, table_id, is_unique) VALUES(?, ?, ?, ?)",
             owner, create.index.name, table->id, create.unique ? 1 : 0);
  if (!status.ok()) return status;
  const std::int64_t id = writer_->LastRowId();
  status = SaveColumns("qm_index_column", id, *table, columns);
  bool duplicates = false;
  if (status.ok() && create.unique) status = CheckPartialDuplicates(*table, columns, &duplicates);
  if (status.ok() && !duplicates) {
    status =
        writer_->Exec(std::string("CREATE ") + (create.unique ? "UNIQUE " : "") + "INDEX i" +
                      std::to_string(id) + " ON " + table->SqlName() + "(" + sql_columns + ")");
    duplicates = status.message().find("UNIQUE constraint failed") != std::string::npos;
  }
  Changed();
  return duplicates ? Ora(1452) : status;
}

Status DdlExecutor::Alter(const AlterIndex& alter) {
  const std::string owner = alter.index.owner.empty() ? context_.user : alter.index.owner;
  if (!may_(owner, "", "ALTER ANY INDEX")) return Ora(1418);
  std::optional<std::int64_t> id;
  Status status = QueryInt(writer_, &id, "SELECT id FROM qm_index WHERE owner = ? AND name = ?",
                           owner, alter.index.name);
  if (!status.ok()) return status;
  if (!id) return Ora(1418);
  if (alter.new_name.empty()) return {};
  if (status = IndexNameIsFree(owner, alter.new_name); !status.ok()) return status;
  Changed();
  return RunSql(writer_, "UPDATE qm_index SET name = ? WHERE id = ?", alter.new_name, *id);
}

Status DdlExecutor::DropIndex(const ObjectName& name) {
  const std::string owner = name.owner.empty() ? context_.user : name.owner;
  if (!may_(owner, "", "DROP ANY INDEX")) return Ora(1418);
  SqliteStatement* row = nullptr;
  Status status = PrepareSql(
      writer_, "SELECT id, constraint_id IS NOT NULL FROM qm_index WHERE owner = ? AND name = ?",
      &row, owner, name.name);
  bool found = false;
  if (status.ok()) status = row->Step(&found);
  if (!status.ok()) return status;
  if (!found) return Ora(1418);
  const std::int64_t id = row->Int(0);
  const bool enforces = row->Int(1) != 0;
  row->Reset();
  if (enforces) return Ora(2429);
  status = RunSql(writer_, "DELETE FROM qm_index_column WHERE index_id = ?", id);
  if (status.ok()) status = RunSql(writer_, "DELETE FROM qm_index WHERE id = ?", id);
  if (status.ok()) status = writer_->Exec("DROP INDEX i" + std::to_string(id));
  Changed();
  return status;
}

}  // namespace quillmere::sandbox
