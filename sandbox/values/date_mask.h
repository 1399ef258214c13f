// A format mask of TO_DATE and TO_CHAR, taken apart into its elements.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sandbox/base/status.h"

namespace quillmere::sandbox {

enum class MaskItem {
  Year4,
  Year3,
  Year2,
  Year1,
  RoundYear4,
  RoundYear2,
  Month,
  MonthShort,
  MonthLong,
  Day,
  DayOfYear,
  DayShort,
  DayLong,
  DayOfWeek,
  Hour24,
  Hour12,
  Minute,
  Second,
  SecondOfDay,
  Fraction,
  Radix,
  Meridian,
  ZoneHour,
  ZoneMinute,
  ZoneName,
  FillMode,
  Exact,
  Literal
};

struct MaskElement {
  MaskItem item = MaskItem::Literal;
  int digits = 0;        // of Fraction; 0: as many as there are
  std::string literal;   // of Literal
  std::string spelling;  // as written: its case decides the case of names
};

// ORA-01821 on an unknown element.
Status ParseMask(std::string_view mask, std::vector<MaskElement>* out);

}  // namespace quillmere::sandbox
