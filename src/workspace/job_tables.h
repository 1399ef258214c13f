// SPDX-License-Identifier: MIT
// Which tables a job carries, and to which owner: read from its source, included, excluded, given
// another owner. User-interface thread; the job must rest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "workspace/database_work.h"
#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

// Why a job that is not stopped or paused cannot be changed.
std::string WhyBusy(std::string_view job_name);

// Takes the owners and tables of the job's source over into the job: known tables keep what the
// operator chose and what was counted, new ones are included, those that are gone go with their
// counters. On failure the log says why and the lists stay. Saves nothing.
Outcome ReadTables(Workspace& workspace, std::size_t index, DatabaseWork& work);

// Tells in the log of another job that carries a table of this one from the same source to the same
// destination: each of its changes arrives twice.
void TellOverlap(Workspace& workspace, std::size_t index);

// ReadTables as an action of its own: saves the catalogue in any case.
Outcome RefreshTables(Workspace& workspace, std::size_t index, DatabaseWork& work);

// The lists that a refresh makes; any thread. known: the job's present ones, empty when its tables
// were never fetched.
SchemaMap MergeTables(const std::vector<std::string>& owners, const std::vector<TableInfo>& tables,
                      const SchemaMap& known);

enum class TableFilter { Include, Exclude, ChangeOwner };

// When a change of owner reaches the job's file; the other changes do so at once.
enum class OwnerSaving { WithTheNextSave, AtOnce };

// Tables of one source owner, and what is to become of them.
struct TableChoice {
  TableFilter filter = TableFilter::Include;
  std::string owner{};
  std::vector<std::string> tables{};  // names that the job does not have are skipped
  bool all_tables = false;            // of that owner, instead
  // Where included and redirected tables go; empty: to the source owner. Redirecting includes.
  std::string new_owner{};
  OwnerSaving owner_saving = OwnerSaving::WithTheNextSave;
};

struct FilterResult {
  std::string refused;  // why nothing was changed; else empty
  std::string unsaved;  // why the change, which is in force, did not reach the files; else empty
  std::size_t changed = 0;  // tables
};

// Includes, excludes or redirects tables of a resting job.
FilterResult FilterTables(Workspace& workspace, std::size_t index, const TableChoice& choice);

// What tables of one source owner, named as above, lack on the destination: changes that were set
// aside while they were excluded or refused.
struct BlockedTable {
  std::string name;
  std::int64_t changes = 0;
};
std::vector<BlockedTable> BlockedTables(SyncJob& job, const std::string& owner,
                                        const std::vector<std::string>& tables, bool all_tables);

// Sets the mark "compare" on them, in whatever state the job is, and saves.
FilterResult MarkForComparison(Workspace& workspace, std::size_t index, const std::string& owner,
                               const std::vector<BlockedTable>& tables);

// Takes the mark "compare" from tables of one source owner, in whatever state the job is. What is
// all_tables, and which names count, is as above.
FilterResult ClearCompareMarks(Workspace& workspace, std::size_t index, const std::string& owner,
                               const std::vector<std::string>& tables, bool all_tables);

}  // namespace quillmere
