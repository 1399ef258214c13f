#include <algorithm>

#include "sandbox/expr/function_parts.h"
#include "sandbox/values/decimal.h"

namespace quillmere::sandbox {

namespace {

using Args = std::vector<Datum>;

Status Number(const Datum& value, Decimal* out) {
  const auto number = Decimal::Parse(value.text);
  if (!number) return Ora(1722);
  *out = *number;
  return {};
}

// A small whole number such as a scale or a position, kept within +-10 million.
int SmallInt(const Datum& value) {
  const auto number = Decimal::Parse(value.text);
  if (!number) return 0;
  const auto whole = number->Truncated(0).ToInt64();
  if (!whole) return number->IsNegative() ? -10000000 : 10000000;
  return static_cast<int>(std::clamp<std::int64_t>(*whole, -10000000, 10000000));
}

using Operation = Status (*)(const Decimal&, const Decimal&, Decimal*);

template <Operation operation>
Status Arithmetic(const Args& args, const EvalContext&, Datum* out) {
  Decimal a;
  Decimal b;
  Decimal result;
  if (Status status = Number(args[0], &a); !status.ok()) return status;
  if (Status status = Number(args[1], &b); !status.ok()) return status;
  if (Status status = operation(a, b, &result); !status.ok()) return status;
  out->text = result.Text();
  return {};
}

Status Negate(const Args& args, const EvalContext&, Datum* out) {
  Decimal a;
  if (Status status = Number(args[0], &a); !status.ok()) return status;
  out->text = a.Negated().Text();
  return {};
}

Status Absolute(const Args& args, const EvalContext&, Datum* out) {
  Decimal a;
  if (Status status = Number(args[0], &a); !status.ok()) return status;
  out->text = (a.IsNegative() ? a.Negated() : a).Text();
  return {};
}

Status Round(const Args& args, const EvalContext&, Datum* out) {
  Decimal a;
  if (Status status = Number(args[0], &a); !status.ok()) return status;
  out->text = a.Rounded(args.size() > 1 ? SmallInt(args[1]) : 0).Text();
  return {};
}

Status Truncate(const Args& args, const EvalContext&, Datum* out) {
  Decimal a;
  if (Status status = Number(args[0], &a); !status.ok()) return status;
  out->text = a.Truncated(args.size() > 1 ? SmallInt(args[1]) : 0).Text();
  return {};
}

Status Modulo(const Decimal& a, const Decimal& b, Decimal* out) {
  *out = a;
  if (b.IsZero()) return {};
  Decimal quotient;
  Decimal product;
  if (Status status = Decimal::Divide(a, b, &quotient); !status.ok()) return status;
  if (Status status = Decimal::Multiply(quotient.Truncated(0), b, &product); !status.ok()) {
    return status;
  }
  return Decimal::Subtract(a, product, out);
}

// Whole exponents only, by squaring.
Status Power(const Decimal& a, const Decimal& b, Decimal* out) {
  const auto exponent = b.ToInt64();
  if (!exponent || *exponent > 100000 || *exponent < -100000) {
    return Ora(1428, "POWER takes whole exponents");
  }
  Decimal result(1);
  Decimal base = a;
  for (std::int64_t rest = *exponent < 0 ? -*exponent : *exponent; rest > 0; rest /= 2) {
    if (rest % 2 != 0) {
      if (Status status = Decimal::Multiply(result, base, &result); !status.ok()) return status;
    }
    if (rest > 1) {
      if (Status status = Decimal::Multiply(base, base, &base); !status.ok()) return status;
    }
  }
  if (*exponent < 0) return Decimal::Divide(Decimal(1), result, out);
  *out = result;
  return {};
}

Status ToNumber(const Args& args, const EvalContext&, Datum* out) {
  Decimal a;
  if (Status status = Number(args[0], &a); !status.ok()) return status;
  out->text = a.Text();
  return {};
}

}  // namespace

void AddNumberFunctions(std::vector<Function>* out) {
  const Kind number = Kind::Number;
  out->insert(out->end(),
              {{"+", 2, 2, {number, number}, number, true, Arithmetic<Decimal::Add>},
               {"-", 2, 2, {number, number}, number, true, Arithmetic<Decimal::Subtract>},
               {"*", 2, 2, {number, number}, number, true, Arithmetic<Decimal::Multiply>},
               {"/", 2, 2, {number, number}, number, true, Arithmetic<Decimal::Divide>},
               {"NEGATE", 1, 1, {number}, number, true, Negate},
               {"ABS", 1, 1, {number}, number, true, Absolute},
               {"ROUND", 1, 2, {number, number}, number, true, Round},
               {"TRUNC", 1, 2, {number, number}, number, true, Truncate},
               {"MOD", 2, 2, {number, number}, number, true, Arithmetic<Modulo>},
               {"POWER", 2, 2, {number, number}, number, true, Arithmetic<Power>},
               {"TO_NUMBER", 1, 1, {number}, number, true, ToNumber},
               {"TO_NUMBER", 1, 1, {Kind::Text}, number, true, ToNumber}});
}

}  // namespace quillmere::sandbox
