// SPDX-License-Identifier: MIT
// How jobs are shown.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "engine/job_footing.h"
#include "workspace/workspace.h"

namespace quillmere::cli {

std::string JobListText(const Workspace& workspace);
std::string JobListJson(const Workspace& workspace);

// One job with its owners and tables, and what it stands on when that was asked.
std::string JobText(const Workspace& workspace, std::size_t index,
                    const std::vector<FootingLine>& footing);
std::string JobJson(const Workspace& workspace, std::size_t index,
                    const std::vector<FootingLine>& footing);

// How many tables of how many owners the job has, and how many of them are included.
std::string TablesSummary(const SyncJob& job);

}  // namespace quillmere::cli
