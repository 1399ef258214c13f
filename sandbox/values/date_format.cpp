#include <array>
#include <cctype>
#include <cstdio>
#include <vector>

#include "sandbox/values/date_mask.h"
#include "sandbox/values/datetime.h"

namespace quillmere::sandbox {

namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
    "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};
constexpr std::array<std::string_view, 7> kDays = {"SUNDAY",   "MONDAY", "TUESDAY", "WEDNESDAY",
                                                   "THURSDAY", "FRIDAY", "SATURDAY"};

int DaysInMonth(int year, int month) {
  constexpr std::array<int, 12> kLengths = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kLengths[static_cast<std::size_t>(month - 1)];
}

// A name in the case of its mask element: MON, Mon, mon.
std::string InCaseOf(std::string_view name, std::string_view spelling) {
  std::string text(name);
  const auto is_lower = [](char c) { return c >= 'a' && c <= 'z'; };
  if (!is_lower(spelling[0]) && (spelling.size() < 2 || !is_lower(spelling[1]))) return text;
  for (std::size_t i = is_lower(spelling[0]) ? 0 : 1; i < text.size(); ++i) {
    text[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[i])));
  }
  return text;
}

std::string Padded(int value, int width, bool fill) {
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%0*d", fill ? width : 1, value);
  return buffer.data();
}

std::string NamePadded(std::string_view name, std::string_view spelling, std::size_t width,
                       bool fill) {
  std::string text = InCaseOf(name, spelling);
  if (fill && text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string FractionText(int nanosecond, int digits) {
  const std::string all = Padded(nanosecond, 9, true);
  // A plain FF never drops what is there.
  if (digits == 0) digits = nanosecond % 1000 == 0 ? 6 : 9;
  return all.substr(0, static_cast<std::size_t>(digits));
}

std::string FormatElement(const DateTime& value, const MaskElement& element, bool fill) {
  const int zone = value.offset_minutes < 0 ? -value.offset_minutes : value.offset_minutes;
  const std::string sign = value.offset_minutes < 0 ? "-" : "+";
  const auto weekday = static_cast<std::size_t>(((value.DaysSinceEpoch() + 4) % 7 + 7) % 7);
  const auto month = kMonths[static_cast<std::size_t>(value.month - 1)];
  switch (element.item) {
    case MaskItem::Year4:
    case MaskItem::RoundYear4:
      return Padded(value.year, 4, fill);
    case MaskItem::Year3:
      return Padded(value.year % 1000, 3, fill);
    case MaskItem::Year2:
    case MaskItem::RoundYear2:
      return Padded(value.year % 100, 2, fill);
    case MaskItem::Year1:
      return Padded(value.year % 10, 1, fill);
    case MaskItem::Month:
      return Padded(value.month, 2, fill);
    case MaskItem::MonthShort:
      return InCaseOf(month.substr(0, 3), element.spelling);
    case MaskItem::MonthLong:
      return NamePadded(month, element.spelling, 9, fill);
    case MaskItem::Day:
      return Padded(value.day, 2, fill);
    case MaskItem::DayOfYear: {
      DateTime first = value;
      first.month = 1;
      first.day = 1;
      return Padded(static_cast<int>(value.DaysSinceEpoch() - first.DaysSinceEpoch()) + 1, 3, fill);
    }
    case MaskItem::DayShort:
      return InCaseOf(kDays[weekday].substr(0, 3), element.spelling);
    case MaskItem::DayLong:
      return NamePadded(kDays[weekday], element.spelling, 9, fill);
    case MaskItem::DayOfWeek:
      return Padded(static_cast<int>(weekday) + 1, 1, fill);
    case MaskItem::Hour24:
      return Padded(value.hour, 2, fill);
    case MaskItem::Hour12:
      return Padded(value.hour % 12 == 0 ? 12 : value.hour % 12, 2, fill);
    case MaskItem::Minute:
      return Padded(value.minute, 2, fill);
    case MaskItem::Second:
      return Padded(value.second, 2, fill);
    case MaskItem::SecondOfDay:
      return Padded(value.hour * 3600 + value.minute * 60 + value.second, 5, fill);
    case MaskItem::Fraction:
      return FractionText(value.nanosecond, element.digits);
    case MaskItem::Radix:
      return ".";
    case MaskItem::Meridian: {
      const bool dotted = element.spelling.size() > 2;
      if (value.hour < 12) return InCaseOf(dotted ? "A.M." : "AM", element.spelling);
      return InCaseOf(dotted ? "P.M." : "PM", element.spelling);
    }
    case MaskItem::ZoneHour:
      return sign + Padded(zone / 60, 2, true);
    case MaskItem::ZoneMinute:
      return Padded(zone % 60, 2, true);
    case MaskItem::ZoneName:
      return sign + Padded(zone / 60, 2, true) + ":" + Padded(zone % 60, 2, true);
    case MaskItem::FillMode:
    case MaskItem::Exact:
      return "";
    case MaskItem::Literal:
      return element.literal;
  }
  return "";
}

// Reads one text by one mask, element by element.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Status Read(const std::vector<MaskElement>& mask, DateTime* out) {
    const DateTime now = DateTime::Now();
    value_.year = now.year;
    value_.month = now.month;
    SkipBlanks();
    for (const MaskElement& element : mask) {
      if (Status status = ReadElement(element, now.year); !status.ok()) return status;
    }
    SkipBlanks();
    if (at_ < text_.size()) return Ora(1830);
    return Finish(out);
  }

 private:
  // The time of day may be left out at the end of the text: it is midnight then.
  static bool IsTimeOfDay(MaskItem item) {
    return item == MaskItem::Hour24 || item == MaskItem::Hour12 || item == MaskItem::Minute ||
           item == MaskItem::Second || item == MaskItem::Fraction || item == MaskItem::Meridian ||
           item == MaskItem::ZoneHour || item == MaskItem::ZoneMinute || item == MaskItem::ZoneName;
  }

  Status ReadElement(const MaskElement& element, int this_year) {
    if (at_ >= text_.size() && IsTimeOfDay(element.item)) return {};
    switch (element.item) {
      case MaskItem::FillMode:
      case MaskItem::Exact:
        return {};
      case MaskItem::Literal:
        return ReadLiteral(element.literal);
      case MaskItem::Radix:
        if (at_ < text_.size() && text_[at_] == '.') ++at_;
        return {};
      case MaskItem::Year4:
      case MaskItem::RoundYear4:
        return ReadInt(4, 1, 9999, 1841, &value_.year);
      case MaskItem::Year3:
        return ReadYear(3, 1000, this_year, false);
      case MaskItem::Year2:
        return ReadYear(2, 100, this_year, false);
      case MaskItem::RoundYear2:
        return ReadYear(2, 100, this_year, true);
      case MaskItem::Year1:
        return ReadYear(1, 10, this_year, false);
      case MaskItem::Month:
        return ReadInt(2, 1, 12, 1843, &value_.month);
      case MaskItem::MonthShort:
        return ReadMonthName(3);
      case MaskItem::MonthLong:
        return ReadMonthName(0);
      case MaskItem::Day:
        return ReadInt(2, 1, 31, 1847, &value_.day);
      case MaskItem::DayShort:
        return SkipWord(3);
      case MaskItem::DayLong:
        return SkipWord(9);
      case MaskItem::Hour24:
        return ReadInt(2, 0, 23, 1850, &value_.hour);
      case MaskItem::Hour12:
        return ReadInt(2, 1, 12, 1849, &hour12_);
      case MaskItem::Minute:
        return ReadInt(2, 0, 59, 1851, &value_.minute);
      case MaskItem::Second:
        return ReadInt(2, 0, 59, 1852, &value_.second);
      case MaskItem::Fraction:
        return ReadFraction(element.digits == 0 ? 9 : element.digits);
      case MaskItem::Meridian:
        return ReadMeridian();
      case MaskItem::ZoneHour:
        return ReadZoneHour();
      case MaskItem::ZoneMinute:
        return ReadInt(2, 0, 59, 1875, &zone_minute_);
      case MaskItem::ZoneName:
        return ReadZoneName();
      case MaskItem::DayOfYear:
      case MaskItem::DayOfWeek:
      case MaskItem::SecondOfDay:
        return Ora(1821);
    }
    return Ora(1821);
  }

  Status Finish(DateTime* out) {
    if (hour12_ >= 0) value_.hour = hour12_ % 12 + (afternoon_ ? 12 : 0);
    if (value_.day > DaysInMonth(value_.year, value_.month)) return Ora(1839);
    value_.offset_minutes = zone_sign_ * (zone_hour_ * 60 + zone_minute_);
    *out = value_;
    return {};
  }

  void SkipBlanks() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
  }

  // Punctuation of the mask stands for any punctuation in the text, as Oracle has it, and may
  // be left out altogether when a digit follows.
  Status ReadLiteral(std::string_view literal) {
    for (const char c : literal) {
      if (std::isalnum(static_cast<unsigned char>(c))) {
        if (at_ >= text_.size()) return Ora(1840);
        if (text_[at_] != c) return Ora(1861);
        ++at_;
        continue;
      }
      if (at_ >= text_.size()) return {};  // an element that is missed says so itself
      const auto byte = static_cast<unsigned char>(text_[at_]);
      if (c == ' ') {
        SkipBlanks();
      } else if (std::ispunct(byte) || byte == ' ') {
        ++at_;
      } else if (!std::isdigit(byte)) {
        return Ora(1861);
      }
    }
    return {};
  }

  Status ReadInt(int digits, int low, int high, int range_error, int* out) {
    if (at_ >= text_.size()) return Ora(1840);
    int value = 0;
    int count = 0;
    while (count < digits && at_ < text_.size() && text_[at_] >= '0' && text_[at_] <= '9') {
      value = value * 10 + (text_[at_] - '0');
      ++at_;
      ++count;
    }
    if (count == 0) return Ora(1858);
    if (value < low || value > high) return Ora(range_error);
    *out = value;
    return {};
  }

  Status ReadYear(int digits, int span, int this_year, bool nearest) {
    int value = 0;
    const std::size_t start = at_;
    // A year given in full is taken as it is.
    if (Status status = ReadInt(4, 0, 9999, 1841, &value); !status.ok()) return status;
    if (static_cast<int>(at_ - start) > digits) {
      if (value == 0) return Ora(1841);
      value_.year = value;
      return {};
    }
    int century = this_year / span * span;
    if (nearest) {
      const int now = this_year % span;
      if (value < 50 && now >= 50) century += span;
      if (value >= 50 && now < 50) century -= span;
    }
    value_.year = century + value;
    return {};
  }

  Status ReadMonthName(std::size_t length) {
    for (std::size_t i = 0; i < kMonths.size(); ++i) {
      const std::string_view full = kMonths[i];
      if (MatchesWord(full) || MatchesWord(full.substr(0, length == 0 ? full.size() : length))) {
        value_.month = static_cast<int>(i) + 1;
        if (length == 0) SkipBlanks();
        return {};
      }
    }
    return at_ >= text_.size() ? Ora(1840) : Ora(1843);
  }

  bool MatchesWord(std::string_view word) {
    if (text_.size() - at_ < word.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
      if (std::toupper(static_cast<unsigned char>(text_[at_ + i])) != word[i]) return false;
    }
    at_ += word.size();
    return true;
  }

  Status SkipWord(std::size_t most) {
    std::size_t count = 0;
    while (count < most && at_ < text_.size() &&
           std::isalpha(static_cast<unsigned char>(text_[at_]))) {
      ++at_;
      ++count;
    }
    SkipBlanks();
    return count == 0 ? Ora(1846, "not a valid day of the week") : Status();
  }

  Status ReadFraction(int digits) {
    int count = 0;
    int value = 0;
    while (at_ < text_.size() && text_[at_] >= '0' && text_[at_] <= '9') {
      if (count >= digits) return Ora(1830);
      value = value * 10 + (text_[at_] - '0');
      ++at_;
      ++count;
    }
    for (; count < 9; ++count) value *= 10;
    value_.nanosecond = value;
    return {};
  }

  Status ReadMeridian() {
    if (MatchesWord("AM") || MatchesWord("A.M.")) {
      afternoon_ = false;
    } else if (MatchesWord("PM") || MatchesWord("P.M.")) {
      afternoon_ = true;
    } else {
      return Ora(1855);
    }
    return {};
  }

  Status ReadZoneHour() {
    SkipBlanks();
    if (at_ < text_.size() && (text_[at_] == '+' || text_[at_] == '-')) {
      zone_sign_ = text_[at_] == '-' ? -1 : 1;
      ++at_;
    }
    return ReadInt(2, 0, 15, 1874, &zone_hour_);
  }

  Status ReadZoneName() {
    SkipBlanks();
    if (MatchesWord("UTC") || MatchesWord("GMT") || MatchesWord("Z")) return {};
    if (Status status = ReadZoneHour(); !status.ok()) return status;
    if (at_ < text_.size() && text_[at_] == ':') {
      ++at_;
      return ReadInt(2, 0, 59, 1875, &zone_minute_);
    }
    return {};
  }

  std::string_view text_;
  std::size_t at_ = 0;
  DateTime value_;
  int hour12_ = -1;
  bool afternoon_ = false;
  int zone_sign_ = 1;
  int zone_hour_ = 0;
  int zone_minute_ = 0;
};

}  // namespace

Status ParseDateTime(std::string_view text, std::string_view mask, DateTime* out) {
  std::vector<MaskElement> elements;
  if (Status status = ParseMask(mask, &elements); !status.ok()) return status;
  return Reader(text).Read(elements, out);
}

Status FormatDateTime(const DateTime& value, std::string_view mask, std::string* out) {
  std::vector<MaskElement> elements;
  if (Status status = ParseMask(mask, &elements); !status.ok()) return status;
  out->clear();
  bool fill = true;
  for (const MaskElement& element : elements) {
    if (element.item == MaskItem::FillMode) fill = !fill;
    *out += FormatElement(value, element, fill);
  }
  return {};
}

}  // namespace quillmere::sandbox
