#include "sandbox/values/datetime.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace quillmere::sandbox {

namespace {

bool ReadNumber(std::string_view text, std::size_t at, std::size_t count, int* out) {
  if (at + count > text.size()) return false;
  int value = 0;
  for (std::size_t i = at; i < at + count; ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
    value = value * 10 + (text[i] - '0');
  }
  *out = value;
  return true;
}

void TakeEnvironment(const char* name, std::string* value) {
  const char* set = std::getenv(name);
  if (set != nullptr && *set != '\0') *value = set;
}

}  // namespace

Nls Nls::FromEnvironment() {
  Nls nls;
  TakeEnvironment("NLS_DATE_FORMAT", &nls.date_format);
  TakeEnvironment("NLS_TIMESTAMP_FORMAT", &nls.timestamp_format);
  TakeEnvironment("NLS_TIMESTAMP_TZ_FORMAT", &nls.timestamp_tz_format);
  return nls;
}

long long DateTime::DaysSinceEpoch() const {
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  return std::chrono::sys_days(date).time_since_epoch().count();
}

DateTime DateTime::PlusSeconds(long long seconds) const {
  long long total = DaysSinceEpoch() * 86400 + hour * 3600 + minute * 60 + second + seconds;
  long long days = total / 86400;
  long long rest = total % 86400;
  if (rest < 0) {
    rest += 86400;
    --days;
  }
  const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(days))};
  DateTime moved = *this;
  moved.year = static_cast<int>(date.year());
  moved.month = static_cast<int>(static_cast<unsigned>(date.month()));
  moved.day = static_cast<int>(static_cast<unsigned>(date.day()));
  moved.hour = static_cast<int>(rest / 3600);
  moved.minute = static_cast<int>(rest / 60 % 60);
  moved.second = static_cast<int>(rest % 60);
  return moved;
}

DateTime DateTime::Now() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(since);
  DateTime epoch;
  epoch.year = 1970;
  DateTime now = epoch.PlusSeconds(seconds.count());
  now.nanosecond = static_cast<int>(
      std::chrono::duration_cast<std::chrono::nanoseconds>(since - seconds).count());
  return now;
}

bool DateTime::FromCanonical(std::string_view text, DateTime* out) {
  DateTime value;
  if (!ReadNumber(text, 0, 4, &value.year) || !ReadNumber(text, 5, 2, &value.month) ||
      !ReadNumber(text, 8, 2, &value.day) || !ReadNumber(text, 11, 2, &value.hour) ||
      !ReadNumber(text, 14, 2, &value.minute) || !ReadNumber(text, 17, 2, &value.second)) {
    return false;
  }
  if (text.size() > 19 && !ReadNumber(text, 20, 9, &value.nanosecond)) return false;
  if (text.size() > 29) {
    int hours = 0;
    int minutes = 0;
    if (!ReadNumber(text, 31, 2, &hours) || !ReadNumber(text, 34, 2, &minutes)) return false;
    value.offset_minutes = (hours * 60 + minutes) * (text[30] == '-' ? -1 : 1);
    value = value.PlusSeconds(value.offset_minutes * 60LL);
  }
  *out = value;
  return true;
}

std::string DateTime::DateText() const {
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%04d-%02d-%02d %02d:%02d:%02d", year, month, day,
                hour, minute, second);
  return buffer.data();
}

std::string DateTime::TimestampText() const {
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), ".%09d", nanosecond);
  return DateText() + buffer.data();
}

std::string DateTime::TimestampTzText() const {
  const int minutes = offset_minutes < 0 ? -offset_minutes : offset_minutes;
  std::array<char, 40> zone{};
  std::snprintf(zone.data(), zone.size(), " %c%02d:%02d", offset_minutes < 0 ? '-' : '+',
                minutes / 60, minutes % 60);
  return PlusSeconds(-60LL * offset_minutes).TimestampText() + zone.data();
}

}  // namespace quillmere::sandbox
