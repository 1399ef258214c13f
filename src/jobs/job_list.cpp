// SPDX-License-Identifier: MIT
#include "jobs/job_list.h"

namespace quillmere {

std::size_t JobList::Count() const {
  const MutexLock lock(mutex_);
  return slots_.size();
}

SyncJob& JobList::At(std::size_t index) {
  const MutexLock lock(mutex_);
  return slots_[index].job;
}

const SyncJob& JobList::At(std::size_t index) const {
  const MutexLock lock(mutex_);
  return slots_[index].job;
}

std::size_t JobList::IndexOf(std::string_view name) const {
  // The two locks are never held together.
  const std::size_t count = Count();
  for (std::size_t index = 0; index < count; ++index) {
    if (State(index) == JobState::Empty) continue;
    const SyncJob& job = At(index);
    const MutexLock lock(job.config_mutex);
    if (job.config.name == name) return index;
  }
  return kNotFound;
}

std::size_t JobList::IndexOf(const SyncJob& job) const {
  const MutexLock lock(mutex_);
  for (std::size_t index = 0; index < slots_.size(); ++index) {
    if (&slots_[index].job == &job) return index;
  }
  return kNotFound;
}

JobState JobList::State(std::size_t index, Progress* progress) const {
  const MutexLock lock(mutex_);
  const Slot& slot = slots_[index];
  if (progress != nullptr) *progress = slot.progress;
  return slot.state;
}

void JobList::SetState(std::size_t index, JobState state) {
  const MutexLock lock(mutex_);
  slots_[index].state = state;
}

void JobList::SetState(std::size_t index, JobState state, Progress progress) {
  const MutexLock lock(mutex_);
  slots_[index].state = state;
  slots_[index].progress = progress;
}

void JobList::SetProgress(std::size_t index, Progress progress) {
  const MutexLock lock(mutex_);
  slots_[index].progress = progress;
}

bool JobList::ReplaceState(std::size_t index, JobState expected, JobState state,
                           std::optional<Progress> progress) {
  const MutexLock lock(mutex_);
  Slot& slot = slots_[index];
  if (progress) slot.progress = *progress;
  if (slot.state != expected) return false;
  slot.state = state;
  return true;
}

std::string JobList::HeldBecause(std::size_t index) const {
  const MutexLock lock(mutex_);
  return slots_[index].held;
}

bool JobList::AsksAgain(std::size_t index) const {
  const MutexLock lock(mutex_);
  return slots_[index].asks_again;
}

void JobList::Hold(std::size_t index, std::string reason, bool asks_again) {
  const MutexLock lock(mutex_);
  slots_[index].held = std::move(reason);
  slots_[index].asks_again = asks_again;
}

std::vector<SyncJob*> JobList::LiveJobs() {
  const MutexLock lock(mutex_);
  std::vector<SyncJob*> live;
  for (Slot& slot : slots_) {
    if (slot.state != JobState::Empty) live.push_back(&slot.job);
  }
  return live;
}

std::size_t JobList::Claim() {
  const MutexLock lock(mutex_);
  for (std::size_t index = 0; index < slots_.size(); ++index) {
    if (slots_[index].state == JobState::Empty) return index;
  }
  slots_.emplace_back();
  return slots_.size() - 1;
}

void JobList::Remove(std::size_t index) {
  SetState(index, JobState::Empty, {});  // from now on nobody takes up the record
  Hold(index, {});
  SyncJob& job = At(index);
  const MutexLock lock(job.config_mutex);
  job.config = {};
  job.run = {};
}

}  // namespace quillmere
