// SPDX-License-Identifier: MIT
// problem.xml of a job that fails: what is known of it, so that it is still known after a restart.
// docs/file-formats.md has its layout.
#pragma once

#include <cstdint>

#include "engine/pass_report.h"
#include "jobs/job_folder.h"

namespace quillmere {

struct JobProblem {
  PassProblem what;              // that of the last try
  int ora = 0;                   // number of the server's error; 0: it has none
  LocalTime first, last;         // pass that failed since the last good one
  std::int64_t tries = 0;        // that failed since then
  std::int64_t reached_scn = 0;  // where the destination stands, and since when the source is
  LocalTime complete_until;      // further than that; not set: not known
};

// The number behind the first "ORA-" of the text; 0 when there is none.
int OraNumber(std::string_view text);

// Both are of the same kind: the operator has been told already.
bool SameProblem(const JobProblem& a, const JobProblem& b);

// Replaces the file, readable by its owner alone. A statement above 64 KiB is cut.
bool WriteProblemFile(FileSystem& files, const JobFolder& folder, const JobProblem& problem,
                      std::string& error);
// Missing: the job has no problem. Damaged: what it was can not be said.
FileStatus ReadProblemFile(FileSystem& files, const JobFolder& folder, JobProblem& problem);

}  // namespace quillmere
