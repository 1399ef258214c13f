// SPDX-License-Identifier: MIT
// quillmere-cli doctor: what could keep a job from running well.
#pragma once

#include <string>

#include "cli/command.h"

namespace quillmere::cli {

struct DoctorArguments {
  std::string job, cures;
  bool json = false;
};

// 0 all well, 1 warnings, 2 failures, 3 when the job could not be examined.
int RunDoctor(const CommandLine& line, const DoctorArguments& arguments);

}  // namespace quillmere::cli
