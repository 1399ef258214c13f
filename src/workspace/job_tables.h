// Which tables a job carries, and to which owner: read from its source, included, excluded, given
// another owner. User-interface thread; the job must rest.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

// Why a job that is not stopped or paused cannot be changed.
std::string WhyBusy(std::string_view job_name);

// Takes the owners and tables of the job's source over into the job: known tables keep what the
// operator chose and what was counted, new ones are included, those that are gone go with their
// counters. On failure the log says why and the lists stay. Saves nothing.
Outcome ReadTables(Workspace& workspace, std::size_t index);

// The same as an action of its own: saves the catalogue in any case.
Outcome RefreshTables(Workspace& workspace, std::size_t index);

// The lists that a refresh makes. known: the job's present ones, empty when its tables were never
// fetched.
SchemaMap MergeTables(const std::vector<std::string>& owners, const std::vector<TableInfo>& tables,
                      const SchemaMap& known);

enum class TableFilter { Include, Exclude, ChangeOwner };

// Includes, excludes or redirects the named tables of one source owner; names that the job does not
// have are skipped. Included and redirected tables go to new_owner, or, when that is empty, to the
// source owner; both are included then. Returns how many tables there were. Saving is the caller's.
std::size_t ApplyTableFilter(SyncJob& job, std::string_view owner,
                             const std::vector<std::string>& tables, TableFilter filter,
                             std::string_view new_owner = {});

}  // namespace quillmere
