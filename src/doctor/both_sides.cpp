// SPDX-License-Identifier: MIT
// Checks 1 to 5, of both databases.
#include <cstdlib>
#include <map>

#include "doctor/visit.h"
#include "foundation/text.h"
#include "oracle/source_facts.h"

namespace quillmere::doctor {
namespace {

constexpr oci::sb4 kAccountLocked = 28000;
constexpr oci::sb4 kPasswordExpired = 28001;
constexpr oci::sb4 kWrongPassword = 1017;
constexpr std::int64_t kOldestByCommits = 1002;  // 10.2
constexpr std::int64_t kOldest = 901;
constexpr std::int64_t kMostSecondsApart = 60;

// "19.3.0.0.0" as 1903; 0 when it is no version.
std::int64_t VersionNumber(std::string_view text) {
  const std::size_t dot = text.find('.');
  std::int64_t major = 0;
  std::int64_t minor = 0;
  if (dot == std::string_view::npos || !ParseNumber(text.substr(0, dot), major)) return 0;
  const std::string_view rest = text.substr(dot + 1);
  ParseNumber(rest.substr(0, rest.find('.')), minor);
  return major * 100 + minor;
}

std::string LogOnCure(const Side& side) {
  const std::string user = UserName(side);
  switch (side.session.LastErrorCode()) {
    case kAccountLocked:
      return "alter user " + user + " account unlock;";
    case kPasswordExpired:
      return "alter user " + user + " identified by \"...\";";
    case kWrongPassword:
      return Command("source edit " + side.log_on.name);
    default:
      return {};
  }
}

// Seconds since 1970 in UTC of "2026-01-31 23:59:07 +01:00"; false when it is none.
bool ReadServerTime(const std::string& text, std::int64_t& seconds) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, off_hour = 0, off_minute = 0;
  char sign = '+';
  if (std::sscanf(text.c_str(), "%d-%d-%d %d:%d:%d %c%d:%d", &year, &month, &day, &hour, &minute,
                  &second, &sign, &off_hour, &off_minute) != 9) {
    return false;
  }
  const std::chrono::year_month_day date{std::chrono::year{year},
                                         std::chrono::month{static_cast<unsigned>(month)},
                                         std::chrono::day{static_cast<unsigned>(day)}};
  if (!date.ok()) return false;
  const std::int64_t days = std::chrono::sys_days{date}.time_since_epoch().count();
  const std::int64_t offset = off_hour * 3600 + off_minute * 60;
  seconds = days * 86'400 + hour * 3600 + minute * 60 + second - (sign == '-' ? -offset : offset);
  return true;
}

}  // namespace

std::string CheckLogOn(Visit& visit) {
  for (Side* const side : {&visit.Source(), &visit.Destination()}) {
    if (!side->connected) visit.Fail(side->log_on.name, side->why_not, LogOnCure(*side), side);
  }
  return "both databases can be logged on to";
}

std::string CheckVersion(Visit& visit) {
  std::string texts[2];
  std::int64_t numbers[2] = {};
  std::size_t i = 0;
  for (Side* const side : {&visit.Source(), &visit.Destination()}) {
    if (visit.ReadOne(*side, "select version from v$instance", texts[i])) {
      numbers[i] = VersionNumber(texts[i]);
      if (numbers[i] == 0) visit.Unknown(*side, "the version reads '" + texts[i] + "'");
    }
    ++i;
  }
  const std::string& source = visit.Source().log_on.name;
  const std::int64_t oldest = visit.ByCommits() ? kOldestByCommits : kOldest;
  if (numbers[0] != 0 && numbers[0] < oldest) {
    visit.Fail(source, texts[0] + " is too old to be followed");
  }
  if (numbers[1] != 0 && numbers[1] < numbers[0]) {
    visit.Warn(visit.Destination().log_on.name, texts[1] + " is older than the source, " +
                                                    texts[0] +
                                                    ": it may not take what the source writes");
  }
  return texts[0] + " to " + texts[1];
}

std::string CheckContainers(Visit& visit) {
  std::string found;
  for (Side* const side : {&visit.Source(), &visit.Destination()}) {
    if (!visit.Connected(*side)) continue;
    std::string container;
    SourceFacts facts(side->session);
    if (!facts.ReadContainer(container)) {
      if (side->session.LastErrorCode() != SourceFacts::kNoSuchParameter) {
        visit.Unknown(*side, side->session.LastError());
        continue;
      }
      container.clear();  // a server from before there were any
    }
    const std::string& name = side->log_on.name;
    const bool at_root = container == SourceFacts::kRoot;
    if (side == &visit.Destination()) {
      if (at_root) visit.Warn(name, "leads to the root, not to one of its containers");
      continue;
    }
    const std::string& chosen = visit.Job().container;
    const std::string edit = Command("job edit " + visit.Job().name);
    found = container.empty() ? "none" : container;
    if (at_root && chosen.empty()) {
      visit.Fail(name, "is the root, which shows the changes of all containers",
                 edit + " --container ...", side);
    } else if (!at_root && !chosen.empty() && chosen != container) {
      visit.Fail(name, "leads to " + found + ", the job follows " + chosen,
                 edit + " --no-container", side);
    } else if (at_root) {
      std::string mode;
      if (!facts.ReadOpenMode(chosen, mode)) {
        visit.Unknown(*side, side->session.LastError());
      } else if (mode.empty()) {
        visit.Fail(name, "has no container " + chosen, edit + " --container ...", side);
      }
    }
  }
  return "the source leads to: " + found;
}

std::string CheckCharacters(Visit& visit) {
  std::string sets[2];
  TextRows formats[2];
  bool known = true;
  std::size_t i = 0;
  for (Side* const side : {&visit.Source(), &visit.Destination()}) {
    known = visit.ReadOne(*side,
                          "select value from nls_database_parameters where parameter = "
                          "'NLS_CHARACTERSET'",
                          sets[i]) &&
            visit.Read(*side,
                       "select parameter, value from nls_session_parameters where parameter in "
                       "('NLS_DATE_FORMAT', 'NLS_TIMESTAMP_FORMAT', 'NLS_TIMESTAMP_TZ_FORMAT', "
                       "'NLS_NUMERIC_CHARACTERS') order by parameter",
                       2, formats[i]) &&
            known;
    ++i;
  }
  if (!known) return {};
  const std::string& destination = visit.Destination().log_on.name;
  if (sets[0] != sets[1] && !sets[1].ends_with("UTF8")) {
    visit.Warn(destination, "has characters of " + sets[1] + ", the source those of " + sets[0] +
                                ": what it does not know is lost");
  }
  if (formats[0] != formats[1]) {
    visit.Fail(destination, "reads dates or numbers in other formats than the source writes",
               "-- take NLS_DATE_FORMAT and the like out of log-on triggers, on both sides",
               &visit.Destination());
  }
  for (const std::vector<std::string>& format : formats[0]) {
    if (format[0] != "NLS_DATE_FORMAT" || format[1].find("SS") != std::string::npos) continue;
    visit.Fail(visit.Source().log_on.name,
               "writes dates as " + format[1] + ", without the time of day",
               "-- unset NLS_DATE_FORMAT where the program is started", &visit.Source());
  }
  return sets[0] + " to " + sets[1] + ", dates and numbers alike";
}

std::string CheckClock(Visit& visit) {
  for (Side* const side : {&visit.Source(), &visit.Destination()}) {
    std::string text;
    std::int64_t there = 0;
    const char* const sql =
        "select to_char(systimestamp, 'YYYY-MM-DD HH24:MI:SS TZH:TZM') from dual";
    if (!visit.ReadOne(*side, sql, text)) continue;
    if (!ReadServerTime(text, there)) {
      visit.Unknown(*side, "its time reads '" + text + "'");
      continue;
    }
    const std::int64_t apart = std::llabs(there - visit.Time().UnixSeconds());
    if (apart <= kMostSecondsApart) continue;
    visit.Warn(side->log_on.name, "its clock and ours are " + std::to_string(apart) + " s apart",
               "-- let both machines take their time from the same servers", side);
  }
  return "both clocks agree with ours";
}

}  // namespace quillmere::doctor
