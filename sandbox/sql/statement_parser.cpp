// SPDX-License-Identifier: MIT
#include "sandbox/sql/statement_parser.h"

#include "sandbox/sql/parser.h"

namespace quillmere::sandbox {

Status ParseStatement(std::string_view sql, Statement* out) {
  std::vector<Token> tokens;
  if (Status status = Tokenise(sql, &tokens); !status.ok()) return status;
  Parser parser(sql, tokens);
  parser.Parse(out);
  return parser.status();
}

Status ParseExpression(std::string_view text, ExprPtr* out) {
  std::vector<Token> tokens;
  if (Status status = Tokenise(text, &tokens); !status.ok()) return status;
  Parser parser(text, tokens);
  *out = parser.Value();
  return !parser.status().ok() || parser.AtEnd() ? parser.status() : Ora(907);
}

void Parser::Parse(Statement* out) {
  if (Take("SELECT")) {
    *out = Query();
  } else if (Take("INSERT")) {
    ParseInsert(&out->emplace<Insert>());
  } else if (Take("UPDATE")) {
    ParseUpdate(&out->emplace<Update>());
  } else if (Take("DELETE")) {
    ParseDelete(&out->emplace<Delete>());
  } else if (Take("CREATE")) {
    ParseCreate(out);
  } else if (Take("ALTER")) {
    ParseAlter(out);
  } else if (Is("DROP") || Is("TRUNCATE")) {
    ParseDrop(&out->emplace<ObjectChange>());
  } else if (Take("BEGIN")) {
    ParseBlock(&out->emplace<ProcedureCall>());
  } else if (Is("COMMIT") || Is("ROLLBACK") || Is("SAVEPOINT")) {
    ParseControl(&out->emplace<TransactionControl>());
  } else {
    NotUnderstood();
  }
  if (!AtEnd()) Fail(Is(";") ? Ora(911, ";") : Ora(933));
}

ExprPtr Parser::ValueOrDefault() {
  return Take("DEFAULT") ? nullptr : Value();
}

ExprPtr Parser::Where() {
  return Take("WHERE") ? Condition() : nullptr;
}

void Parser::ParseInsert(Insert* out) {
  Need("INTO", 925);
  out->table = Object(903);
  if (Is("(")) out->columns = Names();
  if (Is("SELECT")) Fail(Ora(900, "INSERT ... SELECT: use INSERT ... VALUES"));
  Need("VALUES", 926);
  Need("(");
  do {
    out->values.push_back(ValueOrDefault());
  } while (Take(","));
  Need(")", AtEnd() ? 907 : 917);
}

void Parser::ParseUpdate(Update* out) {
  out->table = Object(903);
  if (!Is("SET")) out->alias = Name(971);
  Need("SET", 971);
  do {
    Assignment& assignment = out->set.emplace_back();
    assignment.column = Object(1747).name;
    Need("=");
    assignment.value = ValueOrDefault();
  } while (Take(","));
  out->where = Where();
}

void Parser::ParseDelete(Delete* out) {
  Take("FROM");
  out->table = Object(903);
  if (IsName()) out->alias = Name(933);
  out->where = Where();
}

void Parser::ParseControl(TransactionControl* out) {
  using Kind = TransactionControl::Kind;
  if (Take("COMMIT")) {
    Take("WORK");
    return;
  }
  out->kind = Is("SAVEPOINT") ? Kind::Savepoint : Kind::Rollback;
  Advance();
  if (out->kind == Kind::Rollback) {
    Take("WORK");
    if (!Take("TO")) return;
    Take("SAVEPOINT");
    out->kind = Kind::RollbackTo;
  }
  out->savepoint = Name(931);
}

// begin [owner.]package.procedure[(name=>value, ...)]; end;
void Parser::ParseBlock(ProcedureCall* out) {
  constexpr int kFailed = 6550;
  out->name = Name(kFailed);
  while (Take(".")) out->name += "." + Name(kFailed);
  if (out->name.starts_with("SYS.")) out->name.erase(0, 4);
  if (Take("(") && !Take(")")) {
    do {
      ParseArgument(&out->arguments.emplace_back());
    } while (Take(","));
    Need(")", kFailed);
  }
  for (const std::string_view word : {";", "END", ";"}) Need(word, kFailed);
}

// name => value, where value is a literal, a number or a sum of package constants.
void Parser::ParseArgument(ProcedureArgument* out) {
  constexpr int kFailed = 6550;
  out->name = Name(kFailed);
  Need("=>", kFailed);
  if (Current().kind == TokenKind::String || Current().kind == TokenKind::Number) {
    out->value = Current().text;
    Advance();
    return;
  }
  do {
    const ObjectName constant = Object(kFailed);
    out->constants.push_back(constant.owner + "." + constant.name);
  } while (Take("+"));
}

}  // namespace quillmere::sandbox
