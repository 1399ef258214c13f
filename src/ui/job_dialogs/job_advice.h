// SPDX-License-Identifier: MIT
// What the job dialogs decide by themselves.
#pragma once

#include <string_view>

#include "workspace/job_operations.h"

namespace quillmere {

enum class JobField { Name, Description, Source, Destination, Interval, NewSource };

// The field to correct after the properties were refused.
JobField FieldToCorrect(const JobProperties& trimmed, std::size_t data_sources);

// The minutes after so many steps of the up and down buttons, which stop at both ends.
inline constexpr int kMostInterval = 10000;
int SteppedInterval(int minutes, int steps);

}  // namespace quillmere
