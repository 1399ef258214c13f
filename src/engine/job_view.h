// SPDX-License-Identifier: MIT
// What a step needs to know of a job's configuration, copied under its lock: names and log-ons may
// be edited while a session is being opened. Internal to engine/.
#pragma once

#include <string>

#include "jobs/sync_job.h"

namespace quillmere {

struct JobView {
  explicit JobView(const SyncJob& job) {
    const MutexLock lock(job.config_mutex);
    name = job.config.name;
    source = job.config.source;
    destination = job.config.destination;
    interval_minutes = job.config.sync_interval;
  }

  std::string name;
  LogOn source, destination;
  std::int32_t interval_minutes = 0;
};

}  // namespace quillmere
