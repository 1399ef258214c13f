// SPDX-License-Identifier: MIT
// What the doctor is told of a job: a copy, so that the job may go on meanwhile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "jobs/job_list.h"

namespace quillmere {

struct Patient {
  std::string name;
  LogOn source, destination;
  Follow follow = Follow::Rows;
  std::string container;
  std::int32_t interval = 0;         // minutes
  bool fetched = false;              // its tables are known
  std::vector<CarriedTable> tables;  // carried

  // Another job that writes to a table of this one, or takes back to the source what this one
  // brings to the destination.
  struct Meeting {
    std::string job, owner, table;  // on this job's destination
    bool takes_back = false;
  };
  std::vector<Meeting> meetings;
};

// Takes the jobs' configuration locks, one after another.
Patient PatientOf(JobList& jobs, std::size_t index);

}  // namespace quillmere
