// SPDX-License-Identifier: MIT
// How a job is, in one word that an operator can act on, made of plain values. Any thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "jobs/sync_job.h"

namespace quillmere {

enum class Health { UpToDate, Behind, Failing, Held, Paused, Stopped };
inline constexpr Health kAllHealth[] = {Health::UpToDate, Health::Behind, Health::Failing,
                                        Health::Held,     Health::Paused, Health::Stopped};

// "up to date", "behind" ...
std::string_view HealthName(Health health);

struct HealthFacts {
  JobState state = JobState::Stopped;
  bool held = false;
  bool failing = false;  // the last pass that came to an end failed
  std::int32_t interval_minutes = 0;
  // How much of the source's time is not on the destination yet, and since when no pass was good;
  // nothing when it is not known.
  std::optional<std::chrono::seconds> behind, since_good;
};

// A job by rows is two intervals behind when nothing is wrong, so a job counts as behind above
// that, with five minutes for the passes themselves.
std::chrono::seconds LongestUsualLag(std::int32_t interval_minutes);

// Held is said of any job that is; what was asked of a job comes before what it met.
Health HealthOf(const HealthFacts& facts);

// "40 s", "2 min", "1 h 25 min", "3 d 4 h"; less than nothing counts as nothing.
std::string AgeText(std::chrono::seconds age);

}  // namespace quillmere
