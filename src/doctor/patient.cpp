// SPDX-License-Identifier: MIT
#include "doctor/patient.h"

#include <set>
#include <utility>

namespace quillmere {
namespace {

using Name = std::pair<std::string, std::string>;

}  // namespace

Patient PatientOf(JobList& jobs, std::size_t index) {
  Patient patient;
  const SyncJob& job = jobs.At(index);
  std::string from;
  std::string to;
  {
    const MutexLock lock(job.config_mutex);
    patient.name = job.config.name;
    patient.source = job.config.source;
    patient.destination = job.config.destination;
    patient.follow = job.config.follow;
    patient.container = job.config.container;
    patient.interval = job.config.sync_interval;
    patient.fetched = job.config.table_list_fetched;
    patient.tables = CarriedTables(job.config);
    from = job.config.src_database_name;
    to = job.config.des_database_name;
  }
  std::set<Name> written;
  for (const CarriedTable& table : patient.tables) written.insert({table.to_owner, table.name});
  for (const SyncJob* other : jobs.LiveJobs()) {
    if (other == &job) continue;
    const MutexLock lock(other->config_mutex);
    const JobConfig& config = other->config;
    const bool takes_back = config.src_database_name == to && config.des_database_name == from;
    if (config.des_database_name != to && !takes_back) continue;
    for (const CarriedTable& table : CarriedTables(config)) {
      const std::string& owner = takes_back ? table.owner : table.to_owner;
      if (!written.contains({owner, table.name})) continue;
      patient.meetings.push_back({config.name, owner, table.name, takes_back});
    }
  }
  return patient;
}

}  // namespace quillmere
