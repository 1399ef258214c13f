// SPDX-License-Identifier: MIT
#include "sandbox/values/datetime.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace quillmere::sandbox {

namespace {

bool ReadNumber(std::string_view text, std::size_t at, std::size_t count, int* out) {
  if (at + count > text.size()) return false;
  const char* end = text.data() + at + count;
  const auto [stop, error] = std::from_chars(text.data() + at, end, *out);
  return error == std::errc() && stop == end;
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

const std::string& Nls::Mask(Kind kind) const {
  if (kind == Kind::Date) return date_format;
  return kind == Kind::Timestamp ? timestamp_format : timestamp_tz_format;
}

long long DateTime::SecondsSinceEpoch() const {
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  const long long days = std::chrono::sys_days(date).time_since_epoch().count();
  return days * 86400 + hour * 3600 + minute * 60 + second;
}

DateTime DateTime::PlusSeconds(long long seconds) const {
  const std::chrono::sys_seconds moved{std::chrono::seconds(SecondsSinceEpoch() + seconds)};
  const auto midnight = std::chrono::floor<std::chrono::days>(moved);
  const std::chrono::year_month_day date{midnight};
  const std::chrono::hh_mm_ss time{moved - midnight};
  DateTime result = *this;
  result.year = static_cast<int>(date.year());
  result.month = static_cast<int>(static_cast<unsigned>(date.month()));
  result.day = static_cast<int>(static_cast<unsigned>(date.day()));
  result.hour = static_cast<int>(time.hours().count());
  result.minute = static_cast<int>(time.minutes().count());
  result.second = static_cast<int>(time.seconds().count());
  return result;
}

DateTime DateTime::Now() {
  const auto since = std::chrono::system_clock::now().time_since_epoch();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
  DateTime epoch;
  epoch.year = 1970;
  epoch.nanosecond = static_cast<int>(std::chrono::nanoseconds(since - seconds).count());
  return epoch.PlusSeconds(seconds.count());
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

std::string DateTime::Canonical(Kind kind) const {
  const bool zoned = kind == Kind::TimestampTz;
  const DateTime at = zoned ? PlusSeconds(-60LL * offset_minutes) : *this;
  const int zone = std::abs(offset_minutes);
  std::array<char, 128> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d.%09d %c%02d:%02d", at.year,
                at.month, at.day, at.hour, at.minute, at.second, at.nanosecond,
                offset_minutes < 0 ? '-' : '+', zone / 60, zone % 60);
  return {text.data(), zoned ? 36U : kind == Kind::Timestamp ? 29U : 19U};
}

}  // namespace quillmere::sandbox
