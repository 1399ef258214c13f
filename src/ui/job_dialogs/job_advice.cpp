// SPDX-License-Identifier: MIT
#include "ui/job_dialogs/job_advice.h"

#include <algorithm>

namespace quillmere {

JobField FieldToCorrect(const JobProperties& trimmed, std::size_t data_sources) {
  // In the order in which the properties are judged.
  if (data_sources < 2) return JobField::NewSource;
  if (trimmed.interval <= 0 && !trimmed.zero_allowed) return JobField::Interval;
  if (trimmed.name.empty()) return JobField::Name;
  if (trimmed.description.empty()) return JobField::Description;
  if (trimmed.source.empty()) return JobField::Source;
  if (trimmed.destination.empty() || trimmed.source == trimmed.destination) {
    return JobField::Destination;
  }
  return JobField::Name;
}

int SteppedInterval(int minutes, int steps) {
  return std::clamp(std::clamp(minutes, 0, kMostInterval) + steps, 0, kMostInterval);
}

}  // namespace quillmere
