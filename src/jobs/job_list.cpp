#include "jobs/job_list.h"

namespace quillmere {

std::size_t JobList::Count() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return jobs_.size();
}

SyncJob& JobList::At(std::size_t index) {
  const std::lock_guard<std::mutex> lock(mutex_);
  return jobs_[index];
}

const SyncJob& JobList::At(std::size_t index) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return jobs_[index];
}

std::size_t JobList::IndexOf(std::string_view name) const {
  // The two locks are never held together.
  const std::size_t count = Count();
  for (std::size_t index = 0; index < count; ++index) {
    if (State(index) == JobState::Empty) continue;
    const SyncJob& job = At(index);
    const std::lock_guard<std::mutex> lock(job.config_mutex);
    if (job.name == name) return index;
  }
  return kNotFound;
}

std::size_t JobList::IndexOf(const SyncJob& job) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  for (std::size_t index = 0; index < jobs_.size(); ++index) {
    if (&jobs_[index] == &job) return index;
  }
  return kNotFound;
}

JobState JobList::State(std::size_t index, Progress* progress) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const SyncJob& job = jobs_[index];
  if (progress != nullptr) *progress = {job.batch_applied_, job.batch_remaining_};
  return job.state_;
}

void JobList::SetState(std::size_t index, JobState state) {
  const std::lock_guard<std::mutex> lock(mutex_);
  jobs_[index].state_ = state;
}

void JobList::SetState(std::size_t index, JobState state, Progress progress) {
  const std::lock_guard<std::mutex> lock(mutex_);
  SyncJob& job = jobs_[index];
  job.state_ = state;
  job.batch_applied_ = progress.batch_applied;
  job.batch_remaining_ = progress.batch_remaining;
}

void JobList::SetProgress(std::size_t index, Progress progress) {
  const std::lock_guard<std::mutex> lock(mutex_);
  SyncJob& job = jobs_[index];
  job.batch_applied_ = progress.batch_applied;
  job.batch_remaining_ = progress.batch_remaining;
}

bool JobList::ReplaceState(std::size_t index, JobState expected, JobState state,
                           std::optional<Progress> progress) {
  const std::lock_guard<std::mutex> lock(mutex_);
  SyncJob& job = jobs_[index];
  if (progress) {
    job.batch_applied_ = progress->batch_applied;
    job.batch_remaining_ = progress->batch_remaining;
  }
  if (job.state_ != expected) return false;
  job.state_ = state;
  return true;
}

std::vector<SyncJob*> JobList::LiveJobs() {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::vector<SyncJob*> live;
  for (SyncJob& job : jobs_) {
    if (job.state_ != JobState::Empty) live.push_back(&job);
  }
  return live;
}

std::size_t JobList::Claim() {
  const std::lock_guard<std::mutex> lock(mutex_);
  for (std::size_t index = 0; index < jobs_.size(); ++index) {
    if (jobs_[index].state_ == JobState::Empty) return index;
  }
  jobs_.emplace_back();
  return jobs_.size() - 1;
}

void JobList::Remove(std::size_t index) {
  SetState(index, JobState::Empty, {});  // from now on nobody takes up the record
  SyncJob& job = At(index);
  const std::lock_guard<std::mutex> lock(job.config_mutex);
  job.name.clear();
  job.database_type.clear();
  job.description.clear();
  job.sync_interval = 0;
  job.has_runned = false;
  job.save_mark = false;
  job.src_database_name.clear();
  job.source = {};
  job.des_database_name.clear();
  job.destination = {};
  job.schemas.clear();
  job.table_list_fetched = false;
  job.table_list_changed = false;
  job.error_log_path.clear();
  job.tables_revision = 1;
  job.tables_saved_revision = 0;
  job.applied_count = 0;
  job.blocked_count = 0;
  job.batch_pending = 0;
  job.mining_start_scn = 0;
  job.cutoff_scn = 0;
  job.next_mining_start_scn = 0;
  job.next_cutoff_scn = 0;
  job.pending_batch.Clear();
  job.next_due = {};
}

}  // namespace quillmere
