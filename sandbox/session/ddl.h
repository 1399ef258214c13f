// Data definition: runs one statement inside a transaction that the caller commits or takes back.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "sandbox/sql/ast.h"
#include "sandbox/store/catalog.h"
#include "sandbox/values/datum.h"

namespace quillmere::sandbox {

class DdlExecutor {
 public:
  // Whether the session may do to an owner's object what the privilege is for.
  using Permission = std::function<bool(const std::string& owner, const std::string& object,
                                        const std::string& privilege)>;

  DdlExecutor(SqliteConnection* writer, Catalog* catalog, const EvalContext* context,
              Permission permission)
      : writer_(writer), catalog_(*catalog), context_(*context), may_(std::move(permission)) {}

  Status Execute(const Statement& statement);

 private:
  // Tables (ddl_tables.cpp)
  Status Create(const CreateTable& create);
  Status AddColumnRow(const ObjectName& table, std::int64_t table_id, std::size_t position,
                      const ColumnDef& column, std::string* sqlite_column);
  Status AddDeclaredConstraints(const ObjectName& table, const std::vector<ColumnDef>& columns,
                                const std::vector<ConstraintDef>& others);
  Status Alter(const AlterTable& alter);
  Status AddColumns(const Table& table, const std::vector<ColumnDef>& columns);
  Status FillColumn(const Table& table, const ColumnDef& column);
  Status RenameTable(const Table& table, const std::string& new_name);
  Status NewShape(std::int64_t table_id);
  Status Drop(const DropObject& drop);
  Status DropTable(const Table& table, bool cascade);
  Status Truncate(const TruncateTable& truncate);
  Status Analyze(const AnalyzeTable& analyze);

  // Constraints (ddl_constraints.cpp)
  Status AddConstraint(const ObjectName& table, const ConstraintDef& def);
  Status AddKey(const Table& table, const std::string& name, const ConstraintDef& def);
  Status AddForeignKey(const Table& table, const std::string& name, const ConstraintDef& def);
  Status FindReferencedKey(const Table& child, const ConstraintDef& def, TablePtr* parent,
                           const UniqueKey** key, std::vector<std::size_t>* child_columns);
  Status CheckForeignRows(const Table& child, const Table& parent, const UniqueKey& key,
                          const std::vector<std::size_t>& columns, const std::string& name);
  Status ConstraintName(const Table& table, const ConstraintDef& def, std::string* out);
  Status DropConstraint(const Table& table, const std::string& name, bool cascade);
  Status DropConstraintRow(std::int64_t id);
  Status FindColumns(const Table& table, const std::vector<std::string>& names,
                     std::vector<std::size_t>* out) const;
  Status SaveColumns(const char* table_name, std::int64_t id, const Table& table,
                     const std::vector<std::size_t>& columns);
  Status CheckPartialDuplicates(const Table& table, const std::vector<std::size_t>& columns,
                                bool* found);

  // Indexes (ddl_indexes.cpp)
  Status Create(const CreateIndex& create);
  Status Alter(const AlterIndex& alter);
  Status DropIndex(const ObjectName& name);
  Status FindIndexOn(const Table& table, const std::vector<std::size_t>& columns, bool* found);
  Status IndexNameIsFree(const std::string& owner, const std::string& name);

  // Users (ddl_users.cpp)
  Status ChangeUser(const UserStatement& user);
  Status DropUser(const std::string& name, bool cascade);
  Status ChangeGrant(const GrantStatement& grant);
  Status UserExists(const std::string& name, bool* out);

  Status FindTable(const ObjectName& name, const char* privilege, TablePtr* out);
  // The owner of an object being made: named or the session's user, who may make it there.
  Status TargetOwner(const ObjectName& name, const char* privilege, std::string* out);
  // Forgets what the catalog knew before the change.
  void Changed() { catalog_.Clear(); }

  SqliteConnection* writer_;
  Catalog& catalog_;
  const EvalContext& context_;
  Permission may_;
};

}  // namespace quillmere::sandbox
