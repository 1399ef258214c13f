// SPDX-License-Identifier: MIT
#include "sandbox/values/datum.h"

#include "sandbox/values/decimal.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

Status TextTo(Kind target, const std::string& text, const EvalContext& context, Datum* out) {
  if (target == Kind::Number) {
    const auto number = Decimal::Parse(text);
    if (!number) return Ora(1722);
    *out = Datum::Of(target, number->Text());
  } else if (target == Kind::Raw) {
    if (text.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) return Ora(1465);
    *out = Datum::Of(target, (text.size() % 2 == 0 ? "" : "0") + Upper(text));
  } else {
    DateTime time;
    Status status = ParseDateTime(text, context.nls.Mask(target), &time);
    if (!status.ok()) return status;
    *out = Datum::Of(target, time.Canonical(target));
  }
  return {};
}

}  // namespace

std::string_view KindName(Kind kind) {
  static constexpr std::string_view kNames[kKindCount] = {
      "NULL", "CHAR", "NUMBER", "DATE", "TIMESTAMP", "TIMESTAMP WITH TIME ZONE", "BINARY", "CLOB"};
  return kNames[static_cast<std::size_t>(kind)];
}

Status Convert(const Datum& value, Kind target, const EvalContext& context, Datum* out) {
  const bool from_text = value.kind == Kind::Text || value.kind == Kind::Lob;
  const bool to_text = target == Kind::Text || target == Kind::Lob;
  if (value.null || value.kind == Kind::Null) {
    *out = Datum::NullOf(target);
  } else if (value.kind == target) {
    *out = value;
  } else if (from_text && !to_text) {
    return TextTo(target, value.text, context, out);
  } else if (IsTime(value.kind) && IsTime(target)) {
    DateTime time;
    if (!DateTime::FromCanonical(value.text, &time)) return Ora(1866);
    *out = Datum::Of(target, time.Canonical(target));
  } else if (to_text) {
    std::string text;
    if (Status status = DisplayText(value, context, &text); !status.ok()) return status;
    const bool null = target == Kind::Text && text.empty();
    *out = Datum{target, null, std::move(text)};
  } else {
    return Ora(932, "expected " + std::string(KindName(target)) + " got " +
                        std::string(KindName(value.kind)));
  }
  return {};
}

Status DisplayText(const Datum& value, const EvalContext& context, std::string* out) {
  *out = value.text;
  if (value.null || !IsTime(value.kind)) return {};
  DateTime time;
  if (!DateTime::FromCanonical(value.text, &time)) return Ora(1866);
  return FormatDateTime(time, context.nls.Mask(value.kind), out);
}

}  // namespace quillmere::sandbox
