// SPDX-License-Identifier: MIT
// The redo's log groups: a ring that is written round and round, so that what is not archived is
// forgotten when its group's turn comes again. All redo is in the database file; the members of the
// groups are names that LogMiner is told. Plain functions, run inside a transaction of the runner's
// connection.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "sandbox/sql/ast.h"
#include "sandbox/store/sql_runner.h"

namespace quillmere::sandbox {

// A log that can still be read: its place in the redo, and its SCNs from the first to before the
// next one's first; that is huge for the current log.
struct RedoLog {
  std::int64_t sequence = 0;
  std::int64_t first_scn = 0;
  std::int64_t next_scn = 0;
};

// The log behind a member's or an archived log's name; nothing when there is none.
std::optional<RedoLog> FindRedoLog(SqlRunner* sql, const std::string& database,
                                   const std::string& name);

// Adds to the current log, and switches to the next one behind `commit_scn` when it is full.
void AddToRedoLog(SqlRunner* sql, std::int64_t bytes, std::int64_t commit_scn);

// ALTER DATABASE and ALTER SYSTEM: groups, members, archiving, switching, supplemental logging, the
// character set.
// `last_scn` is the SCN given latest.
void ChangeDatabase(SqlRunner* sql, const DatabaseChange& change, std::int64_t last_scn);

}  // namespace quillmere::sandbox
