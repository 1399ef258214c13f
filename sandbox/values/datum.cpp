#include "sandbox/values/datum.h"

#include <algorithm>
#include <cctype>

#include "sandbox/values/decimal.h"

namespace quillmere::sandbox {

namespace {

bool IsTime(Kind kind) {
  return kind == Kind::Date || kind == Kind::Timestamp || kind == Kind::TimestampTz;
}

const std::string& MaskOf(Kind kind, const Nls& nls) {
  if (kind == Kind::Date) return nls.date_format;
  return kind == Kind::Timestamp ? nls.timestamp_format : nls.timestamp_tz_format;
}

std::string CanonicalTime(const DateTime& time, Kind kind) {
  if (kind == Kind::Date) return time.DateText();
  return kind == Kind::Timestamp ? time.TimestampText() : time.TimestampTzText();
}

Status TextToNumber(const std::string& text, Datum* out) {
  const auto number = Decimal::Parse(text);
  if (!number) return Ora(1722);
  *out = Datum::Of(Kind::Number, number->Text());
  return {};
}

Status TextToTime(const std::string& text, Kind target, const EvalContext& context, Datum* out) {
  DateTime time;
  if (Status status = ParseDateTime(text, MaskOf(target, context.nls), &time); !status.ok()) {
    return status;
  }
  *out = Datum::Of(target, CanonicalTime(time, target));
  return {};
}

Status TimeToText(const Datum& value, Kind target, const EvalContext& context, Datum* out) {
  std::string text;
  if (Status status = DisplayText(value, context, &text); !status.ok()) return status;
  *out = Datum::Of(target, std::move(text));
  return {};
}

Status TimeToTime(const Datum& value, Kind target, Datum* out) {
  DateTime time;
  if (!DateTime::FromCanonical(value.text, &time)) return Ora(1866);
  *out = Datum::Of(target, CanonicalTime(time, target));
  return {};
}

}  // namespace

std::string_view KindName(Kind kind) {
  switch (kind) {
    case Kind::Null:
      return "NULL";
    case Kind::Text:
      return "CHAR";
    case Kind::Number:
      return "NUMBER";
    case Kind::Date:
      return "DATE";
    case Kind::Timestamp:
      return "TIMESTAMP";
    case Kind::TimestampTz:
      return "TIMESTAMP WITH TIME ZONE";
    case Kind::Raw:
      return "BINARY";
    case Kind::Lob:
      return "CLOB";
  }
  return "";
}

bool IsHexText(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; });
}

Status Convert(const Datum& value, Kind target, const EvalContext& context, Datum* out) {
  if (value.null || value.kind == Kind::Null) {
    *out = Datum::NullOf(target);
    return {};
  }
  if (value.kind == target) {
    *out = value;
    return {};
  }
  const bool from_text = value.kind == Kind::Text || value.kind == Kind::Lob;
  const bool to_text = target == Kind::Text || target == Kind::Lob;
  if (from_text && target == Kind::Number) return TextToNumber(value.text, out);
  if (from_text && IsTime(target)) return TextToTime(value.text, target, context, out);
  if (IsTime(value.kind) && to_text) return TimeToText(value, target, context, out);
  if (IsTime(value.kind) && IsTime(target)) return TimeToTime(value, target, out);
  if (from_text && target == Kind::Raw) {
    if (!IsHexText(value.text)) return Ora(1465);
    std::string hex = value.text.size() % 2 == 0 ? value.text : "0" + value.text;
    for (char& c : hex) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    *out = Datum::Of(Kind::Raw, std::move(hex));
    return {};
  }
  if (to_text && (from_text || value.kind == Kind::Number || value.kind == Kind::Raw)) {
    *out = Datum::Of(target, value.text);
    if (target == Kind::Text && out->text.empty()) out->null = true;
    return {};
  }
  return Ora(932, "expected " + std::string(KindName(target)) + " got " +
                      std::string(KindName(value.kind)));
}

Status DisplayText(const Datum& value, const EvalContext& context, std::string* out) {
  if (value.null || !IsTime(value.kind)) {
    *out = value.text;
    return {};
  }
  DateTime time;
  if (!DateTime::FromCanonical(value.text, &time)) return Ora(1866);
  return FormatDateTime(time, MaskOf(value.kind, context.nls), out);
}

}  // namespace quillmere::sandbox
