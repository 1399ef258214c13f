// SPDX-License-Identifier: MIT
#include "sandbox/expr/compiler.h"

#include "sandbox/store/sqlite_functions.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

// SQLite compares every parameter with every one before it. Literals beyond these stand in the
// text, as arguments of a function, which it leaves alone.
constexpr std::size_t kMaxParameters = 500;

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
  return !(a == Kind::Number && IsTime(b)) && !(b == Kind::Number && IsTime(a));
}

std::string InNumberOrder(const std::string& sql) {
  return "(" + sql + " COLLATE " + std::string(kNumberOrder) + ")";
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
          (expr.text == "COUNT" || expr.text == "MAX" || expr.text == "MIN"));
}

}  // namespace

std::string ScopeSource::Name(std::size_t column) const {
  return table ? table->columns[column].name : view->columns[column].name;
}

Compiled ScopeSource::Column(std::size_t column) const {
  if (!table) return {prefix + "\"" + Name(column) + "\"", view->columns[column].kind};
  const ColumnType& type = table->columns[column].type;
  return {prefix + table->columns[column].SqlName(), type.kind(), false, type.IsLarge()};
}

void ExpressionCompiler::Fail(const Status& status) {
  if (status_.ok()) status_ = status;
}

std::string ExpressionCompiler::Emit(const Compiled& value, Kind kind) {
  if (kind == Kind::Null) kind = value.kind;
  if (!value.literal) {
    if (kind == value.kind || value.kind == Kind::Null) return value.sql;
    return SqliteConversionName(value.kind, kind) + "(" + value.sql + ")";
  }
  Datum converted;
  Fail(Convert(Datum::Of(value.kind, value.sql), kind, context_, &converted));
  if (converted.null) return "NULL";
  const bool fits_text = converted.text.find('\0') == std::string::npos;
  if (parameters_.size() >= kMaxParameters && fits_text) {
    return "qm_literal(" + QuoteLiteral(converted.text) + ")";
  }
  parameters_.push_back(std::move(converted.text));
  return "?" + std::to_string(parameters_.size());
}

Compiled ExpressionCompiler::Value(const Expr& expr, const Scope& scope) {
  if (IsAggregate(expr)) return Aggregate(expr, scope);
  switch (expr.op) {
    case ExprOp::Null:
      return {"NULL", Kind::Null};
    case ExprOp::Literal: {
      if (expr.text.empty()) return {"NULL", Kind::Text};
      Compiled literal{expr.text, Kind::Text, true};
      if (!expr.is_number) return literal;
      Datum number;
      const Status status =
          Convert(Datum::Of(Kind::Text, expr.text), Kind::Number, context_, &number);
      if (!status.ok()) Fail(Ora(1426));
      return {number.text, Kind::Number, true};
    }
    case ExprOp::Column:
      return Column(expr, scope);
    case ExprOp::Rowid:
      return Rowid(expr, scope);
    case ExprOp::Subquery:
      return Subquery(expr, scope);
    case ExprOp::Call:
      return expr.text == "||" ? Concatenation(expr, scope) : Call(expr, scope);
    default:
      Fail(Ora(936));
      return {};
  }
}

Compiled ExpressionCompiler::Column(const Expr& expr, const Scope& scope) {
  met_column = true;
  Compiled found;
  for (const Scope* at = &scope; at != nullptr && found.sql.empty(); at = at->outer) {
    for (const ScopeSource& source : at->sources) {
      if (!expr.qualifier.empty() && expr.qualifier != source.alias) continue;
      const int column =
          source.table ? source.table->FindColumn(expr.text) : source.view->FindColumn(expr.text);
      if (column < 0) continue;
      if (!found.sql.empty()) Fail(Ora(918, expr.text));
      found = source.Column(static_cast<std::size_t>(column));
    }
  }
  if (found.sql.empty() && scope.sources.empty()) {
    Fail({984, "column not allowed here"});
  } else if (found.sql.empty()) {
    const std::string prefix = expr.qualifier.empty() ? "" : "\"" + expr.qualifier + "\".";
    Fail({904, prefix + "\"" + expr.text + "\": invalid identifier"});
  }
  return found;
}

Compiled ExpressionCompiler::Rowid(const Expr& expr, const Scope& scope) {
  met_column = true;
  for (const ScopeSource& source : scope.sources) {
    if (!expr.qualifier.empty() && expr.qualifier != source.alias) continue;
    if (!source.table) break;
    const std::string table = std::to_string(source.table->id);
    return {"qm_rowid(" + table + "," + source.prefix + "rid)", Kind::Text};
  }
  Fail({1446, "cannot select ROWID from what has no row addresses"});
  return {};
}

Compiled ExpressionCompiler::Call(const Expr& expr, const Scope& scope) {
  std::vector<Compiled> args;
  std::vector<Kind> kinds;
  for (const ExprPtr& arg : expr.args) {
    args.push_back(Value(*arg, scope));
    kinds.push_back(args.back().kind);
  }
  if (expr.text == "NVL" && args.size() == 2) {
    const Kind kind = kinds[0] == Kind::Null ? kinds[1] : kinds[0];
    return {"ifnull(" + Emit(args[0]) + "," + Emit(args[1], kind) + ")", kind};
  }
  const Function* function = nullptr;
  Fail(FindFunction(expr.text, kinds, &function));
  if (!status_.ok()) return {};
  Compiled call{SqliteName(*function) + "(", function->result};
  for (std::size_t i = 0; i < args.size(); ++i) {
    call.sql += (i == 0 ? "" : ",") + Emit(args[i], function->args[i]);
  }
  call.sql += ')';
  return call;
}

// NULL is nothing in a concatenation, and nothing at all is NULL.
Compiled ExpressionCompiler::Concatenation(const Expr& expr, const Scope& scope) {
  std::vector<Compiled> args;
  Kind kind = Kind::Text;
  for (const ExprPtr& arg : expr.args) {
    args.push_back(Value(*arg, scope));
    if (args.back().kind == Kind::Lob) kind = Kind::Lob;
  }
  std::vector<std::string> parts;
  parts.reserve(args.size());
  for (const Compiled& arg : args) parts.push_back("ifnull(" + Emit(arg, kind) + ",'')");
  const std::string joined = JoinBalanced(parts, 0, parts.size(), "||");
  return {kind == Kind::Lob ? joined : "nullif(" + joined + ",'')", kind};
}

Compiled ExpressionCompiler::Aggregate(const Expr& expr, const Scope& scope) {
  met_aggregate = true;
  if (expr.op == ExprOp::CountStar) return {"CAST(count(*) AS TEXT)", Kind::Number};
  if (expr.args.size() != 1) {
    Fail(Ora(909));
    return {};
  }
  const bool met_before = met_column;
  const Compiled argument = Value(*expr.args[0], scope);
  met_column = met_before;
  if (expr.text == "COUNT") return {"CAST(count(" + Emit(argument) + ") AS TEXT)", Kind::Number};
  const std::string sql = Emit(argument);
  const bool number = argument.kind == Kind::Number;
  return {(expr.text == "MAX" ? "max(" : "min(") + (number ? InNumberOrder(sql) : sql) + ")",
          argument.kind};
}

std::string ExpressionCompiler::Condition(const Expr& expr, const Scope& scope) {
  switch (expr.op) {
    case ExprOp::And:
    case ExprOp::Or:
      return Junction(expr, scope);
    case ExprOp::Not:
      return "(NOT " + Condition(*expr.args[0], scope) + ")";
    case ExprOp::IsNull:
      return "(" + Emit(Value(*expr.args[0], scope)) + " IS NULL)";
    case ExprOp::In: {
      const std::vector<std::string> operands = Operands(expr, scope, false);
      std::string sql = "(" + operands[0] + " IN (";
      for (std::size_t i = 1; i < operands.size(); ++i) sql += (i == 1 ? "" : ",") + operands[i];
      return sql + "))";
    }
    case ExprOp::Between: {
      const std::vector<std::string> operands = Operands(expr, scope, true);
      return "(" + operands[0] + " BETWEEN " + operands[1] + " AND " + operands[2] + ")";
    }
    case ExprOp::Like: {
      std::string sql = "(" + Emit(Value(*expr.args[0], scope), Kind::Text);
      sql += " LIKE " + Emit(Value(*expr.args[1], scope), Kind::Text);
      if (expr.args.size() > 2) sql += " ESCAPE " + Emit(Value(*expr.args[2], scope), Kind::Text);
      return sql + ")";
    }
    case ExprOp::Exists: {
      std::vector<Kind> ignored;
      if (subquery_) return "EXISTS (" + subquery_(*expr.subquery, scope, &ignored) + ")";
      Fail(Ora(900, "EXISTS is not supported here"));
      return "";
    }
    case ExprOp::Compare: {
      const bool ordered = expr.text != "=" && expr.text != "<>";
      const std::vector<std::string> operands = Operands(expr, scope, ordered);
      return "(" + operands[0] + " " + expr.text + " " + operands[1] + ")";
    }
    default:
      Fail(Ora(920));
      return "";
  }
}

// The one value of a query with one row; NULL when it has none.
Compiled ExpressionCompiler::Subquery(const Expr& expr, const Scope& scope) {
  std::vector<Kind> kinds;
  if (!subquery_) Fail(Ora(900, "a subquery is not supported here"));
  if (!status_.ok()) return {};
  const bool met_before = met_aggregate;
  const std::string sql = subquery_(*expr.subquery, scope, &kinds);
  met_aggregate = met_before;
  if (kinds.size() != 1) Fail(Ora(913));
  if (!status_.ok()) return {};
  return {"(WITH q(v) AS (" + sql + ") SELECT qm_only(v) FROM q)", kinds[0]};
}

std::string ExpressionCompiler::Junction(const Expr& expr, const Scope& scope) {
  std::vector<std::string> parts;
  for (const ExprPtr& arg : expr.args) parts.push_back(Condition(*arg, scope));
  return JoinBalanced(parts, 0, parts.size(), expr.op == ExprOp::And ? " AND " : " OR ");
}

std::vector<std::string> ExpressionCompiler::Operands(const Expr& expr, const Scope& scope,
                                                      bool ordered) {
  std::vector<Compiled> values;
  Kind kind = Kind::Null;
  for (const ExprPtr& arg : expr.args) {
    values.push_back(Value(*arg, scope));
    kind = CommonKind(kind, values.back().kind);
    if (Comparable(values[0].kind, values.back().kind)) continue;
    Fail(Ora(932, "expected " + std::string(KindName(values[0].kind)) + " got " +
                      std::string(KindName(values.back().kind))));
  }
  std::vector<std::string> operands;
  for (const Compiled& value : values) {
    std::string sql = Emit(value, kind);
    if (kind == Kind::Number && ordered) sql = InNumberOrder(sql);
    // Time zones compare as instants.
    if (kind == Kind::TimestampTz) sql = "substr(" + sql + ",1,29)";
    operands.push_back(std::move(sql));
  }
  return operands;
}

}  // namespace quillmere::sandbox
