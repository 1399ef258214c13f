// SPDX-License-Identifier: MIT
// metrics.prom in the working folder: the figures of all jobs as a textfile collector reads them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/files.h"
#include "watch/health.h"

namespace quillmere {

inline constexpr std::string_view kMetricsFile = "metrics.prom";

// Of one job. Times are seconds since 1970 (UTC).
struct JobFigures {
  std::string job;
  Health health = Health::Stopped;
  std::int64_t applied = 0, blocked = 0;  // since the job was started
  std::int64_t waiting = 0;
  std::int64_t passes[3] = {};  // since the program was: good, failed, interrupted
  std::int64_t took_ms = 0;     // all of them
  std::optional<std::int64_t> last_good, complete_until, failing_since;
  std::int64_t tries = 0;
};

// Counters and times; differences are for whoever reads them. What is not known has no line.
std::string MetricsText(const std::vector<JobFigures>& jobs);

// Replaces the file whole, but not down to the disk: a power cut may take it, and the next pass
// writes another.
bool ReplaceQuickly(FileSystem& files, const std::filesystem::path& path, std::string_view text,
                    std::string& error);

}  // namespace quillmere
