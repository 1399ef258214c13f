// SPDX-License-Identifier: MIT
#include "preview/job_double.h"

#include <algorithm>
#include <utility>

namespace quillmere {
namespace {

// What a capture and the decision on a statement ask for.
JobConfig CopyOf(const SyncJob& job) {
  JobConfig copy;
  const MutexLock lock(job.config_mutex);
  const JobConfig& config = job.config;
  copy.name = config.name;
  copy.sync_interval = config.sync_interval;
  copy.follow = config.follow;
  copy.position_owner = config.position_owner;
  copy.container = config.container;
  copy.src_database_name = config.src_database_name;
  copy.des_database_name = config.des_database_name;
  copy.source = config.source;
  copy.table_list_fetched = config.table_list_fetched;
  for (const auto& [owner, schema] : config.schemas) {
    JobSchema& tables = copy.schemas[owner];
    for (const JobTable& table : schema.Tables()) tables.Append(table);
  }
  return copy;
}

}  // namespace

JobDouble::JobDouble(const EngineContext& real, std::size_t index, int most_statements)
    : log_(real.files, real.working_folder, real.clock, settings_, MessageLog::Files::LeaveAlone),
      catalogue_(real.files, real.working_folder, jobs_, log_),
      context_{real.files, real.working_folder, jobs_,     catalogue_, real.oci,
               log_,       real.clock,          settings_, listener_} {
  // A reading that is too young for positions to rest on is good enough to look.
  settings_.commit_age_seconds = 0;
  settings_.most_statements = std::min(most_statements, real.settings.most_statements.load());
  settings_.oldest_transaction_hours = real.settings.oldest_transaction_hours.load();
  JobConfig copy = CopyOf(real.jobs.At(index));
  jobs_.Claim();
  {
    const MutexLock lock(Job().config_mutex);
    Job().config = std::move(copy);
  }
  Restore(real.files);
}

// A program at work may replace the batch between the two readings: what does not fit together
// then does a moment later.
void JobDouble::Restore(FileSystem& files) {
  for (int tries = 0; tries < 3; ++tries) {
    restored_ = RestoreRunState(files, Job(), Folder(), RestoreMode::LookAhead);
    if (restored_.held.empty()) break;
  }
  jobs_.SetState(0, JobState::Started, restored_.progress);
}

}  // namespace quillmere
