// SPDX-License-Identifier: MIT
// A clock that stands still until it is turned; any thread may read or turn it.
#pragma once

#include <atomic>

#include "foundation/clock.h"

namespace quillmere {

struct HandClock final : Clock {
  LocalTime Now() const override { return LocalTime{now.load().ms + jumped_ms}; }
  SteadyTime Steady() const override { return SteadyTime{now.load().ms}; }
  void TurnMinutes(int minutes) { now = AddMinutes(now, minutes); }

  std::atomic<std::int64_t> jumped_ms = 0;  // the wall clock was set; the steady one was not
  std::atomic<LocalTime> now = LocalTime{1'769'903'947'000};  // stamped "20260131 23:59:07"
};

}  // namespace quillmere
