// SPDX-License-Identifier: MIT
// quillmere-cli job problem, retry and skip: what keeps a job from going on, and the ways out.
#pragma once

#include "cli/job_commands.h"

namespace quillmere::cli::job {

int Problem(const CommandLine& line, const Arguments& arguments);
int Retry(const CommandLine& line, const Arguments& arguments);
int Skip(const CommandLine& line, const Arguments& arguments);

}  // namespace quillmere::cli::job
