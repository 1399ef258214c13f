// SPDX-License-Identifier: MIT
// Data definition: runs one statement inside a transaction that the caller commits, or takes back
// when it fails. Used by the thread that holds the session.
#pragma once

#include <string>
#include <vector>

#include "sandbox/sql/ast.h"
#include "sandbox/store/catalog.h"
#include "sandbox/store/sql_runner.h"
#include "sandbox/values/datum.h"

namespace quillmere::sandbox {

// One for each statement. It keeps its first error and does nothing more after it; what finds
// something then gives nothing.
class DdlExecutor {
 public:
  // All must outlive it. `last_scn` is the SCN given latest; `dba` may do everything, others what
  // they like with their own objects.
  DdlExecutor(SqliteConnection* writer, Catalog* catalog, const EvalContext* context,
              std::int64_t last_scn, bool dba)
      : writer_(writer),
        sql_(writer),
        catalog_(*catalog),
        context_(*context),
        last_scn_(last_scn),
        dba_(dba) {}

  Status Execute(const Statement& statement);

 private:
  // Tables (ddl_tables.cpp)
  void CreateTable(const TableDefinition& def);
  std::string AddColumnRow(const ObjectName& table, std::int64_t table_id, std::size_t position,
                           const ColumnDef& column);
  void AddColumns(const Table& table, const std::vector<ColumnDef>& columns);
  void CheckColumns(const std::vector<ColumnDef>& columns);
  void NewShape(std::int64_t table_id);
  void Change(const ObjectChange& change);
  void RenameTable(const Table& table, const std::string& new_name);
  void ChangeLogging(const DatabaseChange& change);
  void DropTable(const Table& table, bool cascade);

  // Constraints (ddl_constraints.cpp)
  void AddConstraints(std::int64_t table_id, const std::vector<ConstraintDef>& defs);
  void AddKey(const Table& table, const std::string& name, const ConstraintDef& def);
  void AddForeignKey(const Table& table, const std::string& name, const ConstraintDef& def);
  TablePtr FindReferencedKey(const Table& child, const ConstraintDef& def, const UniqueKey** key,
                             std::vector<std::size_t>* child_columns);
  std::string ConstraintName(const Table& table, const ConstraintDef& def);
  void DropConstraint(const Table& table, std::string name, bool cascade);
  void DropConstraintRow(std::int64_t id);
  std::vector<std::size_t> Columns(const Table& table, const std::vector<std::string>& names);
  void SaveColumns(const std::string& list, std::int64_t id, const Table& table,
                   const std::vector<std::size_t>& columns);

  // Indexes (ddl_indexes.cpp)
  void Create(const CreateIndex& create);
  void ChangeIndex(const ObjectChange& change);
  bool HasIndexOn(const Table& table, const std::vector<std::size_t>& columns);
  void CheckIndexName(const std::string& owner, const std::string& name);
  enum class IndexKind { Plain, Unique, Primary };
  // `duplicates` is the error when rows are there that the index must not have.
  void MakeIndex(const std::string& name, const Table& table,
                 const std::vector<std::size_t>& columns, IndexKind kind, const Status& duplicates);
  // `name` is what it was made under.
  void RemoveIndex(const std::string& name);

  // Users (ddl_users.cpp)
  void ChangeUser(const UserStatement& user);
  void DropUser(const std::string& name, bool cascade);
  bool UserExists(const std::string& name);

  bool May(const std::string& owner) const { return dba_ || owner == context_.user; }
  std::string OwnerOf(const ObjectName& name) const {
    return name.owner.empty() ? context_.user : name.owner;
  }
  TablePtr FindTable(const ObjectName& name);
  // As it is after the changes so far.
  TablePtr Reload(std::int64_t table_id);
  // The owner of an object being made: named or the session's user, who may make it there.
  std::string TargetOwner(const ObjectName& name);

  SqliteConnection* writer_;
  SqlRunner sql_;
  Catalog& catalog_;
  const EvalContext& context_;
  std::int64_t last_scn_;
  bool dba_;
};

}  // namespace quillmere::sandbox
