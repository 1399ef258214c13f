// SPDX-License-Identifier: MIT
// quillmere-cli run: drives jobs until it is told to end.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"
#include "engine/work_thread.h"

namespace quillmere::cli {

struct RunArguments {
  std::vector<std::string> start, go_on;  // names of stopped and of paused jobs
  bool go_on_all = false;                 // all paused jobs, besides
  std::optional<double> seconds;          // until a signal when there is none
  int sweep_ms = static_cast<int>(HWorkThread::kSweepPause.count());
  bool progress = false;
  bool json = false;
};

int Run(const CommandLine& line, const RunArguments& arguments);

}  // namespace quillmere::cli
