// SPDX-License-Identifier: MIT
#include "watch/health.h"

#include <algorithm>

namespace quillmere {

std::string_view HealthName(Health health) {
  switch (health) {
    case Health::UpToDate:
      return "up to date";
    case Health::Behind:
      return "behind";
    case Health::Failing:
      return "failing";
    case Health::Held:
      return "held";
    case Health::Paused:
      return "paused";
    case Health::Stopped:
      return "stopped";
  }
  return {};
}

std::chrono::seconds LongestUsualLag(std::int32_t interval_minutes) {
  return std::chrono::minutes{2 * std::int64_t{interval_minutes} + 5};
}

Health HealthOf(const HealthFacts& facts) {
  if (facts.held) return Health::Held;
  switch (facts.state) {
    case JobState::Empty:
    case JobState::Stopping:
    case JobState::Stopped:
      return Health::Stopped;
    case JobState::Pausing:
    case JobState::Paused:
      return Health::Paused;
    case JobState::Starting:
    case JobState::Started:
      break;
  }
  if (facts.failing) return Health::Failing;
  const std::chrono::seconds usual = LongestUsualLag(facts.interval_minutes);
  const bool late =
      facts.behind.value_or(usual) > usual || facts.since_good.value_or(usual) > usual;
  return late ? Health::Behind : Health::UpToDate;
}

std::string AgeText(std::chrono::seconds age) {
  const std::int64_t seconds = std::max<std::int64_t>(age.count(), 0);
  const auto both = [](std::int64_t large, const char* unit, std::int64_t small,
                       const char* small_unit) {
    std::string text = std::to_string(large) + " " + unit;
    if (small != 0) text += " " + std::to_string(small) + " " + small_unit;
    return text;
  };
  if (seconds < 120) return both(seconds, "s", 0, "");
  if (seconds < 3600) return both(seconds / 60, "min", 0, "");
  if (seconds < 86'400) return both(seconds / 3600, "h", seconds / 60 % 60, "min");
  return both(seconds / 86'400, "d", seconds / 3600 % 24, "h");
}

}  // namespace quillmere
