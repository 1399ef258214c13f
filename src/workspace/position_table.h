// SPDX-License-Identifier: MIT
// Giving a job a position row on its destination, and taking it away. User-interface thread; blocks
// as long as the destination takes.
#pragma once

#include <cstddef>
#include <string>

#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

// Of a stopped job. Makes the table in that owner where it is missing, tries on a row of it what a
// pass will do, and keeps the owner with the job; the job's own row is made when it starts. The
// outcome says what was done, or which right is missing: the job is as it was then.
Outcome UsePositionTable(Workspace& workspace, std::size_t index, const std::string& owner);

// Of a stopped job. Its row goes; the table stays, for other jobs may use it. A destination that
// can not be reached keeps nothing from being done but that.
Outcome LeavePositionTable(Workspace& workspace, std::size_t index);

}  // namespace quillmere
