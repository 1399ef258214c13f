// SPDX-License-Identifier: MIT
#include "foundation/clock.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace quillmere {

std::string FormatTimeStamp(LocalTime time) {
  using std::chrono::days;
  using std::chrono::milliseconds;
  // What a calendar can show: years 0000 to 9999.
  constexpr std::int64_t kFirst = -62'167'219'200'000;
  constexpr std::int64_t kLast = 253'402'300'799'999;
  const milliseconds since_epoch{std::clamp(time.ms, kFirst, kLast)};
  const std::chrono::sys_time<milliseconds> moment{since_epoch};
  const auto day = std::chrono::floor<days>(moment);
  const std::chrono::year_month_day date{day};
  const auto second_of_day =
      static_cast<int>(std::chrono::duration_cast<std::chrono::seconds>(moment - day).count());
  char text[64];
  std::snprintf(text, sizeof text, "%04d%02u%02u %02d:%02d:%02d", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                second_of_day / 3600, second_of_day / 60 % 60, second_of_day % 60);
  return text;
}

std::string ReadableTime(LocalTime time) {
  std::string text = FormatTimeStamp(time);
  text.insert(6, 1, '-');
  text.insert(4, 1, '-');
  return text;
}

LocalTime SystemClock::Now() const {
  using namespace std::chrono;
  return ToLocalTime(duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count());
}

std::int64_t SystemClock::UnixSeconds() const {
  using namespace std::chrono;
  return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

SteadyTime SystemClock::Steady() const {
  using namespace std::chrono;
  return duration_cast<SteadyTime>(steady_clock::now().time_since_epoch());
}

}  // namespace quillmere
