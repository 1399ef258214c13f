#include <algorithm>

#include "sandbox/session/ddl.h"
#include "sandbox/store/run_sql.h"

namespace quillmere::sandbox {

namespace {

std::string SqlColumns(const Table& table, const std::vector<std::size_t>& columns) {
  std::string sql;
  for (const std::size_t column : columns) {
    if (!sql.empty()) sql += ", ";
    sql += table.columns[column].SqlName();
  }
  return sql;
}

std::string FullName(const Table& table, const std::string& name) {
  return "(" + table.owner + "." + name + ")";
}

}  // namespace

Status DdlExecutor::FindColumns(const Table& table, const std::vector<std::string>& names,
                                std::vector<std::size_t>* out) const {
  for (const std::string& name : names) {
    const int column = table.FindColumn(name);
    if (column < 0) return {904, "\"" + name + "\": invalid identifier"};
    const auto position = static_cast<std::size_t>(column);
    if (std::find(out->begin(), out->end(), position) != out->end()) return Ora(957, name);
    out->push_back(position);
  }
  return {};
}

Status DdlExecutor::SaveColumns(const char* table_name, std::int64_t id, const Table& table,
                                const std::vector<std::size_t>& columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    Status status = RunSql(writer_, std::string("INSERT INTO ") + table_name + " VALUES(?, ?, ?)",
                           id, static_cast<std::int64_t>(i) + 1, table.columns[columns[i]].id);
    if (!status.ok()) return status;
  }
  return {};
}

Status DdlExecutor::ConstraintName(const Table& table, const ConstraintDef& def, std::string* out) {
  *out = def.name;
  std::optional<std::int64_t> found;
  if (out->empty()) {
    Status status = QueryInt(writer_, &found, "SELECT next_name FROM qm_meta WHERE id = 1");
    if (!status.ok()) return status;
    const std::string digits = std::to_string(found.value_or(1));
    *out = "SYS_C" + std::string(digits.size() < 8 ? 8 - digits.size() : 0, '0') + digits;
    return RunSql(writer_, "UPDATE qm_meta SET next_name = next_name + 1 WHERE id = 1");
  }
  Status status =
      QueryInt(writer_, &found, "SELECT 1 FROM qm_constraint WHERE owner = ? AND name = ?",
               table.owner, *out);
  return status.ok() && found ? Ora(2264) : status;
}

Status DdlExecutor::AddConstraint(const ObjectName& name, const ConstraintDef& def) {
  TablePtr table;
  Status status = catalog_.FindTable(writer_, name.owner, name.name, &table);
  std::string constraint_name;
  if (status.ok()) status = ConstraintName(*table, def, &constraint_name);
  if (!status.ok()) return status;
  if (def.kind == ConstraintKind::NotNull) {
    // The column itself says NOT NULL; the name is only reserved.
    return RunSql(writer_,
                  "INSERT INTO qm_constraint(owner, name, table_id, type) VALUES(?, ?, ?, 'C')",
                  table->owner, constraint_name, table->id);
  }
  status = def.kind == ConstraintKind::ForeignKey ? AddForeignKey(*table, constraint_name, def)
                                                  : AddKey(*table, constraint_name, def);
  Changed();
  return status;
}

Status DdlExecutor::CheckPartialDuplicates(const Table& table,
                                           const std::vector<std::size_t>& columns, bool* found) {
  *found = false;
  if (columns.size() < 2) return {};
  std::string any;
  std::string all;
  for (const std::size_t column : columns) {
    const std::string name = table.columns[column].SqlName();
    any += (any.empty() ? "" : " OR ") + name + " IS NULL";
    all += (all.empty() ? "" : " AND ") + name + " IS NULL";
  }
  std::optional<std::int64_t> row;
  Status status =
      QueryInt(writer_, &row,
               "SELECT 1 FROM " + table.SqlName() + " WHERE (" + any + ") AND NOT (" + all +
                   ") GROUP BY " + SqlColumns(table, columns) + " HAVING count(*) > 1 LIMIT 1");
  *found = row.has_value();
  return status;
}

Status DdlExecutor::AddKey(const Table& table, const std::string& name, const ConstraintDef& def) {
  const bool primary = def.kind == ConstraintKind::PrimaryKey;
  if (primary && table.PrimaryKey() != nullptr) return Ora(2260);
  std::vector<std::size_t> columns;
  if (Status status = FindColumns(table, def.columns, &columns); !status.ok()) return status;
  for (const UniqueKey& key : table.keys) {
    if (key.constraint_id != 0 && key.columns == columns) return Ora(2261);
  }
  for (const std::size_t column : columns) {
    if (table.columns[column].type.IsLarge()) return Ora(2329);
    if (!primary) continue;
    std::optional<std::int64_t> null;
    Status status = QueryInt(writer_, &null,
                             "SELECT 1 FROM " + table.SqlName() + " WHERE " +
                                 table.columns[column].SqlName() + " IS NULL LIMIT 1");
    if (!status.ok()) return status;
    if (null) return Ora(1449, table.columns[column].name);
  }
  bool has_index = false;
  Status status = FindIndexOn(table, columns, &has_index);
  if (status.ok() && !has_index) status = IndexNameIsFree(table.owner, name);
  if (!status.ok()) return status;
  status =
      RunSql(writer_, "INSERT INTO qm_constraint(owner, name, table_id, type) VALUES(?, ?, ?, ?)",
             table.owner, name, table.id, std::string(primary ? "P" : "U"));
  if (!status.ok()) return status;
  const std::int64_t id = writer_->LastRowId();
  status = SaveColumns("qm_constraint_column", id, table, columns);
  if (status.ok() && !has_index) {
    status = RunSql(writer_,
                    "INSERT INTO qm_index(owner, name, table_id, is_unique, constraint_id)"
                    " VALUES(?, ?, ?, 1, ?)",
                    table.owner, name, table.id, id);
    if (status.ok()) {
      status = SaveColumns("qm_index_column", writer_->LastRowId(), table, columns);
    }
  }
  if (!status.ok()) return status;
  bool duplicates = false;
  status = CheckPartialDuplicates(table, columns, &duplicates);
  if (status.ok() && !duplicates) {
    status = writer_->Exec("CREATE UNIQUE INDEX k" + std::to_string(id) + " ON " + table.SqlName() +
                           "(" + SqlColumns(table, columns) + ")");
    duplicates = status.message().find("UNIQUE constraint failed") != std::string::npos;
  }
  if (!duplicates) return status;
  const std::string subject = "cannot validate " + FullName(table, name);
  return primary ? Status(2437, subject + " - primary key violated")
                 : Status(2299, subject + " - duplicate keys found");
}

Status DdlExecutor::FindReferencedKey(const Table& child, const ConstraintDef& def,
                                      TablePtr* parent, const UniqueKey** key,
                                      std::vector<std::size_t>* child_columns) {
  ObjectName referenced = def.referenced;
  if (referenced.owner.empty()) referenced.owner = child.owner;
  Status status = FindTable(referenced, "REFERENCES", parent);
  std::vector<std::size_t> given;
  if (status.ok()) status = FindColumns(child, def.columns, &given);
  if (!status.ok()) return status;
  std::vector<std::size_t> wanted;
  if (def.referenced_columns.empty()) {
    *key = (*parent)->PrimaryKey();
    if (*key == nullptr) return Ora(2268);
    wanted = (*key)->columns;
  } else if (status = FindColumns(**parent, def.referenced_columns, &wanted); !status.ok()) {
    return status;
  }
  if (given.size() != wanted.size()) return Ora(2256);
  for (const UniqueKey& candidate : (*parent)->keys) {
    if (candidate.constraint_id != 0 &&
        std::is_permutation(candidate.columns.begin(), candidate.columns.end(), wanted.begin(),
                            wanted.end())) {
      *key = &candidate;
    }
  }
  if (*key == nullptr) return Ora(2270);
  for (const std::size_t column : (*key)->columns) {
    const auto at = std::find(wanted.begin(), wanted.end(), column);
    const std::size_t own = given[static_cast<std::size_t>(at - wanted.begin())];
    if (child.columns[own].type.kind() != (*parent)->columns[column].type.kind()) return Ora(2267);
    child_columns->push_back(own);
  }
  return {};
}

Status DdlExecutor::CheckForeignRows(const Table& child, const Table& parent, const UniqueKey& key,
                                     const std::vector<std::size_t>& columns,
                                     const std::string& name) {
  std::string match;
  std::string bound;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string own = "c." + child.columns[columns[i]].SqlName();
    match += (i == 0 ? "p." : " AND p.") + parent.columns[key.columns[i]].SqlName() + " = " + own;
    bound += (i == 0 ? "" : " AND ") + own + " IS NOT NULL";
  }
  std::optional<std::int64_t> orphan;
  Status status = QueryInt(writer_, &orphan,
                           "SELECT 1 FROM " + child.SqlName() + " c WHERE " + bound +
                               " AND NOT EXISTS (SELECT 1 FROM " + parent.SqlName() + " p WHERE " +
                               match + ") LIMIT 1");
  if (!status.ok() || !orphan) return status;
  return {2298, "cannot validate " + FullName(child, name) + " - parent keys not found"};
}

Status DdlExecutor::AddForeignKey(const Table& table, const std::string& name,
                                  const ConstraintDef& def) {
  TablePtr parent;
  const UniqueKey* key = nullptr;
  std::vector<std::size_t> columns;
  Status status = FindReferencedKey(table, def, &parent, &key, &columns);
  if (!status.ok()) return status;
  for (const ForeignKey& existing : table.parents) {
    bool same = existing.child_columns.size() == columns.size();
    for (std::size_t i = 0; same && i < columns.size(); ++i) {
      same = existing.child_columns[i] == table.columns[columns[i]].id &&
             existing.parent_columns[i] == parent->columns[key->columns[i]].id;
    }
    if (same) return Ora(2275);
  }
  status = CheckForeignRows(table, *parent, *key, columns, name);
  if (!status.ok()) return status;
  status = RunSql(writer_,
                  "INSERT INTO qm_constraint(owner, name, table_id, type, ref_id, delete_rule)"
                  " VALUES(?, ?, ?, 'R', ?, ?)",
                  table.owner, name, table.id, key->constraint_id, def.delete_rule);
  if (!status.ok()) return status;
  const std::int64_t id = writer_->LastRowId();
  status = SaveColumns("qm_constraint_column", id, table, columns);
  if (!status.ok()) return status;
  // Without it every change of a parent would read the whole child table.
  return writer_->Exec("CREATE INDEX f" + std::to_string(id) + " ON " + table.SqlName() + "(" +
                       SqlColumns(table, columns) + ")");
}

Status DdlExecutor::DropConstraint(const Table& table, const std::string& name, bool cascade) {
  std::optional<std::int64_t> id;
  Status status = QueryInt(writer_, &id,
                           "SELECT id FROM qm_constraint WHERE owner = ? AND name = ?"
                           " AND table_id = ?",
                           table.owner, name, table.id);
  if (!status.ok()) return status;
  if (!id) return Ora(2443);
  std::vector<std::int64_t> references;
  status = QueryInts(writer_, &references, "SELECT id FROM qm_constraint WHERE ref_id = ?", *id);
  if (!status.ok()) return status;
  if (!references.empty() && !cascade) return Ora(2273);
  for (const std::int64_t reference : references) {
    if (status = DropConstraintRow(reference); !status.ok()) return status;
  }
  return DropConstraintRow(*id);
}

Status DdlExecutor::DropConstraintRow(std::int64_t id) {
  Changed();
  const std::string number = std::to_string(id);
  Status status =
      writer_->Exec("DROP INDEX IF EXISTS k" + number + "; DROP INDEX IF EXISTS f" + number);
  static const char* const kStatements[] = {
      ("DELETE FROM qm_index_column WHERE index_id IN"
       " (SELECT id FROM qm_index WHERE constraint_id = ?)"),
      "DELETE FROM qm_index WHERE constraint_id = ?",
      "DELETE FROM qm_constraint_column WHERE constraint_id = ?",
      "DELETE FROM qm_constraint WHERE id = ?",
  };
  for (const char* sql : kStatements) {
    if (status.ok()) status = RunSql(writer_, sql, id);
  }
  return status;
}

}  // namespace quillmere::sandbox
