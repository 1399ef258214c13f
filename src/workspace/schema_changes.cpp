// SPDX-License-Identifier: MIT
#include "workspace/schema_changes.h"

#include <utility>

#include "workspace/source_operations.h"

namespace quillmere {
namespace {

SchemaOperations OperationsOf(Workspace& workspace) {
  return {workspace.Oci(), workspace.Log(), workspace.ProgramSettings()};
}

template <typename Change>
SchemaRun Run(Workspace& workspace, std::string refused, const Change& change) {
  SchemaRun run;
  run.refused = std::move(refused);
  if (run.refused.empty()) run = change(OperationsOf(workspace));
  if (!run.refused.empty()) return run;
  if (!workspace.Registry().Save(run.unsaved)) workspace.Log().Add(run.unsaved, true);
  return run;
}

}  // namespace

std::string WhySchemaChangeRefused(const Workspace& workspace, SchemaAction action,
                                   const SchemaSelection& selection) {
  if (selection.items.empty()) return "Please select at least one item to operate";
  if (IsUsedByRunningJob(workspace.Jobs(), workspace.Registry().At(selection.source).name)) {
    return "Database is used in a running job";
  }
  if (action == SchemaAction::Rename && selection.items.size() > 1) {
    return "Can only select one item to change.";
  }
  return {};
}

std::string WhyTargetBusy(const Workspace& workspace, std::size_t target) {
  const std::string& name = workspace.Registry().At(target).name;
  return IsUsedByRunningJob(workspace.Jobs(), name) ? name + " is used in a running job" : "";
}

SchemaRun DropObjects(Workspace& workspace, const SchemaSelection& selection, bool cascade,
                      SchemaListener& listener) {
  return Run(workspace, WhySchemaChangeRefused(workspace, SchemaAction::Drop, selection),
             [&](SchemaOperations operations) {
               return operations.DropItems(workspace.Registry().At(selection.source),
                                           selection.kind, selection.items, cascade, listener);
             });
}

SchemaRun RenameObject(Workspace& workspace, const SchemaSelection& selection,
                       std::string_view new_name, SchemaListener& listener) {
  return Run(workspace, WhySchemaChangeRefused(workspace, SchemaAction::Rename, selection),
             [&](SchemaOperations operations) {
               return operations.RenameItem(workspace.Registry().At(selection.source),
                                            selection.kind, selection.items.front(), new_name,
                                            listener);
             });
}

SchemaRun MigrateObjects(Workspace& workspace, const SchemaSelection& selection,
                         const MigrateTarget& target, SchemaListener& listener) {
  std::string refused = WhySchemaChangeRefused(workspace, SchemaAction::Migrate, selection);
  if (refused.empty() && !target.busy_agreed) refused = WhyTargetBusy(workspace, target.source);
  return Run(workspace, std::move(refused), [&](SchemaOperations operations) {
    const DataSourceRegistry& registry = workspace.Registry();
    return operations.MigrateItems(registry.At(selection.source), registry.At(target.source),
                                   selection.kind, selection.items, target.options, listener);
  });
}

}  // namespace quillmere
