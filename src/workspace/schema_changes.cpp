// SPDX-License-Identifier: MIT
#include "workspace/schema_changes.h"

#include <utility>

#include "workspace/source_operations.h"

namespace quillmere {
namespace {

// What was begun; of very many objects the first.
SchemaRun Noted(Workspace& workspace, std::string_view action, const SchemaSelection& selection,
                const std::string& how, SchemaRun run) {
  constexpr std::size_t kMostNamed = 20;
  if (!run.refused.empty() || run.succeeded + run.failed == 0) return run;
  std::string objects;
  for (std::size_t i = 0; i < selection.items.size() && i < kMostNamed; ++i) {
    const SchemaItem& item = selection.items[i];
    objects += (i == 0 ? "" : ", ") + item.owner + "." + item.name;
  }
  if (selection.items.size() > kMostNamed) objects += ", ...";
  workspace.Actions().Note(action,
                           objects + " of " + workspace.Registry().At(selection.source).name, {},
                           how + (how.empty() ? "" : ", ") + std::to_string(run.succeeded) +
                               " done, " + std::to_string(run.failed) + " failed");
  return run;
}

// Changes a copy of the data source's record along with its database, and takes it over.
template <typename Change>
SchemaRun Run(Workspace& workspace, std::string refused, std::size_t index, DatabaseWork& work,
              Change change) {
  struct Changed {
    SchemaRun run;
    DataSource record;
  };
  SchemaRun run;
  run.refused = std::move(refused);
  if (!run.refused.empty()) return run;
  DataSource& source = workspace.Registry().At(index);
  const auto part = [library = &workspace.Oci(), settings = &workspace.ProgramSettings(),
                     record = source,
                     change = std::move(change)](SchemaListener& listener, LogLines& log) mutable {
    SchemaRun done = change(SchemaOperations(*library, log, *settings), record, listener);
    return Changed{std::move(done), std::move(record)};
  };
  std::optional<Changed> changed = RunFor(work, workspace.Log(), part);
  if (!changed) {
    run.cancelled = true;
    return run;
  }
  run = std::move(changed->run);
  if (!work.AllLogged()) run.logged = false;
  if (!run.refused.empty()) return run;
  TakeLists(source, std::move(changed->record));
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
                      DatabaseWork& work) {
  return Noted(workspace, "drop", selection, cascade ? "cascade" : "",
               Run(workspace, WhySchemaChangeRefused(workspace, SchemaAction::Drop, selection),
                   selection.source, work,
                   [selection, cascade](SchemaOperations operations, DataSource& record,
                                        SchemaListener& listener) {
                     return operations.DropItems(record, selection.kind, selection.items, cascade,
                                                 listener);
                   }));
}

SchemaRun RenameObject(Workspace& workspace, const SchemaSelection& selection,
                       std::string_view new_name, DatabaseWork& work) {
  return Noted(workspace, "rename", selection, "to " + std::string(new_name),
               Run(workspace, WhySchemaChangeRefused(workspace, SchemaAction::Rename, selection),
                   selection.source, work,
                   [selection, name = std::string(new_name)](
                       SchemaOperations operations, DataSource& record, SchemaListener& listener) {
                     return operations.RenameItem(record, selection.kind, selection.items.front(),
                                                  name, listener);
                   }));
}

SchemaRun MigrateObjects(Workspace& workspace, const SchemaSelection& selection,
                         const MigrateTarget& target, DatabaseWork& work) {
  std::string refused = WhySchemaChangeRefused(workspace, SchemaAction::Migrate, selection);
  if (refused.empty() && !target.busy_agreed) refused = WhyTargetBusy(workspace, target.source);
  const LogOn to = workspace.Registry().At(target.source);
  return Noted(
      workspace, "migrate", selection, "to " + to.name,
      Run(workspace, std::move(refused), selection.source, work,
          [selection, to, options = target.options](
              SchemaOperations operations, const DataSource& record, SchemaListener& listener) {
            return operations.MigrateItems(record, to, selection.kind, selection.items, options,
                                           listener);
          }));
}

}  // namespace quillmere
