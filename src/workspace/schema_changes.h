// SPDX-License-Identifier: MIT
// Dropping, renaming and migrating objects of registered data sources, with the rules that running
// jobs set. User-interface thread; what connects does it where the DatabaseWork wants it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "schemaops/schema_operations.h"
#include "workspace/database_work.h"
#include "workspace/workspace.h"

namespace quillmere {

// The objects that an operator chose. Data sources are named by their index in the registry.
struct SchemaSelection {
  std::size_t source = 0;
  ObjectKind kind = ObjectKind::Table;
  std::vector<SchemaItem> items;
};

enum class SchemaAction { Drop, Rename, Migrate };

// Why the action is not for these objects, or not now; empty when it may run. The operations below
// ask it, too: who opens a dialog before asks it first.
std::string WhySchemaChangeRefused(const Workspace& workspace, SchemaAction action,
                                   const SchemaSelection& selection);

// Each of them refuses as above, runs, and saves the registry with what became of the cached lists.
// A registry that cannot be saved is told in the result and in the log; what was done in the
// database is done.
SchemaRun DropObjects(Workspace& workspace, const SchemaSelection& selection, bool cascade,
                      DatabaseWork& work);
SchemaRun RenameObject(Workspace& workspace, const SchemaSelection& selection,
                       std::string_view new_name, DatabaseWork& work);

struct MigrateTarget {
  std::size_t source = 0;
  MigrateOptions options;
  bool busy_agreed = false;  // the operator was told that a running job uses it
};

SchemaRun MigrateObjects(Workspace& workspace, const SchemaSelection& selection,
                         const MigrateTarget& target, DatabaseWork& work);

// What the operator is to be told before objects are created on the data source; empty when no
// running job uses it.
std::string WhyTargetBusy(const Workspace& workspace, std::size_t target);

}  // namespace quillmere
