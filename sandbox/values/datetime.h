// SPDX-License-Identifier: MIT
// Dates and time stamps: Oracle's format masks, and the canonical texts that the database stores.
//   DATE                      2026-03-01 13:05:09
//   TIMESTAMP                 2026-03-01 13:05:09.123456789
//   TIMESTAMP WITH TIME ZONE  2026-03-01 11:05:09.123456789 +02:00   (UTC, then the offset)
// Canonical texts order like the instants they stand for. Plain values, usable on any thread.
#pragma once

#include <string>
#include <string_view>

#include "sandbox/base/status.h"
#include "sandbox/values/kind.h"

namespace quillmere::sandbox {

// The session's formats, as a client takes them from its environment.
struct Nls {
  std::string date_format = "DD-MON-RR";
  std::string timestamp_format = "DD-MON-RR HH.MI.SSXFF AM";
  std::string timestamp_tz_format = "DD-MON-RR HH.MI.SSXFF AM TZR";

  // Defaults replaced by NLS_DATE_FORMAT, NLS_TIMESTAMP_FORMAT and NLS_TIMESTAMP_TZ_FORMAT.
  static Nls FromEnvironment();
  const std::string& Mask(Kind kind) const;
};

struct DateTime {
  int year = 1;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int nanosecond = 0;
  int offset_minutes = 0;  // of the zone that the fields above are in

  // The wall clock of now, in UTC.
  static DateTime Now();
  // Reads any of the canonical texts; false, and `out` untouched, when it is none.
  static bool FromCanonical(std::string_view text, DateTime* out);
  std::string Canonical(Kind kind) const;
  // The same instant moved by whole seconds; the year may leave 1 to 9999.
  DateTime PlusSeconds(long long seconds) const;
  long long SecondsSinceEpoch() const;
};

// Text to date by a mask; ORA-018xx as Oracle gives them, and `out` untouched.
Status ParseDateTime(std::string_view text, std::string_view mask, DateTime* out);
// Date to text by a mask; ORA-01821 for an element it does not know.
Status FormatDateTime(const DateTime& value, std::string_view mask, std::string* out);

}  // namespace quillmere::sandbox
