// SPDX-License-Identifier: MIT
#include "jobs/sync_job.h"

#include "jobs/carried_tables.h"

namespace quillmere {

std::string_view FollowName(Follow follow) {
  return follow == Follow::Commits ? "commits" : "rows";
}

std::string_view StateName(JobState state) {
  switch (state) {
    case JobState::Starting:
      return "Starting";
    case JobState::Started:
      return "Started";
    case JobState::Stopping:
      return "Stopping";
    case JobState::Stopped:
      return "Stopped";
    case JobState::Pausing:
      return "Pausing";
    case JobState::Paused:
      return "Paused";
    case JobState::Empty:
      break;
  }
  return {};
}

bool IsRunning(JobState state) {
  return state != JobState::Empty && !Rests(state);
}

bool Rests(JobState state) {
  return state == JobState::Stopped || state == JobState::Paused;
}

std::string NameOf(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return job.config.name;
}

Follow FollowOf(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return job.config.follow;
}

std::string PositionOwnerOf(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return job.config.position_owner;
}

std::string ContainerOf(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return job.config.container;
}

bool TablesFetched(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return job.config.table_list_fetched;
}

bool MarkToCompare(SyncJob& job, std::string_view owner, std::string_view table) {
  const MutexLock lock(job.config_mutex);
  const auto schema = job.config.schemas.find(owner);
  if (schema == job.config.schemas.end()) return false;
  JobTable* const found = schema->second.Find(table);
  if (found == nullptr || found->compare) return false;
  found->compare = true;
  ++job.config.tables_revision;
  return true;
}

JobTable& JobSchema::Append(JobTable table) {
  JobTable& added = tables_.emplace_back(std::move(table));
  by_name_.try_emplace(added.name, &added);
  return added;
}

JobTable* JobSchema::Find(std::string_view name) {
  const auto found = by_name_.find(name);
  return found == by_name_.end() ? nullptr : found->second;
}

const JobTable* JobSchema::Find(std::string_view name) const {
  const auto found = by_name_.find(name);
  return found == by_name_.end() ? nullptr : found->second;
}

std::vector<CarriedTable> CarriedTables(const JobConfig& config) {
  std::vector<CarriedTable> carried;
  ForEachCarried(config,
                 [&](const std::string& owner, const JobTable& table, const std::string& to_owner) {
                   carried.push_back({owner, table.name, to_owner});
                 });
  return carried;
}

}  // namespace quillmere
