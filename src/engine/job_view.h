// What a step needs to know of a job's configuration, copied under its lock: names and log-ons may
// be edited while a session is being opened. Internal to engine/.
#pragma once

#include <string>

#include "jobs/sync_job.h"

namespace quillmere {

struct JobView {
  explicit JobView(const SyncJob& job) {
    const std::lock_guard lock(job.config_mutex);
    name = job.name;
    source_database = job.src_database_name;
    destination_database = job.des_database_name;
    source = job.source;
    destination = job.destination;
    interval_minutes = job.sync_interval;
  }

  std::string name, source_database, destination_database;
  JobLogin source, destination;
  std::int32_t interval_minutes = 0;
};

inline bool Connect(OracleSession& session, const std::string& database, const JobLogin& login) {
  return session.Connect(database, login.user_id, login.password, login.sysdba);
}

}  // namespace quillmere
