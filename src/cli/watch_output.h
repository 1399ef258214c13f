// SPDX-License-Identifier: MIT
// The health of jobs in JSON.
#pragma once

#include <nlohmann/json.hpp>

#include "watch/job_watch.h"

namespace quillmere::cli {

// Adds health, the clocks in seconds, and the problem; null where nothing is known.
void AddHealth(nlohmann::ordered_json& object, const WatchedJob& job);

}  // namespace quillmere::cli
