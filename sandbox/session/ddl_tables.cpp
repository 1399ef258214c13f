#include <algorithm>
#include <set>

#include "sandbox/expr/constant.h"
#include "sandbox/redo/redo_record.h"
#include "sandbox/session/ddl.h"
#include "sandbox/session/row_values.h"
#include "sandbox/sql/parser.h"
#include "sandbox/store/run_sql.h"

namespace quillmere::sandbox {

namespace {

constexpr std::size_t kMaxColumns = 1000;

std::string Trimmed(std::string text) {
  text.erase(text.find_last_not_of(" \t\r\n") + 1);
  return text;
}

}  // namespace

Status DdlExecutor::FindTable(const ObjectName& name, const char* privilege, TablePtr* out) {
  const std::string owner = name.owner.empty() ? context_.user : name.owner;
  if (Status status = catalog_.FindTable(writer_, owner, name.name, out); !status.ok()) {
    return status;
  }
  if (may_(owner, name.name, privilege)) return {};
  return may_(owner, name.name, "SELECT ANY TABLE") ? Ora(1031) : Ora(942);
}

Status DdlExecutor::TargetOwner(const ObjectName& name, const char* privilege, std::string* out) {
  *out = name.owner.empty() ? context_.user : name.owner;
  bool exists = false;
  if (Status status = UserExists(*out, &exists); !status.ok()) return status;
  if (!exists) return {1918, "user '" + *out + "' does not exist"};
  return may_(*out, "", privilege) ? Status() : Ora(1031);
}

Status DdlExecutor::Execute(const Statement& statement) {
  if (const auto* create = std::get_if<CreateTable>(&statement)) return Create(*create);
  if (const auto* index = std::get_if<CreateIndex>(&statement)) return Create(*index);
  if (const auto* alter = std::get_if<AlterTable>(&statement)) return Alter(*alter);
  if (const auto* alter_index = std::get_if<AlterIndex>(&statement)) return Alter(*alter_index);
  if (const auto* drop = std::get_if<DropObject>(&statement)) return Drop(*drop);
  if (const auto* truncate = std::get_if<TruncateTable>(&statement)) return Truncate(*truncate);
  if (const auto* analyze = std::get_if<AnalyzeTable>(&statement)) return Analyze(*analyze);
  if (const auto* user = std::get_if<UserStatement>(&statement)) return ChangeUser(*user);
  if (const auto* grant = std::get_if<GrantStatement>(&statement)) return ChangeGrant(*grant);
  return Ora(900);
}

Status DdlExecutor::Create(const CreateTable& create) {
  ObjectName name = create.table;
  if (Status status = TargetOwner(create.table, "CREATE ANY TABLE", &name.owner); !status.ok()) {
    return status;
  }
  std::optional<std::int64_t> existing;
  Status status =
      QueryInt(writer_, &existing, "SELECT id FROM qm_table WHERE owner = ? AND name = ?",
               name.owner, name.name);
  if (!status.ok()) return status;
  if (existing) return Ora(955);
  if (create.columns.size() > kMaxColumns) return Ora(1792);
  std::set<std::string> seen;
  for (const ColumnDef& column : create.columns) {
    if (!seen.insert(column.name).second) return Ora(957, column.name);
  }
  const std::string tablespace = create.tablespace.empty() ? "USERS" : create.tablespace;
  status =
      RunSql(writer_, "INSERT INTO qm_table(owner, name, tablespace, shape) VALUES(?, ?, ?, 0)",
             name.owner, name.name, tablespace);
  if (!status.ok()) return status;
  const std::int64_t id = writer_->LastRowId();
  std::string body = "rid INTEGER PRIMARY KEY";
  for (std::size_t i = 0; i < create.columns.size(); ++i) {
    std::string column;
    status = AddColumnRow(name, id, i + 1, create.columns[i], &column);
    if (!status.ok()) return status;
    body += ", " + column;
  }
  status = writer_->Exec("CREATE TABLE t" + std::to_string(id) + "(" + body + ")");
  if (status.ok()) status = NewShape(id);
  if (!status.ok()) return status;
  Changed();
  return AddDeclaredConstraints(name, create.columns, create.constraints);
}

Status DdlExecutor::AddColumnRow(const ObjectName& table, std::int64_t table_id,
                                 std::size_t position, const ColumnDef& column,
                                 std::string* sqlite_column) {
  ColumnType type;
  if (Status status = ResolveType(column.type, &type); !status.ok()) {
    return {status.code(), status.message() + " (column " + table.owner + "." + table.name + "." +
                               column.name + ")"};
  }
  if (column.default_value) {
    if (!IsConstant(*column.default_value)) return {984, "column not allowed here"};
    Kind kind = Kind::Null;
    if (Status status = ConstantKind(*column.default_value, &kind); !status.ok()) return status;
  }
  const std::string default_text = Trimmed(column.default_text);
  const std::string char_used = type.char_length == 0 ? "" : type.in_characters ? "C" : "B";
  Status status =
      RunSql(writer_,
             "INSERT INTO qm_column(table_id, position, name, type_code, data_type, data_length,"
             " data_precision, data_scale, char_length, char_used, nullable, default_text)"
             " VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, nullif(?, ''), ?, nullif(?, ''))",
             table_id, static_cast<std::int64_t>(position), column.name,
             static_cast<int>(type.code), type.name, type.data_length, type.precision, type.scale,
             type.char_length, char_used, column.not_null ? 0 : 1, default_text);
  if (!status.ok()) return status;
  *sqlite_column =
      "c" + std::to_string(writer_->LastRowId()) + " TEXT COLLATE " + std::string(type.Collation());
  return {};
}

Status DdlExecutor::AddDeclaredConstraints(const ObjectName& table,
                                           const std::vector<ColumnDef>& columns,
                                           const std::vector<ConstraintDef>& others) {
  std::vector<const ConstraintDef*> all;
  for (const ColumnDef& column : columns) {
    for (const ConstraintDef& def : column.constraints) all.push_back(&def);
  }
  for (const ConstraintDef& def : others) all.push_back(&def);
  // A foreign key may reference a key of the same statement.
  for (const bool foreign : {false, true}) {
    for (const ConstraintDef* def : all) {
      if ((def->kind == ConstraintKind::ForeignKey) != foreign) continue;
      if (Status status = AddConstraint(table, *def); !status.ok()) return status;
    }
  }
  return {};
}

// The form of the table that redo written from now on refers to.
Status DdlExecutor::NewShape(std::int64_t table_id) {
  Changed();
  TablePtr table;
  if (Status status = catalog_.FindTableById(writer_, table_id, &table); !status.ok()) {
    return status;
  }
  SqliteStatement* insert = nullptr;
  Status status =
      PrepareSql(writer_, "INSERT INTO qm_shape(table_id, owner, name, columns) VALUES(?, ?, ?, ?)",
                 &insert, table_id, table->owner, table->name);
  if (!status.ok()) return status;
  insert->BindBlob(4, EncodeShapeColumns(table->columns));
  if (status = insert->Run(); !status.ok()) return status;
  Changed();
  return RunSql(writer_, "UPDATE qm_table SET shape = ? WHERE id = ?", writer_->LastRowId(),
                table_id);
}

Status DdlExecutor::Alter(const AlterTable& alter) {
  TablePtr table;
  if (Status status = FindTable(alter.table, "ALTER ANY TABLE", &table); !status.ok()) {
    return status;
  }
  switch (alter.action) {
    case AlterTable::Action::AddConstraint:
      return AddConstraint({table->owner, table->name}, alter.constraint);
    case AlterTable::Action::AddColumns:
      return AddColumns(*table, alter.columns);
    case AlterTable::Action::DropConstraint:
      return DropConstraint(*table, alter.name, alter.cascade);
    case AlterTable::Action::DropPrimaryKey: {
      const UniqueKey* key = table->PrimaryKey();
      if (key == nullptr) return {2441, "Cannot drop nonexistent primary key"};
      return DropConstraint(*table, key->name, alter.cascade);
    }
    case AlterTable::Action::Rename:
      return RenameTable(*table, alter.name);
  }
  return {};
}

Status DdlExecutor::AddColumns(const Table& table, const std::vector<ColumnDef>& columns) {
  if (columns.empty()) return {};
  if (table.columns.size() + columns.size() > kMaxColumns) return Ora(1792);
  std::optional<std::int64_t> any;
  Status status = QueryInt(writer_, &any, "SELECT 1 FROM " + table.SqlName() + " LIMIT 1");
  if (!status.ok()) return status;
  std::size_t position = table.columns.size();
  const ObjectName name{table.owner, table.name};
  for (const ColumnDef& column : columns) {
    const auto twin = std::count_if(columns.begin(), columns.end(), [&column](const auto& other) {
      return other.name == column.name;
    });
    if (table.FindColumn(column.name) >= 0 || twin > 1) return Ora(1430, column.name);
    if (any && column.not_null && !column.default_value) return Ora(1758);
    std::string sqlite_column;
    status = AddColumnRow(name, table.id, ++position, column, &sqlite_column);
    if (status.ok()) {
      status = writer_->Exec("ALTER TABLE " + table.SqlName() + " ADD COLUMN " + sqlite_column);
    }
    if (!status.ok()) return status;
  }
  if (status = NewShape(table.id); !status.ok()) return status;
  for (const ColumnDef& column : columns) {
    if (!column.default_value || !any) continue;
    if (status = FillColumn(table, column); !status.ok()) return status;
  }
  return AddDeclaredConstraints(name, columns, {});
}

// Rows that are there already take the default; no redo, as for all of DDL.
Status DdlExecutor::FillColumn(const Table& table, const ColumnDef& def) {
  TablePtr changed;
  if (Status status = catalog_.FindTableById(writer_, table.id, &changed); !status.ok()) {
    return status;
  }
  const Column& column = changed->columns[static_cast<std::size_t>(changed->FindColumn(def.name))];
  std::vector<Token> tokens;
  ExprPtr expr;
  Datum raw;
  Datum value;
  RowValue fitted;
  Status status = Tokenise(column.default_text, &tokens);
  if (status.ok()) status = ParseExpression(tokens, &expr);
  if (status.ok()) status = EvaluateConstant(*expr, tokens, context_, &raw);
  if (status.ok()) status = Convert(raw, column.type.kind(), context_, &value);
  if (status.ok()) status = FitValue(*changed, column, value, &fitted);
  if (!status.ok()) return status;
  if (!fitted) return column.nullable ? Status() : Ora(1758);
  return RunSql(writer_, "UPDATE " + table.SqlName() + " SET " + column.SqlName() + " = ?",
                *fitted);
}

Status DdlExecutor::RenameTable(const Table& table, const std::string& new_name) {
  std::optional<std::int64_t> existing;
  Status status =
      QueryInt(writer_, &existing, "SELECT id FROM qm_table WHERE owner = ? AND name = ?",
               table.owner, new_name);
  if (!status.ok()) return status;
  if (existing) return Ora(955);
  status = RunSql(writer_, "UPDATE qm_table SET name = ? WHERE id = ?", new_name, table.id);
  return status.ok() ? NewShape(table.id) : status;
}

Status DdlExecutor::Drop(const DropObject& drop) {
  if (drop.kind == DropObject::Kind::User) return DropUser(drop.object.name, drop.cascade);
  if (drop.kind == DropObject::Kind::Index) return DropIndex(drop.object);
  TablePtr table;
  if (Status status = FindTable(drop.object, "DROP ANY TABLE", &table); !status.ok()) {
    return status;
  }
  return DropTable(*table, drop.cascade);
}

Status DdlExecutor::DropTable(const Table& table, bool cascade) {
  for (const ForeignKey& key : table.children) {
    if (key.child_table == table.id) continue;
    if (!cascade) return Ora(2449);
    if (Status status = DropConstraintRow(key.constraint_id); !status.ok()) {
      return status;
    }
  }
  static const char* const kStatements[] = {
      "DELETE FROM qm_constraint_column WHERE constraint_id IN"
      " (SELECT id FROM qm_constraint WHERE table_id = ?)",
      "DELETE FROM qm_constraint WHERE table_id = ?",
      "DELETE FROM qm_index_column WHERE index_id IN"
      " (SELECT id FROM qm_index WHERE table_id = ?)",
      "DELETE FROM qm_index WHERE table_id = ?",
      "DELETE FROM qm_column WHERE table_id = ?",
      "DELETE FROM qm_table WHERE id = ?",
  };
  for (const char* sql : kStatements) {
    if (Status status = RunSql(writer_, sql, table.id); !status.ok()) return status;
  }
  Status status = RunSql(writer_, "DELETE FROM qm_grant WHERE owner = ? AND object = ?",
                         table.owner, table.name);
  if (status.ok()) status = writer_->Exec("DROP TABLE " + table.SqlName());
  Changed();
  return status;
}

Status DdlExecutor::Truncate(const TruncateTable& truncate) {
  TablePtr table;
  if (Status status = FindTable(truncate.table, "DROP ANY TABLE", &table); !status.ok()) {
    return status;
  }
  for (const ForeignKey& key : table->children) {
    if (key.child_table != table->id) return Ora(2266);
  }
  return writer_->Exec("DELETE FROM " + table->SqlName());
}

Status DdlExecutor::Analyze(const AnalyzeTable& analyze) {
  TablePtr table;
  if (Status status = FindTable(analyze.table, "ANALYZE ANY", &table); !status.ok()) return status;
  const std::string rows =
      analyze.remove ? "NULL" : "(SELECT count(*) FROM " + table->SqlName() + ")";
  return RunSql(writer_, "UPDATE qm_table SET num_rows = " + rows + " WHERE id = ?", table->id);
}

}  // namespace quillmere::sandbox
