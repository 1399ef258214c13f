// SPDX-License-Identifier: MIT
// The health of jobs in JSON, for whatever program is to read it. Any thread.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "foundation/clock.h"
#include "watch/job_watch.h"

namespace quillmere {

// Adds health, the clocks in seconds, and the problem; null where nothing is known.
void AddHealth(nlohmann::ordered_json& object, const WatchedJob& job);

// A text of the database that is no UTF-8 cannot stand in JSON as it is: what is wrong in it is
// replaced. With a line feed.
std::string JsonText(const nlohmann::ordered_json& value);

// What a change of health is told with.
std::string HealthEvent(std::string_view folder, std::string_view name, LocalTime time, Health was,
                        const WatchedJob& job);

}  // namespace quillmere
