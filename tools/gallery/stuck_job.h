// SPDX-License-Identifier: MIT
// Makes the job "orders" between two sandbox databases, with a week of passes behind it, and lets
// it come to a row that the destination refuses. The workspace has no job before.
#pragma once

#include <functional>
#include <string>

#include "gallery/example_folder.h"

namespace quillmere {

// enter runs a script on a database. False: the reason.
bool MakeStuckJob(
    Workspace& workspace, StandingClock& clock, const std::string& source,
    const std::string& destination,
    const std::function<bool(const std::string& database, const std::string& script)>& enter,
    std::string& reason);

}  // namespace quillmere
