// SPDX-License-Identifier: MIT
#include "sandbox/expr/functions.h"

#include <algorithm>

#include "sandbox/values/decimal.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

using Args = std::vector<std::string>;

constexpr Kind kText = Kind::Text;
constexpr Kind kNumber = Kind::Number;
constexpr Kind kDate = Kind::Date;
constexpr Kind kStamp = Kind::Timestamp;
constexpr Kind kZoned = Kind::TimestampTz;

Status Number(const std::string& text, Decimal* out) {
  const auto number = Decimal::Parse(text);
  if (!number) return Ora(1722);
  *out = *number;
  return {};
}

// A whole number such as a scale or a position, kept within `most` on both sides.
std::int64_t Whole(const std::string& text, std::int64_t most) {
  const auto number = Decimal::Parse(text);
  if (!number) return 0;
  const auto whole = number->Truncated(0).ToInt64();
  if (!whole) return number->IsNegative() ? -most : most;
  return std::clamp(*whole, -most, most);
}

using Operation = Status (*)(const Decimal&, const Decimal&, Decimal*);

template <Operation operation>
Status Arithmetic(const Args& args, const EvalContext&, std::string* out) {
  Decimal a;
  Decimal b;
  Status status = Number(args[0], &a);
  if (status.ok()) status = Number(args[1], &b);
  if (status.ok()) status = operation(a, b, &a);
  *out = a.Text();
  return status;
}

Status Subtract(const Decimal& a, const Decimal& b, Decimal* out) {
  return Decimal::Add(a, b.Negated(), out);
}

// Whole exponents only, by squaring.
Status Power(const Decimal& a, const Decimal& b, Decimal* out) {
  const auto exponent = b.ToInt64();
  if (!exponent || *exponent > 100000 || *exponent < -100000) {
    return Ora(1428, "POWER takes whole exponents");
  }
  Decimal base = a;
  Decimal result(1);
  Status status;
  for (std::int64_t rest = std::abs(*exponent); rest > 0 && status.ok(); rest /= 2) {
    if (rest % 2 != 0) status = Decimal::Multiply(result, base, &result);
    if (rest > 1 && status.ok()) status = Decimal::Multiply(base, base, &base);
  }
  if (status.ok() && *exponent < 0) return Decimal::Divide(Decimal(1), result, out);
  *out = result;
  return status;
}

template <Decimal (Decimal::*fit)(int) const>
Status FitScale(const Args& args, const EvalContext&, std::string* out) {
  Decimal a;
  Status status = Number(args[0], &a);
  *out = (a.*fit)(args.size() > 1 ? static_cast<int>(Whole(args[1], 1000)) : 0).Text();
  return status;
}

Status Substring(const Args& args, const EvalContext&, std::string* out) {
  constexpr std::int64_t kFar = 1LL << 40;
  const std::string& text = args[0];
  const auto count = static_cast<std::int64_t>(CountCharacters(text));
  std::int64_t start = Whole(args[1], kFar);
  if (start != 0) start += start > 0 ? -1 : count;
  const std::int64_t length = args.size() > 2 ? Whole(args[2], kFar) : count;
  if (start < 0 || start >= count || length < 1) return {};
  const std::size_t from = ByteOfCharacter(text, static_cast<std::size_t>(start));
  const auto end = static_cast<std::size_t>(std::min(count, start + length));
  *out = text.substr(from, ByteOfCharacter(text, end) - from);
  return {};
}

Status Length(const Args& args, const EvalContext&, std::string* out) {
  *out = std::to_string(CountCharacters(args[0]));
  return {};
}

template <std::string (*change)(std::string_view)>
Status ChangeCase(const Args& args, const EvalContext&, std::string* out) {
  *out = change(args[0]);
  return {};
}

Status Chr(const Args& args, const EvalContext&, std::string* out) {
  const std::int64_t code = Whole(args[0], 256);
  if (code < 0 || code > 255) return Ora(1428);
  *out = static_cast<char>(code);
  return {};
}

Status Same(const Args& args, const EvalContext&, std::string* out) {
  *out = args[0];
  return {};
}

Status Nothing(const Args&, const EvalContext&, std::string*) {
  return {};
}

Status User(const Args&, const EvalContext& context, std::string* out) {
  *out = context.user;
  return {};
}

// A database without containers bears its own name as that of the one it is.
Status SysContext(const Args& args, const EvalContext& context, std::string* out) {
  if (Upper(args[0]) != "USERENV") return {};
  const std::string parameter = Upper(args[1]);
  if (parameter == "CON_NAME") {
    *out = "SANDBOX";
  } else if (parameter == "CON_ID") {
    *out = "0";
  } else if (parameter == "SESSION_USER") {
    *out = context.user;
  } else {
    return Ora(2003);
  }
  return {};
}

template <Kind kind>
Status ToTime(const Args& args, const EvalContext& context, std::string* out) {
  DateTime time;
  const std::string& mask = args.size() > 1 ? args[1] : context.nls.Mask(kind);
  Status status = ParseDateTime(args[0], mask, &time);
  *out = time.Canonical(kind);
  return status;
}

template <Kind kind>
Status Format(const Args& args, const EvalContext& context, std::string* out) {
  DateTime time;
  if (!DateTime::FromCanonical(args[0], &time)) return Ora(1866);
  return FormatDateTime(time, args.size() > 1 ? args[1] : context.nls.Mask(kind), out);
}

template <Kind kind>
Status Now(const Args&, const EvalContext& context, std::string* out) {
  *out = context.now.Canonical(kind);
  return {};
}

// A date moved by days, possibly with a fraction, to the second.
template <Operation operation>
Status MoveByDays(const Args& args, const EvalContext&, std::string* out) {
  DateTime time;
  Decimal seconds;
  if (!DateTime::FromCanonical(args[0], &time)) return Ora(1866);
  Status status = Number(args[1], &seconds);
  if (status.ok()) status = Decimal::Multiply(seconds, Decimal(86400), &seconds);
  if (status.ok()) status = operation(Decimal(), seconds, &seconds);
  if (!status.ok()) return status;
  constexpr std::int64_t kTenThousandYears = 400000000000;
  const auto whole = seconds.Rounded(0).ToInt64();
  if (!whole || std::abs(*whole) > kTenThousandYears) return Ora(1841);
  time = time.PlusSeconds(*whole);
  *out = time.Canonical(kDate);
  return time.year < 1 || time.year > 9999 ? Ora(1841) : Status();
}

Status DaysBetween(const Args& args, const EvalContext&, std::string* out) {
  DateTime a;
  DateTime b;
  if (!DateTime::FromCanonical(args[0], &a) || !DateTime::FromCanonical(args[1], &b)) {
    return Ora(1866);
  }
  Decimal days;
  const Decimal seconds(a.SecondsSinceEpoch() - b.SecondsSinceEpoch());
  Status status = Decimal::Divide(seconds, Decimal(86400), &days);
  *out = days.Text();
  return status;
}

// Never destroyed: threads of the client may still call while the process ends.
const std::vector<Function>& Table() {
  static const auto* table = new std::vector<Function>{
      {"+", 2, {kNumber, kNumber}, kNumber, Arithmetic<Decimal::Add>},
      {"-", 2, {kNumber, kNumber}, kNumber, Arithmetic<Subtract>},
      {"*", 2, {kNumber, kNumber}, kNumber, Arithmetic<Decimal::Multiply>},
      {"/", 2, {kNumber, kNumber}, kNumber, Arithmetic<Decimal::Divide>},
      {"POWER", 2, {kNumber, kNumber}, kNumber, Arithmetic<Power>},
      {"ROUND", 1, {kNumber, kNumber}, kNumber, FitScale<&Decimal::Rounded>},
      {"TRUNC", 1, {kNumber, kNumber}, kNumber, FitScale<&Decimal::Truncated>},
      {"TO_NUMBER", 1, {kNumber}, kNumber, Same},
      {"UPPER", 1, {kText}, kText, ChangeCase<Upper>},
      {"SUBSTR", 2, {kText, kNumber, kNumber}, kText, Substring},
      {"LENGTH", 1, {kText}, kNumber, Length},
      {"CHR", 1, {kNumber}, kText, Chr},
      {"HEXTORAW", 1, {Kind::Raw}, Kind::Raw, Same},
      {"RAWTOHEX", 1, {Kind::Raw}, kText, Same},
      {"TO_CHAR", 1, {kText}, kText, Same},
      {"TO_CHAR", 1, {kNumber}, kText, Same},
      {"TO_CHAR", 1, {kDate, kText}, kText, Format<kDate>},
      {"TO_CHAR", 1, {kStamp, kText}, kText, Format<kStamp>},
      {"TO_CHAR", 1, {kZoned, kText}, kText, Format<kZoned>},
      {"TO_DATE", 1, {kText, kText}, kDate, ToTime<kDate>},
      {"TO_TIMESTAMP", 1, {kText, kText}, kStamp, ToTime<kStamp>},
      {"TO_TIMESTAMP_TZ", 1, {kText, kText}, kZoned, ToTime<kZoned>},
      {"+", 2, {kDate, kNumber}, kDate, MoveByDays<Decimal::Add>},
      {"-", 2, {kDate, kNumber}, kDate, MoveByDays<Subtract>},
      {"-", 2, {kDate, kDate}, kNumber, DaysBetween},
      {"SYSDATE", 0, {}, kDate, Now<kDate>},
      {"SYSTIMESTAMP", 0, {}, kZoned, Now<kZoned>},
      {"USER", 0, {}, kText, User},
      {"SYS_CONTEXT", 2, {kText, kText}, kText, SysContext},
      {"EMPTY_CLOB", 0, {}, Kind::Lob, Nothing},
      {"EMPTY_BLOB", 0, {}, Kind::Raw, Nothing},
  };
  return *table;
}

// How well an entry fits: exact kinds first, then those a NULL or a text can become.
int Fit(const Function& function, const std::vector<Kind>& args) {
  int score = 0;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const Kind wanted = function.args[i];
    if (args[i] == wanted) {
      score += 4;
    } else if (args[i] == Kind::Null || (args[i] == Kind::Lob && wanted == Kind::Text)) {
      score += 3;
    } else if (args[i] == Kind::Text) {
      score += 1;
    }
  }
  return score;
}

}  // namespace

std::span<const Function> Functions() {
  return Table();
}

Status FindFunction(std::string_view name, const std::vector<Kind>& args, const Function** out) {
  Status status = {904, "\"" + std::string(name) + "\": invalid identifier"};
  int best = -1;
  for (const Function& function : Table()) {
    if (function.name != name) continue;
    if (best < 0) status = Ora(909);
    if (args.size() < function.min_args || args.size() > function.args.size()) continue;
    status = {};
    const int fit = Fit(function, args);
    if (fit > best) *out = &function;
    best = std::max(best, fit);
  }
  return status;
}

}  // namespace quillmere::sandbox
