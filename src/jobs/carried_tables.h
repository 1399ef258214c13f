// SPDX-License-Identifier: MIT
// Which tables of a job are carried, and where to.
#pragma once

#include <string>

#include "jobs/sync_job.h"

namespace quillmere {

// Calls take(owner, table, owner on the destination) for each, in their order. The caller has the
// job's configuration lock.
template <typename Take>
void ForEachCarried(const JobConfig& config, const Take& take) {
  for (const auto& [owner, schema] : config.schemas) {
    for (const JobTable& table : schema.Tables()) {
      if (table.includeflag) take(owner, table, table.desowner.empty() ? owner : table.desowner);
    }
  }
}

}  // namespace quillmere
