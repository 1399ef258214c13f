// SPDX-License-Identifier: MIT
// What an operator can do about a job that fails. User-interface thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "watch/row_beside.h"
#include "workspace/database_work.h"
#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

// Which ways out there are at the moment. What needs a resting job is offered for a started one
// too, which is to be paused for it.
struct WaysOut {
  bool retry = false;
  bool skip = false;
  bool exclude = false;
  bool stop = false;
};
WaysOut WaysOutOf(const WatchedJob& job);

// A pass at once: a paused job is continued, a started one does not wait for its next interval. A
// pass that is under way is not joined by another one.
Outcome RetryJob(Workspace& workspace, EngineContext& engine, std::size_t index);

// SkipStatement, when the paused job is still stuck at that problem: the pass that ended meanwhile
// may have got further, and another statement must not be left out in its place.
Outcome SkipProblem(Workspace& workspace, std::size_t index, const JobProblem& seen,
                    const std::string& reason);

// What the destination has in place of the row that the refused statement is about. Nothing: the
// operator left before.
std::optional<RowBeside> ReadRowBeside(Workspace& workspace, std::size_t index,
                                       const JobProblem& problem, DatabaseWork& work);

}  // namespace quillmere
