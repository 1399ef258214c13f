#include "sandbox/expr/constant.h"

#include "sandbox/values/decimal.h"

namespace quillmere::sandbox {

std::string_view FunctionName(const Expr& expr) {
  switch (expr.op) {
    case ExprOp::Negate:
      return "NEGATE";
    case ExprOp::Add:
      return "+";
    case ExprOp::Subtract:
      return "-";
    case ExprOp::Multiply:
      return "*";
    case ExprOp::Divide:
      return "/";
    case ExprOp::Concat:
      return "||";
    case ExprOp::Call:
      return expr.name;
    default:
      return {};
  }
}

bool IsConstant(const Expr& expr) {
  switch (expr.op) {
    case ExprOp::Literal:
    case ExprOp::Null:
      return true;
    case ExprOp::Call:
      if (expr.name == "COUNT" || expr.name == "MAX" || expr.name == "MIN" || expr.name == "SUM") {
        return false;
      }
      break;
    case ExprOp::Negate:
    case ExprOp::Add:
    case ExprOp::Subtract:
    case ExprOp::Multiply:
    case ExprOp::Divide:
    case ExprOp::Concat:
      break;
    default:
      return false;
  }
  for (const ExprPtr& arg : expr.args) {
    if (!IsConstant(*arg)) return false;
  }
  return true;
}

Status ConstantKind(const Expr& expr, Kind* out) {
  *out = Kind::Null;
  if (expr.op == ExprOp::Null) return {};
  if (expr.op == ExprOp::Literal) {
    *out = expr.is_number ? Kind::Number : Kind::Text;
    return {};
  }
  std::vector<Kind> kinds(expr.args.size());
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    if (Status status = ConstantKind(*expr.args[i], &kinds[i]); !status.ok()) return status;
  }
  const Function* function = nullptr;
  if (Status status = FindFunction(FunctionName(expr), kinds, &function); !status.ok()) {
    return status;
  }
  *out = function->result;
  return {};
}

Status EvaluateConstant(const Expr& expr, const std::vector<Token>& tokens,
                        const EvalContext& context, Datum* out) {
  if (expr.op == ExprOp::Null) {
    *out = Datum();
    return {};
  }
  if (expr.op == ExprOp::Literal) {
    const std::string& text = tokens[expr.token].text;
    if (!expr.is_number) {
      *out = Datum{Kind::Text, text.empty(), text};
      return {};
    }
    const auto number = Decimal::Parse(text);
    if (!number) return Ora(1426);
    *out = Datum::Of(Kind::Number, number->Text());
    return {};
  }
  std::vector<Datum> args(expr.args.size());
  std::vector<Kind> kinds(expr.args.size());
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (Status status = EvaluateConstant(*expr.args[i], tokens, context, &args[i]); !status.ok()) {
      return status;
    }
    kinds[i] = args[i].kind;
  }
  const Function* function = nullptr;
  if (Status status = FindFunction(FunctionName(expr), kinds, &function); !status.ok()) {
    return status;
  }
  for (std::size_t i = 0; i < args.size(); ++i) {
    Datum converted;
    if (Status status = Convert(args[i], ArgumentKind(*function, i), context, &converted);
        !status.ok()) {
      return status;
    }
    args[i] = std::move(converted);
  }
  return CallFunction(*function, args, context, out);
}

}  // namespace quillmere::sandbox
