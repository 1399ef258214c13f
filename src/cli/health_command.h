// SPDX-License-Identifier: MIT
// quillmere-cli health: how the jobs are, for people and for programs that watch others.
#pragma once

#include <optional>
#include <string>

#include "cli/command.h"

namespace quillmere::cli {

struct HealthArguments {
  std::string job;                // empty: all of them
  std::optional<int> max_behind;  // minutes
  bool json = false;
};

// Exit status: as programs that watch others expect it.
enum class HealthStatus { Well = 0, Warning = 1, Trouble = 2, Unknown = 3 };

// What a job's health means to them. A stopped job is one that somebody wanted stopped, unless it
// is asked for by name.
// loss_hours: see Settings.
HealthStatus StatusOf(const WatchedJob& job, bool named, std::optional<int> max_behind,
                      int loss_hours);

// Changes nothing, and works beside a program that runs the jobs.
int ShowHealth(const CommandLine& line, const HealthArguments& arguments);

}  // namespace quillmere::cli
