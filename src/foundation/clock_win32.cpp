// SPDX-License-Identifier: MIT
#include <time.h>

#include <chrono>

#include "foundation/clock.h"

namespace quillmere {

LocalTime ToLocalTime(std::int64_t utc_ms) {
  const __time64_t seconds = static_cast<__time64_t>(utc_ms / 1000);
  tm local{};
  if (_localtime64_s(&local, &seconds) != 0) return LocalTime{utc_ms};
  return LocalTime{static_cast<std::int64_t>(_mkgmtime64(&local)) * 1000 + utc_ms % 1000};
}

}  // namespace quillmere
