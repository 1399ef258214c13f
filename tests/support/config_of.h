// SPDX-License-Identifier: MIT
// A job's configuration without its lock, for tests in which nobody else is at work.
#pragma once

#include "jobs/sync_job.h"

namespace quillmere {

inline JobConfig& ConfigOf(SyncJob& job) NO_THREAD_SAFETY_ANALYSIS {
  return job.config;
}

}  // namespace quillmere
