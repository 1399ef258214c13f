// SPDX-License-Identifier: MIT
// Leaving out the statement that a job is stuck at, on the word of an operator.
#pragma once

#include <cstddef>
#include <string>

#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

// Of a paused job: its next statement, by commits the whole transaction, is left out by the next
// pass and counts as blocked. Before that it is in skipped.sql of the job's folder with time, user
// and reason, which must say something; its table bears the mark "compare". User-interface thread.
// What fails leaves nothing out; the text may stand in skipped.sql all the same.
Outcome SkipStatement(Workspace& workspace, std::size_t index, const std::string& reason);

}  // namespace quillmere
