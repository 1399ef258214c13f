// SPDX-License-Identifier: MIT
// How the window shows the health of jobs: pictures, marks over the pictures of states, and words
// for all jobs together. User-interface thread.
#pragma once

#include <QIcon>
#include <QString>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "jobs/job_list.h"
#include "watch/job_watch.h"

namespace quillmere {

// Without a watch only what state and hold say of it.
WatchedJob LookAt(const JobList& jobs, const JobWatch* watch, std::size_t index);

// Each has a shape of its own: nobody needs to tell colours.
QIcon HealthIcon(Health health);

// The drawing of what an operator should look at; empty when all is as asked for.
std::string_view HealthMark(Health health);

// How many jobs are how.
struct HealthCounts {
  std::array<std::size_t, std::size(kAllHealth)> of{};

  std::size_t& operator[](Health health) { return of[static_cast<std::size_t>(health)]; }
  std::size_t operator[](Health health) const { return of[static_cast<std::size_t>(health)]; }
  bool operator==(const HealthCounts&) const = default;
};

// The one that most needs looking at, of those that have a mark; nothing when no job has.
std::optional<Health> WorstOf(const HealthCounts& counts);

// "1 job failing, 2 behind"; "3 jobs up to date" when no job has a mark; empty when none runs.
QString HealthWords(const HealthCounts& counts);

}  // namespace quillmere
