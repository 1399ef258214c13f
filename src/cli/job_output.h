// SPDX-License-Identifier: MIT
// How jobs are shown.
#pragma once

#include <cstddef>
#include <string>

#include "workspace/workspace.h"

namespace quillmere::cli {

std::string JobListText(const Workspace& workspace);
std::string JobListJson(const Workspace& workspace);

// One job with its owners and tables.
std::string JobText(const Workspace& workspace, std::size_t index);
std::string JobJson(const Workspace& workspace, std::size_t index);

// How many tables of how many owners the job has, and how many of them are included.
std::string TablesSummary(const SyncJob& job);

}  // namespace quillmere::cli
