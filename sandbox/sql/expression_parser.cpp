// SPDX-License-Identifier: MIT
#include <algorithm>

#include "sandbox/sql/statement_parser.h"

namespace quillmere::sandbox {

namespace {

// Deep enough for any statement people or programs write, shallow enough for any stack.
constexpr int kMaxDepth = 200;

Status TooDeep() {
  return Ora(900, "expression nests too deeply");
}

ExprPtr Literal(const Token& token) {
  auto literal = std::make_unique<Expr>();
  literal->op = ExprOp::Literal;
  literal->text = token.text;
  literal->is_number = token.kind == TokenKind::Number;
  return literal;
}

}  // namespace

void Parser::AddArgument(Expr* expr, ExprPtr argument) {
  expr->depth = std::max(expr->depth, argument->depth + 1);
  if (expr->depth > kMaxDepth) Fail(TooDeep());
  expr->args.push_back(std::move(argument));
}

ExprPtr Parser::Make(ExprOp op, std::string_view text, ExprPtr first, ExprPtr second) {
  auto expr = std::make_unique<Expr>();
  expr->op = op;
  expr->text = text;
  if (first) AddArgument(expr.get(), std::move(first));
  if (second) AddArgument(expr.get(), std::move(second));
  return expr;
}

// Around what may nest.
void Parser::Open() {
  Need("(");
  if (++depth_ > kMaxDepth) Fail(TooDeep());
}

void Parser::Close() {
  --depth_;
  Need(")");
}

// Chains of OR, AND and || become one node each, however long they are.
ExprPtr Parser::Condition() {
  ExprPtr first = Conjunction();
  if (!Is("OR")) return first;
  ExprPtr any = Make(ExprOp::Or, "", std::move(first));
  while (Take("OR")) AddArgument(any.get(), Conjunction());
  return any;
}

ExprPtr Parser::Conjunction() {
  ExprPtr first = Negation();
  if (!Is("AND")) return first;
  ExprPtr all = Make(ExprOp::And, "", std::move(first));
  while (Take("AND")) AddArgument(all.get(), Negation());
  return all;
}

ExprPtr Parser::Negation() {
  bool negate = false;
  while (Take("NOT")) negate = !negate;
  ExprPtr inner = Take("EXISTS") ? Subquery(ExprOp::Exists) : Predicate();
  return negate ? Make(ExprOp::Not, "", std::move(inner)) : std::move(inner);
}

ExprPtr Parser::Predicate() {
  ExprPtr left = Value();
  for (const std::string_view symbol : {"=", "<>", "!=", "^=", "<", "<=", ">", ">="}) {
    if (!Take(symbol)) continue;
    const bool unequal = symbol == "!=" || symbol == "^=";
    return Make(ExprOp::Compare, unequal ? "<>" : symbol, std::move(left), Value());
  }
  if (Take("IS")) {
    const bool negate = Take("NOT");
    Need("NULL", 908);
    ExprPtr is_null = Make(ExprOp::IsNull, "", std::move(left));
    return negate ? Make(ExprOp::Not, "", std::move(is_null)) : std::move(is_null);
  }
  if (!Is("NOT") && !Is("IN") && !Is("BETWEEN") && !Is("LIKE")) return left;
  const bool negate = Take("NOT");
  ExprPtr predicate = PredicateOf(std::move(left));
  return negate ? Make(ExprOp::Not, "", std::move(predicate)) : std::move(predicate);
}

ExprPtr Parser::PredicateOf(ExprPtr left) {
  ExprPtr predicate;
  if (Take("BETWEEN")) {
    predicate = Make(ExprOp::Between, "", std::move(left), Value());
    Need("AND");
    AddArgument(predicate.get(), Value());
  } else if (Take("LIKE")) {
    predicate = Make(ExprOp::Like, "", std::move(left), Value());
    if (Take("ESCAPE")) AddArgument(predicate.get(), Value());
  } else {
    Need("IN", 920);
    Need("(");
    predicate = Make(ExprOp::In, "", std::move(left));
    do {
      AddArgument(predicate.get(), Value());
    } while (Take(","));
    Need(")");
  }
  return predicate;
}

ExprPtr Parser::Subquery(ExprOp op) {
  ExprPtr expr = Make(op);
  Open();
  Need("SELECT", 936);
  expr->subquery = std::make_shared<Select>(Query());
  Close();
  return expr;
}

ExprPtr Parser::Value() {
  ExprPtr left = Term();
  while (Is("+") || Is("-") || Is("||")) {
    const std::string& op = Current().text;
    Advance();
    ExprPtr right = Term();
    if (op == "||" && left->op == ExprOp::Call && left->text == op) {
      AddArgument(left.get(), std::move(right));
    } else {
      left = Make(ExprOp::Call, op, std::move(left), std::move(right));
    }
  }
  return left;
}

ExprPtr Parser::Term() {
  ExprPtr left = Factor();
  while (Is("*") || Is("/")) {
    const std::string& op = Current().text;
    Advance();
    left = Make(ExprOp::Call, op, std::move(left), Factor());
  }
  return left;
}

ExprPtr Parser::Factor() {
  bool negate = false;
  for (; Is("-") || Is("+"); Advance()) negate = negate != Is("-");
  ExprPtr operand = Primary();
  if (!negate) return operand;
  if (operand->is_number) {
    operand->text = operand->text[0] == '-' ? operand->text.substr(1) : "-" + operand->text;
    return operand;
  }
  ExprPtr zero = Make(ExprOp::Literal, "0");
  zero->is_number = true;
  return Make(ExprOp::Call, "-", std::move(zero), std::move(operand));
}

ExprPtr Parser::Primary() {
  const Token& token = Current();
  if (Is("(") && NextIs("SELECT")) return Subquery(ExprOp::Subquery);
  if (Is("(")) {
    Open();
    ExprPtr inside = Condition();
    Close();
    return inside;
  }
  if (Take("NULL")) return Make(ExprOp::Null);
  if (token.kind == TokenKind::String || token.kind == TokenKind::Number) {
    Advance();
    return Literal(token);
  }
  if ((Is("DATE") || Is("TIMESTAMP")) && Ahead().kind == TokenKind::String) {
    const bool date = Take("DATE");
    if (!date) Advance();
    Token mask{TokenKind::String, date ? "YYYY-MM-DD" : "YYYY-MM-DD HH24:MI:SSXFF", 0, 0};
    ExprPtr text = Literal(Current());
    Advance();
    return Make(ExprOp::Call, date ? "TO_DATE" : "TO_TIMESTAMP", std::move(text), Literal(mask));
  }
  return NameOrCall();
}

ExprPtr Parser::NameOrCall() {
  for (const std::string_view name : {"SYSDATE", "SYSTIMESTAMP", "USER"}) {
    if (Take(name)) return Make(ExprOp::Call, name);
  }
  if (Take("ROWID")) return Make(ExprOp::Rowid);
  ExprPtr expr = Make(ExprOp::Column, Name(936));
  if (Is("(")) return Arguments(std::move(expr));
  for (int parts = 1; Take("."); ++parts) {
    expr->qualifier = std::move(expr->text);
    if (Take("ROWID")) {
      expr->op = ExprOp::Rowid;
      return expr;
    }
    expr->text = Name(1747);
    if (parts == 3) Fail(Ora(1747));
  }
  return expr;
}

ExprPtr Parser::Arguments(ExprPtr call) {
  call->op = ExprOp::Call;
  Open();
  if (call->text == "COUNT" && Take("*")) {
    call->op = ExprOp::CountStar;
  } else if (!Is(")")) {
    do {
      AddArgument(call.get(), Value());
    } while (Take(","));
  }
  Close();
  return call;
}

// The word SELECT has been read.
Select Parser::Query() {
  Select select;
  do {
    select.items.push_back(QueryItem());
  } while (Take(","));
  QueryFrom(&select);
  if (Take("ORDER")) {
    Need("BY", 924);
    do {
      select.order_by.push_back(QueryOrder());
    } while (Take(","));
  }
  if (Take("FOR")) QueryLock(&select);
  return select;
}

// A join is a further source and a further condition.
void Parser::QueryFrom(Select* select) {
  Need("FROM", 923);
  ExprPtr joined;
  bool join = false;
  do {
    SelectSource& source = select->from.emplace_back();
    source.object = Object(903);
    if (IsName() && !Is("JOIN")) source.alias = Name(933);
    if (join) Need("ON");
    if (join) joined = Both(std::move(joined), Condition());
    join = Take("JOIN");
  } while (join || Take(","));
  if (Take("WHERE")) joined = Both(std::move(joined), Condition());
  select->where = std::move(joined);
}

ExprPtr Parser::Both(ExprPtr first, ExprPtr second) {
  if (!first) return second;
  return Make(ExprOp::And, "", std::move(first), std::move(second));
}

void Parser::QueryLock(Select* select) {
  Need("UPDATE");
  select->for_update = true;
  if (Take("WAIT")) select->lock_wait = Integer(30005);
  if (Take("NOWAIT")) select->lock_wait = 0;
}

SelectItem Parser::QueryItem() {
  SelectItem item;
  if (Take("*")) return item;
  if (IsName() && NextIs(".") && Matches(Ahead(2), "*")) {
    item.qualifier = Name(936);
    Advance();
    Advance();
    return item;
  }
  item.expr = Value();
  if (Take("AS") || IsName()) item.alias = Name(923);
  return item;
}

OrderItem Parser::QueryOrder() {
  OrderItem item;
  if (Current().kind == TokenKind::Number) {
    item.position = Integer(1785);
    if (item.position < 1) Fail(Ora(1785));
  } else {
    item.expr = Value();
  }
  item.descending = Take("DESC");
  if (!item.descending) Take("ASC");
  return item;
}

}  // namespace quillmere::sandbox
