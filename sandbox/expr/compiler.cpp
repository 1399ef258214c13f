#include "sandbox/expr/compiler.h"

#include "sandbox/store/sqlite_functions.h"

namespace quillmere::sandbox {

namespace {

bool IsTime(Kind kind) {
  return kind == Kind::Date || kind == Kind::Timestamp || kind == Kind::TimestampTz;
}

// What two values are compared as.
Kind CommonKind(Kind a, Kind b) {
  if (a == Kind::Null) return b;
  if (b == Kind::Null || a == b) return a;
  for (const Kind kind : {Kind::Number, Kind::TimestampTz, Kind::Timestamp, Kind::Date}) {
    if (a == kind || b == kind) return kind;
  }
  return Kind::Text;
}

bool Comparable(Kind a, Kind b) {
  if (a == Kind::Null || b == Kind::Null) return true;
  if (a == Kind::Lob || b == Kind::Lob) return false;
  if (a == Kind::Number && IsTime(b)) return false;
  return !(b == Kind::Number && IsTime(a));
}

// As an operand of an order or equality: time zones compare as instants.
std::string Operand(std::string sql, Kind kind) {
  return kind == Kind::TimestampTz ? "substr(" + sql + ",1,29)" : sql;
}

std::string Ordered(std::string sql, Kind kind) {
  if (kind == Kind::Number) return "(" + sql + " COLLATE " + std::string(kNumberOrder) + ")";
  return Operand(std::move(sql), kind);
}

std::string_view Symbol(ExprOp op) {
  switch (op) {
    case ExprOp::Equal:
      return " = ";
    case ExprOp::NotEqual:
      return " <> ";
    case ExprOp::Less:
      return " < ";
    case ExprOp::LessEqual:
      return " <= ";
    case ExprOp::Greater:
      return " > ";
    default:
      return " >= ";
  }
}

// Joins in halves: SQLite limits the depth of an expression, not its width.
std::string JoinBalanced(const std::vector<std::string>& parts, std::size_t begin, std::size_t end,
                         std::string_view word) {
  if (end - begin == 1) return parts[begin];
  const std::size_t middle = begin + (end - begin) / 2;
  std::string joined = "(" + JoinBalanced(parts, begin, middle, word);
  joined += word;
  joined += JoinBalanced(parts, middle, end, word) + ")";
  return joined;
}

bool IsAggregate(const Expr& expr) {
  return expr.op == ExprOp::CountStar ||
         (expr.op == ExprOp::Call &&
          (expr.name == "COUNT" || expr.name == "MAX" || expr.name == "MIN" || expr.name == "SUM"));
}

Status Unknown(const Expr& expr) {
  const std::string prefix = expr.qualifier.empty() ? "" : "\"" + expr.qualifier + "\".";
  return {904, prefix + "\"" + expr.name + "\": invalid identifier"};
}

}  // namespace

std::string ExpressionCompiler::Emit(const Compiled& value, Kind kind) {
  if (value.constant != nullptr) {
    parameters_.push_back({value.constant, kind == Kind::Null ? Kind::Text : kind});
    return "?" + std::to_string(parameters_.size());
  }
  if (kind == value.kind || kind == Kind::Null || value.kind == Kind::Null) return value.sql;
  return SqliteConversionName(value.kind, kind) + "(" + value.sql + ")";
}

Status ExpressionCompiler::Value(const Expr& expr, const Scope& scope, Compiled* out) {
  if (IsAggregate(expr)) return Aggregate(expr, scope, out);
  if (IsConstant(expr)) {
    out->constant = &expr;
    return ConstantKind(expr, &out->kind);
  }
  switch (expr.op) {
    case ExprOp::Column:
      return Column(expr, scope, out);
    case ExprOp::Rowid:
      return Rowid(expr, scope, out);
    case ExprOp::Call:
    case ExprOp::Negate:
    case ExprOp::Add:
    case ExprOp::Subtract:
    case ExprOp::Multiply:
    case ExprOp::Divide:
    case ExprOp::Concat:
      return Call(expr, scope, out);
    default:
      return Ora(936);
  }
}

Status ExpressionCompiler::Column(const Expr& expr, const Scope& scope, Compiled* out) {
  for (const Scope* at = &scope; at != nullptr; at = at->outer) {
    bool found = false;
    for (const ScopeSource& source : at->sources) {
      if (!expr.qualifier.empty() && expr.qualifier != source.alias) continue;
      for (const ScopeColumn& column : source.columns) {
        if (column.name != expr.name) continue;
        if (found) return Ora(918, expr.name);
        found = true;
        out->sql = column.sql;
        out->kind = column.kind;
      }
    }
    if (found) return {};
  }
  return Unknown(expr);
}

Status ExpressionCompiler::Rowid(const Expr& expr, const Scope& scope, Compiled* out) {
  for (const ScopeSource& source : scope.sources) {
    if (!expr.qualifier.empty() && expr.qualifier != source.alias) continue;
    if (source.rowid_sql.empty()) break;
    out->sql = source.rowid_sql;
    out->kind = Kind::Text;
    return {};
  }
  return {1446, "cannot select ROWID from what has no row addresses"};
}

Status ExpressionCompiler::Call(const Expr& expr, const Scope& scope, Compiled* out) {
  std::vector<Compiled> args(expr.args.size());
  std::vector<Kind> kinds;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (Status status = Value(*expr.args[i], scope, &args[i]); !status.ok()) return status;
    kinds.push_back(args[i].kind);
  }
  const Function* function = nullptr;
  if (Status status = FindFunction(FunctionName(expr), kinds, &function); !status.ok()) {
    return status;
  }
  // SQLite takes at most 127 arguments in a call.
  if (args.size() > 100) return Ora(939);
  out->kind = function->result;
  out->sql = SqliteName(*function) + "(";
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (i > 0) out->sql += ',';
    out->sql += Emit(args[i], ArgumentKind(*function, i));
  }
  out->sql += ')';
  return {};
}

Status ExpressionCompiler::Aggregate(const Expr& expr, const Scope& scope, Compiled* out) {
  out->kind = Kind::Number;
  if (expr.op == ExprOp::CountStar) {
    out->sql = "CAST(count(*) AS TEXT)";
    return {};
  }
  if (expr.args.size() != 1) return Ora(909);
  Compiled argument;
  if (Status status = Value(*expr.args[0], scope, &argument); !status.ok()) return status;
  if (expr.name == "COUNT") {
    out->sql = "CAST(count(" + Emit(argument, argument.kind) + ") AS TEXT)";
  } else if (expr.name == "SUM") {
    out->sql = "qm_sum(" + Emit(argument, Kind::Number) + ")";
  } else {
    out->kind = argument.kind;
    const std::string inner = Emit(argument, argument.kind);
    const std::string order =
        argument.kind == Kind::Number ? inner + " COLLATE " + std::string(kNumberOrder) : inner;
    out->sql = (expr.name == "MAX" ? "max(" : "min(") + order + ")";
  }
  return {};
}

Status ExpressionCompiler::Condition(const Expr& expr, const Scope& scope, std::string* out) {
  switch (expr.op) {
    case ExprOp::And:
    case ExprOp::Or:
      return Junction(expr, scope, out);
    case ExprOp::Not: {
      std::string inner;
      if (Status status = Condition(*expr.args[0], scope, &inner); !status.ok()) return status;
      *out = "(NOT " + inner + ")";
      return {};
    }
    case ExprOp::IsNull: {
      Compiled value;
      if (Status status = Value(*expr.args[0], scope, &value); !status.ok()) return status;
      *out = "(" + Emit(value, value.kind) + " IS NULL)";
      return {};
    }
    case ExprOp::In:
      return In(expr, scope, out);
    case ExprOp::Between:
      return Between(expr, scope, out);
    case ExprOp::Like:
      return Like(expr, scope, out);
    case ExprOp::Exists: {
      if (!subquery_) return Ora(900, "EXISTS is not supported here");
      std::string inner;
      if (Status status = subquery_(*expr.subquery, scope, &inner); !status.ok()) return status;
      *out = "EXISTS (" + inner + ")";
      return {};
    }
    case ExprOp::Equal:
    case ExprOp::NotEqual:
    case ExprOp::Less:
    case ExprOp::LessEqual:
    case ExprOp::Greater:
    case ExprOp::GreaterEqual:
      return Compare(expr, scope, out);
    default:
      return Ora(920);
  }
}

Status ExpressionCompiler::Junction(const Expr& expr, const Scope& scope, std::string* out) {
  std::vector<std::string> parts(expr.args.size());
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (Status status = Condition(*expr.args[i], scope, &parts[i]); !status.ok()) return status;
  }
  *out = JoinBalanced(parts, 0, parts.size(), expr.op == ExprOp::And ? " AND " : " OR ");
  return {};
}

Status ExpressionCompiler::Values(const Expr& expr, const Scope& scope, std::vector<Compiled>* out,
                                  Kind* common) {
  *common = Kind::Null;
  for (const ExprPtr& arg : expr.args) {
    Compiled& value = out->emplace_back();
    if (Status status = Value(*arg, scope, &value); !status.ok()) return status;
    if (!Comparable(out->front().kind, value.kind)) {
      return Ora(932, "expected " + std::string(KindName(out->front().kind)) + " got " +
                          std::string(KindName(value.kind)));
    }
    *common = CommonKind(*common, value.kind);
  }
  return {};
}

Status ExpressionCompiler::Compare(const Expr& expr, const Scope& scope, std::string* out) {
  std::vector<Compiled> values;
  Kind kind = Kind::Null;
  if (Status status = Values(expr, scope, &values, &kind); !status.ok()) return status;
  const bool equality = expr.op == ExprOp::Equal || expr.op == ExprOp::NotEqual;
  const std::string left = Emit(values[0], kind);
  const std::string right = Emit(values[1], kind);
  *out = "(" + (equality ? Operand(left, kind) : Ordered(left, kind));
  *out += Symbol(expr.op);
  *out += (equality ? Operand(right, kind) : Ordered(right, kind)) + ")";
  return {};
}

Status ExpressionCompiler::In(const Expr& expr, const Scope& scope, std::string* out) {
  std::vector<Compiled> values;
  Kind kind = Kind::Null;
  if (Status status = Values(expr, scope, &values, &kind); !status.ok()) return status;
  *out = "(" + Operand(Emit(values[0], kind), kind) + " IN (";
  for (std::size_t i = 1; i < values.size(); ++i) {
    if (i > 1) *out += ',';
    *out += Operand(Emit(values[i], kind), kind);
  }
  *out += "))";
  return {};
}

Status ExpressionCompiler::Between(const Expr& expr, const Scope& scope, std::string* out) {
  std::vector<Compiled> values;
  Kind kind = Kind::Null;
  if (Status status = Values(expr, scope, &values, &kind); !status.ok()) return status;
  *out = "(" + Ordered(Emit(values[0], kind), kind) + " BETWEEN ";
  *out += Ordered(Emit(values[1], kind), kind) + " AND ";
  *out += Ordered(Emit(values[2], kind), kind) + ")";
  return {};
}

Status ExpressionCompiler::Like(const Expr& expr, const Scope& scope, std::string* out) {
  *out = "qm_like(";
  for (std::size_t i = 0; i < expr.args.size(); ++i) {
    Compiled value;
    if (Status status = Value(*expr.args[i], scope, &value); !status.ok()) return status;
    if (i > 0) *out += ',';
    *out += Emit(value, Kind::Text);
  }
  *out += ')';
  return {};
}

}  // namespace quillmere::sandbox
