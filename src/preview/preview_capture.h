// SPDX-License-Identifier: MIT
// What a pass would take from the source now. Internal to preview/.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/follow.h"
#include "preview/job_double.h"

namespace quillmere {

// An entry that is only counted. Texts are in the batch's memory.
struct BlockedEntry {
  std::size_t entry = 0;
  std::string_view owner, table, why, text;
};

// Fills the double's batch. False and the reason when there may be more: the source could not be
// read, or there is too much of it. blocked comes in the order of the entries.
bool CaptureAhead(JobDouble& job, const OracleSession::StopCondition& stop,
                  std::vector<BlockedEntry>& blocked, std::string& why);

}  // namespace quillmere
