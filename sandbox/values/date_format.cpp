// SPDX-License-Identifier: MIT
// The format masks of TO_DATE and TO_CHAR: one table of elements, read and written by it.
#include <array>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "sandbox/values/datetime.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

enum class Item {
  Number,
  Year2,  // in the century that makes it near
  MonthName,
  Hour12,
  Meridian,
  Fraction,
  Radix,
  ZoneHour,
  ZoneMinute,
  Zone
};

struct Element {
  std::string_view spelling;
  Item item;
  // Of a number: where it is kept, how many digits, what it may be and the error for all else.
  int DateTime::*field = nullptr;
  int digits = 2;
  int low = 0;
  int high = 59;
  int error = 1821;
};

constexpr Element kElements[] = {
    {"YYYY", Item::Number, &DateTime::year, 4, 1, 9999, 1841},
    {"RR", Item::Year2},
    {"MM", Item::Number, &DateTime::month, 2, 1, 12, 1843},
    {"MON", Item::MonthName},
    {"DD", Item::Number, &DateTime::day, 2, 1, 31, 1847},
    {"HH24", Item::Number, &DateTime::hour, 2, 0, 23, 1850},
    {"HH", Item::Hour12},
    {"MI", Item::Number, &DateTime::minute, 2, 0, 59, 1851},
    {"SS", Item::Number, &DateTime::second, 2, 0, 59, 1852},
    {"FF", Item::Fraction},
    {"AM", Item::Meridian},
    {"PM", Item::Meridian},
    {"TZH", Item::ZoneHour},
    {"TZM", Item::ZoneMinute},
    {"TZR", Item::Zone},
    {"X", Item::Radix},
};

constexpr std::array<std::string_view, 12> kMonths = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                      "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

// A mask taken apart.
struct Part {
  const Element* element = nullptr;  // none: a literal
  std::string_view literal;
  int digits = 0;  // of a fraction; 0: as many as there are
};

Status SplitMask(std::string_view mask, std::vector<Part>* out) {
  while (!mask.empty()) {
    Part& part = out->emplace_back();
    std::size_t size = 1;
    if (!std::isalnum(static_cast<unsigned char>(mask[0]))) {
      part.literal = mask.substr(0, 1);
    } else {
      for (const Element& element : kElements) {
        if (part.element != nullptr) break;
        if (Upper(mask.substr(0, element.spelling.size())) == element.spelling) {
          part.element = &element;
        }
      }
      if (part.element == nullptr) return Ora(1821);
      size = part.element->spelling.size();
      if (part.element->item == Item::Fraction && mask.size() > size && mask[size] >= '1' &&
          mask[size] <= '9') {
        part.digits = mask[size++] - '0';
      }
    }
    mask.remove_prefix(size);
  }
  return {};
}

std::string Padded(int value, int width) {
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%0*d", width, value);
  return buffer.data();
}

std::string Format(const DateTime& value, const Part& part) {
  if (part.element == nullptr) return std::string(part.literal);
  const int zone = std::abs(value.offset_minutes);
  const std::string zone_hour = (value.offset_minutes < 0 ? "-" : "+") + Padded(zone / 60, 2);
  switch (part.element->item) {
    case Item::Number:
      return Padded(value.*part.element->field, part.element->digits);
    case Item::Year2:
      return Padded(value.year % 100, 2);
    case Item::MonthName:
      return std::string(kMonths[static_cast<std::size_t>(value.month - 1)]);
    case Item::Hour12:
      return Padded(value.hour % 12 == 0 ? 12 : value.hour % 12, 2);
    case Item::Meridian:
      return value.hour < 12 ? "AM" : "PM";
    case Item::Fraction: {
      // A plain FF never drops what is there.
      const int usual = value.nanosecond % 1000 == 0 ? 6 : 9;
      const int digits = part.digits == 0 ? usual : part.digits;
      return Padded(value.nanosecond, 9).substr(0, static_cast<std::size_t>(digits));
    }
    case Item::Radix:
      return ".";
    case Item::ZoneHour:
      return zone_hour;
    case Item::ZoneMinute:
      return Padded(zone % 60, 2);
    case Item::Zone:
      return zone_hour + ":" + Padded(zone % 60, 2);
  }
  return "";
}

// Reads one text by one mask, part by part.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text), now_(DateTime::Now()) {}

  Status Read(const std::vector<Part>& mask, DateTime* out) {
    value_.year = now_.year;
    value_.month = now_.month;
    SkipBlanks();
    for (const Part& part : mask) {
      // The time of day may be left out at the end of the text: it is midnight then.
      if (AtEnd() && (part.element == nullptr || IsTimeOfDay(*part.element))) continue;
      Status status = part.element == nullptr ? ReadLiteral(part.literal) : ReadElement(part);
      if (!status.ok()) return status;
    }
    SkipBlanks();
    if (!AtEnd()) return Ora(1830);
    if (hour12_ >= 0) value_.hour = hour12_ % 12 + (afternoon_ ? 12 : 0);
    value_.offset_minutes = zone_sign_ * (zone_hour_ * 60 + zone_minute_);
    const std::chrono::year_month_day date{std::chrono::year(value_.year),
                                           std::chrono::month(static_cast<unsigned>(value_.month)),
                                           std::chrono::day(static_cast<unsigned>(value_.day))};
    if (!date.ok()) return Ora(1839);
    *out = value_;
    return {};
  }

 private:
  static bool IsTimeOfDay(const Element& element) {
    return element.item >= Item::Hour12 || element.field == &DateTime::hour ||
           element.field == &DateTime::minute || element.field == &DateTime::second;
  }

  Status ReadElement(const Part& part) {
    switch (part.element->item) {
      case Item::Number:
        return ReadInt(*part.element, &(value_.*part.element->field));
      case Item::Year2:
        return ReadYear();
      case Item::MonthName:
        return ReadMonth();
      case Item::Hour12:
        return ReadInt(2, 1, 12, 1849, &hour12_);
      case Item::Meridian:
        afternoon_ = Take("PM");
        return afternoon_ || Take("AM") ? Status() : Ora(1855);
      case Item::Fraction:
        return ReadFraction(part.digits == 0 ? 9 : part.digits);
      case Item::Radix:
        Take(".");
        return {};
      case Item::ZoneHour:
        return ReadZoneHour();
      case Item::ZoneMinute:
        return ReadInt(2, 0, 59, 1875, &zone_minute_);
      case Item::Zone: {
        SkipBlanks();
        if (Take("UTC")) return {};
        Status status = ReadZoneHour();
        return status.ok() && Take(":") ? ReadInt(2, 0, 59, 1875, &zone_minute_) : status;
      }
    }
    return Ora(1821);
  }

  bool AtEnd() const { return at_ >= text_.size(); }

  void SkipBlanks() {
    while (!AtEnd() && text_[at_] == ' ') ++at_;
  }

  bool Take(std::string_view word) {
    if (Upper(text_.substr(at_, word.size())) != word) return false;
    at_ += word.size();
    return true;
  }

  // Punctuation of the mask stands for any punctuation in the text, as Oracle has it, and may
  // be left out altogether when a digit follows.
  Status ReadLiteral(std::string_view literal) {
    for (const char c : literal) {
      if (AtEnd()) return Ora(1840);
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

  Status ReadInt(int digits, int low, int high, int error, int* out) {
    if (AtEnd()) return Ora(1840);
    int value = 0;
    int count = 0;
    for (; count < digits && !AtEnd() && IsDigit(text_[at_]); ++count) {
      value = value * 10 + (text_[at_++] - '0');
    }
    if (count == 0) return Ora(1858);
    if (value < low || value > high) return Ora(error);
    *out = value;
    return {};
  }

  Status ReadInt(const Element& element, int* out) {
    return ReadInt(element.digits, element.low, element.high, element.error, out);
  }

  Status ReadYear() {
    const std::size_t start = at_;
    int value = 0;
    if (Status status = ReadInt(4, 0, 9999, 1841, &value); !status.ok()) return status;
    value_.year = value;
    // A year given in full is taken as it is.
    if (at_ - start > 2) return value == 0 ? Ora(1841) : Status();
    value_.year += now_.year / 100 * 100;
    const bool late = now_.year % 100 >= 50;
    if (late != (value >= 50)) value_.year += late ? 100 : -100;
    return {};
  }

  Status ReadMonth() {
    for (std::size_t i = 0; i < kMonths.size(); ++i) {
      if (!Take(kMonths[i])) continue;
      value_.month = static_cast<int>(i) + 1;
      return {};
    }
    return AtEnd() ? Ora(1840) : Ora(1843);
  }

  Status ReadFraction(int digits) {
    int value = 0;
    int count = 0;
    for (; !AtEnd() && IsDigit(text_[at_]); ++count) {
      if (count >= digits) return Ora(1830);
      value = value * 10 + (text_[at_++] - '0');
    }
    for (; count < 9; ++count) value *= 10;
    value_.nanosecond = value;
    return {};
  }

  Status ReadZoneHour() {
    SkipBlanks();
    if (Take("-")) {
      zone_sign_ = -1;
    } else {
      Take("+");
    }
    return ReadInt(2, 0, 15, 1874, &zone_hour_);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  DateTime now_;
  DateTime value_;
  int hour12_ = -1;
  bool afternoon_ = false;
  int zone_sign_ = 1;
  int zone_hour_ = 0;
  int zone_minute_ = 0;
};

}  // namespace

Status ParseDateTime(std::string_view text, std::string_view mask, DateTime* out) {
  std::vector<Part> parts;
  Status status = SplitMask(mask, &parts);
  return status.ok() ? Reader(text).Read(parts, out) : status;
}

Status FormatDateTime(const DateTime& value, std::string_view mask, std::string* out) {
  std::vector<Part> parts;
  Status status = SplitMask(mask, &parts);
  out->clear();
  for (const Part& part : parts) {
    if (status.ok()) *out += Format(value, part);
  }
  return status;
}

}  // namespace quillmere::sandbox
