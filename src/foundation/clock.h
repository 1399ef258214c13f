// SPDX-License-Identifier: MIT
// Wall-clock time, passed in wherever time matters so that tests can turn it by hand.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace quillmere {

// Local date and time in milliseconds since 1970-01-01 00:00:00 local time; 0 means not set.
struct LocalTime {
  std::int64_t ms = 0;
  auto operator<=>(const LocalTime&) const = default;
};

inline LocalTime AddMinutes(LocalTime time, std::int64_t minutes) {
  return LocalTime{time.ms + minutes * 60'000};
}

// "20260131 23:59:07": the stamp in front of every log line.
std::string FormatTimeStamp(LocalTime time);

// "2026-01-31 23:59:07": for people.
std::string ReadableTime(LocalTime time);

// Of milliseconds since 1970 in universal time.
LocalTime ToLocalTime(std::int64_t utc_ms);

// On a clock that nobody sets: only differences mean something.
using SteadyTime = std::chrono::milliseconds;

// Any thread may ask.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime Now() const = 0;
  virtual SteadyTime Steady() const = 0;
  // Since 1970 in UTC, for other programs.
  virtual std::int64_t UnixSeconds() const { return Now().ms / 1000; }
};

class SystemClock final : public Clock {
 public:
  LocalTime Now() const override;
  SteadyTime Steady() const override;
  std::int64_t UnixSeconds() const override;
};

}  // namespace quillmere
