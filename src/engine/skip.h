// SPDX-License-Identifier: MIT
// Leaving out the statement that a job is stuck at, because an operator says so. Nothing is counted
// and nothing moves here: that is the next pass's, with record, commit point and position row, as
// for any blocked statement.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "jobs/job_list.h"

namespace quillmere {

// What would be left out: of a job that follows commits the transaction with all its statements.
struct NextToSkip {
  std::uint32_t first = 0, count = 0, of = 0;  // entries of the batch
  std::string owner, table;                    // of the first
  std::vector<std::string> statements;         // as they were mined
};

// For a job that is paused, on the thread that its run belongs to then. False with a reason when
// there is nothing that could be left out.
bool FindNextToSkip(const JobList& jobs, std::size_t index, NextToSkip& next, std::string& reason);

// From this moment on the next pass leaves it out, also after a death. On failure nothing is.
bool MarkToSkip(FileSystem& files, const JobFolder& folder, const JobRun& run,
                const NextToSkip& next, std::string& error);

}  // namespace quillmere
