#include "sandbox/values/date_mask.h"

#include <cctype>

namespace quillmere::sandbox {

namespace {

struct Spelling {
  std::string_view text;
  MaskItem item;
};

// Longest first where one begins another.
constexpr Spelling kSpellings[] = {
    {"YYYY", MaskItem::Year4},    {"SYYYY", MaskItem::Year4},       {"YYY", MaskItem::Year3},
    {"YY", MaskItem::Year2},      {"Y", MaskItem::Year1},           {"RRRR", MaskItem::RoundYear4},
    {"RR", MaskItem::RoundYear2}, {"MONTH", MaskItem::MonthLong},   {"MON", MaskItem::MonthShort},
    {"MM", MaskItem::Month},      {"MI", MaskItem::Minute},         {"DDD", MaskItem::DayOfYear},
    {"DD", MaskItem::Day},        {"DAY", MaskItem::DayLong},       {"DY", MaskItem::DayShort},
    {"D", MaskItem::DayOfWeek},   {"HH24", MaskItem::Hour24},       {"HH12", MaskItem::Hour12},
    {"HH", MaskItem::Hour12},     {"SSSSS", MaskItem::SecondOfDay}, {"SS", MaskItem::Second},
    {"FF", MaskItem::Fraction},   {"FM", MaskItem::FillMode},       {"FX", MaskItem::Exact},
    {"A.M.", MaskItem::Meridian}, {"P.M.", MaskItem::Meridian},     {"AM", MaskItem::Meridian},
    {"PM", MaskItem::Meridian},   {"TZH", MaskItem::ZoneHour},      {"TZM", MaskItem::ZoneMinute},
    {"TZR", MaskItem::ZoneName},  {"X", MaskItem::Radix},
};

bool StartsWithNoCase(std::string_view text, std::string_view upper) {
  if (text.size() < upper.size()) return false;
  for (std::size_t i = 0; i < upper.size(); ++i) {
    if (std::toupper(static_cast<unsigned char>(text[i])) != upper[i]) return false;
  }
  return true;
}

}  // namespace

Status ParseMask(std::string_view mask, std::vector<MaskElement>* out) {
  out->clear();
  std::size_t at = 0;
  while (at < mask.size()) {
    const char c = mask[at];
    MaskElement element;
    if (c == '"') {
      const std::size_t end = mask.find('"', at + 1);
      if (end == std::string_view::npos) return Ora(1821);
      element.literal = mask.substr(at + 1, end - at - 1);
      at = end + 1;
      out->push_back(std::move(element));
      continue;
    }
    if (!std::isalnum(static_cast<unsigned char>(c))) {
      element.literal = c;
      ++at;
      out->push_back(std::move(element));
      continue;
    }
    const Spelling* found = nullptr;
    for (const Spelling& spelling : kSpellings) {
      if (StartsWithNoCase(mask.substr(at), spelling.text)) {
        found = &spelling;
        break;
      }
    }
    if (found == nullptr) return Ora(1821);
    element.item = found->item;
    element.spelling = mask.substr(at, found->text.size());
    at += found->text.size();
    if (element.item == MaskItem::Fraction && at < mask.size() && mask[at] >= '1' &&
        mask[at] <= '9') {
      element.digits = mask[at] - '0';
      ++at;
    }
    out->push_back(std::move(element));
  }
  return {};
}

}  // namespace quillmere::sandbox
