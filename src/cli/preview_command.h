// SPDX-License-Identifier: MIT
// quillmere-cli job preview: what the next pass of a job would do.
#pragma once

#include "cli/job_commands.h"

namespace quillmere::cli::job {

int ShowPreview(const CommandLine& line, const Arguments& arguments);

}  // namespace quillmere::cli::job
