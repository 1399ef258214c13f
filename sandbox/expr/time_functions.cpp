#include "sandbox/expr/function_parts.h"
#include "sandbox/values/decimal.h"

namespace quillmere::sandbox {

namespace {

using Args = std::vector<Datum>;

Status Canonical(const DateTime& time, Kind kind, Datum* out) {
  if (kind == Kind::Date) {
    out->text = time.DateText();
  } else {
    out->text = kind == Kind::Timestamp ? time.TimestampText() : time.TimestampTzText();
  }
  return {};
}

Status Parse(const Args& args, const std::string& usual_mask, Kind kind, Datum* out) {
  DateTime time;
  const std::string& mask = args.size() > 1 ? args[1].text : usual_mask;
  if (Status status = ParseDateTime(args[0].text, mask, &time); !status.ok()) return status;
  return Canonical(time, kind, out);
}

Status ToDate(const Args& args, const EvalContext& context, Datum* out) {
  return Parse(args, context.nls.date_format, Kind::Date, out);
}

// LogMiner writes a whole second with a point and no fraction: "2020-02-01 00:00:00."
Status ToTimestamp(const Args& args, const EvalContext& context, Datum* out) {
  return Parse(args, context.nls.timestamp_format, Kind::Timestamp, out);
}

Status ToTimestampTz(const Args& args, const EvalContext& context, Datum* out) {
  return Parse(args, context.nls.timestamp_tz_format, Kind::TimestampTz, out);
}

Status Keep(const Args& args, const EvalContext&, Datum* out) {
  out->text = args[0].text;
  return {};
}

Status DateLiteral(const Args& args, const EvalContext&, Datum* out) {
  return Parse(args, "YYYY-MM-DD", Kind::Date, out);
}

Status TimestampLiteral(const Args& args, const EvalContext&, Datum* out) {
  return Parse(args, "YYYY-MM-DD HH24:MI:SSXFF", Kind::Timestamp, out);
}

Status Format(const Args& args, const EvalContext& context, Datum* out) {
  if (args.size() == 1) return DisplayText(args[0], context, &out->text);
  DateTime time;
  if (!DateTime::FromCanonical(args[0].text, &time)) return Ora(1866);
  return FormatDateTime(time, args[1].text, &out->text);
}

template <Kind kind>
Status Now(const Args&, const EvalContext& context, Datum* out) {
  return Canonical(context.now, kind, out);
}

Status Midnight(const Args& args, const EvalContext&, Datum* out) {
  out->text = args[0].text.substr(0, 10) + " 00:00:00";
  return {};
}

// Days, possibly with a fraction, as whole seconds.
Status Seconds(const Datum& days, bool negate, long long* out) {
  const auto number = Decimal::Parse(days.text);
  if (!number) return Ora(1722);
  Decimal seconds;
  if (Status status = Decimal::Multiply(*number, Decimal(86400), &seconds); !status.ok()) {
    return status;
  }
  const auto whole = seconds.Rounded(0).ToInt64();
  constexpr std::int64_t kTenThousandYears = 400000000000;
  if (!whole || *whole > kTenThousandYears || *whole < -kTenThousandYears) return Ora(1841);
  *out = negate ? -*whole : *whole;
  return {};
}

template <bool negate>
Status MoveByDays(const Args& args, const EvalContext&, Datum* out) {
  DateTime time;
  long long seconds = 0;
  if (!DateTime::FromCanonical(args[0].text, &time)) return Ora(1866);
  if (Status status = Seconds(args[1], negate, &seconds); !status.ok()) return status;
  time = time.PlusSeconds(seconds);
  if (time.year < 1 || time.year > 9999) return Ora(1841);
  return Canonical(time, Kind::Date, out);
}

Status DaysBetween(const Args& args, const EvalContext&, Datum* out) {
  DateTime a;
  DateTime b;
  if (!DateTime::FromCanonical(args[0].text, &a) || !DateTime::FromCanonical(args[1].text, &b)) {
    return Ora(1866);
  }
  const auto seconds = [](const DateTime& time) {
    return time.DaysSinceEpoch() * 86400 + time.hour * 3600 + time.minute * 60 + time.second;
  };
  Decimal days;
  if (Status status = Decimal::Divide(Decimal(seconds(a) - seconds(b)), Decimal(86400), &days);
      !status.ok()) {
    return status;
  }
  out->text = days.Text();
  return {};
}

}  // namespace

void AddTimeFunctions(std::vector<Function>* out) {
  const Kind text = Kind::Text;
  const Kind date = Kind::Date;
  const Kind stamp = Kind::Timestamp;
  const Kind zoned = Kind::TimestampTz;
  out->insert(out->end(), {{"TO_DATE", 1, 2, {text}, date, true, ToDate},
                           {"TO_DATE", 1, 1, {date}, date, true, Keep},
                           {"TO_TIMESTAMP", 1, 2, {text}, stamp, true, ToTimestamp},
                           {"TO_TIMESTAMP", 1, 1, {stamp}, stamp, true, Keep},
                           {"TO_TIMESTAMP_TZ", 1, 2, {text}, zoned, true, ToTimestampTz},
                           {"TO_TIMESTAMP_TZ", 1, 1, {zoned}, zoned, true, Keep},
                           {"DATE_LITERAL", 1, 1, {text}, date, true, DateLiteral},
                           {"TIMESTAMP_LITERAL", 1, 1, {text}, stamp, true, TimestampLiteral},
                           {"TO_CHAR", 1, 2, {date, text}, text, true, Format},
                           {"TO_CHAR", 1, 2, {stamp, text}, text, true, Format},
                           {"TO_CHAR", 1, 2, {zoned, text}, text, true, Format},
                           {"SYSDATE", 0, 0, {text}, date, false, Now<Kind::Date>},
                           {"SYSTIMESTAMP", 0, 0, {text}, zoned, false, Now<Kind::TimestampTz>},
                           {"TRUNC", 1, 1, {date}, date, true, Midnight},
                           {"+", 2, 2, {date, Kind::Number}, date, true, MoveByDays<false>},
                           {"-", 2, 2, {date, Kind::Number}, date, true, MoveByDays<true>},
                           {"-", 2, 2, {date, date}, Kind::Number, true, DaysBetween}});
}

}  // namespace quillmere::sandbox
