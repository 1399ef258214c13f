// SPDX-License-Identifier: MIT
#include <time.h>

#include <chrono>

#include "foundation/clock.h"

namespace quillmere {

LocalTime SystemClock::Now() const {
  using namespace std::chrono;
  const std::int64_t utc_ms =
      duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
  const time_t seconds = static_cast<time_t>(utc_ms / 1000);
  tm local{};
  if (localtime_r(&seconds, &local) == nullptr) return LocalTime{utc_ms};
  return LocalTime{static_cast<std::int64_t>(timegm(&local)) * 1000 + utc_ms % 1000};
}

}  // namespace quillmere
