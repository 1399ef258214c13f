// SPDX-License-Identifier: MIT
#include <time.h>

#include <chrono>

#include "foundation/clock.h"

namespace quillmere {

LocalTime ToLocalTime(std::int64_t utc_ms) {
  const time_t seconds = static_cast<time_t>(utc_ms / 1000);
  tm local{};
  if (localtime_r(&seconds, &local) == nullptr) return LocalTime{utc_ms};
  return LocalTime{static_cast<std::int64_t>(timegm(&local)) * 1000 + utc_ms % 1000};
}

}  // namespace quillmere
